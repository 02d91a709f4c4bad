#pragma once

namespace tessaly::script {
class Registry;
}

namespace tessaly {

// The drawing workspace's part of the script driver: `canvas NAME ACTION ...`
// (mouse and key input to a canvas, in page millimetres) and `print shapes NAME`.
void addWorkspaceScriptCommands(script::Registry& registry);

} // namespace tessaly
