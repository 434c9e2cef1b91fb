#include <gtest/gtest.h>

#include <algorithm>

#include "CsvTestFiles.h"
#include "csv/ExportHeader.h"
#include "platform/Cp932.h"

using namespace orin;
using namespace orin::csvtest;

namespace {

// The file's bytes must be exactly the two lines, CP932, each ended by CR LF.
void ExpectFile(const std::filesystem::path& p, const std::string& header,
                const std::string& captions) {
    EXPECT_EQ(ReadBytes(p), platform::Utf8ToCp932(header + "\r\n" + captions + "\r\n"));
}

const std::string kOuTail = "Mirror,c,postalCode,st,l,street,description,MgrOU-Start";
const std::string kOuCaptionTail =
    "ミラー,国/地域,郵便番号,都道府県,市区町村,番地,説明,"
    "管理者所在OUの最上位階層OU名またはデフォルトコンテナ名";

}  // namespace

TEST(ExportHeader, OuLevelsOneTwoAndFour) {
    auto p = ScratchFile("export_ou.csv");

    // Level 1 and level 2 both leave Start and End side by side.
    for (int16_t level : {1, 2}) {
        ASSERT_TRUE(WriteExportHeader_OU(p, level, level));
        ExpectFile(p, "!OU-Start,OU-End," + kOuTail + ",MgrOU-End,MgrRDN",
                   "#最上位階層OU名またはデフォルトコンテナ名,最下位階層OU名," + kOuCaptionTail +
                       ",管理者所在OUの最下位階層OU名,管理者の名前");
    }

    // Level 4: two empty columns, levels 2 and 3, in each span; the spans are sized apart.
    ASSERT_TRUE(WriteExportHeader_OU(p, 4, 3));
    ExpectFile(p, "!OU-Start,,,OU-End," + kOuTail + ",,MgrOU-End,MgrRDN",
               "#最上位階層OU名またはデフォルトコンテナ名,第2階層OU名,第3階層OU名,"
               "最下位階層OU名," +
                   kOuCaptionTail +
                   ",管理者所在OUの第2階層OU名,管理者所在OUの最下位階層OU名,管理者の名前");
}

TEST(ExportHeader, OtherKinds) {
    auto p = ScratchFile("export_kinds.csv");

    ASSERT_TRUE(WriteExportHeader_GPO(p, 3, 9));  // no manager span: its level is unused
    ExpectFile(p, "!OU-Start,,OU-End,RDN,Mirror,displayName",
               "#最上位階層OU名またはデフォルトコンテナ名,第2階層OU名,最下位階層OU名,"
               "グループポリシーのGUID,ミラー,表示名");

    ASSERT_TRUE(WriteExportHeader_Shr(p, 1, 3));
    ExpectFile(p, "!OU-Start,OU-End,RDN,Mirror,uNCName,description,MgrOU-Start,,MgrOU-End,MgrRDN",
               "#最上位階層OU名またはデフォルトコンテナ名,最下位階層OU名,名前,ミラー,"
               "UNC名（例：\\\\サーバー\\共有）,説明,"
               "管理者所在OUの最上位階層OU名またはデフォルトコンテナ名,"
               "管理者所在OUの第2階層OU名,管理者所在OUの最下位階層OU名,管理者の名前");

    // The member and group spans get no middle columns.
    auto lines = ExportHeaderLines(ObjectKind::Group, 3, 3);
    EXPECT_EQ(lines[0],
              "!OU-Start,,OU-End,RDN,Mirror,sAMAccountName,GroupRange,GroupClass,description,"
              "mail,info,MgrOU-Start,,MgrOU-End,MgrRDN,MemberOU-Start,MemberOU-End,MemberRDN,"
              "GrpOU-Start,GrpOU-End,groupRDN");

    // Header and caption lines always have the same number of cells.
    for (ObjectKind kind : {ObjectKind::User, ObjectKind::Computer, ObjectKind::Group}) {
        auto two = ExportHeaderLines(kind, 5, 4);
        EXPECT_EQ(std::count(two[0].begin(), two[0].end(), ','),
                  std::count(two[1].begin(), two[1].end(), ','));
        EXPECT_EQ(two[1].find(",,"), std::string::npos) << "a column without caption";
    }
    EXPECT_TRUE(WriteExportHeader_Usr(p, 2, 2));
    EXPECT_TRUE(WriteExportHeader_Com(p, 2, 2));
}

TEST(ExportHeader, ReplacesTheFileAndReportsAFailedWrite) {
    auto p = WriteBytes("export_replace.csv", "old content that is longer than the header\r\n");
    ASSERT_TRUE(WriteExportHeader_GPO(p, 1, 1));
    EXPECT_EQ(ReadBytes(p).find("old"), std::string::npos);
    EXPECT_FALSE(WriteExportHeader_OU(p.parent_path(), 1, 1));  // a folder
    EXPECT_FALSE(WriteExportHeader_OU(p.parent_path() / "missing" / "x.csv", 1, 1));
}
