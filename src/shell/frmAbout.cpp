#include "shell/frmAbout.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSysInfo>
#include <QVBoxLayout>
#include <QtGlobal>

#include "base/Operator.h"
#include "platform/LibraryVersions.h"
#include "shell/ShellSupport.h"

namespace orin::shell {

frmAbout::frmAbout(QWidget* owner) : QDialog(owner) {
    setObjectName("frmAbout");
    setWindowTitle(Q("ﾊﾞｰｼﾞｮﾝ情報"));
    setWindowModality(Qt::WindowModal);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);

    lblTitle_ = new QLabel(Q("ORIN  管理ｺﾝｿｰﾙ"), this);
    lblTitle_->setObjectName("lblTitle");
    QFont titleFont = lblTitle_->font();
    titleFont.setPointSizeF(titleFont.pointSizeF() * 1.6);
    titleFont.setBold(true);
    lblTitle_->setFont(titleFont);
    lblVersion_ = new QLabel(VersionText(), this);
    lblVersion_->setObjectName("lblVersion");

    cmdOK_ = new QPushButton(Q("OK"), this);
    cmdOK_->setObjectName("cmdOK");
    cmdOK_->setDefault(true);
    cmdSysInfo_ = new QPushButton(Q("ｼｽﾃﾑ情報(&S)..."), this);
    cmdSysInfo_->setObjectName("cmdSysInfo");
    connect(cmdOK_, &QPushButton::clicked, this, &QDialog::accept);
    connect(cmdSysInfo_, &QPushButton::clicked, this, &frmAbout::cmdSysInfoPressed);

    auto* buttons = new QVBoxLayout;
    buttons->addWidget(cmdOK_);
    buttons->addWidget(cmdSysInfo_);
    buttons->addStretch(1);
    auto* texts = new QVBoxLayout;
    texts->addWidget(lblTitle_);
    texts->addWidget(lblVersion_);
    texts->addStretch(1);
    auto* layout = new QHBoxLayout(this);
    layout->addLayout(texts, 1);
    layout->addSpacing(24);
    layout->addLayout(buttons);
    setMinimumWidth(420);
    adjustSize();
    CentreOn(this, owner);
}

QString frmAbout::VersionText() {
    return Q("ﾊﾞｰｼﾞｮﾝ ") + QStringLiteral("%1.%2.%3")
                               .arg(ORIN_VERSION_MAJOR)
                               .arg(ORIN_VERSION_MINOR)
                               .arg(ORIN_VERSION_PATCH);
}

QString frmAbout::SystemInformation() {
    QStringList lines;
    lines << QStringLiteral("OS: %1 (%2 %3, %4)")
                 .arg(QSysInfo::prettyProductName(), QSysInfo::kernelType(),
                      QSysInfo::kernelVersion(), QSysInfo::currentCpuArchitecture());
    lines << QStringLiteral("Qt: %1").arg(QString::fromLatin1(qVersion()));
    for (const auto& [library, version] : platform::LibraryVersions()) {
        lines << Q(library) + QStringLiteral(": ") + Q(version);
    }
    return lines.join(QLatin1Char('\n'));
}

void frmAbout::cmdSysInfoPressed() {
    TheOperator().MessageBox("ｼｽﾃﾑ情報", S(SystemInformation()), MsgIcon::Information,
                             MsgButtons::Ok);
}

}  // namespace orin::shell
