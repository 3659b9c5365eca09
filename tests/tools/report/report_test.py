#!/usr/bin/env python3
"""varpre-report on store files whole, cut, edited and made up: report_test.py PROGRAM VARPRE ROOT"""

import json
import os
import random
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

PROGRAM, VARPRE, ROOT = (Path(argument).resolve() for argument in sys.argv[1:4])


class Report(unittest.TestCase):
    def setUp(self):
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        self.root = Path(scratch.name)

    def case(self, source):
        """A copy of a working directory, with the store file of a run."""
        directory = self.root / Path(source).name
        shutil.copytree(ROOT / source, directory)
        subprocess.run([VARPRE], cwd=directory, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=True)
        return directory

    def report(self, *arguments, status=0):
        result = subprocess.run([PROGRAM, *arguments], cwd=self.root, capture_output=True, text=True, timeout=60)
        self.assertEqual(result.returncode, status, result.stderr)
        return result

    def read(self, text):
        (self.root / "store").write_bytes(text if isinstance(text, bytes) else text.encode())
        return json.loads(self.report("--json", "store").stdout)

    def test_everything_is_read(self):
        for source in ("examples/hydrogen-ignition", "examples/catalytic-methane", "docs/every-section"):
            store = json.loads(self.report("--json", str(self.case(source))).stdout)
            self.assertTrue(store["complete"], store.get("stopped"))
        gas = store["gas_mechanism"]["reactions"]
        self.assertEqual([r["equation"] for r in gas if r["form"] == 2], ["OH + OH + M'' = H2O2 + M''"])
        self.assertEqual(next(r["falloff"] for r in gas if r["form"] == 2), [2.3e18, -0.9, -7113.0, 0.735, 94.0, 1760.0, 5180.0, 0.0])
        sticking = next(r for r in store["surface_mechanism"]["reactions"] if "sticking" in r)
        self.assertAlmostEqual(sticking["A"], 0.023 / (1 - 0.023 / 2), 6)
        self.assertEqual(store["efficiencies"]["M'"][store["gas"]["species"].index("H2O")], 15.4)
        self.assertEqual(store["complex_reactions"][0]["orders"], [1, 0.5, 0, 0, 0, 0])
        self.assertEqual({v["name"]: v["value"] for v in store["two_dimensional"]}["XSOU"], 1e-3)
        self.assertEqual(store["particles"]["species"], ["H2O(L)"])
        self.assertEqual(store["particles"]["data"][0][4], 2.212e7)
        self.assertEqual(sum(store["mixtures"][1]["gas"]), 1)
        names = {o["name"]: o["value"] for o in store["options"]}
        self.assertEqual((names["IMPULSE"], names["STORE"]), (1, 5))
        self.assertEqual(len(store["gas_mechanism"]["pointers"]), int(re.search(r"(\d+) REACTION POINTERS", (self.root / "every-section" / "fort.3").read_text())[1]))

    def test_example_of_the_document(self):
        directory = self.case("examples/hydrogen-ignition")
        code = re.search(r"^```python tried\n(.*?)^```$", (ROOT / "docs/report.md").read_text(), re.M | re.S)[1]
        environment = dict(os.environ, PATH=f"{PROGRAM.parent}:{os.environ['PATH']}")
        output = subprocess.run([sys.executable, "-c", code], cwd=directory, env=environment, capture_output=True, text=True, check=True).stdout
        self.assertIn("cp of H2 at 1500 K: 32.28 J/(mol K)\n", output)
        self.assertIn("k of O + O + M' = O2 + M' at 1500 K: 8.000e+01 (m, mol, s)\n", output)

    def test_a_file_is_read_as_far_as_it_goes(self):
        for source in ("examples/hydrogen-ignition", "docs/every-section"):
            lines = (self.case(source) / "fort.3").read_text().splitlines(keepends=True)
            whole = self.read("".join(lines))
            for end in [*range(0, len(lines), 7), len(lines) - 1]:
                store = self.read("".join(lines[:end]))
                self.assertEqual(store["stopped"], {"line": end + 1, "reason": "the file ends here"})
                self.assertFalse(store["complete"])
            cut = self.read("".join(lines[:len(lines) // 2]))
            self.assertEqual(cut["gas"], whole["gas"])
        edited = "".join(lines).replace(" XLMO(   2)", " XLMO(   3)", 1)
        self.assertEqual(self.read(edited)["stopped"]["reason"], "a record of another number is due here")
        for old, new, reason in [("ELEMENTARY", "ELEMENTERY", "this is not the record that is due here"), ("    9 SPECIES", "  999 SPECIES", "the count 999 cannot be"),
                                 (" ETA (   1) ", " ETA (   1) x", "cannot read columns 13 to 23"), (" EFF.M'", " EFF.X'", "another collision partner"),
                                 ("SPECIES\nH2O(L)", "SPECIES\nHCO(L)", "another particle species")]:
            self.assertIn(reason, self.read("".join(lines).replace(old, new, 1))["stopped"]["reason"])

    def test_values_that_did_not_fit_are_null(self):
        text = (self.case("docs/every-section") / "fort.3").read_text()
        record = next(line for line in text.splitlines() if line.startswith(" XLAM(   1)"))
        store = self.read(text.replace(record, record[:12] + "*" * 11 + record[23:], 1))
        self.assertIsNone(store["transport"]["conductivity"][0][0])
        self.assertIsNotNone(store["transport"]["conductivity"][0][1])
        self.assertTrue(store["complete"])
        self.assertIsNone(self.read(text.replace(" STOBR       1.000", " STOBR      ******", 1))["complex_reactions"][0]["coefficients"][0])
        options = next(line for line in text.splitlines() if line.startswith(" OPTIONS :"))
        store = self.read(text.replace(options, options[:12] + "*" * 6 + options[18:], 1).replace("  101 GRIDP.", "***** GRIDP.", 1))
        self.assertTrue(store["complete"], store.get("stopped"))
        self.assertEqual([option["value"] for option in store["options"][:3]], [None, None, int(options[18:21])])
        self.assertEqual(store["flame_conditions"][0], {"name": "NG", "value": None, "unit": "", "meaning": "grid points"})

    def test_flags_at_multiples_of_twenty(self):
        source = self.case("examples/hydrogen-ignition")
        for count in (19, 20, 21, 40, 80, 81, 99, 100, 101, 120):
            names = [f"X{i}" for i in range(count - 2)]
            inputs = (source / "INP").read_text()
            inputs = re.sub(r"(GAS PHASE SPECIES\n).*?\nEND", lambda m: m[1] + "\n".join(["H2", "O2"] + names) + "\nEND", inputs, count=1, flags=re.S)
            inputs = re.sub(r"(?m)^N2 .*\n", "", inputs)
            thermo, molecules = (source / "THERMO").read_text(), (source / "MOLNEW").read_text()
            argon = "".join(line for line in thermo.splitlines(keepends=True)[32:36])
            directory = self.root / f"flags{count}"
            directory.mkdir()
            (directory / "THERMO").write_text(thermo + "".join(f"{n:<16}" + argon[16:] for n in names))
            (directory / "MOLNEW").write_text(molecules + "".join(f"{n:<8} 0    39.948   136.500     3.330     0.000     0.000     0.000\n" for n in names))
            (directory / "INP").write_text(inputs)
            (directory / "MEC").write_text("MECHANISM\nH2+O2=H2+O2 1.0 0.0 0.0\nEND\nCOLLISION EFFICIENCIES\nEND\n")
            subprocess.run([VARPRE], cwd=directory, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=True)
            store = json.loads(self.report("--json", str(directory)).stdout)
            self.assertTrue(store["complete"], (count, store.get("stopped")))
            self.assertEqual(len(store["flags"]), count)

    def test_hostile_files(self):
        text = (self.case("docs/every-section") / "fort.3").read_text()
        evil = text.replace("H2O2      ", "</scrip>  ", 1)
        (self.root / "evil").write_text(evil)
        self.report("evil", "--output", "evil.html")
        page = (self.root / "evil.html").read_text()
        self.assertNotIn("</scrip>", page)
        self.assertIn("\\u003c/scrip>", page)
        self.assertEqual(len(re.findall("</script>", page)), 4)
        random.seed(2)
        for _ in range(200):
            garbled = bytearray(text.encode())
            for _ in range(random.choice((1, 3, 30))):
                at = random.randrange(len(garbled))
                garbled[at:at + random.choice((0, 1, 5))] = bytes(random.choice(b"\x00\xff*9-E \n") for _ in range(random.choice((0, 1, 5))))
            self.read(bytes(garbled))
        self.assertEqual(self.read(b"")["stopped"]["line"], 1)
        os.mkfifo(self.root / "pipe")
        for arguments in (["absent"], ["pipe"], [str(self.root)], [], ["store", "--output", "absent/x"], ["store", "absent"]):
            self.report(*arguments, status=2)

    def test_outputs(self):
        store = self.case("examples/hydrogen-ignition") / "fort.3"
        before = store.read_bytes()
        page = self.report(str(store), "--output", "/dev/stdout").stdout
        self.assertTrue(page.startswith("<!DOCTYPE html>") and page.endswith("</html>\n"))
        self.assertEqual(self.report(str(store), "--output", "/dev/null").stdout, "")
        self.assertIn("No space left", self.report(str(store), "--output", "/dev/full", status=2).stderr)
        os.mkfifo(self.root / "pipe")
        reader = subprocess.Popen(["cp", self.root / "pipe", self.root / "copy"])
        self.assertEqual(self.report(str(store), "--output", "pipe").stdout, "")
        self.assertEqual(reader.wait(timeout=20), 0)
        self.assertEqual((self.root / "copy").read_text(), page)
        self.assertTrue((self.root / "pipe").is_fifo())
        (self.root / "link").symlink_to(store)
        os.link(store, self.root / "hard")
        for arguments in ([str(store), str(store)], ["link", str(store)], [str(store), "link"], [str(store.parent), "hard"]):
            stderr = self.report(arguments[0], "--output", arguments[1], status=2).stderr
            self.assertIn(": this is the file that is read", stderr)
        self.assertEqual(store.read_bytes(), before)
        (self.root / "small").mkdir()
        limited = ["bash", "-c", f'ulimit -f 100; "{PROGRAM}" "{store}" --output small/x']
        result = subprocess.run(limited, cwd=self.root, capture_output=True, text=True, timeout=60)
        self.assertEqual((result.returncode, result.stderr), (2, "varpre-report: small/x: File too large\n"))
        self.assertEqual(list((self.root / "small").iterdir()), [])

    def test_what_ends_too_early_is_called_truncated(self):
        lines = (self.case("examples/hydrogen-ignition") / "fort.3").read_text().splitlines(keepends=True)
        for text, told in [("".join(lines[:40]), "truncated: read up to line 41: the file ends here"),
                           ("".join(lines[:40]) + lines[40][:30], "truncated: read up to line 42: the file ends here"),
                           ("".join(lines[:39]) + "x" + "".join(lines[40:]), ": read up to line 40: this is not the record")]:
            (self.root / "store").write_text(text)
            stderr = self.report("--json", "store").stderr
            self.assertIn(told, stderr)
            self.assertEqual("truncated" in stderr, "truncated" in told)

    def test_comparison_has_both(self):
        first, second = self.case("examples/hydrogen-ignition"), self.case("examples/methane-counterflow")
        both = json.loads(self.report("--json", str(first), str(second)).stdout)
        self.assertEqual(sorted(both), ["other", "this"])
        self.assertEqual(self.report(str(first), str(second)).stdout, "report.html\n")
        page = (self.root / "report.html").read_text()
        self.assertIsNone(re.search(r"<(?:script|img|link|iframe|style)\b[^>]*\b(?:src|href)=|@import|url\(", page))


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *sys.argv[4:]])
