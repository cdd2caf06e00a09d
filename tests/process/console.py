"""What a run shows, where it pauses, and that no console can stop it."""

import os
import select
import shutil
import subprocess
import time
import unittest

import harness
from harness import PAUSE, RUN_QUESTION, Project, Terminal, environment, script, writes

CLEAN = script(writes("out"))
FAILING = script("$S = D:FILE(\"none\")$\n")
WARNING = script('$E ::KVL:DIRECTORY$\n$E:SET_PATH(";")$\n$S = E:FILE("main.kvl")$\n' + writes("out"))


class Pause(unittest.TestCase):
    """Standard input stays open and silent: a run that pauses waits for one byte, any other ends by itself."""

    # main script, arguments (None: not even the script), environment, does it pause, exit value
    ROWS = {
        "no arguments": ("", None, {}, True, 0),
        "clean": (CLEAN, ["-overwrite"], {}, False, 0),
        "clean in capitals": (CLEAN, ["-OverWrite", "more"], {}, False, 0),
        "warning": (WARNING, ["-overwrite"], {}, True, 0),
        "error": (FAILING, ["-overwrite"], {}, True, 1),
        "wrong option": (CLEAN, ["-overwrite"], {"kvlrun_merge": "maybe"}, True, 0),
        "wrong mode": (CLEAN, ["-owerwrite"], {}, True, 1),
        "log that cannot be made": (CLEAN, ["-overwrite"], {"kvlrun_logfile": "yes"}, True, 0),
    }

    def test_exactly_where_told(self):
        for name, (text, arguments, variables, pauses, exit_value) in self.ROWS.items():
            with self.subTest(name), Project(main__kvl=text) as files:
                if variables.get("kvlrun_logfile"):
                    files.put("LogFiles", "a file in the way")
                command = [harness.PROGRAM] if arguments is None else files.command(*arguments)
                with subprocess.Popen(command, cwd=files.path, env=environment(variables), stdin=subprocess.PIPE,
                                      stdout=subprocess.PIPE) as run:
                    shown = b""
                    while not shown.endswith(f"{PAUSE}\n".encode()):
                        self.assertTrue(select.select([run.stdout], [], [], harness.SECONDS)[0], shown)
                        block = os.read(run.stdout.fileno(), 65536)
                        shown += block
                        if not block:
                            break
                    self.assertEqual(PAUSE in shown.decode("latin-1"), pauses, shown)
                    if pauses:
                        with self.assertRaises(subprocess.TimeoutExpired):
                            run.wait(0.1)
                        run.stdin.write(b"x")
                        run.stdin.flush()
                    self.assertEqual(run.wait(harness.SECONDS), exit_value)

    def test_not_behind_escape(self):
        with Project(main__kvl=CLEAN) as files:
            exit_value, shown = files.run(input="\x1b")
            self.assertEqual(exit_value, 1)
            self.assertTrue(shown.endswith(RUN_QUESTION + "\n"), shown)


class Colours(unittest.TestCase):
    def shown_on_a_terminal(self, **env):
        with Project(main__kvl=FAILING) as files, Terminal(files, env=env) as terminal:
            terminal.answer(RUN_QUESTION, "\r")
            terminal.expect(PAUSE)
            terminal.type("\n")
            self.assertEqual(terminal.wait(), 1)
            return terminal.output

    def test_on_a_terminal(self):
        shown = self.shown_on_a_terminal()
        for text in ("\x1b[93mPress key [Esc] to abort.\x1b[0m\n", "\x1b[91mERROR: ERR_EXEC_SCRIPT_FILE_1\x1b[0m\n",
                     "\x1b[30;103mWarnings: 0 Errors: 1"):
            self.assertIn(text, shown)

    def test_refused(self):
        for env in ({"NO_COLOR": "1"}, {"TERM": "dumb"}):
            self.assertNotIn("\x1b", self.shown_on_a_terminal(**env))
        self.assertIn("\x1b", self.shown_on_a_terminal(NO_COLOR=""))   # set to nothing is as good as unset

    def test_not_elsewhere(self):
        with Project(main__kvl=FAILING) as files:
            exit_value, shown = files.run(input="\n\n")
            self.assertEqual(exit_value, 1)
            self.assertNotIn("\x1b", shown)


class Banner(unittest.TestCase):
    def test_program_at_a_long_path(self):
        with Project() as files:
            folder = files.file("x" * 200 + "/" + "y" * 100)
            os.makedirs(folder)
            program = shutil.copy(harness.PROGRAM, folder)
            self.assertIn(f"Executable {program}\n", files.run(command=[program], input="\n")[1])


class LargeText(unittest.TestCase):
    def test_through_a_pipe_that_does_not_block(self):
        text = "a line of text\n" * 50000
        with Project(main__kvl=script('$S = D:FILE("in")$\n$DUMP(S)$\n'), **{"in": text}) as files:
            reading, writing = os.pipe()
            os.set_blocking(writing, False)
            with subprocess.Popen(files.command("-overwrite"), stdin=subprocess.DEVNULL, stdout=writing,
                                  env=environment({})) as run:
                os.close(writing)
                time.sleep(0.3)   # until the pipe is full
                with open(reading, encoding="latin-1") as pipe:
                    shown = pipe.read()
                self.assertEqual(run.wait(harness.SECONDS), 0)
            self.assertIn("S::STREAM\n" + text, shown)


class NoConsole(unittest.TestCase):
    """A console that takes nothing stops no file."""

    MANY = script("".join(writes(f"out{i}") for i in range(200)))

    def expect_all_files(self, **options):
        with Project(main__kvl=self.MANY) as files:
            exit_value = files.run("-overwrite", env={"kvlrun_logfile": "yes"}, **options)[0]
            self.assertEqual(exit_value, 0)
            self.assertEqual([files.get(f"out{i}") for i in range(200)], ["new"] * 200)
            self.assertTrue(files.get("LogFiles/main.kvl.log.txt").endswith("/\r\n"))

    def test_full_device(self):
        with open("/dev/full", "wb") as full:
            self.expect_all_files(stdout=full)

    def test_closed_pipe(self):
        reading, writing = os.pipe()
        os.close(reading)
        self.expect_all_files(stdout=writing)
        os.close(writing)

    def test_nothing_is_open(self):
        def close_all():
            for number in range(3):
                os.close(number)
        self.expect_all_files(preexec_fn=close_all)

    def test_reader_that_leaves(self):
        with Project(main__kvl=self.MANY) as files:
            with subprocess.Popen(files.command("-overwrite"), stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                  env=environment({})) as run:
                run.stdout.read(10)
                run.stdout.close()
                self.assertEqual(run.wait(harness.SECONDS), 0)
            self.assertEqual(files.get("out199"), "new")


if __name__ == "__main__":
    harness.main()
