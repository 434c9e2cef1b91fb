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
    EXPECT_TRUE(Runs(kDel, "2/0/0", "!OU-Start,,OU-End,Mirror,IfDelSubObj",
                     {{"{T},tree,,,yes"}, {"{T},tree,,YES"}, {"{T},empty"}}));
    TraceMode = 0;
    EXPECT_EQ(Existing({"tree", "empty"}), "");  // an empty OU goes without the flag
    const std::string trace = Join(ReadLines(TraceFilePath), "\n");
    EXPECT_NE(trace.find("ｻﾌﾞOU削除開始。 OUﾊﾟｽ=" + PathOf("tree,sub,deeper")), std::string::npos);
    EXPECT_NE(trace.find("OUでないｻﾌﾞｵﾌﾞｼﾞｪｸﾄを削除済み。"), std::string::npos);
    // The operator got the window after each of the five children, as well as per row.
    EXPECT_GE(op.yields, 3 + 5);
}

TEST_F(OUDeleteMoveTest, RefusedDeletesLeaveTheOUs) {
    MakeOU("o");
    MakeOU("o,child");
    EXPECT_TRUE(Runs(kDel, "0/1/4", "!OU-Start,,OU-End,IfDelSubObj,Mirror",
                     {{"{T},o,,No", kWarn, {kHasChildren}},
                      // A bad IfDelSubObj is told in the words of the Mirror column.
                      {"{T},o,,maybe", kFail, {Invalid("Mirror")}},
                      {"{T},missing", kFail, {kNoObject}},
                      {",,,YES", kFail, {kNoPath}},
                      {"{T},o,,,x", kFail, {Invalid("Mirror")}}}));
    EXPECT_TRUE(
        Runs(kDel, "0/0/1", "!OU-Start,OU-End,Mirror", {{"{T},o", kFail, {kNoIfDelSubObj}}}));
    EXPECT_TRUE(Exists("o,child"));
}

TEST_F(OUDeleteMoveTest, AProtectedChildStopsTheSubtreeDeleteWhereItStands) {
    MakeOU("p");
    MakeOU("p,sub");
    MakeAccount("group", "safe", "p,sub");
    MakeAccount("group", "loose", "p");
    const std::string safe = "CN=safe," + DnOf("p,sub");
    Protect(safe, true);
    EXPECT_TRUE(Runs(
        kDel, "0/0/1", "!OU-Start,,OU-End,Mirror,IfDelSubObj",
        {{"{T},p,,,YES", kFail, {"ｵﾌﾞｼﾞｪｸﾄの削除が失敗しました。失敗の原因を特定できません。"}}}));
    Protect(safe, false);  // so that the test's OU can go
    EXPECT_TRUE(Binds(safe));
    // What went before the failure stays gone, whatever the order of the children.
    EXPECT_FALSE(Binds("CN=loose," + DnOf("p")));
}

const std::string kMoveHeader = "!OU-Start,,OU-End,Mirror,NewOU-Start,,NewOU-End,NewRDN";

TEST_F(OUDeleteMoveTest, MovesIntoAnotherOUAndRenamesOnTheWay) {
    for (const char* names : {"target", "plain", "renamed", "samename"}) MakeOU(names);
    Make("container", "CN=box," + PathOf("plain"));
    EXPECT_TRUE(Runs(kMov, "2/1/0", kMoveHeader,
                     {{"{T},plain,,,{T},target"},
                      {"{T},plain,,YES"},
                      {"{T},renamed,,,{T},target,,newname"},
                      {"{T},samename,,,{T},target,,samename", kWarn, {kSameNewName}}}));
    EXPECT_TRUE(Binds("CN=box," + DnOf("target,plain")));
    EXPECT_EQ(Existing({"target,newname", "target,samename", "renamed"}),
              "target,newname target,samename");
}

TEST_F(OUDeleteMoveTest, RefusedMoves) {
    for (const char* names : {"a", "b", "b,inner", "inner"}) MakeOU(names);
    EXPECT_TRUE(Runs(kMov, "0/0/6", kMoveHeader,
                     {{"{T},a,,,{T}", kFail, {kSamePlace}},  // where it is already
                      {"{T},a,,,{T},nowhere", kFail, {kNoTarget}},
                      {"{T},ghost,,,{T},b", kFail, {kNoSource}},
                      {"{T},b,,,{T},b,inner", kFail, {kMoveFailed}},  // below itself
                      {"{T},inner,,,{T},b", kFail, {kMoveFailed}},    // the name is taken there
                      {"{T}", kFail, {kSamePlace}}}));                // the root, to the root
    EXPECT_EQ(Existing({"a", "b,inner", "inner"}), "a b,inner inner");

    EXPECT_TRUE(Runs(kMov, "0/0/1", "!OU-Start,OU-End,NewOU-Start,Mirror",
                     {{"{T},a", kFail, {NoSpan("NewOU")}}}));
    EXPECT_TRUE(Runs(kMov, "0/0/1", "!OU-Start,OU-End,NewOU-End,NewOU-Start,Mirror",
                     {{"{T},a", kFail, {Reversed("NewOU")}}}));
}

TEST_F(OUDeleteMoveTest, AnEmptyTargetIsTheDomainRoot) {
    const std::string name = "moved-" + std::to_string(getpid());
    MakeOU(name);
    EXPECT_TRUE(Runs(kMov, "1/0/0", kMoveHeader, {{"{T}," + name}}));
    const std::string atRoot = "OU=" + name + "," + gSession.DomainDN;
    EXPECT_TRUE(Binds(atRoot));
    DeleteTree(atRoot);
}

}  // namespace
}  // namespace orin::test
