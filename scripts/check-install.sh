#!/usr/bin/env bash
# Installs the release into a folder of its own and builds and runs another project against nothing but that.
set -euo pipefail
cd "$(dirname "$0")/.."

prefix=$PWD/build/install/prefix
consumer=$PWD/build/install/consumer
rm -rf build/install
cmake --install build/release --prefix "$prefix" >/dev/null
cmake -S tests/package -B "$consumer" -G Ninja -DCMAKE_PREFIX_PATH="$prefix" -DCMAKE_BUILD_TYPE=Release >/dev/null
cmake --build "$consumer"
"$consumer/consumer"
"$prefix/bin/multientity" --version
