// The imitation of an OU modify against the test DC: the rename ledger carries the renames of
// earlier rows to the OUs, parents and managers of later ones, and nothing is written.

#include "ou_imitate_compare_support.h"

namespace orin::test {
namespace {

class OUImitateModify : public OUModesTest {};

TEST_F(OUImitateModify, LaterRowsSeeTheRenamesOfEarlierOnes) {
    for (const char* names : {"m1", "m1,k", "m2", "m3", "m4", "m4,k", "mgrs"}) MakeOU(names);
    MakeUser("mgrs", "boss");
    MakeUser("", "lonely");
    const std::string lonely = Sam("lonely");

    const std::string log =
        Run(7, {"!OU-Start,,OU-End,Mirror,NewRDN,description,MgrOU-Start,,MgrOU-End,MgrRDN,"
                "AceSamAccountName,AceOpeMode",
                "{T},m1,,,r1,,,,,,,",               // 2: m1 would become r1
                "{T},m1,k,,,d,,,,,,",               // 3: its child under the old name
                "{T},r1,,,,d,,,,,,",                // 4: the OU under its new name
                "{T},r1,k,,,d,,,,,,",               // 5: and its child
                "{T},m2,,,r1,,,,,,,",               // 6: r1 is taken by line 2
                "{T},m2,,,m1,,,,,,,",               // 7: m1 was freed by line 2
                "{T},m3,,,!c,,,,,,,",               // 8: a name can't be cleared
                "{T},mgrs,,,staff,,,,,,,",          // 9
                "{T},m3,,,,,{T},mgrs,,boss,,",      // 10: the manager's OU is renamed away
                "{T},m3,,,,,{T},staff,,boss,,",     // 11: found where it will be
                "{T},m3,,,,,{T},staff,,nobody,,",   // 12: no such manager there
                "{T},m3,,,,,{T},staff,sub,boss,,",  // 13: no such OU under the old name either
                "{T},m3,,,,,,,,," + lonely + ",1",  // 14: no ACE of this account to remove
                "{T},m9,,,,,,,,,,",                 // 15: no such OU
                "{T},m3,,,m3,,,,,,,",               // 16: the name it has already
                "{T},m4,,,r4,,,,,,,",               // 17: a chain whose rename is at its end...
                "{T},m4,,yes,,,,,,,,",              // 18: ...on this row
                "{T},m4,k,,,,,,,,,"});              // 19

    EXPECT_EQ(log, Lines({"3行, 失敗, このｵﾌﾞｼﾞｪｸﾄの親ｺﾝﾃﾅのOUﾊﾟｽに、2行目で名前を変更されたOUが"
                          "含まれているため親ｺﾝﾃﾅは実在しません。",
                          "6行, 失敗, [名前（新）]と同名のｵﾌﾞｼﾞｪｸﾄが存在します。重複先のｵﾌﾞｼﾞｪｸﾄは"
                          "行番号2のﾃﾞｰﾀにより変更されています。",
                          "8行, 失敗, ｵﾌﾞｼﾞｪｸﾄのﾌﾟﾛﾊﾟﾃｨ[名前]をｸﾘｱすることができません。これはOSの"
                          "仕様です。",
                          "10行, 失敗, 管理者所在ｺﾝﾃﾅのOUﾊﾟｽに、9行目で名前を変更されたOUが"
                          "含まれているため管理者所在ｺﾝﾃﾅは実在しません。",
                          "12行, 失敗, 管理者が所在ｺﾝﾃﾅに存在しません。",
                          "13行, 失敗, 管理者所在ｺﾝﾃﾅのOUﾊﾟｽに、これまでの処理で名前を変更された"
                          "OUが含まれているため、管理者所在ｺﾝﾃﾅは実在しません。",
                          "14行, 警告, 指定のACE「" + lonely +
                              "」がｵﾌﾞｼﾞｪｸﾄのACLから見つからないため削除処理をｽｷｯﾌﾟしました｡ ",
                          "15行, 失敗, ｵﾌﾞｼﾞｪｸﾄが存在しないか、ﾊﾟｽが間違っています。",
                          "16行, 失敗, [名前（新）]と同名のｵﾌﾞｼﾞｪｸﾄが存在します。",
                          "19行, 失敗, このｵﾌﾞｼﾞｪｸﾄの親ｺﾝﾃﾅのOUﾊﾟｽに、18行目で名前を変更されたOUが"
                          "含まれているため親ｺﾝﾃﾅは実在しません。"}));
    EXPECT_EQ(gRun.lngSuccessCnt, 7);
    EXPECT_EQ(gRun.lngWarningCnt, 1);
    EXPECT_EQ(gRun.lngFailureCnt, 9);

    // The directory is as it was.
    EXPECT_TRUE(Exists("m1"));
    EXPECT_TRUE(Exists("mgrs"));
    EXPECT_FALSE(Exists("r1"));
    EXPECT_FALSE(Exists("staff"));
}

TEST_F(OUImitateModify, AFailedRowSkipsTheRestOfItsChain) {
    MakeOU("a");
    const std::string log = Run(7, {"!OU-Start,,OU-End,Mirror,NewRDN,InheritParentACL",
                                    "{T},a,,,b,7",   // 2: fails, so no rename is entered
                                    "{T},a,,yes,,",  // 3: skipped
                                    "{T},b,,,,"});   // 4: so b is still unknown
    EXPECT_EQ(log, Lines({"2行, 失敗, ﾍｯﾀﾞ列[InheritParentACL]に無効なﾃﾞｰﾀが入力されました。",
                          "4行, 失敗, ｵﾌﾞｼﾞｪｸﾄが存在しないか、ﾊﾟｽが間違っています。"}));
    EXPECT_EQ(gRun.lngFailureCnt, 2);
    EXPECT_EQ(gRun.lngSuccessCnt, 0);
}

}  // namespace
}  // namespace orin::test
