// The OU delete and move engines through the row loop against the test DC.
//
// Server behaviour these tests expect (Samba 4.17 and Windows alike): a deny ACE for Everyone on
// deleting an object, and on deleting the children of its container, keeps the domain's
// administrator from deleting it; an OU can't be moved below itself.

#include "ou_prod_support.h"

namespace orin {
namespace {

using test::Csv;
using test::operator+;
using test::SpanCells;
using test::SpanColumns;
using test::Summary;
using Lines = std::vector<std::string>;
using Values = std::map<std::string, std::string>;

const Csv kDel = [] {
    std::vector<std::string> columns = SpanColumns("OU", 3);
    columns.push_back("IfDelSubObj");
    columns.push_back("Mirror");
    return Csv(columns);
}();

const Csv kMov = [] {
    std::vector<std::string> columns = SpanColumns("OU", 3);
    for (const std::string& name : SpanColumns("NewOU", 3)) columns.push_back(name);
    columns.push_back("NewRDN");
    columns.push_back("Mirror");
    return Csv(columns);
}();

class OUDeleteMoveTest : public test::OUProdTest {
  protected:
    Values At(std::vector<std::string> below) {
        below.insert(below.begin(), Top());
        return SpanCells("OU", 3, below);
    }
    Values To(std::vector<std::string> below) {
        below.insert(below.begin(), Top());
        return SpanCells("NewOU", 3, below);
    }
    void MakeOU(const std::string& rdn) { Make("organizationalUnit", rdn); }

    // Denies Everyone the delete of the object at `dn` and of the children of its container.
    static void Protect(const std::string& dn, bool protect) {
        SetDeny(dn, 0x10000 | 0x40, protect);  // delete, delete subtree
        SetDeny(ParentDn(dn), 0x2, protect);   // delete child
    }
    static void SetDeny(const std::string& dn, uint32_t mask, bool on) {
        DirObject object;
        ASSERT_TRUE(BindObject("LDAP://" + dn, object));
        auto dacl = ReadObjectDacl(object);
        ASSERT_TRUE(dacl);
        auto& aces = dacl->Dacl().Aces;
        std::erase_if(aces, [&](const Ace& a) {
            return a.AceType == kAccessDeniedAceType && a.TrusteeSid == EveryoneSid() &&
                   a.AccessMask == mask;
        });
        if (on) {
            Ace deny;
            deny.AceType = kAccessDeniedAceType;
            deny.AccessMask = mask;
            deny.TrusteeSid = EveryoneSid();
            InsertAce(dacl->Dacl(), deny);
        }
        ASSERT_TRUE(dacl->Write());
    }
};

TEST_F(OUDeleteMoveTest, ASubtreeGoesWithEverythingInIt) {
    MakeOU("OU=tree");
    MakeOU("OU=sub,OU=tree");
    MakeOU("OU=deeper,OU=sub,OU=tree");
    Make("group", "CN=g,OU=tree", Sam("dg1"));
    Make("group", "CN=g,OU=deeper,OU=sub,OU=tree", Sam("dg2"));
    Make("user", "CN=u,OU=sub,OU=tree", Sam("du"));
    Make("container", "CN=box,OU=sub,OU=tree");
    TraceMode = 1;
    auto log = Run(OperationKind::Del,
                   {kDel.Header(), kDel.Row(At({"tree"}) + Values{{"IfDelSubObj", "yes"}}),
                    kDel.Row(At({"tree"}) + Values{{"Mirror", "YES"}})});
    TraceMode = 0;
    EXPECT_EQ(log, Summary(1, 1, 0, 0));
    EXPECT_FALSE(Exists(OuDn({"tree"})));
    // Depth first: the sub-OU's path is built from its parent's.
    std::string trace = Join(test::ReadLines(TraceFilePath), "\n");
    EXPECT_NE(trace.find("ｻﾌﾞOU削除開始。 OUﾊﾟｽ=OU=deeper,OU=sub,OU=tree," + ou().Rdn()),
              std::string::npos);
    EXPECT_NE(trace.find("OUでないｻﾌﾞｵﾌﾞｼﾞｪｸﾄを削除済み。"), std::string::npos);
    EXPECT_NE(trace.find("Exit. 正常終了"), std::string::npos);
    // The operator was given the window after each of the six children, as well as per row.
    EXPECT_GE(op.yields, 2 + 6);
}

TEST_F(OUDeleteMoveTest, WithoutTheFlagOnlyAnEmptyOUGoes) {
    MakeOU("OU=full");
    MakeOU("OU=child,OU=full");
    MakeOU("OU=empty");
    MakeOU("OU=empty2");
    auto log =
        Run(OperationKind::Del,
            {kDel.Header(), kDel.Row(At({"full"}) + Values{{"IfDelSubObj", "No"}}),
             kDel.Row(At({"empty"})), kDel.Row(At({"empty2"}) + Values{{"IfDelSubObj", "NO"}})});
    EXPECT_EQ(log, Lines({"2行, 警告, OU配下にｵﾌﾞｼﾞｪｸﾄが存在するため、ﾍｯﾀﾞの定義に従い削除処理を"
                          "中止しました。"}) +
                       Summary(3, 2, 1, 0));
    EXPECT_TRUE(Exists(OuDn({"full", "child"})));
    EXPECT_FALSE(Exists(OuDn({"empty"})));
    EXPECT_FALSE(Exists(OuDn({"empty2"})));
}

TEST_F(OUDeleteMoveTest, RefusedDeleteRows) {
    MakeOU("OU=o");
    auto log = Run(OperationKind::Del,
                   {kDel.Header(), kDel.Row(At({"o"}) + Values{{"IfDelSubObj", "maybe"}}),
                    kDel.Row(At({"missing"})), kDel.Row(Values{{"IfDelSubObj", "YES"}}),
                    kDel.Row(At({"o"}) + Values{{"Mirror", "x"}})});
    EXPECT_EQ(log, Lines({
                       // A bad IfDelSubObj is told in the words of the Mirror column.
                       "2行, 失敗, ﾍｯﾀﾞ列[Mirror]に無効なﾃﾞｰﾀが入力されました。",
                       "3行, 失敗, ｵﾌﾞｼﾞｪｸﾄが存在しないか、ﾊﾟｽが間違っています。",
                       "4行, 失敗, OUのﾊﾟｽが指定されていません。",
                       "5行, 失敗, ﾍｯﾀﾞ列[Mirror]に無効なﾃﾞｰﾀが入力されました。",
                   }) + Summary(4, 0, 0, 4));
    EXPECT_TRUE(Exists(OuDn({"o"})));

    const Csv noFlag({"OU-Start", "OU-End", "Mirror"});
    log = Run(OperationKind::Del,
              {noFlag.Header(), noFlag.Row({{"OU-Start", Top()}, {"OU-End", "o"}})});
    EXPECT_EQ(log,
              Lines({"2行, 失敗, ﾍｯﾀﾞ列[IfDelSubObj]は存在しません。ﾍｯﾀﾞを定義してください。"}) +
                  Summary(1, 0, 0, 1));
    EXPECT_TRUE(Exists(OuDn({"o"})));
}

TEST_F(OUDeleteMoveTest, AProtectedChildStopsTheSubtreeDeleteWhereItStands) {
    MakeOU("OU=p");
    MakeOU("OU=sub,OU=p");
    Make("group", "CN=safe,OU=sub,OU=p", Sam("safe"));
    Make("group", "CN=loose,OU=p", Sam("loose"));
    const std::string safe = "CN=safe," + OuDn({"p", "sub"});
    Protect(safe, true);
    auto log = Run(OperationKind::Del,
                   {kDel.Header(), kDel.Row(At({"p"}) + Values{{"IfDelSubObj", "YES"}})});
    Protect(safe, false);  // so that the test's OU can go

    EXPECT_EQ(log,
              Lines({"2行, 失敗, ｵﾌﾞｼﾞｪｸﾄの削除が失敗しました。失敗の原因を特定できません。"}) +
                  Summary(1, 0, 0, 1));
    EXPECT_TRUE(Exists(safe));
    EXPECT_TRUE(Exists(OuDn({"p"})));
    // What went before the failure stays gone.
    EXPECT_FALSE(Exists("CN=loose," + OuDn({"p"})));
}

TEST_F(OUDeleteMoveTest, MovesIntoAnotherOUAndRenamesOnTheWay) {
    MakeOU("OU=target");
    MakeOU("OU=plain");
    MakeOU("OU=renamed");
    MakeOU("OU=samename");
    Make("group", "CN=g,OU=plain", Sam("mg"));
    auto log = Run(OperationKind::Mov,
                   {kMov.Header(), kMov.Row(At({"plain"}) + To({"target"})),
                    kMov.Row(At({"plain"}) + Values{{"Mirror", "YES"}}),
                    kMov.Row(At({"renamed"}) + To({"target"}) + Values{{"NewRDN", "newname"}}),
                    kMov.Row(At({"samename"}) + To({"target"}) + Values{{"NewRDN", "samename"}})});
    EXPECT_EQ(log, Lines({"5行, 警告, [名前（新）]は変更前と同じであるため変更しません。"}) +
                       Summary(3, 2, 1, 0));
    EXPECT_TRUE(Exists("CN=g," + OuDn({"target", "plain"})));
    EXPECT_TRUE(Exists(OuDn({"target", "newname"})));
    EXPECT_TRUE(Exists(OuDn({"target", "samename"})));
    EXPECT_FALSE(Exists(OuDn({"plain"})));
    EXPECT_FALSE(Exists(OuDn({"renamed"})));
}

TEST_F(OUDeleteMoveTest, RefusedMoves) {
    MakeOU("OU=a");
    MakeOU("OU=b");
    MakeOU("OU=inner,OU=b");
    MakeOU("OU=inner");
    auto log =
        Run(OperationKind::Mov,
            {kMov.Header(), kMov.Row(At({"a"}) + To({})),  // already there
             kMov.Row(At({"a"}) + To({"nowhere"})),        // no such target
             kMov.Row(At({"ghost"}) + To({"b"})),          // no such source
             kMov.Row(At({"a"}) + To({"a", "below"})),     // the target doesn't exist yet
             kMov.Row(At({"b"}) + To({"b", "inner"})),     // below itself
             kMov.Row(At({"inner"}) + To({"b"})),          // the name is taken there
             kMov.Row(SpanCells("OU", 3, {Top()}) + SpanCells("NewOU", 3, {}))});  // root to root
    EXPECT_EQ(log, Lines({
                       "2行, 失敗, ｵﾌﾞｼﾞｪｸﾄを移動元と同じ場所に移動することができません。",
                       "3行, 失敗, ｵﾌﾞｼﾞｪｸﾄの移動先ｺﾝﾃﾅは存在しないか、ﾊﾟｽが間違っています。",
                       "4行, 失敗, ｵﾌﾞｼﾞｪｸﾄは移動元の場所に存在しません。",
                       "5行, 失敗, ｵﾌﾞｼﾞｪｸﾄの移動先ｺﾝﾃﾅは存在しないか、ﾊﾟｽが間違っています。",
                       "6行, 失敗, 組織単位の移動処理が失敗しました。失敗の原因を特定できません。",
                       "7行, 失敗, 組織単位の移動処理が失敗しました。失敗の原因を特定できません。",
                       "8行, 失敗, ｵﾌﾞｼﾞｪｸﾄを移動元と同じ場所に移動することができません。",
                   }) + Summary(7, 0, 0, 7));
    for (const auto& stays : {OuDn({"a"}), OuDn({"b", "inner"}), OuDn({"inner"})})
        EXPECT_TRUE(Exists(stays)) << stays;
}

TEST_F(OUDeleteMoveTest, TargetColumnsAreChecked) {
    MakeOU("OU=a");
    const Csv noTarget({"OU-Start", "OU-End", "NewOU-Start", "NewRDN", "Mirror"});
    const Csv reversed({"OU-Start", "OU-End", "NewOU-End", "NewOU-Start", "Mirror"});
    auto log = Run(OperationKind::Mov,
                   {noTarget.Header(), noTarget.Row({{"OU-Start", Top()}, {"OU-End", "a"}})});
    EXPECT_EQ(log, Lines({"2行, 失敗, ﾍｯﾀﾞ列[NewOU-Start]と[NewOU-End]の片方または両方が存在しませ"
                          "ん。両方のﾍｯﾀﾞ列を定義してください。"}) +
                       Summary(1, 0, 0, 1));
    log = Run(OperationKind::Mov,
              {reversed.Header(), reversed.Row({{"OU-Start", Top()}, {"OU-End", "a"}})});
    EXPECT_EQ(log,
              Lines({"2行, 失敗, ﾍｯﾀﾞ列[NewOU-Start]と[NewOU-End]の並び順が逆になっています。"}) +
                  Summary(1, 0, 0, 1));
}

TEST_F(OUDeleteMoveTest, AnEmptyTargetIsTheDomainRoot) {
    const std::string name = "moved-" + std::to_string(getpid());
    MakeOU("OU=" + name);
    auto log = Run(OperationKind::Mov, {kMov.Header(), kMov.Row(At({name}))});
    const std::string atRoot = "OU=" + name + "," + gSession.DomainDN;
    const bool moved = Exists(atRoot);
    if (moved) test::DeleteTree(atRoot);
    EXPECT_EQ(log, Summary(1, 1, 0, 0));
    EXPECT_TRUE(moved);
}

}  // namespace
}  // namespace orin
