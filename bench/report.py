#!/usr/bin/env python3
"""Puts what the benchmarks reported into one file, and judges it.

    report.py ROWS FILE [--check] [--library MAP LIBRARY]

ROWS is a folder with a file for each benchmark, named after it, of one JSON object a line. FILE becomes
{"machine": ..., "rows": [...], "sizes": ...}; a row has the benchmark's name as its group, and the sizes are
what sizes.py reads from the linker's map. With --check the exit code is 1 when a row is beyond its bar, or when
a benchmark reported nothing.
"""
import argparse
import json
import pathlib
import platform
import sys

import sizes


def machine():
    model = "unknown"
    for line in pathlib.Path("/proc/cpuinfo").read_text().splitlines():
        name, _, value = line.partition(":")
        if name.strip() == "model name":
            model = value.strip()
    with open("/proc/cpuinfo") as cpus:
        count = sum(line.startswith("processor") for line in cpus)
    return {"processor": model, "processors": count, "system": platform.system()}


def read_rows(folder):
    """The rows of all groups, and the groups that have none."""
    rows, silent = [], []
    for path in sorted(folder.glob("*.jsonl")):
        lines = path.read_text().splitlines()
        rows += [{"group": path.stem, **json.loads(line)} for line in lines]
        if not lines:
            silent.append(path.stem)
    return rows, silent


# The third place of a ratio is noise.
NOISE = 0.005


def describe(row):
    size = f", {row['size']}" if row["size"] else ""
    return (f"  {row['group']}: {row['what']}{size}: {row['ratio']:.2f} times {row['peer']}"
            f" (goal {row['goal']:.2f}, bar {row['bar']:.2f})")


def show(heading, rows):
    if rows:
        print(heading)
        print("\n".join(describe(row) for row in rows))


def main():
    arguments = argparse.ArgumentParser()
    arguments.add_argument("rows", type=pathlib.Path)
    arguments.add_argument("file", type=pathlib.Path)
    arguments.add_argument("--check", action="store_true")
    arguments.add_argument("--library", nargs=2, type=pathlib.Path)
    wanted = arguments.parse_args()
    rows, silent = read_rows(wanted.rows)
    run = {"machine": machine(), "rows": rows}
    if wanted.library:
        run["sizes"] = sizes.read(*wanted.library)
        sizes.show(run["sizes"])
    wanted.file.write_text(json.dumps(run, indent=1) + "\n")

    held = [row for row in rows if row["goal"]]
    beyond = [row for row in held if row["ratio"] > row["bar"] + NOISE]
    behind = [row for row in held if row["ratio"] > row["goal"] + NOISE and row not in beyond]
    show("Behind the goal:", behind)
    show("Beyond the bar:", beyond)
    for group in silent:
        print(f"Nothing was reported by {group}.")
    print(f"{len(rows)} rows: {len(held) - len(behind) - len(beyond)} reach their goal, {len(behind)} are behind"
          f" it, {len(beyond)} are beyond their bar")
    return 1 if wanted.check and (beyond or silent or not rows) else 0


if __name__ == "__main__":
    sys.exit(main())
