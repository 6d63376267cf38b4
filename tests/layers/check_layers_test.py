#!/usr/bin/env python3
"""Plants one breach at a time in a small clean tree and sees that the checker names it, and only it."""
import importlib.util
import io
import pathlib
import subprocess
import sys
import tempfile
import unittest
from contextlib import redirect_stderr, redirect_stdout

CHECKER = pathlib.Path(__file__).resolve().parents[2] / "tools" / "check_layers.py"
SPEC = importlib.util.spec_from_file_location("check_layers", CHECKER)
check_layers = importlib.util.module_from_spec(SPEC)
SPEC.loader.exec_module(check_layers)

CLEAN = {
    "src/platform/File.h": "#pragma once\n#ifdef _WIN32\n#include <windows.h>\n#else\n"
                           "#include <unistd.h>\n#endif\n",
    "src/platform/inner/Deep.h": '#pragma once\n#include "platform/File.h"\n',
    "src/platform/File.cpp": '#include "platform/inner/Deep.h"\n',
    "src/support/Point.h": '#pragma once\n#include "platform/File.h"\n#include <vector>\n',
    "src/model/Line.h": '#pragma once\n#include "support/Point.h"\n// A part 3.1 units long\n'
                        '// By the TGA file format specification.\n',
    "src/dxf/Reader.cpp": '#include "model/Line.h"\n#include <string>\n',
    "src/clip/Clipper.h": '#pragma once\n#include "support/Point.h"\n',
    "examples/windows/host.cpp": '#include <windows.h>\n#include "model/Line.h"\n',
    "tools/main.cpp": '#include "dxf/Reader.h"\n#include <cstdio>\n',
    "docs/guide.md": "See https://example.org/work/x and build/tmp/y.\n",
}

# file, its text, where the breach is told, a piece of what is told
BREACHES = [
    ("src/support/Bad.h", '#pragma once\n#include "model/Line.h"\n', 2, "support may not include model"),
    ("src/platform/Bad.cpp", '#include "support/Point.h"\n', 1, "platform may not include support"),
    ("src/dxf/Bad.cpp", '\n#include "clip/Clipper.h"\n', 2, "dxf may not include clip"),
    ("src/plot/Bad.cpp", '#  include "clip/Clipper.h"\n', 1, "plot may not include clip"),
    ("src/model/Bad.cpp", '#include "Line.h"\n', 1, "no file of ours, written from src/"),
    ("src/model/Bad.cpp", '#include "support/Missing.h"\n', 1, "no file of ours, written from src/"),
    ("src/model/Bad.cpp", '#include "../support/Point.h"\n', 1, "no file of ours, written from src/"),
    ("src/model/Bad.cpp", "#include <support/Point.h>\n", 1, "in angle brackets"),
    ("src/model/Bad.h", "#include <vector>\n", 1, "no #pragma once"),
    ("src/model/Self.h", '#pragma once\n#include "model/Self.h"\n', 2, "model/Self.h -> model/Self.h"),
    ("src/platform/Bad.h", '#pragma once\n#include "platform/inner/Deep.h"\n', 2, "is installed"),
    ("src/stray/Bad.cpp", "int a;\n", 1, "stands in no module"),
    ("src/Bad.cpp", "int a;\n", 1, "stands in no module"),
    ("src/model/Bad.cpp", "#include <windows.h>\n", 1, "operating system's <windows.h>"),
    ("src/model/Bad.cpp", "#include <Windows.h>\n", 1, "operating system's <Windows.h>"),
    ("examples/Bad.cpp", "#include <windows.h>\n", 1, "operating system's <windows.h>"),
    ("tools/Bad.cpp", "#include <sys/stat.h>\n", 1, "operating system's <sys/stat.h>"),
    ("tests/Bad.cpp", "#include <unistd.h>\n", 1, "operating system's <unistd.h>"),
    ("src/support/Bad.cpp", "#include <fontconfig/fontconfig.h>\n", 1, "library header"),
    ("src/support/Bad.cpp", "#ifdef _WIN32\n#endif\n", 1, "asks for _WIN32"),
    ("tools/Bad.cpp", "#if defined(A) && !defined(_MSC_VER)\n#endif\n", 1, "asks for _MSC_VER"),
    ("src/model/Bad.cpp", "\n" * (check_layers.MAX_LINES + 1), check_layers.MAX_LINES + 1, "more than"),
    ("src/model/Bad.cpp", "// as Part " "3.1 says\n", 1, "numbered document"),
    ("docs/bad.md", "\nFixes issue " "12.\n", 2, "a ticket"),
    ("docs/bad.md", "By the specific" "ation.\n", 1, "instead of stating the fact"),
    ("scripts/bad", "cd /ho" "me/me/halyard\n", 1, "folder of one machine"),
]


def check(files):
    with tempfile.TemporaryDirectory() as folder:
        for name, text in files.items():
            file = pathlib.Path(folder, name)
            file.parent.mkdir(parents=True, exist_ok=True)
            file.write_text(text, encoding="utf-8")
        out = io.StringIO()
        with redirect_stdout(out), redirect_stderr(out):
            code = check_layers.main(["check_layers", folder])
        return code, out.getvalue().splitlines()


class CheckerTest(unittest.TestCase):
    def test_a_clean_tree_passes(self):
        code, lines = check(CLEAN)
        self.assertEqual((0, f"{len(CLEAN) - 1} sources, 0 breaches"), (code, lines[-1]), lines)

    def test_each_planted_breach_is_named_alone(self):
        for name, text, line, piece in BREACHES:
            with self.subTest(name=name, piece=piece):
                code, lines = check(CLEAN | {name: text})
                self.assertEqual(1, code)
                self.assertEqual(2, len(lines), lines)
                self.assertTrue(lines[0].startswith(f"{name}:{line}: "), lines)
                self.assertIn(piece, lines[0])

    def test_a_cycle_through_three_headers_is_told_once(self):
        ring = {f"src/model/{a}.h": f'#pragma once\n#include "model/{b}.h"\n' for a, b in ("AB", "BC", "CA")}
        code, lines = check(CLEAN | ring)
        self.assertEqual(1, code)
        self.assertEqual(2, len(lines), lines)
        self.assertIn("model/A.h -> model/B.h -> model/C.h -> model/A.h", lines[0])

    def test_two_ways_to_one_header_are_no_cycle(self):
        diamond = {f"src/model/{a}.h": "#pragma once\n" + "".join(f'#include "model/{b}.h"\n' for b in bs)
                   for a, bs in (("A", "BC"), ("B", "D"), ("C", "D"), ("D", ""))}
        code, lines = check(CLEAN | diamond)
        self.assertEqual(0, code, lines)

    def test_only_what_git_tracks_is_read_for_prose(self):
        with tempfile.TemporaryDirectory() as folder:
            for name, text in CLEAN.items():
                file = pathlib.Path(folder, name)
                file.parent.mkdir(parents=True, exist_ok=True)
                file.write_text(text, encoding="utf-8")
            subprocess.run(["git", "-C", folder, "init", "-q"], check=True)
            pathlib.Path(folder, "notes.md").write_text("as Part " "3.1 says\n", encoding="utf-8")
            with redirect_stdout(io.StringIO()):
                self.assertEqual(0, check_layers.main(["check_layers", folder]))
                subprocess.run(["git", "-C", folder, "add", "notes.md"], check=True)
                self.assertEqual(1, check_layers.main(["check_layers", folder]))

    def test_an_empty_tree_is_not_a_passed_check(self):
        self.assertEqual(2, check({"README.md": ""})[0])


if __name__ == "__main__":
    sys.dont_write_bytecode = True
    unittest.main()
