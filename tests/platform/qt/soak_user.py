"""The window as a program, and who uses it at random: by what a screen reader finds and can press, by the keyboard,
and by the window manager."""
import os
import subprocess
import time

import click_through
from click_through import BUTTON, DIALOG, FRAME, PATIENCE

CHOOSE = "Choose a file\u2026"
CHOOSE_AGAIN = "Choose another\u2026"
# What leads out of the program, or to a browser that this machine may have.
LEFT_ALONE = {"Help", "click here", "Open folder", "Look for an update", "Up", "New folder\u2026"}
# What ends a chooser with an answer.
TAKES_A_FILM = ("Open", "Add", "Use this film")
TAKES_A_FOLDER = ("Use this folder",)
TAKES_A_NEW_NAME = ("Save", "Choose")
# What is pressed rarely, or the rest would never come to its end.
RARE = {
    "About Zelvo AVI Repair": 0.05,
    "Copy report": 0.3,
    "Home": 0.3,
    "Cancel": 0.2,
    "Keep repairing": 1.0,
    "Mute": 0.3,
    "Sound on": 0.5,
}


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
        self.deeds = []
        self.copies = []  # when the film was being copied, which may hold up the window
        self.saves = 0
        self.choosing = 0

    def note(self, name):
        self.pressed[name] = self.pressed.get(name, 0) + 1
        self.last = [*self.last[-19:], name]
        self.deeds.append((time.monotonic(), name))

    def answer_chooser(self, dialog, field, elements):
        """A film, a folder, or a new place to save."""
        self.choosing += 1
        buttons = {name: node for role, name, node, _, usable in elements if role in BUTTON and usable}
        answers = TAKES_A_FILM + TAKES_A_FOLDER + TAKES_A_NEW_NAME
        done = next((name for name in answers if name in buttons), None)
        if done is None or self.choosing > 3 or self.chance.random() < 0.15:
            self.choosing = 0
            click_through.keys("Escape")
            return
        path = self.chance.choice(self.films)
        if done in TAKES_A_FOLDER:
            path = self.saved
        elif done in TAKES_A_NEW_NAME:
            self.saves += 1
            path = os.path.join(self.saved, f"{self.saves}.avi")
        try:
            field.set_text_contents(path)
        except self.program.screen.error:
            return
        self.note(f"{dialog or 'a chooser'}: {done}")
        if done == "Save" and dialog == "Where should it be saved?":
            self.copies.append(time.monotonic())
        self.program.press(buttons[done])

    def was_copying(self, when, how_long):
        """Whether a save of the normal repair began while the window was asked, or a moment before."""
        return any(-1 <= begin - when <= how_long for begin in self.copies)

    def doing(self, when):
        """What was pressed last by then."""
        return ", ".join(name for at, name in self.deeds if at <= when + 0.5)[-200:]

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
        # The folder of the queue may be another; that of the copies of the given repair stays where it is looked at.
        is_queue = any(name == "Start" for _, name, _, _, _ in elements)
        avoided = LEFT_ALONE | ({"Play"} if dialog else set()) | (set() if is_queue else {"Change\u2026"})
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
            "Do not save",
            "Not now",
            "OK",
            "See the result",
            "Cancel",
        )
        while time.monotonic() < deadline:
            elements, dialog = self.program.shown()
            buttons = {name: node for role, name, node, _, usable in elements if role in BUTTON and usable}
            if dialog is None and (CHOOSE in buttons or CHOOSE_AGAIN in buttons):
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
