"""Resource ids: no number twice among ids of one kind, and a text for every string id in use.

A define whose comment begins with "+" or "base" ("// + window id", "// base: 320-399") is the
first of a run of texts: the sources add to it. It needs at least one text in its run, which ends
where the next string id begins. Where the comment names the run's last number ("// + place, to
847", "// base: 320-399"), no other id of its kind may have a number in between.
"""
import re

IDS = "app/resources/ids.h"  # and what it includes: ids_*.h beside it
IS_IDS = re.compile(r"app/resources/ids(_\w+)?\.h$").match
DEFINE = re.compile(r"^[ \t]*#[ \t]*define[ \t]+(ID[A-Z]*_\w+)[ \t]+(\d+|0x[0-9A-Fa-f]+)"
                    r"[ \t]*(?://[ \t]*(.*))?$", re.M)
TABLE = re.compile(r"^\s*STRINGTABLE\b.*?^\s*(?:BEGIN|\{)(.*?)^\s*(?:END|\})", re.M | re.S)
ENTRY = re.compile(r'^[ \t]*([A-Za-z_]\w*|\d+)((?:[ \t]*\+[ \t]*\d+)*)[ \t]*,?[ \t]*L?"', re.M)


def is_base(comment):
    comment = comment or ""
    return comment.startswith(("+", "base")) or bool(re.match(r".*: \d+-\d+", comment))


def read_defines(files):
    """[(name, number, comment, place)]"""
    return [(f.group(1), int(f.group(2), 0), f.group(3),
             f"{path}:{text.count(chr(10), 0, f.start()) + 1}")
            for path, text in files.items() if IS_IDS(path) for f in DEFINE.finditer(text)]


def read_texts(path, text, numbers):
    """Yields (number or None, what was written, line) for each entry of a string table."""
    text = re.sub(r"//[^\n]*", "", text)
    for table in TABLE.finditer(text):
        for entry in ENTRY.finditer(table.group(1)):
            name, terms = entry.group(1), entry.group(2)
            number = int(name) if name.isdigit() else numbers.get(name)
            if number is not None:
                number += sum(int(term) for term in re.findall(r"\d+", terms))
            line = text.count("\n", 0, table.start(1) + entry.start(1)) + 1
            yield number, name + terms, line


def check(files):
    if IDS not in files:
        return []
    defines = read_defines(files)
    complaints = check_unique(defines)
    numbers = {name: number for name, number, _, _ in defines}
    texts = {}
    for path, text in files.items():
        if not path.endswith(".rc"):
            continue
        for number, written, line in read_texts(path, text, numbers):
            if number is None:
                complaints.append(f"{path}:{line}: {written} is not in {IDS}")
            elif number in texts:
                complaints.append(f"{path}:{line}: string {number} ({written}) is also in "
                                  f"{texts[number]}")
            else:
                texts[number] = f"{path}:{line}"
    return complaints + check_texts(files, defines, texts)


def last_of_run(comment):
    found = re.search(r"\bto (\d+)$|: \d+-(\d+)", comment or "") if is_base(comment) else None
    return int(found.group(1) or found.group(2)) if found else 0


def check_unique(defines):
    complaints, seen = [], {}
    for name, number, comment, _ in defines:
        kind, last = name.split("_", 1)[0], last_of_run(comment)
        complaints += [f"{place}: {other} stands in the run of {name}, to {last}"
                       for other, inside, _, place in defines
                       if number < inside <= last and other.split("_", 1)[0] == kind]
    for name, number, _, place in defines:
        kind = name.split("_", 1)[0]
        if (kind, number) in seen:
            complaints.append(f"{place}: {name} has the number of {seen[kind, number]}")
        seen.setdefault((kind, number), name)
    return complaints


def check_texts(files, defines, texts):
    complaints = []
    strings = [entry for entry in defines if entry[0].startswith("IDS_")]
    starts = sorted({number for _, number, _, _ in strings})
    used = {}
    for path, text in files.items():
        if path.endswith((".cpp", ".h")) and not IS_IDS(path):
            for found in re.finditer(r"\bIDS_\w+", text):
                used.setdefault(found.group(0), f"{path}:{text.count(chr(10), 0, found.start()) + 1}")
    known = {name for name, _, _, _ in strings}
    for name, number, comment, _ in strings:
        if name not in used:
            continue
        end = number + 1
        if is_base(comment):
            end = next((start for start in starts if start > number), 0x10000)
        if not any(candidate in texts for candidate in range(number, end)):
            complaints.append(f"{used[name]}: {name} ({number}) has no text in a STRINGTABLE")
    for name in sorted(set(used) - known):
        complaints.append(f"{used[name]}: {name} is not in {IDS}")
    return complaints
