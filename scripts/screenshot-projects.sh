#!/usr/bin/env bash
# Takes screenshots of the project manager under a virtual display, with a
# client, its sites and plans loaded:
#   projects-no-client.png      the window as it opens, no client chosen
#   projects-site-details.png   tab 1 with the first site on show
#   projects-site-new.png       a new site: the boxes unlocked in light green
#   projects-site-list.png      the site list over the tab
#   projects-project-drawings.png  tab 2, the plan grid
#   projects-new-plan.png       the new plan panel over the grid
#   projects-import-plan.png    the import panel over the grid
#   projects-project-planner.png, projects-project-costs.png  tabs 3 and 4
#   projects-costs-lines.png    tab 4 with five cost lines and their total
#   projects-cost-report.png    the cost report of those lines in the report viewer
#   projects-planner-bookings.png  tab 3 with twenty bookings on five time
#                               lines and the tip of one
#   projects-planner-booking-panel.png  the booking panel over the chart
#   projects-planner-time-line.png  the panel of a new time line
#   projects-client.png         the client window of the chosen client
#   projects-desktop.png        the desktop program with the project manager
#                               opened from the File menu over the main window
#   projects-desktop-site.png   the same after choosing the client by the mouse
#   projects-desktop-drawings.png  and after a click on tab 2
# The first fifteen come from the project manager's view test, which saves each
# window when TESSALY_SHOT_DIR names a folder; the last is the desktop program
# on a home that a script has filled.
# Usage: scripts/screenshot-projects.sh [build-dir] [output-dir]
source "$(dirname "$0")/screenshot-setup.sh"
tests="$PWD/$build/tests/ui/ui_tests"
need_programs "no test program at $tests: build ui_tests first" "$tests"
TESSALY_SHOT_DIR="$out" view_tests "$tests" 'ProjectsView.*'

exe="$PWD/$build/app/tessaly/tessaly"
driver="$PWD/$build/app/script/tessaly-script"
need_programs "build tessaly and tessaly-script for projects-desktop.png" "$exe" "$driver"
temp_home
"$driver" --home "$home" - >/dev/null <<'SCRIPT'
install
start
click frmMain.mnuFile_OpenProject
click frmClientSites.cmdNewClient
type frmNew.txtClient(0) "Harbour Homes Ltd"
type frmNew.txtClient(1) "12 Quay Street"
type frmNew.txtClient(5) "TR1 2AB"
click frmNew.cmdSaveClient
select frmClientSites.cboCilent #0
click frmClientSites.cmdSiteDetailButton(2)
type frmClientSites.txtSiteDetails(11) "Barn Conversion"
type frmClientSites.txtSiteDetails(0) "Old Barn, Trelowen Lane"
type frmClientSites.txtSiteDetails(2) "Truro"
type frmClientSites.txtSiteDetails(4) "TR3 6QB"
click frmClientSites.cmdSiteDetailButton(4)
click frmClientSites.cmdSiteDetailButton(2)
type frmClientSites.txtSiteDetails(11) "Kitchen Extension"
type frmClientSites.txtSiteDetails(0) "4 Fore Street"
click frmClientSites.cmdSiteDetailButton(4)
tab frmClientSites.Tabs1 1
click frmClientSites.cmdNewDrawing
type frmClientSites.txtPlanDesc "Ground Floor"
click frmClientSites.cmdOk
close frmMain
SCRIPT
cat >"$home/shoot.sh" <<'SHOOT'
set -euo pipefail
exe=$1 home=$2 out=$3
source "$4"
start_program "$exe" "$home"
open_project_manager
import -window root "$out/projects-desktop.png"
choose_first_client
import -window root "$out/projects-desktop-site.png"
xdotool mousemove $((X + 150)) $((Y + 104)) click 1
sleep 1
import -window root "$out/projects-desktop-drawings.png"
SHOOT
run_steps "$home/shoot.sh"
ls -l "$out"/projects-*.png
