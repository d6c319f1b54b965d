#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Turns one JSON run of bench/api/api_bench into the speed tables of
docs/performance.md.

    build/release/bench/api/api_bench --benchmark_repetitions=15 \\
        --benchmark_enable_random_interleaving=true --benchmark_min_time=0.05 \\
        --benchmark_out=api.json --benchmark_out_format=json
    scripts/speed-table.py api.json                 # print the tables
    scripts/speed-table.py api.json --write docs/performance.md

With --write the tables replace what lies between the file's two
"speed tables" markers. Every time is the median CPU time of the
repetitions; every ratio is a request's median over its own floor's, from
the same run.
"""
import json
import sys

NAMES = {1: "1 from a file", 2: "2 slider (0.75)", 3: "3 theater", 4: "4 vivid", 5: "5 reading strong",
         6: "6 reading weak", 7: "7 reading multi", -3: "VX 3 vivid", -26: "VX 26 vivid", -21: "VX 21 curve",
         -22: "VX 22 curve", -23: "VX 23 curve", -24: "VX 24 curve", -25: "VX 25 curve"}
TYPES = range(6)
BEGIN, END = "<!-- speed tables begin -->", "<!-- speed tables end -->"


def medians(path):
    with open(path, encoding="utf-8") as f:
        run = json.load(f)
    times = {b["run_name"]: b["cpu_time"] for b in run["benchmarks"]
             if b.get("run_type") == "aggregate" and b.get("aggregate_name") == "median"}
    return run["context"], times


def request_time(t, request, ty):
    """A request's median, and its floor's."""
    if request == 1:
        return t["BM_Request1"], t["BM_Request1Floor"]
    key = f"request:{request}/type:{ty}"
    return t[f"BM_Request/{key}"], t[f"BM_RequestFloor/{key}"]


def types_of(request):
    return [0] if request == 1 else list(TYPES)


def header(first):
    return [f"| {first:<18} | type 0  | its floor | " + " | ".join(f"{ty}   " for ty in TYPES) + " |",
            "|--------------------|---------|-----------|" + "|".join("------" for _ in TYPES) + "|"]


def ratio_table(t):
    lines = header("request")
    worst = {}
    for request, name in NAMES.items():
        cells = []
        for ty in types_of(request):
            v, f = request_time(t, request, ty)
            worst[(request, ty)] = v / f
            cells.append(f"{v / f:.2f}")
        v0, f0 = request_time(t, request, 0)
        cells += [""] * (len(TYPES) - len(cells))
        lines.append(f"| {name:<18} | {v0:.0f} ns | {f0:.0f} ns   | " + " | ".join(f"{c:<4}" for c in cells) + " |")
    return lines, worst


def tables(path):
    context, t = medians(path)
    out = [f"Measured on {context.get('cpu_model', 'an unnamed processor')} ({context.get('num_cpus')} CPUs, "
           f"{context.get('mhz_per_cpu')} MHz as the benchmark reports it, load average "
           f"{context.get('load_avg', [0.0])[0]:.1f} at the start), {context.get('date', '')}.", ""]
    out += ["| benchmark            | time    | its floor | vs floor |",
            "|----------------------|---------|-----------|----------|"]
    r0, f0 = t["BM_Request0"], t["BM_Request0Floor"]
    out.append(f"| request 0            | {r0:.0f} ns | {f0:.0f} ns   | {r0 / f0:.2f}     |")
    for ty in TYPES:
        v, f = t[f"BM_Request8/{ty}"], t[f"BM_Request8Floor/{ty}"]
        out.append(f"| request 8, type {ty}    | {v:.0f} ns | {f:.0f} ns   | {v / f:.2f}     |")
    lines, worst = ratio_table(t)
    out += ["", "Each request over its own floor, every lut api type:", ""]
    out += lines
    lut = [r for (request, ty), r in worst.items() if request != 1]
    out += ["", f"<!-- highest LUT request {max(lut):.2f}, request 1 {worst[(1, 0)]:.2f} -->"]
    return "\n".join(out)


def main(argv):
    text = tables(argv[1])
    if len(argv) == 4 and argv[2] == "--write":
        with open(argv[3], encoding="utf-8") as f:
            doc = f.read()
        start, end = doc.index(BEGIN) + len(BEGIN), doc.index(END)
        with open(argv[3], "w", encoding="utf-8") as f:
            f.write(doc[:start] + "\n" + text + "\n" + doc[end:])
    else:
        print(text)


if __name__ == "__main__":
    main(sys.argv)
