#include "platform/Strings.h"

namespace orin {
namespace {

char UpperChar(char c) {
    return (c >= 'a' && c <= 'z') ? static_cast<char>(c - 'a' + 'A') : c;
}
char LowerChar(char c) {
    return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c;
}

}  // namespace

std::string Trim(std::string_view text) {
    size_t begin = text.find_first_not_of(' ');
    if (begin == std::string_view::npos) return {};
    size_t end = text.find_last_not_of(' ');
    return std::string(text.substr(begin, end - begin + 1));
}

std::string ToUpperAscii(std::string_view text) {
    std::string out(text);
    for (char& c : out) c = UpperChar(c);
    return out;
}

std::string ToLowerAscii(std::string_view text) {
    std::string out(text);
    for (char& c : out) c = LowerChar(c);
    return out;
}

bool EqualsIgnoreCase(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    for (size_t i = 0; i < a.size(); ++i)
        if (UpperChar(a[i]) != UpperChar(b[i])) return false;
    return true;
}

size_t FindIgnoreCase(std::string_view text, std::string_view needle, size_t from) {
    if (needle.size() > text.size()) return std::string_view::npos;
    for (size_t i = from; i + needle.size() <= text.size(); ++i)
        if (EqualsIgnoreCase(text.substr(i, needle.size()), needle)) return i;
    return std::string_view::npos;
}

bool StartsWithIgnoreCase(std::string_view text, std::string_view prefix) {
    return text.size() >= prefix.size() && EqualsIgnoreCase(text.substr(0, prefix.size()), prefix);
}

std::vector<std::string> Split(std::string_view text, char separator) {
    std::vector<std::string> parts;
    size_t start = 0;
    while (true) {
        size_t pos = text.find(separator, start);
        if (pos == std::string_view::npos) {
            parts.emplace_back(text.substr(start));
            return parts;
        }
        parts.emplace_back(text.substr(start, pos - start));
        start = pos + 1;
    }
}

std::string Join(const std::vector<std::string>& parts, std::string_view separator) {
    std::string out;
    for (size_t i = 0; i < parts.size(); ++i) {
        if (i) out += separator;
        out += parts[i];
    }
    return out;
}

std::string ReplaceAll(std::string_view text, std::string_view from, std::string_view to,
                       bool ignoreCase) {
    if (from.empty()) return std::string(text);
    std::string out;
    size_t start = 0;
    while (true) {
        size_t pos = ignoreCase ? FindIgnoreCase(text, from, start) : text.find(from, start);
        if (pos == std::string_view::npos) break;
        out += text.substr(start, pos - start);
        out += to;
        start = pos + from.size();
    }
    out += text.substr(start);
    return out;
}

}  // namespace orin
