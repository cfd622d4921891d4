#!/usr/bin/env bash
# recover.sh COMMANDS EXPECTED SOURCE ARCHIVE_SEARCH VOKIT_LOG: runs the commands in a home of their
# own and compares what they print behind the demo's own output. Numbers may differ: they count the
# letters of the home's name.
set -euo pipefail
commands=$1 expected=$2 source=$3 archive_search=$4 vokit_log=$5

home=$(mktemp -d)
trap 'rm -rf "$home"' EXIT
export HOME=$home XDG_STATE_HOME=$home/state XDG_CONFIG_HOME=$home/config
cd "$home"
ln -s "$source/examples" examples
mkdir -p build/release/tools/vokit-log
ln -s "$vokit_log" build/release/tools/vokit-log/vokit-log
demo() { "$archive_search" "$@" >"$home/demo.txt"; }
source "$commands" >"$home/printed.txt"

numbers='s/[0-9][0-9]*/N/g'
diff <(sed "$numbers" "$expected") <(sed "$numbers" "$home/printed.txt")
grep -q '^recovered 3 entries' "$home/printed.txt"
