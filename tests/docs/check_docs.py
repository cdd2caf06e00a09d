#!/usr/bin/env python3
"""usage: check_docs.py PROGRAM PAGE_OR_FOLDER ...
Does what the pages tell, with the real program, and compares what they show. A page is one project in a folder of its
own; its fenced blocks say by the words behind the language what they are:

    kvl main.kvl             a file of the project (any word with a point)
    sh run [exit=1]          commands; the program is found as kvlRun, standard input is at its end
    text shows               what the last run printed; "..." stands for lines left out
    sql result out/a.sql     a file that a run made (any language); "result-part": lines of it, "..." as above
    kvl type, text data      a type and data for the examples below them, up to the next heading
    kvl example              the body of a pattern; it gets the data as IN and is run
    text gives | text fails  what the example wrote | lines of its message

A block of the language "kvl" must be one of these, so that no listing goes unread."""
import os
import pathlib
import re
import subprocess
import sys
import tempfile

HEAD, FOOT = '$BEGIN KVL VERSION="1.0.0"$\n', '$END KVL VERSION="1.0.0"$\n'
FENCE = re.compile(r"^```(\w+)(?: ([^\n]*))?\n(.*?)^```$|^#+ ", re.M | re.S)


class Page:
    def __init__(self, program, path):
        self.path, self.faults, self.console, self.exit, self.type, self.data = path, [], "", 0, "", ""
        self.text = path.read_text()
        self.surroundings = {**os.environ, "PATH": f"{program.parent}:{os.environ['PATH']}", "NO_COLOR": "1"}

    def fault(self, place, what):
        self.faults.append(f"{self.path}:{self.text.count(chr(10), 0, place) + 1}: {what}")

    def run(self, commands):
        done = subprocess.run(["sh", "-ec", commands], cwd=self.folder, env=self.surroundings, timeout=60,
                              stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
        text = done.stdout.decode("utf-8", "replace").replace("\r\n", "\n")
        self.console, self.exit = text.replace(str(self.folder), "/project"), done.returncode

    def write(self, name, text):
        target = self.folder / name
        target.parent.mkdir(parents=True, exist_ok=True)
        target.write_text(text)

    def read(self, name):
        target = self.folder / name
        text = target.read_bytes() if target.exists() else b"(no such file)\n"
        return text.decode("utf-8", "replace").replace("\r\n", "\n")

    def example(self, body):
        parameter, load, name = "", "", re.match(r"(?://[^\n]*\n|\s)*::(\w+)", self.type)
        if name:
            parameter = f"#IN ::{name[1]}"
            load = f'$::{name[1]} ::KVL:TYPE = HERE:FILE("t.type")$\n$IN ::{name[1]} = HERE:FILE("data.txt")$\n'
            self.write("t.type", f"{HEAD}$TYPE\n{self.type}$\n{FOOT}")
            self.write("data.txt", self.data)
        macro = f"PATTERN EXAMPLE({parameter})$\n"
        self.write("example.pattern", f"{HEAD}$BEGIN {macro}{body}$END {macro}{FOOT}")
        self.write("example.kvl", f'{HEAD}$BEGIN SCRIPT MAIN()$\n$HERE ::KVL:DIRECTORY$\n$HERE:SET_PATH("")$\n{load}'
                   '$EXAMPLE() ::KVL:PATTERN = HERE:FILE("example.pattern")$\n'
                   f'$HERE:FILE("result.txt") = EXAMPLE({"IN" if name else ""})$\n$END SCRIPT MAIN()$\n{FOOT}')
        self.run("rm -f result.txt; kvlRun example.kvl -overwrite")

    def same(self, place, shown, real):
        if shown.rstrip("\n") != real.rstrip("\n"):
            self.fault(place, f"shown:\n{shown}really:\n{real}{self.console if 'no such file' in real else ''}")

    def contains(self, place, shown, real):
        lines, at = [line.rstrip() for line in real.splitlines()], 0
        for part in re.split(r"^\.\.\.\n", shown, flags=re.M):
            wanted = [line.rstrip() for line in part.strip("\n").splitlines()]
            fits = (i for i in range(at, len(lines) - len(wanted) + 1) if lines[i:i + len(wanted)] == wanted)
            found = next(fits, None)
            if found is None:
                return self.fault(place, f"not found:\n{part}in:\n" + "\n".join(lines[-60:]))
            at = found + len(wanted)

    def block(self, place, language, words, text):
        kind = words[0] if words else ""
        if kind == "run":
            self.run(text)
            expected = next((int(word[5:]) for word in words if word.startswith("exit=")), 0)
            if self.exit != expected:
                self.fault(place, f"exit value {self.exit}:\n{self.console}")
        elif kind == "shows":
            self.contains(place, text, self.console)
        elif kind == "result":
            self.same(place, text, self.read(words[1]))
        elif kind == "result-part":
            self.contains(place, text, self.read(words[1]))
        elif kind in ("type", "data"):
            setattr(self, kind, text)
        elif kind == "example":
            self.example(text)
        elif kind == "gives":
            self.same(place, text, self.read("result.txt"))
        elif kind == "fails":
            self.contains(place, text, self.console)
            if self.exit == 0:
                self.fault(place, "does not fail")
        elif "." in kind:
            self.write(kind, text)
        elif kind or language == "kvl":
            self.fault(place, f"a block of no kind: {language} {' '.join(words)}")

    def check_links(self):
        anchors = lambda text: {re.sub(r"[^\w -]", "", head).lower().replace(" ", "-")
                                for head in re.findall(r"^#+ (.*)$", text, re.M)}
        for found in re.finditer(r"\]\((?!\w+:)([^)#\s]*)#?([^)\s]*)\)", re.sub(r"`[^`\n]*`", "", self.text)):
            target = (self.path.parent / found[1]) if found[1] else self.path
            if not target.exists() or (found[2] and found[2] not in anchors(target.read_text())):
                self.fault(0, f"a link to nothing: {found[0][2:-1]}")

    def check(self):
        self.check_links()
        with tempfile.TemporaryDirectory() as folder:
            self.folder = pathlib.Path(folder).resolve()
            for found in FENCE.finditer(self.text):
                if found[1]:
                    self.block(found.start(), found[1], (found[2] or "").split(), found[3])
                else:
                    self.type = self.data = ""
        return self.faults


def main():
    program = pathlib.Path(sys.argv[1]).resolve()
    given = [pathlib.Path(argument) for argument in sys.argv[2:]]
    pages = [page for path in given for page in (sorted(path.rglob("*.md")) if path.is_dir() else [path])]
    faults = [fault for page in pages for fault in Page(program, page).check()]
    print("\n".join(faults))
    print(f"{len(pages)} pages, {len(faults)} faults")
    return 1 if faults or not pages else 0


sys.exit(main())
