#include "engines/ou/OUModesAcl.h"

#include "base/Outcome.h"
#include "base/RunContext.h"
#include "engines/access/AccessControl.h"
#include "platform/Strings.h"

namespace orin::oumodes {
namespace {

constexpr uint16_t kDaclProtected = 0x1000;

// The two accounts that an ACE may name although no directory object carries the name.
bool IsWellKnownAccount(std::string_view account) {
    const std::string upper = ToUpperAscii(account);
    return upper == "SYSTEM" || upper == "AUTHENTICATED USERS";
}

void SetArgs(std::string_view arg1, std::string_view arg2) {
    gRun.MsgArg1 = arg1;
    gRun.MsgArg2 = arg2;
}

}  // namespace

void CheckInheritanceCells(const Cells& cells, const Columns& columns) {
    const std::string inherit = Cell(cells, columns, "InheritParentACL");
    if (!inherit.empty() && inherit != "0" && inherit != "1" && inherit != "2") Raise(1080);
    const std::string remove = ToUpperAscii(Cell(cells, columns, "RemDefaultACL"));
    if (!remove.empty() && remove != "YES" && remove != "NO") Raise(1082);
}

void ImitateAceChecks(const Cells& cells, const Columns& columns, DirObject* object) {
    const std::string account = Cell(cells, columns, "AceSamAccountName");
    if (account.empty()) return;
    if (!IsWellKnownAccount(account) && !AccountExists(account)) Raise(1081);

    const std::string mode = Cell(cells, columns, "AceOpeMode");
    if (mode == "0" || mode == "2") {
        if (ParseAccessRights(Cell(cells, columns, "AccessRight")).IsError()) Raise(6003);
        if (ParsePermitOrDeny(Cell(cells, columns, "PermitOrDeny")).IsError()) Raise(6004);
        if (ParseInheritOption(Cell(cells, columns, "InheritOption")).IsError()) Raise(6005);
    } else if (mode == "1") {
        if (object && !HasAceFor(*object, account)) {
            gRun.AceArg = account;
            Raise(10200);
        }
    } else {
        Raise(6007);
    }
}

void CompareInheritance(DirObject& ou, const Cells& cells, const Columns& columns,
                        bool emptyMeansUnchanged) {
    const std::string inherit = Cell(cells, columns, "InheritParentACL");
    if (inherit.empty() && emptyMeansUnchanged) return;
    const bool blocked = (GetDaclControl(ou) & kDaclProtected) != 0;
    // The words name the state of the option "inherit from the parent": blocked is "無効".
    if (inherit == "1" || inherit == "2") {
        if (!blocked) {
            SetArgs("無効", "有効");
            Raise(20200);
        }
    } else if (inherit == "0" || inherit.empty()) {
        if (blocked) {
            SetArgs("有効", "無効");
            Raise(20200);
        }
    } else {
        Raise(1080);
    }
}

void CompareDefaultAcl(DirObject& ou, const Cells& cells, const Columns& columns) {
    const std::string remove = ToUpperAscii(Cell(cells, columns, "RemDefaultACL"));
    if (remove == "YES") {
        for (const std::string& part : Split(Cell(cells, columns, "DoNotRemTheseACE"), ';')) {
            const std::string name = Trim(part);
            if (name.empty() || HasAceFor(ou, name)) continue;
            gRun.MsgArg1 = name;
            Raise(20300);
        }
    } else if (remove != "NO" && !remove.empty()) {
        Raise(1082);
    }
}

void CompareAce(DirObject& ou, const Cells& cells, const Columns& columns) {
    const std::string account = Cell(cells, columns, "AceSamAccountName");
    if (account.empty()) return;
    const std::string mode = Cell(cells, columns, "AceOpeMode");
    if (mode == "0" || mode == "2") {
        if (!HasAceFor(ou, account)) {
            gRun.MsgArg1 = account;
            Raise(20301);
        }
        const CodedValue flags = ParseInheritOption(Cell(cells, columns, "InheritOption"));
        if (flags.IsError()) Raise(6005);
        if (!AceFlagsMatch(ou, account, flags)) Raise(20304);

        const std::string rights = Cell(cells, columns, "AccessRight");
        if (ParseAccessRights(rights).IsError()) Raise(6003);
        std::string missing;
        if (!AceRightsMatch(ou, account, rights, flags, missing)) {
            gRun.MsgArg1 = missing;
            Raise(20302);
        }

        const CodedValue type = ParsePermitOrDeny(Cell(cells, columns, "PermitOrDeny"));
        if (type.IsError()) Raise(6004);
        if (!AceTypeMatches(ou, account, static_cast<uint8_t>(type.Number()), flags)) {
            Raise(20303);
        }
    } else if (mode == "1") {
        if (HasAceFor(ou, account) && !HasInheritedAce(ou, account)) {
            gRun.MsgArg1 = account;
            Raise(20305);
        }
    } else {
        Raise(6007);
    }
}

}  // namespace orin::oumodes
