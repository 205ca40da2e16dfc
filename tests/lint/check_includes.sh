#!/usr/bin/env bash
# The direction of includes: which folder of source/ may use which, and who may talk to X.
#
# Arrows point one way: installer to privilege and to the engine; in the engine widgets, text,
# imaging, core, orx_helpers. Pure logic reaches no X header, not even through another header.
set -u
cd "$(dirname "$0")/../.." || exit 1

find source -name '*.h' -o -name '*.cpp' | sort | xargs awk '
function module(path) {
    if (path ~ /^gui\/ORX\//) { split(path, part, "/"); return part[3] }
    split(path, part, "/"); return part[1]
}
function reaches_x(file, depth,    list, count, i) {
    if (file in x_include) return file
    if (seen[file]++ || depth > 20) return ""
    count = split(includes[file], list, " ")
    for (i = 1; i <= count; ++i) {
        found = reaches_x(list[i], depth + 1)
        if (found != "") return found
    }
    return ""
}
BEGIN {
    may["orx_helpers"] = " orx_helpers "
    may["core"] = " core orx_helpers "
    may["imaging"] = " imaging core orx_helpers "
    may["text"] = " text imaging core orx_helpers "
    may["widgets"] = " widgets text imaging core orx_helpers "
    may["privilege"] = " privilege "
    may["installer"] = " installer privilege widgets text imaging core orx_helpers "
    pure = "^(privilege/|gui/ORX/orx_helpers/|installer/(screens|payload|installation_plan|copy_failure|desktop_entry|lock_file|" \
        "console_log|product_settings)|gui/ORX/core/damage_list|gui/ORX/imaging/(scaler|pixbuf|" \
        "channel_shift|inline_image)|gui/ORX/text/utf8|gui/ORX/widgets/(folder_listing|" \
        "folder_sort|folder_table|widget_geometry|edit_buffer))"
}
{
    file = FILENAME
    sub(/^source\//, "", file)
    files[file] = 1
}
/^#[ ]*include[ ]*</ && /<X11\// { x_include[file] = 1 }
/^#[ ]*include[ ]*"/ {
    split($0, quoted, "\"")
    target = quoted[2]
    includes[file] = includes[file] " " target
    if (index(may[module(file)], " " module(target) " ") == 0) {
        print "source/" file ":" FNR ": " module(file) " must not include " target
        bad = 1
    }
}
END {
    for (file in files) {
        if (file ~ pure) {
            delete seen
            culprit = reaches_x(file, 0)
            if (culprit != "") {
                print "source/" file ": pure logic reaches an X header through " culprit
                bad = 1
            }
        }
    }
    exit bad
}'
