#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "platform/Cp932.h"
#include "platform/TextFile.h"

namespace fs = std::filesystem;
using namespace orin::platform;

namespace {

fs::path TempFile(const std::string& name) {
    fs::path dir = fs::temp_directory_path() / "orin_text_file_test";
    fs::create_directories(dir);
    return dir / name;
}

void WriteBytes(const fs::path& p, const std::string& bytes) {
    std::ofstream(p, std::ios::binary) << bytes;
}

std::string ReadBytes(const fs::path& p) {
    std::ifstream in(p, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

}  // namespace

TEST(Cp932, KnownBytesBothWays) {
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"ユーザーの入力情報", "\x83\x86\x81[\x83U\x81[\x82\xCC\x93\xFC\x97\xCD\x8F\xEE\x95\xF1"},
        {"【　◆】", "\x81\x79\x81\x40\x81\x9F\x81\x7A"},
        // Half-width katakana are single bytes; the Windows forms of the tilde and circled one.
        {"ｸﾞﾙｰﾌﾟ", "\xB8\xDE\xD9\xB0\xCC\xDF"},
        {"～①", "\x81\x60\x87\x40"},
        // Backslash stays a backslash (not a yen sign) both ways.
        {"\\\\srv\\share", "\\\\srv\\share"},
    };
    for (const auto& [utf8, cp932] : cases) {
        EXPECT_EQ(Utf8ToCp932(utf8), cp932) << utf8;
        EXPECT_EQ(Cp932ToUtf8(cp932), utf8) << utf8;
    }
}

TEST(Cp932, BadBytesAreReportedNeverReplaced) {
    // A lead byte without a valid trail, a byte that is never valid, a lead byte cut off by the
    // end; a user-defined character is valid.
    const std::vector<std::pair<std::string, size_t>> bad = {{"a\x81 b", 1},
                                                             {"ab\xFF", 2},
                                                             {"\x82\xA0"
                                                              "c\x82",
                                                              3},
                                                             {"\x85\x40", 0}};
    for (const auto& [bytes, offset] : bad) {
        size_t at = 99;
        EXPECT_FALSE(DecodeCp932(bytes, &at).has_value()) << bytes;
        EXPECT_EQ(at, offset) << bytes;
    }
    EXPECT_EQ(DecodeCp932("\xF0\x40").value_or(""), "\xEE\x80\x80");
    // For showing only: each bad byte visible as itself.
    EXPECT_EQ(Cp932ToUtf8("a\x81 b\xFF\x82\xA0"), "a\\x81 b\\xFFあ");
}

TEST(Cp932, CharactersOutsideCp932AndBadUtf8BecomeQuestionMarks) {
    EXPECT_EQ(Utf8ToCp932("a😀b"), "a?b");
    EXPECT_EQ(Utf8ToCp932(std::string("x\xE3\x81y", 4)), "x?y");
    EXPECT_EQ(Utf8ToCp932(std::string("\xC0\xAF", 2)), "??");
}

TEST(LineReader, AcceptsCrLfLfAndLoneCrAndKeepsEmptyLines) {
    fs::path p = TempFile("endings.csv");
    WriteBytes(p, "one\r\ntwo\nthree\rfour\r\n\r\nlast");
    LineReader reader(p);
    std::vector<std::string> lines;
    std::string line;
    while (reader.ReadLine(line)) lines.push_back(line);
    EXPECT_EQ(lines, (std::vector<std::string>{"one", "two", "three", "four", "", "last"}));
}

TEST(LineReader, FileEndingWithLineEndHasNoExtraLineAndEmptyFileHasNone) {
    fs::path p = TempFile("trailing.csv");
    WriteBytes(p, "a\r\n");
    std::vector<std::string> lines;
    ASSERT_TRUE(ReadAllLines(p, lines));
    EXPECT_EQ(lines, std::vector<std::string>{"a"});
    WriteBytes(p, "");
    ASSERT_TRUE(ReadAllLines(p, lines));
    EXPECT_TRUE(lines.empty());
}

TEST(LineReader, ALineThatIsNotCp932TextEndsTheReadingAndIsNamed) {
    fs::path p = TempFile("damaged.csv");
    for (const std::string& second : {std::string("b\x81 "), std::string("b\0c", 3)}) {
        WriteBytes(p, "a\r\n" + second + "\r\nafter\r\n");
        LineReader reader(p);
        std::string line;
        EXPECT_TRUE(reader.ReadLine(line));
        EXPECT_FALSE(reader.ReadLine(line));
        EXPECT_FALSE(reader.ReadLine(line));
        EXPECT_EQ(reader.BadLine(), 2);
        EXPECT_EQ(FirstLineNotCp932(p), 2);
        std::vector<std::string> lines;
        EXPECT_FALSE(ReadAllLines(p, lines));
    }
    WriteBytes(p, "a\r\n\x82\xA0\r\n");
    EXPECT_EQ(FirstLineNotCp932(p), 0);
}

TEST(LineReader, MissingFileAndFolderDoNotOpen) {
    EXPECT_FALSE(CanOpenForReading(TempFile("does-not-exist.csv")));
    EXPECT_FALSE(CanOpenForReading(fs::temp_directory_path()));
}

TEST(TextFile, WritesCp932WithCrLfAndAppends) {
    fs::path p = TempFile("out.log");
    std::vector<std::string> first{"処理内容： ｸﾞﾙｰﾌﾟ", ""};
    ASSERT_TRUE(WriteLines(p, first));
    ASSERT_TRUE(AppendLine(p, "end"));
    EXPECT_EQ(ReadBytes(p), Utf8ToCp932("処理内容： ｸﾞﾙｰﾌﾟ") + "\r\n\r\nend\r\n");
    EXPECT_FALSE(AppendLine(fs::path("/nonexistent-folder/x.log"), "x"));
}
