#pragma once
// Shared by the desktop shell tests: an application folder of the test's own, a player that
// answers the modal windows the program opens while a test waits, and small finders.

#include <gtest/gtest.h>

#include <QApplication>
#include <QDialog>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QWidget>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "base/RunContext.h"
#include "directory/DirectorySession.h"
#include "run/RunTestSupport.h"

namespace orin::test {

// ORIN_HOME pointed at a fresh folder for the length of a test, and a session with nothing in
// it, as a new process has.
class ScratchHome : public ScratchFolder {
  public:
    ScratchHome() {
        setenv("ORIN_HOME", path().c_str(), 1);
        gSession = DirectorySession{};
        gRun.intCancel = 0;
    }
    ~ScratchHome() {
        unsetenv("ORIN_HOME");
        gSession = DirectorySession{};
    }
};

// The text of a CP932 file (Event.log, Orin.ini, a trace), its lines ended by "\n".
inline std::string FileText(const std::filesystem::path& path) {
    std::string text;
    for (const std::string& line : ReadLines(path)) text += line + "\n";
    return text;
}

// Plays the operator at modal windows: while it lives, it looks at the modal window in front
// every few milliseconds and hands it to `onModal` (once per window until the window changes
// or `onModal` asks to see it again by returning false). Message boxes are recorded.
class ModalPlayer {
  public:
    struct Box {
        QString title;
        QString text;
        QString detail;  // what the box keeps under its "詳細" button
    };

    ModalPlayer() {
        clock_.start();
        timer_.setInterval(10);
        QObject::connect(&timer_, &QTimer::timeout, [this] { Look(); });
        timer_.start();
    }

    // Returns true when it is done with the window.
    std::function<bool(QWidget*)> onModal;
    std::vector<Box> boxes;

  private:
    void Look() {
        QWidget* modal = QApplication::activeModalWidget();
        if (!modal || modal == done_ || !modal->isVisible()) return;
        if (clock_.elapsed() > kPatienceMilliseconds) {
            // A script that never finishes would hang the test: close the window instead.
            ADD_FAILURE() << "modal window left unanswered: " << modal->windowTitle().toStdString();
            if (auto* dialog = qobject_cast<QDialog*>(modal)) dialog->done(0);
            return;
        }
        if (auto* box = qobject_cast<QMessageBox*>(modal)) {
            if (box != recorded_) {
                boxes.push_back({box->windowTitle(), box->text(), box->detailedText()});
            }
            recorded_ = box;
        }
        if (onModal && onModal(modal)) done_ = modal;
    }

    static constexpr qint64 kPatienceMilliseconds = 30000;
    QElapsedTimer clock_;
    QTimer timer_;
    QWidget* done_ = nullptr;
    QWidget* recorded_ = nullptr;
};

// Clicks the button of that object name in `window` ("btnYes", "btnNo", "btnOK", "Command1").
inline bool Click(QWidget* window, const char* button) {
    auto* target = window->findChild<QPushButton*>(button);
    if (!target) return false;
    QTest::mouseClick(target, Qt::LeftButton);
    return true;
}

// Types `text` into the focus after giving it to `box`, as a person does.
inline void TypeInto(QWidget* box, const QString& text) {
    box->setFocus(Qt::MouseFocusReason);
    for (const QChar ch : text) {
        if (ch.unicode() < 0x80) {
            QTest::keyClick(box, ch.toLatin1());
        } else {
            // Keys beyond ASCII (kana, kanji) arrive as text, as from an input method.
            QKeyEvent press(QEvent::KeyPress, Qt::Key_unknown, Qt::NoModifier, QString(ch));
            QApplication::sendEvent(box, &press);
        }
    }
}

// The named child, failing the test when there is none.
template <class T>
T* Find(const QObject* parent, const char* name) {
    T* child = parent->findChild<T*>(QString::fromUtf8(name));
    EXPECT_NE(child, nullptr) << "no control " << name;
    return child;
}

inline QString U(const char* utf8) {
    return QString::fromUtf8(utf8);
}

}  // namespace orin::test
