#include <gtest/gtest.h>

#include <string>

#include "run/Identifiers.h"

namespace orin {
namespace {

const char* const kLabels[] = {"組織単位", "ｸﾞﾙｰﾌﾟ", "ﾕｰｻﾞｰ", "ｺﾝﾋﾟｭｰﾀ", "共有ﾌｫﾙﾀﾞ", "GPOﾘﾝｸ"};
const char* const kWords[] = {"追加", "削除", "移動", "変更"};

// The title a code must have, built from the naming rule; "" for a code outside the numbering.
std::string ExpectedTitle(int code) {
    if (code == 0) return "一括ｴｸｽﾎﾟｰﾄ";
    if (code == 1) return "一括ｲﾝﾎﾟｰﾄ";
    if (code == 64) return "GPOﾘﾝｸのｴｸｽﾎﾟｰﾄ";
    if (code == 154) return "GPOﾘﾝｸｴｸｽﾎﾟｰﾄのﾃﾞｰﾀ照合";
    if (code >= 10 && code <= 58) {
        const int kind = code / 10 - 1, step = code % 10;
        const std::string label = kLabels[kind];
        if (step <= 3) return label + "の本番" + kWords[step];
        if (step == 4) return label + "のｴｸｽﾎﾟｰﾄ";
        if (step <= 8) return label + "の模擬" + kWords[step - 5];
        return "";
    }
    if (code >= 100 && code <= 144) {
        const int kind = (code - 100) / 10, op = code % 10;
        const std::string label = kLabels[kind];
        if (op <= 3) return label + kWords[op] + "のﾃﾞｰﾀ照合";
        if (op == 4) return label + "ｴｸｽﾎﾟｰﾄのﾃﾞｰﾀ照合";
    }
    return "";
}

TEST(RunTitle, EveryCodeHasItsTitleAndTheGapsAreEmpty) {
    int titled = 0;
    for (int code = -5; code <= 200; ++code) {
        SCOPED_TRACE(code);
        EXPECT_EQ(RunTitle(static_cast<OperationCode>(code)), ExpectedTitle(code));
        if (!ExpectedTitle(code).empty()) ++titled;
    }
    EXPECT_EQ(titled, 2 + 5 * 9 + 1 + 5 * 5 + 1);
    // The examples operators know, and the gaps in the numbering.
    EXPECT_EQ(RunTitle(10), "組織単位の本番追加");
    EXPECT_EQ(RunTitle(26), "ｸﾞﾙｰﾌﾟの模擬削除");
    EXPECT_EQ(RunTitle(34), "ﾕｰｻﾞｰのｴｸｽﾎﾟｰﾄ");
    EXPECT_EQ(RunTitle(132), "ｺﾝﾋﾟｭｰﾀ移動のﾃﾞｰﾀ照合");
    EXPECT_EQ(RunTitle(144), "共有ﾌｫﾙﾀﾞｴｸｽﾎﾟｰﾄのﾃﾞｰﾀ照合");
    for (int gap : {2, 9, 19, 29, 59, 60, 63, 65, 99, 105, 145, 153, 155, 32767})
        EXPECT_EQ(RunTitle(static_cast<OperationCode>(gap)), "") << gap;
}

TEST(OperationCode, FollowsTheNumberingForEveryKindOperationAndMode) {
    EXPECT_EQ(OperationCodeFor(ObjectKind::OU, OperationKind::Add, RunMode::Production), 10);
    EXPECT_EQ(OperationCodeFor(ObjectKind::Group, OperationKind::Exp, RunMode::Production), 24);
    EXPECT_EQ(OperationCodeFor(ObjectKind::User, OperationKind::Mdf, RunMode::Imitate), 38);
    EXPECT_EQ(OperationCodeFor(ObjectKind::Computer, OperationKind::Mov, RunMode::Compare), 132);
    EXPECT_EQ(OperationCodeFor(ObjectKind::SharedFolder, OperationKind::Exp, RunMode::Compare),
              144);
    EXPECT_EQ(OperationCodeFor(ObjectKind::GpoLink, OperationKind::Exp, RunMode::Production), 64);
    EXPECT_EQ(OperationCodeFor(ObjectKind::GpoLink, OperationKind::Exp, RunMode::Compare), 154);
    // Runs that don't exist have no code.
    EXPECT_EQ(OperationCodeFor(ObjectKind::OU, OperationKind::Exp, RunMode::Imitate), -1);
    EXPECT_EQ(OperationCodeFor(ObjectKind::GpoLink, OperationKind::Add, RunMode::Production), -1);
    EXPECT_EQ(OperationCodeFor(ObjectKind::GpoLink, OperationKind::Exp, RunMode::Imitate), -1);
    EXPECT_EQ(OperationCodeFor(static_cast<ObjectKind>(7), OperationKind::Add, RunMode::Production),
              -1);

    // Every code of a real run has a title.
    for (int k = 0; k <= 5; ++k)
        for (int o = 0; o <= 4; ++o)
            for (RunMode m : {RunMode::Production, RunMode::Imitate, RunMode::Compare}) {
                OperationCode code =
                    OperationCodeFor(static_cast<ObjectKind>(k), static_cast<OperationKind>(o), m);
                if (code != -1) {
                    EXPECT_NE(RunTitle(code), "") << code;
                }
            }
}

TEST(RowOperationTitle, NamesTheRunOfEachRowOperation) {
    EXPECT_EQ(RowOperationTitle(ObjectKind::OU, 0), "組織単位の本番追加");
    EXPECT_EQ(RowOperationTitle(ObjectKind::Group, 3), "ｸﾞﾙｰﾌﾟの本番変更");
    EXPECT_EQ(RowOperationTitle(ObjectKind::User, 5), "ﾕｰｻﾞｰの模擬削除");
    EXPECT_EQ(RowOperationTitle(ObjectKind::Computer, 10), "ｺﾝﾋﾟｭｰﾀ移動のﾃﾞｰﾀ照合");
    EXPECT_EQ(RowOperationTitle(ObjectKind::SharedFolder, 12), "共有ﾌｫﾙﾀﾞｴｸｽﾎﾟｰﾄのﾃﾞｰﾀ照合");
    EXPECT_EQ(RowOperationTitle(ObjectKind::GpoLink, 12), "GPOﾘﾝｸｴｸｽﾎﾟｰﾄのﾃﾞｰﾀ照合");
    for (int k = 0; k <= 4; ++k)
        for (RowOperation op = 0; op <= 12; ++op)
            EXPECT_NE(RowOperationTitle(static_cast<ObjectKind>(k), op), "") << k << "/" << op;
    EXPECT_EQ(RowOperationTitle(ObjectKind::OU, 13), "");
    EXPECT_EQ(RowOperationTitle(ObjectKind::OU, -1), "");
    EXPECT_EQ(RowOperationTitle(ObjectKind::GpoLink, 0), "");
}

}  // namespace
}  // namespace orin
