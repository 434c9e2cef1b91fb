// The OU export against the test DC: the object scan's counts and levels, the file's bytes for
// a small tree, a compare of that file, and a cancelled export. (The run over the whole domain,
// through the export driver, is tested with the drivers.)

#include "csv/ExportHeader.h"
#include "export/ExportOU.h"
#include "export/ExportScan.h"
#include "ou_test_support.h"

namespace orin::test {
namespace {

class OUExport : public OUTest {
  protected:
    // Scans and exports the test OU's subtree as an export run does with the whole domain.
    std::filesystem::path ScanAndWrite() {
        gRun.lngObjectCnt = 0;
        gRun.intOULevel = gRun.intMgrLevel = 1;
        CollectExportInfo(ou().Object(), "organizationalUnit");
        const std::filesystem::path csv = folder / "export.csv";
        EXPECT_TRUE(WriteExportHeader_OU(csv, gRun.intOULevel, gRun.intMgrLevel));
        EXPECT_TRUE(ExportOU(csv, ou().Object(), gRun.intOULevel, gRun.intMgrLevel));
        return csv;
    }
};

TEST_F(OUExport, RowsOfASmallTreeAndTheirCompare) {
    // A manager in the domain's "CN=Users" container, removed again at the end of the test.
    const std::string outsider = Sam("outsid"), outsiderRdn = "CN=" + outsider + ",CN=Users";
    gSession.RootObject.Delete("user", outsiderRdn);  // a leftover of an earlier run
    Make("user", outsiderRdn, {{"sAMAccountName", outsider}});
    struct Remove {
        std::string rdn;
        ~Remove() { gSession.RootObject.Delete("user", rdn); }
    } remove{outsiderRdn};
    // One OU a level, so the order of the rows is fixed.
    DirObject a = MakeOU("a", {{"c", "JP"},
                               {"postalCode", "100-0001"},
                               {"st", "東京都"},
                               {"l", "千代田区"},
                               {"street", "x\r\ny"},
                               {"description", "A"}});
    MakeAccount("user", "boss", "a");
    a.Put("managedBy", "CN=boss," + DnOf("a"));
    ASSERT_TRUE(a.SetInfo().ok());
    MakeOU("a,b", {{"description", "B"}, {"managedBy", outsiderRdn + "," + gSession.DomainDN}});
    MakeOU("a,b,c");

    const std::filesystem::path csv = ScanAndWrite();
    EXPECT_EQ(gRun.lngObjectCnt, 3);
    EXPECT_EQ(gRun.intOULevel, 4);   // T/a/b/c
    EXPECT_EQ(gRun.intMgrLevel, 2);  // T/a
    EXPECT_EQ(gRun.lngSuccessCnt, 3);
    EXPECT_EQ(op.label6, 3);
    const std::string t = Top();
    std::vector<std::string> lines = ExportHeaderLines(ObjectKind::OU, 4, 2);
    lines.push_back(t + ",a,,,,JP,100-0001,東京都,千代田区,x<Rtn>y,A," + t + ",a,boss");
    lines.push_back(t + ",a,b,,,,,,,,B,Users,," + outsider);
    lines.push_back(t + ",a,b,c,,,,,,,,,,");
    EXPECT_EQ(ReadBytes(csv), DiskBytes(lines));

    // The file compares clean against the directory it came from...
    const std::vector<std::string> exported = ReadLines(csv);
    ASSERT_EQ(exported.size(), 5u);
    std::vector<Row> rows = {{exported[1]}, {exported[2]}, {exported[3]}, {exported[4]}};
    EXPECT_TRUE(Runs(kCompareOfExport, "3/0/0", exported[0], rows));
    // ...and tells a change made since.
    DirObject b;
    ASSERT_TRUE(BindObject("LDAP://" + DnOf("a,b"), b));
    b.Put("description", "changed");
    ASSERT_TRUE(b.SetInfo().ok());
    rows[2] = {exported[3], kDiff, {Differs("説明", "B", "changed")}};
    EXPECT_TRUE(Runs(kCompareOfExport, "2/1/0", exported[0], rows));
}

TEST_F(OUExport, CancelStopsTheWalkAndTheScan) {
    for (const char* names : {"a", "a,b", "z"}) MakeOU(names);
    // Cancel arrives at the walk's yield after its first row.
    op.onYield = [](int) {
        if (gRun.lngSuccessCnt == 1) gRun.intCancel = 1;
    };
    const std::filesystem::path csv = ScanAndWrite();
    EXPECT_EQ(gRun.lngSuccessCnt, 1);
    EXPECT_EQ(op.status, "組織単位のｴｸｽﾎﾟｰﾄ処理がﾕｰｻﾞｰに中断されました。");
    EXPECT_TRUE(op.statusRed);
    EXPECT_EQ(ReadLines(csv).size(), 3u);  // two header lines and one row

    // The scan gives up at once when frmWait's Cancel was pressed.
    gRun.blnWaitCancelled = true;
    gRun.lngObjectCnt = 0;
    CollectExportInfo(ou().Object(), "organizationalUnit");
    EXPECT_EQ(gRun.lngObjectCnt, 0);
    gRun.blnWaitCancelled = false;
}

}  // namespace
}  // namespace orin::test
