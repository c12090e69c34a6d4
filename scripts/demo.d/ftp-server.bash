# Sourced by the FTP parts of the demo: start_demo_ftp ROOT LOG [CERT KEY]
# starts a local pyftpdlib server for user "demo" (password "demo-password")
# on a port the system picks, TLS-only on control and data connections when
# a certificate and key are given. It sets $port once the server listens,
# and stops the server by its process id when the calling part exits.
start_demo_ftp() {
  local root=$1 log=$2 port_file
  port_file=$(mktemp -u "$TOLVA_DEMO_WORK/ftp-port.XXXXXX")
  /usr/bin/python3 - "$root" "$port_file" "${@:3}" > "$log" 2>&1 <<'PY' &
import os, sys
from pyftpdlib.authorizers import DummyAuthorizer
from pyftpdlib.handlers import FTPHandler, TLS_FTPHandler
from pyftpdlib.servers import FTPServer
root, port_file = sys.argv[1:3]
handler = FTPHandler
if len(sys.argv) > 3:
    handler = TLS_FTPHandler
    handler.certfile, handler.keyfile = sys.argv[3:5]
    handler.tls_control_required = handler.tls_data_required = True
handler.authorizer = DummyAuthorizer()
handler.authorizer.add_user("demo", "demo-password", root, perm="elradfmw")
server = FTPServer(("127.0.0.1", 0), handler)  # listening from here on
with open(port_file + ".part", "w") as f:
    f.write(str(server.socket.getsockname()[1]))
os.rename(port_file + ".part", port_file)
server.serve_forever()
PY
  server=$!
  trap 'kill "$server" 2>/dev/null || true; wait "$server" 2>/dev/null || true' EXIT
  # The server names its port once it listens; a server that dies first ends the wait.
  for _ in $(seq 1 300); do
    [ -s "$port_file" ] && break
    kill -0 "$server" 2>/dev/null || break
    sleep 0.1
  done
  if [ ! -s "$port_file" ]; then
    echo "demo: the local FTP server did not start (see $log)" >&2
    return 1
  fi
  port=$(cat "$port_file")
}
