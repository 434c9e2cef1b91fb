// The group templates. The add makes one group on each level of the sample tree, one scope
// each; the lower groups join or hold the upper ones, so that the rows show membership in both
// directions. The other templates work on those groups.

#include <stdexcept>

#include "csv/TemplatesModel.h"

namespace orin::templates {
namespace {

constexpr std::string_view kTopGroup = "IT事業本部グループ";
constexpr std::string_view kSolutionGroup = "ITソリューション部グループ";
constexpr std::string_view kNetworkGroup = "ネットワーク設計チーム";

TemplateDefinition GroupAdd() {
    TemplateDefinition t{ObjectKind::Group, OperationKind::Add};
    t.columns = {
        "OU-Start",       "",           "",           "OU-End",         "RDN",          "Mirror",
        "sAMAccountName", "GroupRange", "GroupClass", "description",    "mail",         "info",
        "MgrOU-Start",    "MgrOU-End",  "MgrRDN",     "MemberOU-Start", "MemberOU-End", "MemberRDN",
        "GrpOU-Start",    "GrpOU-End",  "groupRDN"};
    t.rows = {
        // Universal security group with the administrator as member.
        {{"OU-Start", kTop},
         {"RDN", kTopGroup},
         {"Mirror", "No"},
         {"sAMAccountName", "ITJigyoHonbu"},
         {"GroupRange", "2"},
         {"GroupClass", "0"},
         {"description", "IT事業本部の全社員"},
         {"mail", "it-honbu@haruno.co.jp"},
         {"info", "IT事業本部の全社員を登録する<Rtn>ユニバーサルグループ"},
         {"MgrOU-Start", kUsers},
         {"MgrRDN", "Administrator"},
         {"MemberOU-Start", kUsers},
         {"MemberRDN", "Administrator"}},
        {{"OU-Start", kTop},
         {"RDN", kTopGroup},
         {"Mirror", "Yes"},
         {"MemberOU-Start", kUsers},
         {"MemberRDN", "Guest"}},
        // Global group that joins the universal group above.
        {{"OU-Start", kSolution},
         {"RDN", kSolutionGroup},
         {"Mirror", "No"},
         {"sAMAccountName", "ITSolution"},
         {"GroupRange", "1"},
         {"GroupClass", "0"},
         {"description", "ITソリューション部の全社員"},
         {"mail", "it-solution@haruno.co.jp"},
         {"MgrOU-Start", kUsers},
         {"MgrRDN", "Administrator"},
         {"MemberOU-Start", kUsers},
         {"MemberRDN", "Administrator"},
         {"GrpOU-Start", kTop},
         {"groupRDN", kTopGroup}},
        // Domain local distribution group that holds the global group above.
        {{"OU-Start", kNetwork},
         {"RDN", kNetworkGroup},
         {"Mirror", "No"},
         {"sAMAccountName", "NetworkDesign"},
         {"GroupRange", "0"},
         {"GroupClass", "1"},
         {"description", "ネットワーク設計グループの配布先"},
         {"mail", "network-design@haruno.co.jp"},
         {"MgrOU-Start", kUsers},
         {"MgrRDN", "Administrator"},
         {"MemberOU-Start", kSolution},
         {"MemberRDN", kSolutionGroup}},
        {{"OU-Start", kNetwork},
         {"RDN", kNetworkGroup},
         {"Mirror", "Yes"},
         {"MemberOU-Start", kUsers},
         {"MemberRDN", "Domain Users"}},
    };
    t.explanation = {"Mirror", "GroupRange", "GroupClass", "info"};
    t.cautions = {Note::CautionMemberAdd, Note::CautionGroupAdd};
    return t;
}

TemplateDefinition GroupDel() {
    TemplateDefinition t{ObjectKind::Group, OperationKind::Del};
    t.columns = {"OU-Start", "", "", "OU-End", "RDN", "Mirror"};
    t.rows = {
        {{"OU-Start", kNetwork}, {"RDN", kNetworkGroup}, {"Mirror", "No"}},
        {{"OU-Start", kNetwork}, {"RDN", kNetworkGroup}, {"Mirror", "Yes"}},
        {{"OU-Start", kSolution}, {"RDN", kSolutionGroup}, {"Mirror", "No"}},
    };
    t.explanation = {"Mirror"};
    return t;
}

TemplateDefinition GroupMov() {
    TemplateDefinition t{ObjectKind::Group, OperationKind::Mov};
    t.columns = {"OU-Start",    "",          "",      "OU-End", "RDN", "Mirror",
                 "NewOU-Start", "NewOU-End", "NewRDN"};
    t.rows = {
        {{"OU-Start", kNetwork},
         {"RDN", kNetworkGroup},
         {"Mirror", "No"},
         {"NewOU-Start", kSolution}},
        {{"OU-Start", kNetwork}, {"RDN", kNetworkGroup}, {"Mirror", "Yes"}},
        // A move that renames the group on the way.
        {{"OU-Start", kSolution},
         {"RDN", kSolutionGroup},
         {"Mirror", "No"},
         {"NewOU-Start", kTop},
         {"NewRDN", "ITソリューション部全員"}},
    };
    t.explanation = {"Mirror", Note::GroupNameMov};
    return t;
}

TemplateDefinition GroupMdf() {
    TemplateDefinition t{ObjectKind::Group, OperationKind::Mdf};
    t.columns = {"OU-Start",
                 "",
                 "",
                 "OU-End",
                 "RDN",
                 "Mirror",
                 "NewRDN",
                 "sAMAccountName",
                 "GroupRange",
                 "GroupClass",
                 "description",
                 "mail",
                 "info",
                 "MgrOU-Start",
                 "MgrOU-End",
                 "MgrRDN",
                 "ClearAllMember",
                 "MemberOU-Start",
                 "MemberOU-End",
                 "MemberRDN",
                 "MemberProcFlg",
                 "ClearAllGroup",
                 "GrpOU-Start",
                 "GrpOU-End",
                 "groupRDN",
                 "GroupProcFlg"};
    t.rows = {
        {{"OU-Start", kTop},
         {"RDN", kTopGroup},
         {"Mirror", "No"},
         {"description", "IT事業本部の<Rtn>全社員"},
         {"mail", "!C"},
         {"ClearAllMember", "No"},
         {"MemberOU-Start", kUsers},
         {"MemberRDN", "Guest"},
         {"MemberProcFlg", "Del"}},
        // New names, and the group leaves the universal group.
        {{"OU-Start", kSolution},
         {"RDN", kSolutionGroup},
         {"Mirror", "No"},
         {"NewRDN", "ITソリューション部メンバー"},
         {"sAMAccountName", "ITSolutionMembers"},
         {"ClearAllGroup", "No"},
         {"GrpOU-Start", kTop},
         {"groupRDN", kTopGroup},
         {"GroupProcFlg", "Del"}},
        // Domain local distribution group turned into a universal security group.
        {{"OU-Start", kNetwork},
         {"RDN", kNetworkGroup},
         {"Mirror", "No"},
         {"GroupRange", "2"},
         {"GroupClass", "0"},
         {"MemberOU-Start", kUsers},
         {"MemberRDN", "Administrator"},
         {"MemberProcFlg", "Add"}},
        {{"OU-Start", kNetwork},
         {"RDN", kNetworkGroup},
         {"Mirror", "Yes"},
         {"MemberOU-Start", kUsers},
         {"MemberRDN", "Guest"},
         {"MemberProcFlg", "Add"}},
    };
    t.explanation = {Note::MdfLine,    "Mirror",        "GroupRange",    "GroupClass",  "info",
                     "ClearAllMember", "MemberProcFlg", "ClearAllGroup", "GroupProcFlg"};
    t.cautions = {Note::CautionGroupNameChange};
    return t;
}

}  // namespace

TemplateDefinition DefineGroupTemplate(OperationKind op) {
    switch (op) {
        case OperationKind::Add:
            return GroupAdd();
        case OperationKind::Del:
            return GroupDel();
        case OperationKind::Mov:
            return GroupMov();
        case OperationKind::Mdf:
            return GroupMdf();
        default:
            throw std::logic_error("no group template for this operation");
    }
}

}  // namespace orin::templates
