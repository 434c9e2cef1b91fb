#include "engines/access/ObjectDacl.h"

#include <algorithm>

#include "base/Trace.h"
#include "directory/Trustee.h"
#include "platform/Strings.h"

namespace orin {

const std::vector<Ace>& ObjectDacl::Aces() const {
    static const std::vector<Ace> kNone;
    return descriptor.Dacl ? descriptor.Dacl->Aces : kNone;
}

Acl& ObjectDacl::Dacl() {
    if (!descriptor.Dacl) {
        descriptor.Dacl.emplace();
        descriptor.Control |= kSeDaclPresent;
    }
    return *descriptor.Dacl;
}

bool ObjectDacl::Write() {
    std::string error;
    auto bytes = BuildSecurityDescriptor(descriptor, &error);
    if (!bytes) {
        WriteTrace(TraceMode, false, kTraceFunction, "ObjectDacl::Write", error);
        return false;
    }
    handle.PutBinary(kSecurityDescriptorAttribute, std::move(*bytes));
    DirStatus status = handle.SetInfo();
    if (!status.ok()) {
        WriteTrace(TraceMode, false, kTraceFunction, "ObjectDacl::Write", status.message);
    }
    return status.ok();
}

std::optional<ObjectDacl> ReadObjectDacl(const DirObject& object) {
    if (!object.IsBound()) return std::nullopt;
    ObjectDacl dacl{object, {}};
    auto bytes = dacl.handle.GetBinary(kSecurityDescriptorAttribute);
    if (!bytes.ok()) return std::nullopt;
    std::string error;
    auto descriptor = ParseSecurityDescriptor(*bytes, &error);
    if (!descriptor) {
        WriteTrace(TraceMode, false, kTraceFunction, "ReadObjectDacl", error);
        return std::nullopt;
    }
    dacl.descriptor = std::move(*descriptor);
    return dacl;
}

std::string TrusteeOf(const Ace& ace) {
    if (!ace.Raw.empty()) return "";
    return TrusteeForSid(ace.TrusteeSid);
}

bool IsAceOf(const Ace& ace, std::string_view trusteeName) {
    return !trusteeName.empty() && ToUpperAscii(TrusteeOf(ace)) == trusteeName;
}

void InsertAce(Acl& acl, Ace ace) {
    bool deny = ace.IsDeny();
    auto at = std::find_if(acl.Aces.begin(), acl.Aces.end(), [deny](const Ace& present) {
        return present.IsInherited() || (deny && !present.IsDeny());
    });
    if (Ace::IsObjectType(ace.AceType)) acl.AclRevision = kAclRevisionDs;
    acl.Aces.insert(at, std::move(ace));
}

}  // namespace orin
