#include "base/Identifiers.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace orin {
namespace {

struct TitleEntry {
    OperationCode code;
    std::string_view title;
};

// Every run title as it stands in the window caption, the run's message boxes, the log header
// and the cancel message. Kept as whole literals so that each reads exactly as shown.
// clang-format off
constexpr TitleEntry kTitles[] = {
        {0, "一括ｴｸｽﾎﾟｰﾄ"},
        {1, "一括ｲﾝﾎﾟｰﾄ"},
        {10, "組織単位の本番追加"},
        {11, "組織単位の本番削除"},
        {12, "組織単位の本番移動"},
        {13, "組織単位の本番変更"},
        {14, "組織単位のｴｸｽﾎﾟｰﾄ"},
        {15, "組織単位の模擬追加"},
        {16, "組織単位の模擬削除"},
        {17, "組織単位の模擬移動"},
        {18, "組織単位の模擬変更"},
        {20, "ｸﾞﾙｰﾌﾟの本番追加"},
        {21, "ｸﾞﾙｰﾌﾟの本番削除"},
        {22, "ｸﾞﾙｰﾌﾟの本番移動"},
        {23, "ｸﾞﾙｰﾌﾟの本番変更"},
        {24, "ｸﾞﾙｰﾌﾟのｴｸｽﾎﾟｰﾄ"},
        {25, "ｸﾞﾙｰﾌﾟの模擬追加"},
        {26, "ｸﾞﾙｰﾌﾟの模擬削除"},
        {27, "ｸﾞﾙｰﾌﾟの模擬移動"},
        {28, "ｸﾞﾙｰﾌﾟの模擬変更"},
        {30, "ﾕｰｻﾞｰの本番追加"},
        {31, "ﾕｰｻﾞｰの本番削除"},
        {32, "ﾕｰｻﾞｰの本番移動"},
        {33, "ﾕｰｻﾞｰの本番変更"},
        {34, "ﾕｰｻﾞｰのｴｸｽﾎﾟｰﾄ"},
        {35, "ﾕｰｻﾞｰの模擬追加"},
        {36, "ﾕｰｻﾞｰの模擬削除"},
        {37, "ﾕｰｻﾞｰの模擬移動"},
        {38, "ﾕｰｻﾞｰの模擬変更"},
        {40, "ｺﾝﾋﾟｭｰﾀの本番追加"},
        {41, "ｺﾝﾋﾟｭｰﾀの本番削除"},
        {42, "ｺﾝﾋﾟｭｰﾀの本番移動"},
        {43, "ｺﾝﾋﾟｭｰﾀの本番変更"},
        {44, "ｺﾝﾋﾟｭｰﾀのｴｸｽﾎﾟｰﾄ"},
        {45, "ｺﾝﾋﾟｭｰﾀの模擬追加"},
        {46, "ｺﾝﾋﾟｭｰﾀの模擬削除"},
        {47, "ｺﾝﾋﾟｭｰﾀの模擬移動"},
        {48, "ｺﾝﾋﾟｭｰﾀの模擬変更"},
        {50, "共有ﾌｫﾙﾀﾞの本番追加"},
        {51, "共有ﾌｫﾙﾀﾞの本番削除"},
        {52, "共有ﾌｫﾙﾀﾞの本番移動"},
        {53, "共有ﾌｫﾙﾀﾞの本番変更"},
        {54, "共有ﾌｫﾙﾀﾞのｴｸｽﾎﾟｰﾄ"},
        {55, "共有ﾌｫﾙﾀﾞの模擬追加"},
        {56, "共有ﾌｫﾙﾀﾞの模擬削除"},
        {57, "共有ﾌｫﾙﾀﾞの模擬移動"},
        {58, "共有ﾌｫﾙﾀﾞの模擬変更"},
        {64, "GPOﾘﾝｸのｴｸｽﾎﾟｰﾄ"},
        {100, "組織単位追加のﾃﾞｰﾀ照合"},
        {101, "組織単位削除のﾃﾞｰﾀ照合"},
        {102, "組織単位移動のﾃﾞｰﾀ照合"},
        {103, "組織単位変更のﾃﾞｰﾀ照合"},
        {104, "組織単位ｴｸｽﾎﾟｰﾄのﾃﾞｰﾀ照合"},
        {110, "ｸﾞﾙｰﾌﾟ追加のﾃﾞｰﾀ照合"},
        {111, "ｸﾞﾙｰﾌﾟ削除のﾃﾞｰﾀ照合"},
        {112, "ｸﾞﾙｰﾌﾟ移動のﾃﾞｰﾀ照合"},
        {113, "ｸﾞﾙｰﾌﾟ変更のﾃﾞｰﾀ照合"},
        {114, "ｸﾞﾙｰﾌﾟｴｸｽﾎﾟｰﾄのﾃﾞｰﾀ照合"},
        {120, "ﾕｰｻﾞｰ追加のﾃﾞｰﾀ照合"},
        {121, "ﾕｰｻﾞｰ削除のﾃﾞｰﾀ照合"},
        {122, "ﾕｰｻﾞｰ移動のﾃﾞｰﾀ照合"},
        {123, "ﾕｰｻﾞｰ変更のﾃﾞｰﾀ照合"},
        {124, "ﾕｰｻﾞｰｴｸｽﾎﾟｰﾄのﾃﾞｰﾀ照合"},
        {130, "ｺﾝﾋﾟｭｰﾀ追加のﾃﾞｰﾀ照合"},
        {131, "ｺﾝﾋﾟｭｰﾀ削除のﾃﾞｰﾀ照合"},
        {132, "ｺﾝﾋﾟｭｰﾀ移動のﾃﾞｰﾀ照合"},
        {133, "ｺﾝﾋﾟｭｰﾀ変更のﾃﾞｰﾀ照合"},
        {134, "ｺﾝﾋﾟｭｰﾀｴｸｽﾎﾟｰﾄのﾃﾞｰﾀ照合"},
        {140, "共有ﾌｫﾙﾀﾞ追加のﾃﾞｰﾀ照合"},
        {141, "共有ﾌｫﾙﾀﾞ削除のﾃﾞｰﾀ照合"},
        {142, "共有ﾌｫﾙﾀﾞ移動のﾃﾞｰﾀ照合"},
        {143, "共有ﾌｫﾙﾀﾞ変更のﾃﾞｰﾀ照合"},
        {144, "共有ﾌｫﾙﾀﾞｴｸｽﾎﾟｰﾄのﾃﾞｰﾀ照合"},
        {154, "GPOﾘﾝｸｴｸｽﾎﾟｰﾄのﾃﾞｰﾀ照合"},
};
// clang-format on

static_assert(std::ranges::is_sorted(kTitles, {}, &TitleEntry::code));

constexpr int16_t kKindCount = 6;
constexpr int16_t kOperationCount = 5;

bool IsKind(ObjectKind kind) {
    auto v = static_cast<int16_t>(kind);
    return v >= 0 && v < kKindCount;
}

bool IsOperation(OperationKind op) {
    auto v = static_cast<int16_t>(op);
    return v >= 0 && v < kOperationCount;
}

}  // namespace

const char* KindLabel(ObjectKind kind) {
    static constexpr const char* kLabels[kKindCount] = {"組織単位", "ｸﾞﾙｰﾌﾟ",    "ﾕｰｻﾞｰ",
                                                        "ｺﾝﾋﾟｭｰﾀ",  "共有ﾌｫﾙﾀﾞ", "GPOﾘﾝｸ"};
    return IsKind(kind) ? kLabels[static_cast<int16_t>(kind)] : "";
}

const char* KindDirectoryClass(ObjectKind kind) {
    static constexpr const char* kClasses[kKindCount] = {"organizationalUnit", "group",  "user",
                                                         "computer",           "volume", ""};
    return IsKind(kind) ? kClasses[static_cast<int16_t>(kind)] : "";
}

const char* OperationWord(OperationKind op) {
    static constexpr const char* kWords[kOperationCount] = {"追加", "削除", "移動", "変更",
                                                            "ｴｸｽﾎﾟｰﾄ"};
    return IsOperation(op) ? kWords[static_cast<int16_t>(op)] : "";
}

const char* OperationSuffix(OperationKind op) {
    static constexpr const char* kSuffixes[kOperationCount] = {"_Add", "_Del", "_Mov", "_Mdf",
                                                               "_Exp"};
    return IsOperation(op) ? kSuffixes[static_cast<int16_t>(op)] : "";
}

OperationCode OperationCodeFor(ObjectKind kind, OperationKind op, RunMode mode) {
    if (!IsKind(kind) || !IsOperation(op)) return -1;
    const auto k = static_cast<int16_t>(kind);
    const auto o = static_cast<int16_t>(op);
    if (kind == ObjectKind::GpoLink) {
        // A GPO link run has only its export and the compare of that export.
        if (op != OperationKind::Exp || mode == RunMode::Imitate) return -1;
        return mode == RunMode::Compare ? 154 : 64;
    }
    switch (mode) {
        case RunMode::Production:
            return static_cast<OperationCode>(10 * (k + 1) + o);
        case RunMode::Imitate:
            if (op == OperationKind::Exp) return -1;
            return static_cast<OperationCode>(10 * (k + 1) + 5 + o);
        case RunMode::Compare:
            return static_cast<OperationCode>(100 + 10 * k + o);
    }
    return -1;
}

OperationCode OperationCodeForRow(ObjectKind kind, RowOperation op) {
    if (op >= 0 && op <= 3)
        return OperationCodeFor(kind, static_cast<OperationKind>(op), RunMode::Production);
    if (op >= 4 && op <= 7)
        return OperationCodeFor(kind, static_cast<OperationKind>(op - 4), RunMode::Imitate);
    if (op >= 8 && op <= 12)
        return OperationCodeFor(kind, static_cast<OperationKind>(op - 8), RunMode::Compare);
    return -1;
}

std::string RunTitle(OperationCode code) {
    auto it = std::ranges::lower_bound(kTitles, code, {}, &TitleEntry::code);
    if (it == std::end(kTitles) || it->code != code) return {};
    return std::string(it->title);
}

std::string RowOperationTitle(ObjectKind kind, RowOperation op) {
    return RunTitle(OperationCodeForRow(kind, op));
}

}  // namespace orin
