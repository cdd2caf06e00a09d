"""Runs the benchmarks that scripts/bench has built and prints their tables."""

import argparse
import filecmp
import glob
import json
import os
import shutil
import statistics
import subprocess
import sys

import inputs
import jobs

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
SOURCES = os.path.join(ROOT, "bench")
OUTPUT = os.path.join(ROOT, "build", "bench")


class Failure(Exception):
    pass


class Runner:
    """One competitor on one input: the command, and what its runs have cost."""

    def __init__(self, name, folder, command):
        self.name = name
        self.folder = folder
        self.command = command
        self.costs = []

    def run(self, build):
        console = os.path.join(self.folder, "console.txt")
        output = os.path.join(self.folder, "output.txt")
        if os.path.exists(output):
            os.remove(output)
        measured = subprocess.run([os.path.join(build, "bench", "measure"), console, *self.command], cwd=self.folder,
                                  stdout=subprocess.PIPE, text=True, check=True)
        cpu, wall, peak, status = measured.stdout.split()
        if status != "0" or not os.path.exists(output):
            with open(console, encoding="latin-1") as file:
                raise Failure(f"{self.name} in {self.folder} ended with {status}:\n{file.read()[-2000:]}")
        self.costs.append((float(cpu), float(wall), int(peak) / 1024))

    def median(self, column):
        return statistics.median(cost[column] for cost in self.costs)

    @property
    def output(self):
        return os.path.join(self.folder, "output.txt")


def input_path(source):
    path = os.path.join(OUTPUT, "inputs", source.file)
    inputs.write(path, source.pieces())
    return path


def fresh_folder(*names):
    folder = os.path.join(OUTPUT, "work", *(name.replace(" ", "_").replace("+", "and") for name in names))
    shutil.rmtree(folder, ignore_errors=True)
    os.makedirs(folder)
    return folder


def make_kvl_runner(build, project, script, source, *names):
    """A copy of the project with the input beside it, as its user has it."""
    folder = fresh_folder(*names, "kvlRun")
    for path in glob.glob(os.path.join(SOURCES, project, "*")):
        if os.path.splitext(path)[1] in (".kvl", ".type", ".pattern"):
            shutil.copy(path, folder)
    os.symlink(input_path(source), os.path.join(folder, "input.txt"))
    return Runner("kvlRun", folder, [os.path.join(build, "kvlRun"), script, "-overwrite"])


def make_rival(build, rival, job, source):
    folder = fresh_folder(job.name, source.file, rival)
    program = {jobs.BY_HAND: [os.path.join(build, "bench", f"{job.folder}_by_hand")],
               jobs.PEGTL: [os.path.join(build, "bench", f"{job.folder}_pegtl")],
               jobs.PERL: ["perl", os.path.join(SOURCES, "jobs", job.folder, "perl.pl")],
               jobs.JINJA: [sys.executable, os.path.join(SOURCES, "jobs", job.folder, "jinja.py")]}[rival]
    return Runner(rival, folder, [*program, input_path(source), "output.txt"])


def run_job(build, job, source, runs):
    """All competitors in turns, so that a noisy minute strikes all of them alike."""
    runners = [make_kvl_runner(build, f"jobs/{job.folder}", job.script, source, job.name, source.file)]
    runners += [make_rival(build, rival, job, source) for rival in job.rivals]
    for _ in range(runs):
        for runner in runners:
            runner.run(build)
    for runner in runners[1:]:
        if not filecmp.cmp(runners[0].output, runner.output, shallow=False):
            raise Failure(f"{runner.output} differs from {runners[0].output}")
    return runners


def print_job(job, source, runners):
    base = next(runner for runner in runners if runner.name == jobs.BY_HAND)
    name = f"{job.name} {source.size:,}" if len(job.inputs) > 1 else job.name
    for runner in runners:
        print(f"{name:24}{runner.name:18}{runner.median(0):10.4f}{runner.median(1):10.4f}{runner.median(2):10.1f}"
              f"{runner.median(0) / base.median(0):9.1f}", flush=True)
        name = ""


def print_jobs(build, selected, runs, smoke):
    print(f"{'job':24}{'competitor':18}{'user+sys':>10}{'wall':>10}{'peak MB':>10}{'ratio':>9}")
    for job in selected:
        for source in job.inputs[:1] if smoke else job.inputs:
            print_job(job, source, run_job(build, job, source, 1 if smoke else runs * job.runs))


def make_growth_runners(build, growth, count):
    return [make_kvl_runner(build, growth.folder, script, source, "growth", growth.name, script, source.file)
            for script, source in list(zip(growth.scripts, growth.inputs))[:count]]


def print_first_sizes(build, selected):
    print(f"\n{'growth':40}{'first s':>10}")
    for growth in selected:
        runner, = make_growth_runners(build, growth, 1)
        runner.run(build)
        print(f"{growth.name:40}{runner.median(0):10.4f}", flush=True)


def print_growth(build, selected, runs):
    """True if all grow no more than they may."""
    print(f"\n{'growth':40}{'first s':>10}{'second s':>10}{'ratio':>9}{'limit':>9}{'peak MB':>10}")
    good = True
    for growth in selected:
        runners = make_growth_runners(build, growth, 2)
        for _ in range(runs):
            for runner in runners:
                runner.run(build)
        first, second = (runner.median(0) for runner in runners)
        good = good and second <= growth.limit * first
        print(f"{growth.name:40}{first:10.4f}{second:10.4f}{second / first:9.1f}{growth.limit:9.1f}"
              f"{runners[1].median(2):10.1f}", flush=True)
    return good


def run_micro(build, selected, smoke):
    """The benchmarks of single choices: medians in nanoseconds of processor time."""
    options = ["--benchmark_min_time=0.001" if smoke else "--benchmark_repetitions=5"]
    for program in sorted(glob.glob(os.path.join(build, "bench", "micro_*"))):
        subject = os.path.basename(program).removeprefix("micro_")
        if selected and not any(word in subject for word in selected):
            continue
        results = subprocess.run([program, "--benchmark_format=json", *options], check=True, stdout=subprocess.PIPE,
                                 stderr=subprocess.DEVNULL, text=True).stdout
        times = {}
        for result in json.loads(results)["benchmarks"]:
            if result["run_type"] == "iteration":
                times.setdefault(result["run_name"], []).append(result)
        print(f"\n{subject:44}{'ns':>14}{'ns an item':>14}{'MB/s':>10}")
        for name, repetitions in times.items():
            print_micro(name, repetitions)


def print_micro(name, repetitions):
    def median(key):
        return statistics.median(repetition[key] for repetition in repetitions)

    items = f"{1e9 / median('items_per_second'):14.1f}" if "items_per_second" in repetitions[0] else f"{'':14}"
    speed = f"{median('bytes_per_second') / 1e6:10.0f}" if "bytes_per_second" in repetitions[0] else ""
    print(f"{name:44}{median('cpu_time'):14.0f}{items}{speed}".rstrip(), flush=True)


def load():
    return " ".join(f"{value:.1f}" for value in os.getloadavg())


def parse_arguments():
    parser = argparse.ArgumentParser(prog="scripts/bench")
    parser.add_argument("words", nargs="*", help="only what holds one of these in its name")
    parser.add_argument("--smoke", action="store_true", help="everything once, on its smallest input")
    parser.add_argument("--runs", type=int, default=5)
    parser.add_argument("--only", choices=["jobs", "growth", "micro"])
    parser.add_argument("--build", default=os.path.join(ROOT, "build", "release"), help=argparse.SUPPRESS)
    return parser.parse_args()


def main():
    options = parse_arguments()

    def select(rows):
        return [row for row in rows if not options.words or any(word in row.name for word in options.words)]

    good = True
    print(f"medians of {1 if options.smoke else options.runs} runs or more; load of the machine {load()} at the start")
    try:
        if options.only in (None, "jobs"):
            print_jobs(options.build, select(jobs.JOBS), options.runs, options.smoke)
        if options.only in (None, "growth") and options.smoke:
            print_first_sizes(options.build, select(jobs.GROWTH))
        elif options.only in (None, "growth"):
            good = print_growth(options.build, select(jobs.GROWTH), options.runs)
        if options.only in (None, "micro"):
            run_micro(options.build, options.words, options.smoke)
    except Failure as failure:
        sys.exit(str(failure))
    print(f"\nload of the machine {load()} at the end")
    if not good:
        sys.exit("a job grows faster than it may")


if __name__ == "__main__":
    main()
