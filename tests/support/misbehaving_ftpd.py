#!/usr/bin/python3
"""A scripted FTP server that misbehaves on purpose, for fault tests.

Usage: misbehaving_ftpd.py PORT_FILE LOG_FILE SCENARIO_JSON

Listens on 127.0.0.1 (a kernel-chosen port written to PORT_FILE), logs every
command line it receives to LOG_FILE (one per line, flushed at once, so a test
can count control exchanges), and behaves as the scenario says. Keys (all
optional):
  login          "ok" | "refuse"                     (530 on PASS)
  stall_greeting seconds before the greeting
  greeting_bytes size of a multi-line greeting (e.g. 1048576 for a 1 MB line)
  split_replies  true: every reply goes out a few bytes per packet
  multiline      true: PWD and CWD answer with multi-line replies
  stall_on       {"VERB": seconds}: wait that long before answering VERB
  drop_on        ["VERB", ...]: close the control connection on VERB
  feat_mlsd      true: FEAT offers MLST, MLSD is answered with `listing`
  listing        text sent for LIST / MLSD
  list_mode      "ok" | "drop_data" (half the listing, then 426) | "drop_control"
  files          {"name": "content"} served by RETR (content is latin-1 text)
  retr_mode      "ok" | "drop_data" (half, then 426) | "drop_data_226" (half,
                 then 226: a lying server) | "stall" (half, then silence) |
                 "extra" (150 announces fewer bytes than are sent)
  stor_mode      "ok" | "drop_data" (close after 64 KiB, 426) | "stall"
"""
import json
import os
import socket
import sys
import threading
import time

port_file, log_file, scenario = sys.argv[1], sys.argv[2], json.loads(sys.argv[3])
log_lock = threading.Lock()


def log(line):
    with log_lock:
        with open(log_file, "ab") as f:
            f.write(line + b"\n")


class Session:
    def __init__(self, conn):
        self.conn = conn
        self.pasv = None
        self.cwd = "/"
        self.stored = {}

    def send(self, text):
        data = text.encode("latin-1") if isinstance(text, str) else text
        if scenario.get("split_replies"):
            for i in range(0, len(data), 3):
                self.conn.sendall(data[i:i + 3])
                time.sleep(0.001)
        else:
            self.conn.sendall(data)

    def reply(self, code, text):
        self.send("%d %s\r\n" % (code, text))

    def open_passive(self):
        if self.pasv:
            self.pasv.close()
        self.pasv = socket.socket(socket.AF_INET, socket.SOCK_STREAM)
        self.pasv.setsockopt(socket.SOL_SOCKET, socket.SO_REUSEADDR, 1)
        self.pasv.bind(("127.0.0.1", 0))
        self.pasv.listen(1)
        self.pasv.settimeout(10)
        return self.pasv.getsockname()[1]

    def accept_data(self):
        data, _ = self.pasv.accept()
        self.pasv.close()
        self.pasv = None
        return data

    def send_data(self, payload, mode, announce=None):
        self.reply(150, "Opening data connection%s." % (" (%d bytes)" % announce if announce is not None else ""))
        data = self.accept_data()
        try:
            if mode in ("drop_data", "drop_data_226", "stall"):
                data.sendall(payload[: len(payload) // 2])
                if mode == "stall":
                    time.sleep(3600)
                data.close()
                if mode == "drop_data_226":
                    self.reply(226, "Transfer complete.")
                else:
                    self.reply(426, "Connection closed; transfer aborted.")
                return
            data.sendall(payload)
            data.close()
            self.reply(226, "Transfer complete.")
        except OSError:
            data.close()
            self.reply(426, "Connection closed; transfer aborted.")

    def run(self):
        time.sleep(scenario.get("stall_greeting", 0))
        size = scenario.get("greeting_bytes", 0)
        if size:
            self.send("220-" + "x" * size + "\r\n220 ready\r\n")
        else:
            self.reply(220, "misbehaving server ready")
        buf = b""
        while True:
            while b"\n" not in buf:
                chunk = self.conn.recv(65536)
                if not chunk:
                    return
                buf += chunk
            line, buf = buf.split(b"\n", 1)
            line = line.rstrip(b"\r")
            log(line)
            verb, _, arg = line.decode("latin-1").partition(" ")
            verb = verb.upper()
            time.sleep(scenario.get("stall_on", {}).get(verb, 0))
            if verb in scenario.get("drop_on", []):
                return
            if not self.command(verb, arg):
                return

    def command(self, verb, arg):
        multi = scenario.get("multiline")
        if verb == "USER":
            self.reply(331, "Password please.")
        elif verb == "PASS":
            if scenario.get("login", "ok") == "refuse":
                self.reply(530, "Login incorrect.")
            else:
                self.reply(230, "Logged in.")
        elif verb == "FEAT":
            feats = " MLST type*;size*;modify*;\r\n" if scenario.get("feat_mlsd") else ""
            self.send("211-Features:\r\n" + feats + " EPSV\r\n211 End\r\n")
        elif verb == "TYPE":
            self.reply(200, "Type set.")
        elif verb == "EPSV":
            port = self.open_passive()
            self.reply(229, "Entering Extended Passive Mode (|||%d|)" % port)
        elif verb == "PASV":
            port = self.open_passive()
            self.reply(227, "Entering Passive Mode (127,0,0,1,%d,%d)" % (port // 256, port % 256))
        elif verb == "PWD":
            if multi:
                self.send('257-Here is the directory\r\n257-more text\r\n257 "%s" is current.\r\n' % self.cwd)
            else:
                self.reply(257, '"%s" is current.' % self.cwd)
        elif verb == "CWD":
            self.cwd = arg if arg.startswith("/") else self.cwd.rstrip("/") + "/" + arg
            if multi:
                self.send("250-Changed.\r\n250-Line two\r\n250 OK\r\n")
            else:
                self.reply(250, "OK")
        elif verb in ("LIST", "MLSD", "NLST"):
            mode = scenario.get("list_mode", "ok")
            if mode == "drop_control":
                self.reply(150, "Here it comes.")
                data = self.accept_data()
                data.sendall(scenario.get("listing", "").encode("latin-1")[:100])
                data.close()
                return False
            self.send_data(scenario.get("listing", "").encode("latin-1"), mode)
        elif verb == "RETR":
            files = scenario.get("files", {})
            if arg not in files:
                self.reply(550, "No such file.")
                return True
            payload = files[arg].encode("latin-1")
            mode = scenario.get("retr_mode", "ok")
            if mode == "extra":
                self.send_data(payload + b"EXTRA BYTES", "ok", announce=len(payload))
            else:
                self.send_data(payload, mode)
        elif verb == "STOR":
            self.reply(150, "Send it.")
            data = self.accept_data()
            mode = scenario.get("stor_mode", "ok")
            got = b""
            try:
                while True:
                    if mode == "drop_data" and len(got) >= 65536:
                        data.close()
                        self.reply(426, "Connection closed; transfer aborted.")
                        return True
                    if mode == "stall" and len(got) >= 65536:
                        time.sleep(3600)
                    chunk = data.recv(65536)
                    if not chunk:
                        break
                    got += chunk
                data.close()
                self.stored[arg] = got
                self.reply(226, "Stored %d bytes." % len(got))
            except OSError:
                data.close()
                self.reply(426, "Connection closed; transfer aborted.")
        elif verb == "ABOR":
            self.reply(225, "No transfer to abort.")
        elif verb in ("MKD", "RMD", "DELE"):
            self.reply(250 if verb != "MKD" else 257, "OK")
        elif verb == "QUIT":
            self.reply(221, "Bye.")
            return False
        else:
            self.reply(502, "Not implemented.")
        return True


def serve(conn):
    try:
        Session(conn).run()
    except OSError:
        pass
    finally:
        conn.close()


def main():
    listener = socket.socket(socket.AF_INET, socket.SOCK_STREAM)
    listener.setsockopt(socket.SOL_SOCKET, socket.SO_REUSEADDR, 1)
    listener.bind(("127.0.0.1", 0))
    listener.listen(16)
    with open(port_file + ".tmp", "w") as f:
        f.write(str(listener.getsockname()[1]))
    os.rename(port_file + ".tmp", port_file)
    while True:
        conn, _ = listener.accept()
        threading.Thread(target=serve, args=(conn,), daemon=True).start()


main()
