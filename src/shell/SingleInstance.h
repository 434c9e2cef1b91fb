#pragma once
// One running program per application folder, since the instances would share Orin.ini and
// Event.log. The first instance holds a lock file in the folder and listens on a local socket;
// a second start finds the lock taken, asks the first over the socket to bring its window to
// the front, and ends.

#include <QObject>
#include <QString>
#include <filesystem>
#include <memory>

class QLocalServer;
class QLockFile;

namespace orin::shell {

class SingleInstance : public QObject {
    Q_OBJECT
  public:
    explicit SingleInstance(const std::filesystem::path& folder, QObject* parent = nullptr);
    ~SingleInstance() override;

    // True when no other instance runs for this folder (or when that can't be told, as in a
    // folder that is read-only: then the program starts rather than refuse).
    bool IsFirst() const { return first_; }

    // A second instance: asks the first to come forward. True when it took the message.
    bool AskFirstToComeForward();

    // The socket name of the folder's instance.
    const QString& serverName() const { return serverName_; }

  signals:
    void comeForwardRequested();

  private:
    void Listen();

    QString serverName_;
    std::unique_ptr<QLockFile> lock_;
    QLocalServer* server_ = nullptr;
    bool first_ = true;
};

}  // namespace orin::shell
