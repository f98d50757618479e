#!/bin/sh
# Installs the build into scratch prefixes and builds the consumer project
# against the installed tree, once with CMake (find_package) and once with
# pkg-config, then runs both. Also checks what each install component holds.
#   install_test.sh BUILD_DIR WORK_DIR C_COMPILER [C_FLAGS]
set -eu
build=$1 work=$2 cc=$3 cflags=${4:-}
here=$(cd "$(dirname "$0")" && pwd)
fail() { echo "FAILED: $*" >&2; exit 1; }

rm -rf "$work" && mkdir -p "$work"
full=$work/full lib=$work/library
cmake --install "$build" --prefix "$full" >/dev/null
cmake --install "$build" --prefix "$lib" --component library >/dev/null

# The firmware component: the library with its SONAME, headers, pkg-config
# file and CMake package; none of the development host's platform or tools.
for f in lib/libcaltofal.so lib/libcaltofal.so.0 include/caltofal.h \
         include/caltofal/help_objlist.h include/caltofal/libcal.h lib/pkgconfig/caltofal.pc \
         lib/cmake/caltofal/caltofalConfig.cmake lib/cmake/caltofal/caltofalConfigVersion.cmake \
         lib/cmake/caltofal/caltofalTargets.cmake; do
  [ -e "$lib/$f" ] || fail "component library lacks $f"
done
for f in lib/libcal.so lib/libhelper.so bin/caltofal bin/caltofal-device; do
  [ ! -e "$lib/$f" ] || fail "component library installs $f"
  [ -e "$full/$f" ] || fail "the full install lacks $f"
done
[ -d "$full/share/caltofal/device/tree/opt" ] && [ -x "$full/share/caltofal/device/tools/iw" ] \
  || fail "the full install lacks the device tree or its tools"
soname=$(LC_ALL=C readelf -d "$lib/lib/libcaltofal.so.0" | sed -n 's/.*(SONAME).*\[\(.*\)\]/\1/p')
[ "$soname" = libcaltofal.so.0 ] || fail "SONAME is '$soname'"

# The consumer, found the CMake way.
cmake -S "$here/project" -B "$work/cmake-build" -DCMAKE_PREFIX_PATH="$full" \
  -DCMAKE_C_COMPILER="$cc" -DCMAKE_C_FLAGS="$cflags" >/dev/null
cmake --build "$work/cmake-build" >/dev/null
"$work/cmake-build/consumer" || fail "the CMake-built consumer"

# The consumer, found with pkg-config.
pc=$(PKG_CONFIG_PATH="$full/lib/pkgconfig" pkg-config --define-variable=prefix="$full" \
  --cflags --libs caltofal)
# shellcheck disable=SC2086 # the flags are words
"$cc" $cflags -std=c99 -Wall -Wextra -Werror -o "$work/pc-consumer" "$here/project/consumer.c" \
  $pc -Wl,-rpath,"$full/lib"
"$work/pc-consumer" || fail "the pkg-config-built consumer"

# The installed tool serves the installed sample, not the source tree's.
sed -i 's/^IPAddress = 192.168.1.1$/IPAddress = 192.168.7.1/' "$full/share/caltofal/gateway.model"
out=$(HOME=$work/home XDG_STATE_HOME= "$full/bin/caltofal" lan) || fail "installed caltofal lan"
echo "$out" | grep -q '192\.168\.7\.1' || fail "installed caltofal did not use the installed sample: $out"
# And the installed emulator too, for any host without a model named.
"$work/pc-consumer" >/dev/null && fail "the installed emulator did not use the installed sample"
echo "install test: ok"
