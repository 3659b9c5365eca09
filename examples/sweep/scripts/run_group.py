"""Runs the cases of a group, each in its directory, and judges them: one job of the sweep."""

import hashlib
import json
import os
import subprocess
from pathlib import Path

import cases as table


def text_of(path):
    return Path(path).read_text() if os.path.exists(path) else ""


def mixtures(store):
    """Temperature, density and mole fractions of both mixtures: they stand in columns behind ' T ,P ,X'."""
    lines = store.split("\n")
    count = int(next(line for line in lines if line.endswith(" SPECIES "))[:5])
    at = next(i for i, line in enumerate(lines) if line.startswith(" NSYMB"))
    rows = -(-count // 5)
    names = fields(lines[at:at + rows], count, 8, 2)
    masses = [float(x) for x in fields(lines[at + rows:at + 2 * rows], count, 20, 1)]
    found = []
    for at in (i for i, line in enumerate(lines) if line.startswith(" T ,P ,X")):
        values = [float(x) for x in fields(lines[at:at + -(-(9 + count) // 5)], 3 + count, 11, 1)]
        T, h, p, fractions = values[0], values[1], values[2], values[3:]
        mass = sum(x * m for x, m in zip(fractions, masses))
        found.append({"temperature": T, "density": p * mass / (8.3143 * T) if T > 0 else None,
                      "fractions": {name: x for name, x in zip(names, fractions) if x > 0}})
    return found


def fields(lines, count, width, gap):
    """The items of a list that begins in column 13 of its first line and in column 1 of the others."""
    text = lines[0][12:].ljust(5 * (width + gap)) + "".join(line.ljust(5 * (width + gap)) for line in lines[1:])
    return [text[k * (width + gap):k * (width + gap) + width].strip() for k in range(count)]


class Group:
    def __init__(self, cases, settings, template, mechanism):
        self.cases, self.settings, self.mechanism = cases, settings, mechanism
        self.template = text_of(template)
        self.common = hashlib.sha256("".join(text_of(path) for path in mechanism).encode())

    def prepare(self, case):
        """Makes the directory of a case. What is known of it when nothing has changed since, or nothing."""
        directory = Path("results") / case["name"]
        directory.mkdir(parents=True, exist_ok=True)
        INP = table.conditions(self.template, case, self.settings)
        digest = self.common.copy()
        digest.update(INP.encode())
        case["digest"] = digest.hexdigest()
        known = json.loads(text_of(directory / "verdict.json") or "{}")
        if known.get("digest") == case["digest"] and (directory / "fort.3").exists() == known["stored"]:
            return known
        (directory / "INP").write_text(INP)
        for path in self.mechanism:
            link = directory / os.path.basename(path)
            link.unlink(missing_ok=True)
            link.symlink_to(os.path.relpath(path, directory))
        return None

    def run(self, case):
        directory = Path("results") / case["name"]
        (directory / "fort.3").unlink(missing_ok=True)
        with open(directory / "listing", "w") as listing, open(directory / "messages", "w") as messages:
            return subprocess.run(["varpre"], cwd=directory, stdin=subprocess.DEVNULL, stdout=listing, stderr=messages).returncode

    def judge(self, cases):
        """The verdicts of some cases that have just been run."""
        directories = [os.path.join("results", case["name"]) for case in cases]
        checked = subprocess.run(["varpre-check", "--json", "--jobs", "1", *directories], stdout=subprocess.PIPE, text=True)
        for case, line in zip(cases, checked.stdout.splitlines(), strict=True):
            verdict = json.loads(line)
            directory = Path("results") / case["name"]
            errors = [f for f in verdict.get("findings", []) if f["severity"] == "error"]
            first = verdict.get("fault") or (f"{errors[0]['file']}:{errors[0]['line']}: {errors[0]['text']}" if errors else "")
            complete = verdict.get("store_file") == "complete" and not errors
            store = directory / "fort.3"
            result = {**case, "state": "complete" if complete else "failed", "first_error": first or ("" if complete else verdict.get("store_file", "")),
                      "errors": len(errors), "warnings": len(verdict.get("findings", [])) - len(errors), "stored": store.exists(),
                      "mixtures": mixtures(store.read_text()) if complete else []}
            (directory / "verdict.json").write_text(json.dumps(result))
            yield result

    def results(self):
        known = {case["name"]: self.prepare(case) for case in self.cases}
        changed = [case for case in self.cases if known[case["name"]] is None]
        for case in changed:
            self.run(case)
        if changed:
            known.update((result["name"], result) for result in self.judge(changed))
        print(f"{len(changed)} of {len(self.cases)} cases run")
        return [known[case["name"]] for case in self.cases]


job = snakemake  # noqa: F821, given by the engine
group = Group(job.params.cases, job.params.settings, job.input.template, job.input.mechanism)
Path(job.output[0]).write_text(json.dumps(group.results()))
