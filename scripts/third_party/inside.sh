#!/usr/bin/env bash
# What scripts/third_party.sh does inside the root: products of packaged plug-ins, one after the other.
set -u
. scripts/packages.sh

results=/srv/results
mkdir -p "$results/products" build/logs
exec > >(tee "$results/report.txt") 2>&1

plugin_packages=(cmt mda-lv2 zam-plugins)
host_packages=(ladspa-sdk lilv-utils serdi qtractor ardour xz-utils ccache)
ensure_packages "${build_packages[@]}" "${tour_packages[@]}" python3 binutils \
    "${plugin_packages[@]}" "${host_packages[@]}"
export CCACHE_BASEDIR=$PWD CCACHE_NOHASHDIR=1
clap_scanner=$(find /usr/lib /usr/libexec -name qtractor_plugin_scan -type f | head -n 1)
vst3_scanner=$(find /usr/lib -name ardour-vst3-scanner -type f | head -n 1)
failed=0
table=()

# product NAME PLUGIN FOLDER COMPRESSION [ITEM FOLDER]...: a product folder with the plug-in, a file or
# folder, in it, and the items that are installed along with it.
product() {
    local folder=$results/products/$1
    rm -rf "$folder"
    ./make-installer --new "$folder" > /dev/null || return 1
    cp -a "$2" "$folder/"
    sed -i -e "s|^product_name = .*|product_name = \"Third $1\"|" \
        -e "s|^product_short_name = .*|product_short_name = \"third-$1\"|" \
        -e "s|^plugin = .*|plugin = \"$(basename "$2")\"|" \
        -e "s|^default_install_folder = .*|default_install_folder = \"$3\"|" \
        -e "s|^compression = .*|compression = \"$4\"|" "$folder/product.toml"
    shift 4
    while [ $# -gt 0 ]; do
        cp -a "$1" "$folder/"
        printf '\n[[item]]\npath = "%s"\nfolder = "%s"\n' "$(basename "$1")" "$2" >> "$folder/product.toml"
        shift 2
    done
}

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

# What a sequencer's own scanner finds when it loads the file or bundle.
scan_clap() {
    echo "CLAP:$1" | QT_QPA_PLATFORM=offscreen timeout 60 "$clap_scanner" 2> /dev/null |
        grep '^CLAP|' | cut -d '|' -f 2
}
scan_vst3() {
    LD_LIBRARY_PATH=${vst3_scanner%/*} timeout 60 "$vst3_scanner" -f -v "$1" 2>&1 |
        sed -n 's/.*Found Plugin: //p'
}

# hosts KIND PATH: names that hosts find in what was installed; fails when there are none.
hosts() {
    local found each
    case $1 in
    ladspa) found=$(analyseplugin -l "$2") ;;
    lv2) found=$(LV2_PATH=$(dirname "$2") lv2ls -n) ;;
    vst3) found=$(scan_vst3 "$2") ;;
    clap) found=$(scan_clap "$2") ;;
    formats)
        local folder=${2%/*}
        found=$(
            LV2_PATH=$folder lv2ls -n 2> /dev/null | grep . && scan_vst3 "${2%.*}.vst3" | grep . &&
                scan_clap "${2%.*}.clap" | grep .
        ) || return 1
        ;;
    suite)
        found=$(
            for each in "$2"/vst3/*.vst3; do scan_vst3 "$each"; done
            for each in "$2"/clap/*.clap; do scan_clap "$each"; done
            LV2_PATH=$2/lv2 lv2ls -n
        )
        ;;
    esac
    echo "$found" | sed '/^$/d'
    [ -n "${found//[$'\n']/}" ]
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
    found=$(hosts "$kind" "$installed") || found=""
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
