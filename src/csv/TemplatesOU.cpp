// The OU templates. The add builds the sample tree with its address, manager and access
// control; the others work on that tree.

#include <stdexcept>

#include "csv/TemplatesModel.h"

namespace orin::templates {
namespace {

constexpr std::string_view kStreet = "丸の内1-1-1";
constexpr std::string_view kManager = "Administrator";

TemplateDefinition OUAdd() {
    TemplateDefinition t{ObjectKind::OU, OperationKind::Add};
    t.columns = {"OU-Start",
                 "",
                 "",
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

    // The address, description and manager of an OU's first row.
    const auto ou = [](std::string_view path, std::string_view street,
                       std::string_view description) {
        return SampleRow{{"OU-Start", path},
                         {"Mirror", "No"},
                         {"c", "JP"},
                         {"postalCode", "100-0005"},
                         {"st", "東京都"},
                         {"l", "千代田区"},
                         {"street", street},
                         {"description", description},
                         {"MgrOU-Start", kUsers},
                         {"MgrRDN", kManager}};
    };
    const auto with = [](SampleRow row, std::initializer_list<SampleCell> more) {
        row.insert(row.end(), more);
        return row;
    };

    t.rows = {
        with(ou(kTop, "丸の内1-1-1<Rtn>ハルノビル10F", "IT事業本部"),
             {{"InheritParentACL", "0"},
              {"RemDefaultACL", "No"},
              {"AceSamAccountName", "Domain Users"},
              {"AceOpeMode", "0"},
              {"AccessRight", "1"},
              {"PermitOrDeny", "P"},
              {"InheritOption", "0"}}),
        {{"OU-Start", kTop},
         {"Mirror", "Yes"},
         {"AceSamAccountName", "Domain Guests"},
         {"AceOpeMode", "0"},
         {"AccessRight", "1;2"},
         {"PermitOrDeny", "D"},
         {"InheritOption", "3"}},
        with(ou(kTopClients, kStreet, "IT事業本部のクライアント"),
             {{"InheritParentACL", "1"},
              {"AceSamAccountName", "Domain Computers"},
              {"AceOpeMode", "0"},
              {"AccessRight", "5;6"},
              {"PermitOrDeny", "P"},
              {"InheritOption", "1"}}),
        with(ou(kSolution, kStreet, "ITソリューション部"),
             {{"RemDefaultACL", "Yes"},
              {"DoNotRemTheseACE", "Domain Admins;System"},
              {"AceSamAccountName", "Domain Users"},
              {"AceOpeMode", "0"},
              {"AccessRight", "1"},
              {"PermitOrDeny", "P"},
              {"InheritOption", "2"}}),
        {{"OU-Start", kSolution},
         {"Mirror", "Yes"},
         {"AceSamAccountName", "Server Operators"},
         {"AceOpeMode", "2"},
         {"AccessRight", "3;4"},
         {"PermitOrDeny", "P"},
         {"InheritOption", "0"}},
        with(ou(kSolutionClients, kStreet, "ITソリューション部のクライアント"),
             {{"InheritParentACL", "2"},
              {"AceSamAccountName", "Domain Computers"},
              {"AceOpeMode", "0"},
              {"AccessRight", "1"},
              {"PermitOrDeny", "P"},
              {"InheritOption", "4"}}),
        with(ou(kNetwork, kStreet, "ネットワーク設計グループ"),
             {{"AceSamAccountName", "Account Operators"}, {"AceOpeMode", "1"}}),
        {{"OU-Start", kNetwork},
         {"Mirror", "Yes"},
         {"AceSamAccountName", "Backup Operators"},
         {"AceOpeMode", "0"},
         {"AccessRight", "10"},
         {"PermitOrDeny", "P"},
         {"InheritOption", "0"}},
        with(ou(kNetworkClients, kStreet, "ネットワーク設計グループのクライアント"),
             {{"AceSamAccountName", "Domain Computers"},
              {"AceOpeMode", "0"},
              {"AccessRight", "5;6"},
              {"PermitOrDeny", "P"},
              {"InheritOption", "0"}}),
    };
    t.explanation = {"Mirror",        "street",           "InheritParentACL",
                     "RemDefaultACL", "DoNotRemTheseACE", "AceOpeMode",
                     "AccessRight",   "PermitOrDeny",     "InheritOption"};
    t.cautions = {Note::CautionOUAdd, Note::CautionAccessRights};
    return t;
}

TemplateDefinition OUDel() {
    TemplateDefinition t{ObjectKind::OU, OperationKind::Del};
    t.columns = {"OU-Start", "", "", "OU-End", "Mirror", "IfDelSubObj"};
    t.rows = {
        {{"OU-Start", kNetworkClients}, {"Mirror", "No"}, {"IfDelSubObj", "No"}},
        {{"OU-Start", kNetworkClients}, {"Mirror", "Yes"}},
        {{"OU-Start", kNetwork}, {"Mirror", "No"}, {"IfDelSubObj", "Yes"}},
    };
    t.explanation = {"Mirror", "IfDelSubObj"};
    return t;
}

TemplateDefinition OUMov() {
    TemplateDefinition t{ObjectKind::OU, OperationKind::Mov};
    t.columns = {"OU-Start", "", "", "OU-End", "Mirror", "NewOU-Start", "NewOU-End", "NewRDN"};
    t.rows = {
        {{"OU-Start", kNetworkClients},
         {"Mirror", "No"},
         {"NewOU-Start", kSolution},
         {"NewRDN", "ネットワーク設計クライアント"}},
        {{"OU-Start", kNetworkClients}, {"Mirror", "Yes"}},
        // No target: to the domain root.
        {{"OU-Start", kTopClients}, {"Mirror", "No"}, {"NewRDN", "IT事業本部クライアント"}},
    };
    t.explanation = {Note::MovLine, "Mirror"};
    return t;
}

TemplateDefinition OUMdf() {
    TemplateDefinition t{ObjectKind::OU, OperationKind::Mdf};
    t.columns = {"OU-Start",
                 "",
                 "",
                 "OU-End",
                 "Mirror",
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
                 "InheritParentACL",
                 "RemDefaultACL",
                 "DoNotRemTheseACE",
                 "AceSamAccountName",
                 "AceOpeMode",
                 "AccessRight",
                 "PermitOrDeny",
                 "InheritOption"};
    t.rows = {
        // New address; the deny entry of the add is taken away again.
        {{"OU-Start", kTop},
         {"Mirror", "No"},
         {"postalCode", "100-0006"},
         {"street", "有楽町2-2-2<Rtn>ハルノ第二ビル5F"},
         {"description", "IT事業本部（本社）"},
         {"AceSamAccountName", "Domain Guests"},
         {"AceOpeMode", "1"}},
        {{"OU-Start", kTop},
         {"Mirror", "Yes"},
         {"AceSamAccountName", "Domain Users"},
         {"AceOpeMode", "2"},
         {"AccessRight", "5;6"},
         {"PermitOrDeny", "P"},
         {"InheritOption", "0"}},
        // The description goes, the manager is named anew, the block of the add is lifted.
        {{"OU-Start", kTopClients},
         {"Mirror", "No"},
         {"description", "!C"},
         {"MgrOU-Start", kUsers},
         {"MgrRDN", "Administrator"},
         {"InheritParentACL", "0"}},
        // A rename of the deepest OU, with its default ACL removed first.
        {{"OU-Start", kNetworkClients},
         {"Mirror", "No"},
         {"NewRDN", "クライアントPC"},
         {"RemDefaultACL", "Yes"},
         {"DoNotRemTheseACE", "Domain Admins;System"},
         {"AceSamAccountName", "Domain Computers"},
         {"AceOpeMode", "0"},
         {"AccessRight", "1"},
         {"PermitOrDeny", "P"},
         {"InheritOption", "1"}},
    };
    t.explanation = {Note::MdfLine,   "Mirror",           "street",     "InheritParentACL",
                     "RemDefaultACL", "DoNotRemTheseACE", "AceOpeMode", "AccessRight",
                     "PermitOrDeny",  "InheritOption"};
    t.cautions = {Note::CautionAccessRights, Note::CautionOUName, Note::CautionManager};
    return t;
}

}  // namespace

TemplateDefinition DefineOUTemplate(OperationKind op) {
    switch (op) {
        case OperationKind::Add:
            return OUAdd();
        case OperationKind::Del:
            return OUDel();
        case OperationKind::Mov:
            return OUMov();
        case OperationKind::Mdf:
            return OUMdf();
        default:
            throw std::logic_error("no OU template for this operation");
    }
}

}  // namespace orin::templates
