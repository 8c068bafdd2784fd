# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
"""Where the package is installed."""
import os
import site
import subprocess
import sys

import pytest

import plf


def folder(prefix):
    """The folder below a prefix."""
    command = [sys.executable, plf.TOP / "python" / "packagefolder.py", prefix]
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout.rstrip("\n")


@pytest.mark.parametrize("prefix", ["/usr", "/usr/local"])
def test_folders_that_python_searches(prefix):
    if not any(path.startswith(prefix + "/lib/") for path in site.getsitepackages()):
        pytest.skip("this Python searches no such folder")
    assert os.path.join(prefix, folder(prefix)) in site.getsitepackages()


def test_debians_own_folder():
    if not os.path.isdir("/usr/lib/python3/dist-packages"):
        pytest.skip("this is not Debian")
    assert folder("/usr") == "lib/python3/dist-packages"


def test_any_other_prefix(tmp_path):
    version = f"python{sys.version_info.major}.{sys.version_info.minor}"
    assert folder(tmp_path) == f"lib/{version}/site-packages"
