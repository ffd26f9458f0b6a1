#!/usr/bin/env python3
"""Checks a manual page against the program: it names every command and every option that the program's help names, and
no other. Where groff is installed, the page is also set without a warning.

Usage: man_page_test.py PAGE PROGRAM
"""
import re
import shutil
import subprocess
import sys

OPTION = re.compile(r"(?<![\w-])--?[a-z0-9][a-z-]*")


def help_of(program, *command):
    return subprocess.run([program, *command, "--help"], capture_output=True, text=True, check=True).stdout


def options_of_help(text):
    # An option stands at the start of its line, "-o,--output OUTPUT"; examples and explanations name others.
    found = set()
    for line in text.splitlines():
        match = re.match(r"\s+((?:--?[a-z0-9][a-z-]*,?)+)", line)
        if match:
            found.update(OPTION.findall(match.group(1)))
    return found


def commands_of_help(text):
    _, _, commands = text.partition("Subcommands:")
    return {line.split()[0] for line in commands.splitlines() if line.startswith("  ")}


def options_of_page(text):
    # Options are set in bold, in macros that begin with B; examples are whole commands.
    found = set()
    for line in text.splitlines():
        if re.match(r"\.(B|BR|RB)\s", line) and not line.startswith(".B zelvo-avi"):
            found.update(OPTION.findall(line))
    return found


def main():
    page, program = sys.argv[1:]
    with open(page, encoding="utf-8") as file:
        text = file.read().replace("\\-", "-")
    summary = help_of(program)
    commands = commands_of_help(summary)
    options = options_of_help(summary)
    for command in commands:
        options |= options_of_help(help_of(program, command))
    named = options_of_page(text)
    faults = [f"the page lacks {one}" for one in sorted(options - named)]
    faults += [f"the program has no {one}" for one in sorted(named - options)]
    faults += [f"the page lacks the command {one}" for one in sorted(commands) if f".B {one}\n" not in text]
    if not options:
        faults.append("the help names no options")
    if shutil.which("groff"):
        said = subprocess.run(
            ["groff", "-man", "-ww", "-Tutf8", page], capture_output=True, text=True, check=False
        ).stderr
        faults += said.splitlines()
    print("\n".join(faults) or "The page and the program agree.")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
