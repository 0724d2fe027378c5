"""Where a source can be broken, and how: every small change that one of the rules below makes of a line."""
import hashlib
import math
import re
import struct
from dataclasses import dataclass

BUILDS = ("m7", "x86-64-v3", "x86-64-v4")

# What the conditions of the sources ask for, by build.
DEFINED = {
    "m7": {"__GNUC__"},
    "x86-64-v3": {"__GNUC__", "__AVX2__", "VORN_SIMD_AVX2", "VORN_WIDE_TILES"},
    "x86-64-v4": {"__GNUC__", "__AVX2__", "__AVX512F__", "__AVX512BW__", "__AVX512DQ__", "__AVX512VL__",
                  "VORN_SIMD_AVX512", "VORN_WIDE_TILES"},
}
# Included by the wider builds alone.
FIRST_BUILD = {"vorns/src/simd/avx2.h": "x86-64-v3", "vorns/src/simd/avx512.h": "x86-64-v4"}


@dataclass(frozen=True)
class Mutant:
    path: str
    line: int      # counted from 1
    begin: int     # of the change, in the text of the file
    end: int
    new: str
    kind: str
    build: str
    column: int    # counted from 0
    before: str    # the lines that the change touches, and what becomes of them
    after: str

    @property
    def id(self):
        text = "\n".join((self.path, self.before, self.after, str(self.line)))
        return hashlib.sha1(text.encode()).hexdigest()[:12]

    @property
    def old(self):
        return self.before[self.column:len(self.before) - len(self.after) + self.column + len(self.new)]

    def apply(self, text):
        return text[:self.begin] + self.new + text[self.end:]


def blank(match):
    return re.sub(r"[^\n]", " ", match.group())


def code_of(text):
    """The text with everything blanked that is not code to be broken; offsets stay."""
    text = re.sub(r'//[^\n]*|/\*.*?\*/|"(?:\\.|[^"\\\n])*"|(?<![0-9a-fA-F])\'(?:\\.|[^\'\\\n])\'', blank, text, flags=re.S)
    text = re.sub(r"^[ \t]*#(?:[^\n]*\\\n)*[^\n]*", blank, text, flags=re.M)
    text = re.sub(r"\b(?:static_assert|asm volatile|asm)\s*\(.*?\);", blank, text, flags=re.S)
    text = re.sub(r"^[ \t]*(?:using|namespace|extern|friend|concept|requires)\b[^;{]*[;{]", blank, text, flags=re.M)
    return re.sub(r"\btemplate <(?:[^<>]|<[^<>]*>)*>", blank, text)


def active(text):
    """For each line, the first build that compiles it, or None."""
    stack, first = [], []

    def holds(condition, build):
        asked = re.sub(r"//.*", "", condition)
        asked = re.sub(r"defined\s*\(?(\w+)\)?", lambda m: str(m.group(1) in DEFINED[build]), asked)
        asked = asked.replace("&&", " and ").replace("||", " or ").replace("!", " not ")
        try:
            return bool(eval(asked, {"__builtins__": {}}))
        except Exception:
            return True

    for line in text.split("\n"):
        if m := re.match(r"\s*#\s*(ifdef|ifndef|if|elif|else|endif)\b(.*)", line):
            word, condition = m.groups()
            if word in ("ifdef", "ifndef"):
                name = condition.split()[0]
                condition = ("!" if word == "ifndef" else "") + f"defined({name})"
            if word in ("if", "ifdef", "ifndef"):
                now = {b for b in BUILDS if holds(condition, b)}
                stack.append((now, set(now)))
            elif word == "endif":
                stack.pop()
            else:
                _, taken = stack.pop()
                now = {b for b in BUILDS if b not in taken and (word == "else" or holds(condition, b))}
                stack.append((now, taken | now))
            first.append(None)
            continue
        builds = [b for b in BUILDS if all(b in now for now, _ in stack)]
        first.append(builds[0] if builds else None)
    return first


# Each rule is a kind, a pattern, and what the match (or its group named x) may become.

def one_of(table):
    def become(match):
        return table[match.group("x")]
    return become


OPERATORS = {"+": ["-"], "-": ["+"], "*": ["+", "/"], "/": ["*"], "%": ["/"], "<<": [">>"], ">>": ["<<"],
             "&": ["|"], "|": ["&"], "^": ["|", "&"]}
ASSIGNMENTS = {"+=": ["-="], "-=": ["+="], "*=": ["+=", "/="], "/=": ["*="], "<<=": [">>="], ">>=": ["<<="],
               "&=": ["|="], "|=": ["&="], "^=": ["|="]}
COMPARISONS = {"<": ["<=", ">"], "<=": ["<", ">="], ">": [">=", "<"], ">=": [">", "<="], "==": ["!="], "!=": ["=="]}
# Functions and members that are easily taken for one another.
PAIRS = [("interleaveLow", "interleaveHigh"), ("toDoubleLow", "toDoubleHigh"), ("widenLow", "widenHigh"),
         ("dupEven", "dupOdd"), ("lowHalf", "highHalf"), ("productsLow", "productsHigh"), ("mulLow", "mulHigh"),
         ("firstLane", "secondLane"), ("sumNeighbours", "sumHalves"), ("reverse", "reversePairs"),
         ("unpacklo_ps", "unpackhi_ps"), ("unpacklo_pd", "unpackhi_pd"), ("_mm_movelh_ps", "_mm_movehl_ps"),
         ("_mm_moveldup_ps", "_mm_movehdup_ps"), (".low", ".high"), (".re", ".im"), (".lower", ".upper"), (".first", ".second")]
PAIRS += [(f"_mm{w}_unpacklo_{e}", f"_mm{w}_unpackhi_{e}") for w in ("", "256", "512")
          for e in ("ps", "pd", "epi8", "epi16", "epi32", "epi64")]
EXTREMA = [("std::min", "std::max"), ("minOf", "maxOf"), ("min_element", "max_element"), ("first", "last")][:3]
EXTREMA += [(f"_mm{w}_min_{e}", f"_mm{w}_max_{e}") for w in ("", "256", "512")
            for e in ("ps", "pd", "epi16", "epi32", "epu8", "ss", "sd", "epu16")]
SATURATING = [("addSat", "subSat"), ("addSatUnsigned", "addSat"), ("subSatUnsigned", "subSat"),
              ("narrowSat8", "narrowSatU8"), ("shiftRight", "shiftRightLogical"), ("wrapAdd", "wrapSub"),
              ("joinSat", "joinSatUnsigned"), ("roundToInt", "truncToInt"), ("saturateTo32", ""), ("absSat", "absOf"),
              ("absOf", ""), ("clamped", ""), ("swapPairs", ""), ("notANumberOr", "")]
SATURATING += [(f"_mm{w}_{o}s_{e}", f"_mm{w}_{o}_{e.replace('epu', 'epi')}") for w in ("", "256", "512")
               for o in ("add", "sub") for e in ("epi16", "epu8", "epu16", "epi8")]


def both_ways(pairs):
    table = {}
    for a, b in pairs:
        table.setdefault(a, []).append(b)
        if b:
            table.setdefault(b, []).append(a)
    return table


# Behind the type that it returns, the name of a function is being defined.
DEFINED_HERE = r"(?:(?<=return )|(?<![\w>*&] ))"


def words(kind, table):
    """Whole names that are called, or members that are read."""
    calls = sorted((n for n in table if not n.startswith(".")), key=len, reverse=True)
    members = sorted(n for n in table if n.startswith("."))
    rules = []
    if calls:
        rules.append((kind, re.compile(DEFINED_HERE + r"(?<![\w.])(?P<x>" + "|".join(map(re.escape, calls)) + r")(?=[(<])"), one_of(table)))
    if members:
        rules.append((kind, re.compile("(?P<x>" + "|".join(map(re.escape, members)) + r")\b(?!\()"), one_of(table)))
    return rules


def integers(match):
    value = int(match.group("x"))
    suffix = match.group("suffix")
    return [f"{value + 1}{suffix}"] + ([f"{value - 1}{suffix}"] if value > 0 else [])


def floats(match):
    """A sign, and the next number of the constant's own type."""
    written, suffix = match.group("x"), match.group("suffix")
    value = float.fromhex(written) if written.startswith("0x") else float(written)
    if value == 0:
        return [f"1.0{suffix}"]
    if suffix:
        bits = struct.unpack("<I", struct.pack("<f", value))[0]
        above = struct.unpack("<f", struct.pack("<I", bits + 1))[0]
    else:
        above = math.nextafter(value, math.inf)
    return [f"(-{written}{suffix})", f"{above.hex()}{suffix}"]


STATUSES = {"vornStsNoErr": ["vornStsSizeErr"], "vornStsNullPtrErr": ["vornStsSizeErr"], "vornStsSizeErr": ["vornStsRangeErr"]}


def statuses(match):
    return STATUSES.get(match.group("x"), ["vornStsNoErr"])


RULES = [
    ("operator", re.compile(r"(?<=[\w)\]}]) (?P<x>[-+*/%&|^]|<<|>>)(?=\s)"), one_of(OPERATORS)),
    ("operator", re.compile(r"(?<=[\w)\]]) (?P<x>[-+*/&|^]=|<<=|>>=)(?=\s)"), one_of(ASSIGNMENTS)),
    ("sign", re.compile(r"(?:(?<=[(,=?:{] )|(?<=return )|(?<=[({]))(?P<x>-)(?=[A-Za-z_(])"), lambda m: [""]),
    ("comparison", re.compile(r"(?<=[\w)\]]) (?P<x>[<>]=?|[=!]=)(?=\s)"), one_of(COMPARISONS)),
    ("logic", re.compile(r"(?<=\S) (?P<x>&&|\|\|)(?=\s)"), one_of({"&&": ["||"], "||": ["&&"]})),
    ("logic", re.compile(r"(?<![\w)\]])(?P<x>!)(?=[\w(])"), lambda m: [""]),
    ("logic", re.compile(r"\b(?P<x>true|false)\b"), one_of({"true": ["false"], "false": ["true"]})),
    ("integer", re.compile(r"(?<![\w.<])(?<![pe][-+])(?P<x>\d{1,6})(?P<suffix>[uUlL]*)(?![\w.>'])"), integers),
    ("float", re.compile(r"(?<![\w.])(?P<x>0x[\da-f]+(?:\.[\da-f]*)?p[-+]?\d+|\d+\.\d*(?:e[-+]?\d+)?|\d+e[-+]?\d+)(?P<suffix>f?)(?!\w)"),
     floats),
    ("status", re.compile(r"(?<=[ (,?:])(?P<x>vornSts\w+)\b"), statuses),
    ("tail", re.compile(r"(?<=[\w)\]] )(?:<|<=|>|>=) (?P<x>[a-z]\w*)(?=;)"), lambda m: [m.group("x") + " - 1", m.group("x") + " + 1"]),
    ("tail", re.compile(r"\b(?:loadFirst<\w+>|storeFirst)\([^()\n]*, (?P<x>[a-z]\w*)(?=\))"),
     lambda m: [m.group("x") + " - 1", m.group("x") + " + 1"]),
    ("rounding", re.compile(r"\bRounding::(?P<x>Nearest|Down|Up|TowardZero)\b"),
     one_of({"Nearest": ["TowardZero"], "Down": ["Nearest"], "Up": ["Nearest"], "TowardZero": ["Nearest"]})),
    *words("lanes", both_ways(PAIRS)), *words("extrema", both_ways(EXTREMA)), *words("saturation", both_ways(SATURATING)),
]

# A whole statement on a line of its own, and not a declaration.
STATEMENT = re.compile(r"^[ \t]+(?P<x>(?:\*?[A-Za-z_][\w.]*(?:->\w+|\.\w+|\[[^\n=]*\])*(?: [-+*/&|^]=| <<=| >>=| =) [^\n]*|"
                       r"(?:\+\+|--)[^\n]*|"
                       r"(?!return|throw|delete|else|do)[A-Za-z_][\w:]*(?:<[^\n()]*>)?(?:\.\w+|->\w+)?\([^\n]*\)|"
                       r"const (?:Core)?RoundingGuard [^\n]*));[ \t]*$", re.M)
EARLY_RETURN = re.compile(r"^[ \t]+(?P<x>if \([^\n]*\) (?:return[^\n]*|continue|break));[ \t]*$", re.M)
CHECK = re.compile(r"^[ \t]+(?P<x>VORN_CHECK\([^\n]*\);)[ \t]*$", re.M)


# What checks answer that do not name a status.
ANSWERS = {"positive": "vornStsSizeErr", "atLeast": "vornStsSizeErr", "notNull": "vornStsNullPtrErr",
           "strideHolds": "vornStsStrideErr"}


def answer_of(check):
    """The one status that a check can answer, or the check itself."""
    named = re.findall(r"\bvornSts\w+", check)
    function = re.match(r"VORN_CHECK\((?:\w+::)*(\w+)", check)
    return " ".join(sorted(set(named))) if named else ANSWERS.get(function.group(1) if function else "", check)


def in_brackets(code, begin, end):
    """Inside the angle brackets of a template's arguments."""
    line = code[code.rfind("\n", 0, begin) + 1:begin]
    return len(re.findall(r"\w<(?![<= ])", line)) > len(re.findall(r"(?<![ >-])>", line))


def mutants_of(path, text):
    """Every mutant of a file, in the order of the text."""
    code, builds = code_of(text), active(text)
    found = []

    def add(kind, begin, end, new):
        line = text.count("\n", 0, begin)
        build = FIRST_BUILD.get(path, builds[line])
        if build is None or text[begin:end] == new:
            return
        first, last = text.rfind("\n", 0, begin) + 1, text.find("\n", end)
        lines = text[first:last]
        changed = text[first:begin] + new + text[end:last]
        found.append(Mutant(path, line + 1, begin, end, new, kind, build, begin - first, lines, changed))

    for kind, pattern, become in RULES:
        for match in pattern.finditer(code):
            begin, end = match.span("x")
            if "suffix" in match.groupdict():
                end = match.end("suffix")
            if in_brackets(code, begin, end) and kind not in ("lanes", "saturation"):
                continue
            for new in become(match):
                add(kind, begin, end, new)
    for match in STATEMENT.finditer(code):
        statement = match.group("x")
        if statement.count("(") == statement.count(")") and not statement.startswith("VORN_CHECK"):
            previous = code[:match.start("x")].rstrip()[-1:]
            if previous in "{};:)" and previous:
                add("statement", match.start("x"), match.end("x"), "")
    for match in EARLY_RETURN.finditer(code):
        add("statement", match.start("x"), match.end("x"), "")
    checks = list(CHECK.finditer(code))
    for match in checks:
        add("check", *match.span("x"), "")
    for one, two in zip(checks, checks[1:]):
        if not code[one.end():two.start("x")].strip():
            a, b = text[one.start("x"):one.end("x")], text[two.start("x"):two.end("x")]
            add("check", one.start("x"), two.end("x"), b + text[one.end("x"):two.start("x")] + a)
    return sorted(found, key=lambda m: (m.begin, m.end, m.new))


ROOM = re.compile(r"(?<!return )(?:(?<=\w )|(?<=\w\* )|(?<=> ))\w+(?:\[[^\]\n]*\])*\[(?P<x>\d+)$")


def changes_nothing(mutant):
    """Two neighbouring checks with one answer may stand in any order, and an array may have room for one more."""
    checks = mutant.before.split("\n")
    if mutant.kind == "check":
        return (len(checks) == 2 and len(mutant.after.split("\n")) == 2
                and answer_of(checks[0].strip()) == answer_of(checks[1].strip()))
    if mutant.kind == "integer" and mutant.new.isdigit():
        old = mutant.old
        declared = ROOM.search(mutant.before[:mutant.column] + old)
        return bool(declared) and int(mutant.new) > int(old)
    return False


def size_of(text):
    """Lines that hold code."""
    return sum(bool(line.strip()) for line in code_of(text).split("\n"))
