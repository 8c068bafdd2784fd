#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
"""Do all files say the same of what several of them list?     facts.py TOP

The code has each list once; pages, completions and scripts repeat it. Compared are the options of the viewer, the keys of
its configuration file, the formats of the converter and the version.
"""
import re
import sys
from pathlib import Path

TOP = Path(sys.argv[1]) if len(sys.argv) > 1 else sys.exit(__doc__)


def found(pattern, name):
    """What a pattern matches in a file, a set."""
    return set(re.findall(pattern, (TOP / name).read_text(encoding="utf-8"), re.M))


def viewer_options():
    """The options of the viewer by file; the first is the code."""
    name = "hostlink/vieweroptions.h"
    yield name, found(r'^    "(-[^"]+)",', name)
    name = "docs/man/plotvw.1"
    manual = found(r"^\.It Fl (?:\\&)?(\S+)( Ns =)?", name)
    yield name, {"-" + option + ("=" if value else "") for option, value in manual}
    name = "packaging/plotvw-open.sh"
    yield name, {option.replace("\\", "") for option in found(r"\*(-[^*]+)\*", name)}
    name = "packaging/completions/bash/plotvw"
    yield name, {option for words in found(r"-W '(-[^']*)'", name) for option in words.split()}
    name = "packaging/completions/zsh/_plotvw"
    yield name, found(r"^  '(-[\w?]+=?)", name)
    name = "packaging/completions/fish/plotvw.fish"
    yield name, found(r"""-a ["']*(-[\w?]+=?)""", name)


def configuration_keys():
    """The keys of the configuration file by file; the first is the code."""
    name = "support/config.cpp"
    yield name, found(r'^    \{"(\w+)", ', name)
    name = "docs/man/plotvw.cfg.5"
    yield name, found(r"^\.It Cm (\w+) Ns =", name)


def formats():
    """The names of the converter's formats by file; the first is the code."""
    name = "tools/convert/format.cpp"
    yield name, found(r'\{"(\w+)", Format::', name)
    name = "docs/man/plfconvert.1"
    text = (TOP / name).read_text(encoding="utf-8")
    item = re.search(r"^\.It Fl f .*?(?=^\.It)", text, re.M | re.S)
    yield name, {word for line in re.findall(r"^\.Cm (.*)", item.group(), re.M) for word in re.findall(r"\w+", line)}
    for name, pattern in (
        ("packaging/completions/bash/plfconvert", r"-W '([a-z ]+)'"),
        ("packaging/completions/zsh/_plfconvert", r"picture format\]:format:\(([^)]*)\)"),
        ("packaging/completions/fish/plfconvert.fish", r'-l format -x -a "([^"]*)"'),
    ):
        listed = re.search(pattern, (TOP / name).read_text(encoding="utf-8"))
        yield name, set(listed.group(1).split()) if listed else set()


def versions():
    """The version by file; the first is the one that the others follow."""
    name = "CMakeLists.txt"
    yield name, found(r"^project\(plotvw VERSION (\S+)", name)
    for name, pattern in (
        ("packaging/desktop/org.plotvw.plotvw.metainfo.xml", r'<release version="([^"]+)"'),
        ("debian/changelog", r"^plotvw \(([^)]+)\)"),
        ("CHANGELOG.md", r"^## (\d\S*)"),
    ):
        newest = re.search(pattern, (TOP / name).read_text(encoding="utf-8"), re.M)
        yield name, {newest.group(1)} if newest else set()


def differences(what, lists):
    """A line for each file that says something else than the first."""
    (code, wanted), *others = lists
    if not wanted:
        yield f"{code}: no {what} found"
    for name, has in others:
        for fact in sorted(wanted - has):
            yield f"{name}: {what} {fact} of {code} is missing"
        for fact in sorted(has - wanted):
            yield f"{name}: {what} {fact} is not in {code}"


def main():
    """Print what differs; exit code 1 when anything does."""
    wrong = [
        *differences("option", viewer_options()),
        *differences("key", configuration_keys()),
        *differences("format", formats()),
        *differences("version", versions()),
    ]
    print("\n".join(wrong), file=sys.stderr)
    sys.exit(1 if wrong else 0)


if __name__ == "__main__":
    main()
