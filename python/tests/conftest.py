# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
"""Every warning is an error, also of the interpreter's own about threads and files."""


def pytest_configure(config):
    """Called by pytest."""
    config.addinivalue_line("filterwarnings", "error")
