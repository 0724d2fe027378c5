"""The table of extents is complete, agrees with the headers, and its reader refuses rows that say nothing sensible."""
import os
import sys
import unittest

import environment as env

sys.path.insert(0, os.path.join(env.SOURCE, "tools"))
import extents  # noqa: E402
import extents_reference  # noqa: E402

FUNCTIONS = extents.declared()
LEN_ROW = "vornsMahDist_32f_D2\tsrc[height:step:len]; step = len..; mean[len]; var[len]; len = 1..; " \
          "out result[height]; height = 1.."
CONTEXT_ROW = "vornsFFTFwd_CToC_32fc\tsrc[ctx.n]; out dst[ctx.n] @ src; ctx: fft_C_32fc; work buffer?[1]"


def row(line):
    return extents.row(line, FUNCTIONS, extents.statuses())


class Table(unittest.TestCase):
    def test_every_function_has_one_row_that_agrees_with_its_header(self):
        rows, faults = extents.read([extents.TABLE], FUNCTIONS)
        self.assertEqual(faults + list(extents.check_table(rows, FUNCTIONS)), [])

    def test_headers_declare_what_the_library_exports(self):
        with open(os.path.join(env.SOURCE, "abi", "vornsr.map")) as abi:
            exported = {name for name in extents.re.findall(r"\bvornsr?[A-Z]\w*", abi.read())
                        if not extents.re.search(r"_[MW]7", name)}
        self.assertEqual(exported ^ set(FUNCTIONS), set())


class Reader(unittest.TestCase):
    def refused(self, line, words):
        with self.assertRaisesRegex(extents.Fault, words):
            row(line)

    def test_rows_that_hold(self):
        self.assertEqual(row(LEN_ROW)["args"][0]["step"], "step")
        self.assertEqual(row(CONTEXT_ROW)["args"][1]["same"], ["src"])

    def test_refuses_other_names_and_another_order(self):
        self.refused(LEN_ROW.replace("mean[", "means["), "mean expected")
        self.refused(LEN_ROW.replace("mean[len]; var[len]", "var[len]; mean[len]"), "mean expected")
        self.refused(LEN_ROW.replace("var[len]; ", ""), "6 arguments, and the header has 7")
        self.refused("vornsNothing\tlen = 1..", "no header declares it")

    def test_refuses_a_direction_that_const_contradicts(self):
        self.refused(LEN_ROW.replace("mean[", "out mean["), "read only and const")
        self.refused(LEN_ROW.replace("out result[", "result["), "read only and const")

    def test_refuses_names_that_are_no_arguments(self):
        self.refused(LEN_ROW.replace("var[len]", "var[width]"), "width is no number")
        self.refused(LEN_ROW.replace("var[len]", "var[mean]"), "mean is no number")
        self.refused(CONTEXT_ROW.replace("src[ctx.n]", "src[other.n]"), "other is no array or context")
        self.refused(CONTEXT_ROW.replace("@ src", "@ source"), "source is no array")

    def test_refuses_numbers_that_stand_on_themselves(self):
        self.refused(LEN_ROW.replace("len = 1..", "len = 1..step"), "go round in a circle")

    def test_refuses_brackets_that_do_not_fit_the_stars(self):
        self.refused(LEN_ROW.replace("mean[len]", "mean[height][len]"), "brackets and stars")
        self.refused(LEN_ROW.replace("mean[len]", "mean[len:len]"), "expected")
        self.refused(LEN_ROW.replace("mean[len]", "mean[(len]"), "expected|stays open")

    def test_refuses_notes_that_are_no_errors(self):
        self.refused(LEN_ROW + "\tmay vornStsZeroOcc", "no error")
        self.refused(LEN_ROW + "\tperhaps", "a note")

    def test_reads_expressions_as_they_are_calculated(self):
        tree = extents.Expression("2*a - b/3 - 1 << c", FUNCTIONS).tree()
        self.assertEqual(tree, ["<<", ["-", ["-", ["*", 2, "a"], ["/", "b", 3]], 1], "c"])
        self.assertEqual(extents_reference.text(tree), "2 * a - b / 3 - 1 << c")
        tree = extents.Expression("run(x, i)", FUNCTIONS).tree()
        self.assertEqual(extents.names_in(tree), ({"i"}, {"x"}))
        tree = extents.Expression("a - (b - c) * (d + 1)", FUNCTIONS).tree()
        self.assertEqual(tree, ["-", "a", ["*", ["-", "b", "c"], ["+", "d", 1]]])
        self.assertEqual(extents_reference.text(tree), "a - (b - c) * (d + 1)")

    def test_reads_ranges(self):
        self.assertIsNone(extents.range_of("any", FUNCTIONS))
        self.assertEqual(extents.range_of("0<..<1.5", FUNCTIONS), [{"lo": 0, "hi": 1.5, "loOpen": True, "hiOpen": True}])
        self.assertEqual([piece["hi"] for piece in extents.range_of("1|4|8..", FUNCTIONS)], [1, 4, None])
        self.assertEqual(extents_reference.numbers(extents.range_of("0..|nan", FUNCTIONS)), "at least 0 or not a number")
        self.assertEqual(extents_reference.numbers(extents.range_of("4.. by 4", FUNCTIONS)), "at least 4 in steps of 4")
        self.assertEqual(extents.range_of("nonzero", FUNCTIONS)[0]["nonzero"], True)

    def test_says_rows_in_words(self):
        words = extents_reference.comment(row(LEN_ROW))
        self.assertIn("`src`: height rows of len elements, step apart, read", words)
        self.assertIn("`step`: at least len", words)


if __name__ == "__main__":
    if env.SANITIZE:
        env.skip("the source files are the same as in the plain builds, where this test runs")
    unittest.main()
