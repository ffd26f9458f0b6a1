"""What the soak measures of a process: how soon it answers, and what it holds. Run by itself it is the process that
asks, and prints when it asked and how long the answer took, in seconds."""
import os
import subprocess
import sys
import tempfile
import time

ASK_EVERY = 0.1  # seconds
LONGEST = 60_000  # milliseconds


class Pinger:
    """Asks the window for its place again and again, from a process of its own, while the soak uses it."""

    def __init__(self):
        self.said = tempfile.TemporaryFile("w+")  # a pipe that nobody reads would hold it up
        self.process = subprocess.Popen([sys.executable, __file__], stdout=self.said)

    def end(self):
        """(when, how long) of each answer."""
        self.process.terminate()
        self.process.wait(timeout=60)
        self.said.seek(0)
        lines = [line.split() for line in self.said]
        self.said.close()
        return [(float(words[0]), float(words[1])) for words in lines if len(words) == 2]


class Figures:
    """The memory of a process over time."""

    def __init__(self, pid):
        self.pid = pid
        self.taken = []

    def take(self, start):
        now = time.monotonic() - start
        if not self.taken or now - self.taken[-1][0] >= 1:
            self.taken.append((now, resident(self.pid)))

    def thirds(self, seconds):
        """The mean of the second third and of the last, in MiB."""
        means = []
        for third in (1, 2):
            of_it = [mib for at, mib in self.taken if third <= at / seconds * 3 < third + 1]
            means.append(sum(of_it) / len(of_it) if of_it else 0.0)
        return means


def resident(pid):
    with open(f"/proc/{pid}/status", encoding="ascii", errors="replace") as status:
        for line in status:
            if line.startswith("VmRSS:"):
                return int(line.split()[1]) / 1024
    return 0.0


def descriptors(pid):
    return len(os.listdir(f"/proc/{pid}/fd"))


def threads(pid):
    return len(os.listdir(f"/proc/{pid}/task"))


def stray_programs(home):
    """Command lines of `zelvo-avi` that work on something below the folder without a window that started them."""
    found = []
    for pid in filter(str.isdigit, os.listdir("/proc")):
        try:
            with open(f"/proc/{pid}/cmdline", "rb") as line:
                words = line.read().split(b"\0")
        except OSError:
            continue
        name = os.path.basename(words[0]) if words else b""
        if name == b"zelvo-avi" and any(word.startswith(home.encode()) for word in words):
            found.append(b" ".join(words).decode(errors="replace"))
    return found


def main():
    import gi

    gi.require_version("Atspi", "2.0")
    from gi.repository import Atspi, GLib

    Atspi.init()
    Atspi.set_timeout(LONGEST, LONGEST)
    desktop = Atspi.get_desktop(0)
    frame = None
    while True:
        try:
            if frame is None:
                for i in range(desktop.get_child_count()):
                    application = desktop.get_child_at_index(i)
                    if application is not None and "zelvo-avi-repair" in (application.get_name() or ""):
                        frame = application.get_child_at_index(0)
            else:
                start = time.monotonic()
                frame.get_extents(Atspi.CoordType.SCREEN)  # nobody but the window itself knows
                print(start, time.monotonic() - start, flush=True)
        except GLib.Error as error:
            print(f"soak: no answer: {error}", file=sys.stderr)
            frame = None
        time.sleep(ASK_EVERY)


if __name__ == "__main__":
    main()
