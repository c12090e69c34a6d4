#!/usr/bin/env bash
# FTP over TLS: an authority and a certificate for 127.0.0.1 made on the spot
# by openssl, a local pyftpdlib server that requires TLS on control and data
# connections, and one secure session. The server is stopped by its process
# id at the end.
set -euo pipefail

work="$TOLVA_DEMO_WORK/ftp-tls"
mkdir -p "$work/root" "$work/local"
printf 'Tolva FTP over TLS demo\nNothing here crossed the wire in clear.\n' > "$work/root/secret.txt"

openssl req -batch -x509 -newkey rsa:2048 -nodes -days 1 -subj /CN=Tolva-Demo-Authority \
  -keyout "$work/authority-key.pem" -out "$work/authority.pem" 2>/dev/null
openssl req -batch -newkey rsa:2048 -nodes -subj /CN=127.0.0.1 -keyout "$work/key.pem" -out "$work/server.csr" 2>/dev/null
printf 'subjectAltName=IP:127.0.0.1,DNS:localhost\n' > "$work/names.ext"
openssl x509 -req -in "$work/server.csr" -CA "$work/authority.pem" -CAkey "$work/authority-key.pem" \
  -CAcreateserial -CAserial "$work/serial" -extfile "$work/names.ext" -days 1 -out "$work/server.pem" 2>/dev/null

source "$(dirname "$0")/ftp-server.bash"
start_demo_ftp "$work/root" "$work/server.log" "$work/server.pem" "$work/key.pem"

"$TOLVA_DEMO" ftp-tls "127.0.0.1:$port" demo demo-password "$work/authority.pem" "$work/local"
echo "  back.txt on the server: $(cat "$work/root/back.txt" | tr -d '\r' | head -1)"
