// A run from the main window against the test domain controller, as the operator makes it: the
// login dialog, the connection's wait window, the start question, the progress window and the
// closing box, with the real OU imitation engines.

#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>

#include "GuiTestSupport.h"
#include "directory/Bind.h"
#include "platform/TextFile.h"
#include "run/ProgressWindow.h"
#include "run/RegisterEngines.h"
#include "shell/QtOperator.h"
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
    bool waitHiddenForTheBox = false;
    ModalPlayer player;
    player.onModal = [&](QWidget* modal) {
        if (auto* login = qobject_cast<shell::frmLogin*>(modal)) {
            if (!login->isActiveWindow()) return false;
            return Click(login, ++logins == 1 ? "cmdOK" : "cmdCancel");
        }
        if (auto* box = qobject_cast<QMessageBox*>(modal)) {
            if (box->text().contains(U("開始"))) return Click(box, "btnYes");
            waitHiddenForTheBox = screen.waitWindow() && !screen.waitWindow()->isVisible();
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
    EXPECT_FALSE(gSession.Connected);
    EXPECT_TRUE(gSession.LoginCancelled);
    EXPECT_FALSE(std::filesystem::exists(home / "Event.log"));
}

}  // namespace
}  // namespace orin::test
