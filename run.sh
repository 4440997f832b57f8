#!/usr/bin/env bash
# Installs what is missing, builds the tool k7e and runs it with the arguments given;
# without any it shows the objects of an example drive.
set -euo pipefail
here=$(dirname "$0")
. "$here/tools/prepare.sh"

(cd "$here" && need_packages && build release k7e) >&2
if [ $# -eq 0 ]; then
    set -- objects "$here/examples/drive.csv"
fi
exec "$here/build/release/tools/k7e/k7e" "$@"
