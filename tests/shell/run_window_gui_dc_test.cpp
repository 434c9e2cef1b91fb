// A run from the main window against the test domain controller, as the operator makes it: the
// login dialog, the connection's wait window, the start question, the progress window and the
// closing box, with the real OU imitation engines.

#include <signal.h>
#include <unistd.h>

#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>

#include "GuiTestSupport.h"
#include "directory/Bind.h"
#include "platform/LdapConnection.h"
#include "platform/TextFile.h"
#include "run/ProgressWindow.h"
#include "run/RegisterEngines.h"
#include "shell/QtOperator.h"
#include "shell/SessionEnd.h"
#include "shell/frmLogin.h"
#include "shell/frmProgress.h"
#include "shell/frmTop.h"
#include "shell/frmWait.h"
#include "support/TestDc.h"

namespace orin::test {
namespace {

class DcRunWindowTest : public ::testing::Test {
  protected:
    void SetUp() override {
        RegisterAllEngines();
        SetProgressStartWait(0.1);
        window.Load();
        window.show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
        // An OU of the test's own; then the session is left unconnected, filled in with the
        // DC's names and password as if typed earlier, so that the run asks for the login:
        // "never show again" only keeps a connection that stands.
        ASSERT_TRUE(ConnectTestDc(ConnectMethod::Remote));
        ou.emplace();
        ASSERT_TRUE(ou->ok());
        gSession.Connected = false;
        gSession.NeverShowAgain = true;

        const auto& page = window.page(OperationKind::Add);
        page.txtDomainDNS->setText(U(TestDc().dnsDomain.c_str()));
        page.txtDomainNetBIOS->setText(U(TestDc().netbiosDomain.c_str()));
        page.txtFilePath->setText(U(csv.c_str()));
        const std::string top = ou->Rdn().substr(3);
        const std::vector<std::string> lines = {
            "!OU-Start,,OU-End,Mirror,description", top + ",child,,,imitated",
            top + ",child,grandchild,,", top + ",missing,below,,"};
        platform::WriteLines(csv, lines);
    }
    void TearDown() override {
        SetProgressStartWait(1.0);
        // The scoped OU is removed over a connection: a refused login left none.
        if (!gSession.Connected || !gSession.Connection) {
            EXPECT_TRUE(ConnectTestDc(ConnectMethod::Remote));
        }
        ou.reset();
    }
    bool Exists(const std::string& rdnPath) {
        DirObject object;
        return BindObject("LDAP://" + rdnPath + "," + ou->Dn(), object);
    }

    ScratchHome home;
    shell::frmTop window;
    shell::QtOperator screen{&window};
    std::optional<ScopedOu> ou;
    std::string csv = (home / "ou.csv").string();
};

TEST_F(DcRunWindowTest, ImitationFromTheWindowLogsInConnectsAndChangesNothing) {
    QString loginCaption, loginDc, waitTitle, status, success, failures;
    bool remoteChecked = false;
    ModalPlayer player;
    player.onModal = [&](QWidget* modal) {
        if (auto* login = qobject_cast<shell::frmLogin*>(modal)) {
            if (!login->isActiveWindow()) return false;
            loginCaption = Find<QPushButton>(login, "cmdOK")->text();
            loginDc = Find<QLineEdit>(login, "txtDCName")->text();
            remoteChecked = Find<QRadioButton>(login, "optConnectMethod(1)")->isChecked();
            return Click(login, "cmdOK");
        }
        if (auto* wait = qobject_cast<shell::frmWait*>(modal)) {
            waitTitle = wait->windowTitle();
            return true;
        }
        if (auto* box = qobject_cast<QMessageBox*>(modal)) {
            // Yes to the start question, No to the closing box's offer of the log.
            return Click(box, box->text().contains(U("開始")) ? "btnYes" : "btnNo");
        }
        auto* progress = qobject_cast<shell::frmProgress*>(modal);
        if (!progress || progress->runWorking()) return false;
        status = Find<QLabel>(progress, "Label1")->text();
        success = Find<QLabel>(progress, "Label6")->text();
        failures = Find<QLabel>(progress, "Label7")->text();
        return Click(progress, "Command1");
    };
    QTest::mouseClick(window.page(OperationKind::Add).btnImitate, Qt::LeftButton);

    EXPECT_EQ(loginCaption, U("接続"));
    EXPECT_EQ(loginDc, U(TestDc().fqdn.c_str()));
    EXPECT_TRUE(remoteChecked);
    EXPECT_EQ(waitTitle, U("ﾄﾞﾒｲﾝに接続中"));
    EXPECT_TRUE(gSession.Connected);
    EXPECT_EQ(status, U("組織単位の模擬追加処理が完了しました。"));
    EXPECT_EQ(success, U("2"));
    EXPECT_EQ(failures, U("1"));
    EXPECT_EQ(player.boxes.size(), 2u);  // the start question and the closing box
    EXPECT_NE(FileText(home / "Event.log").find("4行, 失敗, "), std::string::npos);
    // An imitation changes nothing in the directory.
    EXPECT_FALSE(Exists("OU=child"));
}

TEST_F(DcRunWindowTest, RefusedLoginIsToldAndAskedAgainUntilCancelled) {
    gSession.Password = "not-the-password";
    int logins = 0;
    bool waitHiddenForTheBox = false, detailButton = false;
    ModalPlayer player;
    player.onModal = [&](QWidget* modal) {
        if (auto* login = qobject_cast<shell::frmLogin*>(modal)) {
            if (!login->isActiveWindow()) return false;
            return Click(login, ++logins == 1 ? "cmdOK" : "cmdCancel");
        }
        if (auto* box = qobject_cast<QMessageBox*>(modal)) {
            if (box->text().contains(U("開始"))) return Click(box, "btnYes");
            waitHiddenForTheBox = screen.waitWindow() && !screen.waitWindow()->isVisible();
            for (const QPushButton* button : box->findChildren<QPushButton*>())
                detailButton = detailButton || button->text() == U("詳細(&D)");
            return Click(box, "btnOK");
        }
        return qobject_cast<shell::frmWait*>(modal) != nullptr;
    };
    QTest::mouseClick(window.page(OperationKind::Add).btnImitate, Qt::LeftButton);

    EXPECT_EQ(logins, 2);
    EXPECT_TRUE(waitHiddenForTheBox);
    ASSERT_EQ(player.boxes.size(), 1u);
    EXPECT_EQ(player.boxes[0].title, U("ﾄﾞﾒｲﾝ接続"));
    EXPECT_EQ(player.boxes[0].text, U("ﾘﾓｰﾄｺﾝﾋﾟｭｰﾀに対するﾄﾞﾒｲﾝ接続認証が失敗しました！\n"
                                      "完全なDNS名のﾄﾞﾒｲﾝ認証が失敗。"));
    // The server's own words wait under "詳細".
    EXPECT_TRUE(player.boxes[0].detail.startsWith(
        U("bind as Administrator@orin.test: result 49 Invalid credentials: ")))
        << player.boxes[0].detail.toStdString();
    EXPECT_TRUE(detailButton);
    EXPECT_FALSE(gSession.Connected);
    EXPECT_TRUE(gSession.LoginCancelled);
    EXPECT_FALSE(std::filesystem::exists(home / "Event.log"));
}

// SIGTERM in the middle of a production run: the run stops as its Cancel stops it, the OU in
// work is taken back, the summary is written, and the window closes as the operator's close
// does, keeping the settings in Orin.ini.
TEST_F(DcRunWindowTest, ASignalEndsTheRunWithItsSummaryAndThenTheProgram) {
    const std::string top = ou->Rdn().substr(3);
    std::vector<std::string> lines = {"!OU-Start,,,OU-End,Mirror"};
    for (int i = 0; i < 100; ++i) {
        const std::string object = top + ",w" + std::to_string(i) + ",,,";
        lines.push_back(object);
        for (int k = 0; k < 4; ++k) lines.push_back(object + "YES");
    }
    platform::WriteLines(csv, lines);
    shell::SessionEnd ending(window, screen);
    bool signalled = false;
    ModalPlayer player;
    player.onModal = [&](QWidget* modal) {
        if (auto* login = qobject_cast<shell::frmLogin*>(modal))
            return login->isActiveWindow() && Click(login, "cmdOK");
        if (auto* box = qobject_cast<QMessageBox*>(modal)) return Click(box, "btnYes");
        auto* progress = qobject_cast<shell::frmProgress*>(modal);
        if (progress && !signalled && Find<QLabel>(progress, "Label6")->text().toInt() >= 2) {
            signalled = true;
            kill(getpid(), SIGTERM);
        }
        return false;
    };
    QTest::mouseClick(window.page(OperationKind::Add).btnApply, Qt::LeftButton);
    QTRY_VERIFY_WITH_TIMEOUT(!window.isVisible(), 30000);

    ASSERT_TRUE(signalled);
    EXPECT_EQ(player.boxes.size(), 1u);  // the start question only
    const std::string log = FileText(home / "Event.log");
    EXPECT_NE(log.find("ｷｬﾝｾﾙによる中断の有無： 有\nｷｬﾝｾﾙ時の処理済最終行： "), std::string::npos);
    const size_t at = log.find("処理成功数： ");
    ASSERT_NE(at, std::string::npos);
    const int done = std::stoi(log.substr(at + std::string("処理成功数： ").size()));
    std::vector<platform::LdapEntry> made;
    ASSERT_TRUE(gSession.Connection
                    ->Search(ou->Dn(), platform::LdapScope::OneLevel,
                             "(objectClass=organizationalUnit)", {"ou"}, made)
                    .ok());
    EXPECT_EQ(static_cast<int>(made.size()), done);
    EXPECT_LT(done, 100);
    EXPECT_NE(FileText(home / "Orin.ini").find("DcComputerName=" + TestDc().fqdn),
              std::string::npos);
}

}  // namespace
}  // namespace orin::test
