// The shared-folder templates: one published share on each level of the sample tree.

#include <stdexcept>

#include "csv/TemplatesModel.h"

namespace orin::templates {
namespace {

constexpr std::string_view kTopShare = "IT事業本部共有";
constexpr std::string_view kSolutionShare = "ITソリューション部共有";
constexpr std::string_view kNetworkShare = "ネットワーク設計資料";

TemplateDefinition ShareAdd() {
    TemplateDefinition t{ObjectKind::SharedFolder, OperationKind::Add};
    t.columns = {"OU-Start",    "",          "",        "OU-End",
                 "RDN",         "Mirror",    "uNCName", "description",
                 "MgrOU-Start", "MgrOU-End", "MgrRDN"};
    t.rows = {
        {{"OU-Start", kTop},
         {"RDN", kTopShare},
         {"Mirror", "No"},
         {"uNCName", R"(\\fileserver\itjigyo)"},
         {"description", "IT事業本部の共有フォルダ"},
         {"MgrOU-Start", kUsers},
         {"MgrRDN", "Administrator"}},
        {{"OU-Start", kTop}, {"RDN", kTopShare}, {"Mirror", "Yes"}},
        {{"OU-Start", kSolution},
         {"RDN", kSolutionShare},
         {"Mirror", "No"},
         {"uNCName", R"(\\fileserver\itsolution)"},
         {"description", "ITソリューション部の共有フォルダ"},
         {"MgrOU-Start", kUsers},
         {"MgrRDN", "Administrator"}},
        {{"OU-Start", kNetwork},
         {"RDN", kNetworkShare},
         {"Mirror", "No"},
         {"uNCName", R"(\\fileserver\netdesign\docs)"},
         {"description", "ネットワーク設計の資料"}},
    };
    t.explanation = {"Mirror"};
    return t;
}

TemplateDefinition ShareDel() {
    TemplateDefinition t{ObjectKind::SharedFolder, OperationKind::Del};
    t.columns = {"OU-Start", "", "", "OU-End", "RDN", "Mirror"};
    t.rows = {
        {{"OU-Start", kNetwork}, {"RDN", kNetworkShare}, {"Mirror", "No"}},
        {{"OU-Start", kNetwork}, {"RDN", kNetworkShare}, {"Mirror", "Yes"}},
        {{"OU-Start", kSolution}, {"RDN", kSolutionShare}, {"Mirror", "No"}},
    };
    t.explanation = {"Mirror"};
    return t;
}

TemplateDefinition ShareMov() {
    TemplateDefinition t{ObjectKind::SharedFolder, OperationKind::Mov};
    t.columns = {"OU-Start",    "",          "",      "OU-End", "RDN", "Mirror",
                 "NewOU-Start", "NewOU-End", "NewRDN"};
    t.rows = {
        {{"OU-Start", kNetwork},
         {"RDN", kNetworkShare},
         {"Mirror", "No"},
         {"NewOU-Start", kSolution}},
        {{"OU-Start", kNetwork}, {"RDN", kNetworkShare}, {"Mirror", "Yes"}},
        // A move that renames the share on the way.
        {{"OU-Start", kSolution},
         {"RDN", kSolutionShare},
         {"Mirror", "No"},
         {"NewOU-Start", kTop},
         {"NewRDN", "ITソリューション部資料"}},
    };
    t.explanation = {"Mirror"};
    return t;
}

TemplateDefinition ShareMdf() {
    TemplateDefinition t{ObjectKind::SharedFolder, OperationKind::Mdf};
    t.columns = {"OU-Start",  "",       "",        "OU-End",      "RDN",
                 "Mirror",    "NewRDN", "uNCName", "description", "MgrOU-Start",
                 "MgrOU-End", "MgrRDN"};
    t.rows = {
        {{"OU-Start", kTop},
         {"RDN", kTopShare},
         {"Mirror", "No"},
         {"uNCName", R"(\\fileserver2\itjigyo)"},
         {"description", "!C"}},
        {{"OU-Start", kSolution},
         {"RDN", kSolutionShare},
         {"Mirror", "No"},
         {"NewRDN", "ITソリューション部資料"},
         {"description", "ITソリューション部の資料"}},
        {{"OU-Start", kSolution}, {"RDN", kSolutionShare}, {"Mirror", "Yes"}},
    };
    t.explanation = {Note::MdfLine, "Mirror"};
    return t;
}

}  // namespace

TemplateDefinition DefineShareTemplate(OperationKind op) {
    switch (op) {
        case OperationKind::Add:
            return ShareAdd();
        case OperationKind::Del:
            return ShareDel();
        case OperationKind::Mov:
            return ShareMov();
        case OperationKind::Mdf:
            return ShareMdf();
        default:
            throw std::logic_error("no shared-folder template for this operation");
    }
}

}  // namespace orin::templates
