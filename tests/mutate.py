#!/usr/bin/env python3
"""Are wrong programs noticed? mutate.py AREA [COUNT] [SEED] [FILE...]

Changes one token of the sources at random, many times over, and runs the tests on each: those of the area first, then the
others that it can touch. Lists what nobody noticed; some of that makes no difference, which only reading tells. Works on a
copy in build/mutants, built once (ten minutes) and kept.
"""

import json
import os
import random
import re
import signal
import subprocess
import sys
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parents[1]
COPY = ROOT / "build/mutants/source"
BUILD = ROOT / "build/mutants/build"
# Sources; which tests know them best, and which others may notice.
AREAS = {
    "check": ("src/tools/check/*.cpp src/tools/check/*.h src/tools/*.cpp", "tools/check", "tools/programs|faults/odd|docs"),
    "import": ("src/tools/import/*.cpp src/tools/import/*.h", "tools/import|tools/chemkin", "tools/export|tools/programs|docs"),
    "export": ("src/tools/export/*.cpp src/tools/export/*.h", "tools/export", "tools/chemkin|tools/programs|docs"),
    "diff": ("src/tools/diff/*.cpp src/tools/diff/*.h", "tools/diff", "tools/programs|docs"),
    "core": ("src/files/*.cpp src/mechanism/*.cpp src/conditions/*.cpp src/transport/*.cpp src/thermo/*.cpp src/driver/*.cpp src/textio/*/*.cpp", "runs/|broken/", "."),
    "sweep": ("examples/sweep/sweep.py examples/sweep/Snakefile examples/sweep/summary.gp", "", ""),
}
WITHOUT = "faults/machine|report_page|format_errors"  # by the clock, of another program, or slow
SWAPS = {"<": "<= >=", "<=": "< >", ">": ">= <=", ">=": "> <", "==": "!=", "!=": "==", "+": "-", "-": "+", "*": "/", "/": "*", "&&": "||", "||": "&&", "and": "or", "or": "and",
         "true": "false", "false": "true", "True": "False", "False": "True", "not": "", "+=": "-=", "-=": "+=", "++": "--", "min": "max", "max": "min", "break": "continue",
         "continue": "break", "any": "all", "all": "any", "any_of": "all_of", "all_of": "any_of", "first": "second", "second": "first", "lower_bound": "upper_bound",
         "front": "back", "back": "front", "starts_with": "ends_with", "startswith": "endswith", "endswith": "startswith", "floor": "ceil", "left": "right", "!": "", "//": "/",
         "find_first_of": "find_last_of", "find_first_not_of": "find_last_not_of", "ljust": "rjust", "rjust": "ljust", "is": "is not", "upper_bound": "lower_bound"}
TOKEN = r"""(?P<text>[frb]?"(?:[^"\\\n]|\\.)*"|[frb]?'(?:[^'\\\n]|\\.)*')|(?P<word>[A-Za-z_]\w*)|(?P<number>(?:\d[\d']*\.?\d*|\.\d+)(?:[eE][-+]?\d+)?)|&&|\|\||->|::|[<>=!+\-*/]=|\+\+|--|<<|>>|\*\*|.|\n"""
CXX = re.compile(r"//[^\n]*|/\*(?:.|\n)*?\*/|\#[^\n]*|" + TOKEN)
PYTHON = re.compile(r'\#[^\n]*|"""(?:.|\n)*?"""|//|' + TOKEN)
CALL = r"[\w.\[\]>:*(+-]+\(.*\);|[\w.\[\]>()*-]+ [-+*/]?= .*;|if \(.*\) (?:return|continue|break).*;"
DECLARES = r"(return|const|auto|using|constexpr|static|inline|throw|case|template|friend|explicit)\b|[\w:<>, ]+[&*]? \w+(\(| = |\{)"


def changed_number(text):
    if re.fullmatch(r"[\d']+", text):
        value = int(text.replace("'", ""))
        return [str(value + 1)] + [str(value - 1)] * (value > 0)
    return [repr(float(text.replace("'", "")) * 1.01 or 1.0)]


def token_changes(source, is_cxx):
    """(begin, end, new text) of the changes of single tokens."""
    for match in (CXX if is_cxx else PYTHON).finditer(source):
        token, around = match[0], source[max(0, match.start() - 1):match.end() + 1]
        if match["text"]:
            quote = token.index(token[-1])
            if len(token) - quote > 3 and "\\" not in token and random.random() < 0.2:  # there are so many of them
                yield match.start(), match.end(), f"{token[:quote + 1]}Q{token[quote + 1:]}"
        elif match["number"]:
            yield from ((match.start(), match.end(), new) for new in changed_number(token))
        elif token in SWAPS and not (is_cxx and token in "<>*&" and around != f" {token} ") and not (token in ("first", "second", "left", "front", "back") and around[0] not in ".>"):
            yield from ((match.start(), match.end(), new) for new in SWAPS[token].split(" "))


def line_changes(source, is_cxx):
    """The same for statements left out, conditions turned round and arguments exchanged."""
    begin = 0
    for line in source.splitlines(keepends=True):
        code = line.strip()
        at = begin + line.index(code)
        if is_cxx and re.fullmatch(CALL, code) and not re.match(DECLARES, code):
            yield at, at + len(code), "{}"
        if not is_cxx and re.fullmatch(r"[\w.\[\]]+(\(.*\)| [-+]?= .*)", code) and code.count("(") == code.count(")") and line.startswith(" "):
            yield at, at + len(code), "pass"
        condition = re.match(r"(?:\} else )?if \((?!const |auto )((?:[^()]|\([^()]*\))*)\)" if is_cxx else r"(?:el)?if ([^:]*)(?=:$)", code)
        if condition and ";" not in condition[1]:
            yield at + condition.start(1), at + condition.end(1), f"!({condition[1]})" if is_cxx else f"not ({condition[1]})"
        for pair in re.finditer(r"(?<=[(,] |.\()([A-Za-z_][\w.]*), ([A-Za-z_][\w.]*)(?=[,)])", line):
            if pair[1] != pair[2] and not re.search(r"\b(const|int|double|bool|std|template|def)\b", line):
                yield begin + pair.start(), begin + pair.end(), f"{pair[2]}, {pair[1]}"
        begin += len(line)


def changes(names):
    for name in names:
        source, is_cxx = (COPY / name).read_text(), name.endswith((".cpp", ".h"))
        for change in [*token_changes(source, is_cxx), *line_changes(source, is_cxx)]:
            yield name, source, *change


def ended(command, seconds, **options):
    """The exit status of a command, which is killed with all that it started when it takes longer."""
    process = subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, start_new_session=True, text=True, errors="replace", **options)
    try:
        output = process.communicate(timeout=seconds)[0]
        return process.returncode, output
    except subprocess.TimeoutExpired:
        os.killpg(process.pid, signal.SIGKILL)
        process.communicate()
        return -1, "does not end"


def copy_sources():
    """What git knows of, as it stands in the work tree; unchanged files keep their times."""
    names = subprocess.run(["git", "ls-files", "-z"], cwd=ROOT, stdout=subprocess.PIPE, text=True, check=True).stdout.split("\0")
    for name in filter(None, names):
        if (ROOT / name).is_file():
            (COPY / name).parent.mkdir(parents=True, exist_ok=True)
            bytes_now = (ROOT / name).read_bytes()
            if not (COPY / name).exists() or (COPY / name).read_bytes() != bytes_now:
                (COPY / name).write_bytes(bytes_now)
                (COPY / name).chmod((ROOT / name).stat().st_mode)


def build():
    return ended(["cmake", "--build", BUILD, "--parallel", os.environ.get("CMAKE_BUILD_PARALLEL_LEVEL", "1")], 1800)


def test_commands(area):
    """(name, command) of the tests that know the area best, then of the others, each ending with its first failure."""
    if area == "sweep":
        return [("sweep", [sys.executable, COPY / "tests/tools/sweep/sweep_test.py", COPY / "examples", BUILD / "sweep-scratch", "-f"])]
    listed = json.loads(subprocess.run(["ctest", "--test-dir", BUILD, "--show-only=json-v1"], stdout=subprocess.PIPE, check=True).stdout)["tests"]
    commands = {}
    for tests in AREAS[area][1:]:
        for test in listed:
            if re.search(tests, test["name"]) and not re.search(WITHOUT, test["name"]):
                command = [test["command"][0], "--gtest_fail_fast"] if "--gtest_filter" in str(test["command"]) else test["command"]
                if re.fullmatch("tools/(check|import|chemkin|export|diff)", test["name"]):
                    command = [*command, "-f"]
                commands.setdefault(tuple(command), test["name"])
    return [(name, command) for command, name in commands.items()]


def noticed_by(commands):
    """The first test that fails."""
    for name, command in commands:
        status, output = ended(command, 300, cwd=BUILD, env={**os.environ, "PATH": f"{BUILD}/bin:{os.environ['PATH']}"})
        if status:
            return " ".join([name, *re.findall(r"^(?:FAIL|ERROR): (\w+)", output, re.M)[:1], *["does not end"] * (status == -1)])
    return ""


def verdict_on(commands, name, source, begin, end, new):
    """None where the change is no program."""
    changed = source[:begin] + new + source[end:]
    try:
        (COPY / name).write_text(changed)
        if name.endswith(".py"):
            compile(changed, name, "exec")
        elif name.endswith((".cpp", ".h")) and build()[0]:
            return None
        return noticed_by(commands)
    except SyntaxError:
        return None
    finally:
        (COPY / name).write_text(source)


def main():
    area, count, seed = sys.argv[1], int(sys.argv[2]) if len(sys.argv) > 2 else 40, int(sys.argv[3]) if len(sys.argv) > 3 else 1
    copy_sources()
    BUILD.mkdir(exist_ok=True)
    flags = ["-DCMAKE_BUILD_TYPE=None", "-DCMAKE_CXX_FLAGS=-O1 -D_GLIBCXX_ASSERTIONS", "-DVARPRE_STATIC=OFF", "-DVARPRE_TESTS=ON", f"-DCMAKE_RUNTIME_OUTPUT_DIRECTORY={BUILD}/bin"]
    subprocess.run(["cmake", "-G", "Ninja", "-S", COPY, "-B", BUILD, *flags], stdout=subprocess.DEVNULL, check=True)
    status, output = build()
    commands = test_commands(area) if status == 0 else []
    by = noticed_by(commands) if status == 0 else output[-2000:]
    if by:
        sys.exit(f"nothing is changed yet, and there is a fault: {by}")
    names = sys.argv[4:] or sorted(str(file.relative_to(COPY)) for pattern in AREAS[area][0].split() for file in COPY.glob(pattern))
    random.seed(seed)
    everywhere = list(changes(names))
    random.shuffle(everywhere)
    tried = missed = 0
    for name, source, begin, end, new in everywhere:
        since = time.time()
        by = verdict_on(commands, name, source, begin, end, new)
        if by is None:
            continue
        tried, missed = tried + 1, missed + (not by)
        line = source.count("\n", 0, begin)
        print(f"{'noticed' if by else 'MISSED '} {name}:{line + 1}: {source.splitlines()[line].strip()} [{source[begin:end]} -> {new}] {by} {time.time() - since:.0f} s", flush=True)
        if tried == count:
            break
    print(f"{area}, seed {seed}: {tried - missed} of {tried} noticed")


if __name__ == "__main__":
    main()
