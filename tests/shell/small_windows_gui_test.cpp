// The wait window, the about box, and one program per application folder.

#include <QLabel>
#include <QProcess>
#include <QSignalSpy>
#include <atomic>
#include <chrono>
#include <csignal>
#include <thread>

#include "GuiTestSupport.h"
#include "platform/TextFile.h"
#include "shell/EventLogViewer.h"
#include "shell/QtOperator.h"
#include "shell/SingleInstance.h"
#include "shell/frmAbout.h"
#include "shell/frmWait.h"
#include "support/ScriptedOperator.h"

namespace orin::test {
namespace {

using shell::frmWait;

TEST(WaitWindow, TheRingTurnsThroughSixDifferentPictures) {
    frmWait window(frmWait::Role::Connect, QString(), nullptr);
    EXPECT_EQ(window.windowTitle(), U("ﾄﾞﾒｲﾝに接続中"));
    EXPECT_EQ(Find<QLabel>(&window, "Label1")->text(), U("ﾄﾞﾒｲﾝに接続しています･･･"));
    EXPECT_EQ(Find<QLabel>(&window, "Label2")->text(), U("しばらくお待ちください"));
    EXPECT_EQ(Find<QTimer>(&window, "Timer1")->interval(), 1000);

    const auto ring = frmWait::DrawRing(48);
    for (size_t i = 0; i < ring.size(); ++i)
        for (size_t j = i + 1; j < ring.size(); ++j)
            EXPECT_NE(ring[i].toImage(), ring[j].toImage()) << i << " " << j;
    std::vector<int> seen;
    for (int step = 0; step < 7; ++step) {
        seen.push_back(window.pictureIndex());
        window.nextPicture();
    }
    EXPECT_EQ(seen, (std::vector<int>{0, 1, 2, 3, 4, 5, 0}));
}

TEST(WaitWindow, ConnectingCannotBeCancelledCollectingCan) {
    ScratchHome home;
    gRun.blnWaitCancelled = false;
    {
        frmWait connecting(frmWait::Role::Connect, QString(), nullptr);
        connecting.show();
        EXPECT_FALSE(Find<QPushButton>(&connecting, "btnCancel")->isVisible());
        QTest::keyClick(&connecting, Qt::Key_Escape);
        EXPECT_FALSE(gRun.blnWaitCancelled);
    }
    gSession.CollectPending = true;
    {
        frmWait collecting(frmWait::Role::Collect, U("組織単位のｴｸｽﾎﾟｰﾄ"), nullptr);
        collecting.show();
        EXPECT_EQ(collecting.windowTitle(), U("組織単位のｴｸｽﾎﾟｰﾄ"));
        EXPECT_EQ(Find<QLabel>(&collecting, "Label1")->text(),
                  U("ｵﾌﾞｼﾞｪｸﾄの情報を収集しています･･･"));
        Click(&collecting, "btnCancel");
        EXPECT_TRUE(gRun.blnWaitCancelled);
    }
    EXPECT_FALSE(gSession.CollectPending);  // the window leaves no collection pending
    gRun.blnWaitCancelled = false;
}

// The work runs off the window thread: the ring turns and Cancel is taken while it blocks.
TEST(WaitWindow, TurnsAndTakesCancelWhileTheWorkBlocks) {
    ScratchHome home;
    shell::QtOperator screen;
    gRun.blnWaitCancelled = false;
    std::atomic<bool> sawCancel{false};
    int picturesSeen = 0;
    QTimer cancelLater;
    cancelLater.setSingleShot(true);
    QObject::connect(&cancelLater, &QTimer::timeout, [&] {
        if (frmWait* window = screen.waitWindow()) {
            picturesSeen = window->pictureIndex();
            Click(window, "btnCancel");
        }
    });
    cancelLater.start(2300);
    screen.ShowCollectWait("組織単位のｴｸｽﾎﾟｰﾄ", [&] {
        // A scan that looks at the cancel flag only now and then, as a blocking search does.
        for (int i = 0; i < 60 && !gRun.blnWaitCancelled; ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
        sawCancel = gRun.blnWaitCancelled.load();
    });
    EXPECT_GE(picturesSeen, 2);
    EXPECT_TRUE(sawCancel);
    EXPECT_EQ(screen.waitWindow(), nullptr);
    gRun.blnWaitCancelled = false;
}

TEST(AboutBox, ShowsTheVersionAndTheSystem) {
    ScriptedOperator op;
    shell::frmAbout about(nullptr);
    EXPECT_EQ(Find<QLabel>(&about, "lblVersion")->text(), U("ﾊﾞｰｼﾞｮﾝ 0.1.0"));
    Click(&about, "cmdSysInfo");
    ASSERT_EQ(op.boxes.size(), 1u);
    const std::string& info = op.boxes[0].text;
    EXPECT_NE(info.find("OS: "), std::string::npos) << info;
    EXPECT_NE(info.find("Qt: 6."), std::string::npos) << info;
    EXPECT_NE(info.find("OpenLDAP: 2."), std::string::npos) << info;
    EXPECT_NE(info.find("libsmbclient: "), std::string::npos) << info;
}

TEST(EventLogWindow, ShowsTheCp932LogAndReadsItAgainWhenOpenedAgain) {
    ScratchHome home;
    ScriptedOperator op;
    const auto log = home / "Event.log";
    EXPECT_EQ(shell::EventLogViewer::Show(log), nullptr);  // no log yet: told, no window
    ASSERT_EQ(op.boxes.size(), 1u);
    EXPECT_EQ(op.boxes[0].text, "ｲﾍﾞﾝﾄﾛｸﾞﾌｧｲﾙを開けません。\r" + log.string());

    ASSERT_TRUE(platform::AppendLine(log, "処理内容： 組織単位の本番追加"));
    shell::EventLogViewer* viewer = shell::EventLogViewer::Show(log);
    ASSERT_NE(viewer, nullptr);
    EXPECT_EQ(viewer->text(), U("処理内容： 組織単位の本番追加"));
    ASSERT_TRUE(platform::AppendLine(log, "2行, 失敗, ﾒｯｾｰｼﾞ"));
    EXPECT_EQ(shell::EventLogViewer::Show(log), viewer);
    EXPECT_EQ(viewer->text(), U("処理内容： 組織単位の本番追加\n2行, 失敗, ﾒｯｾｰｼﾞ"));
    viewer->close();
    EXPECT_EQ(shell::EventLogViewer::Current(), nullptr);
}

class SingleInstanceTest : public ::testing::Test {
  protected:
    // Starts the real program in the scratch folder.
    void StartProgram(QProcess& program) {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert("ORIN_HOME", QString::fromStdString(home.path().string()));
        env.insert("QT_QPA_PLATFORM", "offscreen");
        program.setProcessEnvironment(env);
        program.start(QStringLiteral(ORIN_BINARY_DIR "/bin/orin"), {});
        ASSERT_TRUE(program.waitForStarted());
    }

    ScratchHome home;
};

TEST_F(SingleInstanceTest, TheProgramStartedAgainEndsWithoutTouchingItsFiles) {
    shell::SingleInstance first(home.path());
    ASSERT_TRUE(first.IsFirst());
    QSignalSpy forward(&first, &shell::SingleInstance::comeForwardRequested);
    QProcess second;
    StartProgram(second);
    EXPECT_TRUE(forward.wait(10000));
    ASSERT_TRUE(QTest::qWaitFor([&] { return second.state() == QProcess::NotRunning; }, 10000));
    EXPECT_EQ(second.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(second.exitCode(), 0);
    EXPECT_FALSE(std::filesystem::exists(home / "Orin.ini"));

    // Another folder is another program.
    std::filesystem::create_directories(home / "elsewhere");
    EXPECT_TRUE(shell::SingleInstance(home / "elsewhere").IsFirst());
}

TEST_F(SingleInstanceTest, AProgramThatDiedLeavesNoInstanceBehind) {
    QProcess crashed;
    StartProgram(crashed);
    ASSERT_TRUE(QTest::qWaitFor([&] { return std::filesystem::exists(home / "Orin.ini"); }, 10000));
    ::kill(static_cast<pid_t>(crashed.processId()), SIGKILL);
    ASSERT_TRUE(crashed.waitForFinished(5000));
    EXPECT_TRUE(std::filesystem::exists(home / "Orin.lock"));
    EXPECT_TRUE(shell::SingleInstance(home.path()).IsFirst());
}

}  // namespace
}  // namespace orin::test
