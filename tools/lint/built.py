"""Checks that ask another program: the formatter, the shell checker, clang-tidy, and objdump over
what was built."""
import concurrent.futures
import hashlib
import json
import os
import re
import subprocess

import rooms

# Libraries that every Windows has. Anything else in the import table would have to be shipped.
WINDOWS_DLLS = {
    "kernel32", "user32", "gdi32", "advapi32", "comctl32", "comdlg32", "shell32", "shlwapi",
    "ole32", "oleaut32", "winmm", "winspool", "version", "msvcrt", "uuid", "quartz", "msacm32",
}
BUILT = ["build/win32/tonvista.exe", "build/win32/TONVDisc.dll", "build/win32/TONVExtr.dll"]
OBJDUMP = "i686-w64-mingw32-objdump"


def run(command, root):
    return subprocess.run(command, cwd=root, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, text=True, errors="replace", check=False)


def check_format(root, files):
    sources = [path for path in files if path.endswith((".cpp", ".h"))]
    if not sources:
        return []
    done = run(["clang-format", "--dry-run", "-Werror", "--style=file", *sources], root)
    places = re.findall(r"^(\S+?):(\d+):\d+: error:", done.stdout, re.M)
    first = {}
    for path, line in places:
        first.setdefault(path, line)
    complaints = [f"{path}:{line}: not as clang-format writes it; run clang-format -i {path}"
                  for path, line in first.items()]
    if done.returncode != 0 and not complaints:
        complaints.append(done.stdout.strip())
    return complaints


def check_scripts(root, files):
    shell = [path for path, text in files.items()
             if path.endswith(".sh") or re.match(r"#!.*\b(ba)?sh\b", text)]
    complaints = []
    if shell:
        done = run(["shellcheck", "--severity=warning", "--format=gcc", *shell], root)
        complaints += [line for line in done.stdout.splitlines() if line.strip()]
        if done.returncode != 0 and not complaints:
            complaints.append("shellcheck failed")
    for path, text in files.items():
        if path.endswith(".py"):
            try:
                compile(text, path, "exec")
            except SyntaxError as error:
                complaints.append(f"{path}:{error.lineno}: {error.msg}")
    return complaints


def check_imports(root, _files):
    complaints = []
    for path in BUILT:
        if not os.path.exists(os.path.join(root, path)):
            complaints.append(f"{path}: was not built")
            continue
        complaints += foreign_imports(path, run([OBJDUMP, "-p", path], root).stdout)
    return complaints


def foreign_imports(path, dump):
    names = re.findall(r"^\s*DLL Name: (\S+)", dump, re.M)
    if not names:
        return [f"{path}: no import table could be read"]
    return [f"{path}: needs {name}, which is not a part of Windows" for name in sorted(set(names))
            if name.lower().removesuffix(".dll") not in WINDOWS_DLLS]


# ---- clang-tidy over the logic files, as the native build compiles them

DATABASE = "build/native/compile_commands.json"
PASSED = "build/native/tidy-passed.json"  # fingerprints of files that had nothing to say


def logic_commands(root):
    with open(os.path.join(root, DATABASE), encoding="utf-8") as handle:
        entries = json.load(handle)
    files = {os.path.relpath(os.path.join(entry["directory"], entry["file"]), root)
             for entry in entries}
    return sorted(path for path in files
                  if path.split("/")[0] in rooms.ALLOWED)


def fingerprint(root, path, common):
    with open(os.path.join(root, path), "rb") as handle:
        return hashlib.sha256(common + handle.read()).hexdigest()


def check_tidy(root, files):
    """A file is looked at again only after it, any header or the rules have changed."""
    if not os.path.exists(os.path.join(root, DATABASE)):
        return [f"{DATABASE}: configure the native build first"]
    headers = [path for path in sorted(files) if path.endswith(".h")]
    common = "".join(files[path] for path in [*headers, ".clang-tidy"]).encode()
    prints = {path: fingerprint(root, path, common) for path in logic_commands(root)}
    try:
        with open(os.path.join(root, PASSED), encoding="utf-8") as handle:
            passed = set(json.load(handle))
    except (OSError, ValueError):
        passed = set()
    todo = [path for path in prints if prints[path] not in passed]

    def tidy(path):
        # The database holds GCC's command lines.
        return path, run(["clang-tidy", "--quiet", "--extra-arg=-Wno-unknown-warning-option",
                          "-p", "build/native", path], root)
    complaints = []
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count() or 2) as pool:
        for path, done in pool.map(tidy, todo):
            found = re.findall(r"^(.*?:\d+):\d+: (?:warning|error): (.*)$", done.stdout, re.M)
            complaints += [f"{os.path.relpath(place, root)}: {text}" for place, text in found]
            if done.returncode != 0 and not found:
                complaints.append(f"{path}: {done.stdout.strip()}")
            elif not found:
                passed.add(prints[path])
    with open(os.path.join(root, PASSED), "w", encoding="utf-8") as handle:
        json.dump(sorted(passed & set(prints.values())), handle)
    return sorted(set(complaints))
