"""What the reference says of each function's arguments: the table of extents in words, put in front of the prototypes."""
import re

import extents

OPERATORS = {operator: 10 + level for level, operators in enumerate(extents.LEVELS) for operator in operators}


def text(tree, above=0):
    """An expression as it is written, with the brackets that it needs."""
    if not isinstance(tree, list):
        return str(tree)
    operation, *operands = tree
    if operation in OPERATORS:
        level = OPERATORS[operation]
        inner = f"{text(operands[0], level)} {operation} {text(operands[1], level + 1)}"
        return f"({inner})" if level < above else inner
    if operation == "total":
        return f"sum({operands[0]})"
    if operation == "at":
        return f"{operands[0]}[{text(operands[1])}]"
    if operation == "field":
        return f"{operands[0]}.{operands[1]}"
    if operation == "fieldat":
        return f"{operands[0]}[{text(operands[1])}].{operands[2]}"
    if operation == "call":
        return f"{operands[0]}({', '.join(map(text, operands[2].values()))}).{operands[1]}"
    return f"{operation}({', '.join(map(text, operands))})"


def piece(bounds):
    low, high = bounds["lo"], bounds["hi"]
    if "nan" in bounds:
        return "not a number"
    if "nonzero" in bounds:
        return "not zero"
    if "by" in bounds:
        return piece({key: value for key, value in bounds.items() if key != "by"}) + f" in steps of {text(bounds['by'])}"
    if low is not None and low == high:
        return text(low)
    if low is None:
        return f"{'below' if bounds['hiOpen'] else 'at most'} {text(high)}"
    start = f"above {text(low)}" if bounds["loOpen"] else text(low)
    if high is None:
        return start if bounds["loOpen"] else f"at least {start}"
    return f"{start} to {'below ' if bounds['hiOpen'] else ''}{text(high)}"


def numbers(pieces):
    return "any number" if pieces is None else " or ".join(map(piece, pieces))


def elements(tree):
    return "one element" if tree == 1 else f"{text(tree)} elements"


def shape(one):
    if one["shape"] == "flat":
        return elements(one["count"])
    if one["shape"] == "rows":
        return f"{text(one['height'])} rows of {elements(one['width'])}, {text(one['step'])} apart"
    return f"pointers to {text(one['height'])} rows of {elements(one['width'])}" + (", none null" if one["nonull"] else "")


VERBS = {"new": "is given a new", "init": "becomes", "use": "", "set": "changed,", "ready": "", "free": "released,"}
DIRECTIONS = {"in": "read", "out": "written", "inout": "read and written", "work": "scratch memory"}


def argument(one):
    if one["role"] == "number":
        words = numbers(one["range"])
    elif one["role"] == "array":
        words = f"{shape(one)}, {DIRECTIONS[one['direction']]}"
        if one["content"]:
            order = {"rising": ", rising", "strict": ", each above the one before", "falling": ", falling", None: ""}[one["content"]["order"]]
            tested = "" if one["content"]["tested"] else " (not tested)"
            words += f"; values {numbers(one['content']['range'])}{order}{tested}"
        if one["same"]:
            words += f"; may be {' or '.join(one['same'])}"
    else:
        words = f"{VERBS[one['verb']]} context `{'`, `'.join(one['forms'])}`".strip()
        if one["count"] is not None:
            words = f"{text(one['count'])} pointers: {words}"
        if one["bytes"] is not None:
            words += f", {text(one['bytes'])} bytes"
        if one["memory"]:
            words += f" in {one['memory']}"
        for name, tree in one["fields"].items():
            words += f"; {name} is {text(tree)}"
        if not one["formTested"]:
            words += " (the form is not tested)"
    if one.get("nullable"):
        words += "; may be null"
    if not one["tested"]:
        words += "; not tested"
    return f"`{one['name']}`: {words}"


def comment(row):
    lines = ["/** @par Arguments"] + [f" * - {argument(one)}" for one in row["args"]]
    if row["made"]:
        lines.append(f" * - result: {elements(row['made']['count'])}, or null")
    names = {value: name for name, value in extents.statuses().items()}
    if row["may"]:
        lines.append(" * @par Errors by values")
        lines.append(f" * {', '.join(names[status] for status in row['may'])}")
    if row["partial"]:
        lines.append(" * @par Outputs may have been written after")
        lines.append(f" * {', '.join(names[status] for status in row['partial'])}")
    if row["address"]:
        lines += [" * @par Addresses", " * The results depend on those of the arrays, as the family says."]
    if row["memory"]:
        lines += [" * @par Memory", " * The function allocates some."]
    if row["shortage"]:
        lines += [" * @par Shortage of memory", " * There may be no error, as the family says."]
    return "\n".join(lines + [" */", ""])


def annotated(header, rows):
    """The header with each function's extents in front of it. A family that is pointed to is named by its title and, for
    the readers of man pages, by the name of its page."""
    source = header.read_text()
    pieces, start = [], 0
    for place, name, _, _ in extents.prototypes(header):
        pieces += [source[start:place], comment(rows[name]) if name in rows else ""]
        start = place
    return re.sub(r"@ref (vornsr_[a-z0-9_]*)", r"@ref \1 (\1)", "".join(pieces + [source[start:]]))
