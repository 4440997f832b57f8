# Read by run.sh and test.sh: what the build needs, and the build.

# Debian packages, each with a file that tells that it is there.
packages='
cmake                /usr/bin/cmake
g++                  /usr/bin/g++
ninja-build          /usr/bin/ninja
pkg-config           /usr/bin/pkg-config
qtbase5-dev          /usr/lib/*/cmake/Qt5Test/Qt5TestConfig.cmake
libbenchmark-dev     /usr/lib/*/cmake/benchmark/benchmarkConfig.cmake
zlib1g-dev           /usr/include/zlib.h
libarchive-dev       /usr/include/archive.h
valgrind             /usr/bin/valgrind
'

# Installs the packages that are missing, or says which and stops.
need_packages() {
    missing=''
    while read -r package file; do
        [ -z "$package" ] && continue
        # shellcheck disable=SC2086  # the file may hold a wildcard
        [ -e "$(echo $file | cut -d' ' -f1)" ] || missing="$missing $package"
    done <<EOF
$packages
EOF
    [ -z "$missing" ] && return
    echo "Installing$missing" >&2
    if ! command -v apt-get >/dev/null; then
        echo "There is no apt-get here. Please install$missing and call this again." >&2
        exit 1
    fi
    sudo=''
    if [ "$(id -u)" -ne 0 ]; then
        if ! command -v sudo >/dev/null; then
            echo "Not root and no sudo. Please install$missing and call this again." >&2
            exit 1
        fi
        sudo=sudo
    fi
    # shellcheck disable=SC2086  # a list of packages
    if ! { $sudo apt-get update -q && $sudo env DEBIAN_FRONTEND=noninteractive \
            apt-get install -q -y --no-install-recommends $missing; } >&2; then
        echo "Could not install$missing. Please install it and call this again." >&2
        exit 1
    fi
}

# Configures a preset once and builds it, or the target named; quietly if it was built before.
build() {
    preset=$1
    quiet=--quiet
    if [ ! -e "build/$preset/build.ninja" ]; then
        cmake --preset "$preset"
        quiet=''
    fi
    # shellcheck disable=SC2086  # no argument if it is empty
    cmake --build --preset "$preset" ${2:+--target "$2"} -- $quiet | sed '/^ninja: no work to do/d'
}
