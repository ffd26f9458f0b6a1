#!/usr/bin/python3
"""The real window for a long time, on a display of its own: used at random, and killed at random.

Usage: soak.py --window PROGRAM --cli PROGRAM [--minutes M] [--kills N] [--seed S]

First one process is used for M minutes (30), by what a screen reader can press, the keyboard and the window manager:
films are chosen, repaired, stopped, deep-repaired, looked at and saved, and the window is resized. It fails when the
program ends, when an answer takes more than 2 s (the copy of a save excepted), when it holds more than a tenth more
memory in the last third than in the second, or has more descriptors or threads at the end than at the beginning.
Then a process is killed N times (100) at random moments of a repair, a deep repair or a save, and started again:
nothing of it may be left by then but what was finished, and the films are as they were. Prints what it found, and the
seed that repeats its choices. Exits with 77 where a part of the desktop is missing.
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
from click_through import BUTTON, PATIENCE
from soak_films import digest, make_films
from soak_user import Program, User
from soak_watch import Figures, Pinger, descriptors, stray_programs, threads

LONGEST_ANSWER = 2.0  # seconds
LONGEST_UNASKED = 20.0  # seconds: what a measure of all answers may miss
MORE_MEMORY = 1.10  # of the last third to the second
DEEP = "Deep repair"
SAVE = "Save\u2026"
FILMS = "Add films\u2026"
START = "Start"
STAGES = {
    "Repair": "repairing",
    DEEP: "deep repair",
    FILMS: "choosing films",
    START: "in the queue",
    SAVE: "at the result",
}
# What 5 minutes are enough for.
NEEDED = ("Repair", DEEP, "Stop", "Preview", "Stop preview", SAVE, FILMS, START, "resize")


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
            make_room(saved, films)
            time.sleep(chance.choice((0, 0, 0.1, 0.5)))
        if program.process.poll() is not None:
            return [ended(program, user)]
        if not user.go_home():
            wrong.append("the first page could not be reached:\n" + program.screen.listing())
        last = figures_at_rest(program.process.pid, first)
    finally:
        over = time.monotonic()
        answers = pinger.end()
        program.end(signal.SIGTERM)
    second, third = figures.thirds(options.minutes * 60)
    late = []
    for when, how_long in answers:
        if how_long > LONGEST_ANSWER:
            excuse = ", while a film was copied" if user.was_copying(when, how_long) else ""
            print(f"An answer took {how_long:.2f} s{excuse}, after: {user.doing(when)}")
            late += [] if excuse else [how_long]
    longest = max((how_long for _, how_long in answers), default=0)
    asked = [start, *(when + how_long for when, how_long in answers if when > start), over]
    unasked = max(later - earlier for earlier, later in zip(asked, asked[1:]))
    print("Pressed: " + ", ".join(f"{name} {count}" for name, count in sorted(user.pressed.items())))
    print(f"Answers: {len(answers)}, the longest {longest:.2f} s, {len(late)} too late; {unasked:.1f} s unasked.")
    print(f"Memory: {second:.1f} MiB in the second third, {third:.1f} MiB in the last.")
    print(f"Descriptors and threads: {first} at the start, {last} at the end.")
    if not answers or (unasked > LONGEST_UNASKED and not options.untimed):
        wrong.append(f"for {unasked:.1f} s nobody asked whether it answers")
    if not options.untimed:
        wrong += [f"an answer took {how_long:.2f} s" for how_long in late]
    if not options.untimed and third > second * MORE_MEMORY:
        wrong.append(f"memory grew from {second:.1f} to {third:.1f} MiB")
    if last[0] > first[0] or last[1] > first[1]:
        wrong.append(f"descriptors and threads were {first} and are {last}")
    wrong += [f"{film} was changed" for film in films if digest(film) != before[film]]
    for needed in NEEDED if options.minutes >= 5 else ():
        if needed not in user.pressed:
            wrong.append(f"{needed!r} was never pressed")
    return wrong


def repaired_beside(films):
    """What the queue wrote where the films are."""
    folder = os.path.dirname(films[0])
    return [path for path in glob.glob(os.path.join(glob.escape(folder), "*-salvaged*")) if path not in films]


def make_room(saved, films):
    if len(os.listdir(saved)) > 20:
        shutil.rmtree(saved)
        os.makedirs(saved)
    if len(beside := repaired_beside(films)) > 20:
        for path in beside:
            os.remove(path)


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
        way = chance.choice(("Repair", DEEP, FILMS))
        is_deep = False
        while time.monotonic() < deadline:
            elements, dialog = program.shown()
            buttons = {name: node for role, name, node, _, usable in elements if role in BUTTON and usable}
            field = program.field(elements) if dialog else None
            if field is not None and "Add" in buttons:
                field.set_text_contents(film)
                program.press(buttons["Add"])
            elif field is not None and "Save" in buttons:
                stage = "saving"
                field.set_text_contents(saved + ".avi" if is_deep else saved)
                program.press(buttons["Save"])
            else:
                order = (START, "See the result", "Not now", "OK", SAVE) if stage != "started" else (way, "Repair")
                name = next((one for one in order if one in buttons), None)
                if name is not None:
                    stage = STAGES.get(name, stage)
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
        hidden = glob.glob(os.path.join(home, "Videos", ".*"))
        found = [p for p in glob.glob(os.path.join(home, "cache", "**"), recursive=True) if os.path.isfile(p)]
        found = [p for p in found if os.path.getsize(p) > 0]
        folders = glob.glob(os.path.join(home, "cache", "**", "deep-*"), recursive=True)
        strays = stray_programs(home)
        if not (found or hidden or len(folders) > 1 or strays):
            return []
        if time.monotonic() > deadline:
            return [f"after kill {turn}: " + ", ".join(map(str, found + hidden + folders + strays))]
        time.sleep(0.2)


def unfinished(options, home, film, saved):
    """Files under final names that are not whole."""
    wrong = []
    by_queue = repaired_beside([film])
    for path in glob.glob(os.path.join(saved, "*.avi")) + glob.glob(saved + ".avi") + by_queue:
        deep = path == saved + ".avi" or path in by_queue
        expected = os.path.join(home, "Expected" + ("Deep" if deep else "") + os.path.basename(film))
        if not os.path.exists(expected):
            command = ["salvage", film, "-o", expected] if deep else ["repair", film, "--into", expected]
            subprocess.run([options.cli, *command, "--quiet"], check=True, stdout=subprocess.DEVNULL)
        whole = expected if deep else os.path.join(expected, "repaired.avi")
        if digest(path) != digest(whole):
            wrong.append(f"{path} is there and not whole")
    for path in by_queue:
        os.remove(path)
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
