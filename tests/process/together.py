"""Runs at the same time. Arguments: how many in one tree (default 60)."""

import concurrent.futures
import os
import unittest

import harness
from harness import Project, leftovers, script, writes


def run_all(work, count, at_once):
    with concurrent.futures.ThreadPoolExecutor(at_once) as pool:
        return list(pool.map(work, range(count)))


class Together(unittest.TestCase):
    def test_in_one_directory(self):
        """The same script, log included, and a file that all of them write."""
        body = '$S = D:FILE("in")$\n' + writes(*(f"shared{i}" for i in range(20)))
        text = "line\n" * 30000
        with Project(main__kvl=script(body), **{"in": text}) as files:
            def work(_):
                return files.run("-overwrite", env={"kvlrun_logfile": "yes"})
            for exit_value, shown in run_all(work, 12, 4):
                self.assertEqual(exit_value, 0, shown)
            found = files.files()
            self.assertEqual(leftovers(found), [])
            self.assertEqual([found[f"shared{i}"] for i in range(20)], [text] * 20)
            self.assertNotIn("\0", found["LogFiles/main.kvl.log.txt"])

    def test_in_one_tree(self):
        """Each run has files of its own."""
        count = int(harness.ARGUMENTS[0]) if harness.ARGUMENTS else 60
        with Project() as files:
            for i in range(count):
                own = f'$S = "{i}"$\n' + writes(f"shared/{i}.txt", f"own/{i}/a", f"own/{i}/b", f"own/{i}/a")
                files.put(f"run{i}.kvl", script(own))

            def work(i):
                return files.run(command=[harness.PROGRAM, files.file(f"run{i}.kvl"), "-overwrite"],
                                 env={"kvlrun_logfile": "yes"})
            for exit_value, shown in run_all(work, count, 2 * (os.cpu_count() or 1)):
                self.assertEqual(exit_value, 0, shown)
            found = files.files()
            self.assertEqual(leftovers(found), [])
            for i in range(count):
                for name in (f"shared/{i}.txt", f"own/{i}/a", f"own/{i}/b"):
                    self.assertEqual(found[name], str(i))
                self.assertTrue(found[f"LogFiles/run{i}.kvl.log.txt"].endswith("/\r\n"))


if __name__ == "__main__":
    harness.main()
