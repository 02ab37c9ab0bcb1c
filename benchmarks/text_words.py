#!/usr/bin/env python3
"""How many of the words on which pdftotext and mutool agree tolvane finds too.

    benchmarks/text_words.py FILE.pdf...

A word is what stands between white space; it counts as often as both readers give it. Prints each
file below 99.5 % with some words that it misses, then the share over all files.
"""
import collections
import pathlib
import subprocess
import sys
import tempfile
import unicodedata

TOLVANE = pathlib.Path(__file__).resolve().parent.parent / "build/release/bin/tolvane"
MARKS = dict.fromkeys(range(0x202A, 0x202F))


def words(text):
    plain = unicodedata.normalize("NFKC", text.translate(MARKS))
    return collections.Counter(plain.split())


def output(*command):
    done = subprocess.run(command, capture_output=True, check=False)
    return done.stdout.decode("utf-8", "replace")


def ours(program, file):
    with tempfile.TemporaryDirectory() as folder:
        subprocess.run([program, "action", "extract_text", file, "--out", folder], capture_output=True, check=False)
        return "".join(path.read_text(encoding="utf-8") for path in pathlib.Path(folder).glob("*.txt"))


def main():
    arguments = sys.argv[1:]
    program = TOLVANE
    if arguments[:1] == ["--program"]:
        program, arguments = arguments[1], arguments[2:]
    expected = found = 0
    for file in arguments:
        agreed = words(output("pdftotext", file, "-")) & words(output("mutool", "draw", "-q", "-F", "text", file))
        missing = agreed - words(ours(program, file))
        expected += agreed.total()
        found += agreed.total() - missing.total()
        if missing.total() > 0.005 * agreed.total():
            print(f"{file}: {1 - missing.total() / agreed.total():.1%}", *list(missing)[:8])
    print(f"{found} of {expected} words, {found / max(expected, 1):.2%}, {len(arguments)} files")


if __name__ == "__main__":
    main()
