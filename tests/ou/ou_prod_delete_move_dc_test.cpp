// The OU delete and move engines through the row loop against the test DC.
//
// Server behaviour these tests expect (Samba 4.17 and Windows alike): a deny ACE for Everyone on
// deleting an object, and on deleting the children of its container, keeps the domain's
// administrator from deleting it; an OU can't be moved below itself.

#include "ou_test_support.h"

namespace orin::test {
namespace {

class OUDeleteMoveTest : public OUTest {
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
    for (const char* names : {"tree", "tree,sub", "tree,sub,deeper", "empty"}) MakeOU(names);
    MakeAccount("group", "g", "tree");
    MakeAccount("user", "u", "tree,sub");
    Make("container", "CN=box," + PathOf("tree,sub,deeper"));
    TraceMode = 1;
    EXPECT_EQ(Run(kDel, {"!OU-Start,,OU-End,Mirror,IfDelSubObj", "{T},tree,,,yes", "{T},tree,,YES",
                         "{T},empty"}),
              "");
    TraceMode = 0;
    EXPECT_EQ(Tally(), "2/0/0");
    EXPECT_FALSE(Exists("tree"));
    EXPECT_FALSE(Exists("empty"));  // an empty OU goes without the flag
    const std::string trace = Join(ReadLines(TraceFilePath), "\n");
    EXPECT_NE(trace.find("ｻﾌﾞOU削除開始。 OUﾊﾟｽ=" + PathOf("tree,sub,deeper")), std::string::npos);
    EXPECT_NE(trace.find("OUでないｻﾌﾞｵﾌﾞｼﾞｪｸﾄを削除済み。"), std::string::npos);
    // The operator got the window after each of the five children, as well as per row.
    EXPECT_GE(op.yields, 3 + 5);
}

TEST_F(OUDeleteMoveTest, RefusedDeletesLeaveTheOUs) {
    MakeOU("o");
    MakeOU("o,child");
    EXPECT_EQ(Run(kDel, {"!OU-Start,,OU-End,IfDelSubObj,Mirror", "{T},o,,No", "{T},o,,maybe",
                         "{T},missing", ",,,YES", "{T},o,,,x"}),
              Log({{2, kWarn, kHasChildren},
                   {3, kFail, Invalid("Mirror")},  // a bad IfDelSubObj, in the Mirror words
                   {4, kFail, kNoObject},
                   {5, kFail, kNoPath},
                   {6, kFail, Invalid("Mirror")}}));
    EXPECT_EQ(Tally(), "0/1/4");
    EXPECT_EQ(Run(kDel, {"!OU-Start,OU-End,Mirror", "{T},o"}), Log({{2, kFail, kNoIfDelSubObj}}));
    EXPECT_TRUE(Exists("o,child"));
}

TEST_F(OUDeleteMoveTest, AProtectedChildStopsTheSubtreeDeleteWhereItStands) {
    MakeOU("p");
    MakeOU("p,sub");
    MakeAccount("group", "safe", "p,sub");
    MakeAccount("group", "loose", "p");
    const std::string safe = "CN=safe," + DnOf("p,sub");
    Protect(safe, true);
    const std::string log = Run(kDel, {"!OU-Start,,OU-End,Mirror,IfDelSubObj", "{T},p,,,YES"});
    Protect(safe, false);  // so that the test's OU can go

    EXPECT_EQ(log, Log({{2, kFail, "ｵﾌﾞｼﾞｪｸﾄの削除が失敗しました。失敗の原因を特定できません。"}}));
    EXPECT_TRUE(Binds(safe));
    // What went before the failure stays gone, whatever the order of the children.
    EXPECT_FALSE(Binds("CN=loose," + DnOf("p")));
}

const std::string kMoveHeader = "!OU-Start,,OU-End,Mirror,NewOU-Start,,NewOU-End,NewRDN";

TEST_F(OUDeleteMoveTest, MovesIntoAnotherOUAndRenamesOnTheWay) {
    for (const char* names : {"target", "plain", "renamed", "samename"}) MakeOU(names);
    Make("container", "CN=box," + PathOf("plain"));
    EXPECT_EQ(
        Run(kMov, {kMoveHeader, "{T},plain,,,{T},target", "{T},plain,,YES",
                   "{T},renamed,,,{T},target,,newname", "{T},samename,,,{T},target,,samename"}),
        Log({{5, kWarn, kSameNewName}}));
    EXPECT_EQ(Tally(), "2/1/0");
    EXPECT_TRUE(Binds("CN=box," + DnOf("target,plain")));
    EXPECT_TRUE(Exists("target,newname"));
    EXPECT_TRUE(Exists("target,samename"));
    EXPECT_FALSE(Exists("renamed"));
}

TEST_F(OUDeleteMoveTest, RefusedMoves) {
    for (const char* names : {"a", "b", "b,inner", "inner"}) MakeOU(names);
    EXPECT_EQ(Run(kMov, {kMoveHeader, "{T},a,,,{T}",  // where it is already
                         "{T},a,,,{T},nowhere", "{T},ghost,,,{T},b",
                         "{T},b,,,{T},b,inner",  // below itself
                         "{T},inner,,,{T},b",    // the name is taken there
                         "{T}"}),                // the root, to the root
              Log({{2, kFail, kSamePlace},
                   {3, kFail, kNoTarget},
                   {4, kFail, kNoSource},
                   {5, kFail, kMoveFailed},
                   {6, kFail, kMoveFailed},
                   {7, kFail, kSamePlace}}));
    EXPECT_EQ(Tally(), "0/0/6");
    for (const char* stays : {"a", "b,inner", "inner"}) EXPECT_TRUE(Exists(stays)) << stays;

    EXPECT_EQ(Run(kMov, {"!OU-Start,OU-End,NewOU-Start,Mirror", "{T},a"}),
              Log({{2, kFail, kNoTargetSpan}}));
    EXPECT_EQ(Run(kMov, {"!OU-Start,OU-End,NewOU-End,NewOU-Start,Mirror", "{T},a"}),
              Log({{2, kFail, "ﾍｯﾀﾞ列[NewOU-Start]と[NewOU-End]の並び順が逆になっています。"}}));
}

TEST_F(OUDeleteMoveTest, AnEmptyTargetIsTheDomainRoot) {
    const std::string name = "moved-" + std::to_string(getpid());
    MakeOU(name);
    const std::string log = Run(kMov, {kMoveHeader, "{T}," + name});
    const std::string atRoot = "OU=" + name + "," + gSession.DomainDN;
    const bool moved = Binds(atRoot);
    if (moved) DeleteTree(atRoot);
    EXPECT_EQ(log, "");
    EXPECT_EQ(Tally(), "1/0/0");
    EXPECT_TRUE(moved);
}

}  // namespace
}  // namespace orin::test
