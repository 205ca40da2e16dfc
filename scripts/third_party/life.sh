#!/usr/bin/env bash
# What scripts/third_party.sh --life does inside the root: two versions of a packaged plug-in in three
# formats, as a product for everybody and as one for one person, and the life of each.
set -u
. scripts/third_party/products.sh

title="- Select your LV2 plug-in folder -"
notes=/usr/share/doc/zam-plugins/copyright
hosts="exec bash -c '. $PWD/scripts/third_party/hosts.sh && hosts formats \"\$@\"' hosts \"\$@\""

# The second version lacks what the first one has: presets in the LV2 bundle, and the notes.
bundle=$results/second/ZamVerb.lv2
mkdir -p "${bundle%/*}" && cp -a /usr/lib/lv2/ZamVerb.lv2 "$bundle" && rm "$bundle/presets.ttl" &&
    sed -i '/#preset001>/,/\.$/d' "$bundle/manifest.ttl" || exit 1

# version NUMBER RECIPIENT BUNDLE [ITEM FOLDER]...
version() {
    local name=life-$1-$2 recipient=$2 number=$1 bundle=$3
    shift 3
    echo "== version $number for $recipient"
    product "$name" "$bundle" /usr/lib/lv2 gzip /usr/lib/vst3/ZamVerb.vst3 /usr/lib/vst3 \
        /usr/lib/clap/ZamVerb.clap /usr/lib/clap "$@" || return 1
    [ $# -eq 0 ] || echo 'person_folder = "~/.local/share/doc/life"' >> "$results/products/$name/product.toml"
    settle "$name" product_name '"Third life"' product_short_name '"third-life"' \
        product_version "\"$number\"" install_for "\"$recipient\"" folder_browser_title "\"$title\""
    ./make-installer --build "$results/build-$number-$recipient" --output "$results/dist-$recipient" \
        "$results/products/$name" > "$results/$name.log" 2>&1 || { cat "$results/$name.log" && return 1; }
    grep -E '^  (size|plug-in )|warning:' "$results/$name.log" | grep -v "template's"
}

for recipient in everybody person; do
    version 1 "$recipient" /usr/lib/lv2/ZamVerb.lv2 "$notes" /usr/share/doc/life || exit 1
    version 2 "$recipient" "$bundle" || exit 1
done
cmake -G Ninja -DCMAKE_BUILD_TYPE=Release -DZEPH_TESTS=ON -DCMAKE_CXX_COMPILER_LAUNCHER=ccache \
    -B "$results/life" > build/logs/life.log 2>&1 &&
    cmake --build "$results/life" --target zeph-life >> build/logs/life.log 2>&1 ||
    { tail -n 20 build/logs/life.log && exit 1; }
player=$(find "$results/life" -name zeph-life -type f)

# life WAY RECIPIENT LV2 VST3 CLAP NOTES PREFIX: plays it, with the folders as they are on this way.
life() {
    local way=$1 recipient=$2 second
    second="ZamVerb.lv2/${3#/}
ZamVerb.vst3/${4#/}
ZamVerb.clap/${5#/}"
    mkdir -p "$results/$way"
    set -o pipefail
    "$player" "by=$way" "title=$title" "hosts=$hosts" "pictures=$results/$way" \
        "installer1=$results/dist-$recipient/third-life-1-installer" \
        "installer2=$results/dist-$recipient/third-life-2-installer" \
        "archive1=$results/build-1-$recipient/payload.tar.gz" "archive2=$results/build-2-$recipient/payload.tar.gz" \
        "members1=$second
copyright/${6#/}" "members2=$second" "uninstaller=$7/bin/uninstall-third-life" \
        "full=$(printf '%s\n' "$3" "$4" "$5" "$7/bin" "$7/share" /tmp)" 2>&1 | tee "$results/$way/steps"
}

echo "== lives"
[ $# -gt 0 ] || set -- sudo su person
players=()
for way in "$@"; do
    # shellcheck disable=SC2088 # what "~" is, the one who plays knows
    if [ "$way" = person ]; then
        life person person "~/.lv2" "~/.vst3" "~/.clap" "~/.local/share/doc/life" "~/.local" &
    else
        life "$way" everybody /usr/lib/lv2 /usr/lib/vst3 /usr/lib/clap /usr/share/doc/life /usr/local &
    fi
    players+=($!)
done
failed=0
for each in "${players[@]}"; do
    wait "$each" || failed=1
done
echo
for way in "$@"; do
    while IFS='|' read -r by step outcome machine; do
        printf '%-7s %-38s %-32s %s\n' "$by" "$step" "$outcome" "$machine"
    done < "$results/$way/steps"
done
rm -rf "$results"/{build-*,dist-*,life,products,second}
exit "$failed"
