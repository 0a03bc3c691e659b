#!/usr/bin/env python3
"""Runs the builds, tests and lints that ./test.sh promises and counts them.

What there is to run follows from the source tree (tests/logic/<room>, fuzz/*.cpp, ...), so that a
test program that was not built counts as failed instead of being forgotten. GoogleTest programs
report by JSON; one that crashes or exceeds its time counts as a failure of its own beside the
cases it got through. Every program under Wine gets a fresh host (tools/host.sh), two at a time.
"""
import argparse
import concurrent.futures
import fcntl
import fnmatch
import glob
import json
import os
import re
import signal
import subprocess
import sys
import tempfile
import threading
import time

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
NATIVE = "build/native"
WIN32 = "build/win32"
WIN64 = "build/win64"
RESULTS = "build/results"
SKIP_CODE = 77  # a script that exits with this was skipped and has said why

# Seconds; generous, since a limit is there to end what hangs.
LIMITS = {"build": 3600, "native": 300, "lint": 600, "wine": 400, "program": 900, "foreign": 300}


class Tally:
    """Counts results, and prints each block of output whole although two lanes run."""

    def __init__(self):
        self.passed = self.failed = self.skipped = 0
        self.failures = []
        self.lock = threading.Lock()

    def add(self, name, passed=0, failures=(), skips=(), seconds=None, output=""):
        took = "" if seconds is None else f" ({seconds:.1f} s)"
        with self.lock:
            self.passed += passed
            self.failed += len(failures)
            self.skipped += len(skips)
            self.failures += [f"{name}: {failure}" for failure in failures]
            if failures and output:
                print(f"---- {name}\n{output.rstrip()}\n----")
            for failure in failures:
                print(f"FAIL  {name}: {failure}")
            for skip in skips:
                print(f"skip  {name}: {skip}")
            if not failures:
                print(f"ok    {name}: {passed} passed{took}")
            sys.stdout.flush()

    def check(self, name, ok, seconds=None, output="", reason="failed"):
        self.add(name, 1 if ok else 0, () if ok else (reason,), (), seconds, output)


class Runner:
    """Starts processes in groups of their own, so that each can be ended with its children."""

    def __init__(self):
        self.lock = threading.RLock()  # re-entrant: a signal may come while it is held
        self.live = set()
        self.hosts = set()
        self.stopping = False

    def run(self, command, limit, env=None):
        """Returns (exit code or None when out of time, output, seconds)."""
        if self.stopping:
            return None, "interrupted", 0.0
        start = time.monotonic()
        # A file, not a pipe: Wine's helpers keep what they inherit open, and what a program had
        # printed is still there after it was killed.
        with tempfile.TemporaryFile() as output:
            process = subprocess.Popen(
                command, cwd=ROOT, stdin=subprocess.DEVNULL, stdout=output,
                stderr=subprocess.STDOUT, start_new_session=True,
                env={**os.environ, **(env or {})})
            with self.lock:
                self.live.add(process)
            code = None
            try:
                code = process.wait(timeout=limit)
            except subprocess.TimeoutExpired:
                self.kill(process)
                process.wait()
            finally:
                with self.lock:
                    self.live.discard(process)
            output.seek(0)
            text = output.read().decode("utf-8", "replace").replace("\r", "")
        return code, text, time.monotonic() - start

    @staticmethod
    def kill(process):
        try:
            os.killpg(process.pid, signal.SIGKILL)
        except ProcessLookupError:
            pass

    def run_in_host(self, host, command, limit, env):
        with self.lock:
            self.hosts.add(host)
        try:
            return self.run(["tools/host.sh", "run", host, "--", *command], limit,
                            {"TONVISTA_DIRECT": "1", **env})
        finally:
            self.stop_host(host)

    def stop_host(self, host):
        with self.lock:
            if host not in self.hosts:
                return
            self.hosts.discard(host)
        subprocess.run(["tools/host.sh", "stop", host], cwd=ROOT, stdin=subprocess.DEVNULL,
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=False)

    def interrupt(self):
        """Ends what runs and lets nothing new start."""
        self.stopping = True
        with self.lock:
            for process in self.live:
                self.kill(process)

    def stop_hosts(self):
        for host in list(self.hosts):
            self.stop_host(host)


tally = Tally()
runner = Runner()


# ---- what there is

def source_names(pattern):
    return sorted({os.path.splitext(os.path.basename(p))[0]
                   for p in glob.glob(os.path.join(ROOT, pattern))})


def rooms_with(kind):
    return sorted({os.path.basename(os.path.dirname(p))
                   for p in glob.glob(os.path.join(ROOT, f"tests/{kind}/*/*.cpp"))})


def lint_names():
    out = subprocess.run([sys.executable, "tools/lint/lint.py", "--list"], cwd=ROOT, check=True,
                         capture_output=True, text=True).stdout
    return out.split()


def all_items():
    lints = lint_names()
    items = [f"native/logic_{room}" for room in rooms_with("logic")]
    items += [f"native/replay_{name}" for name in source_names("fuzz/*.cpp")]
    items += [f"lint/{name}" for name in lints if name != "imports"]
    items += ["lint/selftest", "build/win64", "lint/imports"]
    if glob.glob(os.path.join(ROOT, "tests/program/*.cpp")):
        items.append("wine/program_tests")  # the longest first
    items += [f"wine/windows_{room}" for room in rooms_with("windows")]
    items += [f"wine/logic_{room}" for room in rooms_with("logic")]
    items += [f"foreign/{name}" for name in source_names("tests/foreign/*.sh")]
    return items


def is_quick(item):
    return item.startswith(("native/", "lint/")) and item != "lint/imports"


def select(items, args):
    if args.quick:
        items = [item for item in items if is_quick(item)]
    if args.only:
        def wanted(item):
            names = (item, item.split("/", 1)[1], item.split("/", 1)[0])
            return any(fnmatch.fnmatchcase(n, pattern) for n in names for pattern in args.only)
        items = [item for item in items if wanted(item)]
    return items


# ---- building

broken_builds = set()
build_lock = threading.Lock()


def is_built(folder, name, suffix=""):
    """False also for a program that an earlier build left and this one could not renew."""
    if not os.path.exists(os.path.join(ROOT, folder, "tests", name + suffix)):
        return False
    if folder not in broken_builds:
        return True
    with build_lock:
        return runner.run(["cmake", "--build", folder, "--target", name], LIMITS["build"])[0] == 0


def build(preset, folder, targets):
    """Configures and builds; keeps going after an error, so that the other tests still run."""
    code, output, seconds = runner.run(["cmake", "--preset", preset], LIMITS["build"])
    if code == 0:
        command = ["cmake", "--build", folder, "-j", str(os.cpu_count() or 2)]
        command += ["--target", *targets] if targets else []
        code, output, more = runner.run([*command, "--", "-k", "0"], LIMITS["build"])
        seconds += more
    tally.check(f"build/{preset}", code == 0, seconds, tail(output, 200))
    if code != 0:
        broken_builds.add(folder)


def tail(text, lines):
    return "\n".join(text.rstrip().splitlines()[-lines:])


# ---- tests

def read_report(path):
    """Returns (passed, failures, skips) from GoogleTest's JSON, or None when there is none."""
    try:
        with open(path, encoding="utf-8", errors="replace") as report:
            suites = json.load(report)["testsuites"]
    except (OSError, ValueError, KeyError):
        return None
    passed, failures, skips = 0, [], []
    for suite in suites:
        for case in suite["testsuite"]:
            name = f"{suite['name']}.{case['name']}"
            if case.get("failures"):
                failures.append(name)
            elif case.get("result") == "SKIPPED":
                skips.append(name)
            elif case.get("status") == "NOTRUN":
                skips.append(name + " (disabled)")
            else:
                passed += 1
    return passed, failures, skips


def read_output(output):
    """The same from what a program that did not come to its end has printed."""
    passed = len(re.findall(r"^\[       OK \] ", output, re.M))
    failures = re.findall(r"^\[  FAILED  \] (\S+) \(\d+ ms\)", output, re.M)
    skips = re.findall(r"^\[  SKIPPED \] (\S+) \(\d+ ms\)", output, re.M)
    return passed, failures, skips


def skip_reasons(output, skips):
    """Adds the line that GTEST_SKIP printed before each "[  SKIPPED ]"."""
    told = []
    for name in skips:
        found = re.search(r"^\[ RUN      \] " + re.escape(name) + r"\n(.*?)^\[  SKIPPED \]",
                          output, re.M | re.S)
        lines = [l.strip() for l in found.group(1).splitlines() if l.strip()] if found else []
        told.append(f"{name}: {' '.join(lines)}" if lines else name)
    return told


def failing_parts(output):
    """What failed tests printed, without the hundreds of lines of those that passed."""
    kept, block = [], []
    # Of Wine's report of a crash the backtrace is enough.
    output = re.sub(r"^Modules:\n.*?^System information:\n(?:    .*\n?)*", "", output,
                    flags=re.M | re.S)
    for line in output.splitlines():
        if line.startswith("[ RUN "):
            block = [line]
        elif line.startswith(("[       OK ]", "[  SKIPPED ]")):
            block = []
        elif line.startswith("[-------") or line.startswith("[======="):
            continue
        else:
            block.append(line)
            if line.startswith("[  FAILED  ]"):
                kept += block
                block = []
    return tail("\n".join(kept + block), 400)


def gtest(item, command_for, limit):
    """command_for(report path) returns run()'s result."""
    report = os.path.join(RESULTS, item.replace("/", "-") + ".json")
    if os.path.exists(os.path.join(ROOT, report)):
        os.remove(os.path.join(ROOT, report))
    code, output, seconds = command_for(report)
    counts = read_report(os.path.join(ROOT, report)) if code is not None else None
    passed, failures, skips = counts or read_output(output)
    failures = list(failures)
    if code is None:
        failures.append(f"did not end within {limit} s")
    elif counts is None or (code != 0 and not failures):
        failures.append(f"ended with exit code {code} before its report was whole")
    elif passed + len(failures) + len(skips) == 0:
        failures.append("holds no test")
    tally.add(item, passed, failures, skip_reasons(output, skips), seconds, failing_parts(output))


def run_native(item):
    name = item.split("/", 1)[1]
    program = f"{NATIVE}/tests/{name}"
    limit = LIMITS["native"]
    env = {"ASAN_OPTIONS": "detect_stack_use_after_return=1:strict_string_checks=1",
           "UBSAN_OPTIONS": "print_stacktrace=1"}
    if not is_built(NATIVE, name):
        tally.check(item, False, reason="was not built")
    elif name.startswith("replay_"):
        corpus = "fuzz/corpus/" + name.removeprefix("replay_")
        code, output, seconds = runner.run([program, corpus], limit, env)
        tally.check(item, code == 0, seconds, tail(output, 100),
                    "out of time" if code is None else f"exit code {code}")
    else:
        gtest(item, lambda report: runner.run([program, f"--gtest_output=json:{report}"], limit,
                                              env), limit)


def wine_env():
    return {"TONVISTA_BUILD": os.path.join(ROOT, WIN32), "TONVISTA_ROOT": ROOT}


def run_wine(item):
    name = item.split("/", 1)[1]
    program = f"{WIN32}/tests/{name}.exe"
    limit = LIMITS["program" if name == "program_tests" else "wine"]
    host = "test-" + name.replace("_", "-")
    if not is_built(WIN32, name, ".exe"):
        tally.check(item, False, reason="was not built")
        return
    gtest(item, lambda report: runner.run_in_host(
        host, ["wine", program, f"--gtest_output=json:{report}"], limit, wine_env()), limit)


def run_script(item):
    """A script beside the tests: it may use the host whose name it finds in TONVISTA_HOST."""
    name = item.split("/", 1)[1]
    host = "test-" + name.replace("_", "-")
    env = {**wine_env(), "TONVISTA_HOST": host}
    with runner.lock:
        runner.hosts.add(host)
    try:
        code, output, seconds = runner.run(["bash", f"tests/foreign/{name}.sh"], LIMITS["foreign"],
                                           env)
    finally:
        runner.stop_host(host)
    if code == SKIP_CODE:
        tally.add(item, skips=[tail(output, 1)], seconds=seconds)
    else:
        tally.check(item, code == 0, seconds, tail(output, 200),
                    "out of time" if code is None else f"exit code {code}")


def run_lint(item):
    name = item.split("/", 1)[1]
    command = [sys.executable, "tools/lint/lint.py", name]
    if name == "selftest":
        command = [sys.executable, "tests/lint/lint_test.py"]
    code, output, seconds = runner.run(command, LIMITS["lint"])
    tally.check(item, code == 0, seconds, tail(output, 200), "see above")
    if code == 0 and "warning:" in output:
        print(output.rstrip())


def of(items, *kinds):
    return [item for item in items if item.split("/", 1)[0] in kinds]


def in_lanes(function, items, lanes=2):
    with concurrent.futures.ThreadPoolExecutor(lanes) as pool:
        for future in [pool.submit(function, item) for item in items]:
            future.result()


def run_all(items, narrow):
    """narrow: build only the targets of these items instead of everything."""
    native, wine = of(items, "native"), of(items, "wine", "foreign")
    template = threading.Thread(
        target=lambda: runner.run(["tools/host.sh", "template"], 300), daemon=True)
    if wine:
        template.start()  # 15 s of waiting, spent beside the compiler
    names = [item.split("/", 1)[1] for item in of(items, "native")]
    if native or "lint/tidy" in items:
        build("native", NATIVE, names if narrow and names else [])
    in_lanes(run_native, native)
    in_lanes(run_lint, [item for item in of(items, "lint") if item != "lint/imports"])
    if "build/win64" in items:
        build("win64", WIN64, [])
    if wine or "lint/imports" in items:
        names = [item.split("/", 1)[1] for item in of(items, "wine")]
        build("win32", WIN32, names if narrow and names and not of(items, "foreign") else [])
    if "lint/imports" in items:
        run_lint("lint/imports")
    if wine:
        template.join()
        in_lanes(lambda item: (run_script if item.startswith("foreign/") else run_wine)(item),
                 wine)


def main():
    parser = argparse.ArgumentParser(prog="./test.sh")
    parser.add_argument("--quick", action="store_true", help="the native half alone")
    parser.add_argument("--only", action="append", metavar="NAME", help="may hold * and ?")
    parser.add_argument("--list", action="store_true", help="print what there is and end")
    args = parser.parse_args()
    items = select(all_items(), args)
    if args.list:
        print("\n".join(items))
        return 0
    if not items:
        print("nothing is so called; see ./test.sh --list", file=sys.stderr)
        return 2
    os.makedirs(os.path.join(ROOT, RESULTS), exist_ok=True)
    lock = open(os.path.join(ROOT, "build/test.lock"), "w", encoding="utf-8")
    try:
        fcntl.flock(lock, fcntl.LOCK_EX | fcntl.LOCK_NB)
    except OSError:
        print("waiting for another test run in this folder")
        fcntl.flock(lock, fcntl.LOCK_EX)

    def interrupted(_number, _frame):
        runner.interrupt()
        raise KeyboardInterrupt
    signal.signal(signal.SIGTERM, interrupted)
    signal.signal(signal.SIGINT, interrupted)
    start = time.monotonic()
    try:
        run_all(items, bool(args.only))
    except KeyboardInterrupt:
        print("interrupted", file=sys.stderr)
        return 130
    finally:
        runner.stop_hosts()
    if tally.failures:
        print("\nfailed:\n  " + "\n  ".join(tally.failures))
    print(f"\n{time.monotonic() - start:.0f} s")
    print(f"{tally.passed} passed, {tally.failed} failed, {tally.skipped} skipped")
    return 1 if tally.failed else 0


if __name__ == "__main__":
    sys.exit(main())
