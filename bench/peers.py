"""What the comparisons share: a server of their own on loopback, and the price of a command."""
import resource
import socket
import subprocess
import sys
import time
from contextlib import contextmanager

MODULE = "load_module /usr/lib/nginx/modules/ngx_rtmp_module.so;"
COMMON = "daemon off; pid {folder}/pid; error_log {folder}/error.log; worker_processes 1;\n" \
         "events {{ worker_connections 256; }}\n"
HTTP = COMMON + """http {{
    access_log off; sendfile on; client_body_temp_path {folder}/body; proxy_temp_path {folder}/proxy;
    fastcgi_temp_path {folder}/f; uwsgi_temp_path {folder}/u; scgi_temp_path {folder}/s;
    server {{ listen 127.0.0.1:{port}; root {folder}/files; {more} }}
}}
"""
RTMP = MODULE + "\n" + COMMON + """rtmp {{
    server {{ listen 127.0.0.1:{port}; application vod {{ play {folder}/files; }} }}
}}
"""


def wait_until(what, condition, seconds=30):
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        if condition():
            return
        time.sleep(0.05)
    sys.exit(f"waited in vain for {what}")


def is_open(port):
    try:
        socket.create_connection(("127.0.0.1", port)).close()
    except OSError:
        return False
    return True


@contextmanager
def serve(configuration, folder, more=""):
    """nginx with the files in `folder`/files; gives its port."""
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        port = probe.getsockname()[1]
    # Its workers are another user, who must get to the files.
    folder.chmod(0o755)
    file = folder / "nginx.conf"
    file.write_text(configuration.format(folder=folder, port=port, more=more))
    server = subprocess.Popen(["/usr/sbin/nginx", "-c", str(file), "-e", str(folder / "e")])
    try:
        wait_until("nginx", lambda: is_open(port))
        yield port
    finally:
        server.terminate()
        server.wait()


def price(command, environment=None, good=(0,)):
    """Wall and processor seconds of one run, of its children too."""
    before = resource.getrusage(resource.RUSAGE_CHILDREN)
    begin = time.monotonic()
    ended = subprocess.run(command, env=environment, stdin=subprocess.DEVNULL,
                           stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=False)
    wall = time.monotonic() - begin
    if ended.returncode not in good:
        sys.exit(f"{command[0]} ended with {ended.returncode}")
    after = resource.getrusage(resource.RUSAGE_CHILDREN)
    return wall, after.ru_utime - before.ru_utime + after.ru_stime - before.ru_stime
