#!/usr/bin/env python3
"""Breaks one line of the program at a time, in a copy of its own, and counts how many breaks the tests notice.

Usage: mutate.py [count [seed [part]]]  so many lines of the engines and as many of the windows, 40 by default, or of
                                        one of them alone; the same seed draws the same lines, as long as the sources
                                        stay as they are

Engines and windows are tried side by side, each in a copy and a build of its own.
"""
import concurrent.futures
import os
import pathlib
import random
import re
import shutil
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
COPIES = ROOT / "build" / "mutations"
ENGINES = ["platform", "model", "emulator", "settings", "link", "compare", "circuit", "operations", "find"]
WANTED = {"engines": 90, "windows": 65}  # per cent
TIME_LIMIT = 300  # seconds for the tests of one folder, after which they count as hanging

# What is looked for in the code of a line, and what is put in its place.
SWAPS = [
    (r" <= ", " < "), (r" >= ", " > "), (r" < ", " <= "), (r" > ", " >= "), (r" == ", " != "), (r" != ", " == "),
    (r" && ", " || "), (r" \|\| ", " && "), (r" \+ ", " - "), (r" - ", " + "), (r" \* ", " / "), (r" / ", " * "),
    (r" \+= ", " -= "), (r" -= ", " += "), (r"\+\+", "--"), (r"--", "++"), (r" \? ", " && false ? "),
    (r"\btrue\b", "false"), (r"\bfalse\b", "true"),
    (r"\bif \(([^;]*)\)(?=( \{)?$)", lambda match: f"if (!({match.group(1)}))"), (r"(?<=[(\s])!(?=[\w(])", ""),
    (r"(?<![\w.\"'])\d+(?![\w.\"'])", lambda match: str(int(match.group()) + 1)),
    (r"(?<![\w.])\d+\.\d+", lambda match: str(float(match.group()) * 1.5 + 1)),
    (r"\"[^\"\\]+\"", lambda match: match.group()[:-1] + "!\""),
]
STATEMENT = re.compile(r"^\s+\w[\w:.>\-\[\]()*]+(\(.*\)| [+\-*/|&]?= .*);\s*$")
NO_CODE = re.compile(r"^\s*(//|/?\*|#|using |namespace |template|class |struct |enum |public:|private:|protected:|"
                     r"static_assert|Q_|QUORVIK_\w*TRACE)")


def run(arguments, **options):
    return subprocess.run(arguments, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, errors="replace",
                          **options)


def code_of(line):
    """The line without the comment at its end."""
    return re.split(r" //[/ ]", line)[0]


def breaks(line):
    """Every line that the given one can be broken into; none where it holds no code."""
    if NO_CODE.match(line) or not re.search(r"\w", line):
        return []
    code = len(code_of(line))
    broken = []
    for pattern, replacement in SWAPS:
        for match in re.finditer(pattern, line[:code]):
            inText = line[:match.start()].count('"') % 2 == 1
            if not inText:
                new = replacement(match) if callable(replacement) else replacement
                broken.append(line[:match.start()] + new + line[match.end():])
    if STATEMENT.match(line) and not re.match(r"\s+(return|const|auto|static) ", line):
        broken.append(re.match(r"\s*", line).group() + ";")
    return broken


def all_lines(part):
    """The lines of engines or windows that can be broken, as (path, number from 0)."""
    found = []
    for name in sorted(run(["git", "ls-files", "src"], cwd=ROOT).stdout.split()):
        pieces = name.split("/")
        isEngine = pieces[1] in ENGINES and "forms" not in pieces
        if pathlib.Path(name).suffix in (".cpp", ".h") and isEngine == (part == "engines"):
            for number, line in enumerate((ROOT / name).read_text().split("\n")):
                if breaks(line):
                    found.append((name, number))
    return found


class Part:
    """Engines or windows: a copy of the whole program in which the lines of one of them are broken."""

    def __init__(self, name):
        self.name = name
        self.source = COPIES / name / "source"
        self.build = COPIES / name / "build"

    def prepare(self):
        """Copies the sources, keeping what is unchanged, so that an earlier build of the copy stays good."""
        files = set(filter(None, run(["git", "ls-files"], cwd=ROOT).stdout.split("\n")))
        for old in self.source.rglob("*"):
            if old.is_file() and str(old.relative_to(self.source)) not in files:
                old.unlink()
        for name in files:
            source, target = ROOT / name, self.source / name
            if source.is_file() and not (target.is_file() and target.read_bytes() == source.read_bytes()):
                target.parent.mkdir(parents=True, exist_ok=True)
                shutil.copy(source, target)
        result = run(["cmake", "-S", self.source, "-B", self.build, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=None",
                      "-DCMAKE_CXX_FLAGS=-O0 -g0"])
        if result.returncode != 0:
            sys.exit(result.stdout)
        for folder in self.folders_of_tests("src/main.cpp"):
            result, program = self.build_tests(folder)
            if result.returncode != 0:
                sys.exit(f"{folder} does not build without any mutation:\n{result.stdout[-3000:]}")
            if not tests_pass(program):
                sys.exit(f"the tests of {folder} fail without any mutation")

    def folders_of_tests(self, path):
        """The folders of tests, the one of the broken file's own folder first, then the one that opens every window."""
        folders = [str(found.parent.relative_to(self.source / "tests"))
                   for found in self.source.glob("tests/**/CMakeLists.txt") if "quorvik_tests(" in found.read_text()]
        own = str(pathlib.Path(path).parent.relative_to("src"))
        return sorted(folders,
                      key=lambda folder: (-len(folder) if f"{own}/".startswith(f"{folder}/") else 0,
                                          folder != "shell" or own in ENGINES, folder))

    def build_tests(self, folder):
        # Made by the program under test: a broken one may have left it with what a sound one keeps.
        (self.build / "data" / "Presets.fil").unlink(missing_ok=True)
        list_of_tests = (self.source / "tests" / folder / "CMakeLists.txt").read_text()
        name = re.search(r"quorvik_tests\((\w+)", list_of_tests).group(1)
        return run(["ninja", "-C", self.build, f"{name}_tests"]), self.build / "tests" / folder / f"{name}_tests"

    def who_notices(self, path):
        """What notices the break: a folder of tests, or the build, which checks the factory table and the help. ""
        where nothing does, None where the break does not compile."""
        for folder in self.folders_of_tests(path):
            result, program = self.build_tests(folder)
            if " error: " in result.stdout:
                return None
            if result.returncode != 0:
                return "the build"
            if not tests_pass(program):
                return folder
        return ""

    def try_lines(self, count, seed):
        """Breaks so many lines, prints what became of each, and returns whether enough were noticed."""
        self.prepare()
        chance = random.Random(f"{self.name} {seed}")
        lines = all_lines(self.name)
        chance.shuffle(lines)
        tried = noticed = 0
        for path, number in lines:
            if tried == count:
                break
            target = self.source / path
            whole = target.read_text()
            text = whole.split("\n")
            before = text[number]
            text[number] = chance.choice(breaks(before))
            target.write_text("\n".join(text))
            try:
                who = self.who_notices(path)
            finally:
                target.write_text(whole)
            if who is None:
                continue
            tried += 1
            noticed += who != ""
            print(f"{self.name} {tried:3} {'noticed by ' + who if who else 'SURVIVED':26} {path}:{number + 1}: "
                  f"{before.strip()}  ->  {text[number].strip()}", flush=True)
        share = 100 * noticed / tried
        print(f"mutations-noticed-{self.name}: {share:.0f} % ({noticed} of {tried}, seed {seed}; "
              f"limit {WANTED[self.name]})", flush=True)
        return share >= WANTED[self.name]


def tests_pass(program):
    environment = dict(os.environ, QT_QPA_PLATFORM="offscreen", GTEST_FAIL_FAST="1", GTEST_BRIEF="1")
    try:
        return run([program], env=environment, timeout=TIME_LIMIT).returncode == 0
    except subprocess.TimeoutExpired:
        return False


def main():
    count = int(sys.argv[1]) if len(sys.argv) > 1 else 40
    seed = int(sys.argv[2]) if len(sys.argv) > 2 else 1
    parts = sys.argv[3:] or list(WANTED)
    with concurrent.futures.ThreadPoolExecutor() as side_by_side:
        results = list(side_by_side.map(lambda name: Part(name).try_lines(count, seed), parts))
    return 0 if all(results) else 1


sys.exit(main())
