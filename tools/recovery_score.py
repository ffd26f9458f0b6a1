"""How much of a film is in a repaired file: what FFmpeg plays of it, against what it played of the original."""

import bisect
import subprocess

STEP = 32  # every so many samples one is looked up
KEY = 8  # samples in a row are looked up
SYNC = 0.08  # seconds that sound and picture may be apart
SEEKS = 4
NEAR = 0.125  # seconds that a seek may be off


def ffmpeg(arguments):
    command = ["ffmpeg", "-v", "quiet", "-nostdin", "-threads", "1", *arguments]
    try:
        done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, timeout=60, check=False)
    except subprocess.TimeoutExpired:
        return b""
    return done.stdout


def pictures(path, *seek):
    """(seconds, hash) of each picture in the order of playing."""
    found, base = [], 1.0
    picked = ["-map", "0:v:0", "-fps_mode", "passthrough", "-f", "framemd5", "-"]
    count = ["-frames:v", "1"] if seek else []
    for line in ffmpeg([*seek, "-i", path, *count, *picked]).decode(errors="replace").splitlines():
        if line.startswith("#tb 0:"):
            above, below = line.split(":")[1].split("/")
            base = int(above) / int(below)
        elif line and not line.startswith("#"):
            fields = [field.strip() for field in line.split(",")]
            found.append((int(fields[2]) * base, fields[5]))
    return found


def sound(path):
    """Samples of 16 bits of the first track, one channel."""
    return ffmpeg(["-i", path, "-map", "0:a:0", "-ac", "1", "-f", "s16le", "-"])


def longest_rise(numbers):
    """Positions of a longest rising row."""
    ends, rows, before = [], [], []
    for i, value in enumerate(numbers):
        place = bisect.bisect_left(ends, value)
        before.append(rows[place - 1] if place else None)
        ends[place : place + 1] = [value]
        rows[place : place + 1] = [i]
    found, at = [], rows[-1] if rows else None
    while at is not None:
        found.append(at)
        at = before[at]
    return found[::-1]


class Original:
    def __init__(self, path, rate):
        self.rate = rate
        self.pictures = pictures(path)
        self.number = {}
        for i, (_, digest) in enumerate(self.pictures):
            self.number.setdefault(digest, i)
        samples = sound(path)
        self.positions = {}
        for at in range(0, len(samples) - 2 * KEY + 1, 2):
            self.positions.setdefault(samples[at : at + 2 * KEY], at // 2)
        self.seconds = self.pictures[-1][0]
        self.whole_sound = len(self.sound_in(path))

    def sound_in(self, path):
        """(sample of the original, the same in the file), rising; one of every STEP of the file's."""
        samples, hits = sound(path), []
        for at in range(0, len(samples) - 2 * KEY + 1, 2 * STEP):
            position = self.positions.get(samples[at : at + 2 * KEY])
            if position is not None:
                hits.append((position, at // 2))
        kept = [hits[i] for i in longest_rise([position for position, _ in hits])]
        apart = [position - at for position, at in kept]
        # One that stands alone is chance.
        return [hit for i, hit in enumerate(kept) if apart[i] in apart[max(0, i - 1) : i] + apart[i + 1 : i + 2]]

    def score(self, path):
        """Shares of pictures found, of sound found, of pictures in step with the sound, of seeks that end right."""
        played = pictures(path)
        known = [(self.number[digest], at) for at, digest in played if digest in self.number]
        found = [known[i] for i in longest_rise([number for number, _ in known])]
        heard = self.sound_in(path)
        return {
            "frames": len(found) / len(self.pictures),
            "sound": min(1.0, len(heard) / self.whole_sound),
            "in sync": sum(self.is_in_step(number, at, heard) for number, at in found) / len(self.pictures),
            "seeks": sum(self.ends_right(path, played, i) for i in range(SEEKS)) / SEEKS,
        }

    def is_in_step(self, number, at, heard):
        """Whether a picture is as far from the sound next to it as it was."""
        was = self.pictures[number][0]
        place = bisect.bisect_left(heard, (int(was * self.rate), 0))
        near = heard[max(0, place - 1) : place + 1]
        if not near:
            return False
        position, now = min(near, key=lambda hit: abs(hit[0] - was * self.rate))
        return abs((at - now / self.rate) - (was - position / self.rate)) <= SYNC

    def ends_right(self, path, played, number):
        """Whether a seek shows the picture of the original that playing shows there."""
        wanted = self.seconds * (number + 0.5) / SEEKS
        shown = pictures(path, "-ss", f"{wanted:.3f}")
        if not shown or shown[0][1] not in self.number:
            return False
        return any(digest == shown[0][1] and abs(at - wanted) <= NEAR for at, digest in played)
