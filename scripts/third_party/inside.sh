#!/usr/bin/env bash
# What scripts/third_party.sh does inside the root: products of packaged plug-ins, one after the other.
set -u
. scripts/third_party/products.sh
. scripts/third_party/hosts.sh
failed=0
table=()

# as_carried ORIGINAL INSTALLED: whether what was installed is what the product folder has, with
# plain modes, of root's and of one time; says what it is otherwise.
as_carried() {
    diff -r --no-dereference "$1" "$2" > /dev/null || { echo DIFFERS && return; }
    # Links are links; files 0644 or 0755, folders 0755.
    [ -z "$(find "$2" ! -type l \( -type d ! -perm 755 -o -type f ! -perm 644 ! -perm 755 -o ! -user root \))" ] ||
        { echo "WRONG MODES" && return; }
    [ "$(find "$2" -printf '%T@\n' | sort -u | wc -l)" -eq 1 ] || { echo "WRONG TIMES" && return; }
    echo equal
}

# try KIND PLUGIN FOLDER [COMPRESSION [ITEM FOLDER]...]
try() {
    local kind=$1 plugin=$2 log="$results/$1.log" installed each found tree=equal
    echo "== $kind: $plugin"
    product "$kind" "$plugin" "$3" "${4:-gzip}" "${@:5}" || return 1
    if ! ./make-installer --try --build "$results/build-$kind" --output "$results/dist" \
        "$results/products/$kind" > "$log" 2>&1; then
        tail -n 30 "$log"
        table+=("$kind|$(basename "$plugin")|FAILED||")
        return 1
    fi
    grep -E '^  (size|plug-in|unpacking)|warning:|seconds|as it is carried' "$log" | grep -v "template's"
    installed=$results/build-$kind/tour/installed/$(basename "$plugin")
    for each in "${installed%/*}"/*; do
        [ "$tree" != equal ] || tree=$(as_carried "$results/products/$kind/${each##*/}" "$each")
    done
    found=$(hosts "$kind" "$installed" "${installed%.*}.vst3" "${installed%.*}.clap") || found=""
    echo "$found" | head -n 5 | sed 's/^/    found: /'
    table+=("$kind|$(basename "$plugin")|tree $tree|$(grep -c . <<< "$found") plug-ins found by hosts|$(sed -n 's/.*last screen: //p' "$log")")
    rm -rf "$results/build-$kind/cmake" "$results/build-$kind/tour/installed" "$results/products/$kind"
    [ "$tree" = equal ] && [ -n "$found" ]
}

clap=$(find /usr/lib/clap -name '*.clap' | sort | head -n 1)
suite=/srv/zam-suite
mkdir -p "$suite"
for folder in clap lv2 vst vst3; do
    [ ! -d "/usr/lib/$folder" ] || { mkdir "$suite/$folder" && cp -a /usr/lib/"$folder"/[Zz]a* "$suite/$folder/"; }
done

try ladspa /usr/lib/ladspa/cmt.so /usr/lib/ladspa || failed=1
try lv2 /usr/lib/lv2/mda.lv2 /usr/lib/lv2 || failed=1
try vst3 /usr/lib/vst3/ZamVerb.vst3 /usr/lib/vst3 || failed=1
try clap "$clap" /usr/lib/clap || failed=1
try formats /usr/lib/lv2/ZamVerb.lv2 /usr/lib/lv2 gzip \
    /usr/lib/vst3/ZamVerb.vst3 /usr/lib/vst3 /usr/lib/clap/ZamVerb.clap /usr/lib/clap || failed=1
try suite "$suite" /usr/lib/vst3 xz || failed=1
(cd "$results/dist" && sha256sum -c --quiet ./*.sha256) || failed=1
rm -rf "$results/dist"

echo
for line in "${table[@]}"; do
    IFS='|' read -r kind plugin tree found seconds <<< "$line"
    printf '%-8s %-18s %-12s %-26s %s\n' "$kind" "$plugin" "$tree" "$found" "$seconds"
done
exit "$failed"
