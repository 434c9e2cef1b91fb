#include "shell/frmWait.h"

#include <QCloseEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>
#include <cmath>
#include <numbers>

#include "base/RunContext.h"
#include "directory/DirectorySession.h"
#include "shell/ShellSupport.h"

namespace orin::shell {

frmWait::frmWait(Role role, const QString& runTitle, QWidget* owner)
    : QDialog(owner), role_(role), pictures_(DrawRing(48)) {
    setObjectName("frmWait");
    setWindowModality(Qt::WindowModal);
    setWindowFlag(Qt::WindowCloseButtonHint, false);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);

    picAnimation_ = new QLabel(this);
    picAnimation_->setObjectName("picAnimation");
    picAnimation_->setPixmap(pictures_[0]);
    picAnimation_->setFixedSize(pictures_[0].size());

    Label1_ = new QLabel(this);
    Label1_->setObjectName("Label1");
    Label2_ = new QLabel(Q("しばらくお待ちください"), this);
    Label2_->setObjectName("Label2");
    btnCancel_ = new QPushButton(Q("ｷｬﾝｾﾙ"), this);
    btnCancel_->setObjectName("btnCancel");
    connect(btnCancel_, &QPushButton::clicked, this, &frmWait::cancelPressed);

    if (role == Role::Connect) {
        setWindowTitle(Q("ﾄﾞﾒｲﾝに接続中"));
        Label1_->setText(Q("ﾄﾞﾒｲﾝに接続しています･･･"));
        btnCancel_->hide();
    } else {
        setWindowTitle(runTitle);
        Label1_->setText(Q("ｵﾌﾞｼﾞｪｸﾄの情報を収集しています･･･"));
    }

    auto* texts = new QVBoxLayout;
    texts->addWidget(Label1_);
    texts->addWidget(Label2_);
    auto* top = new QHBoxLayout;
    top->addWidget(picAnimation_, 0, Qt::AlignTop);
    top->addSpacing(12);
    top->addLayout(texts, 1);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addWidget(btnCancel_, 0, Qt::AlignRight);
    setMinimumWidth(360);
    adjustSize();
    PlaceBelowCorner(this, owner);

    Timer1_ = new QTimer(this);
    Timer1_->setObjectName("Timer1");
    Timer1_->setInterval(1000);
    connect(Timer1_, &QTimer::timeout, this, &frmWait::nextPicture);
    Timer1_->start();
}

frmWait::~frmWait() {
    // Whatever the role, the window leaves no collection pending behind it.
    gSession.CollectPending = false;
}

void frmWait::nextPicture() {
    picture_ = (picture_ + 1) % static_cast<int>(pictures_.size());
    picAnimation_->setPixmap(pictures_[static_cast<size_t>(picture_)]);
}

std::array<QPixmap, 6> frmWait::DrawRing(int size) {
    std::array<QPixmap, 6> ring;
    const double centre = size / 2.0;
    const double radius = size * 0.34;
    const double dot = size * 0.11;
    for (size_t lit = 0; lit < ring.size(); ++lit) {
        QPixmap picture(size, size);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        for (size_t i = 0; i < ring.size(); ++i) {
            const double angle = -std::numbers::pi / 2 + 2 * std::numbers::pi * i / ring.size();
            const QPointF at(centre + radius * std::cos(angle), centre + radius * std::sin(angle));
            painter.setBrush(i == lit ? QColor(0, 84, 166) : QColor(190, 200, 215));
            const double r = i == lit ? dot * 1.3 : dot;
            painter.drawEllipse(at, r, r);
        }
        ring[lit] = picture;
    }
    return ring;
}

void frmWait::cancelPressed() {
    if (role_ == Role::Collect) gRun.blnWaitCancelled = true;
}

void frmWait::reject() {
    // Escape is the Cancel button where there is one; the window itself closes when the work
    // behind it is done.
    cancelPressed();
}

void frmWait::closeEvent(QCloseEvent* event) {
    cancelPressed();
    event->ignore();
}

}  // namespace orin::shell
