#!/usr/bin/env python3
"""Fails when a GUID written in the IDL is not found, byte for byte, in the compiled type
library: some widl versions corrupt identities in some layouts, and a type library with a wrong
LIBID or IID registers and loads without complaint."""
import re
import sys
import uuid

idl_path, tlb_path = sys.argv[1], sys.argv[2]
idl = open(idl_path, encoding="utf-8").read()
tlb = open(tlb_path, "rb").read()
guids = re.findall(r"uuid\(([0-9A-Fa-f-]{36})\)", idl)
missing = [g for g in guids if uuid.UUID(g).bytes_le not in tlb]
if not guids:
    sys.exit(f"{idl_path}: no GUIDs found")
if missing:
    sys.exit(f"{tlb_path}: GUIDs of the IDL missing from the type library: {', '.join(missing)}")
print(f"{tlb_path}: all {len(guids)} GUIDs present")
