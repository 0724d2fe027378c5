"""Runs who-speaks on the shipped recordings and on broken ones, with the build of the library that the loader finds."""

import argparse
import pathlib
import re
import shutil
import struct
import sys
import tempfile
import unittest
import xml.etree.ElementTree

sys.dont_write_bytecode = True  # the sources stay as they are
import support
from support import arguments, processor, run, skip_if_unable, wav, without_times

SPEAKERS = "george jackson lucas nicolas theo yweweler".split()
SEARCHES = ["all words", "tree, widest first", "tree, fullest first", "all words, 16 bits", "tree, 16 bits"]
SHARE = r"(\d+\.\d\d) % \((\d+) of (\d+)\)"


def matrix(text, caption):
    """A table of speakers by speakers; a point stands for 0."""
    lines = text.splitlines()
    start = next(i for i, line in enumerate(lines) if line.startswith(caption))
    assert lines[start + 1].split() == SPEAKERS, lines[start + 1]
    rows = []
    for name, line in zip(SPEAKERS, lines[start + 2:start + 8]):
        first, *values = line.split()
        assert first == name
        rows.append([0 if value == "." else float(value) for value in values])
    return rows


def share(percent, right, known):
    assert percent == f"{100 * int(right) / int(known):.2f}", (percent, right, known)
    return int(right), int(known)


def searches(text):
    """Name to right and known, distortion, and misses in per cent."""
    rows = re.findall(rf"^  (\w[\w ,]+?) +{SHARE} +(\d+\.\d\d) +(\d+\.\d\d\d) %  vornsVQDist_", text, re.M)
    return {row[0]: (*share(*row[1:4]), float(row[4]), float(row[5])) for row in rows}


def sizes(text):
    """Codewords to distortions in training and in the test, right and known."""
    rows = re.findall(rf"^  +(\d+) +(\d+\.\d\d) +(\d+\.\d\d) +{SHARE}$", text, re.M)
    return {int(row[0]): (float(row[1]), float(row[2]), *share(*row[3:])) for row in rows}


def compression(text):
    """Bits a pair, or 0, to bits a frame, bits a second, bytes, decibels, and three times right and known."""
    rows = re.findall(rf"^  +(none|\d) +(\d+) +(\d+) +(\d+) +(-|\d+\.\d\d) +{SHARE} +{SHARE} +{SHARE}$", text, re.M)
    return {0 if row[0] == "none" else int(row[0]):
            (int(row[1]), int(row[2]), int(row[3]), None if row[4] == "-" else float(row[4]), share(*row[5:8]),
             share(*row[8:11]), share(*row[11:14])) for row in rows}


def streams(text):
    rows = re.findall(r"^  (c\d+(?: c\d+)?) +(\d+) +(\d+) +(-?\d+\.\d\d) +(-?\d+\.\d\d)$", text, re.M)
    return {row[0]: (int(row[1]), int(row[2]), float(row[3]), float(row[4])) for row in rows}


def frames_in(path):
    return 1 + ((path.stat().st_size - 44) // 2 - 200) // 80


def sealed(content):
    """With the checksum that ends a model file: FNV-1a."""
    value = 14695981039346656037
    for byte in content:
        value = (value ^ byte) * 1099511628211 % 2 ** 64
    return bytes(content) + struct.pack("<Q", value)


class Folder(support.Folder):
    """A test with a folder of its own, and the model and results that all tests share."""

    @classmethod
    def setUpClass(cls):
        cls.shared = pathlib.Path(shared_folder.name)
        cls.model = cls.shared / f"{processor}.model"
        cls.text = results[processor]


class WholeRun(Folder):
    def test_the_build_under_test_is_the_one_that_is_loaded(self):
        self.assert_build_under_test_is_loaded()

    def test_at_least_95_percent_of_300_recordings_are_right(self):
        counts = matrix(self.text, "confusion matrix")
        for name, row in zip(SPEAKERS, counts):
            self.assertEqual(sum(row), len(list((arguments.data / "test").glob(f"*_{name}_*.wav"))))
        right = int(sum(counts[i][i] for i in range(6)))
        self.assertGreaterEqual(right, 285)
        self.assertIn(f"accuracy:   {right / 3:.2f} % ({right} of 300)", self.text)
        frames = sum(map(frames_in, (arguments.data / "test").glob("*.wav")))
        self.assertIn(f"recordings: 300 recognised, 0 unusable, {frames} frames", self.text)
        self.assertEqual(self.text.count("\nwrong: "), 300 - right)

    def test_speakers_are_nearest_to_their_own_codewords(self):
        for i, row in enumerate(matrix(self.text, "distortion")):
            self.assertEqual(min(row), row[i])
            self.assertGreater(row[i], 0)

    def test_speed_is_told(self):
        self.assertRegex(self.text, r"speed: +\d+ frames per second \(front end")
        self.assertRegex(self.text, r"speed: +real-time factor \d+\.\d+")

    @unittest.skipIf(processor == "m7", "the baseline is what the other builds are compared with")
    def test_model_and_results_are_those_of_the_baseline(self):
        self.assertEqual(self.model.read_bytes(), (self.shared / "m7.model").read_bytes())
        self.assertEqual(without_times(self.text).replace(processor, "m7"), without_times(results["m7"]))

    def test_recordings_named_by_themselves_get_a_line_each(self):
        alone = self.folder / "noname.wav"
        shutil.copy(self.recording("6_jackson_1.wav"), alone)
        paths = [self.recording("3_lucas_2.wav"), self.recording("9_theo_4.wav"), alone]
        status, out, _ = run("recognise", *paths, "--model", self.model)
        self.assertEqual(status, 0)
        for path, name in zip(paths, ["lucas", "theo", "jackson"]):
            other, factor = re.search(rf"^{re.escape(str(path))}: {name}; (\w+) is (\d+\.\d\d\d) times as far$", out,
                                      re.M).groups()
            self.assertIn(other, set(SPEAKERS) - {name})
            self.assertGreater(float(factor), 1)
        self.assertIn("(2 of 2)", out)  # the third has no name to compare with

    def test_a_stranger_is_taken_for_somebody_and_not_counted(self):
        path = self.folder / "7_anna_0.wav"
        shutil.copy(self.recording(), path)
        status, out, _ = run("recognise", path, "--model", self.model)
        self.assertEqual(status, 0)
        self.assertIn(f"{path}: theo; ", out)
        self.assertNotIn("accuracy", out)


class Searches(Folder):
    """Beside all words: trees, 16 bits, and other sizes."""

    def test_each_is_told(self):
        table = searches(self.text)
        self.assertEqual(list(table), SEARCHES)
        for name, (right, known, distortion, misses) in table.items():
            self.assertEqual(known, 300)
            self.assertGreaterEqual(right, 270, name)
            self.assertTrue(0 <= misses < 50, name)
            self.assertRegex(self.text, rf"\nspeed: +{name} +\d+ frames per second in all codebooks, \d+\.\d\d times")

    def test_no_search_is_nearer_than_all_words(self):
        table = searches(self.text)
        nearest = table["all words"][2]
        self.assertEqual(table["all words"][3], 0)
        self.assertGreater(table["tree, widest first"][2], nearest)
        self.assertGreater(table["tree, widest first"][3], 0)
        for name in SEARCHES[1:]:
            self.assertLess(table[name][2], 1.3 * nearest, name)

    def test_16_bits_keep_the_unit_of_distances(self):
        table = searches(self.text)
        self.assertAlmostEqual(table["all words, 16 bits"][2] / table["all words"][2], 1, delta=0.002)
        self.assertAlmostEqual(table["all words, 16 bits"][0], table["all words"][0], delta=3)
        self.assertLess(table["all words, 16 bits"][3], 1)

    def test_more_codewords_are_nearer(self):
        table = sizes(self.text)
        self.assertEqual(list(table), [2, 4, 8, 16, 32, 64, 128])
        for column in (0, 1):
            values = [row[column] for row in table.values()]
            self.assertEqual(values, sorted(values, reverse=True))
        for training, test, _, known in table.values():
            self.assertLess(training, test)
            self.assertEqual(known, 300)
        self.assertGreaterEqual(table[128][2], 285)
        self.assertLess(table[2][2], table[128][2])

    def test_the_largest_size_is_that_of_the_searches(self):
        search, size = searches(self.text)["all words"], sizes(self.text)[128]
        self.assertEqual((search[0], search[2]), (size[2], size[1]))

    def test_the_recordings_of_the_model_make_the_model_again(self):
        self.assertEqual(run("train", small_folder, "--model", self.folder / "small", "--codewords", 8)[0], 0)
        path = self.recording("0_lucas_0.wav")
        status, out, _ = run("recognise", path, "--model", self.folder / "small", "--compare", small_folder)
        self.assertEqual(status, 0)
        self.assertEqual(list(sizes(out)), [2, 4, 8])
        own = matrix(out, "distortion")[SPEAKERS.index("lucas")][SPEAKERS.index("lucas")]
        self.assertAlmostEqual(searches(out)["all words"][2], own, delta=0.051)


class CompressedCepstra(Folder):
    def test_bits_are_those_of_the_streams(self):
        table = compression(self.text)
        self.assertEqual(list(table), [0, 1, 2, 3, 4, 5, 6, 7])
        self.assertEqual(table[0][:2], (13 * 32, 41600))
        for pair, (bits, rate, *_) in table.items():
            self.assertEqual(rate, 100 * bits)
            if pair > 0:
                self.assertEqual(bits, 6 * pair + min(pair + 1, 7))
        parts = streams(self.text)
        self.assertEqual(list(parts), ["c1 c2", "c3 c4", "c5 c6", "c7 c8", "c9 c10", "c11 c12", "c0"])
        self.assertEqual(sum(part[1] for part in parts.values()), table[6][0])
        for words, bits, *_ in parts.values():
            self.assertEqual(words, 2 ** bits)

    def test_bytes_are_those_of_whole_recordings(self):
        paths = list((arguments.data / "test").glob("*.wav"))
        for bits, _, size, *_ in compression(self.text).values():
            self.assertEqual(size, sum((bits * frames_in(path) + 7) // 8 for path in paths))

    def test_noise_falls_with_each_bit(self):
        decibels = [row[3] for row in compression(self.text).values()][1:]
        self.assertGreater(decibels[0], 1)
        for before, after in zip(decibels, decibels[1:]):
            # Each bit of a pair halves the area of a word's cell: ideally 3.01 dB.
            self.assertTrue(1.5 < after - before < 4, decibels)
        for name, (_, _, training, test) in streams(self.text).items():
            # Few recordings do not show how loud others may be.
            self.assertAlmostEqual(training, test, delta=9 if name == "c0" else 3, msg=name)
            self.assertGreater(test, 12, name)

    def test_what_arrives_is_recognised(self):
        table = compression(self.text)
        for row in table.values():
            self.assertEqual([part[1] for part in row[4:]], [300] * 3)
        clean = table[0][4][0]
        self.assertEqual(table[0][4], table[0][5])
        self.assertGreaterEqual(clean, 270)  # models of a fifth of the recordings
        self.assertGreaterEqual(table[6][4][0], clean - 9)
        self.assertGreaterEqual(table[6][5][0], clean - 9)
        self.assertLess(table[1][4][0], table[6][4][0])
        self.assertGreater(table[1][5][0], table[1][4][0])  # models that know the noise of few bits
        right = int(sum(matrix(self.text, "confusion matrix")[i][i] for i in range(6)))
        self.assertEqual(table[0][6][0], right)
        self.assertGreaterEqual(table[6][6][0], 285)

    def test_speed_is_told(self):
        self.assertRegex(self.text, r"\nspeed: +\d+ frames per second packed, \d+ by trees, \d+ unpacked\n")
        self.assertRegex(self.text, r"\n  by trees, \d\.\d\d\d % of the words are others\n")


class Page(Folder):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.page = (cls.shared / f"{processor}.html").read_text(encoding="utf-8")

    def rows(self, heading):
        """The cells of the tables of a section, without tags."""
        section = re.search(rf"<section>[^§]*?<h2>{heading}</h2>.*?</section>", self.page, re.S).group()
        section = section[section.index(f"<h2>{heading}</h2>"):]
        return [[re.sub(r"<[^>]*>|&thinsp;", "", cell) for cell in re.findall(r"<td[^>]*>(.*?)</td>", row)]
                for row in re.findall(r"<tr>(.*?)</tr>", section) if "<td" in row]

    def figure(self, title):
        found, = re.findall(rf"<svg[^>]*aria-label='{title}.*?</svg>", self.page, re.S)
        return xml.etree.ElementTree.fromstring(found), found

    def test_it_stands_alone(self):
        for word in ("<script", "http://", "https://", "src='file", "nan"):
            self.assertNotIn(word, self.page.replace("http://www.w3.org", ""))
        for figure in re.findall(r"<svg.*?</svg>", self.page, re.S):
            xml.etree.ElementTree.fromstring(figure)

    def test_counts_are_those_that_are_printed(self):
        counts = matrix(self.text, "confusion matrix")
        _, figure = self.figure("Confusion matrix")
        for i, row in enumerate(counts):
            for j, count in enumerate(row):
                self.assertIn(f"{SPEAKERS[i]} taken for {SPEAKERS[j]}: {count:.0f} of 50", figure)
        percent = re.search(r"accuracy: +(\d+\.\d\d %)", self.text).group(1)
        self.assertIn(f"<div class='tile'><b>{percent}</b>", self.page)

    def test_distortions_are_those_that_are_printed(self):
        printed = matrix(self.text, "distortion")
        self.assertEqual(self.rows("Distortion"),
                         [[name, *(f"{value:.1f}" for value in row)] for name, row in zip(SPEAKERS, printed)])

    def test_tables_are_those_that_are_printed(self):
        self.assertEqual(self.rows("How many codewords"),
                         [[str(size), f"{row[0]:.2f}", f"{row[1]:.2f}", f"{row[2]} of {row[3]}"]
                          for size, row in sizes(self.text).items()])
        self.assertEqual([[row[0], *row[2:5]] for row in self.rows("Searches")],
                         [[name, f"{row[0]} of {row[1]}", f"{row[2]:.2f}", f"{row[3]:.3f} %"]
                          for name, row in searches(self.text).items()])
        expected = [["float" if pair == 0 else str(pair), *map(str, row[:3]),
                     "" if pair == 0 else f"{row[3]:.2f} dB", *(f"{right} of {known}" for right, known in row[4:])]
                    for pair, row in compression(self.text).items()]
        expected += [[name, str(row[0]), str(row[1]), f"{row[2]:.2f} dB", f"{row[3]:.2f} dB"]
                     for name, row in streams(self.text).items()]
        self.assertEqual(self.rows("Compression"), expected)

    def test_codewords_lie_over_frames(self):
        tree, figure = self.figure("Codewords over the frames")
        self.assertEqual(figure.count("<image "), 6)
        points = [item for item in tree.iter() if item.get("class") == "codeword"]
        self.assertTrue(0.9 * 768 < len(points) <= 768, len(points))
        panels = [item for item in tree.iter() if item.get("class") == "frame"]
        for point in points:
            x, y = float(point.get("x")) + 2.5, float(point.get("y")) + 2.5
            self.assertTrue(any(float(box.get("x")) - 1 <= x <= float(box.get("x")) + float(box.get("width")) + 1 and
                                float(box.get("y")) - 1 <= y <= float(box.get("y")) + float(box.get("height")) + 1
                                for box in panels))

    def test_curves_have_a_point_for_each_row(self):
        for title, count, falls in (("Distortion over the size", 2 * 7, True),
                                    ("Recordings that are right", 3 * 7, False)):
            tree, _ = self.figure(title)
            points = [(float(item.get("x")), float(item.get("y"))) for item in tree.iter()
                      if (item.get("class") or "").startswith("bar ")]
            self.assertEqual(len(points), count)
            for start in range(0, count, 7):
                curve = points[start:start + 7]
                self.assertEqual([x for x, _ in curve], sorted(x for x, _ in curve))
                if falls:  # places count downward
                    self.assertEqual([y for _, y in curve], sorted(y for _, y in curve))

    def test_a_page_of_one_recording(self):
        page = self.folder / "one.html"
        status, out, _ = run("recognise", self.recording(), "--model", self.model, "--report", page)
        self.assertEqual(status, 0)
        self.assertIn(f"report:     {page}", out)
        text = page.read_text(encoding="utf-8")
        self.assertIn("Codewords over frames", text)
        self.assertNotIn("<h2>Compression", text)

    def test_a_page_that_cannot_be_written(self):
        page = self.folder / "no/such/page.html"
        status, _, err = run("recognise", self.recording(), "--model", self.model, "--report", page)
        self.assertEqual(status, 1)
        self.assertIn(f"{page}: cannot be written", err)


class Training(Folder):
    def test_sizes_are_chosen_by_cross_validation(self):
        status, out, _ = run("train", small_folder, "--model", self.folder / "m", "--codewords", "choose")
        self.assertEqual(status, 0)
        rows = re.findall(rf"^  +(\d+) +{SHARE}$", out, re.M)
        self.assertEqual([int(row[0]) for row in rows], [4, 8, 16, 32, 64, 128])
        for row in rows:
            self.assertEqual(share(*row[1:])[1], 120)
        best = max(rows, key=lambda row: int(row[2]))  # the first of several
        for name in SPEAKERS:
            self.assertRegex(out, rf"speaker: +{name} +{best[0]} codewords of \d+ frames, distortion \d+\.\d\d")

    def test_frames_that_never_change_make_one_codeword(self):
        folder = self.folder / "train"
        folder.mkdir()
        for name in SPEAKERS[:2]:
            for path in (arguments.data / "train").glob(f"*_{name}_1[01].wav"):
                shutil.copy(path, folder)
        for digit in range(10):
            (folder / f"{digit}_nobody_0.wav").write_bytes(wav()[:44] + bytes(8000))
        status, out, err = run("train", folder, "--model", self.folder / "m", "--codewords", 16)
        self.assertEqual(status, 0, err)
        self.assertRegex(out, r"speaker: +nobody +1 codewords of 480 frames, distortion 0\.00")
        self.assertRegex(out, r"speaker: +george +16 codewords of ")
        status, out, err = run("recognise", folder, "--model", self.folder / "m", "--report", self.folder / "page.html")
        self.assertEqual((status, "nan" in out), (0, False), err)
        right = int(re.search(r"\((\d+) of 50\)", out).group(1))
        self.assertGreaterEqual(right, 45)

    def test_it_goes_on_without_broken_recordings(self):
        folder = self.folder / "train"
        folder.mkdir()
        for path in (arguments.data / "train").glob("*_1[01].wav"):
            shutil.copy(path, folder)
        (folder / "3_anna_0.wav").write_bytes(wav(channels=2))
        shutil.copy(self.recording(), folder / "seven.wav")
        shutil.copy(self.recording(), folder / "7_0.wav")
        shutil.copy(self.recording(), folder / f"7_{'a' * 32}_0.wav")
        status, out, err = run("train", folder, "--model", self.folder / "m", "--codewords", 8)
        self.assertEqual(status, 1)
        self.assertIn(f"{folder / '3_anna_0.wav'}: has 2 channels", err)
        self.assertIn(f"{folder / 'seven.wav'}: has a name that does not begin with a digit", err)
        self.assertIn(f"{folder / '7_0.wav'}: has a name that tells no speaker", err)
        self.assertIn("has a speaker's name of more than 31 bytes", err)
        self.assertIn("recordings: 120 used, 4 unusable", out)
        self.assertEqual(run("recognise", self.recording(), "--model", self.folder / "m")[0], 0)

    def test_too_little_is_refused(self):
        folder = self.folder / "train"
        folder.mkdir()
        shutil.copy(self.recording("0_theo_0.wav"), folder)
        model = self.folder / "m"
        status, _, err = run("train", folder, "--model", model)
        self.assertEqual(status, 1)
        self.assertIn(f"{folder}: has usable recordings of fewer than two speakers", err)
        shutil.copy(self.recording("0_lucas_0.wav"), folder)
        status, _, err = run("train", folder, "--model", model)
        self.assertEqual(status, 1)
        frames = frames_in(self.recording("0_lucas_0.wav"))
        self.assertIn(f"{folder}: has only {frames} frames of the speaker lucas for 128 codewords", err)
        status, _, err = run("train", folder, "--model", model, "--codewords", "choose")
        self.assertEqual(status, 1)
        self.assertIn("has too few recordings of some speaker for cross-validation", err)
        self.assertFalse(model.exists())
        status, _, err = run("recognise", self.recording(), "--model", self.model, "--compress", folder)
        self.assertEqual(status, 1)
        self.assertIn(f"{folder}: has too few usable recordings of the word one", err)


class BrokenRecordings(Folder):
    CASES = {
        "empty.wav": (b"", "is empty"),
        "text.wav": (b"this is no recording\n" * 50, "is not a readable WAV file"),
        "stereo.wav": (wav(channels=2), "has 2 channels; a mono recording is needed"),
        "wide.wav": (wav(rate=96000), "has 96000 samples a second; it may have 8000, "),
        "eight_bits.wav": (wav(bits=8), "does not hold 16-bit samples"),
        "header_only.wav": (wav(samples=0), "holds no samples"),
        "cut_short.wav": (wav()[:-1001], "is cut short: 1001 bytes of its samples are missing"),
        "brief.wav": (wav(samples=759), "is too short: 759 samples at 8 kHz"),
    }

    def test_each_is_named_and_the_others_are_still_done(self):
        paths = []
        for name, (content, _) in self.CASES.items():
            paths.append(self.folder / name)
            paths[-1].write_bytes(content)
        nothing, missing = self.folder / "nothing", self.folder / "missing.wav"
        nothing.mkdir()
        status, out, err = run("recognise", nothing, missing, *paths, self.recording(), "--model", self.model)
        self.assertEqual(status, 1)
        for name, (_, message) in self.CASES.items():
            self.assertIn(f"who-speaks: {self.folder / name}: {message}", err)
        self.assertIn(f"{missing}: there is no such file", err)
        self.assertIn(f"{nothing}: holds no recordings", err)
        self.assertIn(f"{self.recording()}: theo; ", out)
        self.assertIn(f"recordings: 1 recognised, {len(self.CASES) + 1} unusable", out)

    def test_each_alone_fails(self):
        for name, (content, message) in self.CASES.items():
            with self.subTest(name):
                path = self.folder / name
                path.write_bytes(content)
                status, out, err = run("recognise", path, "--model", self.model, "--report", self.folder / "page.html",
                                       "--compare", small_folder, "--compress", small_folder)
                self.assertEqual(status, 1)
                self.assertIn(f"{path}: {message}", err)
                self.assertIn("recordings: 0 recognised, 1 unusable, 0 frames", out)
                self.assertFalse((self.folder / "page.html").exists())

    def test_silence_and_full_scale_are_taken(self):
        for sample in (0, 32767, -32768):
            path = self.folder / "constant.wav"
            path.write_bytes(wav()[:44] + struct.pack("<h", sample) * 4000)
            status, out, err = run("recognise", path, "--model", self.model, "--report", self.folder / "page.html")
            self.assertEqual((status, "nan" in out, "inf" in out), (0, False, False), out + err)

    def test_directories_without_recordings(self):
        missing = self.folder / "missing"
        for words in (["train", missing, "--model", self.folder / "m"],
                      ["recognise", missing / "a", self.recording(), "--model", self.model, "--compare", missing],
                      ["recognise", self.recording(), "--model", self.model, "--compress", missing]):
            status, _, err = run(*words)
            self.assertEqual(status, 1)
            self.assertIn(f"{missing}: there is no such directory", err)


class Models(Folder):
    def refused(self, path, message):
        status, out, err = run("recognise", self.recording(), "--model", path)
        self.assertEqual((status, out), (1, ""))
        self.assertIn(f"who-speaks: {path}: {message}", err)

    def test_broken_ones_are_refused(self):
        whole = self.model.read_bytes()
        self.assertEqual(len(whole), 32 + 6 * 36 + 6 * 128 * 12 * 4 + 8)
        self.assertEqual(sealed(whole[:-8]), whole)

        def changed(at, value):
            content = bytearray(whole)
            content[at] = value
            return content

        sizes_differ = "where its header asks for"
        for name, content, message in (
                ("empty", b"", "is not a model file of speakers"),
                ("text", b"speakers\n" * 100, "is not a model file of speakers"),
                ("recording", self.recording().read_bytes(), "is not a model file of speakers"),
                ("version", changed(16, 9), "is a model file of version 9; version 1 is needed"),
                ("features", changed(24, 13), "holds a model of another shape"),
                ("speakers", changed(28, 1), "holds a model of another shape"),
                ("words", changed(32 + 33, 255), "holds a model of another shape"),
                ("fewer_words", changed(32 + 32, 64), f"has {len(whole)} bytes {sizes_differ} {len(whole) - 64 * 48}"),
                ("many", changed(29, 16), f"has {len(whole)} bytes {sizes_differ}"),
                ("short", whole[:-1], f"has {len(whole) - 1} bytes {sizes_differ} {len(whole)}"),
                ("cut", whole[:100], f"has 100 bytes {sizes_differ}"),
                ("long", whole + b"0", f"has {len(whole) + 1} bytes {sizes_differ} {len(whole)}"),
                ("flipped", changed(len(whole) // 2, whole[len(whole) // 2] ^ 1),
                 "is damaged: its checksum does not agree")):
            with self.subTest(name):
                path = self.folder / name
                path.write_bytes(content)
                self.refused(path, message)
        self.refused(self.folder / "none", "there is no such model file")
        self.refused(self.folder, "is a directory")

    def test_names_and_words_belong_together(self):
        whole = bytearray(self.model.read_bytes()[:-8])
        entries = 32 + 36 * SPEAKERS.index("theo")
        whole[entries:entries + 5] = b"teddy"
        words = 32 + 6 * 36
        for i in range(6):  # the words of each codebook in another order
            begin = words + i * 128 * 48
            rows = [whole[at:at + 48] for at in range(begin, begin + 128 * 48, 48)]
            whole[begin:begin + 128 * 48] = b"".join(reversed(rows))
        model = self.folder / "renamed.model"
        model.write_bytes(sealed(whole))
        path = self.recording()
        before = re.search(r": theo; (\w+ is [\d.]+ times as far)", run("recognise", path, "--model", self.model)[1])
        after = run("recognise", path, "--model", model)[1]
        self.assertIn(f"{path}: teddy; {before.group(1)}", after)

    def test_one_that_cannot_be_written(self):
        path = self.folder / "no/such/speakers.model"
        status, _, err = run("train", small_folder, "--model", path, "--codewords", 2)
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
                (["train", "--model", "m"], "train needs one directory"),
                (["train", "a"], "train needs --model"), (["train", "a", "--model"], "--model needs a value"),
                (["train", "a", "--model", "m", "--codewords", "1"], "--codewords takes a number from 2 to 1024"),
                (["train", "a", "--model", "m", "--codewords", "8x"], "--codewords takes a number from 2 to 1024"),
                (["train", "a", "--model", "m", "--compress", "b"], "train takes no option but --model and"),
                (["recognise", "--model", "m"], "recognise needs recordings"),
                (["recognise", "a"], "recognise needs --model"), (["demo", "a"], "demo needs --output"),
                (["recognise", "a", "--modle", "m"], "there is no option --modle")):
            with self.subTest(words):
                status, out, err = run(*words)
                self.assertEqual((status, out), (2, ""))
                self.assertIn(f"who-speaks: {message}", err)
                self.assertIn("Try: who-speaks --help", err)

    def test_demo_does_it_all(self):
        data = self.folder / "data"
        (data / "test").mkdir(parents=True)
        (data / "train").symlink_to(small_folder)
        shutil.copy(self.recording(), data / "test")
        status, out, err = run("demo", data, "--output", self.folder / "out")
        self.assertEqual(status, 0, err)
        self.assertIn("(1 of 1)", out)
        self.assertEqual(list(searches(out)), SEARCHES)
        self.assertEqual(len(compression(out)), 8)
        self.assertTrue((self.folder / "out/speakers.model").exists())
        self.assertIn("<h2>Compression", (self.folder / "out/report.html").read_text(encoding="utf-8"))


results = {}
skip_if_unable()
with tempfile.TemporaryDirectory() as name:
    shared_folder = argparse.Namespace(name=name)
    # The comparisons make many codebooks and models: two recordings of each word and speaker are enough for them.
    small_folder = pathlib.Path(name) / "small"
    small_folder.mkdir()
    for path in (arguments.data / "train").glob("*_[56].wav"):
        shutil.copy(path, small_folder)
    for build in dict.fromkeys([processor, "m7"]):
        model, page = (pathlib.Path(name) / f"{build}.{kind}" for kind in ("model", "html"))
        status, out, err = run("train", arguments.data / "train", "--model", model, build=build)
        assert status == 0, (out, err)
        assert "recordings: 600 used, 0 unusable" in out, out
        status, results[build], err = run("recognise", arguments.data / "test", "--model", model, "--report", page,
                                          "--compare", small_folder, "--compress", small_folder, build=build)
        assert status == 0, (results[build], err)
    unittest.main(argv=[sys.argv[0]], verbosity=1)
