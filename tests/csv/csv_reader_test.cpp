#include <gtest/gtest.h>

#include "CsvTestFiles.h"
#include "base/RunContext.h"
#include "csv/CsvReader.h"

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

// CountObjects and ReadMirrorFlags over the same files: the object count, and the flag of every
// ordinal from 1 (N new object, Y Mirror row, ? invalid), or no flags when the read fails.
TEST(CsvFiles, ObjectCountAndMirrorFlags) {
    struct Case {
        const char* name;
        std::string bytes;
        int32_t objects;
        std::vector<std::string> flags;  // without the unused entry 0; {"fails"} for a failure
    };
    const std::vector<Case> cases = {
        {"mixed rows",
         platform::Utf8ToCp932("!OU-Start,OU-End,Mirror\r\n#captions\r\n"
                               "A,,\r\nA,, yEs \r\n"      // a Mirror row, any case, blanks around
                               ",,\r\n\r\n"               // a blank row and line get no ordinal
                               "B,,no\r\nC\r\n"           // too short for Mirror: a new object
                               "D,,Y\r\nE,,TRUE\r\n"      // invalid values count as objects
                               "#F,,YES\r\n #G,,YES\r\n"  // a comment; a data row after all
                               "!OU-Start,Mirror\r\nH,YES\r\nI,\r\n"),  // a later header
         6,
         {"N", "Y", "N", "N", "?", "?", "Y", "Y", "N"}},
        {"header only", "!OU-Start,OU-End,Mirror\r\n", 0, {}},
        {"all Mirror rows", "!OU-Start,Mirror\r\nA,Yes\r\nB,YES\r\n", 0, {"Y", "Y"}},
        {"first row a Mirror row", "!OU-Start,Mirror\r\nA,Yes\r\nB,\r\n", 1, {"Y", "N"}},
        {"data ahead of the header",
         "A,Yes\r\n!OU-Start,Mirror\r\nB,Yes\r\nC,\r\n",
         2,
         {"N", "Y", "N"}},
        {"every line ending, none at the end",
         "!OU-Start,Mirror\r\nA,\nB,Yes\rC,\r\n\r\nD,",
         3,
         {"N", "Y", "N", "N"}},
        // Bytes that aren't CP932 end every reading at their line (the driver refuses the file).
        {"damaged bytes",
         std::string("!OU-Start,RDN,Mirror\r\nA,x,\r\nB,\xFF\xFF,\r\n") +
             platform::Utf8ToCp932("技術部,z,\r\n"),
         1,
         {"N"}},
        {"a huge line", "!OU-Start,Mirror\r\nX," + std::string(6 << 20, 'a'), 1, {"?"}},
        // "!Mirror" on the first cell is not the Mirror column: every row counts, flags fail.
        {"no Mirror", "!OU-Start,OU-End\r\nA,B\r\nC,D\r\n", 2, {"fails"}},
        {"bang Mirror", "!Mirror,OU-Start\r\nYes,A\r\n", 1, {"fails"}},
        {"later header without Mirror",
         "!OU-Start,Mirror\r\nA,\r\n!Mirror,OU-Start\r\n",
         1,
         {"fails"}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const auto p = WriteBytes("objects.csv", c.bytes);
        EXPECT_EQ(CountObjects(p), c.objects);
        std::vector<std::string> flags = {"stale"};
        if (c.flags == std::vector<std::string>{"fails"}) {
            EXPECT_FALSE(ReadMirrorFlags(p, flags));
            EXPECT_TRUE(flags.empty());
            // The rows are counted all the same; without Mirror each row is an object.
            EXPECT_EQ(gRun.lngDataRowCnt, c.objects);
            continue;
        }
        ASSERT_TRUE(ReadMirrorFlags(p, flags));
        std::vector<std::string> expected = {""};
        expected.insert(expected.end(), c.flags.begin(), c.flags.end());
        EXPECT_EQ(flags, expected);
        EXPECT_EQ(gRun.lngDataRowCnt, static_cast<int32_t>(c.flags.size()));
    }
    EXPECT_EQ(CountObjects(ScratchFile("no_such_count.csv")), 0);
}
