"""Runs the program as people and build tools do: in a project of its own, behind a terminal, a pipe or nobody.

A test file is started with the path of the program; what else its command line holds is left in `ARGUMENTS`.
"""

import contextlib
import errno
import os
import pty
import re
import select
import shutil
import signal
import subprocess
import sys
import tempfile
import termios
import time
import unittest

PROGRAM = None
ARGUMENTS = []
SECONDS = 60   # longer than anything here takes, so that a run that hangs is a failure and no wait for ever

HEADER = '$BEGIN KVL VERSION="1.0.0"$\n$BEGIN SCRIPT MAIN()$\n$D ::KVL:DIRECTORY$\n$D:SET_PATH("")$\n$S ::STREAM = "new"$\n'
FOOTER = '$END SCRIPT MAIN()$\n$END KVL VERSION="1.0.0"$\n'

PAUSE = "Please press [Enter] to continue!"
RUN_QUESTION = "overwrite all files without being ask."
FILE_QUESTION = "overwrite all files without being ask anymore."


def script(body):
    return HEADER + body + FOOTER


def writes(*names):
    """The commands that write "new" to each of the files."""
    return "".join(f'$D:FILE("{name}") = S$\n' for name in names)


class Project:
    """A directory with files, gone at the end of the `with` block."""

    def __init__(self, **files):
        self.path = tempfile.mkdtemp(prefix="kvlTest-")
        self.before = {name.replace("__", "."): text for name, text in files.items()}
        self.reset()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        shutil.rmtree(self.path, ignore_errors=True)

    def reset(self):
        shutil.rmtree(self.path)
        os.mkdir(self.path)
        for name, text in self.before.items():
            self.put(name, text)

    def put(self, name, text):
        os.makedirs(os.path.dirname(self.file(name)), exist_ok=True)
        with open(self.file(name), "w", encoding="latin-1", newline="") as file:
            file.write(text)

    def file(self, name):
        return os.path.join(self.path, name)

    def get(self, name):
        """The text of a file; None where there is none."""
        try:
            with open(self.file(name), encoding="latin-1", newline="") as file:
                return file.read()
        except FileNotFoundError:
            return None

    def files(self):
        """All files by their name, those with a name in the making too."""
        found = {}
        for folder, _, names in os.walk(self.path):
            for name in names:
                path = os.path.relpath(os.path.join(folder, name), self.path)
                found[path] = self.get(path)
        return found

    def command(self, *arguments):
        return [PROGRAM, self.file("main.kvl"), *arguments]

    def run(self, *arguments, command=None, **options):
        """A run to its end; standard input is at its end unless `input` is given. Gives exit value and console text."""
        if "input" not in options:
            options.setdefault("stdin", subprocess.DEVNULL)
        options.setdefault("stdout", subprocess.PIPE)
        ended = subprocess.run(command or self.command(*arguments), cwd=self.path, timeout=SECONDS, encoding="latin-1",
                               env=environment(options.pop("env", {})), check=False, **options)
        return ended.returncode, ended.stdout


def environment(changes):
    """The environment without what would change the outcome, and with `changes`."""
    kept = {name: value for name, value in os.environ.items() if not name.startswith("kvlrun_") and name != "NO_COLOR"}
    return {**kept, "TERM": "xterm", **changes}


class Terminal:
    """A run behind a pseudo-terminal of its own, which its controlling one."""

    def __init__(self, project, *arguments, env=None):
        self.output = ""
        self.master, self.slave = pty.openpty()   # the second is kept open, so that its modes can be looked at afterwards
        self.modes_before = self.modes()
        self.process = subprocess.Popen(project.command(*arguments), cwd=project.path, env=environment(env or {}),
                                        stdin=self.slave, stdout=self.slave, start_new_session=True,
                                        preexec_fn=self._take_terminal)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.process.kill()
        self.process.wait()
        os.close(self.master)
        os.close(self.slave)

    def _take_terminal(self):
        import fcntl
        fcntl.ioctl(0, termios.TIOCSCTTY, 0)
        signal.signal(signal.SIGINT, signal.SIG_DFL)

    def modes(self):
        return termios.tcgetattr(self.slave)

    def is_raw(self):
        return not self.modes()[3] & (termios.ICANON | termios.ECHO)

    def _read(self, seconds):
        if select.select([self.master], [], [], seconds)[0]:
            self.output += os.read(self.master, 65536).decode("latin-1").replace("\r\n", "\n")

    def expect(self, text, count=1):
        """Reads until the text has been shown that often."""
        end = time.monotonic() + SECONDS
        while self.output.count(text) < count:
            if time.monotonic() > end:
                raise AssertionError(f"{text!r} was not shown {count} times in {self.output!r}")
            self._read(0.05)

    def answer(self, question, keys, count=1):
        """Types the keys once the question stands and single keys are waited for."""
        self.expect(question, count)
        end = time.monotonic() + SECONDS
        while not self.is_raw():
            if time.monotonic() > end:
                raise AssertionError("the terminal gives no single keys")
            time.sleep(0.002)
        self.type(keys)

    def type(self, keys):
        os.write(self.master, keys.encode("latin-1"))

    def wait(self):
        """The exit value, or the negative number of the signal that ended the run."""
        end = time.monotonic() + SECONDS
        while self.process.poll() is None:
            if time.monotonic() > end:
                raise AssertionError(f"still running behind {self.output!r}")
            self._read(0.02)
        self._read(0)
        return self.process.returncode

    def text(self):
        """What was shown, without colours."""
        return re.sub(r"\x1b\[[0-9;]*m", "", self.output)


def leftovers(files):
    """Names of files in the making."""
    return [name for name in files if ".kvlRun-" in name]


def main():
    global PROGRAM
    PROGRAM = os.path.abspath(sys.argv.pop(1))
    while len(sys.argv) > 1 and not sys.argv[1].startswith("-"):
        ARGUMENTS.append(sys.argv.pop(1))
    unittest.main(module="__main__", verbosity=1)
