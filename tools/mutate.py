#!/usr/bin/env python3
"""Makes small changes to the sources of a room, one at a time, and looks whether its tests notice.

Usage: mutate.py [--jobs N] ROOM [COUNT [SEED]]

ROOM is a folder of sources (engine, cli, app, update, storage, controls, platform); COUNT how many changes that compile
(20); SEED what the choice follows from (the commit's hash). Works on the last commit, in a worktree of its own below
build/mutate, so what is not committed is not seen, and nothing of this checkout is touched. It can be ended at any
time.

A change counts as noticed when a test fails twice, or when a test program does not end within ten times its usual time.
Only programs that the change altered are run, shared out over the processors; a change that leaves all of them as they
were, byte for byte, is no change and is not counted. Tests that fail without any change are left out, and listed. The
survivors are printed with file, line and change.
Exit code: 0 whatever survives, 2 for wrong use, 3 when the tree does not build as it stands.
"""
# Decision: tests, Mutations can be run again
import argparse
import concurrent.futures
import hashlib
import json
import os
import pathlib
import random
import shutil
import subprocess
import sys
import tempfile
import time

import mutations

ROOMS = ("engine", "salvage", "cli", "app", "update", "storage", "controls", "platform")
# Tests of a room that lie beside those of another: what is drawn and driven through real widgets, what is fuzzed.
TESTS_ELSEWHERE = {
    "engine": ("fuzz",),
    "app": ("platform/qt",),
    "controls": ("platform/qt",),
    "cli": ("platform/linux",),
    "storage": ("platform/linux",),
    "update": ("platform/linux",),
    "platform": ("platform/linux", "platform/qt", "storage", "update", "app"),
}
SHORTEST_LIMIT = 60.0  # seconds; a program that usually takes less is not ended before
FIRST_LIMIT = 1200.0  # seconds; before it is known how long a program takes


class Broken(Exception):
    """The tree does not build, or nothing of it can be tested."""


def run(command, **options):
    return subprocess.run(command, text=True, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False, **options)


class Program:
    """One test program of GoogleTest: what it is made of, in which environment it runs, which of its cases count."""

    def __init__(self, path, parts, environment, jobs):
        self.path = path
        self.parts = parts  # itself and the programs that its cases start
        self.environment = environment
        self.jobs = jobs
        self.left_out = []
        self.limit = FIRST_LIMIT
        self.usual = {}
        self.seconds = 0.0

    def content(self):
        return {part: hashlib.sha256(part.read_bytes()).digest() for part in self.parts}

    def is_altered(self):
        return self.content() != self.usual

    def command(self, cases):
        pattern = ":".join(cases) if cases else "*"
        if self.left_out:
            pattern += "-" + ":".join(self.left_out)
        return [str(self.path), f"--gtest_filter={pattern}", "--gtest_color=no"]

    def run(self, cases=None, fail_fast=True):
        """The names of the cases that failed, or None when all passed; a crash or the limit counts as "(ended)"."""
        command = self.command(cases) + (["--gtest_fail_fast"] if fail_fast else [])
        shards = 1 if cases else self.jobs
        with concurrent.futures.ThreadPoolExecutor(shards) as pool:
            outcomes = list(pool.map(lambda shard: self.run_shard(command, shard, shards), range(shards)))
        failed = sorted({name for outcome in outcomes for name in outcome})
        return failed or None

    def run_shard(self, command, shard, shards):
        with tempfile.TemporaryDirectory() as folder:
            os.chmod(folder, 0o777)
            environment = dict(
                os.environ,
                TMPDIR=folder,
                QT_QPA_PLATFORM="offscreen",
                GTEST_TOTAL_SHARDS=str(shards),
                GTEST_SHARD_INDEX=str(shard),
                **self.environment,
            )
            ended, output = limited(as_ordinary_user(command, folder), environment, self.limit)
        if ended == 0:
            return []
        failed = [
            line.split("]")[1].split("(")[0].split(",")[0].strip()
            for line in output.splitlines()
            if line.startswith("[  FAILED  ]") and "." in line
        ]
        return failed or ["(ended)"]


def as_ordinary_user(command, folder):
    """The command as somebody who may not write everywhere, with a /tmp of its own. Only for root."""
    if os.geteuid() != 0:
        return command
    inside = 'mount --bind "$1" /tmp && shift && exec setpriv --reuid=65534 --regid=65534 --clear-groups -- "$@"'
    return ["unshare", "--mount", "sh", "-c", inside, "sh", folder] + ["env", "TMPDIR=/tmp", "HOME=/tmp"] + command


def limited(command, environment, limit):
    """Runs a command in a group of its own; answers its exit code (None when it was ended) and what it said."""
    process = subprocess.Popen(
        command,
        env=environment,
        text=True,
        errors="replace",
        stdout=subprocess.PIPE,
        stderr=subprocess.STDOUT,
        start_new_session=True,
    )
    try:
        output, _ = process.communicate(timeout=limit)
        return process.returncode, output
    except subprocess.TimeoutExpired:
        os.killpg(process.pid, 9)
        output, _ = process.communicate()
        return None, output


class Tree:
    """The worktree, its build, and the test programs of one room."""

    def __init__(self, root, room, jobs):
        self.root = root
        self.folder = root / "build" / "mutate" / "tree"
        self.build = self.folder / "build" / "dev"
        self.room = room
        self.jobs = jobs
        self.programs = []

    def prepare(self):
        if not (self.folder / ".git").exists():
            shutil.rmtree(self.folder, ignore_errors=True)
            run(["git", "-C", str(self.root), "worktree", "prune"])
            made = run(["git", "-C", str(self.root), "worktree", "add", "--detach", str(self.folder), "HEAD"])
        else:
            head = run(["git", "-C", str(self.root), "rev-parse", "HEAD"]).stdout.strip()
            made = run(["git", "-C", str(self.folder), "checkout", "--force", "--detach", head])
        if made.returncode != 0:
            raise Broken(made.stdout)
        configured = run(["cmake", "--preset", "dev"], cwd=self.folder)
        if configured.returncode != 0:
            raise Broken(configured.stdout)

    def compile(self, targets):
        """What the compiler said when it failed, or None."""
        built = run(
            ["cmake", "--build", "--preset", "dev", "-j", str(self.jobs), "--target", *targets], cwd=self.folder
        )
        return built.stdout if built.returncode != 0 else None

    def find_programs(self):
        """The test programs that stand in the room's folders of tests: their names come from the build files."""
        folders = [f"tests/{name}" for name in (self.room, *TESTS_ELSEWHERE.get(self.room, ()))]
        targets = []
        for folder in folders:
            lists = (self.folder / folder / "CMakeLists.txt").read_text(encoding="utf-8")
            for line in lists.splitlines():
                if line.startswith("zelvo_test("):
                    targets.append(line[len("zelvo_test(") :].split()[0].rstrip(")"))
                if line.startswith("zelvo_fuzz_target("):
                    targets.append(line[len("zelvo_fuzz_target(") :].split()[0] + "_replay")
                if line.startswith("add_executable(") and line.split("(")[1].split()[0].endswith("_tests"):
                    targets.append(line.split("(")[1].split()[0])
        self.targets = sorted(set(targets))
        failed = self.compile(self.targets)
        if failed:
            raise Broken(failed)
        listed = json.loads(run(["ctest", "--test-dir", str(self.build), "--show-only=json-v1"]).stdout)
        environments = {}
        for test in listed["tests"]:
            settings = {entry["name"]: entry["value"] for entry in test["properties"]}
            if test.get("command"):
                environments[test["command"][0]] = dict(
                    entry.split("=", 1) for entry in settings.get("ENVIRONMENT", [])
                )
        shipped = {path.name for path in (self.build / "bin").iterdir() if path.is_file()} - set(self.targets)
        for target in self.targets:
            path = self.build / "bin" / target
            inputs = run(["ninja", "-C", str(self.build), "-t", "inputs", f"bin/{target}"]).stdout.split()
            started = sorted({pathlib.Path(name).name for name in inputs} & shipped)
            parts = [path, *(self.build / "bin" / name for name in started)]
            self.programs.append(Program(path, parts, environments.get(str(path), {}), self.jobs))

    def take_base_line(self):
        """Runs every program without a change: leaves out what fails, and learns how long each takes."""
        for program in self.programs:
            for _ in range(3):
                start = time.monotonic()
                failed = program.run(fail_fast=False)
                program.limit = max(SHORTEST_LIMIT, 10 * (time.monotonic() - start))
                if failed is None:
                    break
                if failed == ["(ended)"]:
                    raise Broken(f"{program.path} does not end well without any change.")
                say(f"left out, since they fail without any change: {', '.join(failed)}")
                program.left_out += failed
            program.usual = program.content()
            program.seconds = time.monotonic() - start
        self.programs.sort(key=lambda program: program.seconds)

    def altered(self):
        """The programs that are other than without a change, the quickest first."""
        return [program for program in self.programs if program.is_altered()]

    @staticmethod
    def notices(programs):
        """The first case that fails, twice, and its program; None when all pass."""
        for program in programs:
            failed = program.run()
            if failed is None:
                continue
            again = program.run(None if failed == ["(ended)"] else failed)
            if again is not None:
                return f"{program.path.name}: {failed[0]}"
        return None


def say(text):
    print(text, flush=True)


def sources(folder, room):
    return sorted(path for path in (folder / room).rglob("*.cpp"))


def survey(tree, count, seed):
    """Makes the changes one after the other; answers the survivors and how many were tried."""
    found = []
    for path in sources(tree.folder, tree.room):
        text = path.read_text(encoding="utf-8")
        found += mutations.mutations(str(path.relative_to(tree.folder)), text)
    # One statement after the other, and of each one change: so long lines get no more than their share.
    chance = random.Random(f"{seed} {tree.room}")
    by_place = {}
    for change in found:
        by_place.setdefault((change.path, change.first), []).append(change)
    places = sorted(by_place)
    chance.shuffle(places)

    survivors, tried = [], 0
    try:
        for place in places:
            if tried == count:
                break
            change = chance.choice(by_place[place])
            path = tree.folder / change.path
            text = path.read_text(encoding="utf-8")
            try:
                path.write_text(mutations.applied(text, change), encoding="utf-8")
                if tree.compile(tree.targets):
                    continue
                programs = tree.altered()
                if not programs:
                    continue
                tried += 1
                noticed = tree.notices(programs)
            finally:
                path.write_text(text, encoding="utf-8")
            if noticed:
                say(f"{tried}/{count} noticed by {noticed}: {change.path}:{change.first} {change.kind}")
            else:
                survivors.append(change)
                say(f"{tried}/{count} SURVIVED {change.describe()}")
    except KeyboardInterrupt:
        say("ended before all were tried")
        tried = max(tried, len(survivors))
    return survivors, tried


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    parser.add_argument("room", choices=ROOMS)
    parser.add_argument("count", nargs="?", type=int, default=20)
    parser.add_argument("seed", nargs="?")
    parser.add_argument("--jobs", type=int, default=2)
    given = parser.parse_args()
    root = pathlib.Path(__file__).resolve().parent.parent
    seed = given.seed or run(["git", "-C", str(root), "rev-parse", "HEAD"]).stdout.strip()

    tree = Tree(root, given.room, given.jobs)
    try:
        tree.prepare()
        tree.find_programs()
        tree.take_base_line()
    except Broken as broken:
        print(f"mutate: {broken}", file=sys.stderr)
        return 3
    say(f"{given.room}: {given.count} changes, seed {seed}")
    survivors, tried = survey(tree, given.count, seed)
    killed = tried - len(survivors)
    say(f"\n{given.room}: {killed} of {tried} changes noticed" + (f" ({100 * killed // tried} %)" if tried else ""))
    for change in survivors:
        say(change.describe())
    return 0


if __name__ == "__main__":
    sys.exit(main())
