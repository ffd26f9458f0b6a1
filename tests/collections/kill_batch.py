#!/usr/bin/env python3
"""Kills a batch again and again, resumes it, and shows that nothing is lost or done twice.

Usage: kill_batch.py PROGRAM [--kills 200] [--films 60] [--seed N] [--jobs N]

Each run of the batch is killed at a random moment (SIGKILL): the batch itself, the program of one film, or all of them.
Half of the kills come just after a line was added to the journal. When every film is done, a new round begins with an
empty folder. At the end of each round every film has one line that says it is done, its output has the bytes that an
undisturbed run gives, and nothing hidden is left.
"""
import argparse
import collections
import glob
import hashlib
import json
import os
import random
import signal
import subprocess
import sys
import tempfile
import time

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import damaged_films  # noqa: E402  (beside this file)


def end_of(process):
    """Its exit code; a batch that does not end is a fault."""
    try:
        return process.wait(timeout=120)
    except subprocess.TimeoutExpired:
        process.kill()
        process.wait()
        sys.exit("a batch did not come to its end within two minutes")


def digest(path):
    with open(path, "rb") as file:
        return hashlib.sha256(file.read()).hexdigest()


def outputs(folder):
    found = {}
    for place, _, names in os.walk(folder):
        for name in names:
            path = os.path.join(place, name)
            found[os.path.relpath(path, folder)] = path
    return found


def children(process):
    try:
        with open(f"/proc/{process}/task/{process}/children", encoding="ascii") as file:
            return [int(one) for one in file.read().split()]
    except OSError:
        return []


def kill(process):
    try:
        os.kill(process, signal.SIGKILL)
        return True
    except ProcessLookupError:
        return False


class Round:
    """One collection from its first film to its last."""

    def __init__(self, options, folder, films, chance):
        self.options, self.films, self.chance = options, films, chance
        self.folder = tempfile.mkdtemp(dir=folder)
        self.out = os.path.join(self.folder, "out")
        self.journal = os.path.join(self.folder, "journal")
        os.mkdir(self.out)

    def start(self):
        command = [
            self.options.program,
            "salvage",
            "-r",
            self.films,
            "--output-dir",
            self.out,
            "--quiet",
            "--checksums",
        ]
        command += ["--journal", self.journal, "--resume", "--jobs", str(self.options.jobs)]
        # A program built with the address sanitizer looks for leaks in a process of its own when it ends, and waits for
        # ever when that is killed.
        surroundings = dict(os.environ, ASAN_OPTIONS="detect_leaks=0")
        return subprocess.Popen(command, stdin=subprocess.DEVNULL, stderr=subprocess.DEVNULL, env=surroundings)

    def lines(self):
        """Whole lines; the last one may be torn while the batch is killed."""
        try:
            with open(self.journal, encoding="utf-8") as file:
                return [json.loads(line) for line in file if line.endswith("\n")]
        except FileNotFoundError:
            return []

    def size(self):
        try:
            return os.stat(self.journal).st_size
        except FileNotFoundError:
            return 0

    def wait_for_moment(self, process):
        if self.chance.random() < 0.5:
            time.sleep(self.chance.random() * 0.12)
            return
        before = self.size()
        latest = time.monotonic() + 0.5
        while self.size() == before and process.poll() is None and time.monotonic() < latest:
            time.sleep(0.0002)
        time.sleep(self.chance.random() * 0.003)

    def disturb(self, counts):
        """Starts the batch and kills; answers whether it came to its end by itself."""
        process = self.start()
        self.wait_for_moment(process)
        victim = self.chance.choice(("batch", "film", "all"))
        there = children(process.pid)
        if process.poll() is not None:
            return process.returncode == 0
        if victim == "film" and there:
            counts["film"] += kill(self.chance.choice(there))
            # It goes on with the other films, and says that one of them failed.
            end_of(process)
            return False
        kill(process.pid)
        counts[victim if victim != "film" else "batch"] += 1
        if victim == "all":
            for one in there:
                kill(one)
        end_of(process)
        return False

    def check(self, wanted):
        done = collections.Counter()
        for line in self.lines():
            if line["state"] == "done":
                done[os.path.relpath(line["input"]["path"], self.films)] += 1
        wrong = [f"{name}: {done[name]} lines say it is done" for name in wanted["names"] if done[name] != 1]
        there = {name: digest(path) for name, path in outputs(self.out).items()}
        wrong += [
            f"{name} is not as it should be" for name in wanted["outputs"] if there.get(name) != wanted["outputs"][name]
        ]
        wrong += [f"{name} should not be there" for name in there if name not in wanted["outputs"]]
        for line in self.lines():
            if (
                line["state"] == "done"
                and there.get(os.path.relpath(line["output"]["path"], self.out)) != line["output"]["sha256"]
            ):
                wrong.append(f"the journal's checksum of {line['output']['path']} is wrong")
        return wrong


def main():
    arguments = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    arguments.add_argument("program")
    arguments.add_argument("--kills", type=int, default=200)
    arguments.add_argument("--films", type=int, default=60)
    arguments.add_argument("--seed", type=int, default=None)
    arguments.add_argument("--jobs", type=int, default=3)
    options = arguments.parse_args()
    options.program = os.path.abspath(options.program)
    seed = options.seed if options.seed is not None else int(time.time())
    chance = random.Random(seed)
    with tempfile.TemporaryDirectory(prefix="zelvo-kills-") as folder:
        films = os.path.join(folder, "films")
        names = damaged_films.make(films, options.films, seed)
        calm = Round(options, folder, films, chance)
        if end_of(calm.start()) != 0:
            sys.exit("the undisturbed run failed")
        wanted = {"names": names, "outputs": {name: digest(path) for name, path in outputs(calm.out).items()}}
        if len(wanted["outputs"]) != len(names):
            sys.exit(f"the undisturbed run made {len(wanted['outputs'])} outputs of {len(names)} films")
        counts, rounds, adopted = collections.Counter(), 0, 0
        while sum(counts.values()) < options.kills:
            this = Round(options, folder, films, chance)
            rounds += 1
            while sum(counts.values()) < options.kills and not this.disturb(counts):
                pass
            for _ in range(3):
                if end_of(this.start()) == 0:
                    break
            wrong = this.check(wanted)
            adopted += sum("adopted" in line for line in this.lines())
            if wrong or glob.glob(os.path.join(this.out, "**", ".zelvo-avi-*"), recursive=True, include_hidden=True):
                print("\n".join(wrong) or "hidden files are left")
                sys.exit(f"round {rounds} of seed {seed} went wrong")
    print(
        f"{sum(counts.values())} kills ({counts['batch']} of the batch, {counts['film']} of a film's program, "
        f"{counts['all']} of all), {len(names)} films, {rounds} rounds, {adopted} outputs adopted, seed {seed}: "
        "every film has one line that says it is done, and one whole output"
    )


if __name__ == "__main__":
    main()
