"""The two overwrite questions: on a terminal with every key, from a pipe, and where nobody is."""

import signal
import termios
import time
import unittest

import harness
from harness import FILE_QUESTION, RUN_QUESTION, Project, Terminal, script, writes

ESCAPE = "\x1b"
ARROW = "\x1b[A"


def project():
    """A script that writes a, b and c, of which a and c are there already."""
    return Project(main__kvl=script(writes("a", "b", "c")), a="old a", c="old c")


class OnATerminal(unittest.TestCase):
    # The keys for each question in turn, the exit value, and which of a, b and c are new then.
    ROWS = [
        ([ESCAPE], 1, ""), ([ESCAPE + "n"], 1, ""),
        (["\r"], 0, "abc"), (["\n"], 0, "abc"), (["xyn ?" + ARROW + "\t\r"], 0, "abc"),
        (["a", "\r"], 0, "abc"), (["A", "y", "Y"], 0, "abc"),
        (["a", "n", "N"], 0, "b"), (["a", "n", "\r"], 0, "bc"), (["a", "axA1" + ARROW + "y", "n"], 0, "ab"),
        (["a", ESCAPE], 1, ""), (["a", "y", ESCAPE], 1, "ab"),
    ]

    def test_every_key(self):
        for keys, exit_value, new in self.ROWS:
            with self.subTest(keys=keys), project() as files, Terminal(files) as terminal:
                terminal.answer(RUN_QUESTION, keys[0])
                for count, key in enumerate(keys[1:], 1):
                    terminal.answer(FILE_QUESTION, key, count)
                self.assertEqual(terminal.wait(), exit_value)
                expected = {name: "new" if name in new else f"old {name}" for name in "ac"}
                if "b" in new:
                    expected["b"] = "new"
                written = files.files()
                del written["main.kvl"]
                self.assertEqual(written, expected)
                self.assertEqual(terminal.modes(), terminal.modes_before)
                # Nothing that was typed shows: the console text is that of a run that gets the same answers by a pipe.
                files.reset()
                answers = "".join(key + "\n" if key[-1].isalpha() else key for key in keys)
                answers = answers.replace(ARROW, "").replace("\r", "\n")
                shown = files.run(input=answers)[1]
                self.assertEqual(terminal.text(), shown)

    def test_signals_find_the_terminal_as_it_was(self):
        ends = [(signal.SIGINT, None), (signal.SIGTERM, None), (signal.SIGHUP, None), (signal.SIGINT, "\x03")]
        for number, typed in ends:
            with self.subTest(number=number, typed=typed), project() as files, Terminal(files) as terminal:
                terminal.answer(RUN_QUESTION, "a")
                terminal.answer(FILE_QUESTION, typed or "")
                if not typed:
                    terminal.process.send_signal(number)
                self.assertEqual(terminal.wait(), -number)
                self.assertEqual(terminal.modes(), terminal.modes_before)
                self.assertEqual(files.get("a"), "old a")

    def test_stopped_and_continued(self):
        with project() as files, Terminal(files) as terminal:
            terminal.answer(RUN_QUESTION, "")
            terminal.process.send_signal(signal.SIGSTOP)
            termios.tcsetattr(terminal.slave, termios.TCSANOW, terminal.modes_before)   # as a shell does
            terminal.process.send_signal(signal.SIGCONT)
            terminal.answer(RUN_QUESTION, "\r")
            self.assertEqual(terminal.wait(), 0)
            self.assertEqual(terminal.modes(), terminal.modes_before)

    def test_typed_line_behind_an_answer(self):
        body = '$S = KVL:GENERATION:USER_INPUT("Name? ")$\n' + writes("b")
        with Project(main__kvl=script(body)) as files, Terminal(files) as terminal:
            terminal.answer(RUN_QUESTION, "a")
            terminal.expect("Name? ", 2)   # first in the trace of the command, then as the question
            while terminal.is_raw():
                time.sleep(0.002)
            terminal.type("a\tb c\n")
            self.assertEqual(terminal.wait(), 0)
            self.assertEqual(files.get("b"), "ab c")
            self.assertIn("Name? a", terminal.text())   # a line is typed with echo


class FromAPipe(unittest.TestCase):
    ROWS = [
        ("", 1, "old a", None), ("\n", 0, "new", "new"), ("a\nn\nn\n", 0, "old a", "new"), ("a\r\ny\r\nn\r\n", 0, "new", "new"),
        ("a\n", 1, "old a", None), ("a", 1, "old a", None), ("x", 1, "old a", None), ("an", 1, "old a", "new"),
    ]

    def test_answers(self):
        for typed, exit_value, a, b in self.ROWS:
            with self.subTest(typed=typed), project() as files:
                self.assertEqual(files.run(input=typed)[0], exit_value)
                self.assertEqual((files.get("a"), files.get("b")), (a, b))

    def test_nobody_there(self):
        with project() as files:
            self.assertEqual(files.run(stdout=harness.subprocess.DEVNULL)[0], 1)
            self.assertEqual((files.get("a"), files.get("b"), files.get("c")), ("old a", None, "old c"))
            self.assertEqual(files.run("-overwrite")[0], 0)
            self.assertEqual((files.get("a"), files.get("b"), files.get("c")), ("new", "new", "new"))


if __name__ == "__main__":
    harness.main()
