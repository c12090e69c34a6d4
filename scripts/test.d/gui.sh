#!/bin/sh
# The GUI host's screenshot test runs inside ctest (gui_screenshot, under
# xvfb-run); this names the artefact it leaves and fails if a build that
# has tolva-gui and xvfb-run did not produce it.
set -eu
for dir in build/plain build/asan; do
  [ -x "$dir/qt/tolva-gui" ] || continue
  if ! command -v xvfb-run >/dev/null 2>&1; then
    echo "gui: xvfb-run not installed; the screenshot test was skipped in $dir"
    continue
  fi
  shot="$dir/artifacts/tolva-gui.png"
  if [ ! -s "$shot" ]; then
    echo "gui: $shot is missing" >&2
    exit 1
  fi
  echo "gui: screenshot kept at $shot (columns checked in $dir/artifacts/tolva-gui-columns.txt)"
done
