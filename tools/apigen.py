#!/usr/bin/env python3
"""Generates, from the .api declarations of the public classes:

  --idl FILE         the IDL of the type library (compiled by widl into the .tlb);
  --core DIR         for each .api file, a header with its enumerations, event ids and class
                     table declarations, and a source file with the member tables that late
                     binding dispatches through (portable, built on every platform);
  --com DIR          the COM classes: one vtable shim per accessor that packs its arguments and
                     calls the same member table, plus the class registry (Windows only);
  --manifest FILE    the assembly manifest for registration-free activation of the DLL named by
                     --dll, for --arch x64 or x86, with the assembly version --version;
  --reference DIR    the reference pages for host developers, one per class and an index;
  --check-reference DIR
                     fails, naming the pages, when DIR differs from what --reference writes;
  --hostile FILE     the hostile-argument walk, a VBScript that calls every member of every
                     creatable class with arguments of every wrong kind, after the helpers
                     it is given with --helpers.

The declaration syntax and what the generated code does are in docs/declarations.md; the
generator itself is the package tools/declgen.
"""
from __future__ import annotations

import argparse
import os
import sys

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from declgen import DeclError, emit_com, emit_hostile, emit_idl, emit_manifest, emit_reference, emit_tables, load, write_if_changed  # noqa: E402


def stale_pages(folder: str, pages: dict[str, str]) -> list[str]:
    """The pages of `folder` that differ from `pages`, are missing or are left over."""
    present = {n for n in os.listdir(folder) if n.endswith(".md")} if os.path.isdir(folder) else set()
    stale = sorted(present - pages.keys())
    for name, text in sorted(pages.items()):
        try:
            with open(os.path.join(folder, name), encoding="utf-8") as f:
                if f.read() == text:
                    continue
        except FileNotFoundError:
            pass
        stale.append(name)
    return stale


def main() -> int:
    ap = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    ap.add_argument("--root", required=True, help="source root the .api paths are relative to")
    ap.add_argument("--library", required=True, help="the .api file that declares the library")
    ap.add_argument("--idl")
    ap.add_argument("--core")
    ap.add_argument("--com")
    ap.add_argument("--idl-header", default="Celdo_h.h", help="widl's header, which the COM shims include")
    ap.add_argument("--manifest")
    ap.add_argument("--dll", default="Celdo.dll")
    ap.add_argument("--version", default="1.0.0")
    ap.add_argument("--arch", choices=sorted(emit_manifest.ARCHITECTURES), default="x64")
    ap.add_argument("--reference")
    ap.add_argument("--check-reference")
    ap.add_argument("--hostile")
    ap.add_argument("--helpers", help="the hand-written VBScript that the hostile walk starts with")
    ap.add_argument("api", nargs="+")
    args = ap.parse_args()
    if args.hostile and not args.helpers:
        ap.error("--hostile needs --helpers")
    try:
        model = load(args.root, args.library, args.api)
    except DeclError as e:
        print(f"apigen: {e}", file=sys.stderr)
        return 1
    if args.idl:
        write_if_changed(args.idl, emit_idl.emit(model))
    if args.core:
        for api in model.files:
            stem = os.path.join(args.core, os.path.splitext(api.path)[0])
            write_if_changed(stem + ".gen.hpp", emit_tables.emit_header(api))
            write_if_changed(stem + ".gen.cpp", emit_tables.emit_source(api))
    if args.com:
        write_if_changed(os.path.join(args.com, "com", "classes.gen.cpp"), emit_com.emit(model, args.idl_header))
    if args.manifest:
        write_if_changed(args.manifest, emit_manifest.emit(model, args.dll, args.version, args.arch))
    if args.reference:
        for name, text in emit_reference.emit(model).items():
            write_if_changed(os.path.join(args.reference, name), text)
    if args.check_reference:
        stale = stale_pages(args.check_reference, emit_reference.emit(model))
        if stale:
            print(f"apigen: the reference pages differ from the declarations: {', '.join(stale)}; "
                  "regenerate them with: cmake --build --preset linux --target reference", file=sys.stderr)
            return 1
    if args.hostile:
        with open(args.helpers, encoding="utf-8") as f:
            write_if_changed(args.hostile, emit_hostile.emit(model, f.read()))
    return 0


if __name__ == "__main__":
    sys.exit(main())
