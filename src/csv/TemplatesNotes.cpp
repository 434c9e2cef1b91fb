// The note texts of the templates. They publish the input rules of the CSV format, so every
// line stays as the operator has always read it: full-width kana, U+3000 for the indentation.

#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "csv/TemplatesModel.h"
#include "platform/Strings.h"

namespace orin::templates {
namespace {

using Lines = std::vector<std::string>;

constexpr std::string_view kGeneralLines[] = {
    "　◆ 行の先頭に「!」記号が付くとヘッダ行と見なします。ヘッダ行は絶対に修正しないでください。",
    "　◆ 行の先頭に「#」記号が付くとコメント行と見なします。",
    "　◆ 行の先頭に上記の記号がなければデータ行と見なします。",
    "　◆ OU（またはオブジェクトの所在OU）が2階層以上の場合は、OUの定義ヘッダの間に必要なだけ列"
    "を増やしてください。増分列にはヘッダを定義する必要がありません。",
    "　◆ オブジェクト（OU以外）がドメインの直下にある場合は、オブジェクト所在OUの定義ヘッダに対"
    "応する全データを空白のままにしてください。",
};

// Fixed blocks.

constexpr std::string_view kMdfLine[] = {
    "　◆ 新しいプロパティに入力なしの場合は、現在の設定値が変更されません。現在の設定値をクリア"
    "するには、「!C」を入力してください。"};
constexpr std::string_view kMovLine[] = {
    "　◆ OUをドメインの直下に移動する場合は、移動先の定義ヘッダに対応する全データを空白のままに"
    "してください。"};
constexpr std::string_view kGroupNameMov[] = {
    "　◆ 「グループ名」の変更について",
    "　　・ 「グループ名」とはWindows 2000のグループ名であり、Windows 2000以前のグループ名ではあり"
    "ません。",
    "　　・ 「グループ名（新）」に変更しても「グループ名（Windows 2000以前）」は変更されません。",
};
constexpr std::string_view kComputerNameMov[] = {
    "　◆ 「コンピュータ名」の変更について",
    "　　・ 「コンピュータ名」とはWindows 2000のコンピュータ名であり、Windows 2000以前のコンピュー"
    "タではありません。",
    "　　・ 「新しいコンピュータ名」に変更してもWindows 2000以前のコンピュータ名が変更されないため"
    "、クライアントがドメインに再参加する必要がありません。",
};

constexpr std::string_view kCautionOUAdd[] = {
    "　◆ OUの追加について",
    "　　・ OUの親コンテナが存在することを前提としているため、必ず親から子への順にOUを追加してく"
    "ださい。",
};
constexpr std::string_view kCautionAccessRights[] = {
    "　◆　オブジェクトのアクセス権について",
    "　　・ 既定のACLの削除が指定された場合は、ACEの個別設定の前に実行されます。",
};
constexpr std::string_view kCautionOUName[] = {
    "　◆ OU名の変更について",
    "　　・ 親OUの名前を変更したら、子OUのパスは必ず変更後の親OU名で定義してください。",
};
constexpr std::string_view kCautionManager[] = {
    "　◆ 管理者の変更について",
    "　　・ 管理者の所在OUは、必ずその時点での最新OU名で定義してください。",
    "　　・ OUの名前を変更するのと同時に、このOU配下にいる管理者を指定したい場合は、管理者のOUパ"
    "スを現在のOU名（変更前）で定義してください。",
};
constexpr std::string_view kCautionMemberAdd[] = {
    "　◆ メンバーの追加",
    "　　・ メンバーが存在することを前提としているため、存在しない場合は先にメンバーを作成してく"
    "ださい。",
};
constexpr std::string_view kCautionGroupAdd[] = {
    "　◆ 所属するグループの追加",
    "　　・ 所属するグループが存在することを前提としているため、存在しない場合は先に所属するグル"
    "ープを作成してください。",
};
constexpr std::string_view kCautionGroupNameChange[] = {
    "　◆ 「グループ名」の変更について",
    "　　・ グループ名を変更したら、次のデータ（別のグループの変更）に当グループを指定する必要が"
    "ある場合は必ず変更後のグループ名で定義してください。",
};
// The user-properties part; the Mdf template adds kExpiryClearLine after its second line.
constexpr std::string_view kCautionUserPropertiesHead[] = {
    "　◆ ユーザーのプロパティ設定時の注意点",
    "　　・ アカウントの有効期限は、「アカウントの期限」に入力された日付の1日前となります。",
};
constexpr std::string_view kExpiryClearLine =
    "　　・ アカウントの有効期限を「なし」にするは、「!C」を入力してください。";
constexpr std::string_view kCautionUserPropertiesTail[] = {
    "　　・ 「パス」のディレクトリアクセス権は以下の通りに設定されます（親フォルダからの継承は無効"
    "になる）。",
    "　　　　ドメイン名\\ユーザーログオン名（当ユーザー）　→　フルコントロール",
    "　　　　Administrators　→　フルコントロール",
    "　　　　Users　→　なし（エントリ存在すれば削除）",
    "　　　　Everyone　→　なし（エントリ存在すれば削除）",
    "　　　　上記以外のエントリ　→　そのまま",
};

// Blocks that define the values of one header: "　◆ ヘッダ「Name」の入力規約" and one line per
// entry, "　　・ 入力値：　<value>　→　<meaning>"; an entry without value is a rule of its own.

struct ValueEntry {
    std::string_view value;  // "" for a rule line without a value
    std::string_view meaning;
};
using Entries = std::span<const ValueEntry>;

constexpr std::string_view kYes = "Yes";
constexpr std::string_view kNo = "No";
constexpr std::string_view kNoOrEmpty = "No（または入力しない）";
constexpr std::string_view kNotMirror = "ミラーでない（すべての処理を行う）";
constexpr std::string_view kDoNothing = "処理内容：　何もしない";

constexpr ValueEntry kMirrorOUAdd[] = {
    {kYes,
     "ミラー（OUの追加処理を行わず、オブジェクトのアクセス許可だけを設定する。処理範囲：[AceSamA"
     "ccountName]～[InheritOption]）"},
    {kNoOrEmpty, kNotMirror},
};
constexpr ValueEntry kMirrorOUMdf[] = {
    {kYes,
     "ミラー（OUのプロパティを変更せず、オブジェクトのアクセス許可だけを設定する。処理範囲：[Ace"
     "SamAccountName]～[InheritOption]）"},
    {kNoOrEmpty, kNotMirror},
};
constexpr ValueEntry kMirrorDel[] = {
    {kYes, "ミラー（削除処理を行わない）"},
    {kNoOrEmpty, "ミラーでない（削除処理を行う）"},
};
constexpr ValueEntry kMirrorMov[] = {
    {kYes, "ミラー（移動処理を行わない）"},
    {kNoOrEmpty, "ミラーでない（移動処理を行う）"},
};
constexpr ValueEntry kMirrorGroupAdd[] = {
    {kYes, "ミラー（グループの追加処理を行わず、メンバーと所属するグループの追加のみ処理する）"},
    {kNoOrEmpty, kNotMirror},
};
constexpr ValueEntry kMirrorGroupMdf[] = {
    {kYes, "ミラー（グループのプロパティ変更を行わず、メンバーと所属するグループの変更のみ行う）"},
    {kNoOrEmpty, kNotMirror},
};
constexpr ValueEntry kMirrorUserAdd[] = {
    {kYes, "ミラー（ユーザーの追加処理を行わず、所属するグループへの追加のみ行う）"},
    {kNoOrEmpty, kNotMirror},
};
constexpr ValueEntry kMirrorUserMdf[] = {
    {kYes, "ミラー（ユーザーのプロパティ変更を行わず、所属するグループの変更のみ行う）"},
    {kNoOrEmpty, kNotMirror},
};
constexpr ValueEntry kMirrorComputerAdd[] = {
    {kYes, "ミラー（コンピュータの追加処理を行わず、所属するグループへの追加のみ行う）"},
    {kNoOrEmpty, kNotMirror},
};
constexpr ValueEntry kMirrorComputerMdf[] = {
    {kYes, "ミラー（コンピュータのプロパティ変更を行わず、所属するグループの変更のみ行う）"},
    {kNoOrEmpty, kNotMirror},
};
constexpr ValueEntry kMirrorShareAdd[] = {
    {kYes, "ミラー（共有フォルダの追加処理を行わない）"},
    {kNoOrEmpty, kNotMirror},
};
constexpr ValueEntry kMirrorShareMdf[] = {
    {kYes, "ミラー（変更処理を行わない）"},
    {kNoOrEmpty, "ミラーでない（変更処理を行う）"},
};

constexpr ValueEntry kLineBreak[] = {
    {"", "複数行を入力する場合は改行文字\"<Rtn>\"を入力してください。"},
};

constexpr std::string_view kInherit0 =
    "継承可能なアクセス許可を親からこのオブジェクトに継承できるようにする";
constexpr std::string_view kInherit1 =
    "継承可能なアクセス許可を親からブロックする（継承されたアクセスをこのオブジェクトにコピーする"
    "）";
constexpr std::string_view kInherit2 =
    "継承可能なアクセス許可を親からブロックする（継承されたアクセスを削除し、明示的アクセス許可だ"
    "けを保持する）";
constexpr ValueEntry kInheritParentAclAdd[] = {
    {"0（または入力しない）", kInherit0},
    {"1", kInherit1},
    {"2", kInherit2},
};
// In a modify a blank cell keeps the present setting, so "0" has to be written out.
constexpr ValueEntry kInheritParentAclMdf[] = {
    {"0", kInherit0},
    {"1", kInherit1},
    {"2", kInherit2},
    {"なし", "現状維持"},
};

constexpr ValueEntry kRemDefaultAcl[] = {
    {kYes, "オブジェクトの既定のACLを削除する（だだし、継承されたACEは削除されない）"},
    {kNoOrEmpty, "オブジェクトの既定のACLを削除しない"},
};
constexpr ValueEntry kDoNotRemTheseAce[] = {
    {"", "ACEが複数ある場合は「;」で区切ってください。"},
};
constexpr ValueEntry kAceOpeMode[] = {
    {"0",
     "新規モード：このACEがすでに存在する場合は既存ACEを削除してから新規にACEを作成（だだし、継"
     "承されたACEは削除されない）"},
    {"1", "削除モード：このACEがすでに存在する場合は既存ACEを削除するのみ"},
    {"2",
     "上書モード：このACEがすでに存在する場合は既存ACEのアクセス許可を上書きする（既存のアクセス許"
     "可は残る。継承されたアクセス許可と重複する場合は、明示的アクセス許可が継承されたアクセス許可"
     "の上に被さる形となる）"},
};
constexpr ValueEntry kAccessRight[] = {
    {"", "コードを複数入力する場合は「;」で区切ってください。"},
    {"0", "フルコントロール"},
    {"1", "読み取り（5+6+10相当）"},
    {"2", "書き込み（7+13相当）"},
    {"3", "すべての子オブジェクトの作成"},
    {"4", "すべての子オブジェクトの削除"},
    {"5", "内容の一覧表示"},
    {"6", "すべてのプロパティの読み取り"},
    {"7", "すべてのプロパティの書き込み"},
    {"8", "削除"},
    {"9", "サブツリーの削除"},
    {"10", "アクセス許可の読み取り"},
    {"11", "アクセス許可の修正"},
    {"12", "所有者の修正"},
    {"13", "検証された書き込みすべて"},
    {"14", "すべての拡張権利"},
};
constexpr ValueEntry kPermitOrDeny[] = {
    {"P（または入力しない）", "許可"},
    {"D", "拒否"},
};
constexpr ValueEntry kInheritOption[] = {
    {"0（または入力しない）", "適用先：　このオブジェクトとすべての子オブジェクト"},
    {"1", "適用先：　このオブジェクトのみ"},
    {"2", "適用先：　すべての子オブジェクトのみ（このオブジェクトは適用しない）"},
    {"3", "適用先：　このオブジェクトと子オブジェクトのみ（子オブジェクト以下は適用しない）"},
    {"4", "適用先：　子オブジェクトのみ（このオブジェクトと子オブジェクト以下は適用しない）"},
};
constexpr ValueEntry kIfDelSubObj[] = {
    {kYes, "OU配下のすべてのオブジェクトを削除する"},
    {kNoOrEmpty, "OUの配下にオブジェクトが存在しなければOUを削除するが、存在すればOUを削除しない"},
};

constexpr ValueEntry kGroupRange[] = {
    {"0", "範囲： ドメインローカルグループ"},
    {"1", "範囲： グローバルグループ"},
    {"2", "範囲： ユニバーサルグループ（ネイティブモードのみ有効）"},
};
constexpr ValueEntry kGroupClass[] = {
    {"0", "種類： セキュリティグループ"},
    {"1", "種類： 配布グループ"},
};
constexpr ValueEntry kClearAllMember[] = {
    {kYes, "処理内容：　当グループの現在のメンバーをすべて削除"},
    {kNoOrEmpty, kDoNothing},
};
constexpr ValueEntry kMemberProcFlg[] = {
    {"Add", "処理内容：　メンバーを当グループに追加"},
    {"Del", "処理内容：　メンバーを当グループから削除"},
};
constexpr ValueEntry kClearAllGroupUser[] = {
    {kYes, "処理内容：　当ユーザーの現在の所属するグループをすべて削除"},
    {kNoOrEmpty, kDoNothing},
};
constexpr ValueEntry kClearAllGroupGroup[] = {
    {kYes, "処理内容：　当グループの現在の所属するグループをすべて削除"},
    {kNoOrEmpty, kDoNothing},
};
constexpr ValueEntry kClearAllGroupComputer[] = {
    {kYes, "処理内容：　コンピュータの現在の所属するグループをすべて削除"},
    {kNoOrEmpty, kDoNothing},
};
constexpr ValueEntry kGroupProcFlgUser[] = {
    {"Add", "処理内容：　ユーザーを所属するグループに追加"},
    {"Del", "処理内容：　ユーザーを所属するグループから削除"},
};
constexpr ValueEntry kGroupProcFlgGroup[] = {
    {"Add", "処理内容：　当グループを所属するグループに追加"},
    {"Del", "処理内容：　当グループを所属するグループから削除"},
};
constexpr ValueEntry kGroupProcFlgComputer[] = {
    {"Add", "処理内容：　コンピュータを所属するグループに追加"},
    {"Del", "処理内容：　コンピュータを所属するグループから削除"},
};

constexpr ValueEntry kUserWorkstations[] = {
    {"", "コンピュータ名を複数入力する場合は「;」で区切ってください。"},
};
// In an add a blank cell means No for these three; in a modify it keeps the present setting.
constexpr ValueEntry kNextLogonChPwdAdd[] = {
    {kYes, "ユーザーは次回ログオン時にパスワード変更が必要あり"},
    {kNoOrEmpty, "ユーザーは次回ログオン時にパスワード変更が必要なし"},
};
constexpr ValueEntry kNextLogonChPwdMdf[] = {
    {kYes, "ユーザーは次回ログオン時にパスワード変更が必要あり"},
    {kNo, "ユーザーは次回ログオン時にパスワード変更が必要なし"},
};
constexpr ValueEntry kPwdCantChangeAdd[] = {
    {kYes, "ユーザーはパスワードを変更できない"},
    {kNoOrEmpty, "ユーザーはパスワードを変更できる"},
};
constexpr ValueEntry kPwdCantChangeMdf[] = {
    {kYes, "ユーザーはパスワードを変更できない"},
    {kNo, "ユーザーはパスワードを変更できる"},
};
constexpr ValueEntry kPwdNeverExpiresAdd[] = {
    {kYes, "パスワードを無期限にする"},
    {kNoOrEmpty, "パスワードを無期限にしない"},
};
constexpr ValueEntry kPwdNeverExpiresMdf[] = {
    {kYes, "パスワードを無期限にする"},
    {kNo, "パスワードを無期限にしない"},
};
constexpr ValueEntry kAccountDisabled[] = {
    {kYes, "アカウントは無効"},
    {kNo, "アカウントは有効"},
};
constexpr ValueEntry kAllowDialinAdd[] = {
    {kYes, "アクセスを許可"},
    {kNo, "アクセスを拒否"},
    {"なし",
     "リモートアクセスポリシーでアクセスを制御（Windows 2003 Serverではこのオプションを有効にする"
     "ことができないためデフォルトでは「アクセス拒否」が有効になる）"},
};
constexpr ValueEntry kAllowDialinMdf[] = {
    {kYes, "アクセスを許可"},
    {kNo, "アクセスを拒否"},
    {"!C",
     "リモートアクセスポリシーでアクセスを制御（Windows 2003 Serverではこのオプションを有効にする"
     "ことができない）"},
};

Entries MirrorEntries(ObjectKind kind, OperationKind op) {
    if (op == OperationKind::Del) return kMirrorDel;
    if (op == OperationKind::Mov) return kMirrorMov;
    const bool add = op == OperationKind::Add;
    switch (kind) {
        case ObjectKind::OU:
            return add ? Entries(kMirrorOUAdd) : Entries(kMirrorOUMdf);
        case ObjectKind::Group:
            return add ? Entries(kMirrorGroupAdd) : Entries(kMirrorGroupMdf);
        case ObjectKind::User:
            return add ? Entries(kMirrorUserAdd) : Entries(kMirrorUserMdf);
        case ObjectKind::Computer:
            return add ? Entries(kMirrorComputerAdd) : Entries(kMirrorComputerMdf);
        case ObjectKind::SharedFolder:
            return add ? Entries(kMirrorShareAdd) : Entries(kMirrorShareMdf);
        default:
            return {};
    }
}

// The value entries of `header` in the template of (kind, op); empty when it has no block.
Entries EntriesOf(std::string_view header, ObjectKind kind, OperationKind op) {
    const bool add = op == OperationKind::Add;
    const auto is = [&](std::string_view name) { return EqualsIgnoreCase(header, name); };
    const auto byKind = [&](Entries user, Entries group, Entries computer) {
        switch (kind) {
            case ObjectKind::User:
                return user;
            case ObjectKind::Group:
                return group;
            case ObjectKind::Computer:
                return computer;
            default:
                return Entries{};
        }
    };

    if (is("Mirror")) return MirrorEntries(kind, op);
    if (is("street") || is("info")) return kLineBreak;
    if (is("InheritParentACL")) return add ? Entries(kInheritParentAclAdd) : kInheritParentAclMdf;
    if (is("RemDefaultACL")) return kRemDefaultAcl;
    if (is("DoNotRemTheseACE")) return kDoNotRemTheseAce;
    if (is("AceOpeMode")) return kAceOpeMode;
    if (is("AccessRight")) return kAccessRight;
    if (is("PermitOrDeny")) return kPermitOrDeny;
    if (is("InheritOption")) return kInheritOption;
    if (is("IfDelSubObj")) return kIfDelSubObj;
    if (is("GroupRange")) return kGroupRange;
    if (is("GroupClass")) return kGroupClass;
    if (is("ClearAllMember")) return kClearAllMember;
    if (is("MemberProcFlg")) return kMemberProcFlg;
    if (is("ClearAllGroup"))
        return byKind(kClearAllGroupUser, kClearAllGroupGroup, kClearAllGroupComputer);
    if (is("GroupProcFlg"))
        return byKind(kGroupProcFlgUser, kGroupProcFlgGroup, kGroupProcFlgComputer);
    if (is("userWorkstations")) return kUserWorkstations;
    if (is("NextLogonChPwd")) return add ? Entries(kNextLogonChPwdAdd) : kNextLogonChPwdMdf;
    if (is("PwdCantChange")) return add ? Entries(kPwdCantChangeAdd) : kPwdCantChangeMdf;
    if (is("PwdNeverExpires")) return add ? Entries(kPwdNeverExpiresAdd) : kPwdNeverExpiresMdf;
    if (is("AccountDisabled")) return kAccountDisabled;
    if (is("AllowDialin")) return add ? Entries(kAllowDialinAdd) : kAllowDialinMdf;
    return {};
}

Lines ToLines(std::span<const std::string_view> texts) {
    return Lines(texts.begin(), texts.end());
}

}  // namespace

std::vector<std::string> GeneralNoteLines(bool withNonOUObjectLine) {
    std::span<const std::string_view> lines = kGeneralLines;
    return ToLines(withNonOUObjectLine ? lines : lines.first(lines.size() - 1));
}

std::vector<std::string> FixedNoteLines(Note note, OperationKind op) {
    switch (note) {
        case Note::MdfLine:
            return ToLines(kMdfLine);
        case Note::MovLine:
            return ToLines(kMovLine);
        case Note::GroupNameMov:
            return ToLines(kGroupNameMov);
        case Note::ComputerNameMov:
            return ToLines(kComputerNameMov);
        case Note::CautionOUAdd:
            return ToLines(kCautionOUAdd);
        case Note::CautionAccessRights:
            return ToLines(kCautionAccessRights);
        case Note::CautionOUName:
            return ToLines(kCautionOUName);
        case Note::CautionManager:
            return ToLines(kCautionManager);
        case Note::CautionMemberAdd:
            return ToLines(kCautionMemberAdd);
        case Note::CautionGroupAdd:
            return ToLines(kCautionGroupAdd);
        case Note::CautionGroupNameChange:
            return ToLines(kCautionGroupNameChange);
        case Note::CautionUserProperties: {
            Lines lines = ToLines(kCautionUserPropertiesHead);
            if (op == OperationKind::Mdf) lines.emplace_back(kExpiryClearLine);
            for (std::string_view line : kCautionUserPropertiesTail) lines.emplace_back(line);
            return lines;
        }
    }
    throw std::logic_error("unknown note block");
}

std::vector<std::string> HeaderNoteLines(std::string_view header, ObjectKind kind,
                                         OperationKind op) {
    Entries entries = EntriesOf(header, kind, op);
    if (entries.empty()) throw std::logic_error("no note block for header " + std::string(header));

    Lines lines;
    if (EqualsIgnoreCase(header, "AceOpeMode"))
        lines.push_back("　◆　「AceOpeMode」の入力規約");
    else
        lines.push_back("　◆ ヘッダ「" + std::string(header) + "」の入力規約");
    for (const ValueEntry& entry : entries) {
        if (entry.value.empty())
            lines.push_back("　　・ " + std::string(entry.meaning));
        else
            lines.push_back("　　・ 入力値：　" + std::string(entry.value) + "　→　" +
                            std::string(entry.meaning));
    }
    return lines;
}

}  // namespace orin::templates
