"""Runs in which one system call fails, or the process is killed at it: each call of each run, one after the other.

Whatever it was: a file is the old one or the new one, a run that fell short has said so, and only a killed run leaves a
file in the making, which the next run takes away. Arguments: the library of FailingCalls.cpp, and which share of the
calls is tried (default 13: every thirteenth, and the first of each name; 1: each with every error).
"""

import errno
import os
import signal
import unittest
from collections import Counter

import harness
from harness import Project, leftovers, script, writes

BODY = ('$S = D:FILE("in")$\n' + writes("old", "fresh", "far/away") + '$D:FILE("copy") = D:FILE("in")$\n'
        '$T ::STREAM = D:FILE("old")$\n$D:FILE("again") = T$\n')
ERRORS = (errno.EIO, errno.ENOSPC, errno.EINTR)
NEW = "new text\n" * 10


def project():
    files = Project(main__kvl=script(BODY), **{"in": NEW, "old": "old text", "copy": "old copy"})
    os.chmod(files.file("old"), 0o640)
    return files


class EachCall(unittest.TestCase):
    def setUp(self):
        self.files = project()
        self.trace = self.files.path + ".trace"
        self.variables = {"LD_PRELOAD": harness.ARGUMENTS[0], "kvlrun_logfile": "yes"}

    def tearDown(self):
        self.files.__exit__()
        if os.path.exists(self.trace):
            os.remove(self.trace)

    def calls_of_a_run(self):
        """The names of all calls of a run in which none fails; the files that it makes are the expected ones."""
        if os.path.exists(self.trace):
            os.remove(self.trace)
        self.assertEqual(self.files.run("-overwrite", env={**self.variables, "KVL_CALLS_TRACE": self.trace})[0], 0)
        self.expected = self.written()
        with open(self.trace, encoding="ascii") as file:
            return file.read().split()

    def written(self):
        return {name: text for name, text in self.files.files().items() if not name.startswith("LogFiles")}

    def run_with(self, call, error):
        self.files.reset()
        variables = {**self.variables, "KVL_CALLS_AT": str(call), "KVL_CALLS_ERROR": str(error)}
        exit_value, shown = self.files.run("-overwrite", env=variables)
        written = self.written()
        for name, text in written.items():
            if name not in leftovers(written):
                self.assertIn(text, (self.files.before.get(name), self.expected.get(name)), name)
        return exit_value, shown, written

    def each_call(self):
        # What is done unnamed first, and with a name where the file system refuses that.
        for refused in ({}, {"KVL_CALLS_NO_UNNAMED": "1"}):
            self.variables.update(refused)
            self.files.reset()
            calls = self.calls_of_a_run()
            seen = Counter(calls)
            for name in ("openat", "read", "write", "stat", "mkdir", "fchmod", "renameat"):
                self.assertGreater(seen[name], 0, seen)
            self.share = int(harness.ARGUMENTS[1]) if len(harness.ARGUMENTS) > 1 else 13
            first = {calls.index(name) for name in seen}   # of each name one at least
            yield from (row for i, row in enumerate(enumerate(calls, 1)) if i % self.share == 0 or i in first)

    def test_fails(self):
        for call, name in self.each_call():
            for error in ERRORS if self.share == 1 else (ERRORS[call % 3],):
                with self.subTest(call=call, name=name, error=errno.errorcode[error]):
                    exit_value, shown, written = self.run_with(call, error)
                    self.assertIn(exit_value, (0, 1), shown)
                    self.assertEqual(leftovers(written), [])
                    is_told = any(sign in shown for sign in ("ERROR: ", "Fatal Error", "The run stopped"))
                    if exit_value == 0 and not is_told:
                        self.assertEqual(written, self.expected)
                    self.assertTrue(is_told or exit_value == 0, shown)
                    if error == errno.EINTR and name in ("openat", "read", "write"):
                        self.assertFalse(is_told, shown)   # an interruption is no fault

    def test_is_the_last(self):
        for call, name in self.each_call():
            with self.subTest(call=call, name=name):
                self.assertEqual(self.run_with(call, 0)[0], -signal.SIGKILL)
                self.assertEqual(self.files.run("-overwrite", env={"kvlrun_logfile": "yes"})[0], 0)
                self.assertEqual(self.written(), self.expected)


if __name__ == "__main__":
    harness.main()
