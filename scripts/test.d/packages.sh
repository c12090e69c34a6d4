#!/usr/bin/env bash
# The packages as a user gets them: builds them (scripts/package), installs
# them into this machine with dpkg -i, builds the two examples against the
# installed files alone (examples/console with find_package, examples/qt with
# pkg-config), runs them, then removes the packages again with dpkg -r.
# Needs root for dpkg; refuses to start when any of the packages is already
# on the machine, so it never removes what someone else installed.
set -uo pipefail
cd "$(dirname "$0")/../.." || exit 1
root=$(pwd)
packages=(libtolva0 libtolva-dev libtolva-qt0 libtolva-qt-dev tolva-gui)

fail() {
  echo "packages: $*" >&2
  exit 1
}

if [ "$(id -u)" -ne 0 ]; then
  fail "installing packages with dpkg needs root; run scripts/test as root (CI does)"
fi
# Anything dpkg knows in another state than "not-installed" (installed, half
# installed, config files left) belongs to someone else.
present() {
  dpkg-query -W -f='${Package} ${db:Status-Status}\n' 'libtolva*' tolva-gui 2>/dev/null | grep -v ' not-installed$'
}
if [ -n "$(present)" ]; then
  fail "Tolva packages are already on this machine; remove them first:
$(present)"
fi

mkdir -p build
work=$(mktemp -d "$root/build/packages-check.XXXXXX") || fail "cannot make a work folder"
server_pid=""
cleanup() {
  [ -n "$server_pid" ] && kill "$server_pid" 2>/dev/null && wait "$server_pid" 2>/dev/null
  local known
  known=$(present | cut -d' ' -f1)
  # shellcheck disable=SC2086 # one package name per word
  [ -n "$known" ] && { dpkg -P $known >"$work/dpkg-p.log" 2>&1 || cat "$work/dpkg-p.log" >&2; }
  rm -rf "$work"
}
trap cleanup EXIT
# Scratch files of the build, cpack and lintian go here too, not to /tmp.
export TMPDIR="$work/tmp"
mkdir -p "$TMPDIR"

scripts/package || fail "scripts/package failed"

# Every file and link the packages ship, to check that removal takes them all.
shipped=$(for deb in dist/*.deb; do dpkg-deb --fsys-tarfile "$deb" | tar -t; done | grep -v '/$' | sed 's|^\./|/|')
dpkg -i dist/*.deb >"$work/dpkg-i.log" 2>&1 || { cat "$work/dpkg-i.log" >&2; fail "dpkg -i failed"; }

# The shared libraries export the API the installed headers mark and nothing
# else: every dynamic symbol belongs to a class or function marked
# TOLVA_EXPORT / TOLVA_QT_EXPORT, so no private family, standard library
# template or POCO, SQLite or Qt symbol reaches a host's link.
exported_outside_api() { # LIBRARY
  local marked sym name
  marked=$(grep -rhoE '(class|struct) TOLVA(_QT)?_EXPORT [A-Za-z0-9_]+|TOLVA(_QT)?_EXPORT [^;(]*[ :&*](operator==|[A-Za-z0-9_]+)\(' \
    /usr/include/tolva | sed -E 's/\($//; s/.*[ :&*]//' | sort -u)
  nm -D --defined-only -C "$1" | cut -d' ' -f3- |
    sed -E 's/^(typeinfo name for|typeinfo for|vtable for|VTT for|(non-)?virtual thunk to) //' |
    while read -r sym; do
      name=$(sed -E 's/^tolva::((platform|qt)::)?(operator==|[A-Za-z0-9_]+).*/\3/; t; s/.*/-/' <<<"$sym")
      grep -qxF -- "$name" <<<"$marked" || echo "$sym"
    done
}
for package in libtolva0 libtolva-qt0; do
  library=$(dpkg -L "$package" | grep -E '/libtolva(-qt)?\.so\.0$')
  count=$(nm -D --defined-only "$library" | wc -l)
  [ "$count" -gt 0 ] || fail "$library exports nothing"
  leaked=$(exported_outside_api "$library")
  [ -z "$leaked" ] || fail "$library exports more than the marked API:
$(head -20 <<<"$leaked")"
  echo "packages: $library exports $count symbols, all of the marked API"
done

# The examples and what they write stay in the work folder: a home of their
# own, and copies of the sources away from the tree, so nothing but /usr can
# supply the headers, the libraries, the CMake package and the .pc files.
export HOME="$work/home" XDG_CONFIG_HOME="$work/home/.config" XDG_CACHE_HOME="$work/home/.cache" \
  XDG_DATA_HOME="$work/home/.local/share" XDG_RUNTIME_DIR="$work/runtime"
mkdir -p "$HOME" "$XDG_RUNTIME_DIR" && chmod 700 "$XDG_RUNTIME_DIR"
cp -r examples/console examples/qt "$work/"

{ cmake -S "$work/console" -B "$work/console/build" -G Ninja -DCMAKE_FIND_PACKAGE_NO_PACKAGE_REGISTRY=ON &&
  cmake --build "$work/console/build"; } >"$work/console.log" 2>&1 ||
  { cat "$work/console.log" >&2; fail "examples/console does not build against the installed packages"; }
console="$work/console/build/tolva-console-example"
# ldd's output is taken whole first: with pipefail, grep -q leaving early
# could fail the pipe by a SIGPIPE to ldd.
links=$(ldd "$console")
grep -qE "libtolva.so.0 => (/usr)?/lib/" <<<"$links" || fail "examples/console is not linked to /usr's libtolva.so.0"

printf 'name,size\r\nalpha,1\r\nbeta,2\r\ngamma,3\r\n' >"$work/data.csv"
printf '[Example]\r\nRuns=41\r\n' >"$work/settings.ini"
out=$("$console" "$work/data.csv" "$work/settings.ini") || fail "examples/console failed: $out"
echo "$out"
grep -qx 'csv: 4 rows x 2 columns' <<<"$out" || fail "examples/console read the wrong shape"
grep -qx 'profile: Runs 41 -> 42' <<<"$out" || fail "examples/console did not update the profile"
grep -q '^Runs=42' "$work/settings.ini" || fail "the profile file does not hold the new value"

make -C "$work/qt" >"$work/qt.log" 2>&1 ||
  { cat "$work/qt.log" >&2; fail "examples/qt does not build against the installed packages"; }
links=$(ldd "$work/qt/tolva-qt-example")
grep -qE "libtolva-qt.so.0 => (/usr)?/lib/" <<<"$links" ||
  fail "examples/qt is not linked to /usr's libtolva-qt.so.0"

# A local FTP server on a port the system picks; it prints the port once it
# listens. Debian's python, which has pyftpdlib, whatever python3 is first on PATH.
mkdir -p "$work/ftp/pub" && echo one >"$work/ftp/pub/first.txt" && echo two >"$work/ftp/pub/second.txt"
exec {server_out}< <(exec /usr/bin/python3 -c '
import sys
from pyftpdlib.authorizers import DummyAuthorizer
from pyftpdlib.handlers import FTPHandler
from pyftpdlib.servers import FTPServer
authorizer = DummyAuthorizer()
authorizer.add_anonymous(sys.argv[1])
FTPHandler.authorizer = authorizer
server = FTPServer(("127.0.0.1", 0), FTPHandler)
print(server.address[1], flush=True)
server.serve_forever()
' "$work/ftp" 2>"$work/ftp.log")
server_pid=$!
read -r -t 60 port <&"$server_out" || { cat "$work/ftp.log" >&2; fail "the FTP server did not start"; }

listing=$(QT_QPA_PLATFORM=offscreen "$work/qt/tolva-qt-example" "127.0.0.1:$port" /pub --click-once) ||
  fail "examples/qt failed: $listing"
echo "$listing"
[ "$(sort <<<"$listing" | paste -sd' ')" = "first.txt second.txt" ] || fail "examples/qt listed the wrong files"

kill "$server_pid" && wait "$server_pid" 2>/dev/null
server_pid=""
exec {server_out}<&-

# dpkg -r takes every file away. The two library packages then stay known
# to dpkg as "config-files" only because of their ldconfig postrm; purging
# makes it forget them, as if they had never been installed.
dpkg -r "${packages[@]}" >"$work/dpkg-r.log" 2>&1 || { cat "$work/dpkg-r.log" >&2; fail "dpkg -r failed"; }
left=$(while read -r path; do [ -e "$path" ] || [ -L "$path" ] && echo "$path"; done <<<"$shipped")
[ -z "$left" ] || fail "files left after dpkg -r: $left"
mapfile -t leftover < <(present | cut -d' ' -f1)
if [ ${#leftover[@]} -gt 0 ]; then
  dpkg -P "${leftover[@]}" >"$work/dpkg-p.log" 2>&1 || { cat "$work/dpkg-p.log" >&2; fail "dpkg -P failed"; }
fi
[ -z "$(present)" ] || fail "packages left after removal: $(present)"
echo "packages: the five packages install, build and run both examples, and remove cleanly"
