#pragma once
// frmProgress: the modal window of a running batch. It shows the run's title, a status line
// (red after a cancel), the total, three counters, a progress bar and one button, Command1,
// which is "ｷｬﾝｾﾙ" while the run works and "OK" once it has ended. The run itself works on a
// worker thread and reaches these controls through the Qt operator.

#include <QDialog>

class QGroupBox;
class QLabel;
class QProgressBar;
class QPushButton;

namespace orin::shell {

class frmProgress : public QDialog {
    Q_OBJECT
  public:
    explicit frmProgress(QWidget* owner);

    // The setters of the operator interface, on the window thread.
    void SetTitle(const QString& caption);
    void SetStatus(const QString& text, bool red);
    void SetCounterCaptions(const QString& first, const QString& second);
    void SetTotal(int total);
    void SetCounters(int label6, int label7, int label8);
    void SetProgressValue(int value);
    void SetCommandCaption(const QString& caption);

    // Tells the window whether its run is still working: while it is, "OK" does not close it,
    // since the run may still write its summary and ask its closing question.
    void SetRunWorking(bool working) { working_ = working; }
    bool runWorking() const { return working_; }

    // Command1: "ｷｬﾝｾﾙ" sets gRun.intCancel, which the row loop tests at its next line;
    // "OK" closes the window once the run has ended.
    void Command1Pressed();

  protected:
    void reject() override;
    void closeEvent(QCloseEvent* event) override;

  private:
    QLabel* Label1_;
    QLabel* Label2_;
    QLabel* Label3_;
    QLabel* Label4_;
    QLabel* Label5_;
    QLabel* Label6_;
    QLabel* Label7_;
    QLabel* Label8_;
    QLabel* Label9_;
    QProgressBar* ProgressBar1_;
    QGroupBox* Frame1_;
    QPushButton* Command1_;
    bool working_ = false;
};

}  // namespace orin::shell
