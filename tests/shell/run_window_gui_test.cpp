// A run from the main window's button to the result box, through the Qt operator: the start
// question, frmProgress working while the run's thread is busy, Cancel, the closing box and
// the event log window.

#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <atomic>
#include <chrono>
#include <thread>

#include "GuiTestSupport.h"
#include "base/Outcome.h"
#include "csv/ColumnRegistry.h"
#include "platform/TextFile.h"
#include "run/Drivers.h"
#include "run/ProgressWindow.h"
#include "run/RegisterEngines.h"
#include "run/RowLoop.h"
#include "shell/EventLogViewer.h"
#include "shell/QtOperator.h"
#include "shell/frmProgress.h"
#include "shell/frmTop.h"

namespace orin::test {
namespace {

using shell::frmProgress;

QString LabelText(QWidget* window, const char* name) {
    return Find<QLabel>(window, name)->text();
}

class RunWindowTest : public ::testing::Test {
  protected:
    void SetUp() override {
        SetProgressStartWait(0.1);
        window.Load();
        window.show();
        // A session that is connected already and may be kept, as "never show again" allows.
        gSession.Connected = true;
        gSession.NeverShowAgain = true;
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
        const auto& page = window.page(OperationKind::Add);
        page.txtDomainDNS->setText(U("orin.test"));
        page.txtDomainNetBIOS->setText(U("ORIN"));
        page.txtFilePath->setText(U(csv.c_str()));
    }
    void TearDown() override {
        SetRowEngine(ObjectKind::OU, 0, nullptr);
        RegisterAllEngines();
        SetProgressStartWait(1.0);
        if (auto* viewer = shell::EventLogViewer::Current()) viewer->close();
    }

    // An OU Add engine of the test's own: it takes `rowTime` for each row and raises the code
    // of the row's description cell, if any, before its verdict.
    void UseEngine(std::chrono::milliseconds rowTime) {
        SetRowEngine(ObjectKind::OU, 0,
                     [this, rowTime](const std::vector<std::string>& cells, int32_t line,
                                     int32_t ordinal, const std::vector<int16_t>&) {
                         inEngine = true;
                         ++rows;
                         std::this_thread::sleep_for(rowTime);
                         inEngine = false;
                         const std::string code = CellOf(cells, "description");
                         EngineRun(line, ordinal, [&](RowScope&) {
                             if (!code.empty()) Raise(std::stoi(code));
                             RaiseVerdict();
                         });
                     });
    }

    void WriteCsv(int rowCount, const std::string& code = "") {
        std::vector<std::string> lines{"!OU-Start,OU-End,Mirror,description"};
        for (int i = 0; i < rowCount; ++i) lines.push_back("ou" + std::to_string(i) + ",,," + code);
        platform::WriteLines(csv, lines);
    }

    void PressStart() {
        QTest::mouseClick(window.page(OperationKind::Add).btnApply, Qt::LeftButton);
    }

    ScratchHome home;
    shell::frmTop window;
    shell::QtOperator screen{&window};
    std::string csv = (home / "ou.csv").string();
    std::atomic<bool> inEngine{false};
    std::atomic<int> rows{0};
};

TEST_F(RunWindowTest, CancelActsAtOnceAndEndsTheRunAtTheNextRow) {
    WriteCsv(40);
    UseEngine(std::chrono::milliseconds(150));

    bool pressedWhileEngineBusy = false;
    bool cancelSeenAtOnce = false;
    QString statusAtEnd;
    QColor statusColour;
    QString commandAtEnd;
    bool cancelled = false;
    ModalPlayer player;
    player.onModal = [&](QWidget* modal) {
        if (qobject_cast<QMessageBox*>(modal)) return Click(modal, "btnYes");
        auto* progress = qobject_cast<frmProgress*>(modal);
        if (!progress) return false;
        if (!cancelled) {
            // Press Cancel while a row is inside its (blocking) engine call.
            if (rows < 3 || !inEngine) return false;
            pressedWhileEngineBusy = true;
            Click(progress, "Command1");
            cancelSeenAtOnce = gRun.intCancel == 1 && inEngine;
            cancelled = true;
            return false;
        }
        if (progress->runWorking()) return false;
        auto* label = Find<QLabel>(progress, "Label1");
        statusAtEnd = label->text();
        statusColour = label->palette().color(QPalette::WindowText);
        commandAtEnd = Find<QPushButton>(progress, "Command1")->text();
        return Click(progress, "Command1");
    };
    PressStart();

    EXPECT_TRUE(pressedWhileEngineBusy);
    EXPECT_TRUE(cancelSeenAtOnce);
    EXPECT_EQ(gRun.intCancel, 1);
    EXPECT_LT(rows, 10);
    EXPECT_EQ(statusAtEnd, U("組織単位の本番追加処理がﾕｰｻﾞｰに中断されました。"));
    EXPECT_EQ(statusColour, QColor(Qt::red));
    EXPECT_EQ(commandAtEnd, U("OK"));
    EXPECT_EQ(screen.progressWindow(), nullptr);
    const std::string log = FileText(home / "Event.log");
    EXPECT_NE(log.find("ｷｬﾝｾﾙによる中断の有無： 有"), std::string::npos) << log;
    EXPECT_NE(log.find("ｷｬﾝｾﾙ時の処理済最終行： " + std::to_string(rows + 1)), std::string::npos)
        << log;
    ASSERT_EQ(player.boxes.size(), 1u);  // the start question only: no row went wrong
    EXPECT_EQ(player.boxes[0].text, U("組織単位の本番追加処理を開始してよろしいですか？"));
}

TEST_F(RunWindowTest, FinishedRunShowsItsCountersAndOffersTheLog) {
    WriteCsv(3, "10300");  // every object with a warning
    UseEngine(std::chrono::milliseconds(0));

    QString total, success, warnings, status, command;
    ModalPlayer player;
    player.onModal = [&](QWidget* modal) {
        if (auto* box = qobject_cast<QMessageBox*>(modal)) {
            if (box->text().contains(U("開始してよろしいですか"))) return Click(box, "btnYes");
            // The closing box, answered Yes: the log opens in a window of its own.
            EXPECT_EQ(box->icon(), QMessageBox::Warning);
            return Click(box, "btnYes");
        }
        auto* progress = qobject_cast<frmProgress*>(modal);
        if (!progress || progress->runWorking() || shell::EventLogViewer::Current() == nullptr)
            return false;
        total = LabelText(progress, "Label5");
        success = LabelText(progress, "Label6");
        warnings = LabelText(progress, "Label8");
        status = LabelText(progress, "Label1");
        command = Find<QPushButton>(progress, "Command1")->text();
        return Click(progress, "Command1");
    };
    PressStart();

    EXPECT_EQ(total, U("3"));
    EXPECT_EQ(success, U("0"));
    EXPECT_EQ(warnings, U("3"));
    EXPECT_EQ(status, U("組織単位の本番追加処理が完了しました。"));
    EXPECT_EQ(command, U("OK"));
    ASSERT_EQ(player.boxes.size(), 2u);
    EXPECT_EQ(player.boxes[1].title, U("組織単位の本番追加"));
    EXPECT_EQ(player.boxes[1].text,
              U("組織単位の本番追加処理に警告がありました。\nｲﾍﾞﾝﾄﾛｸﾞを開きますか？"));

    // The log window decodes the CP932 file.
    shell::EventLogViewer* viewer = shell::EventLogViewer::Current();
    ASSERT_NE(viewer, nullptr);
    EXPECT_EQ(viewer->path(), home / "Event.log");
    EXPECT_TRUE(viewer->text().contains(U("処理内容： 組織単位の本番追加")));
    EXPECT_TRUE(viewer->text().contains(U("処理警告数： 3")));
}

}  // namespace
}  // namespace orin::test
