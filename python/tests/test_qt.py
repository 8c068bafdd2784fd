# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
"""Qt in a process that has not asked for it, or has its own use of it."""
import subprocess
import sys
import textwrap

import pytest

import plf

# What the scripts need: a graph with texts, and Qt without a package for it.
START = f"""
import ctypes
import threading
SAMPLE = {str(plf.TOP / "samples" / "energy.plf")!r}

def make_application(library, name):
    '''Make an application object, and never end it.'''
    keep = [ctypes.c_int(3), (ctypes.c_char_p * 4)(b"test", b"-platform", b"offscreen", None), ctypes.create_string_buffer(64)]
    getattr(ctypes.CDLL(library), name)(keep[2], ctypes.byref(keep[0]), keep[1], 0x60400)
    return keep

def application():
    '''The address of the application object, or None.'''
    return ctypes.c_void_p.in_dll(ctypes.CDLL("libQt6Core.so.6"), "_ZN16QCoreApplication4selfE").value
"""


def run(script, **variables):
    """Run a script in a new process; it must print nothing and end well."""
    result = subprocess.run(
        [sys.executable, "-c", START + textwrap.dedent(script)],
        env=plf.environment(**variables),
        capture_output=True,
        text=True,
        check=False,
    )
    assert (result.stdout, result.stderr, result.returncode) == ("", "", 0)


DRAW = """
import plotvw
image = plotvw.read(SAMPLE).render()
assert len(set(map(tuple, image.reshape(-1, 4).tolist()))) > 5
assert application() is None
"""


def test_no_application_object_stays():
    run(DRAW)
    run(DRAW + DRAW)


@pytest.mark.parametrize("platform", ["xcb", "wayland", "missing"])
def test_no_display_is_needed(platform):
    run(DRAW, QT_QPA_PLATFORM=platform, DISPLAY=None, WAYLAND_DISPLAY=None, XDG_RUNTIME_DIR=None)


@pytest.mark.parametrize("locale", ["C", "POSIX", "C.UTF-8", "de_DE.UTF-8", None])
def test_the_locale_stays(locale):
    script = """
    import locale
    before = locale.setlocale(locale.LC_ALL)
    import plotvw
    plotvw.read(SAMPLE).render()
    assert locale.setlocale(locale.LC_ALL) == before
    """
    run(script, LC_ALL=locale)


def test_threads_that_come_and_go():
    script = """
    def work():
        import plotvw
        images.append(plotvw.read(SAMPLE).render().tobytes())
    images = []
    for _ in range(5):
        thread = threading.Thread(target=work)
        thread.start()
        thread.join()
    work()
    assert len(set(images)) == 1
    assert application() is None
    """
    run(script)


def test_it_is_kept_ready():
    script = """
    import plotvw
    g = plotvw.read(SAMPLE)
    with plotvw.keep_ready():
        kept = application()
        assert kept is not None
        g.render()
        with plotvw.keep_ready():
            assert application() == kept
        assert application() == kept
    assert application() is None
    """
    run(script)


def test_an_application_object_is_used_and_left_alone(tmp_path):
    script = """
    keep = make_application("libQt6Gui.so.6", "_ZN15QGuiApplicationC1ERiPPci")
    existing = application()
    assert existing is not None
    import plotvw
    g = plotvw.read(SAMPLE)
    images = []
    threads = [threading.Thread(target=lambda: images.append(g.render().tobytes())) for _ in range(4)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    with plotvw.keep_ready():
        images.append(g.render().tobytes())
    assert len(images) == 5 and len(set(images)) == 1
    assert application() == existing
    import os
    os._exit(0)  # nobody ends the application object
    """
    run(script, XDG_RUNTIME_DIR=str(tmp_path))


def test_an_application_object_without_texts_is_refused():
    script = """
    keep = make_application("libQt6Core.so.6", "_ZN16QCoreApplicationC1ERiPPci")
    import plotvw
    g = plotvw.read(SAMPLE)
    try:
        g.render()
    except RuntimeError as error:
        assert "QGuiApplication" in str(error)
    else:
        raise AssertionError("it was drawn")
    import os
    os._exit(0)  # nobody ends the application object
    """
    run(script)
