// The table of the 72 drivers and their names as functions.

#include <algorithm>
#include <array>

#include "run/Drivers.h"

namespace orin {
namespace {

using K = ObjectKind;
using O = OperationKind;
using M = RunMode;

// Columns: name, kind, operation, mode, then the row flags the driver's reset clears:
// blnRowFailed, blnRowCreatedObject, blnMirrorGroupCreated.
constexpr std::array<DriverSpec, 72> kDrivers = {{
    {"RunOUAdd", K::OU, O::Add, M::Production, true, true, false},
    {"RunOUDel", K::OU, O::Del, M::Production, false, false, false},
    {"RunOUMov", K::OU, O::Mov, M::Production, false, false, false},
    {"RunOUMdf", K::OU, O::Mdf, M::Production, true, false, false},
    {"RunOUExp", K::OU, O::Exp, M::Production, false, false, false},
    {"ImitateOUAdd", K::OU, O::Add, M::Imitate, true, false, false},
    {"ImitateOUDel", K::OU, O::Del, M::Imitate, false, false, false},
    {"ImitateOUMov", K::OU, O::Mov, M::Imitate, false, false, false},
    {"ImitateOUMdf", K::OU, O::Mdf, M::Imitate, true, false, false},
    {"CompareOUAdd", K::OU, O::Add, M::Compare, true, false, false},
    {"CompareOUDel", K::OU, O::Del, M::Compare, false, false, false},
    {"CompareOUMov", K::OU, O::Mov, M::Compare, false, false, false},
    {"CompareOUMdf", K::OU, O::Mdf, M::Compare, true, false, false},
    {"CompareOUExp", K::OU, O::Exp, M::Compare, true, false, false},
    {"RunGrpAdd", K::Group, O::Add, M::Production, true, true, true},
    {"RunGrpDel", K::Group, O::Del, M::Production, false, false, false},
    {"RunGrpMov", K::Group, O::Mov, M::Production, false, false, false},
    {"RunGrpMdf", K::Group, O::Mdf, M::Production, false, false, false},
    {"RunGrpExp", K::Group, O::Exp, M::Production, false, false, false},
    {"ImitateGrpAdd", K::Group, O::Add, M::Imitate, true, true, true},
    {"ImitateGrpDel", K::Group, O::Del, M::Imitate, false, false, false},
    {"ImitateGrpMov", K::Group, O::Mov, M::Imitate, false, false, false},
    {"ImitateGrpMdf", K::Group, O::Mdf, M::Imitate, false, false, false},
    {"CompareGrpAdd", K::Group, O::Add, M::Compare, true, false, true},
    {"CompareGrpDel", K::Group, O::Del, M::Compare, false, false, false},
    {"CompareGrpMov", K::Group, O::Mov, M::Compare, false, false, false},
    {"CompareGrpMdf", K::Group, O::Mdf, M::Compare, false, false, false},
    {"CompareGrpExp", K::Group, O::Exp, M::Compare, true, false, true},
    {"RunUsrAdd", K::User, O::Add, M::Production, false, true, true},
    {"RunUsrDel", K::User, O::Del, M::Production, false, false, false},
    {"RunUsrMov", K::User, O::Mov, M::Production, false, false, false},
    {"RunUsrMdf", K::User, O::Mdf, M::Production, false, false, false},
    {"RunUsrExp", K::User, O::Exp, M::Production, false, false, false},
    {"ImitateUsrAdd", K::User, O::Add, M::Imitate, true, true, true},
    {"ImitateUsrDel", K::User, O::Del, M::Imitate, false, false, false},
    {"ImitateUsrMov", K::User, O::Mov, M::Imitate, false, false, false},
    {"ImitateUsrMdf", K::User, O::Mdf, M::Imitate, false, false, false},
    {"CompareUsrAdd", K::User, O::Add, M::Compare, true, false, true},
    {"CompareUsrDel", K::User, O::Del, M::Compare, false, false, false},
    {"CompareUsrMov", K::User, O::Mov, M::Compare, false, false, false},
    {"CompareUsrMdf", K::User, O::Mdf, M::Compare, false, false, false},
    {"CompareUsrExp", K::User, O::Exp, M::Compare, true, false, true},
    {"RunComAdd", K::Computer, O::Add, M::Production, true, true, true},
    {"RunComDel", K::Computer, O::Del, M::Production, false, false, false},
    {"RunComMov", K::Computer, O::Mov, M::Production, false, false, false},
    {"RunComMdf", K::Computer, O::Mdf, M::Production, false, false, false},
    {"RunComExp", K::Computer, O::Exp, M::Production, false, false, false},
    {"ImitateComAdd", K::Computer, O::Add, M::Imitate, true, true, false},
    {"ImitateComDel", K::Computer, O::Del, M::Imitate, false, false, false},
    {"ImitateComMov", K::Computer, O::Mov, M::Imitate, false, false, false},
    {"ImitateComMdf", K::Computer, O::Mdf, M::Imitate, false, false, false},
    {"CompareComAdd", K::Computer, O::Add, M::Compare, true, false, false},
    {"CompareComDel", K::Computer, O::Del, M::Compare, false, false, false},
    {"CompareComMov", K::Computer, O::Mov, M::Compare, false, false, false},
    {"CompareComMdf", K::Computer, O::Mdf, M::Compare, false, false, false},
    {"CompareComExp", K::Computer, O::Exp, M::Compare, true, false, false},
    {"RunShrAdd", K::SharedFolder, O::Add, M::Production, true, true, true},
    {"RunShrDel", K::SharedFolder, O::Del, M::Production, false, false, false},
    {"RunShrMov", K::SharedFolder, O::Mov, M::Production, false, false, false},
    {"RunShrMdf", K::SharedFolder, O::Mdf, M::Production, false, false, false},
    {"RunShrExp", K::SharedFolder, O::Exp, M::Production, false, false, false},
    {"ImitateShrAdd", K::SharedFolder, O::Add, M::Imitate, true, true, true},
    {"ImitateShrDel", K::SharedFolder, O::Del, M::Imitate, false, false, false},
    {"ImitateShrMov", K::SharedFolder, O::Mov, M::Imitate, false, false, false},
    {"ImitateShrMdf", K::SharedFolder, O::Mdf, M::Imitate, false, false, false},
    {"CompareShrAdd", K::SharedFolder, O::Add, M::Compare, true, true, true},
    {"CompareShrDel", K::SharedFolder, O::Del, M::Compare, false, false, false},
    {"CompareShrMov", K::SharedFolder, O::Mov, M::Compare, false, false, false},
    {"CompareShrMdf", K::SharedFolder, O::Mdf, M::Compare, false, false, false},
    {"CompareShrExp", K::SharedFolder, O::Exp, M::Compare, true, false, false},
    {"RunGPOExp", K::GpoLink, O::Exp, M::Production, false, false, false},
    {"CompareGPOExp", K::GpoLink, O::Exp, M::Compare, true, false, false},
}};

void Drive(ObjectKind kind, OperationKind op, RunMode mode) {
    if (const DriverSpec* driver = FindDriver(kind, op, mode)) RunDriver(*driver);
}

}  // namespace

std::span<const DriverSpec> DriverTable() {
    return kDrivers;
}

const DriverSpec* FindDriver(ObjectKind kind, OperationKind op, RunMode mode) {
    auto it = std::ranges::find_if(kDrivers, [&](const DriverSpec& d) {
        return d.kind == kind && d.op == op && d.mode == mode;
    });
    return it == kDrivers.end() ? nullptr : &*it;
}

// clang-format off
void RunOUAdd() { Drive(K::OU, O::Add, M::Production); }
void RunOUDel() { Drive(K::OU, O::Del, M::Production); }
void RunOUMov() { Drive(K::OU, O::Mov, M::Production); }
void RunOUMdf() { Drive(K::OU, O::Mdf, M::Production); }
void RunOUExp() { Drive(K::OU, O::Exp, M::Production); }
void ImitateOUAdd() { Drive(K::OU, O::Add, M::Imitate); }
void ImitateOUDel() { Drive(K::OU, O::Del, M::Imitate); }
void ImitateOUMov() { Drive(K::OU, O::Mov, M::Imitate); }
void ImitateOUMdf() { Drive(K::OU, O::Mdf, M::Imitate); }
void CompareOUAdd() { Drive(K::OU, O::Add, M::Compare); }
void CompareOUDel() { Drive(K::OU, O::Del, M::Compare); }
void CompareOUMov() { Drive(K::OU, O::Mov, M::Compare); }
void CompareOUMdf() { Drive(K::OU, O::Mdf, M::Compare); }
void CompareOUExp() { Drive(K::OU, O::Exp, M::Compare); }
void RunGrpAdd() { Drive(K::Group, O::Add, M::Production); }
void RunGrpDel() { Drive(K::Group, O::Del, M::Production); }
void RunGrpMov() { Drive(K::Group, O::Mov, M::Production); }
void RunGrpMdf() { Drive(K::Group, O::Mdf, M::Production); }
void RunGrpExp() { Drive(K::Group, O::Exp, M::Production); }
void ImitateGrpAdd() { Drive(K::Group, O::Add, M::Imitate); }
void ImitateGrpDel() { Drive(K::Group, O::Del, M::Imitate); }
void ImitateGrpMov() { Drive(K::Group, O::Mov, M::Imitate); }
void ImitateGrpMdf() { Drive(K::Group, O::Mdf, M::Imitate); }
void CompareGrpAdd() { Drive(K::Group, O::Add, M::Compare); }
void CompareGrpDel() { Drive(K::Group, O::Del, M::Compare); }
void CompareGrpMov() { Drive(K::Group, O::Mov, M::Compare); }
void CompareGrpMdf() { Drive(K::Group, O::Mdf, M::Compare); }
void CompareGrpExp() { Drive(K::Group, O::Exp, M::Compare); }
void RunUsrAdd() { Drive(K::User, O::Add, M::Production); }
void RunUsrDel() { Drive(K::User, O::Del, M::Production); }
void RunUsrMov() { Drive(K::User, O::Mov, M::Production); }
void RunUsrMdf() { Drive(K::User, O::Mdf, M::Production); }
void RunUsrExp() { Drive(K::User, O::Exp, M::Production); }
void ImitateUsrAdd() { Drive(K::User, O::Add, M::Imitate); }
void ImitateUsrDel() { Drive(K::User, O::Del, M::Imitate); }
void ImitateUsrMov() { Drive(K::User, O::Mov, M::Imitate); }
void ImitateUsrMdf() { Drive(K::User, O::Mdf, M::Imitate); }
void CompareUsrAdd() { Drive(K::User, O::Add, M::Compare); }
void CompareUsrDel() { Drive(K::User, O::Del, M::Compare); }
void CompareUsrMov() { Drive(K::User, O::Mov, M::Compare); }
void CompareUsrMdf() { Drive(K::User, O::Mdf, M::Compare); }
void CompareUsrExp() { Drive(K::User, O::Exp, M::Compare); }
void RunComAdd() { Drive(K::Computer, O::Add, M::Production); }
void RunComDel() { Drive(K::Computer, O::Del, M::Production); }
void RunComMov() { Drive(K::Computer, O::Mov, M::Production); }
void RunComMdf() { Drive(K::Computer, O::Mdf, M::Production); }
void RunComExp() { Drive(K::Computer, O::Exp, M::Production); }
void ImitateComAdd() { Drive(K::Computer, O::Add, M::Imitate); }
void ImitateComDel() { Drive(K::Computer, O::Del, M::Imitate); }
void ImitateComMov() { Drive(K::Computer, O::Mov, M::Imitate); }
void ImitateComMdf() { Drive(K::Computer, O::Mdf, M::Imitate); }
void CompareComAdd() { Drive(K::Computer, O::Add, M::Compare); }
void CompareComDel() { Drive(K::Computer, O::Del, M::Compare); }
void CompareComMov() { Drive(K::Computer, O::Mov, M::Compare); }
void CompareComMdf() { Drive(K::Computer, O::Mdf, M::Compare); }
void CompareComExp() { Drive(K::Computer, O::Exp, M::Compare); }
void RunShrAdd() { Drive(K::SharedFolder, O::Add, M::Production); }
void RunShrDel() { Drive(K::SharedFolder, O::Del, M::Production); }
void RunShrMov() { Drive(K::SharedFolder, O::Mov, M::Production); }
void RunShrMdf() { Drive(K::SharedFolder, O::Mdf, M::Production); }
void RunShrExp() { Drive(K::SharedFolder, O::Exp, M::Production); }
void ImitateShrAdd() { Drive(K::SharedFolder, O::Add, M::Imitate); }
void ImitateShrDel() { Drive(K::SharedFolder, O::Del, M::Imitate); }
void ImitateShrMov() { Drive(K::SharedFolder, O::Mov, M::Imitate); }
void ImitateShrMdf() { Drive(K::SharedFolder, O::Mdf, M::Imitate); }
void CompareShrAdd() { Drive(K::SharedFolder, O::Add, M::Compare); }
void CompareShrDel() { Drive(K::SharedFolder, O::Del, M::Compare); }
void CompareShrMov() { Drive(K::SharedFolder, O::Mov, M::Compare); }
void CompareShrMdf() { Drive(K::SharedFolder, O::Mdf, M::Compare); }
void CompareShrExp() { Drive(K::SharedFolder, O::Exp, M::Compare); }
void RunGPOExp() { Drive(K::GpoLink, O::Exp, M::Production); }
void CompareGPOExp() { Drive(K::GpoLink, O::Exp, M::Compare); }
// clang-format on

}  // namespace orin
