#include "engines/ou/OUCommon.h"

#include "base/Outcome.h"
#include "base/RunContext.h"
#include "csv/CsvReader.h"
#include "directory/Bind.h"
#include "directory/DirectorySession.h"
#include "directory/Paths.h"
#include "engines/access/AccessControl.h"
#include "engines/ou/OUFastPath.h"
#include "platform/Strings.h"

namespace orin {

std::string PendingNewName;

std::string OURow::CellAtIndex(int16_t index) const {
    return CellAt(cells_, index);
}

std::string OURow::PathBetween(int16_t first, int16_t last) const {
    return BuildOUPath(cells_, first, last);
}

MirrorCell ReadMirrorCell(std::string_view cell) {
    std::string value = ToUpperAscii(Trim(cell));
    if (value == "YES") return MirrorCell::Yes;
    if (value == "NO" || value.empty()) return MirrorCell::No;
    return MirrorCell::Invalid;
}

bool IsClearMarker(std::string_view cell) {
    return ToUpperAscii(Trim(cell)) == "!C";
}

std::string ExpandRtn(std::string_view text) {
    return ReplaceAll(text, "<Rtn>", "\r\n", true);
}

std::string WholePath(std::string_view relativePath) {
    return "LDAP://" + std::string(relativePath) + "," + gSession.DomainDN;
}

bool Binds(std::string_view wholePath) {
    DirObject object;
    return BindObject(wholePath, object);
}

void CheckSpan(int16_t start, int16_t end, int32_t absentCode, int32_t reversedCode) {
    if (start == -1 || end == -1) Raise(absentCode);
    if (start > end) Raise(reversedCode);
}

std::string ObjectDnInContainer(const Cells& cells, int16_t first, int16_t last,
                                std::string_view name) {
    const std::string cn = "CN=" + std::string(name) + ",";
    std::string ouPath = BuildOUPath(cells, first, last);
    if (ouPath.empty()) return cn + gSession.DomainDN;
    if (Binds(WholePath(ouPath))) return cn + ouPath + "," + gSession.DomainDN;
    // One level only, and no OU of that name: perhaps a default container such as "Users".
    std::string firstCell = CellAt(cells, first);
    if (!firstCell.empty() && BuildOUPath(cells, first + 1, last).empty() &&
        Binds(WholePath("CN=" + firstCell))) {
        return cn + "CN=" + firstCell + "," + gSession.DomainDN;
    }
    return {};
}

ManagerLookup LookUpManager(const Cells& cells, int16_t mgrStart, int16_t mgrEnd,
                            std::string_view mgrRdn) {
    ManagerLookup found;
    if (mgrStart == -1 || mgrEnd == -1) {
        found.failure = 1005;
        return found;
    }
    if (mgrStart > mgrEnd) {
        found.failure = 1006;
        return found;
    }
    found.containerPath = BuildOUPath(cells, mgrStart, mgrEnd);
    found.dn = ObjectDnInContainer(cells, mgrStart, mgrEnd, mgrRdn);
    if (found.dn.empty()) {
        found.failure = 2020;
        return found;
    }
    DirObject manager;
    if (!BindObject("LDAP://" + found.dn, manager)) {
        found.failure = 1007;
    } else if (manager.Class() != "user") {
        found.failure = 1123;
    }
    return found;
}

void ApplyAceCells(DirObject& object, const AceCells& ace, const FailStep& fail) {
    if (ace.account.empty()) return;
    const std::string& mode = ace.mode;
    CodedValue rights = CodedValue::Error();
    CodedValue type = CodedValue::Error();
    CodedValue flags = CodedValue::Error();
    if (mode == "0" || mode == "2") {
        rights = ParseAccessRights(ace.accessRight);
        if (rights.IsError()) fail(6003);
        type = ParsePermitOrDeny(ace.permitOrDeny);
        if (type.IsError()) fail(6004);
        flags = ParseInheritOption(ace.inheritOption);
        if (flags.IsError()) fail(6005);
    }
    const auto aceType = static_cast<uint8_t>(type.Number());
    bool found = false;
    if (mode == "0") {
        if (FastNewAce(object, ace.account, rights.Number(), aceType, flags)) return;
        if (!RemoveAce(object, ace.account, found)) fail(1401);
        if (!AddAceToObject(object, ace.account, rights.Number(), aceType, flags)) fail(6006);
    } else if (mode == "1") {
        if (!RemoveAce(object, ace.account, found)) fail(1401);
        if (!found) {
            gRun.AceArg = ace.account;
            Raise(10200);
        }
    } else if (mode == "2") {
        if (!OverwriteAce(object, ace.inheritOption, ace.account, rights.Number(), aceType)) {
            fail(6008);
        }
    } else {
        fail(6007);
    }
}

}  // namespace orin
