#!/bin/sh
# Renders the PNG files of this folder anew from their SVG sources.
# Needs rsvg-convert (Debian: librsvg2-bin) and the DejaVu fonts (fonts-dejavu-core).
set -eu
cd "$(dirname "$0")"
for picture in splash background window_icon folder_icon desktop_icon; do
    rsvg-convert --output "$picture.png" "$picture.svg"
done
