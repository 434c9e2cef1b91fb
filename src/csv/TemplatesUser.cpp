// The user templates, with the three sample persons: 川原　一郎 heads the division, 森　健二 the
// department, 林　三郎 works in the group. They join the groups of the group add template.

#include <stdexcept>

#include "csv/TemplatesModel.h"

namespace orin::templates {
namespace {

constexpr std::string_view kKawahara = "川原　一郎";
constexpr std::string_view kMori = "森　健二";
constexpr std::string_view kHayashi = "林　三郎";
constexpr std::string_view kOffice = "ハルノ商事株式会社東京事業所";

TemplateDefinition UserAdd() {
    TemplateDefinition t{ObjectKind::User, OperationKind::Add};
    // In the order of the user export file.
    t.columns = {"OU-Start",
                 "",
                 "",
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
                 "AllowDialin"};
    t.rows = {
        {{"OU-Start", kTop},
         {"RDN", kKawahara},
         {"Mirror", "No"},
         {"userPrincipalName", "ichiro.kawahara"},
         {"sAMAccountName", "ichiro.kawahara"},
         {"sn", "川原"},
         {"givenName", "一郎"},
         {"initials", "IK"},
         {"DisplayName", kKawahara},
         {"Description", "IT事業本部長"},
         {"physicalDeliveryOfficeName", kOffice},
         {"TelephoneNumber", "03-1234-5678"},
         {"otherTelephone", "03-1234-5679;03-1234-5680"},
         {"mail", "ichiro.kawahara@haruno.co.jp"},
         {"wWWHomePage", "http://www.haruno.co.jp/"},
         {"url", "http://www.haruno.co.jp/it/;http://www.haruno.co.jp/tokyo/"},
         {"c", "JP"},
         {"postalCode", "100-0005"},
         {"st", "東京都"},
         {"l", "千代田区"},
         {"streetAddress", "丸の内1-1-1<Rtn>ハルノビル10F"},
         {"userWorkstations", "client001;client002"},
         {"NextLogonChPwd", "Yes"},
         {"PwdCantChange", "No"},
         {"PwdNeverExpires", "No"},
         {"AccountDisabled", "No"},
         {"profilePath", R"(\\fileserver\profiles\ichiro.kawahara)"},
         {"scriptPath", "logon.bat"},
         {"title", "本部長"},
         {"GrpOU-Start", kTop},
         {"groupRDN", "IT事業本部グループ"},
         {"AllowDialin", "Yes"}},
        {{"OU-Start", kTop},
         {"RDN", kKawahara},
         {"Mirror", "Yes"},
         {"GrpOU-Start", kSolution},
         {"groupRDN", "ITソリューション部グループ"}},
        // A home folder on a local path; the password can't be changed and never expires.
        {{"OU-Start", kSolution},
         {"RDN", kMori},
         {"Mirror", "No"},
         {"userPrincipalName", "kenji.mori"},
         {"sAMAccountName", "kenji.mori"},
         {"sn", "森"},
         {"givenName", "健二"},
         {"DisplayName", kMori},
         {"Description", "ITソリューション部長"},
         {"physicalDeliveryOfficeName", kOffice},
         {"TelephoneNumber", "03-1234-5681"},
         {"mail", "kenji.mori@haruno.co.jp"},
         {"c", "JP"},
         {"postalCode", "100-0005"},
         {"st", "東京都"},
         {"l", "千代田区"},
         {"streetAddress", "丸の内1-1-1"},
         {"NextLogonChPwd", "No"},
         {"PwdCantChange", "Yes"},
         {"PwdNeverExpires", "Yes"},
         {"AccountDisabled", "No"},
         {"profilePath", R"(\\fileserver\profiles\kenji.mori)"},
         {"scriptPath", "logon.bat"},
         {"LocalPath", R"(D:\Users\kenji.mori)"},
         {"title", "部長"},
         {"GrpOU-Start", kSolution},
         {"groupRDN", "ITソリューション部グループ"},
         {"AllowDialin", "No"}},
        // A first password, an account that starts disabled and expires, a network home folder.
        {{"OU-Start", kNetwork},
         {"RDN", kHayashi},
         {"Mirror", "No"},
         {"userPrincipalName", "saburo.hayashi"},
         {"sAMAccountName", "saburo.hayashi"},
         {"Password", "sakura"},
         {"sn", "林"},
         {"givenName", "三郎"},
         {"DisplayName", kHayashi},
         {"Description", "ネットワーク設計担当"},
         {"physicalDeliveryOfficeName", kOffice},
         {"TelephoneNumber", "03-1234-5682"},
         {"mail", "saburo.hayashi@haruno.co.jp"},
         {"c", "JP"},
         {"postalCode", "100-0005"},
         {"st", "東京都"},
         {"l", "千代田区"},
         {"streetAddress", "丸の内1-1-1"},
         {"AccountDisabled", "Yes"},
         {"AccountExpirationDate", "2030/12/22"},
         {"profilePath", R"(\\fileserver\profiles\saburo.hayashi)"},
         {"scriptPath", "logon.bat"},
         {"homeDrive", "H:"},
         {"netPath", R"(\\fileserver\home\saburo.hayashi)"},
         {"GrpOU-Start", kSolution},
         {"groupRDN", "ITソリューション部グループ"}},
    };
    t.explanation = {"Mirror",          "userWorkstations", "NextLogonChPwd", "PwdCantChange",
                     "PwdNeverExpires", "AccountDisabled",  "AllowDialin"};
    t.cautions = {Note::CautionGroupAdd, Note::CautionUserProperties};
    return t;
}

TemplateDefinition UserDel() {
    TemplateDefinition t{ObjectKind::User, OperationKind::Del};
    t.columns = {"OU-Start", "", "", "OU-End", "RDN", "Mirror"};
    t.rows = {
        {{"OU-Start", kTop}, {"RDN", kKawahara}, {"Mirror", "No"}},
        {{"OU-Start", kTop}, {"RDN", kKawahara}, {"Mirror", "Yes"}},
        {{"OU-Start", kSolution}, {"RDN", kMori}, {"Mirror", "No"}},
    };
    t.explanation = {"Mirror"};
    return t;
}

TemplateDefinition UserMov() {
    TemplateDefinition t{ObjectKind::User, OperationKind::Mov};
    t.columns = {"OU-Start",    "",          "",      "OU-End", "RDN", "Mirror",
                 "NewOU-Start", "NewOU-End", "NewRDN"};
    t.rows = {
        {{"OU-Start", kSolution}, {"RDN", kMori}, {"Mirror", "No"}, {"NewOU-Start", kTop}},
        {{"OU-Start", kSolution}, {"RDN", kMori}, {"Mirror", "Yes"}},
        // To the default container.
        {{"OU-Start", kTop}, {"RDN", kKawahara}, {"Mirror", "No"}, {"NewOU-Start", kUsers}},
    };
    t.explanation = {"Mirror"};
    return t;
}

TemplateDefinition UserMdf() {
    TemplateDefinition t{ObjectKind::User, OperationKind::Mdf};
    // The columns of the add with the modify's own: the new name, the clearing of all groups
    // and what to do with the named group.
    t.columns = {"OU-Start",
                 "",
                 "",
                 "OU-End",
                 "RDN",
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
                 "ClearAllGroup",
                 "GrpOU-Start",
                 "GrpOU-End",
                 "groupRDN",
                 "GroupProcFlg",
                 "AllowDialin"};
    t.rows = {
        // New telephone numbers, no dial-in setting of its own any more, out of all groups.
        {{"OU-Start", kTop},
         {"RDN", kKawahara},
         {"Mirror", "No"},
         {"TelephoneNumber", "03-1234-5600"},
         {"otherTelephone", "!C"},
         {"AllowDialin", "!C"},
         {"ClearAllGroup", "Yes"}},
        // A change of name: the new names, and a new password to be changed at the next logon.
        // The chain moves the user from the department's group to the division's.
        {{"OU-Start", kSolution},
         {"RDN", kMori},
         {"Mirror", "No"},
         {"NewRDN", "森本　健二"},
         {"userPrincipalName", "kenji.morimoto"},
         {"sAMAccountName", "kenji.morimoto"},
         {"Password", "morimoto"},
         {"sn", "森本"},
         {"DisplayName", "森本　健二"},
         {"mail", "kenji.morimoto@haruno.co.jp"},
         {"NextLogonChPwd", "Yes"},
         {"PwdCantChange", "No"},
         {"PwdNeverExpires", "No"},
         {"AccountExpirationDate", "2030/12/22"},
         {"GrpOU-Start", kTop},
         {"groupRDN", "IT事業本部グループ"},
         {"GroupProcFlg", "Add"}},
        {{"OU-Start", kSolution},
         {"RDN", kMori},
         {"Mirror", "Yes"},
         {"GrpOU-Start", kSolution},
         {"groupRDN", "ITソリューション部グループ"},
         {"GroupProcFlg", "Del"}},
    };
    t.explanation = {Note::MdfLine,   "Mirror",          "userWorkstations", "NextLogonChPwd",
                     "PwdCantChange", "PwdNeverExpires", "AccountDisabled",  "ClearAllGroup",
                     "GroupProcFlg",  "AllowDialin"};
    t.cautions = {Note::CautionGroupAdd, Note::CautionUserProperties};
    return t;
}

}  // namespace

TemplateDefinition DefineUserTemplate(OperationKind op) {
    switch (op) {
        case OperationKind::Add:
            return UserAdd();
        case OperationKind::Del:
            return UserDel();
        case OperationKind::Mov:
            return UserMov();
        case OperationKind::Mdf:
            return UserMdf();
        default:
            throw std::logic_error("no user template for this operation");
    }
}

}  // namespace orin::templates
