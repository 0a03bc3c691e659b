#!/usr/bin/env python3
"""Each lint must complain about a bad sample and be silent about the good one beside it."""
import os
import subprocess
import sys
import tempfile
import unittest

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
sys.dont_write_bytecode = True
sys.path.insert(0, os.path.join(ROOT, "tools", "lint"))
import built  # noqa: E402
import lint  # noqa: E402

# (check, file, what stands in it, part of the complaint; None: no complaint)
SAMPLES = [
    ("rooms", "core/a.cpp", '#include "ui/skin.h"\n', "core/ must not include ui/skin.h"),
    ("rooms", "ui/console_win.cpp", '#include "cd/engine.h"\n', "ui/ must not include"),
    ("rooms", "cdinfo/a.cpp", '#include "cd/modes.h"\n', "cdinfo/ must not include"),
    ("rooms", "cd/a.cpp", '#include "../app/main.h"\n', "cd/ must not include"),
    ("rooms", "discdrive/a_win.cpp", '#include "ui/skin.h"\n', "discdrive/ must not include"),
    ("rooms", "cd/a.cpp", '#include "cdinfo/record.h"\n#include "resources/ids.h"\n', None),
    ("rooms", "app/main_win.cpp", '#include "cd/engine.h"\n', None),
    ("logic", "cd/a.cpp", '#include "core/platform.h"\n', "must not include core/platform.h"),
    ("logic", "cd/a.h", "#include <mmsystem.h>\n", "must not include <mmsystem.h>"),
    ("logic", "cd/a.cpp", '#include "core/settings_win.h"\n', "must not include core/settings_win"),
    ("logic", "cd/a_win.cpp", "#include <windows.h>\n", "instead of windows.h"),
    ("logic", "tests/windows/cd/a.cpp", "#  include <Windows.h>\n", "instead of windows.h"),
    ("logic", "cd/a_win.cpp", '#include "core/platform.h"\n#include <mmsystem.h>\n', None),
    ("logic", "cd/a.cpp", "#include <cstdint>\n", None),
    ("shape", "cd/a.cpp", "int x;\n", "opens without a comment"),
    ("shape", "cd/a.h", "// A header.\n", "no #pragma once"),
    ("shape", "cd/a.cpp", "// Long.\n" + "int x;\n" * 900, "split it"),
    ("shape", "cd/a.h", "// A header.\n#pragma once\n", None),
    ("commands", "cd/a_win.cpp", "case 2020:\n", "command number 2020"),
    ("commands", "cd/a_win.cpp", "if (LOWORD(wParam) == 740) return;\n", "number 740"),
    ("commands", "cd/a_win.cpp", "if (700 <= command) return;\n", "number 700"),
    ("commands", "ui/a_win.cpp", "PostMessageA(w, WM_COMMAND, 1111, 0);\n", "number 1111"),
    ("commands", "ui/a_win.cpp", "SendMessageA(w, WM_COMMAND,\n  MAKEWPARAM(3138, 0), 0);\n",
     "a_win.cpp:2: command number 3138"),
    ("commands", "ui/a_win.cpp", "PostCommand(EngineWindow(), 715);\n", "number 715"),
    ("commands", "ui/a_win.cpp", "AppendMenuA(m, MF_STRING, 801, text);\n", "number 801"),
    ("commands", "ui/a_win.cpp", "// case 2020:\nif (width < 1000) Sleep(2000);\n", None),
    ("commands", "core/commands.h", "constexpr int kCdChanged = 2020;\n", None),
    ("words", "README.md", "See /wor" + "k/notes.\n", "somebody's machine"),
    ("words", "cd/a.cpp", "// as the sp" + "ec says\n", "not in the repository"),
    ("words", "docs/a.md", "By specifi" + "cation, Part" + " 2.1.\n", "not in the repository"),
    ("words", "tools/a.sh", "curl http://deb.deb" + "ian.org/x\n", "package registry"),
    ("words", "README.md", "A special network for Debian users.\n", None),
]

IDS = "app/resources/ids.h"
RESOURCES = [
    ("#define IDS_A 1\n#define IDS_B 1\n", 'IDS_A "a"', "", "IDS_B has the number of IDS_A"),
    ("#define IDD_A 1\n#define IDS_B 1\n", 'IDS_B "b"', "IDS_B", None),
    ("#define IDS_A 1\n#define IDS_B 2\n", 'IDS_A "a"', "IDS_B", "IDS_B (2) has no text"),
    ("#define IDS_A 1\n#define IDS_B 2\n", 'IDS_A "a"', "IDS_A", None),
    ("#define IDS_L 10 // + n\n#define IDS_B 20\n", 'IDS_B "b"', "IDS_L", "IDS_L (10) has no"),
    ("#define IDS_L 10 // + n\n#define IDS_B 20\n", 'IDS_L + 3 "a"', "IDS_L", None),
    ("#define IDS_A 1\n", 'IDS_A "a"\n 1 "again"', "", "is also in"),
    ("#define IDS_A 1\n#define IDS_B 3\n", 'IDS_A + 2 "a"\n IDS_B "b"', "", "is also in"),
    ("#define IDC_A 1 // + place, to 4\n#define IDC_B 4\n", "", "", "IDC_B stands in the run"),
    ("#define IDC_A 1 // + place, to 4\n#define IDC_B 5\n#define IDS_B 2\n", "", "", None),
    ("#define IDS_A 1\n", 'IDS_Z "z"', "", "IDS_Z is not in"),
    ("#define IDS_A 1\n", 'IDS_A "a"', "IDS_Z", "IDS_Z is not in"),
]


class LintTest(unittest.TestCase):
    def expect(self, complaints, part):
        complaints = [c for c in complaints if not c.startswith("warning:")]
        if part is None:
            self.assertEqual(complaints, [])
        else:
            self.assertEqual(len(complaints), 1, complaints)
            self.assertIn(part, complaints[0])

    def test_text_checks(self):
        for check, path, text, part in SAMPLES:
            with self.subTest(check=check, path=path, text=text[:60]):
                if check == "words" and part and "Part" in text:
                    self.assertEqual(len(lint.TEXT_CHECKS[check]({path: text})), 2)
                else:
                    self.expect(lint.TEXT_CHECKS[check]({path: text}), part)

    def test_resources(self):
        for ids, texts, source, part in RESOURCES:
            with self.subTest(ids=ids, texts=texts):
                files = {IDS: ids, "app/resources/a.rc": f"STRINGTABLE\nBEGIN\n {texts}\nEND\n",
                         "cd/a_win.cpp": source}
                self.expect(lint.TEXT_CHECKS["resources"](files), part)
        files = {IDS: "#define IDS_A 1\n", "app/resources/ids_b.h": "#define IDS_B 1\n"}
        self.expect(lint.TEXT_CHECKS["resources"](files), "IDS_B has the number of IDS_A")

    def test_imports(self):
        own = "\tDLL Name: KERNEL32.dll\n"
        self.expect(built.foreign_imports("a.exe", own), None)
        self.expect(built.foreign_imports("a.exe", own + "\tDLL Name: libstdc++-6.dll\n"),
                    "needs libstdc++-6.dll")
        self.expect(built.foreign_imports("a.exe", ""), "no import table")

    def test_tools_on_bad_samples(self):
        """The formatter, the shell checker and clang-tidy, each on a file that it must refuse."""
        with tempfile.TemporaryDirectory() as root:
            samples = {
                "core/bad.cpp": "int  F( ){return 1 ;}\n",
                "bad.sh": "#!/bin/bash\ncd $1\n",
                "bad.py": "def f(:\n",
                "core/tidy.cpp": "int F(int n) { return n == n; }\n",
            }
            for name in (".clang-format", ".clang-tidy"):
                with open(os.path.join(ROOT, name), encoding="utf-8") as handle:
                    samples[name] = handle.read()
            for name, text in samples.items():
                path = os.path.join(root, name)
                os.makedirs(os.path.dirname(path), exist_ok=True)
                with open(path, "w", encoding="utf-8") as handle:
                    handle.write(text)
            os.makedirs(os.path.join(root, "build/native"))
            with open(os.path.join(root, built.DATABASE), "w", encoding="utf-8") as handle:
                handle.write('[{"directory": "%s", "file": "core/tidy.cpp", '
                             '"command": "c++ -c core/tidy.cpp"}]' % root)
            self.expect(built.check_format(root, {"core/bad.cpp": ""}), "core/bad.cpp:1")
            scripts = {name: samples[name] for name in ("bad.sh", "bad.py")}
            self.assertEqual(len(built.check_scripts(root, scripts)), 2)
            tidy = built.check_tidy(root, samples)
            self.assertTrue(tidy and "tidy.cpp:1" in tidy[0], tidy)
            self.assertEqual(tidy, built.check_tidy(root, samples))  # no pass is remembered

    def test_command_line(self):
        command = [sys.executable, os.path.join(ROOT, "tools/lint/lint.py"), "no-such-check"]
        self.assertEqual(subprocess.run(command, capture_output=True, check=False).returncode, 2)


if __name__ == "__main__":
    unittest.main()
