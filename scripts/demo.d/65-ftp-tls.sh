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

port=$(/usr/bin/python3 -c 'import socket; s=socket.socket(); s.bind(("127.0.0.1", 0)); print(s.getsockname()[1]); s.close()')
/usr/bin/python3 - "$work/root" "$port" "$work/server.pem" "$work/key.pem" > "$work/server.log" 2>&1 <<'PY' &
import sys
from pyftpdlib.authorizers import DummyAuthorizer
from pyftpdlib.handlers import TLS_FTPHandler
from pyftpdlib.servers import FTPServer
root, port, cert, key = sys.argv[1:5]
TLS_FTPHandler.certfile, TLS_FTPHandler.keyfile = cert, key
TLS_FTPHandler.tls_control_required = TLS_FTPHandler.tls_data_required = True
TLS_FTPHandler.authorizer = DummyAuthorizer()
TLS_FTPHandler.authorizer.add_user("demo", "demo-password", root, perm="elradfmw")
FTPServer(("127.0.0.1", int(port)), TLS_FTPHandler).serve_forever()
PY
server=$!
trap 'kill "$server" 2>/dev/null || true; wait "$server" 2>/dev/null || true' EXIT

# Wait (bounded) until the server answers.
for _ in $(seq 1 50); do
  if /usr/bin/python3 -c "import socket,sys; socket.create_connection(('127.0.0.1', $port), 0.2).close()" 2>/dev/null; then
    break
  fi
  sleep 0.1
done

"$TOLVA_DEMO" ftp-tls "127.0.0.1:$port" demo demo-password "$work/authority.pem" "$work/local"
echo "  back.txt on the server: $(cat "$work/root/back.txt" | tr -d '\r' | head -1)"
