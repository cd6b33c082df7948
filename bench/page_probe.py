#!/usr/bin/env python3
"""Times PageProbe on pages of the sample site beside the bare browser's loading of the same page.

usage: bench/page_probe.py PROGRAM_DIRECTORY [ROUNDS]   (such as build/bench/Tollivar)

Prints, for each page, the median and the slowest of the time from the start to the first record
("warm"), and one start after the page cache was dropped ("cold", as an administrator only).
"""
import os
import statistics
import subprocess
import sys
import tempfile
import time
from pathlib import Path

PAGES = ["media/clip.mp4", "video.html", "sources.html", "frame.html", "scripted.html"]
CACHES = Path("/proc/sys/vm/drop_caches")
BROWSER = "/usr/lib/chromium/chromium-headless-shell"


def first_line_after(command, environment):
    """Seconds until the command has written its first line."""
    begin = time.monotonic()
    with subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
                          env=environment) as process:
        line = process.stdout.readline()
        elapsed = time.monotonic() - begin
        process.stdout.read()
    if not line:
        sys.exit(f"no answer: {' '.join(command)}")
    return elapsed


def probe(programs, address):
    return [str(programs / "PageProbe"), "-url", address]


def bare_browser(address, folder):
    arguments = ["--disable-gpu", f"--user-data-dir={folder}", "--dump-dom"]
    if os.geteuid() == 0:
        arguments.append("--no-sandbox")
    return [BROWSER, *arguments, address]


def cold_start(command, environment):
    if not os.access(CACHES, os.W_OK):
        return None
    os.sync()
    CACHES.write_text("3")
    return first_line_after(command, environment)


def main():
    programs = Path(sys.argv[1]).resolve()
    rounds = int(sys.argv[2]) if len(sys.argv) > 2 else 11
    # Without an extractor on PATH, so that only our own way is timed.
    environment = dict(os.environ, PATH="/nonexistent")
    site = subprocess.Popen([programs / "sample-site"], stdin=subprocess.PIPE,
                            stdout=subprocess.PIPE, text=True)
    base = site.stdout.readline().strip()
    print(f"{'page':16} {'median':>8} {'slowest':>8} {'cold':>8} {'bare browser':>13}")
    for page in PAGES:
        command = probe(programs, base + page)
        first_line_after(command, environment)
        times = [first_line_after(command, environment) for _ in range(rounds)]
        cold = cold_start(command, environment)
        with tempfile.TemporaryDirectory() as folder:
            bare = [first_line_after(bare_browser(base + page, folder), environment)
                    for _ in range(3 if page.endswith(".html") else 0)]
        print(f"{page:16} {statistics.median(times):7.2f}s {max(times):7.2f}s "
              + (f"{cold:7.2f}s " if cold else f"{'-':>8} ")
              + (f"{statistics.median(bare):12.2f}s" if bare else f"{'-':>13}"))
    site.stdin.close()
    site.wait()


if __name__ == "__main__":
    main()
