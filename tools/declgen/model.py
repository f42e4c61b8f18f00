"""All declarations of a library together: names resolved across files, checked, and every
member given its dispatch id. The emitters read only this, so whatever two outputs must agree
on (ids, accessors, the defaults of omitted arguments) is decided here, once.
"""
from __future__ import annotations

import os
from dataclasses import dataclass, field

from .parser import ClassDecl, DeclError, EnumDecl, FileDecl, Library, Literal, MemberDecl, ParamDecl

# The language's own types, in their canonical spelling (the declarations' is case-insensitive).
BASIC_TYPES = {t.lower(): t for t in (
    "String", "Integer", "Long", "Byte", "Boolean", "Single", "Double", "Currency", "Date",
    "Variant", "Object", "Unknown",
)}

DISPID_DEFAULT = 0      # what hosts call for `obj` and `obj(...)` without a member name
DISPID_ENUMERATOR = -4  # what For Each asks for


@dataclass(frozen=True)
class Accessor:
    """One way of calling a member, and everything each output names it by."""
    name: str              # as declared: get, let, set; method for a Sub or Function
    call_flag: str         # the automation call flag the member tables dispatch on
    idl_attr: str | None   # the IDL attribute of its vtable entry
    com_prefix: str        # prefix of its vtable entry's C++ name in widl's header
    cpp_prefix: str        # prefix of the C++ class's method; a method keeps the member's name
    assigns: bool          # Let and Set take the assigned value after the parameters


# In vtable order: a property's entries are get, put, putref, whatever order it was declared in.
ACCESSORS = {a.name: a for a in (
    Accessor("get", "automation::kGet", "propget", "get_", "get_", False),
    Accessor("let", "automation::kLet", "propput", "put_", "let_", True),
    Accessor("set", "automation::kSet", "propputref", "putref_", "set_", True),
    Accessor("method", "automation::kMethod", None, "", "", False),
)}


@dataclass(eq=False)
class Enum:
    name: str
    help: str | None
    members: list[tuple[str, int]]
    namespace: str  # C++ namespace below celdo::


@dataclass(frozen=True, eq=False)
class Type:
    """A declared type, resolved: kind is a BASIC_TYPES name, Enum or Class."""
    kind: str
    enum: Enum | None = None
    cls: Class | None = None

    @property
    def is_object(self) -> bool:
        return self.kind in ("Object", "Unknown", "Class")


@dataclass
class Param:
    name: str
    type: Type
    by_ref: bool
    optional: bool
    # What an omitted argument takes: the written default, else the type's zero (see zero_of);
    # None for a required parameter and for an optional Variant, which arrives as Missing.
    default: Literal | None


@dataclass
class Member:
    name: str
    kind: str                  # property, function or sub
    accessors: list[Accessor]  # in vtable order
    params: list[Param]        # for a property, its index parameters
    type: Type | None          # a property's value, a function's result; None for a sub
    flags: set[str]            # default, enumerator, hidden
    help: str | None
    dispid: int
    raises: list[tuple[int, str, str]] = field(default_factory=list)  # (number, description, when)
    examples: list[str] = field(default_factory=list)

    def result(self, accessor: Accessor) -> Type | None:
        """What a call through the accessor returns."""
        return None if accessor.assigns else self.type


@dataclass
class Event:
    name: str
    params: list[Param]
    help: str | None
    dispid: int


@dataclass(eq=False)
class Class:
    name: str
    help: str | None
    namespace: str  # C++ namespace below celdo::
    header: str     # the C++ class's header, beside its .api file
    creatable: bool
    clsid: str
    interface: tuple[str, str]           # (name, IID)
    events_iface: tuple[str, str] | None  # (name, DIID)
    members: list[Member]
    events: list[Event]
    examples: list[str] = field(default_factory=list)


@dataclass
class ApiFile:
    path: str
    namespace: str
    enums: list[Enum]
    classes: list[Class]


def cpp_namespace(path: str) -> str:
    """The C++ namespace of what a file declares: its folder, fields/x.api in celdo::fields."""
    return os.path.dirname(path).replace("/", "::")


def zero_of(t: Type) -> Literal | None:
    """The default of a typed Optional parameter that declares none: its type's zero, as the
    language gives an omitted typed optional. A Variant has none: it arrives as Missing."""
    if t.kind == "Variant":
        return None
    if t.is_object:
        return Literal("Nothing")
    if t.kind == "String":
        return Literal("Text", "")
    if t.kind == "Boolean":
        return Literal("Boolean", False)
    return Literal("Integer", 0)


def dispatch_ids(members: list[MemberDecl]) -> list[int]:
    """The default member and the enumerator take the ids hosts ask for; the others are
    numbered from 1 in declaration order."""
    ids, next_id = [], 1
    for m in members:
        if "default" in m.flags:
            ids.append(DISPID_DEFAULT)
        elif "enumerator" in m.flags:
            ids.append(DISPID_ENUMERATOR)
        else:
            ids.append(next_id)
            next_id += 1
    return ids


class Model:
    """What the emitters read: the library, the files in the order given (each with its
    enumerations and classes), and all classes in that order."""

    def __init__(self, library: Library, files: list[FileDecl]):
        self.library = library
        self._enums: dict[str, Enum] = {}
        self._enum_values: dict[str, int] = {}
        self._classes: dict[str, Class] = {}
        # Every type is known before any member is resolved: members name types of later files.
        for f in files:
            for e in f.enums:
                self._declare_enum(f.path, e)
            for c in f.classes:
                self._declare_class(f.path, c)
        self.files = [ApiFile(f.path, cpp_namespace(f.path),
                              [self._enums[e.name.lower()] for e in f.enums],
                              [self._resolve_class(f.path, c) for c in f.classes]) for f in files]
        self.classes = [c for f in self.files for c in f.classes]

    def _declare_type_name(self, path: str, line: int, name: str) -> None:
        key = name.lower()
        if key in BASIC_TYPES or key in self._enums or key in self._classes:
            raise DeclError(f"{path}:{line}: type {name} is declared twice")

    def _declare_enum(self, path: str, decl: EnumDecl) -> None:
        self._declare_type_name(path, decl.line, decl.name)
        for name, value in decl.members:
            # Members are used unqualified in host code, so they are unique across enumerations.
            if name.lower() in self._enum_values:
                raise DeclError(f"{path}:{decl.line}: enumeration member {name} is declared twice")
            self._enum_values[name.lower()] = value
        self._enums[decl.name.lower()] = Enum(decl.name, decl.help, decl.members, cpp_namespace(path))

    def _declare_class(self, path: str, decl: ClassDecl) -> None:
        self._declare_type_name(path, decl.line, decl.name)
        where = f"{path}:{decl.line}: class {decl.name}"
        if not decl.clsid or not decl.interface:
            raise DeclError(f"{where} needs a clsid and an interface")
        if decl.events and not decl.events_iface:
            raise DeclError(f"{where} raises events but declares no events interface")
        directory = os.path.dirname(path)
        # Members are resolved later; a member may name its own class.
        self._classes[decl.name.lower()] = Class(
            decl.name, decl.help, cpp_namespace(path), f"{directory}/{decl.name}.hpp", decl.creatable,
            decl.clsid, decl.interface, decl.events_iface, [], [], decl.examples)

    def _resolve_class(self, path: str, decl: ClassDecl) -> Class:
        cls = self._classes[decl.name.lower()]
        if sum("default" in m.flags for m in decl.members) > 1:
            raise DeclError(f"{path}:{decl.line}: class {cls.name} has more than one default member")
        for m, dispid in zip(decl.members, dispatch_ids(decl.members)):
            where = f"{path}:{m.line}: {cls.name}.{m.name}"
            member = Member(
                m.name, m.kind, [a for a in ACCESSORS.values() if a.name in m.accessors],
                [self._resolve_param(where, p) for p in m.params],
                self._resolve_type(where, m.type) if m.type else None, m.flags, m.help, dispid, m.raises, m.examples)
            if member.dispid == DISPID_ENUMERATOR and (
                    m.kind != "property" or m.accessors != ["get"] or member.type.kind != "Unknown"):
                raise DeclError(f"{where}: the enumerator is a 'property get ... as Unknown'")
            cls.members.append(member)
        for dispid, ev in enumerate(decl.events, 1):
            where = f"{path}:{ev.line}: {cls.name}.{ev.name}"
            cls.events.append(Event(ev.name, [self._resolve_param(where, p) for p in ev.params], ev.help, dispid))
        return cls

    def _resolve_type(self, where: str, name: str) -> Type:
        key = name.lower()
        if key in BASIC_TYPES:
            return Type(BASIC_TYPES[key])
        if key in self._enums:
            return Type("Enum", enum=self._enums[key])
        if key in self._classes:
            return Type("Class", cls=self._classes[key])
        raise DeclError(f"{where}: unknown type {name}")

    def _resolve_param(self, where: str, p: ParamDecl) -> Param:
        t = self._resolve_type(where, p.type)
        default = self._resolve_default(f"{where}: parameter {p.name}", t, p.default)
        if p.optional and default is None:
            default = zero_of(t)
        return Param(p.name, t, p.by_ref, p.optional, default)

    def _resolve_default(self, where: str, t: Type, d: Literal | None) -> Literal | None:
        """The written default, checked against the type; an enumeration member becomes its value."""
        if d is None:
            return None
        if t.is_object and d.kind != "Nothing":
            raise DeclError(f"{where}: an object parameter can only default to Nothing")
        if d.kind == "Nothing" and not t.is_object:
            raise DeclError(f"{where}: only object parameters default to Nothing")
        if d.kind == "Enum":
            if t.kind not in ("Enum", "Long", "Integer", "Variant"):
                raise DeclError(f"{where} cannot default to {d.value}")
            if d.value.lower() not in self._enum_values:
                raise DeclError(f"{where}: unknown enumeration member {d.value}")
            return Literal("Integer", self._enum_values[d.value.lower()])
        return d
