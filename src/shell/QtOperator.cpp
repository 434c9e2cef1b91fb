#include "shell/QtOperator.h"

#include <QApplication>
#include <QEventLoop>
#include <QMessageBox>
#include <QPushButton>
#include <QThread>
#include <QTimer>
#include <chrono>
#include <exception>
#include <memory>
#include <thread>

#include "base/RunContext.h"
#include "base/Trace.h"
#include "directory/DirectorySession.h"
#include "platform/StopSignals.h"
#include "shell/EventLogViewer.h"
#include "shell/ShellSupport.h"
#include "shell/frmLogin.h"
#include "shell/frmProgress.h"
#include "shell/frmTop.h"
#include "shell/frmWait.h"

namespace orin::shell {

namespace {

QMessageBox::Icon BoxIcon(MsgIcon icon) {
    switch (icon) {
        case MsgIcon::Critical:
            return QMessageBox::Critical;
        case MsgIcon::Question:
            return QMessageBox::Question;
        case MsgIcon::Exclamation:
            return QMessageBox::Warning;
        case MsgIcon::Information:
            return QMessageBox::Information;
        case MsgIcon::None:
            break;
    }
    return QMessageBox::NoIcon;
}

// Waits, serving events, until `thread` has finished.
void WaitServingEvents(QThread* thread) {
    if (!thread->isFinished()) {
        QEventLoop loop;
        QObject::connect(thread, &QThread::finished, &loop, &QEventLoop::quit);
        if (!thread->isFinished()) loop.exec();
    }
    thread->wait();
}

}  // namespace

void RunOffWindowThread(const std::function<void()>& work) {
    std::exception_ptr failure;
    std::unique_ptr<QThread> worker(QThread::create([&] {
        platform::BlockStopSignalsHere();  // no directory request is cut short by one
        try {
            work();
        } catch (...) {
            failure = std::current_exception();
        }
    }));
    worker->start();
    WaitServingEvents(worker.get());
    if (failure) std::rethrow_exception(failure);
}

QtOperator::QtOperator(frmTop* mainWindow) : main_(mainWindow), previous_(&TheOperator()) {
    SetOperator(this);
}

QtOperator::~QtOperator() {
    if (&TheOperator() == this) SetOperator(previous_ == this ? nullptr : previous_);
}

bool QtOperator::OnWindowThread() const {
    return QThread::currentThread() == thread();
}

void QtOperator::OnWindowThreadAndWait(const std::function<void()>& work) {
    if (OnWindowThread()) {
        work();
        return;
    }
    QMetaObject::invokeMethod(
        this, [&work] { work(); }, Qt::BlockingQueuedConnection);
}

void QtOperator::PostToProgress(std::function<void(frmProgress&)> change) {
    auto apply = [this, change = std::move(change)] {
        if (progress_) change(*progress_);
    };
    if (OnWindowThread()) {
        apply();
    } else {
        QMetaObject::invokeMethod(this, std::move(apply), Qt::QueuedConnection);
    }
}

QWidget* QtOperator::Owner() const {
    if (QWidget* modal = QApplication::activeModalWidget()) return modal;
    if (progress_) return progress_;
    return main_;
}

DomainFields QtOperator::MainWindowDomainFields(OperationKind op) {
    DomainFields fields;
    OnWindowThreadAndWait([&] {
        if (main_) fields = main_->DomainFieldsOf(op);
    });
    return fields;
}

MsgAnswer QtOperator::MessageBox(std::string_view title, std::string_view text, MsgIcon icon,
                                 MsgButtons buttons) {
    return DetailedMessageBox(title, text, {}, icon, buttons);
}

MsgAnswer QtOperator::DetailedMessageBox(std::string_view title, std::string_view text,
                                         std::string_view detail, MsgIcon icon,
                                         MsgButtons buttons) {
    MsgAnswer answer = buttons == MsgButtons::YesNo ? MsgAnswer::No : MsgAnswer::Ok;
    if (ending_) {
        // Nobody is left to answer: a question is answered No, and the box goes to the trace.
        WriteTrace(TraceMode, true, kTraceFunction, "MsgBox",
                   std::string(title) + ": " + std::string(text) + " " + std::string(detail));
        return answer;
    }
    OnWindowThreadAndWait([&] {
        // A failed connection first takes its wait window away, then tells why.
        if (wait_ && wait_->role() == frmWait::Role::Connect) wait_->hide();
        QMessageBox box(BoxIcon(icon), Q(title), BoxText(text), QMessageBox::NoButton, Owner());
        box.setObjectName("MessageBox");
        // The text stays as it is; the reason behind it waits under the "詳細" button.
        if (!detail.empty()) box.setDetailedText(Q(detail));
        QPushButton* yes = nullptr;
        if (buttons == MsgButtons::YesNo) {
            yes = box.addButton(Q("はい(&Y)"), QMessageBox::YesRole);
            QPushButton* no = box.addButton(Q("いいえ(&N)"), QMessageBox::NoRole);
            yes->setObjectName("btnYes");
            no->setObjectName("btnNo");
            box.setDefaultButton(yes);
            box.setEscapeButton(no);
        } else {
            QPushButton* ok = box.addButton(Q("OK"), QMessageBox::AcceptRole);
            ok->setObjectName("btnOK");
            box.setDefaultButton(ok);
            box.setEscapeButton(ok);
        }
        box.exec();
        if (yes) answer = box.clickedButton() == yes ? MsgAnswer::Yes : MsgAnswer::No;
    });
    return answer;
}

void QtOperator::SetProgressTitle(std::string_view caption) {
    PostToProgress([text = Q(caption)](frmProgress& w) { w.SetTitle(text); });
}

void QtOperator::SetStatus(std::string_view text, bool red) {
    PostToProgress([shown = Q(text), red](frmProgress& w) { w.SetStatus(shown, red); });
}

void QtOperator::SetCounterCaptions(std::string_view first, std::string_view second) {
    PostToProgress([a = Q(first), b = Q(second)](frmProgress& w) { w.SetCounterCaptions(a, b); });
}

void QtOperator::SetTotal(int32_t total) {
    PostToProgress([total](frmProgress& w) { w.SetTotal(total); });
}

void QtOperator::SetCounters(int32_t label6, int32_t label7, int32_t label8) {
    PostToProgress([=](frmProgress& w) { w.SetCounters(label6, label7, label8); });
}

void QtOperator::SetProgressValue(int32_t value) {
    PostToProgress([value](frmProgress& w) { w.SetProgressValue(value); });
}

void QtOperator::SetCommandCaption(std::string_view caption) {
    PostToProgress([text = Q(caption)](frmProgress& w) { w.SetCommandCaption(text); });
}

void QtOperator::Yield() {
    if (OnWindowThread()) {
        QCoreApplication::processEvents();
        return;
    }
    // On the worker the window thread is free anyway. A caller that spins on Yield (a wait
    // for the clock) is slowed to one turn a millisecond instead of taking a whole core;
    // rows that take longer than that are not held up at all.
    const double now = RunTimer();
    if (now - lastYield_ < 0.002) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    lastYield_ = now;
}

void QtOperator::OpenEventLog(const std::filesystem::path& path) {
    auto open = [path] { EventLogViewer::Show(path); };
    if (OnWindowThread()) {
        open();
    } else {
        QMetaObject::invokeMethod(this, open, Qt::QueuedConnection);
    }
}

void QtOperator::EndSession() {
    if (ending_.exchange(true)) return;
    if (progress_) gRun.intCancel = 1;
    if (wait_ && wait_->role() == frmWait::Role::Collect) gRun.blnWaitCancelled = true;
    if (progress_ && !progress_->runWorking()) progress_->accept();
}

void QtOperator::ShowLogin() {
    if (ending_) {
        gSession.LoginCancelled = true;
        gSession.LoginFromMenu = false;
        gSession.Connected = false;
        return;
    }
    OnWindowThreadAndWait([this] {
        frmLogin dialog(Owner());
        dialog.ShowModal();
    });
}

void QtOperator::ShowWait(int role, std::string_view title, const std::function<void()>& work) {
    OnWindowThreadAndWait([&] {
        frmWait window(static_cast<frmWait::Role>(role), Q(title), Owner());
        wait_ = &window;
        window.show();
        try {
            RunOffWindowThread(work);
        } catch (...) {
            wait_ = nullptr;
            throw;
        }
        wait_ = nullptr;
    });
}

void QtOperator::ShowConnectWait(const std::function<void()>& connect) {
    ShowWait(static_cast<int>(frmWait::Role::Connect), {}, connect);
}

void QtOperator::ShowCollectWait(std::string_view title, const std::function<void()>& collect) {
    ShowWait(static_cast<int>(frmWait::Role::Collect), title, collect);
}

void QtOperator::ShowProgress(const std::function<void()>& run) {
    OnWindowThreadAndWait([&] {
        frmProgress window(Owner());
        progress_ = &window;
        window.SetRunWorking(true);

        std::exception_ptr failure;
        std::unique_ptr<QThread> worker(QThread::create([&] {
            platform::BlockStopSignalsHere();
            try {
                run();
            } catch (...) {
                failure = std::current_exception();
            }
        }));
        connect(worker.get(), &QThread::finished, &window, [this, &window] {
            window.SetRunWorking(false);
            // A run that ended without saying so still lets the operator close the window.
            window.SetCommandCaption(Q("OK"));
            if (ending_) window.accept();
        });
        // The run starts once the window is on the screen.
        QTimer::singleShot(0, &window, [&worker] { worker->start(); });
        window.exec();

        WaitServingEvents(worker.get());
        QCoreApplication::sendPostedEvents(this);
        progress_ = nullptr;
        if (failure) std::rethrow_exception(failure);
    });
}

void QtOperator::HideProgress() {
    // The window goes at once; ShowProgress still waits for the run to end.
    PostToProgress([](frmProgress& w) { w.hide(); });
}

}  // namespace orin::shell
