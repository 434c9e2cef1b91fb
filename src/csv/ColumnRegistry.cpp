#include "csv/ColumnRegistry.h"

#include "base/RunContext.h"
#include "csv/CsvReader.h"
#include "platform/Strings.h"

namespace orin {
namespace {

using Names = std::span<const std::string_view>;

// Run lists, in the order in which the engines take their columns.

constexpr std::string_view kOuAdd[] = {"OU-Start",
                                       "OU-End",
                                       "c",
                                       "postalCode",
                                       "st",
                                       "l",
                                       "",  // unused position: the add run has no postOfficeBox
                                       "street",
                                       "description",
                                       "MgrOU-Start",
                                       "MgrOU-End",
                                       "MgrRDN",
                                       "Mirror",
                                       "RemDefaultACL",
                                       "DoNotRemTheseACE",
                                       "AceSamAccountName",
                                       "AceOpeMode",
                                       "AccessRight",
                                       "PermitOrDeny",
                                       "InheritOption",
                                       "InheritParentACL"};
constexpr std::string_view kOuDel[] = {"OU-Start", "OU-End", "IfDelSubObj", "Mirror"};
constexpr std::string_view kOuMov[] = {"OU-Start",  "OU-End", "NewOU-Start",
                                       "NewOU-End", "NewRDN", "Mirror"};
constexpr std::string_view kOuMdf[] = {"OU-Start",
                                       "OU-End",
                                       "NewRDN",
                                       "c",
                                       "postalCode",
                                       "st",
                                       "l",
                                       "postOfficeBox",
                                       "street",
                                       "description",
                                       "MgrOU-Start",
                                       "MgrOU-End",
                                       "MgrRDN",
                                       "RemDefaultACL",
                                       "DoNotRemTheseACE",
                                       "AceSamAccountName",
                                       "AceOpeMode",
                                       "AccessRight",
                                       "PermitOrDeny",
                                       "InheritOption",
                                       "Mirror",
                                       "InheritParentACL"};
constexpr std::string_view kOuExpCompare[] = {"OU-Start",    "OU-End",    "c",      "postalCode",
                                              "st",          "l",         "street", "description",
                                              "MgrOU-Start", "MgrOU-End", "MgrRDN", "Mirror"};

// Group, user, computer and shared-folder delete and move share one shape.
constexpr std::string_view kObjectDel[] = {"OU-Start", "OU-End", "RDN", "Mirror"};
constexpr std::string_view kObjectMov[] = {"OU-Start",  "OU-End", "RDN",   "NewOU-Start",
                                           "NewOU-End", "NewRDN", "Mirror"};

constexpr std::string_view kGrpAdd[] = {
    "OU-Start",       "OU-End",       "RDN",        "sAMAccountName", "description", "info",
    "mail",           "GroupRange",   "GroupClass", "MgrOU-Start",    "MgrOU-End",   "MgrRDN",
    "MemberOU-Start", "MemberOU-End", "MemberRDN",  "GrpOU-Start",    "GrpOU-End",   "groupRDN",
    "Mirror"};
constexpr std::string_view kGrpMdf[] = {
    "OU-Start",      "OU-End",    "RDN",      "MemberOU-Start", "MemberOU-End",   "MemberRDN",
    "MemberProcFlg", "Mirror",    "NewRDN",   "sAMAccountName", "GroupRange",     "GroupClass",
    "description",   "info",      "mail",     "MgrOU-Start",    "MgrOU-End",      "MgrRDN",
    "GrpOU-Start",   "GrpOU-End", "groupRDN", "GroupProcFlg",   "ClearAllMember", "ClearAllGroup"};

constexpr std::string_view kUsrAdd[] = {"OU-Start",
                                        "OU-End",
                                        "RDN",
                                        "userPrincipalName",
                                        "sAMAccountName",
                                        "Password",
                                        "sn",
                                        "givenName",
                                        "initials",
                                        "DisplayName",
                                        "Description",
                                        "physicalDeliveryOfficeName",
                                        "TelephoneNumber",
                                        "otherTelephone",
                                        "mail",
                                        "wWWHomePage",
                                        "url",
                                        "c",
                                        "postalCode",
                                        "st",
                                        "l",
                                        "postOfficeBox",
                                        "streetAddress",
                                        "NextLogonChPwd",
                                        "PwdCantChange",
                                        "PwdNeverExpires",
                                        "AccountDisabled",
                                        "AccountExpirationDate",
                                        "profilePath",
                                        "scriptPath",
                                        "LocalPath",
                                        "homeDrive",
                                        "netPath",
                                        "GrpOU-Start",
                                        "GrpOU-End",
                                        "groupRDN",
                                        "Mirror",
                                        "title",
                                        "userWorkstations",
                                        "AllowDialin"};
constexpr std::string_view kUsrMdf[] = {"OU-Start",
                                        "OU-End",
                                        "RDN",
                                        "GrpOU-Start",
                                        "GrpOU-End",
                                        "groupRDN",
                                        "GroupProcFlg",
                                        "NextLogonChPwd",
                                        "AccountDisabled",
                                        "Mirror",
                                        "NewRDN",
                                        "userPrincipalName",
                                        "sAMAccountName",
                                        "Password",
                                        "sn",
                                        "givenName",
                                        "initials",
                                        "DisplayName",
                                        "description",
                                        "physicalDeliveryOfficeName",
                                        "TelephoneNumber",
                                        "otherTelephone",
                                        "mail",
                                        "wWWHomePage",
                                        "url",
                                        "c",
                                        "postalCode",
                                        "st",
                                        "l",
                                        "postOfficeBox",
                                        "streetAddress",
                                        "userWorkstations",
                                        "PwdCantChange",
                                        "PwdNeverExpires",
                                        "AccountExpirationDate",
                                        "profilePath",
                                        "scriptPath",
                                        "LocalPath",
                                        "homeDrive",
                                        "netPath",
                                        "title",
                                        "ClearAllGroup",
                                        "AllowDialin"};
constexpr std::string_view kUsrExpCompare[] = {"OU-Start",
                                               "OU-End",
                                               "RDN",
                                               "userPrincipalName",
                                               "sAMAccountName",
                                               "Password",
                                               "sn",
                                               "givenName",
                                               "initials",
                                               "DisplayName",
                                               "Description",
                                               "physicalDeliveryOfficeName",
                                               "TelephoneNumber",
                                               "otherTelephone",
                                               "mail",
                                               "wWWHomePage",
                                               "url",
                                               "c",
                                               "postalCode",
                                               "st",
                                               "l",
                                               "postOfficeBox",
                                               "streetAddress",
                                               "NextLogonChPwd",
                                               "PwdCantChange",
                                               "PwdNeverExpires",
                                               "AccountDisabled",
                                               "AccountExpirationDate",
                                               "profilePath",
                                               "scriptPath",
                                               "LocalPath",
                                               "homeDrive",
                                               "netPath",
                                               "GrpOU-Start",
                                               "GrpOU-End",
                                               "groupRDN",
                                               "Mirror",
                                               "title",
                                               "userWorkstations",
                                               "AllowDialin",
                                               "LastLogin",
                                               "PasswordLastChanged"};

constexpr std::string_view kComAdd[] = {"OU-Start",    "OU-End",         "RDN",
                                        "Mirror",      "GrpOU-Start",    "GrpOU-End",
                                        "groupRDN",    "sAMAccountName", "AccountDisabled",
                                        "description", "location",       "MgrOU-Start",
                                        "MgrOU-End",   "MgrRDN"};
constexpr std::string_view kComMdf[] = {
    "OU-Start",    "OU-End",    "RDN",         "Mirror",       "NewRDN",         "ClearAllGroup",
    "GrpOU-Start", "GrpOU-End", "groupRDN",    "GroupProcFlg", "sAMAccountName", "AccountDisabled",
    "description", "location",  "MgrOU-Start", "MgrOU-End",    "MgrRDN"};
constexpr std::string_view kComExpCompare[] = {"OU-Start",
                                               "OU-End",
                                               "RDN",
                                               "Mirror",
                                               "GrpOU-Start",
                                               "GrpOU-End",
                                               "groupRDN",
                                               "sAMAccountName",
                                               "AccountDisabled",
                                               "description",
                                               "location",
                                               "MgrOU-Start",
                                               "MgrOU-End",
                                               "MgrRDN",
                                               "dNSHostName",
                                               "OperatingSystem",
                                               "OperatingSystemVersion",
                                               "operatingSystemServicePack"};

constexpr std::string_view kShrAdd[] = {"OU-Start",    "OU-End",      "RDN",
                                        "uNCName",     "description", "Mirror",
                                        "MgrOU-Start", "MgrOU-End",   "MgrRDN"};
constexpr std::string_view kShrMdf[] = {"OU-Start",  "OU-End",  "RDN",         "Mirror",
                                        "NewRDN",    "uNCName", "description", "MgrOU-Start",
                                        "MgrOU-End", "MgrRDN"};

constexpr std::string_view kGpoExpCompare[] = {"OU-Start", "OU-End", "RDN", "Mirror",
                                               "displayName"};

// Export files, in file order.

constexpr std::string_view kOuExport[] = {"OU-Start",    "OU-End",      "Mirror",    "c",
                                          "postalCode",  "st",          "l",         "street",
                                          "description", "MgrOU-Start", "MgrOU-End", "MgrRDN"};
constexpr std::string_view kGrpExport[] = {
    "OU-Start",    "OU-End",      "RDN",         "Mirror",         "sAMAccountName",
    "GroupRange",  "GroupClass",  "description", "mail",           "info",
    "MgrOU-Start", "MgrOU-End",   "MgrRDN",      "MemberOU-Start", "MemberOU-End",
    "MemberRDN",   "GrpOU-Start", "GrpOU-End",   "groupRDN"};
constexpr std::string_view kUsrExport[] = {"OU-Start",
                                           "OU-End",
                                           "RDN",
                                           "Mirror",
                                           "userPrincipalName",
                                           "sAMAccountName",
                                           "Password",
                                           "sn",
                                           "givenName",
                                           "initials",
                                           "DisplayName",
                                           "Description",
                                           "physicalDeliveryOfficeName",
                                           "TelephoneNumber",
                                           "otherTelephone",
                                           "mail",
                                           "wWWHomePage",
                                           "url",
                                           "c",
                                           "postalCode",
                                           "st",
                                           "l",
                                           "postOfficeBox",
                                           "streetAddress",
                                           "userWorkstations",
                                           "NextLogonChPwd",
                                           "PwdCantChange",
                                           "PwdNeverExpires",
                                           "AccountDisabled",
                                           "AccountExpirationDate",
                                           "profilePath",
                                           "scriptPath",
                                           "LocalPath",
                                           "homeDrive",
                                           "netPath",
                                           "title",
                                           "GrpOU-Start",
                                           "GrpOU-End",
                                           "groupRDN",
                                           "AllowDialin",
                                           "LastLogin",
                                           "PasswordLastChanged"};
constexpr std::string_view kComExport[] = {"OU-Start",
                                           "OU-End",
                                           "RDN",
                                           "Mirror",
                                           "sAMAccountName",
                                           "AccountDisabled",
                                           "description",
                                           "dNSHostName",
                                           "location",
                                           "OperatingSystem",
                                           "OperatingSystemVersion",
                                           "operatingSystemServicePack",
                                           "MgrOU-Start",
                                           "MgrOU-End",
                                           "MgrRDN",
                                           "GrpOU-Start",
                                           "GrpOU-End",
                                           "groupRDN"};
constexpr std::string_view kShrExport[] = {"OU-Start",    "OU-End",    "RDN",
                                           "Mirror",      "uNCName",   "description",
                                           "MgrOU-Start", "MgrOU-End", "MgrRDN"};
constexpr std::string_view kGpoExport[] = {"OU-Start", "OU-End", "RDN", "Mirror", "displayName"};

// The run lists of each kind, by OperationKind (Add, Del, Mov, Mdf), and the list of the
// compare of an export file. A kind without an operation has an empty list.
struct KindLists {
    Names byOperation[4];
    Names compareOfExport;
};

const KindLists& ListsOf(ObjectKind kind) {
    static const KindLists kOu{{kOuAdd, kOuDel, kOuMov, kOuMdf}, kOuExpCompare};
    // The group's export columns are exactly its add run's columns.
    static const KindLists kGroup{{kGrpAdd, kObjectDel, kObjectMov, kGrpMdf}, kGrpAdd};
    static const KindLists kUser{{kUsrAdd, kObjectDel, kObjectMov, kUsrMdf}, kUsrExpCompare};
    static const KindLists kComputer{{kComAdd, kObjectDel, kObjectMov, kComMdf}, kComExpCompare};
    static const KindLists kShare{{kShrAdd, kObjectDel, kObjectMov, kShrMdf}, kShrAdd};
    static const KindLists kGpo{{}, kGpoExpCompare};
    switch (kind) {
        case ObjectKind::OU:
            return kOu;
        case ObjectKind::Group:
            return kGroup;
        case ObjectKind::User:
            return kUser;
        case ObjectKind::Computer:
            return kComputer;
        case ObjectKind::SharedFolder:
            return kShare;
        case ObjectKind::GpoLink:
            break;
    }
    return kGpo;
}

Names RunList(ObjectKind kind, OperationKind op, bool compareOfExport) {
    const KindLists& lists = ListsOf(kind);
    if (compareOfExport || op == OperationKind::Exp) return lists.compareOfExport;
    auto index = static_cast<size_t>(op);
    return index < std::size(lists.byOperation) ? lists.byOperation[index] : Names{};
}

struct Caption {
    std::string_view name;
    std::string_view text;
};

// Captions that read the same for every kind, in the words of the templates.
constexpr Caption kCommonCaptions[] = {
    {"OU-Start", "最上位階層OU名またはデフォルトコンテナ名"},
    {"OU-End", "最下位階層OU名"},
    {"RDN", "名前"},
    {"NewRDN", "名前（新）"},
    {"NewOU-Start", "移動先の最上位階層OU名またはデフォルトコンテナ名"},
    {"NewOU-End", "移動先の最下位階層OU名"},
    {"Mirror", "ミラー"},
    {"c", "国/地域"},
    {"postalCode", "郵便番号"},
    {"st", "都道府県"},
    {"l", "市区町村"},
    {"street", "番地"},
    {"streetAddress", "番地"},
    {"postOfficeBox", "私書箱"},
    {"description", "説明"},
    {"MgrOU-Start", "管理者所在OUの最上位階層OU名またはデフォルトコンテナ名"},
    {"MgrOU-End", "管理者所在OUの最下位階層OU名"},
    {"MgrRDN", "管理者の名前"},
    {"InheritParentACL", "親コンテナからのアクセス許可の継承モード"},
    {"RemDefaultACL", "既定のACL（アクセス制御リスト）を削除するか"},
    {"DoNotRemTheseACE",
     "既定のACLを削除する場合に削除対象外にするACE（アクセス制御エントリ）のSAMアカウント名"},
    {"AceSamAccountName", "設定するACEのSAMアカウント名"},
    {"AceOpeMode", "ACE操作モード"},
    {"AccessRight", "アクセス許可"},
    {"PermitOrDeny", "許可か拒否"},
    {"InheritOption", "ACEの適用先"},
    {"IfDelSubObj", "OU配下のすべてのオブジェクトを削除するか"},
    {"MemberOU-Start", "メンバー所在OUの最上位階層OU名またはデフォルトコンテナ名"},
    {"MemberOU-End", "メンバー所在OUの最下位階層OU名"},
    {"MemberRDN", "メンバーの名前"},
    {"MemberProcFlg", "メンバーに対する処理内容"},
    {"ClearAllMember", "現在のメンバーをすべて削除するか"},
    {"GrpOU-Start", "所属するグループ所在OUの最上位階層OU名またはデフォルトコンテナ名"},
    {"GrpOU-End", "所属するグループ所在OUの最下位階層OU名"},
    {"groupRDN", "所属するグループのグループ名"},
    {"GroupProcFlg", "所属するグループに対する処理内容"},
    {"ClearAllGroup", "現在の所属するグループをすべて削除するか"},
    {"info", "メモ"},
    {"mail", "電子メール"},
    {"GroupRange", "グループの範囲"},
    {"GroupClass", "グループの種類"},
    {"userPrincipalName", "ユーザーログオン名"},
    {"Password", "パスワード"},
    {"sn", "姓"},
    {"givenName", "名"},
    {"initials", "イニシャル"},
    {"DisplayName", "表示名"},
    {"physicalDeliveryOfficeName", "事業所"},
    {"TelephoneNumber", "電話番号"},
    {"otherTelephone", "電話番号（その他）"},
    {"wWWHomePage", "Webページ"},
    {"url", "Webページ（その他）"},
    {"NextLogonChPwd", "ユーザーは次回ログオン時にパスワード変更が必要"},
    {"PwdCantChange", "ユーザーはパスワードを変更できない"},
    {"PwdNeverExpires", "パスワードを無期限にする"},
    {"AccountDisabled", "アカウントは無効"},
    {"AccountExpirationDate", "アカウントの期限"},
    {"profilePath", "プロファイルパス"},
    {"scriptPath", "ログオンスクリプト"},
    {"LocalPath", "ローカルパス"},
    {"homeDrive", "接続ドライブ"},
    {"netPath", "パス"},
    {"title", "役職"},
    {"userWorkstations", "ログオン先"},
    {"AllowDialin", "リモートアクセス許可"},
    {"LastLogin", "最終ログオン日時"},
    {"PasswordLastChanged", "パスワード最終変更日時"},
    {"location", "場所"},
    {"dNSHostName", "DNS名"},
    {"OperatingSystem", "オペレーティングシステムの名前"},
    {"OperatingSystemVersion", "オペレーティングシステムのバージョン"},
    {"operatingSystemServicePack", "オペレーティングシステムのService Pack"},
    {"uNCName", "UNC名（例：\\\\サーバー\\共有）"},
};

// Names whose caption depends on the kind of object the row names.
constexpr Caption kGroupCaptions[] = {
    {"RDN", "グループ名"},
    {"NewRDN", "グループ名（新）"},
    {"sAMAccountName", "グループ名（Windows 2000 以前）"},
};
constexpr Caption kUserCaptions[] = {
    {"RDN", "フルネーム"},
    {"NewRDN", "フルネーム（新）"},
    {"sAMAccountName", "ユーザーログオン名（Windows 2000 以前）"},
};
constexpr Caption kComputerCaptions[] = {
    {"RDN", "コンピュータ名"},
    {"NewRDN", "コンピュータ名（新）"},
    {"sAMAccountName", "コンピュータ名（Windows 2000 以前）"},
};
constexpr Caption kGpoCaptions[] = {
    {"RDN", "グループポリシーのGUID"},
};

std::span<const Caption> KindCaptions(ObjectKind kind) {
    switch (kind) {
        case ObjectKind::Group:
            return kGroupCaptions;
        case ObjectKind::User:
            return kUserCaptions;
        case ObjectKind::Computer:
            return kComputerCaptions;
        case ObjectKind::GpoLink:
            return kGpoCaptions;
        default:
            return {};
    }
}

bool KindKnowsName(ObjectKind kind, std::string_view name) {
    for (OperationKind op : {OperationKind::Add, OperationKind::Del, OperationKind::Mov,
                             OperationKind::Mdf, OperationKind::Exp})
        for (std::string_view known : RunList(kind, op, false))
            if (!known.empty() && EqualsIgnoreCase(known, name)) return true;
    for (std::string_view known : ExportColumnNames(kind))
        if (EqualsIgnoreCase(known, name)) return true;
    return false;
}

}  // namespace

std::vector<std::string> ColumnNamesFor(ObjectKind kind, OperationKind op, bool compareOfExport) {
    Names list = RunList(kind, op, compareOfExport);
    return std::vector<std::string>(list.begin(), list.end());
}

void PrepareRunColumns(ObjectKind kind, OperationKind op, bool compareOfExport) {
    gRun.ColumnNames = ColumnNamesFor(kind, op, compareOfExport);
    gRun.ColumnIndex.assign(gRun.ColumnNames.size(), -1);
}

std::span<const std::string_view> ExportColumnNames(ObjectKind kind) {
    switch (kind) {
        case ObjectKind::OU:
            return kOuExport;
        case ObjectKind::Group:
            return kGrpExport;
        case ObjectKind::User:
            return kUsrExport;
        case ObjectKind::Computer:
            return kComExport;
        case ObjectKind::SharedFolder:
            return kShrExport;
        case ObjectKind::GpoLink:
            return kGpoExport;
    }
    return {};
}

int FindColumnSlot(const std::vector<std::string>& names, std::string_view name) {
    if (name.empty()) return -1;
    for (size_t i = 0; i < names.size(); ++i)
        if (EqualsIgnoreCase(names[i], name)) return static_cast<int>(i);
    return -1;
}

int16_t ColumnIndexOf(std::string_view name) {
    int slot = FindColumnSlot(gRun.ColumnNames, name);
    if (slot < 0 || static_cast<size_t>(slot) >= gRun.ColumnIndex.size()) return -1;
    return gRun.ColumnIndex[static_cast<size_t>(slot)];
}

std::string CellOf(const std::vector<std::string>& cells, std::string_view name) {
    return CellAt(cells, ColumnIndexOf(name));
}

std::string_view ColumnCaption(ObjectKind kind, std::string_view name) {
    if (name.empty() || !KindKnowsName(kind, name)) return {};
    for (const Caption& c : KindCaptions(kind))
        if (EqualsIgnoreCase(c.name, name)) return c.text;
    for (const Caption& c : kCommonCaptions)
        if (EqualsIgnoreCase(c.name, name)) return c.text;
    return {};
}

}  // namespace orin
