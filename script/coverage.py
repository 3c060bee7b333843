"""Prints a table per folder, and the unreached lines of some files that docs/coverage.md does not explain.

Usage: coverage.py REPORT.json [FILE-OR-FOLDER ...]. Exit code 1 if there are such lines.
"""
import collections
import json
import os
import re
import sys

EXPLANATIONS = "docs/coverage.md"  # rows of a table: file, words of a line in backticks, reason


def read_report(report):
    """Counts by file and line. Headers reached through the build's include folders count for their own place."""
    counts = collections.defaultdict(dict)
    with open(report, encoding="utf-8") as text:
        for entry in json.load(text)["files"]:
            name = re.sub(r"^build/[^/]+/include/[^/]+/", "src/", entry["file"])
            for line in entry["lines"]:
                if not line.get("gcovr/noncode"):
                    number = line["line_number"]
                    counts[name][number] = max(counts[name].get(number, 0), line["count"])
    return counts


def spans(counts):
    """The unreached lines as pairs of first and last; lines without code join their neighbours."""
    joined, open_span = [], False
    for number, count in sorted(counts.items()):
        if count > 0:
            open_span = False
        elif open_span:
            joined[-1][1] = number
        else:
            joined.append([number, number])
            open_span = True
    return joined


def read_explanations():
    with open(EXPLANATIONS, encoding="utf-8") as text:
        return re.findall(r"^\| (src/\S+) \| `(.+?)` \|", text.read(), re.MULTILINE)


def print_table(counts):
    folders = collections.defaultdict(lambda: [0, 0])
    for name, lines in counts.items():
        for folder in (re.match(r"src/[^/]+", name)[0], "all"):
            folders[folder][0] += len(lines)
            folders[folder][1] += sum(count > 0 for count in lines.values())
    print(f"{'folder':<24}{'lines':>8}{'reached':>9}{'percent':>9}")
    for name, (lines, reached) in sorted(folders.items(), key=lambda item: (item[0] == "all", item[0])):
        print(f"{name:<24}{lines:>8}{reached:>9}{100 * reached / max(lines, 1):>9.1f}")


def main(report, *places):
    counts = read_report(report)
    print_table(counts)
    unused = set(read_explanations())
    explained, rest = 0, []
    for name in sorted(name for name in counts if name.startswith(places or ("src/",))):
        with open(name, encoding="utf-8") as text:
            source = text.read().splitlines()
        for first, last in spans(counts[name]):
            body = "\n".join(source[first - 1:last])
            found = {row for row in read_explanations() if row[0] == name and row[1] in body}
            unused -= found
            explained += last - first + 1 if found else 0
            if not found:
                rest.append(f"  {name}:{first}" + (f"-{last}" if last > first else "") + f": {source[first - 1].strip()}")
    print(f"\nlines that no test reaches: {explained} that {EXPLANATIONS} explains, and {len(rest) or 'no'} others")
    print("\n".join(rest), end="\n" if rest else "")
    for name, words in sorted(unused):
        print(f"explained, but reached or gone: {name}: {words}")
    return 1 if rest else 0


sys.exit(main(*sys.argv[1:]))
