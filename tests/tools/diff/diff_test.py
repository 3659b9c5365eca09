#!/usr/bin/env python3
"""varpre-diff on runs that differ in one thing: diff_test.py PROGRAM VARPRE ROOT [LIMIT_CASE]

A case is an edit of an input file, or of the store file, of a run with every block, and the lines that are printed, with
single blanks. No line: no difference."""

import json
import os
import re
import shutil
import subprocess
import sys
import tempfile
import time
import unittest
from pathlib import Path

PROGRAM, VARPRE, ROOT = (Path(argument).resolve() for argument in sys.argv[1:4])

FORWARD = "O+H2=H+OH                   3.870E+04   2.70    26.192\n"
TWICE = ("MEC", "MAXI\n", "OH+O=H+O2                   1.000E+13   0.00     0.000\nOH+O=H+O2                   2.000E+12   0.50     5.000\nMAXI\n")

# A species that no reaction has stands before the others.
N2_FIRST = ("INP", "OH  H2O  HO2  H2O2\nN2\n", "N2 OH  H2O  HO2  H2O2\n")

# A second reaction with the same equation stands first.
COMPLEX = ("MEC", "COMPLEX REACTIONS\n   1\n", """COMPLEX REACTIONS
   2
  1.0 H2        1. + 0.5 O2       0.5                     1.000E+12
  1.0 H2O       0.                                         0.5 60.0
""")

CASES = [
    # what earlier comparisons called equal
    [("MEC", "2.000E-08", "3.000E-08"), "photo reaction O2 > O + O rate 2e-08 -> 3e-08 rate +50 %"],
    [("MEC", "3.000E+12", "6.000E+12"), "complex reaction H2 + O2 > H2O A 3e+09 -> 6e+09 m, mol, s rate x 2"],
    [("THERMLIQ", "2.2120E+07", "2.3120E+07"), "particle H2O(L) PCRIT critical pressure 2.212e+07 -> 2.312e+07 Pa +4.52 %"],
    [("INP", "UINI        2.0", "UINI        3.0"), "two-dimensional UINI 2 -> 3 +50 %"],
    [("INP", "PT(S)           0.5", "PT(S)           0.4"), "left mixture PT(S) mole fraction 0.5 -> 0.44444 -11.1 %",
     "left mixture O(S) mole fraction 0.5 -> 0.55556 +11.1 %"],
    [("INP", "FREQ           50.0", "FREQ           60.0"), "right mixture FREQ as given 50 -> 60 +20 %"],
    [("INP", "H2*", "H2+"), "species H2 flag * -> + another flag"],
    [("fort.3", " 2.6500E+10 -6.7100E-01", "-2.6500E+10 -6.7100E-01"), "reaction H + O2 > O + OH A 2.65e+10 -> -2.65e+10 m, mol, s rate has another sign"],
    # the order of things and the names of partners mean nothing
    [("INP", "H, O ", "O, H "), "the species stand in another order"],
    [("INP", "OH  H2O  HO2  H2O2\nN2", "N2 H2O2\nHO2 H2O OH"), "the species stand in another order"],
    [("INP", "PT(S)  H(S)  O(S)", "O(S) PT(S) H(S)"), "the surface species stand in another order"],
    [("MEC", FORWARD, ""), ("MEC", "HO2+OH>H2O+O2  ", FORWARD + "HO2+OH>H2O+O2  "), "the reactions stand in another order"],
    [("MEC", "H + O2 + M' = HO2 + M' ", "H + O2 + M''' = HO2+M'''"), ("MEC", "M'      =", "M'''    =")],
    # parameters of reactions
    [("MEC", "3.870E+04   2.70    26.192", "7.740E+04   2.70    26.192"),
     "reaction H2 + O = H + OH A 0.0387 -> 0.0774 m, mol, s rate x 2", "reverse A 0.017113 -> 0.034225 m, mol, s"],
    [("MEC", "2.650E+16 -0.671    71.300", "2.650E+16 -0.671    75.300"), "reaction H + O2 > O + OH E 71300 -> 75300 J/mol rate x 0.201 at 300 K"],
    [("MEC", "2.650E+16 -0.671", "2.650E+16 -0.651"), "reaction H + O2 > O + OH b -0.671 -> -0.651 rate +16.9 % at 2500 K"],
    [("MEC", "2.3000E+18", "2.3000E+19"), "reaction OH + OH + M'' = H2O2 + M'' FALL1 2.3e+18 -> 2.3e+19 as read low-pressure rate x 10"],
    [("MEC", "7.3460E-01", "6.3460E-01"), "reaction OH + OH + M'' = H2O2 + M'' FALL4 0.735 -> 0.635 as read broadening -13.6 % at 700 K"],
    [("MEC", "9.4000E+01", "9.4000E+02"), "reaction OH + OH + M'' = H2O2 + M'' FALL5 94 -> 940 as read broadening +28.9 % at 350 K"],
    [("MEC", "            6.000", "           12.000"), "collision partner M'', in OH + OH + M'' = H2O2 + M'' efficiency of H2O 6 -> 12 efficiency of H2O x 2"],
    [("MEC", "@     1.0000E+00   0.50", "@     1.0000E+00   0.60"), "reaction OH + HO2 > O2 + H2O VT5 0.5 -> 0.6 as read VT5 +20 %"],
    [("MEC", "0.000E+00  -1.00", "0.000E+00  -2.00"), "surface reaction H2 + PT(S) + PT(S) > H(S) + H(S) VT5 -1 -> -2 as read VT5 x 2"],
    [("MEC", "$PT(S)", "$O(S) "), "surface reaction H2 + PT(S) + PT(S) > H(S) + H(S) coverage PT(S) -> O(S) the coverage of another species"],
    [("MEC", "2.300E-02", "4.600E-02"), "surface reaction O2 + PT(S) + PT(S) > O(S) + O(S) A 0.023268 -> 0.047083 m, mol, s rate x 2.02"],
    [("MEC", "* 8.400E+13", "  8.400E+13"), "reaction H + HO2 = OH + OH IREVER -2 -> 2 another mark", "reverse IREVER -3 -> 3"],
    [("MEC", "H+O2>OH+O  ", "H+O2=OH+O  "), "reaction O + OH > H + O2 added"],
    [("MEC", FORWARD, ""), "reaction H2 + O = H + OH removed"],
    # of duplicates the one that has gone is told, not the other
    [TWICE, ("MEC", TWICE[2].split("\n")[1] + "\n", ""), "reaction O + OH = H + O2 removed"],
    [TWICE, ("MEC", TWICE[2].split("\n")[0] + "\n", ""), "reaction O + OH = H + O2 removed"],
    # the reactants of a complex reaction in other slots, with their coefficients and orders, and in one with those of the other
    [("MEC", "1.0 H2        1. + 0.5 O2       0.5 ", "0.5 O2       0.5 + 1.0 H2        1. ")],
    [("MEC", "1.0 H2        1. + 0.5 O2       0.5 ", "0.5 O2        1. + 1.0 H2       0.5 "),
     "complex reaction H2 + O2 > H2O order of H2 1 -> 0.5 x 0.5", "order of O2 0.5 -> 1"],
    [("MEC", "2.650E+16 -0.671    71.300", "2.650E+16 -0.671   7130.00"), "reaction H + O2 > O + OH E 71300 -> 7.13e+06 J/mol rate"],
    [COMPLEX, "complex reaction H2 + O2 > H2O added"],
    [("MEC", "+ 0.5 O2       0.5 ", "+ 0.5 O2       0.75"), "complex reaction H2 + O2 > H2O order of O2 0.5 -> 0.7 rate x 0.0631", "A 3e+09 -> 1.8929e+08 m, mol, s"],
    [("MEC", "+ 0.5 O2       0.5 ", "+ 0.6 O2       0.5 "), "complex reaction H2 + O2 > H2O coefficient of O2 0.5 -> 0.6 +20 %"],
    [("MEC", "-0.900      -7.113", "-0.900      -6.113"), "reaction OH + OH + M'' = H2O2 + M'' FALL3 -7113 -> -6113 J/mol low-pressure rate -33 % at 300 K"],
    [("fort.3", "      2    3   -1", "      2    3    1"), "reaction pointers H + O2 > O + OH coefficient of H -1 -> 1 another coefficient"],
    # conditions
    [("INP", "RO         0.01", "RO         0.02"), "flame condition RO outer radius 0.01 -> 0.02 m x 2"],
    [("INP", "TW             900.0", "TW             950.0"), "surface condition TW wall temperature 900 -> 950 K +5.56 %"],
    [("INP", "IMPULS  1 STORE   5", "IMPULS  2"), "option IMPULSE 1 -> 2", "option STORE 5 -> 0"],
    [("INP", "NRGP     21", "NRGP     31"), "particle grid size 21 -> 31 +47.6 %"],
    # species
    [N2_FIRST, ("INP", "N2 OH", "OH"), ("INP", "N2             0.78\n", ""), ("INP", "N2             0.79\n", ""), "element N removed", "species N2 removed",
     "left mixture N2 mole fraction 0.78 -> 0 to 0", "right mixture N2 mole fraction 0.79 -> 0 to 0", "right mixture O2 mole fraction 0.21 -> 1 x 4.76",
     "left mixture H2 mole fraction 0.02 -> 0.090909 x 4.55", "left mixture O2 mole fraction 0.2 -> 0.90909 x 4.55", "right mixture T temperature 503.42 -> 520.32 K +3.36 %",
     "left mixture H specific enthalpy 2.1045e+05 -> 2.0731e+05 J/kg -1.49 %"],
    [("fort.3", " 1.800E+02  1.000E+03  3.500E+03", " 1.800E+02  1.000E+03  3.000E+03"), "species H2 upper limit 3500 -> 3000 K -14.3 %"],
    [("fort.3", " XLAM(   1) -1.2398E+01", " XLAM(   1) -1.2298E+01"), "species H2 heat conductivity at 300 K 0.18479 -> 0.20423 J/(m K s) heat conductivity +10.5 % at 300 K"],
    [("fort.3", " D(   2   1)-1.0152E+01", " D(   2   1)-1.0052E+01"), "species H2 diffusion times pressure with H at 300 K 21.848 -> 24.146 Pa m²/s diffusion times pressure with H +10.5 % at 300 K"],
    [("fort.3", " D(   2   1)-1.0152E+01", " D(   2   1)-1.0052E+01"), ("fort.3", " D(   3   1)-9.5011E+00", " D(   3   1)-9.4011E+00"), ("fort.3", " D(   3   2)-1.2190E+01", " D(   3   2)-1.2090E+01"),
     "species H2 diffusion times pressure with H at 300 K 21.848 -> 24.146 Pa m²/s diffusion times pressure with H +10.5 % at 300 K", "diffusion times pressure with O at 300 K 10.968 -> 12.121 Pa m²/s", "species H diffusion times pressure with O at 300 K 17.948 -> 19.835 Pa m²/s diffusion times pressure with O +10.5 % at 300 K"],
    [("fort.3", "HL,HH(   1) 9.6693E+03", "HL,HH(   1) 9.7693E+03"), "species H2 heat capacity at 300 K 28.85 -> 29.052 J/(mol K) s +0.166 R at 950 K",
     "enthalpy at 750 K 13.22 -> 13.372 kJ/mol", "entropy at 950 K 164.69 -> 166.07 J/(mol K)"],
    [("fort.3", "-3.7861E+06  2.8171E+03", "-3.7961E+06  2.8171E+03"), "species H2 enthalpy at 300 K 0.053281 -> 0.033123 kJ/mol h -0.00808 RT at 300 K"],
    [("fort.3", " 2.6500E+10 -6.7100E-01", " 0.0000E+00 -6.7100E-01"), "reaction H + O2 > O + OH A 2.65e+10 -> 0 m, mol, s rate is 0 now"],
    [*[("fort.3", "H2O(L)", "X2O(L)")] * 2, "particle H2O(L) removed", "particle X2O(L) added", "particle fraction H2O(L) mole fraction 1 -> 0 to 0",
     "particle fraction X2O(L) mole fraction 0 -> 1 from 0"],
    [("fort.3", "-3.7861E+06  2.8171", "-3.6861E+06  2.8171"), "species H2 enthalpy at 300 K 0.053281 -> 0.25486 kJ/mol h +0.0808 RT at 300 K"],
    [("INP", "FREQ           50.0", "FREQ           25.1"), "right mixture FREQ as given 50 -> 25.1 -49.8 %"],
    [("INP", "FREQ           50.0", "FREQ          99.96"), "right mixture FREQ as given 50 -> 99.96 +99.9 %"],
    # values that did not fit, or stand where none is due
    [("fort.3", " OPTIONS :    0", " OPTIONS :  ***"), "option EXTRAP 0 -> *****"],
    [("fort.3", "1.0000E-03  2.0000E-03  0.0000E+00", "1.0000E-03  2.0000E-03  1.0000E+00"), "two-dimensional a place that is not used none -> 1 added"],
    [("fort.3", "  101 GRIDP.", "***** GRIDP."), "flame condition NG grid points 101 -> *****"],
]


class Diff(unittest.TestCase):
    def setUp(self):
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        self.root = Path(scratch.name)

    def case(self, name, *edits):
        """A run with every block after edits of its files."""
        directory = self.root / name
        shutil.copytree(ROOT / "docs/every-section", directory)
        for of_store in (False, True):
            for file, old, new in edits:
                if (file == "fort.3") == of_store:
                    text = (directory / file).read_text()
                    self.assertIn(old, text)
                    (directory / file).write_text(text.replace(old, new, 1 if of_store else -1))
            if not of_store:
                subprocess.run([VARPRE], cwd=directory, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=True)
        return directory

    def diff(self, *arguments, status):
        result = subprocess.run([PROGRAM, *arguments], cwd=self.root, capture_output=True, text=True, timeout=60)
        self.assertEqual(result.returncode, status, result.stdout + result.stderr)
        return result

    def lines(self, *arguments, status=1):
        """What is told, as lines with single blanks; which number of third bodies means nothing."""
        lines = [" ".join(line.split()) for line in self.diff(*arguments, status=status).stdout.splitlines()]
        return [line for line in lines if not re.search("another number of third bodies", line)]

    def mirrored(self, before, after, back, status):
        """What differs, whatever the order; `back`: as it is when the files change places."""
        mirrors = {"removed": "added", "is 0 now": "was 0", "to 0": "from 0"}
        mirrors |= {there: here for here, there in mirrors.items()}
        ends = ("after", "before") if back else ("before", "after")
        found = []
        for difference in json.loads(self.diff("--json", before, after, status=status).stdout)["differences"]:
            with_place = re.fullmatch("(surface )?(species|reaction)", difference["kind"])
            self.assertEqual([difference[end] is None for end in ("before", "after")],
                             [not with_place or difference["effect"]["text"] == gone for gone in ("added", "removed")])
            changes = [(change["name"].split(" at ")[0], *(change[end] for end in ends)) for change in difference["changes"]]
            text = difference["effect"]["text"]
            texts = [mirrors[name] if back else name for name in mirrors if text.endswith(name)]
            size = difference["effect"]["size"]
            found.append((difference["kind"], sorted(difference["which"].split()), changes, texts,
                          size and float(f"{size:.4g}"), *(difference[end] for end in ends)))
        return sorted(found, key=str)

    def test_cases(self):
        base = self.case("base")
        bases = {edit: self.case(f"base{number}", edit) for number, edit in enumerate((TWICE, N2_FIRST))}
        for number, case in enumerate(CASES):
            edits = [part for part in case if isinstance(part, tuple)]
            expected = [part for part in case if isinstance(part, str)]
            status = int(any("another order" not in line for line in expected))
            other = self.case(str(number), *edits)
            first = bases.get(edits[0], base)
            with self.subTest(edits):
                lines = self.lines(first, other, status=status)
                follow_ups = [line for line in lines if "inert species" not in line]
                self.assertEqual(follow_ups, expected)
                there, back = (self.mirrored(*pair, k, status=status) for k, pair in enumerate([(first, other), (other, first)]))
                self.assertEqual(there, back)

    def test_the_largest_effect_comes_first(self):
        first = self.case("first")
        second = self.case("second", ("INP", "FREQ           50.0", "FREQ           51.0"), ("MEC", "2.3000E+18", "2.3000E+19"), ("MEC", "2.000E-08", "3.000E-08"),
                           ("INP", "H2*", "H2"), ("INP", "RO         0.01", "RO      0.01001"))
        self.assertEqual([line.split(" ")[0] for line in self.lines(first, second)], ["species", "reaction", "photo", "right", "flame"])
        self.assertEqual([line.split(" ")[0] for line in self.lines("--tolerance", "0.1", first, second)], ["species", "reaction", "photo"])
        differences = json.loads(self.diff("--json", first, second, status=1).stdout)["differences"]
        self.assertEqual([d["effect"]["size"] is None for d in differences], [True, False, False, False, False])
        self.assertAlmostEqual(differences[1]["effect"]["size"], 2.302585, 5)
        self.assertEqual(differences[1]["changes"], [{"name": "FALL1", "before": 2.3e18, "after": 2.3e19, "unit": "as read", "direction": "up"}])
        self.assertEqual((differences[1]["before"], differences[1]["after"]), (5, 5))

    def test_example_of_the_document(self):
        edits = [CASES[k][0] for k in (6, 13, 19)]
        output = self.diff(self.case("first"), self.case("second", *edits), status=1).stdout
        self.assertIn("```text tried\n" + output + "```", (ROOT / "docs/diff.md").read_text())

    def test_duplicates_that_agree_best_belong_together(self):
        duplicates = lambda *factors: ("MEC", "MAXI\n", "".join(f"OH+O=H+O2                   {factor:.3E}   0.00     0.000\n" for factor in factors) + "MAXI\n")
        first = self.case("first", duplicates(1e13, 1e11, 1e12))
        for number, order in enumerate([(1.1e12, 1.1e13, 1.1e11), (1.1e11, 1.1e12, 1.1e13), (1.1e11, 1.1e13, 1.1e12)]):
            second = self.case(f"second{number}", duplicates(*order))
            self.assertEqual([line.split(" rate ")[-1] for line in self.lines(first, second) if "rate" in line], ["+10 %"] * 3, order)
        fewer, more = self.case("fewer", duplicates(1e13, 1e11)), self.case("more", duplicates(1.1e11, 1.1e13, 1e3))
        self.assertEqual([line.split(" rate ")[-1] for line in self.lines(fewer, more) if "rate" in line], ["+10 %"] * 2)

    def test_of_very_many_duplicates_the_first_is_the_first(self):
        many = lambda first: ("MEC", "MAXI\n", "".join(f"OH+O>H+O2                   {first + k}.00E+10   0.00     0.000\n" for k in range(101)) + "MAXI\n")
        lines = self.lines(self.case("first", many(100)), self.case("second", many(300)))
        self.assertEqual([line.split(" A ")[1].split()[:3:2] for line in lines], [[f"{1 + k / 100:.5g}e+06", f"{3 + k / 100:.5g}e+06"] for k in range(101)])

    def test_files_that_end_too_soon_or_are_none(self):
        whole = self.case("whole")
        text = (whole / "fort.3").read_text()
        for part, said in [(text[:len(text) // 2], "line "), ("", "line 1: the file ends here"), ("\n" * 20_000_000, "line 1: this is not the record that is due here"),
                           (text.replace("    9 SPECIES", "99999 SPECIES", 1), "the count 99999 cannot be"), (text + "more\n", "more behind the end")]:
            (self.root / "other").write_text(part)
            result = self.diff(whole, "other", status=2)
            self.assertIn(said, result.stderr)
            self.assertEqual(result.stdout, "")
        (self.root / "other").write_text(text[:-len(text) // 3])
        self.assertIn(f"line {text[:-len(text) // 3].count(chr(10)) + 2}: the file ends here", self.diff("other", whole, status=2).stderr)
        os.truncate(self.root / "other", 1 << 29)
        self.assertIn("larger than any store file", self.diff("other", whole, status=2).stderr)
        os.mkfifo(self.root / "pipe")
        for arguments in (["absent", whole], ["pipe", whole], [self.root, whole], [whole], []):
            self.diff(*arguments, status=2)

    def test_values_beyond_all_measure(self):
        whole = self.case("whole")
        text = (whole / "fort.3").read_text()
        huge = re.sub(r"\d\.\d{4}E[+-]\d\d", lambda m: "1.700E+308", text)
        for other in (huge, re.sub(r" ETA .*", lambda m: m[0][:12] + "*" * 11 + m[0][23:], text), huge.replace("1.700E+308", "9.900E-320")):
            (self.root / "other").write_text(other)
            for order in ([whole, "other"], ["other", whole]):
                self.assertNotIn("nan", self.diff(*order, status=1).stdout)
                json.loads(self.diff("--json", *order, status=1).stdout)
            self.diff("other", "other", status=0)


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *sys.argv[4:]])
