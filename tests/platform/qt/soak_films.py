"""Films for the soak: some that can be repaired, one of which little is left, and one that is no film. All of them are
small enough for an answer within moments."""
import hashlib
import os
import subprocess

KINDS = (
    ("mpeg4", 6, ["-c:v", "mpeg4", "-b:v", "8000k", "-minrate", "8000k", "-maxrate", "8000k", "-bufsize", "2000k"]),
    ("mjpeg", 12, ["-c:v", "mjpeg", "-q:v", "1", "-qmin", "1", "-pix_fmt", "yuvj420p"]),
)


def whole_film(path, seconds, codec):
    command = ["ffmpeg", "-loglevel", "error", "-y", "-f", "lavfi", "-i", "testsrc2=size=640x360:rate=25"]
    command += ["-f", "lavfi", "-i", "sine=frequency=440", "-t", str(seconds), *codec]
    command += ["-c:a", "libmp3lame", "-b:a", "128k", "-f", "avi", path]
    subprocess.run(command, check=True, stdin=subprocess.DEVNULL)


def make_films(folder):
    """Their paths; the first two can be repaired."""
    os.makedirs(folder, exist_ok=True)
    films = []
    for name, seconds, codec in KINDS:
        path = os.path.join(folder, f"{name}.avi")
        whole_film(path, seconds, codec)
        with open(path, "r+b") as film:
            whole = film.read()
            film.truncate(whole.rindex(b"idx1"))
            film.seek(len(whole) // 2)
            film.write(bytes(65536))
        films.append(path)
    with open(films[0], "rb") as film:
        content = film.read()
    headless = os.path.join(folder, "headless.avi")
    with open(headless, "wb") as film:
        film.write(bytes(8192) + content[8192:])
    noise = os.path.join(folder, "noise.avi")
    with open(noise, "wb") as film:
        film.write(hashlib.sha256(b"noise").digest() * 40000)
    return [*films, headless, noise]


def digest(path):
    with open(path, "rb") as file:
        return hashlib.sha256(file.read()).hexdigest()
