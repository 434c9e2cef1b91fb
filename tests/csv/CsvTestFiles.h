#pragma once
// Scratch files for the CSV tests, written byte for byte so that line endings and CP932 bytes
// are exactly what a test says.

#include <filesystem>
#include <fstream>
#include <string>

#include "platform/Cp932.h"

namespace orin::csvtest {

inline std::filesystem::path ScratchFile(const std::string& name) {
    std::filesystem::path dir = std::filesystem::temp_directory_path() / "orin_csv_test";
    std::filesystem::create_directories(dir);
    return dir / name;
}

// Writes raw bytes.
inline std::filesystem::path WriteBytes(const std::string& name, const std::string& bytes) {
    std::filesystem::path p = ScratchFile(name);
    std::ofstream(p, std::ios::binary | std::ios::trunc) << bytes;
    return p;
}

// Writes UTF-8 text as CP932, as a spreadsheet on Japanese Windows would.
inline std::filesystem::path WriteCsv(const std::string& name, const std::string& utf8) {
    return WriteBytes(name, platform::Utf8ToCp932(utf8));
}

inline std::string ReadBytes(const std::filesystem::path& p) {
    std::ifstream in(p, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

}  // namespace orin::csvtest
