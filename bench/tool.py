#!/usr/bin/python3
"""Compares rkuinfo's time for four times an input with that for the input, and writes rows for report.py.
   tool.py RKUINFO FOLDER OUTPUT.jsonl"""

import json
import os
import resource
import statistics
import subprocess
import sys
from pathlib import Path

ROOT = "\r\n[HKEY_CURRENT_USER\\Software\\Acme\\Widget\\2018\\en-US\\Settings"
SMALL, LARGE, LIMIT, REPETITIONS = 10_000, 40_000, 5, 5


def reg_file(lines):
    return b"\xff\xfe" + ("Windows Registry Editor Version 5.00\r\n" + "".join(lines)).encode("utf-16-le")


INPUTS = {
    "keys of one value, .reg": lambda n: reg_file(f'{ROOT}\\Key{i}]\r\n"v"=dword:1\r\n' for i in range(n)),
    "values of two keys in turn, .reg": lambda n: reg_file(f'{ROOT}\\{i % 2}]\r\n"{i}"=dword:1\r\n' for i in range(n)),
    "a binary value, a hundred bytes each, .reg": lambda n: reg_file([f'{ROOT}]\r\n"b"=hex:' + ",".join(["a5"] * 100 * n)]),
    "values of one key, JSON": lambda n: json.dumps(
        {"values": [{"name": str(i), "type": "int", "value": i} for i in range(n)], "keys": []}).encode(),
}


def processor_time(command):
    before = resource.getrusage(resource.RUSAGE_CHILDREN)
    subprocess.run(command, check=True, stdout=subprocess.DEVNULL)
    after = resource.getrusage(resource.RUSAGE_CHILDREN)
    return (after.ru_utime - before.ru_utime + after.ru_stime - before.ru_stime) * 1e9


def measure(program, folder, name, make):
    times = {}
    for _ in range(REPETITIONS):
        for size in (SMALL, LARGE):
            home = folder / f"home{size}"
            os.environ.update(HOME=str(home), XDG_DATA_HOME=str(home), XDG_CONFIG_HOME=str(home))
            home.mkdir(parents=True, exist_ok=True)
            file = folder / "input"
            file.write_bytes(make(size))
            run = [program, "--company", "Acme", "--product", "Widget", "--language", "en-US"]
            for step, words in (("import", ["--file", file]), ("diff", ["--file", file]), ("export", ["--file", folder / "output"])):
                times.setdefault(step, {}).setdefault(size, []).append(processor_time([*run, step, "settings", *words]))
            subprocess.run([*run, "rm", "settings", "--all"], check=True)
    for step, sizes in times.items():
        ours, other = (statistics.median(sizes[size]) for size in (LARGE, SMALL))
        yield {"row": f"{step}, {LARGE:,} {name}", "against": f"{SMALL:,}", "limit": LIMIT, "difference_limit": 0, "ours": ours,
               "other": other, "ratio": ours / other, "repetitions": REPETITIONS}


def main():
    program, folder, output = sys.argv[1], Path(sys.argv[2]), Path(sys.argv[3])
    folder.mkdir(parents=True, exist_ok=True)
    output.write_text("".join(json.dumps(row) + "\n" for name, make in INPUTS.items()
                              for row in measure(program, folder, name, make)))


main()
