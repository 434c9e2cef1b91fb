#pragma once
// Line-oriented access to the CP932 text files the operator sees: CSV files, Event.log,
// Orin.ini, templates and trace logs. Lines are handed out and taken in as UTF-8.

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

namespace orin::platform {

// Reads a file line by line. A line ends at CR LF, at LF or at a lone CR; the ending is not
// part of the line. A last line without an ending still counts; a file that ends with a line
// ending has no empty line after it.
//
// Only CP932 text is handed out: a line with bytes that are not CP932, or with a NUL (a UTF-16
// file, a binary one), ends the reading as the end of the file would, and BadLine() names it.
// Nothing is ever guessed or replaced.
class LineReader {
  public:
    LineReader() = default;
    explicit LineReader(const std::filesystem::path& path) { Open(path); }
    ~LineReader() { Close(); }
    LineReader(const LineReader&) = delete;
    LineReader& operator=(const LineReader&) = delete;

    bool Open(const std::filesystem::path& path);
    bool IsOpen() const { return file_ != nullptr; }
    // Reads the next line into `line` (UTF-8). False at the end of the file and at a line that
    // isn't CP932 text.
    bool ReadLine(std::string& line);
    // The number (from 1) of the line that stopped the reading as not CP932 text; 0 when none.
    int32_t BadLine() const { return badLine_; }
    void Close();

  private:
    std::FILE* file_ = nullptr;
    int32_t lineNumber_ = 0;
    int32_t badLine_ = 0;
};

// The number (from 1) of the first line of the file that isn't CP932 text; 0 when every line
// is, or when the file can't be opened.
int32_t FirstLineNotCp932(const std::filesystem::path& path);

// True when the file can be opened for reading.
bool CanOpenForReading(const std::filesystem::path& path);

// Opens the file in append mode, writes each line with CR LF, closes it. False when the file
// can't be opened; lines already written stay.
bool AppendLines(const std::filesystem::path& path, std::span<const std::string> lines);
bool AppendLine(const std::filesystem::path& path, const std::string& line);

// Replaces the file with the given lines, each ended by CR LF.
bool WriteLines(const std::filesystem::path& path, std::span<const std::string> lines);

// Reads the whole file into lines; false when it can't be opened or a line isn't CP932 text.
bool ReadAllLines(const std::filesystem::path& path, std::vector<std::string>& lines);

}  // namespace orin::platform
