#!/usr/bin/env python3
"""What 50 running downloads cost the thread that draws the windows.

usage: bench/running_downloads.py PROGRAM_DIRECTORY [DOWNLOADS [SECONDS]]   (such as build/bench/Tollivar)

Opens the program on an X server without a screen, hands it downloads of a local nginx that sends
each 1 MiB a second, and prints the processor time of the program's main thread, and of all of it,
as shares of one core. The limit for the main thread is 20 %.
"""
import os
import subprocess
import sys
import tempfile
import time
from contextlib import ExitStack, contextmanager
from pathlib import Path

from peers import HTTP, serve, wait_until

SETTINGS = """[FILEVER]
VER=16000
[SETTING_INFO]
NOREMIND_FLASHVER=TRUE
[OPTIONS]
CHECKUPDATE=3
MAX_SIMDOWNLOADS={downloads}
"""
TICKS = os.sysconf("SC_CLK_TCK")


def processor_seconds(stat):
    fields = stat.read_text().rpartition(")")[2].split()
    return (int(fields[11]) + int(fields[12])) / TICKS


@contextmanager
def running(command, **how):
    """A program that is ended with the block."""
    with subprocess.Popen(command, **how) as process:
        try:
            yield process
        finally:
            process.terminate()


@contextmanager
def screen():
    """An X server without a screen; gives its name."""
    with running(["Xvfb", "-displayfd", "1", "-screen", "0", "1280x1024x24", "-noreset",
                  "-nolisten", "tcp"], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL) as server:
        yield ":" + server.stdout.readline().decode().strip()


def prepare(folder, downloads, seconds):
    """Files to fetch and the program's settings; gives its environment."""
    (folder / "files").mkdir()
    with open(folder / "files" / "clip.mp4", "wb") as clip:
        clip.truncate((seconds + 60) * 1024 * 1024)
    (folder / "out").mkdir()
    (folder / "run").mkdir(mode=0o700)
    data = folder / "data" / "Tollivar Data"
    data.mkdir(parents=True)
    settings = SETTINGS.format(downloads=downloads).replace("\n", "\r\n")
    (data / "settings.ini").write_bytes(settings.encode("utf-16"))
    environment = dict(os.environ, HOME=str(folder), XDG_DATA_HOME=str(folder / "data"),
                       XDG_STATE_HOME=str(folder / "state"), XDG_RUNTIME_DIR=str(folder / "run"),
                       QT_QPA_PLATFORM="xcb")
    environment.pop("DBUS_SESSION_BUS_ADDRESS", None)
    return environment


def has_window(environment):
    search = ["xdotool", "search", "--onlyvisible", "--name", "^Tollivar$"]
    return subprocess.run(search, env=environment, stdout=subprocess.DEVNULL,
                          stderr=subprocess.DEVNULL, check=False).returncode == 0


def main():
    programs = Path(sys.argv[1]).resolve()
    downloads = int(sys.argv[2]) if len(sys.argv) > 2 else 50
    seconds = int(sys.argv[3]) if len(sys.argv) > 3 else 20
    with tempfile.TemporaryDirectory() as name, ExitStack() as stack:
        folder = Path(name)
        environment = prepare(folder, downloads, seconds)
        port = stack.enter_context(serve(HTTP, folder, "limit_rate 1m;"))
        environment["DISPLAY"] = stack.enter_context(screen())
        window = stack.enter_context(running([programs / "Tollivar"], env=environment))
        wait_until("the window", lambda: has_window(environment))
        # The programs share the tasks: the window runs them, this one follows them.
        out = folder / "out"
        addresses = [f"http://127.0.0.1:{port}/clip.mp4?{number}" for number in range(downloads)]
        stack.enter_context(running(
            [programs / "tollivar-cli", "download", "--mode", "direct", "--folder", out, *addresses],
            env=environment, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL))
        wait_until("the downloads", lambda: len(list(out.iterdir())) == downloads)
        process = Path("/proc") / str(window.pid)
        stats = [process / "task" / str(window.pid) / "stat", process / "stat"]
        before = [processor_seconds(stat) for stat in stats]
        begin = time.monotonic()
        time.sleep(seconds)
        elapsed = time.monotonic() - begin
        shares = [(processor_seconds(stat) - old) / elapsed for stat, old in zip(stats, before)]
        print(f"{downloads} downloads of 1 MiB/s for {elapsed:.0f} s: main thread "
              f"{shares[0]:.1%} of one core (limit 20 %), whole program {shares[1]:.1%}")


if __name__ == "__main__":
    main()
