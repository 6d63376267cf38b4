#!/usr/bin/env python3
"""Checks the rules that hold the source tree together and prints each breach as FILE:LINE: what.

    tools/check_layers.py [ROOT]        exit 0: no breach, 1: breaches, 2: nothing to check

- A module includes only what MAY_INCLUDE allows; includes are written from src/ and name files that exist.
- Headers form no cycle and start with #pragma once.
- A header at the top of a module is installed for hosts, those in its inner folders are not: the former include
  none of the latter.
- The operating system and the libraries that stand in for it are seen under src/platform/ only; the hosts in
  examples/windows/ and the stand-in for a host's class library in tests/vendor/ include its headers.
- A source of more than MAX_LINES lines is two sources.
- Comments and documents state facts themselves: they cite no numbered document or ticket, which rots (a
  published "... format specification" is a source, and may be named), and no folder of somebody's machine.
"""
import pathlib
import re
import subprocess
import sys

MAY_INCLUDE = {
    "platform": set(),
    "support": {"platform"},
    "model": {"support", "platform"},
    "clip": {"model", "support", "platform"},
    "dxf": {"model", "support", "platform"},
    "plot": {"model", "support", "platform"},
    "render": {"clip", "model", "support", "platform"},
    "import": {"dxf", "model", "support", "platform"},
    "frame": {"support", "platform"},
}
CODE_FOLDERS = ["src", "tools", "tests", "bench", "fuzz", "examples"]
CODE_SUFFIXES = {".h", ".cpp"}
PROSE_SUFFIXES = CODE_SUFFIXES | {".md", ".py", ".txt", ".cmake", ".in", ".json", ".1", ".bash", ".yml", ""}
MAX_LINES = 800

INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]')
CONDITION = re.compile(r"^\s*#\s*(?:if|ifdef|ifndef|elif|elifdef|elifndef)\b(.*)")
SYSTEM_MACRO = re.compile(
    r"\b(_WIN32|_WIN64|WIN32|__MINGW\w*|_MSC_VER|__CYGWIN__|__unix__|__linux__|__APPLE__|_POSIX\w*)\b")
SYSTEM_HEADER = re.compile(
    r"^(windows|windowsx|wingdi|winbase|winuser|objbase|io|direct|process|unistd|fcntl|dlfcn|pthread|poll"
    r"|termios|dirent|glob|pwd|spawn|strings|alloca|syscall)\.h$"
    r"|^(sys|linux|asm|arpa|net|netinet)/", re.IGNORECASE)
LIBRARY_HEADER = re.compile(
    r"^(ft2build|jpeglib|jerror|tiff|tiffio|geotiff|geotiffio|geo_normalize|xtiffio|gif_lib|png|zlib|gdiplus)"
    r"\.h$|^(fontconfig|freetype|geotiff|libpng\w*)/", re.IGNORECASE)
# Written so that no pattern finds itself in this file.
CITATIONS = [
    (re.compile(r"\bPart[ ]\d+\.\d+"), "cites a numbered document"),
    (re.compile(r"\bissues?[ ]#?\d+\b", re.IGNORECASE), "cites a ticket"),
    (re.compile(r"(?<!format )\bspecific[a]tions?\b", re.IGNORECASE),
     "cites a document instead of stating the fact"),
    (re.compile(r"(?<![\w.$}/])/(?:home|work|root|tmp|Users)[/]\w"), "names a folder of one machine"),
]


class Checker:
    def __init__(self, root):
        self.root = root
        self.breaches = []
        self.header_includes = {}

    def breach(self, file, line, what):
        self.breaches.append(f"{file.relative_to(self.root)}:{line}: {what}")

    def check_code(self, file):
        parts = file.relative_to(self.root).parts
        module = parts[1] if parts[0] == "src" and len(parts) > 2 else None
        lines = file.read_text(encoding="utf-8", errors="replace").splitlines()
        if parts[0] == "src" and module not in MAY_INCLUDE:
            self.breach(file, 1, "stands in no module")
            return
        if len(lines) > MAX_LINES:
            self.breach(file, len(lines), f"has more than {MAX_LINES} lines")
        if file.suffix == ".h" and not any(line.strip() == "#pragma once" for line in lines):
            self.breach(file, 1, "has no #pragma once")
        if file.suffix == ".h" and module:
            self.header_includes[file] = []
        for number, line in enumerate(lines, 1):
            self.check_condition(file, number, line, module)
            include = INCLUDE.match(line)
            if include:
                self.check_include(file, number, module, include[1] == '"', include[2])

    def check_condition(self, file, number, line, module):
        condition = CONDITION.match(line)
        if module == "platform" or not condition:
            return
        macro = SYSTEM_MACRO.search(condition[1])
        if macro:
            self.breach(file, number, f"asks for {macro[1]} outside src/platform/")

    def check_include(self, file, number, module, quoted, name):
        is_host = file.relative_to(self.root).parts[:2] in (("examples", "windows"), ("tests", "vendor"))
        if module != "platform" and not is_host and SYSTEM_HEADER.match(name):
            self.breach(file, number, f"includes the operating system's <{name}> outside src/platform/")
        if module not in ("platform", None) and LIBRARY_HEADER.match(name):
            self.breach(file, number, f"includes the library header <{name}> outside src/platform/")
        if module is None:
            return
        target = self.root / "src" / name
        other = name.split("/")[0]
        if not quoted:
            if other in MAY_INCLUDE and target.is_file():
                self.breach(file, number, f"includes our own {name} in angle brackets")
            return
        if other not in MAY_INCLUDE or not target.is_file():
            self.breach(file, number, f'"{name}" is no file of ours, written from src/')
            return
        if other != module and other not in MAY_INCLUDE[module]:
            self.breach(file, number, f"{module} may not include {other} ({name})")
        depth = len(file.relative_to(self.root).parts)
        if file.suffix == ".h" and depth == 3 and name.count("/") > 1:
            self.breach(file, number, f"is installed, {name} is not")
        if file in self.header_includes:
            self.header_includes[file].append((number, target))

    def check_cycles(self):
        """Depth-first walk; a header met again on the way to itself closes a cycle."""
        done = set()
        for start in sorted(self.header_includes):
            way = [] if start in done else [(start, iter(self.header_includes[start]))]
            while way:
                file, rest = way[-1]
                number, target = next(rest, (0, None))
                if target is None:
                    done.add(file)
                    way.pop()
                elif target in (files := [f for f, _ in way]):
                    ring = files[files.index(target):] + [target]
                    names = [str(f.relative_to(self.root / "src")) for f in ring]
                    self.breach(file, number, "header cycle: " + " -> ".join(names))
                elif target in self.header_includes and target not in done:
                    way.append((target, iter(self.header_includes[target])))

    def check_prose(self, file):
        try:
            text = file.read_text(encoding="utf-8")
        except (UnicodeDecodeError, OSError):
            return
        for number, line in enumerate(text.splitlines(), 1):
            for pattern, what in CITATIONS:
                found = pattern.search(line)
                if found:
                    self.breach(file, number, f'{what}: "{found[0]}"')


def code_files(root):
    for folder in CODE_FOLDERS:
        for file in sorted((root / folder).rglob("*")):
            if file.suffix in CODE_SUFFIXES and file.is_file():
                yield file


def prose_files(root):
    """What git tracks; in an exported tree without git, the code folders and the documents."""
    git = subprocess.run(["git", "-C", root, "ls-files", "-z"], capture_output=True, text=True, check=False) \
        if (root / ".git").exists() else None
    if git is not None and git.returncode == 0:
        files = [root / name for name in git.stdout.split("\0") if name]
    else:
        folders = CODE_FOLDERS + ["docs", "scripts", "cmake"]
        files = [f for folder in folders for f in (root / folder).rglob("*")] + list(root.glob("*"))
    unread = {root / "fuzz" / "corpus", root / "fuzz" / "crashes"}
    for file in sorted(files):
        if file.suffix in PROSE_SUFFIXES and file.is_file() and unread.isdisjoint(file.parents):
            yield file


def main(arguments):
    default = pathlib.Path(__file__).resolve().parents[1]
    root = pathlib.Path(arguments[1]).resolve() if len(arguments) > 1 else default
    checker = Checker(root)
    code = list(code_files(root))
    if not code:
        print(f"{root}: no sources to check", file=sys.stderr)
        return 2
    for file in code:
        checker.check_code(file)
    checker.check_cycles()
    for file in prose_files(root):
        checker.check_prose(file)
    for breach in checker.breaches:
        print(breach)
    print(f"{len(code)} sources, {len(checker.breaches)} breaches")
    return 1 if checker.breaches else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
