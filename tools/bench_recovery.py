#!/usr/bin/env python3
"""How much of damaged films the deep repair brings back, beside the exact repair, FFmpeg and MEncoder.

Usage: bench_recovery.py --release DIR [--programs DIR] [--work DIR] [--page FILE --picture FILE] [KIND...]

FFmpeg makes four small films; each is damaged in every kind of tests/support/film_damage.py, repaired by each tool, and
judged by what FFmpeg then plays. All of it is seeded. With --programs, techniques of the deep repair are switched off
one at a time. With --page, the tables between the page's marks are replaced, and the picture is drawn.
"""
import argparse
import concurrent.futures
import os
import random
import shutil
import subprocess
import sys
import tempfile

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
sys.path[:0] = [os.path.join(ROOT, "tests", "support"), os.path.join(ROOT, "tools")]

import film_damage  # noqa: E402
import recovery_score  # noqa: E402

COLUMNS = ("frames", "sound", "in sync", "seeks")
SECONDS = 6
RATE = 22050
MPEG4 = ["-c:v", "mpeg4", "-vtag", "XVID", "-g", "15", "-q:v", "5"]
FILMS = {
    "mjpeg": ["-c:v", "mjpeg", "-q:v", "6", "-c:a", "pcm_s16le"],
    "mpeg4": MPEG4 + ["-c:a", "libmp3lame", "-b:a", "64k"],
    "h264": ["-c:v", "libx264", "-vtag", "H264", "-g", "25", "-bf", "2", "-c:a", "ac3", "-b:a", "96k", "-ar", "32000"],
    "raw": ["-s", "96x72", "-c:v", "rawvideo", "-pix_fmt", "bgr24", "-c:a", "pcm_u8"],
}
TECHNIQUES = {
    "index": "the index as a plan of the film",
    "learning": "what the streams' own chunks have in common",
    "gaps": "filling the time of what is lost",
    "headers": "putting lost headers together",
}


def make_film(path, seed, encoding):
    noise = f"noise=alls=14:allf=t:all_seed={seed}"
    pictures = f"testsrc2=size=176x144:rate=25,hue=h={seed * 40},{noise},format=yuv420p"
    sound = f"anoisesrc=r={RATE}:seed={seed}:amplitude=0.3,aformat=channel_layouts=mono"
    inputs = ["-f", "lavfi", "-i", pictures, "-f", "lavfi", "-i", sound, "-t", str(SECONDS)]
    exact = ["-threads", "1", "-flags", "+bitexact", "-fflags", "+bitexact"]
    quiet = ["ffmpeg", "-hide_banner", "-loglevel", "error", "-nostdin", "-y"]
    subprocess.run(quiet + inputs + ["-pix_fmt", "yuv420p"] + encoding + exact + [path], check=True)


def tools(options):
    cli = os.path.join(options.release, "zelvo-avi")
    chosen = {
        "salvage": [cli, "salvage", "--quiet", "IN", "-o", "OUT"],
        "repair": [cli, "repair", "--quiet", "IN", "-o", "OUT"],
        "FFmpeg": ["ffmpeg", "-v", "quiet", "-nostdin", "-y", "-i", "IN", "-map", "0", "-c", "copy", "OUT"],
    }
    if shutil.which("mencoder"):
        for option in ("-idx", "-forceidx"):
            copy = ["mencoder", "-really-quiet", option, "IN", "-ovc", "copy", "-oac", "copy", "-o", "OUT"]
            chosen[f"MEncoder {option}"] = copy
    if options.programs:
        without = os.path.join(options.programs, "bench_salvage_without")
        for name in TECHNIQUES:
            chosen[f"without {name}"] = [without, name, "IN", "OUT"]
    return chosen


def judge(job):
    """(film, kind, share of whole chunks, scores by tool) of one film with all its kinds of damage."""
    name, encoding, work, kinds, chosen = job
    path, other = (os.path.join(work, f"{name}-{seed}.avi") for seed in (1, 2))
    for seed, film in enumerate((path, other), 1):
        make_film(film, seed, encoding)
    rate = 32000 if name == "h264" else RATE
    original = recovery_score.Original(path, rate)
    films = []
    for film in (path, other):
        with open(film, "rb") as file:
            films.append(film_damage.Film(file.read()))
    rows = []
    for kind in kinds:
        chance = random.Random(f"{name} {kind}")
        data, left = film_damage.damaged(films[0], kind, chance, films[1])
        source, out = os.path.join(work, f"{name}-in.avi"), os.path.join(work, f"{name}-out.avi")
        with open(source, "wb") as file:
            file.write(data)
        scores = {}
        for tool, command in chosen.items():
            if os.path.exists(out):
                os.remove(out)
            made = [source if part == "IN" else out if part == "OUT" else part for part in command]
            quiet = {"stdin": subprocess.DEVNULL, "stdout": subprocess.DEVNULL, "stderr": subprocess.DEVNULL}
            try:
                subprocess.run(made, timeout=60, check=False, **quiet)
            except subprocess.TimeoutExpired:
                pass
            scores[tool] = original.score(out) if os.path.exists(out) else dict.fromkeys(COLUMNS, 0.0)
        rows.append((name, kind, left, scores))
    return rows


def mean(values):
    values = list(values)
    return sum(values) / len(values) if values else 0.0


def shown(value):
    return f"{value:.3f}"


def table(rows, kinds, chosen, column):
    """Markdown: a row for each kind, a column for each tool."""
    lines = ["| Damage | " + " | ".join(chosen) + " |", "|---|" + "---|" * len(chosen)]

    def line(label, taken):
        cells = (shown(mean(row[3][tool][column] for row in taken)) for tool in chosen)
        lines.append(f"| {label} | " + " | ".join(cells) + " |")

    for kind in kinds:
        line(kind.replace("_", " "), [row for row in rows if row[1] == kind])
    line("**mean**", rows)
    return lines


def summary(rows, chosen):
    """Markdown: the means over all kinds."""
    lines = ["| | " + " | ".join(COLUMNS) + " |", "|---|" + "---|" * len(COLUMNS)]
    for tool, label in chosen.items():
        cells = (shown(mean(row[3][tool][column] for row in rows)) for column in COLUMNS)
        lines.append(f"| {label} | " + " | ".join(cells) + " |")
    return lines


def picture(rows, kinds, chosen):
    """An SVG of bars: for each kind how many pictures are in step with the sound."""
    colours = ("#2f7fd1", "#8a94a3", "#3b9b6d", "#e08a1e", "#8a5cc2")
    bar, gap, left, wide = 9, 10, 150, 560
    height = 40 + len(kinds) * (len(chosen) * bar + gap)
    style = "text{font:12px system-ui,sans-serif;fill:#1c2430}@media(prefers-color-scheme:dark){text{fill:#e6eaf0}}"
    parts = [
        f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {left + wide + 60} {height}" role="img" '
        f'aria-label="Pictures in step with the sound, by damage and tool"><style>{style}</style>'
    ]
    for i, tool in enumerate(chosen):
        x = left + i * 115
        parts.append(f'<rect x="{x}" y="8" width="10" height="10" fill="{colours[i]}"/>')
        parts.append(f'<text x="{x + 15}" y="17">{tool}</text>')
    y = 34
    for kind in kinds:
        middle = y + len(chosen) * bar / 2 + 4
        parts.append(f'<text x="{left - 8}" y="{middle:g}" text-anchor="end">{kind.replace("_", " ")}</text>')
        for i, tool in enumerate(chosen):
            value = mean(row[3][tool]["in sync"] for row in rows if row[1] == kind)
            length = max(1.0, wide * value)
            title = f"{tool}: {shown(value)}"
            parts.append(
                f'<rect x="{left}" y="{y}" width="{length:.1f}" height="{bar - 1}" fill="{colours[i]}">'
                f"<title>{title}</title></rect>"
            )
            y += bar
        y += gap
    return "\n".join(parts) + "\n</svg>\n"


def replaced(page, mark, lines):
    """The page with what stands between two marks replaced."""
    begin, end = f"<!-- {mark} -->", f"<!-- end of {mark} -->"
    front, rest = page.split(begin)
    return front + "\n".join([begin, *lines, end]) + rest.split(end)[1]


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--release", required=True, help="folder of zelvo-avi")
    parser.add_argument("--programs", help="folder of bench_salvage_without")
    parser.add_argument("--work", help="folder for films (a new one, removed at the end)")
    parser.add_argument("--page", help="page whose tables are replaced")
    parser.add_argument("--picture", help="where the picture is drawn")
    parser.add_argument("kinds", nargs="*", metavar="KIND")
    options = parser.parse_args()
    kinds = options.kinds or list(film_damage.KINDS)
    unknown = [kind for kind in kinds if kind not in film_damage.KINDS]
    if unknown:
        parser.error(f"no damage is called {unknown[0]}; there are {', '.join(film_damage.KINDS)}")
    work = options.work or tempfile.mkdtemp(prefix="zelvo-recovery-")
    os.makedirs(work, exist_ok=True)
    chosen = tools(options)
    jobs = [(name, encoding, work, kinds, chosen) for name, encoding in FILMS.items()]
    try:
        with concurrent.futures.ProcessPoolExecutor(os.cpu_count()) as pool:
            rows = [row for some in pool.map(judge, jobs) for row in some]
    finally:
        if not options.work:
            shutil.rmtree(work)

    beside = [tool for tool in chosen if not tool.startswith("without ")]
    left = shown(mean(row[2] for row in rows))
    whole = ["", f"{len(rows)} damaged films; {left} of their chunks are there in one piece."]
    means = summary(rows, {tool: tool for tool in beside}) + whole
    details = table(rows, kinds, beside, "in sync")
    print("\n".join([*means, "", "Pictures in step with the sound:", "", *details]))
    without = []
    if options.programs:
        labels = {"salvage": "all of it"} | {f"without {name}": f"without {text}" for name, text in TECHNIQUES.items()}
        without = summary(rows, labels)
        print("\n".join(["", *without]))
    if options.kinds:
        return  # The page is of all kinds.
    if options.page:
        with open(options.page, encoding="utf-8") as file:
            page = file.read()
        page = replaced(page, "means", means)
        page = replaced(page, "kinds", details)
        page = replaced(page, "techniques", without)
        with open(options.page, "w", encoding="utf-8") as file:
            file.write(page)
    if options.picture:
        with open(options.picture, "w", encoding="utf-8") as file:
            file.write(picture(rows, kinds, beside))


if __name__ == "__main__":
    main()
