#pragma once

#include <cstdint>

namespace tessaly {

// The project manager's module-level state, shared by its windows and
// reachable by name (gIsNewClient, gCurrentClientID).
struct ProjectsModule {
    // Set by the project manager before the client window opens: -1 to add a client, 0 to edit one.
    int16_t gIsNewClient = 0;
    // The client chosen in the project manager; 0 before any choice.
    int32_t gCurrentClientID = 0;
};

} // namespace tessaly
