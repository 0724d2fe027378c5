"""Rules among the source files: headers that stand alone, documentation for every export, and imports that run one way."""
import glob
import os
import re
import unittest

import environment as env

SUBSYSTEMS = {"scoring", "estimation", "features", "vq", "aurora", "noise", "linalg"}
# Which speech subsystem may include which other.
ACROSS = {("vq", "scoring"), ("aurora", "features")}
# Everything else speaks of vectors through the vocabulary of simd.h.
MAY_USE_INTRINSICS = {"vornsr/src/frame/rounding.h", "vornsr/src/frame/core.cpp"}


def sources(*folders):
    for folder in folders:
        for path in sorted(glob.glob(os.path.join(env.SOURCE, folder, "**", "*.*"), recursive=True)):
            if path.endswith((".h", ".cpp")):
                yield os.path.relpath(path, env.SOURCE)


def code(path):
    return re.sub(r"//[^\n]*|/\*.*?\*/", "", env.text(path), flags=re.S)


def included(path):
    return re.findall(r'^\s*#\s*include\s*[<"]([^>"]+)[>"]', code(path), re.M)


class Headers(unittest.TestCase):
    def compiles(self, *command):
        result = env.subprocess.run(command, capture_output=True, text=True)
        self.assertEqual(result.returncode, 0, " ".join(command) + "\n" + result.stderr)

    def headers(self):
        yield os.path.join(env.SOURCE, "include", "vornsr.h")
        for header in env.public_headers():
            yield os.path.join(env.SOURCE, "include", "vornsr", header)

    def test_each_header_alone_is_c99_and_cpp11(self):
        strict = ["-pedantic", "-Wall", "-Wextra", "-Werror", "-fsyntax-only", "-I", os.path.join(env.SOURCE, "include")]
        for header in self.headers():
            name = os.path.relpath(header, os.path.join(env.SOURCE, "include"))
            for compiler, language, standard in (("VORNSR_CC", "c", "c99"), ("VORNSR_CXX", "c++", "c++11")):
                with self.subTest(header=name, standard=standard):
                    self.compiles(os.environ[compiler], f"-std={standard}", *strict, "-x", language, "-include", name, "/dev/null")

    def test_the_public_header_includes_every_subsystem(self):
        self.assertEqual(sorted(included("include/vornsr.h")), [f"vornsr/{name}" for name in env.public_headers()])

    def test_no_function_is_declared_twice(self):
        names = [name for header in env.public_headers() for name in env.declared_functions(header)]
        self.assertEqual(sorted(names), sorted(set(names)))
        self.assertGreater(len(names), 100, "the headers were read")


class Map(unittest.TestCase):
    def test_every_declared_function_is_in_the_map(self):
        listed = set(env.exported_names())
        for header in env.public_headers():
            self.assertFalse([name for name in env.declared_functions(header) if name not in listed], header)


class Documentation(unittest.TestCase):
    """A declaration is documented by the text of the group that it stands in or by a comment of its own."""

    def undocumented(self, header):
        names = []
        group, group_has_text, own_comment = "no group", False, False
        for part in re.findall(r"/\*\*.*?\*/|[^/]+|/", env.text("include", "vornsr", header), re.S):
            if part.startswith("/**"):
                title = re.search(r"@defgroup\s+(\w+)[^\n]*\n(.*)", part, re.S)
                if title:
                    group, group_has_text = title.group(1), len(re.findall(r"[A-Za-z]{2,}", title.group(2))) >= 20
                elif "@}" in part:
                    group, group_has_text = "no group", False
                own_comment = not title and len(re.findall(r"[A-Za-z]{2,}", part)) >= 3
            else:
                declared = re.findall(r"^[A-Za-z][\w\s\*]*?\b(vorn\w+)\s*\(", part, re.M)
                names += [f"{name} ({group})" for i, name in enumerate(declared)
                          if not group_has_text and not (own_comment and i == 0)]
                own_comment = own_comment and not declared
        return names

    def test_every_declaration_is_documented(self):
        for header in env.public_headers():
            with self.subTest(header=header):
                self.assertEqual(self.undocumented(header), [])


class Reference(unittest.TestCase):
    """What a reader of the reference meets."""

    LONGEST_LIST = 40  # functions of one group
    WIDEST_LINE = 120

    def groups(self):
        """The group of every declaration: a group stands in its parent's braces, and the innermost one counts."""
        members, open_groups = {}, []
        for header in env.public_headers():
            text = env.text("include", "vornsr", header)
            for part in re.findall(r"/\*\*.*?\*/|^[A-Za-z][^;{]*?\bvorn\w+\s*\(", text, re.S | re.M):
                if title := re.search(r"@defgroup\s+(\w+)", part):
                    open_groups.append(title.group(1))
                    members[title.group(1)] = 0
                elif "@}" in part:
                    open_groups.pop()
                elif not part.startswith("/**"):
                    members[open_groups[-1]] += 1
            self.assertEqual(open_groups, [], header)
        return members

    def test_no_group_is_a_long_list(self):
        members = self.groups()
        self.assertGreater(sum(members.values()), 700, "the headers were read")
        self.assertFalse({name: count for name, count in members.items() if count > self.LONGEST_LIST})

    def test_the_first_page_leads_to_every_group(self):
        named = set(re.findall(r"@ref (vornsr_\w+)", env.text("docs", "reference.md")))
        self.assertEqual(named - set(self.groups()), set())
        # A group inside another is reached through it.
        subgroups = {name for header in env.public_headers() for name in self.inner_groups(header)}
        self.assertEqual(set(self.groups()) - subgroups - named, set())

    def inner_groups(self, header):
        depth = 0
        for part in re.findall(r"/\*\*.*?\*/", env.text("include", "vornsr", header), re.S):
            if title := re.search(r"@defgroup\s+(\w+)", part):
                if depth:
                    yield title.group(1)
                depth += 1
            elif "@}" in part:
                depth -= 1

    def test_lines_of_the_headers_are_not_too_wide(self):
        for header in ["../vornsr.h", *env.public_headers()]:
            for number, line in enumerate(env.text("include", "vornsr", header).splitlines(), 1):
                self.assertLessEqual(len(line), self.WIDEST_LINE, f"{header}:{number}")


class Snippets(unittest.TestCase):
    """The code that headers show compiles, given what its caller would have."""
    # By the function that the code is about.
    GIVEN = {
        "vornsDelta_Win2_32f_D2": "const Vorn32f* const* src, const int* height, int n, Vorn32f* out, int width, int step,"
                                  " Vorn32f val",
        "vornsResamplePolyphaseFixed_32f": "const VornResampleFixedState_32f* state, const Vorn32f* src, Vorn32f* dst, int N",
    }

    def test_they_compile(self):
        seen = 0
        for header in env.public_headers():
            for block in re.findall(r"@code\n(.*?)@endcode", env.text("include", "vornsr", header), re.S):
                lines = [re.sub(r"^ \* ?", "", line) for line in block.splitlines()]
                about = [name for name in self.GIVEN if any(name in line for line in lines)]
                with self.subTest(header=header, code=lines[0]):
                    self.assertEqual(len(about), 1, "what the code needs is told here")
                    program = "\n".join(["#include <vornsr.h>", f"void example({self.GIVEN[about[0]]}) {{", *lines, "}", ""])
                    command = [os.environ["VORNSR_CC"], "-std=c99", "-pedantic", "-Wall", "-Wextra", "-Werror", "-fsyntax-only",
                               "-I", os.path.join(env.SOURCE, "include"), "-x", "c", "-"]
                    result = env.subprocess.run(command, input=program, capture_output=True, text=True)
                    self.assertEqual(result.returncode, 0, result.stderr)
                seen += 1
        self.assertGreater(seen, 1, "the headers were read")


class Bounds(unittest.TestCase):
    """An accuracy is one number: in the table of docs/numerics.md, in the header that promises it, in the test."""

    def test_each_bound_stands_where_it_is_promised_and_held(self):
        page = env.text("docs", "numerics.md")
        table = re.search(r"\| function \| bound \|[^\n]*\n\|[-|]+\|\n((?:\|[^\n]*\n)+)", page).group(1)
        rows = [[cell.strip() for cell in line.strip("|").split(" | ")] for line in table.splitlines()]
        self.assertGreater(len(rows), 10, "the table was read")
        for function, bound, header, test, *_ in rows:
            numbers = re.findall(r"\d+\.\d+(?:e-\d+)?|\d+e-\d+", bound)
            self.assertTrue(numbers, function)
            for number in numbers:
                for path in (header, test):
                    with self.subTest(function=function, bound=number, file=path):
                        self.assertRegex(env.text(path), rf"(?<![\w.]){re.escape(number)}(?![\d.]*\d)")


class Workloads(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.workloads = env.output(env.VERIFY, "--list").split()

    def test_every_export_has_a_workload(self):
        # Kernels run in the workloads of the functions that choose them; constants and the two calls that write the
        # control register are the floating-point core's, which has its own tests.
        core = {name for name in env.exported_names() if name.startswith(("vornConstantOf", "vorn_set_"))}
        missing = [name for name in env.exported_names()
                   if name not in self.workloads and name not in core and not env.is_kernel(name)]
        self.assertFalse(missing)

    def test_workloads_are_of_exports_and_unique(self):
        self.assertFalse(set(self.workloads) - set(env.exported_names()))
        self.assertEqual(len(self.workloads), len(set(self.workloads)))


def room(path):
    """vorns/src/simd/fold.h -> simd, vorns/src/fft/core/complex.h -> fft/core"""
    return os.path.dirname(os.path.relpath(path, "vorns/src"))


class Layers(unittest.TestCase):
    def test_the_vector_layer_knows_no_speech_subsystem(self):
        for path in sources("vorns/src"):
            for name in included(path):
                self.assertNotIn(name.split("/")[0], SUBSYSTEMS, f"{path} includes {name}")

    def test_the_frame_knows_nobody(self):
        for path in sources("vornsr/src/frame"):
            for name in included(path):
                if "/" in name:
                    self.assertIn(name.split("/")[0], {"frame", "vornsr", "sys"}, f"{path} includes {name}")

    def test_the_rooms_of_the_vector_layer_make_no_circle(self):
        edges = {}
        for path in sources("vorns/src"):
            own = room(path)
            for name in included(path):
                other = room(os.path.join("vorns/src", name))
                if other != own and os.path.exists(os.path.join(env.SOURCE, "vorns/src", name)):
                    edges.setdefault(own, {}).setdefault(other, f"{path} includes {name}")

        def visit(at, way):
            for other, why in edges.get(at, {}).items():
                self.assertNotIn(other, way, f"a circle, {' -> '.join([*way, other])}: {why}")
                visit(other, [*way, other])

        self.assertGreater(len(edges), 5, "the rooms were found")
        for start in list(edges):
            visit(start, [start])

    def test_speech_subsystems_do_not_include_one_another(self):
        for path in sources("vornsr/src"):
            own = path.split("/")[2]
            for name in included(path):
                other = name.split("/")[0]
                if other in SUBSYSTEMS and other != own:
                    self.assertIn((own, other), ACROSS, f"{path} includes {name}")

    def test_includes_do_not_climb(self):
        for path in sources("vornsr/src", "vorns/src", "include"):
            for name in included(path):
                self.assertNotIn("..", name, path)

    def test_intrinsics_stay_in_the_vocabulary(self):
        seen = 0
        for path in sources("vornsr/src", "vorns/src"):
            uses = [name for name in included(path) if name.endswith("intrin.h")]
            uses += re.findall(r"\b_mm\d*_\w+|\b__m\d+[di]?\b|\b__builtin_ia32_\w+", code(path))
            if re.fullmatch(r"vorns/src/simd/\w+\.h", path) or path in MAY_USE_INTRINSICS:
                seen += len(uses)
            else:
                self.assertFalse(uses, path)
        self.assertGreater(seen, 100, "the vocabulary was read")


class Vocabulary(unittest.TestCase):
    """What vorns/src/simd declares: called by name in tests/simd, and told in the table at the top of simd.h."""
    DECLARED = re.compile(r"(?<!static )VORN_INLINE\s+([^;{}()]*?)(\w+|operator[^\s\w(]+)(?:<[\w, ]*>)?"
                          r"\(([^{}]*?)\)\s*(?:const\s*)?\{")

    def operations(self, path):
        """The functions of a header. Those that take or give bare registers are for the vocabulary itself."""
        found = self.DECLARED.findall(re.sub(r"^\s*#[^\n]*", "", code(path), flags=re.M))
        return sorted({name for result, name, arguments in found if not re.search(r"\b__m", result + arguments)})

    def test_every_function_is_tested(self):
        tests = re.sub(r'"[^"\n]*"', "", "".join(code(path) for path in sources("tests/simd")))
        count = 0
        for path in sources("vorns/src/simd"):
            # Operators are in use everywhere, in the tests as well, so that a search for them tells nothing.
            names = [name for name in self.operations(path) if not name.startswith("operator")]
            for name in names if path.endswith(".h") else []:
                count += 1
                self.assertIsNotNone(re.search(rf"\b{name}(<[^;(){{}}]*>)?\(", tests), f"{name} of {path}")
        self.assertGreater(count, 200, "the vocabulary was read")

    def test_every_operation_is_in_the_table(self):
        table = env.text("vorns/src/simd/simd.h").split("#pragma once")[0]
        for header in ("sse.h", "avx2.h", "avx512.h"):
            names = self.operations(f"vorns/src/simd/{header}")
            self.assertGreater(len(names), 50, header)
            for name in names:
                if name.startswith("operator"):
                    told = rf"(?<=\s){re.escape(name.removeprefix('operator'))}(?=[\s,])"
                else:
                    told = rf"\b{name}\b"
                self.assertIsNotNone(re.search(told, table), f"{name} of {header}")


class SharedContexts(unittest.TestCase):
    """A context that a call only reads may be shared by threads: tests/threads calls every such function."""
    CONTEXT = re.compile(r"\bconst (?:VornsFFT\w*Spec|VornFBankState_\w+|VornDCTLifterState_\w+|VornResample\w*State_\w+|"
                         r"VornCdbkState|VornBlockDMatrix_\w+)\s*\*")
    # Their context is one thread's at a time, although they do not change what it stands for.
    NOT_SHARED = {"vornsDCTLifter_16s_Sfs", "vornsDCTLifter_32s16s_Sfs"}
    OF_A_FORM = re.compile(r"vornsFFTGetBufSize_\w+")  # through the table of forms in tests/fft/forms.h

    def test_threads_share_each(self):
        tests = "".join(code(path) for path in sources("tests/threads"))
        count = 0
        for header in env.public_headers():
            declarations = re.sub(r"/\*.*?\*/", "", env.text("include", "vornsr", header), flags=re.S)
            for name, parameters in re.findall(r"\b(vorn\w+)\s*\(([^()]*)\)\s*;", declarations):
                if self.CONTEXT.search(parameters) and name not in self.NOT_SHARED and not self.OF_A_FORM.fullmatch(name):
                    count += 1
                    self.assertIsNotNone(re.search(rf"\b{name}\b", tests), name)
        self.assertGreater(count, 100, "the headers were read")


if __name__ == "__main__":
    if env.SANITIZE:
        env.skip("the source files are the same as in the plain builds, where this test runs")
    unittest.main()
