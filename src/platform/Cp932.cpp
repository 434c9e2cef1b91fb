#include "platform/Cp932.h"

#include <iconv.h>

#include <cerrno>
#include <stdexcept>

namespace orin::platform {
namespace {

// One converter per direction and thread: iconv_open is costly, and a conversion descriptor
// keeps shift state, so it is never shared between threads.
class Converter {
  public:
    Converter(const char* to, const char* from) : cd_(iconv_open(to, from)) {
        if (cd_ == reinterpret_cast<iconv_t>(-1))
            throw std::runtime_error(std::string("iconv cannot convert ") + from + " to " + to);
    }
    ~Converter() { iconv_close(cd_); }
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;

    // Converts as much as possible; stops at the first bad input. Returns the number of input
    // bytes consumed, appends the output to `out`.
    size_t Convert(std::string_view in, std::string& out, bool& stoppedOnBadInput) {
        iconv(cd_, nullptr, nullptr, nullptr, nullptr);
        char* inPtr = const_cast<char*>(in.data());
        size_t inLeft = in.size();
        stoppedOnBadInput = false;
        char buffer[4096];
        while (inLeft > 0) {
            char* outPtr = buffer;
            size_t outLeft = sizeof buffer;
            size_t rc = iconv(cd_, &inPtr, &inLeft, &outPtr, &outLeft);
            out.append(buffer, static_cast<size_t>(outPtr - buffer));
            if (rc == static_cast<size_t>(-1)) {
                if (errno == E2BIG) continue;
                stoppedOnBadInput = true;  // EILSEQ or EINVAL (truncated sequence at the end)
                break;
            }
        }
        return in.size() - inLeft;
    }

  private:
    iconv_t cd_;
};

Converter& Decoder() {
    thread_local Converter c("UTF-8", "CP932");
    return c;
}

Converter& Encoder() {
    thread_local Converter c("CP932", "UTF-8");
    return c;
}

// Length of the UTF-8 sequence that starts with `lead`, 1 for a byte that starts none.
size_t Utf8SequenceLength(unsigned char lead) {
    if (lead >= 0xF0 && lead <= 0xF4) return 4;
    if (lead >= 0xE0) return 3;
    if (lead >= 0xC2 && lead <= 0xDF) return 2;
    return 1;
}

}  // namespace

std::optional<std::string> DecodeCp932(std::string_view bytes, size_t* badOffset) {
    std::string out;
    out.reserve(bytes.size() + bytes.size() / 2);
    bool bad = false;
    const size_t used = Decoder().Convert(bytes, out, bad);
    if (!bad) return out;
    if (badOffset) *badOffset = used;
    return std::nullopt;
}

std::string Cp932ToUtf8(std::string_view bytes) {
    static constexpr char kHex[] = "0123456789ABCDEF";
    std::string out;
    out.reserve(bytes.size() + bytes.size() / 2);
    while (!bytes.empty()) {
        bool bad = false;
        bytes.remove_prefix(Decoder().Convert(bytes, out, bad));
        if (!bad) break;
        const auto byte = static_cast<unsigned char>(bytes.front());
        out += "\\x";
        out += kHex[byte >> 4];
        out += kHex[byte & 0xF];
        bytes.remove_prefix(1);
    }
    return out;
}

std::string Utf8ToCp932(std::string_view utf8) {
    std::string out;
    out.reserve(utf8.size());
    while (!utf8.empty()) {
        bool bad = false;
        size_t used = Encoder().Convert(utf8, out, bad);
        utf8.remove_prefix(used);
        if (bad) {
            out += '?';
            // Drop the character that failed: its lead byte and the continuation bytes it claims.
            size_t length = Utf8SequenceLength(static_cast<unsigned char>(utf8.front()));
            size_t skip = 1;
            while (skip < length && skip < utf8.size() &&
                   (static_cast<unsigned char>(utf8[skip]) & 0xC0) == 0x80)
                ++skip;
            utf8.remove_prefix(skip);
        }
    }
    return out;
}

}  // namespace orin::platform
