// The OU export against the test DC: the object scan's counts and levels, the file's bytes for
// a small tree, a compare of that file, and a cancelled export. (The run over the whole domain,
// through the export driver, is tested with the drivers.)

#include "csv/ExportHeader.h"
#include "export/ExportOU.h"
#include "export/ExportScan.h"
#include "ou_imitate_compare_support.h"

namespace orin::test {
namespace {

// A user in the domain's "CN=Users" container, removed again at the end of the test.
class UsersContainerUser {
  public:
    explicit UsersContainerUser(std::string cn) : rdn_("CN=" + cn + ",CN=Users"), cn_(cn) {
        gSession.RootObject.Delete("user", rdn_);  // a leftover of an earlier run
        auto created = gSession.RootObject.Create("user", rdn_);
        EXPECT_TRUE(created.ok());
        if (!created.ok()) return;
        created->Put("sAMAccountName", cn);
        EXPECT_TRUE(created->SetInfo().ok());
    }
    ~UsersContainerUser() { gSession.RootObject.Delete("user", rdn_); }
    std::string Dn() const { return rdn_ + "," + gSession.DomainDN; }
    const std::string& Cn() const { return cn_; }

  private:
    std::string rdn_;
    std::string cn_;
};

class OUExport : public OUModesTest {
  protected:
    // The tree below the test OU: a (with a manager inside it), a/b (managed from CN=Users),
    // a/b/c. One OU a level, so the order of the rows is fixed.
    void MakeTree(const UsersContainerUser& outsider) {
        MakeOU("a", {{"c", "JP"},
                     {"postalCode", "100-0001"},
                     {"st", "東京都"},
                     {"l", "千代田区"},
                     {"street", "x\r\ny"},
                     {"description", "A"}});
        DirObject a;
        ASSERT_TRUE(BindObject("LDAP://" + DnOf("a"), a));
        a.Put("managedBy", MakeUser("a", "boss"));
        ASSERT_TRUE(a.SetInfo().ok());
        MakeOU("a,b", {{"description", "B"}, {"managedBy", outsider.Dn()}});
        MakeOU("a,b,c");
    }

    // Scans and exports the test OU's subtree as an export run does with the whole domain.
    void Scan() {
        gRun.lngObjectCnt = 0;
        gRun.intOULevel = gRun.intMgrLevel = 1;
        CollectExportInfo(ou().Object(), "organizationalUnit");
    }
    std::filesystem::path Write() {
        const std::filesystem::path csv = Folder() / "export.csv";
        EXPECT_TRUE(WriteExportHeader_OU(csv, gRun.intOULevel, gRun.intMgrLevel));
        EXPECT_TRUE(ExportOU(csv, ou().Object(), gRun.intOULevel, gRun.intMgrLevel));
        return csv;
    }
};

TEST_F(OUExport, RowsOfASmallTreeAndTheirCompare) {
    UsersContainerUser outsider(Sam("outsid"));
    MakeTree(outsider);

    ResetRun(Folder());
    Scan();
    const std::filesystem::path csv = Write();
    EXPECT_EQ(gRun.lngObjectCnt, 3);
    EXPECT_EQ(gRun.intOULevel, 4);   // T/a/b/c
    EXPECT_EQ(gRun.intMgrLevel, 2);  // T/a
    EXPECT_EQ(gRun.lngSuccessCnt, 3);
    EXPECT_EQ(op.label6, 3);

    const std::string t = Top();
    std::vector<std::string> lines = ExportHeaderLines(ObjectKind::OU, 4, 2);
    lines.push_back(Join({t, "a", "", "", "", "JP", "100-0001", "東京都", "千代田区", "x<Rtn>y",
                          "A", t, "a", "boss"},
                         ","));
    lines.push_back(
        Join({t, "a", "b", "", "", "", "", "", "", "", "B", "Users", "", outsider.Cn()}, ","));
    lines.push_back(Join({t, "a", "b", "c", "", "", "", "", "", "", "", "", "", ""}, ","));
    EXPECT_EQ(ReadBytes(csv), DiskBytes(lines));

    // The file compares clean against the directory it came from...
    std::vector<std::string> exported = ReadLines(csv);
    EXPECT_EQ(Run(kCompareOfExport, exported), "");
    EXPECT_EQ(gRun.lngMatchCnt, 3);
    EXPECT_EQ(gRun.lngDiffCnt, 0);
    EXPECT_EQ(gRun.lngFailureCnt, 0);

    // ...and tells a change made since.
    DirObject b;
    ASSERT_TRUE(BindObject("LDAP://" + DnOf("a,b"), b));
    b.Put("description", "changed");
    ASSERT_TRUE(b.SetInfo().ok());
    EXPECT_EQ(Run(kCompareOfExport, exported),
              Lines({"4行, 相違, ｵﾌﾞｼﾞｪｸﾄのﾌﾟﾛﾊﾟﾃｨ[説明]に相違がありました。\r\n\t"
                     "【ｲﾝﾎﾟｰﾄﾃﾞｰﾀ内のﾌﾟﾛﾊﾟﾃｨ値】：B\r\n\t【ｵﾌﾞｼﾞｪｸﾄ実際のﾌﾟﾛﾊﾟﾃｨ値】：changed"}));
    EXPECT_EQ(gRun.lngMatchCnt, 2);
    EXPECT_EQ(gRun.lngDiffCnt, 1);
}

TEST_F(OUExport, CancelStopsTheWalkAndTheScan) {
    MakeOU("a");
    MakeOU("a,b");
    MakeOU("z");

    // Cancel arrives at the first yield of the walk, after the first row.
    ResetRun(Folder());
    Scan();
    const int yieldsBefore = op.yields;
    op.onYield = [yieldsBefore](int yields) {
        if (yields == yieldsBefore + 1) gRun.intCancel = 1;
    };
    Write();
    EXPECT_EQ(gRun.lngSuccessCnt, 1);
    EXPECT_EQ(op.status, "組織単位のｴｸｽﾎﾟｰﾄ処理がﾕｰｻﾞｰに中断されました。");
    EXPECT_TRUE(op.statusRed);
    EXPECT_EQ(ReadLines(Folder() / "export.csv").size(), 3u);  // two header lines and one row

    // The scan gives up at once when frmWait's Cancel was pressed.
    gRun.blnWaitCancelled = true;
    gRun.lngObjectCnt = 0;
    CollectExportInfo(ou().Object(), "organizationalUnit");
    EXPECT_EQ(gRun.lngObjectCnt, 0);
    gRun.blnWaitCancelled = false;
}

}  // namespace
}  // namespace orin::test
