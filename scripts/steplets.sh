#!/usr/bin/env bash
# Installs what is missing (Debian 12), builds, and then starts the program or runs the tests.
#   scripts/steplets.sh run    build and start the desktop program on its embedded default data
#   scripts/steplets.sh test   build and run every test; then build the unit and scenario tests
#                              and the fuzz targets with ASan and UBSan (clang), run them, and
#                              give each fuzz target a short budget (STEPLETS_SANITIZE=0 skips
#                              this second part; STEPLETS_FUZZ_SECONDS sets the budget)
#   scripts/steplets.sh build  only install and build
set -euo pipefail

here=$(cd "$(dirname "$0")/.." && pwd)
build="${STEPLETS_BUILD_DIR:-$here/build}"
sanitize_build="${STEPLETS_SANITIZE_BUILD_DIR:-$here/build-sanitize}"
fuzz_seconds="${STEPLETS_FUZZ_SECONDS:-20}"
jobs=$(nproc 2>/dev/null || echo 2)

# clang-14 and libclang-rt-14-dev (ASan, UBSan, libFuzzer) build the sanitizer tree.
packages=(cmake ninja-build g++ pkg-config qt6-base-dev libgl-dev libsqlcipher-dev sqlcipher libical-dev
          libgtest-dev libgmock-dev todoman python3-icalendar xvfb xauth fonts-dejavu-core clang-14 libclang-rt-14-dev)

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
  (cd "$build" && ctest --output-on-failure -j "$jobs" --timeout 300)
  [ "${STEPLETS_SANITIZE:-1}" = 0 ] && return 0
  # Only what the unit and scenario tests need, built by clang with ASan and UBSan, which stop
  # at the first error they find, and the fuzz targets, replaying their corpus (label fuzz).
  # A unity build: compiling each target's files together takes this tree from about ten
  # minutes to three on two cores.
  cmake -S "$here" -B "$sanitize_build" -G Ninja -DCMAKE_BUILD_TYPE=Debug -DCMAKE_UNITY_BUILD=ON \
    -DCMAKE_CXX_COMPILER=clang++-14 \
    -DSTEPLETS_SANITIZE=ON -DSTEPLETS_FUZZ=ON -DSTEPLETS_TESTS_ONLY=ON >/dev/null
  cmake --build "$sanitize_build" -j "$jobs"
  export ASAN_OPTIONS=detect_leaks=1:abort_on_error=0 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
  (cd "$sanitize_build" && ctest -L '^(unit|scenario|fuzz)$' --output-on-failure -j "$jobs" --timeout 600)
  # Each parser of outside input gets a short budget; what it finds is kept as a crash file.
  for target in vcard ics rrule scenario settings; do
    corpus="$sanitize_build/fuzz-corpus/$target"
    mkdir -p "$corpus"
    log="$sanitize_build/fuzz-$target.log"
    seeds="$here/tests/fuzz/$target"
    [ "$target" = scenario ] && seeds="$here/tests/scenarios"
    echo "fuzzing $target for ${fuzz_seconds}s"
    if ! "$sanitize_build/tests/fuzz/fuzz-$target" -max_total_time="$fuzz_seconds" \
         -artifact_prefix="$sanitize_build/fuzz-crash-$target-" "$corpus" "$seeds" >"$log" 2>&1; then
      tail -n 40 "$log" >&2
      echo "fuzz-$target found a failure: the input is kept as $sanitize_build/fuzz-crash-$target-*" >&2
      return 1
    fi
    tail -n 1 "$log"
  done
}

cmd="${1:-test}"
shift || true
case "$cmd" in
  run)   install_missing; build_all; run_program "$@" ;;
  test)  install_missing; build_all; run_tests ;;
  build) install_missing; build_all ;;
  *) echo "usage: $0 run|test|build" >&2; exit 2 ;;
esac
