#!/usr/bin/env python3
"""Fails when a built program or module lacks what makes an attacker's work harder.

usage: check_hardening.py [--optimized] FILE...

Read from the files themselves with readelf: position independence, everything that the loader fills
in read-only before the program starts, no executable stack, guarded stack frames and, on x86-64,
landing marks for indirect calls. --optimized asks for checked functions of the C library too, which
a compiler puts in only when it optimises. A program that is linked with no library is asked for less.
"""
import re
import subprocess
import sys

LANDING_MARK = bytes.fromhex("f30f1efa")  # endbr64
# Without any library there is no loader that moves the program or fills anything in, and nobody to
# report a broken guard.
WITHOUT_LIBRARIES = {"tolvane-confine"}


def readelf(option, file):
    return subprocess.run(["readelf", "-W", option, file], capture_output=True, text=True, check=True).stdout


def unmarked_entries(file, symbols, sections):
    """What is called from outside, main or a module's functions, and does not begin with the mark."""
    found = re.search(r"\s\.text\s+PROGBITS\s+(\w+) (\w+)", sections)
    address, offset = (int(number, 16) for number in found.groups())
    # Some linkers make even main a local symbol.
    entries = set(re.findall(r"(\w{16})\s+\d+ FUNC\s+\w+\s+DEFAULT\s+\d+ (main|tolvane\w*)$", symbols, re.MULTILINE))
    if not entries:
        yield "no function that is called from outside"
    with open(file, "rb") as content:
        for place, name in entries:
            content.seek(int(place, 16) - address + offset)
            if content.read(4) != LANDING_MARK:
                yield f"{name} has no landing mark"


def problems(file, optimized):
    header, segments, dynamic, symbols, sections = (
        readelf(option, file) for option in ("-h", "-l", "-d", "-s", "-S"))
    stack = re.search(r"GNU_STACK.*", segments)
    if not stack or "E" in stack.group(0).split()[-2]:
        yield "executable stack"
    if file.rsplit("/", 1)[-1] in WITHOUT_LIBRARIES:
        return
    if "GNU_RELRO" not in segments:
        yield "nothing is made read-only after loading"
    if not re.search(r"Type:\s+DYN", header):
        yield "loaded at a fixed address"
    if not re.search(r"BIND_NOW|Flags:.*\bNOW\b", dynamic):
        yield "functions are bound after loading"
    if "__stack_chk_fail" not in symbols:
        yield "stack frames without guards"
    if "X86-64" in header:
        yield from unmarked_entries(file, symbols, sections)
    if optimized and not re.search(r"__\w+_chk\b", symbols.replace("__stack_chk", "")):
        yield "no checked function of the C library"


def main():
    optimized = "--optimized" in sys.argv
    files = [word for word in sys.argv[1:] if not word.startswith("--")]
    found = [f"{file}: {problem}" for file in files for problem in problems(file, optimized)]
    print("\n".join(found) or f"hardening: {len(files)} files, no violation")
    return 1 if found or not files else 0


if __name__ == "__main__":
    sys.exit(main())
