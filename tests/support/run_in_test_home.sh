#!/bin/sh
# Runs one test program in a throw-away home: HOME, the XDG directories,
# TMPDIR and the machine settings database all point into a fresh directory
# under HOMES, removed when the program ends. No test reads the real home or
# leaves anything in it or in the system's temporary directory.
# Usage: run_in_test_home.sh HOMES PROGRAM [ARGS...]
set -u
mkdir -p "$1" && base=$(mktemp -d "$1/home.XXXXXX") || exit 1
shift
trap 'rm -rf "$base"' EXIT
trap 'exit 143' TERM INT
mkdir -p "$base/home" "$base/config" "$base/data" "$base/cache" "$base/state" "$base/runtime" "$base/tmp"
# Open like the system's /tmp, so a test that drops to another user can still
# reach its files; the runtime directory stays private, as XDG asks.
chmod 755 "$base" && chmod 1777 "$base/tmp" && chmod 700 "$base/runtime"
export HOME="$base/home" XDG_CONFIG_HOME="$base/config" XDG_DATA_HOME="$base/data" \
  XDG_CACHE_HOME="$base/cache" XDG_STATE_HOME="$base/state" XDG_RUNTIME_DIR="$base/runtime" \
  TMPDIR="$base/tmp" TOLVA_MACHINE_SETTINGS_DB="$base/machine/settings.db"
unset TOLVA_SETTINGS_DB
cd "$base/tmp" || exit 1
"$@"
