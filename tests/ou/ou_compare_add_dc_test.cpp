// The compare of an OU add against the test DC: properties and manager, and the access-control
// columns against the descriptor as the server stores it.
//
// Server behaviour this test expects (seen on Samba 4.17, and what Windows does too): an allow
// ACE written with GENERIC_ALL and container-inherit (AceFlags 2) is stored as two halves, an
// inherit-only one (AceFlags 10) keeping the generic mask and an effective one (AceFlags 0) with
// the mask mapped to 0x000F01FF. The compare must take the pair for the ACE the row asked for.

#include "engines/access/AccessControl.h"
#include "ou_imitate_compare_support.h"

namespace orin::test {
namespace {

class OUCompareAdd : public OUModesTest {};

const std::string kInCsv = "\r\n\t【ｲﾝﾎﾟｰﾄﾃﾞｰﾀ内のﾌﾟﾛﾊﾟﾃｨ値】：";
const std::string kInDirectory = "\r\n\t【ｵﾌﾞｼﾞｪｸﾄ実際のﾌﾟﾛﾊﾟﾃｨ値】：";

TEST_F(OUCompareAdd, PropertiesAndManager) {
    const std::string boss = MakeUser("", "boss");
    MakeOU("same", {{"c", "JP"},
                    {"postalCode", "100-0001"},
                    {"st", "東京都"},
                    {"l", "千代田区"},
                    {"street", "1-1\r\n2F"},
                    {"description", "本社"},
                    {"managedBy", boss}});
    MakeOU("other", {{"c", "US"}, {"street", "x"}, {"description", "old"}});

    const std::string log =
        Run(8, {"!OU-Start,,OU-End,Mirror,c,postalCode,st,l,street,description,"
                "MgrOU-Start,,MgrOU-End,MgrRDN",
                // 2: case is no difference, and "<Rtn>" is the stored line break
                "{T},same,,,jp,100-0001,東京都,千代田区,1-1<rtn>2F,本社,{T},,,BOSS",
                "{T},other,,,JP,,,,y<Rtn>z,new,{T},,,boss",  // 3
                "{T},ghost,,,,,,,,,,,,",                     // 4: no such OU
                "{T},other,,,,,,,,,{T},no,,boss",            // 5: no such container
                "{T},same,,,,,,,,,{T},,,nobody"});           // 6: no such manager
    const std::string boss_canonical = "orin.test/" + Top() + "/boss";
    EXPECT_EQ(log, Lines({"3行, 相違, ｵﾌﾞｼﾞｪｸﾄのﾌﾟﾛﾊﾟﾃｨ[国/地域]に相違がありました。" + kInCsv +
                              "JP" + kInDirectory + "US",
                          "3行, 相違, ｵﾌﾞｼﾞｪｸﾄのﾌﾟﾛﾊﾟﾃｨ[番地]に相違がありました。" + kInCsv +
                              "y<改行>z" + kInDirectory + "x",
                          "3行, 相違, ｵﾌﾞｼﾞｪｸﾄのﾌﾟﾛﾊﾟﾃｨ[説明]に相違がありました。" + kInCsv +
                              "new" + kInDirectory + "old",
                          "3行, 相違, ｵﾌﾞｼﾞｪｸﾄのﾌﾟﾛﾊﾟﾃｨ[管理者]に相違がありました。" + kInCsv +
                              boss_canonical + kInDirectory,
                          "4行, 失敗, ｵﾌﾞｼﾞｪｸﾄが存在しません。",
                          "5行, 失敗, ｵﾌﾞｼﾞｪｸﾄのﾌﾟﾛﾊﾟﾃｨ[管理者]の設定が失敗しました。管理者の所在OU"
                          "（またはﾃﾞﾌｫﾙﾄｺﾝﾃﾅ）が存在しないか、ﾊﾟｽが間違っています。",
                          "6行, 失敗, 管理者が所在ｺﾝﾃﾅに存在しません。"}));
    EXPECT_EQ(gRun.lngMatchCnt, 1);
    EXPECT_EQ(gRun.lngDiffCnt, 1);
    EXPECT_EQ(gRun.lngFailureCnt, 3);
}

TEST_F(OUCompareAdd, AccessControlAgainstTheStoredDescriptor) {
    DirObject acl = MakeOU("acl");
    MakeUser("", "aceuser");
    MakeUser("", "bystand");
    const std::string a = Sam("aceuser");
    const std::string b = Sam("bystand");
    ASSERT_TRUE(AddAceToObject(acl, a, 0x10000000, 0, CodedValue(2)));
    // The two halves the rows below are compared with.
    ASSERT_TRUE(AceExists(acl, a, 0, CodedValue(0)));
    ASSERT_TRUE(AceExists(acl, a, 0, CodedValue(10)));

    const std::string log =
        Run(8, {"!OU-Start,,OU-End,Mirror,InheritParentACL,RemDefaultACL,DoNotRemTheseACE,"
                "AceSamAccountName,AceOpeMode,AccessRight,PermitOrDeny,InheritOption",
                "{T},acl,,,0,,," + a + ",0,0,,",                     // 2: full control, both halves
                "{T},acl,,yes,,,," + a + ",0,0,p,2",                 // 3: the inherit-only half
                "{T},acl,,,1,,," + a + ",0,0,D,",                    // 4
                "{T},acl,,,,yes," + a + " ; nosuch," + a + ",1,,,",  // 5
                "{T},acl,,,,,," + a + ",0,0,,4",                     // 6: no half of flags 14
                "{T},acl,,,,,," + b + ",1,,,",                       // 7: nothing of b to remove
                "{T},acl,,,,,," + a + ",0,0;1;15,,",                 // 8
                "{T},acl,,,,,," + a + ",7,,,",                       // 9
                "{T},acl,,,x,,,,,,,"});                              // 10
    EXPECT_EQ(log,
              Lines({"4行, 相違, ｵﾌﾞｼﾞｪｸﾄのｵﾌﾟｼｮﾝ[継承可能なｱｸｾｽ許可を親からこのｵﾌﾞｼﾞｪｸﾄに"
                     "継承できるようにする]に相違がありました。\r\n\t【ｲﾝﾎﾟｰﾄﾃﾞｰﾀ内のｵﾌﾟｼｮﾝ値】："
                     "無効\r\n\t【ｵﾌﾞｼﾞｪｸﾄ実際のｵﾌﾟｼｮﾝ値】：有効",
                     "4行, 相違, ﾍｯﾀﾞ[PermitOrDeny]の処理結果に相違がありました。",
                     "5行, 相違, ﾍｯﾀﾞ[DoNotRemTheseACE]の処理結果に相違がありました。"
                     "削除されないはずの下記ACEがｵﾌﾞｼﾞｪｸﾄのACLから見つかりません：\r\n\tnosuch",
                     "5行, 相違, ﾍｯﾀﾞ[AceOpeMode]の処理結果に相違がありました。削除されるはずの"
                     "右記ACEがｵﾌﾞｼﾞｪｸﾄのACLに存在します：" +
                         a,
                     "6行, 相違, ﾍｯﾀﾞ[InheritOption]の処理結果に相違がありました。",
                     "6行, 相違, ﾍｯﾀﾞ[AccessRight]の処理結果に相違がありました。右記のｺｰﾄﾞに"
                     "該当するｱｸｾｽ許可がACEに設定されていません：0",
                     "6行, 相違, ﾍｯﾀﾞ[PermitOrDeny]の処理結果に相違がありました。",
                     "8行, 失敗, ﾍｯﾀﾞ列[AccessRight]に無効なﾃﾞｰﾀが入力されました。",
                     "9行, 失敗, ﾍｯﾀﾞ列[AceOpeMode]に無効なﾃﾞｰﾀが入力されました。",
                     "10行, 失敗, ﾍｯﾀﾞ列[InheritParentACL]に無効なﾃﾞｰﾀが入力されました。"}));
    EXPECT_EQ(gRun.lngMatchCnt, 2);
    EXPECT_EQ(gRun.lngDiffCnt, 3);
    EXPECT_EQ(gRun.lngFailureCnt, 3);
}

}  // namespace
}  // namespace orin::test
