#!/usr/bin/env python3
"""varpre-check as scripts and editors use it: check_test.py PROGRAM EXAMPLE DOCUMENTS"""

import json
import os
import re
import shutil
import subprocess
import sys
import tempfile
import threading
import unittest
from pathlib import Path

PROGRAM, EXAMPLE, DOCUMENTS = (Path(argument).resolve() for argument in sys.argv[1:4])


def block(document, kind):
    """A block of a document that says it was tried."""
    return re.search(rf"^```{kind} tried\n(.*?)^```$", (DOCUMENTS / document).read_text(), re.M | re.S)[1]


class Check(unittest.TestCase):
    def setUp(self):
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        self.root = Path(scratch.name)

    def case(self, name, file="INP", old="", new=""):
        """A copy of the example with one edit."""
        directory = self.root / name
        shutil.copytree(EXAMPLE, directory)
        text = (directory / file).read_text()
        self.assertIn(old, text)
        (directory / file).write_text(text.replace(old, new, 1))
        return name

    def check(self, *arguments):
        return subprocess.run([PROGRAM, *arguments], cwd=self.root, capture_output=True, text=True, timeout=120)

    def objects(self, *arguments):
        return [json.loads(line) for line in self.check("--json", *arguments).stdout.splitlines()]

    def test_exit_status_is_that_of_the_worst_directory(self):
        good = self.case("good")
        warned = self.case("warned", "INP", "GE          2.0", "GE          3.0")
        wrong = self.case("wrong", "INP", "Energy", "Enregy")
        for status, arguments in [(0, [good]), (0, [warned]), (1, ["--strict", warned]), (0, ["--strict", good]),
                                  (1, [good, wrong, warned]), (2, [good, "absent", wrong]), (2, ["--unknown"]),
                                  (2, ["--jobs", "0", good]), (0, ["--help"]), (0, ["--version"])]:
            self.assertEqual(self.check(*arguments).returncode, status, arguments)
        text = self.check(good, warned, wrong).stdout
        self.assertIn("wrong/INP:3:11: error: unknown option 'Enregy'\n", text)
        self.assertIn("good: no findings; store file complete\n", text)
        self.assertTrue(text.endswith("varpre-check: 1 with errors, 1 with warnings, 1 without findings\n"), text)

    def test_json_tells_counts_and_places(self):
        names = [self.case("good"), self.case("wrong", "MEC", "O+H2=H+OH", "O+H2=H+0H"),
                 self.case("many", "MEC", "26.192", "26192.\n" + 9 * "O+H2=H+OH 1.0 0.0 26192.\n")]
        good, wrong, many = self.objects(*names)
        self.assertEqual([o["directory"] for o in (good, wrong, many)], names)
        self.assertEqual(good["store_file"], "complete")
        self.assertEqual(good["end"], "normal")
        self.assertEqual(good["counts"], {"gas_species": 10, "surface_species": 0, "particle_species": 0, "elements": 4,
                                          "gas_reactions": 58, "surface_reactions": 0, "errors": 0, "warnings": 0})
        self.assertEqual(wrong["findings"],
                         [{"file": "MEC", "line": 4, "column": 8, "width": 2, "caret": 8, "severity": "error",
                           "text": "unknown species '0H'",
                           "help": "did you mean 'OH'? (the letter O, not the digit 0)"}])
        energies = [f for f in many["findings"] if f["text"] == "the activation energy is read as 26192 kJ/mol"]
        self.assertEqual([f["line"] for f in energies], list(range(4, 14)))
        self.assertEqual(many["counts"]["errors"] + many["counts"]["warnings"], len(many["findings"]))

    def test_a_thousand_directories_come_in_order_whatever_the_jobs(self):
        self.case("wrong", "INP", "Energy", "Enregy")
        for i in range(1000):
            (self.root / f"{i:04}").symlink_to(self.case("good") if i == 0 else "wrong" if i % 7 == 0 else "good")
        names = [f"{i:04}" for i in range(1000)]
        outputs = [self.check("--jobs", jobs, *names) for jobs in ("1", "7")]
        self.assertEqual(outputs[0].stdout, outputs[1].stdout)
        self.assertEqual(outputs[0].stderr, "")
        ends = [line.split(":")[0] for line in outputs[0].stdout.splitlines() if "; store file" in line]
        self.assertEqual(ends, names)

    def test_nothing_is_written_and_what_cannot_be_run_is_said(self):
        good = self.case("good")
        before = {p: p.stat().st_mtime_ns for p in self.root.rglob("*")}
        (self.root / "empty").mkdir()
        (self.root / "fifo").mkdir()
        os.mkfifo(self.root / "fifo/INP")
        (self.root / "file").write_text("")
        (self.root / "odd\x1b[2J").mkdir()
        result = self.check("fifo", good, "file", "empty", "absent", "odd\x1b[2J")
        self.assertEqual(result.returncode, 2)
        self.assertEqual(result.stderr, "varpre-check: fifo/INP: not a regular file\n"
                                        "varpre-check: file: Not a directory\n"
                                        "varpre-check: absent: No such file or directory\n")
        self.assertIn("empty/INP:1:1: warning: there was no file empty/INP: it counts as empty\n", result.stdout)
        self.assertNotIn("\x1b", result.stdout)
        self.assertEqual({p: p.stat().st_mtime_ns for p in before}, before)
        self.assertEqual(list((self.root / "empty").iterdir()), [])
        self.assertEqual([o.get("fault") for o in self.objects("fifo", good)], ["fifo/INP: not a regular file", None])

    def test_directories_may_vanish(self):
        names = [self.case(f"{i:03}") for i in range(200)]
        remover = threading.Thread(target=lambda: [shutil.rmtree(self.root / name) for name in reversed(names)])
        remover.start()
        objects = self.objects(*names)
        remover.join()
        self.assertEqual([o["directory"] for o in objects], names)
        for o in objects:
            self.assertTrue("fault" in o or o["store_file"] == "complete" or o["findings"], o)

    def test_a_reader_that_does_not_listen_is_told_of(self):
        with open("/dev/full", "w") as full:
            result = subprocess.run([PROGRAM, self.case("good")], cwd=self.root, stdout=full, stderr=subprocess.PIPE)
        self.assertEqual(result.returncode, 2)

    def wrong_inputs(self):
        """A directory with errors in two files, and its findings as (file, line, column, severity)."""
        name = self.case("wrong", "INP", "GE          2.0", "GE          3.0")
        mechanism = self.root / name / "MEC"
        mechanism.write_text(mechanism.read_text().replace("26.192", "26192."))
        found = [(f["file"], f["line"], f["caret"], f["severity"]) for f in self.objects(name)[0]["findings"]]
        self.assertEqual({file for file, *_ in found}, {"INP", "MEC"})
        return self.root / name, found

    def test_editor_vim(self):
        if not shutil.which("vim"):
            self.skipTest("no vim here")
        directory, found = self.wrong_inputs()
        (self.root / "vimrc").write_text(block("editors.md", "vim").replace("varpre-check", str(PROGRAM)))
        subprocess.run(["vim", "-u", "NONE", "-N", "-es", "-S", self.root / "vimrc", "-c", "silent make!",
                        "-c", "call writefile(map(getqflist(), "
                        "'bufname(v:val.bufnr).\" \".v:val.lnum.\" \".v:val.col.\" \".v:val.type'), 'list')",
                        "-c", "qa!"], cwd=directory, timeout=60, stdin=subprocess.DEVNULL, capture_output=True)
        self.assertEqual((directory / "list").read_text().splitlines(),
                         [f"{file} {line} {column} {severity[0]}" for file, line, column, severity in found])

    def test_editor_emacs(self):
        if not shutil.which("emacs"):
            self.skipTest("no emacs here")
        directory, found = self.wrong_inputs()
        lisp = """(progn (require 'compile)
            (with-temp-buffer (call-process "PROGRAM" nil t) (compilation-mode) (goto-char (point-min))
              (condition-case nil
                (while t (compilation-next-error 1)
                  (let ((loc (compilation--message->loc (get-text-property (point) 'compilation-message))))
                    (princ (format "%s %s %s\n" (caar (compilation--loc->file-struct loc))
                                   (compilation--loc->line loc) (compilation--loc->col loc)))))
                (error nil))))""".replace("PROGRAM", str(PROGRAM))
        listed = subprocess.run(["emacs", "-Q", "--batch", "--eval", lisp], cwd=directory, capture_output=True,
                                text=True, timeout=60).stdout.splitlines()
        places = [f"{file} {line} {column}" for file, line, column, _ in found]
        self.assertEqual(set(listed) | {places[0]}, set(places))  # it starts on the first one

    def test_editor_vs_code(self):
        directory, found = self.wrong_inputs()
        pattern = json.loads(block("editors.md", "json"))["tasks"][0]["problemMatcher"]["pattern"]
        output = subprocess.run([PROGRAM], cwd=directory, capture_output=True, text=True).stdout
        matches = filter(None, (re.match(pattern["regexp"], line) for line in output.splitlines()))
        self.assertEqual([(m[pattern["file"]], int(m[pattern["line"]]), int(m[pattern["column"]]), m[pattern["severity"]])
                          for m in matches], found)

    def test_script_of_the_document(self):
        for name in "ab":
            self.case(name)
        path = f"{PROGRAM.parent}:{os.environ['PATH']}"
        printed = subprocess.run([sys.executable, "-c", block("check.md", "python")], cwd=self.root,
                                 env={**os.environ, "PATH": path}, capture_output=True, text=True).stdout
        self.assertEqual(printed, "a complete\nb complete\n")

    def test_job_of_the_document(self):
        script = re.search(r"- (varpre-check .*)", block("check.md", "yaml"))[1].replace("varpre-check", str(PROGRAM))
        (self.root / "mechanisms").mkdir()
        self.case("mechanisms/good")
        self.assertEqual(subprocess.run(script, shell=True, cwd=self.root, capture_output=True).returncode, 0)
        self.case("mechanisms/warned", "INP", "GE          2.0", "GE          3.0")
        self.assertEqual(subprocess.run(script, shell=True, cwd=self.root, capture_output=True).returncode, 1)

    def test_varpre_itself_takes_no_arguments(self):
        def varpre(*arguments):
            return subprocess.run([PROGRAM.parent / "varpre", *arguments], cwd=self.root, capture_output=True, text=True)

        for argument, begin in ("--version", "varpre "), ("--help", "usage: varpre > listing\n"):
            result = varpre(argument)
            self.assertEqual((result.returncode, result.stdout[:len(begin)], result.stderr), (0, begin, ""))
        for arguments in ["INP"], ["--help", "--version"], [""]:
            result = varpre(*arguments)
            self.assertEqual((result.returncode, result.stdout), (2, ""))
            self.assertEqual(result.stderr, "varpre: takes no arguments; "
                                            "it reads INP, MEC, THERMO and MOLNEW in the working directory\n")
        self.assertEqual(list(self.root.iterdir()), [])

    def test_completion(self):
        (self.root / "sub").mkdir()
        (self.root / "file").write_text("")
        completion = DOCUMENTS.parent / "src/tools/check/varpre-check.bash"
        script = (f"source {completion}; for word in --s '' ; do COMP_WORDS=(varpre-check $word) COMP_CWORD=1; "
                  "_varpre_check; echo ${COMPREPLY[*]}; done")
        printed = subprocess.run(["bash", "-c", script], cwd=self.root, capture_output=True, text=True).stdout
        self.assertEqual(printed, "--strict\nsub\n")


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
