"""What the checks of the source tree share: its files, their includes, and where those lead."""

import re
from pathlib import Path

INCLUDE = re.compile(r'^[ \t]*#[ \t]*include[ \t]+["<]([^">]+)[">]', re.MULTILINE)
# Where a quoted or bracketed name is looked for, as the build does, after the file's own folder.
INCLUDE_ROOTS = ("", "src", "sdk/include", "tests")


def sources(root: Path, *folders: str) -> list[Path]:
    """The C++ files below the folders, relative to the root, in the order of their paths."""
    found = []
    for folder in folders:
        for pattern in ("*.h", "*.cpp"):
            found += (root / folder).rglob(pattern)
    return sorted(path.relative_to(root) for path in found)


def includes(root: Path, file: Path) -> list[tuple[int, str, Path | None]]:
    """Each include of a file: its line, its name, and the file of the tree that it leads to, or None."""
    text = (root / file).read_text(encoding="utf-8")
    found = []
    for match in INCLUDE.finditer(text):
        line = text.count("\n", 0, match.start(1)) + 1
        found.append((line, match[1], resolve(root, file, match[1])))
    return found


def resolve(root: Path, file: Path, name: str) -> Path | None:
    for base in (file.parent, *map(Path, INCLUDE_ROOTS)):
        target = root / base / name
        if target.is_file():
            return target.resolve().relative_to(root.resolve())
    return None
