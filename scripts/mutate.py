#!/usr/bin/env python3
"""Breaks the engines in fifty places, one at a time, in a copy of its own, and counts how many breaks the tests notice.

Usage: mutate.py [first [last]]     the mutations to try, from 1; all of them by default
"""
import os
import pathlib
import shutil
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
COPY = ROOT / "build" / "mutations" / "source"
BUILD = ROOT / "build" / "mutations" / "build"
NEEDED = 45
ROOMS = ["platform", "model", "emulator", "settings", "link"]

# Where, what stands there, and what is put in its place.
MUTATIONS = [
    ("src/platform/Arithmetic.cpp", "part > 0.5 ? 1.0", "part >= 0.6 ? 1.0"),
    ("src/platform/Arithmetic.cpp", "std::fmod(below, 2.0) == 0.0", "std::fmod(below, 2.0) != 0.0"),
    ("src/platform/Arithmetic.cpp", "value < std::numeric_limits<Integer>::min() ||", ""),
    ("src/platform/Arithmetic.cpp", "std::trunc(value)", "std::floor(value)"),
    ("src/platform/Numbers.cpp", "decimal.digits.at(kept) >= '5'", "decimal.digits.at(kept) > '5'"),
    ("src/platform/Numbers.cpp", "digits.rightJustified(decimals + 1, '0')", "digits.rightJustified(decimals, '0')"),
    ("src/platform/Numbers.cpp", "decimal.exponent > 15", "decimal.exponent > 14"),
    ("src/platform/AtomicFile.cpp", " || !Flush(siblingPath_, O_RDONLY) ||", " ||"),
    ("src/platform/AtomicFile.cpp", "| S_IWUSR", ""),
    ("src/platform/MSComm.cpp", "buffer_.size() >= rThreshold_", "buffer_.size() > rThreshold_"),
    ("src/model/Conversions.cpp", "attributes / 32.0", "attributes / 33.0"),
    ("src/model/Conversions.cpp", "rawValue > 3 ?", "rawValue > 4 ?"),
    ("src/model/Conversions.cpp", "{1.0, 10.0, 100.0, 1000.0}", "{1.0, 10.0, 1000.0, 100.0}"),
    ("src/model/LimitRules.cpp", "{1, 7, Rule::DigitalInput, 7, 14}", "{1, 6, Rule::DigitalInput, 7, 14}"),
    ("src/model/LimitRules.cpp", "{23, 27, Rule::ScaledInput", "{23, 26, Rule::ScaledInput"),
    ("src/model/LimitRules.cpp", "record.Value > record.Max", "record.Value >= record.Max + 2"),
    ("src/model/LimitRules.cpp", "rated * 0.2", "rated * 0.25"),
    ("src/model/LimitRules.cpp", "if (Value(absolute) != 0)", "if (Value(absolute) == 0)"),
    ("src/model/LimitRules.cpp", "BipolarMin = -2048", "BipolarMin = -2047"),
    ("src/model/Model.cpp", "state == 0 || state == 8", "state == 0 || state == 7"),
    ("src/model/Model.cpp", "for (int i = 0; i <= LastParam; ++i)\n        if (AttrBit(Attr::Destination",
     "for (int i = 1; i <= LastParam; ++i)\n        if (AttrBit(Attr::Destination"),
    ("src/model/Model.cpp", "raw <= ParamTable[p].Max", "raw < ParamTable[p].Max"),
    ("src/model/Model.cpp", "p != Param::SaveParameters && p != Param::LoadParameters", "p != Param::SaveParameters"),
    ("src/model/EntryRules.cpp", "true, !model_.PortOpen()", "true, model_.PortOpen()"),
    ("src/model/EntryRules.cpp", "&& i != p)", "&& i >= p)"),
    ("src/emulator/EmulatedControlBlocks.cpp", "mode == 0 ? block.Value(205) : mode == 1", "mode == 1 ? block.Value(205) : mode == 0"),
    ("src/emulator/EmulatedControlBlocks.cpp", "sum > 0 && sum > block.Value(99)", "sum > block.Value(99)"),
    ("src/emulator/EmulatedControlBlocks.cpp", "source <= 404", "source < 404"),
    ("src/emulator/EmulatedControlBlocks.cpp", "x <= block.Difference", "x < block.Difference"),
    ("src/emulator/TimerBlock.cpp", "CountEnd = 2400", "CountEnd = 2410"),
    ("src/settings/SettingsFile.cpp", "rows.RecordCount() <= LastNeededParam", "rows.RecordCount() < LastNeededParam"),
    ("src/settings/SettingsFile.cpp", "preset.Value = record.Preset", "preset.Value = record.Value"),
    ("src/settings/SettingsFile.cpp", "online && number == Param::MotorCurrent", "number == Param::MotorCurrent"),
    ("src/settings/SettingsFile.cpp", "model_.FileModified = false;", ""),
    ("src/settings/FileCommands.cpp", "if (index == 1 || model_.FileName", "if (index == 2 || model_.FileName"),
    ("src/settings/FileCommands.cpp", "if (!model_.DriveIsStopped()) {\n        rules_.ShowStopModeMessage();\n        return;\n    }\n    QString failure;", "QString failure;"),
    ("src/settings/LineWrap.cpp", "wordLength + units > limit", "wordLength + units >= limit"),
    ("src/settings/RecoveryCopy.cpp", "if (!timer_.isActive())\n", ""),
    ("src/settings/RecoveryCopy.cpp", "std::exchange(isOurs_, false)", "true"),
    ("src/link/PacketLayer.cpp", "for (qsizetype i = 1; i < packet.size(); ++i)", "for (qsizetype i = 0; i < packet.size(); ++i)"),
    ("src/link/DriveLink.cpp", "if (!SerialCommTimeout.isActive()) {", "if (false) {"),
    ("src/link/DriveLink.cpp", "MSComm1.RThreshold() != buffer.size()", "MSComm1.RThreshold() > buffer.size()"),
    ("src/link/DriveLink.cpp", "    CurrentParam = 0;\n    DiscardInput();", "    CurrentParam = 0;"),
    ("src/link/DriveLink.cpp", "ReadPropsIndex >= 1", "ReadPropsIndex > 1"),
    ("src/link/ErrorPolicy.cpp", "FailuresInARow = 3", "FailuresInARow = 4"),
    ("src/link/Scans.cpp", "record.WriteFlag == WriteState::None && record.ReadFlag > 0", "record.ReadFlag > 0"),
    ("src/link/Scans.cpp", "if (record.Value == rawValueSent_)\n", ""),
    ("src/link/Scans.cpp", "RefusalsInARow = 3", "RefusalsInARow = 2"),
    ("src/link/Scans.cpp", "int at = 2;", "int at = 3;"),
    ("src/link/LinkState.cpp", "std::min<std::int32_t>(PropMax", "std::max<std::int32_t>(PropMax"),
]


def run(arguments, **options):
    return subprocess.run(arguments, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, **options)


def prepare():
    """Copies the sources, keeping what is unchanged, so that an earlier build of the copy stays good."""
    files = set(filter(None, run(["git", "ls-files"], cwd=ROOT).stdout.split("\n")))
    for old in COPY.rglob("*"):
        if old.is_file() and str(old.relative_to(COPY)) not in files:
            old.unlink()
    for name in files:
        source, target = ROOT / name, COPY / name
        if source.is_file() and not (target.is_file() and target.read_bytes() == source.read_bytes()):
            target.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(source, target)
    result = run(["cmake", "-S", COPY, "-B", BUILD, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Debug",
                  "-DQUORVIK_ENGINES_ONLY=ON"])
    if result.returncode != 0:
        sys.exit(result.stdout)


def build(room):
    return run(["ninja", "-C", BUILD, f"{room}_tests"])


def room_passes(room):
    environment = dict(os.environ, QT_QPA_PLATFORM="offscreen", GTEST_FAIL_FAST="1", GTEST_BRIEF="1")
    try:
        return run([BUILD / "tests" / room / f"{room}_tests"], env=environment, timeout=120).returncode == 0
    except subprocess.TimeoutExpired:
        return False


def who_notices(path):
    """The first room whose tests fail, the rooms nearest to the change first; None when all pass."""
    own = path.split("/")[1]
    for room in [own] + [room for room in ROOMS if room != own]:
        result = build(room)
        if " error: " in result.stdout:
            sys.exit(f"{path} does not build:\n{result.stdout[-3000:]}")
        # The build makes the factory table, which its generator checks against the engines.
        if result.returncode != 0:
            return "the build"
        if not room_passes(room):
            return room
    return None


def main():
    first = int(sys.argv[1]) if len(sys.argv) > 1 else 1
    last = int(sys.argv[2]) if len(sys.argv) > 2 else len(MUTATIONS)
    for path, before, _ in MUTATIONS:
        if (ROOT / path).read_text().count(before) < 1:
            sys.exit(f"{path} holds no {before!r} any more: give the list another place to break")
    prepare()
    for room in ROOMS:
        result = build(room)
        if result.returncode != 0:
            sys.exit(f"{room} does not build without any mutation:\n{result.stdout[-3000:]}")
        if not room_passes(room):
            sys.exit(f"the tests of {room} fail without any mutation")

    noticed = 0
    for number, (path, before, after) in enumerate(MUTATIONS[first - 1:last], first):
        target = COPY / path
        whole = target.read_text()
        target.write_text(whole.replace(before, after, 1))
        try:
            room = who_notices(path)
        finally:
            target.write_text(whole)
        noticed += room is not None
        print(f"{number:2} {'noticed by ' + room if room else 'SURVIVED':22} {path}: {before!r} -> {after!r}", flush=True)
    tried = last - first + 1
    print(f"mutations-noticed: {noticed} of {tried} (at least {NEEDED} of {len(MUTATIONS)})")
    return 0 if noticed >= NEEDED * tried / len(MUTATIONS) else 1


sys.exit(main())
