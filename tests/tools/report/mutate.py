#!/usr/bin/env python3
"""Are wrong numbers noticed? mutate.py BUILD ROOT [COUNT] [SEED]

Changes one number, operator or index of the page's scripts, of the JSON, the reader or the comparison at random, many times
over, and runs the tests on each: the quick ones first, those in a browser last. Lists what nobody noticed. BUILD is a whole
build by ninja, which is left as it is.
"""

import os
import random
import re
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

BUILD, ROOT = (Path(argument).resolve() for argument in sys.argv[1:3])
COUNT = int(sys.argv[3]) if len(sys.argv) > 3 else 40
SEED = int(sys.argv[4]) if len(sys.argv) > 4 else 1
PAGE = "src/tools/report/page"
SCRIPTS = "units physics search table plots numbers curves state overview species reactions".split()
PROGRAMS = ("varpre-report", "varpre-diff", "varpre_every_field_test")
# Described in headers: a change of the formats would be one of what varpre writes, too, which its own tests notice.
HEADERS = ("src/files/store_values.h",)
# How things look is for the eye.
LOOKS = re.compile(r"border|font|[wW]idth|radius|tabindex|stroke|setTimeout|Dash|COLOURS|DARK|BOX|step = Infinity|dark\(|size: 12|canvas|MOST|gibbs[.]size")
TOKEN = re.compile(r"&[FD]::\w+|(?<![\w.#\"'`-])\d+(?:\.\d+)?(?:e[-+]?\d+)?(?![\w.\"'`])| [-+*/<>] | [<>]= | \*\* | [!=]== | && | \|\| ")
SWAPS = {" + ": " - ", " - ": " + ", " * ": " / ", " / ": " * ", " < ": " >= ", " > ": " <= ", " <= ": " > ", " >= ": " < ", " ** ": " * ", " === ": " !== ",
         " !== ": " === ", " && ": " || ", " || ": " && "}


def files():
    yield from (f"{PAGE}/{name}.js" for name in SCRIPTS)
    yield from ("src/tools/report/store_json.cpp", "src/files/store_reader.cpp", "src/files/store_equations.cpp", *HEADERS)
    yield from (str(file.relative_to(ROOT)) for file in sorted((ROOT / "src/tools/diff").glob("*.cpp")) if file.name != "main.cpp")


def places():
    for name in files():
        for number, line in enumerate((ROOT / name).read_text().splitlines()):
            code = re.sub(r"//.*", "", line)
            if not LOOKS.search(code) and not code.startswith("#"):
                for match in TOKEN.finditer(code):
                    yield name, number, match.start(), match[0]


def changed(token):
    if token in SWAPS:
        return SWAPS[token]
    if token.startswith("&"):  # a place of a record holds another value
        return token[:4] + {"F": "RI" if token != "&F::RI" else "RO", "D": "UINI" if token != "&D::UINI" else "VINI"}[token[1]]
    return "1" if token == "0" else str(int(token) + 1) if token.isdigit() else repr(float(token) * 1.01)


# What Chromium opens is made by a program that puts the changed scripts in place of the embedded ones.
WRAPPER = """#!/usr/bin/env python3
import pathlib, re, subprocess, sys
status = subprocess.run(["{report}", *sys.argv[1:]]).returncode
if "--output" in sys.argv:
    page = pathlib.Path(sys.argv[sys.argv.index("--output") + 1])
    scripts = re.search(r"set[(]scripts ([^)]*)", pathlib.Path("{root}/src/tools/report/CMakeLists.txt").read_text())[1].split()
    script = "".join(pathlib.Path("{root}/{page}", name + ".js").read_text() for name in scripts)
    text = page.read_text()
    begin = text.rindex("<script>") + len("<script>")
    page.write_text(text[:begin] + script + text[text.index("</script>", begin):])
sys.exit(status)
"""


def command(target):
    commands = subprocess.run(["ninja", "-t", "commands", target], cwd=BUILD, capture_output=True, text=True, check=True).stdout
    return commands.splitlines()[-1]


def sources_of(name):
    """A source file itself; of a header those that read or tell the store with it."""
    if name not in HEADERS:
        return [name]
    users = [file for folder in ("src/files", "src/tools/diff", "src/tools/report") for file in (ROOT / folder).glob("*.cpp")]
    return [str(file.relative_to(ROOT)) for file in sorted(users) if file.name != "main.cpp"]


def build(root, name):
    """The programs with a changed source file in root; whether it compiles."""
    targets = subprocess.run(["ninja", "-t", "targets", "all"], cwd=BUILD, capture_output=True, text=True, check=True).stdout
    objects = []
    for source in sources_of(name):
        target = re.search(rf"^\S*/{re.escape(Path(source).name)}\.o(?=:)", targets, re.M)[0]
        objects.append(root / f"changed{len(objects)}.o")
        compile_it = re.sub(r" -M[DTF]( \S+\.(o|d)\b)?", "", command(target)).replace(target, str(objects[-1])).replace("-O3", "-O0")
        if name in HEADERS:  # they are found before the others
            compile_it = compile_it.replace(" -I", f" -I{root}/src -I", 1)
        else:
            compile_it = re.sub(rf"\S+/{re.escape(name)}$", str(root / name), compile_it)
        if subprocess.run(compile_it, shell=True, cwd=BUILD, capture_output=True).returncode:
            return False
    for program in PROGRAMS:
        changed_ones = " ".join(map(str, objects))
        link = re.sub(r" -o (\S+)", lambda match: f" {changed_ones} -o {root}/{Path(match[1]).name}", command(program))
        subprocess.run(link, shell=True, cwd=BUILD, check=True, capture_output=True)
    return True


def notices(root, report):
    tests = ROOT / "tests/tools"
    varpre = BUILD / "bin/varpre"
    environment = dict(os.environ, VARPRE=str(varpre), VARPRE_REPORT=str(report), ROOT=str(root))
    wrapper = root / "wrapper"
    wrapper.write_text(WRAPPER.format(report=report, root=root, page=PAGE))
    wrapper.chmod(0o755)
    steps = [("page", ["node", "--test", tests / "report/page_test.js", tests / "report/whole_page_test.js"])]
    if report.parent == root:
        steps = [("fields", [root / "varpre_every_field_test"]), ("diff", ["/usr/bin/python3", tests / "diff/diff_test.py", root / "varpre-diff", varpre, ROOT]),
                 *steps, ("report", ["/usr/bin/python3", tests / "report/report_test.py", report, varpre, ROOT])]
    steps.append(("browser", ["/usr/bin/python3", tests / "report/browser_test.py", wrapper, varpre, ROOT, root / "screenshots"]))
    for step, arguments in steps:
        try:
            if subprocess.run(arguments, env=environment, cwd=root, capture_output=True, timeout=600).returncode:
                return step
        except subprocess.TimeoutExpired:
            return step + ", by not ending"
    return ""


def by_whom(place):
    name, number, column, token = place
    with tempfile.TemporaryDirectory() as scratch:
        root = Path(scratch)
        shutil.copytree(ROOT / "src/tools/report", root / "src/tools/report")
        (root / name).parent.mkdir(parents=True, exist_ok=True)
        for other in ("examples", "docs"):
            (root / other).symlink_to(ROOT / other)
        lines = (ROOT / name).read_text().splitlines(keepends=True)
        lines[number] = lines[number][:column] + changed(token) + lines[number][column + len(token):]
        (root / name).write_text("".join(lines))
        if name.endswith(".js"):
            return notices(root, BUILD / "bin/varpre-report")
        return notices(root, root / "varpre-report") if build(root, name) else None


random.seed(SEED)
missed = []
tried = 0
everywhere = list(places())
for place in random.sample(everywhere, len(everywhere)):
    by = by_whom(place)
    if by is None:  # it does not compile
        continue
    tried += 1
    name, number, column, token = place
    line = (ROOT / name).read_text().splitlines()[number].strip()
    told = f"{name}:{number + 1}:{column + 1}: {line} [{token.strip()} -> {changed(token).strip()}]"
    print(f"{by or 'MISSED':8} {told}", flush=True)
    if not by:
        missed.append(told)
    if tried == COUNT:
        break
print(f"{tried - len(missed)} of {tried} noticed")
