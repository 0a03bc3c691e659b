#!/usr/bin/env python3
"""The house rules that a machine can check. Each check is a function from files to complaints.

    lint.py --list        names of the checks
    lint.py NAME...       run these (all unless told); exit code 1 when one complains

A check gets {path: text} of the tracked files and returns lines "path:line: what is wrong", so
tests/lint can hand it a bad sample. Lines that begin with "warning:" do not fail.
"""
import os
import subprocess
import sys

sys.dont_write_bytecode = True
sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import built  # noqa: E402
import resources  # noqa: E402
import rooms  # noqa: E402
import words  # noqa: E402

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))

TEXT_CHECKS = {
    "rooms": rooms.check_directions,
    "logic": rooms.check_logic_without_windows,
    "shape": rooms.check_shape,
    "resources": resources.check,
    "commands": rooms.check_command_numbers,
    "words": words.check,
}
TOOL_CHECKS = {
    "format": built.check_format,
    "scripts": built.check_scripts,
    "tidy": built.check_tidy,
    "imports": built.check_imports,
}


def tracked_files():
    """Tracked files and those about to be: what a commit of everything would hold."""
    command = ["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard"]
    names = subprocess.run(command, cwd=ROOT, capture_output=True, check=True).stdout
    files = {}
    for name in sorted(set(names.decode().split("\0")) - {""}):
        path = os.path.join(ROOT, name)
        if not os.path.isfile(path):
            continue
        with open(path, "rb") as handle:
            data = handle.read()
        if b"\0" not in data:
            files[name] = data.decode("utf-8", "replace")
    return files


def main(arguments):
    names = list(TEXT_CHECKS) + list(TOOL_CHECKS)
    if arguments == ["--list"]:
        print("\n".join(names))
        return 0
    unknown = set(arguments) - set(names)
    if unknown:
        print(f"no such check: {' '.join(sorted(unknown))}", file=sys.stderr)
        return 2
    files = tracked_files()
    failed = 0
    for name in arguments or names:
        if name in TEXT_CHECKS:
            complaints = TEXT_CHECKS[name](files)
        else:
            complaints = TOOL_CHECKS[name](ROOT, files)
        for complaint in complaints:
            print(complaint)
        failed += any(not c.startswith("warning:") for c in complaints)
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
