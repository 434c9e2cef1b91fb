#pragma once
// A TCP relay on a loopback address for tests: it stands where a DC's port would be, passes
// each connection on to the test DC's real port on 127.0.0.1 and keeps every byte it carried,
// so that a test can look at what went over the wire. With no target it closes every
// connection at once, as a DC does on a port where it has nothing to offer (LDAPS without a
// certificate).

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace orin::test {

class TcpRelay {
  public:
    TcpRelay(const char* address, int port, int targetPort) : targetPort_(targetPort) {
        listener_ = socket(AF_INET, SOCK_STREAM, 0);
        int on = 1;
        setsockopt(listener_, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
        sockaddr_in at = Address(address, port);
        if (listener_ < 0 || bind(listener_, reinterpret_cast<sockaddr*>(&at), sizeof at) != 0 ||
            listen(listener_, 16) != 0) {
            if (listener_ >= 0) close(listener_);
            listener_ = -1;
            return;
        }
        thread_ = std::thread([this] { Run(); });
    }
    ~TcpRelay() {
        stop_ = true;
        if (thread_.joinable()) thread_.join();
        if (listener_ >= 0) close(listener_);
    }
    TcpRelay(const TcpRelay&) = delete;
    TcpRelay& operator=(const TcpRelay&) = delete;

    bool ok() const { return listener_ >= 0; }
    int Accepted() const {
        std::lock_guard lock(mutex_);
        return accepted_;
    }
    std::string FromClients() const {
        std::lock_guard lock(mutex_);
        return fromClients_;
    }
    std::string FromServer() const {
        std::lock_guard lock(mutex_);
        return fromServer_;
    }

  private:
    struct Pair {
        int client;
        int server;
    };

    static sockaddr_in Address(const char* address, int port) {
        sockaddr_in at{};
        at.sin_family = AF_INET;
        at.sin_port = htons(static_cast<uint16_t>(port));
        inet_pton(AF_INET, address, &at.sin_addr);
        return at;
    }

    void Accept() {
        int client = accept(listener_, nullptr, nullptr);
        if (client < 0) return;
        {
            std::lock_guard lock(mutex_);
            ++accepted_;
        }
        int server = targetPort_ ? socket(AF_INET, SOCK_STREAM, 0) : -1;
        sockaddr_in target = Address("127.0.0.1", targetPort_);
        if (server < 0 ||
            connect(server, reinterpret_cast<sockaddr*>(&target), sizeof target) != 0) {
            if (server >= 0) close(server);
            close(client);
            return;
        }
        pairs_.push_back({client, server});
    }

    // Moves what `from` has to `to`; false when `from` is done.
    bool Pass(int from, int to, std::string& log) {
        char buffer[16384];
        ssize_t n = recv(from, buffer, sizeof buffer, 0);
        if (n <= 0) return false;
        {
            std::lock_guard lock(mutex_);
            log.append(buffer, static_cast<size_t>(n));
        }
        for (ssize_t sent = 0; sent < n;) {
            ssize_t m = send(to, buffer + sent, static_cast<size_t>(n - sent), MSG_NOSIGNAL);
            if (m <= 0) return false;
            sent += m;
        }
        return true;
    }

    void Run() {
        while (!stop_) {
            std::vector<pollfd> fds = {{listener_, POLLIN, 0}};
            for (const Pair& p : pairs_) {
                fds.push_back({p.client, POLLIN, 0});
                fds.push_back({p.server, POLLIN, 0});
            }
            if (poll(fds.data(), fds.size(), 100) <= 0) continue;
            std::vector<Pair> open;
            for (size_t i = 0; i < pairs_.size(); ++i) {
                const Pair& p = pairs_[i];
                bool alive = true;
                if (fds[1 + 2 * i].revents) alive = Pass(p.client, p.server, fromClients_);
                if (alive && fds[2 + 2 * i].revents) alive = Pass(p.server, p.client, fromServer_);
                if (alive) {
                    open.push_back(p);
                } else {
                    close(p.client);
                    close(p.server);
                }
            }
            pairs_ = std::move(open);
            if (fds[0].revents & POLLIN) Accept();
        }
        for (const Pair& p : pairs_) {
            close(p.client);
            close(p.server);
        }
    }

    int listener_ = -1;
    int targetPort_;
    std::atomic<bool> stop_{false};
    mutable std::mutex mutex_;
    std::string fromClients_, fromServer_;
    int accepted_ = 0;
    std::vector<Pair> pairs_;  // the relay's thread only
    std::thread thread_;
};

}  // namespace orin::test
