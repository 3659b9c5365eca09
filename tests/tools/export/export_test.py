#!/usr/bin/env python3
"""varpre-export on every case there is: export_test.py PROGRAM VARPRE-IMPORT VARPRE PROJECT"""

import re
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

import yaml

PROGRAM, IMPORT, VARPRE, PROJECT = (Path(argument).resolve() for argument in sys.argv[1:5])
sys.path.insert(0, str(PROJECT / "tests/tools/import"))
import proof  # noqa: E402

CASES = sorted([*PROJECT.glob("examples/*/INP"), *PROJECT.glob("tests/runs/*/INP"), PROJECT / "docs/every-section/INP"])
INPUTS = ("INP", "MEC", "THERMO", "MOLNEW", "THERMLIQ")


class Proof(proof.Proof):
    """The store file of a case against what was exported of it."""

    def rate(self, entry, units, educts, partner, reaction, where):
        if entry.get("Motz-Wise") != "true":
            return super().rate(entry, units, educts, partner, reaction, where)
        g = float(entry["sticking-coefficient"]["A"])
        self.close("sticking", reaction["A"], g / (1 - g / 2), 6e-5 * reaction["A"], where)


def blocks(path):
    """Thermochemistry, transport, mechanisms and efficiencies of a store file; a partner is its efficiencies."""
    lines = (path / "fort.3").read_text().splitlines()
    begin = next(i for i, line in enumerate(lines) if line.endswith(" SPECIES "))
    end = next(i for i, line in enumerate(lines) if line.endswith(" COMPLEX REACTIONS"))
    species = int(lines[begin][:5])
    rows = -(-species // 5)
    partners = [i for i, line in enumerate(lines[:end]) if line.startswith(" EFF.")]
    efficiencies = ["/".join(line[12:] for line in lines[i:i + rows]) for i in partners]
    first = partners[0]
    kept, gas = [], True
    for line in lines[begin:first] + lines[partners[-1] + rows:end]:
        gas = gas and "REACTION POINTERS" not in line
        if re.fullmatch(r" +\d+ THIRD BODIES ", line) or line.startswith((" TW", "SITE")):
            continue
        if gas and re.match(r"( [ \d]{4}\d){6} {3}.*\.", line):
            numbers = [int(line[6 * k:6 * k + 6]) for k in range(6)]
            line = " ".join(efficiencies[n - species - 1] if n > species else str(n) for n in numbers) + line[36:]
        kept.append(line)
    return [line for line in kept if not re.match(r"[A-Z]{2,4} +:", line)]


class Export(unittest.TestCase):
    maxDiff = 2000

    def setUp(self):
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        self.root = Path(scratch.name)

    def case(self, source, edits=()):
        """A copy of a case, with texts of its files replaced."""
        directory = self.root / f"case{len(list(self.root.iterdir()))}"
        directory.mkdir()
        for name in INPUTS:
            if (source / name).exists():
                shutil.copy(source / name, directory)
        for name, old, new in edits:
            text = (directory / name).read_bytes()
            self.assertIn(old.encode("latin-1"), text)
            (directory / name).write_bytes(text.replace(old.encode("latin-1"), new.encode("latin-1"), 1))
        return directory

    def export(self, directory, *options):
        return subprocess.run([PROGRAM, directory, *options], capture_output=True, text=True, timeout=60)

    def run_case(self, directory):
        subprocess.run([VARPRE], cwd=directory, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=True)

    def refused(self, source, *edits, says, place, left_out=None):
        directory = self.case(source, edits)
        result = self.export(directory)
        self.assertEqual((result.returncode, result.stdout), (1, ""))
        self.assertIn(says, result.stderr)
        self.assertRegex(result.stderr, rf"{place}:\d+:\d+: error: ")
        if left_out:
            result = self.export(directory, "--skip-unsupported")
            self.assertEqual(result.returncode, 0, result.stderr)
            self.assertIn(f"warning: {left_out} is left out: ", result.stderr)
            return yaml.safe_load(result.stdout)

    def there_and_back(self, directory):
        """The blocks of a case, and of what comes in again of what was exported."""
        back = self.root / f"back{len(list(self.root.iterdir()))}"
        back.mkdir()
        result = self.export(directory, "--output", back / "case.yaml")
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertEqual(result.stdout, f"wrote {back / 'case.yaml'}\n")
        shutil.copy(directory / "INP", back)
        text = (back / "case.yaml").read_text()
        self.assertNotRegex(text, r"\w,\w")
        surface = ["--surface", "surface"] if "name: surface\n" in text else []
        result = subprocess.run([IMPORT, "--output", back, *surface, back / "case.yaml"], capture_output=True, text=True, timeout=60)
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertNotIn("digits", result.stderr)
        for each in (directory, back):
            self.run_case(each)
        Proof(str(back / "case.yaml"), str(directory), "gas", *surface[1:])
        return blocks(directory), blocks(back), yaml.safe_load(text)

    def test_every_case_comes_back(self):
        held = 0
        for path in CASES:
            with self.subTest(path.parent.name):
                directory = self.case(path.parent)
                if re.search(r"(?im)^(comp|phot)", (directory / "MEC").read_text()):
                    continue
                there, back, _ = self.there_and_back(directory)
                self.assertGreater(len(there), 100)
                self.assertEqual(there, back)
                held += 1
        self.assertGreaterEqual(held, 8)

    def test_what_the_file_says(self):
        _, _, file = self.there_and_back(self.case(PROJECT / "tests/runs/ptcombust"))
        gas, surface, *_ = file["phases"]
        self.assertEqual(surface["adjacent-phases"], ["gas"])
        self.assertEqual(surface["site-density"], "2.7063e-05 mol/m^2")
        self.assertEqual(gas["state"]["X"], {"CH4": 0.095, "O2": 0.21, "AR": 0.79})
        self.assertEqual(file["units"]["activation-energy"], "K")
        self.assertTrue(all(s["thermo"]["reference-pressure"] == "1 bar" for s in file["species"]))
        twice = [r["equation"] for r in file["surface-reactions"] if r.get("duplicate")]
        self.assertEqual(twice, ["O2 + 2 PT(S) => 2 O(S)"] * 2)
        for case in ("hydrogen-ignition", "methane-counterflow"):
            text = self.export(PROJECT / "examples" / case).stdout
            self.assertLessEqual(max(map(len, text.splitlines())), 120)
            file = yaml.safe_load(text)
            self.assertTrue(file["description"] in (PROJECT / "examples" / case / "INP").read_text())
            equations = [r["equation"] for r in file["reactions"]]
            for reaction in file["reactions"]:  # each number as the mechanism has it
                for value in reaction.get("rate-constant", {}).values():
                    self.assertLessEqual(len(f"{value:g}"), 12)
                self.assertNotIn(1, reaction.get("efficiencies", {}).values())  # which all others have
            self.assertEqual(len(equations), len(set(equations)) + sum(bool(r.get("duplicate")) for r in file["reactions"]) // 2)
        self.assertEqual([p["name"] for p in file["phases"]], ["gas", "gas-right"])
        self.assertNotEqual(file["phases"][0]["state"], file["phases"][1]["state"])

    def test_names_and_titles_of_every_kind(self):
        h2o2 = PROJECT / "tests/runs/h2o2"
        title = (h2o2 / "INP").read_text().splitlines()[0]
        directory = self.case(h2o2, [("INP", title + "\n", "COMMENT Z\xfcndung: \"a\" # b\nCOMMENT - zweite Zeile\n")])
        _, _, file = self.there_and_back(directory)
        self.assertEqual(file["description"], "Z\xfcndung: \"a\" # b\n- zweite Zeile")
        # Letters of one to four bytes, as they are; what is no letter, by its number.
        for letters in ("a", "\u00fc", "\u20ac", "\U0001d11e"):
            text = f"COMMENT # {letters}{letters} \x7f\n".encode().decode("latin-1")
            exported = self.export(self.case(h2o2, [("INP", title + "\n", text)])).stdout
            self.assertIn(f"# {letters}{letters} \\x7F", exported)

    def test_lines_are_filled(self):
        """Of a list over several lines each has as many names as 80 columns take."""
        text = self.export(self.case(PROJECT / "tests/runs/ptcombust")).stdout
        for name in (r"^  species: \[(?s:.*?)\]", r"^  - surface-species: \[(?s:.*?)\]"):
            lines = re.search(name, text, re.M)[0].split("\n")
            self.assertGreater(len(lines), 1)
            for line, following in zip(lines, lines[1:]):
                self.assertLessEqual(len(line), 80)
                self.assertGreater(len(f"{line} {following.split()[0]}"), 80)

    def test_where_it_goes(self):
        directory = self.case(PROJECT / "docs/every-section")
        before = (directory / "THERMO").read_bytes()
        refused = self.export(directory, "--output", directory / "THERMO", "--skip-unsupported")
        self.assertEqual((refused.returncode, refused.stderr.splitlines()[-1]), (2, f"varpre-export: {directory}/THERMO: this is the file that is read"))
        self.assertEqual((directory / "THERMO").read_bytes(), before)
        plain = self.export(directory, "--skip-unsupported")
        for device in ("/dev/stdout", "/dev/fd/1", "/proc/self/fd/1"):
            self.assertEqual(self.export(directory, "--output", device, "--skip-unsupported").stdout, plain.stdout)
        other = self.export(directory, "--output", "/dev/stderr", "--skip-unsupported")
        self.assertEqual((other.stdout, sorted(other.stderr.splitlines())), ("", sorted((plain.stdout + plain.stderr).splitlines())))

    def test_what_cannot_be_held(self):
        runs = PROJECT / "tests/runs"
        everything, h2o2, pt = runs / "everything", runs / "h2o2", runs / "ptcombust"
        self.refused(everything, says="complex reaction 1: the format has no such reactions", place="MEC")
        file = self.refused(everything, says="photo reaction 1: ", place="MEC", left_out="photo reaction 1")
        self.assertIn("surface", [p["name"] for p in file["phases"]])
        file = self.refused(h2o2, ("MEC", "TROE\n", ""), says="count 0", place="MEC", left_out="reaction 2 O + M <=> O2 + M")
        self.assertNotIn("2 O + M <=> O2 + M", [r["equation"] for r in file["reactions"]])
        self.refused(pt, ("MEC", "9.0000E+04  1.0000E+04", "9.0000E+04  0.0000E+00"), says="its T** of 0", place="MEC")
        for sticking_or_covered in ("H+PT(S)>H(S) ", "H2+PT(S)+PT(S)>H(S)+H(S) "):
            result = self.export(self.case(pt, [("MEC", sticking_or_covered, sticking_or_covered.replace(">", "="))]))
            self.assertEqual((result.returncode, result.stderr.count("the reverse of this reaction is not that of equilibrium")), (0, 1))
        every = PROJECT / "docs/every-section"
        self.refused(every, says='"@" record', place="MEC")


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *sys.argv[5:]])
