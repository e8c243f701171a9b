#!/usr/bin/python3
"""Prints the measurements and writes them as JSON: the table to results.json, the growth of costs to scale.json
and a plot."""

import json
import platform
import statistics
import sys
from pathlib import Path

GROUPS = {
    "windows.jsonl": "Windows, against the registry calls",
    "host.jsonl": "host, against the registry calls",
    "peers.jsonl": "host, against other stores",
    "process.jsonl": "host, a whole process",
    "tool.jsonl": "rkuinfo, four times the input",
}


def machine():
    model = next(line.split(":")[1] for line in open("/proc/cpuinfo") if line.startswith("model name"))
    return f"{model.strip()}, Linux {platform.release()}"


def outcome(row):
    if row["limit"]:
        return f"{'met' if row['ratio'] <= row['limit'] else 'MISSED'}, at most {row['limit']:g}"
    if row["difference_limit"]:
        met = row["difference"] <= row["difference_limit"]
        return f"{'met' if met else 'MISSED'}, at most {row['difference_limit'] / 1e6:g} ms more"
    return "for reference"


def time(nanoseconds):
    for unit, size in (("ms", 1e6), ("us", 1e3)):
        if nanoseconds >= size:
            return f"{nanoseconds / size:.2f} {unit}"
    return f"{nanoseconds:.0f} ns"


def read_rows(file):
    return [json.loads(line) for line in file.read_text().splitlines()]


def read_counts(file):
    return dict(line.rsplit(": ", 1) for line in file.read_text().splitlines())


def print_rows(name, rows):
    for row in rows:
        compared = f"{time(row['difference'])} more" if row["difference_limit"] else f"{row['ratio']:.3f}"
        print(f"| {name}: {row['row']} | {row['against']} | {time(row['ours'])} | {time(row['other'])} "
              f"| {compared} | {outcome(row)} |")


def print_heading():
    print(f"Measured on {machine()}; medians of interleaved repetitions.\n")
    print("| | | ours | other | ratio | |\n|---|---|---|---|---|---|")


def keep(file, counts, **results):
    for name, value in counts.items():
        print(f"{name}: {value}")
    results = {"machine": machine(), **results, "counts": {name: int(value) for name, value in counts.items()}}
    file.write_text(json.dumps(results, indent=1) + "\n")


def table(folder):
    groups = {name: read_rows(folder / file) for file, name in GROUPS.items()}
    print_heading()
    for name, rows in groups.items():
        print_rows(name, rows)
    print()
    keep(folder / "results.json", read_counts(folder / "counts.txt"), groups=groups)


def large_rows(folder):
    """Each line of a file is one run; the runs of the two files alternated."""
    small, large = ([[float(figure) for figure in line.split()] for line in (folder / name).read_text().splitlines()]
                    for name in ("small.txt", "large.txt"))
    rows = []
    for column, name in enumerate(("getValue, one setting after the other", "getValue, any setting",
                                   "walk over all sub-keys, per sub-key")):
        ours, other = ([run[column] for run in runs] for runs in (large, small))
        rows.append({"row": name, "against": "1,000 values in 100 keys", "limit": 1.5, "difference_limit": 0,
                     "ours": statistics.median(ours), "other": statistics.median(other),
                     "ratio": statistics.median(a / b for a, b in zip(ours, other)), "repetitions": len(ours)})
    rows.append({"row": "getValue, any setting", "against": "two prepared selects", "limit": 2.5, "difference_limit": 0,
                 "ours": statistics.median(run[1] for run in large), "other": statistics.median(run[3] for run in large),
                 "ratio": statistics.median(run[1] / run[3] for run in large), "repetitions": len(large)})
    return rows


def growth(folder):
    """Returns the nanoseconds of processor time by operation and number of values."""
    times = {}
    for file in folder.glob("growth*.json"):
        for run in json.loads(file.read_text())["benchmarks"]:
            if run["run_type"] == "iteration":
                operation, size = run["run_name"].split("/")[:2]
                times.setdefault(operation, {}).setdefault(int(size), []).append(run["cpu_time"])
    return {operation: {size: statistics.median(sizes[size]) for size in sorted(sizes)}
            for operation, sizes in times.items()}


def plot(costs, image):
    import matplotlib
    matplotlib.use("Agg")
    from matplotlib import pyplot

    figure, axes = pyplot.subplots(figsize=(7, 4.5))
    for operation, sizes in costs.items():
        axes.plot(list(sizes), list(sizes.values()), marker="o", label=operation)
    axes.set(xscale="log", yscale="log", xlabel="values of the key", ylabel="nanoseconds per operation")
    axes.grid(alpha=0.3)
    axes.legend()
    figure.tight_layout()
    figure.savefig(image, dpi=110)


def scale(folder, image):
    rows = large_rows(folder)
    big = read_rows(folder / "big.jsonl")
    costs = growth(folder)
    print_heading()
    print_rows("1,000,000 values in 100,000 keys", rows)
    print_rows("a value of 1 MB", big)
    print()
    for operation, sizes in costs.items():
        print(f"{operation:10}", *(f"{size:,}: {time(cost)}  " for size, cost in sizes.items()))
    print()
    keep(folder / "scale.json", read_counts(folder / "memory.txt"), rows=rows + big, growth=costs)
    plot(costs, image)


def main():
    if sys.argv[1] == "table":
        table(Path(sys.argv[2]))
    else:
        scale(Path(sys.argv[2]), sys.argv[3])


main()
