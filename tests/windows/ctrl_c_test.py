#!/usr/bin/env python3
"""Presses Ctrl-C on a terminal while the program converts a large drawing:  ctrl_c_test.py PROGRAM

It has to end with 130 and leave nothing behind.
"""
import os
import pathlib
import pty
import select
import sys
import tempfile
import time

LINE = "0\nLINE\n8\n0\n10\n1234.5\n20\n2345.6\n11\n3456.7\n21\n4567.8\n"
LINES = 1_500_000
SKIPPED = 77
PATIENCE = 60.0


def run_and_press(program, folder):
    """The exit status and what the terminal showed."""
    child, terminal = pty.fork()
    if child == 0:
        os.chdir(folder)
        os.execv(program, [program, "convert", "big.dxf", "out.dxf"])
    start = time.monotonic()
    pressed, shown = False, b""
    while time.monotonic() - start < PATIENCE:
        if select.select([terminal], [], [], 0.05)[0]:
            try:
                shown += os.read(terminal, 4096)
            except OSError:  # the other end is closed
                break
        # The bar shows that the program has its terminal and is at work.
        if not pressed and b"%" in shown:
            os.write(terminal, b"\x03")
            pressed = True
    return os.waitstatus_to_exitcode(os.waitpid(child, 0)[1]), shown


def has_terminals():
    try:
        for end in pty.openpty():
            os.close(end)
    except OSError as reason:
        print(f"SKIPPED: this machine gives no pseudo-terminal ({reason})")
        return False
    return True


def main(arguments):
    if not has_terminals():
        return SKIPPED
    with tempfile.TemporaryDirectory() as folder:
        (pathlib.Path(folder) / "big.dxf").write_text(LINE * LINES + "0\nEOF\n", encoding="ascii")
        status, shown = run_and_press(str(pathlib.Path(arguments[1]).resolve()), folder)
        left = sorted(os.listdir(folder))
    print(f"status {status}, left {left}, shown {shown[-400:]!r}")
    return 0 if status == 130 and left == ["big.dxf"] else 1


if __name__ == "__main__":
    sys.exit(main(sys.argv))
