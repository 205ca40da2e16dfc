#!/usr/bin/env bash
# Runs a command in the committed sources on a machine that has nothing: a fresh root file system of
# a Debian suite with its base system and git, so that what works there needs no more than what the
# project's own scripts install.
#
#   scripts/bare_machine.sh [SUITE] [COMMAND...]     bookworm and ./test, as a CI machine, without
#
# Needs root and the Debian archive. Its logs and pictures are in build/bare-machine/SUITE after it.
# Packages fetched and objects compiled are kept for the next run, outside the repository; every one
# of them is what it would be without.
set -u
cd "$(dirname "$0")/.." || exit 2
. scripts/packages.sh
. scripts/root_file_system.sh

suite=${1:-bookworm}
shift $(($# > 0 ? 1 : 0))
[ $# -gt 0 ] || set -- env CI=true ./test

[[ $suite =~ ^[a-z][a-z0-9-]*$ ]] || no_root "\"$suite\" is no name of a suite."
make_root "$suite" "" git
tree=$(mktemp -d) || exit 2
trap 'rm -rf "$tree"' EXIT
git -c 'safe.directory=*' clone --quiet --depth 1 "file://$PWD" "$tree/zeph" ||
    no_root "Here is no committed tree to copy."

results=$PWD/build/bare-machine/$suite
enter_root "$root_folder" --keep-packages \
    --copy "$tree/zeph" /srv/zeph --in /srv/zeph \
    --share "$root_cache/compiled/$suite" /root/.cache/ccache \
    --fetch /srv/zeph/build/logs "$results/logs" --fetch /srv/zeph/build/tour "$results/tour" \
    -- "$@"
