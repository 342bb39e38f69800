#!/usr/bin/python3
"""Injects small faults into sources, with one build for all, and lists those that no test detects.

mutate.py [--sample N] FILE[:FIRST-LAST]...

Works on a copy of the tracked files in build/mutate. The variable MUTANT enables one fault, and the tests of its file
run until one fails. survivors.txt lists the faults that no test can detect, with reasons.

Home-made: Debian 12 packages no tool for mutation tests of C++.
"""
import json
import os
import random
import re
import shutil
import signal
import subprocess
import sys
import threading
import time
from collections import Counter
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

import faults

HERE = Path(__file__).resolve().parent
ROOT = HERE.parent.parent
WORK = ROOT / "build/mutate"
TREE = WORK / "tree"
BUILD = WORK / "build"
HELPERS = ["exitchild", "logchild", "providerchild", "savechild", "saveloop", "stepschild", "stresschild",
           "dlopenchild", "exitplugin", "gesturectl"]

# The tests of a file, quick ones first. The first pattern that matches applies.
TESTS = [
    (r"common/.*/either", "either vxcomponents configuration"),
    (r"common/.*/exitnotifier", "exitnotifier exitsave gestureservice"),
    (r"common/.*/stringutils", "stringutils gesture gesturecodec"),
    (r"common/", "either stringutils"),
    (r"gesture_api/src/fields", "action gesturecodec configuration actionbindings"),
    (r"gesture_api/src/gesturereader", "gesture gesturecodec configuration"),
    (r"gesture_api/src/(ownership|offer)", "ownership reentrancy gesture exitsave"),
    (r"gesture_api/.*/action", "action actionlists actiontree ownership reentrancy configuration"),
    (r"gesture_api/.*/announcement", "reentrancy gesturekindfiltermodel"),
    (r"gesture_api/.*/applicationpaths", "applicationpaths gestureserviceprovider"),
    (r"gesture_api/.*/(bindings|configuration)", "actionbindings configuration gestureservice exitsave"),
    (r"gesture_api/.*/feature", "feature action gesturecodec"),
    (r"gesture_api/src/gestureindex", "gestureservice"),
    (r"gesture_api/.*/(gesture|qmllistproperty)\.",
     "gesture gesturecodec ownership reentrancy exitsave metaobjects"),
    (r"gesture_api/.*/gesturekindfiltermodel", "gesturekindfiltermodel reentrancy"),
    (r"gesture_api/.*/gestureserviceprovider", "gestureserviceprovider reentrancy exitsave endurance"),
    (r"gesture_api/.*/gestureservice\.", "gestureservice exitsave ownership reentrancy rejectedfile"),
    (r"gesture_api/.*/(resolvedpath|varianttype|dump)", "applicationpaths gesturecodec configuration gesture"),
    (r"gesture_api/.*/zones", "zones"),
    (r"gesture_api/src/", "savefile rejectedfile exitsave gestureservice savefaults"),
    (r"platform/.*/baseutil", "baseutil either gestureserviceprovider"),
    (r"platform/.*/(devcaps|slateview)", "devcaps slateview feature"),
    (r"platform/host/vxcomponents/(filewatch|inotify)", "filewatch mounts gestureserviceprovider"),
    (r"platform/host/vxcomponents/(jsonreader|stringcache)", "jsonreader"),
    (r"platform/", "vxcomponents configuration gestureservice"),
    (r"tools/analysis", "reach check checkverb output schemas"),
    (r"tools/gesturectl/(verbs/)?doctor", "doctor output gesturectl"),
    (r"tools/gesturectl/(verbs/)?map", "map output gesturectl"),
    (r"tools/gesturectl/verbs/explain", "explain output gesturectl"),
    (r"tools/gesturectl/(bindingsfile|verbs/(export|import))", "exchange gesturectl doctor output"),
    (r"tools/gesturectl/verbs/check", "checkverb output gesturectl"),
    (r"tools/gesturectl", "gesturectl output checkverb doctor exchange explain map"),
]


def testsOf(path):
    return next((tests.split() for pattern, tests in TESTS if re.match(pattern, path)), None)


def run(command, **options):
    return subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, **options)


def copyTree():
    """Copies the changed files. The others keep their times, so that they are not built again."""
    for name in run(["git", "ls-files"], cwd=ROOT).stdout.splitlines():
        source, copy = ROOT / name, TREE / name
        if not source.exists() or copy.exists() and copy.read_bytes() == source.read_bytes():
            continue
        copy.parent.mkdir(parents=True, exist_ok=True)
        shutil.copy2(source, copy)
        os.utime(copy)


def configure():
    result = run(["cmake", "-S", TREE, "-B", BUILD, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Release",
                  "-DCMAKE_CXX_FLAGS_RELEASE=-O1", "-DCMAKE_CXX_FLAGS=-w -DTESTING_PATIENCE=20000",
                  "-DCMAKE_CXX_COMPILER_LAUNCHER=ccache", "-DCMAKE_EXPORT_COMPILE_COMMANDS=ON"])
    if result.returncode:
        sys.exit(result.stdout)


def argumentsFor(name):
    """The compiler arguments of a source; for a header, those of the source with the longest common path."""
    entries = json.loads((BUILD / "compile_commands.json").read_text())
    entry = max(entries, key=lambda entry: len(os.path.commonprefix([entry["file"], str(TREE / name)])))
    if name.endswith(".cpp") and entry["file"] != str(TREE / name):
        sys.exit("mutate: no compiled source of this name: " + name)
    words = entry["command"].split()
    return ["-xc++"] + [word.replace('\\"', '"') for word in words if re.match(r"-(I|D|std)", word)] \
        + ["-isystem" + after for word, after in zip(words, words[1:]) if word == "-isystem"]


def faultsOf(name, first, last):
    found = faults.Finder(str(TREE / name), argumentsFor(name)).all()
    return [(name, fault) for fault in found if first <= fault.line <= last]


def write(numbered):
    """Writes the sources with the remaining faults. The compiler reports the lines of the original sources."""
    for name in {name for number, (name, fault) in numbered}:
        text = (ROOT / name).read_bytes()
        mutated = faults.applied(text, [(number, fault) for number, (other, fault) in numbered if other == name])
        header = '#include "%s"\n#line 1\n' % (HERE / "mutation.h")
        (TREE / name).write_bytes(header.encode() + mutated)


def build(numbered, tests):
    """Builds everything, without the faults that do not compile."""
    targets = ["tst_" + test for test in tests] + HELPERS
    while True:
        write(numbered)
        result = run(["cmake", "--build", BUILD, "--target", *targets, "--", "-k", "0"])
        if result.returncode == 0:
            return numbered
        places = {(match[1], int(match[2])) for match in
                  re.finditer(r"([\w./-]+):(\d+):\d+: (?:error|  required from here)", result.stdout)}
        kept = [(number, (name, fault)) for number, (name, fault) in numbered
                if not any(place.endswith(name) and line == fault.line for place, line in places)]
        if len(kept) == len(numbered):
            sys.exit("mutate: it does not build:\n" + result.stdout[-3000:])
        numbered = kept


def passes(test, number, limit):
    environment = dict(os.environ, MUTANT=str(number), QT_QPA_PLATFORM="offscreen")
    with subprocess.Popen([BUILD / "tests" / ("tst_" + test), "-silent"], env=environment, stdout=subprocess.PIPE,
                          stderr=subprocess.DEVNULL, stdin=subprocess.DEVNULL, start_new_session=True) as process:
        timer = threading.Timer(limit, os.killpg, (process.pid, signal.SIGKILL))
        timer.start()
        hasFailed = any(line.startswith(b"FAIL!") for line in process.stdout)
        timer.cancel()
        if hasFailed: # further tests would change nothing
            os.killpg(process.pid, signal.SIGKILL)
        return process.wait() == 0 and not hasFailed


def known():
    reasons = {}
    for line in (HERE / "survivors.txt").read_text().splitlines():
        if line and not line.startswith("#"):
            name, rest = line.split(" | ", 1)
            what, reason = rest.rsplit(" | ", 1)
            reasons[name, what] = reason
    return reasons


def main():
    arguments = sys.argv[1:]
    sample = int(arguments.pop(arguments.index("--sample") + 1)) if "--sample" in arguments else 0
    wanted = [re.fullmatch(r"(.*?)(?::(\d+)-(\d+))?", name).groups() for name in arguments if name != "--sample"]
    tests = sorted({test for name, first, last in wanted
                    for test in testsOf(name) or sys.exit("mutate: no tests of " + name)})
    copyTree()
    configure()
    found = [each for name, first, last in wanted for each in faultsOf(name, int(first or 1), int(last or 10 ** 9))]
    reasons = known()
    found = [(name, fault) for name, fault in found if (name, fault.what) not in reasons]
    if sample and sample < len(found):
        found = random.Random(sample).sample(found, sample)
    numbered = build(list(enumerate(found, 1)), tests)
    print("%d faults, %d more do not compile" % (len(numbered), len(found) - len(numbered)), flush=True)

    def limitOf(test):
        start = time.time()
        if not passes(test, 0, 600):
            sys.exit("mutate: %s fails without a fault" % test)
        return 20 + 10 * (time.time() - start)

    def survives(each):
        number, (name, fault) = each
        return all(passes(test, number, limits[test]) for test in testsOf(name))

    tried, survived = Counter(), Counter()
    with ThreadPoolExecutor(2 * os.cpu_count()) as pool: # tests wait more than they compute
        limits = dict(zip(tests, pool.map(limitOf, tests)))
        for (number, (name, fault)), alive in zip(numbered, pool.map(survives, numbered)):
            folder = str(Path(name).parent)
            tried[folder] += 1
            if alive:
                survived[folder] += 1
                print("%s:%d: %s" % (name, fault.line, fault.what), flush=True)
    for folder in sorted(tried):
        noticed = tried[folder] - survived[folder]
        print("%s: %d of %d noticed (%.1f %%)" % (folder, noticed, tried[folder], 100 * noticed / tried[folder]))
    sys.exit(1 if survived else 0)


main()
