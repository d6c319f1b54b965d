#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Turns one JSON run of bench/api/api_bench into the README's speed tables.

    build/release/bench/api/api_bench --benchmark_repetitions=15 \\
        --benchmark_enable_random_interleaving=true --benchmark_min_time=0.05 \\
        --benchmark_out=api.json --benchmark_out_format=json
    scripts/speed-table.py api.json

Every time is the median CPU time of the repetitions; every ratio is a
request's median over its own floor's, from the same run.
"""
import json
import sys

NAMES = {2: "2 slider (0.75)", 3: "3 theater", 4: "4 vivid", 5: "5 reading strong", 6: "6 reading weak",
         7: "7 reading multi", -3: "VX 3 vivid", -26: "VX 26 vivid", -21: "VX 21 curve", -22: "VX 22 curve",
         -23: "VX 23 curve", -24: "VX 24 curve", -25: "VX 25 curve"}
TYPES = range(6)


def medians(path):
    with open(path, encoding="utf-8") as f:
        run = json.load(f)
    times = {b["run_name"]: b["cpu_time"] for b in run["benchmarks"]
             if b.get("run_type") == "aggregate" and b.get("aggregate_name") == "median"}
    return run["context"], times


def main(path):
    context, t = medians(path)
    print(f"<!-- {context.get('host_name', '')}: {context.get('num_cpus')} CPUs at "
          f"{context.get('mhz_per_cpu')} MHz, {context.get('date', '')} -->")
    print("| benchmark            | time    | its floor | vs floor |")
    print("|----------------------|---------|-----------|----------|")
    r0, f0 = t["BM_Request0"], t["BM_Request0Floor"]
    print(f"| request 0            | {r0:.0f} ns | {f0:.0f} ns   | {r0 / f0:.2f}     |")
    for ty in TYPES:
        v, f = t[f"BM_Request8/{ty}"], t[f"BM_Request8Floor/{ty}"]
        print(f"| request 8, type {ty}    | {v:.0f} ns | {f:.0f} ns   | {v / f:.2f}     |")
    print()
    print("| request            | type 0  | its floor | " + " | ".join(f"{ty}   " for ty in TYPES) + " |")
    print("|--------------------|---------|-----------|" + "|".join("------" for _ in TYPES) + "|")
    r1, f1 = t["BM_Request1"], t["BM_Request1Floor"]
    print(f"| {'1 from a file':<18} | {r1:.0f} ns | {f1:.0f} ns   | {r1 / f1:.2f} |" + "      |" * 5)
    worst = {}
    for request, name in NAMES.items():
        cells = []
        for ty in TYPES:
            key = f"request:{request}/type:{ty}"
            ratio = t[f"BM_Request/{key}"] / t[f"BM_RequestFloor/{key}"]
            worst[request] = max(worst.get(request, 0.0), ratio)
            cells.append(f"{ratio:.2f}")
        r0, f0 = t[f"BM_Request/request:{request}/type:0"], t[f"BM_RequestFloor/request:{request}/type:0"]
        print(f"| {name:<18} | {r0:.0f} ns | {f0:.0f} ns   | " + " | ".join(cells) + " |")
    print(f"\n<!-- highest ratio: {max(worst.values()):.2f}; request 1: {r1 / f1:.2f} -->")


if __name__ == "__main__":
    main(sys.argv[1])
