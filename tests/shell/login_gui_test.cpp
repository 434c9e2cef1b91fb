// frmLogin: what it shows from the session, the method switch, the order of its checks, and
// what OK and Cancel leave in the session.

#include <QCheckBox>
#include <QLineEdit>
#include <QRadioButton>

#include "GuiTestSupport.h"
#include "shell/frmLogin.h"
#include "shell/frmTop.h"
#include "support/ScriptedOperator.h"

namespace orin::test {
namespace {

using shell::frmLogin;

class LoginTest : public ::testing::Test {
  protected:
    // Loads and shows the dialog from the session as the test left it.
    void Open() {
        dialog = std::make_unique<frmLogin>(nullptr);
        dialog->show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(dialog.get()));
    }
    QLineEdit* Box(const char* name) { return Find<QLineEdit>(dialog.get(), name); }
    QRadioButton* Radio(int index) {
        return Find<QRadioButton>(dialog.get(),
                                  index == 0 ? "optConnectMethod(0)" : "optConnectMethod(1)");
    }
    void PressOK() { QTest::mouseClick(Find<QPushButton>(dialog.get(), "cmdOK"), Qt::LeftButton); }
    std::vector<std::string> BoxTexts() const {
        std::vector<std::string> texts;
        for (const auto& box : op.boxes) texts.push_back(box.text);
        return texts;
    }

    ScratchHome home;
    ScriptedOperator op;
    std::unique_ptr<frmLogin> dialog;
};

TEST_F(LoginTest, MethodLocalInAnyCaseDisablesTheRemoteFieldsAndNeedsNoServerNorUser) {
    const std::vector<std::pair<const char*, bool>> methods = {
        {"local", true},   {"Local", true}, {"LOCAL", true},
        {"remote", false}, {"", false},     {"kerberos", false}};
    for (const auto& [method, local] : methods) {
        gSession.Method = method;
        Open();
        EXPECT_TRUE(Radio(local ? 0 : 1)->isChecked()) << method;
        for (const char* name : {"txtDCName", "txtUserName", "txtPassword"})
            EXPECT_EQ(Box(name)->isEnabled(), !local) << method << " " << name;
    }
    // A click on a radio switches at once.
    QTest::mouseClick(Radio(0), Qt::LeftButton);
    EXPECT_FALSE(Box("txtDCName")->isEnabled());
    QTest::mouseClick(Radio(1), Qt::LeftButton);
    EXPECT_TRUE(Box("txtPassword")->isEnabled());

    // Local, the dialog takes the domain names alone.
    QTest::mouseClick(Radio(0), Qt::LeftButton);
    TypeInto(Box("txtDomainDNSName"), U("orin.test"));
    TypeInto(Box("txtDomainNetBIOSName"), U("ORIN"));
    QTest::mouseClick(Find<QCheckBox>(dialog.get(), "chkNeverShowAgain"), Qt::LeftButton);
    PressOK();
    EXPECT_TRUE(op.boxes.empty());
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(gSession.Method, "local");
    EXPECT_TRUE(gSession.NeverShowAgain);
}

TEST_F(LoginTest, LoadsTheSessionAndFocusesTheFirstEmptyBoxThatIsEnabled) {
    gSession.Method = "remote";
    gSession.DomainDNSName = "orin.test";
    gSession.DomainNetBIOSName = "ORIN";
    gSession.DcComputerName = "orindc.orin.test";
    gSession.UserName = "Administrator";
    gSession.Password = "Orin-Admin-Pass1";  // typed earlier in this process
    gSession.NeverShowAgain = true;
    Open();
    EXPECT_EQ(dialog->windowTitle(), U("ﾄﾞﾒｲﾝ接続"));
    EXPECT_EQ(Box("txtDomainDNSName")->text(), U("orin.test"));
    EXPECT_EQ(Box("txtDCName")->text(), U("orindc.orin.test"));
    EXPECT_EQ(Box("txtPassword")->text(), U("Orin-Admin-Pass1"));
    EXPECT_EQ(Box("txtPassword")->echoMode(), QLineEdit::Password);
    EXPECT_TRUE(Find<QCheckBox>(dialog.get(), "chkNeverShowAgain")->isChecked());
    EXPECT_EQ(Find<QPushButton>(dialog.get(), "cmdOK")->text(), U("接続"));
    // Nothing empty: the focus goes to the DNS name.
    EXPECT_EQ(QApplication::focusWidget(), Box("txtDomainDNSName"));

    gSession.UserName.clear();
    gSession.Password.clear();
    Open();  // the user name is not asked for: the empty password is the first
    EXPECT_EQ(QApplication::focusWidget(), Box("txtPassword"));

    gSession.Method = "local";
    gSession.DcComputerName.clear();
    Open();  // the first empty box is the disabled DC name: the focus is left where it was
    EXPECT_NE(QApplication::focusWidget(), Box("txtDCName"));
    EXPECT_NE(QApplication::focusWidget(), Box("txtPassword"));
}

TEST_F(LoginTest, ChecksInOrderAndStaysOpenUntilTheyPass) {
    gSession.Method = "remote";
    gSession.Connected = true;
    Open();
    PressOK();
    TypeInto(Box("txtDomainDNSName"), U(" orin.test "));
    PressOK();
    // DomainDN follows the DNS name as soon as it has passed, before the next check.
    EXPECT_EQ(gSession.DomainDN, "DC=orin,DC=test");
    TypeInto(Box("txtDomainNetBIOSName"), U("ORIN"));
    PressOK();
    TypeInto(Box("txtDCName"), U("orindc.orin.test"));
    PressOK();
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_EQ(BoxTexts(), (std::vector<std::string>{"ﾄﾞﾒｲﾝの完全なDNS名を入力してください｡",
                                                    "ﾄﾞﾒｲﾝのNetBIOS名を入力してください｡",
                                                    "ﾄﾞﾒｲﾝｺﾝﾄﾛｰﾗｻｰﾊﾞｰ名を入力してください｡",
                                                    "ﾄﾞﾒｲﾝ管理者ﾕｰｻﾞｰ名を入力してください｡"}));
    for (const auto& box : op.boxes) {
        EXPECT_EQ(box.title, "ﾄﾞﾒｲﾝ接続");
        EXPECT_EQ(box.icon, MsgIcon::Exclamation);
    }

    // An empty password is accepted and passed on as it is.
    TypeInto(Box("txtUserName"), U("Administrator "));
    PressOK();
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(op.boxes.size(), 4u);
    EXPECT_EQ(gSession.DomainDNSName, "orin.test");
    EXPECT_EQ(gSession.UserName, "Administrator");
    EXPECT_EQ(gSession.Password, "");
    EXPECT_EQ(gSession.Method, "remote");
    EXPECT_FALSE(gSession.NeverShowAgain);
    EXPECT_TRUE(gSession.Connected);  // OK never touches the connection
}

TEST_F(LoginTest, CancelAsksForAFreshLogin) {
    gSession.Connected = true;
    gSession.LoginFromMenu = true;
    gSession.DomainDNSName = "orin.test";
    Open();
    TypeInto(Box("txtDomainDNSName"), U("other.test"));
    QTest::mouseClick(Find<QPushButton>(dialog.get(), "cmdCancel"), Qt::LeftButton);
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_TRUE(gSession.LoginCancelled);
    EXPECT_FALSE(gSession.LoginFromMenu);
    EXPECT_FALSE(gSession.Connected);
    EXPECT_EQ(gSession.DomainDNSName, "orin.test");  // what was typed is dropped
}

// The menu entry "ﾄﾞﾒｲﾝ接続(&D)": the dialog edits the settings, "適用" keeps the connection.
TEST_F(LoginTest, FromTheMenuApplyChangesTheFieldsAndKeepsTheConnection) {
    shell::frmTop window;
    window.Load();
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    gSession.Connected = true;
    gSession.Method = "local";

    QString caption;
    ModalPlayer player;
    player.onModal = [&](QWidget* modal) {
        auto* login = qobject_cast<frmLogin*>(modal);
        if (!login || !modal->isActiveWindow()) return false;
        caption = Find<QPushButton>(login, "cmdOK")->text();
        auto* dns = Find<QLineEdit>(login, "txtDomainDNSName");
        dns->setText(U("orin.test"));
        Find<QLineEdit>(login, "txtDomainNetBIOSName")->setText(U("ORIN"));
        QTest::mouseClick(Find<QPushButton>(login, "cmdOK"), Qt::LeftButton);
        return true;
    };
    window.ShowLoginFromMenu();

    EXPECT_EQ(caption, U("適用"));
    EXPECT_TRUE(gSession.Connected);
    EXPECT_FALSE(gSession.LoginFromMenu);
    EXPECT_EQ(gSession.DomainDNSName, "orin.test");
    // Back in the main window, every page shows the name given in the dialog.
    ASSERT_TRUE(QTest::qWaitFor([&] { return window.isActiveWindow(); }));
    EXPECT_EQ(window.page(OperationKind::Mov).txtDomainNetBIOS->text(), U("ORIN"));
}

}  // namespace
}  // namespace orin::test
