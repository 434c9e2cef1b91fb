#include "csv/Templates.h"

#include <array>
#include <stdexcept>
#include <string_view>

#include "csv/ColumnRegistry.h"
#include "csv/TemplatesModel.h"
#include "platform/Strings.h"
#include "platform/TextFile.h"

namespace orin {
namespace {

using templates::Note;
using templates::NoteItem;
using templates::SampleRow;
using templates::TemplateDefinition;

constexpr std::string_view kStartSuffix = "-Start";

bool EndsWith(std::string_view text, std::string_view suffix) {
    return text.size() >= suffix.size() && text.substr(text.size() - suffix.size()) == suffix;
}

std::string_view KindWord(ObjectKind kind) {
    switch (kind) {
        case ObjectKind::OU:
            return "組織単位";
        case ObjectKind::Group:
            return "グループ";
        case ObjectKind::User:
            return "ユーザー";
        case ObjectKind::Computer:
            return "コンピュータ";
        case ObjectKind::SharedFolder:
            return "共有フォルダ";
        default:
            return {};
    }
}

std::string_view OperationWordOfTemplate(OperationKind op) {
    switch (op) {
        case OperationKind::Add:
            return "追加";
        case OperationKind::Del:
            return "削除";
        case OperationKind::Mov:
            return "移動";
        case OperationKind::Mdf:
            return "変更";
        default:
            return {};
    }
}

TemplateDefinition Define(ObjectKind kind, OperationKind op) {
    switch (kind) {
        case ObjectKind::OU:
            return templates::DefineOUTemplate(op);
        case ObjectKind::Group:
            return templates::DefineGroupTemplate(op);
        case ObjectKind::User:
            return templates::DefineUserTemplate(op);
        case ObjectKind::Computer:
            return templates::DefineComputerTemplate(op);
        case ObjectKind::SharedFolder:
            return templates::DefineShareTemplate(op);
        default:
            throw std::logic_error("no template for this kind");
    }
}

size_t ColumnPosition(const TemplateDefinition& t, std::string_view name) {
    for (size_t i = 0; i < t.columns.size(); ++i)
        if (t.columns[i] == name) return i;
    throw std::logic_error("sample names a column the template lacks: " + std::string(name));
}

// The captions: each name's caption from the column registry; an unnamed cell inside the OU
// span is "第<level>階層OU名", counting the cell of OU-Start as level 1.
std::vector<std::string> CaptionCells(const TemplateDefinition& t) {
    std::vector<std::string> captions;
    int level = 0;  // the level of an unnamed cell, counted from the last named one
    for (std::string_view name : t.columns) {
        if (name.empty()) {
            if (level == 0) throw std::logic_error("an unnamed column outside the OU span");
            captions.push_back("第" + std::to_string(++level) + "階層OU名");
            continue;
        }
        level = name == "OU-Start" ? 1 : 0;
        std::string_view caption = ColumnCaption(t.kind, name);
        if (caption.empty()) throw std::logic_error("no caption for " + std::string(name));
        captions.emplace_back(caption);
    }
    return captions;
}

// One sample row as full-width cells: a span's path spreads over the span's cells.
std::string SampleLine(const TemplateDefinition& t, const SampleRow& row) {
    std::vector<std::string> cells(t.columns.size());
    for (const templates::SampleCell& cell : row) {
        const size_t at = ColumnPosition(t, cell.column);
        if (!EndsWith(cell.column, kStartSuffix)) {
            cells[at] = cell.text;
            continue;
        }
        const std::string_view span =
            cell.column.substr(0, cell.column.size() - kStartSuffix.size());
        const size_t end = ColumnPosition(t, std::string(span) + "-End");
        const std::vector<std::string> levels = Split(cell.text, '/');
        if (levels.size() > end - at + 1)
            throw std::logic_error("sample path deeper than its span: " + std::string(cell.text));
        for (size_t i = 0; i < levels.size(); ++i) cells[at + i] = levels[i];
    }
    return Join(cells, ",");
}

void AppendNotes(std::vector<std::string>& lines, const std::vector<std::string>& notes) {
    for (const std::string& note : notes) lines.push_back("#," + note);
}

std::vector<std::string> BuildLines(const TemplateDefinition& t) {
    std::vector<std::string> header(t.columns.begin(), t.columns.end());
    std::vector<std::string> lines;
    lines.push_back("!" + Join(header, ","));
    lines.push_back("#" + Join(CaptionCells(t), ","));
    for (const SampleRow& row : t.rows) lines.push_back(SampleLine(t, row));
    lines.emplace_back();
    lines.emplace_back();

    lines.push_back("#,【概要】");
    lines.push_back("#,　◆ このファイルは[" + TemplateName(t.kind, t.op) +
                    "]用のテンプレートです。");
    lines.emplace_back();

    lines.push_back("#,【説明】");
    const bool ouDel = t.kind == ObjectKind::OU && t.op == OperationKind::Del;
    AppendNotes(lines, templates::GeneralNoteLines(!ouDel));
    for (const NoteItem& item : t.explanation) {
        if (const Note* note = std::get_if<Note>(&item))
            AppendNotes(lines, templates::FixedNoteLines(*note, t.op));
        else
            AppendNotes(lines,
                        templates::HeaderNoteLines(std::get<std::string_view>(item), t.kind, t.op));
    }

    if (!t.cautions.empty()) {
        lines.emplace_back();
        lines.push_back("#,【注意】");
        for (Note note : t.cautions) AppendNotes(lines, templates::FixedNoteLines(note, t.op));
    }

    lines.emplace_back();
    lines.push_back("#,【備考】");
    lines.push_back("#,　◆ 詳しくは「ORIN」のオンラインヘルプをご参照ください。");
    return lines;
}

using Routine = bool (*)(const std::filesystem::path&);

// The routine of the chosen option: 0 Add, 1 Del, 2 Mov, anything else Mdf.
Routine SelectRoutine(const std::array<Routine, 4>& addDelMovMdf, int16_t importType) {
    return importType >= 0 && importType <= 2 ? addDelMovMdf[static_cast<size_t>(importType)]
                                              : addDelMovMdf[3];
}

}  // namespace

bool HasTemplate(ObjectKind kind, OperationKind op) {
    return !KindWord(kind).empty() && !OperationWordOfTemplate(op).empty();
}

std::string TemplateName(ObjectKind kind, OperationKind op) {
    if (!HasTemplate(kind, op)) return {};
    return std::string(KindWord(kind)) + "の" + std::string(OperationWordOfTemplate(op));
}

std::vector<std::string> TemplateLines(ObjectKind kind, OperationKind op) {
    if (!HasTemplate(kind, op)) return {};
    return BuildLines(Define(kind, op));
}

bool WriteTemplate(ObjectKind kind, OperationKind op, const std::filesystem::path& path) {
    if (!HasTemplate(kind, op)) return false;
    return platform::WriteLines(path, TemplateLines(kind, op));
}

bool CreateTmpFile_OUAdd(const std::filesystem::path& path) {
    return WriteTemplate(ObjectKind::OU, OperationKind::Add, path);
}
bool CreateTmpFile_OUDel(const std::filesystem::path& path) {
    return WriteTemplate(ObjectKind::OU, OperationKind::Del, path);
}
bool CreateTmpFile_OUMov(const std::filesystem::path& path) {
    return WriteTemplate(ObjectKind::OU, OperationKind::Mov, path);
}
bool CreateTmpFile_OUMdf(const std::filesystem::path& path) {
    return WriteTemplate(ObjectKind::OU, OperationKind::Mdf, path);
}
bool CreateTmpFile_GrpAdd(const std::filesystem::path& path) {
    return WriteTemplate(ObjectKind::Group, OperationKind::Add, path);
}
bool CreateTmpFile_GrpDel(const std::filesystem::path& path) {
    return WriteTemplate(ObjectKind::Group, OperationKind::Del, path);
}
bool CreateTmpFile_GrpMov(const std::filesystem::path& path) {
    return WriteTemplate(ObjectKind::Group, OperationKind::Mov, path);
}
bool CreateTmpFile_GrpMdf(const std::filesystem::path& path) {
    return WriteTemplate(ObjectKind::Group, OperationKind::Mdf, path);
}
bool CreateTmpFile_UsrAdd(const std::filesystem::path& path) {
    return WriteTemplate(ObjectKind::User, OperationKind::Add, path);
}
bool CreateTmpFile_UsrDel(const std::filesystem::path& path) {
    return WriteTemplate(ObjectKind::User, OperationKind::Del, path);
}
bool CreateTmpFile_UsrMov(const std::filesystem::path& path) {
    return WriteTemplate(ObjectKind::User, OperationKind::Mov, path);
}
bool CreateTmpFile_UsrMdf(const std::filesystem::path& path) {
    return WriteTemplate(ObjectKind::User, OperationKind::Mdf, path);
}
bool CreateTmpFile_ComAdd(const std::filesystem::path& path) {
    return WriteTemplate(ObjectKind::Computer, OperationKind::Add, path);
}
bool CreateTmpFile_ComDel(const std::filesystem::path& path) {
    return WriteTemplate(ObjectKind::Computer, OperationKind::Del, path);
}
bool CreateTmpFile_ComMov(const std::filesystem::path& path) {
    return WriteTemplate(ObjectKind::Computer, OperationKind::Mov, path);
}
bool CreateTmpFile_ComMdf(const std::filesystem::path& path) {
    return WriteTemplate(ObjectKind::Computer, OperationKind::Mdf, path);
}
bool CreateTmpFile_ShareAdd(const std::filesystem::path& path) {
    return WriteTemplate(ObjectKind::SharedFolder, OperationKind::Add, path);
}
bool CreateTmpFile_ShareDel(const std::filesystem::path& path) {
    return WriteTemplate(ObjectKind::SharedFolder, OperationKind::Del, path);
}
bool CreateTmpFile_ShareMov(const std::filesystem::path& path) {
    return WriteTemplate(ObjectKind::SharedFolder, OperationKind::Mov, path);
}
bool CreateTmpFile_ShareMdf(const std::filesystem::path& path) {
    return WriteTemplate(ObjectKind::SharedFolder, OperationKind::Mdf, path);
}

bool CreateOUTemplateFile(int16_t importType, const std::filesystem::path& path) {
    return SelectRoutine(
        {CreateTmpFile_OUAdd, CreateTmpFile_OUDel, CreateTmpFile_OUMov, CreateTmpFile_OUMdf},
        importType)(path);
}
bool CreateGrpTemplateFile(int16_t importType, const std::filesystem::path& path) {
    return SelectRoutine(
        {CreateTmpFile_GrpAdd, CreateTmpFile_GrpDel, CreateTmpFile_GrpMov, CreateTmpFile_GrpMdf},
        importType)(path);
}
bool CreateUsrTemplateFile(int16_t importType, const std::filesystem::path& path) {
    return SelectRoutine(
        {CreateTmpFile_UsrAdd, CreateTmpFile_UsrDel, CreateTmpFile_UsrMov, CreateTmpFile_UsrMdf},
        importType)(path);
}
bool CreateComTemplateFile(int16_t importType, const std::filesystem::path& path) {
    return SelectRoutine(
        {CreateTmpFile_ComAdd, CreateTmpFile_ComDel, CreateTmpFile_ComMov, CreateTmpFile_ComMdf},
        importType)(path);
}
bool CreateShareTemplateFile(int16_t importType, const std::filesystem::path& path) {
    return SelectRoutine({CreateTmpFile_ShareAdd, CreateTmpFile_ShareDel, CreateTmpFile_ShareMov,
                          CreateTmpFile_ShareMdf},
                         importType)(path);
}

}  // namespace orin
