#pragma once
// The options of frmOptions, kept in memory for the life of the process and never written to a
// file: what a bulk import does with an object that exists already (blnRepeat_*), and which
// properties a comparison run leaves out (DontCompare_*). Engines read them; only the options
// dialog changes them.

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

namespace orin {

// What a bulk import does with an existing object: exactly one element of a blnRepeat_* array
// is true, and its index is the choice.
inline constexpr int kRepeatFail = 0;  // "既存ｵﾌﾞｼﾞｪｸﾄを上書きしないでｲﾝﾎﾟｰﾄを失敗とする"
inline constexpr int kRepeatDeleteFirst = 1;  // "既存ｵﾌﾞｼﾞｪｸﾄを削除してからｲﾝﾎﾟｰﾄする"
inline constexpr int kRepeatOverwrite = 2;  // "既存ｵﾌﾞｼﾞｪｸﾄを上書きする"
using RepeatChoice = std::array<bool, 3>;

// One property of a comparison: its row in the options list and whether it is left out.
struct CompareExclusion {
    int16_t intListIndex = 0;
    bool blnChecked = false;
};

extern RepeatChoice blnRepeat_OU;
extern RepeatChoice blnRepeat_Grp;
extern RepeatChoice blnRepeat_Usr;
extern RepeatChoice blnRepeat_Com;
extern RepeatChoice blnRepeat_Shr;

// The position in each array is the property's index, which the compare engines test.
extern std::array<CompareExclusion, 7> DontCompare_OU;
extern std::array<CompareExclusion, 9> DontCompare_Grp;
extern std::array<CompareExclusion, 35> DontCompare_Usr;
extern std::array<CompareExclusion, 10> DontCompare_Com;
extern std::array<CompareExclusion, 3> DontCompare_Shr;
extern std::array<CompareExclusion, 1> DontCompare_GPO;

// The resources of the options dialog, in the order of its combo boxes: the first five have
// a duplicate policy, all six have compare exclusions.
enum class OptionResource : int16_t { OU, Group, User, Computer, SharedFolder, GpoLink };
inline constexpr int kRepeatResourceCount = 5;
inline constexpr int kCompareResourceCount = 6;

// "組織単位", "ｸﾞﾙｰﾌﾟ", ... as the combo boxes list them.
std::string_view OptionResourceName(OptionResource resource);
// The three choices of the duplicate policy, by index.
std::string_view RepeatChoiceText(int index);
// The properties a comparison of the resource can leave out, in list order.
std::span<const std::string_view> CompareItemNames(OptionResource resource);

// The process's settings of one resource.
RepeatChoice& RepeatOf(OptionResource resource);  // OU..SharedFolder only
std::span<CompareExclusion> DontCompareOf(OptionResource resource);

// The settings of a new process: no exclusions, and for every resource the choice
// kRepeatFail (the main window sets the first element of each repeat array at start).
void ResetOptions();

}  // namespace orin
