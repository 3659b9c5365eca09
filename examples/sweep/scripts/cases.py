"""The table of cases, and what the rows of a case mean for its mixtures."""

import csv
import math
import re


def fail(place, reason):
    raise SystemExit(f"{place}: {reason}")


def read(config):
    """All rows as mappings; ends with the line of the first that cannot be meant."""
    path, seen, cases = config["cases"], {}, []
    with open(path, newline="") as file:
        reader = csv.DictReader(file)
        missing = {"name", "phi", "pressure", "enthalpy"} - set(reader.fieldnames or [])
        if missing:
            fail(f"{path}:1", "no column " + ", ".join(sorted(missing)))
        for row in reader:
            place = f"{path}:{reader.line_num}"
            if None in row or None in row.values():
                fail(place, "the row has not as many values as the heading has names")
            row = {name.strip(): value.strip() for name, value in row.items()}
            name = row["name"]
            if not re.fullmatch(r"[A-Za-z0-9][A-Za-z0-9._+-]*", name):
                fail(place, f"'{name}' cannot be the name of a directory: letters, digits and . _ + - can")
            if name in seen:
                fail(place, f"the name '{name}' stands in line {seen[name]} already")
            seen[name] = reader.line_num
            for column, value in row.items():
                if column != "name":
                    row[column] = number(place, column, value)
            cases.append(row)
    if not cases:
        fail(path, "the table has no rows")
    return cases


def number(place, column, value):
    try:
        result = float(value)
    except ValueError:
        fail(place, f"{column} is '{value}', which is no number")
    if not math.isfinite(result):
        fail(place, f"{column} is '{value}'")
    return result


def groups(cases, size):
    if size < 1:
        fail("config.yaml", "group_size is at least 1")
    return [cases[k:k + size] for k in range(0, len(cases), size)]


def unburnt(phi, settings):
    """Mole of each species for one mole of fuel at an equivalence ratio of 1, and as much oxygen as that needs."""
    amounts = {name: phi * mole for name, mole in settings["fuel"].items()}
    scale = settings["oxygen_per_fuel"] / settings["oxidiser"]["O2"]
    for name, mole in settings["oxidiser"].items():
        amounts[name] = amounts.get(name, 0) + scale * mole
    return amounts


def burnt(phi, settings):
    """The same when fuel or oxygen, whatever is less, has burnt completely."""
    amounts, reacted = unburnt(phi, settings), min(phi, 1)
    for name, mole in settings["fuel"].items():
        amounts[name] -= reacted * mole
    amounts["O2"] -= reacted * settings["oxygen_per_fuel"]
    for name, mole in settings["products"].items():
        amounts[name] = amounts.get(name, 0) + reacted * mole
    return {name: mole for name, mole in amounts.items() if mole > 1e-12}


def records(amounts):
    return "\n".join(f"{name:<8} {field(mole)}" for name, mole in amounts.items())


def field(value):
    """A number in ten columns, with a point."""
    text = f"{value:10.6g}"
    return text if "." in text else f"{value:10.3E}" if "e" in text else f"{value:10.1f}"


def conditions(template, case, settings):
    """The text of INP: each {column} of the table in ten columns, and the mixtures."""
    values = {name: value if name == "name" else field(value).rjust(11) for name, value in case.items()}
    values["unburnt"] = records(unburnt(case["phi"], settings))
    values["burnt"] = records(burnt(case["phi"], settings))
    return template.format_map(values)
