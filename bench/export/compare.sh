#!/usr/bin/env bash
# The export speed of tessaly-export side by side with LibreCAD's dxf2pdf and
# Inkscape's command line, whole processes on the same plan in its three
# forms (make_plan.py): the plan as .pdr for Tessaly, as DXF for LibreCAD and
# as SVG for Inkscape. Prints a table of wall time and peak memory (GNU time)
# with each command. Installs LibreCAD and Inkscape from Debian when missing;
# they are needed for this comparison only.
#
# Usage: bench/export/compare.sh [--build DIR] [--shapes N] [--skip-slow]
#   --skip-slow leaves out Inkscape's PDF export, which takes many minutes.
set -euo pipefail
cd "$(dirname "$0")/../.."
build=build
shapes=100000
slow=1
while [ $# -gt 0 ]; do
  case $1 in
    --build) build=$2; shift 2 ;;
    --shapes) shapes=$2; shift 2 ;;
    --skip-slow) slow=0; shift ;;
    *) echo "usage: $0 [--build DIR] [--shapes N] [--skip-slow]" >&2; exit 2 ;;
  esac
done
exe="$PWD/$build/app/export/tessaly-export"
[ -x "$exe" ] || { echo "no converter at $exe: build tessaly-export first" >&2; exit 1; }

missing=()
command -v librecad >/dev/null || missing+=(librecad)
command -v inkscape >/dev/null || missing+=(inkscape)
[ -x /usr/bin/time ] || missing+=(time)
if [ ${#missing[@]} -gt 0 ]; then
  SUDO=""
  [ "$(id -u)" -ne 0 ] && SUDO=sudo
  export DEBIAN_FRONTEND=noninteractive
  $SUDO apt-get update -qq
  $SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
python3 bench/export/make_plan.py --shapes "$shapes" "$work/plan"
python3 bench/export/make_plan.py --shapes 1000000 "$work/million"
export QT_QPA_PLATFORM=offscreen
# Inkscape's export of 8192 pixels across the A1 sheet: its dpi.
inkscape_dpi=$(python3 -c 'print(round(8192 / (841 / 25.4), 2))')

results=()
# Runs a command under GNU time; records "label|seconds|peak MB|command".
measure() {
  local label=$1 output=$2
  shift 2
  rm -f "$output" "$work/time"
  local seconds=failed kb=0
  if /usr/bin/time -o "$work/time" -f '%e %M' "$@" >/dev/null 2>"$work/err" && [ -s "$output" ]; then
    read -r seconds kb <"$work/time"
  else
    echo "$label failed: $(tail -3 "$work/err")" >&2
  fi
  results+=("$label|$seconds|$((kb / 1024))|$*")
  echo "$label: $seconds s" >&2
}

p="$work/plan"
t=(env QT_QPA_PLATFORM=offscreen "$exe" --home "$work/home")
measure "Tessaly PDF" "$p/t.pdf" "${t[@]}" "$p/plan.pdr" "$p/t.pdf"
measure "Tessaly TIFF 300 dpi" "$p/t.tiff" "${t[@]}" "$p/plan.pdr" "$p/t.tiff"
measure "Tessaly PNG 8192 px" "$p/t.png" "${t[@]}" --dpi "$inkscape_dpi" "$p/plan.pdr" "$p/t.png"
measure "Tessaly EMF" "$p/t.emf" "${t[@]}" "$p/plan.pdr" "$p/t.emf"
measure "Tessaly WMF" "$p/t.wmf" "${t[@]}" "$p/plan.pdr" "$p/t.wmf"
measure "Tessaly SVG" "$p/t.svg" "${t[@]}" "$p/plan.pdr" "$p/t.svg"
measure "Tessaly PDF, 1,000,000 shapes" "$work/million/t.pdf" "${t[@]}" "$work/million/plan.pdr" "$work/million/t.pdf"
measure "LibreCAD dxf2pdf" "$p/plan.pdf" env QT_QPA_PLATFORM=offscreen librecad dxf2pdf -a -t "$p" "$p/plan.dxf"
i=(inkscape)
measure "Inkscape PNG 8192 px" "$p/i.png" "${i[@]}" --export-type=png --export-dpi="$inkscape_dpi" --export-filename="$p/i.png" "$p/plan.svg"
measure "Inkscape EMF" "$p/i.emf" "${i[@]}" --export-type=emf --export-filename="$p/i.emf" "$p/plan.svg"
measure "Inkscape WMF" "$p/i.wmf" "${i[@]}" --export-type=wmf --export-filename="$p/i.wmf" "$p/plan.svg"
measure "Inkscape plain SVG" "$p/i.svg" "${i[@]}" --export-type=svg --export-plain-svg --export-filename="$p/i.svg" "$p/plan.svg"
if [ "$slow" = 1 ]; then
  measure "Inkscape PDF" "$p/i.pdf" "${i[@]}" --export-type=pdf --export-filename="$p/i.pdf" "$p/plan.svg"
fi

echo
echo "Plan: $shapes shapes (lines, rectangles, text, hatched rectangles) on an A1 sheet; $(nproc) cores."
echo
echo "| Export | Wall time (s) | Peak memory (MB) | Command |"
echo "|---|---|---|---|"
for r in "${results[@]}"; do
  IFS='|' read -r label seconds mb command <<<"$r"
  command=${command//$work/\$WORK}
  command=${command//$PWD\//}
  echo "| $label | $seconds | $mb | \`$command\` |"
done
