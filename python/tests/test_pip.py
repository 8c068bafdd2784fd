# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
"""pip installs the package from the sources, as a user calls it."""
import os
import subprocess
import sys
from pathlib import Path

import pytest

import plf

USE = """
import plotvw
g = plotvw.read(r"{sample}")
print(plotvw.__file__, plotvw.__version__, len(g.vectors), (g.render(width=64)[..., :3] < 255).any())
"""


@pytest.fixture(name="environment")
def environment_(tmp_path):
    """Nothing of the build that is tested here, and nothing of the user's."""
    kept = {name: value for name, value in os.environ.items() if not name.startswith(("PYTHON", "PIP_"))}
    return {**kept, "HOME": str(tmp_path), "PYTHONDONTWRITEBYTECODE": "1", "PIP_NO_INDEX": "1"}


def test_from_the_sources_and_away_again(tmp_path, environment):
    def call(*command):
        result = subprocess.run(command, env=environment, cwd=tmp_path, capture_output=True, text=True, check=False)
        assert result.returncode == 0, result.stdout + result.stderr
        return result.stdout

    # NumPy is the system's.
    call(sys.executable, "-m", "venv", "--system-site-packages", "venv")
    python = str(tmp_path / "venv" / "bin" / "python")
    call(python, "-m", "pip", "install", f"--config-settings=build-dir={os.environ['PLOTVW_WHEEL_BUILD']}", str(plf.TOP))
    file, version, vectors, drawn = call(python, "-c", USE.format(sample=plf.TOP / "samples" / "bode.plf")).split()
    assert Path(file).is_relative_to(tmp_path / "venv")
    assert (vectors, drawn) == ("3436", "True")
    assert f"plotvw=={version}" in call(python, "-m", "pip", "list", "--local", "--format=freeze").split()
    call(python, "-m", "pip", "uninstall", "--yes", "plotvw")
    assert not Path(file).parent.exists()
