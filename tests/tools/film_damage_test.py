#!/usr/bin/env python3
"""Kinds of damage, and what the judge of the recovery benchmark makes of rows."""

import os
import random
import struct
import sys
import unittest

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
sys.path[:0] = [os.path.join(ROOT, "tests", "support"), os.path.join(ROOT, "tools")]

import bench_recovery  # noqa: E402
import film_damage  # noqa: E402
import recovery_score  # noqa: E402


def chunk(code, payload):
    return code + struct.pack("<I", len(payload)) + payload + bytes(len(payload) % 2)


def small_film(seed):
    """A hundred pictures with sound, of 400 KiB."""
    chance = random.Random(seed)
    media, entries = b"movi", b""
    for _ in range(100):
        for code, size in ((b"00dc", chance.randrange(2000, 5000)), (b"01wb", 900)):
            entries += struct.pack("<4sIII", code, 16, len(media), size)
            media += chunk(code, chance.randbytes(size))
    stream = chunk(b"LIST", b"strl" + chunk(b"strh", bytes(56)) + chunk(b"strf", bytes(40)))
    header = chunk(b"LIST", b"hdrl" + chunk(b"avih", bytes(56)) + stream + stream)
    return chunk(b"RIFF", b"AVI " + header + chunk(b"LIST", media) + chunk(b"idx1", entries))


class FilmDamage(unittest.TestCase):
    def setUp(self):
        self.film = film_damage.Film(small_film(1))
        self.other = film_damage.Film(small_film(2))

    def damaged(self, kind, seed=1):
        return film_damage.damaged(self.film, kind, random.Random(seed), self.other)

    def test_walk_finds_every_chunk_and_header(self):
        self.assertEqual(len(self.film.chunks), 200)
        self.assertEqual(len(self.film.stream_headers), 2)
        self.assertEqual(self.film.data[self.film.index : self.film.index + 4], b"idx1")
        self.assertEqual(self.film.data[self.film.media : self.film.media + 4], b"LIST")

    def test_every_kind_changes_the_film_alike_for_each_seed(self):
        for kind in film_damage.KINDS:
            data, left = self.damaged(kind)
            self.assertNotEqual(data, self.film.data, kind)
            self.assertEqual(data, self.damaged(kind)[0], kind)
            self.assertGreater(left, 0.4, kind)
            self.assertLessEqual(left, 1.0, kind)

    def test_share_of_whole_chunks_is_that_of_untouched_payloads(self):
        for kind in ("index_lost", "index_wrong", "unfinished", "sizes_wrong", "codes_wrong", "headers_lost"):
            self.assertEqual(self.damaged(kind)[1], 1.0, kind)
        for kind in ("cut", "sectors_zeroed", "bytes_missing", "bytes_inserted", "everything"):
            self.assertLess(self.damaged(kind)[1], 1.0, kind)
        self.assertEqual(self.damaged("span_doubled")[1], 1.0)

    def test_lengths_tell_what_was_done(self):
        size = len(self.film.data)
        self.assertEqual(len(self.damaged("clusters_shuffled")[0]), size)
        self.assertEqual(len(self.damaged("sectors_random")[0]), size)
        self.assertEqual(len(self.damaged("span_doubled")[0]), size + 30000)
        self.assertLess(len(self.damaged("bytes_missing")[0]), size)
        self.assertGreater(len(self.damaged("bytes_inserted")[0]), size)


class RecoveryScore(unittest.TestCase):
    def test_longest_rise(self):
        self.assertEqual(recovery_score.longest_rise([]), [])
        self.assertEqual(recovery_score.longest_rise([5, 1, 2, 9, 3]), [1, 2, 4])
        self.assertEqual(recovery_score.longest_rise([3, 2, 1]), [2])

    def test_tables_hold_means(self):
        scores = dict.fromkeys(bench_recovery.COLUMNS, 0.5)
        rows = [("a", "cut", 1.0, {"x": scores}), ("b", "cut", 1.0, {"x": dict.fromkeys(scores, 1.0)})]
        self.assertIn("| cut | 0.750 |", bench_recovery.table(rows, ["cut"], ["x"], "in sync"))
        self.assertIn("| x | 0.750 | 0.750 | 0.750 | 0.750 |", bench_recovery.summary(rows, {"x": "x"}))
        self.assertIn("x: 0.750", bench_recovery.picture(rows, ["cut"], ["x"]))

    def test_page_keeps_what_is_outside_the_marks(self):
        page = "a\n<!-- m -->\nold\n<!-- end of m -->\nb\n"
        self.assertEqual(bench_recovery.replaced(page, "m", ["new"]), "a\n<!-- m -->\nnew\n<!-- end of m -->\nb\n")


if __name__ == "__main__":
    unittest.main()
