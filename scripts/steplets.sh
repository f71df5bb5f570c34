#!/usr/bin/env bash
# Installs what is missing (Debian 12), builds, and then starts the program or runs the tests.
#   scripts/steplets.sh run    build and start the desktop program on its embedded default data
#   scripts/steplets.sh test   build and run every test
#   scripts/steplets.sh build  only install and build
set -euo pipefail

here=$(cd "$(dirname "$0")/.." && pwd)
build="${STEPLETS_BUILD_DIR:-$here/build}"
jobs=$(nproc 2>/dev/null || echo 2)

packages=(cmake ninja-build g++ pkg-config qt6-base-dev libgl-dev libsqlcipher-dev sqlcipher libical-dev
          libgtest-dev libgmock-dev todoman python3-icalendar xvfb xauth fonts-dejavu-core)

install_missing() {
  local missing=()
  for p in "${packages[@]}"; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
  done
  [ ${#missing[@]} -eq 0 ] && return 0
  echo "Installing: ${missing[*]}"
  local sudo=""
  [ "$(id -u)" -eq 0 ] || sudo="sudo"
  $sudo apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
}

build_all() {
  cmake -S "$here" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
  cmake --build "$build" -j "$jobs"
}

run_program() {
  if [ -x "$build/apps/steplets/steplets" ]; then
    if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ]; then
      echo "No display found: starting under a virtual X server (xvfb-run)."
      exec xvfb-run -a "$build/apps/steplets/steplets" "$@"
    fi
    exec "$build/apps/steplets/steplets" "$@"
  elif [ -x "$build/apps/steplets-scenario/steplets-scenario" ] && [ -f "$here/tests/scenarios/demo.json" ]; then
    exec "$build/apps/steplets-scenario/steplets-scenario" "$here/tests/scenarios/demo.json"
  else
    cd "$build" && exec ctest -L unit --output-on-failure
  fi
}

run_tests() {
  export QT_QPA_PLATFORM=offscreen
  cd "$build"
  ctest --output-on-failure -j "$jobs" --timeout 300
}

cmd="${1:-test}"
shift || true
case "$cmd" in
  run)   install_missing; build_all; run_program "$@" ;;
  test)  install_missing; build_all; run_tests ;;
  build) install_missing; build_all ;;
  *) echo "usage: $0 run|test|build" >&2; exit 2 ;;
esac
