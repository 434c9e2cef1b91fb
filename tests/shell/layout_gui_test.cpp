// What a person sees of each window: every caption has its glyphs in the window's font (no
// empty boxes for half-width katakana) and room enough not to be cut off. With
// ORIN_SCREENSHOT_DIR set, the windows are also saved there as PNG files (docs/ keeps them for
// the README; run under xvfb-run with QT_QPA_PLATFORM=xcb for the real look).

#include <QAbstractButton>
#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QTabBar>
#include <QTabWidget>

#include "GuiTestSupport.h"
#include "shell/ShellSupport.h"
#include "shell/frmAbout.h"
#include "shell/frmLogin.h"
#include "shell/frmOptions.h"
#include "shell/frmProgress.h"
#include "shell/frmTop.h"
#include "shell/frmWait.h"
#include "support/ScriptedOperator.h"

namespace orin::test {
namespace {

// The characters of `text` that the font has no glyph for.
QString MissingGlyphs(const QString& text, const QFont& font) {
    const QFontMetrics metrics(font);
    QString missing;
    for (const uint code : text.toUcs4()) {
        const char32_t ch = code;
        if (ch > 0x20 && !metrics.inFontUcs4(ch)) missing += QString::fromUcs4(&ch, 1);
    }
    return missing;
}

QString Plain(QString caption) {
    return caption.remove(QLatin1Char('&'));
}

// Checks every visible caption of `window` and saves its picture when asked to.
void ExpectReadable(QWidget* window, const char* pictureName) {
    window->show();
    QApplication::processEvents();
    for (QWidget* w : window->findChildren<QWidget*>()) {
        if (!w->isVisibleTo(window)) continue;
        const QString where = w->objectName();
        QString caption;
        int room = -1;
        int needed = 0;
        if (auto* label = qobject_cast<QLabel*>(w)) {
            caption = label->text();
            if (!label->wordWrap() && !caption.isEmpty()) {
                room = label->contentsRect().width();
                needed = label->fontMetrics().horizontalAdvance(caption);
            }
        } else if (auto* button = qobject_cast<QAbstractButton*>(w)) {
            // A check box or radio button needs its indicator as well as its text.
            caption = Plain(button->text());
            const bool push = !qobject_cast<QCheckBox*>(w) && !qobject_cast<QRadioButton*>(w);
            room = push ? button->contentsRect().width() : button->width();
            needed = push ? button->fontMetrics().horizontalAdvance(caption) + 6
                          : button->sizeHint().width();
        } else if (auto* group = qobject_cast<QGroupBox*>(w)) {
            caption = group->title();
            room = group->width();
            needed = group->fontMetrics().horizontalAdvance(caption) + 16;
        } else if (auto* tabs = qobject_cast<QTabBar*>(w)) {
            for (int i = 0; i < tabs->count(); ++i) {
                if (!tabs->isTabVisible(i)) continue;
                const QString text = tabs->tabText(i);
                EXPECT_EQ(MissingGlyphs(text, tabs->font()), QString()) << text.toStdString();
                EXPECT_GE(tabs->tabRect(i).width(), tabs->fontMetrics().horizontalAdvance(text))
                    << pictureName << " tab " << text.toStdString();
            }
            continue;
        } else {
            continue;
        }
        EXPECT_EQ(MissingGlyphs(caption, w->font()), QString())
            << pictureName << " " << where.toStdString() << ": " << caption.toStdString();
        if (room >= 0) {
            EXPECT_GE(room, needed) << pictureName << " " << where.toStdString() << " cuts off \""
                                    << caption.toStdString() << "\"";
        }
    }
    const QByteArray folder = qgetenv("ORIN_SCREENSHOT_DIR");
    if (!folder.isEmpty()) {
        const QString path = QString::fromLocal8Bit(folder) + "/" + pictureName + ".png";
        EXPECT_TRUE(window->grab().save(path)) << path.toStdString();
    }
}

class LayoutTest : public ::testing::Test {
  protected:
    ScratchHome home;
    ScriptedOperator op;
};

TEST_F(LayoutTest, MainWindowOnEveryKind) {
    shell::frmTop window;
    window.Load();
    for (int i = 0; i < 5; ++i) {
        const auto& page = window.page(static_cast<OperationKind>(i));
        page.txtDomainDNS->setText(U("orin.test"));
        page.txtDomainNetBIOS->setText(U("ORIN"));
    }
    window.page(OperationKind::Add).txtFilePath->setText(U("/home/admin/csv/ou_add.csv"));
    window.show();
    for (int16_t object : {6, 2, 1}) {
        window.objectButton(object)->setFocus();
        ExpectReadable(&window, object == 1 ? "main-window" : "main-window-other");
    }
    for (int page = 1; page < 5; ++page) {
        window.tabs()->setCurrentIndex(page);
        ExpectReadable(&window, "main-window-other");
    }
}

TEST_F(LayoutTest, LoginDialog) {
    gSession.Method = "remote";
    gSession.DomainDNSName = "orin.test";
    gSession.DomainNetBIOSName = "ORIN";
    gSession.DcComputerName = "orindc.orin.test";
    gSession.UserName = "Administrator";
    shell::frmLogin login(nullptr);
    ExpectReadable(&login, "login");
}

TEST_F(LayoutTest, FinishedRunsProgressWindow) {
    shell::frmProgress progress(nullptr);
    progress.SetTitle(U("組織単位の本番追加"));
    progress.SetCounterCaptions(U("成功数"), U("警告数"));
    progress.SetTotal(12);
    progress.SetCounters(11, 1, 0);
    progress.SetProgressValue(12);
    progress.SetStatus(U("組織単位の本番追加処理が完了しました。"), false);
    progress.SetCommandCaption(U("OK"));
    ExpectReadable(&progress, "progress");
    // The longest status a run shows still has its lines.
    progress.SetStatus(U("共有ﾌｫﾙﾀﾞ変更のﾃﾞｰﾀを照合しています。しばらくお待ちください･･･"), false);
    ExpectReadable(&progress, "progress-other");
    auto* status = Find<QLabel>(&progress, "Label1");
    EXPECT_GE(status->height(), status->heightForWidth(status->width()));
}

TEST_F(LayoutTest, OptionsWaitAndAboutWindows) {
    shell::frmOptions options(nullptr);
    ExpectReadable(&options, "options");
    Find<QTabWidget>(&options, "tbsOptions")->setCurrentIndex(1);
    ExpectReadable(&options, "options-other");
    shell::frmWait wait(shell::frmWait::Role::Collect, U("ﾕｰｻﾞｰのｴｸｽﾎﾟｰﾄ"), nullptr);
    ExpectReadable(&wait, "wait");
    shell::frmAbout about(nullptr);
    ExpectReadable(&about, "about");
}

}  // namespace
}  // namespace orin::test
