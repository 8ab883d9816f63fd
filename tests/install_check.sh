#!/usr/bin/env bash
# Installs the build into a temporary prefix and builds a host against it,
# once with the CMake package and once with pkg-config; both hosts and the
# installed tool run as a user would start them, without LD_LIBRARY_PATH.
set -euo pipefail
build_dir=$1
source_dir=$2
prefix=$(mktemp -d)
trap 'rm -rf "$prefix"' EXIT
cmake --install "$build_dir" --prefix "$prefix/usr" >/dev/null
cmake -S "$source_dir/tests/install_consumer" -B "$prefix/consumer" \
  -DCMAKE_PREFIX_PATH="$prefix/usr" >/dev/null
cmake --build "$prefix/consumer" >/dev/null
TMPDIR="$prefix" "$prefix/consumer/consumer"
pc_dir=$(dirname "$(find "$prefix/usr" -name norvik50.pc)")
# shellcheck disable=SC2046
c++ -std=c++20 "$source_dir/tests/install_consumer/main.cpp" -o "$prefix/pc_consumer" \
  $(PKG_CONFIG_PATH="$pc_dir" pkg-config --cflags --libs norvik50)
TMPDIR="$prefix" "$prefix/pc_consumer"
TMPDIR="$prefix" "$prefix/usr/bin/norvik50" call tklGetFullPath 'C:\Temp' x.LOG | grep -qxF 'C:\Temp\x.LOG'
