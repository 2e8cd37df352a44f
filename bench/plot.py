"""Panels of lines over two logarithmic axes, as SVG."""
import dataclasses
import math
from xml.sax.saxutils import escape

WIDTH, HEIGHT = 340, 250
LEFT, RIGHT, TOP, BOTTOM = 52, 14, 50, 40
COLUMNS = 2
COLOURS = ["#1f6fb4", "#d95f02", "#4d9e4d", "#8a5aa8"]


@dataclasses.dataclass
class Line:
    name: str
    points: list


@dataclasses.dataclass
class Panel:
    title: str
    along: str
    unit: str
    lines: list


class Axis:
    """Values to places. Its ends are values of 1, 2 or 5 times a power of ten, which are its marks, too."""

    def __init__(self, values, start, end):
        steps = [m * 10.0 ** e for e in range(-4, 13) for m in (1, 2, 5)]
        low = max((step for step in steps if step <= min(values)), default=min(values))
        high = min((step for step in steps if step >= max(values)), default=max(values))
        if low == high:
            low, high = low / 2, high * 2
        self.low, self.high, self.start, self.end = math.log(low), math.log(high), start, end
        marks = [step for step in steps if low <= step <= high]
        tens = [step for step in marks if math.isclose(math.log10(step) % 1, 0, abs_tol=1e-9)]
        self.marks = marks if len(marks) <= 6 else tens

    def place(self, value):
        return self.start + (math.log(value) - self.low) / (self.high - self.low) * (self.end - self.start)


def label(value):
    for limit, suffix in ((1e6, "M"), (1e3, "k")):
        if value >= limit:
            return f"{value / limit:g}{suffix}"
    return f"{value:g}"


def text(x, y, words, anchor="middle", size=10, weight="normal"):
    return (f'<text x="{x:.1f}" y="{y:.1f}" text-anchor="{anchor}" font-size="{size}" font-weight="{weight}">'
            f"{escape(words)}</text>")


def rule(x1, y1, x2, y2):
    return f'<line x1="{x1:.1f}" y1="{y1:.1f}" x2="{x2:.1f}" y2="{y2:.1f}" stroke="#ddd"/>'


def draw_axes(panel, across, up):
    right, bottom = WIDTH - RIGHT, HEIGHT - BOTTOM
    yield text(WIDTH / 2, 15, panel.title, size=12, weight="bold")
    yield text(WIDTH / 2, HEIGHT - 8, panel.along)
    yield text(LEFT - 5, TOP - 10, panel.unit, "end")
    for mark in up.marks:
        yield rule(LEFT, up.place(mark), right, up.place(mark))
        yield text(LEFT - 5, up.place(mark) + 3, label(mark), "end")
    for mark in across.marks:
        yield rule(across.place(mark), TOP, across.place(mark), bottom)
        yield text(across.place(mark), bottom + 14, label(mark))


def draw_line(number, line, across, up):
    colour = COLOURS[number % len(COLOURS)]
    places = [(across.place(x), up.place(y)) for x, y in sorted(line.points)]
    path = " ".join(f"{x:.1f},{y:.1f}" for x, y in places)
    yield f'<polyline points="{path}" fill="none" stroke="{colour}" stroke-width="{2.5 if number == 0 else 1.5}"/>'
    for x, y in places:
        yield f'<circle cx="{x:.1f}" cy="{y:.1f}" r="2.5" fill="{colour}"/>'


def draw_names(panel):
    x = LEFT
    for number, line in enumerate(panel.lines):
        colour = COLOURS[number % len(COLOURS)]
        yield f'<rect x="{x}" y="23" width="9" height="9" fill="{colour}"/>'
        yield text(x + 12, 31, line.name, "start")
        x += 24 + 6 * len(line.name)


def draw_panel(panel):
    points = [point for line in panel.lines for point in line.points]
    across = Axis([x for x, _ in points], LEFT, WIDTH - RIGHT)
    up = Axis([y for _, y in points], HEIGHT - BOTTOM, TOP)
    yield from draw_axes(panel, across, up)
    yield from draw_names(panel)
    for number, line in enumerate(panel.lines):
        yield from draw_line(number, line, across, up)


def draw(panels):
    columns = min(COLUMNS, len(panels))
    rows = math.ceil(len(panels) / columns)
    parts = [f'<svg xmlns="http://www.w3.org/2000/svg" width="{columns * WIDTH}" height="{rows * HEIGHT}"'
             ' font-family="sans-serif">', '<rect width="100%" height="100%" fill="white"/>']
    for number, panel in enumerate(panels):
        x, y = number % columns * WIDTH, number // columns * HEIGHT
        parts += [f'<g transform="translate({x},{y})">', *draw_panel(panel), "</g>"]
    return "\n".join(parts + ["</svg>"]) + "\n"
