#!/usr/bin/env python3
"""Checks that every #include follows the arrows of the house (docs/architecture.md).

Usage: check_arrows.py [ROOT]
Prints each include that breaks them, one a line, and exits with 1 when there is any.
"""
import os
import re
import sys

# The rooms of the product and what each may include stand in a table of docs/architecture.md, and nowhere else:
# | `room/` | what it does | room, room; its `main.cpp` also room, room |
# With "only", the file that joins the parts may name those and, besides the room's own, the seam, but none of the
# others.
TABLE = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "docs", "architecture.md")
TABLE_ROW = re.compile(r"^\| `([a-z_/]+)/` \|[^|]*\| ([^|]*) \|$")
MAIN = re.compile(r"^its `main\.cpp` (also|only) (.*)$")
NO_ROOM = "the standard library"

# The deep repair is one room to its tests.
SALVAGE = {
    "salvage",
    "salvage/scan",
    "salvage/payloads",
    "salvage/headers",
    "salvage/chain",
    "salvage/plan",
    "salvage/writing",
    "salvage/playing",
    "salvage/triage",
}

# Which rooms the tests of a room may include, besides themselves. A file's room is the longest entry that its path
# starts with.
TEST_ARROWS = {
    "tests/support": {"platform", "platform/linux", "platform/headless", "avi", "engine"} | SALVAGE,
    "tests/platform": {"platform", "platform/linux", "platform/headless", "tests/support"},
    "tests/platform/headless": {"platform", "platform/headless", "tests/support"},
    "tests/platform/linux": {
        "platform",
        "platform/linux",
        "platform/headless",
        "storage",
        "update",
        "tests/support",
        "tests/update",
    },
    "tests/platform/qt": {
        "platform",
        "platform/linux",
        "platform/headless",
        "platform/qt",
        "app",
        "deep",
        "engine",
        "controls",
        "salvage",
        "update",
        "tests/support",
    },
    "tests/avi": {"platform", "platform/headless", "avi", "tests/support"},
    "tests/engine": {"platform", "platform/linux", "platform/headless", "avi", "engine", "tests/support"},
    "tests/salvage": {"platform", "platform/headless", "platform/linux", "avi", "tests/support"} | SALVAGE,
    "tests/storage": {
        "platform",
        "platform/linux",
        "platform/headless",
        "storage",
        "tests/platform/linux",
        "tests/support",
    },
    "tests/controls": {"platform", "platform/headless", "platform/qt", "controls", "tests/support"},
    "tests/update": {
        "platform",
        "platform/linux",
        "platform/headless",
        "update",
        "controls",
        "tests/platform/linux",
        "tests/support",
    },
    "tests/app": {
        "platform",
        "platform/linux",
        "platform/headless",
        "app",
        "engine",
        "controls",
        "storage",
        "update",
        "tests/support",
    },
    "tests/deep": {
        "platform",
        "platform/linux",
        "platform/headless",
        "avi",
        *SALVAGE,
        "deep",
        "tests/support",
    },
    "tests/cli": {
        "platform",
        "platform/linux",
        "platform/headless",
        "avi",
        "engine",
        *SALVAGE,
        "storage",
        "cli",
        "tests/support",
    },
    "tests/fuzz": {
        "platform",
        "platform/linux",
        "platform/headless",
        "avi",
        "engine",
        *SALVAGE,
        "storage",
        "update",
        "cli",
        "tests/support",
    },
    "tests/bench": {
        "platform",
        "platform/linux",
        "platform/headless",
        "avi",
        "engine",
        *SALVAGE,
        "storage",
        "update",
        "cli",
        "tests/support",
    },
    "tests/packaging": {"platform", "platform/linux", "update", "app"},
    "tests/tools": set(),
}

# Where the system is called by itself.
SYSTEM_CALLS = {
    "platform/linux",
    "cli/main.cpp",
    "tests/platform",
    "tests/update",
    "tests/cli",
    "tests/bench",
    "tests/fuzz",
    "tests/support",
}

# Third-party headers by their beginning, and the rooms that may name them, with what lies in these.
THIRD_PARTY = {
    "CLI/": {"cli", "cli/main.cpp"},
    "Q": {"platform/qt", "app/main.cpp", "tests/platform/qt"},
    "mpv/": {"platform/qt"},
    "libudev.h": {"platform/linux"},
    "libmount/": {"platform/linux"},
    "plist/": {"platform/linux"},
    "curl/": {"platform/linux"},
    "libmnl/": {"platform/linux"},
    "openssl/": {"platform/linux"},
    "spdlog/": {"platform/linux"},
    "fmt/": {"platform/linux"},
    "sys/": SYSTEM_CALLS,
    "linux/": {"platform/linux"},
    "unistd.h": SYSTEM_CALLS,
    "fcntl.h": SYSTEM_CALLS,
    "dirent.h": SYSTEM_CALLS,
    "spawn.h": SYSTEM_CALLS,
    "gtest/": {"tests"},
    "gmock/": {"tests"},
    "umockdev.h": {"tests"},
    "benchmark/": {"tests"},
}


def product_arrows():
    """The table: a set of rooms for each room, and for the `main.cpp` of those whose row speaks of one."""
    arrows = {}
    with open(TABLE, encoding="utf-8") as document:
        for line in document:
            row = TABLE_ROW.match(line.rstrip("\n"))
            if not row or row.group(1) == "tests":
                continue
            room, (rooms, *more) = row.group(1), row.group(2).split("; ")
            arrows[room] = set() if rooms == NO_ROOM else set(rooms.split(", "))
            for part in more:
                of_main = MAIN.match(part)
                if not of_main:
                    raise SystemExit(f"{TABLE}: the row of {room} says what cannot be read: {part}")
                joined = {name if name in arrows else f"platform/{name}" for name in of_main.group(2).split(", ")}
                arrows[f"{room}/main.cpp"] = (
                    {room} | joined | (arrows[room] if of_main.group(1) == "also" else {"platform"})
                )
    unknown = {name for rooms in arrows.values() for name in rooms} - set(arrows)
    if not arrows or unknown:
        raise SystemExit(f"{TABLE}: the table of rooms is missing, or names no rooms: {', '.join(sorted(unknown))}")
    return arrows


ARROWS = {**product_arrows(), **TEST_ARROWS}

INCLUDE = re.compile(r'^\s*#\s*include\s*(?:"([^"]+)"|<([^>]+)>)')


def room_of(path):
    best = None
    for room in ARROWS:
        if (path == room or path.startswith(room + "/")) and (best is None or len(room) > len(best)):
            best = room
    return best


def lies_in(room, outer):
    return room == outer or room.startswith(outer + "/")


def allows(room, target):
    """Whoever may include a room of several rooms may include each of these; not so the rooms themselves."""
    return any(
        target == one or ("/" in one and lies_in(target, one) and not lies_in(room, one)) for one in ARROWS[room]
    )


def broken_includes(root, path):
    room = room_of(path)
    with open(os.path.join(root, path), encoding="utf-8") as source:
        for number, line in enumerate(source, 1):
            found = INCLUDE.match(line)
            if not found:
                continue
            ours, system = found.groups()
            if room is None:
                yield f"{path}:{number}: this folder is in no room; name it in docs/architecture.md"
                return
            if ours is None and os.path.exists(os.path.join(root, system)):
                ours = system  # angle brackets reach the rooms as well
            if ours is not None:
                target = room_of(ours)
                if target is None or not os.path.exists(os.path.join(root, ours)):
                    yield f'{path}:{number}: "{ours}" is no file of a room (includes start at the repository root)'
                elif (
                    target != room
                    and not allows(room, target)
                    and not ("/" in room and room_of(os.path.dirname(room)) == target and room.endswith(".cpp"))
                ):
                    yield f'{path}:{number}: {room} must not include {target} ("{ours}")'
                continue
            for beginning, rooms in THIRD_PARTY.items():
                if not system.startswith(beginning) or (beginning == "Q" and not re.match(r"Q[A-Z]|Qt", system)):
                    continue
                if not any(lies_in(room, one) for one in rooms):
                    yield f"{path}:{number}: {room} must not include <{system}>"


def sources(root):
    for folder, folders, names in os.walk(root):
        folders[:] = sorted(f for f in folders if not f.startswith(".") and f != "build")
        for name in sorted(names):
            if name.endswith((".h", ".cpp")):
                yield os.path.relpath(os.path.join(folder, name), root)


def main(given):
    root = given[0] if given else os.path.join(os.path.dirname(os.path.abspath(__file__)), "..")
    broken = [line for path in sources(root) for line in broken_includes(root, path)]
    print("\n".join(broken) if broken else "Every include follows the arrows.")
    return 1 if broken else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
