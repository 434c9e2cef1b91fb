// One CSV file in the three modes, in the order an operator uses them: the imitation passes and
// leaves the directory alone, the production run makes the changes, and the compare then finds
// the directory as the file describes it. Covers what production writes and compare reads back:
// "<Rtn>", managers, inheritance blocks, default ACL removal, ACE halves, "!C" and a rename at
// the end of a chain.

#include "engines/ou/OUProduction.h"
#include "ou_imitate_compare_support.h"

namespace orin::test {
namespace {

class OUCompareAfterProduction : public OUModesTest {
  protected:
    void SetUp() override {
        OUModesTest::SetUp();
        RegisterOUProductionEngines();
    }

    // Imitation, production and compare of one operation (RowOperation 0..3).
    void RunThreeModes(RowOperation op, const std::vector<std::string>& lines, int objects) {
        SCOPED_TRACE("RowOperation " + std::to_string(op));
        EXPECT_EQ(Run(op + 4, lines), "");
        EXPECT_EQ(gRun.lngSuccessCnt, objects);
        EXPECT_EQ(Run(op, lines), "");
        EXPECT_EQ(gRun.lngSuccessCnt, objects);
        EXPECT_EQ(Run(op + 8, lines), "");
        EXPECT_EQ(gRun.lngMatchCnt, objects);
    }
};

TEST_F(OUCompareAfterProduction, AddThenModify) {
    MakeUser("", "boss");
    MakeUser("", "boss2");
    MakeUser("", "aceA");
    MakeUser("", "aceB");
    const std::string a = Sam("aceA");
    const std::string b = Sam("aceB");

    RunThreeModes(0,
                  {"!OU-Start,,OU-End,c,postalCode,st,l,street,description,MgrOU-Start,,"
                   "MgrOU-End,MgrRDN,Mirror,RemDefaultACL,DoNotRemTheseACE,InheritParentACL,"
                   "AceSamAccountName,AceOpeMode,AccessRight,PermitOrDeny,InheritOption",
                   "{T},p,,JP,100-0001,東京都,港区,1<Rtn>2,desc,{T},,,boss,,,,1," + a + ",0,0,,",
                   "{T},p,,,,,,,,,,,,yes,,,," + b + ",0,1;5,D,1",
                   "{T},p,q,,,,,,child,,,,,,yes,Domain Admins,2,,,,,"},
                  2);
    EXPECT_TRUE(Exists("p,q"));

    RunThreeModes(3,
                  {"!OU-Start,,OU-End,Mirror,NewRDN,c,st,description,MgrOU-Start,,MgrOU-End,"
                   "MgrRDN,InheritParentACL,AceSamAccountName,AceOpeMode,AccessRight,"
                   "PermitOrDeny,InheritOption",
                   "{T},p,,,p2,!C,大阪府,,,,,!C,0," + b + ",1,,,",
                   "{T},p,,yes,,,,,,,,,," + a + ",2,14,,0", "{T},p2,q,,,,,!c,{T},,,boss2,,,,,,"},
                  2);
    EXPECT_TRUE(Exists("p2,q"));
    EXPECT_FALSE(Exists("p"));
}

}  // namespace
}  // namespace orin::test
