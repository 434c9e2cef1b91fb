#include "shell/frmProgress.h"

#include <QCloseEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>

#include "base/RunContext.h"
#include "shell/ShellSupport.h"

namespace orin::shell {

namespace {

QLabel* NamedLabel(const char* name, const QString& text, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    label->setObjectName(name);
    return label;
}

QLabel* CounterLabel(const char* name, QWidget* parent) {
    QLabel* label = NamedLabel(name, QStringLiteral("0"), parent);
    label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    label->setMinimumWidth(80);
    return label;
}

}  // namespace

frmProgress::frmProgress(QWidget* owner) : QDialog(owner) {
    setObjectName("frmProgress");
    setWindowModality(Qt::WindowModal);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);

    Label1_ = NamedLabel("Label1", QString(), this);
    Label1_->setWordWrap(true);
    Label1_->setMinimumHeight(Label1_->fontMetrics().lineSpacing() * 2);
    ProgressBar1_ = new QProgressBar(this);
    ProgressBar1_->setObjectName("ProgressBar1");
    ProgressBar1_->setRange(0, 1);
    ProgressBar1_->setValue(0);

    Frame1_ = new QGroupBox(this);
    Frame1_->setObjectName("Frame1");
    Label2_ = NamedLabel("Label2", Q("ｵﾌﾞｼﾞｪｸﾄ総数"), Frame1_);
    Label3_ = NamedLabel("Label3", Q("成功数"), Frame1_);
    Label4_ = NamedLabel("Label4", Q("失敗数"), Frame1_);
    Label9_ = NamedLabel("Label9", Q("警告数"), Frame1_);
    Label5_ = CounterLabel("Label5", Frame1_);
    Label6_ = CounterLabel("Label6", Frame1_);
    Label7_ = CounterLabel("Label7", Frame1_);
    Label8_ = CounterLabel("Label8", Frame1_);
    auto* counters = new QGridLayout(Frame1_);
    counters->addWidget(Label2_, 0, 0);
    counters->addWidget(Label5_, 0, 1);
    counters->addWidget(Label3_, 1, 0);
    counters->addWidget(Label6_, 1, 1);
    counters->addWidget(Label4_, 2, 0);
    counters->addWidget(Label7_, 2, 1);
    counters->addWidget(Label9_, 3, 0);
    counters->addWidget(Label8_, 3, 1);
    counters->setColumnStretch(2, 1);

    Command1_ = new QPushButton(Q("ｷｬﾝｾﾙ"), this);
    Command1_->setObjectName("Command1");
    Command1_->setMinimumWidth(100);
    Command1_->setDefault(true);
    connect(Command1_, &QPushButton::clicked, this, &frmProgress::Command1Pressed);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(Label1_);
    layout->addWidget(ProgressBar1_);
    layout->addWidget(Frame1_);
    layout->addWidget(Command1_, 0, Qt::AlignRight);
    setMinimumWidth(480);
    adjustSize();
    CentreOn(this, owner);
}

void frmProgress::SetTitle(const QString& caption) {
    setWindowTitle(caption);
}

void frmProgress::SetStatus(const QString& text, bool red) {
    Label1_->setText(text);
    QPalette palette = Label1_->palette();
    palette.setColor(QPalette::WindowText,
                     red ? QColor(Qt::red) : this->palette().color(QPalette::ButtonText));
    Label1_->setPalette(palette);
}

void frmProgress::SetCounterCaptions(const QString& first, const QString& second) {
    Label3_->setText(first);
    Label9_->setText(second);
}

void frmProgress::SetTotal(int total) {
    Label5_->setText(QString::number(total));
    // A bar whose maximum is 0 would turn into a busy indicator.
    ProgressBar1_->setMaximum(std::max(total, 1));
}

void frmProgress::SetCounters(int label6, int label7, int label8) {
    Label6_->setText(QString::number(label6));
    Label7_->setText(QString::number(label7));
    Label8_->setText(QString::number(label8));
}

void frmProgress::SetProgressValue(int value) {
    ProgressBar1_->setValue(std::clamp(value, 0, ProgressBar1_->maximum()));
}

void frmProgress::SetCommandCaption(const QString& caption) {
    Command1_->setText(caption);
}

void frmProgress::Command1Pressed() {
    if (Command1_->text() == Q("ｷｬﾝｾﾙ")) {
        gRun.intCancel = 1;
        return;
    }
    if (!working_) accept();
}

void frmProgress::reject() {
    // Escape and the window's close box act as Command1 does.
    Command1Pressed();
}

void frmProgress::closeEvent(QCloseEvent* event) {
    event->ignore();
    Command1Pressed();
}

}  // namespace orin::shell
