#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "directory/DirectorySession.h"
#include "directory/Paths.h"

using namespace orin;

TEST(BuildOUPath, RunsBottomUpSkippingEmptyCellsAndClampingTheEnd) {
    // Columns: RDN, OU-Start, (unnamed), OU-End.
    const std::vector<std::string> row = {"x", " a ", "", "b"};
    EXPECT_EQ(BuildOUPath(row, 1, 3), "OU=b,OU=a");
    EXPECT_EQ(BuildOUPath({"x", "top", "mid", "low"}, 1, 3), "OU=low,OU=mid,OU=top");
    // A short row: OU-End beyond the last cell is clamped.
    EXPECT_EQ(BuildOUPath({"x", "a", "b"}, 1, 9), "OU=b,OU=a");
    // Asking whether anything below the first level is filled.
    EXPECT_EQ(BuildOUPath({"x", "Users", "", ""}, 2, 3), "");
    EXPECT_EQ(BuildOUPath({"x", "Users", "", "sub"}, 2, 3), "OU=sub");
    // Values are neither escaped nor upper-cased; only half-width blanks are trimmed.
    EXPECT_EQ(BuildOUPath({"営業部 ", "a=b", "\tx"}, 0, 2), "OU=\tx,OU=a=b,OU=営業部");
}

TEST(BuildOUPath, GivesEmptyForNoCellsOrColumnsOutsideTheRow) {
    EXPECT_EQ(BuildOUPath({"x", " ", "", "  "}, 1, 3), "");
    EXPECT_EQ(BuildOUPath({"x", "a"}, 2, 5), "");  // first beyond the row
    EXPECT_EQ(BuildOUPath({}, 0, 0), "");
    EXPECT_EQ(BuildOUPath({"x", "a"}, -1, 1), "");  // header absent
    EXPECT_EQ(BuildOUPath({"x", "a"}, 1, -1), "");
    EXPECT_EQ(BuildOUPath({"x", "a", "b"}, 2, 1), "");
    EXPECT_EQ(BuildOUPath({"a"}, 0, 0), "OU=a");
}

TEST(OUPathParts, FirstNameAndParentTakeAPathApart) {
    EXPECT_EQ(FirstOUName("OU=c,OU=b,OU=a"), "c");
    EXPECT_EQ(FirstOUName("OU=solo"), "solo");
    EXPECT_EQ(FirstOUName("CN=Users"), "");
    EXPECT_EQ(FirstOUName(""), "");
    EXPECT_EQ(FirstOUName("CN=x,OU=y"), "");  // the first comma comes before the term
    EXPECT_EQ(ParentOUPath("OU=c,OU=b,OU=a"), "OU=b,OU=a");
    EXPECT_EQ(ParentOUPath("OU=a"), "");
    EXPECT_EQ(ParentOUPath("CN=u,OU=a,DC=x,DC=y"), "OU=a,DC=x,DC=y");
    EXPECT_EQ(ParentOUPath("OU=a,"), "");
}

TEST(UpnPrefix, TheTwoVariantsDifferOnlyWithoutAnAt) {
    EXPECT_EQ(UpnPrefix("taro@example.test"), "taro");
    EXPECT_EQ(UpnPrefixOrWhole("taro@example.test"), "taro");
    EXPECT_EQ(UpnPrefix("a@b@c"), "a");
    EXPECT_EQ(UpnPrefix("@example.test"), "");
    EXPECT_EQ(UpnPrefix("taro"), "");
    EXPECT_EQ(UpnPrefixOrWhole("taro"), "taro");
    EXPECT_EQ(UpnPrefixOrWhole(""), "");
}

TEST(PathKind, LeftmostTermDecidesInTheOrderDcCnOu) {
    EXPECT_EQ(PathKind("LDAP://DC=x,DC=y"), ContainerKind::Domain);
    EXPECT_EQ(PathKind("LDAP://CN=Users,DC=x,DC=y"), ContainerKind::DefaultContainer);
    EXPECT_EQ(PathKind("LDAP://OU=a,DC=x,DC=y"), ContainerKind::OU);
    EXPECT_EQ(PathKind("LDAP://dc1.x.y/cn=Computers,DC=x,DC=y"), ContainerKind::DefaultContainer);
    EXPECT_EQ(PathKind("LDAP://dc1/ou=a,DC=x"), ContainerKind::OU);
    // An OU below a container is still classified by the container.
    EXPECT_EQ(PathKind("LDAP://CN=Users,OU=a,DC=x"), ContainerKind::DefaultContainer);
    EXPECT_EQ(PathKind("OU=a,DC=x"), ContainerKind::Domain);  // no slash: no term found
    EXPECT_EQ(PathKind(""), ContainerKind::Domain);
}

TEST(OUFieldsFromPath, GivesTheOUNamesTopFirst) {
    EXPECT_EQ(OUFieldsFromPath("LDAP://OU=c,OU=b,OU=a,DC=x,DC=y"), "a,b,c");
    EXPECT_EQ(OUFieldsFromPath("LDAP://dc1/OU=c,DC=x,DC=y"), "c");
    EXPECT_EQ(OUFieldsFromPath("LDAP://dc1.x.y/OU=b,OU=a,DC=x"), "a,b");
    // Objects at domain level and in default containers give no cells.
    EXPECT_EQ(OUFieldsFromPath("LDAP://DC=x,DC=y"), "");
    EXPECT_EQ(OUFieldsFromPath("ldap://dc=x,dc=y"), "");
    EXPECT_EQ(OUFieldsFromPath("LDAP://dc1/dc=x,DC=y"), "");
    EXPECT_EQ(OUFieldsFromPath("LDAP://CN=Users,DC=x,DC=y"), "");
    // A CN term among OUs is left out.
    EXPECT_EQ(OUFieldsFromPath("LDAP://CN=u,OU=b,OU=a,DC=x"), "a,b");
    // A "/" inside a name does not end the value; only commas do.
    EXPECT_EQ(OUFieldsFromPath("LDAP://OU=a/b,DC=x"), "a/b");
    // The first term of a bare name has neither "," nor "/" before it.
    EXPECT_EQ(OUFieldsFromPath("OU=c,OU=b,DC=x"), "b");
    EXPECT_EQ(OUFieldsFromPath(""), "");
}

TEST(CanonicalPath, TurnsTheNameTopFirstBehindTheDnsName) {
    EXPECT_EQ(CanonicalPath("CN=a/b,OU=c,DC=x,DC=y", "X.Y"), "x.y/c/a\\/b");
    EXPECT_EQ(CanonicalPath("CN=u,OU=b,OU=a,DC=example,DC=test", "example.test"),
              "example.test/a/b/u");
    EXPECT_EQ(CanonicalPath("CN=u,DC=x", "x"), "x/u");
    EXPECT_EQ(CanonicalPath("CN=Users,DC=x,DC=y", "x.y"), "x.y/Users");
    // The domain itself; a name without a comma; no DC term at all.
    EXPECT_EQ(CanonicalPath("DC=x,DC=y", "x.y"), "x.y/");
    EXPECT_EQ(CanonicalPath("CN=alone", "x.y"), "");
    EXPECT_EQ(CanonicalPath("CN=a,OU=b", "x.y"), "b/a");

    gSession.DomainDNSName = "Corp.Example";
    EXPECT_EQ(CanonicalPath("CN=m,OU=Sales,DC=corp,DC=example"), "corp.example/Sales/m");
    gSession.DomainDNSName.clear();
}

TEST(CountOULevels, CountsOUTermsBehindACommaOrSlash) {
    EXPECT_EQ(CountOULevels("LDAP://OU=c,OU=b,OU=a,DC=x,DC=y"), 3);
    EXPECT_EQ(CountOULevels("LDAP://dc1/OU=a,DC=x"), 1);
    EXPECT_EQ(CountOULevels("LDAP://CN=u,OU=a,DC=x"), 1);
    EXPECT_EQ(CountOULevels("LDAP://CN=Users,DC=x"), 0);
    EXPECT_EQ(CountOULevels("OU=b,OU=a"), 1);  // the leading term stands behind nothing
    EXPECT_EQ(CountOULevels(""), 0);
}

TEST(RelativeContainerPath, TakesTheTextBetweenTheServerAndTheDomain) {
    EXPECT_EQ(RelativeContainerPath("LDAP://OU=b,OU=a,DC=x,DC=y"), "OU=b,OU=a");
    EXPECT_EQ(RelativeContainerPath("LDAP://dc1/OU=b,OU=a,DC=x,DC=y"), "OU=b,OU=a");
    EXPECT_EQ(RelativeContainerPath("LDAP://dc1.x.y/CN=Users,DC=x"), "CN=Users");
    EXPECT_EQ(RelativeContainerPath("LDAP://DC=x,DC=y"), "");
    EXPECT_EQ(RelativeContainerPath("LDAP://dc1/DC=x,DC=y"), "");
    EXPECT_EQ(RelativeContainerPath("LDAP://OU=a"), "");  // no domain part
    EXPECT_EQ(RelativeContainerPath("LDAP:/"), "");
}

TEST(StripServer, GivesTheDistinguishedNameWithOrWithoutServer) {
    EXPECT_EQ(StripServer("LDAP://OU=a,DC=x"), "OU=a,DC=x");
    EXPECT_EQ(StripServer("LDAP://dc1.x.y/CN=u,OU=a,DC=x"), "CN=u,OU=a,DC=x");
    EXPECT_EQ(StripServer("LDAP://dc1/DC=x"), "DC=x");
    EXPECT_EQ(StripServer("LDAP://"), "");
    EXPECT_EQ(StripServer("LDAP:"), "");
}

TEST(BuildDomainDN, ClosesALabelAtEachDotAndAtTheLastCharacter) {
    EXPECT_EQ(BuildDomainDN("a.b.c"), "DC=a,DC=b,DC=c");
    EXPECT_EQ(BuildDomainDN("example.test"), "DC=example,DC=test");
    EXPECT_EQ(BuildDomainDN("a"), "DC=a");
    EXPECT_EQ(BuildDomainDN("a.b."), "DC=a,DC=b.");
    EXPECT_EQ(BuildDomainDN(""), "");
    EXPECT_EQ(BuildDomainDN("."), "DC=.");
    EXPECT_EQ(BuildDomainDN("a..b"), "DC=a,DC=,DC=b");
}
