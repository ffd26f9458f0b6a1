#!/usr/bin/env python3
"""Tests of tools/check_decisions.py on small trees of their own: marks and pages that agree pass, each break is found.

Usage: check_decisions_test.py PATH_OF_CHECK_DECISIONS
"""
import contextlib
import importlib.util
import io
import os
import sys
import tempfile
import unittest

CHECKER = None  # the module
WORD = "Decision"  # by itself, so that no line of this file is a mark
MARK = f"// {WORD}: scan, Short reads end it\n"
PAGE = "# The scan\n\nWhat counts.\n\n## Short reads end it\n\nThey do.\n"
INDEX = "# Decisions\n\n[The scan](scan.md)\n\n- [Short reads end it](scan.md#short-reads-end-it)\n"


def tree(**changes):
    """A tree that is right, with the given files changed; None takes one away. "__" stands for "/", "_dot_" for "."."""
    files = {"engine/scan.cpp": MARK, "docs/decisions/scan.md": PAGE, "docs/decisions/README.md": INDEX}
    for name, text in changes.items():
        path = name.replace("__", "/").replace("_dot_", ".")
        files.pop(path, None)
        if text is not None:
            files[path] = text
    return files


class CheckDecisions(unittest.TestCase):
    def check(self, files, *options):
        """Runs the checker over a tree of the given files; answers its exit code and its lines."""
        with tempfile.TemporaryDirectory() as root:
            for path, text in files.items():
                whole = os.path.join(root, path)
                os.makedirs(os.path.dirname(whole), exist_ok=True)
                with open(whole, "w", encoding="utf-8") as source:
                    source.write(text)
            said = io.StringIO()
            with contextlib.redirect_stdout(said):
                code = CHECKER.main([*options, root])
            return code, said.getvalue().splitlines()

    def assert_broken(self, files, *lines):
        code, told = self.check(files)
        self.assertEqual(code, 1)
        self.assertEqual(told, list(lines))

    def assert_whole(self, files, count=1):
        self.assertEqual(self.check(files), (0, [f"{count} decisions on 1 pages are marked and written down."]))

    def test_mark_and_paragraph_that_agree_pass(self):
        self.assert_whole(tree())

    def test_mark_after_code_after_words_and_in_a_script_passes(self):
        for text in (f"  scan();  {MARK}", f"/// Ends there. {MARK}", MARK.replace("//", "///")):
            self.assert_whole(tree(engine__scan_dot_cpp=text))
        for name in ("zelvo", "cmake__a_dot_cmake", "tests__CMakeLists_dot_txt", "tools__a_dot_py"):
            self.assert_whole(tree(engine__scan_dot_cpp="", **{name: MARK.replace("//", "#")}))

    def test_title_with_commas_and_quotes_passes(self):
        title = 'Esc answers "No", not "Yes"'
        self.assert_whole(
            tree(
                engine__scan_dot_cpp=f"// {WORD}: scan, {title}\n",
                docs__decisions__scan_dot_md=f"# The scan\n\n## {title}\n",
                docs__decisions__README_dot_md=f"[The scan](scan.md)\n[{title}](scan.md#esc-answers-no-not-yes)\n",
            )
        )

    def test_mark_of_no_page_is_found(self):
        self.assert_broken(
            tree(engine__scan_dot_h=f"\n// {WORD}: scanner, Short reads end it\n"),
            "engine/scan.h:2: there is no page docs/decisions/scanner.md",
        )

    def test_mark_of_no_title_is_found(self):
        self.assert_broken(
            tree(engine__scan_dot_h=f"// {WORD}: scan, Short reads end\n"),
            'engine/scan.h:1: docs/decisions/scan.md has no title "Short reads end"',
        )

    def test_words_after_a_title_are_found(self):
        self.assert_broken(
            tree(engine__scan_dot_h=f"// {WORD}: scan, Short reads end it, as ever\n"),
            'engine/scan.h:1: docs/decisions/scan.md has no title "Short reads end it, as ever"',
        )

    def test_mark_of_another_form_is_found(self):
        for form in (
            f"// {WORD} 0012",
            f"// {WORD}: 0012",
            f"/// {WORD}: scan",
            f"// {WORD}: Scan, Short reads end it",
        ):
            self.assert_broken(
                tree(engine__scan_dot_h=form + "\n"),
                "engine/scan.h:1: a mark names a theme and a title, and nothing follows it on its line",
            )

    def test_word_in_a_sentence_or_in_code_is_no_mark(self):
        self.assert_whole(tree(engine__scan_dot_h=f"// The {WORD} is final.\nenum class {WORD} {{ yes }};\n"))

    def test_title_without_a_mark_is_found(self):
        self.assert_broken(
            tree(engine__scan_dot_cpp=""), 'docs/decisions/scan.md:5: no mark names "Short reads end it"'
        )

    def test_title_that_says_that_it_has_no_mark_passes_and_is_listed(self):
        files = tree(
            engine__scan_dot_cpp="",
            docs__decisions__scan_dot_md=PAGE.replace("end it\n", "end it\n\n<!-- no mark -->\n"),
        )
        self.assert_whole(files)
        self.assertEqual(self.check(files, "--verbose")[1][0], "scan, Short reads end it: no mark leads here")

    def test_title_that_says_so_and_has_a_mark_is_found(self):
        self.assert_broken(
            tree(docs__decisions__scan_dot_md=PAGE.replace("end it\n", "end it\n\n<!-- no mark -->\n")),
            'docs/decisions/scan.md:5: "Short reads end it" has a mark, and its page says that it ' "has none",
        )

    def test_title_that_is_there_twice_is_found(self):
        self.assert_broken(
            tree(docs__decisions__scan_dot_md=PAGE + "\n## Short reads end it\n"),
            "docs/decisions/scan.md:9: this title is on the page twice",
        )

    def test_page_without_a_title_is_found(self):
        index = INDEX + "\n[The rest](rest.md)\n"
        self.assert_broken(
            tree(docs__decisions__rest_dot_md="# Rest\n", docs__decisions__README_dot_md=index),
            "docs/decisions/rest.md:1: this page has no title",
        )

    def test_page_that_the_index_leaves_out_is_found(self):
        self.assert_broken(
            tree(docs__decisions__README_dot_md=INDEX.replace("[The scan](scan.md)", "")),
            "docs/decisions/README.md:1: scan.md is missing",
        )

    def test_title_that_the_index_leaves_out_is_found(self):
        self.assert_broken(
            tree(docs__decisions__README_dot_md="[The scan](scan.md)\n"),
            'docs/decisions/README.md:1: "Short reads end it" of scan.md is missing',
        )

    def test_missing_index_is_found(self):
        self.assert_broken(tree(docs__decisions__README_dot_md=None), "docs/decisions/README.md:1: there is no index")

    def test_link_of_a_document_to_no_page_or_title_is_found(self):
        self.assert_broken(
            tree(
                docs__a_dot_md="[why](decisions/writer.md)\n\n[why](decisions/scan.md#long-reads)\n",
                README_dot_md="[why](docs/decisions/scan.md#short-reads-end-it)\n",
            ),
            "docs/a.md:1: there is no page docs/decisions/writer.md",
            'docs/a.md:3: docs/decisions/scan.md has no title for "#long-reads"',
        )

    def test_build_folder_and_hidden_folders_are_not_looked_at(self):
        self.assert_whole(tree(build__a_dot_cpp=f"// {WORD} 0012\n", _dot_cache__b_dot_cpp=f"// {WORD} 0012\n"))

    def test_every_break_is_listed(self):
        code, lines = self.check(
            tree(engine__a_dot_cpp=f"// {WORD} 0012\n// {WORD}: scan, None\n", engine__scan_dot_cpp="")
        )
        self.assertEqual(code, 1)
        self.assertEqual(len(lines), 3)


if __name__ == "__main__":
    found = importlib.util.spec_from_file_location("checker", sys.argv.pop(1))
    CHECKER = importlib.util.module_from_spec(found)
    found.loader.exec_module(CHECKER)
    unittest.main()
