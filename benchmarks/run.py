"""Runs the cases of a benchmark program, each in a process of its own, and prints a table.

With --against each case is run by two programs in turn, in both orders. A figure is then the median of the rounds, and
a ratio the median of the ratios of each round.
"""

import argparse
import json
import re
import subprocess
import sys
from statistics import median


def parse():
    parser = argparse.ArgumentParser()
    parser.add_argument("program")
    parser.add_argument("filters", nargs="*")
    parser.add_argument("--against", metavar="PROGRAM")
    parser.add_argument("--rounds", type=int, default=5)
    parser.add_argument("--first-touch", action="store_true")
    return parser.parse_args()


def to_title(name):
    return re.sub(r"/(iterations:\d+|manual_time)\b", "", name)


def cases(program, filters):
    names = subprocess.run([program, "--benchmark_list_tests"], check=True, capture_output=True, text=True).stdout
    return [name for name in names.split()
            if not filters or any(re.search(wanted, to_title(name)) for wanted in filters)]


def run(program, name, first_touch):
    """The counters of one case, by name, and its label, which tells the results apart."""
    command = [program, f"--benchmark_filter=^{re.escape(name)}$", "--benchmark_format=json"]
    done = subprocess.run(command + ["--first_touch"] * first_touch, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                          text=True)
    result = json.loads(done.stdout)["benchmarks"][0] if done.stdout else {}
    if done.returncode != 0:
        sys.exit(f"{program}, {to_title(name)}: {result.get('error_message', done.stderr)}")
    return result


def figures(result):
    """What a case is measured by, with its unit: a time, or what it asks of the allocator."""
    times = [(key, value) for key, value in result.items() if key.startswith("ns_per_")]
    return [(key.replace("ns_per_", "ns per ").replace("_", " "), value) for key, value in times] or [
        (key.replace("_", " "), result[key]) for key in ("allocations", "peak_over_old_and_new")]


def rival(result):
    """The time of what a case is raced against, and the ratio to that."""
    for key, value in result.items():
        if key.startswith("over_"):
            name = key.removeprefix("over_")
            return f"{name} {number(result[name + '_ns'])}", f"{value:.2f}"
    return "", ""


def number(value):
    return f"{value:,.0f}" if value >= 100 else f"{value:.1f}" if value >= 10 else f"{value:.2f}"


def print_row(*cells):
    print(f"{cells[0]:60}", *(f"{cell:>16}" for cell in cells[1:-1]), f" {cells[-1]}", flush=True)


def print_alone(arguments, names):
    print_row("case", "figure", "rival", "ratio to it", "unit")
    for name in names:
        result = run(arguments.program, name, arguments.first_touch)
        beside = rival(result)
        for unit, value in figures(result):
            print_row(to_title(name), number(value), *beside, unit)


def print_beside(arguments, names):
    """False if the two programs do not give the same results."""
    print_row("case", "before", "now", "before / now", "unit")
    all_same = True
    for name in names:
        pairs = []
        for turn in range(arguments.rounds):
            sides = [arguments.against, arguments.program]
            results = {side: run(side, name, arguments.first_touch) for side in (sides if turn % 2 == 0 else sides[::-1])}
            pairs.append([results[side] for side in sides])
        same = all(before.get("label") == now.get("label") for before, now in pairs)
        all_same = all_same and same
        for k, (unit, _) in enumerate(figures(pairs[0][0])):
            values = [(figures(before)[k][1], figures(now)[k][1]) for before, now in pairs]
            before, now = (median(side) for side in zip(*values))
            ratio = median(a / b for a, b in values)
            print_row(to_title(name), number(before), number(now), f"{ratio:.2f}",
                      unit + ("" if same else "; OTHER RESULTS"))
    return all_same


arguments = parse()
names = cases(arguments.program, arguments.filters)
if not names:
    sys.exit("No case has such a name.")
if not arguments.against:
    print_alone(arguments, names)
elif not print_beside(arguments, names):
    sys.exit("The two libraries give different results.")
