#!/usr/bin/env python3
"""Converts hostile documents with the real program and searches every result for the secrets.

usage: secrets_test.py PROGRAM GROUP
"""
import importlib
import os
import pathlib
import re
import subprocess
import sys
import tempfile

import bait
from judge import Judge


class Laboratory:
    """The folders of one run. Only the place "temporary" lies in /tmp."""

    def __init__(self, program, root):
        self.program = program
        self.root = pathlib.Path(root)
        self.temporary = tempfile.TemporaryDirectory(prefix="tolvane-secret-", dir="/tmp")
        self.secrets = bait.Bait(self.root, pathlib.Path(self.temporary.name))
        self.environment = dict(os.environ, HOME=str(self.secrets.places[bait.HOME]), LC_ALL="C.UTF-8")

    def convert(self, road, folder):
        """@return the exit status and what was said."""
        how = ["tool", road.target] if road.tool else ["convert", "--to", road.target]
        ran = subprocess.run([self.program, "--quiet", *how, "--out", str(folder), "--", road.file], env=self.environment,
                             cwd=self.secrets.inputs, capture_output=True, text=True, timeout=300)
        return ran.returncode, ran.stderr.strip()


def problem_of(road, status, said, folder):
    """What is wrong with one document's results; nothing when all is well."""
    if status:
        return "" if road.may_fail and not road.holds else f"was refused: {said}"
    results = [Judge(result) for result in sorted(folder.iterdir())]
    found = sorted(set().union(*(result.findings for result in results)))
    if road.holds:
        seen = any(re.search(road.holds, finding) for finding in found)
        return "" if seen else f"holds the secret, which the judge did not see as {road.holds}, but as {found}"
    if found:
        return "got the secret: " + "; ".join(found)
    if not results:
        return "left no result"
    if not road.may_fail and not any("witness" in result.text.lower() for result in results):
        return "lost its own text, so that it proves nothing"
    return ""


def roads_of(group):
    roads = importlib.import_module(f"roads_{group}").ROADS
    if len({road.file for road in roads}) < len(roads):
        sys.exit(f"{group}: two roads have the same file")
    return roads


def main():
    program, group = sys.argv[1:]
    roads, failures = roads_of(group), 0
    with tempfile.TemporaryDirectory(prefix="secrets-", dir=os.getcwd()) as root:
        laboratory = Laboratory(os.path.abspath(program), root)
        for number, road in enumerate(roads):
            road.write(laboratory.secrets)
            folder = laboratory.root / f"results-{number}"
            folder.mkdir()
            status, said = laboratory.convert(road, folder)
            problem = problem_of(road, status, said, folder)
            failures += bool(problem)
            print("FAILED" if problem else "ok    ", "refused  " if status else "converted", f"{road.label} {problem}".strip(), flush=True)
    print(f"{group}: {len(roads)} documents, {failures} failed")
    return 1 if failures or not roads else 0


if __name__ == "__main__":
    sys.exit(main())
