"""The shared object as it was built: what it needs, what it lets out, and that it keeps no state."""
import collections
import os
import re
import sys
import unittest

import environment as env

sys.path.insert(0, os.path.join(env.SOURCE, "tools"))
import extents  # noqa: E402

LIBRARY = os.environ["VORNSR_TEST_LIBRARY"]

# Everything the library may call. Of the mathematical functions only those that are exact: the others choose their
# code by the processor when they are loaded, and then differ in the last bit.
IMPORTS = {
    "memory": {"malloc", "free", "memcpy", "memmove", "memset", "memcmp"},
    "the size of the cache": {"sysconf", "sched_getaffinity", "__sched_cpucount"},
    "exact mathematics": {"sqrt", "sqrtf", "fabs", "floor", "ceil", "trunc", "rint", "nearbyint", "fmod", "ldexp", "frexp",
                          "modf", "scalbn", "copysign", "rintf", "nearbyintf", "floorf", "ceilf", "truncf", "lrint",
                          "lrintf"},
    "the tool chain's own": {"_ITM_deregisterTMCloneTable", "_ITM_registerTMCloneTable", "__cxa_finalize",
                             "__gmon_start__", "__stack_chk_fail"},
}

# What the tool chain puts into writable sections of every shared object.
TOOL_CHAIN_OBJECTS = {"completed.0", "__dso_handle", "__TMC_END__"}
WRITABLE = {".data", ".bss", ".tdata", ".tbss"}

# Instructions that came after SSE3. (tzcnt is left out: older processors run it as bsf, and compilers count on that.)
AFTER_SSE3 = re.compile(
    r"^(v(?!err$|errw$|erw$)\w+|pshufb|ph(add|sub)s?[wd]|pabs[bwd]|palignr|pmulhrsw|psign[bwd]|pmaddubsw"  # SSSE3
    r"|p?blend\w+|p(min|max)(s[bd]|u[wd])|pmov[sz]x\w+|pmul(dq|ld)|packusdw|round[sp][sd]|ptest|p?(insr|extr)[bdq]"
    r"|insertps|extractps|dpp[sd]|mpsadbw|phminposuw|pcmpeqq|movntdqa"  # SSE4.1; pinsrw and pextrw are older
    r"|pcmp[ei]str[im]|pcmpgtq|crc32\w*|popcnt|lzcnt|andn|bextr|bls\w+|bzhi|mulx|pdep|pext|rorx|sa[lr]x|shlx|shrx|movbe"
    r"|aes\w+|pclmul\w+|sha\w*(rnds|msg|nexte)\w*|adcx|adox)$")
# In no build: estimates, whose bits differ from maker to maker; multiply-add, which rounds once where the formula rounds
# twice; and the old stack unit, which computes in another precision.
ESTIMATE = re.compile(r"^v?(rcp|rsqrt)(14|28)?[sp][sdh]$")
MULTIPLY_ADD = re.compile(r"^vf(n?m(add|sub)|maddsub|msubadd)\w*[sp][sdh]$")
STACK_UNIT = re.compile(r"^f(i?ld|i?st|i?add|i?mul|i?div|i?sub|sin|cos|yl2x|2xm1|ptan|patan|sqrt|rndint|scale|prem)\w*$")


# From these the code leads to the allocator, and still they never call it.
NEVER_ALLOCATE = {
    r"vorns(FFTInit_[CR]|MelFBankInit)_\w+": "makes a context as its allocating sister does, in the caller's memory",
    r"vornsEvalFBank_\w+": "transforms with the bank's own work area",
    r"vorns(Split)?VQ(Dist)?(Single)?(_Sort|_Thresh)?_32f\w*": "16-bit vectors alone are converted",
}


class Needs(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.dynamic = env.output("readelf", "--dynamic", "--wide", LIBRARY)

    def test_needs_only_libc_and_libm(self):
        needed = set(re.findall(r"\(NEEDED\).*\[(.*)\]", self.dynamic))
        self.assertLessEqual(needed, {"libc.so.6", "libm.so.6"})

    def test_calls_only_what_is_listed(self):
        symbols = env.output("nm", "--dynamic", "--undefined-only", LIBRARY)
        called = {re.sub(r"@.*", "", line.split()[-1]) for line in symbols.splitlines()}
        self.assertFalse(called - set().union(*IMPORTS.values()), "imports that no list allows")

    def test_soname(self):
        self.assertEqual(re.findall(r"\(SONAME\).*\[(.*)\]", self.dynamic), ["libvornsrm7.so.5.1"])

    def test_loads_without_relocating_code_or_searching_elsewhere(self):
        for tag in ("TEXTREL", "RPATH", "RUNPATH", "PREINIT_ARRAY"):
            self.assertNotIn(f"({tag})", self.dynamic)
        self.assertRegex(self.dynamic, r"BIND_NOW|FLAGS.*NOW")


class State(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.sections = {}
        for line in env.output("readelf", "--sections", "--wide", LIBRARY).splitlines():
            found = re.match(r"\s*\[\s*(\d+)\]\s+(\.\S+)\s+\S+\s+[0-9a-f]+\s+[0-9a-f]+\s+([0-9a-f]+)", line)
            if found:
                cls.sections[found.group(1)] = (found.group(2), int(found.group(3), 16))
        cls.symbols = []
        for line in env.output("readelf", "--symbols", "--wide", LIBRARY).splitlines():
            fields = line.split()
            if len(fields) >= 8 and fields[0].endswith(":") and fields[6].isdigit():
                cls.symbols.append((fields[7], fields[3], cls.sections[fields[6]][0]))

    def sizes(self):
        return dict(self.sections.values())

    def test_symbols_are_not_stripped(self):
        self.assertIn(("__dso_handle", "OBJECT", ".data"), self.symbols, "the tests below read the local symbols")

    def test_no_object_of_the_library_is_writable(self):
        ours = {name for name, kind, section in self.symbols
                if section in WRITABLE and kind in ("OBJECT", "TLS", "COMMON")}
        self.assertFalse(ours - TOOL_CHAIN_OBJECTS, "writable globals")

    def test_writable_sections_hold_only_the_tool_chains_words(self):
        sizes = self.sizes()
        self.assertLessEqual(sizes.get(".data", 0), 8)
        self.assertLessEqual(sizes.get(".bss", 0), 8)
        self.assertNotIn(".tdata", sizes)
        self.assertNotIn(".tbss", sizes)

    def test_nothing_runs_at_start_or_end(self):
        sizes = self.sizes()
        self.assertEqual(sizes.get(".init_array", 0), 8, "one entry: the tool chain's frame_dummy")
        self.assertEqual(sizes.get(".fini_array", 0), 8, "one entry: the tool chain's __do_global_dtors_aux")
        for name, _, _ in self.symbols:
            self.assertNotRegex(name, r"^_GLOBAL__|^__cxx_global|^_ZGV", "a static constructor or a guard variable")

    def test_no_segment_is_writable_and_executable(self):
        segments = env.output("readelf", "--program-headers", "--wide", LIBRARY)
        self.assertNotRegex(segments, r"\bRWE\b")
        self.assertRegex(segments, r"GNU_STACK.*\bRW\b")
        self.assertIn("GNU_RELRO", segments)


class Exports(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        symbols = env.output("nm", "--dynamic", "--defined-only", "--no-weak", LIBRARY)
        cls.exported = {line.split()[-1] for line in symbols.splitlines()}
        cls.listed = env.exported_names()

    def test_exports_are_those_of_the_map(self):
        self.assertEqual([name for name, count in collections.Counter(self.listed).items() if count > 1], [], "listed twice")
        self.assertFalse(self.exported - set(self.listed), "exported and not in the map")
        self.assertFalse(set(self.listed) - self.exported, "in the map and not exported")

    def test_every_declared_function_is_exported(self):
        for header in env.public_headers():
            missing = [name for name in env.declared_functions(header) if name not in self.exported]
            self.assertFalse(missing, f"declared in {header} and not exported")

    def test_every_export_is_a_kernel_or_declared(self):
        headers = "".join(env.text("include", "vornsr", header) for header in env.public_headers())
        undeclared = [name for name in self.exported if not env.is_kernel(name) and not re.search(rf"\b{name}\b", headers)]
        self.assertFalse(sorted(undeclared))


class Code(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.instructions = collections.defaultdict(set)
        cls.wide = set()
        function = ""
        for line in env.output("objdump", "--disassemble", "--no-show-raw-insn", LIBRARY).splitlines():
            if line.endswith(">:"):
                function = line.split("<")[1][:-2]
            fields = line.split("\t")
            if len(fields) > 1 and fields[1].split():
                words = fields[1].split()
                prefixes = {"rep", "repz", "repnz", "lock", "bnd", "notrack", "data16", "cs"}
                cls.instructions[next((word for word in words if word not in prefixes), "")].add(function)
                if re.search(r"%[yz]mm", fields[1]):
                    cls.wide.add(function)

    def where(self, forbidden):
        return {name: sorted(places)[:3] for name, places in self.instructions.items() if forbidden.match(name)}

    def test_disassembly_was_read(self):
        self.assertIn("addps" if env.PROCESSOR == "m7" else "vaddps", self.instructions)

    def test_callers_get_the_upper_halves_of_registers_cleared(self):
        # Else the caller's narrower instructions wait for them, some 700 ns a call. Only functions that take or return
        # a vector, which no exported one does, leave them as they are.
        kept = sorted(self.wide - self.instructions["vzeroupper"])
        for name, shown in zip(kept, env.output("c++filt", *kept).splitlines() if kept else []):
            while re.search(r"<[^<>]*>", shown):
                shown = re.sub(r"<[^<>]*>", "", shown)
            if not re.search(r"\b[fi]\d+x\d+\b|\bloadBytes\(", shown):
                self.fail(f"{name}: {shown}")
        self.assertEqual(bool(self.wide), env.PROCESSOR != "m7")

    def test_no_estimates(self):
        self.assertFalse(self.where(ESTIMATE))

    def test_no_multiply_add(self):
        self.assertFalse(self.where(MULTIPLY_ADD))

    def test_no_stack_unit(self):
        self.assertFalse(self.where(STACK_UNIT))

    def test_baseline_alone_has_nothing_newer_than_sse3(self):
        newer = self.where(AFTER_SSE3)
        if env.PROCESSOR == "m7":
            self.assertFalse(newer)
        else:
            self.assertTrue(newer, "the list does not recognise what the wider builds are full of")


class Memory(unittest.TestCase):
    """Who allocates is said in the table of extents. A caller who must not wait for memory counts on it."""

    def callers_of(self, target):
        """The functions from which calls and jumps lead to it, and how many functions were seen in all."""
        callers, function = collections.defaultdict(set), ""
        names = collections.defaultdict(set)
        for line in env.output("objdump", "--disassemble", "--no-show-raw-insn", LIBRARY).splitlines():
            start = re.match(r"([0-9a-f]+) <(.*)>:$", line)
            if start:
                function = int(start.group(1), 16)
                names[function].add(start.group(2))
            reference = re.search(r"([0-9a-f]+) <(.*?)(\+0x[0-9a-f]+)?>$", line) if not start else None
            if reference:
                place = int(reference.group(1), 16) - int(reference.group(3) or "0", 16)
                callers[place].add(function)
        # An exported name may stand beside others at one address.
        for line in env.output("nm", "--defined-only", LIBRARY).splitlines():
            address, _, name = line.split(None, 2)
            if int(address, 16) in names:
                names[int(address, 16)].add(name)
        waiting = [place for place, its in names.items() if target in its]
        reached = set(waiting)
        while waiting:
            for caller in callers[waiting.pop()] - reached:
                reached.add(caller)
                waiting.append(caller)
        return {name for place in reached for name in names[place]}

    def test_only_those_allocate_that_say_so(self):
        rows, faults = extents.read([extents.TABLE], extents.declared())
        self.assertEqual(faults, [])
        said = {name for name, row in rows.items() if row["memory"]}
        reached = self.callers_of("malloc@plt") & set(env.exported_names())
        self.assertFalse(said - reached, "no way leads to the allocator")
        silent = reached - said
        known = {pattern: {name for name in silent if re.fullmatch(pattern, name)} for pattern in NEVER_ALLOCATE}
        self.assertFalse(silent - set().union(*known.values()), "may allocate, and the table does not say so")
        for pattern in NEVER_ALLOCATE:
            self.assertFalse({name for name in said if re.fullmatch(pattern, name)}, pattern)


if __name__ == "__main__":
    if env.SANITIZE:
        env.skip("a sanitizer brings its own run-time library, its own state and its own exports")
    unittest.main()
