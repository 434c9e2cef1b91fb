#pragma once
// frmWait: the small modal window that shows while the program connects to the domain or
// collects the objects of an export. A ring of six pictures turns once a second so that the
// operator sees the program is alive; the work itself runs on a worker thread (QtOperator).

#include <QDialog>
#include <QPixmap>
#include <array>

class QLabel;
class QPushButton;
class QTimer;

namespace orin::shell {

class frmWait : public QDialog {
    Q_OBJECT
  public:
    enum class Role {
        Connect,  // "ﾄﾞﾒｲﾝに接続中": a connection cannot be cancelled
        Collect   // the run's title: Cancel sets gRun.blnWaitCancelled
    };

    frmWait(Role role, const QString& runTitle, QWidget* owner);
    ~frmWait() override;

    Role role() const { return role_; }
    // The picture of the ring that shows now, 0 to 5.
    int pictureIndex() const { return picture_; }
    // Steps the ring on by one picture; Timer1 calls it every 1000 ms.
    void nextPicture();

    // The six pictures of the ring, drawn in code: six dots on a circle, one of them lit.
    static std::array<QPixmap, 6> DrawRing(int size);

  protected:
    void reject() override;
    void closeEvent(QCloseEvent* event) override;

  private:
    void cancelPressed();

    Role role_;
    int picture_ = 0;
    std::array<QPixmap, 6> pictures_;
    QLabel* picAnimation_;
    QLabel* Label1_;
    QLabel* Label2_;
    QPushButton* btnCancel_;
    QTimer* Timer1_;
};

}  // namespace orin::shell
