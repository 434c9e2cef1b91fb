#include "csv/ExportHeader.h"

#include "csv/ColumnRegistry.h"
#include "platform/Strings.h"
#include "platform/TextFile.h"

namespace orin {
namespace {

// The empty columns between Start and End of a span of `level` cells: levels 2 to level - 1,
// each captioned `prefix` "第N階層OU名". A level of 1 or 2 gives none.
void AddMiddleColumns(int16_t level, std::string_view prefix, std::vector<std::string>& names,
                      std::vector<std::string>& captions) {
    for (int n = 2; n < level; ++n) {
        names.emplace_back();
        captions.push_back(std::string(prefix) + "第" + std::to_string(n) + "階層OU名");
    }
}

}  // namespace

std::vector<std::string> ExportHeaderLines(ObjectKind kind, int16_t ouLevel, int16_t mgrLevel) {
    std::vector<std::string> names;
    std::vector<std::string> captions;
    for (std::string_view name : ExportColumnNames(kind)) {
        names.emplace_back(name);
        captions.emplace_back(ColumnCaption(kind, name));
        if (name == "OU-Start") AddMiddleColumns(ouLevel, "", names, captions);
        if (name == "MgrOU-Start") AddMiddleColumns(mgrLevel, "管理者所在OUの", names, captions);
    }
    return {"!" + Join(names, ","), "#" + Join(captions, ",")};
}

bool WriteExportHeader(ObjectKind kind, const std::filesystem::path& csvPath, int16_t ouLevel,
                       int16_t mgrLevel) {
    return platform::WriteLines(csvPath, ExportHeaderLines(kind, ouLevel, mgrLevel));
}

bool WriteExportHeader_OU(const std::filesystem::path& csvPath, int16_t ouLevel, int16_t mgrLevel) {
    return WriteExportHeader(ObjectKind::OU, csvPath, ouLevel, mgrLevel);
}

bool WriteExportHeader_Grp(const std::filesystem::path& csvPath, int16_t ouLevel,
                           int16_t mgrLevel) {
    return WriteExportHeader(ObjectKind::Group, csvPath, ouLevel, mgrLevel);
}

bool WriteExportHeader_Usr(const std::filesystem::path& csvPath, int16_t ouLevel,
                           int16_t mgrLevel) {
    return WriteExportHeader(ObjectKind::User, csvPath, ouLevel, mgrLevel);
}

bool WriteExportHeader_Com(const std::filesystem::path& csvPath, int16_t ouLevel,
                           int16_t mgrLevel) {
    return WriteExportHeader(ObjectKind::Computer, csvPath, ouLevel, mgrLevel);
}

bool WriteExportHeader_Shr(const std::filesystem::path& csvPath, int16_t ouLevel,
                           int16_t mgrLevel) {
    return WriteExportHeader(ObjectKind::SharedFolder, csvPath, ouLevel, mgrLevel);
}

bool WriteExportHeader_GPO(const std::filesystem::path& csvPath, int16_t ouLevel,
                           int16_t mgrLevel) {
    return WriteExportHeader(ObjectKind::GpoLink, csvPath, ouLevel, mgrLevel);
}

}  // namespace orin
