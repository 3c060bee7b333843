"""Writes the figures of out/bench/*.json into docs/performance.md, and docs/performance-growth.svg. Usage: bench_docs.py"""
import json
import math
import os

ORDER = ["frame", "wake", "request", "inflight", "task", "start", "growth", "idle", "windows"]
BEGIN, END = "<!-- figures: script/bench --docs -->\n", "<!-- end of figures -->\n"
PAGE, PLOT, FIGURES = "docs/performance.md", "docs/performance-growth.svg", "out/bench"


def number(value):
    return f"{value:,.0f}" if value >= 1000 else f"{value:.2f}"


def target(row):
    for member, sign in (("atMost", "≤"), ("atLeast", "≥")):
        if member in row:
            return f"{sign} {row[member]:,g}{'' if row['reached'] else ', **missed**'}"
    return ""


def table(report):
    machine = report["machine"]
    unit = f", {report['unit']}" if report["unit"] else ""
    lines = [f"### `{report['subject']}`: {report['title']}{unit}", "",
             f"{machine['date']}, {machine['processor']}, {machine['cores']} cores, {machine['kernel']}, "
             f"load {machine['load']:.1f}", "",
             "| Case | Side | p50 | p99 | Ratio | To reach |", "|---|---|---:|---:|---:|---|"]
    last = None
    for row in report["rows"]:
        cells = [row["case"] if row["case"] != last else "", row["side"]]
        if row["installed"]:
            cells += [number(row["p50"]), number(row["p99"]), f"{row['ratio']:.2f}" if "ratio" in row else "", target(row)]
        else:
            cells += ["not installed", "", "", ""]
        lines.append("| " + " | ".join(cells) + " |")
        last = row["case"]
    return "\n".join(lines) + "\n\n"


def panel(name, rows, left):
    """One series: the count to the right on a logarithmic scale, microseconds upwards from 0."""
    width, height, top = 240, 150, 40
    points = [(int(row["side"]), row["p50"]) for row in rows]
    right, most = math.log10(points[-1][0]), 1.25 * max(cost for _, cost in points)
    spots = [(left + math.log10(count) / right * width, top + height - cost / most * height) for count, cost in points]
    parts = [f'<text x="{left}" y="{top - 14}" font-weight="bold">µs a {name}</text>',
             f'<path d="M{left} {top}V{top + height}H{left + width}" fill="none" stroke="#888"/>',
             f'<polyline points="{" ".join(f"{x:.1f},{y:.1f}" for x, y in spots)}" fill="none" stroke="#06c" stroke-width="2"/>']
    for (x, y), (count, cost) in zip(spots, points):
        parts.append(f'<circle cx="{x:.1f}" cy="{y:.1f}" r="3" fill="#06c"/>'
                     f'<text x="{x:.1f}" y="{y - 8:.1f}" text-anchor="middle">{cost:.1f}</text>'
                     f'<text x="{x:.1f}" y="{top + height + 16}" text-anchor="middle">{count}</text>')
    return "\n".join(parts)


def plot(report):
    names = list(dict.fromkeys(row["case"] for row in report["rows"]))
    panels = [panel(name, [row for row in report["rows"] if row["case"] == name], 30 + 300 * index)
              for index, name in enumerate(names)]
    return ('<svg xmlns="http://www.w3.org/2000/svg" width="900" height="220" font-family="sans-serif" font-size="11">\n'
            '<rect width="900" height="220" fill="#fff"/>\n' + "\n".join(panels) + "\n</svg>\n")


def main():
    figures = BEGIN
    for subject in ORDER:
        path = f"{FIGURES}/{subject}.json"
        if not os.path.exists(path):
            continue
        with open(path, encoding="utf-8") as text:
            report = json.load(text)
        figures += "\n" + table(report).rstrip("\n") + "\n"
        if subject == "growth":
            figures += f"\n![Cost by the count]({os.path.basename(PLOT)})\n"
            with open(PLOT, "w", encoding="utf-8") as file:
                file.write(plot(report))
    with open(PAGE, encoding="utf-8") as file:
        head, rest = file.read().split(BEGIN)
    with open(PAGE, "w", encoding="utf-8") as file:
        file.write(head + figures + "\n" + END + rest.split(END)[1])


main()
