#!/usr/bin/python3
"""The real window for a long time, on a display of its own: used at random, and killed at random.

Usage: soak.py --window PROGRAM --cli PROGRAM [--minutes M] [--kills N] [--seed S]

First one process is used for M minutes (30), by what a screen reader can press, the keyboard and the window manager:
films are chosen, repaired, stopped, deep-repaired, looked at and saved, and the window is resized. It fails when the
program ends, when an answer takes more than 2 s (the copy of a save excepted), when it holds more than a tenth more
memory in the last third than in the second, or has more descriptors or threads at the end than at the beginning.
Then a process is killed N times (100) at random moments of a repair, a deep repair or a save, and started again: nothing
of it may be left by then but what was finished, and the films are as they were. Prints what it found, and the seed that
repeats its choices. Exits with 77 where a part of the desktop is missing.
"""
import argparse
import glob
import os
import random
import shutil
import signal
import subprocess
import sys
import tempfile
import time

import click_through
from click_through import BUTTON, DIALOG, FRAME, LABEL, PATIENCE
from soak_films import digest, make_films
from soak_watch import Figures, Pinger, descriptors, stray_programs, threads

LONGEST_ANSWER = 2.0  # seconds
MORE_MEMORY = 1.10  # of the last third to the second
CHOOSE = "Choose a file\u2026"
DEEP = "Deep repair"
SAVE = "Save\u2026"
# What leads out of the program, or to a browser that this machine may have.
LEFT_ALONE = {"Help", "click here", "Open folder", "Change\u2026", "Look for an update", "Up", "New folder\u2026"}
# What is pressed rarely, or the rest would never come to its end.
RARE = {"Stop": 0.3, "Home": 0.3, "Cancel": 0.2, "Keep repairing": 1.0, "Mute": 0.3, "Sound on": 0.5}


class Program:
    """The window, and what a screen reader knows of it."""

    def __init__(self, options, home, arguments=()):
        env = dict(
            os.environ,
            HOME=home,
            XDG_CACHE_HOME=os.path.join(home, "cache"),
            XDG_CONFIG_HOME=os.path.join(home, "config"),
            XDG_DATA_HOME=os.path.join(home, "data"),
            QT_QPA_PLATFORM="xcb",
            QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1",
            LC_ALL="C.UTF-8",
        )
        self.said = os.path.join(home, "said")
        with open(self.said, "ab") as said:
            command = [options.window, "--appearance", "light", *arguments]
            self.process = subprocess.Popen(command, env=env, stdout=said, stderr=said)
        self.screen = click_through.Screen("zelvo-avi-repair")
        self.screen.wait("the window", FRAME)

    def shown(self):
        """Role, name and node of all that can be pressed or typed into, and the uppermost dialog that holds them."""
        found, dialogs = [], []
        desktop = self.screen.atspi.get_desktop(0)

        def walk(node, dialog):
            states = node.get_state_set()
            if not states.contains(self.screen.atspi.StateType.SHOWING):
                return
            role, name = node.get_role_name(), node.get_name() or ""
            if role in DIALOG:
                dialog = name
                dialogs.append(name)
            usable = states.contains(self.screen.atspi.StateType.ENABLED)
            found.append((role, name, node, dialog, usable))
            for i in range(node.get_child_count()):
                child = node.get_child_at_index(i)
                if child is not None:
                    walk(child, dialog)

        try:
            for i in range(desktop.get_child_count()):
                application = desktop.get_child_at_index(i)
                if application is None or self.screen.name not in (application.get_name() or ""):
                    continue
                for j in range(application.get_child_count()):
                    frame = application.get_child_at_index(j)
                    if frame is not None:
                        walk(frame, None)
        except self.screen.error:
            return [], None  # the tree changed meanwhile
        dialog = dialogs[-1] if dialogs else None
        return [one for one in found if one[3] == dialog], dialog

    def press(self, node):
        try:
            for i in range(node.get_n_actions()):
                if node.get_action_name(i) in ("Press", "Toggle", "click"):
                    return node.do_action(i)
        except self.screen.error:
            pass  # gone meanwhile
        return False

    def field(self, elements):
        for role, _, node, _, _ in elements:
            if role in click_through.TEXT and node.get_state_set().contains(self.screen.atspi.StateType.EDITABLE):
                return node
        return None

    def press_named(self, name, patience=PATIENCE):
        deadline = time.monotonic() + patience
        while time.monotonic() < deadline:
            for role, text, node, _, usable in self.shown()[0]:
                if role in BUTTON and text == name and usable and self.press(node):
                    return True
            time.sleep(0.05)
        return False

    def end(self, number):
        self.process.send_signal(number)
        try:
            return self.process.wait(timeout=PATIENCE)
        except subprocess.TimeoutExpired:
            self.process.kill()
            self.process.wait()
            return None


class User:
    """Uses a program at random."""

    def __init__(self, program, chance, films, saved):
        self.program = program
        self.chance = chance
        self.films = films
        self.saved = saved
        self.pressed = {}
        self.last = []
        self.copies = []  # when the film was being copied, which may hold up the window
        self.saves = 0
        self.choosing = 0

    def note(self, name):
        self.pressed[name] = self.pressed.get(name, 0) + 1
        self.last = [*self.last[-19:], name]

    def answer_chooser(self, dialog, field, elements):
        """A film, or a new place to save."""
        self.choosing += 1
        buttons = {name: node for role, name, node, _, usable in elements if role in BUTTON and usable}
        done = next((name for name in ("Open", "Save", "Choose", "Add") if name in buttons), None)
        if done is None or self.choosing > 3 or self.chance.random() < 0.15:
            self.choosing = 0
            click_through.keys("Escape")
            return
        path = self.chance.choice(self.films)
        if done != "Open":
            self.saves += 1
            path = os.path.join(self.saved, f"{self.saves}.avi")
        try:
            field.set_text_contents(path)
        except self.program.screen.error:
            return
        self.note(f"{dialog or 'a chooser'}: {done}")
        if done == "Save":
            self.copies.append(time.monotonic())
        self.program.press(buttons[done])

    def resize(self):
        size = (str(self.chance.randint(640, 1200)), str(self.chance.randint(420, 760)))
        found = subprocess.run(
            ["xdotool", "search", "--onlyvisible", "--name", "Zelvo AVI Repair"],
            capture_output=True,
            text=True,
            timeout=PATIENCE,
            check=False,
        ).stdout.split()
        if found:
            command = ["xdotool", "windowsize", found[0], *size]
            subprocess.run(command, timeout=PATIENCE, check=False, stderr=subprocess.DEVNULL)
            self.note("resize")

    def step(self):
        if self.chance.random() < 0.08:
            return self.resize()
        elements, dialog = self.program.shown()
        field = self.program.field(elements) if dialog else None
        if field is not None:
            return self.answer_chooser(dialog, field, elements)
        self.choosing = 0
        sliders = [node for role, name, node, _, usable in elements if role == "slider" and usable]
        if sliders and self.chance.random() < 0.3:
            return self.slide(self.chance.choice(sliders))
        avoided = LEFT_ALONE | ({"Play"} if dialog else set())
        choices = [
            (name, node)
            for role, name, node, _, usable in elements
            if role in BUTTON and usable and name and name not in avoided
        ]
        if not choices:
            return None
        weights = [RARE.get(name, 1.0) for name, _ in choices]
        name, node = self.chance.choices(choices, weights)[0]
        if self.program.press(node):
            self.note(f"{dialog}: {name}" if dialog else name)
        return None

    def slide(self, slider):
        try:
            slider.set_current_value(self.chance.uniform(0, slider.get_maximum_value()))
            self.note("slide")
        except self.program.screen.error:
            pass

    def go_home(self):
        """Back to the first page, whatever is shown."""
        deadline = time.monotonic() + 2 * PATIENCE
        leave = (
            "Stop the repair",
            "Stop saving",
            "Stop and leave",
            "Leave",
            "Not now",
            "OK",
            "See the result",
            "Cancel",
        )
        while time.monotonic() < deadline:
            elements, dialog = self.program.shown()
            buttons = {name: node for role, name, node, _, usable in elements if role in BUTTON and usable}
            if dialog is None and CHOOSE in buttons:
                return True
            if dialog is None and "Choose another\u2026" in buttons:
                return True
            if self.program.field(elements) is not None and dialog:
                click_through.keys("Escape")
            else:
                order = leave if dialog else ("Stop preview", "Home", "Stop")
                name = next((one for one in order if one in buttons), None)
                if name is None and dialog and buttons:
                    name = self.chance.choice(sorted(buttons))
                if name is not None:
                    self.program.press(buttons[name])
            time.sleep(0.2)
        return False


def figures_at_rest(pid, wanted=None):
    """Descriptors and threads, once they are no more than wanted or time is up."""
    deadline = time.monotonic() + PATIENCE
    while True:
        now = (descriptors(pid), threads(pid))
        enough = wanted is None or all(one <= most for one, most in zip(now, wanted))
        if enough or time.monotonic() > deadline:
            return now
        time.sleep(0.5)


def use(options, home, chance):
    """One process, used for a long time. Answers what is wrong."""
    films = make_films(os.path.join(home, "Videos"))
    before = {film: digest(film) for film in films}
    saved = os.path.join(home, "Saved")
    os.makedirs(saved)
    program = Program(options, home)
    user = User(program, chance, films, saved)
    wrong = []
    pinger = Pinger()
    try:
        # What a program loads at the first use of its parts stays: it is compared with itself after that.
        warm = time.monotonic() + min(60.0, options.minutes * 60 / 4)
        while time.monotonic() < warm and program.process.poll() is None:
            user.step()
        if program.process.poll() is None and not user.go_home():
            return ["the first page could not be reached:\n" + program.screen.listing()]
        if program.process.poll() is not None:
            return [ended(program, user)]
        time.sleep(3)
        first = figures_at_rest(program.process.pid)
        figures = Figures(program.process.pid)
        start = time.monotonic()
        end = start + options.minutes * 60
        while time.monotonic() < end and program.process.poll() is None:
            user.step()
            figures.take(start)
            if len(os.listdir(saved)) > 20:
                shutil.rmtree(saved)
                os.makedirs(saved)
            time.sleep(chance.choice((0, 0, 0.1, 0.5)))
        if program.process.poll() is not None:
            return [ended(program, user)]
        if not user.go_home():
            wrong.append("the first page could not be reached:\n" + program.screen.listing())
        last = figures_at_rest(program.process.pid, first)
    finally:
        answers = pinger.end()
        program.end(signal.SIGTERM)
    second, third = figures.thirds(options.minutes * 60)
    late = [
        one
        for one in answers
        if one[1] > LONGEST_ANSWER and not any(0 <= one[0] + one[1] - c < 30 for c in user.copies)
    ]
    print("Pressed: " + ", ".join(f"{name} {count}" for name, count in sorted(user.pressed.items())))
    print(
        f"Answers: {len(answers)}, the longest {max((one[1] for one in answers), default=0):.2f} s, {len(late)} too late."
    )
    print(f"Memory: {second:.1f} MiB in the second third, {third:.1f} MiB in the last.")
    print(f"Descriptors and threads: {first} at the start, {last} at the end.")
    if not answers:
        wrong.append("nothing answered")
    if not options.untimed:
        wrong += [f"an answer took {one[1]:.2f} s" for one in late]
    if not options.untimed and third > second * MORE_MEMORY:
        wrong.append(f"memory grew from {second:.1f} to {third:.1f} MiB")
    if last[0] > first[0] or last[1] > first[1]:
        wrong.append(f"descriptors and threads were {first} and are {last}")
    wrong += [f"{film} was changed" for film in films if digest(film) != before[film]]
    for needed in ("Repair", "Preview") if options.minutes >= 5 else ():
        if needed not in user.pressed:
            wrong.append(f"{needed!r} was never pressed")
    return wrong


def ended(program, user):
    with open(program.said, "rb") as said:
        words = said.read()[-2000:].decode(errors="replace")
    pressed = ", ".join(user.last)
    return f"the program ended with {program.process.poll()} after {pressed}; what it said:\n{words}"


def kill(options, home, chance):
    """A process that is killed again and again. Answers what is wrong."""
    films = make_films(os.path.join(home, "Videos"))
    before = {film: digest(film) for film in films}
    wrong, stages = [], {}
    for turn in range(options.kills):
        film = films[turn % 2]
        saved = os.path.join(home, f"Saved{turn}")
        program = Program(options, home, [film])
        wrong += leftovers(home, turn)
        deadline = time.monotonic() + chance.uniform(0.2, 6.0)
        stage = "started"
        way = chance.choice(("Repair", DEEP))
        is_deep = False
        while time.monotonic() < deadline:
            elements, dialog = program.shown()
            buttons = {name: node for role, name, node, _, usable in elements if role in BUTTON and usable}
            field = program.field(elements) if dialog else None
            if field is not None and "Save" in buttons:
                stage = "saving"
                field.set_text_contents(saved + ".avi" if is_deep else saved)
                program.press(buttons["Save"])
            else:
                order = ("See the result", "Not now", "OK", SAVE) if stage != "started" else (way, "Repair")
                name = next((one for one in order if one in buttons), None)
                if name is not None:
                    stage = {"Repair": "repairing", DEEP: "deep repair", SAVE: "at the result"}.get(name, stage)
                    is_deep = is_deep or name == DEEP
                    program.press(buttons[name])
            time.sleep(0.02)
        program.end(signal.SIGKILL)
        stages[stage] = stages.get(stage, 0) + 1
        wrong += unfinished(options, home, film, saved)
        if wrong:
            break
    if not wrong:
        program = Program(options, home)
        wrong += leftovers(home, options.kills)
        program.end(signal.SIGTERM)
    wrong += [f"{film} was changed" for film in films if digest(film) != before[film]]
    print("Killed: " + ", ".join(f"{stage} {count}" for stage, count in sorted(stages.items())))
    return wrong


def leftovers(home, turn):
    """What the next start left of the process before it."""
    deadline = time.monotonic() + 15
    while True:
        found = [p for p in glob.glob(os.path.join(home, "cache", "**"), recursive=True) if os.path.isfile(p)]
        found = [p for p in found if os.path.getsize(p) > 0]
        folders = glob.glob(os.path.join(home, "cache", "**", "deep-*"), recursive=True)
        strays = stray_programs(home)
        if not (found or len(folders) > 1 or strays):
            return []
        if time.monotonic() > deadline:
            return [f"after kill {turn}: " + ", ".join(map(str, found + folders + strays))]
        time.sleep(0.2)


def unfinished(options, home, film, saved):
    """Files under final names that are not whole."""
    wrong = []
    for path in glob.glob(os.path.join(saved, "*.avi")) + glob.glob(saved + ".avi"):
        deep = path == saved + ".avi"
        expected = os.path.join(home, "Expected" + ("Deep" if deep else "") + os.path.basename(film))
        if not os.path.exists(expected):
            command = ["salvage", film, "-o", expected] if deep else ["repair", film, "--into", expected]
            subprocess.run([options.cli, *command, "--quiet"], check=True, stdout=subprocess.DEVNULL)
        whole = expected if deep else os.path.join(expected, "repaired.avi")
        if digest(path) != digest(whole):
            wrong.append(f"{path} is there and not whole")
    return wrong


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--window", required=True)
    parser.add_argument("--cli", required=True)
    parser.add_argument("--minutes", type=float, default=30)
    parser.add_argument("--kills", type=int, default=100)
    parser.add_argument("--untimed", action="store_true", help="for a short run on a busy machine")
    parser.add_argument("--seed", type=int, default=random.SystemRandom().randrange(1 << 32))
    options = parser.parse_args()
    if "CLICK_THROUGH_SESSION" not in os.environ:
        click_through.restart_in_session()
    print(f"Seed {options.seed}, {options.minutes:g} minutes, {options.kills} kills.", flush=True)
    wrong = []
    for phase, is_wanted in ((use, options.minutes > 0), (kill, options.kills > 0)):
        if not is_wanted:
            continue
        chance = random.Random(f"{options.seed} {phase.__name__}")
        with click_through.Display(), tempfile.TemporaryDirectory(prefix="zelvo-soak-") as home:
            found = phase(options, home, chance)
        for one in found:
            print("soak: " + one)
        sys.stdout.flush()
        wrong += found
    sys.exit(1 if wrong else 0)


if __name__ == "__main__":
    main()
