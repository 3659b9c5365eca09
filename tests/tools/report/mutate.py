#!/usr/bin/env python3
"""Are wrong numbers noticed? mutate.py REPORT VARPRE ROOT [COUNT] [SEED]

Changes one number, operator or index of the page's scripts at random, many times over, and runs the tests of the page on
each: those under Node, then, where these see nothing, those in a browser. Lists what nobody noticed.
"""

import os
import random
import re
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

REPORT, VARPRE, ROOT = (Path(argument).resolve() for argument in sys.argv[1:4])
COUNT = int(sys.argv[4]) if len(sys.argv) > 4 else 40
SEED = int(sys.argv[5]) if len(sys.argv) > 5 else 1
PAGE = "src/tools/report/page"
FILES = "units physics search table plots numbers curves state overview species reactions".split()
# How things look is for the eye.
LOOKS = re.compile(r"border|font|[wW]idth|radius|tabindex|stroke|setTimeout|Dash|COLOURS|DARK|BOX|step = Infinity|dark\(|size: 12|canvas|MOST")
TOKEN = re.compile(r"(?<![\w.#\"'`-])\d+(?:\.\d+)?(?:e[-+]?\d+)?(?![\w.\"'`])| [-+*/<>] | [<>]= | \*\* | [!=]== | && | \|\| ")
SWAPS = {" + ": " - ", " - ": " + ", " * ": " / ", " / ": " * ", " < ": " >= ", " > ": " <= ", " <= ": " > ", " >= ": " < ", " ** ": " * ", " === ": " !== ",
         " !== ": " === ", " && ": " || ", " || ": " && "}


def places():
    for name in FILES:
        for number, line in enumerate((ROOT / PAGE / f"{name}.js").read_text().splitlines()):
            code = re.sub(r"//.*", "", line)
            if not LOOKS.search(code):
                for match in TOKEN.finditer(code):
                    yield name, number, match.start(), match[0]


def changed(token):
    if token in SWAPS:
        return SWAPS[token]
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
    page.write_text(text[:begin] + script + text[text.rindex("</script>"):])
sys.exit(status)
"""


def notices(root):
    environment = dict(os.environ, VARPRE=str(VARPRE), VARPRE_REPORT=str(REPORT), ROOT=str(root))
    tests = [ROOT / "tests/tools/report" / name for name in ("page_test.js", "whole_page_test.js")]
    try:
        if subprocess.run(["node", "--test", *tests], env=environment, capture_output=True, timeout=120).returncode:
            return "node"
    except subprocess.TimeoutExpired:
        return "node, by not ending"
    wrapper = root / "varpre-report"
    wrapper.write_text(WRAPPER.format(report=REPORT, root=root, page=PAGE))
    wrapper.chmod(0o755)
    browser = ["/usr/bin/python3", ROOT / "tests/tools/report/browser_test.py", wrapper, VARPRE, ROOT, root / "screenshots"]
    return "browser" if subprocess.run(browser, capture_output=True).returncode else ""


random.seed(SEED)
missed = []
for place in random.sample(list(places()), COUNT):
    name, number, column, token = place
    with tempfile.TemporaryDirectory() as scratch:
        root = Path(scratch)
        shutil.copytree(ROOT / "src/tools/report", root / "src/tools/report")
        for other in ("examples", "docs"):
            (root / other).symlink_to(ROOT / other)
        file = root / PAGE / f"{name}.js"
        lines = file.read_text().splitlines(keepends=True)
        before = lines[number]
        lines[number] = before[:column] + changed(token) + before[column + len(token):]
        file.write_text("".join(lines))
        by = notices(root)
    told = f"{name}.js:{number + 1}: {before.strip()} [{token.strip()} -> {changed(token).strip()}]"
    print(f"{by or 'MISSED':8} {told}", flush=True)
    if not by:
        missed.append(told)
print(f"{COUNT - len(missed)} of {COUNT} noticed")
