#!/bin/sh
# Renders the PNG files of this folder anew from their editable sources.
# Needs rsvg-convert (Debian: librsvg2-bin), Python 3 and the DejaVu fonts (fonts-dejavu-core,
# fonts-dejavu-extra).
set -eu
cd "$(dirname "$0")"

for tool in rsvg-convert python3; do
    command -v "$tool" >/dev/null || {
        echo "render.sh: $tool is missing; install librsvg2-bin, python3 and fonts-dejavu-extra" >&2
        exit 1
    }
done

for picture in splash background window_icon folder_icon; do
    rsvg-convert --output "$picture.png" "$picture.svg"
    echo "$picture.png"
done
python3 desktop_icon.py desktop_icon.txt desktop_icon.png
