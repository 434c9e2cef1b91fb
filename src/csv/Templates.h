#pragma once
// The annotated CSV templates: one for each of the five kinds OU, Group, User, Computer and
// SharedFolder and the four operations Add, Del, Mov and Mdf. A template is an ordinary CSV
// file that a run can take as it stands: the header line, the caption line, sample rows, two
// empty lines, then the input rules as comment lines ("#," and the text, so that a spreadsheet
// shows every note in its second column). Written in CP932 with CR LF.

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "base/Identifiers.h"

namespace orin {

// True for the 20 pairs that have a template (GpoLink and Exp have none).
bool HasTemplate(ObjectKind kind, OperationKind op);

// "組織単位の追加", "グループの変更", ...: the name that the 【概要】 line gives.
std::string TemplateName(ObjectKind kind, OperationKind op);

// The lines of the template of (kind, op), UTF-8, without line endings; empty for a pair
// without template.
std::vector<std::string> TemplateLines(ObjectKind kind, OperationKind op);

// Replaces `path` with the template of (kind, op). False when the pair has no template or the
// file can't be opened for writing; a write error after a good open isn't told apart.
bool WriteTemplate(ObjectKind kind, OperationKind op, const std::filesystem::path& path);

// The routine of each template, as the template dialog calls them.
bool CreateTmpFile_OUAdd(const std::filesystem::path& path);
bool CreateTmpFile_OUDel(const std::filesystem::path& path);
bool CreateTmpFile_OUMov(const std::filesystem::path& path);
bool CreateTmpFile_OUMdf(const std::filesystem::path& path);
bool CreateTmpFile_GrpAdd(const std::filesystem::path& path);
bool CreateTmpFile_GrpDel(const std::filesystem::path& path);
bool CreateTmpFile_GrpMov(const std::filesystem::path& path);
bool CreateTmpFile_GrpMdf(const std::filesystem::path& path);
bool CreateTmpFile_UsrAdd(const std::filesystem::path& path);
bool CreateTmpFile_UsrDel(const std::filesystem::path& path);
bool CreateTmpFile_UsrMov(const std::filesystem::path& path);
bool CreateTmpFile_UsrMdf(const std::filesystem::path& path);
bool CreateTmpFile_ComAdd(const std::filesystem::path& path);
bool CreateTmpFile_ComDel(const std::filesystem::path& path);
bool CreateTmpFile_ComMov(const std::filesystem::path& path);
bool CreateTmpFile_ComMdf(const std::filesystem::path& path);
bool CreateTmpFile_ShareAdd(const std::filesystem::path& path);
bool CreateTmpFile_ShareDel(const std::filesystem::path& path);
bool CreateTmpFile_ShareMov(const std::filesystem::path& path);
bool CreateTmpFile_ShareMdf(const std::filesystem::path& path);

// The selectors of the dialog: `importType` is the chosen option of optImportType, 0 Add,
// 1 Del, 2 Mov, and any other value Mdf.
bool CreateOUTemplateFile(int16_t importType, const std::filesystem::path& path);
bool CreateGrpTemplateFile(int16_t importType, const std::filesystem::path& path);
bool CreateUsrTemplateFile(int16_t importType, const std::filesystem::path& path);
bool CreateComTemplateFile(int16_t importType, const std::filesystem::path& path);
bool CreateShareTemplateFile(int16_t importType, const std::filesystem::path& path);

}  // namespace orin
