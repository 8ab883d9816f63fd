#!/usr/bin/env bash
# Installs the build into a temporary prefix and calls the installed
# library from each language a host may use: a C host built with
# pkg-config, the Python package from the prefix's package folder, and a
# C# host against the installed assembly.
#   install_bindings_check.sh BUILD_DIR SOURCE_DIR PYTHON(or "") MCS(or "") MONO(or "")
set -euo pipefail
build_dir=$1
source_dir=$2
python=${3:-}
mcs=${4:-}
mono=${5:-}
prefix=$(mktemp -d)
trap 'rm -rf "$prefix"' EXIT
cmake --install "$build_dir" --prefix "$prefix/usr" >/dev/null
export TMPDIR="$prefix" NORVIK50_LOCALE=de-DE NORVIK50_REGISTRY_DIR="$prefix/registry"
mkdir "$prefix/registry"

pc_dir=$(dirname "$(find "$prefix/usr" -name norvik50.pc)")
# shellcheck disable=SC2046
cc -std=c99 "$source_dir/bindings/examples/example.c" -o "$prefix/c_host" \
  $(PKG_CONFIG_PATH="$pc_dir" pkg-config --cflags --libs norvik50)
# Whole outputs are read before they are checked: a reader that stops early
# would break the writer's pipe.
first_line() { local out; out=$("$@"); printf '%s\n' "${out%%$'\n'*}"; }
[[ $(first_line "$prefix/c_host") == 1234.56 ]]

if [[ -n $python ]]; then
  package=$(find "$prefix/usr" -path '*-packages/norvik50/__init__.py')
  [[ -f $(dirname "$package")/__init__.pyi ]]
  # Found by the relative run path of the extension: no LD_LIBRARY_PATH.
  [[ $(first_line env PYTHONPATH="$(dirname "$(dirname "$package")")" "$python" \
    "$source_dir/bindings/examples/example.py") == 1234.56 ]]
fi

if [[ -n $mcs && -n $mono ]]; then
  assembly=$(find "$prefix/usr" -name Norvik50.dll)
  [[ -f $assembly.config ]]
  cp "$assembly" "$assembly.config" "$prefix/"
  "$mcs" -nologo -r:"$prefix/Norvik50.dll" -out:"$prefix/Sample.exe" \
    "$source_dir/bindings/dotnet/sample/Sample.cs"
  [[ $(first_line env LD_LIBRARY_PATH="$(dirname "$(find "$prefix/usr" -name 'libnorvik50.so.0')")" \
    "$mono" "$prefix/Sample.exe") == 'Invoice | 2024-0042' ]]
fi
echo "installed bindings: C${python:+, Python}${mcs:+, .NET}"
