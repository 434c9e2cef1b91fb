#pragma once
// The result of a directory call. The engines read only "did it work"; the code and text are
// kept for the trace and for tests, never shown to the operator.

#include <optional>
#include <string>
#include <utility>

namespace orin {

// Codes of our own, beside the LDAP result codes (which are all below 0x100).
inline constexpr int kDirNoValue = 0x1000;       // Get/GetEx of an attribute without a value
inline constexpr int kDirTypeMismatch = 0x1001;  // Get of an attribute that holds several values
inline constexpr int kDirNotBound = 0x1002;      // a call on an object that isn't bound
inline constexpr int kDirNotConnected = 0x1003;  // no session to the domain
inline constexpr int kDirBadArgument = 0x1004;   // a path or name that can't be used at all

struct DirStatus {
    int code = 0;
    std::string message;

    bool ok() const { return code == 0; }
    static DirStatus Ok() { return {}; }
    static DirStatus Error(int code, std::string message = {}) {
        return DirStatus{code, std::move(message)};
    }
};

// A value or the status that explains why there is none.
template <class T>
class DirResult {
  public:
    DirResult(T value) : value_(std::move(value)) {}
    DirResult(DirStatus status) : status_(std::move(status)) {}

    bool ok() const { return status_.ok() && value_.has_value(); }
    const DirStatus& status() const { return status_; }
    T& value() { return *value_; }
    const T& value() const { return *value_; }
    T& operator*() { return *value_; }
    const T& operator*() const { return *value_; }
    T* operator->() { return &*value_; }
    const T* operator->() const { return &*value_; }
    T value_or(T fallback) const { return value_ ? *value_ : std::move(fallback); }

  private:
    std::optional<T> value_;
    DirStatus status_;
};

}  // namespace orin
