#!/usr/bin/env bash
# The firmware recipes build the library as this project does: each passes
# the same CMake options and installs the library component; the library
# builds with those options and that component holds what a firmware image
# needs.  check_recipes.sh SOURCE_DIR SCRATCH_DIR
set -euo pipefail
source_dir=$1
scratch=$2
expected="-DCALTOFAL_BENCH=OFF -DCALTOFAL_TESTS=OFF -DCMAKE_BUILD_TYPE=Release"
failures=0
check() {  # WHAT CONDITION...
  local what=$1
  shift
  if "$@"; then echo "ok: $what"; else echo "FAILED: $what"; failures=$((failures + 1)); fi
}

options_of() {  # the -D options a recipe passes, sorted
  grep -oE -- '-D[A-Z_]+=[A-Za-z0-9]+' "$1" | sort | tr '\n' ' ' | sed 's/ $//'
}
for recipe in openwrt/libcaltofal/Makefile buildroot/libcaltofal/libcaltofal.mk; do
  file="$source_dir/packaging/$recipe"
  check "$recipe passes the project's options" test "$(options_of "$file")" = "$expected"
  check "$recipe installs the library component" grep -q -- '--component library' "$file"
done
check "the Buildroot menu entry names the package" \
  grep -q '^config BR2_PACKAGE_LIBCALTOFAL$' "$source_dir/packaging/buildroot/libcaltofal/Config.in"

rm -rf "$scratch"
# shellcheck disable=SC2086
cmake -S "$source_dir" -B "$scratch/build" $expected >/dev/null
cmake --build "$scratch/build" -j2 --target caltofal >/dev/null
DESTDIR="$scratch/image" cmake --install "$scratch/build" --prefix /usr --component library >/dev/null
image="$scratch/image/usr"
check "the image has the versioned library" test -e "$image/lib/libcaltofal.so.0"
check "the image has the header" test -f "$image/include/caltofal.h"
check "the image has the pkg-config file" test -f "$image/lib/pkgconfig/caltofal.pc"
check "the image has no emulator or tool" test ! -e "$image/lib/libcal.so" -a ! -e "$image/bin/caltofal"
rm -rf "$scratch"
echo "$((7 - failures)) passed, $failures failed"
[ "$failures" -eq 0 ]
