#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
"""Does each room include only what the table of rooms lets it?     layers.py TOP

The table is the first one of docs/ARCHITECTURE.md: a room, what it holds, the rooms that it may use. A room is a folder,
`support/`, or the files of a folder whose names begin so, `meta/plfmeta`. It may use itself. No arrow may lead back to
where it came from.
"""
import re
import sys
from pathlib import Path

PAGE = "docs/ARCHITECTURE.md"


def read_rooms(page):
    """The rooms of the table: room -> the rooms that it may use."""
    table = re.search(r"^\| Room \|.*?\n\n", page, re.M | re.S)
    rows = re.findall(r"^\| `([^`]+)` \|[^|]*\|([^|]*)\|$", table.group() if table else "", re.M)
    return {room: re.findall(r"`([^`]+)`", uses) for room, uses in rows}


def unknown_rooms(rooms):
    """Arrows to what is no room, a line each."""
    for room, uses in rooms.items():
        for used in uses:
            if used not in rooms:
                yield f"{PAGE}: {room} may use {used}, which is no room"


def circles(rooms):
    """Rooms from which arrows lead back to them, a line each."""
    for room in rooms:
        seen, waiting = set(), list(rooms[room])
        while waiting:
            used = waiting.pop()
            if used not in seen:
                seen.add(used)
                waiting += rooms.get(used, [])
        if room in seen:
            yield f"{PAGE}: {room} is in a circle"


def room_of(path, rooms):
    """The innermost room that a path is in, or None."""
    return max((room for room in rooms if path.startswith(room)), key=len, default=None)


def sources(top, rooms):
    """The C++ files in the folders of all rooms, as paths below the top."""
    for folder in sorted({room.split("/")[0] for room in rooms}):
        for file in sorted((top / folder).rglob("*")):
            if file.suffix in (".cpp", ".h"):
                yield file.relative_to(top).as_posix()


def wrong_includes(top, rooms):
    """What is wrong, a line each."""
    for path in sources(top, rooms):
        room = room_of(path, rooms)
        if room is None:
            yield f"{path}: in no room of the table"
            continue
        for included in re.findall(r'^#include "([^"]+)"', (top / path).read_text(encoding="utf-8"), re.M):
            used = room_of(included, rooms)
            if used is None and "/" in included:
                yield f"{path}: {included} is in no room of the table"
            elif used not in (None, room) and used not in rooms[room]:
                yield f"{path}: {room} may not use {used} ({included})"


def main():
    """Print what is wrong; exit code 1 when anything is."""
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    top = Path(sys.argv[1])
    rooms = read_rooms((top / PAGE).read_text(encoding="utf-8"))
    if len(rooms) < 2:
        sys.exit(f"{PAGE} has no table of rooms")
    wrong = [*unknown_rooms(rooms), *circles(rooms), *wrong_includes(top, rooms)]
    print("\n".join(wrong), file=sys.stderr)
    sys.exit(1 if wrong else 0)


if __name__ == "__main__":
    main()
