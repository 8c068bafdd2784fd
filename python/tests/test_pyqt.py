# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
"""Programs with windows."""
import subprocess
import sys

import pytest

import plf

pytest.importorskip("PyQt6")

PICTURES = """
import sys
import threading
import plotvw
g = plotvw.read(sys.argv[1])

def draw(count):
    threads = [threading.Thread(target=g.render) for _ in range(count)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    g.render()
"""
WINDOW = """
from PyQt6.QtWidgets import QApplication, QLabel
assert QApplication.instance() is None
app = QApplication(["test"])
label = QLabel("text")
label.show()
app.processEvents()
assert label.isVisible()
"""
AFTERWARDS = """
assert QApplication.instance() is app
label.repaint()
app.processEvents()
"""


@pytest.mark.parametrize("script", [
    PICTURES + "draw(4)" + WINDOW + AFTERWARDS,
    PICTURES + WINDOW + "draw(4)" + AFTERWARDS,
    PICTURES + "draw(4)" + WINDOW + "draw(4)" + AFTERWARDS,
], ids=["window after pictures", "pictures in a program with a window", "both"])
def test_windows(script, tmp_path):
    result = subprocess.run(
        [sys.executable, "-c", script, plf.TOP / "samples" / "energy.plf"],
        env=plf.environment(QT_QPA_PLATFORM="offscreen", XDG_RUNTIME_DIR=str(tmp_path)),
        capture_output=True, text=True, check=False,
    )
    assert (result.stdout, result.stderr, result.returncode) == ("", "", 0)
