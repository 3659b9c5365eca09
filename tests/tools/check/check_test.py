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
        again = [f for f in many["findings"] if f["text"] == "the reaction, or its reverse, is in the mechanism already"]
        self.assertEqual([f["line"] for f in again], list(range(5, 14)))
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
        (self.root / "loop").symlink_to("loop")
        result = self.check("fifo", good, "file", "empty", "absent", "odd\x1b[2J", "loop")
        self.assertEqual(result.returncode, 2)
        self.assertEqual(result.stderr, "varpre-check: fifo/INP: not a regular file\n"
                                        "varpre-check: file: Not a directory\n"
                                        "varpre-check: absent: No such file or directory\n"
                                        "varpre-check: loop: Too many levels of symbolic links\n")
        self.assertIn("empty/INP:1:1: warning: there was no file empty/INP: it counts as empty\n", result.stdout)
        self.assertNotIn("\x1b", result.stdout)
        self.assertEqual({p: p.stat().st_mtime_ns for p in before}, before)
        self.assertEqual(list((self.root / "empty").iterdir()), [])
        self.assertEqual([o.get("fault") for o in self.objects("fifo", good)], ["fifo/INP: not a regular file", None])

    def test_names_are_names(self):
        for name in ("[good]", "[a,b]", "--version", "x y", "dir"):
            self.case(name, "INP", "Energy", "Enregy")
        result = self.check("[good]", "dir/", "[a,b]", "--", "--version", "x y", "./dir//")
        self.assertEqual(result.stderr, "")
        self.assertEqual(re.findall("^(.*):3:11: error", result.stdout, re.M),
                         ["[good]/INP", "dir/INP", "[a,b]/INP", "--version/INP", "x y/INP", "./dir//INP"])
        self.assertEqual([o["findings"][0]["file"] for o in self.objects("dir/", ".//dir")], ["INP", "INP"])

    def test_an_object_is_one_line_for_every_reader(self):
        odd = "\u2028\u2029\x85\x0b\x0c\x1c\x1d\x1e\x7f\x1b\u202e\u00e9"
        name = self.case(f"odd{odd}", "INP", "Energy", odd[:2])
        output = self.check("--json", name).stdout
        self.assertTrue(output.isascii())
        self.assertEqual(output.splitlines(), [output[:-1]])
        self.assertEqual(json.loads(output)["directory"], name)
        self.assertIn(odd[:2], json.loads(output)["findings"][0]["text"])
        os.mkdir(os.fsencode(self.root) + b"/l\xe9")
        self.assertEqual(json.loads(self.check("--json", os.fsdecode(b"l\xe9")).stdout)["directory"], "l\ufffd")

    def limited(self, limits, *arguments):
        script = f"ulimit {limits}; exec '{PROGRAM}' \"$@\""
        return subprocess.run(["bash", "-c", script, "bash", *arguments], cwd=self.root, capture_output=True, text=True, timeout=120)

    def test_what_the_machine_cannot_give(self):
        """Fewer threads where they cannot be had; a directory that memory does not suffice for is told, and the others are judged."""
        good, huge = self.case("good"), self.case("huge")
        names = [good] * 6 + [huge] + [good] * 6
        whole = self.check(*names).stdout
        with open(self.root / huge / "THERMO", "r+b") as file:
            file.truncate(400_000_000)
        judged = set()
        for megabytes in (60, 100, 150, 300, 700):
            result = self.limited(f"-v {megabytes * 1000}", "--jobs", "13", *names)
            self.assertNotIn("terminate", result.stderr)
            if any(word in result.stderr for word in ("libc", "loading shared", "AddressSanitizer")):
                continue  # not even the program itself
            lines = [line for line in result.stdout.splitlines() if line == "good: no findings; store file complete"]
            judged.add(len(lines))
            self.assertIn(result.returncode, (1, 2))
            self.assertEqual(len(re.findall("^varpre-check: huge(?:/THERMO)?: Cannot allocate memory$", result.stderr, re.M)), int(result.returncode == 2))
        self.assertEqual(judged, set() if "AddressSanitizer" in result.stderr else {12})
        shutil.rmtree(self.root / huge)
        self.case("huge")
        limits = ["bash", "-c", "ulimit -u 1; exec \"$@\"", "bash", PROGRAM, "--jobs", "9"]
        if os.geteuid() == 0 and shutil.which("setpriv"):  # the limit does not hold for who may have more
            os.chmod(self.root, 0o755)
            limits = ["setpriv", "--reuid=65534", "--clear-groups", *limits]
        environment = os.environ | {"ASAN_OPTIONS": "detect_leaks=0"}  # which needs a thread
        limited = subprocess.run([*limits, *names], cwd=self.root, env=environment, capture_output=True, text=True, timeout=120)
        if limited.returncode != 126:  # who is limited need not be able to start it
            self.assertEqual((limited.stdout, limited.stderr, limited.returncode), (whole, "", 0))

    def test_sarif(self):
        """A log of the shape that hosting sites read (SARIF 2.1.0), places in characters."""
        odd = self.case("d\u00e9j\u00e0 %", "INP", "Energy", "\u00c4nerg")
        self.case("[wrong]", "MEC", "O+H2=H+OH", "O+H2=H+0H")
        (self.root / "empty").mkdir()
        result = self.check("--sarif", odd, "[wrong]", "absent", "empty")
        self.assertEqual(result.returncode, 2)
        log = json.loads(result.stdout)
        self.assertEqual(log["version"], "2.1.0")
        run, = log["runs"]
        self.assertEqual(run["columnKind"], "unicodeCodePoints")
        self.assertEqual(run["tool"]["driver"]["name"], "varpre-check")
        rules = {rule["id"]: rule["defaultConfiguration"]["level"] for rule in run["tool"]["driver"]["rules"]}
        self.assertEqual(rules["unknown-option"], "error")
        self.assertEqual({result["ruleId"] for result in run["results"]}, set(rules))
        places = [(result["locations"][0]["physicalLocation"], result) for result in run["results"]]
        self.assertEqual([place for place, _ in places][:2],
                         [{"artifactLocation": {"uri": "d%C3%A9j%C3%A0%20%25/INP"}, "region": {"startLine": 3, "startColumn": 11, "endColumn": 19}},
                          {"artifactLocation": {"uri": "%5Bwrong%5D/MEC"}, "region": {"startLine": 4, "startColumn": 8, "endColumn": 10}}])
        self.assertEqual(places[1][1]["message"]["text"], "unknown species '0H' (did you mean 'OH'? (the letter O, not the digit 0))")
        self.assertEqual(places[1][1]["level"], "error")
        self.assertEqual(places[1][1]["ruleId"], "unknown-species")
        self.assertNotIn("region", places[2][0])
        invocation, = run["invocations"]
        self.assertFalse(invocation["executionSuccessful"])
        self.assertEqual([n["message"]["text"] for n in invocation["toolExecutionNotifications"]], ["absent: No such file or directory"])
        good = json.loads(self.check("--sarif", self.case("good")).stdout)["runs"][0]
        self.assertEqual((good["results"], good["invocations"][0]["executionSuccessful"]), ([], True))
        absolute = json.loads(self.check("--sarif", self.root / "[wrong]").stdout)["runs"][0]["results"][0]
        self.assertEqual(absolute["locations"][0]["physicalLocation"]["artifactLocation"]["uri"], f"file://{self.root}/%5Bwrong%5D/MEC")
        twice = json.loads(self.check("--sarif", self.case("twice", "MEC", "26.192", "26.192\nO+H2=H+OH 5.06E+04 2.67 26.192")).stdout)["runs"][0]
        self.assertEqual([result["ruleId"] for result in twice["results"]], ["the-reaction-or-its-reverse-is-in-the"])
        self.assertEqual(self.check("--sarif", "--json", "good").returncode, 2)

    def test_accepted_warnings(self):
        a = self.case("a", "INP", "GE          2.0", "GE          3.0")
        mechanism = self.root / a / "MEC"
        energies = "26192." + 9 * "\nO+H2=H+OH 1.0 0.0 26192."
        text = mechanism.read_text()
        mechanism.write_text(text.replace("26.192", energies, 1))
        b = self.case("b")
        accept = self.check("--write-baseline", "known", a, b)
        self.assertEqual((accept.returncode, self.check("--strict", a, b).returncode), (0, 1))
        known = [json.loads(line) for line in (self.root / "known").read_text().splitlines()]
        self.assertIn({"directory": "a", "file": "INP", "text": "the geometry 3 is none that the listing knows", "count": 1}, known)
        count = sum(entry["count"] for entry in known)
        quiet = self.check("--strict", "--baseline", "known", "./a/", b)
        self.assertEqual((quiet.returncode, quiet.stdout), (0, f"./a/: no findings, {count} known; store file complete\nb: no findings; store file complete\n"
                                                               "varpre-check: 0 with errors, 0 with warnings, 2 without findings\n"))
        # They may stand elsewhere. One more of those that are known is new; so is another one; errors always count.
        for file in (mechanism, self.root / a / "INP"):
            file.write_text("****\n" + file.read_text())
        self.assertEqual(self.check("--strict", "--baseline", "known", a).returncode, 0)
        mechanism.write_text(text.replace("26.192", energies + "\nO+H2=H+OH 1.0 0.0 26192.", 1))
        more = self.check("--strict", "--baseline", "known", a)
        self.assertEqual(more.returncode, 1)
        self.assertIn("the reaction, or its reverse, is in the mechanism already", more.stdout)
        # The one on the whole mechanism says of how many reactions, so it is another one.
        self.assertIn(f", {count - 1} known; store file complete", more.stdout)
        # What is known and gone is told.
        mechanism.write_text(text)
        gone = self.check("--baseline", "known", a)
        self.assertIn("a: gone from the baseline: MEC: the reaction, or its reverse, is in the mechanism already (9 times)\n", gone.stdout)
        self.assertIn("a: no findings, 1 known", gone.stdout)
        one = json.loads(self.check("--json", "--baseline", "known", a).stdout)
        self.assertEqual([(f["text"], f["known"]) for f in one["findings"]], [("the geometry 3 is none that the listing knows", True)])
        self.assertIn("MEC: the reaction, or its reverse, is in the mechanism already (9 times)", one["gone"])
        sarif = json.loads(self.check("--sarif", "--baseline", "known", a).stdout)
        self.assertEqual([r["suppressions"] for r in sarif["runs"][0]["results"]], [[{"kind": "external"}]])
        inp = self.root / b / "INP"
        inp.write_text(inp.read_text().replace("Energy", "Enregy"))
        self.assertEqual(self.check("--write-baseline", "errors", b).returncode, 1)
        self.assertEqual(self.check("--baseline", "errors", b).returncode, 1)
        # A file that is none, and one that is a link.
        (self.root / "bad").write_text((self.root / "known").read_text() + "[1\n")
        self.assertEqual(self.check("--baseline", "bad", a).stderr, f"varpre-check: bad:{len(known) + 1}: no line of a baseline\n")
        for count, status in [("1e300", 0), ("-1", 1), ("0", 1), ('"x"', 2), ("[]", 2)]:
            (self.root / "counts").write_text(f'{{"directory": "a", "file": "INP", "text": "the geometry 3 is none that the listing knows", "count": {count}}}')
            self.assertEqual(self.check("--strict", "--baseline", "counts", a).returncode, status, count)
        (self.root / "few").write_text("".join(f'{{"directory": "a", "file": "INP", "text": "x{count}", "count": {count}}}\n' for count in (1, 2)))
        self.assertIn("a: gone from the baseline: INP: x1\na: gone from the baseline: INP: x2 (2 times)\n", self.check("--baseline", "few", a).stdout)
        self.assertEqual(self.check("--baseline", "none", a).stderr, "varpre-check: none: No such file or directory\n")
        self.assertEqual(self.check("--baseline", "known", "--write-baseline", "x", a).returncode, 2)
        (self.root / "link").symlink_to("known")
        before = (self.root / "known").read_text()
        self.check("--write-baseline", "link", a)
        self.assertEqual(((self.root / "known").read_text(), (self.root / "link").is_symlink()), (before, False))
        self.assertEqual(self.check("--write-baseline", "unwritten", a, "absent").returncode, 2)
        self.assertFalse((self.root / "unwritten").exists())
        os.mkfifo(self.root / "pipe")
        self.assertEqual(self.check("--write-baseline", "pipe", a).stderr, "varpre-check: pipe: not a regular file\n")
        self.assertTrue((self.root / "pipe").is_fifo())

    def test_accepted_warnings_that_tell_of_lines(self):
        inp = self.root / self.case("moved") / "INP"
        inp.write_text(inp.read_text() + "CONDITIONS\nEND\n2DOPTIONS\nKOORD 1\n")
        self.check("--write-baseline", "known", "moved")
        self.assertEqual([json.loads(line)["text"] for line in (self.root / "known").read_text().splitlines()],
                         ["'CONDITIONS' stands already in line ; this one is ignored", "lines  are read by no section; the first is '2DOPTIONS'"])
        inp.write_text("****\n" + inp.read_text())
        moved = self.check("--strict", "--baseline", "known", "moved")
        self.assertEqual((moved.returncode, moved.stdout.splitlines()[0]), (0, "moved: no findings, 2 known; store file complete"))

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
        self.assertEqual((result.returncode, result.stderr), (2, b"varpre-check: standard output: No space left on device\n"))

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

    def tools_on_path(self):
        return {**os.environ, "PATH": f"{PROGRAM.parent}:{os.environ['PATH']}", "HOME": str(self.root), "GIT_CONFIG_NOSYSTEM": "1"}

    def test_jobs_of_the_document(self):
        text = (DOCUMENTS / "check.md").read_text()
        commands = re.findall(r"^ *- (?:run: )?(varpre-check .*)", "".join(re.findall(r"^```yaml tried\n(.*?)^```$", text, re.M | re.S)), re.M)
        self.assertEqual(len(commands), 2)

        def ends():
            return [subprocess.run(command, shell=True, cwd=self.root, env=self.tools_on_path(), capture_output=True).returncode for command in commands]

        (self.root / "mechanisms").mkdir()
        self.case("mechanisms/good")
        self.assertEqual(ends(), [0, 0])
        self.case("mechanisms/warned", "INP", "GE          2.0", "GE          3.0")
        self.assertEqual(ends(), [1, 1])
        self.assertEqual(len(json.loads((self.root / "varpre.sarif").read_text())["runs"][0]["results"]), 1)

    def test_hook_of_the_document(self):
        if not shutil.which("git"):
            self.skipTest("no git here")

        def git(*arguments, status=0):
            result = subprocess.run(["git", "-c", "user.name=a", "-c", "user.email=b", *arguments], cwd=self.root, env=self.tools_on_path(), capture_output=True, text=True)
            self.assertEqual(result.returncode, status, result.stderr)
            return result.stdout + result.stderr

        git("init", "--quiet")
        hook = self.root / ".git/hooks/pre-commit"
        hook.write_text(block("check.md", "sh"))
        hook.chmod(0o755)
        inp = self.root / self.case("a $(touch pwned) [b]") / "INP"
        shutil.copy(inp, self.root / "INP")
        for name in ("MEC", "THERMO", "MOLNEW"):
            (self.root / name).symlink_to(f"{inp.parent.name}/{name}")
        (self.root / "untracked").mkdir()
        (self.root / "untracked/INP").write_text("")
        good = inp.read_text()
        git("add", "INP", "MEC", "THERMO", "MOLNEW", inp.parent.name)
        git("commit", "-m", "good")
        inp.write_text(good.replace("Energy", "Enregy"))
        git("add", inp.parent.name)
        inp.write_text(good)  # what is staged counts
        self.assertIn("a $(touch pwned) [b]/INP:3:11: error: unknown option 'Enregy'", git("commit", "-m", "wrong", status=1))
        git("add", inp.parent.name)
        inp.write_text("")
        git("commit", "--allow-empty", "-m", "good again")
        self.assertEqual(list(self.root.rglob("pwned")), [])
        git("rm", "-qr", "--cached", ".")
        git("commit", "-m", "nothing left")


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *sys.argv[4:]])
