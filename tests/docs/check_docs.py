#!/usr/bin/env python3
"""Holds the documents against the code and against runs of the program.

    check_docs.py PROGRAM [TOOL]...   checks; ends with status 1 when a document is not true. Commands of a document that need
                                      a tool which is not given are passed over
    check_docs.py --messages   shows the messages that the code has, as docs/messages.md writes them

What is checked:

  formats    A code span that is a parenthesised format stands in the code, blanks between items apart.
             Every record of the store file is in docs/store-file.md, and its items with their units. In docs/inputs.md
             the columns of the numbers of a format stand in the same section; where it has "...", those of the first two.
  keywords   docs/inputs.md has the keywords of the code, each in the table of its section with its unit and default, and the
             options with their slots.
  messages   Every message of the code is in docs/messages.md and every message there is in the code. There, lines
             of four blanks and "listing", "error", "warning" or "stderr" hold one each, with <places> for what varies.
  examples   Fenced blocks, by the words behind their fence:
               text from CASE/FILE       lines of a file of a case, or of what its run leaves (fort.3, listing,
                                         stderr); "..." stands for lines left out, a ruler is passed over
               text from CASE/FILE with INPUT 'old' 'new'   the same after an edit of one of its inputs
               python run in CASE        a program that is run where the case has run
               text output               what it prints
               text rulers               see below
               ... tried                 what tests/tools/check/check_test.py tries
               sh run                    commands, run beside the examples with the programs on the path
               sh run on                 further ones, in the directory of those before
               text in FILE              lines of a file there
               text page REPORT          lines that the overview of a report shows there; without Node passed over
             The man page has the same words in a comment before each .EX.
  links      A relative link leads to a file, and to a heading of it.
  rulers     A line of docs/editors.md that begins with "****" marks the fields of the format before it.
  width      No line of the README is longer than 120 columns.
  names      Every file, folder and verb that docs/architecture.md and the README name exists.
"""

import itertools
import os
import re
import shlex
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
PAGES = sorted(ROOT.glob("docs/*.md")) + [ROOT / "README.md", ROOT / "examples/README.md", ROOT / "packaging/README.md"]
MAN_PAGE = ROOT / "docs/varpre.1"
HOLE = "<>"

problems = []


def problem(where, text):
    problems.append(f"{where}: {text}")


def relative(path):
    return str(path.relative_to(ROOT))


# --- the code -------------------------------------------------------------------------------------


def tokens(text):
    """Tokens of C++ source; adjacent string literals count as one, a tuple ("string", value)."""
    pattern = re.compile(
        r'//[^\n]*|/\*.*?\*/|#[^\n]*|"((?:[^"\\]|\\.)*)"|\'(?:[^\'\\]|\\.)\'|[A-Za-z_]\w*|\d[\w.\']*|\s+|.', re.S)
    result = []
    for match in pattern.finditer(text):
        token = match.group()
        if token.isspace() or token.startswith(("//", "/*", "#")):
            continue
        if match.group(1) is not None:
            value = re.sub(r"\\(.)", lambda m: {"n": "\n", "t": "\t"}.get(m.group(1), m.group(1)), match.group(1))
            if result and isinstance(result[-1], tuple):
                result[-1] = ("string", result[-1][1] + value)
            else:
                result.append(("string", value))
        else:
            result.append(token)
    return result


def arguments(list_, start):
    """The arguments of a call as lists of tokens; `start` is behind its parenthesis."""
    depth, args = 0, [[]]
    for token in list_[start:]:
        if token in ("(", "{", "["):
            depth += 1
        elif token in (")", "}", "]"):
            if depth == 0:
                return args
            depth -= 1
        if token == "," and depth == 0:
            args.append([])
        else:
            args[-1].append(token)
    return args


def top_level(list_, separators):
    """Splits tokens at separators outside of brackets."""
    parts, depth = [[]], 0
    for token in list_:
        if token in ("(", "{", "["):
            depth += 1
        elif token in (")", "}", "]"):
            depth -= 1
        if depth == 0 and token in separators:
            parts.append([])
        else:
            parts[-1].append(token)
    return parts


class Source:
    def __init__(self, path):
        self.path = path
        self.tokens = tokens(path.read_text())

    def items(self):
        """(name, unit, meaning) of the calls see(name, member, unit, meaning)."""
        for position in self.calls("see", "("):
            name, _, unit, meaning = arguments(self.tokens, position)
            yield name[0][1], unit[0][1], meaning[0][1]

    def calls(self, *words):
        """Positions behind the parenthesis of calls such as findings . error (."""
        for i in range(len(self.tokens)):
            if self.tokens[i:i + len(words)] == list(words):
                yield i + len(words)

    def texts(self, expression, seen=()):
        """Templates of an expression that makes a text, one for each alternative."""
        if not expression:
            return {""}
        choice = top_level(expression, {"?"})
        if len(choice) == 2:
            branches = top_level(choice[1], {":"})
            found = set().union(*(self.texts(b, seen) for b in branches if b != [":"]))
            return {t for t in found if t != HOLE} or {HOLE}
        if len(expression) == 1 and isinstance(expression[0], tuple):
            return {expression[0][1]}
        if expression[0] == "message" and len(expression) > 1 and expression[1] == "(":
            parts = [self.texts(a, seen) for a in arguments(expression, 2)]
            return {"".join(p) for p in itertools.product(*parts)}
        if len(expression) == 1 and expression[0] not in seen:
            return self.values(expression[0], seen + (expression[0],)) or {HOLE}
        return {HOLE}

    def values(self, name, seen):
        """What is assigned to a variable, or handed to a local function as a parameter, if that is a text."""
        found = set()
        for i, token in enumerate(self.tokens):
            if token == name and self.tokens[i + 1:i + 2] == ["="] and self.tokens[i + 2:i + 3] != ["="]:
                found |= self.texts(top_level(self.tokens[i + 2:i + 400], {";"})[0], seen)
            if token == name and self.tokens[i - 1:i] == ["string_view"]:
                head = i
                while head > 0 and self.tokens[head] not in ("auto", "bool", "void"):
                    head -= 1
                function = self.tokens[head + 1]
                place = sum(1 for t in self.tokens[head:i] if t == ",")
                for call in self.calls(function, "("):
                    args = arguments(self.tokens, call)
                    if call - 1 < i < call + 40 or len(args) <= place:
                        continue
                    found |= self.texts(args[place], seen)
        return {t for t in found if t.replace(HOLE, "").strip()}


def is_format(text):
    return text.startswith("(") and text.endswith(")") and len(text) > 2 and text.count("\n") == 0


def without_blanks(format_):
    """A format without the blanks that have no meaning: those outside of quoted texts."""
    return "".join(part if quoted else part.replace(" ", "").upper()
                   for part, quoted in quoted_parts(format_))


def quoted_parts(format_):
    for part in re.findall(r"'(?:[^']|'')*'|[^']+", format_):
        yield part, part.startswith("'")


def template_of_format(format_):
    """What a record written by a format looks like: its texts, with holes for the items."""
    body = format_[1:-1]
    body = re.sub(r"1H(.)", "", body)  # control characters of a line printer
    body = re.sub(r"(^|/,?) *'[01+ ]'", r"\1", body)
    body = re.sub(r"\d+\('[*=]'\)", "", body)  # rows of asterisks
    text = ""
    for part, quoted in quoted_parts(body):
        if quoted:
            text += part[1:-1].replace("''", "'")
            continue
        for item in re.findall(r"/|\d*X|\d*P?[IFEA][\d.]*|.", part.upper().replace(" ", "")):
            if item == "/" or item.endswith("X"):
                text += " "
            elif re.fullmatch(r"\d*P?[IFEA][\d.]*", item):
                text += HOLE
    return text


def normal(text):
    """A message for comparison: holes alike, runs of asterisks and blanks not counted."""
    text = re.sub(r"<[a-zA-Z][^<>]*>", HOLE, text)
    text = re.sub(r"\*{2,}|={2,}", " ", text)
    text = re.sub(r"^ *[01+] +(?=\S)", " ", text)
    text = re.sub(r"<>\s+(?=<>)", HOLE, text)
    return re.sub(r"\s+", " ", text).strip()


class Code:
    def __init__(self):
        everything = [Source(p) for p in sorted(ROOT.glob("src/**/*")) if p.suffix in (".h", ".cpp")]
        self.converters = {name: [s for s in everything if s.path.parent.name == name and s.path.name != "conditions_writer.cpp"] for name in ("import", "export")}
        self.sources = [s for s in everything if s.path.parent.name not in self.converters]
        self.formats = set()
        self.store = {}    # formats of the store file, with the file that has them
        self.listing = {}  # templates of the records of the listing, with the place that writes each
        self.findings = {"error": {}, "warning": {}}
        self.literals = set()
        for source in self.sources:
            self.read(source)

    def read(self, source):
        where = relative(source.path)
        strings = [t[1] for t in source.tokens if isinstance(t, tuple)]
        self.literals |= {normal(s) for s in strings}
        self.formats |= {without_blanks(s) for s in strings if is_format(s)}
        if source.path.name == "store_records.h":
            self.store = {without_blanks(s): where for s in strings if is_format(s)}
        for i, token in enumerate(source.tokens):
            if isinstance(token, tuple) and is_format(token[1]) and self.goes_to_listing(source.tokens, i):
                self.listing.setdefault(normal(template_of_format(token[1])), where)
        for position in source.calls("write_free", "("):
            args = arguments(source.tokens, position)
            if args[0] == ["MSGFIL"] and len(args) > 1:
                text = "".join(next((t[1] for t in a if isinstance(t, tuple)), HOLE) for a in args[1:])
                self.listing.setdefault(normal(text), where)
        for severity, known in self.findings.items():
            calls = [source.calls(object_, ".", severity, "(") for object_ in ("findings", "findings_")]
            if severity == "error":  # or a warning, as the code finds out
                calls.append(source.calls("findings", ".", "report", "("))
            for position in itertools.chain(*calls):
                args = arguments(source.tokens, position)
                if source.tokens[position - 2] == "report":
                    del args[0]
                short = [t for t in args[1] if not isinstance(t, tuple)]
                with_holes = source.texts(args[1], seen=tuple(t for t in short if len(args[1]) > 1))
                for text in source.texts(args[1]):
                    known.setdefault(normal(text), (where, {normal(t) for t in with_holes}))

    @staticmethod
    def goes_to_listing(list_, i):
        if list_[i - 2:i] == ["write", "<"]:
            return str(list_[i + 3]).startswith("MSGFIL")
        # A template argument of something else: headings, coefficients and warnings of the fits.
        return list_[i - 1] in ("<", ",") and list_[i + 1] in (",", ">") and list_[i - 2] != "read"

    def messages(self):
        """(word, template, place) of every message that has a text of its own."""
        for template, where in self.listing.items():
            if template.replace(HOLE, "").strip(" (),.:=->*"):
                yield "listing", template, where
        for severity, known in self.findings.items():
            for template, (where, _) in known.items():
                yield severity, template, where

    def in_short(self, severity, template):
        """The same message with holes where the code puts in one of several texts."""
        return self.findings[severity][template][1] if severity in self.findings else set()


# --- the documents --------------------------------------------------------------------------------


class Page:
    def __init__(self, path):
        self.path = path
        self.name = relative(path)
        self.lines = path.read_text().split("\n")
        self.blocks = []  # (line number, words behind the fence, lines)
        self.prose = []   # (line number, line) outside of fenced blocks
        block = None
        for number, line in enumerate(self.lines, 1):
            if line.startswith("```"):
                if block is None:
                    block = (number, line[3:].strip(), [])
                else:
                    self.blocks.append(block)
                    block = None
            elif block is not None:
                block[2].append(line)
            else:
                self.prose.append((number, line))
        if block is not None:
            problem(f"{self.name}:{block[0]}", "the block that begins here is not closed")

    @classmethod
    def of_man_page(cls, path):
        """The same with the blocks between .EX and .EE, the words in the comment before them."""
        page = cls.__new__(cls)
        page.path, page.name, page.lines = path, relative(path), path.read_text().split("\n")
        page.prose, page.blocks = [], []
        words, block = "", None
        for number, line in enumerate(page.lines, 1):
            if line == ".EX":
                block = (number, words if words.startswith(("sh", "text")) else "text " + words, [])
            elif line == ".EE":
                page.blocks.append(block)
                block, words = None, ""
            elif block is not None:
                block[2].append(line.replace("\\-", "-").replace("\\e", "\\"))
            elif line.startswith('.\\" '):
                words = line[4:]
        return page

    def spans(self):
        for number, line in self.prose:
            if line.startswith("    "):
                continue
            for span in re.findall(r"`([^`]+)`", line):
                yield number, span


def check_formats(pages, code):
    count = 0
    for page in pages:
        for number, span in page.spans():
            if not is_format(span):
                continue
            count += 1
            if without_blanks(span) not in code.formats:
                problem(f"{page.name}:{number}", f"no such format in the code: {span}")
    return count


def check_store_records(page, code):
    written = {without_blanks(span) for _, span in page.spans() if is_format(span)}
    for format_, where in code.store.items():
        if format_ not in written:
            problem(where, f"not in {page.name}: {format_}")
    return len(code.store)


def check_store_items(store, report, code):
    """What the code says of the items of the store file stands in the documents: their meaning, in a line with their
    unit; and their name in the JSON."""
    def said(page, text, unit=""):
        return any(text in line.replace("`", "") and unit in line for line in page.lines)

    count = 0
    for source in code.sources:
        for name, unit, meaning in source.items() if source.path.name == "store_data.h" else []:
            count += 1
            if not said(store, meaning, unit):
                problem(relative(source.path), f"not in {store.name}: {meaning}, unit '{unit}'")
            if not said(report, name):
                problem(relative(source.path), f"not in {report.name}: {name}")
        if source.path.name == "store_values.h":
            for token in source.tokens:
                if isinstance(token, tuple) and token[1].isupper() and not said(store, token[1]):
                    problem(relative(source.path), f"not in {store.name}: {token[1]}")
    return count


def fields(format_):
    """The edits of a format with their widths, a list for each record."""
    parts = re.finditer(r"(?P<open>\d*)\(|(?P<close>\))|(?P<slash>/)|(?P<blanks>\d*)X|"
                        r"(?:\dP)?(?P<repeat>\d*)(?P<edit>[IFEA])(?P<width>\d*)[.\d]*", format_)
    stack = [[1, []]]
    for token in parts:
        if token["open"] is not None:
            stack.append([int(token["open"] or 1), []])
        elif token["close"]:
            times, group = stack.pop()
            stack[-1][1].extend(group * times)
        elif token["slash"]:
            stack[-1][1].append(("/", 0))
        elif token["blanks"] is not None:
            stack[-1][1].append(("X", int(token["blanks"] or 1)))
        else:
            stack[-1][1].extend([(token["edit"], int(token["width"] or 1))] * int(token["repeat"] or 1))
    records = [[]]
    for edit, width in stack[0][1]:
        if edit == "/":
            records.append([])
        else:
            records[-1].append((edit, width))
    return records


def numeric_columns(format_):
    """Columns "first-last" of the numeric fields of a format, a list for each record."""
    records = []
    for record in fields(format_):
        column, columns = 1, []
        for edit, width in record:
            if edit in "IFE":
                columns.append(f"{column}-{column + width - 1}")
            column += width
        records.append(columns)
    return records


def ruler(record):
    """The comment line that marks the fields of a record, which may go beyond column 80."""
    drawn = "".join(" " * width if edit == "X" else "|" if width == 1 else "<" + "-" * (width - 2) + ">"
                    for edit, width in record)
    return ("****" + drawn[4:])[:80].rstrip()


def check_rulers(page):
    """Behind a format in code the next lines that begin with **** are its rulers."""
    count, expected = 0, []
    for number, line in enumerate(page.lines, 1):
        formats = [f for f in re.findall(r"`([^`]+)`", line) if is_format(f)]
        if formats:
            expected = [ruler(record) for format_ in formats for record in fields(format_)]
        elif line.startswith("****"):
            count += 1
            if line not in expected:
                problem(f"{page.name}:{number}", f"no ruler of the format above: {line}")
    return count


def check_columns(page):
    count, section = 0, []
    for number, line in page.prose + [(0, "# end")]:
        if not line.startswith("#"):
            section.append((number, line))
            continue
        text = "\n".join(line for _, line in section)
        for place, line_ in section:
            for format_ in filter(is_format, re.findall(r"`([^`]+)`", line_)):
                for record in numeric_columns(format_):
                    for columns in record[:2] if "..." in text else record:
                        count += 1
                        if not re.search(rf"(?<!\d){columns}(?!\d)", text):
                            problem(f"{page.name}:{place}", f"columns {columns} of {format_} are not in this section")
        section = []
    return count


SECTIONS = {"MixtureSection": "Boundary mixtures", "FlameSection": "CONDITIONS", "SurfaceSection": "SURFACE CONDITIONS",
            "TwoDimensionalSection": "Two-dimensional sections"}  # where docs/inputs.md has their keywords


def parts_of_row(row):
    """The parts of a keyword's row by their names, whether it is written with names or in order."""
    cells = [cell for cell in arguments(row, 1) if cell]
    if cells[0][0] == ".":
        return {cell[1]: cell[3:] for cell in cells}
    return dict(zip(("word", "value", "meaning", "unit", "usual", "required"), cells))


def keywords_of_code(tokens_):
    """For each section its keywords with unit and default; the default is None where a value must be given."""
    def text(part):
        return next((token[1] for token in part if isinstance(token, tuple)), "")

    found, values, struct, type_ = {}, {}, None, None
    for i, token in enumerate(tokens_):
        if token == "struct":
            struct = tokens_[i + 1]
        elif token == "double":  # a member with its default
            values[struct, tokens_[i + 1]] = float("".join(itertools.takewhile(lambda t: t != ";", tokens_[i + 3:])))
        elif tokens_[i:i + 2] == ["using", "Values"]:
            type_ = tokens_[i + 3]
        elif token == "to_array":
            rows = top_level(arguments(tokens_, tokens_.index("(", i) + 1)[0][1:-1], {","})
            parts = [parts_of_row(row[row.index("{"):]) for row in rows if "{" in row]
            found[struct] = {text(part["word"]).strip(): (
                text(part.get("unit", [])),
                None if "true" in part.get("required", []) else values[type_, part["value"][-1]]) for part in parts}
    return found


def keywords_of_table(lines):
    """(keyword, unit, default) of the tables in these lines; the unit is None where a table has none. A cell has one
    value for all keywords of its row, or one for each."""
    heads = []
    for line in lines:
        cells = [cell.strip() for cell in line.strip().strip("|").split("|")]
        if not line.startswith("|"):
            heads = []
        elif not heads:
            heads = cells
        elif heads[0] == "keyword" and not cells[0].startswith("-"):
            for begin in (i for i, head in enumerate(heads) if head == "keyword"):
                end = heads.index("default", begin) + 1
                part = dict(zip(heads[begin:end], cells[begin:end]))
                words = re.findall(r"`([^`]+)`", part["keyword"])
                units, defaults = ([value.strip() for value in cell.split(",")] if cell and "," in cell else
                                   [cell] * len(words) for cell in (part.get("unit"), part["default"]))
                yield from zip(words, units, defaults)


def check_keywords(page, code):
    count = 0
    source = next(s for s in code.sources if relative(s.path) == "src/files/keywords.h")
    for section, known in keywords_of_code(source.tokens).items():
        if section not in SECTIONS:
            continue
        begin = next(i for i, line in enumerate(page.lines) if line.startswith("## " + SECTIONS[section]))
        end = next(i for i, line in enumerate(page.lines) if i > begin and line.startswith("#"))
        told = {word: (unit, default) for word, unit, default in keywords_of_table(page.lines[begin:end])}
        for word in known.keys() ^ told.keys():
            problem(page.name, f"{word} of {SECTIONS[section]} is in the {'code' if word in known else 'document'} only")
        for word in known.keys() & told.keys():
            count += 1
            (unit, default), (told_unit, told_default) = known[word], told[word]
            if told_unit is not None and told_unit.replace("²", "2").replace("³", "3") != unit:
                problem(page.name, f"unit of {word}: '{told_unit}', in the code '{unit}'")
            other_rule = "`" in told_default or (told_default == "" and word in ("RHO", "H(T0)"))
            if default is None and not told_default.startswith("required"):
                problem(page.name, f"{word} is required")
            elif default is not None and not other_rule and (
                    not re.match(r"[\d.E+-]+$", told_default) or float(told_default) != default):
                problem(page.name, f"default of {word}: '{told_default}', in the code {default:g}")
    return count + check_options(page, code)


def check_options(page, code):
    """The names of the slots, as lists behind a range, and those of two dimensions with their slots."""
    source = next(s for s in code.sources if relative(s.path) == "src/files/options.h")
    names = {}
    for name in ("NTOPT", "N2TOPT"):
        start = source.tokens.index("{", source.tokens.index(name))
        texts = [t[1].strip() for t in arguments(source.tokens, start + 1) for t in t if isinstance(t, tuple)]
        names[name] = {slot: text for slot, text in enumerate(texts, 1) if not text.startswith("-")}
    told = {}
    for line in page.lines:
        slots = re.match(r"\| (\d+)-(\d+) \| (`.*`) \|$", line)
        if slots:
            words = re.findall(r"`([^`]+)`", slots[3])
            if len(words) != int(slots[2]) - int(slots[1]) + 1:
                problem(page.name, f"{len(words)} names for the slots {slots[1]}-{slots[2]}")
            told |= dict(enumerate(words, int(slots[1])))
    two = {int(slot): word for word, slot in re.findall(r"`(\w+)`\s+\((\d+)\)", "\n".join(page.lines))}
    for known, said in ((names["NTOPT"], told), (names["N2TOPT"], two)):
        for slot in sorted(set(known.items()) ^ set(said.items())):
            problem(page.name, f"option {slot[1]} has not the slot {slot[0]} in both code and document")
    return sum(map(len, names.values()))


def written_messages(page):
    for number, line in page.prose:
        match = re.match(r"    (listing|error|warning|stderr)  +(\S.*)$", line)
        if match:
            yield number, match.group(1), match.group(2)


def check_messages(page, code):
    known = {}
    for word, template, where in code.messages():
        known.setdefault(word, {})[template] = where
    written = {}
    for number, word, text in written_messages(page):
        template = normal(text)
        written.setdefault(word, set()).add(template)
        if word == "stderr":
            if not all(any(part.strip() in literal for literal in code.literals)
                       for part in template.split(HOLE) if part.strip(" :;,")):
                problem(f"{page.name}:{number}", f"the code has no such message: {text}")
        elif template not in known.get(word, {}) and not in_pieces(template, code.literals) and not any(
                template in code.in_short(word, t) for t in known.get(word, {})):
            problem(f"{page.name}:{number}", f"the code has no such {word}: {text}")
    for word, templates in known.items():
        for template, where in templates.items():
            if template == HOLE:  # put together elsewhere, from texts that the documents hold in pieces
                continue
            if template not in written.get(word, set()) and not (
                    code.in_short(word, template) & written.get(word, set())):
                problem(where, f"not in {page.name}: {word} {template}")
    # Texts of tables and of messages put together from parts: upper-case ones and those with leading blanks.
    everything = normal("\n".join(page.lines))
    for source in code.sources:
        if source.path.name == "sections.h":  # the headings of the inputs
            continue
        for token in source.tokens:
            if not isinstance(token, tuple) or is_format(token[1]):
                continue
            upper = sum(c.isupper() for c in token[1])
            lower = sum(c.islower() for c in token[1])
            of_listing = (upper >= 12 and upper > lower) or (upper >= 3 and token[1].startswith(" "))
            if of_listing and normal(token[1]) not in everything:
                problem(relative(source.path), f"not in {page.name}: \"{token[1]}\"")
    return sum(len(t) for t in known.values())


def check_converter_messages(page, sources):
    """Every text of an import or export that people read is in its document."""
    def plain(text):
        return re.sub(r"""[\s|`\\"]+""", " ", text).strip(" '")

    count, everything = 0, plain("\n".join(page.lines))
    for source in sources:
        if source.path.name == "main.cpp":
            continue
        for i, token in enumerate(source.tokens):
            if not isinstance(token, tuple) or token[1].count(" ") < 3 or source.tokens[i - 2:i] == ["write", "<"]:
                continue
            if re.match(r"  |units: ", token[1]):  # what an export writes
                continue
            count += 1
            if plain(token[1]) not in everything:
                problem(relative(source.path), f"not in {page.name}: {token[1]}")
    return count


def in_pieces(template, literals):
    """Whether a message is made of one or two texts of the code."""
    def piece(text):
        text = text.strip()
        return not text or text in literals or any(
            text[:k].strip() in literals and text[k:].strip() in literals for k in range(1, len(text)))
    return all(piece(part) for part in template.split(HOLE)) and template.replace(HOLE, "").strip() != ""


# --- examples -------------------------------------------------------------------------------------


class Cases:
    """Runs of the program in copies of case directories, each made once."""

    def __init__(self, programs, scratch):
        self.program = programs[0]
        self.programs = {Path(program).name: program for program in programs}
        self.scratch = Path(scratch)
        self.made = {}

    def run(self, case, edit=None):
        key = (case, edit)
        if key not in self.made:
            directory = Path(tempfile.mkdtemp(dir=self.scratch)) / "case"
            shutil.copytree(ROOT / case, directory, ignore=shutil.ignore_patterns("fort.*", "listing"))
            if edit:
                file, old, new = edit
                text = (directory / file).read_text()
                if old not in text:
                    raise ValueError(f"nothing to edit: no '{old}' in {case}/{file}")
                (directory / file).write_text(text.replace(old, new, 1))
            with open(directory / "listing", "w") as listing, open(directory / "stderr", "w") as errors:
                status = subprocess.run([self.program], cwd=directory, stdout=listing, stderr=errors,
                                        stdin=subprocess.DEVNULL).returncode
            if status != 0:
                raise ValueError(f"the run of {case} ends with exit status {status}")
            self.made[key] = directory
        return self.made[key]


def is_ruler(line):
    return line.startswith("----+----1")


def holds(text, lines):
    """Whether the lines stand in the text one behind the other, "..." for others between them."""
    have = text.split("\n")
    pieces = [[]]
    for line in lines:
        if line.strip() == "...":
            pieces.append([])
        elif not is_ruler(line):
            pieces[-1].append(line.rstrip())
    have = [line.rstrip() for line in have]
    at = 0
    for piece in pieces:
        while at + len(piece) <= len(have) and have[at:at + len(piece)] != piece:
            at += 1
        if at + len(piece) > len(have):
            return False
        at += len(piece)
    return True


def check_examples(pages, cases):
    count = 0
    for page in pages:
        output = commands = None
        for number, words, lines in page.blocks:
            where = f"{page.name}:{number}"
            try:
                part = shlex.split(words)
            except ValueError:
                part = []
            try:
                if part[1:2] == ["from"]:
                    case, file = part[2].rsplit("/", 1)
                    edit = tuple(part[4:7]) if part[3:4] == ["with"] else None
                    if not holds((cases.run(case, edit) / file).read_text(), lines):
                        problem(where, f"these lines are not in {part[2]}")
                elif part[:3] == ["python", "run", "in"]:
                    result = subprocess.run([sys.executable, "-c", "\n".join(lines)], cwd=cases.run(part[3]),
                                            capture_output=True, text=True)
                    output = result.stdout
                    if result.returncode != 0:
                        problem(where, f"the program fails: {result.stderr}")
                elif part in (["sh", "run"], ["sh", "run", "on"]):
                    if part[2:] == []:
                        commands = Commands(cases)
                    output = commands.run(lines)
                elif part[:2] == ["text", "in"]:
                    if not commands.holds(part[2], lines):
                        problem(where, f"these lines are not in {part[2]}")
                elif part[:2] == ["text", "page"]:
                    if not commands.shows(part[2], lines):
                        problem(where, f"the page {part[2]} does not show these lines")
                elif part == ["text", "output"]:
                    if output is None or not (output is PASSED_OVER or holds(output, lines)):
                        problem(where, f"the program prints something else:\n{output}")
                elif part[1:] not in (["rulers"], ["tried"]):
                    problem(where, f"a block that nothing vouches for: ```{words}")
                count += 1
            except (ValueError, OSError, RuntimeError) as error:
                problem(where, str(error))
    return count


PASSED_OVER = "passed over"


class Commands:
    """The commands of a document, in a directory of their own."""

    def __init__(self, cases):
        self.directory = Path(tempfile.mkdtemp(dir=cases.scratch))
        self.lacks_tool = False
        self.known = cases.programs
        shutil.copytree(ROOT / "examples", self.directory / "examples")
        (self.directory / "bin").mkdir()
        for name, program in cases.programs.items():
            (self.directory / "bin" / name).symlink_to(program)

    def run(self, lines):
        used = set(re.findall(r"(?m)^\s*(varpre(?:-\w+)?)(?=\s|$)", "\n".join(lines)))
        self.lacks_tool = self.lacks_tool or not used <= self.known.keys()
        if self.lacks_tool:
            return PASSED_OVER
        environment = dict(os.environ, PATH=f"{self.directory / 'bin'}:{os.environ['PATH']}")
        result = subprocess.run(["sh", "-e", "-c", "\n".join(lines)], cwd=self.directory, env=environment,
                                stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
        if result.returncode != 0:
            raise RuntimeError(f"the commands fail: {result.stdout}")
        return result.stdout

    def holds(self, file, lines):
        return self.lacks_tool or holds((self.directory / file).read_text(), lines)

    def shows(self, report, lines):
        node = shutil.which("node")
        if self.lacks_tool or not node:
            return True
        page = subprocess.run([node, ROOT / "tests/docs/page_text.js", self.directory / report], check=True,
                              stdout=subprocess.PIPE, text=True)
        return holds(page.stdout, lines)


def check_cases(cases):
    """Every example directory runs to its normal end."""
    directories = sorted(p.parent for p in itertools.chain(ROOT.glob("examples/*/INP"), ROOT.glob("docs/*/INP")))
    for directory in directories:
        case = relative(directory)
        try:
            if "VARPRE: NORMAL END" not in (cases.run(case) / "listing").read_text():
                problem(case, "the run has no normal end")
            if "error: " in (cases.run(case) / "stderr").read_text():
                problem(case, "the run reports an error")
        except ValueError as error:
            problem(case, str(error))
    return len(directories)


# --- links and names ------------------------------------------------------------------------------


def anchor(heading):
    heading = re.sub(r"[`*]", "", heading).strip().lower()
    return re.sub(r"[^\w\- ]", "", heading).replace(" ", "-")


def check_links(pages):
    count = 0
    for page in pages:
        for number, line in page.prose:
            for target in re.findall(r"\]\(([^)]+)\)", line):
                if "://" in target:
                    continue
                count += 1
                file, _, fragment = target.partition("#")
                folder = ROOT if page.path.parent.name == "packaging" else page.path.parent  # where it is installed
                path = (folder / file).resolve() if file else page.path
                if not path.exists():
                    problem(f"{page.name}:{number}", f"no such file: {target}")
                elif fragment and fragment not in {
                        anchor(l.lstrip("#")) for l in path.read_text().split("\n") if l.startswith("#")}:
                    problem(f"{page.name}:{number}", f"no such heading: {target}")
    return count


def check_names(pages):
    verbs = set(re.findall(r"^verb_([\w-]+)\(\)", (ROOT / "dev").read_text(), re.M)) | {
        script.name for script in (ROOT / "scripts").iterdir()}
    folders = ("src", "tests", "docs", "examples", "bench", "fuzz", "scripts")
    count = 0
    for page in pages:
        if page.name not in ("docs/architecture.md", "README.md", "examples/README.md"):
            continue
        text = "\n".join(page.lines)
        for verb in re.findall(r"\./dev ([\w-]+)", text):
            count += 1
            if verb not in verbs:
                problem(page.name, f"no such verb: ./dev {verb}")
        for name in re.findall(rf"(?<![\w/.])((?:{'|'.join(folders)})/[\w./-]*[\w/])", text):
            count += 1
            if not (ROOT / name).exists() and not list(ROOT.glob(name + ".*")):
                problem(page.name, f"no such file: {name}")
    return count


def check_width(page):
    for number, line in enumerate(page.lines, 1):
        if len(line) > 120:
            problem(f"{page.name}:{number}", f"longer than 120 columns: {len(line)}")
    return len(page.lines)


def main():
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    code = Code()
    if sys.argv[1] == "--messages":
        for word, template, where in sorted(code.messages(), key=lambda m: (m[2], m[0], m[1])):
            print(f"{where}: {word:8} {template}")
        return
    programs = [str(Path(argument).resolve()) for argument in sys.argv[1:]]
    pages = [Page(path) for path in PAGES]
    with_man_page = pages + [Page.of_man_page(MAN_PAGE)]
    inputs, store, messages, editors, report, readme = (
        next(p for p in pages if p.name == name)
        for name in ("docs/inputs.md", "docs/store-file.md", "docs/messages.md", "docs/editors.md", "docs/report.md",
                     "README.md"))
    converters = [(p, code.converters[p.name[5:-3]]) for p in pages if p.name[5:-3] in code.converters]
    with tempfile.TemporaryDirectory() as scratch:
        cases = Cases(programs, scratch)
        counts = [f"{check_formats(pages, code)} formats",
                  f"{check_store_records(store, code)} store records",
                  f"{check_store_items(store, report, code)} store items", f"{check_columns(inputs)} columns",
                  f"{check_keywords(inputs, code)} keywords",
                  f"{check_messages(messages, code) + sum(itertools.starmap(check_converter_messages, converters))} messages",
                  f"{check_examples(with_man_page, cases)} examples", f"{check_cases(cases)} cases",
                  f"{check_rulers(editors)} rulers", f"{check_links(pages)} links", f"{check_names(pages)} names",
                  f"{check_width(readme)} lines of the README"]
    for text in problems:
        print(text)
    print(f"documents: {', '.join(counts)}; {len(problems)} not true")
    sys.exit(1 if problems else 0)


if __name__ == "__main__":
    main()
