#!/usr/bin/env python3
"""Checks that every text of the window is translated, and that the given ones are not.

Usage: check_translations.py [--update] [ROOT]
A text is named by itself in English. It is found where it stands in the parentheses of `translated`, `counted` (its
first argument) or `translatable`, as it is or as a constant of the room. resources/translations/zelvo_LANGUAGE.ts holds
what it is in another language; --update adds the missing ones there, unfinished, and takes out those that are no
longer found. resources/translations/given_texts.txt lists the texts that stay as they are in every language.
Prints each fault, one a line, and exits with 1 when there is any.
"""
import os
import re
import sys
import xml.etree.ElementTree as ElementTree
from xml.sax.saxutils import escape

FOLDER = "resources/translations"
GIVEN = FOLDER + "/given_texts.txt"
LANGUAGES = {"de": "de_DE", "fr": "fr_FR"}
FORMS = 2  # of a text with a number, in each of these languages
ROOMS = ("app", "avi", "cli", "controls", "deep", "engine", "platform", "salvage", "storage", "update")

STRING = r'"(?:[^"\\\n]|\\.)*"'
TOKEN = re.compile(r"//[^\n]*|/\*.*?\*/|" + STRING + r"|'(?:[^'\\\n]|\\.)+'", re.S)
CALL = re.compile(r"\b(translated|counted|translatable)\s*\(")
CONSTANT = re.compile(r"\b(k[A-Z]\w*)\b")
DEFINITION = re.compile(r"\bconstexpr\b[^=;(){}]*\b(k[A-Z]\w*)\s*(?:=|(?=\{))([^;]*);", re.S)
ESCAPE = re.compile(r"\\(u[0-9a-fA-F]{4}|.)")
PLACE = re.compile(r"%(?:[1-9]|n)")
NARROW_SPACES = "\u202f\u00a0"


def without_comments(text):
    return TOKEN.sub(lambda found: " " if found.group().startswith(("//", "/*")) else found.group(), text)


def value_of(literals):
    """What adjacent literals, with their quotes, come to."""

    def character(found):
        what = found.group(1)
        if what[0] == "u" and len(what) == 5:
            return chr(int(what[1:], 16))
        return {"n": "\n", "t": "\t"}.get(what, what)

    return "".join(ESCAPE.sub(character, one[1:-1]) for one in re.findall(STRING, literals))


def texts_in(code):
    """The texts of a piece of code, adjacent literals joined."""
    return [value_of(found) for found in re.findall(rf"{STRING}(?:\s*{STRING})*", code)]


def argument(code, begin, first_only):
    """What stands from `begin`, just after a parenthesis, to the one that closes it, or to the first comma."""
    depth = 0
    position = begin
    while position < len(code):
        found = TOKEN.match(code, position)
        if found:
            position = found.end()
            continue
        sign = code[position]
        if sign in "([{":
            depth += 1
        elif sign in ")]}":
            if depth == 0:
                break
            depth -= 1
        elif sign == "," and depth == 0 and first_only:
            break
        position += 1
    return code[begin:position]


class Sources:
    """The sources below a root: their texts, and the constants that some of them stand in."""

    def __init__(self, root):
        self.code = {}
        for room in ROOMS:
            for folder, folders, names in os.walk(os.path.join(root, room)):
                folders.sort()
                for name in sorted(names):
                    if name.endswith((".h", ".cpp")):
                        path = os.path.join(folder, name)
                        with open(path, encoding="utf-8") as source:
                            self.code[os.path.relpath(path, root)] = without_comments(source.read())
        self.constants = {}  # name -> [(file, texts)]
        for file, code in self.code.items():
            for name, value in DEFINITION.findall(code):
                self.constants.setdefault(name, []).append((file, texts_in(value)))
        self.faults = []
        self.texts = {}  # text -> file in which it stands
        self.used = set()  # (file, constant) that are translated
        for file, code in self.code.items():
            for call in CALL.finditer(code):
                self.take(file, argument(code, call.end(), call.group(1) == "counted"))

    def take(self, file, code):
        for text in texts_in(code):
            self.texts.setdefault(text, file)
        for name in CONSTANT.findall(TOKEN.sub(" ", code)):
            where, texts = self.constant(file, name)
            if where is None:
                continue
            self.used.add((where, name))
            for text in texts:
                self.texts.setdefault(text, where)

    def constant(self, file, name):
        """The definition that the name stands for in a file: its own, or that of the nearest folder."""
        found = [one for one in self.constants.get(name, []) if one[1]]
        if not found:
            return None, []

        def nearness(one):
            return len(os.path.commonprefix([os.path.dirname(one[0]) + "/", os.path.dirname(file) + "/"]))

        own = [one for one in found if one[0] == file]
        best = max(map(nearness, found))
        nearest = own or [one for one in found if nearness(one) == best]
        if len({tuple(one[1]) for one in nearest}) > 1:
            self.faults.append(f"{file}: {name} is defined more than once")
        return nearest[0]


def translations_of(path):
    """text -> (forms, is finished, tells a number)."""
    found = {}
    for message in ElementTree.parse(path).getroot().iter("message"):
        translation = message.find("translation")
        forms = [one.text or "" for one in translation.findall("numerusform")] or [translation.text or ""]
        text = message.find("source").text or ""
        if text in found:
            raise ValueError(f"{path}: twice: {text!r}")
        found[text] = (forms, translation.get("type") is None, message.get("numerus") == "yes")
    return found


def write_translations(path, language, found):
    lines = ['<?xml version="1.0" encoding="utf-8"?>', "<!DOCTYPE TS>"]
    lines += [f'<TS version="2.1" language="{language}" sourcelanguage="en_US">', "<context>"]
    lines.append("    <name>zelvo</name>")
    for text in sorted(found, key=lambda one: (one.casefold(), one)):
        forms, is_finished, is_counted = found[text]
        lines.append('    <message numerus="yes">' if is_counted else "    <message>")
        lines.append(f"        <source>{escape(text)}</source>")
        state = "" if is_finished else ' type="unfinished"'
        inner = (
            "".join(f"<numerusform>{escape(one)}</numerusform>" for one in forms) if is_counted else escape(forms[0])
        )
        lines.append(f"        <translation{state}>{inner}</translation>")
        lines.append("    </message>")
    lines += ["</context>", "</TS>", ""]
    with open(path, "w", encoding="utf-8") as out:
        out.write("\n".join(lines))


def update(root, texts):
    for language, locale in LANGUAGES.items():
        path = os.path.join(root, FOLDER, f"zelvo_{language}.ts")
        found = translations_of(path) if os.path.exists(path) else {}
        kept = {}
        for text in texts:
            is_counted = "%n" in text
            kept[text] = found.get(text, ([""] * (FORMS if is_counted else 1), False, is_counted))
        write_translations(path, locale, kept)


def typography_faults(language, form):
    if '"' in form:
        yield "straight quotes"
    if language == "de" and ("\u201d" in form or form.count("\u201e") != form.count("\u201c")):
        yield "quotes that are not \u201eso\u201c"
    if language == "fr":
        if any(sign in form for sign in "\u201c\u201d\u201e"):
            yield "quotes that are not \u00ab so \u00bb"
        for found in re.finditer(r"[:;?!\u00bb]|.(?=%)", re.sub(r"\S+://\S*|\d:\d", "", form)):
            before = form[found.start() - 1] if found.start() > 0 else " "
            if found.group() in ":;?!\u00bb" and before not in NARROW_SPACES:
                yield f"no narrow space before {found.group()!r}"
        if re.search(r"\u00ab[^\u202f\u00a0]", form):
            yield "no narrow space after \u00ab"


def form_faults(language, text, form):
    if not form.strip():
        yield "is empty"
        return
    wanted, had = sorted(PLACE.findall(text)), sorted(PLACE.findall(form))
    if wanted != had:
        yield f"has the places {had} instead of {wanted}"
    for end in (".", "\u2026", "?", ":"):
        if text.rstrip().endswith(end) != form.rstrip().endswith(end):
            yield f"ends otherwise than its text ({end!r})"
    if (text[:1] == " ") != (form[:1] == " ") or (text[-1:] == " ") != (form[-1:] == " "):
        yield "begins or ends with another space than its text"
    yield from typography_faults(language, form)


def language_faults(root, language, texts):
    name = f"zelvo_{language}.ts"
    found = translations_of(os.path.join(root, FOLDER, name))
    for text, file in sorted(texts.items()):
        forms, is_finished, is_counted = found.get(text, ([], False, False))
        if not is_finished:
            yield f"{name}: no translation of {text!r} ({file})"
            continue
        if is_counted != ("%n" in text) or len(forms) != (FORMS if is_counted else 1):
            yield f"{name}: the translation of {text!r} has {len(forms)} forms"
        for form in forms:
            for fault in form_faults(language, text, form):
                yield f"{name}: the translation of {text!r} {fault}"
    for text in sorted(set(found) - set(texts)):
        yield f"{name}: nothing says {text!r}"


def given_faults(root, sources):
    with open(os.path.join(root, GIVEN), encoding="utf-8") as lines:
        for line in lines:
            if not line.strip() or line.startswith("#"):
                continue
            file, name, quoted = line.strip().split(" ", 2)
            text = value_of(quoted)
            if name == "-":
                if text not in texts_in(sources.code.get(file, "")):
                    yield f"{file}: does not say {text!r}"
                elif sources.texts.get(text) == file:
                    yield f"{file}: {text!r} is given, and must not be translated"
                continue
            if (file, [text]) not in sources.constants.get(name, []):
                yield f"{file}: {name} is not {text!r}"
            if (file, name) in sources.used:
                yield f"{file}: {name} is given, and must not be translated"


def main(arguments):
    is_update = "--update" in arguments
    roots = [one for one in arguments if one != "--update"]
    root = roots[0] if roots else os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
    sources = Sources(root)
    if is_update:
        update(root, sources.texts)
    faults = list(sources.faults)
    for language in LANGUAGES:
        faults += language_faults(root, language, sources.texts)
    faults += given_faults(root, sources)
    for fault in faults:
        print(fault)
    if not faults:
        print(f"All {len(sources.texts)} texts are translated.")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
