#include "base/Options.h"

namespace orin {

RepeatChoice blnRepeat_OU{};
RepeatChoice blnRepeat_Grp{};
RepeatChoice blnRepeat_Usr{};
RepeatChoice blnRepeat_Com{};
RepeatChoice blnRepeat_Shr{};

std::array<CompareExclusion, 7> DontCompare_OU{};
std::array<CompareExclusion, 9> DontCompare_Grp{};
std::array<CompareExclusion, 35> DontCompare_Usr{};
std::array<CompareExclusion, 10> DontCompare_Com{};
std::array<CompareExclusion, 3> DontCompare_Shr{};
std::array<CompareExclusion, 1> DontCompare_GPO{};

namespace {

constexpr std::array<std::string_view, kCompareResourceCount> kResourceNames = {
    "組織単位", "ｸﾞﾙｰﾌﾟ", "ﾕｰｻﾞｰ", "ｺﾝﾋﾟｭｰﾀ", "共有ﾌｫﾙﾀﾞ", "GPOﾘﾝｸ"};

constexpr std::array<std::string_view, 3> kRepeatChoices = {
    "既存ｵﾌﾞｼﾞｪｸﾄを上書きしないでｲﾝﾎﾟｰﾄを失敗とする", "既存ｵﾌﾞｼﾞｪｸﾄを削除してからｲﾝﾎﾟｰﾄする",
    "既存ｵﾌﾞｼﾞｪｸﾄを上書きする"};

constexpr std::array<std::string_view, 7> kOUItems = {"国/地域", "郵便番号", "都道府県", "市区町村",
                                                      "番地",    "説明",     "管理者"};
constexpr std::array<std::string_view, 9> kGroupItems = {"ｸﾞﾙｰﾌﾟ名（Windows 2000 以前）",
                                                         "ｸﾞﾙｰﾌﾟの範囲",
                                                         "ｸﾞﾙｰﾌﾟの種類",
                                                         "説明",
                                                         "電子ﾒｰﾙ",
                                                         "ﾒﾓ",
                                                         "管理者",
                                                         "所属するﾒﾝﾊﾞｰ",
                                                         "所属するｸﾞﾙｰﾌﾟ"};
constexpr std::array<std::string_view, 35> kUserItems = {"ﾕｰｻﾞｰﾛｸﾞｵﾝ名",
                                                         "ﾕｰｻﾞｰﾛｸﾞｵﾝ名（Windows 2000 以前）",
                                                         "姓",
                                                         "名",
                                                         "ｲﾆｼｬﾙ",
                                                         "表示名",
                                                         "説明",
                                                         "事業所",
                                                         "電話番号",
                                                         "電話番号（その他）",
                                                         "電子ﾒｰﾙ",
                                                         "WEBﾍﾟｰｼﾞ",
                                                         "WEBﾍﾟｰｼﾞ（その他）",
                                                         "国/地域",
                                                         "郵便番号",
                                                         "都道府県",
                                                         "市区町村",
                                                         "私書箱",
                                                         "番地",
                                                         "ﾛｸﾞｵﾝ先",
                                                         "ﾕｰｻﾞｰは次回ﾛｸﾞｵﾝ時にﾊﾟｽﾜｰﾄﾞ変更が必要",
                                                         "ﾕｰｻﾞｰはﾊﾟｽﾜｰﾄﾞを変更できない",
                                                         "ﾊﾟｽﾜｰﾄﾞを無期限にする",
                                                         "ｱｶｳﾝﾄは無効",
                                                         "ｱｶｳﾝﾄの期限",
                                                         "ﾌﾟﾛﾌｧｲﾙﾊﾟｽ",
                                                         "ﾛｸﾞｵﾝｽｸﾘﾌﾟﾄ",
                                                         "ﾛｰｶﾙﾊﾟｽ",
                                                         "接続ﾄﾞﾗｲﾌﾞ",
                                                         "ﾊﾟｽ",
                                                         "役職",
                                                         "所属するｸﾞﾙｰﾌﾟ",
                                                         "ﾘﾓｰﾄｱｸｾｽ許可",
                                                         "最終ﾛｸﾞｵﾝ日時",
                                                         "ﾊﾟｽﾜｰﾄﾞ最終変更日時"};
constexpr std::array<std::string_view, 10> kComputerItems = {"ｺﾝﾋﾟｭｰﾀ名（Windows 2000 以前）",
                                                             "ｱｶｳﾝﾄは無効",
                                                             "説明",
                                                             "DNS名",
                                                             "場所",
                                                             "ｵﾍﾟﾚｰﾃｨﾝｸﾞｼｽﾃﾑの名前",
                                                             "ｵﾍﾟﾚｰﾃｨﾝｸﾞｼｽﾃﾑのﾊﾞｰｼﾞｮﾝ",
                                                             "ｵﾍﾟﾚｰﾃｨﾝｸﾞｼｽﾃﾑのService Pack",
                                                             "管理者",
                                                             "所属するｸﾞﾙｰﾌﾟ"};
constexpr std::array<std::string_view, 3> kShareItems = {"UNC名", "説明", "管理者"};
constexpr std::array<std::string_view, 1> kGpoItems = {"表示名"};

template <size_t N>
void ClearExclusions(std::array<CompareExclusion, N>& list) {
    for (size_t i = 0; i < N; ++i) list[i] = {static_cast<int16_t>(i), false};
}

}  // namespace

std::string_view OptionResourceName(OptionResource resource) {
    const auto i = static_cast<size_t>(resource);
    return i < kResourceNames.size() ? kResourceNames[i] : std::string_view{};
}

std::string_view RepeatChoiceText(int index) {
    return index >= 0 && index < 3 ? kRepeatChoices[static_cast<size_t>(index)]
                                   : std::string_view{};
}

std::span<const std::string_view> CompareItemNames(OptionResource resource) {
    switch (resource) {
        case OptionResource::OU:
            return kOUItems;
        case OptionResource::Group:
            return kGroupItems;
        case OptionResource::User:
            return kUserItems;
        case OptionResource::Computer:
            return kComputerItems;
        case OptionResource::SharedFolder:
            return kShareItems;
        case OptionResource::GpoLink:
            return kGpoItems;
    }
    return {};
}

RepeatChoice& RepeatOf(OptionResource resource) {
    switch (resource) {
        case OptionResource::Group:
            return blnRepeat_Grp;
        case OptionResource::User:
            return blnRepeat_Usr;
        case OptionResource::Computer:
            return blnRepeat_Com;
        case OptionResource::SharedFolder:
            return blnRepeat_Shr;
        default:
            return blnRepeat_OU;
    }
}

std::span<CompareExclusion> DontCompareOf(OptionResource resource) {
    switch (resource) {
        case OptionResource::OU:
            return DontCompare_OU;
        case OptionResource::Group:
            return DontCompare_Grp;
        case OptionResource::User:
            return DontCompare_Usr;
        case OptionResource::Computer:
            return DontCompare_Com;
        case OptionResource::SharedFolder:
            return DontCompare_Shr;
        case OptionResource::GpoLink:
            return DontCompare_GPO;
    }
    return {};
}

void ResetOptions() {
    for (RepeatChoice* choice :
         {&blnRepeat_OU, &blnRepeat_Grp, &blnRepeat_Usr, &blnRepeat_Com, &blnRepeat_Shr}) {
        *choice = {true, false, false};
    }
    ClearExclusions(DontCompare_OU);
    ClearExclusions(DontCompare_Grp);
    ClearExclusions(DontCompare_Usr);
    ClearExclusions(DontCompare_Com);
    ClearExclusions(DontCompare_Shr);
    ClearExclusions(DontCompare_GPO);
}

}  // namespace orin
