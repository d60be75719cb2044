#!/usr/bin/env python3
"""report.py SAMPLES [--write]: puts the benchmarks' series into relation and prints the table of figures.

With --write it writes docs/benchmarks.md and docs/benchmarks.svg instead. SAMPLES holds lines "sample SERIES VALUE"; the
i-th values of two series were measured in the same run.
"""
import math
import pathlib
import platform
import statistics
import subprocess
import sys
from dataclasses import dataclass
from html import escape

PROJECT = pathlib.Path(__file__).resolve().parent.parent
MEGABYTE = 1_000_000
MILLISECOND = 0.001


@dataclass
class Reason:
    """Why a goal was missed, found by taking one measured ratio apart. It says nothing about another ratio."""
    ratio: float
    words: str

    def explains(self, ratio):
        return abs(ratio / self.ratio - 1) <= 0.25


@dataclass
class Figure:
    group: str
    title: str
    subject: str  # series
    reference: object  # series, or a fixed number
    goal: float
    at_least: bool = False
    reason: Reason | None = None  # printed only when the goal is missed by about as much
    strict: bool = False  # meeting the goal means to pass it
    unit: str = ""  # of the ratio when the reference is a number

    def ratios(self, series):
        subject = series[self.subject]
        if isinstance(self.reference, (int, float)):
            return [value / self.reference for value in subject]
        reference = series[self.reference]
        if len(subject) != len(reference):
            sys.exit(f"report.py: {self.subject} and {self.reference} were not measured as often")
        return [a / b for a, b in zip(subject, reference)]


def log_figures():
    """Each column of the log's table, against both set-ups of spdlog."""
    columns = [
        ("paced50", "one line every 2 ms, 50th percentile", False),
        ("paced99", "one line every 2 ms, 99th percentile", False),
        ("burst1", "burst, 1 thread", False),
        ("burst4", "burst, 4 threads", False),
        ("rate1", "lines a second until on file, 1 thread", True),
        ("rate4", "lines a second until on file, 4 threads", True),
    ]
    for column, title, at_least in columns:
        for rival, name in (("spdlog8k", "8,192 slots"), ("spdlog1m", "1 M slots")):
            yield Figure("log", f"{title}; spdlog, {name}", f"log.{column}.ours", f"log.{column}.{rival}", 1, at_least, strict=True)


GROUPS = {
    "variables": ("Storing and routing variables (native)",
                  "one pass that copies the same names and values into a `std::unordered_map`, in the thread's "
                  "processor time; 19 variables to an Event"),
    "handover": ("From the library's thread to the window (Wine)",
                 "one posted message for each notification, with the same block; 20,000 of them"),
    "load": ("From the subscription to the last row (Wine)",
             "a bare program: the same notifications of the same demo server through a bare queue, and a row with its "
             "four texts inserted for each Event with redraw off. It keeps no variable, orders and checks nothing. "
             "The times at 50,000 and 10,000 Events are the console's own"),
    "log": ("Tracking log: time that a line costs its caller, and lines on file (native)",
            "spdlog's asynchronous logger, which blocks when its slots are used up, with the same line; only formatting "
            "the line; the log itself with a free disk"),
    "payload": ("Payload files (native)",
                "a plain loop over the bytes with one branch for each case; for reading, what pugixml needs to parse "
                "the same bytes. In the thread's processor time"),
    "window": ("Windows that open (Wine)",
               "a bare dialog of the same template with the same two lists filled with the same texts in the same order, "
               "redraw off, until it is painted; a bare dialog with a list, from the start of its process until it is "
               "visible"),
    "list": ("Finding and sorting 50,000 Events (Wine)",
             "for a key typed into the filter, one `strstr` for each Event over all its texts, folded; for an order, "
             "`std::sort` of the Events' numbers by keys that are ready. Every key of four filters is typed; of the "
             "columns the one with the worst ratio stands here. The times are the list's own"),
    "size": ("Memory and size (32-bit Windows)",
             "the bytes of the names and values that make up an Event, against what the process has grown by with "
             "50,000 of them; the program with libcurl and pugixml inside"),
}

FIGURES = [
    Figure("variables", "19 thousand variables", "variables.store.19k", "variables.copy.19k", 2),
    Figure("variables", "190 thousand variables", "variables.store.190k", "variables.copy.190k", 2),
    Figure("variables", "1.9 million variables", "variables.store.1900k", "variables.copy.1900k", 2),
    Figure("variables", "a variable at 1.9 million against 19 thousand", "variables.store.1900k", "variables.store.19k",
           2),
    Figure("handover", "20,000 notifications", "handover.ours.20k", "handover.posted.20k", 50, True),
    Figure("handover", "1,000,000 notifications", "handover.ours.1m", "handover.posted.20k", 50, True),
    Figure("load", "1,000 Events", "load.console.1000", "load.bare.1000", 1.5),
    Figure("load", "10,000 Events", "load.console.10000", "load.bare.10000", 1.5),
    Figure("load", "50,000 Events", "load.console.50000", "load.bare.50000", 1.5),
    Figure("load", "50,000 against 10,000 Events", "load.console.50000", "load.console.10000", 6),
    Figure("load", "longest gap of a 10 ms timer while a million come, against idle", "timer.loading",
           "timer.idle", 5,
           reason=Reason(5.78, "The gap is one repaint on top of the timer's own period and one delivery of 5 ms: with "
                               "the library's thread and the X server on the same two processors, Wine takes some 10 ms "
                               "for the list's scroll bar and some 20 ms for a page of rows.")),
    *log_figures(),
    Figure("log", "one line every 2 ms, 50th percentile; formatting alone", "log.paced50.ours", "log.paced50.format", 1.5),
    Figure("log", "99th percentile with the writer stalled for 2 s; with a free disk", "log.paced99.stalled",
           "log.paced99.ours", 2),
    Figure("payload", "escaping 1 MB", "payload.escape.1mb.reference", "payload.escape.1mb.ours", 3, True),
    Figure("payload", "unescaping 1 MB", "payload.unescape.1mb.reference", "payload.unescape.1mb.ours", 3, True),
    Figure("payload", "escaping 50 MB", "payload.escape.50mb.reference", "payload.escape.50mb.ours", 3, True),
    Figure("payload", "unescaping 50 MB", "payload.unescape.50mb.reference", "payload.unescape.50mb.ours", 3, True),
    Figure("payload", "reading a file of 3 KB", "payload.read.3kb.ours", "payload.read.3kb.reference", 1.5),
    Figure("payload", "reading a file of 1 MB", "payload.read.1mb.ours", "payload.read.1mb.reference", 1.5),
    Figure("window", "Event editor with two lists of 10,000 devices", "editor.console.10000", "editor.bare.10000", 1.3),
    Figure("window", "start to visible main window", "start.console", "start.bare", 1.5),
    Figure("list", "a key typed into the filter", "list.key", "list.pass", 3),
    Figure("list", "the longest of these keys", "list.longest_key", MILLISECOND, 16, unit=" ms"),
    Figure("list", "sorting by a column", "list.sort", "list.keys", 1.5),
    Figure("list", "the longest of these sorts", "list.longest_sort", MILLISECOND, 100, unit=" ms"),
    Figure("size", "memory of an Event with all its variables, ready to be searched", "memory.kept", "memory.sent", 2.3),
    Figure("size", "program", "size.console", MEGABYTE, 4, unit=" MB", strict=True),
]

UNITS = [("log.rate", "/s"), ("handover", "/s"), ("memory", " B"), ("size", " B")]


def read_samples(path):
    series = {}
    for line in path.read_text().splitlines():
        words = line.split()
        if len(words) == 3 and words[0] == "sample":
            series.setdefault(words[1], []).append(float(words[2]))
    return series


def amount(name, value):
    """A series' value with its unit; without one in UNITS it is seconds."""
    for prefix, unit in UNITS:
        if name.startswith(prefix):
            return f"{value:,.0f}{unit}"
    for factor, unit in ((1, "s"), (1e3, "ms"), (1e6, "µs")):
        if value * factor >= 1:
            return f"{value * factor:.3g} {unit}"
    return f"{value * 1e9:.3g} ns"


@dataclass
class Result:
    figure: Figure
    median: float
    low: float
    high: float
    values: str

    @property
    def met(self):
        figure = self.figure
        if figure.strict and self.median == figure.goal:
            return False
        return self.median >= figure.goal if figure.at_least else self.median <= figure.goal

    def effort(self, ratio):
        """How much of what the goal allows is used up: 1 = exactly met, below = better."""
        return self.figure.goal / ratio if self.figure.at_least else ratio / self.figure.goal


def evaluate(series):
    results = []
    for figure in FIGURES:
        ratios = figure.ratios(series)
        names = [name for name in (figure.subject, figure.reference) if isinstance(name, str)]
        if figure.group == "payload" and figure.at_least:
            names.reverse()
        values = " : ".join(amount(name, statistics.median(series[name])) for name in names)
        results.append(Result(figure, statistics.median(ratios), min(ratios), max(ratios), values))
    return results


def number(value):
    return f"{value:.0f}" if value >= 100 else f"{value:.3g}"


def goal_text(figure):
    if figure.strict:
        word = "above" if figure.at_least else "below"
    else:
        word = "at least" if figure.at_least else "at most"
    return f"{word} {number(figure.goal)}{figure.unit}"


def table(results):
    lines = []
    for group, (title, reference) in GROUPS.items():
        lines += [f"### {title}", "", f"Reference: {reference}.", "",
                  "| | Ratio | Spread | Goal | | Values |", "|---|---|---|---|---|---|"]
        for result in (r for r in results if r.figure.group == group):
            figure = result.figure
            lines.append(f"| {figure.title} | **{number(result.median)}{figure.unit}** | {number(result.low)} to "
                         f"{number(result.high)} | {goal_text(figure)} | {'met' if result.met else '**missed**'} | "
                         f"{result.values} |")
        lines.append("")
    return lines


def why(result):
    reason = result.figure.reason
    if reason is None or not reason.explains(result.median):
        return "No reason is known yet: take this figure apart before giving one."
    return f"As taken apart at {number(reason.ratio)}: {reason.words}"


def misses(results):
    missed = [r for r in results if not r.met]
    if not missed:
        return ["Every goal was met in this run."]
    return [f"- **{GROUPS[r.figure.group][0]}: {r.figure.title}** — {number(r.median)}{r.figure.unit} instead of "
            f"{goal_text(r.figure)}. {why(r)}" for r in missed]


def first_line(*command):
    try:
        output = subprocess.run(command, capture_output=True, text=True, check=False).stdout
    except OSError:
        return "?"
    return output.splitlines()[0].strip() if output else "?"


def machine():
    cpu = next((line.split(":")[1].strip() for line in open("/proc/cpuinfo") if line.startswith("model name")), "?")
    cores = first_line("nproc")
    memory = int(next(line.split()[1] for line in open("/proc/meminfo"))) / 1024 / 1024
    debian = pathlib.Path("/etc/debian_version").read_text().strip()
    packages = ", ".join(f"{name} {first_line('dpkg-query', '-W', '-f', '${Version}', package)}" for name, package in
                         (("spdlog", "libspdlog-dev"), ("pugixml", "libpugixml-dev"), ("libcurl", "libcurl4-openssl-dev")))
    return [f"- {cpu}, {cores} processors, {memory:.0f} GB",
            f"- Debian {debian}, Linux {platform.release()}, {first_line('wine', '--version')} on Xvfb",
            f"- natively {first_line('g++', '--version')}; for Windows "
            f"{first_line('i686-w64-mingw32-g++-posix', '--version')}; both as CMake's Release",
            f"- {packages}"]


def document(results, series):
    bare, libraries, console = (statistics.median(series[f"start.{name}"]) for name in ("bare", "libraries", "console"))
    large, small, filling = (statistics.median(series[f"editor.{name}"])
                             for name in ("console.10000", "console.20", "bare.10000"))
    rounds = len(series["variables.store.19k"])
    return "\n".join([
        "# Benchmarks", "",
        "Every figure is a ratio: what the console does, against a reference that is measured in the same run. So it says "
        "the same on another machine. `./bench` measures and writes all of this anew, in less than ten minutes.", "",
        "![Ratio against goal](benchmarks.svg)", "",
        f"The programs took turns for {rounds} rounds. *Ratio* is the median of the rounds' ratios, *Spread* the least and "
        "the greatest; *Values* are the medians of both sides, the console's first.", "",
        "## Machine", "", *machine(), "",
        "## Figures", "", *table(results),
        "## Missed goals", "", *misses(results), "",
        "## Where the rest goes", "",
        f"The Event editor opens in {amount('editor', large)} with 10,000 devices and in {amount('editor', small)} with "
        f"20; the bare dialog with the 10,000 takes {amount('editor', filling)}.", "",
        f"The bare dialog is there after {bare * 1000:.0f} ms, and after {libraries * 1000:.0f} ms when it first loads the "
        "system's libraries that the console uses beside those of any dialog: mail with TLS, network, file dialog, "
        f"versions. The console takes {console * 1000:.0f} ms: {max(0, libraries - bare) * 1000:.0f} ms more for these "
        f"libraries, and {max(0, console - libraries) * 1000:.0f} ms for what is its own: registry, folders, tracking "
        "file, the pass-through library with its server, menus, icons and the window itself.", "",
        "## Repeating it", "",
        "`./bench` on an otherwise idle machine; `./bench --quick` runs one round and prints the table only. The programs "
        "are in `benchmarks/`, one for each group of figures; each prints its samples. What they compare and how is in "
        "`benchmarks/report.py`, in a table.", "",
    ])


BAR_LEFT, BAR_RIGHT, ROW = 500, 900, 20
DASHES = 'stroke-dasharray="4 3"'
AXIS = (0.01, 4.0)  # of what the goal allows


def chart(results):
    """One bar for each figure on a logarithmic axis: how much of what the goal allows is used."""
    low, high = (math.log10(value) for value in AXIS)

    def x(effort):
        part = (math.log10(max(AXIS[0], min(AXIS[1], effort))) - low) / (high - low)
        return BAR_LEFT + part * (BAR_RIGHT - BAR_LEFT)

    body, y = [], 64

    def text(at_x, at_y, words, style=""):
        body.append(f'<text x="{at_x:.1f}" y="{at_y}" {style}>{escape(words)}</text>')

    for group, (title, _) in GROUPS.items():
        text(16, y + 16, title, 'font-weight="600"')
        y += 26
        for result in (r for r in results if r.figure.group == group):
            figure, effort = result.figure, result.effort(result.median)
            ends = sorted(result.effort(ratio) for ratio in (result.low, result.high))
            words = figure.title[:1].upper() + figure.title[1:]
            text(BAR_LEFT - 12, y + 14, words if len(words) <= 78 else words[:76] + "…", 'text-anchor="end"')
            body.append(f'<rect x="{BAR_LEFT}" y="{y + 3}" width="{max(1, x(effort) - BAR_LEFT):.1f}" height="{ROW - 7}" '
                        f'rx="2" fill="{"#2f7d5b" if result.met else "#c2502e"}"/>')
            body.append(f'<path d="M{x(ends[0]):.1f} {y + 9.5}H{x(ends[1]):.1f}" stroke="#1b1f24" stroke-width="1.5"/>')
            text(BAR_RIGHT + 12, y + 14, f"{number(result.median)}{figure.unit}")
            text(BAR_RIGHT + 84, y + 14, goal_text(figure), 'fill="#59636e"')
            y += ROW
        y += 8
    grid = []
    for value, words in ((0.01, "1 %"), (0.1, "10 %"), (1, "goal"), (2, "2×"), (4, "4×")):
        strong = value == 1
        grid.append(f'<path d="M{x(value):.1f} 52V{y}" stroke="{"#1b1f24" if strong else "#d5dae0"}" '
                    f'{DASHES if strong else ""}/>')
        grid.append(f'<text x="{x(value):.1f}" y="46" text-anchor="middle" fill="#59636e">{words}</text>')
    head = (f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 1080 {y + 16}" width="1080" height="{y + 16}" '
            'font-family="Open Sans, Segoe UI, Arial, sans-serif" font-size="12" fill="#1b1f24">'
            '<rect width="100%" height="100%" fill="#fff"/>'
            '<text x="16" y="24" font-size="15" font-weight="600">How much of what its goal allows each figure uses'
            '</text><text x="16" y="46" fill="#59636e">shorter is better; the line is the spread</text>'
            f'<text x="{BAR_RIGHT + 12}" y="46" fill="#59636e">ratio</text>'
            f'<text x="{BAR_RIGHT + 84}" y="46" fill="#59636e">its goal</text>')
    return "\n".join([head, *grid, *body, "</svg>", ""])


def main():
    series = read_samples(pathlib.Path(sys.argv[1]))
    results = evaluate(series)
    if "--write" in sys.argv[2:]:
        (PROJECT / "docs/benchmarks.md").write_text(document(results, series))
        (PROJECT / "docs/benchmarks.svg").write_text(chart(results))
        print("wrote docs/benchmarks.md and docs/benchmarks.svg")
    else:
        print("\n".join(table(results)))
    for line in misses(results):
        print(line)


if __name__ == "__main__":
    main()
