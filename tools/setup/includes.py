#!/usr/bin/env python3
"""Holds the includes of the tree against the table of rooms in ARCHITECTURE.md.

    includes.py            says what breaks a rule, a line each, and ends with 1
    includes.py --graph    prints the arrows between top folders and between rooms, with their number of includes

A file belongs to the room with the longest name that its path begins with. It may include headers of its own room
and of the rooms in its row (a name there stands for all below it). A header in an `inner/` folder is seen by the files around that folder, and by the tests
in the folder of the same name. Neither rooms nor headers may stand in a circle."""
import collections
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
INCLUDE = re.compile(r'^#include "([^"]+)"', re.MULTILINE)


def sources():
    found = (path.relative_to(ROOT) for ending in ("*.h", "*.cpp") for path in ROOT.rglob(ending))
    return sorted(str(path) for path in found if path.parts[0] != "build" and not path.parts[0].startswith("."))


def allowed_rooms():
    """The table behind the heading "Who may include whom": room -> set of rooms."""
    table = {}
    section = (ROOT / "ARCHITECTURE.md").read_text().partition("## Who may include whom")[2].partition("\n## ")[0]
    for row in re.findall(r"^\| *`([^`]+)` *\|([^|]*)\|", section, re.MULTILINE):
        table[row[0].rstrip("/")] = {name.rstrip("/") for name in re.findall(r"`([^`]+)`", row[1])}
    return table


def room_of(path, rooms):
    fitting = [room for room in rooms if path.startswith(room + "/")]
    return max(fitting, key=len) if fitting else path.split("/")[0]


def sees_inside(path, header):
    around = header.partition("inner/")[0]
    return path.startswith(around) or path.startswith("tests/" + "/".join(around.split("/")[1:2]) + "/")


def circle(edges):
    """One circle in a graph node -> set of nodes, or nothing."""
    state = {}

    def walk(node, trail):
        state[node] = "open"
        for target in sorted(edges.get(node, ())):
            if state.get(target) == "open":
                return trail[trail.index(target):] + [target]
            if target not in state:
                found = walk(target, trail + [target])
                if found:
                    return found
        state[node] = "done"
        return None

    for start in sorted(edges):
        if start not in state:
            found = walk(start, [start])
            if found:
                return found
    return None


def main():
    files = sources()
    known = set(files)
    rooms = allowed_rooms()
    complaints = []
    between = collections.Counter()
    headers = collections.defaultdict(set)
    for path in files:
        room = room_of(path, rooms)
        if room not in rooms:
            complaints.append(f"{path}: belongs to no room of ARCHITECTURE.md")
        for header in INCLUDE.findall((ROOT / path).read_text()):
            if header not in known:
                complaints.append(f"{path}: includes {header}, which isn't there; includes are written from the root")
                continue
            target = room_of(header, rooms)
            between[(path, room, header, target)] += 1
            if path.endswith(".h"):
                headers[path].add(header)
            if target != room and not any(f"{target}/".startswith(f"{name}/") for name in rooms.get(room, ())):
                complaints.append(f"{path}: {room} may not include {header}")
            if "/inner/" in header and not sees_inside(path, header):
                complaints.append(f"{path}: {header} is not for others")
    arrows = collections.Counter()
    tops = collections.Counter()
    for (path, room, header, target), number in between.items():
        if room != target:
            arrows[(room, target)] += number
        if path.split("/")[0] != header.split("/")[0]:
            tops[(path.split("/")[0], header.split("/")[0])] += number
    if "--graph" in sys.argv[1:]:
        for title, graph in (("top folders", tops), ("rooms", arrows)):
            print(f"{len(graph)} arrows between {title}")
            for (start, end), number in sorted(graph.items()):
                print(f"  {start} -> {end} {number}")
    room_edges = collections.defaultdict(set)
    for start, end in arrows:
        room_edges[start].add(end)
    for graph in (room_edges, headers):
        found = circle(graph)
        if found:
            complaints.append("a circle: " + " -> ".join(found))
    for complaint in complaints:
        print(f"includes: {complaint}", file=sys.stderr)
    return 1 if complaints else 0


if __name__ == "__main__":
    sys.exit(main())
