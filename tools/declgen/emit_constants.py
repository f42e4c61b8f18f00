"""The published enumerations as VBScript constants, for scripts that cannot reference the type
library (a plain .vbs, where a .wsf would use <reference>): the package's examples start with them."""
from __future__ import annotations

from .model import Model


def emit(model: Model) -> str:
    w = [f"' The enumerations of the {model.library.name} type library as constants."]
    for f in model.files:
        for e in f.enums:
            w.append(f"' {e.name}: {e.help}" if e.help else f"' {e.name}")
            w += [f"Const {n} = {v}" for n, v in e.members]
    return "\n".join(w) + "\n"
