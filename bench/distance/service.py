# SPDX-FileCopyrightText: the Tavelo authors
# SPDX-License-Identifier: MIT
"""A film service on `far` with nginx in front: TLS, HTTP/2 for who wants it. The service's host answers
/download/ITEM/FILE with a redirect to a node; the node has ranges and keeps connections."""

import contextlib
import pathlib
import subprocess
import time

from wire import ADDRESS, end, there

HOST = "archive.test"
NODE = "node1.archive.test"
HOSTS = (HOST, NODE)
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
    {rest}
  }}
  server {{
    listen {address}:443 ssl;
    server_name {node};
    location /0/items/film/ {{ alias {films}/; }}
  }}
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
    rest = f"location / {{ proxy_pass {backend}; }}" if backend else ""
    text = CONFIGURATION.format(work=work, films=films, host=HOST, node=NODE, address=ADDRESS,
                                rest=rest)
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
