"""Checks on the sources themselves: which room includes which, logic without Windows, the shape
of a file, command numbers by name."""
import posixpath
import re

# What a room may include besides itself; "resources" is app/resources. No circle, no arrow that
# climbs. A new trade gets a line here, and app/ one word.
ALLOWED = {
    "core": {"resources"},
    "ui": {"core", "resources"},
    "cdinfo": {"core", "ui", "resources"},
    "archive": {"core", "ui", "cdinfo", "discdrive", "resources"},
    "cd": {"core", "ui", "cdinfo", "resources"},
    "waves": {"core", "ui", "resources"},
    "mixer": {"core", "ui", "resources"},
    "media": {"core", "ui", "waves", "resources"},
    "discdrive": {"core"},
    "extractor": {"core", "waves"},
    "app": {"core", "ui", "cdinfo", "archive", "cd", "waves", "mixer", "media", "discdrive",
            "extractor", "resources"},
}
TRADES = {"cd", "cdinfo", "archive", "waves", "mixer", "media"}

# The one door through which <windows.h> enters.
PLATFORM_HEADER = "core/platform.h"

# Headers of the system that only a Windows file may include.
SYSTEM_HEADERS = re.compile(
    r"^(windows|windowsx|win\w+|comm(ctrl|dlg)|shellapi|shl\w+|shobj\w+|mm\w+|ole\w*|objbase|"
    r"objidl|unknwn|dbt|prsht|psapi|tlhelp32|process|io|conio|direct|d?show|strmif|excpt)\.h$")

INCLUDE = re.compile(r'^[ \t]*#[ \t]*include[ \t]*([<"])([^>"]+)[>"]', re.M)


def line_of(text, position):
    return text.count("\n", 0, position) + 1


def is_source(path):
    return path.endswith((".cpp", ".h"))


def room_of(path):
    return path.split("/", 1)[0]


def in_room(path):
    return is_source(path) and room_of(path) in ALLOWED


def includes(text):
    """Yields (line, is a system include, name)."""
    for found in INCLUDE.finditer(text):
        yield line_of(text, found.start()), found.group(1) == "<", found.group(2)


def target_of(path, name):
    """Repository path of a quoted include, which is written from the root, from app/ for
    resources/, or beside the file."""
    if name.startswith("resources/"):
        return "app/" + name
    if "/" in name:
        return posixpath.normpath(name)
    return posixpath.join(posixpath.dirname(path), name)


def check_directions(files):
    complaints = []
    for path, text in files.items():
        if not in_room(path):
            continue
        room = room_of(path)
        for line, system, name in includes(text):
            if system:
                continue
            target = target_of(path, name)
            other = "resources" if target.startswith("app/resources/") else room_of(target)
            if other != room and other not in ALLOWED[room]:
                complaints.append(f"{path}:{line}: {room}/ must not include {name}")
            elif room == "discdrive" and other == "core" and is_windows_header(target, files):
                complaints.append(f"{path}:{line}: discdrive/ takes only logic from core/")
    return complaints


def is_windows_header(path, files):
    """True for a header that is only for Windows files. platform.h is open to every Windows file
    of every room, the disc drive's included."""
    return path.endswith("_win.h") and path in files


def check_logic_without_windows(files):
    complaints = []
    for path, text in files.items():
        if not is_source(path) or path == PLATFORM_HEADER:
            continue
        is_logic = in_room(path) and not re.search(r"_win\.(cpp|h)$", path)
        for line, system, name in includes(text):
            if name.lower() == "windows.h":
                complaints.append(f'{path}:{line}: include "{PLATFORM_HEADER}" instead of '
                                  "windows.h")
            elif not is_logic:
                continue
            elif system and SYSTEM_HEADERS.match(name.lower()):
                complaints.append(f"{path}:{line}: a logic file must not include <{name}>")
            elif not system and (name == PLATFORM_HEADER or name.endswith("_win.h")):
                complaints.append(f"{path}:{line}: a logic file must not include {name}")
    return complaints


# ---- shape

LONG_FILE = 500      # from here on a warning
TOO_LONG_FILE = 800  # nobody reads that


def check_shape(files):
    complaints = []
    for path, text in files.items():
        if not is_source(path):
            continue
        lines = text.count("\n")
        if lines > TOO_LONG_FILE:
            complaints.append(f"{path}:1: {lines} lines; split it (at most {TOO_LONG_FILE})")
        elif lines > LONG_FILE:
            complaints.append(f"warning: {path}: {lines} lines; {LONG_FILE} is the aim")
        if not re.match(r"(#pragma once\s+)?//", text):
            complaints.append(f"{path}:1: opens without a comment on its job")
        if path.endswith(".h") and "#pragma once" not in text:
            complaints.append(f"{path}:1: has no #pragma once")
    return complaints


# ---- command numbers

# The commands between windows and engines. A number in this range, where a command is meant,
# must be a name from core/commands.h or from the room's own header.
FIRST_COMMAND, LAST_COMMAND = 700, 3150

NUMBER = r"(?<![\w.])(\d{3,4})(?![\w.])"
COMMAND_PLACES = [
    re.compile(r"\bcase\s+" + NUMBER + r"\s*:"),
    # A comparison with something that is called a command, an id or a message word.
    re.compile(r"(?i)\b\w*(?:command|cmd|wparam|ctrl|control|notice|id)\b\s*\)?\s*(?:==|!=|<=|>=|<|>)"
               r"\s*" + NUMBER),
    re.compile(r"(?i)" + NUMBER + r"\s*(?:==|!=|<=|>=|<|>)\s*\(?\s*(?:LOWORD\s*\(\s*)?"
               r"\w*(?:command|cmd|wparam|ctrl|control|notice|id)\b"),
    # Sent or posted, also through helpers: PostCommand(window, 2020), AppendMenuA(m, f, 740, ..).
    re.compile(r"\bWM_COMMAND\s*,\s*(?:\(WPARAM\)\s*)?(?:MAKEWPARAM\s*\(\s*)?" + NUMBER),
    re.compile(r"\b\w*(?:Post|Send)\w*(?:Command|Notice)\w*\s*\([^;]*?,\s*" + NUMBER),
    re.compile(r"\bAppendMenu[AW]?\s*\([^;]*?,[^;,]*,\s*" + NUMBER),
    re.compile(r"\b(?:GetDlgItem|CheckMenuItem|EnableMenuItem)\w*\s*\([^;(),]*,\s*" + NUMBER),
]


def strip_comments(text):
    """Comments blanked out, positions kept."""
    def blank(found):
        return re.sub(r"[^\n]", " ", found.group(0))
    return re.sub(r"//[^\n]*|/\*.*?\*/", blank, text, flags=re.S)


def check_command_numbers(files):
    complaints = []
    for path, text in files.items():
        if not in_room(path) or path.startswith("app/resources/"):
            continue
        code = strip_comments(text)
        seen = set()
        for place in COMMAND_PLACES:
            for found in place.finditer(code):
                number = int(found.group(1))
                spot = found.start(1)
                if FIRST_COMMAND <= number <= LAST_COMMAND and spot not in seen:
                    seen.add(spot)
                    complaints.append(f"{path}:{line_of(code, spot)}: command number {number} "
                                      "without a name")
    return complaints
