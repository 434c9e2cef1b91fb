#include <gtest/gtest.h>

#include <string>

#include "base/MessageTable.h"
#include "base/Messages.h"
#include "base/RunContext.h"

namespace orin {
namespace {

TEST(MessageTable, HoldsEveryBandInOrder) {
    auto entries = MessageEntries();
    ASSERT_EQ(entries.size(), 398u);
    EXPECT_EQ(entries.front().code, 1000);
    EXPECT_EQ(entries.back().code, 20500);
    for (size_t i = 0; i < entries.size(); ++i) {
        EXPECT_FALSE(entries[i].text.empty()) << entries[i].code;
        if (i > 0) {
            EXPECT_LT(entries[i - 1].code, entries[i].code);
        }
        EXPECT_EQ(MessageTemplate(entries[i].code), entries[i].text);
    }
    for (int code : {0, 999, 1002, 9999, 10002, 19999, 59999, 60001, 65535, -1})
        EXPECT_FALSE(MessageText(code).has_value()) << code;
}

// Texts whose spelling a careless copy would change.
TEST(MessageTable, TextsAreByteExact) {
    EXPECT_EQ(*MessageTemplate(1400),
              "ｵﾌﾞｼﾞｪｸﾄの既定ACLの削除処理が失敗しました。\r\n\t【考えられる原因】\r\n\t ・ "
              "実行ｺﾝﾋﾟｭｰﾀのDNSｻｰﾊﾞの設定がされていません。");
    EXPECT_EQ(*MessageTemplate(3062), "すべての既存のﾒﾝﾊﾞｰを削除できませんました。");
    EXPECT_EQ(*MessageTemplate(4210),
              "指定した[ﾊﾟｽ]は無効です。\"\\\\ｻｰﾊﾞｰ\\共有\\ﾌｫﾙﾀﾞ\"の形式で、"
              "有効なﾈｯﾄﾜｰｸﾊﾟｽを入力してください。");
    // The half-width full stop and the blank at the end.
    EXPECT_EQ(*MessageTemplate(10200),
              "指定のACE「%3」がｵﾌﾞｼﾞｪｸﾄのACLから見つからないため削除処理をｽｷｯﾌﾟしました｡ ");
}

TEST(MessageText, PutsTheRunsArgumentsInPlaceAsTheyAre) {
    gRun.MsgArg1 = "50%,%2";
    gRun.MsgArg2 = "大阪";
    gRun.AceArg = "EXAMPLE\\ops";
    EXPECT_EQ(*MessageText(10201),
              "削除対象外のACE「EXAMPLE\\ops」が既定のACLから見つかりませんでした｡ ");
    EXPECT_EQ(*MessageText(12001),
              "[ｺﾝﾋﾟｭｰﾀ名（Windows 2000 以前）]に次の非標準文字が含まれています：大阪");
    // An argument holding a placeholder, a "%" or a comma goes in unchanged.
    EXPECT_EQ(*MessageText(2005),
              "追加しようとしたｵﾌﾞｼﾞｪｸﾄがすでに追加先のｺﾝﾃﾅに存在しています。"
              "重複先のｵﾌﾞｼﾞｪｸﾄは行番号50%,%2のﾃﾞｰﾀにより追加されています。");
    gRun.MsgArg1.clear();
    gRun.MsgArg2.clear();
    gRun.AceArg.clear();
    EXPECT_EQ(FillMessage("%4 %% %", "a", "b", "c"), "%4 %% %");
    EXPECT_EQ(FillMessage("%3%2%1", "a", "b", "c"), "cba");
}

}  // namespace
}  // namespace orin
