"""vornsr-fuzz finds each fault that was planted, makes it small, and finds it again from the line that it printed; and it
finds nothing where there is nothing."""
import json
import os
import re
import subprocess
import tempfile
import unittest

FUZZ = os.environ["VORNSR_FUZZ"]
BUILDS = os.environ["VORNSR_PLANTED"].split(":")
SANITIZED = bool(os.environ.get("VORNSR_SANITIZE"))
CASES = 12000
LARGEST = 32  # decisions of a finding that has been made small
STATUSES = {"vornStsNoErr": 0, "vornStsBadArgErr": -5, "vornStsSizeErr": -6, "vornStsNullPtrErr": -8,
            "vornStsMemAllocErr": -9, "vornStsContextMatchErr": -17, "vornStsZeroOcc": 16}


def interval(low, high=None):
    return {"lo": low, "hi": high, "loOpen": False, "hiOpen": False}


def number(name, *pieces, kind="int"):
    return {"name": name, "type": kind, "pointers": 0, "const": False, "role": "number", "tested": True,
            "range": list(pieces) or None}


def array(name, count, direction="in", kind="Vorn32f", **more):
    return {"name": name, "type": kind, "pointers": 1, "const": direction == "in", "role": "array", "tested": True,
            "nullable": False, "direction": direction, "shape": "flat", "count": count, "content": None, "same": [], **more}


def rows(name, height, step, width, direction="in", kind="Vorn32f"):
    return {**array(name, None, direction, kind), "shape": "rows", "height": height, "step": step, "width": width}


def row_list(name, height, width, kind="Vorn32f"):
    return {**array(name, None, "in", kind), "pointers": 2, "shape": "list", "height": height, "width": width, "nonull": True}


def context(name, verb="use", **more):
    return {"name": name, "type": "Sum", "pointers": 2 if verb == "new" else 1, "const": False, "role": "context",
            "tested": True, "nullable": False, "verb": verb, "forms": ["sum"], "formTested": True, "count": None,
            "memory": None, "bytes": None, "fields": {}, **more}


LEN = number("len", interval(1))
COPY = [array("src", "len"), array("dst", "len", "out"), LEN]
IN_PLACE = [array("src", "len"), array("dst", "len", "out", same=["src"]), LEN]
SUM_LEN = number("len", interval(1, 64))
USE = [context("sum"), array("src", ["field", "sum", "len"]), array("total", 1, "out")]
SUM_BYTES = ["call", "plantedSumSize", "size", {"len": "len"}]

# Arguments, and what must be found: any of these words; none: nothing is wrong. None: what it needs is at fault.
FUNCTIONS = {
    "plantedCopy": (IN_PLACE, ()),
    "plantedPayload": (COPY, ()),
    "plantedWarning": (COPY, ()),
    "plantedRows": ([row_list("rows", "height", ["at", "widths", "i"], "Vorn16s"),
                     rows("dst", "height", "dstStep", 1, "out", "Vorn16s"), number("dstStep", interval(1)),
                     array("widths", "height", kind="int", content={"range": [interval(1, "dstStep")], "order": None, "tested": True}),
                     number("height", interval(1))], ()),
    "plantedReadsBehind": (COPY, ("crash",)),
    "plantedReadsBefore": (COPY, ("crash",)),
    "plantedWritesBehind": (COPY, ("crash", "written-outside")),
    "plantedWritesBetween": ([array("src", "width"), rows("dst", "height", "step", "width", "out"),
                              number("step", interval("width")), number("width", interval(1)), number("height", interval(1))],
                             ("written-between-rows",)),
    "plantedWritesInput": (COPY, ("input-written",)),
    "plantedWritesOnError": (COPY + [number("mode", interval(0, 3))], ("written-on-error", "crash")),
    "plantedUnwritten": (COPY, ("unwritten",)),
    "plantedAlignment": (COPY, ("alignment-differs",)),
    "plantedBuilds": (COPY, ("builds-differ",)),
    "plantedZeroSign": (COPY, ("builds-differ",)),
    "plantedStatusByBuild": (COPY, ("builds-differ",)),
    "plantedInPlace": (IN_PLACE, ("in-place-differs",)),
    "plantedMode": (COPY, ("mode-changed",)),
    "plantedRefuses": (COPY, ("refused",)),
    "plantedAccepts": (COPY, ("accepted",)),
    "plantedAcceptsNan": (COPY + [number("val", interval(0), kind="Vorn32f")], ("accepted",)),
    "plantedNull": (COPY, ("crash",)),
    "plantedNullRow": ([row_list("rows", "height", "width"), array("dst", "height", "out"), number("width", interval(1)),
                        number("height", interval(1))], ("crash",)),
    "plantedContent": ([array("index", "len", kind="int", content={"range": [interval(0)], "order": "rising", "tested": True}),
                        array("dst", "len", "out"), LEN], ("accepted",)),
    "plantedHangs": (COPY, ("hang",)),
    "plantedDivides": ([array("src", "len", kind="Vorn32s"), array("dst", "len", "out", kind="Vorn32s"), LEN], ("crash",)),
    "plantedLeaks": (COPY, ("leak",)),
    "plantedIgnoresShortage": (COPY, ("allocation-ignored",)),
    "plantedWritesBeforeAllocation": (COPY, ("written-on-error", "allocation-written")),
    "plantedAllocates": (COPY, ("allocates",)),
    "plantedSumMake": ([context("sum", "new"), SUM_LEN], ()),
    "plantedSumSize": ([SUM_LEN, array("size", 1, "out", kind="int")], ()),
    "plantedSumInit": ([context("block", "init", type="void", bytes=SUM_BYTES), SUM_LEN], ()),
    "plantedSumAdd": (USE, ()),
    "plantedSumFree": ([context("sum", "free", forms=["sum", "third", "untested"])], ()),
    # Forms of their own: what is made for one function is used in the tests of no other.
    "plantedThirdMake": ([context("sum", "new", type="Third", forms=["third"]), SUM_LEN], ()),
    "plantedThirdUse": ([context("sum", type="Third", forms=["third"]), *USE[1:]], ("builds-differ",)),
    "plantedUntestedMake": ([context("sum", "new", type="Untested", forms=["untested"]), SUM_LEN], ()),
    "plantedFormNotTested": ([context("sum", type="Untested", forms=["untested"]), array("total", 1, "out")], ("accepted",)),
    "plantedMakesNothing": ([context("sum", "new", type="Nothing", forms=["nothing"]), SUM_LEN], ("no-context",)),
    "plantedNothingFree": ([context("sum", "free", type="Nothing", forms=["nothing"], tested=False, formTested=False)], None),
    "plantedInitTooLong": ([context("block", "init", type="void", forms=["long"], bytes=SUM_BYTES), SUM_LEN],
                           ("crash", "written-outside")),
    "plantedBlock": ([LEN], ()),
    "plantedRelease": ([context("block", "free", type="void", forms=["block"], nullable=True, formTested=False)], ()),
}
# What the rows say (one of them without a reason); whatever makes a context in memory of its own allocates as well.
ALLOCATING = {"plantedLeaks", "plantedIgnoresShortage", "plantedWritesBeforeAllocation", "plantedWarning", "plantedBlock"}
# What only this program's own signals and allocator show; a sanitizer takes their places. (The last one is no kind of
# finding: it marks what is written before an allocation fails.)
NOT_SANITIZED = {"hang", "leak", "allocates", "allocation-ignored", "allocation-written"}


def table():
    functions = []
    for name, (arguments, _) in FUNCTIONS.items():
        functions.append({"name": name, "header": "planted.h", "returns": "VornStatus", "args": arguments, "made": None,
                          "may": [], "partial": [], "unset": False,
                          "memory": name in ALLOCATING or any(one.get("verb") == "new" for one in arguments)})
        if name == "plantedBlock":
            functions[-1].update(returns="Vorn32f*", made={"count": "len", "form": "block"})
        elif name == "plantedRelease":
            functions[-1]["returns"] = "void"
    return {"functions": functions, "sizes": {}, "statuses": STATUSES}


class Planted(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.table = os.path.join(cls.folder.name, "planted.json")
        with open(cls.table, "w") as file:
            json.dump(table(), file)

    @classmethod
    def tearDownClass(cls):
        cls.folder.cleanup()

    def fuzz(self, *options):
        # A death is told from a finding; after a finding contexts stay behind, which is no leak of the library.
        environment = {**os.environ, "ASAN_OPTIONS": "exitcode=99:detect_leaks=0", "UBSAN_OPTIONS": "exitcode=99"}
        libraries = [word for build in BUILDS for word in ("--library", build)]
        result = subprocess.run([FUZZ, "--table", self.table, *libraries, "--patience", "0.4", *options],
                                capture_output=True, text=True, env=environment)
        return result.returncode, result.stdout, result.stderr

    def findings(self, output):
        return re.findall(r"^(\S+) (\w+)[^\n]*\n  vornsr-fuzz(?: --allocations)? --replay (\w+:[0-9a-f]*)$", output, re.M)

    def test_each_planted_fault(self):
        for name, (_, kinds) in FUNCTIONS.items():
            if SANITIZED and NOT_SANITIZED & set(kinds or ()):
                continue  # another watches over that
            if kinds is None:
                continue
            with self.subTest(function=name):
                status, output, errors = self.fuzz("--function", name, "--cases", str(CASES), "--seed", "7", "--quiet")
                if not kinds:
                    self.assertEqual((status, output), (0, ""), errors)
                elif SANITIZED and "crash" in kinds and status not in (0, 1):
                    self.assert_dies_again(name, errors)
                else:
                    self.assert_found(name, kinds, status, output)

    def assert_found(self, name, kinds, status, output):
        self.assertEqual(status, 1, output)
        found = self.findings(output)
        self.assertTrue(found, output)
        for kind, function, line in found:
            self.assertEqual(function, name)
            self.assertIn(kind, kinds)
            self.assertLessEqual(len(line.split(":")[1]) // 2, LARGEST)
            again, replayed, _ = self.fuzz("--replay", line)
            self.assertEqual(again, 1)
            self.assertRegex(replayed, rf"^{kind} {name}\b")
            _, shown, _ = self.fuzz("--replay", line, "--show")
            self.assertIn("which the case is about", shown)

    def assert_dies_again(self, name, errors):
        """A sanitizer ends the process; the line is among its last words."""
        line = re.search(rf"vornsr-fuzz --replay ({name}:[0-9a-f]*)", errors)
        self.assertTrue(line, errors)
        again, _, _ = self.fuzz("--replay", line.group(1))
        self.assertNotIn(again, (0, 1))

    def test_all_at_once(self):
        """One run finds the faults of all functions, and says so in the end."""
        if SANITIZED:
            self.skipTest("the first fault that a sanitizer sees ends the run")
        status, output, _ = self.fuzz("--cases", str(CASES * 10), "--seed", "11")
        self.assertEqual(status, 1)
        found = {function for _, function, _ in self.findings(output)}
        self.assertEqual(found, {name for name, (_, kinds) in FUNCTIONS.items() if kinds})
        self.assertRegex(output, rf"functions called +{len(FUNCTIONS)} of {len(FUNCTIONS)}")

    def test_allocations(self):
        """Each allocation fails once, of those that allocate; who never does is named."""
        if SANITIZED:
            self.skipTest("a sanitizer takes the allocator's place")
        run = ("--allocations", "--cases", "400", "--seed", "3")
        status, output, _ = self.fuzz(*run, "--function", "plantedSumMake", "--function", "plantedCopy")
        self.assertEqual(status, 0, output)
        self.assertRegex(output, r"functions called +1 of 1\b")
        self.assertRegex(output, r"allocations that failed +[1-9]\d*, of 1 functions")
        _, output, _ = self.fuzz(*run, "--function", "plantedWarning")
        self.assertIn("never allocated: plantedWarning", output)
        status, output, _ = self.fuzz(*run)
        self.assertEqual(status, 1)
        self.assertIn("plantedWritesBeforeAllocation", {function for _, function, _ in self.findings(output)})

    def test_a_function_that_never_succeeds_is_named(self):
        status, output, _ = self.fuzz("--function", "plantedCopy", "--cases", "1", "--seed", "1", "--except", "plantedCopy")
        self.assertEqual((status, output), (2, ""))

    def test_usage(self):
        for options in (["--unknown"], ["--seconds"], ["--cases", "many"], ["--replay", "nothing"]):
            with self.subTest(options=options):
                self.assertEqual(self.fuzz(*options)[0], 2)


if __name__ == "__main__":
    unittest.main()
