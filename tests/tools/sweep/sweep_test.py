#!/usr/bin/env python3
"""The sweep of examples/sweep on this machine: sweep_test.py EXAMPLES SCRATCH, programs on the path. Through the engine where there is one."""

import csv
import os
import re
import shutil
import subprocess
import sys
import unittest
from pathlib import Path

EXAMPLES, SCRATCH = (Path(argument).resolve() for argument in sys.argv[1:3])
HOSTILE = "x $(touch pwned) `touch pwned` y'\" {z}"  # a folder


class Sweep(unittest.TestCase):
    def setUp(self):
        folder = SCRATCH / HOSTILE / self.id().rsplit(".", 1)[1]
        shutil.rmtree(folder, ignore_errors=True)
        for name in ("sweep", "hydrogen-ignition", "methane-counterflow"):
            shutil.copytree(EXAMPLES / name, folder / name, ignore=shutil.ignore_patterns("results", ".snakemake", "__pycache__"))
        self.sweep = folder / "sweep"

    def tearDown(self):
        self.assertEqual(list(SCRATCH.rglob("pwned")), [])

    def command(self, *command, status=0, **options):
        result = subprocess.run(command, cwd=self.sweep, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=600, **options)
        output = result.stdout.decode(errors="replace")
        self.assertEqual(result.returncode, status, output)
        return output

    def start(self, *arguments, **options):
        output = self.command(sys.executable, "sweep.py", *arguments, **options)
        self.assertNotIn("Traceback", output)
        return output

    def engine(self, **options):
        if not shutil.which("snakemake"):
            self.skipTest("no snakemake here")
        return self.command("snakemake", "--cores", "all", **options)

    def table(self, *lines, name="cases.csv"):
        (self.sweep / name).write_bytes(b"".join((line if isinstance(line, bytes) else line.encode()) + b"\n" for line in lines))

    def first_rows(self, count):
        self.table(*(EXAMPLES / "sweep/cases.csv").read_text().splitlines()[:count + 1])

    def rows(self, name="summary.csv"):
        with open(self.sweep / "results" / name, newline="", encoding="utf-8", errors="surrogateescape") as file:
            return {row["name"]: row for row in csv.DictReader(file)}

    def replace(self, name, old, new):
        text = (self.sweep / name).read_text()
        self.assertIn(old, text)
        (self.sweep / name).write_text(text.replace(old, new, 1))

    def changed_by(self, start, change, *arguments):
        """The cases that a start after a change runs."""
        times = lambda: {path.parent.name: path.stat().st_mtime_ns for path in self.sweep.glob("results/*/fort.3")}
        before = times()
        change(*arguments)
        start()
        return sorted(name for name, time in times().items() if before.get(name) != time)

    def test_all_cases_of_the_example(self):
        settings = (self.sweep / "settings.json").read_text()
        self.replace("settings.json", "100", "1000")
        self.assertIn("200 cases complete, 0 failed", self.start())
        rows = self.rows()
        self.assertEqual(len(rows), 200)
        self.assertEqual({row["state"] for row in rows.values()}, {"complete"})
        self.assertEqual((self.sweep / "results/failed.csv").read_text(), "name,line,first_error\n")
        found = ["left_temperature", "left_density", "right_temperature", "right_density", *(f"{side}_{name}" for side in ("left", "right") for name in ("H2", "H2O", "N2", "O2"))]
        self.assertEqual(list(rows["phi1.0-p01-h000"]), ["name", "phi", "pressure", "enthalpy", "state", "errors", "warnings", *found, "first_error", "first_warning"])
        # Mole fractions of 1 H2 : 0.5 O2 : 0.5 * 0.79 / 0.21 N2 and of what burns; hydrogen in air burns at about 2500 K without dissociation.
        one, total = rows["phi1.0-p01-h000"], 1.5 + 0.5 * 0.79 / 0.21
        self.assertAlmostEqual(float(one["left_H2"]), 1 / total, 4)
        self.assertAlmostEqual(float(one["right_H2O"]), 1 / (total - 0.5), 4)
        self.assertTrue(2450 < float(one["right_temperature"]) < 2600, one)
        self.assertAlmostEqual(float(one["left_density"]), 1e5 * (2.016 + 0.5 * 31.999 + 0.5 * 79 / 21 * 28.013) / 1000 / total / (8.3143 * float(one["left_temperature"])), 4)
        self.assertIn("0 of 200 cases run", self.start())
        if shutil.which("gnuplot"):
            picture = (self.sweep / "results/summary.svg").read_text()
            for text in ("phi", "right_temperature", "enthalpy", ">800000<", ">pressure 1<"):
                self.assertIn(text, picture)
            # A mark for each case at the first pressure: the picture is the table to scale. Beside them, those of the key.
            points = [(float(row["phi"]), float(row["right_temperature"])) for row in rows.values() if row["pressure"] == "1"]
            marks = [tuple(map(float, mark)) for mark in re.findall(r"<use xlink:href='#gpPt\d+' transform='translate\(([\d.]+),([\d.]+)\)", picture)]
            key = max(x for x, _ in marks)
            marks = [mark for mark in marks if mark[0] < key]
            self.assertEqual(len(marks), len(points))
            share = lambda values, value: (value - min(values)) / (max(values) - min(values))  # noqa: E731
            scaled = lambda pairs: [tuple(share(axis, value) for axis, value in zip(list(zip(*pairs)), pair)) for pair in pairs]  # noqa: E731
            for mark, point in zip(sorted(scaled([(x, -y) for x, y in marks])), sorted(scaled(points))):
                self.assertAlmostEqual(mark[0], point[0], 2)
                self.assertAlmostEqual(mark[1], point[1], 2)
        summary = (self.sweep / "results/summary.csv").read_text()
        shutil.rmtree(self.sweep / "results")
        (self.sweep / "settings.json").write_text(settings)
        self.engine()
        self.assertEqual((self.sweep / "results/summary.csv").read_text(), summary)

    def starts_do_what_is_due(self, start):
        self.first_rows(12)
        self.replace("settings.json", "100", "5")
        start()
        self.assertEqual(self.changed_by(start, lambda: None), [])
        self.assertEqual(self.changed_by(start, self.replace, "cases.csv", "phi1.0-p01-h000,1.0,1,0", "phi1.0-p01-h000,1.0,1,1000"), ["phi1.0-p01-h000"])
        self.assertEqual(self.changed_by(start, shutil.rmtree, self.sweep / "results/phi0.4-p05-h000"), ["phi0.4-p05-h000"])
        self.assertEqual(self.rows()["phi0.4-p05-h000"]["state"], "complete")
        without = lambda: (shutil.rmtree(self.sweep / "results/phi0.4-p05-h000"), (self.sweep / "results/summary.csv").unlink())
        self.assertEqual(self.changed_by(start, without), ["phi0.4-p05-h000"])
        # A case that fails does not stop the others, and comes right when it is mended.
        self.replace("cases.csv", "phi0.2-p05-h000,0.2,5,0", "phi0.2-p05-h000,0.2,5,9e9\nextra,0.2,5,0")
        start()
        self.assertRegex(self.rows("failed.csv")["phi0.2-p05-h000"]["first_error"], r"^INP:\d+: ")
        self.assertEqual(self.rows()["extra"]["state"], "complete")
        self.replace("cases.csv", "0.2,5,9e9", "0.2,5,0")
        self.assertEqual(self.changed_by(start, lambda: None), ["phi0.2-p05-h000"])
        self.assertEqual(self.rows("failed.csv"), {})
        self.assertEqual(len(self.changed_by(start, self.replace, "../hydrogen-ignition/MEC", "O+H2=H+OH ", "O+H2=H+OH!")), 13)

    def test_a_second_start_does_what_is_due(self):
        self.starts_do_what_is_due(self.start)

    def test_a_second_start_of_the_engine_does_what_is_due(self):
        self.starts_do_what_is_due(self.engine)

    def test_a_bad_row_does_not_end_the_others(self):
        self.table(b"\xef\xbb\xbfname,phi,pressure,enthalpy,remark,state", "good,1,1,0,,mine", "word,zero,1,0,,", "no-pressure,1,0,0,,", "negative,-1,1,0,,",
                   "short,1,1", "long,1,1,0,,,,", b"tiny,1,1e-150,0,caf\xe9,", "infinite,1,inf,0,,", "digits,1_0,1,0,,", "linked,1,1,0,,", "file,1,1,0,,", "hot,1,1,9e9,,", 'quoted,1,1,0,"a, ""b""",', "")
        results = self.sweep / "results"
        results.mkdir()
        (self.sweep / "elsewhere").mkdir()
        (results / "linked").symlink_to("../elsewhere")
        (results / "file").write_text("")
        (results / "good").mkdir()
        for name in ("INP", "listing", "messages", "verdict.json", "fort.3", "fort.10"):
            (results / "good" / name).symlink_to("../../elsewhere/" + name)
        (self.sweep / "elsewhere/INP").write_text("of somebody else")
        (results / "summary.csv").symlink_to("../elsewhere/INP")
        (results / "summary.svg").symlink_to("../elsewhere/INP")
        self.assertIn("10 failed", self.start())
        self.assertEqual((self.sweep / "elsewhere/INP").read_text(), "of somebody else")
        self.assertEqual(len(list((self.sweep / "elsewhere").iterdir())), 1)
        failed = {name: row["first_error"] for name, row in self.rows("failed.csv").items()}
        for name, says in [("word", "cases.csv:3: phi is 'zero', which is no number"), ("no-pressure", "the left mixture has the density 0 kg/m3"),
                           ("negative", "cases.csv:5: phi is below 0"), ("short", "cases.csv:6: 3 values under 6 columns"), ("long", "8 values under 6 columns"),
                           ("infinite", "pressure is 'inf', which is no number"), ("digits", "phi is '1_0', which is no number"), ("linked", "results/linked is no directory of its own"),
                           ("file", "no directory of its own"), ("hot", "INP:")]:
            self.assertIn(says, failed.pop(name))
        self.assertEqual(failed, {})
        rows = self.rows()
        self.assertEqual([(rows[name]["state"], rows[name]["varpre_state"]) for name in ("good", "tiny", "word")], [("mine", "complete"), ("", "complete"), ("", "failed")])
        self.assertEqual((rows["quoted"]["remark"], rows["tiny"]["remark"]), ('a, "b"', "caf\udce9"))
        self.assertEqual(rows["no-pressure"]["left_temperature"], "298.12")

    def test_what_cannot_be_meant_stops_it_at_once(self):
        self.first_rows(2)
        head = "name,phi,pressure,enthalpy"
        for lines, says in [([head, "../x,1,1,0", "a,1,1,0", "a,1,1,0"], r"cases\.csv:2: '\.\./x' cannot be the name of a directory: .*\ncases\.csv:4: the name 'a' stands in line 3 already\n$"),
                            ([head, '"a\nb",1,1,0', "-x,1,1,0", "..,1,1,0"], r"csv:3: 'a\\nb' cannot be .*csv:4: '-x' cannot be .*csv:5: '\.\.' cannot be"),
                            ([head, "summary.csv,1,1,0"], "cases.csv:2: the name 'summary.csv' is taken"), ([head, "groups,1,1,0"], "'groups' is taken"),
                            ([head, "a" * 300 + ",1,1,0"], "has 300 letters; 200 are allowed"), ([head, "a" * 200000], r"cases\.csv:2: .*field limit"), ([head], "no rows"),
                            (["phi;pressure"], "no column name; .* commas"), ([head + ",phi", "a,1,1,0,1"], "the column 'phi' stands there twice"), ([], "no column name"),
                            (["name,phi,pressure", "a,1,1"], "no column enthalpy, which INP.template asks for")]:
            with self.subTest(says):
                self.table(*lines)
                self.assertRegex(self.start(status=1), "(?s)^sweep.py: .*" + says)
        self.first_rows(2)
        for file, old, new, says in [("INP.template", "PConst", "{PConst", r"INP\.template:3: a single '\{'"),
                                     ("INP.template", "{pressure}", "{presure}", "no column presure"), ("INP.template", "{pressure}", "{pressure:99999999999}", "no column pressure:99999999999"),
                                     ("settings.json", "100", '"x"', "group_size is a whole number"), ("settings.json", "100", "0", "group_size is a whole number"), ("settings.json", "100,", "100", r"settings\.json: "),
                                     ("settings.json", '"x": "phi"', '"x": 1', "picture has names of columns")]:
            with self.subTest(says):
                text = (self.sweep / file).read_text()
                self.replace(file, old, new)
                output = self.start(status=1)
                (self.sweep / file).write_text(text)
                self.assertRegex(output, says)
        (self.sweep / "elsewhere").mkdir()
        (self.sweep / "results").symlink_to("elsewhere")
        self.assertIn("results is a link", self.start(status=1))
        self.assertIn("varpre is not on the path", self.start(status=1, env={"PATH": "/nowhere"}))
        self.assertEqual(list((self.sweep / "elsewhere").iterdir()), [])

    def test_what_cannot_be_meant_stops_the_engine_too(self):
        self.first_rows(2)
        (self.sweep / "elsewhere").mkdir()
        (self.sweep / "results").symlink_to("elsewhere")
        output = self.engine(status=1)
        self.assertIn("sweep.py: results is a link", output)
        self.assertNotIn("Building DAG", output)  # before any job
        self.table("name", "a")
        self.assertIn("sweep.py: cases.csv: no column enthalpy, phi, pressure", self.engine(status=1))

    def test_the_template_is_the_users(self):
        """Another fuel from a setting or the table, a temperature, a text and a value under any name; nothing of phi where no mixture is asked for."""
        template = (EXAMPLES / "methane-counterflow/INP").read_text()
        (self.sweep / "INP.template").write_text("**** {{\n" + template)
        self.table("name,T of air", "a,300", "b,400")
        self.table('{"mechanism": "../methane-counterflow"}', name="settings.json")
        self.assertIn("2 cases complete", self.start())
        self.assertTrue((self.sweep / "results/a/INP").read_text().startswith("**** {\n"))

        text = template.replace("COMMENT Methane-air diffusion flame, reduced species list", "COMMENT {remark}")
        begin, end = text.index("LEFT BOUNDARY"), text.index("CONDITIONS")
        mixtures = "LEFT BOUNDARY\nP       {p(bar)} bar\nT       {T, unburnt} K\n{unburnt}\nEND\nRIGHT BOUNDARY\nP       {p(bar)} bar\nT       {T, unburnt} K\n{burnt}\nEND\n"
        (self.sweep / "INP.template").write_text(text[:begin] + mixtures + text[end:])
        self.table('name,fuel,phi,"T, unburnt",p(bar),remark', "lean,CH4 0.9 H2 0.1,0.5,300,1234567.8,x", "rich,CH4,2,400,1,y", "none,NOFUEL,1,300,1,", "odd,CH4 x,1,300,1,", 'lines,CH4,1,300,1,"x\nEND"')
        self.table('{"mechanism": "../methane-counterflow", "oxidiser": "O2 0.2 N2 0.8", "picture": {"y": "right_CO2"}}', name="settings.json")
        output = self.start()
        rows = self.rows()
        self.assertIn("none: ../methane-counterflow/THERMO has no entry NOFUEL", output)
        self.assertIn(r"lines: cases.csv:7: remark is 'x\nEND', which is more than a piece of a line", output)
        self.assertIn("odd: fuel is 'CH4 x'; expected species and mole in turn", output)
        # 0.9 CH4 + 0.1 H2 needs 1.85 O2; half of that fuel makes 0.45 CO2 and 0.95 H2O.
        all_left, all_right = 0.5 + 1.85 / 0.2, 1.85 / 0.2 - 0.925 + 0.45 + 0.95
        for column, expected in [("left_CH4", 0.45 / all_left), ("left_H2", 0.05 / all_left), ("right_CO2", 0.45 / all_right), ("right_H2O", 0.95 / all_right),
                                 ("right_O2", 0.925 / all_right), ("right_N2", 7.4 / all_right), ("right_CH4", 0), ("left_temperature", 300)]:
            self.assertAlmostEqual(float(rows["lean"][column]), expected, 4, column)
        self.assertAlmostEqual(float(rows["rich"]["right_CH4"]), 1 / (1 + 3 + 8), 4)
        self.assertEqual(float(rows["rich"]["right_O2"]), 0)
        INP = (self.sweep / "results/lean/INP").read_text()
        self.assertIn("COMMENT x\n", INP)
        self.assertIn("P         1234567.8 bar\n", INP)

    def test_verdicts_that_cannot_be_had_are_told(self):
        self.first_rows(4)
        tools = self.sweep / "tools"
        tools.mkdir()
        (tools / "varpre").symlink_to(shutil.which("varpre"))
        checker = tools / "varpre-check"
        checker.write_text(f"#!/bin/sh\n'{shutil.which('varpre-check')}' \"$@\" | sed '2s/.*/{{/; 3s/p01/p02/; 4d'\n")
        checker.chmod(0o755)
        environment = {**os.environ, "PATH": f"{tools}:{os.environ['PATH']}"}
        self.assertIn("1 cases complete, 3 failed", self.start(env=environment))
        self.assertRegex(self.rows("failed.csv")["phi0.4-p01-h000"]["first_error"], "^its verdict cannot be had: ")
        (self.sweep / "results/phi0.2-p01-h000/verdict.json").write_text("[" * 100000)
        self.assertIn("4 of 4 cases run", self.start())
        self.assertEqual(self.rows("failed.csv"), {})

        # The first warning; a run that fails; no gnuplot, no memory, no processes.
        self.replace("INP.template", "NT       2000.0", "NT       2000.0\nSW        -1.0")
        (tools / "varpre").unlink()
        (tools / "varpre").write_text(f"#!/bin/sh\n[ $# = 0 ] || exec '{shutil.which('varpre')}' \"$@\"\ncase $PWD in *phi0.4*) echo a >&2; echo no disk >&2; exit 2;; esac; exec '{shutil.which('varpre')}'\n")
        (tools / "varpre").chmod(0o755)
        checker.unlink()
        checker.symlink_to(shutil.which("varpre-check"))
        for name in ("sh", "python3"):
            (tools / name).symlink_to(shutil.which(name) if name == "sh" else sys.executable)
        self.assertIn("no picture: gnuplot is not on the path", self.start(env={"PATH": str(tools)}))
        rows = self.rows()
        self.assertRegex(rows["phi0.2-p01-h000"]["first_warning"] + rows["phi0.2-p01-h000"]["first_error"], r"INP:\d+: ")
        self.assertEqual(rows["phi0.4-p01-h000"]["first_error"], "varpre ended with exit status 2: no disk")

    def test_what_the_store_file_holds(self):
        """Lists of names over three records, whose last blanks are not there; numbers without room for their E."""
        names = [f"X{k}" for k in range(13)]
        records = ["".join(f"{name:10}" for name in names[k:k + 5]).rstrip() for k in (0, 5, 10)]
        script = f"import sweep; print(sweep.items({[12 * ' ' + records[0], *records[1:]]}, 13, 8, 2), sweep.stored_number(' 4.2000-151'), sweep.stored_number('-1.5E-02'))"
        self.assertEqual(self.command(sys.executable, "-c", script), f"{names} 4.2e-151 -0.015\n")

    def test_parts_for_an_engine(self):
        self.first_rows(4)
        self.replace("settings.json", "100", "2")
        self.assertIn("2 of 2 cases run", self.start("group", "1"))
        self.assertIn("2 cases complete, 2 failed", self.start("summary"))
        self.assertIn("results/groups/0.json cannot be read", self.rows("failed.csv")["phi0.2-p01-h000"]["first_error"])
        for wrong in (["group", "2"], ["group"], ["sum"]):
            self.start(*wrong, status=2)


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *sys.argv[3:]])
