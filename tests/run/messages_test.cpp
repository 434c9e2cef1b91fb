#include <gtest/gtest.h>

#include <string>

#include "run/MessageTable.h"
#include "run/Messages.h"
#include "run/RunContext.h"

namespace orin {
namespace {

TEST(MessageTable, HoldsEveryBand) {
    auto entries = MessageEntries();
    ASSERT_EQ(entries.size(), 398u);
    EXPECT_EQ(entries.front().code, 1000);
    EXPECT_EQ(entries.back().code, 20500);
    int failures = 0, warnings = 0, differences = 0;
    for (size_t i = 0; i < entries.size(); ++i) {
        EXPECT_FALSE(entries[i].text.empty()) << entries[i].code;
        if (entries[i].code < 10000)
            ++failures;
        else if (entries[i].code < 20000)
            ++warnings;
        else
            ++differences;
    }
    EXPECT_GT(failures, 250);
    EXPECT_EQ(warnings, 29);
    EXPECT_GT(differences, 90);
    // Codes a quick read of the table passes over: the user and computer range and the end.
    for (int code : {4000, 4117, 4500, 5000, 5410, 6000, 6410, 7000, 7111, 12150, 20306, 20500})
        EXPECT_TRUE(MessageTemplate(code).has_value()) << code;
}

TEST(MessageTable, TextsAreByteExact) {
    EXPECT_EQ(*MessageTemplate(1031), "ﾍｯﾀﾞ列[Mirror]に無効なﾃﾞｰﾀが入力されました。");
    EXPECT_EQ(*MessageTemplate(1400),
              "ｵﾌﾞｼﾞｪｸﾄの既定ACLの削除処理が失敗しました。\r\n\t【考えられる原因】\r\n\t ・ "
              "実行ｺﾝﾋﾟｭｰﾀのDNSｻｰﾊﾞの設定がされていません。");
    // The odd spellings stay.
    EXPECT_EQ(*MessageTemplate(3062), "すべての既存のﾒﾝﾊﾞｰを削除できませんました。");
    EXPECT_EQ(*MessageTemplate(6005), "ﾍｯﾀﾞ列[PermitOrDeny]に無効なﾃﾞｰﾀが入力されました。");
    // Quotes and backslashes inside a message.
    EXPECT_EQ(*MessageTemplate(4210),
              "指定した[ﾊﾟｽ]は無効です。\"\\\\ｻｰﾊﾞｰ\\共有\\ﾌｫﾙﾀﾞ\"の形式で、"
              "有効なﾈｯﾄﾜｰｸﾊﾟｽを入力してください。");
    // The half-width full stop and the blank at the end.
    EXPECT_EQ(*MessageTemplate(10200),
              "指定のACE「%3」がｵﾌﾞｼﾞｪｸﾄのACLから見つからないため削除処理をｽｷｯﾌﾟしました｡ ");
    EXPECT_EQ(
        *MessageTemplate(5002),
        "「ｺﾝﾋﾟｭｰﾀ名」は次の無効な文字と非標準文字の両方が含まれています：\r\n\t【無効な文字】%"
        "1\r\n\t【非標準文字】%2");
    EXPECT_EQ(*MessageTemplate(20500), "当該GPOﾘﾝｸが指定のｺﾝﾃﾅに存在しません。");
}

TEST(MessageText, PutsTheRunsArgumentsInPlace) {
    gRun.MsgArg1 = "東京";
    gRun.MsgArg2 = "大阪";
    gRun.AceArg = "EXAMPLE\\ops";
    EXPECT_EQ(*MessageText(20004),
              "ｵﾌﾞｼﾞｪｸﾄのﾌﾟﾛﾊﾟﾃｨ[都道府県]に相違がありました。\r\n\t【ｲﾝﾎﾟｰﾄﾃﾞｰﾀ内のﾌﾟﾛﾊﾟﾃｨ値】："
              "東京\r\n\t【ｵﾌﾞｼﾞｪｸﾄ実際のﾌﾟﾛﾊﾟﾃｨ値】：大阪");
    EXPECT_EQ(*MessageText(10201),
              "削除対象外のACE「EXAMPLE\\ops」が既定のACLから見つかりませんでした｡ ");
    EXPECT_EQ(*MessageText(12001),
              "[ｺﾝﾋﾟｭｰﾀ名（Windows 2000 以前）]に次の非標準文字が含まれています：大阪");
    // A message without placeholders ignores the arguments.
    EXPECT_EQ(*MessageText(1031), "ﾍｯﾀﾞ列[Mirror]に無効なﾃﾞｰﾀが入力されました。");
    // Arguments go in as they are, even when they hold a placeholder, a "%" or a comma.
    gRun.MsgArg1 = "50%,%2";
    EXPECT_EQ(*MessageText(2005),
              "追加しようとしたｵﾌﾞｼﾞｪｸﾄがすでに追加先のｺﾝﾃﾅに存在しています。"
              "重複先のｵﾌﾞｼﾞｪｸﾄは行番号50%,%2のﾃﾞｰﾀにより追加されています。");
    gRun.MsgArg1.clear();
    EXPECT_EQ(
        *MessageText(1009),
        "指定の所属するｸﾞﾙｰﾌﾟが所在ｺﾝﾃﾅに存在しません。所属するｸﾞﾙｰﾌﾟは行番号のﾃﾞｰﾀにより名前を変"
        "更されています。");
    gRun.MsgArg2.clear();
    gRun.AceArg.clear();
}

TEST(MessageText, UnknownCodesHaveNoText) {
    for (int code : {0, 999, 1002, 9999, 10002, 19999, 59999, 60001, 65535, -1})
        EXPECT_FALSE(MessageText(code).has_value()) << code;
    EXPECT_EQ(FillMessage("%4 %% %", "a", "b", "c"), "%4 %% %");
    EXPECT_EQ(FillMessage("%3%2%1", "a", "b", "c"), "cba");
}

}  // namespace
}  // namespace orin
