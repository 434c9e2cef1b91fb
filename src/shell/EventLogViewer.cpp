#include "shell/EventLogViewer.h"

#include <QCloseEvent>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QVBoxLayout>
#include <string>
#include <vector>

#include "base/Operator.h"
#include "platform/TextFile.h"
#include "shell/ShellSupport.h"

namespace orin::shell {

namespace {
EventLogViewer* gViewer = nullptr;
}

EventLogViewer* EventLogViewer::Current() {
    return gViewer;
}

EventLogViewer* EventLogViewer::Show(const std::filesystem::path& path) {
    if (!platform::CanOpenForReading(path)) {
        TheOperator().MessageBox("ｲﾍﾞﾝﾄﾛｸﾞ", "ｲﾍﾞﾝﾄﾛｸﾞﾌｧｲﾙを開けません。\r" + path.string(),
                                 MsgIcon::Exclamation, MsgButtons::Ok);
        return nullptr;
    }
    if (!gViewer) gViewer = new EventLogViewer(path);
    gViewer->path_ = path;
    gViewer->setWindowTitle(Q(path.filename().string() + " - " + path.parent_path().string()));
    gViewer->Reload();
    gViewer->show();
    gViewer->raise();
    gViewer->activateWindow();
    return gViewer;
}

EventLogViewer::EventLogViewer(const std::filesystem::path& path) : path_(path) {
    setObjectName("EventLogViewer");
    setAttribute(Qt::WA_DeleteOnClose);

    txtLog_ = new QPlainTextEdit(this);
    txtLog_->setObjectName("txtLog");
    txtLog_->setReadOnly(true);
    txtLog_->setLineWrapMode(QPlainTextEdit::NoWrap);
    txtLog_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));

    btnReload_ = new QPushButton(Q("再読み込み(&R)"), this);
    btnReload_->setObjectName("btnReload");
    btnClose_ = new QPushButton(Q("閉じる(&C)"), this);
    btnClose_->setObjectName("btnClose");
    connect(btnReload_, &QPushButton::clicked, this, [this] { Reload(); });
    connect(btnClose_, &QPushButton::clicked, this, &QWidget::close);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(btnReload_);
    buttons->addWidget(btnClose_);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(txtLog_, 1);
    layout->addLayout(buttons);
    resize(820, 560);
}

EventLogViewer::~EventLogViewer() {
    if (gViewer == this) gViewer = nullptr;
}

void EventLogViewer::closeEvent(QCloseEvent* event) {
    // A closed window is gone for the next Show, even before it is deleted.
    if (gViewer == this) gViewer = nullptr;
    QWidget::closeEvent(event);
}

QString EventLogViewer::text() const {
    return txtLog_->toPlainText();
}

bool EventLogViewer::Reload() {
    std::vector<std::string> lines;
    if (!platform::ReadAllLines(path_, lines)) return false;
    QStringList shown;
    shown.reserve(static_cast<qsizetype>(lines.size()));
    for (const std::string& line : lines) shown << Q(line);
    txtLog_->setPlainText(shown.join(QLatin1Char('\n')));
    txtLog_->verticalScrollBar()->setValue(txtLog_->verticalScrollBar()->maximum());
    return true;
}

}  // namespace orin::shell
