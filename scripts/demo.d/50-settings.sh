#!/usr/bin/env bash
# Settings: an application's settings in a database under the tour's work
# directory (the user's own settings are never touched), listed, read,
# written with a backup file, deleted, and exported as a profile file.
set -euo pipefail

db="$TOLVA_DEMO_WORK/settings/settings.db"
mkdir -p "$TOLVA_DEMO_WORK/settings"
export TOLVA_SETTINGS_DB="$db"  # belt and braces: nothing in this part reaches ~/.config

run() { "$TOLVA_DEMO" settings "$db" "Tolva Demo" "$@"; }

run set Startup Left 1200
run set Startup Top 900
run set Window Colour blue "$TOLVA_DEMO_WORK/settings/backup.ini"
run set Recent File1 '/home/demo/report 2011.csv'
run list
run get Window Colour
run get Window Missing "the default"
run delete Recent File1
run delete Recent
run export "$TOLVA_DEMO_WORK/settings/export.ini"
echo "  backup file written on save:"
sed 's/^/    /' "$TOLVA_DEMO_WORK/settings/backup.ini"
echo "  exported profile:"
sed 's/^/    /' "$TOLVA_DEMO_WORK/settings/export.ini"
