#!/usr/bin/env python3
"""Checks that the SVG pictures hold only what every renderer draws alike, in the sizes that the window counts on.

Usage: pictures_test.py RESOURCES
"""
import os
import sys
import tempfile
import unittest
import xml.etree.ElementTree as tree

SVG = "{http://www.w3.org/2000/svg}"
ELEMENTS = {"svg", "g", "path", "rect", "circle", "defs", "linearGradient", "stop"}
REFUSED = {"style", "class", "filter", "mask", "clip-path", "href"}
# Width and height in points, by the picture's name.
SIZES = {
    "repair_button_normal": (220, 48),
    "repair_button_hover": (220, 48),
    "home-1": (32, 32),
    "home-2": (32, 32),
    "help-1": (32, 32),
    "help-2": (32, 32),
    "update-1": (32, 32),
    "update-2": (32, 32),
    "film-drop": (96, 72),
    "film": (96, 72),
    "sheet-info": (40, 40),
    "sheet-question": (40, 40),
    "sheet-done": (40, 40),
    "sheet-failed": (40, 40),
    "sheet-warning": (40, 40),
    "zelvo-avi-repair": (256, 256),
}


def problems(path):
    """Everything wrong with one picture."""
    try:
        root = tree.parse(path).getroot()
    except tree.ParseError as error:
        return [f"is no XML: {error}"]
    found = []
    for element in root.iter():
        if element.tag.removeprefix(SVG) not in ELEMENTS or not element.tag.startswith(SVG):
            found.append(f"holds <{element.tag}>")
        found += [f"uses {name}" for name in element.attrib if name.split("}")[-1] in REFUSED]
    width, height = root.get("width"), root.get("height")
    if root.get("viewBox") != f"0 0 {width} {height}":
        found.append("has another view box than its size")
    name = os.path.splitext(os.path.basename(path))[0]
    if name in SIZES and (width, height) != tuple(str(one) for one in SIZES[name]):
        found.append(f"is {width} x {height} and not {SIZES[name]}")
    return found


class Checker(unittest.TestCase):
    """That the check above finds what it is for."""

    def found(self, text, name="a.svg"):
        with tempfile.TemporaryDirectory() as folder:
            path = os.path.join(folder, name)
            with open(path, "w", encoding="utf-8") as file:
                file.write(text)
            return problems(path)

    def test_a_plain_picture_has_no_problem(self):
        self.assertEqual(
            self.found('<svg xmlns="http://www.w3.org/2000/svg" width="8" height="8" viewBox="0 0 8 8"/>'), []
        )

    def test_an_element_that_not_all_know_is_found(self):
        self.assertEqual(
            self.found(
                '<svg xmlns="http://www.w3.org/2000/svg" width="8" height="8" viewBox="0 0 8 8">' "<text>a</text></svg>"
            ),
            ["holds <{http://www.w3.org/2000/svg}text>"],
        )

    def test_a_style_is_found(self):
        self.assertEqual(
            self.found(
                '<svg xmlns="http://www.w3.org/2000/svg" width="8" height="8" viewBox="0 0 8 8">'
                '<g style="fill:red"/></svg>'
            ),
            ["uses style"],
        )

    def test_a_wrong_size_is_found(self):
        self.assertEqual(
            self.found(
                '<svg xmlns="http://www.w3.org/2000/svg" width="8" height="8" viewBox="0 0 8 8"/>', "home-1.svg"
            ),
            ["is 8 x 8 and not (32, 32)"],
        )

    def test_a_broken_picture_is_found(self):
        self.assertIn("is no XML", self.found("<svg>")[0])


class Pictures(unittest.TestCase):
    resources = ""

    def paths(self):
        return [
            os.path.join(where, name)
            for where, _, names in os.walk(self.resources)
            for name in names
            if name.endswith(".svg")
        ]

    def test_have_no_problem(self):
        for path in self.paths():
            with self.subTest(path):
                self.assertEqual(problems(path), [])

    def test_are_all_there(self):
        there = {os.path.splitext(os.path.basename(path))[0] for path in self.paths()}
        self.assertEqual(set(SIZES) - there, set())


if __name__ == "__main__":
    Pictures.resources = sys.argv.pop(1)
    unittest.main()
