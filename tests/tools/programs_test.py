#!/usr/bin/env python3
"""What all programs have in common: programs_test.py SOURCES VERSION PROGRAM..."""

import os
import re
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

SOURCES, VERSION, PROGRAMS = Path(sys.argv[1]).resolve(), sys.argv[2], [Path(argument).resolve() for argument in sys.argv[3:]]


def run(program, *arguments, **options):
    return subprocess.run([program, *arguments], capture_output=True, text=True, timeout=60, stdin=subprocess.DEVNULL, **options)


class Programs(unittest.TestCase):
    def setUp(self):
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        self.root = Path(scratch.name)

    def options(self, program):
        """What the list of options in --help names: in the columns before the explanations."""
        return set(re.findall(r"^ +(?:-h,)?(--[a-z-]+)", run(program, "--help").stdout, re.M)) | set(re.findall(r"^ *--help, (--version)", run(program, "--help").stdout, re.M))

    def test_help_and_version(self):
        for program in PROGRAMS:
            result = run(program, "--version", cwd=self.root)
            self.assertEqual((result.returncode, result.stdout, result.stderr), (0, f"{program.name} {VERSION}\n", ""))
            result = run(program, "--help", cwd=self.root)
            self.assertEqual((result.returncode, result.stderr), (0, ""))
            self.assertLessEqual({"--help", "--version"}, self.options(program))
            with open("/dev/full", "w") as full:
                self.assertEqual(subprocess.run([program, "--help"], stdout=full, stderr=subprocess.DEVNULL).returncode, 2)
            with tempfile.TemporaryFile() as limited:
                self.assertEqual(subprocess.run(["bash", "-c", "ulimit -f 0; exec \"$0\" --help", program], stdout=limited, stderr=subprocess.DEVNULL).returncode, 2)
        self.assertEqual(list(self.root.iterdir()), [])

    def test_varpre_itself_takes_no_arguments(self):
        for arguments in ["INP"], ["--help", "--version"], [""]:
            result = run(PROGRAMS[0], *arguments, cwd=self.root)
            self.assertEqual((result.returncode, result.stdout), (2, ""))
            self.assertEqual(result.stderr, "varpre: takes no arguments; it reads INP, MEC, THERMO and MOLNEW in the working directory\n")
        self.assertEqual(list(self.root.iterdir()), [])

    def test_help_of_varpre_names_its_files(self):
        page = (SOURCES / "docs/varpre.1").read_text()
        files = re.findall(r"(?:fort\.\d+|[A-Z]{3,})", "\n".join(re.findall(r"^\.TP\n\.IR? (.*)$", page[page.index(".SH FILES"):page.index(".SH EXIT")], re.M)))
        self.assertLessEqual({"INP", "THERMLIQ", "fort.3", "fort.12"}, set(files))
        text = run(PROGRAMS[0], "--help").stdout
        self.assertEqual([file for file in files if file not in text], [])
        self.assertIn("share/doc/varpre", text)

    def test_version_stands_in_the_list_of_changes(self):
        self.assertEqual(re.search(r"^## (\S+) \(\d{4}-\d\d-\d\d\)$", (SOURCES / "CHANGELOG.md").read_text(), re.M)[1], VERSION)

    def test_manual_has_every_option_and_names_the_others(self):
        pages = {page.stem: page.read_text().replace("\\-", "-") for page in (SOURCES / "docs").glob("*.1")}
        for program in PROGRAMS:
            with self.subTest(program.name):
                page = pages[program.name]
                described = set(re.findall(r"--[a-z][a-z-]*", "".join(re.findall(r"^\.TP\n(.*)$", page, re.M))))
                self.assertEqual(described, self.options(program))
                also = page[page.index(".SH SEE ALSO"):]
                self.assertEqual({name for name in pages if f".BR {name} (1)" in also}, set(pages) - {program.name})
                self.assertIn(".SH EXIT STATUS", page)

    def complete(self, program, *words):
        script = ('source "$0"; COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1)); "$(complete -p "${1##*/}" | sed "s/.*-F \\([^ ]*\\).*/\\1/")" "$1"; printf "%s\\n" "${COMPREPLY[@]}"')
        return set(run("bash", "-c", script, SOURCES / "src/tools/completion.bash", program, *words, cwd=self.root).stdout.split("\n")) - {""}

    def test_completion(self):
        (self.root / "sub").mkdir()
        (self.root / "some file").write_text("")
        for program in PROGRAMS:
            self.assertEqual(self.complete(program, "--"), self.options(program), program.name)
            self.assertEqual(self.complete(program, "s"), {"varpre": set(), "varpre-check": {"sub"}}.get(program.name, {"sub", "some file"}))
        for program in PROGRAMS:
            if program.name == "varpre-check":
                self.assertEqual(self.complete(program, "--st"), {"--strict"})
                self.assertEqual(self.complete(program, "--baseline", "s"), {"sub", "some file"})


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
