#!/bin/sh
# Installs what building and testing needs on Debian 12. Quiet when nothing is missing.
usage='usage: scripts/install-deps.sh [--ci | --package | --analysis | --big-endian | --coverage | --bench | --docs]

Installs the missing ones of the Debian packages that building, testing and the demo need; does and says nothing when
all are there. As another user than root it prints the command to run and exits with 1.

  --ci          also what only the continuous integration uses: git, ccache, clang, clang-format, valgrind, gdb,
                python3-jsonschema, pkg-config, abigail-tools, lintian, and groff, zsh and fish, which read man pages and
                completions
  --package     also what only packages and their checks use: dpkg-dev, lintian, xz; --ci has it all
  --analysis    also what only scripts/analyse uses: clang, clang-tidy, cppcheck
  --big-endian  also what only scripts/test-big-endian uses: clang, libraries and linker for s390x, its emulator
  --coverage    also what only scripts/coverage uses: gcovr, Python
  --bench       also what only the benchmarks use: Google Benchmark, protocol buffers, hyperfine
  --docs        also what only the site of the documentation uses: Doxygen, Python'
set -eu

packages='g++ g++-multilib cmake ninja-build googletest libhwloc-dev libcli11-dev nlohmann-json3-dev libpugixml-dev libedit-dev'
case "${1-}" in
  '') ;;
  --ci) packages="$packages git ccache clang clang-format libclang-rt-14-dev valgrind gdb python3-jsonschema
    groff-base zsh fish pkg-config abigail-tools dpkg-dev lintian xz-utils" ;;
  --package) packages="$packages git pkg-config dpkg-dev lintian xz-utils clang" ;;
  --analysis) packages="$packages clang clang-tidy cppcheck" ;;
  --big-endian) packages="clang cmake ninja-build googletest binutils-s390x-linux-gnu libstdc++-12-dev-s390x-cross qemu-user-static" ;;
  --bench) packages="$packages libbenchmark-dev libprotobuf-dev protobuf-compiler hyperfine" ;;
  --docs) packages="$packages doxygen python3" ;;
  --coverage) packages="$packages gcovr python3" ;;
  -h | --help) printf '%s\n' "$usage"; exit 0 ;;
  *) printf '%s\n' "$usage" >&2; exit 2 ;;
esac

missing=
for package in $packages; do
  status=$(dpkg-query -W -f='${db:Status-Abbrev}' "$package" 2>/dev/null || true)
  case "$status" in
    ii*) ;;
    *) missing="$missing $package" ;;
  esac
done
[ -n "$missing" ] || exit 0

if [ "$(id -u)" -ne 0 ]; then
  printf 'Some packages are missing. Run this first:\n\n  sudo apt-get update && sudo apt-get install --no-install-recommends%s\n' "$missing" >&2
  exit 1
fi
printf 'Installing%s\n' "$missing" >&2
log=$(mktemp)
trap 'rm -f "$log"' EXIT
export DEBIAN_FRONTEND=noninteractive
# shellcheck disable=SC2086 # the names are words of their own
if ! { apt-get update && apt-get install -y --no-install-recommends $missing; } >"$log" 2>&1; then
  cat "$log" >&2
  printf 'The packages could not be installed; the log stands above.\n' >&2
  exit 1
fi
