#!/usr/bin/env python3
"""Makes every table and every long constant of the sources again, in multiple precision, and compares.

    /usr/bin/python3 tools/coefficients.py            prints them as the sources hold them
    /usr/bin/python3 tools/coefficients.py --check    says where a source holds something else

Needs mpmath (Debian: python3-mpmath). Three kinds of numbers:

 - made: a stated value, rounded to the nearest number of its type. What is made must stand in the source, bit for bit.
 - fitted: the polynomials of the two logarithms of the vector layer, fitted by exchange and rounded one coefficient
   after the other. That search was not kept, and another one ends on other last bits. So what is held here is their
   bound, worked out again, and their distance from the minimax polynomial.
 - given: the polynomials of log-addition. They belong to the interface: no derivation is known. What the source says
   of their errors is worked out again.
"""
import os
import re
import sys

import mpmath as mp

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
mp.mp.prec = 2000

DOUBLE, SINGLE = 53, 24


# ---- Numbers as the sources write them.

def nearest(value, bits=DOUBLE):
    """The nearest number with so many bits, ties to even."""
    if value == 0:
        return 0.0
    mantissa, exponent = mp.frexp(value)
    return float(mp.ldexp(mp.nint(mp.ldexp(mantissa, bits)), exponent - bits))


def truncated(value, bits=DOUBLE):
    """The first so many bits of a number above zero."""
    mantissa, exponent = mp.frexp(value)
    return float(mp.ldexp(mp.floor(mp.ldexp(mantissa, bits)), exponent - bits))


def literal(value):
    """1.5 -> 0x1.8p0"""
    mantissa, exponent = float(value).hex().split("p")
    return f"{mantissa.rstrip('0').rstrip('.') if '.' in mantissa else mantissa}p{int(exponent)}"


HEXADECIMAL = r"0x[01](?:\.[0-9a-f]+)?p-?\d+"


def source(path):
    """A source file without its comments."""
    with open(os.path.join(ROOT, path)) as file:
        return re.sub(r"//[^\n]*", "", file.read())


def initialiser(path, name):
    """What stands between the braces of the array of this name."""
    found = re.search(rf"\b{name}\[\w+\] = \{{(.*?)\}};", source(path), re.S)
    if not found:
        raise LookupError(f"{path} has no table {name}")
    return found.group(1)


# ---- Made: tables.

TABLES = "vorns/src/elementary/tables.h"


def powers_of_two():
    """2^(j/128) = value x (1 + rest)."""
    for j in range(128):
        power = mp.mpf(2) ** (mp.mpf(j) / 128)
        value = nearest(power)
        yield value, nearest(power / value - 1)


def logarithms_of_steps():
    """A reciprocal of the middle of [1 + j/128, 1 + (j+1)/128] with ten bits, and its logarithm in two parts."""
    for j in range(128):
        reciprocal = nearest(256 / mp.mpf(257 + 2 * j), 10)
        exact = -mp.log(mp.mpf(reciprocal))
        ln = mp.ldexp(mp.nint(mp.ldexp(exact, 42)), -42)
        yield reciprocal, float(ln), nearest(exact - ln)


def sines_and_cosines():
    """Sine and cosine of j/128 up to pi/4, each in two parts."""
    for j in range(102):
        row = []
        for exact in (mp.sin(mp.mpf(j) / 128), mp.cos(mp.mpf(j) / 128)):
            row += [nearest(exact), nearest(exact - nearest(exact))]
        yield tuple(row)


def two_over_pi():
    """One word of zeros and the first 1280 bits of 2/pi behind the point."""
    bits = int(mp.floor(mp.ldexp(2 / mp.pi, 1280)))
    return [0] + [bits >> (1280 - 64 * (word + 1)) & (1 << 64) - 1 for word in range(20)]


MADE_TABLES = {"powersOfTwo": powers_of_two, "logarithmsOfSteps": logarithms_of_steps,
               "sinesAndCosines": sines_and_cosines}


# ---- Made: constants. Each stands in the named file as it is written here.

def split(value, multiple, bits=DOUBLE):
    """The nearest multiple of 2^-multiple, and the nearest number to the rest."""
    high = mp.ldexp(mp.nint(mp.ldexp(value, multiple)), -multiple)
    return float(high), nearest(value - high, bits)


def half_pi_in_parts():
    """33 bits, 33 bits, and 53 bits of pi/2, the first two truncated."""
    rest, parts = mp.pi / 2, []
    for _ in range(2):
        parts.append(truncated(rest, 33))
        rest -= parts[-1]
    return parts + [nearest(rest)]


def made_constants():
    ln2, pi = mp.log(2), mp.pi
    infinite = (2 - mp.ldexp(1, -DOUBLE)) * mp.ldexp(1, 1023)  # what is rounded to infinity, from here on
    vanishing = mp.ldexp(1, -1075)  # what is rounded to zero, down from here
    step = split(ln2 / 128, 42)
    whole = split(ln2, 42)
    single = split(ln2, 15, SINGLE)
    elementary, lanes = "vorns/src/elementary/elementary.cpp", "vorns/src/elementary/lanes.h"
    kernels = "vorns/src/elementary/logarithm_kernels.h"
    yield elementary, "largest", truncated(mp.log(infinite))
    yield elementary, "smallest", -truncated(-mp.log(vanishing))
    yield elementary, "quarterPi", nearest(pi / 4)
    yield elementary, "quadrantsPerUnit", nearest(2 / pi)
    for part, value in enumerate(half_pi_in_parts(), 1):
        yield elementary, f"halfPi{part}", value
    yield lanes, "stepsPerUnit", nearest(128 / ln2)
    yield lanes, "stepHigh", step[0]
    yield lanes, "stepLow", step[1]
    for path in (lanes, kernels):
        yield path, "ln2High", whole[0]
        yield path, "ln2Low", whole[1]
    yield kernels, "ln2High", single[0]
    yield kernels, "ln2Low", single[1]
    yield "vorns/src/reductions/sum_logarithm.cpp", "ln2", nearest(ln2)
    yield "vornsr/src/aurora/equalisation/high_band.cpp", "leastEnergy", nearest(mp.exp(-10))
    sine = "vornsr/src/linalg/curves/sine.h"
    yield sine, "quarterPi", nearest(pi / 4)
    yield sine, "quadrantsPerUnit", nearest(2 / pi)
    yield sine, "halfTurnsPerUnit", nearest(1 / pi)
    for part, value in enumerate(half_pi_in_parts(), 1):
        yield sine, f"halfPi{part}", value
    yield sine, "pi1", truncated(pi, 33)
    yield sine, "pi2", nearest(pi - truncated(pi, 33))
    yield "vornsr/src/aurora/noise_reduction/wiener.h", "leastRatio", nearest(mp.power(10, mp.mpf(-22) / 20), SINGLE)
    for name, base in (("alphaD", 0.7), ("alphaP", 0.2), ("alphaS", 0.8)):  # the doubles of these names
        for part, value in zip(("High", "Low"), split(mp.log(mp.mpf(base)), 27)):
            yield TRACKING, name + part, value


INTEGER_SCALE = "vornsr/src/features/bank/integer_scale.h"
TRACKING = "vornsr/src/noise/tracking/parameters.h"
SUPPRESSION = "vornsr/src/noise/suppression/tables.h"


def ephraim_malah(v):
    """The gain over that of Wiener (Ephraim and Malah 1984)."""
    bessel = (1 + v) * mp.besseli(0, v / 2) + v * mp.besseli(1, v / 2)
    return mp.sqrt(mp.pi / v) / 2 * mp.exp(-v / 2) * bessel


def integer_tables():
    """Path, name and values: logarithms and inverses in Q31, and gains of arguments in Q22."""
    def q31(value):
        return int(mp.nint(mp.ldexp(value, 31)))
    yield INTEGER_SCALE, "lnOfOneAndPower", [q31(mp.log(1 + mp.ldexp(1, -i - 1))) for i in range(32)]
    yield INTEGER_SCALE, "lnOfOneLessPower", [q31(mp.log(1 - mp.ldexp(1, -i - 1))) for i in range(32)]
    yield INTEGER_SCALE, "ln2", [q31(mp.log(2))]
    yield INTEGER_SCALE, "perLn2", [q31(1 / mp.log(2))]
    yield TRACKING, "stretch", [int(mp.floor(mp.ldexp(mp.mpf(8) / 1000, 31)))]
    yield TRACKING, "lnOf07", [q31(mp.log(mp.mpf(7) / 10))]
    yield TRACKING, "lnOf08", [q31(mp.log(mp.mpf(8) / 10))]
    yield TRACKING, "eighthOfLnOf02", [q31(mp.log(mp.mpf(2) / 10) / 8)]
    yield TRACKING, "third", [q31(mp.mpf(1) / 3)]
    with mp.workprec(200):
        gains = [int(mp.nint(ephraim_malah(mp.ldexp(mp.mpf(x), -22)))) for x in range(1, 129)]
    yield SUPPRESSION, "gainOfSmall", [2**31 - 1] + gains


def taylor_coefficients():
    """1/n and 1/n!, of the Taylor series of the elementary functions in double."""
    return {nearest(1 / mp.mpf(n)) for n in range(1, 11)} | {nearest(1 / mp.factorial(n)) for n in range(1, 22)}


# Decimal constants: path, as written, what it stands for, and to how many digits (0: the nearest double).
def decimal_constants():
    for path in ("vorns/src/fft/real/core.cpp", "vorns/src/fft/core/butterflies.h", "vorns/src/fft/core/transform.h"):
        yield path, "0.7071067811865476", mp.sqrt(mp.mpf(1) / 2), 0
    yield "vorns/src/fft/contexts/tables.cpp", "6.283185307179586", 2 * mp.pi, 0
    yield "vornsr/src/features/cepstrum/kernels.cpp", "3.141592653589793", mp.pi, 0
    yield "vornsr/src/estimation/clustering/likelihood.cpp", "1.8378770664093456", mp.log(2 * mp.pi), 0
    # These have the digits that the functions promise, no more.
    yield "vornsr/src/estimation/updates/constant.h", "1.8378770664093", mp.log(2 * mp.pi), 13
    yield "vornsr/src/scoring/distances/bhattacharyya.h", "1.386294", mp.log(4), 6
    yield "vornsr/src/scoring/distances/bhattacharyya.h", "0.693147", mp.log(2), 6
    yield "vornsr/src/features/conditioning/energy_kernels.h", "0.230259", mp.log(10) / 10, 6
    yield "vornsr/src/linalg/curves/entropy.cpp", "0.6931472", mp.log(2), 7


# ---- Fitted: R(z) = ln((1 + s)/(1 - s))/s - 2 = z Q(z), z = s^2, 0 <= z <= 0.04. The error counts beside the whole
# logarithm, 2 + R.

HIGHEST = mp.mpf(1) / 25
LOGARITHM = "vorns/src/elementary/logarithm_kernels.h"


def series(z):
    """Q(z) = 2/3 + 2z/5 + 2z^2/7 + ..., to 2^-140 for z up to 0.04."""
    total = mp.mpf(0)
    for k in range(30, -1, -1):
        total = total * z + mp.mpf(2) / (2 * k + 3)
    return total


def relative_weight(z):
    return z / (2 + z * series(z))


class Grid:
    """Points that are dense towards both ends of [0, HIGHEST], and what a fit needs to know there."""

    def __init__(self, count):
        self.z = [HIGHEST * (1 - mp.cos(mp.pi * i / count)) / 2 for i in range(count + 1)]
        self.series = [series(z) for z in self.z]
        self.weight = [relative_weight(z) for z in self.z]

    def errors(self, coefficients):
        return [w * (q - mp.polyval(coefficients[::-1], z)) for z, q, w in zip(self.z, self.series, self.weight)]


def extremes(z, error):
    """One place for each run of one sign: the vertex of the parabola through the largest point and its neighbours."""
    runs = []
    for i, e in enumerate(error):
        if runs and (error[runs[-1]] > 0) == (e > 0):
            runs[-1] = max(runs[-1], i, key=lambda j: abs(error[j]))
        else:
            runs.append(i)
    places = []
    for i in runs:
        place, size = z[i], error[i]
        if 0 < i < len(z) - 1:
            left, right = z[i - 1] - z[i], z[i + 1] - z[i]
            slope, rise = (error[i - 1] - size) / left, (error[i + 1] - size) / right
            bend = (rise - slope) / (right - left)
            tilt = slope - bend * left
            if bend != 0 and left < -tilt / (2 * bend) < right:
                place -= tilt / (2 * bend)
                size -= tilt * tilt / (4 * bend)
        places.append((place, size))
    return places


def best_fit(grid, terms):
    """The minimax coefficients of Q, lowest power first, and their largest error (Remez 1934)."""
    z = [HIGHEST * (1 - mp.cos(mp.pi * (i + 1) / (terms + 1))) / 2 for i in range(terms + 1)]
    for _ in range(20):
        rows = mp.matrix(terms + 1, terms + 1)
        right = mp.matrix(terms + 1, 1)
        for i, at in enumerate(z):
            weight = relative_weight(at)
            for j in range(terms):
                rows[i, j] = weight * at**j
            rows[i, terms] = (-1) ** i
            right[i] = weight * series(at)
        coefficients = [*mp.lu_solve(rows, right)][:terms]
        found = extremes(grid.z, grid.errors(coefficients))
        while len(found) > terms + 1:  # the point at zero, where nothing counts, has a sign too
            found = found[1:] if abs(found[0][1]) < abs(found[-1][1]) else found[:-1]
        z = [at for at, _ in found]
        size = [abs(e) for _, e in found]
        if max(size) - min(size) < max(size) * mp.mpf(2) ** -10:
            return coefficients, max(size)
    raise ArithmeticError("the exchange did not come to rest")


class Fit:
    """What is known of a fitted polynomial: where it stands, its bound, and its distance from the best one."""

    def __init__(self, element, bits, bound, best, apart):
        self.element, self.bits, self.bound, self.best, self.apart = element, bits, bound, best, apart


# Coefficients lowest power first. bound: the relative error that the source states, as a power of two; best: the same
# of the minimax polynomial, rounded to a tenth; apart: how far each coefficient is from that of the minimax polynomial
# at most, as a power of two and a part of it (the higher ones carry little and hold each other's balance).
FITS = [
    Fit("float", SINGLE, -28.3, -28.4, [-24, -17, -12]),
    Fit("double", DOUBLE, -60.0, -62.7, [-54, -42, -34, -26, -20, -15, -10, -7]),
]


def fitted_in_source(fit):
    """The polynomial's coefficients as the source holds them, lowest power first."""
    body = re.search(rf"struct LnFormat<{fit.element}> \{{(.*?)\n\}};", source(LOGARITHM), re.S).group(1)
    found = re.findall(HEXADECIMAL, body[body.index("series("):])
    if fit.bits == DOUBLE:  # written from the second highest power down, the highest behind them
        found = found[-2::-1] + found[-1:]
    if len(found) != len(fit.apart):
        raise LookupError(f"{LOGARITHM}: {len(found)} coefficients, not {len(fit.apart)}")
    return [mp.mpf(float.fromhex(text)) for text in found]


def check_fits():
    with mp.workprec(200):
        grid = Grid(300)
        for fit in FITS:
            held = fitted_in_source(fit)
            worst = max(abs(e) for _, e in extremes(grid.z, grid.errors(held)))
            if worst >= mp.mpf(2) ** fit.bound:
                yield f"{LOGARITHM}: the {fit.element} series is off by 2^{mp.nstr(mp.log(worst, 2), 5)}"
            best, error = best_fit(grid, len(fit.apart))
            if abs(mp.log(error, 2) - fit.best) > 0.05:
                yield f"the best {fit.element} series is off by 2^{mp.nstr(mp.log(error, 2), 5)}, not 2^{fit.best}"
            for power, (value, nearest_best, apart) in enumerate(zip(held, best, fit.apart)):
                if value != nearest(value, fit.bits):
                    yield f"{LOGARITHM}: coefficient {power} of the {fit.element} series is not a {fit.element}"
                distance = abs(value / nearest_best - 1)
                if distance >= mp.mpf(2) ** apart:
                    yield (f"{LOGARITHM}: coefficient {power} of the {fit.element} series is 2^"
                           f"{mp.nstr(mp.log(distance, 2), 4)} of itself away from the best one")


# ---- Given: the polynomials of log-addition, f(d) = ln(1 + exp(d)), in the distance of d from the upper end of its
# interval, highest power first. They define the function; their errors are stated beside them and held here.

LOG_ADD = "vornsr/src/scoring/log_arithmetic/tables.h"
INTERVALS = {  # tables from the upper interval down, their borders, and their largest error
    "double": (["P1", "P2", "P3"], [0, "-3.5", "-9.0", "-23.0258509299405"], "3.2e-15"),
    "single": (["P1_F", "P2_F", "P3_F"], [0, "-2.55", "-6.8", "-15.319587707519531"], "4.6e-9"),
}


def check_given(steps=400):
    with mp.workprec(120):
        for kind, (tables, borders, bound) in INTERVALS.items():
            for table, upper, lower in zip(tables, borders, borders[1:]):
                values = [mp.mpf(float(text)) for text in re.findall(r"[-+.\de]+", initialiser(LOG_ADD, table))]
                if len(values) != (22 if kind == "double" else 11):
                    yield f"{LOG_ADD}: {table} has {len(values)} terms"
                upper, lower = mp.mpf(upper), mp.mpf(lower)
                worst = max((abs(mp.polyval(values, t) - mp.log1p(mp.exp(upper + t))), t)
                            for t in [(lower - upper) * (1 - mp.cos(mp.pi * i / steps)) / 2 for i in range(steps + 1)])
                if worst[0] > mp.mpf(bound):
                    yield f"{LOG_ADD}: {table} is off by {mp.nstr(worst[0], 3)} at {mp.nstr(upper + worst[1], 8)}"


# ---- Everything held against the sources.

# Numbers with so many digits behind the point, hexadecimal or decimal, have an origin; shorter ones explain themselves.
LONG = 5
# Decimal ones that are given: the ends of the singles, a tolerance, weights of accelerations and the least
# signal-to-noise ratio of a gain, as the functions that use them promise; and 1 / n and 1 / sqrt(n) in the few digits
# that the measures of periodicity promise.
GIVEN = {"3.402823466e+38", "3.4028235e38", "1.000001", "0.285714", "0.607143", "0.714286", "3.05176e-05",
         "0.333333", "0.166666", "0.142857", "0.111111", "0.090909", "0.083333", "0.0769231", "0.071429", "0.066666",
         "0.707107", "0.57735", "0.447214", "0.408248", "0.377965", "0.353553", "0.316228", "0.301511", "0.288675",
         "0.27735", "0.267261", "0.258199"}


def rows_of(text):
    return [tuple(float.fromhex(number) for number in re.findall("-?" + HEXADECIMAL, row))
            for row in re.findall(r"\{([^{}]*)\}", text)]


def check_tables():
    for name, make in MADE_TABLES.items():
        held = rows_of(initialiser(TABLES, name))
        made = list(make())
        if len(held) != len(made):
            yield f"{TABLES}: {name} has {len(held)} rows, not {len(made)}"
        for row, (has, wants) in enumerate(zip(held, made)):
            if has != wants:
                yield f"{TABLES}: {name}[{row}] is {', '.join(map(literal, has))}, not {', '.join(map(literal, wants))}"
    held = [int(word, 16) for word in re.findall(r"0x[0-9A-F]+", initialiser(TABLES, "twoOverPi"))]
    if held != two_over_pi():
        yield f"{TABLES}: twoOverPi holds other bits"


def check_integer_tables():
    for path, name, made in integer_tables():
        found = re.search(rf"\b{name}(?:\[[^]]+\])? = \{{?([-\d,\s]+)\}}?[;,]", source(path))
        held = [int(text) for text in re.findall(r"-?\d+", found.group(1))] if found else []
        if held != made:
            yield f"{path}: {name} is {held}, not {made}"


def check_constants():
    for path, name, value in made_constants():
        held = re.findall(rf"\b{name} = (-?{HEXADECIMAL})", source(path))
        if literal(value) not in held:
            yield f"{path}: {name} is {' and '.join(held) or 'not there'}, not {literal(value)}"
    half_pi = int(mp.floor(mp.ldexp(mp.pi / 2, 127)))
    for name, word in (("halfPiHigh", half_pi >> 64), ("halfPiLow", half_pi & (1 << 64) - 1)):
        if f"{name} = 0x{word:016X}" not in source("vorns/src/elementary/elementary.cpp"):
            yield f"vorns/src/elementary/elementary.cpp: {name} is not 0x{word:016X}"
    for path, text, value, digits in decimal_constants():
        if text not in source(path):
            yield f"{path} does not hold {text}"
        if float(text) != nearest(value) if digits == 0 else abs(mp.mpf(text) - value) > mp.mpf(10) ** -digits / 2:
            yield f"{path}: {text} is not {mp.nstr(value, 20)}"


def check_origins():
    """Every long number of the sources is one of those above, or a coefficient of a Taylor series."""
    decimals = GIVEN | {text for _, text, _, _ in decimal_constants()}
    known = taylor_coefficients() | {abs(value) for _, _, value in made_constants()}
    for fit in FITS:
        known |= {abs(float(value)) for value in fitted_in_source(fit)}
    seen = 0
    for layer in ("vorns/src", "vornsr/src"):
        for folder, _, files in os.walk(os.path.join(ROOT, layer)):
            for name in sorted(files):
                path = os.path.relpath(os.path.join(folder, name), ROOT)
                if path == TABLES or not name.endswith((".h", ".cpp")):
                    continue
                for text in re.findall(HEXADECIMAL, source(path)):
                    if len(text.split("p")[0]) - len("0x1.") >= LONG:
                        seen += 1
                        if float.fromhex(text) not in known:
                            yield f"{path}: {text} has no origin here"
                for text in re.findall(rf"\b\d+\.\d{{{LONG},}}(?:e[-+]?\d+)?", source(path)):
                    if path != LOG_ADD and text not in decimals:
                        yield f"{path}: {text} has no origin here"
    if seen < 40:
        yield f"only {seen} constants were found"


def differences():
    for check in (check_tables, check_integer_tables, check_constants, check_fits, check_given, check_origins):
        yield from check()


def print_all():
    for name, make in MADE_TABLES.items():
        print(f"{TABLES}: {name}")
        for row in make():
            print("    {" + ", ".join(map(literal, row)) + "},")
    print(f"{TABLES}: twoOverPi")
    for word in two_over_pi():
        print(f"    0x{word:016X},")
    for path, name, value in made_constants():
        print(f"{path}: {name} = {literal(value)}")
    for path, name, values in integer_tables():
        print(f"{path}: {name} = {', '.join(map(str, values))}")
    print("series:", " ".join(map(literal, sorted(taylor_coefficients()))))


if __name__ == "__main__":
    if sys.argv[1:] == ["--check"]:
        found = list(differences())
        print("\n".join(found) or "the sources hold what is made here")
        sys.exit(1 if found else 0)
    print_all()
