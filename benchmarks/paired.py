"""What the benchmark scripts share: the build, and paired runs of two commands."""
import os
import pathlib
import platform
import shutil
import statistics
import subprocess
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
BUILD = ROOT / "build/release"


def build(headings, targets):
    """Installs the packages under the headings of packages.txt and builds the targets."""
    subprocess.run([ROOT / "tools/install_packages", *headings], check=True)
    subprocess.run(["cmake", "--preset", "release", "-DBUILD_TESTING=ON", "-DBUILD_BENCHMARKS=ON"],
                   cwd=ROOT, check=True, stdout=subprocess.DEVNULL)
    subprocess.run(["ninja", "-C", BUILD, "--quiet", *targets], check=True)


def machine():
    return f"{platform.machine()}, {os.cpu_count()} cores, Linux {platform.release()}"


def timed(command, folder):
    """Seconds and peak megabytes of one run of a shell command in an emptied folder."""
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir()
    start = time.perf_counter()
    process = subprocess.Popen(["bash", "-c", command], cwd=folder,
                               stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    _, status, usage = os.wait4(process.pid, 0)
    seconds = time.perf_counter() - start
    if status != 0:
        raise SystemExit(f"failed ({status}): {command}")
    return seconds, usage.ru_maxrss / 1024


def compare(ours, theirs, folder, rounds):
    """Pairs, medians in seconds and the median ratio. One unmeasured round warms the caches; long
    jobs take fewer rounds, so that a row ends within a minute or two."""
    enough = 30  # seconds
    mine, other, ratios = [], [], []
    timed(ours, folder)
    timed(theirs, folder)
    while len(ratios) < rounds and sum(mine) + sum(other) < enough:
        mine.append(timed(ours, folder)[0])
        other.append(timed(theirs, folder)[0])
        ratios.append(mine[-1] / other[-1])
    return len(ratios), statistics.median(mine), statistics.median(other), statistics.median(ratios)
