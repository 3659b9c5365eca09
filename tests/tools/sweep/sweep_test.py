#!/usr/bin/env python3
"""The sweep of examples/sweep on this machine: sweep_test.py EXAMPLES SCRATCH, programs on the path"""

import csv
import shutil
import subprocess
import sys
import unittest
from pathlib import Path

EXAMPLES, SCRATCH = (Path(argument).resolve() for argument in sys.argv[1:3])


class Sweep(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        shutil.rmtree(SCRATCH, ignore_errors=True)
        SCRATCH.mkdir(parents=True)
        for name in ("sweep", "hydrogen-ignition"):
            shutil.copytree(EXAMPLES / name, SCRATCH / name)
        cls.sweep = SCRATCH / "sweep"

    def start(self, status=0):
        result = subprocess.run(["snakemake", "--cores", "all"], cwd=self.sweep, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, timeout=300)
        self.assertEqual(result.returncode, status, result.stdout)
        return result.stdout

    def times(self):
        return {path.parent.name: path.stat().st_mtime_ns for path in self.sweep.glob("results/*/fort.3")}

    def summary(self):
        with open(self.sweep / "results/summary.csv", newline="") as file:
            return {row["name"]: row for row in csv.DictReader(file)}

    def replace(self, name, old, new):
        text = (self.sweep / name).read_text()
        self.assertIn(old, text)
        (self.sweep / name).write_text(text.replace(old, new, 1))

    def changed_by(self, change, *arguments):
        """The cases that a start after a change runs."""
        before = self.times()
        change(*arguments)
        self.start()
        return sorted(name for name, time in self.times().items() if before.get(name) != time)

    def test_sweep(self):
        self.start()
        rows = self.summary()
        self.assertEqual(len(rows), 200)
        self.assertEqual({row["state"] for row in rows.values()}, {"complete"})
        one = rows["phi1.0-p01-h000"]
        self.assertEqual((self.sweep / "results/failed.txt").read_text(), "")
        self.assertIn("<svg", (self.sweep / "results/summary.svg").read_text()[:1000])
        # Mole fractions of 1 H2 : 0.5 O2 : 0.5 * 0.79 / 0.21 N2 and of what burns; hydrogen in air burns at about 2500 K without dissociation.
        total = 1.5 + 0.5 * 0.79 / 0.21
        self.assertAlmostEqual(float(one["left_H2"]), 1 / total, 4)
        self.assertAlmostEqual(float(one["right_H2O"]), 1 / (total - 0.5), 4)
        self.assertTrue(2450 < float(one["right_temperature"]) < 2600, one)
        self.assertAlmostEqual(float(one["left_density"]), 1e5 * (2.016 + 0.5 * 31.999 + 0.5 * 79 / 21 * 28.013) / 1000 / total / (8.3143 * float(one["left_temperature"])), 4)

        self.assertIn("Nothing to be done", self.start())
        self.assertEqual(self.changed_by(self.replace, "cases.csv", "phi1.0-p01-h000,1.0,1,0", "phi1.0-p01-h000,1.0,1,1000"), ["phi1.0-p01-h000"])
        self.assertEqual(self.changed_by(shutil.rmtree, self.sweep / "results/phi2.0-p20-h800"), ["phi2.0-p20-h800"])

        # A case that fails does not stop the others, and comes right when it is mended.
        self.replace("cases.csv", "phi0.2-p05-h000,0.2,5,0", "phi0.2-p05-h000,0.2,5,9e9\nextra,0.2,5,0")
        self.assertIn("200 cases complete, 1 failed", self.start())
        failed = (self.sweep / "results/failed.txt").read_text()
        self.assertRegex(failed, r"^phi0\.2-p05-h000: INP:\d+: ")
        self.assertEqual(self.summary()["phi0.2-p05-h000"]["state"], "failed")
        self.replace("cases.csv", "0.2,5,9e9", "0.2,5,0")
        self.assertEqual(self.changed_by(lambda: None), ["phi0.2-p05-h000"])
        self.assertEqual(len(self.summary()), 201)
        self.assertEqual((self.sweep / "results/failed.txt").read_text(), "")

        # What cannot be meant stops it at once, with the line.
        for old, new, says in [("\nextra,0.2,", "\nextra,zero,", "phi is 'zero', which is no number"), ("\nextra,", "\n../x,", "'../x' cannot be the name of a directory"),
                               ("\nextra,", "\nphi0.4-p05-h000,", "stands in line"), ("\nextra,0.2,5,0", "\nextra,0.2,5", "not as many values")]:
            self.replace("cases.csv", old, new)
            self.assertRegex(self.start(status=1), rf"cases\.csv:\d+: .*{says}")
            self.replace("cases.csv", new, old)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
