# Steps shared by the scripts that drive the desktop program under a virtual
# display with xdotool. Source this file inside the display's shell.

# Starts the program on HOME and waits for its main window; the program is
# stopped when the calling shell exits. Usage: launch_program EXE HOME
launch_program() {
  "$1" --home "$2" &
  program_pid=$!
  trap 'kill "$program_pid" 2>/dev/null || true' EXIT
  xdotool search --sync --onlyvisible --name '^Tessaly - ' >/dev/null
  sleep 1
}

# The same in the en_GB locale. Usage: start_program EXE HOME
start_program() {
  LC_ALL=en_GB.UTF-8 LANG=en_GB.UTF-8 launch_program "$1" "$2"
}

# Opens the project manager from the main window's File menu (its second
# entry "Project Files", then that entry's first) and leaves the manager's
# window id in `manager` and its geometry in X and Y.
open_project_manager() {
  local main
  main=$(xdotool search --onlyvisible --name '^Tessaly - ' | head -1)
  eval "$(xdotool getwindowgeometry --shell "$main")"
  xdotool mousemove $((X + 18)) $((Y + 10)) click 1
  sleep 0.5
  xdotool key Down Down Right Return
  xdotool search --sync --onlyvisible --name '^Clients And Site Details$' >/dev/null
  sleep 1
  manager=$(xdotool search --onlyvisible --name '^Clients And Site Details$' | head -1)
  eval "$(xdotool getwindowgeometry --shell "$manager")"
}

# Chooses the first client of the manager's combo: a click opens the list,
# a key chooses.
choose_first_client() {
  xdotool mousemove $((X + 150)) $((Y + 72)) click 1
  sleep 0.5
  xdotool key Down Return
  sleep 1
}
