"""Runs spoken-digits on the shipped recordings and on broken ones, with the build of the library that the loader finds."""

import argparse
import base64
import cmath
import math
import operator
import os
import pathlib
import pty
import random
import re
import select
import shutil
import struct
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree
import zlib

sys.dont_write_bytecode = True  # the sources stay as they are
import support
from support import arguments, environment, processor, run, skip_if_unable, wav, without_times

WORDS = "zero one two three four five six seven eight nine".split()


def confusion(text):
    """The matrix as it is printed: ten rows of ten counts."""
    lines = text.splitlines()
    start = next(i for i, line in enumerate(lines) if line.startswith("confusion matrix"))
    assert lines[start + 1].split() == WORDS
    matrix = []
    for word, line in zip(WORDS, lines[start + 2:start + 12]):
        name, *counts = line.split()
        assert name == word
        matrix.append([0 if count == "." else int(count) for count in counts])
    return matrix


def trials(text):
    """The table of the arithmetics: name to right, known and least margin."""
    rows = re.findall(r"^  (float|scaled|low) +(\d+\.\d\d) % \((\d+) of (\d+)\), (-?\d+\.\d+)  vornsLogGaussMixture_", text,
                      re.M)
    for _, percent, right, known, _ in rows:
        assert percent == f"{100 * int(right) / int(known):.2f}", rows
    return {name: (int(right), int(known), float(margin)) for name, _, right, known, margin in rows}


def methods(text):
    """The table of the methods: name to right and known."""
    rows = re.findall(r"^  (mixtures|templates) +(\d+\.\d\d) % \((\d+) of (\d+)\)  vorns", text, re.M)
    for _, percent, right, known in rows:
        assert percent == f"{100 * int(right) / int(known):.2f}", rows
    return {name: (int(right), int(known)) for name, _, right, known in rows}


def shortlists(text):
    """The table of the shortlists: length, or 0 for none, to share in per cent, right, known and least margin."""
    rows = re.findall(r"^  (none|\d+) +(\d+\.\d\d) %  +(\d+\.\d\d) % \((\d+) of (\d+)\), (-?\d+\.\d+)  "
                      r"vornsLogGaussMixture_", text, re.M)
    for _, _, percent, right, known, _ in rows:
        assert percent == f"{100 * int(right) / int(known):.2f}", rows
    return {0 if length == "none" else int(length): (float(share), int(right), int(known), float(margin))
            for length, share, _, right, known, margin in rows}


def samples_of(path):
    data = path.read_bytes()
    return list(struct.unpack(f"<{(len(data) - 44) // 2}h", data[44:]))


def interpolated(samples, rate, reach=32):
    """The recording of 8000 samples a second at a higher rate: a sinc under a squared cosine."""
    common = math.gcd(rate, 8000)
    up, down = rate // common, 8000 // common
    rows = []
    for phase in range(up):
        distances = [phase / up - 1 - k for k in range(-reach, reach)]
        rows.append([(math.sin(math.pi * d) / (math.pi * d) if d else 1) * math.cos(math.pi * d / 2 / (reach + 1)) ** 2
                     for d in distances])
    padded = [0] * reach + samples + [0] * reach
    values = []
    for n in range(len(samples) * up // down):
        at, phase = divmod(n * down, up)
        values.append(sum(map(operator.mul, rows[phase], padded[at + 1:at + 1 + 2 * reach])))
    return [max(-32768, min(32767, round(value))) for value in values]


class Predicted:
    """Linear prediction of the frames of a recording, in plain arithmetic."""

    def __init__(self, samples):
        last, value, self.wave = samples[0], 0, []
        for sample in samples:  # the high pass as its header tells it
            value = self.saturated((value * 4014 >> 12) + self.saturated(sample - last))
            last = sample
            self.wave.append(value)
        self.frames = 1 + (len(samples) - 200) // 80
        self.window = [0.54 - 0.46 * math.cos(2 * math.pi * n / 199) for n in range(200)]

    @staticmethod
    def saturated(value):
        return max(-32768, min(32767, value))

    def is_silent(self, frame):
        return not any(self.wave[frame * 80:frame * 80 + 200])

    def weighted(self, frame):
        return list(map(operator.mul, self.wave[frame * 80:frame * 80 + 200], self.window))

    def filter(self, frame, order=10):
        """The error's filter, 1 in front, its reflections, and the energy of the error: Levinson's recursion."""
        x = self.weighted(frame)
        r = [sum(map(operator.mul, x, x[lag:])) for lag in range(order + 1)]
        a, error, reflections = [1.0], r[0], []
        for i in range(1, order + 1):
            k = sum(a[j] * r[i - j] for j in range(i)) / error
            mirrored = [0.0, *a[::-1]]
            a = [before - k * after for before, after in zip([*a, 0.0], mirrored)]
            error *= 1 - k * k
            reflections.append(k)
        return a, reflections, error

    @staticmethod
    def response(coefficients, hertz):
        return sum(c * cmath.exp(-2j * math.pi * hertz / 8000 * n) for n, c in enumerate(coefficients))

    @classmethod
    def lines(cls, a):
        """Where the filter's response, turned by half its length, is purely real or purely imaginary."""
        def turned(hertz):
            return cls.response(a, hertz) * cmath.exp(2j * math.pi * hertz / 8000 * len(a) / 2)

        found, step, before = [], 10, turned(0.01)
        for low in range(0, 4000, step):
            after = turned(low + step - 0.01)
            for part in ("real", "imag"):
                start, end = getattr(before, part), getattr(after, part)
                if start * end < 0:
                    found.append(low + step * start / (start - end))
            before = after
        return sorted(found)


class Folder(support.Folder):
    """A test with a folder of its own, and the model and results that all tests share."""

    @classmethod
    def setUpClass(cls):
        cls.shared = pathlib.Path(shared_folder.name)


class WholeRun(Folder):
    def test_the_build_under_test_is_the_one_that_is_loaded(self):
        self.assert_build_under_test_is_loaded()

    def test_at_least_95_percent_of_300_recordings_are_right(self):
        matrix = confusion(results[processor])
        files = [path.name for path in (arguments.data / "test").glob("*.wav")]
        self.assertEqual(len(files), 300)
        for digit in range(10):
            self.assertEqual(sum(matrix[digit]), sum(name.startswith(f"{digit}_") for name in files))
        right = sum(matrix[digit][digit] for digit in range(10))
        self.assertGreaterEqual(right, 285)
        self.assertIn(f"accuracy:   {right / 3:.2f} % ({right} of 300)", results[processor])
        self.assertIn("recordings: 300 recognised, 0 unusable", results[processor])
        self.assertEqual(results[processor].count("\nwrong: "), 300 - right)

    def test_both_methods_are_set_side_by_side(self):
        table = methods(results[processor])
        self.assertEqual(list(table), ["mixtures", "templates"])
        matrix = confusion(results[processor])
        self.assertEqual(table["mixtures"], (sum(matrix[digit][digit] for digit in range(10)), 300))
        right, known = table["templates"]
        self.assertEqual(known, 300)
        self.assertGreaterEqual(right, 280)
        self.assertEqual(results[processor].count("\nwrong by templates: "), 300 - right)
        self.assertIn("vornsDTW_L2_32f_D2, 60 templates of ", results[processor])  # six speakers, ten words
        for name in ("mixtures", "templates"):
            self.assertRegex(results[processor], rf"\nspeed: +{name} +\d+ frames per second scored")

    def test_speed_is_told(self):
        self.assertRegex(results[processor], r"speed: +\d+ frames per second")
        self.assertRegex(results[processor], r"speed: +real-time factor \d+\.\d+")

    @unittest.skipIf(processor == "m7", "the baseline is what the other builds are compared with")
    def test_model_and_results_are_those_of_the_baseline(self):
        self.assertEqual((self.shared / f"{processor}.model").read_bytes(), (self.shared / "m7.model").read_bytes())
        self.assertEqual(without_times(results[processor]).replace(processor, "m7"), without_times(results["m7"]))

    def test_a_second_training_gives_the_same_model(self):
        model = self.folder / "again.model"
        self.assertEqual(run("train", arguments.data / "train", "--model", model)[0], 0)
        self.assertEqual(model.read_bytes(), (self.shared / f"{processor}.model").read_bytes())

    def test_each_arithmetic_is_at_least_95_percent_right(self):
        table = trials(results[processor])
        self.assertEqual(list(table), ["float", "scaled", "low"])
        for name, (right, known, _) in table.items():
            self.assertEqual(known, 300, name)
            self.assertGreaterEqual(right, 285, name)
        matrix = confusion(results[processor])
        self.assertEqual(table["float"][0], sum(matrix[digit][digit] for digit in range(10)))

    def test_scores_of_16_bits_keep_their_unit(self):
        table = trials(results[processor])
        self.assertAlmostEqual(table["scaled"][2], table["float"][2], delta=0.02)
        self.assertAlmostEqual(table["low"][2], table["float"][2], delta=0.25)  # its scores are whole numbers

    def test_the_speed_of_each_arithmetic_is_told(self):
        for name in ("float", "scaled", "low"):
            self.assertRegex(results[processor], rf"\nspeed: +{name} +\d+ frames per second scored, \d+\.\d\d times float\n")

    def test_arithmetics_can_be_chosen(self):
        words = ["recognise", self.recording(), self.recording("4_nicolas_1.wav"), "--model",
                 self.shared / f"{processor}.model"]
        plain = without_times(run(*words)[1])
        self.assertEqual(trials(plain), {})
        for choice, names in (("float", []), ("scaled", ["float", "scaled"]), ("low", ["float", "low"]),
                              ("all", ["float", "scaled", "low"])):
            with self.subTest(choice):
                status, out, _ = run(*words, "--arithmetic", choice)
                self.assertEqual(status, 0)
                self.assertTrue(without_times(out).startswith(plain))
                self.assertEqual(list(trials(out)), names)
                self.assertEqual(without_times(out) == plain, not names)

    def test_recordings_named_by_themselves_get_a_line_each(self):
        paths = [self.recording("3_lucas_2.wav"), self.recording("9_theo_4.wav")]
        alone = self.folder / "noname.wav"
        shutil.copy(self.recording("6_jackson_1.wav"), alone)
        status, out, _ = run("recognise", *paths, alone, "--model", self.shared / f"{processor}.model")
        self.assertEqual(status, 0)
        for path, word in zip([*paths, alone], ["three", "nine", "six"]):
            self.assertIn(f"{path}: {word}, ahead of ", out)
        self.assertIn("(2 of 2)", out)  # the third has no name to compare with

    def test_demo_does_it_all(self):
        data = self.folder / "data"
        shutil.copytree(arguments.data / "train", data / "train")
        (data / "test").mkdir()
        shutil.copy(self.recording(), data / "test")
        status, out, _ = run("demo", data, "--output", self.folder / "out")
        self.assertEqual(status, 0)
        self.assertIn("(1 of 1)", out)
        self.assertEqual(list(trials(out)), ["float", "scaled", "low"])
        self.assertEqual((self.folder / "out/digits.model").read_bytes(),
                         (self.shared / f"{processor}.model").read_bytes())
        self.assertEqual((self.folder / "out/large.model").read_bytes(),
                         (self.shared / f"{processor}.large").read_bytes())
        self.assertEqual(list(methods(out)), ["mixtures", "templates"])
        self.assertEqual(len(shortlists(out)), 8)
        self.assertTrue((self.folder / "out/report.html").exists())


class Templates(Folder):
    def match(self, templates, *inputs):
        return run("recognise", *inputs, "--method", "templates", "--templates", templates)

    def folder_of(self, name, **recordings):
        """A folder with one recording a word, and those of the arguments."""
        folder = self.folder / name
        folder.mkdir()
        for digit in range(10):
            shutil.copy(self.recording(f"{digit}_theo_1.wav"), folder)
        for target, source in recordings.items():
            shutil.copy(self.recording(f"{source}.wav"), folder / f"{target}.wav")
        return folder

    def test_templates_alone_need_no_model(self):
        files = sorted((arguments.data / "test").glob("*_[03].wav"))
        status, out, _ = self.match(arguments.data / "train", *files)
        self.assertEqual(status, 0)
        matrix = confusion(out)
        right = sum(matrix[digit][digit] for digit in range(10))
        self.assertGreaterEqual(right, len(files) * 9 // 10)
        self.assertIn(f"({right} of {len(files)})", out)
        self.assertEqual(out.count("\nwrong: "), len(files) - right)
        self.assertRegex(out, r"\nspeed: +\d+ frames per second")
        self.assertIn("templates:  60 recordings of ", out)

    def test_a_template_is_nothing_away_from_itself(self):
        folder = self.folder_of("own")
        status, out, _ = self.match(folder, *sorted(folder.iterdir()))
        self.assertEqual(status, 0)
        for digit in range(10):
            path = folder / f"{digit}_theo_1.wav"
            self.assertIn(f"{path}: {WORDS[digit]}, like {path.name}, 0.000 a frame away; ", out)
        self.assertIn("(10 of 10)", out)

    def test_the_most_central_recording_is_the_template(self):
        # Two recordings of a speaker agree, and the third, though it comes first, is of another word.
        folder = self.folder_of("three", **{"4_anna_0": "7_lucas_0", "4_anna_1": "4_lucas_1", "4_anna_2": "4_lucas_1"})
        status, out, _ = self.match(folder, self.recording("4_lucas_1.wav"), self.recording("7_lucas_0.wav"))
        self.assertEqual(status, 0)
        self.assertIn(": four, like 4_anna_1.wav, 0.000 a frame away", out)
        self.assertNotIn("4_anna_0", out)
        self.assertIn("templates:  11 recordings of ", out)

    def test_the_order_of_two_recordings_does_not_count(self):
        # Both folders hold nine copies of each, so that features have the same spread.
        pair, distances = ("7_lucas_0", "7_jackson_3"), []
        for template, spoken in (pair, pair[::-1]):
            folder = self.folder / template
            folder.mkdir()
            for i in range(9):
                shutil.copy(self.recording(f"{spoken}.wav"), folder / f"0_anna_{i}.wav")
                shutil.copy(self.recording(f"{template}.wav"), folder / f"{i + 1}_anna_0.wav")
            out = self.match(folder, self.recording(f"{spoken}.wav"))[1]
            distances.append(re.search(r": zero, like 0_anna_0.wav, 0.000 a frame away; one is ([\d.]+) away", out)[1])
        self.assertGreater(float(distances[0]), 1)
        self.assertEqual(distances[0], distances[1])

    def test_a_recording_of_another_length_is_like_none(self):
        path = self.folder / "7_long_0.wav"
        path.write_bytes(wav(samples=5 * 8000))
        folder = self.folder_of("short")
        out = self.match(folder, path)[1]
        self.assertIn(f"{path}: like no template\n", out)
        self.assertIn("(0 of 1)", out)
        self.assertIn(f"wrong: {path}: spoken seven, recognised like no template", out)
        page = self.folder / "report.html"
        status, out, _ = run("recognise", path, "--model", self.shared / f"{processor}.model", "--method", "both",
                             "--templates", folder, "--report", page)
        self.assertEqual(status, 0)
        self.assertEqual(methods(out)["templates"], (0, 1))
        self.assertIn("7_long_0 taken for none", page.read_text(encoding="utf-8"))

    def test_broken_templates_are_named_and_the_others_still_used(self):
        folder = self.folder_of("broken")
        (folder / "3_anna_0.wav").write_bytes(wav(samples=599))
        shutil.copy(self.recording(), folder / "seven.wav")
        status, out, err = self.match(folder, self.recording("3_theo_1.wav"))
        self.assertEqual(status, 1)
        self.assertIn(f"{folder / '3_anna_0.wav'}: is too short: 599 samples", err)
        self.assertIn(f"{folder / 'seven.wav'}: has a name that does not begin with a digit", err)
        self.assertIn(": three, like 3_theo_1.wav, 0.000 a frame away", out)

    def test_folders_that_are_no_use(self):
        missing, empty, lacking = self.folder / "missing", self.folder / "empty", self.folder_of("lacking")
        empty.mkdir()
        (lacking / "9_theo_1.wav").unlink()
        for folder, message in ((missing, "there is no such directory"), (empty, "holds no recordings"),
                                (lacking, "has no usable template of the word nine")):
            status, out, err = self.match(folder, self.recording())
            self.assertEqual((status, out), (1, ""))
            self.assertIn(f"{folder}: {message}", err)

    def test_the_picture_is_what_the_library_computes(self):
        # The program refuses to draw a road of another cost than the library's.
        for name in ("5_lucas_1", "0_george_3", "6_nicolas_1"):
            page = self.folder / "report.html"
            status, _, err = run("recognise", self.recording(f"{name}.wav"), "--model",
                                 self.shared / f"{processor}.model", "--method", "both", "--templates",
                                 arguments.data / "train", "--report", page)
            self.assertEqual((status, "picture of time warping" in err), (0, False))
            figure, = re.findall(r"<svg[^>]*aria-label='Time warping.*?</svg>", page.read_text(encoding="utf-8"), re.S)
            self.assertEqual(figure.count("class='road over'"), 2)
            self.assertEqual(figure.count("class='edge'"), 4)


class Selection(Folder):
    """The shortlists of a model of 1280 Gaussians, on one recording a speaker and word."""

    def test_a_part_of_the_gaussians_is_enough(self):
        table = shortlists(selected[processor])
        self.assertEqual(list(table), [0, 640, 320, 160, 80, 40, 20, 10])
        self.assertEqual(table[0][0], 100)
        for share, right, known, _ in table.values():
            self.assertEqual(known, 60)
            self.assertTrue(0 < share <= 100)
            self.assertGreaterEqual(right, 50)
        shares = [row[0] for row in table.values()]
        self.assertEqual(shares, sorted(shares, reverse=True))
        for length in (640, 320, 160, 80):
            self.assertLess(table[length][0], 4 * 100 * length / 1280)  # four lists a frame, which overlap
            self.assertGreaterEqual(table[length][1], 57)
        self.assertLess(table[160][0], 33)

    def test_selected_scores_keep_their_unit(self):
        table = shortlists(selected[processor])
        self.assertAlmostEqual(table[640][3], table[0][3], delta=0.1)

    def test_the_large_model_is_told(self):
        self.assertIn("shortlists of 256 codewords, in a model of 1280 Gaussians", selected[processor])
        for length in ("none", "640", "10"):
            self.assertRegex(selected[processor], rf"\nspeed: +{length} +\d+ frames per second scored, \d+\.\d\d times")

    @unittest.skipIf(processor == "m7", "the baseline is what the other builds are compared with")
    def test_model_and_results_are_those_of_the_baseline(self):
        self.assertEqual((self.shared / f"{processor}.large").read_bytes(), (self.shared / "m7.large").read_bytes())
        self.assertEqual(without_times(selected[processor]).replace(processor, "m7"), without_times(selected["m7"]))

    def test_the_page_has_the_table_and_the_curves(self):
        page = (self.shared / f"{processor}.selection.html").read_text(encoding="utf-8")
        rows = re.findall(r"<tr><td class='number'>([\w ]+)</td><td class='number'>([\d.]+) %</td>"
                          r"<td class='number'>(\d+) of (\d+)</td>", page)
        table = shortlists(selected[processor])
        self.assertEqual([0 if row[0] == "no lists" else int(row[0]) for row in rows], list(table))
        for (_, share, right, known), row in zip(rows, table.values()):
            self.assertEqual((int(right), int(known)), row[1:3])
            self.assertAlmostEqual(float(share), row[0], delta=0.0551)
        figure, = re.findall(r"<svg[^>]*aria-label='Accuracy and speed.*?</svg>", page, re.S)
        xml.etree.ElementTree.fromstring(figure)
        places = [float(x) for x in re.findall(r"<rect x='([\d.]+)'[^>]*class='dot'", figure)]
        self.assertEqual(len(places), 2 * len(table))
        self.assertEqual(places[:len(table)], sorted(places[:len(table)], reverse=True))
        self.assertEqual(places[:len(table)], places[len(table):])

    def test_without_a_large_model_the_model_itself_is_selected_from(self):
        status, out, _ = run("recognise", self.recording(), self.recording("2_theo_0.wav"), "--model",
                             self.shared / f"{processor}.model", "--shortlists", arguments.data / "test")
        self.assertEqual(status, 0)
        table = shortlists(out)
        self.assertEqual(list(table), [0, 240, 120, 60, 30, 15, 7, 3])
        self.assertEqual([row[1:3] for row in table.values()][:4], [(2, 2)] * 4)

    def test_codewords_without_frames_stay(self):
        folder = self.folder / "silence"
        folder.mkdir()
        (folder / "0_nobody_0.wav").write_bytes(wav()[:44] + bytes(8000))
        status, out, _ = run("recognise", self.recording(), "--model", self.shared / f"{processor}.model",
                             "--shortlists", folder)
        self.assertEqual(status, 0)
        self.assertNotIn("nan", out)
        self.assertEqual(len(shortlists(out)), 8)

    def test_broken_recordings_are_named_and_folders_without_use_refused(self):
        folder, useless, missing = self.folder / "some", self.folder / "useless", self.folder / "missing"
        for each in (folder, useless):
            each.mkdir()
            (each / "3_anna_0.wav").write_bytes(wav(samples=599))
        shutil.copy(self.recording(), folder)
        words = ["recognise", self.recording(), "--model", self.shared / f"{processor}.model", "--shortlists"]
        status, out, err = run(*words, folder)
        self.assertEqual(status, 1)
        self.assertIn(f"{folder / '3_anna_0.wav'}: is too short: 599 samples", err)
        self.assertEqual(len(shortlists(out)), 8)
        for each, message in ((useless, "has no usable recording to make a codebook of"),
                              (missing, "there is no such directory")):
            status, out, err = run(*words, each)
            self.assertEqual((status, out), (1, ""))
            self.assertIn(f"{each}: {message}", err)
        status, _, err = run(*words, folder, "--large", self.recording())
        self.assertEqual(status, 1)
        self.assertIn(f"{self.recording()}: is not a model file of spoken digits", err)


class Report(Folder):
    def setUp(self):
        super().setUp()
        self.page = (self.shared / f"{processor}.html").read_text(encoding="utf-8")

    def test_the_page_stands_alone(self):
        for match in re.findall(r"(?:src|href)='([^']{0,12})", self.page):
            self.assertTrue(match.startswith("data:"), match)
        self.assertNotRegex(self.page, r"<script|https?://|@import|url\(")

    def test_every_picture_is_well_formed(self):
        drawings = re.findall(r"<svg.*?</svg>", self.page, re.S)
        # The matrix, the plane, the warping; three for each of two recordings; three of linear prediction.
        self.assertEqual(len(drawings), 3 + 2 * 3 + 3)
        for drawing in drawings:
            xml.etree.ElementTree.fromstring(drawing)
        pictures = re.findall(r"data:image/png;base64,([A-Za-z0-9+/=]+)", self.page)
        # Five matrices with colour bars, twice; two of warping, with one bar; two of linear prediction, with bars.
        self.assertEqual(len(pictures), 2 * 5 * 2 + 3 + 2 * 2)
        for picture in pictures:
            self.check_png(base64.b64decode(picture, validate=True))

    def check_png(self, data):
        self.assertEqual(data[:8], b"\x89PNG\r\n\x1a\n")
        at, chunks = 8, {}
        while at < len(data):
            length, = struct.unpack(">I", data[at:at + 4])
            kind, body = data[at + 4:at + 8], data[at + 8:at + 8 + length]
            self.assertEqual(struct.unpack(">I", data[at + 8 + length:at + 12 + length])[0], zlib.crc32(kind + body))
            chunks[kind] = body
            at += 12 + length
        width, height = struct.unpack(">II", chunks[b"IHDR"][:8])
        self.assertEqual(len(zlib.decompress(chunks[b"IDAT"])), height * (1 + 3 * width))
        self.assertIn(b"IEND", chunks)

    def test_the_page_tells_what_was_found(self):
        right = sum(confusion(results[processor])[digit][digit] for digit in range(10))
        self.assertIn(f"{right} of 300 recordings right", self.page)
        for title in ("Wave", "Spectrogram", "Filter bank", "Cepstra", "Deltas", "Accelerations", "Score of each frame",
                      "Confusion matrix", "All ten words"):
            self.assertIn(title, self.page)

    def test_the_plane_shows_every_recording_and_sets_digits_apart(self):
        plane, = re.findall(r"<svg[^>]*aria-label='Principal components.*?</svg>", self.page, re.S)
        second, first = (float(share) for share in re.findall(r"component: (\d+) %", plane))
        self.assertGreaterEqual(first, second)
        self.assertLessEqual(first + second, 100)
        places = re.findall(r"<text x='([\d.]+)' y='([\d.]+)' class='digit d(\d)'", plane)
        counts = [len(list((arguments.data / "test").glob(f"{digit}_*.wav"))) for digit in range(10)]
        self.assertEqual([sum(place[2] == str(digit) for place in places) for digit in range(10)], counts)
        # By chance the nearest neighbour is of the same digit for one in ten.
        points = [(float(x), float(y), digit) for x, y, digit in places]
        same = sum(min((point for point in points if point is not at),
                       key=lambda point: (point[0] - at[0]) ** 2 + (point[1] - at[1]) ** 2)[2] == at[2]
                   for at in points)
        self.assertGreater(same, len(points) // 4)

    def test_the_page_compares_the_arithmetics(self):
        rows = re.findall(r"<tr><td>(\w+)</td><td><code>vornsLogGaussMixture_\w+</code></td>"
                          r"<td class='number'>(\d+) of (\d+)</td><td class='number'>([^<]+)</td>", self.page)
        table = trials(results[processor])
        self.assertEqual([row[0] for row in rows], list(table))
        for name, right, known, margin in rows:
            self.assertEqual((int(right), int(known)), table[name][:2])
            self.assertAlmostEqual(float(margin.replace("\u2212", "-")), table[name][2], delta=0.0051)

    def test_the_page_compares_the_methods(self):
        rows = re.findall(r"<tr><td>(mixtures|templates)</td><td><code>vorns\w+</code></td><td class='number'>[^<]+</td>"
                          r"<td class='number'>(\d+) of (\d+)</td>", self.page)
        self.assertEqual({name: (int(right), int(known)) for name, right, known in rows}, methods(results[processor]))

    def test_the_recording_of_the_pictures_can_be_chosen(self):
        page = self.folder / "report.html"
        words = ["recognise", self.recording(), self.recording("1_theo_0.wav"), "--model",
                 self.shared / f"{processor}.model", "--report", page, "--show"]
        self.assertEqual(run(*words, "1_theo_0.wav")[0], 0)
        self.assertIn("The chosen recording</h2><p class='lead'><code>1_theo_0.wav<", page.read_text(encoding="utf-8"))
        status, _, err = run(*words, "2_theo_0.wav")
        self.assertEqual(status, 1)
        self.assertIn("2_theo_0.wav: is not among the recognised recordings", err)

    def test_a_page_that_cannot_be_written(self):
        page = self.folder / "no/such/report.html"
        status, out, err = run("recognise", self.recording(), "--model", self.shared / f"{processor}.model", "--report",
                               page)
        self.assertEqual(status, 1)
        self.assertIn(f"{page}: cannot be written", err)
        self.assertIn("accuracy:", out)


class Prediction(Folder):
    """The section on linear prediction."""

    FIGURES = ("Spectrum of one frame", "Line spectral frequencies", "Log area ratios")

    def section_of(self, page):
        text = page.read_text(encoding="utf-8")
        section, = re.findall(r"<section><h2>Linear prediction</h2>.*?</section>", text, re.S)
        for figure in re.findall(r"<svg.*?</svg>", section, re.S):
            xml.etree.ElementTree.fromstring(figure)
            self.assertNotRegex(figure, r"[=, '](-?nan|-?inf)[,' ]")
        return section

    def section(self, path):
        page = self.folder / "report.html"
        status, out, err = run("recognise", path, "--model", self.shared / f"{processor}.model", "--report", page)
        self.assertEqual(status, 0, out + err)
        return self.section_of(page)

    def section_of_samples(self, samples):
        path = self.folder / "0_nobody_0.wav"
        path.write_bytes(wav(samples=samples))
        return self.section(path)

    def figure(self, section, title):
        figure, = re.findall(rf"<svg[^>]*aria-label='{title}.*?</svg>", section, re.S)
        return figure

    def gaps(self, section):
        """What the captions of lines and ratios tell: gaps, frames, those without a filter, and the rest."""
        told = re.findall(r"Gaps: (\d+) of (\d+) frames \((\d+) without a filter, as in silence; (\d+) ", section)
        self.assertEqual(len(told), 2)
        counts = [tuple(map(int, each)) for each in told]
        for gaps, _, without, lacking in counts:
            self.assertEqual(gaps, without + lacking)
        return counts

    def upward(self, figure):
        """The scale of the axis on the left: a function from places to values."""
        labels = re.findall(r"<text x='76.0' y='([\d.]+)' class='label' text-anchor='end'>([^<]+)<", figure)
        ticks = [(float(y) - 4, float(value.replace("\u2212", "-"))) for y, value in labels]
        (y1, value1), (y2, value2) = ticks[0], ticks[-1]
        return lambda y: value1 + (y - y1) / (y2 - y1) * (value2 - value1)

    def curves(self, figure, style):
        return [[tuple(map(float, point.split(","))) for point in points.split()]
                for points in re.findall(rf"<polyline class='{style}' points='([^']*)'", figure)]

    def tracks(self, figure):
        """The lines' frequencies in each frame that has them."""
        value = self.upward(figure)
        frames = {}
        for style in ("track odd-line", "track even-line"):
            for curve in self.curves(figure, style):
                for x, y in curve:
                    frames.setdefault(x, []).append(1000 * value(y))
        return [sorted(frames[x]) for x in sorted(frames)]

    def test_it_is_about_the_recording_that_is_shown(self):
        page = self.folder / "report.html"
        paths = [self.recording(f"{name}.wav") for name in ("7_theo_0", "1_theo_0", "3_lucas_2")]
        status, _, _ = run("recognise", *paths, "--model", self.shared / f"{processor}.model", "--report", page,
                           "--show", "3_lucas_2")
        self.assertEqual(status, 0)
        section = self.section_of(page)
        self.assertIn("<code>3_lucas_2.wav</code>", section)
        for title in self.FIGURES:
            self.figure(section, title)
        for function in ("LinearPrediction_Auto_32f", "LPToSpectrum_32f", "LPToLSP_32f", "LPToReflection_32f",
                         "ReflectionToLAR_32f"):
            self.assertIn(f"<code>vorns{function}</code>", section)

    @unittest.skipIf(processor == "m7", "the baseline is what the other builds are compared with")
    def test_it_is_that_of_the_baseline(self):
        self.assertEqual(self.section_of(self.shared / f"{processor}.html"), self.section_of(self.shared / "m7.html"))

    def test_the_envelope_is_that_of_the_loudest_frame(self):
        for name in ("6_jackson_1", "0_george_3", "9_theo_4"):
            path = self.recording(f"{name}.wav")
            section, wanted = self.section(path), Predicted(samples_of(path))
            figure = self.figure(section, "Spectrum of one frame")
            told, = re.findall(r"The loudest voiced frame, the 25 ms around ([\d.]+) ms", section)
            frame = round((float(told) - 12.5) / 10)
            loudness = [sum(x * x for x in wanted.weighted(t)) for t in range(wanted.frames)]
            self.assertEqual(frame, loudness.index(max(loudness)))  # in these words it is a vowel
            self.assertIn(f">Frame at {told} ms<", figure)

            a, _, error = wanted.filter(frame)
            value = self.upward(figure)
            (thin,), (thick,) = self.curves(figure, "curve thin"), self.curves(figure, "curve first")
            self.assertEqual((len(thin), len(thick)), (129, 256))
            least = min(value(y) for _, y in thin + thick)
            weighted = wanted.weighted(frame)
            spectrum = [20 * math.log10(abs(wanted.response(weighted, 31.25 * i))) for i in range(128)]
            for i in range(128):
                envelope = 20 * math.log10(math.sqrt(error) / abs(wanted.response(a, 31.25 * i)))
                self.assertEqual(thin[i][0], thick[2 * i][0])
                if spectrum[i] > max(spectrum) - 40 and value(thin[i][1]) > least + 1:
                    above = value(thick[2 * i][1]) - value(thin[i][1])
                    self.assertAlmostEqual(above, envelope - spectrum[i], delta=0.15)

            lines = [float(x) for x in re.findall(r"<line x1='([\d.]+)'[^>]*class='spectral-line'", figure)]
            self.assertEqual(len(lines), 10)
            for x, hertz in zip(lines, wanted.lines(a)):
                self.assertAlmostEqual((x - thin[0][0]) / (thin[-1][0] - thin[0][0]) * 4000, hertz, delta=5)

    def test_the_tracks_are_the_lines_of_each_frame(self):
        path = self.recording("3_lucas_2.wav")
        section, wanted = self.section(path), Predicted(samples_of(path))
        tracks = self.tracks(self.figure(section, "Line spectral frequencies"))
        self.assertEqual(len(tracks), wanted.frames)
        self.assertEqual({len(lines) for lines in tracks}, {10})
        off = [abs(line - hertz) for frame, lines in enumerate(tracks)
               for line, hertz in zip(lines, wanted.lines(wanted.filter(frame)[0]))]
        self.assertLess(sum(off) / len(off), 1)
        self.assertLess(max(off), 20)  # in single precision, where a frame's loud and soft frequencies are far apart
        self.assertEqual(self.gaps(section), [(0, wanted.frames, 0, 0)] * 2)

    def test_colours_show_the_log_area_ratios(self):
        path = self.recording("6_jackson_1.wav")
        figure = self.figure(self.section(path), "Log area ratios")
        wanted = Predicted(samples_of(path))
        picture = re.findall(r"data:image/png;base64,([A-Za-z0-9+/=]+)", figure)[0]
        data = base64.b64decode(picture)
        width, height = struct.unpack(">II", data[16:24])
        self.assertEqual((width, height), (wanted.frames, 10))
        rows = zlib.decompress(data[41:])
        blue = red = 0
        for ratio in range(10):
            for frame in range(width):
                k = wanted.filter(frame)[1][ratio]
                area = math.log((1 - k) / (1 + k))
                at = (height - 1 - ratio) * (1 + 3 * width) + 1 + 3 * frame
                balance = rows[at] - rows[at + 2]  # red less blue
                if abs(area) > 0.3:
                    self.assertEqual(balance > 0, area > 0, (ratio, frame, area))
                    blue += area < 0
                    red += area > 0
        self.assertGreater(min(blue, red), 50)

    def test_silence_leaves_gaps(self):
        speech = samples_of(self.recording("6_nicolas_1.wav"))
        samples = [0] * 2000 + speech[:1500] + [0] * 1200 + speech[1500:] + [0] * 2000
        wanted = Predicted(samples)
        silent = [frame for frame in range(wanted.frames) if wanted.is_silent(frame)]
        self.assertEqual(silent[:23], list(range(23)))  # those that end before the speech begins
        self.assertNotIn(23, silent)
        section = self.section_of_samples(samples)
        self.assertEqual(self.gaps(section), [(len(silent), wanted.frames, len(silent), 0)] * 2)
        figure = self.figure(section, "Line spectral frequencies")
        runs = sum(t in silent and t + 1 not in silent for t in range(wanted.frames - 1))
        self.assertGreaterEqual(runs, 2)
        self.assertEqual(len(self.curves(figure, "track odd-line")), 5 * runs)
        self.assertEqual(len(self.tracks(figure)), wanted.frames - len(silent))
        boxes = re.findall(r"class='gap'[^>]*><title>no values: (\d+) of the frames<",
                           self.figure(section, "Log area ratios"))
        self.assertEqual(sum(map(int, boxes)), len(silent))

    def test_a_recording_of_silence_alone(self):
        for sample in (0, 32767):
            section = self.section_of_samples([sample] * 4000)
            self.assertEqual(self.gaps(section), [(48, 48, 48, 0)] * 2)
            self.assertIn("There is no envelope to show", section)
            self.assertNotIn("<polyline", section)
            self.assertNotIn("Spectrum of one frame", section)

    def test_lines_too_close_together_leave_gaps(self):
        # A tone near half the rate, where frequencies are far apart on the grid of cosines.
        chance, parts = random.Random(1), ((10000, 3940), (1000, 181), (500, 216))
        samples = [round(sum(size * math.sin(2 * math.pi * hertz * i / 8000) for size, hertz in parts) +
                         chance.uniform(-1, 1)) for i in range(16000)]
        section = self.section_of_samples(samples)
        (gaps, frames, _, lacking), ratios = self.gaps(section)
        self.assertGreater(lacking, 0)
        self.assertLess(ratios[0], gaps)
        tracks = self.tracks(self.figure(section, "Line spectral frequencies"))
        self.assertEqual({len(lines) for lines in tracks}, {10})
        self.assertEqual(len(tracks), frames - gaps)

    def test_noise_has_no_voice(self):
        chance = random.Random(2)
        section = self.section_of_samples([chance.randrange(-3000, 3001) for _ in range(4000)])
        self.assertIn("The loudest frame, since none is voiced, the 25 ms around", section)
        self.assertEqual(self.gaps(section), [(0, 48, 0, 0)] * 2)


class OtherRates(Folder):
    """Recordings that have more samples a second than the models."""

    NAMES = ("0_george_3", "3_lucas_2", "6_jackson_1", "7_theo_0", "8_yweweler_1")

    def test_the_digit_stays_the_same(self):
        words = ["recognise", "--model", self.shared / f"{processor}.model"]
        for rate in (11025, 16000, 22050, 32000, 44100, 48000):
            for name in self.NAMES if rate in (16000, 44100) else self.NAMES[:1]:
                with self.subTest(rate=rate, name=name):
                    plain = self.recording(f"{name}.wav")
                    path = self.folder / f"{name}.wav"
                    path.write_bytes(wav(samples=interpolated(samples_of(plain), rate), rate=rate))
                    status, out, err = run(*words, path)
                    self.assertEqual(status, 0, err)
                    self.assertIn(f"{path}: {WORDS[int(name[0])]}, ahead of ", out)
                    self.assertIn("(1 of 1)", out)
                    frames = r"recordings: 1 recognised, 0 unusable, (\d+) frames"
                    self.assertAlmostEqual(int(re.search(frames, out)[1]),
                                           int(re.search(frames, run(*words, plain)[1])[1]), delta=1)

    def test_frequencies_stay_where_they_are(self):
        # A tone and its harmonic keep their places in the spectrogram, and one above 4000 Hz does not fold back.
        for rate in (16000, 44100):
            with self.subTest(rate):
                path = self.folder / "tones.wav"
                path.write_bytes(wav(rate=rate, samples=[
                    round(sum(6000 * math.sin(2 * math.pi * hertz * i / rate) for hertz in (1000, 3000, 5500)))
                    for i in range(rate // 2)]))
                page = self.folder / "report.html"
                status, _, err = run("recognise", path, "--model", self.shared / f"{processor}.model", "--report", page)
                self.assertEqual(status, 0, err)
                curve, = re.findall(r"<polyline class='curve thin' points='([^']*)'", page.read_text(encoding="utf-8"))
                heights = [-float(point.split(",")[1]) for point in curve.split()]
                # The tones begin at once, which the high pass takes for an offset: that is below 250 Hz.
                loud = [i for i in range(8, 129) if heights[i] > max(heights) - 60]  # a fifth of the picture's height
                self.assertEqual({round(i / 32) for i in loud}, {1, 3})
                for i in loud:
                    self.assertAlmostEqual(31.25 * i, 1000 * round(i / 32), delta=100)

    def test_training_takes_them(self):
        folder = self.folder / "train"
        folder.mkdir()
        for digit in range(10):
            for index in (5, 6):
                name = f"{digit}_theo_{index}.wav"
                plain = samples_of(arguments.data / "train" / name)
                (folder / name).write_bytes(wav(samples=interpolated(plain, 16000), rate=16000))
        model = self.folder / "digits.model"
        status, out, err = run("train", folder, "--model", model)
        self.assertEqual(status, 0, err)
        self.assertIn("recordings: 20 used, 0 unusable", out)
        self.assertIn("(1 of 1)", run("recognise", arguments.data / "train/7_theo_5.wav", "--model", model)[1])

    def test_lengths_count_in_time(self):
        words = ["recognise", "--model", self.shared / f"{processor}.model"]
        path = self.folder / "length.wav"
        for rate, samples, message in ((16000, 1518, "is too short: 759 samples at 8 kHz, where a word needs 760"),
                                       (48000, 60 * 48000 + 1, "is longer than 60 seconds")):
            path.write_bytes(wav(samples=samples, rate=rate))
            status, _, err = run(*words, path)
            self.assertEqual(status, 1)
            self.assertIn(f"{path}: {message}", err)
        path.write_bytes(wav(samples=1519, rate=16000))
        status, out, _ = run(*words, path)
        self.assertEqual(status, 0)
        self.assertIn("recordings: 1 recognised, 0 unusable, 8 frames", out)


class Progress(Folder):
    def test_a_log_gets_whole_lines(self):
        _, out, err = run("recognise", arguments.data / "test", "--model", self.shared / f"{processor}.model")
        self.assertNotIn("\r", err)
        self.assertIn("recognising 100 %\n", err)
        self.assertLess(len(err.splitlines()), 10)
        self.assertNotIn("recognising", out)

    def test_a_terminal_gets_one_line_that_changes(self):
        try:
            parent, child = pty.openpty()
        except OSError as error:
            self.skipTest(f"this machine has no terminal to give: {error}")
        process = subprocess.Popen([arguments.program, "recognise", self.recording(), "--model",
                                    self.shared / f"{processor}.model"], env=environment(processor), stderr=child,
                                   stdout=subprocess.DEVNULL, stdin=subprocess.DEVNULL)
        shown = ""
        while not shown.endswith("\n") and select.select([parent], [], [], 60)[0]:
            shown += os.read(parent, 4096).decode()  # a terminal hands over what it has, not all that was written
        os.close(child)
        os.close(parent)
        self.assertEqual(process.wait(timeout=300), 0)
        self.assertEqual(shown, "\rrecognising   0 %\rrecognising 100 %\r\n")


class BrokenRecordings(Folder):
    CASES = {
        "empty.wav": (b"", "is empty"),
        "text.wav": (b"This is no recording at all, only a text with a wrong name.\n" * 20, "is not a readable WAV file"),
        "stereo.wav": (wav(channels=2), "has 2 channels"),
        "eight_bits.wav": (wav(bits=8), "does not hold 16-bit samples"),
        "float.wav": (wav(bits=32, format_tag=3), "does not hold 16-bit samples"),
        "odd_rate.wav": (wav(rate=12000), "has 12000 samples a second; it may have 8000, 11025, 16000, 22050, 32000, "
                         "44100 or 48000"),
        "narrow_band.wav": (wav(rate=6000), "has 6000 samples a second; it may have 8000, "),
        "wide_band.wav": (wav(rate=96000), "has 96000 samples a second; it may have 8000, "),
        "wide_stereo.wav": (wav(rate=44100, channels=2), "has 2 channels"),
        "wide_cut_short.wav": (wav(rate=44100)[:-3], "is cut short: 3 bytes of its samples are missing"),
        "header_only.wav": (wav(samples=0), "holds no samples"),
        "half_a_header.wav": (wav()[:30], "is not a readable WAV file"),
        "cut_short.wav": (wav()[:-1001], "is cut short: 1001 bytes of its samples are missing"),
        "cut_behind_the_header.wav": (wav()[:44], "is cut short: 8000 bytes of its samples are missing"),
        "long.wav": (wav(samples=60 * 8000 + 1), "is longer than 60 seconds"),
        "brief.wav": (wav(samples=759), "is too short: 759 samples at 8 kHz, where a word needs 760"),
    }

    def test_each_is_named_and_the_others_are_still_done(self):
        good = self.recording()
        paths = []
        for name, (content, _) in self.CASES.items():
            paths.append(self.folder / name)
            paths[-1].write_bytes(content)
        paths.insert(3, self.folder / "missing.wav")
        status, out, err = run("recognise", *paths, good, "--model", self.shared / f"{processor}.model")
        self.assertEqual(status, 1)
        for name, (_, message) in self.CASES.items():
            self.assertIn(f"spoken-digits: {self.folder / name}: {message}", err)
        self.assertIn(f"{self.folder / 'missing.wav'}: there is no such file", err)
        self.assertIn(f"{good}: seven, ahead of ", out)
        self.assertIn(f"recordings: 1 recognised, {len(self.CASES) + 1} unusable", out)

    def test_each_alone_fails(self):
        for name, (content, message) in self.CASES.items():
            with self.subTest(name):
                path = self.folder / name
                path.write_bytes(content)
                status, out, err = run("recognise", path, "--model", self.shared / f"{processor}.model", "--report",
                                       self.folder / "report.html", "--arithmetic", "all")
                self.assertEqual(status, 1)
                self.assertIn(f"{path}: {message}", err)
                self.assertIn("recordings: 0 recognised, 1 unusable, 0 frames", out)
                self.assertFalse((self.folder / "report.html").exists())

    def test_damaged_headers_never_end_the_run(self):
        plain = self.recording().read_bytes()
        chance = random.Random(7)
        for number in range(300):
            content = bytearray(plain)
            for _ in range(chance.randrange(1, 4)):
                content[chance.randrange(44)] = chance.choice((0, 1, 255, chance.randrange(256)))
            if number % 3 == 0:
                del content[chance.randrange(len(content)):]
            (self.folder / f"7_theo_{number}.wav").write_bytes(content)
        status, out, err = run("recognise", self.folder, "--model", self.shared / f"{processor}.model")
        self.assertEqual(status, 1)
        recognised, unusable = map(int, re.search(r"recordings: (\d+) recognised, (\d+) unusable", out).groups())
        self.assertEqual(recognised + unusable, 300)
        self.assertEqual(err.count(f"spoken-digits: {self.folder}/7_theo_"), unusable)

    def test_the_shortest_word_is_taken(self):
        path = self.folder / "brief.wav"
        path.write_bytes(wav(samples=760))
        status, out, _ = run("recognise", path, "--model", self.shared / f"{processor}.model")
        self.assertEqual(status, 0)
        self.assertIn("recordings: 1 recognised, 0 unusable, 8 frames", out)

    def test_silence_and_full_scale_are_taken(self):
        for name, sample in (("silence.wav", 0), ("top.wav", 32767), ("bottom.wav", -32768)):
            path = self.folder / name
            path.write_bytes(wav()[:44] + struct.pack("<h", sample) * 4000)
            status, out, err = run("recognise", path, "--model", self.shared / f"{processor}.model", "--report",
                                   self.folder / "report.html", "--arithmetic", "all")
            self.assertEqual((status, "nan" in out), (0, False), name + out + err)
            self.assertRegex(out, r"\n  low +vornsLogGaussMixture_LowScaled_16s32f_D2\n")  # no word is known: no accuracy

    def test_extra_chunks_are_no_harm(self):
        plain = self.recording().read_bytes()
        path = self.folder / "7_theo_0.wav"
        path.write_bytes(plain[:36] + b"junk" + struct.pack("<I", 5) + b"12345\0" + plain[36:] + b"LIST" +
                         struct.pack("<I", 4) + b"INFO")
        model = self.shared / f"{processor}.model"
        first = run("recognise", self.recording(), "--model", model)
        second = run("recognise", path, "--model", model)
        self.assertEqual(second[0], 0)
        self.assertEqual(without_times(first[1]).replace(str(self.recording()), ""),
                         without_times(second[1]).replace(str(path), ""))

    def test_big_endian_recordings_are_taken(self):
        plain = self.recording().read_bytes()
        numbers = struct.unpack("<IIHHIIHHI", plain[4:8] + plain[16:36] + plain[40:44])
        swapped = struct.pack(">IIHHIIHHI", *numbers)
        samples = bytearray(plain[44:])
        samples[0::2], samples[1::2] = plain[45::2], plain[44::2]
        path = self.folder / "7_theo_0.wav"
        whole = (b"RIFX" + swapped[:4] + b"WAVEfmt " + swapped[4:24] + b"data" + swapped[24:] + samples)
        model = self.shared / f"{processor}.model"
        path.write_bytes(whole)
        self.assertEqual(without_times(run("recognise", path, "--model", model)[1]).replace(str(path), ""),
                         without_times(run("recognise", self.recording(), "--model", model)[1])
                         .replace(str(self.recording()), ""))
        path.write_bytes(whole[:-2])
        status, _, err = run("recognise", path, "--model", model)
        self.assertEqual(status, 1)
        self.assertIn(f"{path}: is cut short: 2 bytes", err)

    @unittest.skipIf(os.geteuid() == 0, "the superuser may read everything")
    def test_a_file_without_permission(self):
        path = self.folder / "secret.wav"
        path.write_bytes(wav())
        path.chmod(0)
        status, _, err = run("recognise", path, "--model", self.shared / f"{processor}.model")
        self.assertEqual(status, 1)
        self.assertIn(f"{path}: cannot be opened for reading", err)

    def test_directories_without_recordings(self):
        nothing = self.folder / "nothing"
        nothing.mkdir()
        (nothing / "readme.txt").write_text("no recording")
        missing = self.folder / "missing"
        model = self.shared / f"{processor}.model"
        for command in (["recognise", nothing, "--model", model], ["train", nothing, "--model", self.folder / "m"]):
            status, _, err = run(*command)
            self.assertEqual(status, 1)
            self.assertIn(f"{nothing}: holds no recordings", err)
        status, _, err = run("train", missing, "--model", self.folder / "m")
        self.assertEqual(status, 1)
        self.assertIn(f"{missing}: there is no such directory", err)
        status, out, err = run("recognise", nothing, self.recording(), "--model", model)
        self.assertEqual(status, 1)
        self.assertIn(": seven, ahead of ", out)

    def test_training_goes_on_without_them(self):
        folder = self.folder / "train"
        folder.mkdir()
        for path in (arguments.data / "train").glob("*_1[01].wav"):
            shutil.copy(path, folder)
        (folder / "3_anna_0.wav").write_bytes(wav(channels=2))
        shutil.copy(self.recording(), folder / "seven.wav")
        model = self.folder / "digits.model"
        status, out, err = run("train", folder, "--model", model)
        self.assertEqual(status, 1)
        self.assertIn(f"{folder / '3_anna_0.wav'}: has 2 channels", err)
        self.assertIn(f"{folder / 'seven.wav'}: has a name that does not begin with a digit", err)
        self.assertIn("recordings: 120 used, 2 unusable", out)
        self.assertEqual(run("recognise", self.recording(), "--model", model)[0], 0)

    def test_more_gaussians_than_frames(self):
        folder = self.folder / "train"
        folder.mkdir()
        for path in (arguments.data / "train").glob("*_theo_1[01].wav"):
            shutil.copy(path, folder)
        model = self.folder / "digits.model"
        status, out, err = run("train", folder, "--model", model, "--gaussians", 64)
        self.assertEqual(status, 0, err)
        self.assertIn("recordings: 20 used, 0 unusable", out)
        self.assertIn("64 Gaussians a state", out)
        status, out, _ = run("recognise", folder, "--model", model)
        self.assertEqual(status, 0)
        self.assertIn("(20 of 20)", out)
        self.assertNotIn("nan", out)

    def test_frames_that_never_change_are_trained_at_the_floor(self):
        folder = self.folder / "train"
        folder.mkdir()
        for digit in range(10):
            for index in range(2):
                (folder / f"{digit}_nobody_{index}.wav").write_bytes(wav()[:44] + bytes(8000))
        model = self.folder / "digits.model"
        self.assertEqual(run("train", folder, "--model", model)[0], 0)
        status, out, _ = run("recognise", folder, "--model", model)
        self.assertEqual(status, 0)
        self.assertIn("(2 of 20)", out)  # all words are alike, and the first one wins
        self.assertNotIn("nan", out)

    def test_training_needs_every_word(self):
        folder = self.folder / "train"
        folder.mkdir()
        for path in (arguments.data / "train").glob("[0-8]_theo_*.wav"):
            shutil.copy(path, folder)
        shutil.copy(arguments.data / "train/9_theo_5.wav", folder)
        status, _, err = run("train", folder, "--model", self.folder / "m")
        self.assertEqual(status, 1)
        self.assertIn(f"{folder}: has too few usable recordings of the word nine", err)
        self.assertFalse((self.folder / "m").exists())


class BrokenModels(Folder):
    def refused(self, path, message):
        status, out, err = run("recognise", self.recording(), "--model", path)
        self.assertEqual((status, out), (1, ""))
        self.assertIn(f"spoken-digits: {path}: {message}", err)

    def test_each_is_refused(self):
        whole = (self.shared / f"{processor}.model").read_bytes()
        flipped = bytearray(whole)
        flipped[len(whole) // 2] ^= 1
        version = bytearray(whole)
        version[16] = 9
        shape = bytearray(whole)
        shape[24] = 38
        huge = bytearray(whole)
        huge[32:40] = b"\xff" * 8
        sizes = f"has {len(whole) - 1} bytes where its header asks for {len(whole)}"
        for name, content, message in (
                ("empty", b"", "is not a model file of spoken digits"),
                ("text", b"digits\n" * 100, "is not a model file of spoken digits"),
                ("recording", self.recording().read_bytes(), "is not a model file of spoken digits"),
                ("version", version, "is a model file of version 9; version 1 is needed"),
                ("shape", shape, "holds a model of another shape"),
                ("huge", huge, "holds a model of another shape"),
                ("short", whole[:-1], sizes),
                ("long", whole + b"0", f"has {len(whole) + 1} bytes where its header asks for {len(whole)}"),
                ("flipped", flipped, "is damaged: its checksum does not agree")):
            with self.subTest(name):
                path = self.folder / name
                path.write_bytes(content)
                self.refused(path, message)

    def test_missing_and_directory(self):
        self.refused(self.folder / "none", "there is no such model file")
        self.refused(self.folder, "is a directory")

    def test_a_model_that_cannot_be_written(self):
        path = self.folder / "no/such/digits.model"
        status, _, err = run("train", arguments.data / "train", "--model", path)
        self.assertEqual(status, 1)
        self.assertIn(f"{path}: cannot be written", err)


class CommandLine(Folder):
    def test_help(self):
        for word in ("--help", "-h", "help"):
            status, out, err = run(word)
            self.assertEqual((status, err), (0, ""))
            for command in ("train DIR", "recognise DIR-OR-WAV", "demo DATA"):
                self.assertIn(command, out)

    def test_wrong_use(self):
        for words, message in (
                ([], "a command is needed"), (["sing"], "there is no command sing"),
                (["train", "--model", "m"], "train needs one directory"), (["train", "a", "b", "--model", "m"], "train needs one"),
                (["train", "a"], "train needs --model"), (["train", "a", "--model"], "--model needs a value"),
                (["recognise", "--model", "m"], "recognise needs recordings"), (["recognise", "a"], "recognise needs --model"),
                (["recognise", "a", "--model", "m", "--show", "x"], "--show chooses a picture of --report"),
                (["recognise", "a", "--model", "m", "--arithmetic", "double"], "there is no arithmetic double"),
                (["train", "a", "--model", "m", "--arithmetic", "low"], "train takes no option but --model and --gaussians"),
                (["train", "a", "--model", "m", "--gaussians", "0"], "--gaussians takes a number from 1 to 64"),
                (["train", "a", "--model", "m", "--gaussians", "65"], "--gaussians takes a number from 1 to 64"),
                (["train", "a", "--model", "m", "--gaussians", "6x"], "--gaussians takes a number from 1 to 64"),
                (["recognise", "a", "--model", "m", "--gaussians", "6"], "recognise takes no option but --model, --report"),
                (["recognise", "a", "--model", "m", "--method", "guess"], "there is no method guess"),
                (["recognise", "a", "--method", "templates"], "recognition by templates needs --templates DIR"),
                (["recognise", "a", "--model", "m", "--method", "both"], "recognition by templates needs --templates DIR"),
                (["recognise", "a", "--method", "both", "--templates", "t"], "recognise needs --model"),
                (["recognise", "a", "--model", "m", "--templates", "t"], "--templates is of no use without --method"),
                (["recognise", "a", "--model", "m", "--method", "templates", "--templates", "t"],
                 "--model is of no use with --method templates"),
                (["recognise", "a", "--method", "templates", "--templates", "t", "--shortlists", "s"],
                 "--shortlists is of no use with --method templates"),
                (["recognise", "a", "--model", "m", "--large", "l"], "--large is the model of --shortlists DIR"),
                (["recognise", "a", "--modle", "m"], "there is no option --modle"), (["demo", "a"], "demo needs --output")):
            with self.subTest(words):
                status, out, err = run(*words)
                self.assertEqual((status, out), (2, ""))
                self.assertIn(f"spoken-digits: {message}", err)


results, selected = {}, {}
skip_if_unable()
with tempfile.TemporaryDirectory() as name:
    shared_folder = argparse.Namespace(name=name)
    for build in dict.fromkeys([processor, "m7"]):
        model, page = (pathlib.Path(name) / f"{build}.{kind}" for kind in ("model", "html"))
        status, out, err = run("train", arguments.data / "train", "--model", model, build=build)
        assert status == 0, (out, err)
        assert "recordings: 600 used, 0 unusable" in out, out
        status, results[build], err = run("recognise", arguments.data / "test", "--model", model, "--report", page,
                                          "--arithmetic", "all", "--method", "both", "--templates",
                                          arguments.data / "train", build=build)
        assert status == 0, (results[build], err)
        large = pathlib.Path(name) / f"{build}.large"
        status, out, err = run("train", arguments.data / "train", "--model", large, "--gaussians", 16, build=build)
        assert status == 0, (out, err)
        status, selected[build], err = run("recognise", *sorted((arguments.data / "test").glob("*_0.wav")), "--model",
                                           model, "--shortlists", arguments.data / "train", "--large", large,
                                           "--report", page.with_suffix(".selection.html"), build=build)
        assert status == 0, (selected[build], err)
    unittest.main(argv=[sys.argv[0]], verbosity=1)
