// The main window as the operator uses it: the object buttons and the pages, the remembered
// paths, the domain names kept in step, the keyboard movement, the menu and the start buttons.

#include <QAction>
#include <QLineEdit>
#include <QMenu>
#include <QTabBar>
#include <QTabWidget>

#include "GuiTestSupport.h"
#include "engines/RegisterEngines.h"
#include "platform/TextFile.h"
#include "run/Options.h"
#include "run/OrinIni.h"
#include "shell/frmCreateTemplate.h"
#include "shell/frmTop.h"
#include "support/ScriptedOperator.h"

namespace orin::test {
namespace {

using shell::frmTop;

class MainWindowTest : public ::testing::Test {
  protected:
    void SetUp() override {
        window.Load();
        window.show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    }

    QWidget* Focus() const { return QApplication::focusWidget(); }
    void Press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::keyClick(Focus(), static_cast<Qt::Key>(key), modifiers);
    }
    QPushButton* Button(int16_t object) { return window.objectButton(object); }
    QLineEdit* PathBox(OperationKind op) { return window.page(op).txtFilePath; }
    QTabWidget* Tabs() { return window.tabs(); }
    bool TabStripHasFocus() { return Focus() == Tabs()->tabBar(); }
    void Select(int16_t object) { Button(object)->setFocus(Qt::MouseFocusReason); }

    ScratchHome home;
    ScriptedOperator op;
    frmTop window;
};

TEST_F(MainWindowTest, StartsOnTheFirstPageWithOUSelectedAndTheDefaultSettings) {
    EXPECT_EQ(window.windowTitle(), U("ORIN  管理ｺﾝｿｰﾙ"));
    EXPECT_EQ(window.CurrentObject, 1);
    EXPECT_EQ(window.CurrentOperation, 1);
    EXPECT_EQ(Tabs()->currentIndex(), 0);
    EXPECT_TRUE(std::filesystem::exists(home / "Orin.ini"));
    EXPECT_EQ(gSession.Method, "local");
    EXPECT_EQ(window.strEventLogPath, home / "Event.log");
    EXPECT_EQ(gRun.strEventLogPath, (home / "Event.log").string());
    EXPECT_EQ(blnRepeat_Usr, (RepeatChoice{true, false, false}));
    // Nothing but the settings file is written at start: no trace, no event log.
    std::vector<std::string> files;
    for (const auto& entry : std::filesystem::directory_iterator(home.path()))
        files.push_back(entry.path().filename().string());
    std::sort(files.begin(), files.end());
    EXPECT_EQ(files, (std::vector<std::string>{"Orin.ini"}));
}

TEST_F(MainWindowTest, FocusedObjectButtonIsTheCurrentKindAndIsMarked) {
    Select(4);
    EXPECT_EQ(window.CurrentObject, 4);
    for (int16_t object = 1; object <= 6; ++object) {
        const QFont font = Button(object)->font();
        const bool marked = object == 4;
        EXPECT_EQ(font.pointSize(), marked ? 12 : 9) << object;
        EXPECT_EQ(font.bold(), marked) << object;
        EXPECT_EQ(Button(object)->palette().color(QPalette::Button) == QColor(255, 255, 192),
                  marked)
            << object;
    }
    // Tabbing onto a button selects as well as clicking does.
    Button(2)->setFocus(Qt::TabFocusReason);
    EXPECT_EQ(window.CurrentObject, 2);
    EXPECT_EQ(Button(2)->font().pointSize(), 12);
    EXPECT_EQ(Button(4)->font().pointSize(), 9);
}

TEST_F(MainWindowTest, GpoLinksLeaveOnlyTheExportPage) {
    Select(6);
    for (int i = 0; i < 4; ++i) EXPECT_FALSE(Tabs()->isTabVisible(i)) << i;
    EXPECT_TRUE(Tabs()->isTabVisible(4));
    EXPECT_EQ(Tabs()->currentIndex(), 4);
    EXPECT_EQ(window.CurrentOperation, 5);
    EXPECT_EQ(Tabs()->tabText(4), U("ｴｸｽﾎﾟｰﾄ"));

    Select(5);
    for (int i = 0; i < 5; ++i) EXPECT_TRUE(Tabs()->isTabVisible(i)) << i;
}

TEST_F(MainWindowTest, PathsAreRememberedPerKindAndOperation) {
    Select(3);
    const std::array<QString, 5> userPaths = {U("/csv/ﾕｰｻﾞｰ追加.csv"), U("/csv/del.csv"),
                                              U("/csv/mov.csv"), U(" /csv/mdf.csv "),
                                              U("/csv/exp.csv")};
    for (int i = 0; i < 5; ++i) {
        Tabs()->setCurrentIndex(i);
        TypeInto(PathBox(static_cast<OperationKind>(i)), userPaths[static_cast<size_t>(i)]);
    }
    Select(1);
    for (int i = 0; i < 5; ++i)
        EXPECT_TRUE(PathBox(static_cast<OperationKind>(i))->text().isEmpty());
    Tabs()->setCurrentIndex(0);
    TypeInto(PathBox(OperationKind::Add), U("/csv/ou.csv"));

    Select(3);
    for (int i = 0; i < 5; ++i) {
        // Kept as typed, blanks and all: only the start buttons trim.
        EXPECT_EQ(PathBox(static_cast<OperationKind>(i))->text(),
                  userPaths[static_cast<size_t>(i)]);
        EXPECT_EQ(window.FilePath(3, static_cast<int16_t>(i + 1)),
                  userPaths[static_cast<size_t>(i)]);
    }
    EXPECT_EQ(window.FilePath(1, 1), U("/csv/ou.csv"));

    // GPO links have an export path of their own and leave the hidden pages alone.
    Select(6);
    EXPECT_TRUE(PathBox(OperationKind::Exp)->text().isEmpty());
    EXPECT_EQ(PathBox(OperationKind::Add)->text(), userPaths[0]);
    TypeInto(PathBox(OperationKind::Exp), U("/csv/gpo.csv"));
    Select(1);
    EXPECT_EQ(PathBox(OperationKind::Add)->text(), U("/csv/ou.csv"));
    EXPECT_TRUE(PathBox(OperationKind::Exp)->text().isEmpty());
    Select(6);
    EXPECT_EQ(PathBox(OperationKind::Exp)->text(), U("/csv/gpo.csv"));
}

TEST_F(MainWindowTest, DomainNamesTypedOnOnePageShowOnAllPages) {
    Tabs()->setCurrentIndex(0);
    TypeInto(window.page(OperationKind::Add).txtDomainDNS, U("  orin.test "));
    Tabs()->setCurrentIndex(3);
    TypeInto(window.page(OperationKind::Mdf).txtDomainNetBIOS, U("ORIN "));
    PathBox(OperationKind::Mdf)->setFocus();

    for (int i = 0; i < 5; ++i) {
        const auto& p = window.page(static_cast<OperationKind>(i));
        if (i != 0) {
            EXPECT_EQ(p.txtDomainDNS->text(), U("orin.test")) << i;
        }
        if (i != 3) {
            EXPECT_EQ(p.txtDomainNetBIOS->text(), U("ORIN")) << i;
        }
    }
    EXPECT_EQ(gSession.DomainDNSName, "orin.test");
    EXPECT_EQ(gSession.DomainNetBIOSName, "ORIN");
    EXPECT_EQ(window.DomainFieldsOf(OperationKind::Exp).dns, "orin.test");
}

// The keyboard table, row by row.
TEST_F(MainWindowTest, KeysFromAnObjectButton) {
    Select(3);
    Tabs()->setCurrentIndex(2);
    Press(Qt::Key_Right);
    EXPECT_TRUE(TabStripHasFocus());
    EXPECT_EQ(Tabs()->currentIndex(), 0);

    Select(3);
    Tabs()->setCurrentIndex(3);
    Press(Qt::Key_Tab);
    EXPECT_EQ(Focus(), PathBox(OperationKind::Add));
    EXPECT_EQ(Tabs()->currentIndex(), 0);
    EXPECT_EQ(window.CurrentObject, 3);

    Select(6);
    Press(Qt::Key_Right);
    EXPECT_TRUE(TabStripHasFocus());
    EXPECT_EQ(Tabs()->currentIndex(), 4);

    Select(6);
    Press(Qt::Key_Tab);
    EXPECT_EQ(Focus(), PathBox(OperationKind::Exp));
    EXPECT_EQ(window.CurrentObject, 6);
}

TEST_F(MainWindowTest, KeysFromTheTabStrip) {
    Select(2);
    Tabs()->setCurrentIndex(0);
    Tabs()->setFocus();
    Press(Qt::Key_Left);
    EXPECT_EQ(Focus(), Button(2));

    // On page 4 Left goes back to btnGPO only when GPO links are the kind; otherwise the tab
    // strip moves to the page on the left as usual.
    Tabs()->setCurrentIndex(4);
    Tabs()->setFocus();
    Press(Qt::Key_Left);
    EXPECT_TRUE(TabStripHasFocus());
    EXPECT_EQ(Tabs()->currentIndex(), 3);

    Select(6);
    Tabs()->setFocus();
    Press(Qt::Key_Left);
    EXPECT_EQ(Focus(), Button(6));

    Select(1);
    Tabs()->setCurrentIndex(2);
    Tabs()->setFocus();
    Press(Qt::Key_Tab);
    EXPECT_EQ(Focus(), PathBox(OperationKind::Mov));
    Tabs()->setCurrentIndex(3);
    Tabs()->setFocus();
    Press(Qt::Key_Down);
    EXPECT_EQ(Focus(), PathBox(OperationKind::Mdf));
}

TEST_F(MainWindowTest, KeysFromAPathBox) {
    Select(5);
    Tabs()->setCurrentIndex(3);
    PathBox(OperationKind::Mdf)->setFocus();
    Press(Qt::Key_Left);
    EXPECT_EQ(Focus(), Button(5));

    PathBox(OperationKind::Mdf)->setFocus();
    Press(Qt::Key_Up);
    EXPECT_TRUE(TabStripHasFocus());
    EXPECT_EQ(Tabs()->currentIndex(), 3);

    // Shift+Tab from a path box stays on its page instead of running into the page before.
    Tabs()->setCurrentIndex(1);
    PathBox(OperationKind::Del)->setFocus();
    Press(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_TRUE(TabStripHasFocus());
    EXPECT_EQ(Tabs()->currentIndex(), 1);

    // From txtFilePath_Add it goes back to the button the operator came from, not to btnGPO.
    Select(3);
    Press(Qt::Key_Tab);
    ASSERT_EQ(Focus(), PathBox(OperationKind::Add));
    Press(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(Focus(), Button(3));
    EXPECT_EQ(window.CurrentObject, 3);
}

TEST_F(MainWindowTest, OtherKeysReachTheControls) {
    Select(1);
    Press(Qt::Key_Tab);
    QTest::keyClicks(Focus(), "abc");
    Press(Qt::Key_Right);  // not in the table: the cursor moves, the focus stays
    EXPECT_EQ(Focus(), PathBox(OperationKind::Add));
    EXPECT_EQ(PathBox(OperationKind::Add)->text(), U("abc"));

    // While the window is not the active one the table does nothing: Tab follows the plain
    // Tab order, from btnGroup to btnUser.
    Select(2);
    window.MainWindowActive = false;
    Press(Qt::Key_Tab);
    EXPECT_EQ(Focus(), Button(3));
}

TEST_F(MainWindowTest, TemplateMenuEntryIsDisabledOnTheExportPageOnly) {
    QAction* entry = window.templateMenuEntry();
    EXPECT_EQ(entry->text(), U("ﾃﾝﾌﾟﾚｰﾄを作成(&T)"));
    for (int page : {0, 3, 4, 1}) {
        Tabs()->setCurrentIndex(page);
        emit window.fileMenu()->aboutToShow();
        EXPECT_EQ(entry->isEnabled(), page != 4) << page;
    }
}

TEST_F(MainWindowTest, TemplateButtonOpensTheTemplateDialogOfTheKind) {
    Select(3);
    Tabs()->setCurrentIndex(1);
    QString title;
    QPoint at;
    ModalPlayer player;
    player.onModal = [&](QWidget* modal) {
        if (!qobject_cast<shell::frmCreateTemplate*>(modal)) return false;
        title = modal->windowTitle();
        at = modal->frameGeometry().topLeft();
        return Click(modal, "btnCancel");
    };
    QTest::mouseClick(window.page(OperationKind::Del).btnCreateTmpFile, Qt::LeftButton);
    EXPECT_EQ(title, shell::frmCreateTemplate::TitleFor(ObjectKind::User));
    EXPECT_EQ(at, window.frameGeometry().topLeft());
}

TEST_F(MainWindowTest, StartButtonsHandTheirPageToTheDriver) {
    // The driver's first check is the file path: an empty one is refused with its box.
    RegisterAllEngines();
    Select(1);
    Tabs()->setCurrentIndex(2);
    PathBox(OperationKind::Mov)->setText(U("   "));
    QTest::mouseClick(window.page(OperationKind::Mov).btnImitate, Qt::LeftButton);
    ASSERT_EQ(op.boxes.size(), 1u);
    EXPECT_EQ(op.boxes[0].title, "入力情報不足");
    EXPECT_EQ(op.boxes[0].text, "CSVﾌｧｲﾙをﾌﾙﾊﾟｽで指定してください。");
    EXPECT_TRUE(gRun.blnImitate);
    EXPECT_FALSE(gRun.blnCompare);
    EXPECT_FALSE(gRun.blnDBMode);

    // With a path, the domain names of the page are the next thing asked for.
    PathBox(OperationKind::Mov)->setText(U(" /tmp/x.csv "));
    QTest::mouseClick(window.page(OperationKind::Mov).btnCompare, Qt::LeftButton);
    ASSERT_EQ(op.boxes.size(), 2u);
    EXPECT_EQ(op.boxes[1].title, "入力情報不足");
    EXPECT_NE(op.boxes[1].text.find("DNS"), std::string::npos) << op.boxes[1].text;
    EXPECT_EQ(gRun.strCsvPath, "/tmp/x.csv");
    EXPECT_TRUE(gRun.blnCompare);
}

TEST_F(MainWindowTest, MissingHelpFileIsTold) {
    window.OpenHelp();
    ASSERT_EQ(op.boxes.size(), 1u);
    EXPECT_EQ(op.boxes[0].icon, MsgIcon::Critical);
    EXPECT_EQ(op.boxes[0].text,
              "ﾍﾙﾌﾟﾌｧｲﾙの起動が失敗しました。\r"
              "ﾍﾙﾌﾟﾌｧｲﾙが Orin.exe と同じﾊﾟｽにあるかどうかを確認してください。");
}

TEST_F(MainWindowTest, ClosingWritesTheSettingsButNeverThePassword) {
    TypeInto(window.page(OperationKind::Add).txtDomainDNS, U("orin.test"));
    PathBox(OperationKind::Add)->setFocus();
    gSession.Password = "Secret-Pass1";
    gSession.UserName = "Administrator";
    window.close();

    std::vector<std::string> lines;
    ASSERT_TRUE(platform::ReadAllLines(home / "Orin.ini", lines));
    const std::string all = [&] {
        std::string text;
        for (const auto& line : lines) text += line + "\n";
        return text;
    }();
    EXPECT_NE(all.find("DomainDNSName=orin.test"), std::string::npos) << all;
    EXPECT_NE(all.find("UserName=Administrator"), std::string::npos) << all;
    EXPECT_EQ(all.find("Secret-Pass1"), std::string::npos);
}

}  // namespace
}  // namespace orin::test
