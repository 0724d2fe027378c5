"""What is changed is code and nothing else, and the list of changes that cannot be seen holds no other ones."""
import os
import sys
import unittest

sys.dont_write_bytecode = True
sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import report  # noqa: E402
import sites  # noqa: E402
from build import ROOT, read, sources  # noqa: E402


def changes(text, path="room/file.h"):
    return [(m.kind, m.apply(text)) for m in sites.mutants_of(path, text)]


class Sites(unittest.TestCase):
    def test_what_is_no_code_stays(self):
        for text in ('// a + b\n', '/* a < b */\n', '#define A(x) ((x) + 1)\n', '#include "simd/four.h"\n',
                     'static_assert(sizeof(int) == 4);\n', 'const char* s = "a + b";\n', 'template <class T, int n = 4>\n',
                     'using V = Four<2>;\n', '#define A(x) \\\n    (x) + 1\n'):
            self.assertEqual(changes(text), [], text)

    def test_types_stay(self):
        text = "void f(const T* a, T&& b, Part<4> c, std::vector<T> d) {\n    int* p;\n}\n"
        self.assertEqual(changes(text), [])

    def test_each_kind_is_found(self):
        for text, kind, changed in (
                ("    x = a + b;\n", "operator", "    x = a - b;\n"),
                ("{\n    x = a + b;\n", "statement", "{\n    ;\n"),
                ("    if (a < b) f();\n", "comparison", "    if (a <= b) f();\n"),
                ("    if (a < b) f();\n", "comparison", "    if (a > b) f();\n"),
                ("    x = f(4);\n", "integer", "    x = f(3);\n"),
                ("    x = 0.5f;\n", "float", "    x = (-0.5f);\n"),
                ("    x = 0.5f;\n", "float", "    x = 0x1.0000020000000p-1f;\n"),
                ("    x = 0.5;\n", "float", "    x = 0x1.0000000000001p-1;\n"),
                ("    x = minOf(a, b);\n", "extrema", "    x = maxOf(a, b);\n"),
                ("    x = a.low;\n", "lanes", "    x = a.high;\n"),
                ("    x = addSat(a, b);\n", "saturation", "    x = subSat(a, b);\n"),
                ("    for (; i < len; ++i) f();\n", "tail", "    for (; i < len - 1; ++i) f();\n"),
                ("    return vornStsNoErr;\n", "status", "    return vornStsSizeErr;\n"),
                ("    VORN_CHECK(a);\n    VORN_CHECK(b);\n", "check", "    VORN_CHECK(b);\n    VORN_CHECK(a);\n"),
                ("    VORN_CHECK(a);\n", "check", "    \n")):
            self.assertIn((kind, changed), changes(text))

    def test_lines_belong_to_the_first_build_that_has_them(self):
        text = ("#if defined(VORN_SIMD_AVX512)\nint a = b + c;\n#elif defined(VORN_SIMD_AVX2)\nint a = b + c;\n#else\n"
                "int a = b + c;\n#endif\n#if !defined(VORN_WIDE_TILES)\nint d = b + c;\n#endif\n")
        builds = {m.line: m.build for m in sites.mutants_of("room/file.h", text)}
        self.assertEqual(builds, {2: "x86-64-v4", 4: "x86-64-v3", 6: "m7", 9: "m7"})

    def test_checks_with_one_answer_may_stand_in_any_order(self):
        for text, expected in (("    VORN_CHECK(positive(a));\n    VORN_CHECK(atLeast(1, b));\n", [True]),
                               ("    VORN_CHECK(notNull(a));\n    VORN_CHECK(positive(b));\n", [False])):
            both = [m for m in sites.mutants_of("room/file.h", text) if m.kind == "check" and "\n" in m.after]
            self.assertEqual([sites.changes_nothing(m) for m in both], expected)


class Explained(unittest.TestCase):
    def test_each_entry_is_a_change_of_the_sources_as_they_are(self):
        texts = {path: read(f"{ROOT}/{path}") for path in sources()}
        explained = report.Explained(f"{ROOT}/tests/mutants/equivalent.txt", texts)
        self.assertEqual(explained.stale, [])
        made = {}
        for path, before, after in explained.reasons:
            if path not in made:
                made[path] = {(report.squeezed(m.before), report.squeezed(m.after))
                              for m in sites.mutants_of(path, texts[path])}
            self.assertIn((before, after), made[path], path)


if __name__ == "__main__":
    unittest.main()
