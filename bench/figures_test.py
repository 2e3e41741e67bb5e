#!/usr/bin/env python3
# SPDX-License-Identifier: BSD-2-Clause
"""How measurements are compared."""

import contextlib
import io
import json
import pathlib
import tempfile
import unittest

import figures


def kept(folder, name, **values):
    path = pathlib.Path(folder) / name
    summaries = {work: figures.summary("ratio", each) for work, each in values.items()}
    path.write_text(json.dumps({"figures": summaries}))
    return str(path)


class Compare(unittest.TestCase):
    def compare(self, old, new):
        """The exit status, and what is printed."""
        with tempfile.TemporaryDirectory() as folder:
            paths = [kept(folder, "old", **old), kept(folder, "new", **new)]
            text = io.StringIO()
            with contextlib.redirect_stdout(text):
                status = figures.compare(figures.argparse.Namespace(old=paths[0], new=paths[1]))
        return status, text.getvalue()

    def test_a_change_within_the_spread_is_none(self):
        status, text = self.compare({"wipe": [1.0, 1.1, 1.3]}, {"wipe": [1.1, 1.2, 1.3]})
        self.assertEqual((status, text), (0, "0 of 1 changed beyond noise\n"))

    def test_a_small_change_is_none_however_small_the_spread(self):
        self.assertEqual(self.compare({"wipe": [1.0] * 3}, {"wipe": [1.02] * 3})[0], 0)

    def test_slower_work_is_told_and_fails(self):
        status, text = self.compare({"wipe": [1.0, 1.0, 1.01], "fill": [2.0] * 3},
                                    {"wipe": [1.2, 1.2, 1.21], "fill": [2.0] * 3})
        self.assertEqual(status, 1)
        self.assertIn("+20.0%  wipe: 1 to 1.2", text)
        self.assertNotIn("fill", text)

    def test_faster_work_is_told_and_passes(self):
        status, text = self.compare({"wipe": [1.0] * 3}, {"wipe": [0.5] * 3})
        self.assertEqual(status, 0)
        self.assertIn("-50.0%  wipe: 1 to 0.5", text)

    def test_work_in_one_of_them_alone_is_named(self):
        status, text = self.compare({"wipe": [1.0], "old": [1.0]}, {"wipe": [1.0], "new": [1.0]})
        self.assertEqual(status, 0)
        self.assertIn("only in the old  old\n", text)
        self.assertIn("only in the new  new\n", text)


class Summary(unittest.TestCase):
    def test_spread_is_the_middle_half_of_the_rounds_as_a_share_of_the_median(self):
        each = figures.summary("ratio", [1.0, 2.0, 3.0, 4.0, 100.0])
        self.assertEqual((each["min"], each["median"]), (1.0, 3.0))
        self.assertAlmostEqual(each["spread"], 2.0 / 3.0)

    def test_one_round_has_no_spread(self):
        self.assertEqual(figures.summary("s", [2.0])["spread"], 0.0)


if __name__ == "__main__":
    unittest.main()
