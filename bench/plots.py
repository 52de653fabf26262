#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Draws what grows with the number of links: plots.py FIGURES.json PLOT.svg, from what ./dev bench leaves."""
import json
import math
import pathlib
import sys

EDGE, WIDTH, HEIGHT = 60, 520, 360
COLOURS = ["#1b6ca8", "#c0392b", "#218c53", "#8e44ad", "#b9770e", "#34495e", "#7f8c8d"]
STARTS = {"theme 2024": 60, "1,000 links in every tile": 20_000, "10,000 links in every tile": 200_000}  # links


def lines(figures):
    """Name, then milliseconds by number of links, for settings of 20 tiles."""
    found = {}
    for table in figures:
        columns = table["columns"]
        for row in table["rows"]:
            cells = dict(zip(columns, row))
            size = str(cells.get("tiles × links", "")).split(" × ")
            if size[0] == "20":
                links, cost = 20 * int(size[1]), cells["ms"]
            elif columns[0] == "start" and row[0] in STARTS:
                links, cost = STARTS[row[0]], cells["CPU to the picture, ms"]
            else:
                continue
            found.setdefault("start" if columns[0] == "start" else row[0], {})[links] = float(cost)
    return found


def plot(found):
    costs = [cost for line in found.values() for cost in line.values()]
    links = [count for line in found.values() for count in line]
    low, high = math.floor(math.log10(min(costs))), math.ceil(math.log10(max(costs)))
    first, last = math.log10(min(links)), math.log10(max(links))

    def place(count, cost):
        return (EDGE + WIDTH * (math.log10(count) - first) / (last - first),
                16 + HEIGHT * (high - math.log10(cost)) / (high - low))

    parts = []
    for power in range(low, high + 1):
        y = place(links[0], 10 ** power)[1]
        parts.append(f'<path d="M{EDGE} {y:.0f}h{WIDTH}" stroke="#ddd"/>'
                     f'<text x="{EDGE - 6}" y="{y + 4:.0f}" text-anchor="end">{10 ** power:g} ms</text>')
    for count in sorted(set(links)):
        x = place(count, costs[0])[0]
        parts.append(f'<text x="{x:.0f}" y="{HEIGHT + 34}" text-anchor="middle">{count:,}</text>')
    parts.append(f'<text x="{EDGE + WIDTH / 2}" y="{HEIGHT + 52}" text-anchor="middle">links in 20 tiles</text>')
    labels = []
    for index, (name, line) in enumerate(sorted(found.items(), key=lambda item: -item[1][max(item[1])])):
        colour = COLOURS[index % len(COLOURS)]
        points = [place(*point) for point in sorted(line.items())]
        parts.append(f'<polyline fill="none" stroke="{colour}" stroke-width="2" points="'
                     + " ".join(f"{x:.0f},{y:.0f}" for x, y in points) + '"/>')
        y = max([points[-1][1] + 4] + [label + 15 for label in labels[-1:]])  # none covers the one above it
        labels.append(y)
        parts.append(f'<text x="{EDGE + WIDTH + 6}" y="{y:.0f}" fill="{colour}">{name}</text>')
    return (f'<svg xmlns="http://www.w3.org/2000/svg" width="{EDGE + WIDTH + 210}" height="{HEIGHT + 64}" '
            f'font-family="sans-serif" font-size="12"><rect width="100%" height="100%" fill="#fff"/>{"".join(parts)}</svg>')


def main(figures, picture):
    pathlib.Path(picture).write_text(plot(lines(json.loads(pathlib.Path(figures).read_text()))) + "\n")


main(*sys.argv[1:])
