// The run chain against the test DC: the driver's own login and connection, with a retry after
// a refused password, and whole runs through the real OU engines and the OU export.

#include <gtest/gtest.h>

#include "csv/CsvReader.h"
#include "directory/Bind.h"
#include "directory/DirectorySession.h"
#include "engines/RegisterEngines.h"
#include "platform/TextFile.h"
#include "run/Drivers.h"
#include "run/ProgressWindow.h"
#include "run/RunContext.h"
#include "run/RunTestSupport.h"
#include "support/TestDc.h"

namespace orin {
namespace {

using test::ConnectMethod;

const std::string kFailedRemote =
    "ﾘﾓｰﾄｺﾝﾋﾟｭｰﾀに対するﾄﾞﾒｲﾝ接続認証が失敗しました！\r完全なDNS名のﾄﾞﾒｲﾝ認証が失敗。";

std::vector<std::string> Summary(const std::vector<std::string>& log) {
    for (size_t i = log.size(); i-- > 0;)
        if (log[i].starts_with("ｵﾌﾞｼﾞｪｸﾄ総数： ")) return {log.begin() + long(i), log.end()};
    return {};
}

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
            ASSERT_TRUE(test::ConnectTestDc(ConnectMethod::Remote));
        }
        test::DcTest::TearDown();
    }

    bool Exists(const std::string& rdnPath) {
        DirObject object;
        return BindObject("LDAP://" + rdnPath + "," + gSession.DomainDN, object);
    }

    test::ScratchFolder folder;
    std::string name;  // the test OU's name, the first cell of every OU path below
};

TEST_F(DriverDcTest, LogsInAgainAfterARefusedPasswordAndRuns) {
    gSession.NeverShowAgain = false;
    op.onLogin = [this] {
        test::PrepareSession(ConnectMethod::Remote);
        if (op.logins == 1) gSession.Password = "not-the-password";
    };
    const std::string csv = (folder / "imitate.csv").string();
    test::WriteCsv(csv, {"!OU-Start,,OU-End,Mirror,description", name + ",a,,,", name + ",a,b,,"});
    EXPECT_EQ(RunFromButton(ObjectKind::OU, OperationKind::Add, RunMode::Imitate, csv),
              DriverEnd::Completed);
    EXPECT_EQ(op.logins, 2);
    EXPECT_EQ(op.connectWaits, 2);
    ASSERT_GE(op.boxes.size(), 2u);
    EXPECT_EQ(op.boxes[0].title, "ﾄﾞﾒｲﾝ接続");
    EXPECT_EQ(op.boxes[0].text, kFailedRemote);
    EXPECT_TRUE(gSession.Connected);
    EXPECT_FALSE(gSession.ConnectPending);

    // The imitation finds the parent it would have made on the row above, and makes nothing.
    EXPECT_EQ(gRun.lngSuccessCnt, 2);
    EXPECT_EQ(gRun.lngFailureCnt, 0);
    EXPECT_FALSE(Exists("OU=a," + ou().Rdn()));
}

TEST_F(DriverDcTest, ProductionAddThenExportThenCompareOfTheExport) {
    const std::string add = (folder / "add.csv").string();
    test::WriteCsv(
        add, {"!OU-Start,,OU-End,Mirror,description", name + ",p,,,first", name + ",p,q,,second"});
    gSession.NeverShowAgain = true;  // connected by the fixture: no login
    ASSERT_EQ(RunFromButton(ObjectKind::OU, OperationKind::Add, RunMode::Production, add),
              DriverEnd::Completed)
        << op.boxes.back().text;
    EXPECT_EQ(op.logins, 0);
    EXPECT_EQ(gRun.lngSuccessCnt, 2);
    EXPECT_TRUE(Exists("OU=q,OU=p," + ou().Rdn()));

    // The whole domain goes out; other tests' OUs come and go meanwhile, so only this test's
    // rows are checked, and only they are compared again.
    const std::string out = (folder / "export.csv").string();
    ASSERT_EQ(RunFromButton(ObjectKind::OU, OperationKind::Exp, RunMode::Production, out),
              DriverEnd::Completed);
    EXPECT_EQ(op.collectWaits, 1);
    std::vector<std::string> lines;
    ASSERT_TRUE(platform::ReadAllLines(out, lines));
    ASSERT_GE(lines.size(), 2u);
    std::vector<std::string> mine = {lines[0], lines[1]};
    for (const std::string& line : lines)
        if (line.starts_with(name + ",")) mine.push_back(line);
    ASSERT_EQ(mine.size(), 5u) << ::testing::PrintToString(mine);
    EXPECT_NE(mine[4].find(",second,"), std::string::npos);
    EXPECT_EQ(Summary(test::ReadLines(gRun.strEventLogPath)).back(), std::string(50, '-'));

    const std::string again = (folder / "mine.csv").string();
    test::WriteCsv(again, mine);
    ASSERT_EQ(RunFromButton(ObjectKind::OU, OperationKind::Exp, RunMode::Compare, again),
              DriverEnd::Completed);
    EXPECT_EQ(gRun.lngMatchCnt, 3);
    EXPECT_EQ(gRun.lngDiffCnt, 0);
    EXPECT_EQ(gRun.lngFailureCnt, 0);
}

TEST(DriverConnectDcTest, CancellingTheRetryStopsTheRun) {
    test::ScratchFolder folder;
    test::ResetRun(folder.path());
    test::ScriptedOperator op;
    RegisterAllEngines();
    gSession.Connected = false;
    op.domainFields = {"orin.test", "ORIN"};
    op.onLogin = [&] {
        if (op.logins == 1) {
            test::PrepareSession(ConnectMethod::Remote);
            gSession.Password = "not-the-password";
        } else {
            gSession.LoginCancelled = true;
            gSession.Connected = false;
        }
    };
    const std::string csv = (folder / "x.csv").string();
    test::WriteCsv(csv, {"!OU-Start,OU-End,Mirror", "a,,"});
    EXPECT_EQ(RunFromButton(ObjectKind::OU, OperationKind::Mdf, RunMode::Compare, csv),
              DriverEnd::NoConnection);
    EXPECT_EQ(op.logins, 2);
    EXPECT_EQ(op.connectWaits, 1);
    ASSERT_EQ(op.boxes.size(), 1u);
    EXPECT_EQ(op.boxes[0].text, kFailedRemote);
    EXPECT_EQ(op.boxes[0].icon, MsgIcon::Critical);
    EXPECT_FALSE(gSession.Connected);
    EXPECT_FALSE(std::filesystem::exists(gRun.strEventLogPath));
}

}  // namespace
}  // namespace orin
