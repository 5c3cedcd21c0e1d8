# SPDX-FileCopyrightText: the Tavelo authors
# SPDX-License-Identifier: MIT
"""A film service on `far` with nginx in front: TLS, HTTP/2 for who wants it. The service's host answers
/download/ITEM/FILE with a redirect to a node; the node has ranges and keeps connections."""

import contextlib
import dataclasses
import pathlib
import re
import subprocess
import time

from wire import ADDRESS, end, there

HOST = "archive.test"
NODES = ("node1.archive.test", "node2.archive.test")
HOSTS = (HOST, *NODES)
PACED = pathlib.Path(__file__).with_name("paced")

CONFIGURATION = """
user root;
worker_processes 1;
daemon off;
pid {work}/pid;
error_log {work}/error.log;
events {{ worker_connections 512; }}
http {{
  log_format timed '$msec $request_time $host c$connection #$connection_requests $server_protocol '
                   '"$request_uri" "$http_range" $status $body_bytes_sent';
  access_log {work}/access.log timed;
  default_type video/mp4;
  ssl_certificate {work}/host.pem;
  ssl_certificate_key {work}/host.key;
  ssl_protocols TLSv1.2 TLSv1.3;
  ssl_session_cache shared:tls:1m;
  tcp_nodelay on;
  client_body_temp_path {work}/body;
  proxy_temp_path {work}/proxy;
  fastcgi_temp_path {work}/fastcgi;
  uwsgi_temp_path {work}/uwsgi;
  scgi_temp_path {work}/scgi;
  server {{
    listen {address}:443 ssl http2;
    server_name {host};
    location /download/film/ {{
      rewrite ^/download/(.*)$ https://{node}/0/items/$1 redirect;
    }}
    {backend}
  }}
  server {{
    listen {address}:443 ssl;
    server_name {nodes};
    location /0/items/film/ {{ alias {films}/; }}
    {backend_nodes}
  }}
}}
"""

# Another service that does the rest. Its nodes, known here by address and port, are ours.
BACKEND = """
    proxy_http_version 1.1;
    proxy_set_header Connection "";
    proxy_redirect ~^http://(?<node>127.0.0.2:[0-9]+)(?<rest>/.*)$ https://{first}/$node$rest;
    proxy_redirect ~^http://(?<node>127.0.0.3:[0-9]+)(?<rest>/.*)$ https://{second}/$node$rest;
    location / {{ proxy_pass {address}; }}
"""
BACKEND_NODES = """
    proxy_http_version 1.1;
    proxy_set_header Connection "";
    location ~ ^/127[.] {{
      if ($request_uri ~ ^/([0-9.]+:[0-9]+)(/.*)$) {{
        set $node $1;
        set $rest $2;
      }}
      proxy_pass http://$node$rest;
    }}
"""


def make_certificates(work):
    """An authority (ca.pem) and the hosts' certificate, signed by it."""
    names = ",".join("DNS:" + host for host in HOSTS)
    (work / "names").write_text(f"subjectAltName={names}\n")
    key = "-newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes".split()
    sign = "-CA ca.pem -CAkey ca.key -CAcreateserial -days 2 -extfile names".split()
    for command in (
        ["req", "-x509", *key, "-keyout", "ca.key", "-out", "ca.pem", "-days", "2",
         "-subj", "/CN=bench"],
        ["req", *key, "-keyout", "host.key", "-out", "host.csr", "-subj", f"/CN={HOST}"],
        ["x509", "-req", "-in", "host.csr", "-out", "host.pem", *sign],
    ):
        subprocess.run(["openssl", *command], cwd=work, check=True, capture_output=True)


@dataclasses.dataclass
class Request:
    came: float  # seconds since the epoch, when its first byte arrived
    ended: float
    host: str
    connection: str
    path: str
    first: int | None  # byte of the file; absent: not a part of a file
    sent: int  # bytes of the answer's body


def requests(log):
    """The requests of nginx's log, in the order in which they ended."""
    found = []
    for line in log.read_text().splitlines():
        ended, took, host, connection, path, part, status, sent = re.match(
            r'(\S+) (\S+) (\S+) (c\d+) \S+ \S+ "(.*?)" "(.*?)" (\d+) (\d+)', line).groups()
        first = re.match(r"bytes=(\d+)-", part)
        body = status == "206" and first or status == "200"
        found.append(Request(float(ended) - float(took), float(ended), host, connection, path,
                             (int(first[1]) if first and status == "206" else 0) if body else None,
                             int(sent)))
    return found


class Service:
    """`ca`: what its clients trust. `log`: its requests, with the time at which each ended, the
    seconds it took, its connection and the number of the request on it."""

    def __init__(self, work):
        self.ca = work / "ca.pem"
        self.log = work / "access.log"

    def film(self, name):
        return f"https://{HOST}/download/film/{name}"


@contextlib.contextmanager
def service(work, films, rate, backend=None):
    """`rate`: bytes a second of each connection, 0: as the wire has it. `backend`: address of what
    answers everything else."""
    if not (work / "host.pem").exists():
        make_certificates(work)
    rest = BACKEND.format(address=backend, first=NODES[0], second=NODES[1]) if backend else ""
    text = CONFIGURATION.format(work=work, films=films, address=ADDRESS, host=HOST, node=NODES[0],
                                nodes=" ".join(NODES), backend=rest,
                                backend_nodes=BACKEND_NODES.format() if backend else "")
    (work / "nginx.conf").write_text(text)
    nginx = subprocess.Popen(there(PACED, ADDRESS, 443, rate, "nginx", "-e", work / "error.log",
                                   "-p", work, "-c", work / "nginx.conf"),
                             stderr=subprocess.DEVNULL)
    try:
        for _ in range(200):
            if (work / "pid").exists() and (work / "pid").read_text().strip():
                break
            if nginx.poll() is not None:
                raise SystemExit((work / "error.log").read_text())
            time.sleep(0.02)
        yield Service(work)
    finally:
        end(nginx)
