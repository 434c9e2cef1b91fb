#pragma once
// Line-oriented access to the CP932 text files the operator sees: CSV files, Event.log,
// Orin.ini, templates and trace logs. Lines are handed out and taken in as UTF-8.

#include <cstdio>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

namespace orin::platform {

// Reads a file line by line. A line ends at CR LF, at LF or at a lone CR; the ending is not
// part of the line. A last line without an ending still counts; a file that ends with a line
// ending has no empty line after it.
class LineReader {
  public:
    LineReader() = default;
    explicit LineReader(const std::filesystem::path& path) { Open(path); }
    ~LineReader() { Close(); }
    LineReader(const LineReader&) = delete;
    LineReader& operator=(const LineReader&) = delete;

    bool Open(const std::filesystem::path& path);
    bool IsOpen() const { return file_ != nullptr; }
    // Reads the next line into `line` (UTF-8). False at the end of the file.
    bool ReadLine(std::string& line);
    void Close();

  private:
    std::FILE* file_ = nullptr;
};

// True when the file can be opened for reading.
bool CanOpenForReading(const std::filesystem::path& path);

// Opens the file in append mode, writes each line with CR LF, closes it. False when the file
// can't be opened; lines already written stay.
bool AppendLines(const std::filesystem::path& path, std::span<const std::string> lines);
bool AppendLine(const std::filesystem::path& path, const std::string& line);

// Replaces the file with the given lines, each ended by CR LF.
bool WriteLines(const std::filesystem::path& path, std::span<const std::string> lines);

// Reads the whole file into lines; false when it can't be opened.
bool ReadAllLines(const std::filesystem::path& path, std::vector<std::string>& lines);

}  // namespace orin::platform
