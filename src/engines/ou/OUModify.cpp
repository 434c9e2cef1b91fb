// OU modify: one row changes the properties, the manager, the access control and the name of
// an existing OU. An empty cell leaves its property alone and "!C" clears it. Nothing is rolled
// back: what was written before a failing step stays.

#include "base/MirrorChain.h"
#include "base/Outcome.h"
#include "base/RunContext.h"
#include "directory/Bind.h"
#include "directory/DirectorySession.h"
#include "directory/Paths.h"
#include "directory/Trustee.h"
#include "engines/access/AccessControl.h"
#include "engines/access/ObjectDacl.h"
#include "engines/ou/OUFastPath.h"
#include "engines/ou/OUProduction.h"
#include "platform/Strings.h"

namespace orin {
namespace {

using Slot = OUMdfSlot;

struct PropertyStep {
    Slot slot;
    const char* attribute;
    int32_t code;  // for a set and a clear alike
};

constexpr PropertyStep kProperties[] = {
    {Slot::c, "c", 1310},           {Slot::postalCode, "postalCode", 1316},
    {Slot::st, "st", 1321},         {Slot::l, "l", 1326},
    {Slot::street, "street", 1331}, {Slot::description, "description", 1301},
};

// Step 7's writes: the properties whose cells aren't empty, in their order.
std::vector<PropertyWrite> PropertyWrites(const OURow& row) {
    std::vector<PropertyWrite> writes;
    for (const PropertyStep& step : kProperties) {
        std::string value = row.Cell(step.slot);
        if (value.empty()) continue;
        if (IsClearMarker(value)) {
            writes.push_back({step.attribute, {}, true, step.code});
            continue;
        }
        if (step.slot == Slot::street) value = ExpandRtn(value);
        writes.push_back({step.attribute, value, false, step.code});
    }
    return writes;
}

// Step 11: the engine's own removal of the default ACL. Every ACE that matches none of the
// exceptions goes, inherited ones included (the directory puts those back); no warning names
// the exceptions that matched nothing.
void RemoveDefaultAces(DirObject& ou, std::string_view exceptions) {
    auto dacl = ReadObjectDacl(ou);
    if (!dacl) Raise(1401);
    std::vector<std::string> names;
    for (const std::string& name : Split(exceptions, ';')) names.push_back(TrusteeName(name));
    if (dacl->descriptor.Dacl) {
        std::erase_if(dacl->descriptor.Dacl->Aces, [&](const Ace& ace) {
            for (const std::string& name : names) {
                if (IsAceOf(ace, name)) return false;
            }
            return true;
        });
    }
    if (!dacl->Write()) Raise(1400);
}

// Step 13: the rename, at the chain's last row.
void RenameOU(const std::string& ouPath, const std::string& newName) {
    std::string parent = ParentOUPath(ouPath);
    std::string under = parent.empty() ? std::string() : "," + parent;
    if (Binds(WholePath("CN=" + newName + under))) Raise(2060);
    std::string newRelative = "OU=" + newName + under;
    DirObject container = gSession.RootObject;
    if (!parent.empty() && !BindObject(WholePath(parent), container)) Raise(3012);
    auto moved = container.MoveHere(WholePath(ouPath), "OU=" + newName);
    if (!moved.ok()) {
        if (Binds(WholePath(newRelative))) Raise(2060);
        Raise(3012);
    }
}

}  // namespace

void ModifyOU(const Cells& cells, int32_t lineNumber, int32_t ordinal, const Columns& columns) {
    // A run starts with no name pending: a first row that is a Mirror row has no chain above.
    if (ordinal == 1) PendingNewName.clear();
    EngineRun(lineNumber, ordinal, [&](RowScope&) {
        const OURow row(cells, columns);
        const FailStep fail = [](int32_t code) { Raise(code); };

        // 1. Mirror.
        MirrorCell mirror = ReadMirrorCell(row.Cell(Slot::Mirror));
        if (mirror == MirrorCell::Invalid) Raise(1031);
        // 2. An earlier row of this chain has failed.
        if (gRun.blnRowFailed) Raise(ERRNUM_60_000);
        // 3. The OU span.
        CheckSpan(row.Index(Slot::OUStart), row.Index(Slot::OUEnd), 1000, 1001);
        // 4.
        const std::string ouPath = row.Path(Slot::OUStart, Slot::OUEnd);
        if (ouPath.empty()) Raise(2100);
        // 5.
        DirObject ou;
        if (!BindObject(WholePath(ouPath), ou)) Raise(1134);

        // 6. A Mirror row goes straight to the ACE.
        if (mirror == MirrorCell::No) {
            const std::vector<PropertyWrite> properties = PropertyWrites(row);
            const ManagerCells manager{row.Index(Slot::MgrOUStart), row.Index(Slot::MgrOUEnd),
                                       row.Cell(Slot::MgrRDN)};
            if (!FastModifyOU(ou, properties, cells, manager)) {
                // 7. Properties, one write each.
                for (const PropertyWrite& p : properties) {
                    if (p.clear) {
                        ou.PutEx(PutExControl::Clear, p.attribute);
                    } else {
                        ou.Put(p.attribute, p.value);
                    }
                    if (!ou.SetInfo().ok()) Raise(p.code);
                }
                // 8. Manager.
                if (IsClearMarker(manager.rdn)) {
                    ou.PutEx(PutExControl::Clear, "managedBy");
                    if (!ou.SetInfo().ok()) Raise(3003);
                } else if (!manager.rdn.empty()) {
                    ManagerLookup found =
                        LookUpManager(cells, manager.start, manager.end, manager.rdn);
                    if (found.failure != 0) Raise(found.failure);
                    ou.Put("managedBy", found.dn);
                    if (!ou.SetInfo().ok()) Raise(3003);
                }
            }

            // 9. The new name, kept for the chain's last row.
            PendingNewName = row.Cell(Slot::NewRDN);
            if (IsClearMarker(PendingNewName)) Raise(3030);

            // 10. InheritParentACL.
            std::string inherit = row.Cell(Slot::InheritParentACL);
            if (inherit == "0") {
                if (!ClearInheritanceBlock(ou)) Raise(6011);
            } else if (inherit == "1") {
                if (!SetInheritance(ou, true)) Raise(6009);
            } else if (inherit == "2") {
                if (!SetInheritance(ou, false)) Raise(6010);
            } else if (!inherit.empty()) {
                Raise(1080);
            }

            // 11. RemDefaultACL: only "YES" acts; any other value counts as no.
            if (ToUpperAscii(row.Cell(Slot::RemDefaultACL)) == "YES") {
                RemoveDefaultAces(ou, row.Cell(Slot::DoNotRemTheseACE));
            }
        }

        // 12. ACE, on Mirror rows and the first row alike.
        ApplyAceCells(ou,
                      {row.Cell(Slot::AceSamAccountName), row.Cell(Slot::AceOpeMode),
                       row.Cell(Slot::AccessRight), row.Cell(Slot::PermitOrDeny),
                       row.Cell(Slot::InheritOption)},
                      fail);

        // 13. The rename comes last, so that every row of the chain finds the OU by its old
        // name.
        if (ChainEnds(ordinal) && !PendingNewName.empty()) RenameOU(ouPath, PendingNewName);

        // 14.
        RaiseVerdict();
    });
}

}  // namespace orin
