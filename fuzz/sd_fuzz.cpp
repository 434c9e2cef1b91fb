// Fuzzes the security-descriptor codec: whatever parses must build, and the built bytes must
// parse back to the same descriptor and build to the same bytes again.

#include <cstdint>
#include <cstdlib>
#include <span>

#include "directory/SecurityDescriptor.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    auto sd = orin::ParseSecurityDescriptor(std::span<const uint8_t>(data, size));
    if (!sd) return 0;
    auto built = orin::BuildSecurityDescriptor(*sd);
    if (!built) return 0;  // parsed but beyond what can be written (an ACL over 64 KB)
    auto again = orin::ParseSecurityDescriptor(*built);
    if (!again || !(*again == *sd)) std::abort();
    auto rebuilt = orin::BuildSecurityDescriptor(*again);
    if (!rebuilt || *rebuilt != *built) std::abort();
    return 0;
}
