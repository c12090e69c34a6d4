#!/bin/sh
# Starts tolva-gui under a virtual X server, has it load a CSV file into its
# list box and save a screenshot, then checks the picture: the column
# separators stand at the pixel columns the tab stops give, and the path
# shown is the demonstration folder's, under "~".
# Usage: gui_screenshot.sh TOLVA_GUI CHECKER CSV_FILE ARTEFACT_DIR
set -eu
gui=$1 checker=$2 csv=$3 out=$4
mkdir -p "$out"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT INT TERM
# The window remembers its place in a settings store of its own, and loads
# the file from a demonstration folder in a home of its own: the picture
# shows ~/tolva-demo, nothing of the machine it was made on.
mkdir -p "$work/home/tolva-demo"
cp "$csv" "$work/home/tolva-demo/accounts.csv"
HOME="$work/home" XDG_CONFIG_HOME="$work/config" xvfb-run -a -s "-screen 0 1280x800x24" \
  "$gui" --csv "$work/home/tolva-demo/accounts.csv" --screenshot "$out/tolva-gui.png" \
  --report "$out/tolva-gui-columns.txt" --quit
"$checker" "$out/tolva-gui.png" "$out/tolva-gui-columns.txt"
grep -qx 'path ~/tolva-demo/accounts.csv' "$out/tolva-gui-columns.txt" ||
  { echo "gui_screenshot: the window shows the file's full path, not ~/tolva-demo/accounts.csv" >&2; exit 1; }
