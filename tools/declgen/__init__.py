"""Generation from the .api declarations (see docs/declarations.md).

parser reads each file into declarations; model resolves them across files, checks them and
assigns dispatch ids; each emit_* module writes one output from the model alone. The command
line is tools/apigen.py.
"""
from __future__ import annotations

import os

from .model import Model
from .parser import DeclError, parse_file


def load(root: str, library: str, apis: list[str]) -> Model:
    """The model of the library declared in `library` and the classes of `apis`, paths relative
    to `root`."""
    lib = parse_file(root, library).library
    if lib is None:
        raise DeclError(f"{library} declares no library")
    return Model(lib, [parse_file(root, path) for path in apis])


def write_if_changed(path: str, text: str) -> None:
    """Leaves an unchanged output untouched, so that what depends on it is not rebuilt."""
    os.makedirs(os.path.dirname(path) or ".", exist_ok=True)
    try:
        with open(path, encoding="utf-8") as f:
            if f.read() == text:
                return
    except FileNotFoundError:
        pass
    with open(path, "w", encoding="utf-8") as f:
        f.write(text)
