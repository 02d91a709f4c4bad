#pragma once

#include <atomic>
#include <thread>

namespace tessaly::projects::test {

// A relay on a loopback port that passes each connection through to a server,
// on a thread of its own; `cut` drops every connection at once and takes no
// new ones, as a server that goes away does.
class TcpRelay {
public:
    explicit TcpRelay(int serverPort);
    ~TcpRelay();
    TcpRelay(const TcpRelay&) = delete;
    TcpRelay& operator=(const TcpRelay&) = delete;

    int port() const { return port_; }
    void cut();

private:
    void run();
    int connectToServer() const;

    int serverPort_;
    int listener_ = -1;
    int port_ = 0;
    int wake_[2] = {-1, -1}; // a pipe that wakes the relay's thread to stop
    std::atomic<bool> stopping_{false};
    std::thread thread_;
};

} // namespace tessaly::projects::test
