"""Prints a table per folder and the unreached lines of some files. Usage: coverage.py REPORT.json [FILE-OR-FOLDER ...]"""
import collections
import json
import os
import sys


def spans(numbers):
    """Line numbers as text, neighbours joined: 3, 5-7."""
    joined = []
    for number in sorted(numbers):
        if joined and joined[-1][1] == number - 1:
            joined[-1][1] = number
        else:
            joined.append([number, number])
    return ", ".join(str(a) if a == b else f"{a}-{b}" for a, b in joined)


def main(report, *places):
    with open(report, encoding="utf-8") as text:
        files = json.load(text)["files"]
    folders = collections.defaultdict(lambda: [0, 0])
    unreached = {}
    for entry in files:
        lines = [line for line in entry["lines"] if not line.get("gcovr/noncode")]
        missed = {line["line_number"] for line in lines if line["count"] == 0}
        for name in (os.path.dirname(entry["file"]).split("/posix")[0], "all"):
            folders[name][0] += len(lines)
            folders[name][1] += len(lines) - len(missed)
        if missed and entry["file"].startswith(places or ("src",)):
            unreached[entry["file"]] = missed
    print(f"{'folder':<24}{'lines':>8}{'reached':>9}{'percent':>9}")
    for name, (lines, reached) in sorted(folders.items(), key=lambda item: (item[0] == "all", item[0])):
        print(f"{name:<24}{lines:>8}{reached:>9}{100 * reached / max(lines, 1):>9.1f}")
    print("\nlines that no test reaches:")
    for name, missed in sorted(unreached.items()):
        print(f"  {name}: {spans(missed)}")


main(*sys.argv[1:])
