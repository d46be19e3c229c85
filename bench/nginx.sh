# SPDX-License-Identifier: GPL-3.0-or-later
# For benchmarks that need a server: start_nginx serves a short page at http://127.0.0.1:$port/ and
# https://127.0.0.1:$tls_port/ (and the file $folder/page.html at /page) until the script ends and then removes its
# files in $folder. $bundle is a
# certificate bundle of the usual size that includes the server's authority.
nginx=$(PATH=$PATH:/usr/sbin command -v nginx) || {
    echo "nginx is missing: apt-get install nginx-light" >&2
    exit 1
}
certificates=$(cd "$(dirname "$0")/../tests/transport/certificates" && pwd)
folder=$(mktemp -d)
bundle=$folder/bundle.pem
server=
trap 'if [ -n "$server" ]; then kill "$server"; wait "$server" || true; fi; rm -rf "$folder"' EXIT
trap 'exit 130' INT TERM

start_nginx() {
    cat /etc/ssl/certs/ca-certificates.crt "$certificates/authority.pem" >"$bundle"
    for attempt in 1 2 3 4 5; do
        port=$(shuf -i 20000-30000 -n 1)
        tls_port=$((port + 1))
        cat >"$folder/nginx.conf" <<CONF
daemon off;
worker_processes 1;
pid $folder/pid;
error_log $folder/error.log crit;
events { worker_connections 2048; }
http {
  access_log off;
  client_body_temp_path $folder/body;
  proxy_temp_path $folder/proxy;
  fastcgi_temp_path $folder/fastcgi;
  uwsgi_temp_path $folder/uwsgi;
  scgi_temp_path $folder/scgi;
  server {
    listen 127.0.0.1:$port backlog=1024;
    listen 127.0.0.1:$tls_port ssl backlog=1024;
    ssl_certificate $certificates/good.pem;
    ssl_certificate_key $certificates/server.key;
    location = /page { default_type text/html; alias $folder/page.html; }
    location / { default_type text/html; return 200 "<html><body>Thank you, your page was added.</body></html>"; }
  }
}
CONF
        "$nginx" -e "$folder/error.log" -p "$folder" -c "$folder/nginx.conf" 2>"$folder/start.log" &
        server=$!
        for wait in 1 2 3 4 5 6 7 8 9 10; do
            if [ -s "$folder/pid" ] && kill -0 "$server" 2>/dev/null; then return; fi
            sleep 0.1
        done
        wait "$server" || true
        server=
    done
    cat "$folder/start.log" >&2
    exit 1
}

# median FILE COLUMN
median() { cut -d' ' -f"$2" "$1" | sort -n | awk '{ v[NR] = $1 } END { print v[int((NR + 1) / 2)] }'; }
