#!/usr/bin/env bash
# Renders every export of the sample plan (bench/export/make_plan.py
# --sample), landscape and portrait, to PNG pictures in docs/exports/, each
# through a reader that shares no code with Tessaly: pdftoppm for the PDF,
# ImageMagick for the TIFF and BMP, emf2svg-conv and wmf2svg for the
# metafiles and rsvg-convert for the SVGs.
# Usage: scripts/export-pictures.sh [build-dir] [output-dir]
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:-build}
out=${2:-docs/exports}
exe="$PWD/$build/app/export/tessaly-export"
[ -x "$exe" ] || { echo "no converter at $exe: build tessaly-export first" >&2; exit 1; }
mkdir -p "$out"
out=$(cd "$out" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export QT_QPA_PLATFORM=offscreen
# libwmf looks for the PostScript fonts: they are mapped to Liberation.
fonts=/usr/share/fonts/truetype/liberation2
for f in Helvetica:LiberationSans-Regular Helvetica-Bold:LiberationSans-Bold Times-Roman:LiberationSerif-Regular \
         Courier:LiberationMono-Regular Symbol:LiberationSans-Regular; do
  echo "/${f%%:*} ($fonts/${f#*:}.ttf) ;" >>"$work/fontmap"
done

for side in landscape portrait; do
  flag=""
  [ "$side" = portrait ] && flag="--portrait"
  python3 bench/export/make_plan.py --sample $flag "$work/$side"
  plan="$work/$side/plan.pdr"
  args=()
  for ext in pdf tiff png bmp emf wmf svg; do
    args+=("$plan" "$work/$side.$ext")
  done
  "$exe" --home "$work/home" "${args[@]}"
  pdftoppm -r 60 -png -singlefile "$work/$side.pdf" "$out/$side-pdf"
  convert "$work/$side.tiff" -resize 25% "$out/$side-tiff.png"
  convert "$work/$side.png" -resize 50% "$out/$side-png.png"
  convert "$work/$side.bmp" -resize 50% "$out/$side-bmp.png"
  emf2svg-conv -i "$work/$side.emf" -o "$work/$side-emf.svg"
  rsvg-convert -o "$out/$side-emf.png" "$work/$side-emf.svg"
  wmf2svg --wmf-gs-fontmap="$work/fontmap" --wmf-fontdir="$fonts" -o "$work/$side-wmf.svg" "$work/$side.wmf"
  rsvg-convert -o "$out/$side-wmf.png" "$work/$side-wmf.svg"
  rsvg-convert -o "$out/$side-svg.png" "$work/$side.svg"
  pdfinfo "$work/$side.pdf" | sed -n 's/^Page size: *//p' | sed "s/^/$side pdf: /"
  tiffinfo "$work/$side.tiff" 2>/dev/null | grep -E 'Image Width|Compression' | tr -s ' ' | sed "s/^/$side tiff:/"
done
ls -l "$out"
