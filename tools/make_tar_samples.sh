#!/usr/bin/env bash
# Writes the sample archives of the tests, one in each format that GNU tar has.
#
#     tools/make_tar_samples.sh [DIRECTORY]
#
# The directory is tests/data/tar unless one is named. With GNU tar 1.34 the same bytes come out on
# every machine: owner, times, rights and the order of the members are fixed. A member is left out
# where the format has no room for it: a link of more than 100 characters in ustar, a name of more
# than 99 and a pipe in v7.
set -eu
samples=$(cd "${1:-"$(dirname "$0")/../tests/data/tar"}" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
export LC_ALL=C

repeat() { # CHARACTER TIMES
    printf "%$2s" '' | tr ' ' "$1"
}

bytes() { # TIMES: that many bytes, a line of 16 again and again
    yes 0123456789abcde | head -c "$1"
}

mkdir -p tree/folder
: >tree/empty
bytes 512 >tree/block_512
bytes 513 >tree/block_513
bytes 5 >"tree/$(printf 'Gr\366\337e.txt')"
bytes 7 >tree/folder/inside
bytes 99 >"tree/$(repeat n 94)"   # 99 characters with the directory
bytes 100 >"tree/$(repeat o 95)"  # 100
bytes 105 >"tree/$(repeat p 100)" # 105
ln tree/block_512 tree/hard_link
mkfifo tree/pipe
ln -s empty tree/link
ln -s "$(repeat x 100)" tree/link_100
ln -s "$(repeat y 101)" tree/link_101

archive() { # FORMAT [OPTION...]
    tar --create --file="$samples/$1.tar" --format="$1" --blocking-factor=1 --sort=name \
        --owner=0 --group=0 --numeric-owner --mtime=@1400000000 --mode=u=rwX,go=rX \
        "${@:2}" tree
}

archive gnu
archive oldgnu
archive ustar --exclude=link_101
archive v7 --exclude=link_10? --exclude='ooo*' --exclude='ppp*' --exclude=pipe
archive pax --pax-option='exthdr.name=%d/PaxHeaders/%f,globexthdr.name=GlobalHead' \
    --pax-option='delete=atime,delete=ctime,comment=sample'
