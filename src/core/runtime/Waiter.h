#pragma once

#include <functional>
#include <vector>

namespace tessaly {

// Every Sleep of Tessaly goes through a waiter. The desktop blocks for real;
// tests and the script driver record the wait and go on at once.
class Waiter {
public:
    virtual ~Waiter() = default;
    virtual void sleep(int milliseconds) = 0;
};

class RealWaiter final : public Waiter {
public:
    void sleep(int milliseconds) override;
};

class RecordingWaiter final : public Waiter {
public:
    void sleep(int milliseconds) override;

    std::vector<int> waits;                  // every wait in the order asked
    std::function<void(int)> onSleep;        // told of each wait, for the script's event lines
};

} // namespace tessaly
