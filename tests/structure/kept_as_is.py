"""Holds every oddity to a test: a comment "Kept as is (TestName): ..." names a test that exists.

usage: kept_as_is.py [--strict] ROOT

TestName is the second name of a TEST, TEST_F or TEST_P, or both with a point between them; several are parted
by commas. A comment that names no test is listed, and fails the check only with --strict.
"""

import re
import sys
from pathlib import Path

from source_tree import sources

TEST = re.compile(r"^(?:TYPED_)?TEST(?:_F|_P)?\(\s*(\w+)\s*,\s*(\w+)\s*\)", re.MULTILINE)
# The comment's text with the line ends and slashes in it: a long name may stand on the next line.
GAP = r"[\s/]+"
KEPT = re.compile(rf"Kept{GAP}as{GAP}is(?:{GAP}\(([\w.,\s/]+)\))?:")
PHRASE = re.compile(rf"Kept{GAP}as{GAP}is")


def test_names(root: Path) -> set[str]:
    names = set()
    for file in sources(root, "tests"):
        for suite, name in TEST.findall((root / file).read_text(encoding="utf-8")):
            names |= {name, f"{suite}.{name}"}
    return names


def faults(root: Path) -> tuple[list[str], list[str]]:
    """What is wrong with comments, and the comments that name no test."""
    names = test_names(root)
    wrong, unnamed = [], []
    for file in sources(root, "sdk", "src", "host", "apps"):
        text = (root / file).read_text(encoding="utf-8")
        for match in PHRASE.finditer(text):
            where = f"{file}:{text.count(chr(10), 0, match.start()) + 1}"
            kept = KEPT.match(text, match.start())
            if kept is None:
                wrong.append(f'{where}: write "Kept as is (TestName): ..."')
            elif kept[1] is None:
                unnamed.append(f"{where}: names no test")
            else:
                for name in re.findall(r"[\w.]+", kept[1]):
                    if name not in names:
                        wrong.append(f"{where}: no test is named {name}")
    return wrong, unnamed


def main() -> int:
    arguments = sys.argv[1:]
    strict = "--strict" in arguments
    if strict:
        arguments.remove("--strict")
    wrong, unnamed = faults(Path(arguments[0]))
    for line in unnamed:
        print(f"{'error' if strict else 'warning'}: {line}")
    for line in wrong:
        print(f"error: {line}")
    print(f"{len(unnamed)} comments name no test, {len(wrong)} are wrong")
    return 1 if wrong or (strict and unnamed) else 0


if __name__ == "__main__":
    sys.exit(main())
