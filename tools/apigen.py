#!/usr/bin/env python3
"""Generates everything that derives from the .api declarations of the public classes.

Each public member is declared once, in a .api file beside the class it belongs to. From those
declarations this tool writes:

  --idl FILE         the IDL of the type library (compiled by widl into the .tlb);
  --core DIR         for each .api file, a header with its enumerations, event ids and class
                     table declarations, and a source file with the member tables that late
                     binding dispatches through (portable, built on every platform);
  --com DIR          the COM classes: one vtable shim per accessor that packs its arguments and
                     calls the same member table, plus the class registry (Windows only).

Declaration syntax (keywords are case-insensitive; '#' starts a comment):

  library Celdo {LIBID} version 1.0 "help"
  enum Name ["help"]
      member = 123
  end enum
  class Name [noncreatable]
      clsid {GUID}
      interface _Name {GUID}
      events __Name {GUID}
      property get/let/set Name[(params)] as Type [, default | enumerator | hidden] ["help"]
      function Name(params) as Type [, flags] ["help"]
      sub Name(params) [, flags] ["help"]
      event Name(params)
  end class

  param := [Optional] [ByRef | ByVal] name as Type [= literal]
  Type  := String Integer Long Byte Boolean Single Double Currency Date Variant Object Unknown,
           an enumeration name, or a class name.  Parameters are ByVal unless ByRef is written.
"""
from __future__ import annotations

import argparse
import os
import re
import sys
from dataclasses import dataclass, field

@dataclass(frozen=True)
class BasicType:
    """Everything the generators need to know of one of the language's types."""
    kind: str            # the ParamType it travels as
    idl: str             # its IDL (and C) type
    reader: str | None   # how a coerced Variant argument is read as the C++ type
    value: str           # the C++ type of a by-reference local
    com_store: str       # suffix of the COM bridge's store_ and replace_ functions
    com_source: str      # the COM bridge function turning the C argument into a Variant


_REF_OBJECT = "automation::Ref<automation::Object>"
BASIC = {t.kind.lower(): t for t in [
    BasicType("String", "BSTR", "as_string()", "std::u16string", "bstr", "from_bstr"),
    BasicType("Integer", "short", "as_integer()", "int16_t", "integer", "from_integer"),
    BasicType("Long", "long", "as_long()", "int32_t", "long", "from_long"),
    BasicType("Byte", "unsigned char", "as_byte()", "uint8_t", "byte", "from_byte"),
    BasicType("Boolean", "VARIANT_BOOL", "as_bool()", "bool", "bool", "from_bool"),
    BasicType("Single", "float", "as_single()", "float", "single", "from_single"),
    BasicType("Double", "double", "as_double()", "double", "double", "from_double"),
    BasicType("Currency", "CURRENCY", "as_currency()", "automation::Currency", "currency", "from_currency"),
    BasicType("Date", "DATE", "as_date()", "automation::Date", "date", "from_date"),
    BasicType("Variant", "VARIANT", None, "automation::Variant", "variant", "from_variant"),
    BasicType("Object", "IDispatch*", "object()", _REF_OBJECT, "dispatch", "from_object"),
    BasicType("Unknown", "IUnknown*", "object()", _REF_OBJECT, "unknown", "from_object"),
]}


class DeclError(Exception):
    pass


@dataclass
class Literal:
    kind: str  # None, Integer, Real, Text, Boolean, Nothing
    value: object = None


@dataclass
class Param:
    name: str
    type: str  # declared spelling
    by_ref: bool = False
    optional: bool = False
    default: Literal | None = None


@dataclass
class Member:
    name: str
    kind: str  # property, function, sub
    accessors: list[str]  # get/let/set or method
    params: list[Param]
    type: str | None
    flags: set[str]
    help: str | None
    dispid: int = 0
    line: int = 0


@dataclass
class Event:
    name: str
    params: list[Param]
    dispid: int = 0


@dataclass
class Enum:
    name: str
    help: str | None
    members: list[tuple[str, int]]


@dataclass
class ClassDecl:
    name: str
    source: str  # path of the .api file relative to the source root
    creatable: bool = True
    clsid: str | None = None
    interface: tuple[str, str] | None = None
    events_iface: tuple[str, str] | None = None
    members: list[Member] = field(default_factory=list)
    events: list[Event] = field(default_factory=list)

    @property
    def namespace(self) -> str:
        return os.path.dirname(self.source).replace("/", "::")

    @property
    def header(self) -> str:
        return os.path.splitext(self.source)[0].rsplit("/", 1)[0] + "/" + self.name + ".hpp"


@dataclass
class ApiFile:
    path: str
    enums: list[Enum] = field(default_factory=list)
    classes: list[ClassDecl] = field(default_factory=list)


@dataclass
class Library:
    name: str
    libid: str
    version: str
    help: str


GUID = r"\{([0-9A-Fa-f]{8}-[0-9A-Fa-f]{4}-[0-9A-Fa-f]{4}-[0-9A-Fa-f]{4}-[0-9A-Fa-f]{12})\}"
IDENT = r"[A-Za-z_][A-Za-z0-9_]*"


def strip_comment(line: str) -> str:
    out, quoted = [], False
    for ch in line:
        if ch == '"':
            quoted = not quoted
        if ch == "#" and not quoted:
            break
        out.append(ch)
    return "".join(out).strip()


def split_help(text: str) -> tuple[str, str | None]:
    m = re.search(r'\s*"([^"]*)"\s*$', text)
    if m:
        return text[: m.start()].strip(), m.group(1)
    return text, None


def parse_literal(text: str) -> Literal:
    t = text.strip()
    if re.fullmatch(r'"[^"]*"', t):
        return Literal("Text", t[1:-1])
    if t.lower() in ("true", "false"):
        return Literal("Boolean", t.lower() == "true")
    if t.lower() == "nothing":
        return Literal("Nothing")
    if re.fullmatch(r"-?\d+", t):
        return Literal("Integer", int(t))
    if re.fullmatch(r"-?(\d+\.\d*|\.\d+)([eE][-+]?\d+)?", t):
        return Literal("Real", float(t))
    if re.fullmatch(IDENT, t):
        return Literal("Enum", t)
    raise DeclError(f"cannot read the literal {text!r}")


def split_params(text: str) -> list[str]:
    parts, depth, cur, quoted = [], 0, [], False
    for ch in text:
        if ch == '"':
            quoted = not quoted
        if ch == "," and depth == 0 and not quoted:
            parts.append("".join(cur))
            cur = []
            continue
        cur.append(ch)
    if "".join(cur).strip():
        parts.append("".join(cur))
    return [p.strip() for p in parts]


def parse_params(text: str) -> list[Param]:
    params = []
    for raw in split_params(text):
        m = re.fullmatch(
            rf"(?i)(optional\s+)?(byref\s+|byval\s+)?({IDENT})\s+as\s+({IDENT})(\s*=\s*(.+))?", raw
        )
        if not m:
            raise DeclError(f"cannot read the parameter {raw!r}")
        p = Param(
            name=m.group(3),
            type=m.group(4),
            by_ref=bool(m.group(2)) and m.group(2).strip().lower() == "byref",
            optional=bool(m.group(1)),
            default=parse_literal(m.group(6)) if m.group(6) else None,
        )
        if p.default is not None and not p.optional:
            raise DeclError(f"parameter {p.name} has a default but is not Optional")
        params.append(p)
    seen_optional = False
    for p in params:
        if p.optional:
            seen_optional = True
        elif seen_optional:
            raise DeclError(f"parameter {p.name} follows an Optional one and must be Optional too")
    return params


def parse_file(path: str, rel: str) -> tuple[ApiFile, Library | None]:
    api = ApiFile(rel)
    library = None
    current_enum: Enum | None = None
    current_class: ClassDecl | None = None
    with open(path, encoding="utf-8") as f:
        lines = f.readlines()
    for number, raw in enumerate(lines, 1):
        line = strip_comment(raw)
        if not line:
            continue
        try:
            low = line.lower()
            if current_enum is not None:
                if low == "end enum":
                    api.enums.append(current_enum)
                    current_enum = None
                    continue
                m = re.fullmatch(rf"({IDENT})\s*=\s*(-?\d+)", line)
                if not m:
                    raise DeclError(f"expected 'name = value' in enumeration {current_enum.name}")
                current_enum.members.append((m.group(1), int(m.group(2))))
                continue
            if current_class is not None:
                if low == "end class":
                    api.classes.append(current_class)
                    current_class = None
                    continue
                parse_class_line(current_class, line, number)
                continue
            m = re.fullmatch(rf'(?i)library\s+({IDENT})\s+{GUID}\s+version\s+(\d+\.\d+)\s+"([^"]*)"', line)
            if m:
                library = Library(m.group(1), m.group(2).upper(), m.group(3), m.group(4))
                continue
            body, help_text = split_help(line)
            m = re.fullmatch(rf"(?i)enum\s+({IDENT})", body)
            if m:
                current_enum = Enum(m.group(1), help_text, [])
                continue
            m = re.fullmatch(rf"(?i)class\s+({IDENT})(\s+noncreatable)?", body)
            if m:
                current_class = ClassDecl(m.group(1), rel, creatable=not m.group(2))
                continue
            raise DeclError(f"cannot read {line!r}")
        except DeclError as e:
            raise DeclError(f"{rel}:{number}: {e}") from None
    if current_enum or current_class:
        raise DeclError(f"{rel}: missing 'end enum' or 'end class'")
    return api, library


def parse_class_line(cls: ClassDecl, line: str, number: int) -> None:
    m = re.fullmatch(rf"(?i)clsid\s+{GUID}", line)
    if m:
        cls.clsid = m.group(1).upper()
        return
    m = re.fullmatch(rf"(?i)interface\s+({IDENT})\s+{GUID}", line)
    if m:
        cls.interface = (m.group(1), m.group(2).upper())
        return
    m = re.fullmatch(rf"(?i)events\s+({IDENT})\s+{GUID}", line)
    if m:
        cls.events_iface = (m.group(1), m.group(2).upper())
        return
    m = re.fullmatch(rf"(?i)event\s+({IDENT})\s*\((.*)\)", line)
    if m:
        cls.events.append(Event(m.group(1), parse_params(m.group(2))))
        return
    body, help_text = split_help(line)
    flags: set[str] = set()
    while True:
        fm = re.search(r"(?i),\s*(default|enumerator|hidden)\s*$", body)
        if not fm:
            break
        flags.add(fm.group(1).lower())
        body = body[: fm.start()].strip()
    m = re.fullmatch(
        rf"(?i)property\s+((?:get|let|set)(?:\s*/\s*(?:get|let|set))*)\s+({IDENT})\s*(\((.*)\))?\s+as\s+({IDENT})",
        body,
    )
    if m:
        accessors = [a.strip().lower() for a in m.group(1).split("/")]
        member = Member(m.group(2), "property", accessors, parse_params(m.group(4) or ""), m.group(5), flags, help_text, line=number)
        add_member(cls, member)
        return
    m = re.fullmatch(rf"(?i)function\s+({IDENT})\s*\((.*)\)\s+as\s+({IDENT})", body)
    if m:
        add_member(cls, Member(m.group(1), "function", ["method"], parse_params(m.group(2)), m.group(3), flags, help_text, line=number))
        return
    m = re.fullmatch(rf"(?i)sub\s+({IDENT})\s*\((.*)\)", body)
    if m:
        add_member(cls, Member(m.group(1), "sub", ["method"], parse_params(m.group(2)), None, flags, help_text, line=number))
        return
    raise DeclError(f"cannot read {line!r}")


def add_member(cls: ClassDecl, member: Member) -> None:
    for other in cls.members:
        if other.name.lower() == member.name.lower():
            if other.kind == "property" and member.kind == "property":
                same_shape = [(p.name, p.type, p.by_ref) for p in other.params] == [
                    (p.name, p.type, p.by_ref) for p in member.params
                ] and other.type.lower() == member.type.lower()
                if not same_shape:
                    raise DeclError(f"property {member.name} is declared twice with different shapes")
                overlap = set(other.accessors) & set(member.accessors)
                if overlap:
                    raise DeclError(f"property {member.name} declares {sorted(overlap)} twice")
                other.accessors += member.accessors
                other.flags |= member.flags
                return
            raise DeclError(f"member {member.name} is declared twice")
    cls.members.append(member)


class Model:
    """All declarations together, with names resolved across files."""

    def __init__(self, files: list[ApiFile], library: Library):
        self.files = files
        self.library = library
        self.enums = {e.name.lower(): e for f in files for e in f.enums}
        self.classes = {c.name.lower(): c for f in files for c in f.classes}
        self.check()

    def kind_of(self, type_name: str) -> str:
        t = type_name.lower()
        if t in BASIC:
            return BASIC[t].kind
        if t in self.enums:
            return "Enum"
        if t in self.classes:
            return "Class"
        raise DeclError(f"unknown type {type_name}")

    def check(self) -> None:
        names: dict[str, str] = {}
        for e in self.enums.values():
            for member, _ in e.members:
                key = member.lower()
                if key in names:
                    raise DeclError(f"enumeration member {member} is declared in {names[key]} and {e.name}")
                names[key] = e.name
        for cls in self.classes.values():
            if not cls.clsid or not cls.interface:
                raise DeclError(f"class {cls.name} needs a clsid and an interface")
            if cls.events and not cls.events_iface:
                raise DeclError(f"class {cls.name} raises events but declares no events interface")
            next_id = 1
            for m in cls.members:
                for p in m.params:
                    self.check_param(cls, m, p)
                if m.type:
                    self.kind_of(m.type)
                if "default" in m.flags:
                    m.dispid = 0
                elif "enumerator" in m.flags:
                    if m.kind != "property" or m.accessors != ["get"] or m.type.lower() != "unknown":
                        raise DeclError(f"{cls.name}.{m.name}: the enumerator is a 'property get ... as Unknown'")
                    m.dispid = -4
                else:
                    m.dispid = next_id
                    next_id += 1
            for i, ev in enumerate(cls.events, 1):
                ev.dispid = i
                for p in ev.params:
                    self.check_param(cls, ev, p)
            if sum("default" in m.flags for m in cls.members) > 1:
                raise DeclError(f"class {cls.name} has more than one default member")

    def check_param(self, cls, member, p: Param) -> None:
        kind = self.kind_of(p.type)
        d = p.default
        if d is None:
            return
        if kind in ("Object", "Unknown", "Class"):
            if d.kind != "Nothing":
                raise DeclError(f"{cls.name}.{member.name}: object parameter {p.name} can only default to Nothing")
        elif d.kind == "Nothing":
            raise DeclError(f"{cls.name}.{member.name}: only object parameters default to Nothing")
        elif d.kind == "Enum":
            if kind != "Enum" and kind not in ("Long", "Integer", "Variant"):
                raise DeclError(f"{cls.name}.{member.name}: {p.name} cannot default to {d.value}")
            self.enum_value(d.value)

    def enum_value(self, member: str) -> int:
        for e in self.enums.values():
            for name, value in e.members:
                if name.lower() == member.lower():
                    return value
        raise DeclError(f"unknown enumeration member {member}")

    def iface_of(self, class_name: str) -> str:
        return self.classes[class_name.lower()].interface[0]

    def cls_of(self, class_name: str) -> ClassDecl:
        return self.classes[class_name.lower()]


# ------------------------------------------------------------------------------------- IDL

def idl_type(model: Model, type_name: str) -> str:
    kind = model.kind_of(type_name)
    if kind == "Enum":
        return model.enums[type_name.lower()].name
    if kind == "Class":
        return model.iface_of(type_name) + "*"
    return BASIC[type_name.lower()].idl


def idl_default(model: Model, p: Param) -> str:
    d = p.default
    kind = model.kind_of(p.type)
    if d is None:
        # A typed optional parameter needs a default in the type library; use the type's zero.
        if kind == "Variant":
            return ""
        if kind == "String":
            return 'defaultvalue("")'
        return "defaultvalue(0)"
    if d.kind == "Text":
        return f'defaultvalue("{d.value}")'
    if d.kind == "Boolean":
        return f"defaultvalue({-1 if d.value else 0})"
    if d.kind == "Nothing":
        return "defaultvalue(0)"
    if d.kind == "Enum":
        return f"defaultvalue({model.enum_value(d.value)})"
    if d.kind == "Real":
        return f"defaultvalue({d.value!r})"
    return f"defaultvalue({d.value})"


def idl_param(model: Model, p: Param) -> str:
    attrs = ["in", "out"] if p.by_ref else ["in"]
    if p.optional:
        attrs.append("optional")
        dv = idl_default(model, p)
        # widl refuses a text default on a by-reference parameter; the member tables still
        # supply it when the argument is left out.
        if dv and not (p.by_ref and dv.startswith('defaultvalue("')):
            attrs.append(dv)
    t = idl_type(model, p.type) + ("*" if p.by_ref else "")
    return f"[{', '.join(attrs)}] {t} {p.name}"


def idl_accessors(model: Model, m: Member):
    """Yields (attributes, name, params) for each vtable entry of a member, in vtable order."""
    base = [f"id({m.dispid})"]
    if "hidden" in m.flags or "enumerator" in m.flags:
        base.append("hidden")
    if "enumerator" in m.flags:
        base.append("restricted")
    if m.help:
        base.append(f'helpstring("{m.help}")')
    params = [idl_param(model, p) for p in m.params]
    if m.kind == "property":
        for acc in ("get", "let", "set"):
            if acc not in m.accessors:
                continue
            if acc == "get":
                yield base + ["propget"], m.name, params + [f"[out, retval] {idl_type(model, m.type)}* {m.name}"]
            else:
                attr = "propput" if acc == "let" else "propputref"
                yield base + [attr], m.name, params + [f"[in] {idl_type(model, m.type)} RHS"]
    elif m.kind == "function":
        yield base, m.name, params + [f"[out, retval] {idl_type(model, m.type)}* {m.name}"]
    else:
        yield base, m.name, params


def write_idl(model: Model, out: str) -> None:
    lib = model.library
    w = ["// Generated by tools/apigen.py from the .api declarations. Do not edit.", ""]
    w += ['import "oaidl.idl";', 'import "ocidl.idl";', ""]
    w += [f'[uuid({lib.libid}), version({lib.version}), helpstring("{lib.help}")]', f"library {lib.name}", "{"]
    w += ['    importlib("stdole2.tlb");', ""]
    for cls in model.classes.values():
        w.append(f"    interface {cls.interface[0]};")
        if cls.events_iface:
            w.append(f"    dispinterface {cls.events_iface[0]};")
    w.append("")
    for f in model.files:
        for e in f.enums:
            attrs = ["v1_enum"] + ([f'helpstring("{e.help}")'] if e.help else [])
            w.append(f"    typedef [{', '.join(attrs)}] enum {e.name} {{")
            w += [f"        {n} = {v}," for n, v in e.members]
            w.append(f"    }} {e.name};")
            w.append("")
    for f in model.files:
        for cls in f.classes:
            iname, iid = cls.interface
            w.append(f"    [uuid({iid}), version({lib.version}), dual, oleautomation, nonextensible, hidden]")
            w.append(f"    interface {iname} : IDispatch {{")
            for m in cls.members:
                for attrs, name, params in idl_accessors(model, m):
                    w.append(f"        [{', '.join(attrs)}] HRESULT {name}({', '.join(params)});")
            w.append("    };")
            w.append("")
            if cls.events_iface:
                ename, eiid = cls.events_iface
                w.append(f"    [uuid({eiid}), hidden]")
                w.append(f"    dispinterface {ename} {{")
                w.append("    properties:")
                w.append("    methods:")
                for ev in cls.events:
                    params = ", ".join(f"[in] {idl_type(model, p.type)}{'*' if p.by_ref else ''} {p.name}" for p in ev.params)
                    w.append(f"        [id({ev.dispid})] void {ev.name}({params});")
                w.append("    };")
                w.append("")
            attrs = [f"uuid({cls.clsid})", f"version({lib.version})"]
            if not cls.creatable:
                attrs.append("noncreatable")
            w.append(f"    [{', '.join(attrs)}]")
            w.append(f"    coclass {cls.name} {{")
            w.append(f"        [default] interface {iname};")
            if cls.events_iface:
                w.append(f"        [default, source] dispinterface {cls.events_iface[0]};")
            w.append("    };")
            w.append("")
    w.append("}")
    write_if_changed(out, "\n".join(w) + "\n")


# ------------------------------------------------------------------------------- core tables

def cpp_string(text: str) -> str:
    return 'u"' + text.replace("\\", "\\\\").replace('"', '\\"') + '"'


def literal_init(model: Model, p: Param) -> str:
    d = p.default
    if d is None or d.kind == "Nothing":
        if p.optional and model.kind_of(p.type) not in ("Variant", "Object", "Unknown", "Class"):
            # Typed optionals without a written default take the type's zero, as in the IDL.
            kind = model.kind_of(p.type)
            if kind == "String":
                return '{automation::Literal::Kind::Text, 0, 0, u""}'
            if kind == "Boolean":
                return "{automation::Literal::Kind::Boolean, 0, 0, nullptr}"
            return "{automation::Literal::Kind::Integer, 0, 0, nullptr}"
        return "{}"
    if d.kind == "Text":
        return f"{{automation::Literal::Kind::Text, 0, 0, {cpp_string(d.value)}}}"
    if d.kind == "Boolean":
        return f"{{automation::Literal::Kind::Boolean, {1 if d.value else 0}, 0, nullptr}}"
    if d.kind == "Real":
        return f"{{automation::Literal::Kind::Real, 0, {d.value!r}, nullptr}}"
    value = model.enum_value(d.value) if d.kind == "Enum" else d.value
    return f"{{automation::Literal::Kind::Integer, {value}, 0, nullptr}}"


def param_type_enum(model: Model, type_name: str) -> str:
    kind = model.kind_of(type_name)
    if kind == "Enum":
        kind = "Long"
    return f"automation::ParamType::{kind}"


def class_fn(model: Model, type_name: str | None) -> str:
    if type_name and model.kind_of(type_name) == "Class":
        c = model.cls_of(type_name)
        return f"&automation::class_info_of<celdo::{c.namespace}::{c.name}>"
    return "nullptr"


def cpp_value_type(model: Model, type_name: str) -> str:
    kind = model.kind_of(type_name)
    if kind == "Enum":
        return f"celdo::{enum_namespace(model, type_name)}::{model.enums[type_name.lower()].name}"
    if kind == "Class":
        c = model.cls_of(type_name)
        return f"automation::Ref<celdo::{c.namespace}::{c.name}>"
    return BASIC[kind.lower()].value


def enum_namespace(model: Model, enum_name: str) -> str:
    for f in model.files:
        for e in f.enums:
            if e.name.lower() == enum_name.lower():
                return os.path.dirname(f.path).replace("/", "::")
    raise DeclError(enum_name)


def read_arg(model: Model, type_name: str, expr: str) -> str:
    """C++ expression reading an already coerced argument `expr` (a Variant) as its type."""
    kind = model.kind_of(type_name)
    if kind == "Variant":
        return expr
    if kind == "Enum":
        return f"static_cast<{cpp_value_type(model, type_name)}>({expr}.as_long())"
    if kind == "Class":
        c = model.cls_of(type_name)
        return f"automation::Ref<celdo::{c.namespace}::{c.name}>(static_cast<celdo::{c.namespace}::{c.name}*>({expr}.as_object()))"
    return f"{expr}.{BASIC[kind.lower()].reader}"


def wrap_result(model: Model, type_name: str, expr: str) -> str:
    kind = model.kind_of(type_name)
    if kind == "Variant":
        return f"automation::Variant({expr})"
    if kind == "Enum":
        return f"automation::Variant(static_cast<int32_t>({expr}))"
    if kind in ("Class", "Object", "Unknown"):
        return f"automation::Variant(automation::Ref<automation::Object>({expr}))"
    return f"automation::Variant(static_cast<{BASIC[kind.lower()].value}>({expr}))"


def thunk_call(model: Model, cls: ClassDecl, m: Member, method: str, n_params: int, value_type: str | None,
               returns: str | None) -> list[str]:
    """Body lines that bind the arguments, call `self.method(...)` and copy by-reference ones back."""
    lines, args, after = [], [], []
    for i, p in enumerate(m.params[:n_params]):
        if p.by_ref:
            var = f"p{i}"
            if model.kind_of(p.type) == "Variant":
                args.append(f"a[{i}].value")
                continue
            lines.append(f"        {cpp_value_type(model, p.type)} {var} = {read_arg(model, p.type, f'a[{i}].value')};")
            args.append(var)
            after.append(f"        a[{i}].value = {wrap_result(model, p.type, var)};")
        else:
            args.append(read_arg(model, p.type, f"a[{i}].value"))
    if value_type is not None:
        args.append(read_arg(model, value_type, f"a[{n_params}].value"))
    call = f"self.{method}({', '.join(args)})"
    if returns is not None:
        lines.append(f"        automation::Variant result = {wrap_result(model, returns, call)};")
        lines += after
        lines.append("        return result;")
    else:
        lines.append(f"        {call};")
        lines += after
        lines.append("        return {};")
    return lines


def write_core(model: Model, api: ApiFile, outdir: str) -> None:
    base = os.path.splitext(api.path)[0]
    ns = os.path.dirname(api.path).replace("/", "::")
    h = [f"#pragma once", f"// Generated by tools/apigen.py from {api.path}. Do not edit.", "",
         "#include <cstdint>", "", '#include "automation/dispatch.hpp"', ""]
    h.append(f"namespace celdo::{ns} {{")
    h.append("")
    for e in api.enums:
        if e.help:
            h.append(f"// {e.help}.")
        h.append(f"enum {e.name} : int32_t {{")
        h += [f"    {n} = {v}," for n, v in e.members]
        h.append("};")
        h.append("")
    for cls in api.classes:
        h.append(f"class {cls.name};")
        if cls.events:
            h.append(f"namespace events::{cls.name} {{")
            for ev in cls.events:
                h.append(f"inline constexpr int32_t {ev.name} = {ev.dispid};")
            h.append("}")
    h.append("")
    h.append(f"}}  // namespace celdo::{ns}")
    h.append("")
    for cls in api.classes:
        h.append(f"template <>")
        h.append(f"const celdo::automation::ClassInfo& celdo::automation::class_info_of<celdo::{ns}::{cls.name}>();")
    write_if_changed(os.path.join(outdir, base + ".gen.hpp"), "\n".join(h) + "\n")

    c = [f"// Generated by tools/apigen.py from {api.path}. Do not edit.", ""]
    includes = {cls.header for cls in api.classes}
    for cls in api.classes:
        for m in cls.members:
            for t in [m.type] + [p.type for p in m.params]:
                if t and model.kind_of(t) == "Class":
                    includes.add(model.cls_of(t).header)
    c += [f'#include "{inc}"' for inc in sorted(includes)]
    c += ['#include "automation/dispatch.hpp"', ""]
    c.append(f"namespace celdo::{ns} {{")
    c.append("namespace {")
    c.append("")
    for cls in api.classes:
        prefix = f"{cls.name}_"
        for m in cls.members:
            if m.params:
                c.append(f"constexpr automation::ParamInfo {prefix}{m.name}_params[] = {{")
                for p in m.params:
                    c.append(f"    {{{cpp_string(p.name)}, {param_type_enum(model, p.type)}, {class_fn(model, p.type)}, "
                             f"{'true' if p.by_ref else 'false'}, {'true' if p.optional else 'false'}, {literal_init(model, p)}}},")
                c.append("};")
            c.append(f"automation::Variant {prefix}{m.name}(automation::Component& object, [[maybe_unused]] uint16_t call,")
            c.append(f"        [[maybe_unused]] std::span<automation::Argument> a) {{")
            c.append(f"    auto& self = static_cast<{cls.name}&>(object);")
            n = len(m.params)
            if m.kind == "property":
                for acc in m.accessors:
                    flag = {"get": "kGet", "let": "kLet", "set": "kSet"}[acc]
                    c.append(f"    if (call == automation::{flag}) {{")
                    if acc == "get":
                        c += thunk_call(model, cls, m, f"get_{m.name}", n, None, m.type)
                    else:
                        c += thunk_call(model, cls, m, f"{acc}_{m.name}", n, m.type, None)
                    c.append("    }")
                c.append("    return {};")
            else:
                c += [line[4:] for line in thunk_call(model, cls, m, m.name, n, None, m.type if m.kind == "function" else None)]
            c.append("}")
            c.append("")
        if cls.members:
            c.append(f"const automation::MemberInfo {prefix}members[] = {{")
            for m in cls.members:
                calls = "automation::kMethod" if m.kind != "property" else " | ".join(
                    "automation::" + {"get": "kGet", "let": "kLet", "set": "kSet"}[a] for a in m.accessors)
                params = f"{prefix}{m.name}_params" if m.params else "{}"
                type_enum = param_type_enum(model, m.type) if m.type else "automation::ParamType::Variant"
                c.append(f"    {{{cpp_string(m.name)}, {m.dispid}, static_cast<uint16_t>({calls}), {params}, {type_enum}, "
                         f"{class_fn(model, m.type)}, {'false' if m.kind == 'sub' else 'true'}, &{prefix}{m.name}}},")
            c.append("};")
        for ev in cls.events:
            if ev.params:
                c.append(f"constexpr automation::ParamInfo {prefix}{ev.name}_event_params[] = {{")
                for p in ev.params:
                    c.append(f"    {{{cpp_string(p.name)}, {param_type_enum(model, p.type)}, {class_fn(model, p.type)}, "
                             f"{'true' if p.by_ref else 'false'}, false, {{}}}},")
                c.append("};")
        if cls.events:
            c.append(f"const automation::EventInfo {prefix}events[] = {{")
            for ev in cls.events:
                params = f"{prefix}{ev.name}_event_params" if ev.params else "{}"
                c.append(f"    {{{cpp_string(ev.name)}, {ev.dispid}, {params}}},")
            c.append("};")
        create = "nullptr"
        if cls.creatable:
            c.append(f"automation::Ref<automation::Component> create_{cls.name}() {{")
            c.append(f"    return automation::make_ref<{cls.name}>();")
            c.append("}")
            create = f"&create_{cls.name}"
        members = f"{prefix}members" if cls.members else "{}"
        events = f"{prefix}events" if cls.events else "{}"
        c.append(f"const automation::ClassInfo {prefix}info{{{cpp_string(cls.name)}, {members}, {events}, {create}}};")
        c.append("")
    c.append("}  // namespace")
    c.append(f"}}  // namespace celdo::{ns}")
    c.append("")
    for cls in api.classes:
        c.append("template <>")
        c.append(f"const celdo::automation::ClassInfo& celdo::automation::class_info_of<celdo::{ns}::{cls.name}>() {{")
        c.append(f"    return celdo::{ns}::{cls.name}_info;")
        c.append("}")
    write_if_changed(os.path.join(outdir, base + ".gen.cpp"), "\n".join(c) + "\n")


# ------------------------------------------------------------------------------- COM shims

def com_store(model: Model, type_name: str, target: str, value: str, replace: bool) -> str:
    """Statement writing a Variant into a pointer parameter: a result (`store_`, the target is
    uninitialised) or a by-reference argument (`replace_`, the old content is released)."""
    kind = model.kind_of(type_name)
    verb = "replace" if replace else "store"
    if kind == "Enum":
        return f"{verb}_long(reinterpret_cast<long*>({target}), {value})"
    if kind == "Class":
        return f"{verb}_interface({target}, IID_{model.iface_of(type_name)}, {value})"
    return f"{verb}_{BASIC[kind.lower()].com_store}({target}, {value})"


def com_in_expr(model: Model, type_name: str, name: str, by_ref: bool) -> str:
    """Expression turning a C argument into the Variant the member table receives."""
    kind = model.kind_of(type_name)
    if kind == "Variant":
        return f"from_variant({name if by_ref else '&' + name})"
    value = f"*{name}" if by_ref else name
    if kind == "Enum":
        return f"from_long(static_cast<long>({value}))"
    if kind == "Class":
        return f"from_object({value})"
    return f"{BASIC[kind.lower()].com_source}({value})"


def write_com(model: Model, outdir: str, idl_header: str) -> None:
    c = ["// Generated by tools/apigen.py from the .api declarations. Do not edit.", "",
         f'#include "{idl_header}"', '#include "com/bridge.hpp"', '#include "com/class_registry.hpp"',
         '#include "com/dual_object.hpp"']
    for f in model.files:
        if f.classes:
            c.append(f'#include "{os.path.splitext(f.path)[0]}.gen.hpp"')
    c += ["", "namespace celdo::com {", "namespace {", ""]
    for cls in model.classes.values():
        iname = cls.interface[0]
        ns = cls.namespace
        c.append(f"class Com_{cls.name} final : public DualObject<{iname}> {{")
        c.append("public:")
        c.append("    using DualObject::DualObject;")
        c.append("")
        for m in cls.members:
            for attrs, name, _ in idl_accessors(model, m):
                acc = "propget" if "propget" in attrs else "propput" if "propput" in attrs else "propputref" if "propputref" in attrs else "method"
                prefix = {"propget": "get_", "propput": "put_", "propputref": "putref_", "method": ""}[acc]
                call_flag = {"propget": "automation::kGet", "propput": "automation::kLet",
                             "propputref": "automation::kSet", "method": "automation::kMethod"}[acc]
                # C++ names of the parameters are positional, so that no declared name can
                # collide with the shim's own identifiers.
                cparams, packs, writebacks, checks = [], [], [], []
                for i, p in enumerate(m.params):
                    ctype = idl_type(model, p.type) + ("*" if p.by_ref else "")
                    cparams.append(f"{ctype} p{i}")
                    packs.append(f"automation::Argument{{{com_in_expr(model, p.type, f'p{i}', p.by_ref)}, {'true' if p.by_ref else 'false'}}}")
                    if p.by_ref:
                        writebacks.append(f"            {com_store(model, p.type, f'p{i}', f'args[{i}].value', True)};")
                        checks.append(f"p{i}")
                result_store = None
                if acc in ("propput", "propputref"):
                    cparams.append(f"{idl_type(model, m.type)} rhs")
                    packs.append(f"automation::Argument{{{com_in_expr(model, m.type, 'rhs', False)}, false}}")
                elif acc == "propget" or m.kind == "function":
                    cparams.append(f"{idl_type(model, m.type)}* out")
                    result_store = com_store(model, m.type, "out", "value", False)
                    checks.append("out")
                c.append(f"    HRESULT STDMETHODCALLTYPE {prefix}{name}({', '.join(cparams)}) override {{")
                if checks:
                    c.append(f"        if ({' || '.join('!' + x for x in checks)}) return E_POINTER;")
                c.append("        return call([&](automation::Component& core) {")
                if packs:
                    c.append(f"            automation::Argument args[] = {{{', '.join(packs)}}};")
                    c.append(f"            automation::Variant value = invoke_on(core, {m.dispid}, {call_flag}, args);")
                else:
                    c.append(f"            automation::Variant value = invoke_on(core, {m.dispid}, {call_flag}, {{}});")
                c += writebacks
                if result_store:
                    c.append(f"            {result_store};")
                else:
                    c.append("            (void)value;")
                c.append("        });")
                c.append("    }")
        c.append("};")
        c.append("")
    c.append("}  // namespace")
    c.append("")
    c.append("const ComClass kClasses[] = {")
    for cls in model.classes.values():
        iname = cls.interface[0]
        events = f"&DIID_{cls.events_iface[0]}" if cls.events_iface else "nullptr"
        ename = f'L"{cls.events_iface[0]}"' if cls.events_iface else "nullptr"
        c.append(f"    {{L\"{cls.name}\", &CLSID_{cls.name}, &IID_{iname}, {events}, L\"{iname}\", {ename},")
        c.append(f"     &automation::class_info_of<celdo::{cls.namespace}::{cls.name}>,")
        c.append(f"     [](automation::Ref<automation::Component> core) -> IUnknown* {{")
        c.append(f"         return static_cast<{iname}*>(new Com_{cls.name}(std::move(core)));")
        c.append("     }},")
    c.append("};")
    c.append("")
    c.append("std::span<const ComClass> classes() { return kClasses; }")
    c.append("")
    lib = model.library
    major, minor = lib.version.split(".")
    c.append(f"const GUID& library_id() {{ return LIBID_{lib.name}; }}")
    c.append(f"unsigned short library_major() {{ return {major}; }}")
    c.append(f"unsigned short library_minor() {{ return {minor}; }}")
    c.append(f"const wchar_t* library_name() {{ return L\"{lib.name}\"; }}")
    c.append(f"const wchar_t* library_help() {{ return L\"{lib.help}\"; }}")
    c.append("")
    c.append("}  // namespace celdo::com")
    write_if_changed(os.path.join(outdir, "com", "classes.gen.cpp"), "\n".join(c) + "\n")


def write_if_changed(path: str, text: str) -> None:
    os.makedirs(os.path.dirname(path) or ".", exist_ok=True)
    try:
        with open(path, encoding="utf-8") as f:
            if f.read() == text:
                return
    except FileNotFoundError:
        pass
    with open(path, "w", encoding="utf-8") as f:
        f.write(text)


def main() -> int:
    ap = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    ap.add_argument("--root", required=True, help="source root the .api paths are relative to")
    ap.add_argument("--library", required=True, help="the .api file that declares the library")
    ap.add_argument("--idl")
    ap.add_argument("--core")
    ap.add_argument("--com")
    ap.add_argument("--idl-header", default="Celdo_h.h")
    ap.add_argument("api", nargs="+")
    args = ap.parse_args()
    try:
        _, library = parse_file(os.path.join(args.root, args.library), args.library)
        if library is None:
            raise DeclError(f"{args.library} declares no library")
        files = [parse_file(os.path.join(args.root, rel), rel)[0] for rel in args.api]
        model = Model(files, library)
        if args.idl:
            write_idl(model, args.idl)
        if args.core:
            for api in files:
                write_core(model, api, args.core)
        if args.com:
            write_com(model, args.com, args.idl_header)
    except DeclError as e:
        print(f"apigen: {e}", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
