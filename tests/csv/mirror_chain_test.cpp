#include <gtest/gtest.h>

#include "CsvTestFiles.h"
#include "csv/CsvReader.h"
#include "run/RunContext.h"

using namespace orin;

namespace {

// Sets gRun.MirrorFlags from a string of flags, one character per ordinal from 1.
void SetFlags(std::string_view flags) {
    gRun.MirrorFlags.assign(1, "");
    for (char f : flags) gRun.MirrorFlags.emplace_back(1, f);
    gRun.lngDataRowCnt = static_cast<int32_t>(flags.size());
}

// The predicate's answer for every ordinal from 1, as a string of 0 and 1.
template <typename Predicate>
std::string Answers(Predicate predicate) {
    std::string out;
    for (int32_t i = 1; i <= gRun.lngDataRowCnt; ++i) out += predicate(i) ? '1' : '0';
    return out;
}

}  // namespace

TEST(MirrorChain, PlainChains) {
    SetFlags("NYYNNY");
    EXPECT_EQ(Answers(IsObjectEnd), "001101");
    EXPECT_EQ(Answers(IsLastMirrorRow), "001101");
    EXPECT_EQ(Answers(ChainEnds), "001101");

    // A first row flagged "Y" has no object above it and simply continues into row 2.
    SetFlags("YYNY");
    EXPECT_EQ(Answers(IsObjectEnd), "0101");
    EXPECT_EQ(Answers(IsLastMirrorRow), "0101");
    EXPECT_EQ(Answers(ChainEnds), "0101");
}

TEST(MirrorChain, InvalidFlagsSplitThePredicates) {
    // A "?" ends the object above it for IsObjectEnd, but not the chain for the modify
    // engines; and a "?" row followed by "N" ends its object but is no last Mirror row.
    SetFlags("N?NY?YN");
    EXPECT_EQ(Answers(IsObjectEnd), "1101011");
    EXPECT_EQ(Answers(IsLastMirrorRow), "0000011");
    EXPECT_EQ(Answers(ChainEnds), "0000011");
}

TEST(MirrorChain, TheLastRowAlwaysEndsAndOrdinalsOutsideTheFileAreSafe) {
    SetFlags("N?");
    EXPECT_TRUE(IsObjectEnd(2));
    EXPECT_TRUE(IsLastMirrorRow(2));
    EXPECT_TRUE(ChainEnds(2));
    // Beyond the last row: the first two predicates say "not below the count", ChainEnds only
    // knows the last row itself.
    EXPECT_TRUE(IsObjectEnd(3));
    EXPECT_TRUE(IsLastMirrorRow(3));
    EXPECT_FALSE(ChainEnds(3));
    EXPECT_FALSE(IsLastMirrorRow(0));
    EXPECT_FALSE(ChainEnds(-1));
    EXPECT_FALSE(IsObjectEnd(-7));

    // Flags missing altogether (a failed ReadMirrorFlags) don't crash the predicates.
    gRun.MirrorFlags.clear();
    gRun.lngDataRowCnt = 4;
    EXPECT_EQ(Answers(IsObjectEnd), "0001");
    EXPECT_EQ(Answers(IsLastMirrorRow), "0001");
    EXPECT_EQ(Answers(ChainEnds), "0001");
}

TEST(MirrorChain, FlagsFromAFileDriveThePredicates) {
    auto p = csvtest::WriteCsv("chain.csv",
                               "!OU-Start,Mirror\r\n#,ミラー\r\nA,\r\nA,Yes\r\n,\r\nA,YES\r\n"
                               "B,maybe\r\nC,No\r\nC,yes\r\n");
    ASSERT_TRUE(ReadMirrorFlags(p, gRun.MirrorFlags));
    ASSERT_EQ(gRun.lngDataRowCnt, 6);
    EXPECT_EQ(Answers(IsObjectEnd), "001101");
    EXPECT_EQ(Answers(IsLastMirrorRow), "000001");
    EXPECT_EQ(Answers(ChainEnds), "000001");
}
