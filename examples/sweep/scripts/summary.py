"""Collects the verdicts of all groups in one table, and lists the cases that failed."""

import csv
import json
from pathlib import Path

job = snakemake  # noqa: F821, given by the engine
results = [result for path in job.input for result in json.loads(Path(path).read_text())]
species = sorted({name for result in results for mixture in result["mixtures"] for name in mixture["fractions"]})
columns = [name for name in results[0] if name not in ("digest", "stored", "mixtures", "state", "errors", "warnings", "first_error")]
sides = ("left", "right")

with open(job.output[0], "w", newline="") as file:
    writer = csv.writer(file)
    writer.writerow(columns + ["state", "errors", "warnings"] + [f"{side}_{what}" for side in sides for what in ("temperature", "density")]
                    + [f"{side}_{name}" for side in sides for name in species] + ["first_error"])
    for result in results:
        mixtures = result["mixtures"] or [{"temperature": "", "density": "", "fractions": {}}] * 2
        writer.writerow([result[name] for name in columns] + [result["state"], result["errors"], result["warnings"]]
                        + [mixture[what] for mixture in mixtures for what in ("temperature", "density")]
                        + [mixture["fractions"].get(name, 0 if result["mixtures"] else "") for mixture in mixtures for name in species]
                        + [result["first_error"]])

failed = [f"{result['name']}: {result['first_error']}" for result in results if result["state"] != "complete"]
Path(job.output[1]).write_text("".join(line + "\n" for line in failed))
print(f"{len(results) - len(failed)} cases complete, {len(failed)} failed")
for line in failed:
    print(line)
