#!/usr/bin/env python3
"""Checks that every include under lumo/ and tests/ obeys the order of floors.

  scripts/check_floors.py [FOLDER]      FOLDER has lumo/ and tests/; by default the root of the sources

A folder of lumo/ includes only itself and folders on lower floors. A folder of tests/ reaches only what the folder
of lumo/ with its name may include, directly or through other files of tests/. Of libraries, only lumo/solvers/ has
Z3's headers and only lumo/cli/ has CLI11's; tests may use Z3 as an independent judge.

Prints one line for each include that violates this, and fails if there is one.
"""

import pathlib
import re
import sys

FLOORS = ["numbers", "terms", "model", "calculators", "elimination", "smtlib", "solvers", "commands", "cli"]
# Folders of tests/ without a folder in lumo/, and the floor that they may reach
TESTS_ALONE = {"proof": "solvers", "threads": "elimination"}
# Used by tests of several floors: each of its files counts as a part of the files that include it.
SUPPORT = "support"

INCLUDE = re.compile(r'^\s*#\s*include\s*(?:"([^"]+)"|<([^>]+)>)', re.MULTILINE)


def find_includes(path):
    """The pairs of line number and included name, in the file's order."""
    text = path.read_text(encoding="utf-8")
    return [(text.count("\n", 0, match.start(match.lastindex)) + 1, match.group(match.lastindex))
            for match in INCLUDE.finditer(text)]


def find_sources(root, folder):
    return sorted(path for path in (root / folder).rglob("*") if path.suffix in (".cpp", ".h"))


def get_floor(room):
    """The floor of a folder of lumo/ or tests/, or None if it has none."""
    room = TESTS_ALONE.get(room, room)
    return FLOORS.index(room) if room in FLOORS else None


def split_name(name):
    """The folder under lumo/ or tests/ and its subfolder, of an included name or of a path in the root."""
    parts = name.split("/")
    return (parts[0], parts[1]) if len(parts) > 2 and parts[0] in ("lumo", "tests") else (None, None)


def check_library(room, name):
    """What is wrong with the include of a header of another library, or None."""
    is_z3 = name == "z3.h" or name == "z3++.h" or name.startswith("z3_")
    is_cli11 = name.startswith("CLI/")
    if is_z3 and room != "solvers":
        return "only lumo/solvers/ includes Z3's headers"
    if is_cli11 and room != "cli":
        return "only lumo/cli/ includes CLI11's headers"
    return None


def check_product(root):
    faults = []
    for path in find_sources(root, "lumo"):
        where = path.relative_to(root)
        room = where.parts[1]
        # Files outside of the folders, such as the header of the version, include none of them.
        floor = get_floor(room) if len(where.parts) > 2 else -1
        if floor is None:
            faults.append(f"{where}:1: the folder lumo/{room}/ has no floor")
            continue
        for line, name in find_includes(path):
            top, other = split_name(name)
            fault = check_library(room, name)
            if top == "tests":
                fault = "lumo/ includes nothing of tests/"
            elif top == "lumo" and get_floor(other) is None:
                fault = f"the folder lumo/{other}/ has no floor"
            elif top == "lumo" and get_floor(other) > floor:
                fault = f"lumo/{room}/ is on floor {floor}, but lumo/{other}/ is on floor {get_floor(other)}"
            if fault:
                faults.append(f"{where}:{line}: {name}: {fault}")
    return faults


class Reach:
    """The headers that files of tests/ include through other files of tests/. A header represents its source, too."""

    def __init__(self, root):
        self.root = root
        self.includes = {}

    def get_includes(self, name):
        if name not in self.includes:
            found = []
            for path in (self.root / name, (self.root / name).with_suffix(".cpp")):
                if path.is_file():
                    found += [included for _, included in find_includes(path)]
            self.includes[name] = found
        return self.includes[name]

    def find_above(self, start, floor):
        """A chain of includes that ends in a folder above the floor, or None."""
        seen = {start}
        chains = [[start]]
        for chain in chains:
            top, room = split_name(chain[-1])
            if top is None:
                continue
            if room != SUPPORT and get_floor(room) is not None and get_floor(room) > floor:
                return chain
            for name in self.get_includes(chain[-1]) if top == "tests" else []:
                if name not in seen:
                    seen.add(name)
                    chains.append(chain + [name])
        return None


def check_tests(root):
    faults = []
    reach = Reach(root)
    for path in find_sources(root, "tests"):
        where = path.relative_to(root)
        room = where.parts[1]
        floor = get_floor(room)
        if floor is None:
            if room != SUPPORT:
                faults.append(f"{where}:1: the folder tests/{room}/ has no floor")
            continue
        for line, name in find_includes(path):
            if name.startswith("CLI/") and room != "cli":
                faults.append(f"{where}:{line}: {name}: only lumo/cli/ includes CLI11's headers")
            chain = reach.find_above(name, floor)
            if chain:
                above = split_name(chain[-1])[1]
                faults.append(f"{where}:{line}: {' -> '.join(chain)}: tests/{room}/ is on floor {floor}, but "
                              f"{'/'.join(split_name(chain[-1]))}/ is on floor {get_floor(above)}")
    return faults


def main():
    root = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else pathlib.Path(__file__).parent.parent)
    faults = check_product(root) + check_tests(root)
    for fault in faults:
        print(fault)
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
