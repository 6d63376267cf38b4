#!/usr/bin/env python3
"""Counts the entities of sample drawings from their text alone and holds them against what the program reads; then writes
each drawing, reads it again and holds the two readings against each other.

  corpus_test.py PROGRAM CORPUS_FOLDER

Prints one line for each difference and "N passed, N failed" at the end. Exits with 77 when there is no such folder.
"""
import json
import subprocess
import sys
import tempfile
from collections import Counter
from pathlib import Path

# Degrees that pass through the cosine and sine of a direction in six decimals.
TOLERANCES = {"rotation": 1e-4}
MAX_LINE = 511  # a longer line ends the reading
SIMPLE = {"LINE", "POINT", "CIRCLE", "ARC", "SOLID", "3DFACE", "TEXT", "MTEXT", "INSERT", "IMAGE"}


def pairs(text):
    lines = text.split(b"\n")
    lines = [line[:-1] if line.endswith(b"\r") else line for line in lines]
    for code, value in zip(lines[0::2], lines[1::2]):
        if max(len(code), len(value)) > MAX_LINE:
            return
        try:
            yield int(code), value.decode("latin-1")
        except ValueError:
            yield 0, value.decode("latin-1")


def objects(text):
    name, groups = None, []
    for code, value in pairs(text):
        if code == 0:
            if name is not None:
                yield name, groups
            name, groups = value, []
            if value == "EOF":
                return
        elif name is not None:
            groups.append((code, value))
    if name is not None:
        yield name, groups


def first(groups, code, default=""):
    return next((value for c, value in groups if c == code), default)


def number(text):
    digits = "".join(c for c in text.strip() if c in "-0123456789")
    return int(digits) if digits not in ("", "-") else 0


def face_corners(groups, positions):
    corners = []
    for code in (71, 72, 73):
        value = first(groups, code, None)
        if value is None:
            break
        if 1 <= abs(number(value)) <= positions:
            corners.append(value)
    return corners


def count_polyline(flags, vertices):
    """Kinds that one POLYLINE and its vertices become."""
    counts, positions, ordinary, faces = Counter(), 0, 0, 0
    for groups in vertices:
        bits = number(first(groups, 70, "0"))
        if not bits & 128:
            ordinary += 1
        elif bits & 64:
            positions += 1
        elif len(face_corners(groups, positions)) >= 2:
            faces += 1
    is_mesh = any(number(first(g, 70, "0")) & 192 == 128 for g in vertices)
    if ordinary or not is_mesh:
        counts["POLYGON" if flags & 1 and not flags & 64 else "POLYLINE"] += 1
    counts["POLYGON"] += faces
    return counts


def count(text):
    counts, in_blocks, stream = Counter(), False, list(objects(text))
    index = 0
    while index < len(stream):
        name, groups = stream[index]
        upper = name.upper()
        index += 1
        if upper == "SECTION" and first(groups, 2).upper() == "BLOCKS":
            in_blocks = True
        elif name == "ENDSEC":
            in_blocks = False
        elif in_blocks:
            continue
        elif upper == "LWPOLYLINE":
            counts["POLYGON" if number(first(groups, 70, "0")) & 1 else "POLYLINE"] += 1
        elif upper == "POLYLINE":
            vertices = []
            while index < len(stream) and stream[index][0] == "VERTEX":
                vertices.append(stream[index][1])
                index += 1
            index += 1  # the object that ends the list goes with it
            counts += count_polyline(number(first(groups, 70, "0")), vertices)
        elif upper == "INSERT" and not first(groups, 2) and not first(groups, 10):
            continue
        elif upper in SIMPLE:
            counts[upper] += 1
    return {kind: n for kind, n in counts.items() if n}


def run(program, *arguments):
    return subprocess.run([program, *map(str, arguments)], capture_output=True, timeout=120)


def dump(program, path):
    return [json.loads(line) for line in run(program, "dump", path).stdout.splitlines()]


def normal(entity):
    """What AC1014 as it is written can hold of an entity."""
    kept = {key: value for key, value in entity.items() if key not in ("block", "font")}
    kind = entity["kind"]
    if kind == "POLYLINE" and entity["lightweight"]:
        kept["vertices"] = [[x, y, 0, bulge] for x, y, z, bulge in entity["vertices"]]
    if kind in ("POLYLINE", "POLYGON"):
        for key in ("width", "elevation", "lightweight"):
            kept.pop(key, None)
        if kind == "POLYGON":
            kept.pop("style", None)
    if kind == "MTEXT":
        kept["text"] = entity["text"].split(";", 1)[-1] if entity["text"].startswith("\\f") else entity["text"]
        for key in ("justification", "clip_extents"):
            kept.pop(key, None)
    if kind == "IMAGE":
        kept.pop("color", None)
    return kept


def same(one, other, tolerance=1.1e-6):
    """Equal within the six decimals of the file."""
    if isinstance(one, (int, float)) and isinstance(other, (int, float)) and not isinstance(one, bool):
        return abs(one - other) <= tolerance + 1e-6 * (abs(one) > 1e9)
    if isinstance(one, dict) and isinstance(other, dict):
        return one.keys() == other.keys() and all(same(one[key], other[key], tolerance) for key in one)
    if isinstance(one, list) and isinstance(other, list):
        return len(one) == len(other) and all(same(a, b, tolerance) for a, b in zip(one, other))
    return one == other


def brief(value):
    text = json.dumps(value)
    return text if len(text) < 80 else text[:77] + "..."


def check_counts(program, path, text):
    result = run(program, "info", "--json", path)
    if result.returncode == 1:
        return None, result.stderr.decode("utf-8", "replace").strip()
    kinds = json.loads(result.stdout)["kinds"]
    expected = count(text)
    return kinds, None if kinds == expected else f"counted {expected}, read {kinds}"


def check_round_trip(program, path, folder):
    written = Path(folder) / "written.dxf"
    result = run(program, "convert", "--plain", "--true-color", path, written)
    if result.returncode:
        return f"convert failed: {result.stderr.decode('utf-8', 'replace')}"
    before = [normal(e) for e in dump(program, path) if e["block"] is None and e["kind"] != "INSERT"]
    after = [normal(e) for e in dump(program, written)]
    for one, other in zip(before, after):
        changed = [key for key in one | other if not same(one.get(key), other.get(key), TOLERANCES.get(key, 1.1e-6))]
        if changed:
            return f"{one['kind']}: " + "; ".join(f"{k} {brief(one.get(k))} -> {brief(other.get(k))}" for k in changed)
    return None if len(before) == len(after) else f"{len(before)} entities became {len(after)}"


def main():
    program, corpus = sys.argv[1], Path(sys.argv[2])
    if not corpus.is_dir():
        print(f"SKIPPED: no sample drawings at {corpus}")
        return 77
    passed, failures, refused = 0, [], []
    with tempfile.TemporaryDirectory() as folder:
        for path in sorted(p for p in corpus.rglob("*") if p.suffix.lower() == ".dxf"):
            text = path.read_bytes()
            kinds, problem = check_counts(program, path, text)
            if kinds is None:
                refused.append(f"{path.name}: {problem}")
                continue
            problem = problem or check_round_trip(program, path, folder)
            if problem:
                failures.append(f"{path.name}: {problem}")
            else:
                passed += 1
    print(*failures, sep="\n")
    print(f"refused, with these sentences ({len(refused)}):", *refused, sep="\n  ")
    print(f"{passed} passed, {len(failures)} failed")
    return 1 if failures or not passed else 0


if __name__ == "__main__":
    sys.exit(main())
