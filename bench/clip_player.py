#!/usr/bin/env python3
"""Times ClipPlayer from its start until the screen shows its window, and the film's first picture.

usage: bench/clip_player.py PROGRAM_DIRECTORY [ROUNDS]   (such as build/bench/Tollivar)

The screen is an Xvfb with openbox, whose pixels are read from its own memory: looking costs the
player nothing. The films are plain green. Prints medians and the slowest, one start after the page
cache was dropped ("cold", as an administrator only), and ffplay on the same film as the peer.
"""
import mmap
import os
import statistics
import struct
import subprocess
import sys
import tempfile
import time
from pathlib import Path

LIMIT_MS = 500
PATIENCE_S = 20
CACHES = Path("/proc/sys/vm/drop_caches")
FILMS = {
    "film.mp4": ["-c:v", "libx264", "-preset", "veryfast", "-c:a", "aac"],
    "film.webm": ["-c:v", "libvpx", "-b:v", "1M", "-c:a", "libvorbis"],
    "film.flv": ["-c:v", "flv1", "-b:v", "1M", "-c:a", "libmp3lame"],
    "film.wmv": ["-c:v", "wmv2", "-b:v", "1M", "-c:a", "wmav2"],
    "film.avi": ["-c:v", "mpeg4", "-b:v", "1M", "-c:a", "libmp3lame"],
}


class Screen:
    """An X server whose picture is a file, with a window manager."""

    def __init__(self, folder):
        read_end, write_end = os.pipe()
        self.server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(write_end), "-screen", "0", "1280x1024x24", "-fbdir",
             str(folder), "-nolisten", "tcp", "-noreset"], pass_fds=[write_end],
            stderr=subprocess.DEVNULL)
        os.close(write_end)
        with os.fdopen(read_end) as told:
            os.environ["DISPLAY"] = ":" + told.readline().strip()
        self.manager = subprocess.Popen(["openbox"], stdout=subprocess.DEVNULL,
                                        stderr=subprocess.DEVNULL)
        with open(folder / "Xvfb_screen0", "rb") as file:
            self.memory = mmap.mmap(file.fileno(), 0, prot=mmap.PROT_READ)
        header = struct.unpack(">25I", self.memory[:100])
        self.start = header[0] + 12 * header[19]
        self.line = header[12]
        self.empty = self.settled()

    def pixels(self):
        """Blue, green and red of a coarse grid over the middle of the screen."""
        return [tuple(self.memory[place:place + 3])
                for y in range(256, 768, 64) for x in range(320, 960, 64)
                for place in [self.start + y * self.line + 4 * x]]

    def settled(self):
        """The pixels once the window manager has shown all that it shows by itself."""
        last, since = self.pixels(), time.monotonic()
        while time.monotonic() - since < 1:
            time.sleep(0.01)
            now = self.pixels()
            last, since = (last, since) if now == last else (now, time.monotonic())
        return last

    def is_green(self):
        return any(green > 150 and blue < 110 and red < 60 for blue, green, red in self.pixels())

    def wait(self, condition):
        deadline = time.monotonic() + PATIENCE_S
        while not condition():
            if time.monotonic() > deadline:
                sys.exit("the screen never showed what was waited for")
            time.sleep(0.001)

    def close(self):
        for process in (self.manager, self.server):
            process.terminate()
            process.wait()


def start(screen, command):
    """Milliseconds until the window, and until the film's first picture."""
    begin = time.monotonic()
    with subprocess.Popen(command, stdout=subprocess.DEVNULL,
                          stderr=subprocess.DEVNULL) as player:
        screen.wait(lambda: screen.pixels() != screen.empty)
        window = time.monotonic()
        screen.wait(screen.is_green)
        picture = time.monotonic()
        player.kill()
    screen.wait(lambda: screen.pixels() == screen.empty)
    return (window - begin) * 1e3, (picture - begin) * 1e3


def cold_start(screen, command):
    if not os.access(CACHES, os.W_OK):
        return "-"
    os.sync()
    CACHES.write_text("3")
    return f"{start(screen, command)[1]:.0f}"


def main():
    player = str(Path(sys.argv[1]).resolve() / "ClipPlayer")
    rounds = int(sys.argv[2]) if len(sys.argv) > 2 else 11
    with tempfile.TemporaryDirectory() as name:
        folder = Path(name)
        for film, codecs in FILMS.items():
            subprocess.run(["ffmpeg", "-nostdin", "-v", "error", "-f", "lavfi", "-i",
                            "color=c=0x00c040:size=1280x720:rate=25:duration=20", "-f", "lavfi",
                            "-i", "sine=duration=20:sample_rate=44100", *codecs, "-pix_fmt",
                            "yuv420p", str(folder / film)], check=True)
        screen = Screen(folder)
        try:
            print(f"{rounds} starts in turn, milliseconds, limit {LIMIT_MS}, load "
                  f"{os.getloadavg()[0]:.1f} before")
            print(f"{'film':10} {'window':>7} {'picture':>8} {'slowest':>8} {'cold':>6} "
                  f"{'ffplay':>7}")
            for film in FILMS:
                path = str(folder / film)
                ours = [player, "-file", path]
                peer = ["ffplay", "-v", "quiet", "-nostats", "-x", "960", "-y", "540", path]
                figures, peers = [], []
                for turn in range(rounds + 1):
                    figure, other = start(screen, ours), start(screen, peer)
                    if turn > 0:  # The first round warms everything up.
                        figures.append(figure)
                        peers.append(other[1])
                windows, pictures = zip(*figures)
                print(f"{film:10} {statistics.median(windows):7.0f} "
                      f"{statistics.median(pictures):8.0f} {max(pictures):8.0f} "
                      f"{cold_start(screen, ours):>6} {statistics.median(peers):7.0f}")
            print(f"load {os.getloadavg()[0]:.1f} after")
        finally:
            screen.close()


if __name__ == "__main__":
    main()
