#pragma once
// frmLogin, "ﾄﾞﾒｲﾝ接続": asks how to reach the domain (the logged-on user on this computer, or a
// named DC with a user name and password) and leaves the answers in gSession. It never
// connects: the run's wait window does that. Opened by a run before it connects and from the
// menu entry "ﾄﾞﾒｲﾝ接続(&D)" to edit the settings only.

#include <QDialog>

class QCheckBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;

namespace orin::shell {

class frmLogin : public QDialog {
    Q_OBJECT
  public:
    // Loads the dialog from gSession: the text boxes, the method and the check box.
    explicit frmLogin(QWidget* owner);

    // Shows the dialog modally over its owner and returns when it has hidden.
    void ShowModal();

    void cmdOKPressed();
    void cmdCancelPressed();

  protected:
    bool event(QEvent* event) override;
    void reject() override;

  private:
    // The radio buttons' switch: the DC, user and password boxes serve the remote method only.
    void EnableRemoteFields(bool remote);
    // Caption of cmdOK, and the focus on the first box that still needs filling in.
    void Activated();
    // Shows a validation message over the dialog; the dialog stays open.
    void Refuse(const char* message);

    QGroupBox* fraConnectMethod_;
    QRadioButton* optLocal_;
    QRadioButton* optRemote_;
    QGroupBox* fraLogin_;
    QLineEdit* txtDomainDNSName_;
    QLineEdit* txtDomainNetBIOSName_;
    QLineEdit* txtDCName_;
    QLineEdit* txtUserName_;
    QLineEdit* txtPassword_;
    QCheckBox* chkNeverShowAgain_;
    QPushButton* cmdOK_;
    QPushButton* cmdCancel_;
};

}  // namespace orin::shell
