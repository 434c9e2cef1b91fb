// The ledgers of the imitation: their tables, and how paths are matched and followed through
// the renames that earlier rows made.

#include <gtest/gtest.h>

#include "engines/Ledgers.h"

namespace orin {
namespace {

void Rename(int32_t line, const std::string& newPath, const std::string& oldPath) {
    RenameLedger.Set(0, RenameCount, std::to_string(line));
    RenameLedger.Set(1, RenameCount, newPath);
    RenameLedger.Set(2, RenameCount, oldPath);
    ++RenameCount;
}

TEST(OUImitateLedger, TablesGrowPastTheirSizingAndAResetEmptiesThem) {
    ResetLedgers(ObjectKind::OU, 3);
    AddLedger.Set(1, 4, "OU=a");     // beyond the rows counted
    AddLedger.Set(2, 0, "ignored");  // an OU's add ledger has two fields
    Rename(2, "OU=b", "OU=a");
    EXPECT_EQ(AddLedger.Entries(), 5);
    EXPECT_EQ(AddLedger.Get(1, 4), "OU=a");
    EXPECT_EQ(AddLedger.Get(2, 0), "");

    ResetLedgers(ObjectKind::OU, 3);
    EXPECT_EQ(AddLedger.Get(1, 4), "");
    EXPECT_EQ(RenameLedger.Get(1, 0), "");
    EXPECT_EQ(RenameCount, 0);
}

TEST(OUImitateLedger, OnlyEntriesBelowTheCountAreInForce) {
    ResetLedgers(ObjectKind::OU, 4);
    AddLedger.Set(1, 0, "OU=a,OU=t");
    AddLedger.Set(1, 1, "OU=b,OU=t");  // a row that failed after entering itself
    EXPECT_EQ(FindLedgerEntry(AddLedger, 1, "ou=A,ou=T", 1), 0);
    EXPECT_EQ(FindLedgerEntry(AddLedger, 1, "OU=b,OU=t", 1), -1);
    EXPECT_EQ(FindLedgerEntry(AddLedger, 1, "OU=b,OU=t", 2), 1);
}

TEST(OUImitateLedger, APathLiesUnderWholeTermsOnly) {
    EXPECT_TRUE(PathLiesUnder("OU=a,OU=t", "ou=A,ou=T"));
    EXPECT_TRUE(PathLiesUnder("OU=c,OU=a,OU=t", "OU=a,OU=t"));
    EXPECT_FALSE(PathLiesUnder("OU=xa,OU=t", "OU=a,OU=t"));      // not a term boundary
    EXPECT_FALSE(PathLiesUnder("OU=a,OU=t,OU=z", "OU=a,OU=t"));  // another "a" lower down
    EXPECT_FALSE(PathLiesUnder("OU=t", "OU=a,OU=t"));
    EXPECT_FALSE(PathLiesUnder("OU=t", ""));
}

TEST(OUImitateLedger, RenamedPathsAreFoundAndFollowedThroughAChain) {
    ResetLedgers(ObjectKind::OU, 4);
    Rename(3, "OU=b,OU=t", "OU=a,OU=t");
    Rename(5, "OU=c,OU=t", "OU=b,OU=t");
    EXPECT_EQ(FindRenamedPath("OU=k,OU=a,OU=t", RenameLedger, 2), 0);
    EXPECT_TRUE(IsPathRenamed("OU=B,OU=T", RenameLedger, 2));
    EXPECT_FALSE(IsPathRenamed("OU=c,OU=t", RenameLedger, 2));

    bool changed = false;
    EXPECT_EQ(PathAfterRenames("OU=k,OU=a,OU=t", &changed), "OU=k,OU=c,OU=t");
    EXPECT_TRUE(changed);
    EXPECT_EQ(PathBeforeRenames("OU=k,OU=c,OU=t", &changed), "OU=k,OU=a,OU=t");
    EXPECT_TRUE(changed);
    EXPECT_EQ(PathAfterRenames("OU=z,OU=t", &changed), "OU=z,OU=t");
    EXPECT_FALSE(changed);
}

}  // namespace
}  // namespace orin
