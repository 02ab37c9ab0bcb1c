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
    """Medians in seconds and the median ratio; one unmeasured round warms the caches."""
    mine, other, ratios = [], [], []
    for turn in range(rounds + 1):
        a, _ = timed(ours, folder)
        b, _ = timed(theirs, folder)
        if turn:
            mine.append(a)
            other.append(b)
            ratios.append(a / b)
    return statistics.median(mine), statistics.median(other), statistics.median(ratios)
