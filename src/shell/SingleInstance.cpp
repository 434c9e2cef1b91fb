#include "shell/SingleInstance.h"

#include <unistd.h>
#include <QCryptographicHash>
#include <QLocalServer>
#include <QLocalSocket>
#include <QLockFile>

#include "shell/ShellSupport.h"

namespace orin::shell {

namespace {

constexpr int kAnswerMilliseconds = 2000;
const QByteArray kComeForward = "come-forward\n";

QString ServerNameOf(const std::filesystem::path& folder) {
    std::error_code ec;
    std::filesystem::path canonical = std::filesystem::weakly_canonical(folder, ec);
    if (ec) canonical = folder;
    const QByteArray key =
        QByteArray::fromStdString(canonical.string()) + '\0' + QByteArray::number(getuid());
    return QStringLiteral("orin-") +
           QString::fromLatin1(
               QCryptographicHash::hash(key, QCryptographicHash::Sha1).toHex().left(20));
}

}  // namespace

SingleInstance::SingleInstance(const std::filesystem::path& folder, QObject* parent)
    : QObject(parent), serverName_(ServerNameOf(folder)) {
    lock_ = std::make_unique<QLockFile>(Q((folder / "Orin.lock").string()));
    // Only a lock whose owner is gone counts as stale; a running instance never goes stale.
    lock_->setStaleLockTime(0);
    if (lock_->tryLock(0)) {
        Listen();
        return;
    }
    if (lock_->error() == QLockFile::LockFailedError) {
        first_ = false;
        return;
    }
    // No lock to be had in this folder: an instance that answers on the socket is the first.
    QLocalSocket probe;
    probe.connectToServer(serverName_);
    if (probe.waitForConnected(200)) {
        first_ = false;
        return;
    }
    Listen();
}

SingleInstance::~SingleInstance() = default;

void SingleInstance::Listen() {
    server_ = new QLocalServer(this);
    // A socket left behind by an instance that died holds nobody: the lock says so.
    QLocalServer::removeServer(serverName_);
    server_->setSocketOptions(QLocalServer::UserAccessOption);
    server_->listen(serverName_);
    connect(server_, &QLocalServer::newConnection, this, [this] {
        while (QLocalSocket* socket = server_->nextPendingConnection()) {
            connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
            connect(socket, &QLocalSocket::readyRead, this, [this, socket] {
                if (socket->readAll().contains(kComeForward.trimmed())) {
                    emit comeForwardRequested();
                }
            });
        }
    });
}

bool SingleInstance::AskFirstToComeForward() {
    QLocalSocket socket;
    socket.connectToServer(serverName_);
    if (!socket.waitForConnected(kAnswerMilliseconds)) return false;
    socket.write(kComeForward);
    const bool sent = socket.waitForBytesWritten(kAnswerMilliseconds);
    socket.disconnectFromServer();
    return sent;
}

}  // namespace orin::shell
