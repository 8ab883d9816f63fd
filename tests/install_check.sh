#!/usr/bin/env bash
# Installs the build into a temporary prefix and builds a host against it,
# once with the CMake package and once with pkg-config; both hosts and the
# installed tool run as a user would start them, without LD_LIBRARY_PATH.
# With the Qt dialogs (third argument ON) a Qt host is built both ways too
# and must show a real box that the dialog script answers.
set -euo pipefail
build_dir=$1
source_dir=$2
with_qt=${3:-OFF}
consumer=$source_dir/tests/install_consumer
prefix=$(mktemp -d)
trap 'rm -rf "$prefix"' EXIT
cmake --install "$build_dir" --prefix "$prefix/usr" --strip >/dev/null
cmake -S "$consumer" -B "$prefix/consumer" \
  -DCMAKE_PREFIX_PATH="$prefix/usr" -DCONSUMER_QT="$with_qt" >/dev/null
cmake --build "$prefix/consumer" >/dev/null
TMPDIR="$prefix" "$prefix/consumer/consumer"
pc_dir=$(dirname "$(find "$prefix/usr" -name norvik50.pc)")
# shellcheck disable=SC2046
c++ -std=c++20 "$consumer/main.cpp" -o "$prefix/pc_consumer" \
  $(PKG_CONFIG_PATH="$pc_dir" pkg-config --cflags --libs norvik50)
TMPDIR="$prefix" "$prefix/pc_consumer"
TMPDIR="$prefix" "$prefix/usr/bin/norvik50" call tklGetFullPath 'C:\Temp' x.LOG | grep -qxF 'C:\Temp\x.LOG'

# Installed stripped, as the README installs it: no debug sections left.
if readelf -S "$prefix/usr/bin/norvik50" | grep -q '\.debug_info'; then
  echo "the installed command still carries its debug information" >&2
  exit 1
fi

[[ $with_qt == ON ]] || exit 0
# The installed command finds its dialogs plugin in the library folder and
# shows a real box on the offscreen platform (the script clicks No, 7).
mkdir "$prefix/tool-registry"
export NORVIK50_REGISTRY_DIR="$prefix/tool-registry"
"$prefix/usr/bin/norvik50" reg add 'HKCU\SOFTWARE\VANTEX\Global' /v Language /t REG_DWORD /d 2 /f >/dev/null
printf '%s\n' '{"click":2}' >"$prefix/tool-script.jsonl"
answer=$(QT_QPA_PLATFORM=offscreen NORVIK50_DIALOG_SCRIPT="$prefix/tool-script.jsonl" \
  NORVIK50_DIALOG_LOG="$prefix/tool-dialogs.jsonl" TMPDIR="$prefix" \
  "$prefix/usr/bin/norvik50" call tklMsgBox 'Save?' '' 4 Install)
if [[ $answer != 7 ]]; then
  echo "installed norvik50 call tklMsgBox answered '$answer', dialog log:" >&2
  cat "$prefix/tool-dialogs.jsonl" >&2 || true
  exit 1
fi
unset NORVIK50_REGISTRY_DIR
# Qt's headers want position-independent code; its CMake targets say so
# themselves, a pkg-config build has to.
# shellcheck disable=SC2046
c++ -std=c++20 -fPIC "$consumer/qt_main.cpp" -o "$prefix/pc_qt_consumer" \
  $(PKG_CONFIG_PATH="$pc_dir" pkg-config --cflags --libs norvik50-qt)
# The script clicks the second button (No, 7) of the Yes/No/Cancel box;
# the log must show exactly that one box.
printf '%s\n' '{"click":2}' >"$prefix/script.jsonl"
for host in "$prefix/consumer/qt_consumer" "$prefix/pc_qt_consumer"; do
  rm -rf "$prefix/registry" "$prefix/dialogs.jsonl"
  mkdir "$prefix/registry"
  answer=$(QT_QPA_PLATFORM=offscreen NORVIK50_DIALOG_SCRIPT="$prefix/script.jsonl" \
    NORVIK50_DIALOG_LOG="$prefix/dialogs.jsonl" NORVIK50_REGISTRY_DIR="$prefix/registry" \
    TMPDIR="$prefix" "$host")
  if [[ $answer != 7 ]] || [[ $(grep -c '"form":"frmStdMsg"' "$prefix/dialogs.jsonl") != 1 ]]; then
    echo "$host: answer '$answer', dialog log:" >&2
    cat "$prefix/dialogs.jsonl" >&2 || true
    exit 1
  fi
done
