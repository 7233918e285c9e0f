# SPDX-License-Identifier: MIT
# Copyright (c) 2026 The Shared authors
"""The benchmark runner selects rows, gives "@alone" contenders processes of their own and tells those that fail."""

import contextlib
import io
import json
import math
import pathlib
import re
import sys
import tempfile
import textwrap
import types
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "tools"))
import bench_run  # noqa: E402

# Stands for a benchmark program; the contender "broken" kills it.
PROGRAM = textwrap.dedent("""\
    #!{python}
    import json, re, sys
    options = dict(word.split("=", 1) if "=" in word else (word, "") for word in sys.argv[1:])
    names = ["t/w/ours/10", "t/w/peer(fast)/10", "t/v/ours@alone/3", "t/v/broken@alone/3"]
    if "--benchmark_list_tests" in options:
        print("\\n".join(names))
        sys.exit()
    names = [name for name in names if re.search(options["--benchmark_filter"], name)]
    if any("broken" in name for name in names):
        sys.exit(11)
    runs = int(options["--benchmark_repetitions"])
    entries = [dict(name=name, cpu_time=len(names), time_unit="s") for name in names for _ in range(runs)]
    json.dump(dict(context=dict(), benchmarks=entries), open(options["--benchmark_out"], "w"))
    """)


class BenchRun(unittest.TestCase):
    def run_program(self, **options):
        """Returns whether anything ran, the entries of the result and what was told as an error."""
        with tempfile.TemporaryDirectory() as folder:
            program = pathlib.Path(folder) / "fake_bench"
            program.write_text(PROGRAM.format(python=sys.executable), encoding="utf-8")
            program.chmod(0o755)
            settings = {"rows": ".", "out": folder, "runner": None, "ours_only": False, "repetitions": 3,
                        "min_time": 0.1, **options}
            told = io.StringIO()
            with contextlib.redirect_stdout(io.StringIO()), contextlib.redirect_stderr(told):
                found = bench_run.Program(program, types.SimpleNamespace(**settings)).run()
            result = pathlib.Path(folder) / "fake_bench.json"
            entries = json.loads(result.read_text(encoding="utf-8"))["benchmarks"] if found else []
            return found, [(entry["name"], entry["cpu_time"]) for entry in entries], told.getvalue()

    def test_contenders_alone_are_run_one_by_one_and_a_peer_may_fail(self):
        found, entries, told = self.run_program()
        self.assertTrue(found)
        together = [("t/w/ours/10", 2)] * 3 + [("t/w/peer(fast)/10", 2)] * 3
        self.assertEqual(entries, together + [("t/v/ours@alone/3", 1)] * 3)
        self.assertEqual(told.count("left out: t/v/broken@alone/3"), 1)

    def test_rows_and_ours_only_select(self):
        self.assertEqual(self.run_program(rows="t/w", ours_only=True)[1], [("t/w/ours/10", 1)] * 3)
        self.assertFalse(self.run_program(rows="nothing")[0])

    def test_contenders_must_agree_on_areas(self):
        def entry(name, area, tolerance):
            return {"name": name, "area": area, "area_tolerance": tolerance}
        ours, peer = entry("t/w/ours/10", 1.0, 1e-9), entry("t/w/peer@alone/10", 1.00005, 1e-4)
        bench_run.check_areas([ours, peer, {"name": "t/w/other/10"}, entry("t/w/ours/20", 7.0, 1e-9)])
        for wrong in [entry("t/w/third/10", 1.00005, 1e-9), entry("t/w/third/10", math.nan, 1e-4)]:
            with self.assertRaisesRegex(bench_run.Failure, "t/w/third/10: the area is"):
                bench_run.check_areas([ours, wrong])

    def test_a_filter_matches_its_names_only(self):
        pattern = re.compile(bench_run.filter_of(["a/b(c)/1", "a.b/c+/2"]))
        for name, expected in [("a/b(c)/1", True), ("a/b(c)/10", False), ("a.b/c+/2", True), ("axb/c+/2", False)]:
            self.assertEqual(bool(pattern.search(name)), expected, name)


if __name__ == "__main__":
    unittest.main()
