# shellcheck shell=bash
# Hosts and inspectors that nobody here wrote, to be sourced.
#
#   hosts KIND PATH...    prints the names of the plug-ins that they find when they load what was
#                         installed, a line each; fails when there are none. For the kind formats there
#                         are three paths: an LV2 bundle, a VST3 bundle and a CLAP library.

clap_scanner=$(find /usr/lib /usr/libexec -name qtractor_plugin_scan -type f | head -n 1)
vst3_scanner=$(find /usr/lib -name ardour-vst3-scanner -type f | head -n 1)

scan_clap() {
    echo "CLAP:$1" | QT_QPA_PLATFORM=offscreen timeout 60 "$clap_scanner" 2> /dev/null |
        grep '^CLAP|' | cut -d '|' -f 2
}
scan_vst3() {
    LD_LIBRARY_PATH=${vst3_scanner%/*} timeout 60 "$vst3_scanner" -f -v "$1" 2>&1 |
        sed -n 's/.*Found Plugin: //p'
}

hosts() {
    local found each
    case $1 in
    ladspa) found=$(analyseplugin -l "$2") ;;
    lv2) found=$(LV2_PATH=$(dirname "$2") lv2ls -n) ;;
    vst3) found=$(scan_vst3 "$2") ;;
    clap) found=$(scan_clap "$2") ;;
    formats)
        found=$(
            LV2_PATH=${2%/*} lv2ls -n 2> /dev/null | grep . && scan_vst3 "$3" | grep . &&
                scan_clap "$4" | grep .
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
