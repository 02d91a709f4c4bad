#pragma once

namespace tessaly::script {
class Registry;
}

namespace tessaly::schedule {

// The schedule control's part of the script driver: `schedule NAME ACTION ...`,
// what the user does with the mouse on a schedule (draw, change, activate,
// point, select), each raising its event as the mouse would.
void addScheduleScriptCommands(script::Registry& registry);

} // namespace tessaly::schedule
