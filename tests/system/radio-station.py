#!/usr/bin/env python3
"""A radio station for the whole-program tests: an MP3 served as an endless ICY stream.

Usage: radio-station.py MP3 PORTFILE. Listens on a free port of 127.0.0.1 and writes
the port, then a newline, to PORTFILE. Every path plays the same station:
  /stall...   sends the headers and the first SWITCH bytes, then nothing more;
  /silent...  accepts the connection and never answers;
  anything else: the MP3 over and over, with a metadata block after every METAINT bytes
  when the client asks for one; its StreamTitle is "First Song" for the first SWITCH
  bytes and "Second Song" after them.
"""
import http.server
import sys

METAINT = 8192
SWITCH = 64 * 1024


def metadata_block(title):
    text = f"StreamTitle='{title}';".encode()
    blocks = (len(text) + 15) // 16
    return bytes([blocks]) + text.ljust(blocks * 16, b"\0")


class Station(http.server.BaseHTTPRequestHandler):
    def do_GET(self):
        if self.path.startswith("/silent"):
            self.connection.recv(1)  # until the client gives up
            return
        audio = open(sys.argv[1], "rb").read()
        icy = self.headers.get("Icy-MetaData") == "1"
        self.send_response(200)
        self.send_header("Content-Type", "audio/mpeg")
        self.send_header("icy-name", "Test Radio")
        if icy:
            self.send_header("icy-metaint", str(METAINT))
        self.end_headers()
        pending, sent = b"", 0
        try:
            while True:
                while len(pending) < METAINT:
                    pending += audio
                self.wfile.write(pending[:METAINT])
                pending, sent = pending[METAINT:], sent + METAINT
                if icy:
                    self.wfile.write(metadata_block("First Song" if sent <= SWITCH else "Second Song"))
                if self.path.startswith("/stall") and sent >= SWITCH:
                    self.wfile.flush()
                    self.connection.recv(1)
                    return
        except (BrokenPipeError, ConnectionResetError):
            pass

    def log_message(self, *arguments):
        pass


server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Station)
with open(sys.argv[2], "w") as port_file:
    port_file.write(f"{server.server_address[1]}\n")
server.serve_forever()
