#!/bin/sh
# Starts tolva-gui under a virtual X server, has it load a CSV file into its
# list box and save a screenshot, then checks the picture: the column
# separators stand at the pixel columns the tab stops give.
# Usage: gui_screenshot.sh TOLVA_GUI CHECKER CSV_FILE ARTEFACT_DIR
set -eu
gui=$1 checker=$2 csv=$3 out=$4
mkdir -p "$out"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT INT TERM
# The window remembers its place in a settings store of its own.
XDG_CONFIG_HOME="$work/config" xvfb-run -a -s "-screen 0 1280x800x24" \
  "$gui" --csv "$csv" --screenshot "$out/tolva-gui.png" --report "$out/tolva-gui-columns.txt" --quit
"$checker" "$out/tolva-gui.png" "$out/tolva-gui-columns.txt"
