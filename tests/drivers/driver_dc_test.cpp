// The run chain against the test DC: the driver's own login and connection, asked again after a
// refused password, and whole runs through the real OU engines and the OU export.

#include <gtest/gtest.h>

#include "base/RunContext.h"
#include "csv/CsvReader.h"
#include "directory/Bind.h"
#include "directory/DirectorySession.h"
#include "run/Drivers.h"
#include "run/ProgressWindow.h"
#include "run/RegisterEngines.h"
#include "run/RunTestSupport.h"
#include "support/TestDc.h"

namespace orin {
namespace {

using test::ConnectMethod;
using K = ObjectKind;
using O = OperationKind;
using M = RunMode;

class DriverDcTest : public test::DcTest {
  protected:
    void SetUp() override {
        test::DcTest::SetUp();
        test::ResetRun(folder.path());
        RegisterAllEngines();
        SetProgressStartWait(0);
        op.defaultAnswer = MsgAnswer::Yes;
        op.domainFields = {test::TestDc().dnsDomain, test::TestDc().netbiosDomain};
        name = ou().Rdn().substr(3);
    }
    void TearDown() override {
        SetProgressStartWait(1.0);
        if (!gSession.Connected) {
            EXPECT_TRUE(test::ConnectTestDc(ConnectMethod::Remote));
        }
        test::DcTest::TearDown();
    }

    // An OU CSV file whose rows name OUs below the test's OU.
    std::string Csv(const std::string& file, const std::vector<std::string>& rows) {
        std::vector<std::string> lines = {"!OU-Start,,OU-End,Mirror,description"};
        for (const std::string& row : rows) lines.push_back(name + "," + row);
        const std::string path = (folder / file).string();
        test::WriteCsv(path, lines);
        return path;
    }
    bool Exists(const std::string& rdnPath) {
        DirObject object;
        return BindObject("LDAP://" + rdnPath + "," + ou().Dn(), object);
    }

    test::ScratchFolder folder;
    std::string name;  // the test OU's name, the first cell of every OU path
};

TEST_F(DriverDcTest, ARefusedPasswordIsToldAndTheLoginAskedAgain) {
    const std::string refused =
        "ﾘﾓｰﾄｺﾝﾋﾟｭｰﾀに対するﾄﾞﾒｲﾝ接続認証が失敗しました！\r完全なDNS名のﾄﾞﾒｲﾝ認証が失敗。";
    const std::string csv = Csv("imitate.csv", {"a,,,", "a,b,,"});
    gSession.NeverShowAgain = false;  // the login comes up although connected
    bool cancel = true;               // the second login: cancelled, or with the password
    op.onLogin = [&] {
        test::PrepareSession(ConnectMethod::Remote);
        if (op.logins % 2 == 1) gSession.Password = "not-the-password";
        if (op.logins % 2 == 0 && cancel) gSession.LoginCancelled = true;
    };
    EXPECT_EQ(RunFromButton(K::OU, O::Mdf, M::Compare, csv), DriverEnd::NoConnection);
    EXPECT_EQ(op.logins, 2);
    EXPECT_EQ(op.connectWaits, 1);
    ASSERT_EQ(op.boxes.size(), 1u);
    EXPECT_EQ(op.boxes[0].title, "ﾄﾞﾒｲﾝ接続");
    EXPECT_EQ(op.boxes[0].text, refused);
    EXPECT_EQ(op.boxes[0].icon, MsgIcon::Critical);
    EXPECT_FALSE(gSession.Connected);
    EXPECT_FALSE(std::filesystem::exists(gRun.strEventLogPath));

    cancel = false;
    EXPECT_EQ(RunFromButton(K::OU, O::Add, M::Imitate, csv), DriverEnd::Completed);
    EXPECT_EQ(op.logins, 4);
    EXPECT_EQ(op.connectWaits, 3);
    EXPECT_EQ(op.boxes[1].text, refused);
    EXPECT_TRUE(gSession.Connected);
    EXPECT_FALSE(gSession.ConnectPending);
    // The imitation finds the parent it would have made on the row above, and makes nothing.
    EXPECT_EQ(gRun.lngSuccessCnt, 2);
    EXPECT_FALSE(Exists("OU=a"));
}

TEST_F(DriverDcTest, ProductionAddThenExportThenCompareOfTheExport) {
    gSession.NeverShowAgain = true;  // connected by the fixture: no login
    ASSERT_EQ(
        RunFromButton(K::OU, O::Add, M::Production, Csv("add.csv", {"p,,,first", "p,q,,second"})),
        DriverEnd::Completed)
        << op.boxes.back().text;
    EXPECT_EQ(op.logins, 0);
    EXPECT_EQ(gRun.lngSuccessCnt, 2);
    EXPECT_TRUE(Exists("OU=q,OU=p"));

    // The whole domain goes out; other tests' OUs come and go meanwhile, so only this test's
    // rows are checked, and only they are compared again.
    const std::string out = (folder / "export.csv").string();
    ASSERT_EQ(RunFromButton(K::OU, O::Exp, M::Production, out), DriverEnd::Completed);
    EXPECT_EQ(op.collectWaits, 1);
    const std::vector<std::string> lines = test::ReadLines(out);
    ASSERT_GE(lines.size(), 2u);
    std::vector<std::string> mine = {lines[0], lines[1]};
    for (const std::string& line : lines)
        if (line.starts_with(name + ",")) mine.push_back(line);
    ASSERT_EQ(mine.size(), 5u) << ::testing::PrintToString(mine);
    EXPECT_NE(mine[4].find(",second,"), std::string::npos);
    EXPECT_EQ(test::ReadLines(gRun.strEventLogPath).back(), std::string(50, '-'));

    const std::string again = (folder / "mine.csv").string();
    test::WriteCsv(again, mine);
    ASSERT_EQ(RunFromButton(K::OU, O::Exp, M::Compare, again), DriverEnd::Completed);
    EXPECT_EQ(gRun.lngMatchCnt, 3);
    EXPECT_EQ(gRun.lngDiffCnt + gRun.lngFailureCnt, 0);
}

}  // namespace
}  // namespace orin
