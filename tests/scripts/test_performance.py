"""The page of figures is what the reports say, and tells why where a target is missed."""

import importlib.machinery
import importlib.util
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]


def load(name):
    loader = importlib.machinery.SourceFileLoader(name, str(ROOT / "scripts" / name))
    module = importlib.util.module_from_spec(importlib.util.spec_from_loader(name, loader))
    loader.exec_module(module)
    return module


bench, performance = load("bench"), load("performance")


def samples(values, peers, target):
    return [{"name": "cost", "value": value, "unit": "ms", "peer": "copy", "peerValue": peer, "target": target,
             "program": "bench_cost"} for value, peer in zip(values, peers)]


def report(*figures):
    return {"machine": {"processor": "P", "cores": 2, "memoryMiB": 4096, "kernel": "6"}, "commit": "c",
            "release": {"name": "Some 1", "packages": {"pipewire": "1.0"}}, "figures": list(figures)}


class Page(unittest.TestCase):
    def test_the_page_in_the_tree_is_what_the_kept_reports_say(self):
        self.assertTrue(performance.PAGE.exists())
        self.assertEqual(performance.PAGE.read_text(encoding="utf-8"), performance.page())

    def test_every_figure_short_of_its_target_has_its_reason(self):
        self.assertNotIn("not known", performance.page())

    def test_a_row_has_the_medians_and_the_ends_of_the_runs(self):
        figure = bench.summarise(samples([3, 1, 2], [1, 1, 1], "ratio <= 4"))
        self.assertEqual(performance.row(figure), "| cost | 2 (1–3) ms | copy: 1 | 2 (1–3) | ratio ≤ 4 | yes |")

    def test_the_ratio_is_the_median_of_the_runs_own_ratios(self):
        figure = bench.summarise(samples([10, 2, 3], [10, 1, 2], None))
        self.assertEqual(figure["ratio"], 1.5)
        self.assertEqual(figure["ratioSpread"], [1, 2])

    def test_a_missed_target_is_told_with_its_reason(self):
        figure = bench.summarise(samples([9], [1], "ratio <= 4"))
        told = performance.section(report(figure), {"cost": "The copy is cheap."})
        self.assertIn("| **no** |", told)
        self.assertIn("- *cost*: The copy is cheap.", told)

    def test_a_missed_target_without_a_reason_says_that_none_is_known(self):
        figure = bench.summarise(samples([9], [1], "ratio <= 4"))
        self.assertIn("- *cost*: not known.", performance.section(report(figure), {}))

    def test_the_command_of_each_figure_is_told(self):
        figure = bench.summarise(samples([1], [1], None)) | {"program": "session_bench_cost"}
        self.assertIn("`./dev bench cost`", performance.section(report(figure), {}))

    def test_a_part_that_was_taken_again_tells_its_commit(self):
        figure = bench.summarise(samples([1], [1], None)) | {"program": "session_bench_cost"}
        self.assertIn("`./dev bench cost`\n", performance.section(report(figure), {}))
        self.assertIn("`./dev bench cost`, commit abc\n", performance.section(report(figure | {"commit": "abc"}), {}))


if __name__ == "__main__":
    unittest.main()
