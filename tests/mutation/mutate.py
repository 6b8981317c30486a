#!/usr/bin/env python3
"""Changes the library in one place at a time and reports which changes no test notices.

A change flips an operator, raises a constant, negates a condition, drops a call or returns an
empty value. The work tree stays as it is: a copy in build/mutate is changed, built and tested.
Which tests run a line is taken from the counters of the preset "coverage"; the quickest go first.
"""
import argparse
import hashlib
import json
import os
import random
import resource
import shutil
import subprocess
import sys
import time
from collections import defaultdict
from pathlib import Path

from changes import ROOT, listed_unseen, mutants_of, sources, unseen

WORK = ROOT / "build/mutate"
TREE, BUILD = WORK / "tree", WORK / "build"
COUNTED = ROOT / "build/coverage"
LIBRARIES = ["ZRT4XML", "ZRT4evutl"]
FAIL_UNDER = 95.0
MEMORY, FILE = 4 << 30, 1 << 28  # a change that takes or writes without end fails, not the machine

# ---- which tests run which line -----------------------------------------------------------------

def run(*command, **options):
    """Runs a step of the preparation; its output is shown only when it fails."""
    done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, **options)
    if done.returncode:
        sys.exit(f"{done.stdout}\n{' '.join(map(str, command))} failed")
    return done.stdout


def configured(tree, build):
    """Whether the build is of that tree, not of one that this one was copied from."""
    cache = build / "CMakeCache.txt"
    if cache.exists() and f"CMAKE_HOME_DIRECTORY:INTERNAL={tree}\n" in cache.read_text():
        return (build / "build.ninja").exists()
    shutil.rmtree(build, ignore_errors=True)
    return False


def tests_of(build):
    """Name, command, folder and environment of every test."""
    listed = json.loads(subprocess.check_output(["ctest", "--test-dir", build, "--show-only=json-v1"]))
    tests = {}
    for test in listed["tests"]:
        properties = {p["name"]: p["value"] for p in test.get("properties", [])}
        environment = dict(item.split("=", 1) for item in properties.get("ENVIRONMENT", []))
        tests[test["name"]] = (test["command"], properties["WORKING_DIRECTORY"], environment)
    return tests


def digest_of_tree():
    names = subprocess.check_output(["git", "ls-files", "-co", "--exclude-standard"], cwd=ROOT, text=True)
    digest = hashlib.sha256()
    for name in names.splitlines():
        if (ROOT / name).is_file() and not name.startswith(("docs/", "scripts/", "tests/mutation/")):
            digest.update(name.encode() + b"\0" + (ROOT / name).read_bytes())
    return digest.hexdigest()


def lines_run_by(test):
    """Lines of this tree that one test runs, and those that could be run, as "file:line"."""
    command, folder, environment = test
    counters = WORK / "counters"
    shutil.rmtree(counters, ignore_errors=True)
    subprocess.run(command, cwd=folder, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                   env={**os.environ, **environment, "GCOV_PREFIX": str(counters)})
    reached, countable = set(), set()
    data = sorted(counters.rglob("*.gcda"))
    for file in data:  # gcov wants the notes of the compiler beside the counters
        notes = Path("/") / file.relative_to(counters).with_suffix(".gcno")
        file.with_suffix(".gcno").symlink_to(notes)
    output = subprocess.run(["gcov", "--json-format", "--stdout", *data], cwd=WORK, text=True,
                            stdout=subprocess.PIPE, stderr=subprocess.DEVNULL).stdout
    for unit in map(json.loads, output.splitlines()):
        for file in unit["files"]:
            name = os.path.relpath(os.path.join(unit["current_working_directory"], file["file"]), ROOT)
            if name.startswith(("XML_tools/", "event_util/")):
                for line in file["lines"]:
                    countable.add(f"{name}:{line['line_number']}")
                    if line["count"]:
                        reached.add(f"{name}:{line['line_number']}")
    return reached, countable


def reach():
    """Tests that run each line; a line without code is missing."""
    kept, digest = WORK / "reach.json", digest_of_tree()
    if kept.exists() and (found := json.loads(kept.read_text()))["tree"] == digest:
        return found["lines"]
    print("Building with counters ...", file=sys.stderr)
    if not configured(ROOT, COUNTED):
        run("cmake", "--preset", "coverage", cwd=ROOT)
    run("cmake", "--build", COUNTED)
    lines = defaultdict(set)
    for name, test in tests_of(COUNTED).items():
        print(f"Lines run by {name} ...", file=sys.stderr)
        reached, countable = lines_run_by(test)
        for line in countable:
            lines[line].update({name} if line in reached else ())
    lines = {line: sorted(tests) for line, tests in lines.items()}
    kept.write_text(json.dumps({"tree": digest, "lines": lines}))
    return lines


# ---- trying the changes -------------------------------------------------------------------------

def copy_tree():
    """Brings the copy up to date; files that are the same keep their time, and so their objects."""
    names = subprocess.check_output(["git", "ls-files", "-co", "--exclude-standard"], cwd=ROOT, text=True)
    for name in names.splitlines():
        source, target = ROOT / name, TREE / name
        if source.is_file() and not (target.exists() and target.read_bytes() == source.read_bytes()):
            target.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(source, target)


def build_copy():
    copy_tree()
    print("Building the copy ...", file=sys.stderr)
    if not configured(TREE, BUILD):
        linker = "-fuse-ld=lld" if shutil.which("ld.lld") else ""
        run("cmake", "-G", "Ninja", "-S", TREE, "-B", BUILD, "-DCMAKE_BUILD_TYPE=None",
            "-DCMAKE_CXX_COMPILER=clang++", "-DCMAKE_CXX_FLAGS=-O0 -w -D_GLIBCXX_ASSERTIONS",
            "-DCMAKE_LINK_DEPENDS_NO_SHARED=ON", f"-DCMAKE_SHARED_LINKER_FLAGS={linker}",
            f"-DCMAKE_EXE_LINKER_FLAGS={linker}")
    run("ninja", "-C", BUILD)


def build(*targets):
    return subprocess.run(["ninja", "-C", BUILD, *targets], stdout=subprocess.DEVNULL,
                          stderr=subprocess.DEVNULL).returncode == 0


def passes(test, seconds):
    """Processor time decides what hangs, so that a busy machine does not look like a catch."""
    command, folder, environment = test

    def limits():
        resource.setrlimit(resource.RLIMIT_CPU, (int(seconds) + 1, int(seconds) + 1))
        resource.setrlimit(resource.RLIMIT_AS, (MEMORY, MEMORY))
        resource.setrlimit(resource.RLIMIT_FSIZE, (FILE, FILE))
        resource.setrlimit(resource.RLIMIT_CORE, (0, 0))

    process = subprocess.Popen(command, cwd=folder, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                               stderr=subprocess.DEVNULL, preexec_fn=limits, start_new_session=True,
                               env={**os.environ, **environment, "GTEST_FAIL_FAST": "1"})
    try:
        return process.wait(timeout=60 + 20 * seconds) == 0
    except subprocess.TimeoutExpired:
        os.killpg(process.pid, 9)
        process.wait()
        return False


class Trial:
    def __init__(self, lines, files, longest):
        self.longest = longest
        self.lines = lines
        self.originals = {file: (TREE / file).read_text() for file in files}
        self.files = defaultdict(set)
        for line, names in lines.items():
            self.files[line.rsplit(":", 1)[0]].update(names)
        wanted = {name for names in lines.values() for name in names}
        self.tests = {name: test for name, test in tests_of(BUILD).items()
                      if name in wanted and test[0][0].startswith(f"{BUILD}/")}  # no scripts
        self.seconds = self.seconds_taken()

    def seconds_taken(self):
        """Processor time of each test without any change; all of them must pass."""
        kept, digest = WORK / "seconds.json", digest_of_tree()
        if kept.exists() and (found := json.loads(kept.read_text()))["tree"] == digest:
            return found["seconds"]
        print("Running the tests without any change ...", file=sys.stderr)
        seconds = {}
        for name, test in self.tests.items():
            before = resource.getrusage(resource.RUSAGE_CHILDREN)
            if not passes(test, 300):
                sys.exit(f"The test {name} fails without any change")
            after = resource.getrusage(resource.RUSAGE_CHILDREN)
            seconds[name] = after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime
        kept.write_text(json.dumps({"tree": digest, "seconds": seconds}))
        return seconds

    def tests_for(self, mutant):
        """Those that run its line; for a line without code those that run anything of its file.
        The tests of its own source first, then the quick ones, and those beyond `longest` not."""
        names = self.lines.get(f"{mutant.file}:{mutant.line}")
        if names is None:
            names = self.files.get(mutant.file) or self.tests
        source = Path(mutant.file).stem
        own = {name for name in names if name.startswith(source) or source.startswith(name)}
        return sorted((name for name in names if name in self.tests and
                       (name in own or self.seconds[name] <= self.longest)),
                      key=lambda name: (name not in own, self.seconds[name]))

    def result(self, mutant):
        names = self.tests_for(mutant)
        if not names:
            return "survived", "no test runs this line"
        target, original = TREE / mutant.file, self.originals[mutant.file]
        target.write_text(original[:mutant.start] + mutant.new + original[mutant.end:])
        try:
            programs = [Path(self.tests[name][0][0]).name for name in names]
            header = mutant.file.endswith(".hh")
            # Programs may compile parts of the library themselves. Those of a header are slow to build: one by one.
            if not build(*LIBRARIES, *([] if header else programs)):
                return "not viable", "does not build"
            for name, program in zip(names, programs):
                if header and not build(program):
                    return "not viable", "does not build"
                if not passes(self.tests[name], 2 * self.seconds[name] + 2):
                    return "caught", name
            return "survived", f"{len(names)} tests"
        finally:
            target.write_text(original)


def chosen(options):
    files = sources()
    if options.file:
        files = [file for file in files if any(file.endswith(wanted) for wanted in options.file)]
    found = [mutant for file in files for mutant in mutants_of(file)]
    if options.again:
        wanted = {line.split(" -> ")[0] for line in Path(options.again).read_text().splitlines()}
        found = [mutant for mutant in found if str(mutant).split(" -> ")[0] in wanted]
    if not options.unseen:
        listed = listed_unseen()
        found = [mutant for mutant in found if not unseen(mutant, listed)]
    random.Random(options.seed).shuffle(found)  # so that any first part is a fair sample
    part, parts = map(int, options.part.split("/"))
    return found[:options.sample][part - 1::parts]


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawTextHelpFormatter)
    parser.add_argument("--list", action="store_true", help="only list the changes")
    parser.add_argument("--file", action="append", help="only those of this source (may be repeated)")
    parser.add_argument("--sample", type=int, metavar="N", help="only N, drawn at random")
    parser.add_argument("--minutes", type=float, help="end after that time; what was tried is a random sample")
    parser.add_argument("--part", default="1/1", metavar="I/N", help="only the I-th of N parts of the work")
    parser.add_argument("--longest", type=float, default=300, metavar="SECONDS",
                        help="leave out tests of other sources that take longer: for a first sieve")
    parser.add_argument("--seed", type=int, default=1, help="of the order (default 1)")
    parser.add_argument("--again", metavar="FILE", help="only those listed in FILE, as an earlier run wrote it")
    parser.add_argument("--unseen", action="store_true", help="also those of unseen_changes.txt")
    options = parser.parse_args()

    mutants = chosen(options)
    if options.list:
        print(*sorted(mutants), sep="\n")
        return
    for tool in ("cmake", "ninja", "clang++", "gcov"):
        if not shutil.which(tool):
            sys.exit(f"{tool} is missing: scripts/check installs what is needed")
    WORK.mkdir(parents=True, exist_ok=True)
    lines = reach()
    build_copy()
    trial = Trial(lines, {mutant.file for mutant in mutants}, options.longest)
    counts, survivors, began = defaultdict(int), [], time.time()
    with open(WORK / "results.txt", "w", buffering=1) as results:
        for number, mutant in enumerate(mutants, 1):
            if options.minutes and time.time() - began > 60 * options.minutes:
                break
            verdict, reason = trial.result(mutant)
            counts[verdict] += 1
            results.write(f"{verdict}\t{mutant}\t{reason}\n")
            if verdict == "survived":
                survivors.append(mutant)
                print(f"{mutant}  ({reason})", flush=True)
            if sys.stderr.isatty():
                print(f"\r{number}/{len(mutants)}, {time.time() - began:.0f} s ", end="", file=sys.stderr)
    (WORK / "survivors.txt").write_text("".join(f"{mutant}\n" for mutant in sorted(survivors)))
    tried, viable = sum(counts.values()), counts["caught"] + counts["survived"]
    share = 100 * counts["caught"] / viable if viable else 100.0
    print(f"{tried} of {len(mutants)} changes tried, {counts['not viable']} not viable, {counts['caught']} caught, "
          f"{counts['survived']} survived: {share:.1f} % caught")
    sys.exit(share < FAIL_UNDER)


if __name__ == "__main__":
    main()
