#!/usr/bin/env python3
"""Downloads one large file from a local nginx with ours, curl, wget and aria2 in turn.

usage: bench/http.py BENCH_PROGRAM [MEGABYTES [ROUNDS]]

Prints the medians of wall and processor time and their ratios to the fastest, and the total
throughput of many downloads at once.
"""
import os
import random
import resource
import socket
import statistics
import subprocess
import sys
import tempfile
import time
from pathlib import Path

CONFIGURATION = """
daemon off; pid {folder}/pid; error_log {folder}/error.log; worker_processes 1;
events {{ worker_connections 256; }}
http {{
    access_log off; sendfile on; client_body_temp_path {folder}/body; proxy_temp_path {folder}/proxy;
    fastcgi_temp_path {folder}/f; uwsgi_temp_path {folder}/u; scgi_temp_path {folder}/s;
    server {{ listen 127.0.0.1:{port}; root {folder}/files; }}
}}
"""


def free_port():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


def measure(command, folder):
    """Wall and processor seconds of one run, its files removed afterwards."""
    before = resource.getrusage(resource.RUSAGE_CHILDREN)
    begin = time.monotonic()
    subprocess.run(command, check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    wall = time.monotonic() - begin
    after = resource.getrusage(resource.RUSAGE_CHILDREN)
    for path in folder.iterdir():
        path.unlink()
    return wall, after.ru_utime - before.ru_utime + after.ru_stime - before.ru_stime


def main():
    program = sys.argv[1]
    megabytes = int(sys.argv[2]) if len(sys.argv) > 2 else 1024
    rounds = int(sys.argv[3]) if len(sys.argv) > 3 else 5
    with tempfile.TemporaryDirectory() as name:
        folder = Path(name)
        folder.chmod(0o755)
        (folder / "files").mkdir()
        out = folder / "out"
        out.mkdir()
        with open(folder / "files" / "big.bin", "wb") as big:
            for _ in range(megabytes):
                big.write(os.urandom(1024 * 1024))
        with open(folder / "files" / "part.bin", "wb") as part:
            for _ in range(20):
                part.write(os.urandom(1024 * 1024))
        port = free_port()
        (folder / "nginx.conf").write_text(CONFIGURATION.format(folder=folder, port=port))
        server = subprocess.Popen(["nginx", "-c", str(folder / "nginx.conf"), "-e", str(folder / "e")])
        try:
            for _ in range(200):
                try:
                    socket.create_connection(("127.0.0.1", port)).close()
                    break
                except OSError:
                    time.sleep(0.05)
            address = f"http://127.0.0.1:{port}/big.bin"
            commands = {
                "ours": [program, address, str(out)],
                "curl": ["curl", "-s", "--noproxy", "*", "-o", f"{out}/c", address],
                "wget": ["wget", "-q", "--no-proxy", "-O", f"{out}/w", address],
                "aria2": ["aria2c", "-q", "-x1", "-s1", "--file-allocation=none", "-d", str(out),
                          "-o", "a", address],
            }
            figures = {key: [] for key in commands}
            for turn in range(rounds + 1):
                # What one program leaves of the file cache is what the next one finds.
                for key in random.sample(list(commands), len(commands)):
                    figure = measure(commands[key], out)
                    if turn > 0:  # The first round warms everything up.
                        figures[key].append(figure)
            print(f"{megabytes} MiB to disk, medians of {rounds} interleaved runs")
            print(f"{'program':8} {'wall s':>8} {'ratio':>6} {'cpu s':>8} {'ratio':>6}")
            medians = {key: [statistics.median(column) for column in zip(*values)]
                       for key, values in figures.items()}
            least = [min(values[i] for values in medians.values()) for i in (0, 1)]
            for key, (wall, cpu) in medians.items():
                print(f"{key:8} {wall:8.2f} {wall / least[0]:6.2f} {cpu:8.2f} {cpu / least[1]:6.2f}")
            part = f"http://127.0.0.1:{port}/part.bin"
            print("many at once, 20 MiB each, total throughput")
            for count in (5, 50):
                wall = statistics.median(measure([program, part, str(out), str(count)], out)[0]
                                         for _ in range(3))
                print(f"{count:3} downloads {20 * count / wall:8.0f} MiB/s")
        finally:
            server.terminate()
            server.wait()


if __name__ == "__main__":
    main()
