#!/usr/bin/env python3
"""Checks that each choice marked in the sources is written down in docs/decisions/, and each one there is marked.

Usage: check_decisions.py [--verbose] [ROOT]
A mark is the end of a comment: the word "Decision", a colon, the theme, a comma, the title. The theme names a page of
docs/decisions/, the title one of its headings of the second level. A paragraph that no mark leads to has the line
"<!-- no mark -->" below its title; --verbose lists these. The index, README.md, links to every title of every page.
Links to these pages in other documents must lead to a title, too.
Prints each break, one a line, and exits with 1 when there is any.
"""
import os
import re
import sys

PAGES = "docs/decisions"
INDEX = PAGES + "/README.md"
NO_MARK = "<!-- no mark -->"
SOURCES = (".h", ".cpp", ".cmake", ".in", ".py", ".sh", ".txt", ".yml")
SCRIPTS = ("zelvo",)

# A mark begins with the word and its colon; a word and a number is the form of old.
BEGINNING = re.compile(r"(?://|#).*\bDecision(?::| +\d)")
MARK = re.compile(r"(?://|#).*\bDecision: ([a-z-]+), (\S.*?)\s*$")
LINK = re.compile(r"\]\(([^)\s]*)\)")


def files_of(root):
    for folder, folders, names in os.walk(root):
        folders[:] = sorted(f for f in folders if not f.startswith(".") and f != "build")
        for name in sorted(names):
            yield os.path.relpath(os.path.join(folder, name), root)


def lines_of(root, path):
    with open(os.path.join(root, path), encoding="utf-8", errors="replace") as text:
        return text.read().splitlines()


def anchor_of(title):
    """The name under which a heading can be linked to."""
    return re.sub(r"[^\w\- ]", "", title.lower()).replace(" ", "-")


class Page:
    """One theme: its titles with their lines, and those of them that no mark leads to."""

    def __init__(self, root, path):
        self.path = path
        self.theme = os.path.basename(path)[: -len(".md")]
        self.titles = {}
        self.unmarked = set()
        self.twice = []
        lines = lines_of(root, path)
        for number, line in enumerate(lines, 1):
            if not line.startswith("## "):
                continue
            title = line[3:].strip()
            if title in self.titles:
                self.twice.append(number)
            self.titles[title] = number
            if next((other.strip() for other in lines[number:] if other.strip()), "") == NO_MARK:
                self.unmarked.add(title)

    def anchors(self):
        return {anchor_of(title): title for title in self.titles}


def broken_marks(root, pages, seen):
    """What is wrong with the marks; notes in `seen` the (theme, title) pairs that the others name."""
    for path in files_of(root):
        if not path.endswith(SOURCES) and path not in SCRIPTS:
            continue
        for number, line in enumerate(lines_of(root, path), 1):
            if not BEGINNING.search(line):
                continue
            mark = MARK.search(line)
            if not mark:
                yield f"{path}:{number}: a mark names a theme and a title, and nothing follows it on its line"
                continue
            theme, title = mark.groups()
            if theme not in pages:
                yield f"{path}:{number}: there is no page {PAGES}/{theme}.md"
            elif title not in pages[theme].titles:
                yield f'{path}:{number}: {PAGES}/{theme}.md has no title "{title}"'
            else:
                seen.add((theme, title))


def broken_titles(pages, seen):
    for page in pages.values():
        for number in page.twice:
            yield f"{page.path}:{number}: this title is on the page twice"
        if not page.titles:
            yield f"{page.path}:1: this page has no title"
        for title, number in page.titles.items():
            if (page.theme, title) in seen:
                if title in page.unmarked:
                    yield f'{page.path}:{number}: "{title}" has a mark, and its page says that it has none'
            elif title not in page.unmarked:
                yield f'{page.path}:{number}: no mark names "{title}"'


def broken_links(root, pages):
    """Links of all documents to the pages; the index has to link to every title."""
    linked = set()
    for path in files_of(root):
        if not path.endswith(".md"):
            continue
        for number, line in enumerate(lines_of(root, path), 1):
            for target in LINK.findall(line):
                file, _, anchor = target.partition("#")
                whole = os.path.normpath(os.path.join(os.path.dirname(path), file)) if file else path
                if os.path.dirname(whole) != PAGES or whole == INDEX or not whole.endswith(".md"):
                    continue
                page = pages.get(os.path.basename(whole)[: -len(".md")])
                if page is None:
                    yield f"{path}:{number}: there is no page {whole}"
                elif anchor and anchor not in page.anchors():
                    yield f'{path}:{number}: {whole} has no title for "#{anchor}"'
                elif path == INDEX:
                    linked.add((page.theme, anchor))
    for page in pages.values():
        if (page.theme, "") not in linked:
            yield f"{INDEX}:1: {os.path.basename(page.path)} is missing"
        for anchor, title in page.anchors().items():
            if (page.theme, anchor) not in linked:
                yield f'{INDEX}:1: "{title}" of {os.path.basename(page.path)} is missing'


def main(given):
    arguments = [argument for argument in given if argument != "--verbose"]
    root = arguments[0] if arguments else os.path.join(os.path.dirname(os.path.abspath(__file__)), "..")
    if not os.path.exists(os.path.join(root, INDEX)):
        print(f"{INDEX}:1: there is no index")
        return 1
    pages = {}
    for name in sorted(os.listdir(os.path.join(root, PAGES))):
        if name.endswith(".md") and name != "README.md":
            page = Page(root, f"{PAGES}/{name}")
            pages[page.theme] = page
    seen = set()
    broken = [*broken_marks(root, pages, seen), *broken_titles(pages, seen), *broken_links(root, pages)]
    if "--verbose" in given:
        for page in pages.values():
            for title in page.titles:
                if title in page.unmarked:
                    print(f"{page.theme}, {title}: no mark leads here")
    count = sum(len(page.titles) for page in pages.values())
    print("\n".join(broken) if broken else f"{count} decisions on {len(pages)} pages are marked and written down.")
    return 1 if broken else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
