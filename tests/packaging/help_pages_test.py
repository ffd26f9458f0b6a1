#!/usr/bin/env python3
"""Checks the help pages: well-formed, readable without a network, every link and picture leads somewhere, and each
message of the window is explained.

Usage: help_pages_test.py ROOT
"""
import os
import re
import sys
import tempfile
import unittest
from html.parser import HTMLParser
from urllib.parse import unquote, urlsplit

VOID = {"meta", "link", "img", "br", "hr", "input"}
# Blocks that a paragraph cannot hold, and a check of what closes what.
NOT_IN_PARAGRAPH = {"p", "div", "ul", "ol", "dl", "h1", "h2", "h3", "table", "pre", "nav", "main", "header", "footer"}
PAGES = ["index.html", "tips_for_previewing.htm"]


class Page(HTMLParser):
    """One page: what is wrong with it, what it links to, and which places it has."""

    def __init__(self, text):
        super().__init__(convert_charrefs=False)
        self.wrong, self.links, self.places, self.open, self.seen = [], [], set(), [], set()
        self.title = ""
        if not text.startswith("<!DOCTYPE html>\n"):
            self.wrong.append("does not begin with <!DOCTYPE html>")
        self.feed(text)
        self.close()
        self.wrong += [f"<{tag}> is not closed" for tag in self.open]
        for tag in ("title", "h1", "main"):
            if tag not in self.seen:
                self.wrong.append(f"has no <{tag}>")
        if not self.title.strip():
            self.wrong.append("has an empty title")

    def handle_starttag(self, tag, attrs):
        given = dict(attrs)
        if len(given) != len(attrs):
            self.complain(f"<{tag}> has an attribute twice")
        if tag in NOT_IN_PARAGRAPH and "p" in self.open:
            self.complain(f"<{tag}> in a paragraph")
        if tag in ("h1", "title", "main") and tag in self.seen:
            self.complain(f"a second <{tag}>")
        if tag == "li" and (not self.open or self.open[-1] not in ("ul", "ol")):
            self.complain("<li> outside a list")
        if tag == "html" and not given.get("lang"):
            self.complain("<html> names no language")
        if tag == "img" and "alt" not in given:
            self.complain("a picture without a text in its place")
        if tag in ("script", "style", "iframe", "object"):
            self.complain(f"<{tag}> has no place here")
        if "id" in given:
            if given["id"] in self.places:
                self.complain(f'the place "{given["id"]}" is there twice')
            self.places.add(given["id"])
        self.links += [given[name] for name in ("href", "src") if name in given]
        self.seen.add(tag)
        if tag not in VOID:
            self.open.append(tag)

    def handle_endtag(self, tag):
        if not self.open or self.open[-1] != tag:
            self.complain(f"</{tag}> closes what is not open")
        else:
            self.open.pop()

    def handle_data(self, data):
        if self.open and self.open[-1] == "title":
            self.title += data
        if "&" in data or "<" in data:
            self.complain("a bare & or <")

    def complain(self, what):
        self.wrong.append(f"line {self.getpos()[0]}: {what}")


def problems(folder):
    """Everything wrong with the pages of a folder, a line each."""
    pages, found, used = {}, [], set(PAGES)
    for name in PAGES:
        with open(os.path.join(folder, name), encoding="utf-8") as file:
            pages[name] = Page(file.read())
    for name, page in pages.items():
        found += [f"{name}: {what}" for what in page.wrong]
        for link in page.links:
            parts = urlsplit(link)
            target = unquote(parts.path) or name
            used.add(target)
            if parts.scheme or parts.netloc:
                found.append(f"{name}: {link} needs a network")
            elif not os.path.isfile(os.path.join(folder, target)):
                found.append(f"{name}: {link} leads nowhere")
            elif parts.fragment and parts.fragment not in pages[target].places:
                found.append(f"{name}: {link} leads to no place of {target}")
    for where, _, names in os.walk(folder):
        for one in names:
            path = os.path.relpath(os.path.join(where, one), folder)
            if path not in used:
                found.append(f"{path} is linked from nowhere")
            if path.endswith(".css"):
                with open(os.path.join(where, one), encoding="utf-8") as file:
                    if re.search(r"url\(|@import", file.read()):
                        found.append(f"{path} loads something")
    return found


GOOD = """<!DOCTYPE html>
<html lang="en"><head><meta charset="utf-8"><title>t</title></head>
<body><header><h1>t</h1></header><main>%s</main></body></html>
"""


class Checker(unittest.TestCase):
    """That the check above finds what it is for."""

    def found(self, body):
        with tempfile.TemporaryDirectory() as folder:
            for name, text in ((PAGES[0], GOOD % body), (PAGES[1], GOOD % "")):
                with open(os.path.join(folder, name), "w", encoding="utf-8") as file:
                    file.write(text)
            return problems(folder)

    def test_a_good_page_has_no_problem(self):
        self.assertEqual(self.found('<p id="a">a &amp; b</p><p><a href="#a">a</a></p>'), [])

    def test_a_link_that_leads_nowhere_is_found(self):
        self.assertEqual(self.found('<a href="missing.html">a</a>'), ["index.html: missing.html leads nowhere"])

    def test_a_missing_place_is_found(self):
        self.assertEqual(self.found('<a href="#b">a</a>'), ["index.html: #b leads to no place of index.html"])

    def test_a_missing_picture_is_found(self):
        self.assertEqual(self.found('<img src="a.svg" alt="">'), ["index.html: a.svg leads nowhere"])

    def test_an_address_of_the_network_is_found(self):
        self.assertEqual(
            self.found('<a href="https://a.example/">a</a>'), ["index.html: https://a.example/ needs a network"]
        )

    def test_what_is_not_closed_is_found(self):
        self.assertIn("index.html: line 3: </main> closes what is not open", self.found("<p>a"))

    def test_a_bare_ampersand_is_found(self):
        self.assertEqual(self.found("<p>a & b</p>"), ["index.html: line 3: a bare & or <"])

    def test_a_picture_without_a_text_is_found(self):
        self.assertIn("index.html: line 3: a picture without a text in its place", self.found('<img src="index.html">'))

    def test_a_place_given_twice_is_found(self):
        self.assertEqual(
            self.found('<p id="a">a</p><p id="a">b</p>'), ['index.html: line 3: the place "a" is there twice']
        )


def titles(root):
    """The titles of the window's panels and alerts, out of its sources."""
    found = []
    for path, pattern in (
        ("platform/qt/texts.h", r'Title\(\) \{ return translated\("([^"]+)"\)'),
        ("deep/texts.h", r'k(?!SaveTitle|FilmsTitle|FolderTitle)\w+Title\s*=\s*platform::translatable\(\s*"([^"]+)"\)'),
        (
            "app/texts.h",
            r"k(?:NoSpace|CannotBeChosen|CannotSaveThere|Finishing|WriteFailed|Gone|Link|Unreadable|NoWorkingFolder|"
            r"FolderRefused|SaveIncomplete)"
            r"Title = "
            r'"([^"]+)"',
        ),
        ("app/texts.h", r'kQuitMessage = "([^"]+)"'),
        ("update/update_paths.h", r'kTitle = "([^"]+)"'),
    ):
        with open(os.path.join(root, path), encoding="utf-8") as file:
            found += re.findall(pattern, file.read())
    with open(os.path.join(root, "platform/qt/window/film_texts.cpp"), encoding="utf-8") as file:
        by_verdict = re.search(r"QString completedTitle\(.*?\n}", file.read(), re.DOTALL).group()
    return found + re.findall(r'translated\("([^"]+)"\)', by_verdict)


class HelpPages(unittest.TestCase):
    root = ""

    def test_have_no_problem(self):
        self.assertEqual(problems(os.path.join(self.root, "resources", "help", "HTML")), [])

    def test_explain_each_message(self):
        with open(os.path.join(self.root, "resources/help/HTML/index.html"), encoding="utf-8") as file:
            explained = re.findall('<dt(?: id="[^"]*")?>([^<]+)</dt>', file.read())
        asked = titles(self.root)
        self.assertGreaterEqual(len(asked), 30)
        self.assertEqual([title for title in asked if title not in explained], [])

    def test_show_the_icon_of_the_application(self):
        contents = []
        for path in ("pictures/zelvo-avi-repair.svg", "help/HTML/pictures/icon.svg"):
            with open(os.path.join(self.root, "resources", path), "rb") as file:
                contents.append(file.read())
        self.assertEqual(contents[0], contents[1])


if __name__ == "__main__":
    HelpPages.root = sys.argv.pop(1)
    unittest.main()
