"""Every table and every long constant of the sources is what tools/coefficients.py makes of its definition."""
import os
import sys
import unittest

import environment as env

try:
    import mpmath  # noqa: F401
except ImportError:
    env.skip("no mpmath (Debian: python3-mpmath)")

sys.path.insert(0, os.path.join(env.SOURCE, "tools"))
import coefficients  # noqa: E402


class Coefficients(unittest.TestCase):
    def holds(self, check):
        self.assertEqual(list(check()), [])

    def test_tables_are_correctly_rounded(self):
        self.holds(coefficients.check_tables)

    def test_constants_are_correctly_rounded(self):
        self.holds(coefficients.check_constants)

    def test_fitted_series_keep_their_bound(self):
        self.holds(coefficients.check_fits)

    def test_given_polynomials_keep_their_bound(self):
        self.holds(coefficients.check_given)

    def test_no_other_long_number_stands_in_the_sources(self):
        self.holds(coefficients.check_origins)


if __name__ == "__main__":
    if env.SANITIZE:
        env.skip("the source files are the same as in the plain builds, where this test runs")
    unittest.main()
