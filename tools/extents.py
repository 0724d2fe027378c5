#!/usr/bin/env python3
"""Reads the table of extents, abi/extents.tsv (its head says how), beside the prototypes of the public headers.

    extents.py --check [TABLE ...]       what is wrong with the table, or missing; exit status 1 then
    extents.py --json OUT [TABLE ...]    both merged, for programs that call the functions: see json_of
    extents.py --doxygen HEADER          the header with the extents of each function as a comment in front of it: the
                                         filter of the reference
"""
import argparse
import json
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
TABLE = ROOT / "abi" / "extents.tsv"
HEADERS = ROOT / "include" / "vornsr"

SIZES = {"Vorn8u": 1, "Vorn8s": 1, "Vorn16u": 2, "Vorn16s": 2, "Vorn16f": 2, "Vorn32u": 4, "Vorn32s": 4, "Vorn64s": 8,
         "Vorn32f": 4, "Vorn64f": 8, "Vorn8sc": 2, "Vorn16sc": 4, "Vorn32sc": 8, "Vorn64sc": 16, "Vorn32fc": 8,
         "Vorn64fc": 16, "int": 4, "VornRoundMode": 4, "VornStatus": 4}
INTEGERS = {"Vorn8u", "Vorn8s", "Vorn16u", "Vorn16s", "Vorn32u", "Vorn32s", "Vorn64s", "int", "VornRoundMode"}


class Fault(Exception):
    pass


# ---- The headers.

PROTOTYPE = re.compile(r"^(?!typedef|static|extern)((?:const )?\w+ ?\*?) ?(vornsr?\w+)\(([^;{}]*)\);", re.M)


def without_comments(text):
    """The same text with blanks for comments, so that places stay."""
    return re.sub(r"/\*.*?\*/", lambda found: re.sub(r"[^\n]", " ", found.group()), text, flags=re.S)


def parameter(text):
    found = re.fullmatch(r"\s*(const )?(\w+)\s*(\*(?: const)?\*?|\*\*)?\s*(\w+)\s*", text)
    if not found:
        raise Fault(f"a parameter that cannot be read: {text}")
    const, kind, stars, name = found.groups()
    return {"name": name, "type": kind, "pointers": (stars or "").count("*"), "const": bool(const)}


def prototypes(header):
    """(place, name, type of the result, parameters) of each function that the header declares."""
    text = without_comments(header.read_text())
    for found in PROTOTYPE.finditer(text):
        result, name, inside = found.groups()
        inside = " ".join(inside.split())
        parameters = [] if inside in ("", "void") else [parameter(one) for one in inside.split(",")]
        yield found.start(), name, result.replace(" *", "*").strip(), parameters


def declared():
    functions = {}
    for header in sorted(HEADERS.glob("*.h")):
        for _, name, result, parameters in prototypes(header):
            functions[name] = {"name": name, "header": header.name, "returns": result, "args": parameters}
    return functions


def statuses():
    text = (HEADERS / "types.h").read_text()
    return {name: int(value) for name, value in re.findall(r"(vornSts\w+) = (-?\d+)", text)}


# ---- Expressions, as trees: a number, a name, or [operation, operands ...].

TOKEN = re.compile(r"\s*(?:(\d+\.\d*(?:[eE][-+]?\d+)?|\d+[eE][-+]?\d+|\d+)|(\w+)|(<<|>>|<=|>=|==|!=|[-+*/%<>()\[\],.]))")
LEVELS = [["==", "!="], ["<", "<=", ">", ">="], ["<<", ">>"], ["+", "-"], ["*", "/", "%"]]
FUNCTIONS = {"min": 2, "max": 2, "abs": 1, "if": 3, "pow2": 1, "log2up": 1, "roundup": 2}


class Expression:
    """A recursive descent over one expression; functions tells the prototypes of what may be called."""

    def __init__(self, text, functions):
        self.functions = functions
        self.tokens = []
        at = 0
        text = text.strip()
        while at < len(text):
            found = TOKEN.match(text, at)
            if not found:
                raise Fault(f"cannot read {text[at:]!r} in {text!r}")
            self.tokens.append(found.group().strip())
            at = found.end()
        self.at = 0
        self.text = text

    def tree(self):
        tree = self.level(0)
        if self.at != len(self.tokens):
            raise Fault(f"cannot read {' '.join(self.tokens[self.at:])!r} in {self.text!r}")
        return tree

    def next_is(self, *tokens):
        return self.at < len(self.tokens) and self.tokens[self.at] in tokens

    def take(self, *expected):
        if self.at == len(self.tokens) or (expected and self.tokens[self.at] not in expected):
            raise Fault(f"{' or '.join(expected) or 'more'} expected in {self.text!r}")
        self.at += 1
        return self.tokens[self.at - 1]

    def level(self, level):
        if level == len(LEVELS):
            return self.unary()
        left = self.level(level + 1)
        while self.next_is(*LEVELS[level]):
            operation = self.take()
            left = [operation, left, self.level(level + 1)]
        return left

    def unary(self):
        if self.next_is("-"):
            self.take()
            operand = self.unary()
            return -operand if isinstance(operand, (int, float)) else ["-", 0, operand]
        return self.primary()

    def arguments(self):
        self.take("(")
        arguments = []
        while not self.next_is(")"):
            arguments.append(self.level(0))
            if not self.next_is(")"):
                self.take(",")
        self.take(")")
        return arguments

    def primary(self):
        token = self.take()
        if token == "(":
            tree = self.level(0)
            self.take(")")
            return tree
        if token[0].isdigit():
            return int(token) if token.isdigit() else float(token)
        if not re.fullmatch(r"\w+", token):
            raise Fault(f"{token!r} is no operand in {self.text!r}")
        if self.next_is("("):
            return self.call(token, self.arguments())
        if self.next_is("["):
            self.take("[")
            index = self.level(0)
            self.take("]")
            if self.next_is("."):
                self.take(".")
                return ["fieldat", token, index, self.take()]
            return ["at", token, index]
        if self.next_is("."):
            self.take(".")
            return ["field", token, self.take()]
        return token

    def call(self, name, arguments):
        if name == "sum":
            if len(arguments) == 1 and isinstance(arguments[0], str):
                return ["total", arguments[0]]
            if len(arguments) == 2:
                return ["sum", *arguments]
            raise Fault(f"sum takes an array, or a count and an expression: {self.text!r}")
        if name == "run":
            if len(arguments) != 2 or not isinstance(arguments[0], str):
                raise Fault(f"run takes an array and a place: {self.text!r}")
            return ["run", *arguments]
        if name in FUNCTIONS:
            if len(arguments) != FUNCTIONS[name]:
                raise Fault(f"{name} takes {FUNCTIONS[name]} operands: {self.text!r}")
            return [name, *arguments]
        if name not in self.functions:
            raise Fault(f"no function {name} to call in {self.text!r}")
        parameters = [one["name"] for one in self.functions[name]["args"]]
        outputs = [one["name"] for one in self.functions[name]["args"]
                   if one["type"] == "int" and one["pointers"] == 1 and not one["const"]]
        inputs = [one for one in parameters if one not in outputs]
        if self.next_is("."):
            self.take(".")
            output = self.take()
        elif len(outputs) == 1:
            output = outputs[0]
        else:
            raise Fault(f"which of {outputs} of {name}? in {self.text!r}")
        if output not in outputs or len(arguments) != len(inputs):
            raise Fault(f"{name} takes {inputs} and reports {outputs}: {self.text!r}")
        return ["call", name, output, dict(zip(inputs, arguments))]


def names_in(tree):
    """(names of numbers, names of arrays or contexts) that a tree stands on."""
    if isinstance(tree, str):
        return {tree}, set()
    if not isinstance(tree, list):
        return set(), set()
    if tree[0] in ("total", "field"):
        return set(), {tree[1]}
    if tree[0] in ("at", "fieldat", "run"):
        numbers, others = names_in(tree[2])
        return numbers, others | {tree[1]}
    operands = tree[3].values() if tree[0] == "call" else tree[1:]
    numbers, others = set(), set()
    for operand in operands:
        inner = names_in(operand)
        numbers |= inner[0]
        others |= inner[1]
    return numbers, others


# ---- Ranges: null for any, otherwise a list of {lo, hi, loOpen, hiOpen}, some with {by}, or {nan} or {nonzero} instead.

def range_of(text, functions):
    text = text.strip()
    if text == "any":
        return None
    pieces = []
    for word in text.split("|"):
        piece = {"lo": None, "hi": None, "loOpen": False, "hiOpen": False}
        pieces.append(piece)
        said, _, step = word.strip().partition(" by ")
        if said in ("nan", "nonzero"):
            piece[said] = True
            continue
        found = re.fullmatch(r"(.*?)(<?)\.\.(<?)(.*)", said)
        if found:
            low, piece["loOpen"], piece["hiOpen"], high = found[1], bool(found[2]), bool(found[3]), found[4]
        else:
            low = high = said
        piece["lo"] = Expression(low, functions).tree() if low.strip() else None
        piece["hi"] = Expression(high, functions).tree() if high.strip() else None
        if step:
            piece["by"] = Expression(step, functions).tree()
    return pieces


# ---- One argument.

WORD = re.compile(r"(?:(inout|out|work|new|init|set|ready|free)\s+)?(\w+)([?!]*)")
NUMBER = re.compile(r"(\w+)(!?)\s*=\s*(.+)")


def split_outside(text, separator):
    """Splits at the separator where no bracket is open."""
    pieces, depth, start = [], 0, 0
    for at, letter in enumerate(text):
        depth += (letter in "([") - (letter in ")]")
        if letter == separator and depth == 0:
            pieces.append(text[start:at])
            start = at + 1
    return pieces + [text[start:]]


def brackets(text):
    """The contents of the [..] groups at the start of the text, and what is behind them."""
    groups = []
    while text.startswith("["):
        depth = 0
        for at, letter in enumerate(text):
            depth += (letter == "[") - (letter == "]")
            if depth == 0:
                groups.append(text[1:at])
                text = text[at + 1:].lstrip() if not text[at + 1:].startswith("[") else text[at + 1:]
                break
        else:
            raise Fault(f"a bracket stays open in {text!r}")
    return groups, text


def argument(text, parameter, functions):
    """The argument that the text describes, with what the prototype says of it."""
    text = text.strip()
    result = dict(parameter)
    if parameter["pointers"] == 0:
        found = NUMBER.fullmatch(text)
        if not found or found.group(1) != parameter["name"]:
            raise Fault(f"{parameter['name']} = RANGE expected, not {text!r}")
        return {**result, "role": "number", "tested": not found.group(2), "range": range_of(found.group(3), functions)}

    found = WORD.match(text)
    if not found or found.group(2) != parameter["name"]:
        raise Fault(f"{parameter['name']} expected, not {text!r}")
    verb, _, marks = found.groups()
    groups, rest = brackets(text[found.end():])
    result.update(tested="!" not in marks, nullable="?" in marks)
    if rest.startswith(":") or verb in ("new", "init", "set", "ready", "free"):
        return context(result, verb, groups, rest, functions)
    return array(result, verb, groups, rest, functions)


def array(result, verb, groups, rest, functions):
    name = result["name"]
    tree = lambda text: Expression(text, functions).tree()
    direction = verb or "in"
    if (direction == "in") != result["const"]:
        raise Fault(f"{name}: read only and const must agree")
    result.update(role="array", direction=direction, content=None, same=[])
    if len(groups) == 2 and result["pointers"] == 2:
        result.update(shape="list", height=tree(groups[0]), width=tree(groups[1]), nonull=False)
    elif len(groups) == 1 and result["pointers"] == 1:
        parts = split_outside(groups[0], ":")
        if len(parts) == 3:
            result.update(shape="rows", height=tree(parts[0]), step=tree(parts[1]), width=tree(parts[2]))
        elif len(parts) == 1:
            result.update(shape="flat", count=tree(parts[0]))
        else:
            raise Fault(f"{name}: [count] or [height:step:width] expected")
    else:
        raise Fault(f"{name}: brackets and stars do not agree")
    if rest.startswith("nonull"):
        if result["shape"] != "list":
            raise Fault(f"{name}: nonull is of rows by pointers")
        result["nonull"] = True
        rest = rest[len("nonull"):].strip()
    found = re.fullmatch(r"(?:=(!?)\s*(rising |strict |falling )?([^@]+))?(?:@\s*(\w+(?:\s*\|\s*\w+)*))?", rest.strip())
    if not found:
        raise Fault(f"{name}: cannot read {rest!r}")
    untested, order, content, same = found.groups()
    if content:
        result["content"] = {"range": range_of(content, functions), "order": order.strip() if order else None,
                             "tested": not untested}
    if same:
        result["same"] = [one.strip() for one in same.split("|")]
    return result


def context(result, verb, groups, rest, functions):
    name = result["name"]
    tree = lambda text: Expression(text, functions).tree()
    found = re.fullmatch(r":(!?)\s*(\w+(?:\s*\|\s*\w+)*)\s*(?:in (\w+))?\s*(?:\{(.*)\})?", rest.strip())
    if not found:
        raise Fault(f"{name}: cannot read {rest!r}")
    untested, forms, memory, fields = found.groups()
    verb = verb or "use"
    made = verb in ("new", "init")
    result.update(role="context", verb=verb, forms=[one.strip() for one in forms.split("|")], formTested=not untested,
                  count=None, bytes=None, memory=memory, fields={})
    if verb == "init":
        if len(groups) != 1:
            raise Fault(f"{name}: init needs [bytes]")
        result["bytes"] = tree(groups[0])
    elif groups:
        if verb == "new" or result["pointers"] != 2:
            raise Fault(f"{name}: only arrays of pointers to contexts have a length")
        result["count"] = tree(groups[0])
    if (memory or fields) and not made or (memory and verb != "new") or (made and len(result["forms"]) != 1):
        raise Fault(f"{name}: memory, fields and one form are of what makes a context")
    if result["type"] != "void" and result["pointers"] != (2 if verb == "new" or groups and verb != "init" else 1):
        raise Fault(f"{name}: {verb} does not fit its stars")
    if verb in ("new", "init", "free") and result["const"]:
        raise Fault(f"{name}: {verb} of a const")
    for field in split_outside(fields, ",") if fields else []:
        key, equals, value = field.partition("=")
        if not equals:
            raise Fault(f"{name}: cannot read the field {field!r}")
        result["fields"][key.strip()] = tree(value)
    return result


# ---- Rows and the table.

def row(line, functions, known_statuses):
    columns = line.split("\t")
    name = columns[0]
    if name not in functions:
        raise Fault("no header declares it")
    if len(columns) not in (2, 3):
        raise Fault("name, arguments and perhaps notes, with tabs between them, expected")
    function = dict(functions[name], made=None, may=[], partial=[], unset=False, address=False, memory=False, shortage=False)
    texts = [text for text in columns[1].split(";") if text.strip()]
    made = [text for text in texts if re.match(r"\s*new return\b", text)]
    texts = [text for text in texts if text not in made]
    if made:
        groups, rest = brackets(re.sub(r"^\s*new return", "", made[0]))
        function["made"] = {"count": Expression(groups[0], functions).tree(), "form": rest.lstrip(": ").strip()}
    if len(texts) != len(function["args"]):
        raise Fault(f"{len(texts)} arguments, and the header has {len(function['args'])}")
    function["args"] = [argument(text, one, functions) for text, one in zip(texts, function["args"])]
    for note in columns[2].split(";") if len(columns) == 3 else []:
        word, _, names = note.strip().partition(" ")
        if word == "unset":
            function["unset"] = True
        elif word in ("address", "memory", "shortage"):
            function[word] = True
        elif word in ("may", "partial"):
            for status in names.split("|"):
                if known_statuses.get(status.strip(), 1) > 0:
                    raise Fault(f"{status.strip()} is no error")
                function[word].append(known_statuses[status.strip()])
        else:
            raise Fault(f"a note {note.strip()!r}")
    if function["made"] or any(one.get("verb") == "new" and one["memory"] is None for one in function["args"]):
        if function["memory"]:
            raise Fault("what makes something in memory of its own needs no such note")
        function["memory"] = True
    check_names(function)
    return function


def trees_of(argument):
    """Every expression of an argument."""
    for key in ("count", "height", "step", "width", "bytes"):
        if argument.get(key) is not None:
            yield argument[key]
    yield from argument.get("fields", {}).values()
    for pieces in (argument.get("range"), (argument.get("content") or {}).get("range")):
        for piece in pieces or []:
            yield from (one for one in (piece["lo"], piece["hi"], piece.get("by")) if one is not None)


def check_names(function):
    """Names in expressions are arguments of the right sort, and no number stands on itself."""
    arguments = {one["name"]: one for one in function["args"]}
    for one in function["args"]:
        for tree in trees_of(one):
            numbers, others = names_in(tree)
            for name in numbers - {"i"}:
                context = name in arguments and arguments[name]["role"] == "context"
                if not context and (name not in arguments or arguments[name]["role"] != "number"):
                    raise Fault(f"{one['name']}: {name} is no number among the arguments")
            for name in others:
                if name not in arguments or arguments[name]["role"] == "number":
                    raise Fault(f"{one['name']}: {name} is no array or context among the arguments")
        for name in one.get("same", []):
            if name not in arguments or arguments[name]["role"] != "array":
                raise Fault(f"{one['name']}: {name} is no array among the arguments")
        if one.get("memory") and one["memory"] not in arguments:
            raise Fault(f"{one['name']}: no argument {one['memory']}")

    def visit(name, path):
        if name in path:
            raise Fault(f"{' -> '.join(path)} -> {name} go round in a circle")
        for tree in trees_of(arguments[name]):
            for other in names_in(tree)[0] - {"i"}:
                visit(other, path + [name])
    for name, one in arguments.items():
        if one["role"] == "number":
            visit(name, [])


def read(tables, functions):
    """(rows by name in the order of the tables, faults)."""
    known_statuses = statuses()
    rows, faults = {}, []
    for table in tables:
        for number, line in enumerate(table.read_text().splitlines(), 1):
            if not line.strip() or line.startswith("#"):
                continue
            name = line.split("\t")[0]
            try:
                if name in rows:
                    raise Fault("a second row")
                rows[name] = row(line, functions, known_statuses)
            except Fault as fault:
                faults.append(f"{table.name}:{number}: {name}: {fault}")
    return rows, faults


def check_table(rows, functions):
    """What only the whole table shows: forms that nothing makes, fields that a maker lacks, functions without a row."""
    makers = {}
    for one in rows.values():
        for argument in one["args"]:
            if argument.get("verb") in ("new", "init"):
                fields = {other["name"] for other in one["args"] if other["role"] == "number"} | set(argument["fields"])
                makers.setdefault(argument["forms"][0], []).append((one["name"], fields))
        if one["made"]:
            makers.setdefault(one["made"]["form"], []).append((one["name"], set()))
    for one in rows.values():
        forms = {argument["name"]: argument["forms"] for argument in one["args"] if argument["role"] == "context"}
        for name, names in forms.items():
            for form in names:
                if form not in makers:
                    yield f"{one['name']}: {name}: nothing makes a {form}"
        for argument in one["args"]:
            for tree in trees_of(argument):
                for name, field in fields_in(tree):
                    for form in forms.get(name, []):
                        for maker, fields in makers.get(form, []):
                            if field not in fields:
                                yield f"{one['name']}: {maker} gives {form} no field {field}"
    for name in functions:
        if name not in rows:
            yield f"{name}: no row"
    order = [name for name in functions if name in rows]
    if order != list(rows):
        first = next(have for have, want in zip(rows, order) if have != want)
        yield f"{first}: not in the order of the headers"


def fields_in(tree):
    if isinstance(tree, list):
        if tree[0] == "field":
            yield tree[1], tree[2]
        elif tree[0] == "fieldat":
            yield tree[1], tree[3]
        for operand in tree[3].values() if tree[0] == "call" else tree[1:]:
            yield from fields_in(operand)


def json_of(rows):
    """Each function as the headers and the table have it; expressions are trees. It is what the fuzzer reads."""
    return {"functions": list(rows.values()), "sizes": SIZES, "statuses": statuses()}


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    action = parser.add_mutually_exclusive_group(required=True)
    action.add_argument("--check", action="store_true")
    action.add_argument("--json", metavar="OUT", type=pathlib.Path)
    action.add_argument("--doxygen", metavar="HEADER", type=pathlib.Path)
    parser.add_argument("table", nargs="*", type=pathlib.Path)
    arguments = parser.parse_args()
    functions = declared()
    rows, faults = read(arguments.table or [TABLE], functions)
    if arguments.json:
        arguments.json.write_text(json.dumps(json_of(rows), separators=(",", ":")))
    elif arguments.doxygen:
        import extents_reference
        sys.stdout.write(extents_reference.annotated(arguments.doxygen, rows))
        return 0
    else:
        faults += check_table(rows, functions)
        print(f"{len(rows)} rows of {len(functions)} functions")
    for fault in faults:
        print(fault, file=sys.stderr)
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
