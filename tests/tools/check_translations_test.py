#!/usr/bin/env python3
"""Tests of tools/check_translations.py on small trees of their own: what is translated passes, each fault is found.

Usage: check_translations_test.py PATH_OF_CHECK_TRANSLATIONS
"""
import contextlib
import importlib
import io
import os
import sys
import tempfile
import unittest
from xml.sax.saxutils import escape

CHECKER = None  # the module


def message(text, *forms, state=""):
    inner = f"<translation{state}>{escape(forms[0])}</translation>"
    if "%n" in text:
        inner = "".join(f"<numerusform>{escape(one)}</numerusform>" for one in forms)
        inner = f"<translation{state}>{inner}</translation>"
    numerus = ' numerus="yes"' if "%n" in text else ""
    return f"<message{numerus}><source>{escape(text)}</source>{inner}</message>"


def ts(*messages):
    return "<TS><context><name>zelvo</name>" + "".join(messages) + "</context></TS>"


class CheckTranslations(unittest.TestCase):
    def check(self, sources, german=(), french=(), given="", options=()):
        """Runs the checker over a tree of the given files; answers its exit code, its lines and its German."""
        with tempfile.TemporaryDirectory() as root:
            folder = CHECKER.FOLDER
            files = dict(sources)
            files[f"{folder}/zelvo_de.ts"] = ts(*german)
            files[f"{folder}/zelvo_fr.ts"] = ts(*french)
            files[f"{folder}/given_texts.txt"] = given
            for path, text in files.items():
                whole = os.path.join(root, path)
                os.makedirs(os.path.dirname(whole), exist_ok=True)
                with open(whole, "w", encoding="utf-8") as source:
                    source.write(text)
            said = io.StringIO()
            with contextlib.redirect_stdout(said):
                code = CHECKER.main([*options, root])
            german_now = CHECKER.translations_of(os.path.join(root, folder, "zelvo_de.ts"))
            return code, said.getvalue().splitlines(), german_now

    def assert_faults(self, faults, *arguments, **named):
        code, lines, _ = self.check(*arguments, **named)
        self.assertEqual(lines, faults)
        self.assertEqual(code, 1)

    def assert_whole(self, count, *arguments, **named):
        code, lines, _ = self.check(*arguments, **named)
        self.assertEqual(lines, [f"All {count} texts are translated."])
        self.assertEqual(code, 0)

    def german_faults(self, text, *forms):
        """What is said of a German translation, the French one being right."""
        code = f'auto a = counted("{text}", 2);' if "%n" in text else f'auto a = translated("{text}");'
        french = message(text, *([text] * len(forms)))
        return self.check({"app/a.cpp": code}, [message(text, *forms)], [french])[1]

    def test_texts_are_found_where_they_are_translated(self):
        self.assert_whole(
            7,
            {
                "app/texts.h": 'inline constexpr const char* kFar = "Far\\u2026";\n'
                'constexpr std::array<std::string_view, 2> kNames = {"one", "two"};\n',
                "app/a.cpp": 'say(translated("Near " // comment "no"\n "by"));\n'
                "say(t.translated(texts::kFar)); say(translated(kNames[i]));\n"
                'say(counted("%n film(s)", count("no"))); auto b = translatable("marked");\n'
                '// translated("in a comment")\n'
                'say(translated(x ? "Near by" : "far"));\n',
            },
            *[
                [message(one, one) for one in ("Near by", "Far\u2026", "one", "two", "marked", "far")]
                + [message("%n film(s)", "%n Film", "%n Filme")]
            ]
            * 2,
        )

    def test_a_text_without_translation_is_found(self):
        self.assert_faults(
            ["zelvo_de.ts: no translation of 'Near' (app/a.cpp)"],
            {"app/a.cpp": 'translated("Near")'},
            [],
            [message("Near", "Pr\u00e8s")],
        )

    def test_an_unfinished_translation_is_none(self):
        self.assert_faults(
            ["zelvo_fr.ts: no translation of 'Near' (app/a.cpp)"],
            {"app/a.cpp": 'translated("Near")'},
            [message("Near", "Nah")],
            [message("Near", "Pr\u00e8s", state=' type="unfinished"')],
        )

    def test_a_translation_that_nothing_says_is_found(self):
        self.assert_faults(["zelvo_de.ts: nothing says 'Gone'"], {"app/a.cpp": ""}, [message("Gone", "Fort")])

    def test_other_places_are_found(self):
        self.assertEqual(
            self.german_faults("%1 of %2", "%1 von %1"),
            ["zelvo_de.ts: the translation of '%1 of %2' has the places ['%1', '%1'] instead of ['%1', '%2']"],
        )
        self.assertEqual(self.german_faults("%1 of %2", "%2 mit %1"), ["All 1 texts are translated."])

    def test_every_form_is_looked_at(self):
        self.assertEqual(
            self.german_faults("%n film(s)", "ein Film", "%n Filme"),
            ["zelvo_de.ts: the translation of '%n film(s)' has the places [] instead of ['%n']"],
        )
        self.assertEqual(
            self.german_faults("%n film(s)", "%n Film", ""), ["zelvo_de.ts: the translation of '%n film(s)' is empty"]
        )

    def test_ends_and_quotes_are_looked_at(self):
        for text, form, fault in (
            ("Done.", "Fertig", "ends otherwise than its text ('.')"),
            ("Open", "\u00d6ffnen \u2026", "ends otherwise than its text ('\u2026')"),
            ("Press OK", "Dr\u00fccken Sie \u201cOK\u201d", "quotes that are not \u201eso\u201c"),
            (" and", "und", "begins or ends with another space than its text"),
        ):
            self.assertEqual(self.german_faults(text, form), [f"zelvo_de.ts: the translation of {text!r} {fault}"])

    def test_french_signs_want_their_space(self):
        self.assert_faults(
            ["zelvo_fr.ts: the translation of 'Stop?' no narrow space before '?'"],
            {"app/a.cpp": 'translated("Stop?")'},
            [message("Stop?", "Halt?")],
            [message("Stop?", "Arr\u00eater?")],
        )

    def test_given_texts_are_not_translated(self):
        sources = {"app/texts.h": 'constexpr auto kQuit = "Quit?";', "app/a.cpp": "translated(texts::kQuit)"}
        both = [message("Quit?", "Quit\u202f?")]
        given = '# comment\n\napp/texts.h kQuit "Quit?"\n'
        self.assert_faults(
            ["app/texts.h: kQuit is given, and must not be translated"], sources, both, both, given=given
        )
        del sources["app/a.cpp"]
        self.assert_whole(0, sources, given=given)
        sources["app/texts.h"] = 'constexpr auto kQuit = "Leave?";'
        self.assert_faults(["app/texts.h: kQuit is not 'Quit?'"], sources, given=given)

    def test_given_texts_without_a_constant_are_looked_for(self):
        given = 'app/a.cpp - "Here"\n'
        self.assert_whole(0, {"app/a.cpp": 'say("Here");'}, given=given)
        self.assert_faults(["app/a.cpp: does not say 'Here'"], {"app/a.cpp": 'say("There");'}, given=given)
        both = [message("Here", "Hier")]
        self.assert_faults(
            ["app/a.cpp: 'Here' is given, and must not be translated"],
            {"app/a.cpp": 'translated("Here")'},
            both,
            both,
            given=given,
        )

    def test_update_adds_what_is_new_and_takes_out_what_is_gone(self):
        code, _, german = self.check(
            {"app/a.cpp": 'translated("Old"); counted("%n new", 1)'},
            [message("Old", "Alt"), message("Gone", "Fort")],
            options=["--update"],
        )
        self.assertEqual(code, 1)
        self.assertEqual(german, {"Old": (["Alt"], True, False), "%n new": (["", ""], False, True)})


if __name__ == "__main__":
    sys.path.insert(0, os.path.dirname(sys.argv.pop(1)))
    CHECKER = importlib.import_module("check_translations")
    unittest.main()
