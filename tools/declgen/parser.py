"""Reads one .api file into declarations, as written.

Type names stay text here: a file may name types that another file declares, so resolving and
checking them across files is the model's work. What one line can get wrong, or one class on
its own (a member declared twice), is reported here with its line.
"""
from __future__ import annotations

import os
import re
from dataclasses import dataclass, field

GUID = r"\{([0-9A-Fa-f]{8}-[0-9A-Fa-f]{4}-[0-9A-Fa-f]{4}-[0-9A-Fa-f]{4}-[0-9A-Fa-f]{12})\}"
IDENT = r"[A-Za-z_][A-Za-z0-9_]*"
FLAGS = ("default", "enumerator", "hidden")


class DeclError(Exception):
    """A declaration that cannot be read or does not hold together; the message names its file
    and line."""


@dataclass
class Literal:
    """A value written after '=' in a parameter. kind is Integer, Real, Text, Boolean, Nothing,
    or Enum (value is then an enumeration member's name, which the model resolves)."""
    kind: str
    value: object = None


@dataclass
class ParamDecl:
    name: str
    type: str
    by_ref: bool
    optional: bool
    default: Literal | None


@dataclass
class MemberDecl:
    name: str
    kind: str             # property, function or sub
    accessors: list[str]  # get/let/set for a property, in the order written; ["method"] otherwise
    params: list[ParamDecl]
    type: str | None      # a property's value or a function's result; None for a sub
    flags: set[str]
    help: str | None
    line: int
    # For the reference pages: the errors the member raises of its own, (number, description,
    # when), and lines of an example.
    raises: list[tuple[int, str, str]] = field(default_factory=list)
    examples: list[str] = field(default_factory=list)


@dataclass
class EventDecl:
    name: str
    params: list[ParamDecl]
    help: str | None
    line: int


@dataclass
class EnumDecl:
    name: str
    help: str | None
    members: list[tuple[str, int]]
    line: int


@dataclass
class ClassDecl:
    name: str
    creatable: bool
    help: str | None
    line: int
    clsid: str | None = None
    interface: tuple[str, str] | None = None     # (name, IID)
    events_iface: tuple[str, str] | None = None  # (name, DIID)
    members: list[MemberDecl] = field(default_factory=list)
    events: list[EventDecl] = field(default_factory=list)
    examples: list[str] = field(default_factory=list)  # before any member: the class's example
    last: MemberDecl | None = None  # the member the annotation lines that follow belong to


@dataclass
class Library:
    name: str
    libid: str
    version: str
    help: str


@dataclass
class FileDecl:
    path: str  # relative to the source root; the generated files and C++ namespace follow it
    library: Library | None = None
    enums: list[EnumDecl] = field(default_factory=list)
    classes: list[ClassDecl] = field(default_factory=list)


def parse_file(root: str, path: str) -> FileDecl:
    with open(os.path.join(root, path), encoding="utf-8") as f:
        return parse_text(f.read(), path)


def parse_text(text: str, path: str) -> FileDecl:
    decl = FileDecl(path)
    enum: EnumDecl | None = None
    cls: ClassDecl | None = None
    for number, raw in enumerate(text.splitlines(), 1):
        line = strip_comment(raw)
        if not line:
            continue
        try:
            low = line.lower()
            if enum is not None:
                if low == "end enum":
                    decl.enums.append(enum)
                    enum = None
                    continue
                m = re.fullmatch(rf"({IDENT})\s*=\s*(-?\d+)", line)
                if not m:
                    raise DeclError(f"expected 'name = value' in enumeration {enum.name}")
                enum.members.append((m.group(1), int(m.group(2))))
            elif cls is not None:
                if low == "end class":
                    decl.classes.append(cls)
                    cls = None
                    continue
                parse_class_line(cls, line, number)
            else:
                m = re.fullmatch(rf'(?i)library\s+({IDENT})\s+{GUID}\s+version\s+(\d+\.\d+)\s+"([^"]*)"', line)
                if m:
                    decl.library = Library(m.group(1), m.group(2).upper(), m.group(3), m.group(4))
                    continue
                body, help_text = split_help(line)
                m = re.fullmatch(rf"(?i)enum\s+({IDENT})", body)
                if m:
                    enum = EnumDecl(m.group(1), help_text, [], number)
                    continue
                m = re.fullmatch(rf"(?i)class\s+({IDENT})(\s+noncreatable)?", body)
                if m:
                    cls = ClassDecl(m.group(1), creatable=not m.group(2), help=help_text, line=number)
                    continue
                raise DeclError(f"cannot read {line!r}")
        except DeclError as e:
            raise DeclError(f"{path}:{number}: {e}") from None
    if enum is not None:
        raise DeclError(f"{path}:{enum.line}: enumeration {enum.name} has no 'end enum'")
    if cls is not None:
        raise DeclError(f"{path}:{cls.line}: class {cls.name} has no 'end class'")
    return decl


def parse_class_line(cls: ClassDecl, line: str, number: int) -> None:
    m = re.fullmatch(r'(?i)example(?:\s(.*))?', line)
    if m:
        (cls.last.examples if cls.last else cls.examples).append(m.group(1) or "")
        return
    m = re.fullmatch(r'(?i)raises\s+(-?\d+)\s+"([^"]+)"(?:\s+when\s+(.+))?', line)
    if m:
        if not cls.last:
            raise DeclError("'raises' belongs after the member that raises")
        cls.last.raises.append((int(m.group(1)), m.group(2), m.group(3) or ""))
        return
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
    body, help_text = split_help(line)
    m = re.fullmatch(rf"(?i)event\s+({IDENT})\s*\((.*)\)", body)
    if m:
        cls.events.append(EventDecl(m.group(1), parse_params(m.group(2)), help_text, number))
        return
    flags: set[str] = set()
    while fm := re.search(rf"(?i),\s*({'|'.join(FLAGS)})\s*$", body):
        flags.add(fm.group(1).lower())
        body = body[: fm.start()].strip()
    m = re.fullmatch(
        rf"(?i)property\s+((?:get|let|set)(?:\s*/\s*(?:get|let|set))*)\s+({IDENT})\s*(\((.*)\))?\s+as\s+({IDENT})",
        body,
    )
    if m:
        accessors = [a.strip().lower() for a in m.group(1).split("/")]
        if len(set(accessors)) < len(accessors):
            raise DeclError(f"property {m.group(2)} names an accessor twice")
        add_member(cls, MemberDecl(m.group(2), "property", accessors, parse_params(m.group(4) or ""),
                                   m.group(5), flags, help_text, number))
        return
    m = re.fullmatch(rf"(?i)function\s+({IDENT})\s*\((.*)\)\s+as\s+({IDENT})", body)
    if m:
        add_member(cls, MemberDecl(m.group(1), "function", ["method"], parse_params(m.group(2)),
                                   m.group(3), flags, help_text, number))
        return
    m = re.fullmatch(rf"(?i)sub\s+({IDENT})\s*\((.*)\)", body)
    if m:
        add_member(cls, MemberDecl(m.group(1), "sub", ["method"], parse_params(m.group(2)),
                                   None, flags, help_text, number))
        return
    raise DeclError(f"cannot read {line!r}")


def add_member(cls: ClassDecl, member: MemberDecl) -> None:
    """Adds a member, or merges the accessors of a property declared on several lines (a
    read-only Get beside a separate Let, say) into its first declaration."""
    for other in cls.members:
        if other.name.lower() != member.name.lower():
            continue
        if other.kind != "property" or member.kind != "property":
            raise DeclError(f"member {member.name} is declared twice")
        def shape(m: MemberDecl):
            return [(p.name, p.type.lower(), p.by_ref) for p in m.params], m.type.lower()
        if shape(other) != shape(member):
            raise DeclError(f"property {member.name} is declared twice with different shapes")
        overlap = set(other.accessors) & set(member.accessors)
        if overlap:
            raise DeclError(f"property {member.name} declares {', '.join(sorted(overlap))} twice")
        other.accessors += member.accessors
        other.flags |= member.flags
        other.help = other.help or member.help
        cls.last = other
        return
    cls.members.append(member)
    cls.last = member


def parse_params(text: str) -> list[ParamDecl]:
    params = []
    for raw in split_params(text):
        m = re.fullmatch(rf"(?i)(optional\s+)?(?:(byref|byval)\s+)?({IDENT})\s+as\s+({IDENT})(?:\s*=\s*(.+))?", raw)
        if not m:
            raise DeclError(f"cannot read the parameter {raw!r}")
        optional = bool(m.group(1))
        if m.group(5) and not optional:
            raise DeclError(f"parameter {m.group(3)} has a default but is not Optional")
        if params and params[-1].optional and not optional:
            # Arguments are left out from the end, so every parameter after an Optional one is too.
            raise DeclError(f"parameter {m.group(3)} follows an Optional one and must be Optional too")
        params.append(ParamDecl(
            name=m.group(3),
            type=m.group(4),
            by_ref=(m.group(2) or "").lower() == "byref",
            optional=optional,
            default=parse_literal(m.group(5)) if m.group(5) else None,
        ))
    return params


def parse_literal(text: str) -> Literal:
    t = text.strip()
    low = t.lower()
    if re.fullmatch(r'"[^"]*"', t):
        return Literal("Text", t[1:-1])
    if low in ("true", "false"):
        return Literal("Boolean", low == "true")
    if low == "nothing":
        return Literal("Nothing")
    if re.fullmatch(r"-?\d+", t):
        return Literal("Integer", int(t))
    if re.fullmatch(r"-?(\d+\.\d*|\.\d+)([eE][-+]?\d+)?", t):
        return Literal("Real", float(t))
    if re.fullmatch(IDENT, t):
        return Literal("Enum", t)
    raise DeclError(f"cannot read the literal {text!r}")


def strip_comment(line: str) -> str:
    """The line without its '#' comment; a '#' inside quotes is text."""
    quoted = False
    for i, ch in enumerate(line):
        if ch == '"':
            quoted = not quoted
        elif ch == "#" and not quoted:
            return line[:i].strip()
    return line.strip()


def split_help(text: str) -> tuple[str, str | None]:
    m = re.search(r'\s*"([^"]*)"\s*$', text)
    if m:
        return text[: m.start()].strip(), m.group(1)
    return text, None


def split_params(text: str) -> list[str]:
    """Splits at the commas outside quotes (a text default may hold one)."""
    parts, cur, quoted = [], [], False
    for ch in text:
        if ch == '"':
            quoted = not quoted
        if ch == "," and not quoted:
            parts.append("".join(cur).strip())
            cur = []
        else:
            cur.append(ch)
    if "".join(cur).strip():
        parts.append("".join(cur).strip())
    return parts
