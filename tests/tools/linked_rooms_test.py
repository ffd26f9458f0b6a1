#!/usr/bin/env python3
"""The command line carries nothing of the window, neither its repair job nor elements that nobody sees, and no decoder.

Usage: linked_rooms_test.py PROGRAM
"""
import subprocess
import sys

FOREIGN = ("zelvo::platform::headless::", "zelvo::platform::qt::", "zelvo::engine::RepairFile::", "zelvo::app::")


def main():
    listed = subprocess.run(
        ["nm", "--demangle", "--defined-only", sys.argv[1]], text=True, check=True, stdout=subprocess.PIPE
    ).stdout
    symbols = [line.split(maxsplit=2)[-1] for line in listed.splitlines()]
    if not any("zelvo::engine::repair(" in symbol for symbol in symbols):
        print(f"{sys.argv[1]} has no symbols to look at: was it stripped?")
        return 1
    foreign = sorted({symbol for symbol in symbols if any(name in symbol for name in FOREIGN)})
    for symbol in foreign[:20]:
        print(f"{sys.argv[1]} links {symbol}")
    needed = subprocess.run(["readelf", "-d", sys.argv[1]], text=True, check=True, stdout=subprocess.PIPE).stdout
    decoders = [line for line in needed.splitlines() if "libav" in line]
    for line in decoders:
        print(f"{sys.argv[1]} needs {line.split()[-1]}")
    return 1 if foreign or decoders else 0


if __name__ == "__main__":
    sys.exit(main())
