"""Runs noisy-digits on the shipped recordings and on broken ones, with the library's build that the loader finds."""

import base64
import math
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
from support import arguments, processor, run, wav

NOISES = ("white", "car", "babble")
METHODS = ("two-stage", "fixed", "wiener", "ephraim-malah")
CONTENDERS = ("plain", "wiener", "ephraim-malah", "two-stage", "fixed")
MARGIN = 3200  # samples of noise in front of a word and behind it


def without_times(text):
    return "".join(line for line in support.without_times(text).splitlines(True) if not line.startswith("report:"))


def tables(text):
    """(front end, training) to row label to the accuracies in the three noises and their mean."""
    found = {}
    for name, training, body in re.findall(r"^(\S+), trained (\w+): words right in per cent, \d+ in each condition\n"
                                           r"  SNR .*\n((?:  .*\n)+)", text, re.M):
        rows = re.findall(r"^  (clean|20\.\.0 dB|-?\d+ dB) +([\d.]+) +([\d.]+) +([\d.]+) +([\d.]+)(?: +-?[\d.]+ %)?$",
                          body, re.M)
        assert len(rows) == body.count("\n"), body
        found[name, training] = {label: list(map(float, values)) for label, *values in rows}
    return found


def summary(text):
    """(front end, training) to mean accuracy and saved errors."""
    rows = re.findall(r"^  (\S+) +trained (\w+) +([\d.]+)(?: +(-?[\d.]+) % of the errors saved)?$", text, re.M)
    return {(name, training): (float(mean), float(saved or 0)) for name, training, mean, saved in rows}


def ablations(text):
    rows = re.findall(r"^  (\S.*?) +([\d.]+) +([\d.]+) times the errors$", text, re.M)
    return {name: (float(right), float(times)) for name, right, times in rows}


def samples_of(path):
    data = path.read_bytes()
    assert data[:4] == b"RIFF" and struct.unpack("<I", data[4:8])[0] == len(data) - 8
    assert struct.unpack("<HHIIHH", data[20:36]) == (1, 1, 8000, 16000, 2, 16)
    assert data[36:40] == b"data" and struct.unpack("<I", data[40:44])[0] == len(data) - 44
    return list(struct.unpack(f"<{(len(data) - 44) // 2}h", data[44:]))


def power(samples):
    return sum(sample * sample for sample in samples) / len(samples)


def decibels(ratio):
    return 10 * math.log10(ratio)


def segmental(clean, noisy, frame=200):
    """How far the clean wave stands out of the difference, in decibels, as the mean over the frames in which it is not
    more than 25 dB weaker than in its loudest one."""
    starts = range(0, len(clean) - frame + 1, frame)
    loudest = max(power(clean[at:at + frame]) for at in starts)
    values = []
    for at in starts:
        signal = power(clean[at:at + frame])
        if decibels(loudest / (signal + 1e-9)) < 25:
            error = power([a - b for a, b in zip(clean[at:at + frame], noisy[at:at + frame])])
            values.append(decibels(signal / (error + 1e-9)))
    return sum(values) / len(values)


class Folder(support.Folder):
    """A test with a folder of its own, and recordings made noisy and clean in it."""

    def mix(self, noise, snr, name="7_theo_0.wav", seed=1):
        path = self.folder / f"{noise}{snr}_{seed}.wav"
        status, out, err = run("mix", self.recording(name), path, "--noise", noise, "--snr", snr, "--seed", seed,
                               "--voices", arguments.data / "train")
        self.assertEqual((status, out, err), (0, "", ""))
        return samples_of(path)

    def clean(self, path, method):
        target = self.folder / f"cleaned-{method}.wav"
        status, out, err = run("clean", path, target, "--method", method)
        self.assertEqual((status, out, err), (0, "", ""))
        return samples_of(target)

    def small_data(self):
        """Two recordings of each word to train, one of each to test."""
        data = self.folder / "data"
        for part, names in (("train", ("jackson_5", "theo_5")), ("test", ("lucas_1",))):
            (data / part).mkdir(parents=True)
            for digit in range(10):
                for name in names:
                    shutil.copy(arguments.data / part / f"{digit}_{name}.wav", data / part)
        return data


class Evaluation(Folder):
    """The quick run: a part of the recordings, two levels, clean training."""

    def test_the_build_under_test_is_the_one_that_is_loaded(self):
        self.assert_build_under_test_is_loaded()

    def test_numbers_are_those_of_the_baseline_and_of_one_thread(self):
        # The baseline ran on one thread, the build under test on two.
        self.assertEqual(without_times(results[processor]), without_times(results["m7 alone"]))

    def test_every_front_end_hears_clean_words(self):
        for key, rows in tables(results[processor]).items():
            self.assertGreaterEqual(rows["clean"][0], 92, key)
            self.assertEqual(len(set(rows["clean"])), 1, key)

    def test_the_robust_front_end_halves_the_errors(self):
        found = summary(results[processor])
        self.assertEqual(list(found), [(name, "clean") for name in CONTENDERS])
        self.assertEqual(found["plain", "clean"][1], 0)
        self.assertGreaterEqual(found["two-stage", "clean"][1], 50)
        self.assertGreaterEqual(found["fixed", "clean"][1], 50)
        self.assertGreater(found["wiener", "clean"][1], 5)
        self.assertLess(found["plain", "clean"][0], 75)

    def test_louder_noise_is_worse(self):
        for key, rows in tables(results[processor]).items():
            self.assertGreaterEqual(rows["clean"][3], rows["15 dB"][3], key)
            self.assertGreaterEqual(rows["15 dB"][3], rows["5 dB"][3], key)

    def test_means_and_saved_errors_are_right(self):
        found, means = tables(results[processor]), summary(results[processor])
        for (name, training), rows in found.items():
            self.assertEqual(list(rows), ["clean", "15 dB", "5 dB", "20..0 dB"])
            for values in rows.values():
                self.assertAlmostEqual(values[3], sum(values[:3]) / 3, delta=0.011)
                for value in values[:3]:  # a count of 75, or the mean of two
                    self.assertAlmostEqual(value * 1.5, round(value * 1.5), delta=0.01)
            for i in range(4):
                self.assertAlmostEqual(rows["20..0 dB"][i], (rows["15 dB"][i] + rows["5 dB"][i]) / 2, delta=0.011)
            mean, saved = means[name, training]
            self.assertEqual(mean, rows["20..0 dB"][3])
            plain = means["plain", training][0]
            self.assertAlmostEqual(saved, 100 * (mean - plain) / (100 - plain), delta=0.1)

    def test_both_stages_and_all_steps_count(self):
        found = ablations(results[processor])
        self.assertEqual(found["all steps"], (summary(results[processor])["two-stage", "clean"][0], 1.0))
        self.assertGreater(found["neither stage"][1], 1.3)
        self.assertGreater(found["neither stage"][1], found["no second stage"][1])
        for name, (right, times) in found.items():
            self.assertAlmostEqual(times, (100 - right) / (100 - found["all steps"][0]), delta=0.01, msg=name)
        self.assertEqual(len(found), 8)

    def test_integers_are_near_to_single_precision(self):
        rows = re.findall(r"^  (vorns\S+).*? +(vorns\S+) +([\d.e+-]+) %(?:, at most ([\d.e+-]+) %| of (\d+) differ)$",
                          results[processor], re.M)
        self.assertEqual(len(rows), 17)
        usual = {fixed: float(value) for _, fixed, value, _, counted in rows if not counted}
        # These are bounds of their roundings: powers in 64 bits are exact but for the single's own rounding; gains in
        # Q14 and cepstra with six bits behind the point lose less than one step of what they are counted in.
        self.assertLess(usual["vornsSmoothedPowerSpectrumAurora_32s64s_Sfs"], 1e-3)
        self.assertLess(usual["vornsNoiseSpectrumUpdate_Aurora_32s_Sfs"], 0.1)
        self.assertLess(usual["vornsEvalFBank_16s_Sfs"], 0.1)
        self.assertLess(usual["vornsResidualFilter_Aurora_16s_Sfs"], 1)
        self.assertLess(usual["vornsBlindEqualization_Aurora_16s"], 1)
        self.assertLess(usual["vornsDeltaDelta_Aurora_16s_D2Sfs"], 1)
        self.assertLess(usual["vornsFilterUpdateEMNS_32s"], 0.1)
        # And these differ on purpose: other weights, coarse tables, reciprocals of fourteen bits.
        for name in ("vornsWaveProcessing_Aurora_16s", "vornsFilterUpdateWiener_32s",
                     "vornsWienerFilterDesign_Aurora_16s"):
            self.assertTrue(0 < usual[name] < 15, name)

    def test_a_log_gets_whole_lines(self):
        self.assertNotIn("\r", errors[processor])
        for step in ("reading to train", "reading to test", "recognising", "leaving steps out"):
            self.assertIn(f"{step} 100 %\n", errors[processor])
        self.assertLess(len(errors[processor].splitlines()), 30)


class Report(Folder):
    def setUp(self):
        super().setUp()
        self.page = pages[processor]

    def section(self, name):
        part, = re.findall(f"<section id='{name}'>.*?</section>", self.page, re.S)
        return part

    def test_the_page_stands_alone(self):
        for match in re.findall(r"(?:src|href)='([^']{0,12})", self.page):
            self.assertTrue(match.startswith("data:"), match)
        self.assertNotRegex(self.page, r"<script|https?://|@import|url\(")

    def test_every_section_has_its_pictures(self):
        pictures = {"accuracy": 1, "road": 0, "ablation": 0, "spectrograms": 1, "floor": 1, "decisions": 1, "sides": 0}
        for name, count in pictures.items():
            drawings = re.findall(r"<svg.*?</svg>", self.section(name), re.S)
            self.assertEqual(len(drawings), count, name)
            for drawing in drawings:
                xml.etree.ElementTree.fromstring(drawing)
        self.assertEqual(self.page.count("<svg"), sum(pictures.values()))
        # Five curves in each of three panels; three frequencies with four lines; four spectrograms.
        self.assertEqual(self.section("accuracy").count("<polyline"), 15)
        self.assertEqual(self.section("floor").count("<polyline"), 12)
        self.assertEqual(self.section("spectrograms").count("class='smooth' href='data:image/png"), 8)

    def test_it_is_that_of_the_baseline(self):
        self.assertEqual(self.page, pages["m7 alone"])

    def test_the_page_tells_what_was_printed(self):
        found = tables(results[processor])
        for name in CONTENDERS:
            rows = found[name, "clean"]
            for i, noise in enumerate(NOISES):
                told = [f"{rows[label][i]:.2f}" for label in ("clean", "15 dB", "5 dB")]
                cells = [told[0], "–", told[1], "–", told[2], "–", "–"]
                line = f"<td>{name if i == 0 else ''}</td><td>{noise}</td>"
                line += "".join(f"<td class='number'>{cell}</td>" for cell in cells)
                self.assertIn(f"{line}<td class='number'><b>{rows['20..0 dB'][i]:.2f}</b></td>", self.page)
        for name, (right, times) in ablations(results[processor]).items():
            self.assertIn(f"<td>{name}</td><td class='number'>{right:.2f}</td><td class='number'>{times:.2f}</td>",
                          self.page)
        plain, robust = (summary(results[processor])[name, "clean"][0] for name in ("plain", "two-stage"))
        after, before = re.search(r"<b>([\d.]+) %</b><span>words right .*by the plain one: ([\d.]+) %",
                                  self.page).groups()
        self.assertAlmostEqual(float(before), plain, delta=0.051)
        self.assertAlmostEqual(float(after), robust, delta=0.051)

    def test_the_detector_finds_the_word(self):
        stretches = [tuple(map(int, pair))
                     for pair in re.findall(r"speech: (\d+) to (\d+) ms", self.section("decisions"))]
        self.assertTrue(stretches)
        name = re.search(r"<code>(\d_\w+\.wav)</code> in white noise at 5 dB", self.section("spectrograms"))[1]
        clean = samples_of(self.recording(name))
        loudest = max(range(0, len(clean) - 80, 80), key=lambda at: power(clean[at:at + 80]))
        loudest_ms = (MARGIN + loudest) / 8
        self.assertTrue(any(begin <= loudest_ms <= end for begin, end in stretches), (stretches, loudest_ms))
        self.assertTrue(all(begin >= 100 for begin, _ in stretches), stretches)
        end_ms = (2 * MARGIN + len(clean)) / 8
        self.assertLess(sum(end - begin for begin, end in stretches), 0.8 * end_ms)

    def test_the_waves_can_be_heard(self):
        waves = []
        for i, data in enumerate(re.findall(r"data:audio/wav;base64,([^']+)'", self.page)):
            path = self.folder / f"{i}.wav"
            path.write_bytes(base64.b64decode(data, validate=True))
            waves.append(samples_of(path))
        noisy, reduced, clean, suppressed = waves
        before = segmental(clean, noisy)
        self.assertGreater(segmental(clean, reduced), before)
        self.assertGreater(segmental(clean, suppressed), before)


class Mixing(Folder):
    def test_the_word_stands_in_noise_at_the_level_asked_for(self):
        length = len(samples_of(self.recording()))
        for noise in NOISES:
            quiet = self.mix(noise, 60)
            self.assertEqual(len(quiet), length + 2 * MARGIN)
            word = power(quiet[MARGIN:-MARGIN])
            self.assertAlmostEqual(decibels(word / 32768 ** 2), -26, delta=0.1)
            for snr in (20, 5, -5):
                noisy = self.mix(noise, snr)
                difference = [b - a for a, b in zip(quiet, noisy)]
                self.assertAlmostEqual(decibels(word / power(difference[MARGIN:-MARGIN])), snr, delta=0.2)
                for part in (difference[:MARGIN], difference[-MARGIN:]):
                    self.assertAlmostEqual(decibels(word / power(part)), snr, delta=1.5 if noise == "white" else 8)

    def test_the_seed_alone_decides(self):
        once, again, other = self.mix("babble", 5), self.mix("babble", 5), self.mix("babble", 5, seed=2)
        self.assertEqual(once, again)
        self.assertNotEqual(once, other)

    def test_noises_sound_different(self):
        def brightness(samples):  # 2 for white noise, nearly 0 for what is all low frequencies
            part = samples[:MARGIN]
            return power([b - a for a, b in zip(part, part[1:])]) / power(part)

        self.assertAlmostEqual(brightness(self.mix("white", 0)), 2, delta=0.15)
        self.assertLess(brightness(self.mix("car", 0)), 0.2)
        self.assertTrue(0.02 < brightness(self.mix("babble", 0)) < 1.5)

    def test_babble_needs_voices(self):
        status, out, err = run("mix", self.recording(), self.folder / "x.wav", "--noise", "babble")
        self.assertEqual((status, out), (2, ""))
        self.assertIn("noisy-digits: babble is made of recordings: --voices DIR", err)

    def test_a_file_that_cannot_be_written(self):
        path = self.folder / "missing" / "x.wav"
        status, out, err = run("mix", self.recording(), path)
        self.assertEqual((status, out), (1, ""))
        self.assertIn(f"noisy-digits: {path}: cannot be written", err)


class Cleaning(Folder):
    def test_noise_gets_less_and_the_word_stays(self):
        # The mixtures are known, so what is gained can be measured. Filters that are made for a recogniser take more
        # noise out of pauses, and more of the word.
        bounds = {"two-stage": (1, 15, 5), "fixed": (1, 15, 5), "wiener": (3, 8, 2), "ephraim-malah": (3, 8, 2)}
        for noise in ("white", "car"):
            for name in ("7_theo_0.wav", "3_lucas_1.wav"):
                clean, noisy = self.mix(noise, 60, name), self.mix(noise, 5, name)
                for method, (gain, less, change) in bounds.items():
                    with self.subTest(noise=noise, name=name, method=method):
                        cleaned = self.clean(self.folder / f"{noise}5_1.wav", method)
                        self.assertEqual(len(cleaned), len(noisy))
                        self.assertGreater(segmental(clean, cleaned) - segmental(clean, noisy), gain)
                        pause, word = slice(MARGIN // 2, MARGIN), slice(MARGIN, -MARGIN)
                        self.assertGreater(decibels(power(noisy[pause]) / power(cleaned[pause])), less)
                        self.assertLess(abs(decibels(power(cleaned[word]) / power(clean[word]))), change)

    def test_nothing_is_delayed(self):
        clean = self.mix("white", 30)
        for method in METHODS:
            cleaned = self.clean(self.folder / "white30_1.wav", method)
            likeness = {lag: sum(a * b for a, b in zip(clean[MARGIN:-MARGIN], cleaned[MARGIN + lag:]))
                        for lag in range(-3, 4)}
            self.assertEqual(max(likeness, key=likeness.get), 0, (method, likeness))

    def test_each_build_cleans_alike(self):
        self.mix("car", 0)
        path = self.folder / "car0_1.wav"
        for method in METHODS:
            cleaned = self.clean(path, method)
            target = self.folder / "baseline.wav"
            self.assertEqual(run("clean", path, target, "--method", method, build="m7")[0], 0)
            self.assertEqual(cleaned, samples_of(target), method)

    def test_silence_and_full_scale_are_taken(self):
        for name, samples in (("silence", [0] * 4000), ("full", [32767, -32768] * 2000),
                              ("square", ([32767] * 40 + [-32768] * 40) * 50)):
            path = self.folder / f"{name}.wav"
            path.write_bytes(wav(samples))
            for method in METHODS:
                cleaned = self.clean(path, method)
                self.assertEqual(len(cleaned), 4000)
                if name == "silence":
                    self.assertEqual(max(map(abs, cleaned)), 0, method)

    def test_other_rates_are_brought_down(self):
        path = self.folder / "wide.wav"
        path.write_bytes(wav(samples=16000, rate=16000))
        self.assertEqual(len(self.clean(path, "two-stage")), 8000)

    def test_the_shortest_recording(self):
        path = self.folder / "short.wav"
        path.write_bytes(wav(samples=640))
        for method in METHODS:
            self.assertEqual(len(self.clean(path, method)), 640)


class BrokenRecordings(Folder):
    CASES = {
        "0_empty.wav": (b"", "is empty"),
        "0_text.wav": (b"This is no recording at all, only a text with a wrong name.\n" * 20,
                       "is not a readable WAV file"),
        "0_stereo.wav": (wav(channels=2), "has 2 channels"),
        "0_eight_bits.wav": (wav(bits=8), "does not hold 16-bit samples"),
        "0_float.wav": (wav(bits=32, format_tag=3), "does not hold 16-bit samples"),
        "0_odd_rate.wav": (wav(rate=12000), "has 12000 samples a second; it may have 8000, 11025, "),
        "0_header_only.wav": (wav(samples=0), "holds no samples"),
        "0_half_a_header.wav": (wav()[:30], "is not a readable WAV file"),
        "0_cut_short.wav": (wav()[:-1001], "is cut short: 1001 bytes of its samples are missing"),
        "0_long.wav": (wav(samples=60 * 8000 + 1), "is longer than 60 seconds"),
        "0_brief.wav": (wav(samples=639), "is too short: 639 samples at 8 kHz, where a word needs 640"),
    }

    def test_each_is_named_and_the_others_are_still_done(self):
        data = self.small_data()
        for name, (content, _) in self.CASES.items():
            (data / "train" / name).write_bytes(content)
            (data / "test" / name).write_bytes(content)
        (data / "test" / "seven.wav").write_bytes(wav())
        page = self.folder / "report.html"
        status, out, err = run("evaluate", data, "--report", page, "--show", self.recording("2_theo_3.wav"), "--noise",
                               "babble", "--snr", "-3")
        self.assertEqual(status, 1)
        # The pictures can be of any recording and noise.
        self.assertIn("<code>2_theo_3.wav</code> in babble noise at -3 dB", page.read_text(encoding="utf-8"))
        for part in ("train", "test"):
            for name, (_, message) in self.CASES.items():
                self.assertIn(f"noisy-digits: {data / part / name}: {message}", err)
        self.assertIn(f"{data / 'test' / 'seven.wav'}: has a name that does not begin with a digit and an underscore",
                      err)
        self.assertIn(f"recordings: 20 to train, 10 to test, {2 * len(self.CASES) + 1} unusable", out)
        # Both trainings and all levels.
        found = tables(out)
        self.assertEqual(list(found), [(name, training) for name in CONTENDERS for training in ("clean", "mixed")])
        self.assertEqual(list(found["plain", "mixed"]),
                         ["clean", "20 dB", "15 dB", "10 dB", "5 dB", "0 dB", "-5 dB", "20..0 dB"])

    def test_each_alone_fails(self):
        for name, (content, message) in self.CASES.items():
            path = self.folder / name
            path.write_bytes(content)
            for words in (("clean", path, self.folder / "x.wav"), ("mix", path, self.folder / "x.wav")):
                status, out, err = run(*words)
                self.assertEqual((status, out), (1, ""), words)
                self.assertIn(f"noisy-digits: {path}: {message}", err)
        status, out, err = run("clean", self.folder / "none.wav", self.folder / "x.wav")
        self.assertEqual((status, out), (1, ""))
        self.assertIn("none.wav: there is no such file", err)
        self.assertFalse((self.folder / "x.wav").exists())

    def test_directories_without_recordings(self):
        status, out, err = run("evaluate", self.folder / "missing")
        self.assertEqual((status, out), (1, ""))
        self.assertIn(f"{self.folder / 'missing' / 'train'}: there is no such directory", err)
        data = self.small_data()
        shutil.rmtree(data / "test")
        (data / "test").mkdir()
        status, out, err = run("evaluate", data)
        self.assertEqual((status, out), (1, ""))
        self.assertIn(f"{data / 'test'}: holds no recordings", err)

    def test_training_needs_every_word(self):
        data = self.small_data()
        (data / "train" / "4_theo_5.wav").unlink()
        status, out, err = run("evaluate", data)
        self.assertEqual((status, out), (1, ""))
        self.assertIn(f"{data / 'train'}: has too few usable recordings of the word four", err)

    def test_a_report_that_cannot_be_written(self):
        page = self.folder / "missing" / "report.html"
        status, out, err = run("evaluate", self.small_data(), "--report", page)
        self.assertEqual((status, out), (1, ""))  # before anything is evaluated
        self.assertIn(f"{page}: cannot be written", err)


class Demo(Folder):
    def test_it_leaves_a_page_and_waves(self):
        output = self.folder / "out"
        status, out, _ = run("demo", self.small_data(), "--output", output)
        self.assertEqual(status, 0)
        self.assertIn(f"report:     {output / 'report.html'}\n", out)
        self.assertEqual({path.name for path in output.iterdir()},
                         {"report.html", "clean.wav", "noisy.wav"} | {f"cleaned-{method}.wav" for method in METHODS})
        lengths = {len(samples_of(path)) for path in output.glob("*.wav")}
        self.assertEqual(len(lengths), 1)
        page = (output / "report.html").read_text(encoding="utf-8")
        self.assertIn("Trained mixed", page)


class CommandLine(Folder):
    def test_help(self):
        for word in ("--help", "-h", "help"):
            status, out, err = run(word)
            self.assertEqual((status, err), (0, ""))
            self.assertTrue(out.startswith("noisy-digits: "))
            self.assertLessEqual(max(map(len, out.splitlines())), 120)

    def test_wrong_use(self):
        cases = {
            (): "a command is needed",
            ("recognise",): "there is no command recognise",
            ("evaluate",): "evaluate needs one directory that holds train and test",
            ("evaluate", "a", "b"): "evaluate needs one directory that holds train and test",
            ("evaluate", "a", "--loud"): "there is no option --loud",
            ("evaluate", "a", "--report"): "--report needs a value",
            ("evaluate", "a", "--method", "wiener"): "evaluate takes no option but ",
            ("evaluate", "a", "--threads", "0"): "--threads takes a number from 1 to 64",
            ("evaluate", "a", "--threads", "2x"): "--threads takes a number from 1 to 64",
            ("evaluate", "a", "--seed", "-1"): "--seed takes a number from 0 to 4294967295",
            ("evaluate", "a", "--show", "x.wav"): "--show chooses a picture of --report FILE",
            ("demo", "a"): "demo needs --output DIR",
            ("mix", "a"): "mix needs a recording and the file to write",
            ("mix", "a", "b", "--noise", "rain"): "there is no noise rain: it is white, car or babble",
            ("mix", "a", "b", "--snr", "61"): "--snr takes a number from -60 to 60",
            ("mix", "a", "b", "--quick"): "mix takes no option but ",
            ("clean", "a"): "clean needs a recording and the file to write",
            ("clean", "a", "b", "--method", "magic"): "there is no method magic: it is two-stage, fixed, wiener or "
                                                      "ephraim-malah",
        }
        for words, message in cases.items():
            with self.subTest(words):
                status, out, err = run(*words)
                self.assertEqual((status, out), (2, ""))
                self.assertIn(f"noisy-digits: {message}", err)


results, errors, pages = {}, {}, {}
support.skip_if_unable()
with tempfile.TemporaryDirectory() as name:
    for key, build, threads in ((processor, processor, 2), ("m7 alone", "m7", 1)):
        page = pathlib.Path(name) / "report.html"
        status, results[key], errors[key] = run("evaluate", arguments.data, "--quick", "--report", page, "--threads",
                                                threads, build=build)
        assert status == 0, (results[key], errors[key])
        assert "recordings: 200 to train, 75 to test, 0 unusable" in results[key], results[key]
        pages[key] = page.read_text(encoding="utf-8")
unittest.main(argv=[sys.argv[0]], verbosity=1)
