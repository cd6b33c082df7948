#!/usr/bin/env python3
"""What 50 running downloads cost the thread that draws the windows.

usage: bench/running_downloads.py PROGRAM_DIRECTORY [DOWNLOADS [SECONDS]]   (such as build/bench/Tollivar)

Opens the program on an X server without a screen, hands it downloads of a local nginx that sends
each 1 MiB a second, and prints the processor time of the program's main thread, and of all of it,
as shares of one core. The limit for the main thread is 20 %.
"""
import os
import socket
import subprocess
import sys
import tempfile
import time
from pathlib import Path

CONFIGURATION = """
daemon off; pid {folder}/pid; error_log {folder}/error.log; worker_processes 1;
events {{ worker_connections 256; }}
http {{
    access_log off; client_body_temp_path {folder}/body; proxy_temp_path {folder}/proxy;
    fastcgi_temp_path {folder}/f; uwsgi_temp_path {folder}/u; scgi_temp_path {folder}/s;
    server {{ listen 127.0.0.1:{port}; root {folder}/files; limit_rate 1m; }}
}}
"""
SETTINGS = """[FILEVER]
VER=16000
[SETTING_INFO]
NOREMIND_FLASHVER=TRUE
[OPTIONS]
CHECKUPDATE=3
MAX_SIMDOWNLOADS={downloads}
"""
TICKS = os.sysconf("SC_CLK_TCK")


def free_port():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


def wait_until(what, condition, seconds=30):
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        if condition():
            return
        time.sleep(0.05)
    sys.exit(f"waited in vain for {what}")


def processor_seconds(stat):
    fields = stat.read_text().rpartition(")")[2].split()
    return (int(fields[11]) + int(fields[12])) / TICKS


def main():
    programs = Path(sys.argv[1]).resolve()
    downloads = int(sys.argv[2]) if len(sys.argv) > 2 else 50
    seconds = int(sys.argv[3]) if len(sys.argv) > 3 else 20
    with tempfile.TemporaryDirectory() as name:
        folder = Path(name)
        folder.chmod(0o755)
        (folder / "files").mkdir()
        with open(folder / "files" / "clip.mp4", "wb") as clip:
            clip.truncate((seconds + 60) * 1024 * 1024)
        data = folder / "data" / "Tollivar Data"
        data.mkdir(parents=True)
        (data / "settings.ini").write_text(SETTINGS.format(downloads=downloads).replace("\n", "\r\n"),
                                           encoding="utf-16")
        run = folder / "run"
        run.mkdir(mode=0o700)
        environment = dict(os.environ, HOME=name, XDG_DATA_HOME=str(folder / "data"),
                           XDG_STATE_HOME=str(folder / "state"), XDG_RUNTIME_DIR=str(run),
                           QT_QPA_PLATFORM="xcb")
        environment.pop("DBUS_SESSION_BUS_ADDRESS", None)
        port = free_port()
        (folder / "nginx.conf").write_text(CONFIGURATION.format(folder=folder, port=port))
        started = []
        try:
            started.append(subprocess.Popen(["nginx", "-c", str(folder / "nginx.conf"),
                                             "-e", str(folder / "e")]))
            screen = subprocess.Popen(["Xvfb", "-displayfd", "1", "-screen", "0", "1280x1024x24",
                                       "-noreset", "-nolisten", "tcp"], stdout=subprocess.PIPE,
                                      stderr=subprocess.DEVNULL)
            started.append(screen)
            environment["DISPLAY"] = ":" + screen.stdout.readline().decode().strip()
            window = subprocess.Popen([programs / "Tollivar"], env=environment)
            started.append(window)
            wait_until("the window", lambda: subprocess.run(
                ["xdotool", "search", "--onlyvisible", "--name", "^Tollivar$"], env=environment,
                stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=False).returncode == 0)
            out = folder / "out"
            out.mkdir()
            # The programs share the tasks: the window runs them, this one follows them.
            started.append(subprocess.Popen(
                [programs / "tollivar-cli", "download", "--mode", "direct", "--folder", str(out)]
                + [f"http://127.0.0.1:{port}/clip.mp4?{number}" for number in range(downloads)],
                env=environment, stdout=subprocess.DEVNULL))
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
        finally:
            for process in reversed(started):
                process.terminate()
                process.wait()


if __name__ == "__main__":
    main()
