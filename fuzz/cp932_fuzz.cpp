// Feeds arbitrary bytes to the CP932 decoder and checks what must hold for any input:
// - a decoded text never holds U+FFFD (nothing is replaced) and always encodes back to bytes
//   that decode to the same text (CP932 has duplicate codes, so not always the same bytes);
// - a refused input names an offset inside it, and everything before that offset decodes;
// - the form for showing decodes every input and never holds U+FFFD either.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "platform/Cp932.h"

namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

void Check(bool condition) {
    if (!condition) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace orin::platform;
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);

    size_t bad = size;
    if (const auto text = DecodeCp932(bytes, &bad)) {
        Check(text->find(kReplacement) == std::string::npos);
        Check(DecodeCp932(Utf8ToCp932(*text)) == *text);
    } else {
        Check(bad < size);
        Check(DecodeCp932(bytes.substr(0, bad)).has_value());
    }
    Check(Cp932ToUtf8(bytes).find(kReplacement) == std::string::npos);
    return 0;
}
