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
R_TRUE = 8.31446261815324
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
        return float(number) * factor(unit) * (1 if "mol" in unit else 6.02214076e23) * R / R_TRUE

    def value(self, text, usual):
        number, _, unit = text.partition(" ")
        return float(number) * (factor(unit) if unit else usual)


class Mechanism:
    """The reactions and species of one or two phases, with the units in which each was written."""

    def __init__(self, path, names):
        self.documents, self.species, self.reactions, self.bulk = {}, {}, {}, set()
        root = self.load(path)
        phases = {p["name"]: p for p in root["phases"]}
        solids = [n for n in names if n for n in phases[n].get("adjacent-phases", []) if phases[n]["thermo"] == "fixed-stoichiometry"]
        for name in [*filter(None, names), *solids]:
            phase, own = phases[name], []
            units = Units(None, root.get("units"))
            if "site-density" in phase:  # mol/m2
                self.site_density = units.value(phase["site-density"], factor(units["quantity"]) / factor(units["length"]) ** 2)
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
                        self.bulk |= {species} if name in solids else set()
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
            names += [name] * math.ceil(float(count[0]) if count else 1)
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
        self.globals = []
        at = next((i for i, line in enumerate(lines) if line.endswith(" COMPLEX REACTIONS")), None)
        for k in range(int(lines[at][:5]) if at else 0):
            stoichiometry, numbers, orders, rate = ([float(x) for x in lines[at + 1 + 4 * k + j][12:].split()] for j in range(4))
            names = [self.names[int(n) - 1] if n else "" for n in numbers]
            self.globals.append((list(zip(names, stoichiometry, orders))[:3], list(zip(names, stoichiometry))[3:], rate))
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
        h0, s0, cp0 = (units.value(thermo.get(k, "0"), molar) / R_TRUE for k in ("h0", "s0", "cp0"))
        return [cp0, 0, 0, 0, 0, h0 - cp0 * T0, s0 - cp0 * math.log(T0)]
    limits = [units.value(x, 1) for x in thermo["temperature-ranges"]]
    data = thermo["data"][-1 if len(thermo["data"]) == 2 and T >= limits[1] else 0]
    return [float(x) for x in data]


def other_thermo(thermo, units, T):
    """cp, h, s times the ratio of the gas constants."""
    molar = factor(units["energy"]) / factor(units["quantity"])
    if thermo["model"] == "piecewise-Gibbs":
        table = sorted((float(t), units.value(g, molar)) for t, g in thermo["data"].items())
        t, h, cp = 298.15, units.value(thermo["h0"], molar), 0.0
        s = (h - dict(table)[298.15]) / 298.15
        for t2, g in [x for x in table if x[0] > 298.15]:
            cp = (g - h + t2 * s) / (t2 - t - t2 * math.log(t2 / t))
            if T <= t2:
                break
            h, s, t = h + cp * (t2 - t), s + cp * math.log(t2 / t), t2
        return [x * R / R_TRUE for x in (cp, h + cp * (T - t), s + cp * math.log(T / t))]
    limits = [float(x) for x in thermo["temperature-ranges"]]
    a = [float(x) for x in thermo["data"][sum(T >= t for t in limits[1:-1])]]
    if thermo["model"] == "Shomate":
        A, B, C, D, E, F, G = a
        t = T / 1000
        return [x * R / R_TRUE for x in (A + B * t + C * t * t + D * t ** 3 + E / t / t, 1000 * (A * t + B * t * t / 2 + C * t ** 3 / 3 + D * t ** 4 / 4 - E / t + F),
                                         A * math.log(t) + B * t + C * t * t / 2 + D * t ** 3 / 3 - E / (2 * t * t) + G)]
    return [R * sum(c * T ** (k - 2) for k, c in enumerate(a[:7])),
            R * (-a[0] / T + a[1] * math.log(T) + sum(c * T ** (k + 1) / (k + 1) for k, c in enumerate(a[2:7])) + a[7]),
            R * (-a[0] / T ** 2 / 2 - a[1] / T + a[2] * math.log(T) + sum(c * T ** k / k for k, c in enumerate(a[3:7], 1)) + a[8])]


class Proof:
    def __init__(self, path, directory, phase, surface=None, pressure=1e5):
        self.mechanism, self.store = Mechanism(path, (phase, surface)), Store(os.path.join(directory, "fort.3"))
        self.pressure = pressure  # Pa, of tables
        self.worst, self.deviations, self.thermo_deviations, self.jump = {}, {}, {}, 0.0  # of what was fitted, by its name: the fraction
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

    def refitted(self, name, thermo, units):
        """Of ranges that were fitted, the largest deviations and the jump at the switch."""
        Ts = [300 + 10 * i for i in range(221)]
        for T in Ts:
            for what, wanted, (found, _) in zip(("cp", "h", "s"), other_thermo(thermo, units, T), self.store.properties(name, T)):
                size = abs(found - wanted) / (R * T) if what == "h" else abs(found / wanted - 1)
                self.thermo_deviations[what, name] = max(size, self.thermo_deviations.get((what, name), 0))
        T = self.store.fits[name][15]
        for (below, _), (above, _) in zip(self.store.properties(name, T * (1 - 1e-9)), self.store.properties(name, T)):
            self.jump = max(self.jump, abs(below / above - 1))

    def thermo(self):
        for name in self.store.names:
            entry, units, _ = self.mechanism.species[name]
            if entry["thermo"]["model"] in ("NASA9", "Shomate", "piecewise-Gibbs"):
                self.refitted(name, entry["thermo"], units)
                continue
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
        stored, known = list(stored), set(self.store.names) | self.mechanism.bulk
        for entry, units in self.mechanism.reactions[phase]:
            (educts, partner), (products, _) = sides(entry["equation"])
            educts, products = ([next((k for k in known if k.lower() == n.lower()), n) for n in side] for side in (educts, products))
            if not set(educts + products) <= known:
                continue
            solid = [n for n in educts + products if n in self.mechanism.bulk]
            written = [[n for n in side if n not in self.mechanism.bulk] for side in (educts, products)]
            where = entry["equation"]
            if not any(self.mechanism.species[n][2] for n in educts) and ("orders" in entry or "0.5" in where):
                self.global_reaction(entry, units, *self.store.globals.pop(0), where)
                continue
            reaction = stored.pop(0)
            self.same_species(reaction, *written, where)
            k = self.rate(entry, units, written[0], partner, reaction, where)
            if " => " not in where:
                own = self.mechanism.species[written[0][0]][2] or any(self.mechanism.species[n][2] for n in written[0])
                own = own and (reaction["stick"] or "coverage-dependencies" in entry or bool(solid))
                self.same_species(stored[0], *written[::-1], where)
                self.reverse(educts, products, k, reaction, stored.pop(0), own, where)
        assert not stored, f"reactions of the store file that the YAML file does not have: {stored}"

    def global_reaction(self, entry, units, educts, products, rate, where):
        net, wanted = {}, {}
        for sign, side in ((-1, educts), (1, products)):
            for name, coefficient, *_ in side:
                net[name] = net.get(name, 0) + sign * coefficient
        for sign, side in zip((-1, 1), re.split(" => ", where)):
            for term in side.split(" + "):
                *count, name = term.split()
                wanted[name] = sign * float(count[0] if count else 1)
        assert {n: c for n, c in net.items() if n and c} == wanted, where
        orders = {n: -c for n, c in wanted.items() if c < 0} | {n: float(o) for n, o in entry.get("orders", {}).items()}
        assert {n: o for n, _, o in educts if n} == orders, where
        A, b, E = self.arrhenius(entry["rate-constant"], units, (sum(orders.values()), 0), False)
        for T in (300.0, 1000.0, 2500.0):
            ratio = rate[0] * T ** rate[1] * math.exp(-rate[2] / R / T) / (A * T ** b * math.exp(-E / R / T))
            self.close("global rate", ratio, 1, 0.012, where)  # E has five columns

    @staticmethod
    def same_species(reaction, educts, products, where):
        found = [[n for n in reaction[side] if isinstance(n, str)] for side in ("educts", "products")]
        assert found == [sorted(educts), sorted(products)], f"{where}: the store file has {found}"

    def arrhenius(self, rate, units, orders, on_surface):
        if isinstance(rate, dict):
            units = Units(units, rate.get("units"))
            rate = [rate[k] for k in ("A", "b", "Ea")]
        return units.value(rate[0], units.rate(*orders, on_surface)), float(rate[1]), units.energy(rate[2])

    def compare_arrhenius(self, found, wanted, where):
        for what, a, b in zip(("A", "b", "E"), found, wanted):
            self.close(what, a, b, 6e-5 * abs(b), where)

    def orders(self, entry, educts, partner):
        """Sums of the orders in gas and surface species."""
        orders = {n: educts.count(n) for n in educts}
        orders.update({n: float(o) for n, o in entry.get("orders", {}).items()})
        of = lambda kind: sum(o for n, o in orders.items() if self.mechanism.species[n][2] == kind)
        return of(False) + bool(partner), of(True)

    def pressure_law(self, entry, units, orders, on_surface):
        """k(T) of a table over pressure or of Chebyshev polynomials."""
        P = self.pressure
        if "data" in entry:
            (T0, T1), (P0, P1) = ([units.value(x, f) for x in entry[k]] for k, f in (("temperature-range", 1), ("pressure-range", factor(units["pressure"]))))
            p = (2 * math.log10(P) - math.log10(P0) - math.log10(P1)) / (math.log10(P1) - math.log10(P0))
            c = [[float(x) for x in row] for row in entry["data"]]

            def k(T):
                t = (2 / T - 1 / T0 - 1 / T1) / (1 / T1 - 1 / T0)
                cheb = lambda n, x: math.cos(n * math.acos(x)) if abs(x) <= 1 else (1 if x > 0 else (-1) ** n) * math.cosh(n * math.acosh(abs(x)))
                return units.rate(*orders, on_surface) * 10 ** sum(c[i][j] * cheb(i, t) * cheb(j, p) for i in range(len(c)) for j in range(len(c[0])))
            return k
        table = {}
        for row in entry["rate-constants"]:
            table.setdefault(units.value(row["P"], factor(units["pressure"])), []).append(self.arrhenius(row, units, orders, on_surface))
        at = lambda P, T: sum(A * T ** b * math.exp(-E / R / T) for A, b, E in table[P])
        below, above = max([p for p in table if p <= P], default=min(table)), min([p for p in table if p > P], default=max(table))
        part = math.log(P / below) / math.log(above / below) if below < P < above else 0
        return lambda T: at(below, T) ** (1 - part) * at(above, T) ** part

    def sticking(self, entry, units, educts, reaction, where):
        """k(T) of a sticking reaction, and whether it is Arrhenius's."""
        gamma = entry["sticking-coefficient"]
        g, b, E = [gamma[k] for k in ("A", "b", "Ea")] if isinstance(gamma, dict) else gamma
        g, b, E = float(g), float(b), units.energy(E)
        wise = entry.get("Motz-Wise") == "true"
        mass = self.store.mass[next(n for n in educts if n == entry.get("sticking-species", n) and not self.mechanism.species[n][2])]
        sites = self.mechanism.site_density ** self.orders(entry, educts, None)[1]
        if reaction["stick"]:
            self.close("sticking", reaction["A"], g / (1 - g / 2) if wise else g, 6e-5 * reaction["A"], where)

        def k(T):
            value = g * T ** b * math.exp(-E / R / T)
            return (value / (1 - value / 2) if wise else value) * math.sqrt(R * T / (2 * math.pi * mass)) / sites
        return k, not wise

    def rate(self, entry, units, educts, partner, reaction, where):
        """Compares the rate; the one that is meant as a function of the temperature, in m, mol and s."""
        on_surface = any(self.mechanism.species[n][2] for n in educts)
        orders = self.orders(entry, educts, partner)
        found, exact = (reaction["A"], reaction["b"], reaction["E"]), True
        if "low-P-rate-constant" in entry:
            self.falloff(entry, units, educts, partner, reaction, where)
            k = None
        elif "sticking-coefficient" in entry:
            k, exact = self.sticking(entry, units, educts, reaction, where)
        elif "rate-constant" in entry:
            A, b, E = self.arrhenius(entry["rate-constant"], units, orders, on_surface)
            own = 1 if partner else math.prod(float(x) for x in entry.get("efficiencies", {}).values())
            k = lambda T: own * A * T ** b * math.exp(-E / R / T)
        else:
            partner, orders = None, self.orders(entry, educts, None)
            k, exact = self.pressure_law(entry, units, orders, on_surface), False
        coverage = {n: (d if isinstance(d, list) else [d[x] for x in "amE"]) for n, d in entry.get("coverage-dependencies", {}).items()}
        power = 0
        for name, order in entry.get("orders", {}).items():
            if float(order) != educts.count(name):
                power = float(order) - educts.count(name)
                coverage[name] = [*coverage.get(name, "000")]
                coverage[name][1] = str(float(coverage[name][1]) + power)
        for name, (a, m, of_coverage) in coverage.items():
            for x, y in zip(reaction["VT"], (float(a), float(m), units.energy(of_coverage))):
                self.close("coverage", x, y, 6e-5 * abs(y), where)
        if k and not reaction["stick"]:
            factor_ = self.mechanism.site_density ** power if power else 1
            self.fitted(found, lambda T: factor_ * k(T), exact, where)
        if partner:
            number = next(n for n in reaction["educts"] if not isinstance(n, str))
            usual = 0 if partner != "M" else float(entry.get("default-efficiency", 1))
            given = {partner: 1, **entry.get("efficiencies", {})}
            for name, efficiency in zip(self.store.names, self.store.rows[number - 1]):
                self.close("efficiency", efficiency, float(given.get(name, usual)), 6e-5 * abs(efficiency), where)
        return k

    def fitted(self, found, k, exact, where):
        A, b, E = found
        ratio = lambda T: abs(A * T ** b * math.exp(-E / R / T) / k(T) - 1)
        if exact:
            for T in (300.0, 1000.0, 2500.0):
                self.close("A", ratio(T), 0, 6e-5 * (2 + abs(b) * math.log(T) + abs(E) / R / T), where)
        else:
            self.deviations[where] = max(ratio(300 + 10 * i) for i in range(221))

    def falloff(self, entry, units, educts, partner, reaction, where):
        orders = self.orders(entry, educts, None)
        A, b, E = self.arrhenius(entry["high-P-rate-constant"], units, orders, False)
        # The store file counts the partner of a falloff reaction in the order of its high-pressure limit too.
        self.compare_arrhenius((reaction["A"], reaction["b"], reaction["E"]), (A * 1e-6, b, E), where)
        A, b, E = self.arrhenius(entry["low-P-rate-constant"], units, (orders[0] + 1, 0), False)
        A, (found_A, found_b, found_E) = A * 1e6 ** len(educts), reaction["low"]
        for T in (300.0, 1000.0, 2500.0):
            ratio = found_A / A * T ** (found_b - b) * math.exp((E - found_E) / R / T)
            self.close("low-pressure limit", ratio, 1, (6e-5 if len(str(b)) <= 6 else 2e-3) * (2 + abs(b) * math.log(T) + abs(E) / R / T), where)
        Troe = {"T2": 0, **entry["Troe"]} if "Troe" in entry else {}
        if Troe and not float(Troe["T2"]):
            Troe["T2"] = 1e30
        for a, key in zip(reaction["Troe"], ("A", "T3", "T1", "T2")):
            self.close("Troe", a, float(Troe.get(key, 0)), 6e-3 * abs(a), where)

    def reverse(self, educts, products, k, forward, reverse, own, where):
        """The stored reverse goes through the values from equilibrium at the two temperatures of its fit."""
        if forward["form"] and not own:
            return
        if not own:
            k = lambda T: forward["A"] * T ** forward["b"] * math.exp(-forward["E"] / R / T)
        written = [n for n in educts if n not in self.mechanism.bulk]
        T1 = max(self.store.fits[n][14] for n in written) + 400
        T2 = min(self.store.fits[n][15] for n in written) + 1500
        signs = [(n, 1) for n in products if n not in self.mechanism.bulk] + [(n, -1) for n in written]
        stored = lambda T: reverse["A"] * T ** reverse["b"] * math.exp(-reverse["E"] / R / T)

        def wanted(T):
            Kc = math.exp(self.gibbs(educts, T) - self.gibbs(products, T))
            for name, sign in signs:
                Kc *= (self.mechanism.site_density if self.mechanism.species[name][2] else BAR / (R * T)) ** sign
            return k(T) / Kc
        for T in (T1, T2):
            open_ = 1.2e-4 * (1 + abs(reverse["E"]) / (R * T) + abs(forward["E"]) / (R * T))
            self.close("the reverse rate", stored(T) / wanted(T), 1, open_, f"{where} at {T} K")
        if own:
            assert reverse["VT"] == forward["VT"], where
            self.deviations[f"the reverse of {where}"] = max(abs(stored(300 + 10 * i) / wanted(300 + 10 * i) - 1) for i in range(221))


def main():
    proof = Proof(*sys.argv[1:])
    for what, count in proof.compared.items():
        size, where = proof.worst[what]
        print(f"{what}: {count} values, the largest difference {size:.2f} of what the digits leave open ({where})")


if __name__ == "__main__":
    main()
