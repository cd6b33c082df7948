#!/usr/bin/env python3
"""Converts one film through TransVert and with plain ffmpeg in turn, and prices TransVert's reading.

usage: bench/conversion.py PROGRAM_DIRECTORY [SECONDS_OF_FILM [ROUNDS]]   (such as build/bench/Tollivar)

ffmpeg gets the very arguments that TransVert gives it, once without and once with its progress
report. Prints the medians of wall and processor time, and the median over the rounds of the ratio
to plain ffmpeg of the same round, which bears a busy machine better than the ratio of the medians.
The last lines are TransVert's own processor time for a progress report, with an ffmpeg that only
reports.
"""
import os
import random
import resource
import statistics
import subprocess
import sys
import tempfile
import time
from pathlib import Path

from peers import price

LIMIT = 1.02
REPORTS = 50_000
REPORT = """frame={0}
fps=25.00
stream_0_0_q=28.0
bitrate= 412.1kbits/s
total_size={0}
out_time_us={0}
out_time_ms={0}
out_time=00:00:00.000000
dup_frames=0
drop_frames=0
speed=  10x
progress=continue
"""
PROGRESS = ["-nostats", "-progress", "pipe:1", "-stats_period", "0.2"]
# As the profiles "MP4 - MPEG-4 Video", "AVI - Audio-Video Interleaved" and "MP3" ask for it, of what
# takes long only the first seconds: each run takes one to five.
CASES = {
    "mp4": ["-s", "640x480", "-b", "2500k", "-ar", "44100", "-ab", "80k", "-ac", "2", "-t", "15"],
    "avi": ["-b", "1200k", "-ar", "44100", "-ac", "2", "-t", "60"],
    "mp3": ["-vn", "-ar", "48000", "-ab", "128k", "-ac", "2"],
}


def with_stand_in(folder, script):
    """An environment in which "ffmpeg" is this script."""
    programs = folder / "stand-in"
    programs.mkdir(exist_ok=True)
    (programs / "ffmpeg").write_text(f"#!/bin/sh\n{script}\n")
    (programs / "ffmpeg").chmod(0o755)
    return dict(os.environ, PATH=f"{programs}:{os.environ['PATH']}")


def arguments_of(command, folder):
    """What TransVert gives to ffmpeg for this command."""
    told = folder / "arguments"
    subprocess.run(command, stdout=subprocess.DEVNULL, check=False,
                   env=with_stand_in(folder, f"printf '%s\\0' \"$@\" > '{told}'; exit 1"))
    return told.read_bytes().decode().split("\0")[:-1]


def without_progress(arguments):
    if arguments[:len(PROGRESS)] != PROGRESS:
        sys.exit(f"the progress report is asked for in another way now: {arguments}")
    return arguments[len(PROGRESS):]


def compare(transvert, film, output, options, folder, rounds):
    ours = [transvert, "transvert.exe", "-i", str(film), *options, "-y", str(output)]
    arguments = [argument.replace(".converting-", "plain-")
                 for argument in arguments_of(ours, folder)]
    commands = {
        "ffmpeg": ["ffmpeg", *without_progress(arguments)],
        "ffmpeg with progress": ["ffmpeg", *arguments],
        "TransVert": ours,
    }
    figures = {key: [] for key in commands}
    for turn in range(rounds + 1):
        for key in random.sample(list(commands), len(commands)):
            figure = price(commands[key])
            if turn > 0:  # The first round warms everything up.
                figures[key].append(figure)
    for key, values in figures.items():
        wall, cpu = (statistics.median(column) for column in zip(*values))
        ratios = [statistics.median(one[i] / plain[i]
                                    for one, plain in zip(values, figures["ffmpeg"]))
                  for i in (0, 1)]
        print(f"{output.suffix[1:]:4} {key:21} {wall:8.3f} {ratios[0]:6.3f} {cpu:8.3f} "
              f"{ratios[1]:6.3f}" + (f"  limit {LIMIT}" if key == "TransVert" else ""))


def price_reports(transvert, folder):
    """Processor time of TransVert alone, which so many reports more cost."""
    reports = folder / "reports"
    costs = []
    for count in (0, REPORTS):
        reports.write_text("".join(REPORT.format(200_000 * i) for i in range(count)))
        environment = with_stand_in(folder, f"exec cat '{reports}'")
        command = [transvert, "-i", "nothing", "-y", str(folder / "nothing.mp4")]
        costs.append([ended_with_nothing(command, environment) for _ in range(7)])
    nothing, many = (statistics.median(column) for column in costs)
    each = (many - nothing) / REPORTS
    print(f"\nTransVert without a conversion: {nothing * 1e3:.1f} ms of processor time")
    print(f"a progress report: {each * 1e6:.1f} us; five a second are "
          f"{each * 5 * 100:.4f} % of one core")


def ended_with_nothing(command, environment):
    """Processor seconds of a run that makes no file, which TransVert tells by its status."""
    before = resource.getrusage(resource.RUSAGE_CHILDREN)
    ended = subprocess.run(command, env=environment, stdout=subprocess.DEVNULL)
    if ended.returncode != 1:
        sys.exit(f"TransVert ended with {ended.returncode}")
    after = resource.getrusage(resource.RUSAGE_CHILDREN)
    return after.ru_utime - before.ru_utime + after.ru_stime - before.ru_stime


def main():
    transvert = str(Path(sys.argv[1]).resolve() / "Transcoder" / "TransVert")
    seconds = int(sys.argv[2]) if len(sys.argv) > 2 else 180
    rounds = int(sys.argv[3]) if len(sys.argv) > 3 else 9
    with tempfile.TemporaryDirectory() as name:
        folder = Path(name)
        film = folder / "film.flv"
        subprocess.run(["ffmpeg", "-nostdin", "-v", "error", "-f", "lavfi", "-i",
                        f"testsrc2=size=640x360:rate=25:duration={seconds}", "-f", "lavfi", "-i",
                        f"sine=duration={seconds}:sample_rate=44100", "-c:v", "flv1", "-b:v", "2M",
                        "-c:a", "libmp3lame", str(film)], check=True)
        print(f"{seconds} s of film, medians of {rounds} interleaved runs, load "
              f"{os.getloadavg()[0]:.1f} before")
        print(f"{'to':4} {'with':21} {'wall s':>8} {'ratio':>6} {'cpu s':>8} {'ratio':>6}")
        for kind, options in CASES.items():
            compare(transvert, film, folder / f"film.{kind}", options, folder, rounds)
        price_reports(transvert, folder)
        print(f"load {os.getloadavg()[0]:.1f} after")


if __name__ == "__main__":
    main()
