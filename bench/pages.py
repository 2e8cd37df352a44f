#!/usr/bin/env python3
"""Draws what docs/performance.md shows from the figures of a run of the benchmarks.

    pages.py FILE DOCS

FILE is what report.py made. DOCS/plots/*.svg and DOCS/performance-figures.md are written.
"""
import json
import math
import pathlib
import sys
from xml.sax.saxutils import escape

from plot import Line, Panel, draw

# A file for each: the benchmark, what is counted along the bottom, and the works, a panel each.
FIGURES = {
    "write": ("WritePortBench-wine", "bytes in a block", ["write to the port"]),
    "message": ("MessageBench-wine", "bytes of payload", ["post and drain a message"]),
    "job": ("SpoolBench-wine", "bytes in a job", ["print a job"]),
    "conversion": ("TextBench", "bytes of text", [
        "UTF-8 to UTF-16, English", "UTF-16 to UTF-8, English", "UTF-8 to UTF-16, Russian", "UTF-16 to UTF-8, Russian"]),
    "buffer": ("BufferBench", "bytes", ["find the text XY", "find the text aXY", "find one of 5", "hash"]),
    "dictionary": ("DictBench", "keys", [
        "numbers, hit", "numbers, miss", "numbers, build", "texts, hit", "texts, miss", "texts, build"]),
    "filters": ("FilterBench", "bytes of plain text", [
        f"{name}, text {way}" for way in ("out", "in") for name in ("hexadecimal", "ASCII85", "run length", "LZW")]),
}


def panel(rows, work, along):
    """Ours and every peer by size. Ours was measured anew beside each peer: the first one counts."""
    mine = [row for row in rows if row["what"] == work]
    peers = list(dict.fromkeys(row["peer"] for row in mine))
    first = [row for row in mine if row["peer"] == peers[0]]
    lines = [Line("ours", [(row["size"], row["ours"]) for row in first])]
    for peer in peers:
        lines.append(Line(peer, [(row["size"], row["theirs"]) for row in mine if row["peer"] == peer]))
    return Panel(work, along, mine[0]["unit"], lines)


def write_plots(rows, folder):
    folder.mkdir(exist_ok=True)
    for name, (group, along, works) in FIGURES.items():
        of_group = [row for row in rows if row["group"] == group]
        panels = [panel(of_group, work, along) for work in works if any(row["what"] == work for row in of_group)]
        if panels:
            (folder / f"{name}.svg").write_text(draw(panels))


def number(value):
    if value == 0:
        return "0"
    digits = max(0, 2 - math.floor(math.log10(abs(value))))
    return f"{value:.{min(digits, 3)}f}"


def table(rows):
    yield "| work | size | ours | beside | cost | unit | ratio | goal | bar |"
    yield "|---|---:|---:|---|---:|---|---:|---:|---:|"
    for row in rows:
        limits = [f"{row['goal']:.2f}", f"{row['bar']:.2f}"] if row["goal"] else ["", ""]
        ratio = f"{row['ratio']:.2f}"
        if row["goal"] and row["ratio"] > row["goal"] + 0.005:
            ratio = f"**{ratio}**"
        cells = [row["what"], str(row["size"] or ""), number(row["ours"]), row["peer"], number(row["theirs"]),
                 row["unit"], ratio, *limits]
        yield "| " + " | ".join(escape(cell) for cell in cells) + " |"


def size_table(sizes):
    yield "| room | code | data | unwinding | all |"
    yield "|---|---:|---:|---:|---:|"
    for room, kinds in sorted(sizes.items(), key=lambda item: -sum(item[1].values())):
        yield f"| {room} | {kinds['code']} | {kinds['data']} | {kinds['unwinding']} | {sum(kinds.values())} |"
    yield f"| the library | | | | {sum(sum(kinds.values()) for kinds in sizes.values())} |"


def write_figures(run, path):
    machine = run["machine"]
    lines = ["# Figures", "",
             "Made by `./dev bench` and `./dev bench --pages`. What they mean: [performance.md](performance.md).", "",
             f"{machine['processor']}, {machine['processors']} processors, {machine['system']}. A ratio is ours over"
             " the other's cost, and bold where the goal is not reached."]
    for group in dict.fromkeys(row["group"] for row in run["rows"]):
        lines += ["", f"## {group}", "", *table(row for row in run["rows"] if row["group"] == group)]
    if run.get("sizes"):
        lines += ["", "## Bytes of the library", "", *size_table(run["sizes"])]
    path.write_text("\n".join(lines) + "\n")


def main():
    run = json.loads(pathlib.Path(sys.argv[1]).read_text())
    docs = pathlib.Path(sys.argv[2])
    write_plots(run["rows"], docs / "plots")
    write_figures(run, docs / "performance-figures.md")


if __name__ == "__main__":
    main()
