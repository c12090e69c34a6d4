#!/usr/bin/env bash
# FTP: a session on a local server (pyftpdlib on 127.0.0.1, a free port, a
# temporary root), from a failed login to a buffered download stopped
# half-way. The server is stopped by its process id at the end.
set -euo pipefail

root="$TOLVA_DEMO_WORK/ftp-root"
local_dir="$TOLVA_DEMO_WORK/ftp-local"
mkdir -p "$root" "$local_dir/downloads"

# Files the session works on.
printf 'Tolva FTP demo\nThis file travels as text.\n' > "$root/readme.txt"
printf 'id,name,amount\n1,Alpha,10\n2,Beta,20\n' > "$root/january.csv"
printf 'id,name,amount\n3,Gamma,30\n' > "$root/february.csv"
printf 'scratch\n' > "$root/old1.tmp"
printf 'scratch\n' > "$root/old2.tmp"
mkdir -p "$root/archive"
head -c $((20 * 1024 * 1024)) /dev/urandom > "$root/large.bin"

source "$(dirname "$0")/ftp-server.bash"
start_demo_ftp "$root" "$TOLVA_DEMO_WORK/ftp-server.log"

"$TOLVA_DEMO" ftp "127.0.0.1:$port" demo demo-password "$local_dir"
echo "  large.bin after the complete download: $(stat -c %s "$local_dir/large.bin") bytes"
ls "$local_dir/downloads" | sed 's/^/  downloaded by mask: /'
