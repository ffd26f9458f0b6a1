#!/usr/bin/python3
"""A whole repair in the real program, on a display of its own with a small window manager.

Usage: click_through.py WAY --window PROGRAM --cli PROGRAM
WAY: "keyboard", "mouse" or "reader" (what a screen reader sees and can press, and nothing else).

Chooses a damaged film, repairs it, looks at the preview, saves it, takes the offer of a deep repair, saves what comes
of that too, repairs two films deeply one after the other, and quits; the saved bytes must be those that the command
line saves. What is on the screen is known through the accessibility bus in each of the three. Exits with 77 where a
part of the desktop is missing.
"""
import argparse
import hashlib
import os
import select
import shutil
import subprocess
import sys
import tempfile
import time
import warnings

NEEDED = ("Xvfb", "openbox", "xdotool", "dbus-run-session", "ffmpeg")
SKIPPED = 77
PATIENCE = 60  # seconds, for anything


def restart_in_session():
    """Runs this script again inside a session bus of its own."""
    missing = [name for name in NEEDED if not shutil.which(name)]
    try:
        import gi

        gi.require_version("Atspi", "2.0")
        from gi.repository import Atspi  # noqa: F401
    except (ImportError, ValueError) as error:
        missing.append(str(error))
    if missing:
        print("skipped: missing " + ", ".join(missing))
        sys.exit(SKIPPED)
    # The accessibility bus is found by the user's runtime folder, so each session has one of its own.
    with tempfile.TemporaryDirectory(prefix="zelvo-session-") as runtime:
        inner = dict(os.environ, CLICK_THROUGH_SESSION="1", XDG_RUNTIME_DIR=runtime)
        for name in ("DISPLAY", "WAYLAND_DISPLAY", "AT_SPI_BUS_ADDRESS", "DBUS_SESSION_BUS_ADDRESS"):
            inner.pop(name, None)
        status = subprocess.run(
            ["dbus-run-session", "--", sys.executable] + sys.argv, env=inner, check=False
        ).returncode
    sys.exit(status)


class Display:
    """Xvfb and openbox, which end with this."""

    def __enter__(self):
        read, write = os.pipe()
        self.server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(write), "-screen", "0", "1280x800x24", "-nolisten", "tcp"],
            pass_fds=[write],
            stderr=subprocess.DEVNULL,
        )
        os.close(write)
        with os.fdopen(read) as number:
            if not select.select([read], [], [], PATIENCE)[0]:
                self.server.kill()
                sys.exit(f"click_through: no display after {PATIENCE} seconds")
            os.environ["DISPLAY"] = ":" + number.readline().strip()
        self.manager = subprocess.Popen(["openbox"], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        return self

    def __exit__(self, *_):
        for process in (self.manager, self.server):
            process.terminate()
            process.wait()


class Screen:
    """What an accessibility tool knows of the program."""

    def __init__(self, name):
        import gi

        gi.require_version("Atspi", "2.0")
        from gi.repository import Atspi, GLib

        self.atspi = Atspi
        self.error = GLib.Error
        self.name = name
        warnings.simplefilter("ignore", DeprecationWarning)  # names that older buses have only
        Atspi.init()

    def _walk(self, node):
        if node is None:
            return
        yield node
        for i in range(node.get_child_count()):
            yield from self._walk(node.get_child_at_index(i))

    def find(self, role, name=None, starts=None):
        """The shown elements of a role, by name."""
        desktop = self.atspi.get_desktop(0)
        found = []
        try:
            for i in range(desktop.get_child_count()):
                application = desktop.get_child_at_index(i)
                if application is None or self.name not in (application.get_name() or ""):
                    continue
                for node in self._walk(application):
                    if role and node.get_role_name() not in role:
                        continue
                    if not node.get_state_set().contains(self.atspi.StateType.SHOWING):
                        continue
                    text = node.get_name() or ""
                    if name is not None and text != name or starts is not None and not text.startswith(starts):
                        continue
                    found.append(node)
        except self.error:
            return []  # the tree changed meanwhile
        return found

    def wait(self, what, role, name=None, starts=None, usable=False):
        deadline = time.monotonic() + PATIENCE
        while time.monotonic() < deadline:
            for node in self.find(role, name, starts):
                try:
                    if not usable or node.get_state_set().contains(self.atspi.StateType.ENABLED):
                        return node
                except self.error:
                    pass
            time.sleep(0.05)
        sys.exit(f"click_through: waited in vain for {what}; on the screen are:\n" + self.listing())

    def listing(self):
        return "\n".join(f"  {n.get_role_name()} {n.get_name()!r}" for n in self.find(None))

    def wait_gone(self, what, role, name):
        deadline = time.monotonic() + PATIENCE
        while time.monotonic() < deadline:
            if not self.find(role, name):
                return
            time.sleep(0.05)
        sys.exit(f"click_through: {what} did not go away; on the screen are:\n" + self.listing())


BUTTON = ("push button", "button", "toggle button", "check box")
DIALOG = ("dialog",)
FRAME = ("frame",)
TEXT = ("text", "entry")
ITEM = ("table cell", "list item", "tree item")
LABEL = ("label", "static")
ADD_FILMS = "Add films\u2026"


def keys(*names):
    subprocess.run(["xdotool", "key", "--clearmodifiers", *names], check=True, timeout=PATIENCE)


def type_text(text):
    subprocess.run(["xdotool", "type", "--delay", "5", text], check=True, timeout=PATIENCE)


class Way:
    """How somebody works with the window."""

    def __init__(self, screen):
        self.screen = screen

    def button(self, name):
        return self.screen.wait(f"the button {name!r}", BUTTON, name, usable=True)

    def add_films(self, folder, names):
        for name in names:
            self.reach(ADD_FILMS)
            self.screen.wait("the chooser of films", DIALOG, "Choose films")
            self.add_film(os.path.join(folder, name))
            self.screen.wait_gone("the chooser of films", DIALOG, "Choose films")


class Keyboard(Way):
    SHORTCUTS = {"Choose a file\u2026": "ctrl+o", "Repair": "ctrl+r", "Preview": "ctrl+p", "Save\u2026": "ctrl+s"}

    def press(self, name):
        self.button(name)
        keys(self.SHORTCUTS.get(name, "Return"))

    def reach(self, name):
        """Presses a button that lies anywhere on the page."""
        self.button(name)
        for _ in range(40):
            if any(self.has_focus(node) for node in self.screen.find(BUTTON, name)):
                keys("Return")
                return
            keys("Tab")
            time.sleep(0.1)
        sys.exit(f"click_through: the keyboard does not reach {name!r}; on the screen are:\n" + self.screen.listing())

    def has_focus(self, node):
        try:
            return node.get_state_set().contains(self.screen.atspi.StateType.FOCUSED)
        except self.screen.error:
            return False

    def choose(self, folder, film):
        type_text(os.path.join(folder, film))
        keys("Return")

    def add_film(self, path):
        self.save(path)

    def save(self, folder):
        type_text(folder)
        keys("Return")

    def save_as(self, path):
        keys("ctrl+a")
        self.save(path)

    def quit(self):
        keys("ctrl+q")
        self.screen.wait("the question", DIALOG)
        keys("Tab", "Return")


class Mouse(Way):
    def click(self, node, times=1):
        place = node.get_extents(self.screen.atspi.CoordType.SCREEN)
        x, y = place.x + place.width // 2, place.y + place.height // 2
        subprocess.run(
            ["xdotool", "mousemove", str(x), str(y), "click", "--repeat", str(times), "--delay", "80", "1"],
            check=True,
            timeout=PATIENCE,
        )

    def press(self, name):
        self.click(self.button(name))

    def reach(self, name):
        self.press(name)

    def choose(self, _folder, film):
        self.click(self.screen.wait(f"the file {film!r}", ITEM, film), times=2)

    def add_films(self, folder, names):
        self.press(ADD_FILMS)
        for name in names:
            item = self.screen.wait(f"the file {name!r}", ITEM, name)
            subprocess.run(["xdotool", "keydown", "ctrl"], check=True, timeout=PATIENCE)
            self.click(item)
            subprocess.run(["xdotool", "keyup", "ctrl"], check=True, timeout=PATIENCE)
        self.press("Add")
        self.screen.wait_gone("the chooser of films", DIALOG, "Choose films")

    def save(self, _folder):
        self.press("Save")

    def save_as(self, _path):
        self.press("Save")

    def quit(self):
        keys("alt+F4")  # the window manager's own way to close a window
        self.press("Yes")


class Reader(Way):
    def press(self, name):
        node = self.button(name)
        for i in range(node.get_n_actions()):
            if node.get_action_name(i) in ("Press", "Toggle", "click"):
                node.do_action(i)
                return
        sys.exit(f"click_through: a screen reader cannot press {name!r}")

    def reach(self, name):
        self.press(name)

    def fill(self, text):
        fields = [f for f in self.screen.find(TEXT) if f.get_state_set().contains(self.screen.atspi.StateType.EDITABLE)]
        if not fields:
            sys.exit("click_through: a screen reader finds no field to type into")
        fields[0].set_text_contents(text)

    def choose(self, folder, film):
        self.fill(os.path.join(folder, film))
        self.press("Open")

    def add_film(self, path):
        self.fill(path)
        self.press("Add")

    def save(self, folder):
        self.fill(folder)
        self.press("Save")

    def save_as(self, path):
        self.save(path)

    def quit(self):
        keys("ctrl+q")
        self.press("Yes")


def make_film(path):
    subprocess.run(
        [
            "ffmpeg",
            "-loglevel",
            "error",
            "-y",
            "-f",
            "lavfi",
            "-i",
            "testsrc2=size=320x240:rate=25",
            "-f",
            "lavfi",
            "-i",
            "sine=frequency=440",
            "-t",
            "2",
            "-c:v",
            "mpeg4",
            "-b:v",
            "3000k",
            "-minrate",
            "3000k",
            "-maxrate",
            "3000k",
            "-bufsize",
            "1000k",
            "-c:a",
            "libmp3lame",
            "-b:a",
            "128k",
            "-f",
            "avi",
            path,
        ],
        check=True,
        stdin=subprocess.DEVNULL,
    )
    with open(path, "r+b") as film:
        whole = film.read()
        film.truncate(whole.rindex(b"idx1"))
        film.seek(len(whole) // 2)
        film.write(bytes(4096))


def digest(path):
    with open(path, "rb") as file:
        return hashlib.sha256(file.read()).hexdigest()


def repair_deeply(way, screen, path):
    """From the offer of the result page to a saved film, and back there."""
    way.reach("Try a deep repair")
    screen.wait("the result of the deep repair", LABEL, starts="This film was damaged")
    way.reach("Save\u2026")
    screen.wait("the save panel of the deep repair", DIALOG, "Save the repaired film")
    way.save_as(path)
    screen.wait("the end of the deep repair's save", DIALOG, "The film is saved")
    way.reach("Close")
    screen.wait_gone("the end of the deep repair's save", DIALOG, "The film is saved")
    way.reach("Home")
    screen.wait("the page that it came from", BUTTON, "Preview")


def repair_several(way, screen, folder, names):
    """From the result page to films that lie beside the damaged ones, and to the first page."""
    way.reach("Home")
    screen.wait("the first page", BUTTON, ADD_FILMS)
    way.add_films(folder, names)
    way.reach("Start")
    screen.wait("the end of all films", DIALOG, "All films are done")
    way.reach("Close")
    screen.wait_gone("the end of all films", DIALOG, "All films are done")
    way.reach("Home")
    screen.wait("the first page", BUTTON, "Repair")


def run(options, home):
    videos = os.path.join(home, "Videos")
    os.makedirs(videos)
    film = os.path.join(videos, "film.avi")
    make_film(film)
    before = digest(film)
    shutil.copyfile(film, os.path.join(videos, "second.avi"))
    env = dict(
        os.environ,
        HOME=home,
        XDG_CACHE_HOME=os.path.join(home, "cache"),
        XDG_CONFIG_HOME=os.path.join(home, "config"),
        QT_QPA_PLATFORM="xcb",
        QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1",
        LC_ALL="C.UTF-8",
    )
    with open(os.path.join(home, "said"), "wb") as said:
        program = subprocess.Popen([options.window, "--appearance", "light"], env=env, stdout=said, stderr=said)
    try:
        screen = Screen("zelvo-avi-repair")
        way = {"keyboard": Keyboard, "mouse": Mouse, "reader": Reader}[options.way](screen)
        screen.wait("the window", FRAME, "Zelvo AVI Repair")
        way.press("Choose a file\u2026")
        screen.wait("the chooser", DIALOG)
        way.choose(videos, "film.avi")
        screen.wait("the chosen path", LABEL, film)
        way.press("Repair")
        screen.wait("the end of the repair", DIALOG, starts="Your film was repaired")  # in part: a picture is lost
        way.press("See the result")
        way.press("Preview")
        screen.wait("the running preview", BUTTON, "Stop preview")
        screen.wait("the end of the preview", BUTTON, "Preview")
        way.press("Save\u2026")
        screen.wait("the save panel", DIALOG)
        way.save(os.path.join(videos, "Repaired"))
        screen.wait("the end of the save", DIALOG, "Saving is done")
        way.press("OK")
        screen.wait_gone("the save's end", DIALOG, "Saving is done")
        salvaged = os.path.join(videos, "film-salvaged.avi")
        repair_deeply(way, screen, salvaged)
        repair_several(way, screen, videos, ["film.avi", "second.avi"])
        way.quit()
        status = program.wait(timeout=PATIENCE)
    finally:
        if program.poll() is None:
            program.kill()
            program.wait()
    if status != 0:
        sys.exit(f"click_through: the program ended with {status}")

    expected = os.path.join(home, "Expected")
    subprocess.run([options.cli, "repair", film, "--into", expected, "--quiet"], check=True)
    saved = os.path.join(videos, "Repaired", "repaired.avi")
    if digest(saved) != digest(os.path.join(expected, "repaired.avi")):
        sys.exit("click_through: the saved film is not the one that the command line saves")
    subprocess.run([options.cli, "salvage", film, "-o", os.path.join(home, "expected.avi"), "--quiet"], check=True)
    by_queue = [os.path.join(videos, name) for name in ("film-salvaged-2.avi", "second-salvaged.avi")]
    for path in [salvaged, *by_queue]:
        if not os.path.exists(path) or digest(path) != digest(os.path.join(home, "expected.avi")):
            sys.exit(f"click_through: {os.path.basename(path)} is not the film that the command line saves")
    if digest(film) != before:
        sys.exit("click_through: the damaged film was changed")
    left = [
        name
        for _, _, names in os.walk(os.path.join(home, "cache", "zelvo-avi-repair"))
        for name in names
        if name.startswith("testfile") or name.endswith(".avi")
    ]
    if left:
        sys.exit(f"click_through: scratch files stayed after: {left}")
    print(f"A film was repaired, repaired deeply, saved, and repaired with another by {options.way}.")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("way", choices=("keyboard", "mouse", "reader"))
    parser.add_argument("--window", required=True)
    parser.add_argument("--cli", required=True)
    options = parser.parse_args()
    if "CLICK_THROUGH_SESSION" not in os.environ:
        restart_in_session()
    with Display(), tempfile.TemporaryDirectory(prefix="zelvo-click-") as home:
        run(options, home)


if __name__ == "__main__":
    main()
