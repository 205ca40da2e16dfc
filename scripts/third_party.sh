#!/usr/bin/env bash
# Makes installers of other people's plug-ins, from the packages of a Debian suite, plays each in a
# private world, compares what was installed with what the package has, and opens it with hosts and
# inspectors that nobody here wrote.
#
#   scripts/third_party.sh [SUITE]     bookworm without; any that has the packages
#   scripts/third_party.sh --life [SUITE [WAY...]]
#       the life of one plug-in in three formats, each WAY of sudo, su and person: its first version is
#       installed, the second one fails on each disk that fills up, at each file, then takes its place,
#       and is removed; trees are compared each time
#
# Works on the committed sources, inside a fresh root file system, as on a machine that has nothing.
# Needs root and the Debian archive. Prints a line for each step and a table in the end; both and the
# pictures, and without --life the console texts, stay in build/third-party. Ends with status 1 when one
# is not right.
set -u
cd "$(dirname "$0")/.." || exit 2
. scripts/packages.sh
. scripts/root_file_system.sh

what=inside
if [ "${1:-}" = --life ]; then
    what=life
    shift
fi
suite=${1:-bookworm}
shift $(($# > 0))
[[ $suite =~ ^[a-z][a-z0-9-]*$ ]] || no_root "\"$suite\" is no name of a suite."
make_root "$suite" "" git
tree=$(mktemp -d) || exit 2
trap 'rm -rf "$tree"' EXIT
git -c 'safe.directory=*' clone --quiet --depth 1 "file://$PWD" "$tree/zeph" ||
    no_root "Here is no committed tree to copy."

enter_root "$root_folder" --keep-packages \
    --copy "$tree/zeph" /srv/zeph --in /srv/zeph \
    --share "$root_cache/compiled/$suite" /root/.cache/ccache \
    --fetch /srv/results "$PWD/build/third-party/$suite-$what" \
    -- bash "scripts/third_party/$what.sh" "$@"
