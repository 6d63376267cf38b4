#!/usr/bin/env python3
"""Checks which libraries Windows files need:  imports_test.py OBJDUMP FILE...

Each has to be one of the system's, or one of the files. The compiler's runtime is among neither.
"""
import pathlib
import re
import subprocess
import sys

SYSTEM = {"advapi32.dll", "gdi32.dll", "gdiplus.dll", "kernel32.dll", "msvcrt.dll", "ole32.dll", "shell32.dll",
          "user32.dll"}


def needed_by(objdump, file):
    listing = subprocess.run([objdump, "-p", file], capture_output=True, text=True, check=True).stdout
    return {name.lower() for name in re.findall(r"DLL Name: (\S+)", listing)}


def main(arguments):
    objdump, *files = arguments[1:]
    known = SYSTEM | {pathlib.Path(file).name.lower() for file in files}
    strangers = 0
    for file in files:
        needed = needed_by(objdump, file)
        print(f"{pathlib.Path(file).name}: {' '.join(sorted(needed))}")
        # A file that needs nothing has not been read.
        strangers += len(needed - known) + ("kernel32.dll" not in needed)
    return 1 if strangers else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
