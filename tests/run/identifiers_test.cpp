#include <gtest/gtest.h>

#include <set>
#include <string>

#include "base/Identifiers.h"

namespace orin {
namespace {

const char* const kLabels[] = {"組織単位", "ｸﾞﾙｰﾌﾟ", "ﾕｰｻﾞｰ", "ｺﾝﾋﾟｭｰﾀ", "共有ﾌｫﾙﾀﾞ", "GPOﾘﾝｸ"};
const char* const kWords[] = {"追加", "削除", "移動", "変更"};

// The title of a run, built from the naming rule; "" for a run that doesn't exist.
std::string ExpectedTitle(int kind, int op, RunMode mode) {
    const std::string label = kLabels[kind];
    if (kind == 5 && (op != 4 || mode == RunMode::Imitate)) return "";  // GPO links: export only
    if (mode == RunMode::Compare) return label + (op == 4 ? "ｴｸｽﾎﾟｰﾄ" : kWords[op]) + "のﾃﾞｰﾀ照合";
    if (op == 4) return mode == RunMode::Production ? label + "のｴｸｽﾎﾟｰﾄ" : "";
    return label + (mode == RunMode::Production ? "の本番" : "の模擬") + kWords[op];
}

TEST(Identifiers, EveryRunHasItsOwnCodeAndTitle) {
    std::set<int> codes = {0, 1};  // the bulk export and import
    for (int k = 0; k <= 5; ++k)
        for (int o = 0; o <= 4; ++o)
            for (RunMode m : {RunMode::Production, RunMode::Imitate, RunMode::Compare}) {
                SCOPED_TRACE(::testing::Message() << k << "/" << o << "/" << int(m));
                const std::string title = ExpectedTitle(k, o, m);
                const OperationCode code =
                    OperationCodeFor(static_cast<ObjectKind>(k), static_cast<OperationKind>(o), m);
                EXPECT_EQ(code == -1, title.empty());
                if (code != -1) {
                    EXPECT_EQ(RunTitle(code), title);
                    codes.insert(code);
                }
            }
    EXPECT_EQ(codes.size(), 2u + 5 * 9 + 1 + 5 * 5 + 1);  // no two runs share a code
    // Codes between the runs' have no title.
    for (int code = -5; code <= 200; ++code)
        EXPECT_EQ(RunTitle(static_cast<OperationCode>(code)).empty(), !codes.count(code)) << code;
    EXPECT_EQ(RunTitle(32767), "");
    // The numbering operators know.
    EXPECT_EQ(OperationCodeFor(ObjectKind::Group, OperationKind::Exp, RunMode::Production), 24);
    EXPECT_EQ(OperationCodeFor(ObjectKind::User, OperationKind::Mdf, RunMode::Imitate), 38);
    EXPECT_EQ(OperationCodeFor(ObjectKind::Computer, OperationKind::Mov, RunMode::Compare), 132);
    EXPECT_EQ(OperationCodeFor(ObjectKind::GpoLink, OperationKind::Exp, RunMode::Compare), 154);
    EXPECT_EQ(OperationCodeFor(static_cast<ObjectKind>(7), OperationKind::Add, RunMode::Production),
              -1);
    EXPECT_EQ(RunTitle(0), "一括ｴｸｽﾎﾟｰﾄ");
    EXPECT_EQ(RunTitle(1), "一括ｲﾝﾎﾟｰﾄ");
}

TEST(Identifiers, RowOperationTitleNamesTheRunOfEachRowOperation) {
    const RunMode modes[] = {RunMode::Production, RunMode::Imitate, RunMode::Compare};
    for (int k = 0; k <= 5; ++k)
        for (RowOperation op = 0; op <= 12; ++op) {
            const std::string title = op == 12 ? ExpectedTitle(k, 4, RunMode::Compare)
                                               : ExpectedTitle(k, op % 4, modes[op / 4]);
            EXPECT_EQ(RowOperationTitle(static_cast<ObjectKind>(k), op), title) << k << "/" << op;
        }
    EXPECT_EQ(RowOperationTitle(ObjectKind::OU, 13), "");
    EXPECT_EQ(RowOperationTitle(ObjectKind::OU, -1), "");
}

}  // namespace
}  // namespace orin
