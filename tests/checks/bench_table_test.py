# SPDX-License-Identifier: MIT
# Copyright (c) 2026 The Shared authors
"""The benchmark table takes the median, finds the fastest peer, keeps limits apart and measures growth."""

import pathlib
import sys
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "tools"))
import bench_table  # noqa: E402


def result(name, *milliseconds):
    return [{"name": name, "run_name": name, "run_type": "iteration", "cpu_time": time, "time_unit": "ms"}
            for time in milliseconds]


class BenchTable(unittest.TestCase):
    def test_names_are_split_into_row_contender_and_size(self):
        for name, expected in [
            ("text/parse/ours/1000", ("text/parse", "ours", 1000)),
            ("text/parse/wide/ours/10/iterations:3", ("text/parse/wide", "ours", 10)),
            ("text/parse/_memcpy/size:10/real_time", ("text/parse", "_memcpy", 10)),
            ("text/parse/std17", ("text/parse", "std17", 0)),
            ("text/parse/geos@alone/10", ("text/parse", "geos", 10)),
            ("parse/ours", None),
        ]:
            with self.subTest(name):
                self.assertEqual(bench_table.split_name(name), expected)

    def test_rows_compare_medians_with_the_fastest_peer(self):
        entries = [*result("t/w/ours/10", 9, 1, 2), *result("t/w/slow/10", 8, 8, 8), *result("t/w/fast/10", 4, 3, 5),
                   *result("t/w/_memcpy/10", 0.5), *result("t/w/ours/100", 20), *result("odd", 1)]
        aggregate = {"name": "t/w/ours/10_mean", "run_type": "aggregate", "cpu_time": 99, "time_unit": "ms"}
        times, left_out = bench_table.read_times([{"benchmarks": [*entries, aggregate]}])
        small, large = bench_table.make_rows(times)
        self.assertEqual(left_out, ["odd"])
        self.assertEqual((small["row"], small["size"], small["peer"]), ("t/w", 10, "fast"))
        self.assertAlmostEqual(small["ours"], 0.002)
        self.assertAlmostEqual(small["ratio"], 2.0)
        self.assertAlmostEqual(small["exponent"], 1.0)
        self.assertEqual(list(small["limits"]), ["_memcpy"])
        self.assertIsNone(large["ratio"])

    def test_windows_times_stand_beside_ours_and_rows_over_the_goal_are_told(self):
        times, _ = bench_table.read_times([{"benchmarks": [
            *result("t/w/ours/10", 10), *result("t/w/ours/100", 10), *result("t/x/ours", 10)]}])
        windows, _ = bench_table.read_times([{"benchmarks": [
            *result("t/w/ours/10", 11, 90, 10), *result("t/w/ours/100", 12), *result("t/x/ours", 20)]}])
        rows = bench_table.make_rows(times, windows)
        for row, expected in zip(rows, (0.011, 0.012, 0.02)):
            self.assertAlmostEqual(row["windows"], expected)
        self.assertEqual([row["row"] for row in bench_table.slow_on_windows(rows)], ["t/x", "t/w"])
        self.assertIsNone(bench_table.make_rows(times)[0]["windows"])

    def test_a_failed_benchmark_ends_the_table(self):
        with self.assertRaises(SystemExit):
            bench_table.read_times([{"benchmarks": [{"name": "t/w/ours", "error_occurred": True}]}])


if __name__ == "__main__":
    unittest.main()
