#include "shell/EventLogViewer.h"

#include <QCloseEvent>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QVBoxLayout>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "base/Operator.h"
#include "platform/Cp932.h"
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
    std::error_code ec;
    if (!std::filesystem::is_regular_file(path_, ec)) return false;
    std::ifstream in(path_, std::ios::binary);
    if (!in) return false;
    // Shown only: a byte that isn't CP932 (a log edited elsewhere) shows as \xNN instead of
    // hiding the rest of the log.
    QString text = Q(platform::Cp932ToUtf8(std::string(std::istreambuf_iterator<char>(in), {})));
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    text.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    if (text.endsWith(QLatin1Char('\n'))) text.chop(1);
    txtLog_->setPlainText(text);
    txtLog_->verticalScrollBar()->setValue(txtLog_->verticalScrollBar()->maximum());
    return true;
}

}  // namespace orin::shell
