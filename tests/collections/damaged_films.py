"""A collection of small damaged films for tests: made by FFmpeg once, then hurt each in its own way."""
import os
import random
import subprocess

ENDINGS = ("avi", "AVI", "divx")


def make(folder, count, seed=1, seconds=2):
    """Writes `count` films into sub-folders of `folder`; the same for the same seed. Returns their paths below it."""
    os.makedirs(folder, exist_ok=True)
    whole = os.path.join(folder, ".whole")
    command = ["ffmpeg", "-hide_banner", "-loglevel", "error", "-y", "-f", "lavfi"]
    command += ["-i", "testsrc2=size=320x240:rate=25", "-f", "lavfi", "-i", "sine=frequency=440", "-t", str(seconds)]
    command += ["-c:v", "mpeg4", "-b:v", "900k", "-c:a", "libmp3lame", "-b:a", "96k", "-f", "avi", whole]
    subprocess.run(command, check=True, stdin=subprocess.DEVNULL)
    with open(whole, "rb") as file:
        good = file.read()
    os.remove(whole)
    chance = random.Random(seed)
    names = []
    for number in range(count):
        film = bytearray(good)
        for _ in range(chance.randrange(1, 5)):
            at = chance.randrange(8192, len(film) - 8192)
            film[at : at + 4096] = bytes(4096) if chance.random() < 0.5 else chance.randbytes(4096)
        if chance.random() < 0.5:
            del film[len(film) - chance.randrange(1, len(film) // 4) :]
        name = os.path.join(f"box {number % 4}", f"film {number:03}.{ENDINGS[number % len(ENDINGS)]}")
        os.makedirs(os.path.join(folder, os.path.dirname(name)), exist_ok=True)
        with open(os.path.join(folder, name), "wb") as file:
            file.write(film)
        names.append(name)
    return names
