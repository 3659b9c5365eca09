#!/usr/bin/env python3
"""Are wrong programs noticed? mutate.py AREA [COUNT] [SEED] [FILE...]

Changes one token of the sources at random, many times over, builds what that changes, and runs the tests of the area until
one fails. Lists what nobody noticed; some of that makes no difference, which only reading tells. Works on a copy in
build/mutants, built once, without optimisation, and kept. A change with which a test does not end counts as noticed.
"""

import json
import os
import random
import re
import resource
import shutil
import signal
import subprocess
import sys
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parents[1]
COPY = ROOT / "build/mutants/source"
BUILD = ROOT / "build/mutants/build"
BROWSER, SWEEP = "browser", "sweep"  # no tests of a build
# Sources, and the tests that know them, those that know them best first.
AREAS = {
    "check": ("src/tools/check/*.cpp src/tools/check/*.h src/tools/arguments.cpp", "tools/check tools/programs"),
    "import": ("src/tools/import/*.cpp src/tools/import/*.h", "tools/import tools/chemkin tools/export tools/programs"),
    "export": ("src/tools/export/*.cpp src/tools/export/*.h src/tools/output.cpp", "tools/export tools/chemkin tools/programs"),
    "diff": ("src/tools/diff/*.cpp src/tools/diff/*.h", "tools/diff/ tools/diff tools/programs"),
    "report": ("src/tools/report/*.cpp src/tools/report/*.h src/files/store_reader.cpp src/files/store_equations.cpp src/files/store_values.h",
               "tools/diff/ tools/report tools/report_page tools/diff tools/programs runs/"),
    "page": ("src/tools/report/page/*.js", f"tools/report_page {BROWSER}"),
    "core": (" ".join(f"src/{folder}/*.cpp" for folder in "files mechanism conditions transport thermo driver textio/* math".split()),
             "broken/ runs/ mechanism/ conditions/ thermo/ transport/ textio/ math/ docs/ faults/ tools/check"),
    "sweep": ("examples/sweep/sweep.py examples/sweep/Snakefile examples/sweep/summary.gp", SWEEP),
}
WITHOUT = "format_errors|faults/machine"  # the one tries the compiler, the other goes by the clock
LOOKS = r"border|font|[wW]idth|radius|tabindex|stroke|setTimeout|Dash|COLOURS|DARK|BOX|step = Infinity|dark\(|size: 12|canvas|MOST|gibbs[.]size"  # of the page: for the eye
ENVIRONMENT = {"cwd": BUILD, "env": {**os.environ, "PATH": f"{BUILD}/bin:{os.environ['PATH']}"}}
SWAPS = {"<": "<= >=", "<=": "< >", ">": ">= <=", ">=": "> <", "==": "!=", "!=": "==", "+": "-", "-": "+", "*": "/", "/": "*", "&&": "||", "||": "&&", "and": "or", "or": "and",
         "===": "!==", "!==": "===", "**": "*", "true": "false", "false": "true", "True": "False", "False": "True", "not": "", "+=": "-=", "-=": "+=", "++": "--", "min": "max", "max": "min", "break": "continue",
         "continue": "break", "any": "all", "all": "any", "any_of": "all_of", "all_of": "any_of", "first": "second", "second": "first", "lower_bound": "upper_bound",
         "front": "back", "back": "front", "starts_with": "ends_with", "startswith": "endswith", "endswith": "startswith", "floor": "ceil", "left": "right", "!": "", "//": "/",
         "find_first_of": "find_last_of", "find_first_not_of": "find_last_not_of", "ljust": "rjust", "rjust": "ljust", "is": "is not", "upper_bound": "lower_bound"}
TOKEN = r"""(?P<text>[frb]?"(?:[^"\\\n]|\\.)*"|[frb]?'(?:[^'\\\n]|\\.)*')|(?P<word>[A-Za-z_]\w*)|(?P<number>(?:\d[\d']*\.?\d*|\.\d+)(?:[eE][-+]?\d+)?)|&&|\|\||=>|->|::|[=!]==|&[FD]::\w+|[<>=!+\-*/]=|\+\+|--|<<|>>|\*\*|.|\n"""
CXX = re.compile(r"//[^\n]*|/\*(?:.|\n)*?\*/|\#[^\n]*|" + TOKEN)
PYTHON = re.compile(r'\#[^\n]*|"""(?:.|\n)*?"""|//|' + TOKEN)
CALL = r"[\w.\[\]>:*(+-]+\(.*\);|[\w.\[\]>()*-]+ [-+*/]?= .*;|if \(.*\) (?:return|continue|break).*;"
DECLARES = r"(return|const|auto|using|constexpr|static|inline|throw|case|template|friend|explicit)\b|[\w:<>, ]+[&*]? \w+(\(| = |\{)"


def changed_number(text):
    if re.fullmatch(r"[\d']+", text):
        value = int(text.replace("'", ""))
        return [str(value + 1)] + [str(value - 1)] * (value > 0)
    return [repr(float(text.replace("'", "")) * 1.01 or 1.0)]


def token_changes(source, kind):
    """(begin, end, new text) of the changes of single tokens."""
    for match in (PYTHON if kind == "python" else CXX).finditer(source):
        token, around = match[0], source[max(0, match.start() - 1):match.end() + 1]
        if match["text"]:
            quote = token.index(token[-1])
            if kind != "page" and len(token) - quote > 3 and "\\" not in token and random.random() < 0.2:  # there are so many of them
                yield match.start(), match.end(), f"{token[:quote + 1]}Q{token[quote + 1:]}"
        elif match["number"]:
            yield from ((match.start(), match.end(), new) for new in changed_number(token))
        elif token.startswith("&") and "::" in token:  # a place of a record holds another value
            yield match.start(), match.end(), token[:4] + {"F": "RI" if token != "&F::RI" else "RO", "D": "UINI" if token != "&D::UINI" else "VINI"}[token[1]]
        elif token in SWAPS and not (kind != "python" and token in "<>*&/+-" and around != f" {token} ") and not (token in ("first", "second", "left", "front", "back") and around[0] not in ".>"):
            yield from ((match.start(), match.end(), new) for new in SWAPS[token].split(" "))


def line_changes(source, kind):
    """The same for statements left out, conditions turned round and arguments exchanged."""
    begin, is_cxx = 0, kind != "python"
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
        source, kind = (COPY / name).read_text(), {".cpp": "cxx", ".h": "cxx", ".js": "page"}.get(Path(name).suffix, "python")
        lines = source.splitlines()
        for begin, end, new in [*token_changes(source, kind), *line_changes(source, kind)]:
            if kind != "page" or not re.search(LOOKS, lines[source.count("\n", 0, begin)]):
                yield name, source, begin, end, new


def limited():
    """A wrong program takes neither all memory nor the disk."""
    for limit, most in ((resource.RLIMIT_DATA, 4 << 30), (resource.RLIMIT_FSIZE, 1 << 30), (resource.RLIMIT_CORE, 0)):
        resource.setrlimit(limit, (most, most))


def ended(command, seconds, **options):
    """The exit status of a command and what it said; it is killed with all that it started when it takes longer."""
    process = subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, start_new_session=True, preexec_fn=limited, text=True, errors="replace", **options)
    try:
        output = process.communicate(timeout=seconds)[0]
        return process.returncode, output
    except BaseException as fault:  # too long, or the reader has seen enough
        os.killpg(process.pid, signal.SIGKILL)
        process.communicate()
        if not isinstance(fault, subprocess.TimeoutExpired):
            raise
        return -1, "does not end"


def copy_sources():
    """What git knows of, as it stands in the work tree; unchanged files keep their times, what is gone goes."""
    names = subprocess.run(["git", "ls-files", "-z"], cwd=ROOT, stdout=subprocess.PIPE, text=True, check=True).stdout.split("\0")
    names = {name for name in names if (ROOT / name).is_file()}
    for old in COPY.rglob("*"):
        if old.is_file() and str(old.relative_to(COPY)) not in names:
            old.unlink()
    for name in names:
        if not (COPY / name).exists() or (COPY / name).read_bytes() != (ROOT / name).read_bytes():
            (COPY / name).parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(ROOT / name, COPY / name)


def build(*targets):
    return ended(["cmake", "--build", BUILD, "--parallel", os.environ.get("CMAKE_BUILD_PARALLEL_LEVEL", "1"), *(["--target", *targets] if targets else [])], 3600)


def whole_build():
    """Not joined, so that a change costs one file; without what the programs would gain by optimisation."""
    flags = ["-DCMAKE_BUILD_TYPE=None", "-DCMAKE_CXX_FLAGS=-O0 -w -D_GLIBCXX_ASSERTIONS", "-DVARPRE_STATIC=OFF", "-DVARPRE_TESTS=ON", f"-DCMAKE_RUNTIME_OUTPUT_DIRECTORY={BUILD}/bin",
             *(["-DCMAKE_CXX_COMPILER_LAUNCHER=ccache"] if shutil.which("ccache") else []), *(["-DCMAKE_EXE_LINKER_FLAGS=-fuse-ld=lld"] if shutil.which("ld.lld") else [])]
    status, output = ended(["cmake", "-G", "Ninja", "-S", COPY, "-B", BUILD, *flags], 600)
    if not status:
        status, output = build()
    if status:
        sys.exit(f"{output[-3000:]}\nnothing is changed yet, and it does not build")


def test_commands(area):
    """(name, command, seconds) of the tests that know the area, each ending with its first failure."""
    listed = json.loads(subprocess.run(["ctest", "--test-dir", BUILD, "--show-only=json-v1"], stdout=subprocess.PIPE, check=True).stdout)["tests"]
    commands = {}
    for tests in AREAS[area][1].split():
        if tests == SWEEP:
            commands[sys.executable, str(COPY / "tests/tools/sweep/sweep_test.py"), str(COPY / "examples"), str(BUILD / "sweep"), "-f"] = tests
        if tests == BROWSER:
            commands["/usr/bin/python3", str(COPY / "tests/tools/report/browser_test.py"), f"{BUILD}/bin/varpre-report", f"{BUILD}/bin/varpre", str(COPY), str(BUILD / "screenshots")] = tests
        for test in listed:
            if (test["name"].startswith(tests) if tests.endswith("/") else test["name"] == tests) and not re.search(WITHOUT, test["name"]):
                if "--gtest_filter" in str(test["command"]):
                    commands[test["command"][0], "--gtest_fail_fast"] = tests
                else:
                    commands[(*test["command"], *["-f"] * bool(re.search("(?<!programs)_test.py$", test["command"][1])))] = tests
    for command, name in commands.items():
        since = time.time()
        status, output = ended(command, 600, **ENVIRONMENT)
        if status:
            sys.exit(f"{output[-3000:]}\nnothing is changed yet, and {name} fails")
        programs = {Path(word).name for part in command for word in part.split("=") if word.startswith(f"{BUILD}/bin/")}
        yield name, command, programs, 60 + 10 * (time.time() - since)


def noticed_by(commands):
    """The first test that fails; None where its programs cannot be built. The programs of the others are not built then."""
    for name, command, programs, seconds in commands:
        if programs and build(*programs)[0]:
            return None
        status, output = ended(command, seconds, **ENVIRONMENT)
        if status:
            return " ".join([name, *re.findall(r"^(?:FAIL: |ERROR: |\[  FAILED  \] )([\w/.]+)", output, re.M)[:1], *["does not end"] * (status == -1)])
    return ""


def verdict_on(commands, name, source, begin, end, new):
    """None where the change is no program."""
    changed = source[:begin] + new + source[end:]
    try:
        (COPY / name).write_text(changed)
        if name.endswith(".py"):
            compile(changed, name, "exec")
        return noticed_by(commands)
    except SyntaxError:
        return None
    finally:
        (COPY / name).write_text(source)


def main():
    signal.signal(signal.SIGTERM, lambda *_: sys.exit("stopped"))
    area, count, seed = sys.argv[1], int(sys.argv[2]) if len(sys.argv) > 2 else 40, int(sys.argv[3]) if len(sys.argv) > 3 else 1
    copy_sources()
    whole_build()
    commands = list(test_commands(area))
    names = sys.argv[4:] or sorted(str(file.relative_to(COPY)) for pattern in AREAS[area][0].split() for file in COPY.glob(pattern)
                                if not file.stem.endswith("_windows"))
    random.seed(seed)
    everywhere = list(changes(names))
    random.shuffle(everywhere)
    tried = missed = no_program = 0
    for name, source, begin, end, new in everywhere:
        if tried == count:
            break
        since = time.time()
        by = verdict_on(commands, name, source, begin, end, new)
        if by is None:
            no_program += 1
            continue
        tried, missed = tried + 1, missed + (not by)
        line = source.count("\n", 0, begin)
        print(f"{'noticed' if by else 'MISSED '} {name}:{line + 1}: {source.splitlines()[line].strip()} [{source[begin:end]} -> {new}] {by} {time.time() - since:.0f} s", flush=True)
    print(f"{area}, seed {seed}: {tried - missed} of {tried} noticed; {no_program} did not compile")


if __name__ == "__main__":
    main()
