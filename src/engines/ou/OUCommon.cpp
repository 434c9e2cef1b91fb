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
