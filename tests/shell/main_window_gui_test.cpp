// The main window as the operator uses it: the object buttons and the pages, the remembered
// paths, the domain names kept in step, the keyboard movement, the menu and the start buttons.

#include <QAction>
#include <QLineEdit>
#include <QMenu>
#include <QTabBar>
#include <QTabWidget>

#include "GuiTestSupport.h"
#include "base/Options.h"
#include "run/OrinIni.h"
#include "run/RegisterEngines.h"
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
    EXPECT_EQ(gSession.Method, "local");
    EXPECT_EQ(window.strEventLogPath, home / "Event.log");
    EXPECT_EQ(gRun.strEventLogPath, (home / "Event.log").string());
    EXPECT_EQ(blnRepeat_Usr, (RepeatChoice{true, false, false}));
    // The settings file is written at start, and nothing else: no trace, no event log.
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
    const auto box = [&](int page) { return PathBox(static_cast<OperationKind>(page)); };
    const QStringList userPaths = {U("/csv/ﾕｰｻﾞｰ追加.csv"), U("/csv/del.csv"), U("/csv/mov.csv"),
                                   U(" /csv/mdf.csv "), U("/csv/exp.csv")};
    Select(3);
    for (int i = 0; i < 5; ++i) {
        Tabs()->setCurrentIndex(i);
        TypeInto(box(i), userPaths[i]);
    }
    Select(1);
    for (int i = 0; i < 5; ++i) EXPECT_TRUE(box(i)->text().isEmpty()) << i;
    Tabs()->setCurrentIndex(0);
    TypeInto(box(0), U("/csv/ou.csv"));

    Select(3);
    for (int i = 0; i < 5; ++i) {
        // Kept as typed, blanks and all: only the start buttons trim.
        EXPECT_EQ(box(i)->text(), userPaths[i]);
        EXPECT_EQ(window.FilePath(3, static_cast<int16_t>(i + 1)), userPaths[i]);
    }
    EXPECT_EQ(window.FilePath(1, 1), U("/csv/ou.csv"));

    // GPO links have an export path of their own and leave the hidden pages alone.
    Select(6);
    EXPECT_TRUE(box(4)->text().isEmpty());
    EXPECT_EQ(box(0)->text(), userPaths[0]);
    TypeInto(box(4), U("/csv/gpo.csv"));
    Select(1);
    EXPECT_EQ(box(0)->text(), U("/csv/ou.csv"));
    EXPECT_TRUE(box(4)->text().isEmpty());
    Select(6);
    EXPECT_EQ(box(4)->text(), U("/csv/gpo.csv"));
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

// The keyboard table, row by row: with a kind selected and a page shown, a key pressed in one
// place moves the focus (and the page) to another, and never changes the kind.
TEST_F(MainWindowTest, KeysMoveBetweenTheButtonsTheTabStripAndThePathBoxes) {
    enum Where { kButton, kTabs, kPath };
    struct Step {
        int16_t object;
        int page;
        Where from;
        int key;
        Where to;
        int toPage;
    };
    const std::vector<Step> steps = {
        {3, 2, kButton, Qt::Key_Right, kTabs, 0},
        {3, 3, kButton, Qt::Key_Tab, kPath, 0},
        {6, 4, kButton, Qt::Key_Right, kTabs, 4},
        {6, 4, kButton, Qt::Key_Tab, kPath, 4},
        {2, 0, kTabs, Qt::Key_Left, kButton, 0},
        // On page 4 Left goes back to btnGPO only when GPO links are the kind; otherwise the
        // tab strip moves to the page on the left as usual.
        {2, 4, kTabs, Qt::Key_Left, kTabs, 3},
        {6, 4, kTabs, Qt::Key_Left, kButton, 4},
        {1, 2, kTabs, Qt::Key_Tab, kPath, 2},
        {1, 3, kTabs, Qt::Key_Down, kPath, 3},
        {5, 3, kPath, Qt::Key_Left, kButton, 3},
        {5, 3, kPath, Qt::Key_Up, kTabs, 3},
        // Shift+Tab from a path box stays on its page instead of running into the page before;
        // from txtFilePath_Add it goes back to the kind's button, not to btnGPO.
        {5, 1, kPath, Qt::Key_Backtab, kTabs, 1},
        {3, 0, kPath, Qt::Key_Backtab, kButton, 0},
    };
    const auto widget = [&](Where where, int16_t object, int page) -> QWidget* {
        if (where == kButton) return Button(object);
        if (where == kTabs) return Tabs()->tabBar();
        return PathBox(static_cast<OperationKind>(page));
    };
    for (const Step& s : steps) {
        SCOPED_TRACE(testing::Message() << "kind " << s.object << ", page " << s.page << ", from "
                                        << s.from << ", key " << s.key);
        Select(s.object);
        Tabs()->setCurrentIndex(s.page);
        if (s.from == kTabs) Tabs()->setFocus();
        if (s.from == kPath) PathBox(static_cast<OperationKind>(s.page))->setFocus();
        Press(s.key, s.key == Qt::Key_Backtab ? Qt::ShiftModifier : Qt::NoModifier);
        EXPECT_EQ(Focus(), widget(s.to, s.object, s.toPage));
        EXPECT_EQ(Tabs()->currentIndex(), s.toPage);
        EXPECT_EQ(window.CurrentObject, s.object);
    }
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

    const std::string all = FileText(home / "Orin.ini");
    EXPECT_NE(all.find("DomainDNSName=orin.test"), std::string::npos) << all;
    EXPECT_NE(all.find("UserName=Administrator"), std::string::npos) << all;
    EXPECT_EQ(all.find("Secret-Pass1"), std::string::npos);
}

}  // namespace
}  // namespace orin::test
