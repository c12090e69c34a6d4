#!/usr/bin/env bash
# FTP daemons for the layer's integration tests. proftpd comes from apt
# (install-deps); vsftpd and pure-ftpd conflict with it in apt, so they are
# unpacked (not installed) into $TOLVA_FTPD_DIR (default /opt/tolva-ftpd),
# where the test fixture looks for them. Idempotent.
set -euo pipefail

DEST="${TOLVA_FTPD_DIR:-/opt/tolva-ftpd}"
SUDO=""
[ "$(id -u)" -eq 0 ] || SUDO="sudo"

need=()
[ -x "$DEST/usr/sbin/vsftpd" ] || need+=(vsftpd)
[ -x "$DEST/usr/sbin/pure-ftpd" ] || need+=(pure-ftpd)
[ ${#need[@]} -eq 0 ] && exit 0

work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
$SUDO mkdir -p "$DEST"
for pkg in "${need[@]}"; do
  if (cd "$work" && apt-get download "$pkg" >/dev/null 2>&1); then
    $SUDO dpkg -x "$work"/"$pkg"_*.deb "$DEST"
    echo "ftp-daemons: unpacked $pkg into $DEST"
  else
    echo "ftp-daemons: NOTICE: could not download $pkg; its tests will be skipped"
  fi
done
