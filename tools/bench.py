#!/usr/bin/env python3
"""Measures what docs/performance.md claims, each figure beside its own yardstick in the same run.

Usage: bench.py --programs DIR --release DIR [--work DIR] [--pairs N] [--size BYTES] [NAME...]

Two commands are run in turn, A B A B, after one warm-up of each; a ratio is the median of the ratios pair by pair.
Before each turn, untimed: the last output is removed and what is still on its way to the disk is awaited, and the input
is read once, so that it lies in the page cache. A turn that writes is the fastest of four runs in a row, for both, so
that none pays for memory that a virtual machine has to fetch from its host first.
Names: scan, scan2, literal, literal-o3, dense, cp, cp-small, cli, ffmpeg, mencoder, memory, progress, salvage,
salvage-dense, collection, triage, verify. Without any: all.
"""
import argparse
import os
import random
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "tests", "collections"))
import damaged_films  # noqa: E402  (of the tests)


def read_once(path):
    buffer = bytearray(1 << 20)
    with open(path, "rb", buffering=0) as file:
        while file.readinto(buffer):
            pass


class Bench:
    def __init__(self, options):
        self.literal_o2 = os.path.join(options.programs, "bench_literal_o2")
        self.job = os.path.join(options.programs, "bench_job")
        self.cli = os.path.join(options.release, "zelvo-avi")
        self.pairs = options.pairs
        self.size = options.size
        self.work = options.work
        self.inputs = {}

    def input(self, kind, size=None):
        size = size or self.size
        path = os.path.join(self.work, f"{kind}-{size}.avi")
        if path not in self.inputs:
            if not os.path.exists(path):
                subprocess.run([self.job, "make", kind, path, str(size)], check=True, stdout=subprocess.DEVNULL)
            self.inputs[path] = True
        return path

    def output(self, name):
        return os.path.join(self.work, name)

    def once(self, command, fresh=None):
        if fresh and os.path.exists(fresh):
            os.remove(fresh)
        start = time.perf_counter()
        done = subprocess.run(
            command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE, check=False
        )
        spent = time.perf_counter() - start
        if done.returncode != 0:
            sys.exit(f"bench: {' '.join(command)} failed:\n{done.stderr.decode(errors='replace')}")
        return spent, done.stdout.decode(errors="replace")

    def turn(self, command, path, out):
        """One run from like conditions; its output is gone afterwards."""
        if out:
            os.sync()
        read_once(path)
        # A virtual machine gives memory that is free for long back to its host, and who gets that memory next pays for
        # it. The runs before leave what they wrote into to the next; one of four is spared.
        spent = min(self.once(command, out)[0] for _ in range(4 if out else 1))
        if out:
            os.remove(out)
        return spent

    def pair(self, name, must, aim, path, ours, yardstick, ours_out=None, yardstick_out=None):
        spent = []
        for turn in range(self.pairs + 1):
            pair = (self.turn(ours, path, ours_out), self.turn(yardstick, path, yardstick_out))
            if turn > 0:
                spent.append(pair)
        ratio = statistics.median(a / b for a, b in spent)
        best = min(a for a, _ in spent) / min(b for _, b in spent)
        print(
            f"{name:46} {ratio:7.3f}   best against best {best:.3f}   must {must}, aim {aim}   "
            f"({statistics.median(a for a, _ in spent):.3f} s against "
            f"{statistics.median(b for _, b in spent):.3f} s)",
            flush=True,
        )

    def figure(self, name, values, unit, must, aim):
        print(
            f"{name:46} {statistics.median(values):7.3f} {unit}   lowest {min(values):.3f}   must {must}, aim {aim}",
            flush=True,
        )


def pinned(command):
    return ["taskset", "-c", "0"] + command


def scan(b):
    path = b.input("frames")
    b.pair(
        "scan, one processor, against cat",
        1.5,
        1.3,
        path,
        pinned([b.job, "scan", path]),
        pinned(["sh", "-c", f"exec cat '{path}' >/dev/null"]),
    )


def scan2(b):
    path = b.input("frames")
    b.pair(
        "scan, all processors, against cat",
        1.5,
        1.3,
        path,
        [b.job, "scan", path],
        ["sh", "-c", f"exec cat '{path}' >/dev/null"],
    )


def literal(b):
    path = b.input("frames")
    b.pair(
        "scan against the literal transcription, -O2",
        "1/18 = 0.056",
        "1/22 = 0.045",
        path,
        pinned([b.job, "scan", path]),
        pinned([b.literal_o2, "scan-literal", path]),
    )


def literal_o3(b):
    path = b.input("frames")
    b.pair(
        "scan against the literal transcription, -O3",
        "-",
        "-",
        path,
        pinned([b.job, "scan", path]),
        pinned([b.job, "scan-literal", path]),
    )


def dense(b):
    path = b.input("dense")
    b.pair(
        "scan of a candidate every 8 bytes, against cat",
        25,
        10,
        path,
        [b.job, "scan", path],
        ["sh", "-c", f"exec cat '{path}' >/dev/null"],
    )


def against_copy(b, name, kind, must, aim):
    path = b.input(kind)
    ours, copy = b.output("ours.avi"), b.output("copy.avi")
    b.pair(name, must, aim, path, [b.job, "repair", path, ours], ["cp", path, copy], ours, copy)


def cp(b):
    against_copy(b, "repair against cp, frames of 10 to 100 KB", "frames", 0.90, 0.70)


def cp_small(b):
    against_copy(b, "repair against cp, chunks of about 1 KB", "small", 1.15, 0.90)


def cli(b):
    path = b.input("frames")
    ours, copy = b.output("ours.avi"), b.output("copy.avi")
    b.pair(
        "zelvo-avi, on the disk, against cp and sync",
        "-",
        "-",
        path,
        [b.cli, "repair", path, "-o", ours, "--quiet"],
        ["sh", "-c", f"cp '{path}' '{copy}' && sync -d '{copy}'"],
        ours,
        copy,
    )


def ffmpeg(b):
    path = b.input("frames")
    ours, copy = b.output("ours.avi"), b.output("copy.avi")
    b.pair(
        "repair against ffmpeg -c copy",
        0.50,
        0.25,
        path,
        [b.job, "repair", path, ours],
        ["ffmpeg", "-hide_banner", "-loglevel", "error", "-y", "-i", path, "-c", "copy", copy],
        ours,
        copy,
    )


def mencoder(b):
    if not shutil.which("mencoder"):
        print("repair against mencoder                        skipped: mencoder is not installed")
        return
    path = b.input("frames")
    ours, copy = b.output("ours.avi"), b.output("copy.avi")
    b.pair(
        "repair against mencoder -forceidx",
        0.33,
        0.15,
        path,
        [b.job, "repair", path, ours],
        ["mencoder", "-really-quiet", "-forceidx", "-oac", "copy", "-ovc", "copy", path, "-o", copy],
        ours,
        copy,
    )


def memory(b):
    for name, kind, must, aim in (
        ("peak memory, 1 GB input", "frames", 8, 5),
        ("peak memory, tables full", "full", 44, 38),
    ):
        path = b.input(kind)
        ours = b.output("ours.avi")
        values = [int(b.once([b.job, "repair", path, ours], ours)[1].split()[-1]) / 1024 for _ in range(3)]
        b.figure(name, values, "MiB", must, aim)
        values = []
        for _ in range(3):
            if os.path.exists(ours):
                os.remove(ours)
            done = subprocess.run(
                ["time", "-f", "%M", b.cli, "repair", path, "-o", ours, "--quiet"],
                stderr=subprocess.PIPE,
                stdout=subprocess.DEVNULL,
                check=True,
            )
            values.append(int(done.stderr.split()[-1]) / 1024)
        b.figure("  the same by zelvo-avi", values, "MiB", must, aim)
        os.remove(ours)


def film_without_index(b, name, seconds, coded):
    """A film of one scene again and again that goes on beyond the size wanted, and is cut off there, index and all."""
    path = os.path.join(b.work, f"{name}-{b.size}.avi")
    if not os.path.exists(path):
        scene, whole = b.output("scene.avi"), b.output("whole.avi")
        quiet = ["ffmpeg", "-hide_banner", "-loglevel", "error", "-y"]
        noise = ["-f", "lavfi", "-i", "anoisesrc=r=44100"]
        subprocess.run(
            quiet + noise + ["-f", "lavfi", "-i"] + coded[:1] + ["-t", seconds] + coded[1:] + [scene], check=True
        )
        rounds = b.size // os.path.getsize(scene) + 1
        subprocess.run(quiet + ["-stream_loop", str(rounds), "-i", scene, "-c", "copy", whole], check=True)
        os.truncate(whole, b.size)
        os.rename(whole, path)
        os.remove(scene)
    return path


def jpeg_film(b):
    return film_without_index(b, "film", "20", ["testsrc2=size=1280x720:rate=25", "-c:v", "mjpeg", "-q:v", "2"])


def mpeg4_film(b):
    coded = ["testsrc2=size=640x480:rate=25", "-c:v", "mpeg4", "-b:v", "2500k", "-c:a", "libmp3lame", "-b:a", "128k"]
    return film_without_index(b, "mpeg4", "40", coded)


def film_with_bad_sectors(b):
    """The same film, 1.5 % of its sectors of 4096 bytes full of noise."""
    path = os.path.join(b.work, f"sectors-{b.size}.avi")
    if not os.path.exists(path):
        made = b.output("made.avi")
        shutil.copyfile(jpeg_film(b), made)
        chance = random.Random(1)
        with open(made, "r+b") as file:
            for sector in chance.sample(range(4, b.size // 4096 - 1), int(b.size / 4096 * 0.015)):
                file.seek(sector * 4096)
                file.write(chance.randbytes(4096))
        os.rename(made, path)
    return path


def salvage(b):
    ours, copy = b.output("ours.avi"), b.output("copy.avi")
    for name, make, limits in (
        ("MPEG-4, index cut off", mpeg4_film, ((2.0, 1.2), (0.50, 0.30))),
        ("Motion JPEG, index cut off", jpeg_film, ((2.0, 1.2), (0.50, 0.30))),
        ("1.5 % bad sectors", film_with_bad_sectors, ((4.0, 2.0), None)),
    ):
        path = make(b)
        command = [b.cli, "salvage", path, "-o", ours, "--quiet"]
        # zelvo-avi waits for the disk; so do the yardsticks.
        copied = ["sh", "-c", f"cp '{path}' '{copy}' && sync -d '{copy}'"]
        b.pair(f"salvage against cp, {name}", *limits[0], path, command, copied, ours, copy)
        if limits[1]:
            remuxed = f"ffmpeg -hide_banner -loglevel quiet -y -i '{path}' -c copy '{copy}' && sync -d '{copy}'"
            b.pair(f"salvage against ffmpeg, {name}", *limits[1], path, command, ["sh", "-c", remuxed], ours, copy)
        subprocess.run(command, check=True)
        peak = subprocess.run(["time", "-f", "%M"] + command + ["--force"], stderr=subprocess.PIPE, check=True).stderr
        os.remove(ours)
        b.figure("  peak memory", [int(peak.split()[-1]) / 1024], "MiB", 256, 128)


def triage(b):
    path = film_without_index(b)
    places, piece = 256, 262144
    step = max(1, os.path.getsize(path) // places // piece)
    copied = f"dd if='{path}' of=/dev/null bs={piece} count=1 status=none skip="
    loop = f"i=0; while [ $i -lt {places} ]; do {copied}$((i * {step})); i=$((i + 1)); done"
    b.pair(
        "triage against dd in as many places", 1.5, 1.0, path, [b.cli, "triage", path, "--quiet"], ["sh", "-c", loop]
    )


def salvage_dense(b):
    """What takes longest for its size: a candidate every 8 bytes."""
    path, ours = b.input("dense"), b.output("ours.avi")
    command = [b.cli, "salvage", path, "-o", ours, "--quiet", "--allow-growth"]
    values = []
    for _ in range(b.pairs):
        read_once(path)
        values.append(b.once(command, ours)[0] / (b.size / 1e9))
    os.remove(ours)
    b.figure("salvage of a candidate every 8 bytes", values, "s/GB", 10, 4)


def film_of_ten_minutes(b):
    """MPEG-4 with B pictures and MP3: twenty seconds, thirty times over."""
    path = os.path.join(b.work, "ten-minutes.avi")
    if not os.path.exists(path):
        scene, whole = b.output("scene.avi"), b.output("whole.avi")
        quiet = ["ffmpeg", "-hide_banner", "-loglevel", "error", "-y"]
        pictures = ["-f", "lavfi", "-i", "testsrc2=size=640x480:rate=25"]
        sound = ["-f", "lavfi", "-i", "sine=r=44100"]
        codecs = ["-c:v", "mpeg4", "-q:v", "4", "-bf", "2", "-g", "100", "-c:a", "libmp3lame", "-b:a", "128k"]
        subprocess.run(quiet + pictures + sound + ["-t", "20"] + codecs + [scene], check=True)
        subprocess.run(quiet + ["-stream_loop", "29", "-i", scene, "-c", "copy", whole], check=True)
        os.rename(whole, path)
        os.remove(scene)
    return path


def verify(b):
    path = film_of_ten_minutes(b)
    b.pair(
        "verify --no-seeks against ffmpeg -f null",
        1.2,
        1.0,
        path,
        [b.cli, "verify", "--no-seeks", "--quiet", path],
        ["ffmpeg", "-nostdin", "-threads", "1", "-v", "error", "-i", path, "-f", "null", "-"],
    )


def collection(b):
    """Sixty films, two at once against one after the other, each with one thread."""
    films, ours, other, mark = (b.output(name) for name in ("films", "two-at-once", "one-at-once", "done"))
    damaged_films.make(films, 60, 1, 60)

    def command(jobs, out):
        batch = f"'{b.cli}' salvage -r '{films}' --output-dir '{out}' --jobs {jobs} --threads 1 --quiet --force"
        return ["sh", "-c", f"mkdir -p '{out}' && {batch} && : >'{mark}'"]

    b.pair(
        "60 films, --jobs 2 against --jobs 1", 0.6, 0.55, os.devnull, command(2, ours), command(1, other), mark, mark
    )
    for folder in (films, ours, other):
        shutil.rmtree(folder)


def progress(b):
    pairs = [
        [float(b.once([b.job, name, "5000000"])[1].split()[0]) for name in ("progress", "divide")]
        for _ in range(b.pairs)
    ]
    b.figure("one step of the progress animation", [ours for ours, _ in pairs], "ns", 3, 1.2)
    b.figure("  against its division and store alone", [ours / bare for ours, bare in pairs], "times", 2, 1)


BENCHES = {
    "scan": scan,
    "scan2": scan2,
    "literal": literal,
    "literal-o3": literal_o3,
    "dense": dense,
    "cp": cp,
    "cp-small": cp_small,
    "cli": cli,
    "ffmpeg": ffmpeg,
    "mencoder": mencoder,
    "memory": memory,
    "progress": progress,
    "salvage": salvage,
    "salvage-dense": salvage_dense,
    "collection": collection,
    "triage": triage,
    "verify": verify,
}


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--programs", required=True, help="folder of bench_job")
    parser.add_argument("--release", required=True, help="folder of zelvo-avi")
    parser.add_argument("--work", help="folder for inputs and outputs (a new one, removed at the end)")
    parser.add_argument("--pairs", type=int, default=7)
    parser.add_argument("--size", type=int, default=1_000_000_000, help="bytes of the large inputs")
    parser.add_argument("names", nargs="*", choices=[[], *BENCHES], metavar="NAME")
    options = parser.parse_args()
    own_folder = None if options.work else tempfile.mkdtemp(prefix="zelvo-bench-")
    options.work = options.work or own_folder
    os.makedirs(options.work, exist_ok=True)
    try:
        for name in options.names or BENCHES:
            BENCHES[name](Bench(options))
    finally:
        if own_folder:
            shutil.rmtree(own_folder)


if __name__ == "__main__":
    main()
