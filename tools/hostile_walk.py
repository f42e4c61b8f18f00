#!/usr/bin/env python3
"""Writes the hostile-argument walk from the .api declarations (see tools/declgen/emit_hostile.py).

  hostile_walk.py --root SRC --library LIB.api --helpers HELPERS.vbs --out FILE.vbs API...
"""
from __future__ import annotations

import argparse
import os
import sys

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from declgen import DeclError, emit_hostile, load, write_if_changed  # noqa: E402


def main() -> int:
    ap = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    ap.add_argument("--root", required=True)
    ap.add_argument("--library", required=True)
    ap.add_argument("--helpers", required=True)
    ap.add_argument("--out", required=True)
    ap.add_argument("api", nargs="+")
    args = ap.parse_args()
    try:
        model = load(args.root, args.library, args.api)
    except DeclError as e:
        print(f"hostile_walk: {e}", file=sys.stderr)
        return 1
    with open(args.helpers, encoding="utf-8") as f:
        helpers = f.read()
    write_if_changed(args.out, emit_hostile.emit(model, helpers))
    return 0


if __name__ == "__main__":
    sys.exit(main())
