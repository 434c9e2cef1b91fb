#include <gtest/gtest.h>

#include "CsvTestFiles.h"
#include "csv/CsvReader.h"
#include "run/RunContext.h"

using namespace orin;
using namespace orin::csvtest;

namespace {

const std::vector<std::string> kNames = {"OU-Start", "OU-End", "RDN", "Mirror", "description"};

}  // namespace

TEST(CsvLines, KindIsDecidedOnTheFirstRawCharacter) {
    EXPECT_EQ(ClassifyLine("!OU-Start,OU-End"), LineKind::Header);
    EXPECT_EQ(ClassifyLine("#,【説明】"), LineKind::Comment);
    EXPECT_EQ(ClassifyLine(""), LineKind::Blank);
    EXPECT_EQ(ClassifyLine("    "), LineKind::Blank);
    // A blank in front makes a data line, and a row of commas is a data line (a blank row).
    EXPECT_EQ(ClassifyLine(" #comment"), LineKind::Data);
    EXPECT_EQ(ClassifyLine(",,,"), LineKind::Data);
    // Only half-width blanks trim, and only half-width marks count.
    EXPECT_EQ(ClassifyLine("\t"), LineKind::Data);
    EXPECT_EQ(ClassifyLine("　"), LineKind::Data);
    EXPECT_EQ(ClassifyLine("＃全角"), LineKind::Data);
}

TEST(CsvLines, SplitHasNoQuotingAndKeepsEveryCell) {
    EXPECT_EQ(SplitCells("a,,b"), (std::vector<std::string>{"a", "", "b"}));
    EXPECT_EQ(SplitCells(""), (std::vector<std::string>{""}));
    // A quoted value with a comma becomes two cells, one quote mark in each.
    EXPECT_EQ(SplitCells("x,\"Tokyo, Japan\",y"),
              (std::vector<std::string>{"x", "\"Tokyo", " Japan\"", "y"}));
    // Cells are not trimmed by the split.
    EXPECT_EQ(SplitCells(" a , b"), (std::vector<std::string>{" a ", " b"}));
}

TEST(CsvLines, BlankRowsAndCellAccess) {
    EXPECT_TRUE(IsRowEmpty(SplitCells(",,,")));
    EXPECT_TRUE(IsRowEmpty(SplitCells(" , ,  ")));
    EXPECT_FALSE(IsRowEmpty(SplitCells(",\t,")));

    std::vector<std::string> cells = SplitCells(" IT , pass word ,");
    EXPECT_EQ(CellAt(cells, 0), "IT");
    EXPECT_EQ(CellAt(cells, 1), "pass word");
    EXPECT_EQ(RawCellAt(cells, 1), " pass word ");
    EXPECT_TRUE(HasCell(cells, 2));
    // Absent: no column, or a row too short.
    EXPECT_FALSE(HasCell(cells, -1));
    EXPECT_FALSE(HasCell(cells, 3));
    EXPECT_EQ(CellAt(cells, 3), "");
    EXPECT_EQ(RawCellAt(cells, 30000), "");
}

TEST(CsvFiles, OpenAndExistTests) {
    auto p = WriteCsv("exists.csv", "!Mirror\r\n");
    EXPECT_TRUE(CheckFileOpens(p));
    EXPECT_TRUE(FileExists(p));
    auto missing = ScratchFile("no_such_file.csv");
    std::filesystem::remove(missing);
    EXPECT_FALSE(CheckFileOpens(missing));
    EXPECT_FALSE(FileExists(missing));
    // Neither test creates the file.
    EXPECT_FALSE(std::filesystem::exists(missing));
    // A folder is not a CSV file.
    EXPECT_FALSE(FileExists(missing.parent_path()));
    EXPECT_FALSE(CheckFileOpens(missing.parent_path()));
}

TEST(CsvFiles, HeaderLineMayStandAnywhereButReadHeaderOnlyLooksAtLineOne) {
    auto lower = WriteCsv("header_lower.csv", "#caption\r\n!OU-Start,OU-End,Mirror\r\nA,B,\r\n");
    EXPECT_TRUE(HasHeaderLine(lower));
    std::vector<int16_t> index;
    ASSERT_TRUE(ReadHeader(lower, kNames, index));
    EXPECT_EQ(index, (std::vector<int16_t>{-1, -1, -1, -1, -1}));

    auto none = WriteCsv("header_none.csv", " !OU-Start\r\n#x\r\nA,B\r\n");
    EXPECT_FALSE(HasHeaderLine(none));
    auto empty = WriteBytes("header_empty.csv", "");
    EXPECT_FALSE(HasHeaderLine(empty));
    index = {7};
    ASSERT_TRUE(ReadHeader(empty, kNames, index));
    EXPECT_EQ(index, (std::vector<int16_t>(5, -1)));
}

TEST(CsvFiles, ReadHeaderMatchesNamesWithoutCaseAndWithTheBang) {
    // "!" + name on the first cell, any case, blanks around, unknown and unnamed columns,
    // and a repeated name that counts at its first position only.
    auto p = WriteCsv("header_match.csv",
                      "!ou-start,,, OU-END ,Extra,mirror,Description,MIRROR,!rdn\r\n");
    std::vector<int16_t> index;
    ASSERT_TRUE(ReadHeader(p, kNames, index));
    EXPECT_EQ(index, (std::vector<int16_t>{0, 3, 8, 5, 6}));

    // Empty names are placeholders and match nothing, not even empty cells.
    std::vector<int16_t> placeholder;
    ASSERT_TRUE(ReadHeader(p, {"", "Extra"}, placeholder));
    EXPECT_EQ(placeholder, (std::vector<int16_t>{-1, 4}));

    // A file that can't be opened leaves the index as it was.
    std::vector<int16_t> kept = {1, 2};
    EXPECT_FALSE(ReadHeader(ScratchFile("no_such_header.csv"), {"a", "b"}, kept));
    EXPECT_EQ(kept, (std::vector<int16_t>{1, 2}));
}

TEST(CsvFiles, ReadHeaderIgnoresColumnsBeyondTheSixteenBitRange) {
    std::string line = "!OU-Start";
    for (int i = 0; i < 40000; ++i) line += ",";
    line += "Mirror";
    auto p = WriteCsv("header_wide.csv", line + "\r\n");
    std::vector<int16_t> index;
    ASSERT_TRUE(ReadHeader(p, {"OU-Start", "Mirror"}, index));
    EXPECT_EQ(index, (std::vector<int16_t>{0, -1}));
}

TEST(CsvFiles, CountObjectsCountsNonMirrorRows) {
    auto p = WriteCsv("count.csv",
                      "!OU-Start,OU-End,Mirror\r\n"
                      "#captions\r\n"
                      "A,,\r\n"               // object 1
                      "A,, yes \r\n"          // Mirror row
                      ",,\r\n"                // blank row
                      "\r\n"                  // blank line
                      "B,,No\r\n"             // object 2
                      "C\r\n"                 // too short for Mirror: object 3
                      "D,,Y\r\n"              // invalid value counts: object 4
                      " #E,,YES\r\n"          // a data row after all, Mirror row
                      "!OU-Start,Mirror\r\n"  // a later header moves the Mirror column
                      "F,YES\r\n"
                      "G,\r\n");  // object 5
    EXPECT_EQ(CountObjects(p), 5);
}

TEST(CsvFiles, CountObjectsEdgeFiles) {
    EXPECT_EQ(CountObjects(WriteCsv("count_header_only.csv", "!OU-Start,OU-End,Mirror\r\n")), 0);
    EXPECT_EQ(
        CountObjects(WriteCsv("count_all_mirror.csv", "!OU-Start,Mirror\r\nA,Yes\r\nB,YES\r\n")),
        0);
    // A first row flagged "Y" gets no count.
    EXPECT_EQ(CountObjects(WriteCsv("count_first_y.csv", "!OU-Start,Mirror\r\nA,Yes\r\nB,\r\n")),
              1);
    // "!Mirror" on the first cell is not the Mirror column here: every row counts.
    EXPECT_EQ(CountObjects(WriteCsv("count_bang_mirror.csv", "!Mirror,OU-Start\r\nYes,A\r\n")), 1);
    EXPECT_EQ(CountObjects(ScratchFile("no_such_count.csv")), 0);
}

TEST(CsvFiles, DataAheadOfTheFirstHeaderStartsObjects) {
    auto p = WriteCsv("data_first.csv", "A,Yes\r\n!OU-Start,Mirror\r\nB,Yes\r\nC,\r\n");
    EXPECT_EQ(CountObjects(p), 2);  // "A" and "C"
    std::vector<std::string> flags;
    ASSERT_TRUE(ReadMirrorFlags(p, flags));
    EXPECT_EQ(flags, (std::vector<std::string>{"", "N", "Y", "N"}));
}

TEST(CsvFiles, MirrorFlagsPerOrdinal) {
    gRun.lngDataRowCnt = -5;
    auto p = WriteCsv("flags.csv",
                      "!OU-Start,OU-End,Mirror\r\n"
                      "A,,\r\n"
                      ",,\r\n"  // blank row: no ordinal
                      "A,, yEs \r\n"
                      "B,,no\r\n"
                      "C\r\n"
                      "D,,Y\r\n"
                      "E,,TRUE\r\n"
                      "#F,,YES\r\n");
    std::vector<std::string> flags;
    ASSERT_TRUE(ReadMirrorFlags(p, flags));
    EXPECT_EQ(gRun.lngDataRowCnt, 6);
    EXPECT_EQ(flags, (std::vector<std::string>{"", "N", "Y", "N", "N", "?", "?"}));
}

TEST(CsvFiles, MirrorFlagsFailOnAHeaderWithoutMirror) {
    std::vector<std::string> flags = {"stale"};
    auto p = WriteCsv("flags_nomirror.csv", "!OU-Start,OU-End\r\nA,B\r\nC,D\r\n");
    EXPECT_FALSE(ReadMirrorFlags(p, flags));
    EXPECT_TRUE(flags.empty());
    EXPECT_EQ(gRun.lngDataRowCnt, 2);  // the first pass has counted

    // Any later header without Mirror fails as well; "!Mirror" on the first cell isn't one.
    auto later = WriteCsv("flags_later.csv", "!OU-Start,Mirror\r\nA,\r\n!Mirror,OU-Start\r\n");
    EXPECT_FALSE(ReadMirrorFlags(later, flags));
    EXPECT_TRUE(flags.empty());
}

TEST(CsvFiles, LineEndingsOfEveryKindAndNoByteOrderMark) {
    // CR LF, LF and a lone CR all end a line; the last line needs no ending.
    auto p = WriteBytes("endings.csv", "!OU-Start,Mirror\r\nA,\nB,Yes\rC,\r\n\r\nD,");
    EXPECT_EQ(CountObjects(p), 3);
    std::vector<std::string> flags;
    ASSERT_TRUE(ReadMirrorFlags(p, flags));
    EXPECT_EQ(flags, (std::vector<std::string>{"", "N", "Y", "N", "N"}));
}

TEST(CsvFiles, DamagedBytesAreReadRowByRow) {
    // 0x81 0x20 is a lead byte without its trail, 0xFF is never valid, a lone lead byte ends
    // the third row; every row is still read, and the kanji row decodes as it should.
    std::string bytes = "!OU-Start,RDN,Mirror\r\n";
    bytes += std::string("A\x81 ,x,\r\n", 8);
    bytes += std::string("B,\xFF\xFF,Yes\r\n", 11);
    bytes += std::string("C,y,\x82\r\n", 8);
    bytes += platform::Utf8ToCp932("技術部,z,\r\n");
    auto p = WriteBytes("damaged.csv", bytes);

    EXPECT_TRUE(HasHeaderLine(p));
    EXPECT_EQ(CountObjects(p), 3);
    std::vector<std::string> flags;
    ASSERT_TRUE(ReadMirrorFlags(p, flags));
    EXPECT_EQ(flags, (std::vector<std::string>{"", "N", "Y", "?", "N"}));
    std::vector<int16_t> index;
    ASSERT_TRUE(ReadHeader(p, {"RDN", "Mirror"}, index));
    EXPECT_EQ(index, (std::vector<int16_t>{1, 2}));
}

TEST(CsvFiles, AHugeLineWithoutNewlineIsOneRow) {
    std::string line = "!OU-Start,Mirror\r\nX,";
    line.append(6 * 1024 * 1024, 'a');
    auto p = WriteBytes("huge.csv", line);
    EXPECT_EQ(CountObjects(p), 1);
    std::vector<std::string> flags;
    ASSERT_TRUE(ReadMirrorFlags(p, flags));
    EXPECT_EQ(flags, (std::vector<std::string>{"", "?"}));
}
