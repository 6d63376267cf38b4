#!/usr/bin/env python3
"""Converts sample drawings to plot files and holds the dump of each plot file against that of its drawing, then converts the
plot file once more, which has to give the same bytes.

  corpus_test.py PROGRAM CORPUS_FOLDER

Prints one line for each difference and "N passed, N failed" at the end. Exits with 77 when there is no such folder.
"""
import json
import subprocess
import sys
import tempfile
from pathlib import Path


def run(program, *arguments):
    return subprocess.run([program, *map(str, arguments)], capture_output=True, timeout=120)


def dump(program, path):
    return [json.loads(line) for line in run(program, "dump", path).stdout.splitlines()]


def blocks(program, path):
    return json.loads(run(program, "info", "--json", path).stdout)["blocks"]


def held(entity):
    """What a plot file holds of an entity, which is all but this."""
    entity = dict(entity)
    if "vertices" in entity:
        entity["vertices"] = [[x, y, z, 0] for x, y, z, _ in entity["vertices"]]
    if entity["kind"] == "POLYGON":
        entity.pop("elevation")
        entity.pop("lightweight")
    if entity["kind"] == "INSERT":
        entity.pop("color")
    if entity["kind"] == "TEXT":
        entity.pop("rect_width")
        entity.pop("multi_line")
    return entity


def arcs(entities):
    """Segments with a bulge; the last vertex of an open chain begins none."""
    count = 0
    for entity in entities:
        vertices = entity.get("vertices", [])
        count += sum(v[3] != 0 for v in (vertices if entity["kind"] == "POLYGON" else vertices[:-1]))
    return count


def check_plain(program, path, folder):
    plot = Path(folder) / "plain.plot"
    result = run(program, "convert", "--plain", path, plot)
    if result.returncode:
        return f"convert --plain failed: {result.stderr.decode('utf-8', 'replace')}"
    before, after = [held(e) for e in dump(program, path)], [held(e) for e in dump(program, plot)]
    for one, other in zip(before, after):
        if one != other:
            return f"{json.dumps(one)[:300]} became {json.dumps(other)[:300]}"
    if len(before) != len(after):
        return f"{len(before)} entities became {len(after)}"
    return None if blocks(program, path) == blocks(program, plot) else "blocks differ"


def check_chords(program, path, folder):
    once, twice = Path(folder) / "once.plot", Path(folder) / "twice.plot"
    result = run(program, "convert", path, once)
    if result.returncode:
        return f"convert failed: {result.stderr.decode('utf-8', 'replace')}"
    expected = arcs(dump(program, path))
    said = [line for line in result.stderr.decode("utf-8", "replace").splitlines() if "became chords" in line]
    number = sum(int(line.split("warning: ")[1].split()[0]) for line in said)
    if number != expected:
        return f"{expected} arcs of polylines, and {number} said to have become chords"
    run(program, "convert", once, twice)
    return None if once.read_bytes() == twice.read_bytes() else "converted twice is not converted once"


def main():
    program, corpus = sys.argv[1], Path(sys.argv[2])
    if not corpus.is_dir():
        print(f"SKIPPED: no sample drawings at {corpus}")
        return 77
    passed, failures, refused = 0, [], 0
    with tempfile.TemporaryDirectory() as folder:
        for path in sorted(p for p in corpus.rglob("*") if p.suffix.lower() == ".dxf"):
            if run(program, "info", path).returncode:
                refused += 1
                continue
            problem = check_plain(program, path, folder) or check_chords(program, path, folder)
            if problem:
                failures.append(f"{path.name}: {problem}")
            else:
                passed += 1
    print(*failures, sep="\n")
    print(f"{passed} passed, {len(failures)} failed, {refused} are no drawings")
    return 1 if failures or not passed else 0


if __name__ == "__main__":
    sys.exit(main())
