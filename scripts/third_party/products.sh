# shellcheck shell=bash disable=SC2034
# Packaged plug-ins, and product folders of them, to be sourced inside the root: installs packages, and
# writes what is said from then on to the report, too.
#
#   product NAME PLUGIN FOLDER COMPRESSION [ITEM FOLDER]...
#       makes the product folder $results/products/NAME with the plug-in, a file or folder, in it, and
#       the items that are installed along with it.
#   settle NAME SETTING VALUE...
#       changes settings of that product; the values are as in product.toml.
. scripts/packages.sh

results=/srv/results
mkdir -p "$results/products" build/logs
exec > >(tee "$results/report.txt") 2>&1

plugin_packages=(cmt mda-lv2 zam-plugins)
host_packages=(ladspa-sdk lilv-utils serdi qtractor ardour xz-utils ccache)
ensure_packages "${build_packages[@]}" "${tour_packages[@]}" python3 binutils \
    "${plugin_packages[@]}" "${host_packages[@]}"
export CCACHE_BASEDIR=$PWD CCACHE_NOHASHDIR=1

product() {
    local folder=$results/products/$1 name=$1
    rm -rf "$folder"
    ./make-installer --new "$folder" > /dev/null || return 1
    cp -a "$2" "$folder/"
    settle "$name" product_name "\"Third $1\"" product_short_name "\"third-$1\"" \
        plugin "\"$(basename "$2")\"" default_install_folder "\"$3\"" compression "\"$4\""
    shift 4
    while [ $# -gt 0 ]; do
        cp -a "$1" "$folder/"
        printf '\n[[item]]\npath = "%s"\nfolder = "%s"\n' "$(basename "$1")" "$2" >> "$folder/product.toml"
        shift 2
    done
}

settle() {
    local file=$results/products/$1/product.toml
    shift
    while [ $# -gt 0 ]; do
        sed -i "s|^$1 = .*|$1 = $2|" "$file"
        shift 2
    done
}
