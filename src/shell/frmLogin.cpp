#include "shell/frmLogin.h"

#include <QCheckBox>
#include <QEvent>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include "base/Operator.h"
#include "directory/DirectorySession.h"
#include "directory/Paths.h"
#include "platform/Strings.h"
#include "shell/ShellSupport.h"

namespace orin::shell {

namespace {

constexpr const char* kTitle = "ﾄﾞﾒｲﾝ接続";

QLineEdit* NamedEdit(const char* name, QWidget* parent) {
    auto* edit = new QLineEdit(parent);
    edit->setObjectName(name);
    edit->setMinimumWidth(220);
    return edit;
}

std::string Trimmed(const QLineEdit* edit) {
    return Trim(S(edit->text()));
}

}  // namespace

frmLogin::frmLogin(QWidget* owner) : QDialog(owner) {
    setObjectName("frmLogin");
    setWindowTitle(Q(kTitle));
    setWindowModality(Qt::WindowModal);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);

    fraConnectMethod_ = new QGroupBox(Q("ﾄﾞﾒｲﾝ接続方式"), this);
    fraConnectMethod_->setObjectName("fraConnectMethod");
    optLocal_ = new QRadioButton(Q("現在ﾛｸﾞｵﾝ中のﾕｰｻﾞｰでﾛｰｶﾙｺﾝﾋﾟｭｰﾀに接続する"), fraConnectMethod_);
    optLocal_->setObjectName("optConnectMethod(0)");
    optRemote_ = new QRadioButton(Q("ﾕｰｻﾞｰを指定してﾘﾓｰﾄｺﾝﾋﾟｭｰﾀに接続する"), fraConnectMethod_);
    optRemote_->setObjectName("optConnectMethod(1)");
    auto* methods = new QVBoxLayout(fraConnectMethod_);
    methods->addWidget(optLocal_);
    methods->addWidget(optRemote_);

    fraLogin_ = new QGroupBox(Q("ﾛｸﾞｵﾝ認証"), this);
    fraLogin_->setObjectName("fraLogin");
    txtDomainDNSName_ = NamedEdit("txtDomainDNSName", fraLogin_);
    txtDomainNetBIOSName_ = NamedEdit("txtDomainNetBIOSName", fraLogin_);
    txtDCName_ = NamedEdit("txtDCName", fraLogin_);
    txtUserName_ = NamedEdit("txtUserName", fraLogin_);
    txtPassword_ = NamedEdit("txtPassword", fraLogin_);
    txtPassword_->setEchoMode(QLineEdit::Password);
    auto* fields = new QFormLayout(fraLogin_);
    fields->addRow(Q("ﾄﾞﾒｲﾝの完全なDNS名："), txtDomainDNSName_);
    fields->addRow(Q("ﾄﾞﾒｲﾝのNetBIOS名："), txtDomainNetBIOSName_);
    fields->addRow(Q("ﾄﾞﾒｲﾝｺﾝﾄﾛｰﾗｻｰﾊﾞｰ名："), txtDCName_);
    fields->addRow(Q("ﾄﾞﾒｲﾝ管理者ﾕｰｻﾞｰ名："), txtUserName_);
    fields->addRow(Q("ﾄﾞﾒｲﾝ管理者ﾊﾟｽﾜｰﾄﾞ："), txtPassword_);

    chkNeverShowAgain_ = new QCheckBox(Q("次回からは同じ方法で接続しこの画面を表示しない"), this);
    chkNeverShowAgain_->setObjectName("chkNeverShowAgain");

    cmdOK_ = new QPushButton(Q("接続"), this);
    cmdOK_->setObjectName("cmdOK");
    cmdOK_->setDefault(true);
    cmdCancel_ = new QPushButton(Q("ｷｬﾝｾﾙ"), this);
    cmdCancel_->setObjectName("cmdCancel");
    connect(cmdOK_, &QPushButton::clicked, this, &frmLogin::cmdOKPressed);
    connect(cmdCancel_, &QPushButton::clicked, this, &frmLogin::cmdCancelPressed);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cmdOK_);
    buttons->addWidget(cmdCancel_);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(fraConnectMethod_);
    layout->addWidget(fraLogin_);
    layout->addWidget(chkNeverShowAgain_);
    layout->addLayout(buttons);

    // The load step: the names always, the DC, user and password only when there is one, so
    // that a password typed earlier in this process comes back.
    txtDomainDNSName_->setText(Q(gSession.DomainDNSName));
    txtDomainNetBIOSName_->setText(Q(gSession.DomainNetBIOSName));
    if (!gSession.DcComputerName.empty()) txtDCName_->setText(Q(gSession.DcComputerName));
    if (!gSession.UserName.empty()) txtUserName_->setText(Q(gSession.UserName));
    if (!gSession.Password.empty()) txtPassword_->setText(Q(gSession.Password));

    const bool local = EqualsIgnoreCase(gSession.Method, "LOCAL");
    (local ? optLocal_ : optRemote_)->setChecked(true);
    EnableRemoteFields(!local);
    connect(optLocal_, &QRadioButton::clicked, this, [this] { EnableRemoteFields(false); });
    connect(optRemote_, &QRadioButton::clicked, this, [this] { EnableRemoteFields(true); });
    chkNeverShowAgain_->setChecked(gSession.NeverShowAgain);

    adjustSize();
    PlaceBelowCorner(this, owner);
}

void frmLogin::ShowModal() {
    exec();
}

void frmLogin::EnableRemoteFields(bool remote) {
    for (QLineEdit* edit : {txtDCName_, txtUserName_, txtPassword_}) edit->setEnabled(remote);
}

bool frmLogin::event(QEvent* event) {
    if (event->type() == QEvent::WindowActivate) Activated();
    return QDialog::event(event);
}

void frmLogin::Activated() {
    cmdOK_->setText(Q(gSession.LoginFromMenu ? "適用" : "接続"));
    // The user name is left out on purpose: an empty one is often meant (local method).
    for (QLineEdit* edit : {txtDomainDNSName_, txtDomainNetBIOSName_, txtDCName_, txtPassword_}) {
        if (!Trimmed(edit).empty()) continue;
        if (edit->isEnabled()) edit->setFocus();
        return;
    }
    txtDomainDNSName_->setFocus();
}

void frmLogin::Refuse(const char* message) {
    TheOperator().MessageBox(kTitle, message, MsgIcon::Exclamation, MsgButtons::Ok);
}

void frmLogin::cmdOKPressed() {
    gSession.LoginFromMenu = false;
    gSession.DomainDNSName = Trimmed(txtDomainDNSName_);
    gSession.DomainNetBIOSName = Trimmed(txtDomainNetBIOSName_);
    gSession.DcComputerName = Trimmed(txtDCName_);
    gSession.UserName = Trimmed(txtUserName_);
    gSession.Password = Trimmed(txtPassword_);

    if (gSession.DomainDNSName.empty()) {
        Refuse("ﾄﾞﾒｲﾝの完全なDNS名を入力してください｡");
        return;
    }
    gSession.DomainDN = BuildDomainDN(gSession.DomainDNSName);
    if (gSession.DomainNetBIOSName.empty()) {
        Refuse("ﾄﾞﾒｲﾝのNetBIOS名を入力してください｡");
        return;
    }
    if (txtDCName_->isEnabled() && gSession.DcComputerName.empty()) {
        Refuse("ﾄﾞﾒｲﾝｺﾝﾄﾛｰﾗｻｰﾊﾞｰ名を入力してください｡");
        return;
    }
    if (txtUserName_->isEnabled() && gSession.UserName.empty()) {
        Refuse("ﾄﾞﾒｲﾝ管理者ﾕｰｻﾞｰ名を入力してください｡");
        return;
    }
    gSession.Method = optLocal_->isChecked() ? "local" : "remote";
    gSession.NeverShowAgain = chkNeverShowAgain_->isChecked();
    hide();
}

void frmLogin::cmdCancelPressed() {
    gSession.LoginCancelled = true;
    gSession.LoginFromMenu = false;
    gSession.Connected = false;
    hide();
}

void frmLogin::reject() {
    cmdCancelPressed();
}

}  // namespace orin::shell
