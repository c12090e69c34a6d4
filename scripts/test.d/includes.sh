#!/bin/sh
# The families reach the operating system only through the interfaces in
# include/tolva/platform/: no family includes a header of src/platform/, no
# file under src/platform/ includes a family's header, and no code asks a
# service for its concrete type.
set -u
cd "$(dirname "$0")/../.." || exit 1
families=$(find src -mindepth 1 -maxdepth 1 -type d ! -name platform -printf '%f\n' | paste -sd'|' -)
status=0
report() { # TITLE LINES
  [ -z "$2" ] && return
  echo "includes: $1" >&2
  echo "$2" | sed 's/^/  /' >&2
  status=1
}
report "a family includes from src/platform/:" \
  "$(grep -rnE '#include "platform/' src --include='*.cc' --include='*.h' | grep -v '^src/platform/')"
report "src/platform/ includes a family's header:" \
  "$(grep -rnE "#include \"($families)/" src/platform --include='*.cc' --include='*.h')"
report "code asks a service for its concrete type:" \
  "$(grep -rnwE 'typeid|dynamic_cast' src --include='*.cc' --include='*.h')"
[ "$status" -eq 0 ] && echo "includes: families and platform meet only in include/tolva/platform/"
exit "$status"
