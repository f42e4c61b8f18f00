"""The assembly manifest that lets an application activate the DLL's classes without any
registry entry (registration-free COM): every creatable class with its CLSID, ProgID and
threading model, the type library, and the interfaces that the type library marshals, as
registration would have written them."""
from __future__ import annotations

from xml.sax.saxutils import quoteattr

from .model import Model

# The automation (type library) marshaler serves every dual and dispatch interface.
TYPELIB_MARSHALER = "{00020424-0000-0000-C000-000000000046}"
ARCHITECTURES = {"x64": "amd64", "x86": "x86"}


def assembly_version(version: str) -> str:
    """A four-part assembly version from the product's version (1.0.0 gives 1.0.0.0)."""
    parts = version.split(".")
    if not 1 <= len(parts) <= 4 or not all(p.isdigit() for p in parts):
        raise ValueError(f"not a version: {version!r}")
    return ".".join(parts + ["0"] * (4 - len(parts)))


def emit(model: Model, dll: str, version: str, arch: str) -> str:
    lib = model.library
    tlbid = "{" + lib.libid + "}"
    w = ['<?xml version="1.0" encoding="UTF-8" standalone="yes"?>',
         '<assembly xmlns="urn:schemas-microsoft-com:asm.v1" manifestVersion="1.0">',
         f'  <assemblyIdentity type="win32" name="{lib.name}" version="{assembly_version(version)}" '
         f'processorArchitecture="{ARCHITECTURES[arch]}"/>',
         f"  <file name={quoteattr(dll)}>",
         f'    <typelib tlbid="{tlbid}" version="{lib.version}" helpdir=""/>']
    for cls in model.classes:
        if not cls.creatable:
            continue
        description = f" description={quoteattr(cls.help)}" if cls.help else ""
        w.append(f'    <comClass clsid="{{{cls.clsid}}}" progid="{lib.name}.{cls.name}" threadingModel="Apartment" '
                 f'tlbid="{tlbid}"{description}/>')
    w.append("  </file>")
    for cls in model.classes:
        for name, iid in [cls.interface] + ([cls.events_iface] if cls.events_iface else []):
            w.append(f'  <comInterfaceExternalProxyStub name="{name}" iid="{{{iid}}}" '
                     f'proxyStubClsid32="{TYPELIB_MARSHALER}" tlbid="{tlbid}"/>')
    w.append("</assembly>")
    return "\n".join(w) + "\n"
