"""usage: cmake_package.py BUILD_DIRECTORY

Installs the program from a build directory, and builds the project beside this file with what find_package(kvl) finds: the
generated code is compiled, generated again when one of its sources changes and not otherwise, and a failed run fails the
build, again and again, until it is cured. With Ninja and with Make, in parallel builds. Then the example with many inputs."""

import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

BUILD = sys.argv.pop(1)

# A file, a change in it, and what the program says afterwards; None: as before.
CHANGES = [
    ("people.txt", ("Ada Lovelace;36", "Ada King;36"), "Ada King is 36\nGrace Hopper is 85\n"),
    ("people.type", ("AGE ::INTEGER", "'0' AGE ::INTEGER"), None),
    ("people_source.pattern", ("$P:AGE$}", "$P:AGE$ + 1}"), "Ada King is 37\nGrace Hopper is 86\n"),
    ("people_header.pattern", ("#pragma once", "#pragma once\n// Made by a machine."), None),
    ("write.script", ("The directory", "A directory"), None),
    ("people.kvl", ("$HERE ::", "It stands here.\n$HERE ::"), None),
]


class Installed(unittest.TestCase):
    """Each test has an installation and a copy of its PROJECT."""

    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        root = pathlib.Path(self.folder.name)
        self.prefix, self.source, self.build = root / "prefix", root / "a project", root / "build"
        subprocess.run(["cmake", "--install", BUILD, "--prefix", self.prefix], check=True, stdout=subprocess.DEVNULL)
        shutil.copytree(self.PROJECT, self.source)

    def tearDown(self):
        self.folder.cleanup()


class Package(Installed):
    PROJECT = pathlib.Path(__file__).parent / "project"

    def configure(self, generator):
        subprocess.run(
            ["cmake", "-S", self.source, "-B", self.build, "-G", generator, f"-DCMAKE_PREFIX_PATH={self.prefix}"],
            check=True, stdout=subprocess.DEVNULL,
        )

    def make(self, succeeds=True):
        """Builds; what the build said."""
        run = subprocess.run(
            ["cmake", "--build", self.build, "--parallel", "4"], capture_output=True, text=True, stdin=subprocess.DEVNULL
        )
        self.assertEqual(run.returncode == 0, succeeds, run.stdout + run.stderr)
        return run.stdout + run.stderr

    def runs(self, said):
        return sorted(word for word in ("people.kvl", "report.kvl") if f"Running {word}" in said)

    def program(self):
        return subprocess.run([self.build / "people"], capture_output=True, text=True, check=True).stdout

    def change(self, name, old, new):
        path = self.source / name
        text = path.read_text()
        self.assertIn(old, text)
        path.write_text(text.replace(old, new))

    def check(self, generator):
        self.configure(generator)
        said = self.make()
        self.assertEqual(self.runs(said), ["people.kvl", "report.kvl"])
        self.assertNotIn("kvlRun - Version", said, "a clean run is silent")
        expected = "Ada Lovelace is 36\nGrace Hopper is 85\n"
        self.assertEqual(self.program(), expected)
        self.assertEqual((self.build / "reports/report.txt").read_text(), "- Ada Lovelace\n- Grace Hopper\n")
        self.assertEqual(self.runs(self.make()), [])

        for name, (old, new), after in CHANGES:
            with self.subTest(name):
                if name == "people.type":
                    self.change("people.txt", ";", ";0")
                self.change(name, old, new)
                shared = name in ("people.type", "people.txt")
                self.assertEqual(self.runs(self.make()), ["people.kvl", "report.kvl"] if shared else ["people.kvl"])
                expected = after or expected
                self.assertEqual(self.program(), expected)
                self.assertEqual(self.runs(self.make()), [])

        self.change("main.cpp", "int main", "// Not read by any run.\nint main")
        self.assertEqual(self.runs(self.make()), [])

        # A run that fails behind its first output.
        self.change("write.script", 'FILE("people.cpp")', 'FILE("people.h/people.cpp")')
        for _ in range(2):
            said = self.make(succeeds=False)
            self.assertIn("write.script", said)
            self.assertIn("ERROR: ", said)
        self.change("write.script", 'FILE("people.h/people.cpp")', 'FILE("other.cpp")')
        (self.build / "people.cpp").unlink(missing_ok=True)
        for _ in range(2):
            self.assertIn("did not write", self.make(succeeds=False))
        self.change("write.script", 'FILE("other.cpp")', 'FILE("people.cpp")')
        self.assertEqual(self.runs(self.make()), ["people.kvl"])
        self.assertEqual(self.program(), expected)

        os.utime(self.prefix / "libexec/kvlRun/kvlRun")
        said = self.make()
        self.assertEqual(self.runs(said), ["people.kvl", "report.kvl"], "another program may write otherwise")
        self.assertEqual(self.runs(self.make()), [])
        return said

    def test_ninja(self):
        said = self.check("Ninja")
        self.assertNotIn("Building CXX", said, "outputs that came out as they were keep their time")

    def test_make(self):
        self.check("Unix Makefiles")


class ManyInputs(Installed):
    PROJECT = pathlib.Path(__file__).parents[2] / "examples/many_inputs"

    def spread(self):
        surroundings = {**os.environ, "PATH": f"{self.prefix}/bin:{os.environ['PATH']}"}
        run = subprocess.run([self.source / "spread", "30"], env=surroundings, capture_output=True, text=True)
        self.assertEqual(run.returncode, 0, run.stdout)
        return run.stdout

    def test_ninja_spreads_them(self):
        self.spread()
        notes = sorted((self.source / "out").glob("*.md"))
        self.assertEqual([note.stem for note in notes], [f"{i:04}" for i in range(1, 31)])
        self.assertIn("- 7 of pencil", notes[6].read_text())
        self.assertIn("no work to do", self.spread())
        (self.source / "out/orders/0005.txt").write_text("Customer: Grace Hopper\n1 x nanosecond\n")
        self.assertIn("[1/1] delivery note 0005", self.spread())
        self.assertIn("For Grace Hopper:", notes[4].read_text())


if __name__ == "__main__":
    unittest.main()
