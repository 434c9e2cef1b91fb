// The compare of an OU modify against the test DC, on a directory set up as a production run
// would have left it: "!C" expectations, managers, and an OU renamed by its row, found under its
// new name by that row and, through the rename ledger, by the rows after it.

#include "ou_imitate_compare_support.h"

namespace orin::test {
namespace {

class OUCompareModify : public OUModesTest {};

TEST_F(OUCompareModify, ClearedValuesManagersAndRenames) {
    const std::string boss = MakeUser("", "boss");
    // "old" was renamed to "new" by the production run, and its manager is boss2 inside it.
    DirObject renamed = MakeOU("new", {{"description", "d"}, {"st", "Tokyo"}});
    renamed.Put("managedBy", MakeUser("new", "boss2"));
    ASSERT_TRUE(renamed.SetInfo().ok());
    MakeOU("new,child", {{"description", "x"}});
    MakeOU("plain", {{"description", "keep"}, {"managedBy", boss}});

    const std::string log =
        Run(11, {"!OU-Start,,OU-End,Mirror,NewRDN,st,l,description,MgrOU-Start,,MgrOU-End,MgrRDN,"
                 "InheritParentACL",
                 "{T},old,,,new,tokyo,!C,d,,,,,",  // 2: found under its new name
                 "{T},old,,yes,,,,,,,,,",          // 3: the chain's next row, through the ledger
                 "{T},old,child,,,,,!c,,,,,",      // 4: an OU inside the renamed one
                 "{T},plain,,,,!C,,!C,,,,!c,",     // 5
                 "{T},new,,,,,,,{T},old,,boss2,",  // 6: the manager's OU, renamed above
                 "{T},plain,,,,,,,{T},nowhere,,boss,",  // 7
                 "{T},plain,,,,,,,{T},,,ghost,",        // 8
                 "{T},plain,,,,,,,,,,,1",               // 9
                 "{T},gone,,,again,,,,,,,,",            // 10
                 "{T},gone,,,,,,,,,,,",                 // 11
                 "{T},plain,,,!c,,,,,,,,"});            // 12
    EXPECT_EQ(log,
              Lines({"4行, 相違, ｵﾌﾞｼﾞｪｸﾄのﾌﾟﾛﾊﾟﾃｨ[説明]に相違がありました。ﾌﾟﾛﾊﾟﾃｨの値が"
                     "ｸﾘｱされていません。",
                     "5行, 相違, ｵﾌﾞｼﾞｪｸﾄのﾌﾟﾛﾊﾟﾃｨ[説明]に相違がありました。ﾌﾟﾛﾊﾟﾃｨの値が"
                     "ｸﾘｱされていません。",
                     "5行, 相違, ｵﾌﾞｼﾞｪｸﾄのﾌﾟﾛﾊﾟﾃｨ[管理者]に相違がありました。ﾌﾟﾛﾊﾟﾃｨの値が"
                     "ｸﾘｱされていません。",
                     "7行, 相違, ｵﾌﾞｼﾞｪｸﾄのﾌﾟﾛﾊﾟﾃｨ[管理者]に相違がありました。管理者の所在ｺﾝﾃﾅが"
                     "存在しません。",
                     "8行, 相違, ｵﾌﾞｼﾞｪｸﾄのﾌﾟﾛﾊﾟﾃｨ[管理者]に相違がありました。管理者が所在ｺﾝﾃﾅに"
                     "存在しません。",
                     "9行, 相違, ｵﾌﾞｼﾞｪｸﾄのｵﾌﾟｼｮﾝ[継承可能なｱｸｾｽ許可を親からこのｵﾌﾞｼﾞｪｸﾄに"
                     "継承できるようにする]に相違がありました。\r\n\t【ｲﾝﾎﾟｰﾄﾃﾞｰﾀ内のｵﾌﾟｼｮﾝ値】："
                     "無効\r\n\t【ｵﾌﾞｼﾞｪｸﾄ実際のｵﾌﾟｼｮﾝ値】：有効",
                     "10行, 失敗, 名前が変更されたはずのｵﾌﾞｼﾞｪｸﾄが存在しません。",
                     "11行, 失敗, ｵﾌﾞｼﾞｪｸﾄが存在しません。",
                     "12行, 失敗, ｵﾌﾞｼﾞｪｸﾄのﾌﾟﾛﾊﾟﾃｨ[名前]をｸﾘｱすることができません。これはOSの"
                     "仕様です。"}));
    EXPECT_EQ(gRun.lngMatchCnt, 2);  // lines 2-3 and 6
    EXPECT_EQ(gRun.lngDiffCnt, 5);
    EXPECT_EQ(gRun.lngFailureCnt, 3);
}

}  // namespace
}  // namespace orin::test
