#include <gtest/gtest.h>

#include "base/MirrorChain.h"
#include "base/RunContext.h"
#include "csv/CsvReader.h"

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

TEST(MirrorChain, PredicatesPerOrdinal) {
    struct Case {
        const char* flags;
        const char* objectEnd;
        const char* lastMirrorRow;  // also ChainEnds
    };
    const std::vector<Case> cases = {
        {"NYYNNY", "001101", "001101"},
        // A first row flagged "Y" has no object above it and simply continues into row 2.
        {"YYNY", "0101", "0101"},
        // A "?" ends the object above it for IsObjectEnd, but not the chain for the modify
        // engines; and a "?" row followed by "N" ends its object but is no last Mirror row.
        {"N?NY?YN", "1101011", "0000011"},
        {"N?", "11", "01"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.flags);
        SetFlags(c.flags);
        EXPECT_EQ(Answers(IsObjectEnd), c.objectEnd);
        EXPECT_EQ(Answers(IsLastMirrorRow), c.lastMirrorRow);
        EXPECT_EQ(Answers(ChainEnds), c.lastMirrorRow);
    }
}

TEST(MirrorChain, OrdinalsOutsideTheFileAndMissingFlagsAreSafe) {
    SetFlags("N?");
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
