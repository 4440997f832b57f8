#!/usr/bin/env bash
# Installs what is missing, configures, builds and runs all tests.
set -euo pipefail
cd "$(dirname "$0")"
. tools/prepare.sh

need_packages
build "${K7E_PRESET:-dev}"
ctest --preset "${K7E_PRESET:-dev}"
