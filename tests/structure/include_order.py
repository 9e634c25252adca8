"""Holds the includes of the tree to one direction: from higher folders to lower ones, never back, never round.

usage: include_order.py ROOT
"""

import sys
from collections import defaultdict
from pathlib import Path

from source_tree import includes, sources

# Lowest first. A folder sees itself and those above its own line in this list; folders on one line do not
# see one another. A folder below a named one has the place of the nearest named one above it.
SRC_ORDER = (
    ("sdk/include/ombrix",),
    ("src/numeric",),
    ("src/kernels/color", "src/kernels/noises"),
    ("src/kernels/noises/volume", "src/kernels/placement"),
    ("src/kernels/procedurals",),
    ("src/runtime",),
    ("src/textures/expr",),
    ("src/plugin_frame",),
    ("src/textures_private",),
)
PLACES = {folder: place for place, folders in enumerate(SRC_ORDER) for folder in folders}

# What the files below a folder may include of the tree, besides their own folder.
ALLOWED = {
    "sdk/include/ombrix": ("sdk",),
    "src": ("sdk", "src"),
    "host": ("sdk", "host"),
    "apps": ("sdk", "host", "apps"),
    # These drive the built library, and no header of it.
    "tests/conformance": ("sdk", "host", "tests"),
    "tests/host": ("sdk", "host", "tests"),
}

# The folders that alone may include a library's headers.
LIBRARIES = {
    "embree": ("host/rt",),
    "OpenImageIO": ("host/image",),
    "tbb": ("host",),
    "nlohmann": ("host", "apps", "tests"),
}


def below(path: Path, folder: str) -> bool:
    return path.is_relative_to(folder)


def named_folder(path: Path) -> str | None:
    """The entry of SRC_ORDER that a file belongs to: the deepest one that holds it."""
    held = [folder for folder in PLACES if below(path, folder)]
    return max(held, key=len) if held else None


def wrong_room(file: Path, target: Path) -> str | None:
    for folder, allowed in ALLOWED.items():
        if below(file, folder) and not any(below(target, room) for room in allowed):
            return f"{folder} sees only itself and {', '.join(allowed)}"
    return None


def wrong_place(file: Path, target: Path) -> str | None:
    if not below(file, "src"):
        return None
    source, sink = named_folder(file), named_folder(target)
    if source is None or sink is None:
        unknown = file.parent if source is None else target.parent
        return f"{unknown} has no place in SRC_ORDER of tests/structure/include_order.py: give it one"
    if source == sink or PLACES[sink] < PLACES[source]:
        return None
    return f"{sink} does not stand below {source}: move what both need to a lower folder"


def wrong_library(file: Path, name: str) -> str | None:
    for library, folders in LIBRARIES.items():
        if name.startswith(library) and not any(below(file, folder) for folder in folders):
            return f"only {' and '.join(folders)} may see {library}"
    return None


def circles(edges: dict[str, set[str]]) -> list[list[str]]:
    """The groups of folders that reach one another."""

    def reached(start: str) -> set[str]:
        seen: set[str] = set()
        waiting = [start]
        while waiting:
            for folder in edges[waiting.pop()]:
                if folder not in seen:
                    seen.add(folder)
                    waiting.append(folder)
        return seen

    reach = {folder: reached(folder) for folder in list(edges)}
    groups = {
        tuple(sorted(other for other in reach if other in reach[folder] and folder in reach[other]))
        for folder in reach
        if folder in reach[folder]
    }
    return [list(group) for group in sorted(groups)]


def faults(root: Path) -> list[str]:
    told = []
    edges: dict[str, set[str]] = defaultdict(set)
    examples: dict[tuple[str, str], str] = {}
    for file in sources(root, "sdk", "src", "host", "apps", "tests/conformance", "tests/host"):
        for line, name, target in includes(root, file):
            where = f'{file}:{line}: includes "{name}": '
            fault = wrong_library(file, name)
            if target is not None:
                fault = fault or wrong_room(file, target) or wrong_place(file, target)
                if target.parent != file.parent and below(file, "src"):
                    edge = (str(file.parent), str(target.parent))
                    edges[edge[0]].add(edge[1])
                    edges.setdefault(edge[1], set())
                    examples.setdefault(edge, f"{file}:{line}")
            if fault:
                told.append(where + fault)
    for group in circles(edges):
        told.append("a circle of folders: " + ", ".join(group))
        for source in group:
            for sink in sorted(edges[source] & set(group)):
                told.append(f"    {source} -> {sink}, for example {examples[source, sink]}")
    return told


def main() -> int:
    told = faults(Path(sys.argv[1]))
    print("\n".join(told) if told else "every include leads to a lower folder")
    return 1 if told else 0


if __name__ == "__main__":
    sys.exit(main())
