#include "platform/TextFile.h"

#include "platform/Cp932.h"

namespace orin::platform {

bool LineReader::Open(const std::filesystem::path& path) {
    Close();
    lineNumber_ = 0;
    badLine_ = 0;
    std::error_code ec;
    if (std::filesystem::is_directory(path, ec)) return false;
    file_ = std::fopen(path.c_str(), "rb");
    return file_ != nullptr;
}

bool LineReader::ReadLine(std::string& line) {
    line.clear();
    if (!file_ || badLine_ != 0) return false;
    std::string raw;
    int c = std::getc(file_);
    if (c == EOF) return false;
    while (c != EOF) {
        if (c == '\n') break;
        if (c == '\r') {
            int next = std::getc(file_);
            if (next != '\n' && next != EOF) std::ungetc(next, file_);
            break;
        }
        raw.push_back(static_cast<char>(c));
        c = std::getc(file_);
    }
    ++lineNumber_;
    std::optional<std::string> text = DecodeCp932(raw);
    if (!text || raw.find('\0') != std::string::npos) {
        badLine_ = lineNumber_;
        return false;
    }
    line = std::move(*text);
    return true;
}

void LineReader::Close() {
    if (file_) std::fclose(file_);
    file_ = nullptr;
}

int32_t FirstLineNotCp932(const std::filesystem::path& path) {
    LineReader reader;
    if (!reader.Open(path)) return 0;
    std::string line;
    while (reader.ReadLine(line)) {
    }
    return reader.BadLine();
}

bool CanOpenForReading(const std::filesystem::path& path) {
    LineReader reader;
    return reader.Open(path);
}

namespace {

bool WriteWithMode(const std::filesystem::path& path, std::span<const std::string> lines,
                   const char* mode) {
    std::FILE* f = std::fopen(path.c_str(), mode);
    if (!f) return false;
    bool ok = true;
    for (const std::string& line : lines) {
        std::string bytes = Utf8ToCp932(line);
        bytes += "\r\n";
        if (std::fwrite(bytes.data(), 1, bytes.size(), f) != bytes.size()) ok = false;
    }
    if (std::fclose(f) != 0) ok = false;
    return ok;
}

}  // namespace

bool AppendLines(const std::filesystem::path& path, std::span<const std::string> lines) {
    return WriteWithMode(path, lines, "ab");
}

bool AppendLine(const std::filesystem::path& path, const std::string& line) {
    return AppendLines(path, std::span<const std::string>(&line, 1));
}

bool WriteLines(const std::filesystem::path& path, std::span<const std::string> lines) {
    return WriteWithMode(path, lines, "wb");
}

bool ReadAllLines(const std::filesystem::path& path, std::vector<std::string>& lines) {
    lines.clear();
    LineReader reader;
    if (!reader.Open(path)) return false;
    std::string line;
    while (reader.ReadLine(line)) lines.push_back(line);
    return reader.BadLine() == 0;
}

}  // namespace orin::platform
