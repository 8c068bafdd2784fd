#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
"""Print where packages are installed below a prefix, as a path relative to it.     packagefolder.py PREFIX

A folder that this Python searches comes first: Debian's searches dist-packages below /usr and /usr/local. Any other prefix
has site-packages.
"""
import os
import site
import sys
import sysconfig


def system_folder():
    """Where Debian's own packages are, or None on another system."""
    if "deb_system" not in sysconfig.get_scheme_names():
        return None
    return sysconfig.get_path("platlib", "deb_system")


def package_folder(prefix):
    """The folder below a prefix."""
    below = os.path.join(prefix, "lib", "")
    searched = site.getsitepackages()
    for folder in (system_folder(), *searched):
        if folder in searched and folder.startswith(below):
            return os.path.relpath(folder, prefix)
    base = {"base": prefix, "platbase": prefix}
    return os.path.relpath(sysconfig.get_path("platlib", "posix_prefix", base), prefix)


if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    print(package_folder(os.path.abspath(sys.argv[1])))
