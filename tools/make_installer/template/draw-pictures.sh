#!/bin/sh
# Draws the PNG files of this folder anew from the SVG files beside them.
# Needs rsvg-convert (Debian: librsvg2-bin) and the fonts that the SVG files name.
set -eu
cd "$(dirname "$0")"
command -v rsvg-convert > /dev/null || {
    echo "draw-pictures.sh: rsvg-convert is missing; install librsvg2-bin" >&2
    exit 1
}
for picture in splash background window_icon folder_icon desktop_icon; do
    rsvg-convert --output "$picture.png" "$picture.svg"
done
