#!/usr/bin/env python3
"""varpre-import on files in CHEMKIN format: chemkin_test.py PROGRAM VARPRE-EXPORT PROJECT"""

import random
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

import yaml

from chemkin_text import chemkin_files

PROGRAM, EXPORT, PROJECT = (Path(argument).resolve() for argument in sys.argv[1:4])
INPUTS = ("MEC", "THERMO", "MOLNEW")

CHEM = """ELEMENTS H O AR PT END
SPECIES H H2 O O2 OH H2O HO2 AR END
THERMO ALL
   300.000  1000.000  5000.000
{thermo}END
REACTIONS
O+H2<=>H+OH       3.87E+04  2.7  6260.
H+O2+M<=>HO2+M    2.8E+18  -0.86   0.
 O2/0/ H2O/0/ AR/0.5/
H+OH(+M)<=>H2O(+M)  1.0E+13 0. 0.
 LOW/2.2E22 -2.0 0.0/
 TROE/0.7 100. 1700. 5200./
END
"""
ATOMS = {"H": "H   1", "H2": "H   2", "O": "O   1", "O2": "O   2", "OH": "O   1H   1", "H2O": "H   2O   1", "HO2": "H   1O   2", "AR": "AR  1",
         "PT(S)": "PT  1", "H(S)": "H   1PT  1", "O(S)": "O   1PT  1"}
NUMBERS = (" 2.50000000E+00 1.00000000E-04 0.00000000E+00 0.00000000E+00 0.00000000E+00    2\n"
           " 2.54736599E+04-4.46682914E-01 2.50000000E+00 2.00000000E-04 0.00000000E+00    3\n"
           " 0.00000000E+00 0.00000000E+00 2.54736599E+04-4.46682853E-01                   4\n")
TRAN = "".join(f"{name} {0 if len(name) == 1 or name == 'AR' else 1} 100. 3. 0. 0. 1.\n" for name in ATOMS if "(" not in name)
SURF = """SITE/platinum/ SDEN/2.7E-09/
PT(S) H(S) O(S) END
THERMO ALL
   300.000  1000.000  3000.000
{thermo}END
REACTIONS JOULES/MOLE MWOFF
H2+2PT(S)=>2H(S)  0.046 0. 0.
 STICK
2H(S)=>H2+2PT(S)  3.7E+21 0. 67400.
 COV/H(S) 0. 0. -6000./
"""


def entry(name):
    return f"{name:24}{ATOMS[name]:20}G   300.000  5000.000 1000.00      1\n" + NUMBERS


CHEM = CHEM.format(thermo="".join(entry(name) for name in ATOMS if "(S)" not in name))
SURF = SURF.format(thermo="".join(entry(name) for name in ATOMS if "(S)" in name))

# What is edited, what stands there instead, the file, line and column that the error names, and its words.
BROKEN = [
    ("ELEMENTS H O", "ELEMENTS H QX O", "chem.inp:1:12", "'QX' is not an element that is known here"),
    ("HO2 AR END", "HO2 AR XX END", "chem.inp:2:33", "no thermochemical data of XX"),
    ("1000.00      1\n 2.5", "1000.00      1\n x.5", "chem.inp:6:1", "'x.50000000E+00' is no coefficient"),
    ("1.00000000E-04 0", "               0", "chem.inp:6:16", "a coefficient is missing"),
    (NUMBERS.splitlines()[1] + "\n", "", "chem.inp:5:1", "three lines with coefficients are due"),
    (NUMBERS.splitlines()[1], NUMBERS.splitlines()[2], "chem.inp:7:2", "line 3 of the entry is due here"),
    ("H   1               G   300.000", "H   x               G   300.000", "chem.inp:5:25", "is no element and its count"),
    ("H   1               G   300.000", "C   1               G   300.000", "chem.inp:5:25", "'C' is not among the ELEMENTS"),
    ("G   300.000", "G   3x0.000", "chem.inp:5:46", "'3x0.000' is no temperature"),
    ("G   300.000  5000.000", "G   300.000   200.000", "chem.inp:5:46", "do not rise"),
    ("  2.7  6260.", "  2.7", "chem.inp:39:1", "A, b and E are due"),
    ("  2.7  6260.", "  2.7 1.0 6260.", "chem.inp:39:19", "four numbers"),
    ("3.87E+04", "3.87F+04", "chem.inp:39:19", "'3.87F+04' is not a number"),
    ("O+H2<=>H+OH ", "O+H2<=>H+QQ ", "chem.inp:39:10", "'QQ' is no species"),
    ("O+H2<=>H+OH ", "O+H2<=>H+H2O", "chem.inp:39:1", "does not balance: 1 H more on the right"),
    ("O+H2<=>H+OH ", "O+H2<=H+OH  ", "chem.inp:39:5", "one arrow"),
    ("O+H2<=>H+OH ", "O++H2=H+OH  ", "chem.inp:39:3", "'+H2' is no species"),
    ("H+O2+M<=>HO2+M", "H+O2+M<=>HO2", "chem.inp:40:1", "on both sides"),
    ("(+M)<=>H2O(+M)", "(+M)<=>H2O", "chem.inp:42:1", "on both sides"),
    ("(+M)<=>H2O(+M)", "+M<=>H2O+M", "chem.inp:42:1", "in parentheses"),
    ("(+M)<=>H2O(+M)", "(+QQ)<=>H2O(+QQ)", "chem.inp:42:7", "'QQ' is no species"),
    (" LOW/2.2E22 -2.0 0.0/\n", "", "chem.inp:42:1", "LOW is missing"),
    ("LOW/2.2E22 -2.0 0.0/", "LOW/2.2E22 -2.0/", "chem.inp:43:2", "3 numbers are due between strokes, not 2"),
    ("LOW/2.2E22 -2.0 0.0/", "LOW/2.2E22 -2.0 0.0", "chem.inp:43:5", "another stroke"),
    ("LOW/2.2E22", "LOW/2.2x22", "chem.inp:43:6", "'2.2x22' is not a number"),
    ("TROE/0.7 100. 1700. 5200./", "TROE/0.7 100./", "chem.inp:44:2", "not 2"),
    (" O2/0/", " TROE/.7 1 2 3/ O2/0/", "chem.inp:41:2", "TROE belongs to a falloff reaction"),
    (" O2/0/", " Q2/0/", "chem.inp:41:2", "'Q2' is no species"),
    (" O2/0/", " FOO", "chem.inp:41:2", "'FOO' behind a reaction"),
    (" O2/0/", " STICK", "chem.inp:41:2", "belongs to a surface reaction"),
    ("O+H2<=>H+OH       3.87E+04  2.7  6260.\n", "O+H2<=>H+OH       3.87E+04  2.7  6260.\n AR/2/\n", "chem.inp:40:2", "collision partner M"),
    ("H+O2+M", "H+OH<=>H2+O 1E13 0 0\nH+O2+M", "chem.inp:40:1", "in the file already"),
    ("REACTIONS\n", "REACTIONS FURLONGS\n", "chem.inp:38:11", "'FURLONGS' is no unit"),
    ("REACTIONS\n", "REACTIONS\nDUP\n", "chem.inp:39:1", "an equation is due here"),
    ("THERMO ALL\n", "THERMO NASA9\n", "chem.inp:3:8", "nine coefficients"),
    (" LOW/", " HIGH/", "chem.inp:43:2", "a chemically activated reaction cannot be held"),
    ("TROE/0.7 100. 1700. 5200./", "SRI/1 2 3/", "chem.inp:44:2", "form SRI"),
    ("0.5/\n", "0.5/\n PLOG/1. 1E13 0/\n", "chem.inp:42:2", "4 numbers are due"),
    ("0.5/\n", "0.5/\n CHEB/2 2 1 1 1/\n", "chem.inp:42:2", "n times m"),
    ("0.5/\n", "0.5/\n RORD/H 2/\n", "chem.inp:42:2", "cannot be held"),
    ("0.5/\n", "0.5/\n UNITS/stone/\n", "chem.inp:42:8", "is no unit"),
    ("H2 1 100.", "H2 7 100.", "tran.dat:2:4", "'7' is no geometry"),
    ("H2 1 100.", "H2 1 1oo.", "tran.dat:2:6", "'1oo.' is not a number"),
    ("H2 1 100. 3. 0. 0. 1.", "H2 1 100. 3. 0. 0.", "tran.dat:2:1", "six numbers, not 5"),
    ("H2 1 100. 3. 0. 0. 1.\n", "", "chem.inp:", "without transport data"),
    ("SDEN/2.7E-09/", "", "surf.inp:1:1", "the site density is missing"),
    ("SDEN/2.7E-09/", "SDEN/x/", "surf.inp:1:21", "a positive number"),
    ("O(S) END", "O(S)/2/ END", "surf.inp:2:12", "it occupies 2 sites"),
    ("H2+2PT(S)=>2H(S) ", "H(S)+PT(S)=>H(S)+PT(S) ", "surf.inp:20:2", "one gas species sticks"),
    ("COV/H(S) 0.", "COV/H2 0.", "surf.inp:22:6", "no species of the surface"),
    ("COV/H(S) 0.", "COV/H(S)", "surf.inp:22:2", "three numbers"),
    ("COV/H(S) 0. 0. -6000./", "COV/H(S) 0 0 1/ COV/O(S) 0 0 1/", "surf.inp:22:18", "second species"),
    ("O+H2<=>H+OH ", "O+H2<=>H+OH+", "chem.inp:39:13", "a species is due here"),
    ("O+H2<=>H+OH ", "O2+HV=>2O   ", "chem.inp:39:1", "reaction O2+HV=>2O: a reaction with a photon cannot be held"),
    ("O+H2<=>H+OH ", "O+PT(S)=>O(S)", "chem.inp:39:1", "the surface species O(S) cannot react in the gas phase"),
    ("END\nREAC", "END\n" + "x" * 4001 + "\nREAC", "chem.inp:38:1", "this line has more than 4000 characters"),
    ("0.5/\n", "0.5/\n LT/1 2/\n", "chem.inp:42:2", "a rate of the form LT cannot be held"),
    ("6260.\n", "6260.\n PLOG/1. 1E13 0 0/ REV/1 0 0/\n", "chem.inp:40:20", "a reverse rate of its own beside one that depends on the pressure"),
    ("6260.\n", "6260.\n FORD/QQ 1/\n", "chem.inp:40:7", "'QQ' is no species of the phase"),
    ("6260.\n", "6260.\n FORD/H2 3.5/\n", "chem.inp:39:1", "orders and coefficients that are no whole numbers cannot be held here"),
    ("6260.\n", "6260.\n TCHEB/300 300/ PCHEB/1 10/ CHEB/1 1 13/\n", "chem.inp:40:2", "two limits that are positive and rise are due here"),
    ("SITE/platinum/ SDEN/2.7E-09/\n", "", "surf.inp:21:1", "the file has no section SITE"),
    ("SPECIES H H2 O O2 OH H2O HO2 AR END\n", "", "chem.inp:44:1", "the file has no section SPECIES"),
    ("O(S) END", "O(S) END\nSITE/b/ SDEN/1E-9/ X(S) END", "surf.inp:3:1", "a second kind of sites cannot be held"),
    ("ELEMENTS H O", "ELEMENTS H/2.014/ O", "chem.inp:5:25", "species H: the file gives 'H' another weight than the element has"),
    ("ELEMENTS H O", "ELEMENTS H/0/ O", "chem.inp:1:11", "a mass is due between the strokes behind H"),
    ("ELEMENTS H O", "ELEMENTS H/1.008 O", "chem.inp:1:11", "a mass is due between the strokes behind H"),
    ("H   1               G", "H  1.5              G", "chem.inp:5:30", "the entry of H: '5' is a count without element"),
    (" COV/", " LOW/", "surf.inp:22:2", "does not belong to a surface reaction"),
]


class Chemkin(unittest.TestCase):
    maxDiff = 3000

    def setUp(self):
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        self.root = Path(scratch.name)
        self.number = 0

    def directory(self, files):
        self.number += 1
        directory = self.root / str(self.number)
        directory.mkdir()
        for name, content in files.items():
            (directory / name).write_bytes(content if isinstance(content, bytes) else content.encode())
        return directory

    def run_import(self, directory, *arguments):
        return subprocess.run([PROGRAM, *arguments], cwd=directory, capture_output=True, text=True, timeout=60, errors="replace")

    def import_all(self, files, *more):
        """Imports what stands in a directory under the usual names."""
        directory = self.directory(files)
        options = [option for name, option in (("therm.dat", "--thermo"), ("tran.dat", "--transport"), ("surf.inp", "--surface-file")) if name in files
                   for option in (option, name)]
        result = self.run_import(directory, *options, *more, "chem.inp")
        result.directory = directory
        return result

    def written(self, directory):
        """What was written, but for the comments, which name the file and the phases."""
        return {name: [line for line in (directory / name).read_text().splitlines() if not line.startswith("----")] for name in INPUTS}

    def good(self, chem, *more, **files):
        result = self.import_all({"chem.inp": chem, "tran.dat": TRAN, **files}, *more)
        self.assertEqual(result.returncode, 0, result.stderr)
        result.MEC = (result.directory / "MEC").read_text()
        return result

    def reaction(self, text, *more):
        """The reactions that come of one with its further lines, behind the others."""
        result = self.good(CHEM.replace("END\n", text + "\nEND\n") if text.count("END") else CHEM[:-4] + text + "\n", *more)
        lines = result.MEC.split("MECHANISM ")[1].split("\nEND")[0].splitlines()[1:]
        return [line.split() for line in lines[5:]], result

    def test_both_formats_give_the_same(self):
        compared = 0
        for case in sorted([*PROJECT.glob("examples/*/MEC"), *PROJECT.glob("tests/runs/*/MEC")]):
            exported = subprocess.run([EXPORT, case.parent], capture_output=True, text=True)
            if exported.returncode:
                continue
            file = yaml.safe_load(exported.stdout)
            surface = ["--surface", "surface"] if len(file["phases"]) > 1 and "surface-species" in file else []
            directory = self.directory({"m.yaml": exported.stdout})
            result = self.run_import(directory, "--skip-unsupported", *surface, "m.yaml")
            self.assertEqual(result.returncode, 0, result.stderr)
            wanted = self.written(directory)
            for seed in (None, 1, 2, 3):
                with self.subTest(case=case.parent.name, seed=seed):
                    result = self.import_all(chemkin_files(file, seed), "--skip-unsupported")
                    self.assertEqual(result.returncode, 0, result.stderr)
                    self.assertEqual(self.written(result.directory), wanted)
                    compared += 1
        self.assertGreaterEqual(compared, 24)

    def test_units_and_forms_of_numbers(self):
        energies = {"": "6260.", "CAL/MOLE": "6260", "KCAL/MOLE": "6.26", "JOULES/MOLE": "26191.84", "KJOULES/MOLE": ".2619184D+02", "KELVINS": "3150.1545", "EVOLTS": "0.27145918"}
        for unit, energy in energies.items():
            with self.subTest(unit):
                found, _ = self.reaction("")
                result = self.good(CHEM.replace("REACTIONS", f"REACTIONS {unit}").replace("6260.", energy))
                line = next(line for line in result.MEC.splitlines() if line.startswith("O+H2="))
                self.assertAlmostEqual(float(line.split()[3]), 26.19133, 4)
        result = self.good(CHEM.replace("REACTIONS", "REACTIONS MOLECULES").replace("3.87E+04", "6.426287E-20"))
        line = next(line for line in result.MEC.splitlines() if line.startswith("O+H2="))
        self.assertAlmostEqual(float(line.split()[1]) / 38700, 1, 6)
        for text in ("3.87D4", "3.87+04", "3.87+E04", "38700", "+3.87e4"):
            found, _ = self.reaction(f"2OH=O+H2O {text} 0 0")
            self.assertEqual(float(found[0][1]), 38700, text)

    def test_lines_behind_a_reaction(self):
        found, _ = self.reaction("2OH=O+H2O 1E13 0.5 100\n REV/2E12 0 0/")
        self.assertEqual([line[0] for line in found], ["OH+OH>O+H2O", "O+H2O>OH+OH"])
        self.assertEqual([float(line[1]) for line in found], [1e13, 2e12])
        found, _ = self.reaction("2OH=O+H2O 1E13 0.5 100\n REV / 0 0 0 /")
        self.assertEqual([line[0] for line in found], ["OH+OH>O+H2O"])
        found, _ = self.reaction("H+O2(+AR)=HO2(+AR) 1E13 0 0\nLOW/1E18 0 0/")
        self.assertTrue(found[0][0].startswith("H+O2+M''"), found)
        plog = "2OH=O+H2O 1E99 0 0\nPLOG/10. 3E13 0 0/\nPLOG/1. 1E13 0 0/ PLOG/1. 1E13 0 0/"
        result = self.import_all({"chem.inp": CHEM[:-4] + plog, "tran.dat": TRAN})
        self.assertIn("--pressure", result.stderr)
        self.assertRegex(result.stderr, r"chem\.inp:45:1: error: reaction 2OH=O\+H2O: its rate depends on the pressure")
        found, _ = self.reaction(plog, "--pressure", "1 atm")
        self.assertAlmostEqual(float(found[0][1]) / 2e13, 1, 3)
        cheb = "2OH=O+H2O 1E99 0 0\nTCHEB/300 2500/ PCHEB/1 10/\nCHEB/1 2\t13 1/"
        found, _ = self.reaction(cheb, "--pressure", "1 atm")
        self.assertAlmostEqual(float(found[0][1]) / 1e12, 1, 3)
        found, _ = self.reaction("H+O2+AR=HO2+AR 7.0E17 -0.8 0\nH2+O2=>2OH 1E13 0 0\nDUP\nH2+O2=>2 O H 2E13 0 0 ! again\n dupl")
        self.assertEqual([line[0] for line in found], ["H+O2+AR=HO2+AR", "H2+O2>OH+OH", "H2+O2>OH+OH"])
        self.assertIn("dup", found[1])
        _, result = self.reaction("H2+0.5O2=>H2O 1E13 0 0\n FORD/H2 0.5/")
        self.assertIn("COMPLEX REACTIONS", result.MEC)

    def test_thermochemistry(self):
        lines = entry("H").splitlines()
        first = lambda text: text.replace(lines[0], lines[0][:24] + "%s" + lines[0][44:])  # noqa: E731
        for elements, atoms in [(" H  1", "H   1"), ("H  1.", "H   1"), ("H   10   00   00   0", "H   1"), ("    0H   1", "H   1")]:
            result = self.good(first(CHEM) % f"{elements:20}")
            self.assertIn(f"H{'':23}{atoms:20}G", (result.directory / "THERMO").read_text(), elements)
        fifth = lines[0][:24] + "0    0    0    0    " + lines[0][44:65] + " 1000.00H   1 1"  # behind the common temperature
        self.assertIn(f"H{'':23}H   1", (self.good(CHEM.replace(lines[0], fifth)).directory / "THERMO").read_text())
        long = lines[0][:24] + "0    0    0    0    " + lines[0][44:].ljust(36) + "&\nH 1"
        self.assertIn(f"H{'':23}H   1", (self.good(CHEM.replace(lines[0], long)).directory / "THERMO").read_text())
        result = self.good(CHEM.replace(lines[0], lines[0].replace("1000.00", "       ")))
        self.assertEqual(self.written(result.directory), self.written(self.good(CHEM).directory))
        zero = CHEM.replace(" 2.50000000E+00 2.00000000E-04", " 0.00000000E+00 0.00000000E+00").replace(" 2.54736599E+04-4.46682853E-01", " 0.00000000E+00 0.00000000E+00")
        thermo = (self.good(zero).directory / "THERMO").read_text()
        self.assertNotIn("0.0            0.0            0.0            0.0            0.0", thermo)
        other = self.good(CHEM, "--thermo", "own.dat", **{"own.dat": "THERMO\n 300 1000 5000\n" + entry("H").replace("2.5", "9.9")})
        self.assertEqual(self.written(other.directory), self.written(self.good(CHEM).directory))
        repeated = self.good(CHEM.replace(entry("H"), entry("H") + entry("H").replace("2.5", "9.9"), 1))
        self.assertIn("the first one counts", repeated.stderr)
        self.assertEqual(self.written(repeated.directory), self.written(other.directory))

    def test_forms_that_mean_the_same(self):
        """Edits after which the same files come out; the words of a warning, where there is one."""
        files = {"chem.inp": CHEM, "tran.dat": TRAN, "surf.inp": SURF}
        wanted = self.written(self.import_all(files).directory)
        for name, old, new, *says in [("chem.inp", "HO2 AR END", "HO2 AR H2 END", r"chem\.inp:2:33: warning: species H2 is listed twice"), ("chem.inp", "ELEMENTS H O", "ELEMENTS H/1.008/ O"),
                                      ("chem.inp", "H   1               G", "H   0H   1          G"), ("chem.inp", "H   1O   2          G", "H   1O   1O   1     G"),
                                      ("chem.inp", "REACTIONS\n", "REACTIONS MOLES CAL/MOLE\n"), ("chem.inp", "HO2 AR END", "HO2 AR"), ("chem.inp", "ELEMENTS", "\ufeffELEMENTS"),
                                      ("surf.inp", " MWOFF", "", r"surf\.inp:18:1: warning: sticking coefficients are taken without the correction")]:
            with self.subTest(new=new):
                result = self.import_all({**files, name: files[name].replace(old, new, 1)})
                self.assertEqual((result.returncode, self.written(result.directory)), (0, wanted), result.stderr)
                for words in says:
                    self.assertRegex(result.stderr, words)
        # A name may hold what a partner in parentheses begins with.
        ion = CHEM.replace("AR END", "AR O2(+) END").replace("THERMO ALL\n   300.000  1000.000  5000.000\n", "THERMO ALL\n   300.000  1000.000  5000.000\n" + entry("O2").replace("O2   ", "O2(+)", 1))
        for equation in ("O2(+)+H2=O2+H2", "H2+O2(+)=H2+O2", "H2+O2=H2+O2(+)"):
            self.good(ion.replace("O+H2<=>H+OH ", f"{equation} "), **{"tran.dat": TRAN + "O2(+) 1 100. 3. 0. 0. 1.\n"})

    def test_broken_files_are_refused_with_their_place(self):
        files = {"chem.inp": CHEM, "tran.dat": TRAN, "surf.inp": SURF}
        self.assertEqual(self.import_all(files).returncode, 0)
        for old, new, place, says in BROKEN:
            with self.subTest(new=new):
                name = place.split(":")[0]
                name = next(n for n in (name, "tran.dat", "chem.inp") if old in files[n])
                result = self.import_all({**files, name: files[name].replace(old, new, 1)})
                self.assertEqual(result.returncode, 1, result.stderr)
                self.assertIn(says, result.stderr)
                self.assertIn(f"{place}{':' if place[-1] != ':' else ''}", result.stderr)
                self.assertFalse((result.directory / "MEC").exists())

    def test_arbitrary_changes_end_in_an_orderly_way(self):
        """A file with a piece exchanged, left out or doubled comes in, or is refused with a place."""
        chance = random.Random(5)
        files = {"chem.inp": CHEM, "tran.dat": TRAN, "surf.inp": SURF}
        for _ in range(150):
            name = chance.choice(list(files))
            text = files[name]
            begin = chance.randrange(len(text))
            end = min(begin + chance.randint(0, 12), len(text))
            piece = chance.choice(["", "/", "+", "=", "(", "&", "\n", "1E", "END", " ", "\x00", "\xe9", "M", "9" * 30, text[begin:end] * 2])
            result = self.import_all({**files, name: text[:begin] + piece + text[end:]})
            self.assertIn(result.returncode, (0, 1), result.stderr)
            if result.returncode:  # from the file, or from the run with what came of it
                self.assertRegex(result.stderr, r"(chem\.inp|tran\.dat|surf\.inp|MEC|THERMO|MOLNEW|INP):\d+:\d+: error: ")

    def test_formats_are_known_by_what_is_in_them(self):
        directory = self.directory({"a.yaml": CHEM, "tran.dat": TRAN, "b.inp": "units(length='cm')\n", "c.dat": "<?xml version='1.0'?>\n<ctml/>\n"})
        result = self.run_import(directory, "--transport", "tran.dat", "a.yaml")
        self.assertEqual(result.returncode, 0, result.stderr)
        for name, converter in (("b.inp", "cti2yaml"), ("c.dat", "ctml2yaml")):
            result = self.run_import(directory, "--force", name)
            self.assertEqual((result.returncode, result.stderr.count("\n")), (2, 1), result.stderr)
            self.assertIn(converter, result.stderr)
        result = self.run_import(directory, "--force", "--surface", "pt", "--transport", "tran.dat", "a.yaml")
        self.assertEqual(result.returncode, 2)
        self.assertIn("choose from YAML", result.stderr)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1] + sys.argv[4:])
