"""Words that no tracked file may hold: paths of one developer's machine, papers that a reader of
this repository does not have, and hosts that packages come from (the machine's own settings say
that). The patterns are written so that they do not match themselves."""
import re

FORBIDDEN = [
    (r"/wor[k]/", "a path of somebody's machine"),
    (r"/hom[e]/\w+|/roo[t]/", "a path of somebody's machine"),
    (r"\bshared/spe[c]\b|\bspe[c]\.md\b", "a paper that is not in the repository"),
    (r"specificatio[n]", "a paper that is not in the repository"),
    (r"\b(?:the|this|our) spe[c]\b", "a paper that is not in the repository"),
    (r"\b[Pp]arts? \d+\.\d", "a paper that is not in the repository"),
    (r"\b(?:[\w-]+\.)*(?:debian\.or[g]|ubuntu\.co[m]|pypi\.or[g]|npmjs\.(?:or[g]|co[m])|"
     r"nodesource\.co[m]|crates\.i[o]|winehq\.or[g])\b", "the host of a package registry"),
]
PATTERNS = [(re.compile(pattern, re.I), why) for pattern, why in FORBIDDEN]


def check(files):
    complaints = []
    for path, text in files.items():
        for number, line in enumerate(text.splitlines(), 1):
            for pattern, why in PATTERNS:
                found = pattern.search(line)
                if found:
                    complaints.append(f"{path}:{number}: \"{found.group(0)}\": {why}")
    return complaints
