// The compares of an OU delete and an OU move against the test DC, on directories set up as a
// production run would have left them.

#include "ou_imitate_compare_support.h"

namespace orin::test {
namespace {

class OUCompareDeleteMove : public OUModesTest {};

TEST_F(OUCompareDeleteMove, DeletedOUsAreGone) {
    MakeOU("kept");
    MakeOU("kept,child");
    const std::string log = Run(9, {"!OU-Start,,OU-End,Mirror,IfDelSubObj",
                                    "{T},kept,,,yes",    // 2: should have gone with its child
                                    "{T},gone,,,yes",    // 3
                                    "{T},kept,,,no",     // 4: may rightly have stayed
                                    "{T},kept,,,bad",    // 5
                                    "{T},kept,,yes,"});  // 6: the chain of a failed row
    EXPECT_EQ(log, Lines({"2行, 相違, ﾍｯﾀﾞ[IfDelSubObj]の処理結果に相違がありました。"
                          "ｵﾌﾞｼﾞｪｸﾄが削除されていません。",
                          "5行, 失敗, ﾍｯﾀﾞ列[Mirror]に無効なﾃﾞｰﾀが入力されました。"}));
    EXPECT_EQ(gRun.lngDiffCnt, 1);
    EXPECT_EQ(gRun.lngMatchCnt, 2);
    EXPECT_EQ(gRun.lngFailureCnt, 1);
}

TEST_F(OUCompareDeleteMove, MovedOUsStandAtTheirTarget) {
    for (const char* names : {"dest", "dest,moved", "stay", "dest,renamed"}) MakeOU(names);
    const std::string log = Run(10, {"!OU-Start,,OU-End,Mirror,NewOU-Start,,NewOU-End,NewRDN",
                                     "{T},moved,,,{T},dest,,",       // 2
                                     "{T},stay,,,{T},dest,,",        // 3: still at its source
                                     "{T},lost,,,{T},dest,,",        // 4: nowhere
                                     "{T},old,,,{T},dest,,renamed",  // 5: moved and renamed
                                     "{T},stay,,,{T},nowhere,,"});   // 6
    EXPECT_EQ(log, Lines({"3行, 相違, 移動されるはずのｵﾌﾞｼﾞｪｸﾄが移動元に存在します。",
                          "4行, 相違, 移動されるはずのｵﾌﾞｼﾞｪｸﾄが移動先に存在しません。",
                          "6行, 失敗, ｵﾌﾞｼﾞｪｸﾄの移動先ｺﾝﾃﾅは存在しないか、ﾊﾟｽが間違っています。"}));
    EXPECT_EQ(gRun.lngMatchCnt, 2);
    EXPECT_EQ(gRun.lngDiffCnt, 2);
    EXPECT_EQ(gRun.lngFailureCnt, 1);
}

}  // namespace
}  // namespace orin::test
