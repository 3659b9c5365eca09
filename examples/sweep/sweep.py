#!/usr/bin/env python3
"""A sweep without an engine: runs varpre for each row of cases.csv, judges the runs, and sums them up in results/.

    sweep.py [--jobs N]   all that is missing or changed, N runs at the same time (one for each core)
    sweep.py group K      one group of cases; for an engine (Snakefile)
    sweep.py summary      the summary of all groups; for an engine

Reads cases.csv, INP.template and settings.json in the working directory: README.md. Exit status: 0 when there is a summary,
however many cases failed; 1 when nothing can be done, which standard error explains; 2 for a wrong argument.
"""

import argparse
import csv
import functools
import hashlib
import json
import math
import os
import re
import shutil
import subprocess
import sys
import tempfile
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

TABLE, TEMPLATE, SETTINGS, RESULTS = "cases.csv", "INP.template", "settings.json", Path("results")
OUTPUTS = {"summary.csv", "failed.csv", "summary.svg", "groups"}  # what stands in results/ beside the cases
INPUTS, OPTIONAL = ["MEC", "THERMO", "MOLNEW"], ["THERMLIQ"]
SIDES = ("left", "right")
GAS_CONSTANT = 8.3143  # J/(mol K), as in varpre


class Fault(Exception):
    """What is wrong, as a sentence: with a case, or with the sweep."""


def sentence(error):
    """What an exception says, without its number."""
    if isinstance(error, OSError) and error.strerror:
        return f"{error.filename}: {error.strerror}" if error.filename else error.strerror
    return str(error) or type(error).__name__


def text_of(path):
    """Bytes that are no UTF-8 (comments may hold any) come through as they are."""
    return Path(path).read_text(encoding="utf-8-sig", errors="surrogateescape")


def write_fresh(path, text):
    """A new file in the place of whatever had the name; a link is not followed."""
    path.unlink(missing_ok=True)
    with open(path, "x", encoding="utf-8", errors="surrogateescape", newline="") as file:
        file.write(text)


def as_number(text):
    """A number or None."""
    written = re.fullmatch(r"\s*[-+]?(\d+\.?\d*|\.\d+)([eE][-+]?\d+)?\s*", str(text), re.ASCII)
    value = float(text) if written else math.nan
    return value if math.isfinite(value) else None


# --- the table ------------------------------------------------------------------------------------


class Case:
    def __init__(self, line, own, fault=None):
        self.line, self.own, self.fault = line, own, fault  # `own`: the texts of its row by column
        self.name = own["name"]
        self.directory = RESULTS / self.name


class Sweep:
    def __init__(self):
        self.settings = read_settings()
        self.columns, self.cases = read_table()
        self.template = text_of(TEMPLATE)
        self.placeholders = placeholders(self.template)
        self.numbers = {column for column in self.columns if any(as_number(case.own[column]) is not None for case in self.cases)}
        size = self.settings.get("group_size", 100)
        if not isinstance(size, int) or size < 1:
            raise Fault(f"{SETTINGS}: group_size is a whole number of at least 1")
        self.groups = [self.cases[k:k + size] for k in range(0, len(self.cases), size)]
        self.picture = self.settings.get("picture", {})
        if not isinstance(self.picture, dict) or not all(isinstance(column, str) for column in self.picture.values()):
            raise Fault(f"{SETTINGS}: picture has names of columns for x, y and curves, in braces")
        mixed = {"unburnt", "burnt"} & self.placeholders
        required = self.placeholders - {"unburnt", "burnt"} | ({"phi", "fuel", "oxidiser"} if mixed else set()) | {"mechanism"}
        missing = sorted(required - set(self.columns) - set(self.settings))
        if missing:
            raise Fault(f"{TABLE}: no column {', '.join(missing)}, which {TEMPLATE} asks for (or {SETTINGS}, when it is the same in all rows)")

    def value(self, case, name):
        """The text of a column, or of a setting for all rows."""
        return case.own[name] if name in case.own else str(self.settings[name])

    def number(self, case, name):
        text = self.value(case, name)
        value = as_number(text)
        if value is None:
            raise Fault(f"{TABLE}:{case.line}: {name} is '{text}', which is no number")
        return value

    def filled_in(self, case, name):
        """What stands in INP for {name}: a number in eleven columns, a text as it is."""
        if name in ("unburnt", "burnt"):
            return "\n".join(f"{species:<8} {field(mole)}" for species, mole in mixture(self, case, name).items())
        is_text = name == "name" or (name not in self.numbers if name in case.own else as_number(self.value(case, name)) is None)
        if not is_text:
            return f" {field(self.number(case, name))}"
        text = self.value(case, name)
        if re.search(r"[\x00-\x1f\x7f]", text):
            raise Fault(f"{TABLE}:{case.line}: {name} is {text!r}, which is more than a piece of a line")
        return text

    def conditions(self, case):
        return substitute(self.template, lambda name: self.filled_in(case, name))


def read_settings():
    if not os.path.exists(SETTINGS):
        return {}
    try:
        settings = json.loads(text_of(SETTINGS))
    except ValueError as error:
        raise Fault(f"{SETTINGS}: {error}") from None
    if not isinstance(settings, dict):
        raise Fault(f"{SETTINGS}: expected names and values in braces")
    return settings


def read_table():
    """The columns and the cases. Names that cannot be directories of their own stop it, all at once."""
    wrong, seen, cases = [], {}, []
    with open(TABLE, encoding="utf-8-sig", errors="surrogateescape", newline="") as file:
        reader = csv.reader(file)
        try:
            columns = [column.strip() for column in next(reader, [])]
            rows = [(reader.line_num, row) for row in reader if any(cell.strip() for cell in row)]
        except csv.Error as error:
            raise Fault(f"{TABLE}:{reader.line_num}: {error}") from None
    if "name" not in columns:
        raise Fault(f"{TABLE}:1: no column name; the first line names the columns, with commas between them")
    if len(set(columns)) < len(columns):
        raise Fault(f"{TABLE}:1: the column '{max(columns, key=columns.count)}' stands there twice")
    for line, row in rows:
        cells = [cell.strip() for cell in row]
        fault = None if len(cells) == len(columns) else f"{TABLE}:{line}: {len(cells)} values under {len(columns)} columns"
        cells = (cells + [""] * len(columns))[:len(columns)]
        case = Case(line, dict(zip(columns, cells)), fault)
        reason = fault_of_name(case.name, seen)
        if reason:
            wrong.append(f"{TABLE}:{line}: {reason}")
        seen.setdefault(case.name, line)
        cases.append(case)
    if wrong:
        raise Fault("\n".join(wrong))
    if not cases:
        raise Fault(f"{TABLE}: the table has no rows")
    return columns, cases


def fault_of_name(name, seen):
    if not re.fullmatch(r"[A-Za-z0-9][A-Za-z0-9._+-]*", name):
        return f"{name!r} cannot be the name of a directory: a letter or digit, then letters, digits and . _ + - can"
    if len(name) > 200:
        return f"the name '{name[:20]}...' has {len(name)} letters; 200 are allowed"
    if name in OUTPUTS:
        return f"the name '{name}' is taken by what the sweep writes itself"
    return f"the name '{name}' stands in line {seen[name]} already" if name in seen else None


# --- INP ------------------------------------------------------------------------------------------

PLACEHOLDER = re.compile(r"\{\{|\}\}|\{([^{}\n]*)\}|[{}]")


def substitute(template, text_for):
    def replacement(match):
        if match[0] in ("{{", "}}"):
            return match[0][0]
        if match[1] is None:
            line = template.count("\n", 0, match.start()) + 1
            raise Fault(f"{TEMPLATE}:{line}: a single '{match[0]}'; braces that are meant as such are doubled")
        return text_for(match[1])
    return PLACEHOLDER.sub(replacement, template)


def placeholders(template):
    names = set()
    substitute(template, lambda name: names.add(name) or "")
    return names


def field(value):
    """A number in ten columns, with a point and as many digits as there is room for."""
    for digits in range(9, 0, -1):
        mantissa, _, exponent = f"{value:.{digits}G}".partition("E")
        text = mantissa + ("" if "." in mantissa else ".") + ("E" + exponent if exponent else "")
        if len(text) <= 10:
            return text.rjust(10)
    raise Fault(f"the number {value} does not fit ten columns")


@functools.lru_cache(maxsize=None)
def elements_of(THERMO, species):
    """Atoms of each element in a species, from the first line of its entry: columns 25-44."""
    found = None
    for line in text_of(THERMO).split("\n"):
        cells = [line[k:k + 5] for k in range(24, 44, 5)]
        if line[:8].rstrip() == species and all(re.fullmatch(r"[A-Z0 ][A-Z ] *\d*\.?", cell.rstrip().ljust(2)) for cell in cells):
            found = {cell[:2].strip(): float(cell[2:]) for cell in cells if cell[:2].strip(" 0") and cell[2:].strip()}
    if found is None:
        raise Fault(f"{THERMO} has no entry {species}")
    return found


def amounts(text, what):
    """'H2', or 'CH4 0.9 C2H6 0.1': species and mole, 1 when there is one species only."""
    words = text.split()
    words = words + ["1"] if len(words) == 1 else words
    found = {species: as_number(mole) for species, mole in zip(words[::2], words[1::2])}
    if not words or len(words) % 2 or any(mole is None or mole <= 0 for mole in found.values()):
        raise Fault(f"{what} is '{text}'; expected species and mole in turn, as in 'CH4 0.9 C2H6 0.1'")
    return found


def mixture(sweep, case, state):
    """Mole of each species: `phi` times the fuel, and the oxidiser that phi 1 needs, before or after complete burning."""
    fuel, oxidiser = (amounts(sweep.value(case, what), what) for what in ("fuel", "oxidiser"))
    if "O2" not in oxidiser:
        raise Fault("the oxidiser has no O2")
    phi = sweep.number(case, "phi")
    if phi < 0:
        raise Fault(f"{TABLE}:{case.line}: phi is below 0")
    THERMO = os.path.join(sweep.value(case, "mechanism"), "THERMO")
    atoms = {}
    for species, mole in fuel.items():
        for element, count in elements_of(THERMO, species).items():
            atoms[element] = atoms.get(element, 0) + mole * count
    if not set(atoms) <= {"C", "H", "O", "N", "HE", "AR"}:
        raise Fault(f"what becomes of the fuel's {', '.join(sorted(set(atoms) - set('CHON')))} when it burns is not known: write the mixtures in {TEMPLATE}")
    needed = atoms.get("C", 0) + atoms.get("H", 0) / 4 - atoms.get("O", 0) / 2  # mole of O2 for the fuel at phi 1
    if needed <= 0:
        raise Fault("the fuel does not burn")
    mix = {species: phi * mole for species, mole in fuel.items()}
    for species, mole in oxidiser.items():
        mix[species] = mix.get(species, 0) + mole * needed / oxidiser["O2"]
    if state == "burnt":
        burns = min(phi, 1)
        for species, mole in fuel.items():
            mix[species] -= burns * mole
        mix["O2"] -= burns * needed
        inert = {"AR": atoms.get("AR", 0), "HE": atoms.get("HE", 0)}
        for species, mole in {"CO2": atoms.get("C", 0), "H2O": atoms.get("H", 0) / 2, "N2": atoms.get("N", 0) / 2, **inert}.items():
            mix[species] = mix.get(species, 0) + burns * mole
    return {species: mole for species, mole in mix.items() if mole > 1e-12}


# --- what a run leaves ----------------------------------------------------------------------------


def stored_number(text):
    """A number of the store file, which writes 4.2000-151 where three digits of the exponent leave no room for the E."""
    return float(re.sub(r"(?<=[\d.])([+-]\d+)$", r"E\1", text.strip()))


def items(lines, count, width, gap):
    """The items of a list that begins in column 13 of its first line and in column 1 of the others."""
    text = lines[0][12:].ljust(5 * (width + gap)) + "".join(line.ljust(5 * (width + gap)) for line in lines[1:])
    return [text[k * (width + gap):k * (width + gap) + width].strip() for k in range(count)]


def mixtures(store):
    """Temperature (K), density (kg/m3) and mole fractions of both mixtures: they stand behind ' T ,P ,X'."""
    lines = store.split("\n")
    count = int(next(line for line in lines if line.endswith(" SPECIES "))[:5])
    at = next(i for i, line in enumerate(lines) if line.startswith(" NSYMB"))
    rows = -(-count // 5)
    names = [name.encode("latin-1").decode(errors="surrogateescape") for name in items(lines[at:at + rows], count, 8, 2)]
    masses = [stored_number(x) for x in items(lines[at + rows:at + 2 * rows], count, 20, 1)]
    found = []
    for at in (i for i, line in enumerate(lines) if line.startswith(" T ,P ,X")):
        T, _, p, *fractions = (stored_number(x) for x in items(lines[at:at + -(-(9 + count) // 5)], 3 + count, 11, 1))
        mass = sum(x * m for x, m in zip(fractions, masses))
        found.append({"temperature": T, "density": float(f"{p * mass / (GAS_CONSTANT * T):.6g}") if T else math.nan,
                      "fractions": {name: x for name, x in zip(names, fractions) if x > 0}})
    left, right = found
    return [left, right]


def impossible(found):
    """The first temperature or density that no gas has."""
    for side, mix in zip(SIDES, found):
        if not 0 < mix["temperature"] <= 10000:
            return f"the {side} mixture has the temperature {mix['temperature']:g} K"
        if not 0 < mix["density"] < math.inf:
            return f"the {side} mixture has the density {mix['density']:g} kg/m3"
    return None


def first_of(findings, severity):
    return next((f"{f['file']}:{f['line']}: {f['text']}" for f in findings if f["severity"] == severity), "")


def failed(reason):
    return {"state": "failed", "errors": "", "warnings": "", "first_error": reason, "first_warning": "", "mixtures": []}


def result_of(case, status, verdict):
    """What is known of a case that has been run and judged."""
    if "fault" in verdict:
        return failed(verdict["fault"])
    findings = verdict["findings"]
    result = {"state": "complete", "errors": verdict["counts"]["errors"], "warnings": verdict["counts"]["warnings"],
              "first_error": first_of(findings, "error"), "first_warning": first_of(findings, "warning"), "mixtures": []}
    reason = result["first_error"] or ("" if verdict["store_file"] == "complete" else f"store file {verdict['store_file']}")
    if status != 0:
        reason = f"varpre ended with exit status {status}: {text_of(case.directory / 'messages').strip().split(chr(10))[-1]}"
    if not reason:
        try:
            result["mixtures"] = mixtures((case.directory / "fort.3").read_text(encoding="latin-1"))  # columns count bytes
            reason = impossible(result["mixtures"])
        except (ValueError, IndexError, StopIteration) as error:
            reason = f"fort.3 cannot be read: {error}"
    return {**result, "state": "failed", "first_error": reason} if reason else result


# --- running --------------------------------------------------------------------------------------


@functools.lru_cache(maxsize=None)
def digest_of_mechanism(folder):
    """Of what all cases of a mechanism have in common: its files, and the program."""
    digest = hashlib.sha256(subprocess.run(["varpre", "--version"], stdout=subprocess.PIPE, check=True).stdout)
    for name in INPUTS + OPTIONAL:
        path = Path(folder) / name
        if path.is_file():
            digest.update(path.read_bytes())
        elif name in INPUTS:
            raise Fault(f"no file {path}")
    return digest


def digest_of(case, sweep, INP):
    digest = digest_of_mechanism(sweep.value(case, "mechanism")).copy()
    digest.update(INP.encode(errors="surrogateescape"))
    return digest.hexdigest()


def known_result(case, digest):
    """What an earlier start found, when nothing has changed since."""
    try:
        known = json.loads(text_of(case.directory / "verdict.json"))
        return known["result"] if known["digest"] == digest and (case.directory / "fort.3").exists() == known["stored"] else None
    except Exception:  # whatever stands there is not what an earlier start has written
        return None


def prepare(case, sweep, INP):
    case.directory.mkdir(exist_ok=True)
    for name in ("verdict.json", "fort.3"):
        (case.directory / name).unlink(missing_ok=True)
    write_fresh(case.directory / "INP", INP)
    folder = Path(sweep.value(case, "mechanism"))
    for name in INPUTS + OPTIONAL:
        link = case.directory / name
        link.unlink(missing_ok=True)
        if (folder / name).exists():
            link.symlink_to(os.path.relpath(folder / name, case.directory))


def run(case):
    for name in ("listing", "messages"):
        (case.directory / name).unlink(missing_ok=True)
    with open(case.directory / "listing", "xb") as listing, open(case.directory / "messages", "xb") as messages:
        return subprocess.run(["varpre"], cwd=case.directory, stdin=subprocess.DEVNULL, stdout=listing, stderr=messages).returncode


def attempt(case, sweep):
    """Runs a case when that is due. What is known of it already, or the exit status and digest of its run."""
    try:
        if case.fault:
            raise Fault(case.fault)
        if case.directory.is_symlink() or (case.directory.exists() and not case.directory.is_dir()):
            raise Fault(f"{case.directory} is no directory of its own")
        INP = sweep.conditions(case)
        digest = digest_of(case, sweep, INP)
        known = known_result(case, digest)
        if known is not None:
            return known
        prepare(case, sweep, INP)
        return run(case), digest
    except Exception as error:  # whatever it is, it ends this case alone
        return failed(sentence(error))


def judge(runs, jobs):
    """The results of (case, exit status, digest), from one call of varpre-check."""
    directories = [str(case.directory) for case, *_ in runs]
    try:
        checked = subprocess.run(["varpre-check", "--json", "--jobs", str(jobs), "--", *directories], stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        said = checked.stderr.decode(errors="replace").split("\n")[0][:200]
        lines, end = checked.stdout.split(b"\n"), said or f"exit status {checked.returncode}"
    except OSError as error:
        lines, end = [], sentence(error)
    for k, (case, status, digest) in enumerate(runs):
        try:
            verdict = json.loads(lines[k] if k < len(lines) else b"")
            if verdict["directory"] != directories[k]:
                raise ValueError("it is about another case")
            result = result_of(case, status, verdict)
            known = {"digest": digest, "stored": (case.directory / "fort.3").exists(), "result": result}
            write_fresh(case.directory / "verdict.json", json.dumps(known))
        except Exception as error:  # whatever it is, it ends this case alone
            result = failed(f"its verdict cannot be had: {sentence(error)} (varpre-check: {end})")
        yield case, result


def on_threads(work, pieces, jobs):
    """The results in order; without threads where there are none to be had."""
    try:
        with ThreadPoolExecutor(jobs) as pool:
            return list(pool.map(work, pieces))
    except RuntimeError:
        return list(map(work, pieces))


def do_group(sweep, group, jobs):
    """The results of some cases by name, and how many were run. One bad case does not end the others."""
    results = on_threads(lambda case: attempt(case, sweep), group, jobs)
    attempts = dict(zip((case.name for case in group), results))
    runs = [(case, *attempts[case.name]) for case in group if isinstance(attempts[case.name], tuple)]
    for k in range(0, len(runs), 200):
        attempts.update((case.name, result) for case, result in judge(runs[k:k + 200], jobs))
    return attempts, len(runs)


# --- summary --------------------------------------------------------------------------------------


def write_table(name, heading, rows):
    """In the place of an earlier one, at once."""
    path = RESULTS / name
    with tempfile.NamedTemporaryFile("w", dir=RESULTS, delete=False, encoding="utf-8", errors="surrogateescape", newline="") as file:
        try:
            writer = csv.writer(file, lineterminator="\n")
            writer.writerow(heading)
            writer.writerows(rows)
            file.close()
            os.chmod(file.name, 0o644)
            os.replace(file.name, path)
        except OSError as error:
            os.unlink(file.name)
            raise Fault(f"{path}: {error.strerror}") from None


def free_names(names, taken):
    """What the sweep adds, under names that the table leaves free."""
    free = []
    for name in names:
        while name in taken:
            name = "varpre_" + name
        free.append(name)
    return free


def summarise(sweep, results):
    species = sorted({name for result in results.values() for mix in result["mixtures"] for name in mix["fractions"]})
    found = (["state", "errors", "warnings"] + [f"{side}_{what}" for side in SIDES for what in ("temperature", "density")]
             + [f"{side}_{name}" for side in SIDES for name in species] + ["first_error", "first_warning"])

    def row(case):
        result = results[case.name]
        mixes = result["mixtures"]
        states = [mix[what] for mix in mixes for what in ("temperature", "density")] if mixes else [""] * 4
        fractions = [mix["fractions"].get(name, 0) for mix in mixes for name in species] if mixes else [""] * (2 * len(species))
        return ([case.own[column] for column in sweep.columns] + [result["state"], result["errors"], result["warnings"]] + states + fractions
                + [result["first_error"], result["first_warning"]])

    rows = [row(case) for case in sweep.cases]
    bad = [case for case in sweep.cases if results[case.name]["state"] != "complete"]
    write_table("summary.csv", sweep.columns + free_names(found, sweep.columns), rows)
    write_table("failed.csv", ["name", "line", "first_error"], [[case.name, case.line, results[case.name]["first_error"]] for case in bad])
    for case in bad[:10]:
        print(f"{case.name}: {results[case.name]['first_error']}".encode("ascii", "backslashreplace").decode())
    if len(bad) > 10:
        print(f"... all in {RESULTS}/failed.csv")
    print(f"{len(rows) - len(bad)} cases complete, {len(bad)} failed; {RESULTS}/summary.csv")
    try:
        draw(sweep, [dict(zip(sweep.columns + found, row)) for row in rows if row[len(sweep.columns)] == "complete"])
    except (Fault, OSError) as error:
        print(f"no picture: {sentence(error)}")


def draw(sweep, rows):
    """results/summary.svg: a value over a column of the table, a curve for each value of another, the rest as in the first row."""
    if not shutil.which("gnuplot"):
        raise Fault("gnuplot is not on the path")
    if not rows:
        raise Fault("no case is complete")
    picture = sweep.picture
    varying = [column for column in sweep.columns if column != "name" and len({row[column] for row in rows}) > 1]
    x = picture.get("x") or next((column for column in varying if column in sweep.numbers), None)
    curves = picture.get("curves") or next((column for column in varying if column != x), None)
    y = picture.get("y", "right_temperature")
    for column in filter(None, (x, y, curves)):
        if column not in rows[0]:
            raise Fault(f"there is no column {column}")
    if x is None:
        raise Fault("no column of numbers varies")
    fixed = [column for column in varying if column not in (x, y, curves)]
    drawn = [row for row in rows if all(row[column] == rows[0][column] for column in fixed)]
    blocks = {}
    for row in drawn:
        if None not in (as_number(row[x]), as_number(row[y])):
            blocks.setdefault(str(row[curves]) if curves else y, []).append(f"{as_number(row[x])!r} {as_number(row[y])!r}")
    if not blocks:
        raise Fault(f"{x} or {y} is no number anywhere")
    title = ", ".join(f"{column} {rows[0][column]}" for column in fixed)
    with tempfile.TemporaryDirectory() as scratch:
        quoted = {name.replace('"', "'"): lines for name, lines in blocks.items()}
        Path(scratch, "data").write_text("\n\n\n".join("\n".join([f'"{name}"', *lines]) for name, lines in quoted.items()) + "\n", errors="replace")
        script = Path(__file__).with_name("summary.gp").resolve()
        shutil.copy(script, scratch)
        texts = [text.encode(errors="replace").decode() for text in (x, y, title, curves or "")]
        plotted = subprocess.run(["gnuplot", "-c", "summary.gp", *texts, str(len(blocks))], cwd=scratch, stdin=subprocess.DEVNULL,
                                 stderr=subprocess.PIPE, text=True, errors="replace")
        if plotted.returncode != 0:
            raise Fault(f"gnuplot says: {' '.join(plotted.stderr.split())}")
        write_fresh(RESULTS / "summary.svg", Path(scratch, "summary.svg").read_text(errors="replace"))


# --- the program ----------------------------------------------------------------------------------


def begin():
    for program in ("varpre", "varpre-check"):
        if not shutil.which(program):
            raise Fault(f"{program} is not on the path")
    for path in (RESULTS, RESULTS / "groups"):
        if path.is_symlink():
            raise Fault(f"{path} is a link; nothing is written through one")
    RESULTS.mkdir(exist_ok=True)


def group_file(k):
    return RESULTS / "groups" / f"{k}.json"


def results_of_groups(sweep):
    results = {}
    for k, group in enumerate(sweep.groups):
        try:
            found = json.loads(text_of(group_file(k)))
            results.update((case.name, found[case.name]) for case in group)
        except (OSError, ValueError, KeyError, TypeError) as error:
            results.update((case.name, failed(f"{group_file(k)} cannot be read: {sentence(error)}")) for case in group)
    return results


def main():
    parser = argparse.ArgumentParser(description="Runs varpre for each row of cases.csv, judges the runs, and sums them up in results/.")
    parser.add_argument("--jobs", type=int, default=os.cpu_count() or 1, metavar="N", help="runs at the same time (one for each core)")
    parser.add_argument("what", nargs="*", metavar="group K | summary", help="a part of it, for an engine")
    arguments = parser.parse_args()
    what, jobs = arguments.what, max(1, arguments.jobs)
    sweep = Sweep()
    begin()
    if what == ["summary"]:
        summarise(sweep, results_of_groups(sweep))
    elif len(what) == 2 and what[0] == "group" and what[1].isdecimal() and int(what[1]) < len(sweep.groups):
        results, count = do_group(sweep, sweep.groups[int(what[1])], jobs)
        print(f"{count} of {len(results)} cases run")
        group_file(what[1]).parent.mkdir(exist_ok=True)
        write_fresh(group_file(what[1]), json.dumps(results))
    elif not what:
        results, total = {}, 0
        for group in sweep.groups:
            found, count = do_group(sweep, group, jobs)
            results.update(found)
            total += count
        print(f"{total} of {len(results)} cases run")
        summarise(sweep, results)
    else:
        parser.error(f"'{' '.join(what)}' is none of its parts")


if __name__ == "__main__":
    try:
        main()
    except (Fault, OSError) as fault:
        sys.exit(f"sweep.py: {sentence(fault)}")
    except KeyboardInterrupt:
        sys.exit("sweep.py: interrupted; what is done stays done")
