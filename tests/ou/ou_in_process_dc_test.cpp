// What the OU scenarios (tests/scenarios/ou) can't show, in one process against the test DC: a
// Cancel at a given row, a second run in the process that ran the first (as the window does),
// the operator's yields and the trace of a subtree delete, and a child protected by a deny ACE.
//
// Server behaviour these tests expect (Samba 4.17 and Windows alike): a deny ACE for Everyone on
// deleting an object, and on deleting the children of its container, keeps the domain's
// administrator from deleting it.

#include "ou_test_support.h"

namespace orin::test {
namespace {

using OUInProcess = OUTest;

const std::string kAceHeader =
    "!OU-Start,,OU-End,Mirror,AceSamAccountName,AceOpeMode,AccessRight,InheritOption,PermitOrDeny";

TEST_F(OUInProcess, CancelBetweenMirrorRowsTakesTheOUAwayButNotAWholeOne) {
    const std::string mirror = "{T},half,,YES,Domain Admins,0,6";
    op.onYield = [](int yields) {
        if (yields == 3) gRun.intCancel = 1;  // after the first Mirror row of the second OU
    };
    EXPECT_TRUE(Runs(kAdd, "1/0/0", kAceHeader, {{"{T},done"}, {"{T},half"}, {mirror}, {mirror}}));
    EXPECT_EQ(gRun.lngCancelLine, 4);
    EXPECT_EQ(gRun.lngLastCreatedLine, 3);
    EXPECT_EQ(Existing({"done", "half"}), "done");

    op.onYield = [](int) { gRun.intCancel = 1; };
    EXPECT_TRUE(Runs(kAdd, "1/0/0", kAceHeader, {{"{T},whole"}, {"{T},never"}}));
    EXPECT_EQ(gRun.lngCancelLine, 2);
    EXPECT_EQ(Existing({"whole", "never"}), "whole");
}

// A run whose first row is a Mirror row has no chain above it, and takes no name that the run
// before left pending.
TEST_F(OUInProcess, ASecondRunTakesNoNameTheFirstLeftPending) {
    for (const char* names : {"a", "same"}) MakeOU(names);
    const std::string header = "!OU-Start,,OU-End,Mirror,NewRDN";
    EXPECT_TRUE(Runs(kMdf, "1/0/0", header, {{"{T},same,,,same"}}));
    EXPECT_TRUE(Runs(kMdf, "1/0/0", header, {{"{T},a,,YES"}}));
    EXPECT_EQ(Existing({"a", "same"}), "a same");
}

class OUDeleteInProcess : public OUTest {
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

TEST_F(OUDeleteInProcess, ASubtreeDeleteYieldsAfterEachChildAndTracesItsSteps) {
    for (const char* names : {"tree", "tree,sub", "tree,sub,deeper"}) MakeOU(names);
    MakeAccount("group", "g", "tree");
    MakeAccount("user", "u", "tree,sub");
    Make("container", "CN=box," + PathOf("tree,sub,deeper"));
    TraceMode = 1;
    EXPECT_TRUE(Runs(kDel, "1/0/0", "!OU-Start,,OU-End,Mirror,IfDelSubObj", {{"{T},tree,,,yes"}}));
    TraceMode = 0;
    EXPECT_FALSE(Exists("tree"));
    const std::string trace = Join(ReadLines(TraceFilePath), "\n");
    EXPECT_NE(trace.find("ｻﾌﾞOU削除開始。 OUﾊﾟｽ=" + PathOf("tree,sub,deeper")), std::string::npos);
    EXPECT_NE(trace.find("OUでないｻﾌﾞｵﾌﾞｼﾞｪｸﾄを削除済み。"), std::string::npos);
    // The operator got the window after each of the five children, as well as per row.
    EXPECT_GE(op.yields, 1 + 5);
}

TEST_F(OUDeleteInProcess, AProtectedChildStopsTheSubtreeDeleteWhereItStands) {
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

}  // namespace
}  // namespace orin::test
