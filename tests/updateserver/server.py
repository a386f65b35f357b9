#!/usr/bin/env python3
"""The update server of the tests: a real HTTP server on 127.0.0.1 that answers the wizard's three
exchanges from a folder of fixtures, at a pace the fixture chooses.

  server.py --fixtures DIR [--probe FILE] [--port-file FILE] [--stop-on-eof] [--watch-pid PID]

Prints "port N" once it listens (and writes N to --port-file). With --stop-on-eof it ends when its
standard input closes, with --watch-pid when that process is gone, so that a test or a scenario
that dies takes its server with it.

Requests:
  <scenario>/act/update.aspx?pid=..&ver=..&os=..
      ver all digits: the latest-version reply, fixtures/<scenario>/latest.txt;
      otherwise the download-info reply, fixtures/<scenario>/info.txt. A missing file gives a 404
      with an HTML page as its body. The scenario "echo" answers with the request's path and
      query. In a reply "{base}" becomes http://127.0.0.1:<port>, "{probe}" the probe's file
      name and "{probesize}" its size. A file <kind>.pace beside it sets the reply's pace.
  /setup/<pace>/<name>
      a setup file: the probe's bytes when the pace holds "probe", else "size=N" bytes.
  /release/<key>
      lets a reply held by "gate=<key>" go on.

Pace, comma-separated: probe | size=N | chunks=N (the body in N parts) | gate=KEY (each part
after the first waits for /release/KEY) | delay=MS (between parts) | reset=N (the connection is
reset in place of part N+1, after its gate) | forever (parts of 1 KiB without end, until
KEY is released when a gate is named; the body then ends as the connection closes).
"""
import argparse
import http.server
import os
import socket
import struct
import sys
import threading
import time
import urllib.parse

gates = {}
gates_lock = threading.Lock()


def gate(key):
    with gates_lock:
        return gates.setdefault(key, threading.Event())


def parse_pace(text):
    pace = {}
    for item in filter(None, (p.strip() for p in text.split(','))):
        key, _, value = item.partition('=')
        pace[key] = value
    return pace


class Handler(http.server.BaseHTTPRequestHandler):
    protocol_version = 'HTTP/1.0'
    fixtures = ''
    probe = ''

    def log_message(self, *args):
        pass

    def do_GET(self):
        self.connection.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
        url = urllib.parse.urlsplit(self.path)
        path = urllib.parse.unquote(url.path)
        if path.startswith('/release/'):
            gate(path[len('/release/'):]).set()
            return self.reply(b'released', {})
        if path.startswith('/setup/'):
            return self.setup_file(path[len('/setup/'):])
        if path.endswith('/act/update.aspx'):
            return self.exchange(path[:-len('/act/update.aspx')].strip('/'), url.query)
        self.not_found()

    def exchange(self, scenario, query):
        if scenario == 'echo':
            return self.reply(self.path.encode(), {})
        ver = urllib.parse.parse_qs(query, keep_blank_values=True).get('ver', [''])[0]
        kind = 'latest' if ver.isdigit() else 'info'
        folder = os.path.join(self.fixtures, scenario)
        reply = os.path.join(folder, kind + '.txt')
        if not scenario or '..' in scenario or not os.path.isfile(reply):
            return self.not_found()
        with open(reply, 'rb') as f:
            body = f.read().decode('utf-8')
        base = 'http://127.0.0.1:%d' % self.server.server_address[1]
        probe_name = os.path.basename(self.probe) if self.probe else ''
        probe_size = os.path.getsize(self.probe) if self.probe else 0
        body = body.replace('{base}', base).replace('{probe}', probe_name)
        body = body.replace('{probesize}', str(probe_size))
        pace = {}
        pace_file = os.path.join(folder, kind + '.pace')
        if os.path.isfile(pace_file):
            with open(pace_file) as f:
                pace = parse_pace(f.read())
        self.reply(body.encode('utf-8'), pace)

    def setup_file(self, rest):
        pace_text, _, _name = rest.partition('/')
        pace = parse_pace(pace_text)
        if 'probe' in pace and self.probe:
            with open(self.probe, 'rb') as f:
                body = f.read()
        else:
            size = int(pace.get('size', '0') or 0)
            body = bytes((i * 7 + 3) % 256 for i in range(size))
        self.reply(body, pace)

    def not_found(self):
        page = (b'<html><head><title>404 Not Found</title></head>'
                b'<body><h1>Not Found</h1><p>The requested URL was not found on this server.</p></body></html>')
        self.send_response(404)
        self.send_header('Content-Type', 'text/html')
        self.send_header('Content-Length', str(len(page)))
        self.end_headers()
        self.wfile.write(page)

    def reply(self, body, pace):
        forever = 'forever' in pace
        if b'{chunk}' in body:
            parts = body.split(b'{chunk}')
            body = b''.join(parts)
        else:
            count = max(1, int(pace.get('chunks', '1') or 1))
            step = -(-len(body) // count) if body else 0
            parts = [body[i:i + step] for i in range(0, len(body), step)] if step else []
        self.send_response(200)
        self.send_header('Content-Type', 'application/octet-stream')
        if not forever:
            self.send_header('Content-Length', str(len(body)))
        self.end_headers()
        self.wfile.flush()
        key = pace.get('gate')
        delay = int(pace.get('delay', '0') or 0) / 1000.0
        reset_at = int(pace['reset']) if pace.get('reset') else None
        for i, part in enumerate(parts):
            if i > 0:
                self.wait(key, delay)
            if i == reset_at:
                return self.reset()
            self.wfile.write(part)
        if forever:
            while not (key and gate(key).is_set()):
                self.wfile.write(b'\0' * 1024)
                time.sleep(delay or 0.05)
            gate(key).clear()
            self.connection.shutdown(socket.SHUT_RDWR)
            self.close_connection = True

    def wait(self, key, delay):
        if key:
            if gate(key).wait(60):
                gate(key).clear()
        if delay:
            time.sleep(delay)

    def reset(self):
        self.connection.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack('ii', 1, 0))
        self.connection.close()
        self.close_connection = True


class Server(http.server.ThreadingHTTPServer):
    daemon_threads = True

    def handle_error(self, request, client_address):
        pass   # a client that goes away mid-reply is what several tests do on purpose


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument('--fixtures', required=True)
    parser.add_argument('--probe', default='')
    parser.add_argument('--port-file', default='')
    parser.add_argument('--stop-on-eof', action='store_true')
    parser.add_argument('--watch-pid', type=int, default=0)
    args = parser.parse_args()
    Handler.fixtures = os.path.abspath(args.fixtures)
    Handler.probe = os.path.abspath(args.probe) if args.probe else ''
    server = Server(('127.0.0.1', 0), Handler)
    port = server.server_address[1]
    if args.port_file:
        tmp = args.port_file + '.tmp'
        with open(tmp, 'w') as f:
            f.write('%d\n' % port)
        os.replace(tmp, args.port_file)
    print('port %d' % port, flush=True)
    if args.stop_on_eof:
        def watch():
            sys.stdin.read()
            server.shutdown()
        threading.Thread(target=watch, daemon=True).start()
    if args.watch_pid:
        def watch_pid():
            while True:
                time.sleep(1)
                try:
                    os.kill(args.watch_pid, 0)
                except OSError:
                    server.shutdown()
                    return
        threading.Thread(target=watch_pid, daemon=True).start()
    server.serve_forever()


if __name__ == '__main__':
    main()
