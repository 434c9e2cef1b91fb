#pragma once
// frmAbout, "ﾊﾞｰｼﾞｮﾝ情報": the program's title and version, and the system information
// (operating system, Qt and the directory libraries) on a button.

#include <QDialog>

class QLabel;
class QPushButton;

namespace orin::shell {

class frmAbout : public QDialog {
    Q_OBJECT
  public:
    explicit frmAbout(QWidget* owner);

    // "ﾊﾞｰｼﾞｮﾝ 0.1.0": the major, minor and revision numbers joined by ".".
    static QString VersionText();
    // The lines that "ｼｽﾃﾑ情報(&S)..." shows.
    static QString SystemInformation();

  private:
    void cmdSysInfoPressed();

    QLabel* lblTitle_;
    QLabel* lblVersion_;
    QPushButton* cmdOK_;
    QPushButton* cmdSysInfo_;
};

}  // namespace orin::shell
