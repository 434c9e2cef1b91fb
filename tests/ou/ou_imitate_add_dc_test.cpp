// The imitation of an OU add against the test DC: the add ledger standing in for the OUs that
// earlier rows would make, the checks of the add, and a directory left as it was.

#include "ou_imitate_compare_support.h"

namespace orin::test {
namespace {

class OUImitateAdd : public OUModesTest {};

TEST_F(OUImitateAdd, EarlierRowsStandInForTheOUsTheyWouldAdd) {
    MakeOU("old");
    Make("container", "CN=box," + ou().Rdn(), {});
    const std::string missing = Sam("nosuch");

    const std::string log = Run(
        4, {"!OU-Start,,OU-End,Mirror,InheritParentACL,AceSamAccountName,AceOpeMode,AccessRight",
            "{T},a,,,,,,",                      // 2: passes, enters the ledger
            "{T},a,,,,,,",                      // 3: the same OU again
            "{T},a,b,,,,,",                     // 4: a child of an OU that line 2 adds
            "{T},c,,,9,,,",                     // 5: fails after entering the ledger
            "{T},c,d,,,,,",                     // 6: so its child has no parent
            "{T},old,,,,,,",                    // 7: in the directory already
            "{T},box,,,,,,",                    // 8: the name is held by a container
            "{T},e,,,," + missing + ",0,0",     // 9: no such account
            "{T},f,,,,Administrator,0,0",       // 10
            "{T},f,,yes,,SYSTEM,0,0",           // 11: a Mirror row of line 10's OU
            "{T},g,,,,Administrator,5,0",       // 12: no such AceOpeMode
            "{T},h,,,,Administrator,0,99",      // 13: no such AccessRight
            "{T},i,,,," + missing + ",0,0",     // 14
            "{T},i,,yes,,Administrator,0,0"});  // 15: checked, then counted as failed

    EXPECT_EQ(log,
              Lines({"3行, 失敗, 追加しようとしたｵﾌﾞｼﾞｪｸﾄがすでに追加先のｺﾝﾃﾅに存在しています。"
                     "重複先のｵﾌﾞｼﾞｪｸﾄは行番号2のﾃﾞｰﾀにより追加されています。",
                     "5行, 失敗, ﾍｯﾀﾞ列[InheritParentACL]に無効なﾃﾞｰﾀが入力されました。",
                     "6行, 失敗, OUの親OUが存在しないか、ﾊﾟｽが間違っています。",
                     "7行, 失敗, 追加対象OUがすでに追加先のｺﾝﾃﾅに存在します。",
                     "8行, 失敗, 追加対象OUと同じ名前のOUでないｵﾌﾞｼﾞｪｸﾄがすでに追加先のｺﾝﾃﾅに"
                     "存在します。",
                     "9行, 失敗, ﾍｯﾀﾞ列[AceSamAccountName]で指定したｱｶｳﾝﾄは存在しません。",
                     "12行, 失敗, ﾍｯﾀﾞ列[AceOpeMode]に無効なﾃﾞｰﾀが入力されました。",
                     "13行, 失敗, ﾍｯﾀﾞ列[AccessRight]に無効なﾃﾞｰﾀが入力されました。",
                     "14行, 失敗, ﾍｯﾀﾞ列[AceSamAccountName]で指定したｱｶｳﾝﾄは存在しません。"}));
    EXPECT_EQ(gRun.lngSuccessCnt, 3);  // lines 2, 4 and 10-11
    EXPECT_EQ(gRun.lngFailureCnt, 9);
    EXPECT_EQ(gRun.lngWarningCnt, 0);

    // Nothing was written: the test OU holds what the test made, and no more.
    auto children = ou().Object().Children();
    ASSERT_TRUE(children.ok());
    EXPECT_EQ(children->size(), 2u);
    EXPECT_FALSE(Exists("a"));
}

TEST_F(OUImitateAdd, TheManagerIsFoundAsTheAddWouldFindIt) {
    MakeUser("", "boss");
    Make("contact", "CN=card," + ou().Rdn(), {});

    const std::string log = Run(4, {"!OU-Start,,OU-End,Mirror,MgrOU-Start,,MgrOU-End,MgrRDN",
                                    "{T},m1,,,{T},,,boss",               // 2
                                    "{T},m2,,,{T},nowhere,,boss",        // 3: no such container
                                    "{T},m3,,,{T},,,ghost",              // 4: no such manager
                                    "{T},m4,,,{T},,,card",               // 5: not a user
                                    "{T},m5,,,Users,,,Administrator"});  // 6: default container
    EXPECT_EQ(log, Lines({"3行, 失敗, ｵﾌﾞｼﾞｪｸﾄのﾌﾟﾛﾊﾟﾃｨ[管理者]の設定が失敗しました。管理者の所在OU"
                          "（またはﾃﾞﾌｫﾙﾄｺﾝﾃﾅ）が存在しないか、ﾊﾟｽが間違っています。",
                          "4行, 失敗, 管理者が所在ｺﾝﾃﾅに存在しません。",
                          "5行, 失敗, 管理者として設定不可能なﾕｰｻﾞｰ以外のｵﾌﾞｼﾞｪｸﾄが指定されて"
                          "います。"}));
    EXPECT_EQ(gRun.lngSuccessCnt, 2);

    // Without the manager's span in the header the row can't name a container.
    EXPECT_EQ(Run(4, {"!OU-Start,,OU-End,Mirror,MgrRDN", "{T},m6,,,boss"}),
              Lines({"2行, 失敗, ﾍｯﾀﾞ列[MgrOU-Start]と[MgrOU-End]の片方または両方が存在しません。"
                     "両方のﾍｯﾀﾞ列を定義してください。"}));
}

TEST_F(OUImitateAdd, HeaderAndMirrorChecksComeFirst) {
    const std::string log = Run(4, {"!OU-Start,,OU-End,Mirror,RemDefaultACL",
                                    ",,,maybe,",       // 2: the Mirror cell before all else
                                    ",,,,",            // 3: a row of commas is skipped
                                    " ,  ,,no,",       // 4: an empty path
                                    "{T},r,,,sure"});  // 5
    EXPECT_EQ(log, Lines({"2行, 失敗, ﾍｯﾀﾞ列[Mirror]に無効なﾃﾞｰﾀが入力されました。",
                          "4行, 失敗, OUのﾊﾟｽが指定されていません。",
                          "5行, 失敗, ﾍｯﾀﾞ列[RemDefaultACL]に無効なﾃﾞｰﾀが入力されました。"}));

    EXPECT_EQ(Run(4, {"!OU-End,Mirror,OU-Start", "{T},,a"}),
              Lines({"2行, 失敗, ﾍｯﾀﾞ列[OU-Start]と[OU-End]の並び順が逆になっています。"}));
}

}  // namespace
}  // namespace orin::test
