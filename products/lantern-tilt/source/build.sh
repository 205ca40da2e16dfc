#!/bin/sh
# Builds the plug-in anew into the bundle beside this folder: build.sh [BUNDLE_FOLDER]
# Needs a C compiler and the LV2 headers (Debian: lv2-dev).
set -eu
here=$(cd "$(dirname "$0")" && pwd)
bundle=${1:-$here/../lantern-tilt.lv2}
${CC:-cc} -std=c11 -O2 -fPIC -fvisibility=hidden -ffp-contract=off -fno-ident \
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror \
    -shared -s -Wl,--build-id=none,-z,noexecstack,-z,relro,-z,now,--no-undefined \
    -o "$bundle/lantern-tilt.so" "$here/lantern_tilt.c" -lm
