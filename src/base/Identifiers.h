#pragma once
// The identifier families that every part of a run speaks in.

#include <cstdint>
#include <string>

namespace orin {

// The three modes of a run. Held in RunContext as the two flags blnImitate and blnCompare;
// RunMode is derived from them where a single value reads better.
enum class RunMode : int16_t { Production, Imitate, Compare };

// The value is the position of the kind's tab in the main window and the index of the kind
// label on a bulk run's event lines.
enum class ObjectKind : int16_t {
    OU = 0,
    Group = 1,
    User = 2,
    Computer = 3,
    SharedFolder = 4,
    GpoLink = 5
};

// The position of the operation's tab inside a kind's page.
enum class OperationKind : int16_t { Add = 0, Del = 1, Mov = 2, Mdf = 3, Exp = 4 };

// Selects the engine for every data row of a run: 0-3 Production Add/Del/Mov/Mdf,
// 4-7 Imitate, 8-11 Compare, 12 Compare of an export file.
using RowOperation = int16_t;
// Selects the text of the event log's "処理内容： " line (see RunTitle).
using OperationCode = int16_t;

inline constexpr RowOperation kCompareOfExport = 12;
// Number of RowOperation values, 0 to 12: the engine slots of each kind.
inline constexpr int kRowOperationCount = 13;

// Verdicts on one data row: the upper band of the row code space.
inline constexpr int32_t ERRNUM_60_000 = 60000;  // belongs to an object that has already failed
inline constexpr int32_t ERRNUM_60_001 = 60001;  // succeeded
inline constexpr int32_t ERRNUM_60_002 = 60002;  // succeeded with at least one warning
inline constexpr int32_t ERRNUM_60_003 = 60003;  // compare: at least one difference
inline constexpr int32_t ERRNUM_60_004 = 60004;  // compare: matched
inline constexpr int32_t ERRNUM_60_005 = 60005;  // bulk run: held back for a later pass

// "組織単位", "ｸﾞﾙｰﾌﾟ", ... : the kind's label in the log and in titles.
const char* KindLabel(ObjectKind kind);
// "organizationalUnit", "group", "user", "computer", "volume"; "" for GpoLink.
const char* KindDirectoryClass(ObjectKind kind);
// "追加", "削除", "移動", "変更", "ｴｸｽﾎﾟｰﾄ".
const char* OperationWord(OperationKind op);
// "_Add", "_Del", ... : the suffix on controls.
const char* OperationSuffix(OperationKind op);

// The OperationCode of a run: Production and Imitate of Add..Mdf, Exp, Compare of Add..Mdf
// and Compare of an export. Gives -1 for a combination that has no code (GpoLink Add...).
OperationCode OperationCodeFor(ObjectKind kind, OperationKind op, RunMode mode);

// The OperationCode of a row-loop run: RowOperation 0-3 Production, 4-7 Imitate, 8-11 Compare
// of Add..Mdf, 12 Compare of an export. -1 where the kind has no such run.
OperationCode OperationCodeForRow(ObjectKind kind, RowOperation op);

// The run's title for an OperationCode, "" for a code outside the table (19, 59, ...).
// 0 "一括ｴｸｽﾎﾟｰﾄ" and 1 "一括ｲﾝﾎﾟｰﾄ" are the bulk database runs.
std::string RunTitle(OperationCode code);

// The run's title for a RowOperation of a kind's row loop, "" outside 0..12.
std::string RowOperationTitle(ObjectKind kind, RowOperation op);

}  // namespace orin
