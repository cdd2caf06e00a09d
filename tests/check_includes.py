"""usage: check_includes.py SRC

Fails on an include of a higher folder and on headers that include each other. What cannot be avoided stands in ALLOWED,
with the reason."""

import pathlib
import re
import sys

FOLDERS = ["platform", "text", "messages", "values", "typeschema", "frontend", "interpreter", "builtins", "driver"]
ALLOWED = {}  # (including file, included file): reason
INCLUDE = re.compile(r'^\s*#include "([^"]+)"', re.MULTILINE)


def rank(path):
    return FOLDERS.index(path.split("/")[0]) if path.split("/")[0] in FOLDERS else len(FOLDERS)


def find_upward(includes):
    return [
        f"{name} includes {included}, which is a higher folder"
        for name, targets in includes.items()
        for included in targets
        if "/" in included and rank(included) > rank(name) and (name, included) not in ALLOWED
    ]


def find_cycles(includes):
    cycles = []
    state = {}

    def visit(name, trail):
        state[name] = "open"
        for included in includes.get(name, []):
            if state.get(included) == "open":
                cycles.append(" -> ".join(trail + [name, included]))
            elif included not in state:
                visit(included, trail + [name])
        state[name] = "done"

    for name in includes:
        if name not in state:
            visit(name, [])
    return cycles


def main():
    src = pathlib.Path(sys.argv[1])
    files = [p for p in src.rglob("*") if p.suffix in (".h", ".cpp", ".y")]
    includes = {p.relative_to(src).as_posix(): INCLUDE.findall(p.read_text()) for p in files}
    faults = find_upward(includes) + find_cycles(includes)
    print("\n".join(faults) or f"{len(includes)} files include downwards only")
    return 1 if faults or not includes else 0


if __name__ == "__main__":
    sys.exit(main())
