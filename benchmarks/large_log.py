#!/usr/bin/env python3
"""Runs vokit-log over a large log, beside a bare loop; scripts/large-log calls it.

Usage: large_log.py LOG LARGE_LOG VOKIT_LOG
"""

import os
import statistics
import subprocess
import sys

ROUNDS = 3
LEAST_SHARE = 0.60  # of the bare loop's throughput
MOST_MEMORY = 64.0  # MiB


def run(command):
    """Seconds of CPU time and MiB of memory at the peak. The output goes nowhere."""
    process = subprocess.Popen(command, stdout=subprocess.DEVNULL)
    _, status, usage = os.wait4(process.pid, 0)
    if status != 0:
        sys.exit(f"large_log: {' '.join(command)} ended with status {status}")
    return usage.ru_utime + usage.ru_stime, usage.ru_maxrss / 1024


def main(log, large_log, vokit_log):
    commands = {
        "bare loop": [large_log, "walk", log],
        "check": [vokit_log, "check", log],
        "show, one entry of 3000": [vokit_log, "show", "--since", "2025-11-10T08:00:00",
                                    "--until", "2025-11-10T08:00:24", log],
        "show, one camera of 32": [vokit_log, "show", "--contains", "Camera 07", log],
        "report by user": [vokit_log, "report", "--by", "user", log],
        "report by day": [vokit_log, "report", "--by", "day", log],
        "recover": [vokit_log, "recover", log, "-o", log + ".new"],
    }
    seconds = {name: [] for name in commands}
    memory = {name: 0.0 for name in commands}
    for _ in range(ROUNDS):  # interleaved, since these machines are noisy
        for name, command in commands.items():
            time_taken, peak = run(command)
            seconds[name].append(time_taken)
            memory[name] = max(memory[name], peak)
            if os.path.exists(log + ".new"):
                os.remove(log + ".new")

    size = os.path.getsize(log) / 2**20
    bare = statistics.median(seconds["bare loop"])
    missed = False
    print(f"{size:.0f} MiB, medians of {ROUNDS} interleaved rounds, CPU time")
    for name in commands:
        taken = statistics.median(seconds[name])
        line = f"  {name:<26}{taken:>7.2f} s{size / taken:>8.0f} MiB/s{memory[name]:>8.1f} MiB"
        if name != "bare loop":
            share = bare / taken
            met = share >= LEAST_SHARE and memory[name] <= MOST_MEMORY
            missed = missed or not met
            line += f"   {share:>6.0%} of the loop   {'met' if met else 'MISSED'}"
        print(line)
    return 1 if missed else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
