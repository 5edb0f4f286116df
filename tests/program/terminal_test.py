"""The program at a terminal: its progress line, its colours, and what an interruption leaves behind.

Usage: terminal_test.py PROGRAM [unittest arguments]. Every run has a pseudo-terminal for standard error, or for all.
"""

import fcntl
import os
import pty
import random
import re
import select
import signal
import struct
import subprocess
import sys
import tempfile
import termios
import time
import unittest
import pathlib

PROGRAM = sys.argv.pop(1)
CASES = 700_000
SIGNALS = (signal.SIGINT, signal.SIGTERM, signal.SIGHUP)


def make_files(folder):
    """Two data files that take a while: the second one is out of order."""
    numbers = list(range(CASES))
    shuffled = random.Random(1).sample(numbers, CASES)
    for name, ids in (("a.csv", numbers), ("b.csv", shuffled)):
        with open(folder / name, "w") as file:
            file.write("id,x,town\n")
            file.writelines(f"{id},{id % 97 * 0.5},{'a town of a long name ' * 2}{id % 13}\n" for id in ids)


class Run:
    """The program with a pseudo-terminal as standard error; what it writes there is collected."""

    def __init__(self, folder, *arguments, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, columns=0, **options):
        self.master, slave = pty.openpty()
        fcntl.ioctl(slave, termios.TIOCSWINSZ, struct.pack("HHHH", 24, columns, 0, 0))
        environment = {name: value for name, value in os.environ.items() if name not in ("NO_COLOR", "COLUMNS")}
        environment["LC_ALL"] = "C.UTF-8"
        self.process = subprocess.Popen(
            [PROGRAM, *arguments], cwd=folder, stdin=stdin, stdout=slave if stdout == "terminal" else stdout,
            stderr=slave, start_new_session=True, env=environment | options.pop("environment", {}), **options)  # fmt: skip
        os.close(slave)
        self.shown = b""

    def read(self, until=None, seconds=60):
        """Collects until the text is shown, or until the program has ended."""
        end = time.monotonic() + seconds
        while time.monotonic() < end and not (until and until in self.shown):
            ready, _, _ = select.select([self.master], [], [], 0.05)
            if ready:
                try:
                    part = os.read(self.master, 65536)
                except OSError:  # the other side is closed
                    return
                self.shown += part
            elif self.process.poll() is not None:
                return

    def ended(self):
        self.read()
        status = self.process.wait(30)
        os.close(self.master)
        return status


class Terminal(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.data = tempfile.TemporaryDirectory()
        make_files(pathlib.Path(cls.data.name))

    @classmethod
    def tearDownClass(cls):
        cls.data.cleanup()

    def setUp(self):
        self.folder = pathlib.Path(self.data.name)
        self.before = sorted(os.listdir(self.folder))

    def tearDown(self):
        for name in set(os.listdir(self.folder)) - set(self.before):
            os.unlink(self.folder / name)

    def compare(self, *arguments, **options):
        return Run(self.folder, "compare", "a.csv", "b.csv", "--id", "id", *arguments, **options)

    def test_progress_is_shown_at_a_terminal_and_is_gone_at_the_end(self):
        run = self.compare()
        self.assertEqual(run.ended(), 0)
        # A stage that lasts less than a tenth of a second may not be seen; the last two take longer than that.
        for stage in (b"Sorting", b"Comparing"):
            self.assertRegex(run.shown, stage + rb": \d+%")
        after_last_line = run.shown[run.shown.rindex(b"Comparing") :]
        self.assertIn(b"\r\x1b[K", after_last_line)

    def test_progress_is_silent_when_asked_and_where_nobody_looks(self):
        for quiet in (["-q"], ["--progress", "never"]):
            run = self.compare(*quiet)
            self.assertEqual(run.ended(), 0)
            self.assertNotIn(b"\x1b[K", run.shown, quiet)
        piped = subprocess.run([PROGRAM, "compare", "a.csv", "b.csv", "--id", "id", "--progress", "auto"],
                               cwd=self.folder, capture_output=True)  # fmt: skip
        self.assertNotIn(b"\x1b", piped.stderr)
        always = subprocess.run([PROGRAM, "compare", "a.csv", "b.csv", "--id", "id", "--progress", "always"],
                                cwd=self.folder, capture_output=True)  # fmt: skip
        self.assertIn(b"Sorting", always.stderr)

    def test_an_interruption_ends_every_stage_and_leaves_nothing_behind(self):
        outputs = ("--matched", "m.csv", "--mismatched", "n.csv", "--save-active", "s.csv", "-o", "r.json")
        reached = 0
        for stage in (b"Reading types", b"Sorting", b"Comparing", b"Saving"):
            run = self.compare(*outputs)
            run.read(until=stage)
            if stage not in run.shown:  # it was over before it was drawn
                run.ended()
                self.tearDown()
                continue
            reached += 1
            started = time.monotonic()
            run.process.send_signal(signal.SIGINT)
            self.assertEqual(run.ended(), 130, stage)
            self.assertLess(time.monotonic() - started, 5, stage)
            self.assertTrue(run.shown.endswith(b"\r\x1b[K"), (stage, run.shown[-80:]))
            left = set(os.listdir(self.folder)) - set(self.before)
            if stage == b"Saving":  # the comparison has ended well, and its outputs are in their places
                self.assertEqual({name for name in left if not name.endswith(".schema.json")}, {"m.csv", "n.csv"})
            else:
                self.assertEqual(left, set(), stage)
            self.tearDown()
        self.assertGreaterEqual(reached, 2)

    def test_every_signal_that_asks_for_the_end_has_its_status(self):
        for number in SIGNALS:
            run = self.compare()
            run.read(until=b"%")
            run.process.send_signal(number)
            self.assertEqual(run.ended(), 128 + number)

    def test_an_output_that_is_there_already_stays_as_it_was(self):
        (self.folder / "m.csv").write_text("before\n")
        run = self.compare("--matched", "m.csv")
        run.read(until=b"Comparing")
        run.process.send_signal(signal.SIGTERM)
        self.assertEqual(run.ended(), 128 + signal.SIGTERM)
        self.assertEqual((self.folder / "m.csv").read_text(), "before\n")
        self.assertEqual(set(os.listdir(self.folder)) - set(self.before), {"m.csv"})

    def test_an_interruption_ends_the_wait_for_a_pipe(self):
        waiting = Run(self.folder, "run", "-", stdin=subprocess.PIPE)
        time.sleep(0.3)
        waiting.process.send_signal(signal.SIGINT)
        self.assertEqual(waiting.ended(), 130)
        waiting.process.stdin.close()
        read_end, write_end = os.pipe()  # nobody reads, and more is written than it takes
        full = self.compare("--format", "json", "--limit", "none", "--tolerance", "0", "--properties", "none",
                            stdout=write_end)  # fmt: skip
        while os.write(write_end, b"x" * 4096) == 4096 and select.select([], [write_end], [], 0)[1]:
            pass
        full.read(until=b"Comparing")
        time.sleep(1)
        self.assertIsNone(full.process.poll())
        full.process.send_signal(signal.SIGINT)
        self.assertEqual(full.ended(), 130)
        os.close(read_end)
        os.close(write_end)

    def test_a_signal_that_the_parent_has_ignored_stays_ignored(self):
        run = self.compare(preexec_fn=lambda: signal.signal(signal.SIGHUP, signal.SIG_IGN))
        run.read(until=b"%")
        run.process.send_signal(signal.SIGHUP)
        self.assertEqual(run.ended(), 0)

    def test_messages_fit_the_window_as_results_do(self):
        names = [f"a_long_name_{number}" for number in range(30)]
        (self.folder / "c.csv").write_text("id,x\n1,1\n")
        (self.folder / "d.csv").write_text(f"id,x,{','.join(names)}\n1,1{',' * len(names)}\n")
        for columns in (60, 100):
            for stdout in (subprocess.DEVNULL, "terminal"):
                run = Run(self.folder, "compare", "c.csv", "d.csv", "--id", "id", stdout=stdout, columns=columns)
                self.assertEqual(run.ended(), 0)
                lines = re.sub(r"\x1b\[[\d;]*[mK]|\r", "", run.shown.decode()).splitlines()
                self.assertIn("30 variables stand only in dataset", " ".join(lines))
                self.assertLessEqual(max(map(len, lines)), columns)
                self.assertGreater(max(map(len, lines)), columns - 20)

    def test_colour_is_shown_at_a_terminal_only_unless_told(self):
        (self.folder / "c.csv").write_text("id,x\n1,1\n2,2\n")
        (self.folder / "d.csv").write_text("id,x\n1,1\n2,3\n")

        def shows_colour(*arguments, stdout="terminal", environment=None):
            command = ("compare", "c.csv", "d.csv", "--id", "id", "--progress", "never", *arguments)
            run = Run(self.folder, *command, stdout=stdout, environment=environment or {})
            if stdout == subprocess.PIPE:
                shown = run.process.stdout.read()
                run.process.stdout.close()
            self.assertEqual(run.ended(), 1)
            return re.search(rb"\x1b\[[\d;]*m", run.shown if stdout == "terminal" else shown) is not None

        self.assertTrue(shows_colour())
        self.assertFalse(shows_colour(stdout=subprocess.PIPE))
        self.assertTrue(shows_colour("--color", "always", stdout=subprocess.PIPE))
        self.assertFalse(shows_colour("--color", "never"))
        self.assertFalse(shows_colour(environment={"NO_COLOR": "1"}))
        self.assertTrue(shows_colour(environment={"NO_COLOR": ""}))
        self.assertTrue(shows_colour("--color", "always", environment={"NO_COLOR": "1"}))
        self.assertFalse(shows_colour(environment={"TERM": "dumb"}))


if __name__ == "__main__":
    unittest.main()
