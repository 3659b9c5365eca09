"""Writes a mechanism in YAML, as varpre-export does, in CHEMKIN format, plainly or with what people do to such files."""
import random


class Style:
    """Each habit by chance, from a seed; none without one."""

    def __init__(self, seed=None):
        self.random = random.Random(seed) if seed is not None else None

    def __call__(self, chance=0.5):
        return self.random is not None and self.random.random() < chance

    def word(self, text):
        return text.lower() if self() else text

    def number(self, value, width=0):
        text = repr(float(value)).upper()
        if self(0.3):
            text = text.replace("E", "D")
        elif "E+" in text and self(0.3) and len(text) + 1 <= (width or 99):
            text = text.replace("E+", "+E")
        elif "E" not in text and text.startswith("0.") and self(0.3):
            text = text[1:]
        return text

    def comment(self, line):
        return line + " ! stöchiometrisch" if self(0.1) and "!" not in line else line

    def lines(self, lines):
        """What stands in the file."""
        text = "\n".join(self.comment(line) if len(line) < 60 else line for line in lines) + "\n"
        if self():
            text = text.replace("\n", "\r\n")
        return text.encode("latin-1" if self() else "utf-8")


def thermo_entry(species, style):
    thermo = species["thermo"]
    low, common, high = thermo["temperature-ranges"]
    elements = "".join(f"{symbol.upper():2}{count:3d}" for symbol, count in species["composition"].items())
    name = style.word(species["name"])
    lines = [f"{name:18}{'x 1/90' if style() else '':6}{elements:20}G{low:10.3f}{high:10.3f}{common:8.2f}"]
    numbers = [*thermo["data"][1], *thermo["data"][0]]
    for begin in (0, 5, 10):
        fields = []
        for x in numbers[begin:begin + 5]:
            field = f"{x:15.8E}"
            if style(0.2):
                field = field.replace("E+", "E ").replace("E-", "D-")
            fields.append(field)
        lines.append("".join(fields))
    if style(0.3):
        lines[3] = f"{lines[3]:60}{'1.0E+04':>15}"  # enthalpy over R, which nobody reads
    if style(0.1):
        return lines  # without card numbers
    shift = style.random.choice([0, 0, 1, 2]) if style.random else 0
    return [f"{line:{79 + shift}}{number}" for number, line in enumerate(lines, 1)]


def reaction(entry, style):
    rate = entry.get("rate-constant") or entry.get("high-P-rate-constant") or entry["sticking-coefficient"]
    equation = entry["equation"]
    if style():
        equation = equation.replace(" + ", "+").replace("<=>", style.random.choice(["=", "<=>"])).replace(" (+M)", "(+ M )")
    numbers = f"{style.number(rate['A'])}  {style.number(rate['b'])}\t{style.number(rate['Ea'])}"
    lines = [f"{equation} &", f"   {numbers}"] if style(0.1) else [f"{equation}   {numbers}"]
    further = []
    if entry.get("duplicate"):
        further.append(style.word("DUPLICATE" if style() else "DUP"))
    if "low-P-rate-constant" in entry:
        low = entry["low-P-rate-constant"]
        further.append(f"{style.word('LOW')} / {style.number(low['A'])} {style.number(low['b'])} {style.number(low['Ea'])} /")
    if "Troe" in entry:
        troe = entry["Troe"]
        further.append(style.word("TROE") + "/" + " ".join(style.number(troe[k]) for k in ("A", "T3", "T1", "T2") if k in troe) + "/")
    if "sticking-coefficient" in entry:
        further.append("STICK")
        if entry.get("Motz-Wise"):
            further.append("MWON")
    for name, dependence in entry.get("coverage-dependencies", {}).items():
        further.append(f"COV/{name} " + " ".join(style.number(dependence[k]) for k in "amE") + "/")
    efficiencies = [f"{style.word(name)} /{style.number(value)}/" for name, value in entry.get("efficiencies", {}).items()]
    if style() and efficiencies:
        efficiencies.insert(0, efficiencies[-1].split("/")[0] + "/99./")  # a later one counts
    if style.random:
        style.random.shuffle(further)
    lines += [f"  {text}" for text in further]
    step = style.random.randint(1, 4) if style.random else 20
    lines += [" ".join(efficiencies[i:i + step]) for i in range(0, len(efficiencies), step)]
    return lines


def chemkin_files(file, seed=None):
    """chem.inp, therm.dat, tran.dat and surf.inp (none without surface) of a mechanism."""
    style = Style(seed)
    gas, surface = file["phases"][0], next((p for p in file["phases"] if p["thermo"] == "ideal-surface"), None)
    elements = dict.fromkeys(e.upper() for phase in (gas, surface) if phase for e in phase["elements"])
    end = [] if style() else ["END"]
    chem = [style.word("ELEMENTS"), " ".join(elements), *end, style.word("SPECIES")]
    chem += ["  ".join(gas["species"][i:i + 6]) for i in range(0, len(gas["species"]), 6)] + end
    entries = [line for species in file["species"] for line in thermo_entry(species, style)]
    inside = style()  # the thermochemistry stands in chem.inp
    chem += ["THERMO ALL", "   300.000  1000.000  5000.000", *entries, "END"] if inside else []
    chem += [style.word("REACTIONS") + ("   KELVINS" if not style() else " MOLES kelvin")]
    chem += [line for entry in file.get("reactions", []) for line in reaction(entry, style)]
    chem += ["END"] if not style() else []
    unwanted = ["HE                L10/90HE  1               G   200.000  6000.000  1000.000    1", "whatever this is" if style() else " 1.0"]
    therm = ["THERMO", "   300.000  1000.000  5000.000", *unwanted, *([] if inside else entries), "END"]
    shapes = {"atom": 0, "linear": 1, "nonlinear": 2}
    tran = []
    for species in file["species"]:
        molecule = species["transport"]
        values = [molecule.get(k, 0.0) for k in ("well-depth", "diameter", "dipole", "polarizability", "rotational-relaxation")]
        geometry = f"{shapes[molecule['geometry']]}" + (".0" if style(0.3) else "")
        tran.append(f"{species['name']:16} {geometry} " + " ".join(repr(v) for v in values) + (" ! estimated" if style(0.2) else ""))
    files = {"chem.inp": chem, "therm.dat": therm, "tran.dat": tran}
    if surface:
        density = float(surface["site-density"].split()[0]) / 1e4
        files["surf.inp"] = [f"SITE/{surface['name']}/ SDEN/{density!r}/", " ".join(s["name"] for s in file["surface-species"]), "END", "THERMO ALL",
                             " 300. 1000. 5000.", *(line for s in file["surface-species"] for line in thermo_entry(s, style)), "END",
                             "REACTIONS KELVINS MWOFF", *(line for r in file["surface-reactions"] for line in reaction(r, style)), "END"]
    return {name: style.lines(lines) for name, lines in files.items()}
