#!/usr/bin/env bash
# Second command of the README: installs the dependencies, builds and runs
# every test.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh
bash scripts/build.sh
cd build
ctest --output-on-failure -j"$(nproc 2>/dev/null || echo 2)" --timeout 600
