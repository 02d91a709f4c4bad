#pragma once

#include "core/app/CoreApplication.h"

namespace tessaly {

// The whole of Tessaly's module-level state: the core's, plus what the
// drawing workspace shares. It registers every window of the program.
class Application final : public CoreApplication {
public:
    Application(UiPort& ui, Waiter& waiter, AppHome home);
    ~Application() override;

private:
    void registerForms();
};

} // namespace tessaly
