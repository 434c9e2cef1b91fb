// The imitations of an OU delete and an OU move against the test DC: the checks of the
// production runs, and a directory left as it was.

#include "ou_imitate_compare_support.h"

namespace orin::test {
namespace {

class OUImitateDeleteMove : public OUModesTest {};

TEST_F(OUImitateDeleteMove, DeleteChecksAndWarnsOfChildren) {
    for (const char* names : {"full", "full,child", "empty"}) MakeOU(names);
    const std::string log = Run(5, {"!OU-Start,,OU-End,Mirror,IfDelSubObj",
                                    "{T},full,,,",           // 2: not empty, and no flag
                                    "{T},full,,,yes",        // 3
                                    "{T},empty,,,",          // 4
                                    "{T},none,,,yes",        // 5
                                    "{T},empty,,,maybe",     // 6: said with the Mirror words
                                    "{T},empty,,,no",        // 7: nothing remembers line 4
                                    "{T},empty,,,YES",       // 8
                                    "{T},whatever,,yes,"});  // 9: a Mirror row only ends
    EXPECT_EQ(log, Lines({"2行, 警告, OU配下にｵﾌﾞｼﾞｪｸﾄが存在するため、ﾍｯﾀﾞの定義に従い削除処理を"
                          "中止しました。",
                          "5行, 失敗, ｵﾌﾞｼﾞｪｸﾄが存在しないか、ﾊﾟｽが間違っています。",
                          "6行, 失敗, ﾍｯﾀﾞ列[Mirror]に無効なﾃﾞｰﾀが入力されました。"}));
    EXPECT_EQ(gRun.lngSuccessCnt, 4);
    EXPECT_EQ(gRun.lngWarningCnt, 1);
    EXPECT_EQ(gRun.lngFailureCnt, 2);
    EXPECT_TRUE(Exists("full,child"));
    EXPECT_TRUE(Exists("empty"));

    EXPECT_EQ(Run(5, {"!OU-Start,,OU-End,Mirror", "{T},empty,,"}),
              Lines({"2行, 失敗, ﾍｯﾀﾞ列[IfDelSubObj]は存在しません。ﾍｯﾀﾞを定義してください。"}));
}

TEST_F(OUImitateDeleteMove, MoveChecksTargetAndSource) {
    MakeOU("src");
    MakeOU("dest");
    const std::string log = Run(6, {"!OU-Start,,OU-End,Mirror,NewOU-Start,,NewOU-End,NewRDN",
                                    "{T},src,,,{T},dest,,",        // 2
                                    "{T},none,,,{T},dest,,",       // 3
                                    "{T},src,,,{T},nowhere,,",     // 4
                                    "{T},src,,,{T},,,",            // 5: where it is already
                                    "{T},src,,,{T},dest,,src",     // 6: the name it has
                                    "{T},src,,,,,,",               // 7: to the domain root
                                    "{T},src,,,{T},dest,,src2"});  // 8
    EXPECT_EQ(log, Lines({"3行, 失敗, ｵﾌﾞｼﾞｪｸﾄは移動元の場所に存在しません。",
                          "4行, 失敗, ｵﾌﾞｼﾞｪｸﾄの移動先ｺﾝﾃﾅは存在しないか、ﾊﾟｽが間違っています。",
                          "5行, 失敗, ｵﾌﾞｼﾞｪｸﾄを移動元と同じ場所に移動することができません。",
                          "6行, 警告, [名前（新）]は変更前と同じであるため変更しません。"}));
    EXPECT_EQ(gRun.lngSuccessCnt, 3);
    EXPECT_EQ(gRun.lngWarningCnt, 1);
    EXPECT_EQ(gRun.lngFailureCnt, 3);
    EXPECT_TRUE(Exists("src"));
    EXPECT_FALSE(Exists("dest,src"));

    EXPECT_EQ(Run(6, {"!OU-Start,,OU-End,Mirror,NewRDN", "{T},src,,,x"}),
              Lines({"2行, 失敗, ﾍｯﾀﾞ列[NewOU-Start]と[NewOU-End]の片方または両方が存在しません。"
                     "両方のﾍｯﾀﾞ列を定義してください。"}));
}

}  // namespace
}  // namespace orin::test
