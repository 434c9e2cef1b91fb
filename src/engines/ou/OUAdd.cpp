// OU add: one row creates an OU with its properties, manager and access control, or, as a
// Mirror row, adds access control to the OU an earlier row made.

#include "base/Outcome.h"
#include "base/RunContext.h"
#include "directory/Bind.h"
#include "directory/DirectorySession.h"
#include "directory/Paths.h"
#include "engines/access/AccessControl.h"
#include "engines/ou/OUFastPath.h"
#include "engines/ou/OUProduction.h"
#include "platform/Strings.h"

namespace orin {
namespace {

using Slot = OUAddSlot;

struct PropertyStep {
    Slot slot;
    const char* attribute;
    int32_t code;
};

constexpr PropertyStep kProperties[] = {
    {Slot::c, "c", 1310},           {Slot::postalCode, "postalCode", 1315},
    {Slot::st, "st", 1320},         {Slot::l, "l", 1325},
    {Slot::street, "street", 1330}, {Slot::description, "description", 1300},
};

// Step 9's writes: the properties whose cells aren't empty, in their order.
std::vector<PropertyWrite> PropertyWrites(const OURow& row) {
    std::vector<PropertyWrite> writes;
    for (const PropertyStep& step : kProperties) {
        std::string value = row.Cell(step.slot);
        if (value.empty()) continue;
        if (step.slot == Slot::street) value = ExpandRtn(value);
        writes.push_back({step.attribute, value, false, step.code});
    }
    return writes;
}

// Step 8: the create failed; find out why.
void RaiseCreateFailure(const std::string& ouPath) {
    if (Binds(WholePath(ouPath))) Raise(2008);
    std::string parent = ParentOUPath(ouPath);
    if (!parent.empty() && !Binds(WholePath(parent))) Raise(1100);
    std::string cnForm = "CN=" + FirstOUName(ouPath);
    if (!parent.empty()) cnForm += "," + parent;
    if (Binds(WholePath(cnForm))) Raise(2009);
    Raise(1110);
}

}  // namespace

void AddOU(const Cells& cells, int32_t lineNumber, int32_t ordinal, const Columns& columns) {
    EngineRun(lineNumber, ordinal, [&](RowScope& scope) {
        const OURow row(cells, columns);
        DirObject ou;
        std::string ouPath;
        bool mirror = false;

        // Cleanup after a failure: the OU this row (or its chain's first row) made goes again.
        scope.OnFailure([&] {
            if (!gRun.blnRowCreatedObject) return;
            if (!mirror) gSession.RootObject.Delete(kOUClass, ouPath);
            if (gRun.blnMirrorGroupCreated) gSession.RootObject.Delete(kOUClass, ouPath);
            gRun.blnRowCreatedObject = false;
        });
        const FailStep failWithRollback = [](int32_t code) {
            gRun.blnRowCreatedObject = true;
            Raise(code);
        };

        // 1. Mirror.
        switch (ReadMirrorCell(row.Cell(Slot::Mirror))) {
            case MirrorCell::Yes:
                mirror = true;
                break;
            case MirrorCell::No:
                break;
            case MirrorCell::Invalid:
                Raise(1031);
        }
        // 2. An earlier row of this chain has failed.
        if (gRun.blnRowFailed) Raise(ERRNUM_60_000);
        // 3, 4. The OU span.
        CheckSpan(row.Index(Slot::OUStart), row.Index(Slot::OUEnd), 1000, 1001);
        // 5.
        ouPath = row.Path(Slot::OUStart, Slot::OUEnd);
        if (ouPath.empty()) Raise(2100);

        if (!mirror) {
            const std::vector<PropertyWrite> properties = PropertyWrites(row);
            const ManagerCells manager{row.Index(Slot::MgrOUStart), row.Index(Slot::MgrOUEnd),
                                       row.Cell(Slot::MgrRDN)};
            if (FastAddOU(ouPath, properties, cells, manager, ou)) {
                gRun.lngLastCreatedLine = lineNumber;
            } else {
                // 7. Create.
                auto made = gSession.RootObject.Create(kOUClass, ouPath);
                if (!made.ok() || !made->SetInfo().ok()) RaiseCreateFailure(ouPath);  // 8.
                ou = *made;
                gRun.lngLastCreatedLine = lineNumber;

                // 9. Properties, one write each.
                for (const PropertyWrite& p : properties) {
                    ou.Put(p.attribute, p.value);
                    if (!ou.SetInfo().ok()) failWithRollback(p.code);
                }

                // 10. Manager.
                if (!manager.rdn.empty()) {
                    ManagerLookup found =
                        LookUpManager(cells, manager.start, manager.end, manager.rdn);
                    if (found.failure == 1005 || found.failure == 1006) Raise(found.failure);
                    if (found.failure != 0) failWithRollback(found.failure);
                    ou.Put("managedBy", found.dn);
                    if (!ou.SetInfo().ok()) failWithRollback(3003);
                }
            }

            // 11. InheritParentACL.
            std::string inherit = row.Cell(Slot::InheritParentACL);
            if (inherit == "1") {
                if (!SetInheritance(ou, true)) failWithRollback(6009);
            } else if (inherit == "2") {
                if (!SetInheritance(ou, false)) failWithRollback(6010);
            } else if (!inherit.empty() && inherit != "0") {
                failWithRollback(1080);
            }

            // 12. RemDefaultACL.
            std::string remove = ToUpperAscii(row.Cell(Slot::RemDefaultACL));
            if (remove == "YES") {
                std::string notFound;
                if (!RemoveDefaultAcl(ou, row.Cell(Slot::DoNotRemTheseACE), notFound)) {
                    failWithRollback(1400);
                }
                if (!notFound.empty()) {
                    gRun.AceArg = notFound;
                    Raise(10201);
                }
            } else if (!remove.empty() && remove != "NO") {
                failWithRollback(1082);
            }
        } else {
            // 13. The OU of the chain's first row.
            if (!BindObject(WholePath(ouPath), ou)) failWithRollback(2000);
        }

        // 14, 15. ACE.
        ApplyAceCells(ou,
                      {row.Cell(Slot::AceSamAccountName), row.Cell(Slot::AceOpeMode),
                       row.Cell(Slot::AccessRight), row.Cell(Slot::PermitOrDeny),
                       row.Cell(Slot::InheritOption)},
                      failWithRollback);

        // 16.
        if (gRun.blnRowWarned) Raise(ERRNUM_60_002);
        if (static_cast<size_t>(ordinal) >= gRun.MirrorFlags.size() ||
            gRun.MirrorFlags[static_cast<size_t>(ordinal)] != "Y") {
            gRun.blnMirrorGroupCreated = true;
        }
        Raise(ERRNUM_60_001);
    });
}

}  // namespace orin
