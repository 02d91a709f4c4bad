#!/usr/bin/env bash
# Takes pictures of the schedule's window under a virtual display:
#   schedule-days.png    twenty bookings on five rows at the scale of days,
#                        overlapping bookings stacked in their rows, one
#                        selected, and the tip of the booking under the pointer.
#   schedule-hours.png   the same zoomed in to hours.
#   schedule-weeks.png   zoomed out to weeks.
#   schedule-months.png  zoomed out to months over a longer range.
#   schedule-print.png   the first page of the chart's print, two pages across.
# The window is built by the schedule showcase test of the view layer, which
# saves its pictures in the folder that TESSALY_SHOT_DIR names.
# Usage: scripts/screenshot-schedule.sh [build-dir] [output-dir]
source "$(dirname "$0")/screenshot-setup.sh"
exe="$PWD/$build/tests/ui/ui_tests"
need_programs "no test program at $exe: build ui_tests first" "$exe"
TESSALY_SHOT_DIR="$out" view_tests "$exe" 'ScheduleShowcase.*'
# The print's first page at 60 dots an inch.
pdftoppm -png -r 60 -f 1 -l 1 -singlefile "$out/schedule-print.pdf" "$out/schedule-print"
rm -f "$out/schedule-print.pdf"
ls -l "$out"/schedule-*.png
