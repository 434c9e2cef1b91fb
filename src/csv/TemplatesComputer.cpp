// The computer templates: one client in each "クライアント" OU of the sample tree, members of
// the groups of the group add template.

#include <stdexcept>

#include "csv/TemplatesModel.h"

namespace orin::templates {
namespace {

TemplateDefinition ComputerAdd() {
    TemplateDefinition t{ObjectKind::Computer, OperationKind::Add};
    t.columns = {"OU-Start",
                 "",
                 "",
                 "OU-End",
                 "RDN",
                 "Mirror",
                 "sAMAccountName",
                 "AccountDisabled",
                 "description",
                 "location",
                 "MgrOU-Start",
                 "MgrOU-End",
                 "MgrRDN",
                 "GrpOU-Start",
                 "GrpOU-End",
                 "groupRDN"};
    t.rows = {
        {{"OU-Start", kTopClients},
         {"RDN", "client001"},
         {"Mirror", "No"},
         {"sAMAccountName", "client001"},
         {"AccountDisabled", "No"},
         {"description", "IT事業本部の共用パソコン"},
         {"location", "東京事業所10F"},
         {"MgrOU-Start", kUsers},
         {"MgrRDN", "Administrator"},
         {"GrpOU-Start", kTop},
         {"groupRDN", "IT事業本部グループ"}},
        // An account that starts disabled, in two groups.
        {{"OU-Start", kSolutionClients},
         {"RDN", "client002"},
         {"Mirror", "No"},
         {"sAMAccountName", "client002"},
         {"AccountDisabled", "Yes"},
         {"description", "ITソリューション部の共用パソコン"},
         {"location", "東京事業所10F"},
         {"MgrOU-Start", kUsers},
         {"MgrRDN", "Administrator"},
         {"GrpOU-Start", kSolution},
         {"groupRDN", "ITソリューション部グループ"}},
        {{"OU-Start", kSolutionClients},
         {"RDN", "client002"},
         {"Mirror", "Yes"},
         {"GrpOU-Start", kTop},
         {"groupRDN", "IT事業本部グループ"}},
        {{"OU-Start", kNetworkClients},
         {"RDN", "client003"},
         {"Mirror", "No"},
         {"sAMAccountName", "client003"},
         {"AccountDisabled", "No"},
         {"description", "ネットワーク設計用パソコン"},
         {"location", "東京事業所11F"},
         {"GrpOU-Start", kSolution},
         {"groupRDN", "ITソリューション部グループ"}},
    };
    t.explanation = {"Mirror"};
    return t;
}

TemplateDefinition ComputerDel() {
    TemplateDefinition t{ObjectKind::Computer, OperationKind::Del};
    t.columns = {"OU-Start", "", "", "OU-End", "RDN", "Mirror"};
    t.rows = {
        {{"OU-Start", kNetworkClients}, {"RDN", "client003"}, {"Mirror", "No"}},
        {{"OU-Start", kNetworkClients}, {"RDN", "client003"}, {"Mirror", "Yes"}},
        {{"OU-Start", kSolutionClients}, {"RDN", "client002"}, {"Mirror", "No"}},
    };
    t.explanation = {"Mirror"};
    return t;
}

TemplateDefinition ComputerMov() {
    TemplateDefinition t{ObjectKind::Computer, OperationKind::Mov};
    t.columns = {"OU-Start",    "",          "",      "OU-End", "RDN", "Mirror",
                 "NewOU-Start", "NewOU-End", "NewRDN"};
    t.rows = {
        // A move that renames the computer on the way.
        {{"OU-Start", kNetworkClients},
         {"RDN", "client003"},
         {"Mirror", "No"},
         {"NewOU-Start", kTopClients},
         {"NewRDN", "client103"}},
        {{"OU-Start", kNetworkClients}, {"RDN", "client003"}, {"Mirror", "Yes"}},
        // To the default container of computers.
        {{"OU-Start", kSolutionClients},
         {"RDN", "client002"},
         {"Mirror", "No"},
         {"NewOU-Start", "Computers"}},
    };
    t.explanation = {"Mirror", Note::ComputerNameMov};
    return t;
}

TemplateDefinition ComputerMdf() {
    TemplateDefinition t{ObjectKind::Computer, OperationKind::Mdf};
    t.columns = {"OU-Start",
                 "",
                 "",
                 "OU-End",
                 "RDN",
                 "Mirror",
                 "NewRDN",
                 "sAMAccountName",
                 "AccountDisabled",
                 "description",
                 "location",
                 "MgrOU-Start",
                 "MgrOU-End",
                 "MgrRDN",
                 "ClearAllGroup",
                 "GrpOU-Start",
                 "GrpOU-End",
                 "groupRDN",
                 "GroupProcFlg"};
    t.rows = {
        {{"OU-Start", kTopClients},
         {"RDN", "client001"},
         {"Mirror", "No"},
         {"description", "!C"},
         {"location", "東京事業所11F"},
         {"GrpOU-Start", kTop},
         {"groupRDN", "IT事業本部グループ"},
         {"GroupProcFlg", "Del"}},
        // The chain moves the computer from the department's group to the division's.
        {{"OU-Start", kNetworkClients},
         {"RDN", "client003"},
         {"Mirror", "No"},
         {"GrpOU-Start", kTop},
         {"groupRDN", "IT事業本部グループ"},
         {"GroupProcFlg", "Add"}},
        {{"OU-Start", kNetworkClients},
         {"RDN", "client003"},
         {"Mirror", "Yes"},
         {"GrpOU-Start", kSolution},
         {"groupRDN", "ITソリューション部グループ"},
         {"GroupProcFlg", "Del"}},
        // New names, enabled, and out of all groups.
        {{"OU-Start", kSolutionClients},
         {"RDN", "client002"},
         {"Mirror", "No"},
         {"NewRDN", "client102"},
         {"sAMAccountName", "client102"},
         {"AccountDisabled", "No"},
         {"ClearAllGroup", "Yes"}},
    };
    t.explanation = {"Mirror", "ClearAllGroup", "GroupProcFlg"};
    return t;
}

}  // namespace

TemplateDefinition DefineComputerTemplate(OperationKind op) {
    switch (op) {
        case OperationKind::Add:
            return ComputerAdd();
        case OperationKind::Del:
            return ComputerDel();
        case OperationKind::Mov:
            return ComputerMov();
        case OperationKind::Mdf:
            return ComputerMdf();
        default:
            throw std::logic_error("no computer template for this operation");
    }
}

}  // namespace orin::templates
