#!/usr/bin/env python3
"""Fetches one recorded stream from a local nginx with ours, ffmpeg and rtmpdump in turn.

usage: bench/rtmp.py BENCH_PROGRAM [SECONDS_OF_STREAM [ROUNDS]]

Prints the medians of wall and processor time and their ratios to the fastest.
"""
import statistics
import subprocess
import sys
import tempfile
from pathlib import Path

from peers import RTMP, price, serve


def measure(command, folder):
    """The price of one run, and the bytes of its file, which is removed."""
    # 2 is what rtmpdump says of a stream that ended a moment before its duration.
    wall, processor = price(command, good=(0, 2))
    size = sum(path.stat().st_size for path in folder.iterdir())
    for path in folder.iterdir():
        path.unlink()
    return wall, processor, size


def main():
    program = sys.argv[1]
    seconds = int(sys.argv[2]) if len(sys.argv) > 2 else 60
    rounds = int(sys.argv[3]) if len(sys.argv) > 3 else 5
    with tempfile.TemporaryDirectory() as name:
        folder = Path(name)
        (folder / "files").mkdir()
        out = folder / "out"
        out.mkdir()
        subprocess.run(["ffmpeg", "-nostdin", "-v", "error", "-f", "lavfi", "-i",
                        f"testsrc2=size=640x360:rate=25:duration={seconds}", "-f", "lavfi", "-i",
                        f"sine=duration={seconds}", "-c:v", "libx264", "-preset", "ultrafast",
                        "-b:v", "4M", "-c:a", "aac", "-f", "flv", str(folder / "files/show.flv")],
                       check=True)
        with serve(RTMP, folder) as port:
            address = f"rtmp://127.0.0.1:{port}/vod/show.flv"
            commands = {
                "ours": [program, address, str(out)],
                "ffmpeg": ["ffmpeg", "-nostdin", "-v", "error", "-i", address, "-c", "copy",
                           str(out / "f.flv")],
                "rtmpdump": ["rtmpdump", "-q", "-r", address, "-o", str(out / "r.flv")],
            }
            figures = {key: [] for key in commands}
            for turn in range(rounds + 1):
                for key, command in commands.items():
                    figure = measure(command, out)
                    if turn > 0:  # The first round warms everything up.
                        figures[key].append(figure)
            size = (folder / "files/show.flv").stat().st_size
            print(f"{seconds} s of stream, {size / 2**20:.1f} MiB, medians of {rounds} runs in turn")
            print(f"{'program':9} {'wall s':>8} {'ratio':>6} {'cpu s':>8} {'ratio':>6} {'MiB':>7}")
            medians = {key: [statistics.median(column) for column in zip(*values)]
                       for key, values in figures.items()}
            least = [min(values[i] for values in medians.values()) or 1 for i in (0, 1)]
            for key, (wall, cpu, written) in medians.items():
                print(f"{key:9} {wall:8.2f} {wall / least[0]:6.2f} {cpu:8.2f} {cpu / least[1]:6.2f} "
                      f"{written / 2**20:7.1f}")


if __name__ == "__main__":
    main()
