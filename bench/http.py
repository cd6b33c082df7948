#!/usr/bin/env python3
"""Downloads one large file from a local nginx with ours, curl, wget and aria2 in turn.

usage: bench/http.py BENCH_PROGRAM [MEGABYTES [ROUNDS]]

Prints the medians of wall and processor time and their ratios to the fastest, and the total
throughput of many downloads at once.
"""
import os
import random
import statistics
import sys
import tempfile
from pathlib import Path

from peers import HTTP, price, serve


def measure(command, folder):
    """The price of one run, whose files are removed."""
    figures = price(command)
    for path in folder.iterdir():
        path.unlink()
    return figures


def main():
    program = sys.argv[1]
    megabytes = int(sys.argv[2]) if len(sys.argv) > 2 else 1024
    rounds = int(sys.argv[3]) if len(sys.argv) > 3 else 5
    with tempfile.TemporaryDirectory() as name:
        folder = Path(name)
        (folder / "files").mkdir()
        out = folder / "out"
        out.mkdir()
        with open(folder / "files" / "big.bin", "wb") as big:
            for _ in range(megabytes):
                big.write(os.urandom(1024 * 1024))
        with open(folder / "files" / "part.bin", "wb") as part:
            for _ in range(20):
                part.write(os.urandom(1024 * 1024))
        with serve(HTTP, folder) as port:
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


if __name__ == "__main__":
    main()
