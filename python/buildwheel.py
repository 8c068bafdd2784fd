# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
"""Make a wheel of the Python package: what pip calls for "pip install .", see pyproject.toml.

CMake builds the package as always, for the Python that runs this: in a temporary folder, or in one that stays and makes the
next time shorter, "pip install . --config-settings build-dir=build/wheel". Debian 12 has no backend for pip that calls
CMake, and a wheel is no more than the package's files with a list of them.
"""
import base64
import hashlib
import os
import re
import shutil
import subprocess
import sys
import sysconfig
import tempfile
import zipfile
from pathlib import Path

TOP = Path(__file__).resolve().parents[1]
METADATA = """Metadata-Version: 2.1
Name: plotvw
Version: {version}
Summary: Graphs of the PLF format as data and as pictures
License: MIT
Requires-Python: >=3.11
Requires-Dist: numpy>=1.24
"""
WHEEL = """Wheel-Version: 1.0
Generator: plotvw
Root-Is-Purelib: false
Tag: {tag}
"""


class UnsupportedOperation(Exception):
    """What pip expects of a backend that cannot make something."""


def version():
    """The version of the project."""
    return re.search(r"^project\(plotvw VERSION ([0-9.]+)", (TOP / "CMakeLists.txt").read_text(encoding="utf-8"), re.M)[1]


def tag():
    """The interpreters and systems that the compiled part is for."""
    python = f"cp{sys.version_info.major}{sys.version_info.minor}"
    return f"{python}-{python}-{re.sub('[-.]', '_', sysconfig.get_platform())}"


def cmake(*arguments):
    """Run CMake. Its messages go to standard error: pip shows them when it fails, or with -v."""
    subprocess.run(["cmake", *map(str, arguments)], check=True, stdout=sys.stderr.fileno())


def install(build, target):
    """Build the package, and install it into a folder."""
    generator = ["-G", "Ninja"] if shutil.which("ninja") else []
    cmake("-S", TOP, "-B", build, *generator, f"-DPython_EXECUTABLE={sys.executable}", "-DCMAKE_BUILD_TYPE=Release",
          "-DPLOTVW_PYTHON=ON", "-DPLOTVW_PYTHON_DIR=.", "-DPLOTVW_TESTS=OFF")
    cmake("--build", build, "--target", "plotvw_python", "--parallel", os.cpu_count() or 1)
    cmake("--install", build, "--component", "python", "--strip", "--prefix", target)


def record_line(name, content):
    """What the list of files says of one."""
    digest = base64.urlsafe_b64encode(hashlib.sha256(content).digest()).rstrip(b"=").decode()
    return f"{name},sha256={digest},{len(content)}\n"


def write_wheel(path, files, info):
    """Write files, name -> content, and the list of them."""
    record = "".join(record_line(name, content) for name, content in files.items()) + f"{info}/RECORD,,\n"
    with zipfile.ZipFile(path, "w", zipfile.ZIP_DEFLATED) as archive:
        for name, content in {**files, f"{info}/RECORD": record.encode()}.items():
            archive.writestr(name, content)


def build_wheel(wheel_directory, config_settings=None, metadata_directory=None):
    """Called by pip; returns the name of the file in the folder."""
    with tempfile.TemporaryDirectory() as folder:
        target = Path(folder, "target")
        install((config_settings or {}).get("build-dir") or Path(folder, "build"), target)
        package = [path for path in sorted(target.rglob("*")) if path.is_file()]
        files = {path.relative_to(target).as_posix(): path.read_bytes() for path in package}
    info = f"plotvw-{version()}.dist-info"
    files[f"{info}/LICENSE"] = (TOP / "LICENSE").read_bytes()
    files[f"{info}/METADATA"] = METADATA.format(version=version()).encode()
    files[f"{info}/WHEEL"] = WHEEL.format(tag=tag()).encode()
    name = f"plotvw-{version()}-{tag()}.whl"
    write_wheel(Path(wheel_directory, name), files, info)
    return name


def build_sdist(sdist_directory, config_settings=None):
    """Called by others than pip."""
    raise UnsupportedOperation("the sources are in the repository")
