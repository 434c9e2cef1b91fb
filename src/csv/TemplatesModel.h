#pragma once
// Inside the template generator: how one template is described. Each template is data: its
// columns in file order, its sample rows by column name, and which note blocks follow the
// general lines. Templates.cpp turns a description into lines.

#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "base/Identifiers.h"

namespace orin::templates {

// The sample tree that every template shows: three levels, with a "クライアント" OU under each.
// Paths are written top level first, levels separated by "/".
inline constexpr std::string_view kTop = "IT事業本部";
inline constexpr std::string_view kTopClients = "IT事業本部/クライアント";
inline constexpr std::string_view kSolution = "IT事業本部/ITソリューション部";
inline constexpr std::string_view kSolutionClients = "IT事業本部/ITソリューション部/クライアント";
inline constexpr std::string_view kNetwork =
    "IT事業本部/ITソリューション部/ネットワーク設計グループ";
inline constexpr std::string_view kNetworkClients =
    "IT事業本部/ITソリューション部/ネットワーク設計グループ/クライアント";

// The default container of the samples' manager and other well-known accounts.
inline constexpr std::string_view kUsers = "Users";

// One filled cell of a sample row. A column that opens a span ("OU-Start", "MgrOU-Start", ...)
// takes a path ("a/b/c"), whose levels fill the span's cells from the left.
struct SampleCell {
    std::string_view column;
    std::string_view text;
};
using SampleRow = std::vector<SampleCell>;

// Fixed note blocks, as opposed to the blocks that define the values of one header.
enum class Note {
    MdfLine,          // a blank cell keeps the value, "!C" clears it
    MovLine,          // an empty target moves to the domain root
    GroupNameMov,     // the group's name is not its pre-Windows 2000 name
    ComputerNameMov,  // the same for a computer
    // The parts of the 【注意】 block.
    CautionOUAdd,
    CautionAccessRights,
    CautionOUName,
    CautionManager,
    CautionMemberAdd,
    CautionGroupAdd,
    CautionGroupNameChange,
    CautionUserProperties,
};

// An entry under 【説明】: a fixed block, or the block that defines the values of a header.
using NoteItem = std::variant<Note, std::string_view>;

struct TemplateDefinition {
    ObjectKind kind;
    OperationKind op;
    // Header names in file order; "" for an unnamed cell inside the OU span.
    std::vector<std::string_view> columns = {};
    std::vector<SampleRow> rows = {};
    std::vector<NoteItem> explanation = {};  // after the general lines
    std::vector<Note> cautions = {};         // the 【注意】 block; empty: the template has none
};

// The descriptions, one file per kind.
TemplateDefinition DefineOUTemplate(OperationKind op);
TemplateDefinition DefineGroupTemplate(OperationKind op);
TemplateDefinition DefineUserTemplate(OperationKind op);
TemplateDefinition DefineComputerTemplate(OperationKind op);
TemplateDefinition DefineShareTemplate(OperationKind op);

// Note texts (TemplatesNotes.cpp), each line without the leading "#,".
// The general lines; the OU Del template leaves out the fifth, which speaks of non-OU objects.
std::vector<std::string> GeneralNoteLines(bool withNonOUObjectLine);
std::vector<std::string> FixedNoteLines(Note note, OperationKind op);
// The block that defines the values of `header` in the template of (kind, op). Throws
// std::logic_error for a header that has no block there.
std::vector<std::string> HeaderNoteLines(std::string_view header, ObjectKind kind,
                                         OperationKind op);

}  // namespace orin::templates
