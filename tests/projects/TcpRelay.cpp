#include "TcpRelay.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <map>
#include <vector>

namespace tessaly::projects::test {

namespace {
constexpr int BufferSize = 16384; // bytes passed on per read
constexpr int Backlog = 16;       // connections waiting to be accepted

sockaddr_in loopback(int port) {
    sockaddr_in a{};
    a.sin_family = AF_INET;
    a.sin_port = htons(static_cast<uint16_t>(port));
    a.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return a;
}
} // namespace

TcpRelay::TcpRelay(int serverPort) : serverPort_(serverPort) {
    listener_ = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in a = loopback(0);
    ::bind(listener_, reinterpret_cast<sockaddr*>(&a), sizeof a);
    ::listen(listener_, Backlog);
    socklen_t length = sizeof a;
    ::getsockname(listener_, reinterpret_cast<sockaddr*>(&a), &length);
    port_ = ntohs(a.sin_port);
    if (::pipe(wake_) != 0)
        wake_[0] = wake_[1] = -1;
    thread_ = std::thread([this] { run(); });
}

TcpRelay::~TcpRelay() {
    cut();
    if (thread_.joinable())
        thread_.join();
    for (int fd : {listener_, wake_[0], wake_[1]})
        if (fd >= 0)
            ::close(fd);
}

int TcpRelay::connectToServer() const {
    const int fd = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in a = loopback(serverPort_);
    if (::connect(fd, reinterpret_cast<sockaddr*>(&a), sizeof a) != 0) {
        ::close(fd);
        return -1;
    }
    return fd;
}

void TcpRelay::cut() {
    if (stopping_.exchange(true))
        return;
    const char stop = 's';
    if (wake_[1] >= 0 && ::write(wake_[1], &stop, 1) < 0)
        return;
}

void TcpRelay::run() {
    std::map<int, int> peer; // each socket and the one it passes to
    std::array<char, BufferSize> buffer{};
    while (!stopping_) {
        std::vector<pollfd> fds{{listener_, POLLIN, 0}, {wake_[0], POLLIN, 0}};
        for (const auto& [fd, other] : peer)
            fds.push_back({fd, POLLIN, 0});
        if (::poll(fds.data(), fds.size(), -1) < 0)
            break;
        if (stopping_)
            break;
        if (fds[0].revents & POLLIN) {
            const int client = ::accept(listener_, nullptr, nullptr);
            const int server = connectToServer();
            if (client >= 0 && server >= 0) {
                peer[client] = server;
                peer[server] = client;
            } else {
                for (int fd : {client, server})
                    if (fd >= 0)
                        ::close(fd);
            }
        }
        for (std::size_t i = 2; i < fds.size(); ++i) {
            if (!(fds[i].revents & (POLLIN | POLLHUP | POLLERR)) || !peer.contains(fds[i].fd))
                continue;
            const int from = fds[i].fd;
            const int to = peer[from];
            const ssize_t n = ::read(from, buffer.data(), buffer.size());
            if (n <= 0 || ::write(to, buffer.data(), static_cast<size_t>(n)) != n) {
                ::close(from);
                ::close(to);
                peer.erase(from);
                peer.erase(to);
            }
        }
    }
    // Gone: every connection is dropped.
    for (const auto& [fd, other] : peer) {
        ::shutdown(fd, SHUT_RDWR);
        ::close(fd);
    }
}

} // namespace tessaly::projects::test
