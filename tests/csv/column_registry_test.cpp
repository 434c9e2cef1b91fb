#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "CsvTestFiles.h"
#include "csv/ColumnRegistry.h"
#include "csv/CsvReader.h"
#include "platform/Strings.h"
#include "run/RunContext.h"

using namespace orin;

namespace {

// Who knows which name: A Add, D Del, V Mov, M Mdf, X compare of an export.
struct Membership {
    const char* name;
    const char* runs;
};

const std::vector<Membership> kOu = {{"OU-Start", "ADVMX"},
                                     {"OU-End", "ADVMX"},
                                     {"c", "AMX"},
                                     {"postalCode", "AMX"},
                                     {"st", "AMX"},
                                     {"l", "AMX"},
                                     {"street", "AMX"},
                                     {"description", "AMX"},
                                     {"MgrOU-Start", "AMX"},
                                     {"MgrOU-End", "AMX"},
                                     {"MgrRDN", "AMX"},
                                     {"Mirror", "ADVMX"},
                                     {"RemDefaultACL", "AM"},
                                     {"DoNotRemTheseACE", "AM"},
                                     {"AceSamAccountName", "AM"},
                                     {"AceOpeMode", "AM"},
                                     {"AccessRight", "AM"},
                                     {"PermitOrDeny", "AM"},
                                     {"InheritOption", "AM"},
                                     {"InheritParentACL", "AM"},
                                     {"IfDelSubObj", "D"},
                                     {"NewOU-Start", "V"},
                                     {"NewOU-End", "V"},
                                     {"NewRDN", "VM"},
                                     {"postOfficeBox", "M"}};
const std::vector<Membership> kGroup = {
    {"OU-Start", "ADVMX"},     {"OU-End", "ADVMX"},     {"RDN", "ADVMX"},
    {"sAMAccountName", "AMX"}, {"description", "AMX"},  {"info", "AMX"},
    {"mail", "AMX"},           {"GroupRange", "AMX"},   {"GroupClass", "AMX"},
    {"MgrOU-Start", "AMX"},    {"MgrOU-End", "AMX"},    {"MgrRDN", "AMX"},
    {"MemberOU-Start", "AMX"}, {"MemberOU-End", "AMX"}, {"MemberRDN", "AMX"},
    {"GrpOU-Start", "AMX"},    {"GrpOU-End", "AMX"},    {"groupRDN", "AMX"},
    {"Mirror", "ADVMX"},       {"NewOU-Start", "V"},    {"NewOU-End", "V"},
    {"NewRDN", "VM"},          {"MemberProcFlg", "M"},  {"GroupProcFlg", "M"},
    {"ClearAllMember", "M"},   {"ClearAllGroup", "M"}};
const std::vector<Membership> kUser = {{"OU-Start", "ADVMX"},
                                       {"OU-End", "ADVMX"},
                                       {"RDN", "ADVMX"},
                                       {"userPrincipalName", "AMX"},
                                       {"sAMAccountName", "AMX"},
                                       {"Password", "AMX"},
                                       {"sn", "AMX"},
                                       {"givenName", "AMX"},
                                       {"initials", "AMX"},
                                       {"DisplayName", "AMX"},
                                       {"Description", "AMX"},
                                       {"physicalDeliveryOfficeName", "AMX"},
                                       {"TelephoneNumber", "AMX"},
                                       {"otherTelephone", "AMX"},
                                       {"mail", "AMX"},
                                       {"wWWHomePage", "AMX"},
                                       {"url", "AMX"},
                                       {"c", "AMX"},
                                       {"postalCode", "AMX"},
                                       {"st", "AMX"},
                                       {"l", "AMX"},
                                       {"postOfficeBox", "AMX"},
                                       {"streetAddress", "AMX"},
                                       {"NextLogonChPwd", "AMX"},
                                       {"PwdCantChange", "AMX"},
                                       {"PwdNeverExpires", "AMX"},
                                       {"AccountDisabled", "AMX"},
                                       {"AccountExpirationDate", "AMX"},
                                       {"profilePath", "AMX"},
                                       {"scriptPath", "AMX"},
                                       {"LocalPath", "AMX"},
                                       {"homeDrive", "AMX"},
                                       {"netPath", "AMX"},
                                       {"GrpOU-Start", "AMX"},
                                       {"GrpOU-End", "AMX"},
                                       {"groupRDN", "AMX"},
                                       {"Mirror", "ADVMX"},
                                       {"title", "AMX"},
                                       {"userWorkstations", "AMX"},
                                       {"AllowDialin", "AMX"},
                                       {"NewOU-Start", "V"},
                                       {"NewOU-End", "V"},
                                       {"NewRDN", "VM"},
                                       {"GroupProcFlg", "M"},
                                       {"ClearAllGroup", "M"},
                                       {"LastLogin", "X"},
                                       {"PasswordLastChanged", "X"}};
const std::vector<Membership> kComputer = {{"OU-Start", "ADVMX"},
                                           {"OU-End", "ADVMX"},
                                           {"RDN", "ADVMX"},
                                           {"Mirror", "ADVMX"},
                                           {"GrpOU-Start", "AMX"},
                                           {"GrpOU-End", "AMX"},
                                           {"groupRDN", "AMX"},
                                           {"sAMAccountName", "AMX"},
                                           {"AccountDisabled", "AMX"},
                                           {"description", "AMX"},
                                           {"location", "AMX"},
                                           {"MgrOU-Start", "AMX"},
                                           {"MgrOU-End", "AMX"},
                                           {"MgrRDN", "AMX"},
                                           {"NewOU-Start", "V"},
                                           {"NewOU-End", "V"},
                                           {"NewRDN", "VM"},
                                           {"ClearAllGroup", "M"},
                                           {"GroupProcFlg", "M"},
                                           {"dNSHostName", "X"},
                                           {"OperatingSystem", "X"},
                                           {"OperatingSystemVersion", "X"},
                                           {"operatingSystemServicePack", "X"}};
const std::vector<Membership> kShared = {
    {"OU-Start", "ADVMX"},  {"OU-End", "ADVMX"},  {"RDN", "ADVMX"},       {"uNCName", "AMX"},
    {"description", "AMX"}, {"Mirror", "ADVMX"},  {"MgrOU-Start", "AMX"}, {"MgrOU-End", "AMX"},
    {"MgrRDN", "AMX"},      {"NewOU-Start", "V"}, {"NewOU-End", "V"},     {"NewRDN", "VM"}};
const std::vector<Membership> kGpo = {
    {"OU-Start", "X"}, {"OU-End", "X"}, {"RDN", "X"}, {"Mirror", "X"}, {"displayName", "X"}};

const std::vector<ObjectKind> kKinds = {ObjectKind::OU,           ObjectKind::Group,
                                        ObjectKind::User,         ObjectKind::Computer,
                                        ObjectKind::SharedFolder, ObjectKind::GpoLink};

const std::vector<Membership>& MembershipOf(ObjectKind kind) {
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
            return kShared;
        default:
            return kGpo;
    }
}

std::multiset<std::string> Folded(const std::vector<std::string>& names) {
    std::multiset<std::string> out;
    for (const std::string& n : names)
        if (!n.empty()) out.insert(ToLowerAscii(n));
    return out;
}

std::multiset<std::string> Expected(ObjectKind kind, char run) {
    std::multiset<std::string> out;
    for (const Membership& m : MembershipOf(kind))
        if (std::string_view(m.runs).find(run) != std::string_view::npos)
            out.insert(ToLowerAscii(m.name));
    return out;
}

}  // namespace

TEST(ColumnRegistry, EveryRunKnowsExactlyItsNames) {
    const std::pair<OperationKind, char> ops[] = {{OperationKind::Add, 'A'},
                                                  {OperationKind::Del, 'D'},
                                                  {OperationKind::Mov, 'V'},
                                                  {OperationKind::Mdf, 'M'}};
    for (ObjectKind kind : kKinds) {
        SCOPED_TRACE(static_cast<int>(kind));
        for (auto [op, mark] : ops)
            EXPECT_EQ(Folded(ColumnNamesFor(kind, op)), Expected(kind, mark))
                << "operation " << static_cast<int>(op);
        EXPECT_EQ(Folded(ColumnNamesFor(kind, OperationKind::Add, true)), Expected(kind, 'X'));
        EXPECT_EQ(Folded(ColumnNamesFor(kind, OperationKind::Exp)), Expected(kind, 'X'));
        // The export file holds the same set as its compare reads.
        std::vector<std::string> exported;
        for (std::string_view n : ExportColumnNames(kind)) exported.emplace_back(n);
        EXPECT_EQ(Folded(exported), Expected(kind, 'X'));
    }
}

TEST(ColumnRegistry, ListsKeepTheEnginesPositions) {
    auto ouAdd = ColumnNamesFor(ObjectKind::OU, OperationKind::Add);
    ASSERT_EQ(ouAdd.size(), 21u);
    EXPECT_EQ(ouAdd[6], "");  // the add run leaves this position unused
    EXPECT_EQ(ouAdd[7], "street");
    EXPECT_EQ(ouAdd[20], "InheritParentACL");
    auto usrMdf = ColumnNamesFor(ObjectKind::User, OperationKind::Mdf);
    ASSERT_EQ(usrMdf.size(), 43u);
    EXPECT_EQ(usrMdf[9], "Mirror");
    EXPECT_EQ(usrMdf[42], "AllowDialin");
    EXPECT_EQ(ColumnNamesFor(ObjectKind::User, OperationKind::Add).size(), 40u);
    EXPECT_EQ(ColumnNamesFor(ObjectKind::Computer, OperationKind::Mdf)[5], "ClearAllGroup");
    EXPECT_EQ(ColumnNamesFor(ObjectKind::SharedFolder, OperationKind::Mdf)[4], "NewRDN");
    EXPECT_EQ(ColumnNamesFor(ObjectKind::OU, OperationKind::Del)[2], "IfDelSubObj");
    // GpoLink has only the compare of an export.
    EXPECT_TRUE(ColumnNamesFor(ObjectKind::GpoLink, OperationKind::Add).empty());
    EXPECT_EQ(ExportColumnNames(ObjectKind::User).back(), "PasswordLastChanged");
}

TEST(ColumnRegistry, EveryNameOfEveryListHasACaption) {
    for (ObjectKind kind : kKinds) {
        for (const Membership& m : MembershipOf(kind))
            EXPECT_FALSE(ColumnCaption(kind, m.name).empty())
                << static_cast<int>(kind) << " " << m.name;
        // Any case finds the caption; a name the kind doesn't have gets none.
        EXPECT_EQ(ColumnCaption(kind, "MIRROR"), "ミラー");
        EXPECT_EQ(ColumnCaption(kind, "NoSuchColumn"), "");
        EXPECT_EQ(ColumnCaption(kind, ""), "");
    }
    EXPECT_EQ(ColumnCaption(ObjectKind::OU, "RDN"), "");
    EXPECT_EQ(ColumnCaption(ObjectKind::User, "IfDelSubObj"), "");
}

TEST(ColumnRegistry, CaptionsOfTheOuAddTemplateAndByKind) {
    const std::vector<std::string> names = {"OU-Start",
                                            "OU-End",
                                            "Mirror",
                                            "c",
                                            "postalCode",
                                            "st",
                                            "l",
                                            "street",
                                            "description",
                                            "MgrOU-Start",
                                            "MgrOU-End",
                                            "MgrRDN",
                                            "InheritParentACL",
                                            "RemDefaultACL",
                                            "DoNotRemTheseACE",
                                            "AceSamAccountName",
                                            "AceOpeMode",
                                            "AccessRight",
                                            "PermitOrDeny",
                                            "InheritOption"};
    std::vector<std::string> captions;
    for (const std::string& n : names) captions.emplace_back(ColumnCaption(ObjectKind::OU, n));
    EXPECT_EQ(
        Join(captions, ","),
        "最上位階層OU名またはデフォルトコンテナ名,最下位階層OU名,ミラー,国/地域,郵便番号,"
        "都道府県,市区町村,番地,説明,管理者所在OUの最上位階層OU名またはデフォルトコンテナ名,"
        "管理者所在OUの最下位階層OU名,管理者の名前,親コンテナからのアクセス許可の継承モード,"
        "既定のACL（アクセス制御リスト）を削除するか,"
        "既定のACLを削除する場合に削除対象外にするACE（アクセス制御エントリ）のSAMアカウント名,"
        "設定するACEのSAMアカウント名,ACE操作モード,アクセス許可,許可か拒否,ACEの適用先");

    EXPECT_EQ(ColumnCaption(ObjectKind::Group, "RDN"), "グループ名");
    EXPECT_EQ(ColumnCaption(ObjectKind::Group, "samaccountname"),
              "グループ名（Windows 2000 以前）");
    EXPECT_EQ(ColumnCaption(ObjectKind::User, "RDN"), "フルネーム");
    EXPECT_EQ(ColumnCaption(ObjectKind::Computer, "NewRDN"), "コンピュータ名（新）");
    EXPECT_EQ(ColumnCaption(ObjectKind::SharedFolder, "RDN"), "名前");
    EXPECT_EQ(ColumnCaption(ObjectKind::SharedFolder, "uNCName"),
              "UNC名（例：\\\\サーバー\\共有）");
}

TEST(ColumnRegistry, EnginesFindCellsByName) {
    PrepareRunColumns(ObjectKind::Group, OperationKind::Del);
    ASSERT_EQ(gRun.ColumnNames, (std::vector<std::string>{"OU-Start", "OU-End", "RDN", "Mirror"}));
    EXPECT_EQ(gRun.ColumnIndex, (std::vector<int16_t>(4, -1)));

    auto p =
        csvtest::WriteCsv("lookup.csv", "!OU-Start,,OU-End,mirror,Rdn\r\n営業部,一課,,,G1\r\n");
    ASSERT_TRUE(ReadHeader(p, gRun.ColumnNames, gRun.ColumnIndex));
    EXPECT_EQ(ColumnIndexOf("RDN"), 4);
    EXPECT_EQ(ColumnIndexOf("ou-end"), 2);
    EXPECT_EQ(ColumnIndexOf("NewRDN"), -1);  // not a name of this run
    EXPECT_EQ(FindColumnSlot(gRun.ColumnNames, "MIRROR"), 3);
    EXPECT_EQ(FindColumnSlot(gRun.ColumnNames, ""), -1);

    std::vector<std::string> cells = SplitCells("営業部,一課,,,G1");
    EXPECT_EQ(CellOf(cells, "RDN"), "G1");
    EXPECT_EQ(CellOf(cells, "OU-Start"), "営業部");
    EXPECT_EQ(CellOf(cells, "Mirror"), "");
    EXPECT_EQ(CellOf(cells, "NewRDN"), "");
    EXPECT_EQ(CellOf(SplitCells("営業部"), "RDN"), "");  // a short row
}
