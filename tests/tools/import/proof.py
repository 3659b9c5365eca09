"""Compares a store file with the mechanism in YAML that it was made from: rate constants, reverse rates from
equilibrium, efficiencies, and heat capacity, enthalpy and entropy of every species. Knows nothing of the
program but the layout of the store file.

    proof.py FILE.yaml DIRECTORY PHASE [SURFACE]   says how much was compared, and the largest differences
"""
import math
import os
import re
import sys

import yaml

R = 8.3143  # J/(mol K), of the solver
BAR, ATM = 1e5, 101325.0
BASE = {"g": 1e-3, "m": 1, "s": 1, "min": 60, "hr": 3600, "K": 1, "mol": 1, "gmol": 1, "mole": 1, "molec": 1 / 6.02214076e23,
        "J": 1, "cal": 4.184, "erg": 1e-7, "eV": 1.602176634e-19, "Pa": 1, "atm": ATM, "bar": BAR, "1": 1, "L": 1e-3, "cc": 1e-6}
PREFIX = {"k": 1e3, "M": 1e6, "c": 1e-2, "m": 1e-3, "u": 1e-6, "n": 1e-9}


def factor(unit):
    """SI value of a unit: "cm^3/mol/s"."""
    value, sign = 1.0, 1
    for part in re.split(r"([*/])", unit.replace(" ", "")):
        if part in "*/":
            sign = -1 if part == "/" else 1
            continue
        name, _, power = part.partition("^")
        base = BASE[name] if name in BASE else PREFIX[name[0]] * BASE[name[1:]]
        value *= base ** (sign * float(power or 1))
    return value


class Units(dict):
    def __init__(self, outer=None, given=None):
        super().__init__(outer or {"length": "m", "quantity": "kmol", "time": "s", "energy": "J", "pressure": "Pa"})
        self.update(given or {})

    def rate(self, gas, surface, on_surface):
        c, area = factor(self["quantity"]) / factor(self["length"]) ** 3, factor(self["quantity"]) / factor(self["length"]) ** 2
        return (area if on_surface else c) / factor(self["time"]) / c ** gas / area ** surface

    def energy(self, text):  # J/mol
        number, _, unit = text.partition(" ")
        unit = unit or self.get("activation-energy") or self["energy"] + "/" + self["quantity"]
        if unit == "K":
            return float(number) * R
        return float(number) * factor(unit) * (1 if "mol" in unit else 6.02214076e23)

    def value(self, text, usual):
        number, _, unit = text.partition(" ")
        return float(number) * (factor(unit) if unit else usual)


class Mechanism:
    """The reactions and species of one or two phases, with the units in which each was written."""

    def __init__(self, path, names):
        self.documents, self.species, self.reactions = {}, {}, {}
        root = self.load(path)
        phases = {p["name"]: p for p in root["phases"]}
        for name in filter(None, names):
            phase, own = phases[name], []
            selected = phase.get("species", "all")
            for item in [{"species": "all"}] if selected == "all" else selected if isinstance(selected[0], dict) else [{"species": selected}]:
                for section, chosen in item.items():
                    by_name = {e["name"]: (e, u) for e, u in self.section(path, section)}
                    for species in by_name if chosen == "all" else chosen:
                        entry, units = by_name[species]
                        declared = phase.get("elements")
                        if declared and not set(entry["composition"]) <= set(declared):
                            continue
                        self.species[species] = (entry, units, phase["thermo"] == "ideal-surface")
            reactions = phase.get("reactions", "all")
            for item in ["reactions"] if isinstance(reactions, str) else reactions:
                section = item if isinstance(item, str) else next(iter(item))
                own += self.section(path, section)
            self.reactions[name] = own

    def load(self, path):
        if path not in self.documents:
            with open(path) as file:
                self.documents[path] = yaml.load(file, yaml.BaseLoader)
        return self.documents[path]

    def section(self, path, name):
        file, _, section = name.rpartition("/")
        root = self.load(os.path.join(os.path.dirname(path), file) if file else path)
        units, result = Units(None, root.get("units")), []
        for entry in root[section]:
            if list(entry) == ["units"]:
                units = Units(units, entry["units"])
            else:
                result.append((entry, Units(units, entry.get("units"))))
        return result


def sides(equation):
    """[(names, partner), (names, partner)], each name as often as it counts."""
    result = []
    for side in re.split(r" (?:<=>|=>|=) ", re.sub(r"\s*#.*", "", equation)):
        partner = re.search(r"\(\+\s*([^\s]+)\)(?=\s|$)", side)
        names = []
        for term in re.sub(r"\(\+\s*([^\s]+)\)(?=\s|$)", "", side).strip().split(" + "):
            *count, name = term.split()
            names += [name] * int(count[0] if count else 1)
        three_body = "M" in names
        result.append(([n for n in names if n != "M"], "M" if three_body else partner.group(1) if partner else None))
    return result


class Store:
    def __init__(self, path):
        with open(path) as file:
            lines = file.read().split("\n")
        self.names, self.mass, self.fits = [], {}, {}
        at = 0
        for counted in (1, 2):
            begin = [i for i, line in enumerate(lines) if line.endswith(" SPECIES ")][counted - 1:counted]
            if not begin or int(lines[begin[0]][:5]) == 0:
                break
            n = int(lines[begin[0]][:5])
            at = next(i for i in range(begin[0], len(lines)) if lines[i].startswith(" NSYMB"))
            rows = -(-n // 5)
            text = lines[at][12:] + "".join(line.ljust(50) for line in lines[at + 1:at + rows])
            names = [text[10 * k:10 * k + 8].strip() for k in range(n)]
            masses = self.numbers(lines, at + rows, n, 20)
            at = next(i for i in range(at, len(lines)) if lines[i].startswith(" HL,HH("))
            for k, name in enumerate(names):
                first, second, third = lines[at + 3 * k:at + 3 * k + 3]
                values = [float(x) for line, skip in ((first[12:], 0), (second, 0), (third, 0)) for x in re.findall(r"-?\d\.\d+[E+-]?[+-]\d+", line)]
                self.fits[name], self.mass[name] = values, masses[k]
            self.names += names
        self.reactions = []
        for i, line in enumerate(lines):
            if line.endswith(" ELEMENTARY REACTIONS"):
                self.reactions.append(self.read_reactions(lines, i, len(self.reactions)))
        self.rows = []
        for i, line in enumerate(lines):
            if line.startswith(" EFF."):
                self.rows.append(self.numbers(lines, i, self.gas, 11))

    @staticmethod
    def numbers(lines, at, n, width):
        text = lines[at][12:] + "".join(line.ljust(5 * (width + 1)) for line in lines[at + 1:at - (-n // 5)])
        return [float(text[(width + 1) * k:(width + 1) * k + width]) for k in range(n)]

    def read_reactions(self, lines, at, surface):
        count, slots = int(lines[at][:5]), 12 if surface else 6
        step = 3 if surface else 4
        if not surface:
            self.gas = int(next(line for line in lines if line.endswith(" SPECIES "))[:5])
        known = self.names if surface else self.names[:self.gas]
        result = []
        for k in range(count):
            r = lines[at + 2 + step * k:at + 2 + step * (k + 1)]
            mat = [int(r[0][6 * i:6 * i + 6]) for i in range(slots)]
            rate = r[1][39:] if surface else r[0][39:]
            form = r[2] if surface else r[1]
            A, b, E = (float(rate[12 * i:12 * i + 11]) for i in range(3))
            half = slots // 2

            def name(number):
                return known[number - 1] if number <= len(known) else number - len(known)

            result.append({"educts": sorted((name(m) for m in mat[:half] if m), key=str),
                           "products": sorted((name(m) for m in mat[half:] if m), key=str),
                           "A": A, "b": b, "E": E, "form": int(form[:6]),
                           "stick": int(form[6:12]) if surface else 0,
                           "VT": [float(form[39 + 12 * i:39 + 12 * i + 11]) for i in range(3)],
                           "low": [float(x) for x in re.findall(r"-?\d\.\d+E[+-]\d+", r[2])] if not surface else [],
                           "Troe": [float(x) for x in re.findall(r"-?\d\.\d+E[+-]\d+", r[3])] if not surface else []})
        return result

    def properties(self, name, T):
        """cp, h, s per mole, and how large the terms are that they are the sums of."""
        values = self.fits[name]
        a = [x * self.mass[name] for x in (values[:7] if T < values[15] else values[7:14])]
        return sums([x / R for x in a], T)


def sums(a, T):
    cp = [a[k] * T ** k for k in range(5)]
    h = [a[k] * T ** (k + 1) / (k + 1) for k in range(5)] + [a[5]]
    s = [a[0] * math.log(T)] + [a[k] * T ** k / k for k in range(1, 5)] + [a[6]]
    return [(R * sum(x), R * sum(abs(t) for t in x)) for x in (cp, h, s)]


def coefficients(entry, units, T):
    thermo = entry["thermo"]
    units = Units(units, thermo.get("units"))
    if thermo["model"] == "constant-cp":
        molar = factor(units["energy"]) / factor(units["quantity"])
        T0 = units.value(thermo.get("T0", "298.15"), 1)
        h0, s0, cp0 = (units.value(thermo.get(k, "0"), molar) / R for k in ("h0", "s0", "cp0"))
        return [cp0, 0, 0, 0, 0, h0 - cp0 * T0, s0 - cp0 * math.log(T0)]
    limits = [units.value(x, 1) for x in thermo["temperature-ranges"]]
    data = thermo["data"][-1 if len(thermo["data"]) == 2 and T >= limits[1] else 0]
    return [float(x) for x in data]


class Proof:
    def __init__(self, path, directory, phase, surface=None):
        self.mechanism, self.store = Mechanism(path, (phase, surface)), Store(os.path.join(directory, "fort.3"))
        self.worst = {}
        self.compared = {}
        self.thermo()
        for k, name in enumerate(filter(None, (phase, surface))):
            self.rates(name, self.store.reactions[k])

    def close(self, what, found, wanted, tolerance, where):
        """tolerance: what the digits of the store file leave open."""
        size = abs(found - wanted) / tolerance if tolerance else float(found != wanted)
        self.compared[what] = self.compared.get(what, 0) + 1
        self.worst[what] = max(self.worst.get(what, (0, "")), (size, where))
        assert size <= 1, f"{where}: {what} {found} in the store file, {wanted} in the YAML file"

    def thermo(self):
        for name in self.store.names:
            entry, units, _ = self.mechanism.species[name]
            for T in (300.0, 999.0, 1001.0, 2500.0):
                wanted = sums(coefficients(entry, units, T), T)
                for what, (value, size), (found, _) in zip(("cp", "h", "s"), wanted, self.store.properties(name, T)):
                    self.close(what, found, value, 6e-5 * size + 1e-12, f"{name} at {T} K")

    def gibbs(self, names, T):
        """Sum of g/(RT) at 1 bar, as the coefficients stand."""
        total = 0.0
        for name in names:
            entry, units, _ = self.mechanism.species[name]
            _, (h, _), (s, _) = sums(coefficients(entry, units, T), T)
            total += h / (R * T) - s / R
        return total

    def rates(self, phase, stored):
        stored = list(stored)
        for entry, units in self.mechanism.reactions[phase]:
            (educts, partner), (products, _) = sides(entry["equation"])
            if not set(educts + products) <= set(self.store.names) or "orders" in entry:
                continue
            reaction = stored.pop(0)
            where = entry["equation"]
            found = [n for n in reaction["educts"] if isinstance(n, str)], [n for n in reaction["products"] if isinstance(n, str)]
            assert found == (sorted(educts), sorted(products)), f"{where}: the store file has {found}"
            self.rate(entry, units, educts, partner, reaction, where)
            if " => " not in where:
                self.reverse(educts, products, reaction, stored.pop(0), where)
        assert not stored, f"reactions of the store file that the YAML file does not have: {stored}"

    def arrhenius(self, rate, units, surface):
        if isinstance(rate, dict):
            units = Units(units, rate.get("units"))
            rate = [rate[k] for k in ("A", "b", "Ea")]
        gas = sum(1 for s in surface if not s)
        on_surface = any(surface)
        A = units.value(rate[0], units.rate(gas, len(surface) - gas, on_surface))
        return A, float(rate[1]), units.energy(rate[2])

    def compare_arrhenius(self, found, wanted, where):
        for what, a, b in zip(("A", "b", "E"), found, wanted):
            self.close(what, a, b, 6e-5 * abs(b), where)

    def rate(self, entry, units, educts, partner, reaction, where):
        stands = [self.mechanism.species[name][2] for name in educts]
        found = reaction["A"], reaction["b"], reaction["E"]
        if "sticking-coefficient" in entry:
            gamma = entry["sticking-coefficient"]
            self.close("sticking", reaction["A"], float((gamma if isinstance(gamma, list) else [gamma["A"]])[0]), 6e-5 * reaction["A"], where)
            return
        with_partner = stands + [False] * bool(partner)
        falloff = "low-P-rate-constant" in entry
        A, b, E = self.arrhenius(entry["high-P-rate-constant" if falloff else "rate-constant"], units, stands if falloff else with_partner)
        # The store file counts the partner of a falloff reaction in the order of its high-pressure limit too.
        self.compare_arrhenius(found, (A * (1e-6 if falloff else 1), b, E), where)
        if falloff:
            A, b, E = self.arrhenius(entry["low-P-rate-constant"], units, with_partner)
            found_A, found_b, found_E = reaction["low"]
            if len(str(b)) > 6:  # than the exponent has columns
                self.close("b of six columns", found_b, b, 10.0 ** (len(str(int(abs(b)))) + (b < 0) - 5), where)
                b = found_b
            self.compare_arrhenius((found_A, found_b, found_E), (A * 1e6 ** len(educts), b, E), where)
            Troe = entry.get("Troe", {})
            for a, key in zip(reaction["Troe"], ("A", "T3", "T1", "T2")):
                self.close("Troe", a, float(Troe.get(key, 0)), 6e-3 * abs(a), where)
        if partner:
            number = next(n for n in reaction["educts"] if not isinstance(n, str))
            usual = 0 if partner != "M" else float(entry.get("default-efficiency", 1))
            given = {partner: 1} if partner != "M" else entry.get("efficiencies", {})
            for name, efficiency in zip(self.store.names, self.store.rows[number - 1]):
                self.close("efficiency", efficiency, float(given.get(name, usual)), 6e-5 * abs(efficiency), where)
        for name, dependence in entry.get("coverage-dependencies", {}).items():
            a, m, E = [dependence[k] for k in "amE"] if isinstance(dependence, dict) else dependence
            for x, y in zip(reaction["VT"], (float(a), float(m), units.energy(E))):
                self.close("coverage", x, y, 6e-5 * abs(y), where)

    def reverse(self, educts, products, forward, reverse, where):
        """The stored reverse goes through the values from equilibrium at the two temperatures of its fit."""
        if forward["form"]:
            return
        numbers = [self.store.fits[n] for n in educts]
        T1 = max(f[14] for f in numbers) + 400
        T2 = min(f[15] for f in numbers) + 1500
        surface = [self.mechanism.species[n][2] for n in educts + products]
        if any(surface):
            return  # their amounts per area have no such reference
        dn = len(products) - len(educts)
        for T in (T1, T2):
            kf = math.log(abs(forward["A"])) + forward["b"] * math.log(T) - forward["E"] / (R * T)
            kr = math.log(abs(reverse["A"])) + reverse["b"] * math.log(T) - reverse["E"] / (R * T)
            Kc = -(self.gibbs(products, T) - self.gibbs(educts, T)) + dn * math.log(BAR / (R * T))
            open_ = 1.2e-4 * (1 + abs(reverse["E"]) / (R * T) + abs(forward["E"]) / (R * T))
            self.close("ln of the reverse rate", kr, kf - Kc, open_, f"{where} at {T} K")


def main():
    proof = Proof(*sys.argv[1:])
    for what, count in proof.compared.items():
        size, where = proof.worst[what]
        print(f"{what}: {count} values, the largest difference {size:.2f} of what the digits leave open ({where})")


if __name__ == "__main__":
    main()
