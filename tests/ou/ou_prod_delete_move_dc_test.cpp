// The OU delete and move engines through the row loop against the test DC.
//
// Server behaviour these tests expect (Samba 4.17 and Windows alike): a deny ACE for Everyone on
// deleting an object, and on deleting the children of its container, keeps the domain's
// administrator from deleting it; an OU can't be moved below itself.

#include "ou_prod_support.h"

namespace orin::test {
namespace {

class OUDeleteMoveTest : public OUProdTest {
  protected:
    // Denies Everyone the delete of the object at `dn` and of the children of its container,
    // or takes those denies away again.
    static void Protect(const std::string& dn, bool on) {
        SetDeny(dn, 0x10000 | 0x40, on);  // delete, delete subtree
        SetDeny(ParentDn(dn), 0x2, on);   // delete child
    }
    static void SetDeny(const std::string& dn, uint32_t mask, bool on) {
        DirObject object;
        ASSERT_TRUE(BindObject("LDAP://" + dn, object));
        auto dacl = ReadObjectDacl(object);
        ASSERT_TRUE(dacl);
        std::erase_if(dacl->Dacl().Aces, [&](const Ace& a) {
            return a.AceType == kAccessDeniedAceType && a.TrusteeSid == EveryoneSid();
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

TEST_F(OUDeleteMoveTest, ASubtreeGoesDepthFirstWithEverythingInIt) {
    for (const char* rdn : {"OU=tree", "OU=sub,OU=tree", "OU=deeper,OU=sub,OU=tree", "OU=empty"})
        MakeOU(rdn);
    Make("group", "CN=g,OU=tree", {{"sAMAccountName", "dg1" + std::to_string(getpid())}});
    Make("user", "CN=u,OU=sub,OU=tree", {{"sAMAccountName", "du" + std::to_string(getpid())}});
    Make("container", "CN=box,OU=deeper,OU=sub,OU=tree");
    TraceMode = 1;
    auto log = Run(OperationKind::Del,
                   {kDel.Header(), kDel.Row(At({"tree"}) + Values{{"IfDelSubObj", "yes"}}),
                    kDel.Row(At({"tree"}) + Values{{"Mirror", "YES"}}), kDel.Row(At({"empty"}))});
    TraceMode = 0;
    EXPECT_EQ(log, Summary(2, 2, 0, 0));
    EXPECT_FALSE(Exists(OuDn({"tree"})));
    EXPECT_FALSE(Exists(OuDn({"empty"})));  // an empty OU goes without the flag
    const std::string trace = Join(ReadLines(TraceFilePath), "\n");
    EXPECT_NE(trace.find("ｻﾌﾞOU削除開始。 OUﾊﾟｽ=OU=deeper,OU=sub,OU=tree," + ou().Rdn()),
              std::string::npos);
    EXPECT_NE(trace.find("OUでないｻﾌﾞｵﾌﾞｼﾞｪｸﾄを削除済み。"), std::string::npos);
    // The operator got the window after each of the five children, as well as per row.
    EXPECT_GE(op.yields, 3 + 5);
}

TEST_F(OUDeleteMoveTest, RefusedDeletesLeaveTheOUs) {
    MakeOU("OU=o");
    MakeOU("OU=child,OU=o");
    auto log =
        Run(OperationKind::Del,
            {kDel.Header(), kDel.Row(At({"o"}) + Values{{"IfDelSubObj", "No"}}),
             kDel.Row(At({"o"}) + Values{{"IfDelSubObj", "maybe"}}), kDel.Row(At({"missing"})),
             kDel.Row({{"IfDelSubObj", "YES"}}), kDel.Row(At({"o"}) + Values{{"Mirror", "x"}})});
    EXPECT_EQ(log, Lines({"2行, 警告, OU配下にｵﾌﾞｼﾞｪｸﾄが存在するため、ﾍｯﾀﾞの定義に従い削除処理を"
                          "中止しました。",
                          // A bad IfDelSubObj is told in the words of the Mirror column.
                          "3行, 失敗, ﾍｯﾀﾞ列[Mirror]に無効なﾃﾞｰﾀが入力されました。",
                          "4行, 失敗, ｵﾌﾞｼﾞｪｸﾄが存在しないか、ﾊﾟｽが間違っています。",
                          "5行, 失敗, OUのﾊﾟｽが指定されていません。",
                          "6行, 失敗, ﾍｯﾀﾞ列[Mirror]に無効なﾃﾞｰﾀが入力されました。"}) +
                       Summary(5, 0, 1, 4));
    const Csv noFlag("OU-Start,OU-End,Mirror");
    log = Run(OperationKind::Del, {noFlag.Header(), noFlag.Row(At({"o"}))});
    EXPECT_EQ(log,
              Lines({"2行, 失敗, ﾍｯﾀﾞ列[IfDelSubObj]は存在しません。ﾍｯﾀﾞを定義してください。"}) +
                  Summary(1, 0, 0, 1));
    EXPECT_TRUE(Exists(OuDn({"o", "child"})));
}

TEST_F(OUDeleteMoveTest, AProtectedChildStopsTheSubtreeDeleteWhereItStands) {
    MakeOU("OU=p");
    MakeOU("OU=sub,OU=p");
    Make("group", "CN=safe,OU=sub,OU=p", {{"sAMAccountName", "safe" + std::to_string(getpid())}});
    Make("group", "CN=loose,OU=p", {{"sAMAccountName", "loose" + std::to_string(getpid())}});
    const std::string safe = "CN=safe," + OuDn({"p", "sub"});
    Protect(safe, true);
    auto log = Run(OperationKind::Del,
                   {kDel.Header(), kDel.Row(At({"p"}) + Values{{"IfDelSubObj", "YES"}})});
    Protect(safe, false);  // so that the test's OU can go

    EXPECT_EQ(log,
              Lines({"2行, 失敗, ｵﾌﾞｼﾞｪｸﾄの削除が失敗しました。失敗の原因を特定できません。"}) +
                  Summary(1, 0, 0, 1));
    EXPECT_TRUE(Exists(safe));
    // What went before the failure stays gone, whatever the order of the children.
    EXPECT_FALSE(Exists("CN=loose," + OuDn({"p"})));
}

TEST_F(OUDeleteMoveTest, MovesIntoAnotherOUAndRenamesOnTheWay) {
    for (const char* rdn : {"OU=target", "OU=plain", "OU=renamed", "OU=samename"}) MakeOU(rdn);
    Make("container", "CN=box,OU=plain");
    auto log = Run(OperationKind::Mov,
                   {kMov.Header(), kMov.Row(At({"plain"}) + To({"target"})),
                    kMov.Row(At({"plain"}) + Values{{"Mirror", "YES"}}),
                    kMov.Row(At({"renamed"}) + To({"target"}) + Values{{"NewRDN", "newname"}}),
                    kMov.Row(At({"samename"}) + To({"target"}) + Values{{"NewRDN", "samename"}})});
    EXPECT_EQ(log, Lines({"5行, 警告, [名前（新）]は変更前と同じであるため変更しません。"}) +
                       Summary(3, 2, 1, 0));
    EXPECT_TRUE(Exists("CN=box," + OuDn({"target", "plain"})));
    EXPECT_TRUE(Exists(OuDn({"target", "newname"})));
    EXPECT_TRUE(Exists(OuDn({"target", "samename"})));
    EXPECT_FALSE(Exists(OuDn({"renamed"})));
}

TEST_F(OUDeleteMoveTest, RefusedMoves) {
    for (const char* rdn : {"OU=a", "OU=b", "OU=inner,OU=b", "OU=inner"}) MakeOU(rdn);
    auto log = Run(OperationKind::Mov,
                   {kMov.Header(), kMov.Row(At({"a"}) + To({})),  // where it is already
                    kMov.Row(At({"a"}) + To({"nowhere"})), kMov.Row(At({"ghost"}) + To({"b"})),
                    kMov.Row(At({"b"}) + To({"b", "inner"})),  // below itself
                    kMov.Row(At({"inner"}) + To({"b"})),       // the name is taken there
                    kMov.Row(Span("OU", {}))});                // the root, to the root
    EXPECT_EQ(log,
              Lines({"2行, 失敗, ｵﾌﾞｼﾞｪｸﾄを移動元と同じ場所に移動することができません。",
                     "3行, 失敗, ｵﾌﾞｼﾞｪｸﾄの移動先ｺﾝﾃﾅは存在しないか、ﾊﾟｽが間違っています。",
                     "4行, 失敗, ｵﾌﾞｼﾞｪｸﾄは移動元の場所に存在しません。",
                     "5行, 失敗, 組織単位の移動処理が失敗しました。失敗の原因を特定できません。",
                     "6行, 失敗, 組織単位の移動処理が失敗しました。失敗の原因を特定できません。",
                     "7行, 失敗, ｵﾌﾞｼﾞｪｸﾄを移動元と同じ場所に移動することができません。"}) +
                  Summary(6, 0, 0, 6));
    for (const auto& stays : {OuDn({"a"}), OuDn({"b", "inner"}), OuDn({"inner"})})
        EXPECT_TRUE(Exists(stays)) << stays;

    const Csv noEnd("OU-Start,OU-End,NewOU-Start,Mirror"),
        reversed("OU-Start,OU-End,NewOU-End,NewOU-Start,Mirror");
    log = Run(OperationKind::Mov, {noEnd.Header(), noEnd.Row(At({"a"}))});
    EXPECT_EQ(log, Lines({"2行, 失敗, ﾍｯﾀﾞ列[NewOU-Start]と[NewOU-End]の片方または両方が存在しませ"
                          "ん。両方のﾍｯﾀﾞ列を定義してください。"}) +
                       Summary(1, 0, 0, 1));
    log = Run(OperationKind::Mov, {reversed.Header(), reversed.Row(At({"a"}))});
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
    if (moved) DeleteTree(atRoot);
    EXPECT_EQ(log, Summary(1, 1, 0, 0));
    EXPECT_TRUE(moved);
}

}  // namespace
}  // namespace orin::test
