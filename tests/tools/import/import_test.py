#!/usr/bin/env python3
"""varpre-import on mechanisms of every form: import_test.py PROGRAM VARPRE EXAMPLE"""

import os
import random
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

import proof

PROGRAM, VARPRE, EXAMPLE = (Path(argument).resolve() for argument in sys.argv[1:4])

NASA = "{model: NASA7, temperature-ranges: [200, 1000, 3500], data: [[2.5, 0, 0, 0, 0, %s, 1.0], [2.5, 0, 0, 0, 0, %s, 1.0]]}"
TRANSPORT = "{model: gas, geometry: %s, well-depth: 100, diameter: 3}"


def species(name, composition, thermo=None, transport=None, more="", h=-745):
    shape = "atom" if composition.count(":") == 1 and ": 1}" in composition else "linear"
    return (f"- name: {name}\n  composition: {composition}\n  thermo: {thermo or NASA % (h, h)}\n"
            f"  transport: {transport or TRANSPORT % shape}\n{more}")


GAS = [species("H", "{H: 1}"), species("H2", "{H: 2}"), species("O", "{O: 1}"), species("O2", "{O: 2}"),
       species("OH", "{O: 1, H: 1}"), species("H2O", "{H: 2, O: 1}", transport=TRANSPORT % "nonlinear"), species("AR", "{Ar: 1}")]
HEAD = "units: {length: cm, quantity: mol, activation-energy: kJ/mol}\n"
PHASE = "- name: gas\n  thermo: ideal-gas\n  kinetics: gas\n  reactions: all\n  state: {T: 300, P: 1 bar, X: {H2: 1, O2: 1}}\n"
PT = "- name: %s\n  composition: {%s}\n  thermo: {model: NASA7, temperature-ranges: [300, 3000], data: [[1.0, 0, 0, 0, 0, -100, 1.0]]}\n"
SURFACE = ("- name: pt\n  thermo: ideal-surface\n  adjacent-phases: [gas]\n  kinetics: surface\n  species:\n  - sites: all\n"
           "  reactions: [on-pt]\n  site-density: 2.7e-9\n  state: {T: 900, coverages: {PT(S): 1}}\n")
SITES = "sites:\n" + PT % ("PT(S)", "Pt: 1") + PT % ("H(S)", "H: 1, Pt: 1") + PT % ("O(S)", "O: 1, Pt: 1")
PLAIN = "- {equation: O + H2 <=> H + OH, rate-constant: {A: 3.87e+04, b: 2.7, Ea: 26.2}}\n"


def mechanism(reactions=PLAIN, gas=None, head=HEAD, phase=PHASE, more=""):
    return f"{head}phases:\n{phase}\nspecies:\n{''.join(GAS if gas is None else gas)}\nreactions:\n{reactions}\n{more}"


class Import(unittest.TestCase):
    def setUp(self):
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        self.root = Path(scratch.name)
        self.number = 0

    def run_import(self, text, *arguments, files=None):
        """Imports a text; what came of it, with the directory of its files."""
        self.number += 1
        directory = self.root / str(self.number)
        directory.mkdir()
        (directory / "m.yaml").write_bytes(text if isinstance(text, bytes) else text.encode())
        for name, content in (files or {}).items():
            (directory / name).write_text(content)
        result = subprocess.run([PROGRAM, "m.yaml", *arguments], cwd=directory, capture_output=True, text=True, timeout=60, errors="replace")
        result.directory = directory
        result.MEC = (directory / "MEC").read_text() if (directory / "MEC").exists() else ""
        return result

    def good(self, text, *arguments, phases=("gas",), pressure=1e5, **more):
        """The same for what must come in whole, and is proved against the store file."""
        result = self.run_import(text, *arguments, **more)
        self.assertEqual(result.returncode, 0, result.stderr)
        subprocess.run([VARPRE], cwd=result.directory, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=True)
        result.proof = proof.Proof(str(result.directory / "m.yaml"), str(result.directory), *phases, pressure=pressure)
        return result

    def refused(self, text, *arguments, says, left_out=None, **more):
        """The same for what must be refused, with these words; `left_out`: and goes in without it."""
        result = self.run_import(text, *arguments, **more)
        self.assertEqual(result.returncode, 1, result.stderr)
        self.assertIn(says, result.stderr)
        self.assertRegex(result.stderr, r"m\.yaml:\d+:\d+: error: ")
        self.assertFalse((result.directory / "MEC").exists())
        if left_out is not None:
            result = self.run_import(text, *arguments, "--skip-unsupported", **more)
            self.assertEqual(result.returncode, 0, result.stderr)
            self.assertIn(f"{left_out} is left out: ", result.stderr)
            self.assertIn(f"left out: {left_out}", result.MEC)
            self.assertIn(f"left out: {left_out}", result.stdout)
        return result

    def test_example_comes_out_as_it_stands(self):
        directory = self.root / "example"
        directory.mkdir()
        shutil.copy(EXAMPLE / "hydrogen.yaml", directory)
        command = [PROGRAM, "--surface", "platinum", "hydrogen.yaml"]
        self.assertEqual(subprocess.run(command, cwd=directory, capture_output=True).returncode, 0)
        for name in ("MEC", "THERMO", "MOLNEW", "INP"):
            self.assertEqual((directory / name).read_text(), (EXAMPLE / name).read_text(), name)
        subprocess.run([VARPRE], cwd=directory, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=True)
        found = proof.Proof(str(directory / "hydrogen.yaml"), str(directory), "hydrogen-air", "platinum").compared
        self.assertGreater(found["A"], 50)
        self.assertEqual(found["sticking"], 4)

    def test_the_summary_tells_what_the_proof_finds(self):
        """What the program says that it is off by is what another way of working it out gives."""
        chebyshev = "temperature-range: [290, 3000], pressure-range: [0.01 atm, 100 atm], data: [[-1.44, 0.26], [2.2, 0.49], [-0.23, 0.40]]"
        text = mechanism(PLAIN + f"- {{equation: O2 (+M) <=> 2 O (+M), type: Chebyshev, {chebyshev}}}\n", more="on-pt:\n- {equation: H2 + 2 PT(S) <=> 2 H(S), sticking-coefficient: [0.046, 0, 0]}\n" + SITES,
                         phase=PHASE + SURFACE + "- name: other\n  thermo: pure-fluid\n")
        result = self.good(text, "--surface", "pt", "--pressure", "2 bar", pressure=2e5, phases=("gas", "pt"))
        said = dict(re.findall(r"(?m)^fitted: rate of (.*?)(?: at 2 bar)?, off by up to ([\d.]+) %", result.stdout))
        self.assertEqual(said.keys(), result.proof.deviations.keys())
        for what, deviation in result.proof.deviations.items():
            self.assertAlmostEqual(float(said[what]) / 100, deviation, delta=0.01 * deviation + 1e-4, msg=what)
        self.assertIn("not taken: phase other (pure-fluid)", result.stdout)
        for line in result.stdout.splitlines():
            if not line.startswith(("wrote", "varpre")):
                self.assertIn("---- " + line, result.MEC)
        worst = float(re.search(r"rates within ([\d.e+-]+) %", result.stdout)[1])
        self.assertAlmostEqual(worst / 100, max(result.proof.deviations.values()), delta=0.01 * worst / 100)
        plain = self.good(mechanism(PLAIN), "--fit-reverses")
        self.assertIn("rates exact\n", plain.stdout)
        self.assertIn("reverse rates that varpre fits from equilibrium exact", plain.stdout)
        self.assertEqual(plain.proof.compared["the reverse rate"], 2)
        self.assertNotIn("compared with", self.run_import(mechanism(PLAIN), "--no-verify").stdout)

    def test_conditions_to_start_from(self):
        def inp(*arguments):
            result = self.run_import(mechanism(PLAIN, gas=GAS + [species("CH4", "{C: 1, H: 4}", transport=TRANSPORT % "nonlinear"), species("N2", "{N: 2}")]), *arguments)
            self.assertEqual(result.returncode, 0, result.stderr)
            return (result.directory / "INP").read_text()
        amounts = lambda text, side: {k: float(v) for k, v in re.findall(r"(?m)^(\S+) +([\d.]+) (?!J)", text[text.index(side):][:text[text.index(side):].index("END")])}
        given = inp("--left", "CH4:1, O2:2, N2:7.52; 350 K; 2 atm", "--right", "o2:1 N2 : 3.76")
        self.assertEqual(amounts(given, "LEFT"), {"P": 2.0265, "T": 350, "CH4": 1, "O2": 2, "N2": 7.52})
        self.assertEqual(amounts(given, "RIGHT"), {"P": 1, "T": 300, "O2": 1, "N2": 3.76})
        self.assertIn("RevSim  1", given)
        premixed = amounts(inp("--fuel", "CH4", "--oxidizer", "O2:1, N2:3.76", "--phi", "0.8", "--template", "burner"), "RIGHT")
        self.assertEqual(premixed, {"P": 1, "T": 300, "CH4": 0.8, "O2": 2, "N2": 7.52})
        apart = inp("--fuel", "CH4:1, H2:1", "--oxidizer", "O2:1", "--template", "counterflow", "--fit-reverses")
        self.assertEqual((amounts(apart, "LEFT")["H2"], amounts(apart, "RIGHT")["O2"]), (1, 1))
        self.assertNotIn("RevSim  1", apart)
        self.assertIn("Impuls -1", apart)
        self.assertIn("Source  1", inp("--template", "ignition"))
        for line in given[given.index("LEFT"):].splitlines():
            if line[:4] not in ("LEFT", "RIGH", "COND", "END"):
                self.assertIn("! ", line)
        for wrong in (["--left", "XX:1"], ["--left", "O2:1; 3 m"], ["--fuel", "H2"], ["--phi", "1"], ["--fuel", "AR", "--oxidizer", "O2"], ["--fuel", "H2", "--oxidizer", "AR"], ["--template", "x"],
                      ["--fuel", "H2", "--oxidizer", "O2", "--phi", "0"], ["--left", "O2:-1"]):
            self.assertEqual(self.run_import(mechanism(PLAIN), *wrong).returncode, 2, wrong)

    def test_units_of_every_level(self):
        reactions = """- {equation: O + H2 <=> H + OH, rate-constant: {A: 3.87e-2 m^3/mol/s, b: 2.7, Ea: 6260 cal/mol}}
- {equation: H + O2 => O + OH, rate-constant: [2.65e+10 m^3/kmol/s, -0.67, 8575 K]}
- {equation: 2 O + M <=> O2 + M, rate-constant: {A: 1.2e5 m^6*mol^-2*s^-1, b: -1.0, Ea: 0.0}}
- {equation: O2 => 2 O, units: {time: min, activation-energy: eV}, rate-constant: {A: 6.0e10, b: 0, Ea: 2.5}}
- {equation: H + OH => H2O, rate-constant: {A: 1e-10 cm^3/molec/s, b: 0, Ea: 1 kcal/mol}}
- {equation: OH + H2 => H + H2O, rate-constant: {units: {quantity: kmol}, A: 2.16e+11, b: 1.5, Ea: 14.4}}
"""
        self.good(mechanism(reactions))
        self.good(mechanism(reactions.replace("3.87e-2 m^3/mol/s", "3.87e1"), head=""))
        result = self.good(mechanism("- units: {activation-energy: J/mol}\n- {equation: O + H2 = H + OH, rate-constant: {A: 1e4, b: 2, Ea: 26200}}"))
        self.assertIn(" 26.19949\n", result.MEC)  # E/R is that of the file
        decades = dict(zip("YZEPTGMkhdcmunpfazy", (24, 21, 18, 15, 12, 9, 6, 3, 2, -1, -2, -3, -6, -9, -12, -15, -18, -21, -24)))
        for prefix, decade in decades.items():
            one = f"- {{equation: O + H2 = H + OH, rate-constant: {{A: 1e4, b: 2, Ea: {26.192e3 / 10.0 ** decade!r} {prefix}J/mol}}}}\n"
            self.assertIn(" 26.19149\n", self.run_import(mechanism(one)).MEC, prefix)
        for unit, says in [("cm^2/mol/s", "of another quantity"), ("cm^3/mol/fortnight", "is no unit"), ("1e4 cm^3/mol/s", "is no unit")]:
            self.refused(mechanism(PLAIN.replace("3.87e+04", f"3.87e+04 {unit}")), says=says)
        self.refused(mechanism(PLAIN, head="units: {length: kg}\n"), says="'kg' is no unit of length")
        self.refused(mechanism(PLAIN.replace("3.87e+04", "1,000.0").replace("{A: 1,000.0", "{A: '1,000.0'")), says="is not a number")

    def test_partners_and_falloff(self):
        many = [species(f"X{i}", "{Ar: 1}") for i in range(20)]
        efficiencies = ", ".join(f"X{i}: {i}.25" for i in range(20))
        falloff = """- equation: 2 OH (+ M) <=> H2O + O (+M)
  type: falloff
  low-P-rate-constant: {A: 2.3e+18, b: -0.9, Ea: -7.1}
  high-P-rate-constant: {A: 7.4e+13, b: -0.37, Ea: 0.0}
"""
        without_T2 = "  Troe: {A: 0.7346, T3: 94.0, T1: 1756.0}\n"
        lindemann = falloff.replace("H2O + O (+M)", "H2O2 (+M)").replace("- equation", "\n- equation")
        peroxide = [species("H2O2", "{H: 2, O: 2}", transport=TRANSPORT % "nonlinear")]
        result = self.good(mechanism(PLAIN + lindemann + lindemann.replace("H2O2 (+M)", "H2O2 (+AR)").replace("(+ M)", "(+AR)") +
                                     lindemann.replace("2 OH (+ M) <=> H2O2 (+M)", "2 O (+M) => O2 (+M)") +
                                     without_T2 + "  efficiencies: {" + efficiencies + "}\n" +
                                     lindemann.replace("2 OH (+ M) <=> H2O2 (+M)", "H + OH (+M) => H2O (+M)") + without_T2.replace("}", ", T2: 0}") +
                                     "- equation: 2 H + M = H2 + M\n  rate-constant: [1e18, -1, 0]\n  default-efficiency: 0\n"
                                     "  efficiencies: {H2: 2, AR: 0.5}\n- equation: H + OH + M = H2O + M\n  rate-constant: [1e18, -1, 0]\n"
                                     "- equation: 2 O + AR <=> O2 + AR\n  rate-constant: {A: 1e17, b: 0, Ea: 0}\n", gas=GAS + peroxide + many))
        self.assertEqual(result.proof.compared["Troe"], 16)
        self.assertIn("falloff reactions: what the solver makes", result.stderr)
        self.assertEqual(self.run_import(mechanism(PLAIN + lindemann, gas=GAS + peroxide), "--no-falloff").returncode, 1)
        self.refused(mechanism(PLAIN + falloff), says="more than five names", left_out="reaction 2 OH (+ M) <=> H2O + O (+M)")
        sets = "".join(f"- {{equation: H + OH + M = H2O + M, duplicate: true, rate-constant: [1e18, -1, 0], efficiencies: {{AR: {i}.5}}}}\n"
                       for i in range(27))
        self.refused(mechanism(sets), says="one more set of efficiencies", left_out="reaction H + OH + M = H2O + M")
        self.refused(mechanism("- {equation: H + OH + M = H2O, rate-constant: [1e18, -1, 0]}"), says="both sides")
        self.refused(mechanism("- {equation: H + OH + M = H2O + M, rate-constant: [1e18, -1, 0], efficiencies: {N2: 1}}"), says="'N2' is no species")

    def test_surface(self):
        reactions = """on-pt:
- {equation: H2 + 2 PT(S) => 2 H(S), sticking-coefficient: {A: 0.046, b: 0, Ea: 0}}
- {equation: PT(S) + O => O(S), sticking-coefficient: [1.0, 0, 0]}
- {equation: 2 O(S) => O2 + 2 PT(S), rate-constant: {A: 3.7e+21, b: 0, Ea: 213.2}, coverage-dependencies: {O(S): [0.5, 0.25, -60]}}
- {equation: 2 H(S) + 2 O(S) + PT(S) => H2O + 3 PT(S) + O(S), rate-constant: {A: 3.7e+41 cm^8/mol^4/s, b: 0.5, Ea: 1.5}}
"""
        result = self.good(mechanism(more=reactions + SITES,
                                     phase=PHASE + SURFACE), "--surface", "pt", phases=("gas", "pt"))
        self.assertIn("STIC\nO+PT(S)>O(S)  ", result.MEC)
        self.assertIn("sticking coefficients g are written as g/(1+g/2)", result.stderr)
        wise = self.run_import(mechanism(more=reactions.splitlines()[0] + "\n- {equation: O + PT(S) => O(S), Motz-Wise: true, sticking-coefficient: [0.75, 0, 0]}\n" + SITES,
                                         phase=PHASE + SURFACE), "--surface", "pt")
        self.assertIn(" 0.75 ", wise.MEC)
        only_there = self.run_import(mechanism(more="on-pt:\n- {equation: O2 + 2 PT(S) => 2 O(S), sticking-coefficient: [1.5, 0, 0]}\n" + SITES,
                                               phase=PHASE + SURFACE), "--surface", "pt")
        self.assertNotIn("stand before others", only_there.stderr)  # O2 comes behind what reacts in the gas
        self.assertIn("the sticking coefficient is 1.5", only_there.stderr)
        for text, says in [("- {equation: O + PT(S) => O(S), sticking-coefficient: [2.0, 0.5, 0], Motz-Wise: true}", "not positive at all temperatures"),
                           ("- {equation: O + PT(S) => O(S), rate-constant: [1.0, 0.5, 0], orders: {O: 2}}", "the order 2 of O cannot be held"),
                           ("- {equation: O + PT(S) <=> O(S), rate-constant: [1.0, 0.5, 0], orders: {PT(S): 2}}", "has no reverse"),
                           ("- {equation: O + PT(S) => O(S), rate-constant: [1, 0, 0], coverage-dependencies: {O(S): [0, 0, 1], H(S): [0, 0, 1]}}", "second species"),
                           ("- {equation: O + PT(S) => O(S), rate-constant: [1, 0, 0], coverage-dependencies: {O(S): [0, 0, [1, 2, 0, 0]]}}", "a polynomial"),
                           ("- {equation: 4 O + 3 PT(S) => 4 O(S), rate-constant: [1, 0, 0]}", "more than six")]:
            self.refused(mechanism(more="on-pt:\n" + text + "\n" + SITES, phase=PHASE + SURFACE), "--surface", "pt", says=says, left_out="reaction " + text[13:text.index(",")])

    def test_surface_laws_that_the_program_does_not_know(self):
        reactions = """on-pt:
- {equation: H2 + 2 PT(S) <=> 2 H(S), sticking-coefficient: {A: 0.046, b: 0, Ea: 0}}
- {equation: O2 + 2 pt(s) <=> 2 O(S), Motz-Wise: true, sticking-coefficient: {A: 0.5, b: -0.25, Ea: 2.5}}
- {equation: O + PT(S) => O(S), sticking-coefficient: {A: 0.01, b: 0.5, Ea: 12}}
- {equation: H + PT(S) <=> H(S), sticking-coefficient: [0.3, 0, 0], coverage-dependencies: {H(S): [0.5, 0.25, -6]}}
- {equation: H(S) + O(S) <=> OH + 2 PT(S), rate-constant: {A: 3.7e+21, b: 0.5, Ea: 20}, coverage-dependencies: {O(S): [0, 0, -60]}}
- {equation: H2 + 2 PT(S) => 2 H(S), duplicate: true, rate-constant: {A: 4.4579e+10, b: 0.5, Ea: 0}, orders: {PT(S): 1}}
- {equation: H2O + 2 PT(S) => O(S) + 2 H + PT(S), rate-constant: {A: 1e10, b: 0, Ea: 0}, orders: {PT(S): 0.5}, coverage-dependencies: {PT(S): [0, 0.25, 0]}}
- {equation: C(d) + O(S) <=> CO + PT(S), rate-constant: {A: 1e13, b: 0, Ea: 100}}
"""
        gas = GAS + [species("CO", "{C: 1, O: 1}", h=-14000)]
        solid = "- name: diamond\n  thermo: fixed-stoichiometry\n  species: [C(d)]\n"
        carbon = "- name: C(d)\n  composition: {C: 1}\n  thermo: " + NASA % (-100, -100) + "\n"
        surface = SURFACE.replace("[gas]", "[gas, diamond]") + solid
        phase = PHASE.replace("  kinetics", f"  species: [{', '.join(s.split()[2] for s in gas)}]\n  kinetics") + surface
        result = self.good(mechanism(gas=gas + [carbon], more=reactions.replace("3.7e+21", "3.7e+21 cm^2/mol/s") + SITES, phase=phase), "--surface", "pt", phases=("gas", "pt"))
        found = result.proof.compared
        self.assertEqual((found["sticking"], found["the reverse rate"]), (1, 10))
        self.assertEqual(len(result.proof.deviations), 5)
        self.assertLess(result.proof.deviations["O2 + 2 pt(s) <=> 2 O(S)"], 0.02)

    def test_rates_that_depend_on_the_pressure(self):
        table = "rate-constants: [{P: 0.1 atm, A: 2.1e+09, b: 1.2, Ea: 68.34}, {P: 1 atm, A: 1.26e+20, b: -1.83, Ea: 150.03}, {P: 1 atm, A: 1.23e+04, b: 2.68, Ea: 63.35}, {P: 10 atm, A: 1.68e+16, b: -0.6, Ea: 147.54}]"
        chebyshev = "temperature-range: [290, 3000], pressure-range: [0.01 atm, 100 atm], data: [[-1.44, 0.26, -0.02], [2.2, 0.49, -0.04], [-0.23, 0.40, -0.026]]"
        forms = [f"equation: H + H2O <=> H2 + OH, type: pressure-dependent-Arrhenius, {table}", f"equation: O2 (+M) <=> 2 O (+M), type: Chebyshev, {chebyshev}",
                 "equation: H2 <=> 2 H, type: pressure-dependent-Arrhenius, rate-constants: [{P: 2 bar, A: 1e13, b: -1.5, Ea: 400}]"]
        text = mechanism("".join(f"- {{{form}}}\n" for form in forms))
        for given, pascal in (("1 atm", 101325), ("0.5 bar", 5e4), ("2MPa", 2e6)):
            result = self.good(text, "--pressure", given, pressure=pascal)
            self.assertEqual(len(result.proof.deviations), 3)
            self.assertLess(max(result.proof.deviations.values()), 0.5)
        self.assertIn("H2=H+H                                        1.0E+13     -1.5", result.MEC)
        self.assertIn("are given from 0.101325 to 10.1325 bar; the nearest are taken for 20", result.stderr)
        for form in forms[:2]:
            self.refused(mechanism(f"{PLAIN}- {{{form}}}\n"), says="--pressure", left_out="reaction " + form[10:form.index(",")])
        self.assertEqual(self.run_import(mechanism(f"- {{{forms[2]}}}\n")).returncode, 0)
        self.refused(text, "--pressure", "200 bar", says="not at 200", left_out="reaction O2 (+M) <=> 2 O (+M)")
        for pressure in ("1", "-1 bar", "1 K", "bar"):
            self.assertEqual(self.run_import(text, "--pressure", pressure).returncode, 2)

    def test_global_reactions(self):
        reactions = """- {equation: H2 + 0.5 O2 => H2O, rate-constant: {A: 1e11, b: -1.5, Ea: 172.38}, orders: {H2: 0.5, O2: 1.5}}
- {equation: H2 + 0.5 O2 => H2O, rate-constant: [1.5e15, 0.25, 167.5], orders: {H2: 1, O2: .25, H2O: .5}}
- {equation: H2 + O2 => 2 OH, rate-constant: [1e10, 0, 0], orders: {H2: 1.5}}
"""
        result = self.good(mechanism(PLAIN + reactions))
        self.assertEqual(result.proof.compared["global rate"], 9)
        self.refused(mechanism(reactions * 4), says="one more global reaction than can be held: 10", left_out="reaction H2 + O2 => 2 OH")

    def test_columns_that_take_digits_of_b_and_E(self):
        low = "- {equation: 2 OH (+M) = H2O2 (+M), type: falloff, high-P-rate-constant: [1e14, 0, 0], low-P-rate-constant: {A: 2.3e+38, b: -13.545, Ea: 123.456789}}\n"
        result = self.good(mechanism(low, gas=GAS + [species("H2O2", "{H: 2, O: 2}", transport=TRANSPORT % "nonlinear")]))
        self.assertNotIn("lost digits", result.stderr)
        self.assertEqual(result.proof.compared["low-pressure limit"], 3)

    def test_transport_from_elsewhere(self):
        bare = [s[:s.index("  transport")] if i in (2, 5) else s for i, s in enumerate(GAS)]
        files = {"tran.dat": "O  0 80.0 2.75 0.0 0.0 0.0 ! comment\nH2O 2 572.4 2.605 1.844 0.0 4.0\n", "t.yaml": "species:\n" + "".join(GAS),
                 "MOLNEW": "O        0    15.999      80.0      2.75       0.0       0.0       0.0\nH2O      2    18.015     572.4     2.605     1.844       0.0       4.0\n"}
        for name in files:
            result = self.run_import(mechanism(gas=bare), "--transport", name, "--output", "new", files=files)
            self.assertEqual(result.returncode, 0, result.stderr)
            made = (result.directory / "new" / "MOLNEW").read_text()
            self.assertIn("      80.0      2.75" if name != "t.yaml" else "     100.0       3.0", made.splitlines()[2])
            self.assertEqual(len(made.splitlines()), 7)
        self.refused(mechanism(gas=bare), "--transport", "tran.dat", says="1 species without transport data: H2O", files={"tran.dat": "O 0 80 2.75 0 0 0\n"})
        broken = self.run_import(mechanism(gas=bare), "--transport", "tran.dat", files={"tran.dat": "O 0 80 x 0 0 0\n"})
        self.assertIn("tran.dat:1:8: error: 'x' is not a number", broken.stderr)

    def test_other_thermochemistry_is_fitted(self):
        forms = {"{model: NASA9, temperature-ranges: [200, 1000, 6000], reference-pressure: 1 bar, data: [[2.210371497E+04, -3.818461820E+02, 6.082738360E+00, -8.530914410E-03, 1.384646189E-05, -9.625793620E-09, 2.519705809E-12, 7.108460860E+02, -1.076003744E+01],"
                 " [5.877124060E+05, -2.239249073E+03, 6.066949220E+00, -6.139685500E-04, 1.491806679E-07,  -1.923105485E-11, 1.061954386E-15, 1.283210415E+04, -1.586640027E+01]]}": 0.02,
                 "{model: Shomate, temperature-ranges: [298, 1300, 6000], reference-pressure: 1 bar, data: [[25.56759, 6.096130, 4.054656, -2.671301, 0.131021, -118.0089, 227.3665], [35.15070, 1.300095, -0.205921, 0.013550, -3.282780, -127.8375, 231.7120]]}": 0.02,
                 "{model: piecewise-Gibbs, h0: 1 kJ/mol, data: {298.15: -58.63 kJ/mol, 600: -122.53 kJ/mol, 1500: -338.02 kJ/mol, 3000: -739.04 kJ/mol}, T-min: 250}": 0.1}
        for form, most in forms.items():
            text = mechanism(gas=GAS + [species("X", "{N: 2}", form)])
            result = self.good(text, "--refit-thermo")
            self.assertEqual(re.findall(r"fitted: (cp|h|s) of X, off by up to (?!0 )", result.stdout), ["cp", "h", "s"])
            self.assertLess(max(result.proof.thermo_deviations.values()), most)
            self.assertLess(result.proof.jump, 1e-3)
            self.refused(text, says="--refit-thermo", left_out="species X")
        for wrong in ("[200, 6000]", "[]"):
            form = next(iter(forms)).replace("[200, 1000, 6000]", wrong)
            self.refused(mechanism(gas=GAS + [species("X", "{N: 2}", form)]), "--refit-thermo", says="error: some ranges are due here, their limits and a list of coefficients for each")

    def test_equations_too_long_for_a_line(self):
        names = ["PLATIN_A", "PLATIN_B", "PLATIN_C", "PLATIN_D", "PLATIN_E"]
        sites = "sites:\n" + "".join(PT % (name, "Pt: 1") for name in names)
        reaction = f"on-pt:\n- {{equation: {' + '.join(names)} => {' + '.join(reversed(names))}, rate-constant: {{A: 1.2345e20, b: 0.55, Ea: 12.25}}}}\n"
        result = self.good(mechanism(more=reaction + sites, phase=PHASE + SURFACE.replace("PT(S)", "PLATIN_A")), "--surface", "pt", phases=("gas", "pt"))
        self.assertIn("MAXI\n", result.MEC)

    def test_what_cannot_be_held_is_refused_by_name(self):
        rate = "high-P-rate-constant: [1e13, 0, 0], low-P-rate-constant: [1e18, 0, 0]"
        for form, says in [
                (f"equation: 2 O (+M) = O2 (+M), type: falloff, {rate}, SRI: {{A: 1, B: 2, C: 3}}", "of the form SRI"),
                (f"equation: 2 O (+M) = O2 (+M), type: falloff, {rate}, Tsang: {{A: 1}}", "of the form Tsang"),
                (f"equation: 2 O (+M) = O2 (+M), type: chemically-activated, {rate}", "type 'chemically-activated'"),
                ("equation: H + OH = H2O, type: linear-Burke", "type 'linear-Burke'"),
                ("equation: H + OH = H2O, type: Blowers-Masel, rate-constant: [1, 0, 0, 0]", "type 'Blowers-Masel'"),
                ("equation: H + OH = H2O, type: two-temperature-plasma, rate-constant: [1, 0, 0, 0]", "type 'two-temperature-plasma'"),
                ("equation: 0.5 O2 + H2 <=> H2O, rate-constant: [1, 0, 0]", "orders and coefficients that are no whole numbers"),
                ("equation: 2 H2 + O2 + M => 2 H2O + M, rate-constant: [1, 0, 0], orders: {H2: 1}", "orders and coefficients"),
                ("equation: 2 H2 + O2 => 2 H2O, rate-constant: [1, 0, 0], orders: {H2: 0.125}", "does not fit"),
                ("equation: 2 H2 + O2 + AR => 2 H2O + AR, rate-constant: [1, 0, 0], orders: {H: 1}", "more than three"),
                ("equation: 4 H + 2 O => 2 H2O, rate-constant: [1, 0, 0]", "more than three")]:
            self.refused(mechanism(f"{PLAIN}- {{{form}}}\n"), says=says, left_out="reaction " + form[10:form.index(",")])
        self.refused(mechanism(gas=GAS + [species("X", "{Ar: 1}", "{model: adsorbate}")]), says="model 'adsorbate'", left_out="species X")
        for composition, says in [("{D: 2}", "'D' is not an element"), ("{E: -1, Ar: 1}", "charged"), ("{C: 1.5}", "1.5 atoms"),
                                  ("{H: 1, C: 1, N: 1, O: 1, Ar: 1}", "more than four elements")]:
            self.refused(mechanism(gas=GAS + [species("X", composition)]), says=says, left_out="species X")
        without = "- name: X\n  composition: {Ar: 1}\n  thermo: " + NASA % (1, 1) + "\n"
        self.refused(mechanism(gas=GAS + [without, without.replace("X", "Y")]), says="2 species without transport data: X, Y", left_out="2 species without transport data")
        alone = self.run_import(mechanism(gas=GAS + [without]), "--without-transport")
        self.assertEqual(alone.returncode, 0, alone.stderr)
        self.assertFalse((alone.directory / "MOLNEW").exists())
        for skip in ((), ("--skip-unsupported",)):
            self.refused(mechanism(phase=PHASE.replace("ideal-gas", "Redlich-Kwong")), "--phase", "gas", *skip, says="its model is 'Redlich-Kwong'")
        too_many = [species(f"S{i}", "{Ar: 1}") for i in range(301)]
        self.refused(mechanism("[]", gas=too_many, phase=PHASE.replace("X: {H2: 1, O2: 1}", "X: {S1: 1}")), says="301 species are more")

    def test_thermochemistry(self):
        forms = [species("A1", "{Ar: 1}", "{model: NASA7, temperature-ranges: [300, 5000], data: [[2.5, 1e-5, 0, 0, 0, -745.375, 4.366]]}"),
                 species("A2", "{Ar: 1}", "{model: constant-cp, T0: 1000 K, h0: 9.22 kcal/mol, s0: 3.02 cal/mol/K, cp0: 5.95 cal/mol/K}"),
                 species("A3", "{Ar: 1}", "{model: NASA7, temperature-ranges: [300, 1400, 5000], data: [[2.5, 0, 0, 0, 0, -745.375, 4.366], [2.5, 0, 0, 0, 0, -745.375, 4.366]]}"),
                 species("A4", "{Ar: 1}", "{units: {energy: cal, quantity: mol}, model: constant-cp, cp0: 4.968, T-max: .inf}")]
        self.good(mechanism(gas=GAS + forms))
        other = self.run_import(mechanism(gas=GAS + [species("A1", "{Ar: 1}", NASA % (-745, -745)).replace("model: NASA7", "reference-pressure: 10 bar, model: NASA7")]))
        self.assertIn("3.302585092994", (other.directory / "THERMO").read_text())  # 1 + ln 10
        for thermo, says in [("{model: NASA7, temperature-ranges: [300, 1000], data: [[1, 2, 3]]}", "seven coefficients"),
                             ("{model: NASA7, temperature-ranges: [1000, 300], data: [[1, 2, 3, 4, 5, 6, 7]]}", "must rise"),
                             ("{model: NASA7, temperature-ranges: [300, 1000], data: [[1, 2, 3, 4, 5, 6, .nan]]}", "'.nan' is not a number"),
                             ("{model: NASA7, data: [[1, 2, 3, 4, 5, 6, 7]]}", "'temperature-ranges' is missing")]:
            self.refused(mechanism(gas=GAS + [species("X", "{Ar: 1}", thermo)]), says=says)

    def test_names(self):
        odd = ["averylongname", "averylongnamf", "OH*", "CH2(S)+", "M'", "END", "P", "'1.5'", "a,b", "h2o2", "H2O2", "\u00d6l", "'a b'", "COLLIDER", "x=y"]
        gas = GAS + [species(f'"{n}"' if n[0] != "'" else n, "{Ar: 1}") for n in odd]
        rates = "".join(f"- {{equation: '{n} => AR', rate-constant: [{i + 1}, 0, 0]}}\n" for i, n in enumerate(["averylongname", "averylongnamf", "OH*", "CH2(S)+", "END", "P"]))
        first = self.run_import(mechanism(PLAIN + rates, gas=gas))
        self.assertEqual(first.returncode, 0, first.stderr)
        for name in ("averylongname", "OH*", "M'", "END", "P", "h2o2", "x=y"):
            self.assertRegex(first.MEC, rf"(?m)^---- \S+ stands for {name.replace('*', '[*]')}$")
            self.assertRegex(first.stdout, rf"(?m)^\S+ +stands for {name.replace('*', '[*]')}$")
        lines = {line.split()[0]: line for line in first.MEC.splitlines() if ">AR" in line}
        self.assertEqual(len(lines), 6)  # no two reactions became the same
        chosen = self.run_import(mechanism(PLAIN + rates, gas=gas), "--species", "averylongnamf,AR,O,H2,H,OH,O2")
        short = next(line for line in first.MEC.splitlines() if line.endswith("stands for averylongnamf"))
        self.assertIn(short, chosen.MEC)  # whatever else is taken

    def test_sections_and_files(self):
        other = "species:\n" + species("N2", "{N: 2}") + species("D2", "{D: 2}") + "more:\n" + species("CO", "{C: 1, O: 1}") + "reactions:\n" + PLAIN + \
            "- {equation: N2 + M = N2 + M, rate-constant: [1, 0, 0]}\n- {equation: XX => YY, rate-constant: [1, 0, 0]}\n"
        phase = """- name: gas
  thermo: ideal-gas
  elements: [H, O, N, Ar, C]
  species:
  - species: [H, H2, O, OH, H2O]
  - sub/o.yaml/species: all
  - sub/o.yaml/more: [CO]
  skip-undeclared-elements: true
  kinetics: gas
  reactions:
  - sub/o.yaml/reactions: declared-species
"""
        text = mechanism(phase=phase)
        directory = self.root / "files" / "sub"
        directory.mkdir(parents=True)
        (directory / "o.yaml").write_text(other)
        (self.root / "files" / "m.yaml").write_text(text)
        result = subprocess.run([PROGRAM, "files/m.yaml", "--output", "out/put"], cwd=self.root, capture_output=True, text=True)
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertIn("gas phase gas: 7 species, 2 reactions", result.stdout)
        for change, says in [(("[CO]", "[C0]"), "there is no species 'C0'"), (("sub/o.yaml/more", "sub/x.yaml/more"), "No such file"),
                             (("/more", "/most"), "no section 'most'"), (("declared-species", "all"), "'XX' is no species of the phase"),
                             (("declared-species", "some"), "'some' is no choice"), (("true", "false"), "does not declare the element 'D'")]:
            (self.root / "files" / "m.yaml").write_text(text.replace(*change))
            result = subprocess.run([PROGRAM, "files/m.yaml", "--output", "other"], cwd=self.root, capture_output=True, text=True)
            self.assertEqual(result.returncode, 1, says)
            self.assertIn(says, result.stderr)
            if change[0] == "sub/o.yaml/more":
                self.assertEqual(result.stderr.count(": error: "), 1)  # and not what follows from it
        (directory / "o.yaml").rename(self.root / "o.yaml")
        (self.root / "files" / "m.yaml").write_text(text.replace("sub/", ""))
        for include, status in (("other", 1), (".", 0)):
            self.assertEqual(subprocess.run([PROGRAM, "files/m.yaml", "--output", "included", "--include", "files", "--include", include], cwd=self.root, capture_output=True).returncode, status)

    def test_phase_settings(self):
        result = self.run_import(mechanism(PLAIN * 2, phase=PHASE + "  rate-multipliers: {1: 3.0, default: 2.0}\n"))
        self.assertIn(" 77400.0 ", result.MEC)
        self.assertIn(" 116100.0 ", result.MEC)
        explicit = PLAIN + "- {equation: 2 O + M = O2 + M, rate-constant: [1e17, 0, 0]}\n- {equation: 2 O + AR = O2 + AR, rate-constant: [1e17, 0, 0]}\n"
        self.assertIn("count twice", self.run_import(mechanism(explicit)).stderr)
        self.refused(mechanism(explicit, phase=PHASE + "  explicit-third-body-duplicates: error\n"), says="count twice")
        changed = self.run_import(mechanism(explicit, phase=PHASE + "  explicit-third-body-duplicates: modify-efficiency\n"))
        self.assertNotIn("count twice", changed.stderr)
        self.assertIn("M'      =AR", changed.MEC)
        states = {"{T: 500 K, P: 1 atm, X: \"h2:2, O2 : 1.25\"}": ("2.0", "1.25"), "{T: 500 K, P: 2 atm, Y: {H2: 0.5, O2: 0.5}}": ("2.0265", "500.0"), "{H: 1e5 J/kg, P: 1e5, X: {H2: 1}}": ("H(T0)", "100000.0")}
        for state, expected in states.items():
            result = self.run_import(mechanism(phase=PHASE.replace("{T: 300, P: 1 bar, X: {H2: 1, O2: 1}}", state)))
            for text in expected:
                self.assertIn(text, (result.directory / "INP").read_text())
        cold = self.good(mechanism(more="on-pt: []\n" + SITES, phase=PHASE + SURFACE.split("  state")[0]), "--surface", "pt", phases=("gas", "pt"))
        self.assertRegex((cold.directory / "INP").read_text(), r"TW +300\.0")  # a surface without a state of its own
        self.assertIn("cannot stand in a mixture", self.run_import(mechanism(phase=PHASE.replace("P: 1 bar", "S: 1"))).stderr)
        self.assertIn("'rate-constnat' is not known here", self.run_import(mechanism(PLAIN.replace("Ea: 26.2}", "Ea: 26.2}, rate-constnat: 1"))).stderr)

    def test_negative_rates_and_duplicates(self):
        negative = "- {equation: O + H2 <=> H + OH, duplicate: true, negative-A: true, rate-constant: {A: -1.5e+03, b: 2.7, Ea: 26.2}}\n"
        result = self.good(mechanism(PLAIN.replace("OH,", "OH, duplicate: true,") + negative))
        self.assertEqual(result.MEC.count("! dup"), 2)
        self.refused(mechanism(negative.replace("negative-A: true, ", "")), says="A is negative")

    def test_each_refusal_has_its_place(self):
        """Wrong reactions, species and phases: where the error stands, in which column, and its words."""
        rate = "rate-constant: [1e13, 0, 0]"
        chebyshev = "equation: O2 => 2 O, type: Chebyshev, pressure-range: [1 atm, 100 atm], temperature-range"
        for form, column, says in [("equation: 200 O2 => 400 O, " + rate, 14, "the coefficient 200 is not between 0 and 100"), ("equation: O + H2 <=> H + OH, rate-constant: {A: 1e13, b: 0}", 48, "'Ea' is missing here"),
                                   (chebyshev + ": [300, 300], data: [[1, 2]]", 95, "two limits are due here, positive ones that rise"),
                                   (chebyshev + ": [300, 900], data: [[1, 2], [1]]", 122, "rows of the same number of coefficients are due here"), (chebyshev + ": [300, 900], data: []", 113, "rows of the same number"),
                                   ("equation: O2 => 2 O, type: pressure-dependent-Arrhenius, rate-constants: [{P: 0 atm, A: 1, b: 0, Ea: 0}]", 82, "a pressure is greater than zero"),
                                   ("equation: O2 => 2 O, type: pressure-dependent-Arrhenius, rate-constants: []", 77, "rates of some pressures are due here"),
                                   ("equation: O + PT(S) => O(S), " + rate, 14, "the surface species PT(S) cannot react in the gas phase"),
                                   ("equation: 2 O + M => O2 + M, type: falloff, low-P-rate-constant: [1, 0, 0], high-P-rate-constant: [1, 0, 0]", 14, "a falloff reaction has a collision partner in parentheses"),
                                   ("equation: 2 O (+M) => O2 (+M), " + rate, 14, "a collision partner in parentheses belongs to the type falloff"),
                                   ("equation: 2 O => O2, type: three-body, " + rate, 14, "a three-body reaction has a collision partner on both sides"),
                                   (f"equation: O + H2 => H + OH, {rate}, efficiencies: {{AR: 2}}", 75, "efficiencies without the collision partner M cannot be held"),
                                   ("surface: O + PT(S) + M => O(S) + M, " + rate, 14, "a surface reaction has no collision partner"),
                                   ("surface: O + H + PT(S) => O(S) + H, sticking-coefficient: [1, 0, 0]", 14, "'sticking-species' must say which of the gas species sticks"),
                                   (f"surface: O + PT(S) => O(S), {rate}, coverage-dependencies: {{H2: [0, 0, 1]}}", 86, "'H2' is no species of the surface"),
                                   (f"surface: O + PT(S) => O(S), {rate}, coverage-dependencies: {{O(S): {{a: 0, m: 0, E: []}}}}", 108, "an energy is due here"),
                                   (f"surface: O + PT(S) => O(S), {rate}, orders: {{H(S): 1}}, coverage-dependencies: {{O(S): [0, 0, 1]}}", 14, "an order of one species and the coverage of another")]:
            with self.subTest(form):
                on_surface = form.startswith("surface")
                line = "- {" + form.replace("surface: ", "equation: ", 1) + "}\n"
                text = mechanism(PLAIN + ("" if on_surface else line), phase=PHASE + SURFACE, more=f"on-pt: [{line[2:-1] if on_surface else ''}]\n{SITES}")
                column += 6 if on_surface else 0  # on-pt: [
                result = self.refused(text, "--surface", "pt", "--pressure", "1 bar", says=says)
                number = text.split("\n").index(next(row for row in text.split("\n") if form.split(":", 1)[1] in row)) + 1
                self.assertIn(f"m.yaml:{number}:{column}: error: ", result.stderr)
        thermo = lambda text: mechanism(gas=GAS + [species("X", "{Ar: 1}", text)])
        transport = lambda text: mechanism(gas=GAS + [species("X", "{Ar: 1}", transport=text)])
        for text, says, *arguments in [(mechanism(), "3:3: error: --species: there is no species 'XX' in the phase", "--species", "H,XX"), (mechanism(), "3:1: error: there is no phase 'nope'", "--phase", "nope"),
                                       (mechanism(phase=PHASE.replace("kinetics: gas", "kinetics: edge")), "5:13: error: kinetics of the kind 'edge' cannot be held"),
                                       (mechanism(phase=PHASE + SURFACE, more="on-pt: []\n" + SITES.replace("PT(S)", "H2")), "53:9: error: species H2 comes twice in the phases", "--surface", "pt"),
                                       (mechanism(phase=PHASE + "  explicit-third-body-duplicates: foo\n"), "8:35: error: 'foo' is none of warn, error,"), (mechanism(phase=PHASE + "  species: some\n"), "8:12: error: 'some' is no choice"),
                                       (mechanism(gas=GAS + [species("H", "{H: 1}")], phase=PHASE + "  species: [H, H2, O, O2, OH]\n"), "39:3: error: species H is defined twice in this section"),
                                       (mechanism(more="elements:\n- {symbol: H, atomic-weight: 2.014}\n"), "11:17: error: species H: the file gives 'H' another weight than the element has"),
                                       (thermo("{model: constant-cp, T0: 0, h0: 0, s0: 0, cp0: 3}"), "40:11: error: the temperatures of a constant heat capacity must be positive and rise"),
                                       (thermo("{model: piecewise-Gibbs, h0: 0, data: {x: 1, 298.15: 2}}"), "40:50: error: 'x' is no temperature"),
                                       (thermo("{model: piecewise-Gibbs, h0: 0, data: {0: 1, 298.15: 2}}"), "40:50: error: '0' is no temperature"),
                                       (thermo("{model: piecewise-Gibbs, h0: 0, data: {300: 1, 400: 2}}"), "40:49: error: values at two temperatures are due here"),
                                       (transport(TRANSPORT % "round"), "41:37: error: 'round' is no geometry: atom, linear or nonlinear"), (transport("{model: liquid}"), "41:22: error: species X: its transport data are of the model 'liquid'"),
                                       (mechanism(more="on-pt: []\n" + SITES, phase=PHASE + SURFACE).replace("- name: H(S)\n", "- name: H(S)\n  sites: 2\n"), "57:10: error: species H(S): it occupies 2 sites", "--surface", "pt"),
                                       (mechanism(phase=PHASE.replace("{H2: 1, O2: 1}", "'H2:1 O2'")), "7:32: error: names and amounts are due here, H2:2, O2:1")]:
            self.refused(text, *arguments, says="m.yaml:" + says)
        without = self.run_import(mechanism(phase=PHASE.replace("  kinetics: gas\n", "")))
        self.assertIn("m.yaml:5:14: warning: the phase has no kinetics: its reactions are not taken", without.stderr)

    def test_numbers_take_all_columns_of_their_fields(self):
        thermo = "{model: NASA7, temperature-ranges: [298.154321, 1234.567, 3456.78912], data: [[2.5, 0, 0, 0, 0, 1, 1.0], [2.5, 0, 0, 0, 0, 1, 1.0]]}"
        transport = "{model: gas, geometry: atom, well-depth: 123.456789, diameter: 3.12345678, dipole: 1.12345678, polarizability: 2.12345678, rotational-relaxation: 4.12345678}"
        directory = self.run_import(mechanism(gas=GAS + [species("X", "{Ar: 1}", thermo, transport)])).directory
        self.assertIn("\nX                       AR  1               G 298.1543213456.789121234.567     1\n", (directory / "THERMO").read_text())
        self.assertIn("\nX        0    39.948123.4567893.123456781.123456782.123456784.12345678\n", (directory / "MOLNEW").read_text())

    def test_a_density_gives_the_pressure(self):
        result = self.run_import(mechanism(phase=PHASE.replace("P: 1 bar", "D: 1.2826 kg/m^3").replace("H2: 1, ", "")))
        pressures = [float(line.split()[1]) for line in (result.directory / "INP").read_text().splitlines() if line.startswith("P ")]
        self.assertAlmostEqual(pressures[0], 1.2826 * 8.3143 * 300 / 0.0319988 / 1e5, 6)

    def test_names_given_twice_are_refused(self):
        partner = "- {equation: 2 O + M = O2 + M, rate-constant: [1e17, 0, 0], efficiencies: {AR: 2, AR: 3}}\n"
        for text, name in [(mechanism(partner), "AR"), (mechanism(gas=GAS + [species("X", "{C: 1, C: 2}")]), "C"), (mechanism() + "reactions: []\n", "reactions"),
                           (mechanism(phase=PHASE.replace("O2: 1}", "O2: 1, O2: 3}")), "O2"), (mechanism(PLAIN.replace("b: 2.7", "b: 2.7, b: 2.8")), "b")]:
            self.refused(text, says=f"'{name}' is given twice")

    def test_what_changes_nothing_comes_in(self):
        rates = "type: falloff, high-P-rate-constant: [1e13, 0, 0], low-P-rate-constant: [1e18, 0, 0]"
        for reaction in ("equation: O + H2 => H + OH, rate-constant: [1e10, 0, 0], orders: {O: 1, H2: 1.0}", f"equation: 2 O (+AR) = O2 (+AR), {rates}, efficiencies: {{AR: 1}}",
                         "equation: 2 O + AR = O2 + AR, type: three-body, rate-constant: [1e17, 0, 0], efficiencies: {AR: 1.0}, default-efficiency: 0"):
            self.assertEqual(self.run_import(mechanism(f"- {{{reaction}}}\n")).returncode, 0, reaction)
        for reaction in (f"equation: 2 O (+AR) = O2 (+AR), {rates}, efficiencies: {{AR: 0.5}}", "equation: 2 O + AR = O2 + AR, type: three-body-Arrhenius, rate-constant: [1e17, 0, 0], efficiencies: {ar: 2}"):
            self.good(mechanism(f"- {{{reaction}}}\n"))

    def test_files_are_never_written_over(self):
        first = self.run_import(mechanism())
        again = lambda *arguments: subprocess.run([PROGRAM, "m.yaml", *arguments], cwd=first.directory, capture_output=True, text=True)
        self.assertEqual(again().returncode, 2)
        self.assertIn("is there already", again().stderr)
        (first.directory / "INP").write_text((first.directory / "INP").read_text().replace("300.0", "310.0"))
        self.assertEqual(again("--force").returncode, 0)
        self.assertIn("310.0", (first.directory / "INP").read_text())
        before = {name: (first.directory / name).read_text() for name in ("MEC", "THERMO", "MOLNEW")}
        (first.directory / "none.yaml").write_text(mechanism("[]"))
        emptied = subprocess.run([PROGRAM, "none.yaml", "--force"], cwd=first.directory, capture_output=True, text=True)
        self.assertIn("no reactions to take the place", emptied.stderr)
        (first.directory / "m.yaml").write_text(mechanism(PLAIN.replace("2.7", "2.8")))
        os.remove(first.directory / "THERMO")
        os.mkdir(first.directory / "THERMO")
        self.assertEqual(again("--force").returncode, 2)  # all files or none
        os.rmdir(first.directory / "THERMO")
        (first.directory / "THERMO").write_text(before["THERMO"])
        self.assertEqual(again("--force", "--transport", "MOLNEW").returncode, 2)  # an input is no output
        self.assertEqual(before, {name: (first.directory / name).read_text() for name in before})
        (first.directory / "INP").write_text((first.directory / "INP").read_text().replace("H2O ", "XX  "))
        self.assertIn("does not fit the new files", again("--force").stdout)
        for arguments in (["absent.yaml"], [], ["m.yaml", "--unknown"], ["m.yaml", "--output", "MEC/x", "--force"], ["."]):
            result = subprocess.run([PROGRAM, *arguments], cwd=first.directory, capture_output=True, text=True, timeout=30)
            self.assertEqual(result.returncode, 2, (arguments, result.stderr))
        os.mkfifo(first.directory / "pipe")
        self.assertEqual(subprocess.run([PROGRAM, "pipe"], cwd=first.directory, capture_output=True, timeout=30).returncode, 2)

    def test_texts_that_are_no_mechanism(self):
        texts = [b"", b"- a\n- b", b"{", b"a: [", b"phases: 1", b"phases: []", b"phases: [{}]", b"\xff\xfe\x00", b"a: &a [*a]", b"[" * 10000,
                 b"phases: &p\n- name: gas\n  thermo: ideal-gas\n  species: *p\n", b"a: 1\n---\nb: 2", b"units: [1]\nphases: [{name: g, thermo: ideal-gas}]",
                 b"x: " + b"A" * 100000, "phases: \u001b[31m".encode()]
        for text in texts:
            result = self.run_import(text)
            self.assertIn(result.returncode, (1, 2), text[:40])
            self.assertNotIn("\x1b", result.stderr)
        # In time and memory in proportion to the file, with a message of a sentence.
        aliases = "a0: &a0 [x, x]\n" + "".join(f"a{i}: &a{i} [{', '.join(9 * [f'*a{i - 1}'])}]\n" for i in range(1, 19))
        for text, says in [(",", "no mapping of sections"), ("units: &u {units: *u}", "within what it stands for"), (aliases, "far more here"),
                           (mechanism(phase=PHASE.replace("all", "[" + 3000 * "{reactions: all}, " + "]")), "'reactions' comes twice"),
                           (mechanism(phase=PHASE.replace("ideal-gas", "A" * 5000000)), "more than 65536 characters"),
                           (mechanism(phase=PHASE + "  rate-multipliers: {1e300: 2}\n"), "no number of a reaction"),
                           (mechanism(PLAIN.replace("3.87e+04", "1e300"), phase=PHASE + "  rate-multipliers: {default: 1e300}\n"), "too large"),
                           (mechanism(phase=PHASE.replace("  kinetics", "  elements: [" + ", ".join(f"E{i}" for i in range(4000)) + "]\n  kinetics"), gas=[species(f"S{i}", f"{{E{i}: 1}}") for i in range(4000)],
                                      more="elements:\n" + "".join(f"- {{symbol: E{i}, atomic-weight: 1}}\n" for i in range(4000))), "'E0' is not an element")]:
            result = self.run_import(text)
            self.assertEqual(result.returncode, 1, says)
            self.assertIn(says, result.stderr)
            self.assertLess(len(result.stderr), 200000)
        shown = self.run_import(mechanism(phase=PHASE.replace("gas\n", '"g\\ea\\ns"\n', 1)), "--phase", "g\x1ba\ns")
        self.assertEqual(shown.returncode, 0, shown.stderr)
        self.assertIn("gas phase g<U+001B>a<U+000A>s: 7 species", shown.stdout)
        # Whatever is changed: an orderly end, and never a success without files.
        base = (EXAMPLE / "hydrogen.yaml").read_bytes()
        random.seed(1)
        for _ in range(150):
            text = bytearray(base)
            for _ in range(random.choice((1, 1, 3))):
                at = random.randrange(len(text))
                text[at:at + random.choice((0, 1, 1, 7))] = random.choice((b"", b":", b"[", b"}", b"\n", b"-", b"0", b"1e400", b"M", b" + ", b"'", b"&a ", b"\xc3"))
            result = self.run_import(bytes(text), *random.choice(((), ("--surface", "platinum"), ("--skip-unsupported",))))
            self.assertIn(result.returncode, (0, 1), result.stderr)
            self.assertEqual(result.returncode == 0, bool(result.MEC) and "error" not in result.stderr, result.stderr)


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *sys.argv[4:]])
