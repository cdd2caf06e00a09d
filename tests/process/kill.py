"""The program is killed at random moments while it replaces files. Arguments: how often (default 40).

Each file is the old one or the new one, whole; what a killed run left in the making is taken away by the next one.
"""

import os
import random
import subprocess
import time
import unittest

import harness
from harness import Project, environment, leftovers, script, writes

NAMES = [f"{folder}file{i}" for folder in ("", "sub/") for i in range(15)]


def text_of(round_number):
    return f"round {round_number}\n" * 20000


class Killed(unittest.TestCase):
    def run_once(self, files, kill_after=None):
        with subprocess.Popen(files.command("-overwrite"), cwd=files.path, env=environment({}), stdin=subprocess.DEVNULL,
                              stdout=subprocess.DEVNULL) as run:
            if kill_after is None:
                self.assertEqual(run.wait(harness.SECONDS), 0)
                return False
            time.sleep(kill_after)
            run.kill()
            return run.wait() != 0

    def test_at_any_moment(self):
        kills = int(harness.ARGUMENTS[0]) if harness.ARGUMENTS else 40
        source = random.Random(4711)
        with Project(main__kvl=script('$S = D:FILE("in")$\n' + writes(*NAMES))) as files:
            files.put("in", text_of(0))
            begin = time.monotonic()
            self.run_once(files)
            duration = time.monotonic() - begin
            present = {name: text_of(0) for name in NAMES}
            killed = mixed = left = 0
            for number in range(1, kills + 1):
                new = text_of(number)
                files.put("in", new)
                killed += self.run_once(files, source.uniform(0, 1.1 * duration))
                found = files.files()
                # A run takes away what lies in a folder when it writes there: one that ends before leaves it.
                folders = [os.path.dirname(name) for name in leftovers(found)]
                left += len(folders)
                self.assertEqual(len(folders), len(set(folders)))
                for name in NAMES:
                    self.assertIn(found[name], (present[name], new), f"{name} behind {number} kills")
                present = {name: found[name] for name in NAMES}
                mixed += 0 < list(present.values()).count(new) < len(NAMES)
            self.run_once(files)
            found = files.files()
            self.assertEqual(leftovers(found), [])
            self.assertEqual({name: found[name] for name in NAMES}, {name: new for name in NAMES})
            print(f"{kills} runs, {killed} killed, {mixed} with files of both kinds, {left} files left in the making")
            self.assertGreater(killed, kills // 4)


if __name__ == "__main__":
    harness.main()
