#!/usr/bin/env bash
# Draws the libraries and programs of the build and how they link, from
# `cmake --graphviz` (options in CMakeGraphVizOptions.cmake), into
# docs/structure.dot and docs/structure.png. Needs Graphviz's `dot`.
# Usage: scripts/structure-graph.sh [build-dir]
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:-build}
[ -f "$build/CMakeCache.txt" ] || { echo "no configured build in $build" >&2; exit 1; }
cmake --graphviz="$build/graph/tessaly.dot" "$build" >/dev/null
# The programs at the top and the run-time library at the bottom, as the
# layers stand, without the legend.
sed -e '/subgraph clusterLegend/,/^}/d' \
  "$build/graph/tessaly.dot" > docs/structure.dot
dot -Tpng -Gdpi=110 docs/structure.dot -o docs/structure.png
echo "docs/structure.png"
