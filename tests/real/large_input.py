"""Data files at the limits, on the real file system: one too large for the positions of a parse is refused before it is
read, and a single line of 100 MB is read like any other.

usage: large_input.py KVLRUN"""

import os
import subprocess
import sys
import tempfile
import time

SCRIPT = """$BEGIN KVL VERSION="1.0.0"$
$BEGIN SCRIPT MAIN()$
$HERE ::KVL:DIRECTORY$
$HERE:SET_PATH("")$
$::T ::KVL:TYPE = HERE:FILE("t.type")$
$D ::T = HERE:FILE("data.txt")$
$R ::STREAM$
$BEGIN ALL D$
$R = "$D:A$"$
$END ALL D$
$HERE:FILE("out.txt") = R$
$END SCRIPT MAIN()$
$END KVL VERSION="1.0.0"$
"""
TYPE = """$BEGIN KVL VERSION="1.0.0"$
$TYPE ::T = ::LIST{ ::LINE{ ::STREAM{ 'end of' } A ::STRING } } $
$END KVL VERSION="1.0.0"$
"""


def run(program, folder):
    began = time.monotonic()
    done = subprocess.run([program, os.path.join(folder, "main.kvl"), "-overwrite"], stdin=subprocess.DEVNULL,
                          stdout=subprocess.PIPE, timeout=300)
    return done.returncode, done.stdout.decode("latin-1"), time.monotonic() - began


def expect(condition, what, console):
    if not condition:
        sys.exit(f"{what}\n{console[-2000:]}")


def main():
    with tempfile.TemporaryDirectory() as folder:
        for name, text in ("main.kvl", SCRIPT), ("t.type", TYPE):
            with open(os.path.join(folder, name), "w", encoding="ascii") as file:
                file.write(text)
        data = os.path.join(folder, "data.txt")

        with open(data, "wb") as file:
            file.truncate(2**31)  # sparse
        status, console, seconds = run(sys.argv[1], folder)
        expect(status == 1 and "ERR_EXEC_SCRIPT_FILE_11" in console, "2 GB were not refused", console)
        expect(seconds < 10, f"2 GB took {seconds:.1f} s to be refused", console)

        with open(data, "wb") as file:
            file.write(b";" * 100_000_000 + b" end of it\n")
        status, console, _ = run(sys.argv[1], folder)
        expect(status == 0, "a line of 100 MB was not read", console)
        with open(os.path.join(folder, "out.txt"), "rb") as file:
            expect(file.read().strip() == b"it", "a line of 100 MB was read wrongly", console)


main()
