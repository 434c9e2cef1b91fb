#pragma once
// The CSV vocabulary of access control: the codes of AccessRight, PermitOrDeny and
// InheritOption, and the trustee names that AceSamAccountName and DoNotRemTheseACE stand for.

#include <cstdint>
#include <string>
#include <string_view>

namespace orin {

// The value of a coded field: a number, or one of two texts. "ERROR" marks a field that can't
// be used; "SP" is the InheritOption "this object only", for which an ACE is made without
// setting its AceFlags.
class CodedValue {
  public:
    CodedValue(uint32_t number) : number_(number) {}
    static CodedValue Error() { return CodedValue(kError); }
    static CodedValue SP() { return CodedValue(kSP); }

    bool IsError() const { return text_ == kError; }
    bool IsSP() const { return text_ == kSP; }
    bool IsNumber() const { return text_.empty(); }
    uint32_t Number() const { return number_; }  // 0 for "SP" and "ERROR"
    // "2", "SP" or "ERROR".
    std::string ToString() const {
        return IsNumber() ? std::to_string(number_) : std::string(text_);
    }

    friend bool operator==(const CodedValue&, const CodedValue&) = default;

    static constexpr std::string_view kError = "ERROR";
    static constexpr std::string_view kSP = "SP";

  private:
    explicit CodedValue(std::string_view text) : text_(text) {}
    std::string_view text_;
    uint32_t number_ = 0;
};

// AccessRight: codes 0 to 14 joined by ";", each mapped to a mask and all OR-ed. The mask to
// write, with the generic rights as such; "ERROR" for an empty field, a part that isn't a
// number (a trailing ";" leaves an empty one) or a number outside the table.
CodedValue ParseAccessRights(std::string_view text);
// The same codes as the directory stores them in an ACE that applies to the object itself,
// where the generic rights have been expanded (full control 0x000F01FF, read 0x00020094, write
// 0x00000028).
CodedValue ParseAccessRightsStored(std::string_view text);

// InheritOption -> AceFlags: "" and "0" give 2, "1" gives "SP", "2" gives 10, "3" gives 6,
// "4" gives 14, anything else "ERROR".
CodedValue ParseInheritOption(std::string_view text);

// PermitOrDeny, upper-cased: "" and "P" give ACE type 0 (allow), "D" type 1 (deny), anything
// else "ERROR".
CodedValue ParsePermitOrDeny(std::string_view text);

// A CSV account name in the form in which the directory reports a trustee, upper-cased:
// "BUILTIN\..." for the built-in groups, "NT AUTHORITY\..." for SYSTEM and Authenticated
// Users, the session's NetBIOS domain name + "\" for everything else. "" stays "".
std::string TrusteeName(std::string_view name);

}  // namespace orin
