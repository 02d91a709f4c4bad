#!/usr/bin/env bash
# Installs every package Tessaly needs to build, run and test, from Debian's
# archive. Does nothing when all of them are already installed.
set -euo pipefail

PACKAGES=(
  # build
  build-essential cmake ninja-build pkg-config
  # Qt 6: Core, Gui, Widgets, PrintSupport, Sql (SQLite and PostgreSQL drivers), Svg
  qt6-base-dev qt6-base-dev-tools libqt6sql6-sqlite libqt6sql6-psql qt6-svg-dev libqt6svg6
  qt6-qpa-plugins
  # storage and packing
  libsqlite3-dev sqlite3 libzip-dev zip unzip
  # spelling
  libhunspell-dev hunspell-en-gb hunspell-en-us
  # mail: MIME messages, SMTP delivery, and a real SMTP server for the tests
  libgmime-3.0-dev libcurl4-openssl-dev python3-aiosmtpd
  # fonts metric-compatible with Arial, for text on plans
  fonts-liberation2
  # multi-page, compressed TIFF export (Qt's TIFF plugin writes one page only)
  libtiff-dev
  # compression of large PNG pages
  zlib1g-dev
  # tests and benchmarks
  libgtest-dev libgmock-dev googletest libbenchmark-dev
  # fuzzing (libFuzzer comes with clang's runtime)
  clang-14 libclang-rt-14-dev
  # independent checkers of our output files
  emf2svg libwmf-bin qpdf poppler-utils libtiff-tools imagemagick librsvg2-bin
  # display for GUI tests and screenshots
  xvfb xauth xdotool x11-utils
  # the drawing of the build's link graph in docs/
  graphviz
  # server database backend tests
  postgresql
  # the user guide: pandoc makes HTML of its Markdown chapters and WeasyPrint
  # lays that out as a PDF (far lighter than a LaTeX engine)
  pandoc weasyprint
  # checks of the launcher and file type the install step gives the desktop
  desktop-file-utils shared-mime-info
)

missing=()
for p in "${PACKAGES[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
    missing+=("$p")
  fi
done

if [ ${#missing[@]} -eq 0 ]; then
  echo "install-deps: all packages present"
  exit 0
fi

echo "install-deps: installing ${missing[*]}"
SUDO=""
if [ "$(id -u)" -ne 0 ]; then SUDO="sudo"; fi
export DEBIAN_FRONTEND=noninteractive
$SUDO apt-get update -qq
$SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}"
