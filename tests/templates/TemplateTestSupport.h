#pragma once
// Shared by the template tests: the twenty (kind, operation) pairs that have a template.

#include <string>
#include <vector>

#include "csv/Templates.h"
#include "run/RunTestSupport.h"

namespace orin::test {

struct TemplatePair {
    ObjectKind kind;
    OperationKind op;

    std::string Name() const { return TemplateName(kind, op); }
    bool Is(ObjectKind k, OperationKind o) const { return kind == k && op == o; }
};

inline std::vector<TemplatePair> AllTemplatePairs() {
    std::vector<TemplatePair> pairs;
    for (ObjectKind kind : {ObjectKind::OU, ObjectKind::Group, ObjectKind::User,
                            ObjectKind::Computer, ObjectKind::SharedFolder})
        for (OperationKind op :
             {OperationKind::Add, OperationKind::Del, OperationKind::Mov, OperationKind::Mdf})
            pairs.push_back({kind, op});
    return pairs;
}

}  // namespace orin::test
