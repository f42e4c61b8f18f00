"""The member tables of one .api file (portable C++, built on every platform).

Late binding dispatches through these (automation/dispatch.cpp): the runtime finds the member,
chooses the accessor, coerces each argument to its declared type and supplies the defaults of
omitted ones; the thunk written here then reads the coerced arguments as C++ types, calls the
class's method and copies by-reference arguments back.
"""
from __future__ import annotations

from .model import Accessor, ApiFile, Class, Literal, Member, Param, Type

_REF_OBJECT = "automation::Ref<automation::Object>"

# For each basic type but Variant (which passes through as it is): how a coerced argument is
# read, and the C++ type that holds it.
CPP_TYPES = {
    "String": ("as_string()", "std::u16string"),
    "Integer": ("as_integer()", "int16_t"),
    "Long": ("as_long()", "int32_t"),
    "Byte": ("as_byte()", "uint8_t"),
    "Boolean": ("as_bool()", "bool"),
    "Single": ("as_single()", "float"),
    "Double": ("as_double()", "double"),
    "Currency": ("as_currency()", "automation::Currency"),
    "Date": ("as_date()", "automation::Date"),
    "Object": ("object()", _REF_OBJECT),
    "Unknown": ("object()", _REF_OBJECT),
}


def cpp_string(text: str) -> str:
    return 'u"' + text.replace("\\", "\\\\").replace('"', '\\"') + '"'


def cpp_class(cls: Class) -> str:
    return f"celdo::{cls.namespace}::{cls.name}"


def cpp_value_type(t: Type) -> str:
    if t.kind == "Enum":
        return f"celdo::{t.enum.namespace}::{t.enum.name}"
    if t.kind == "Class":
        return f"automation::Ref<{cpp_class(t.cls)}>"
    return CPP_TYPES[t.kind][1]


def param_type(t: Type | None) -> str:
    """The runtime's ParamType; enumerations travel as Long."""
    kind = "Variant" if t is None else "Long" if t.kind == "Enum" else t.kind
    return f"automation::ParamType::{kind}"


def class_info(t: Type | None) -> str:
    """For a class type, the runtime's check that an object belongs to it."""
    if t is not None and t.kind == "Class":
        return f"&automation::class_info_of<{cpp_class(t.cls)}>"
    return "nullptr"


def literal_init(d: Literal | None) -> str:
    """The runtime Literal an omitted argument is made from; none makes it Missing."""
    if d is None:
        return "{}"
    if d.kind == "Nothing":
        return "{automation::Literal::Kind::Nothing, 0, 0, nullptr}"
    if d.kind == "Text":
        return f"{{automation::Literal::Kind::Text, 0, 0, {cpp_string(d.value)}}}"
    if d.kind == "Boolean":
        return f"{{automation::Literal::Kind::Boolean, {1 if d.value else 0}, 0, nullptr}}"
    if d.kind == "Real":
        return f"{{automation::Literal::Kind::Real, 0, {d.value!r}, nullptr}}"
    return f"{{automation::Literal::Kind::Integer, {d.value}, 0, nullptr}}"


def bool_cpp(value: bool) -> str:
    return "true" if value else "false"


def read_arg(t: Type, expr: str) -> str:
    """C++ expression reading an already coerced argument `expr` (a Variant) as its type."""
    if t.kind == "Variant":
        return expr
    if t.kind == "Enum":
        return f"static_cast<{cpp_value_type(t)}>({expr}.as_long())"
    if t.kind == "Class":
        return f"automation::Ref<{cpp_class(t.cls)}>(static_cast<{cpp_class(t.cls)}*>({expr}.as_object()))"
    return f"{expr}.{CPP_TYPES[t.kind][0]}"


def wrap_result(t: Type, expr: str) -> str:
    """C++ expression making a Variant of a value of the type."""
    if t.kind == "Variant":
        return f"automation::Variant({expr})"
    if t.kind == "Enum":
        return f"automation::Variant(static_cast<int32_t>({expr}))"
    if t.is_object:
        return f"automation::Variant({_REF_OBJECT}({expr}))"
    return f"automation::Variant(static_cast<{CPP_TYPES[t.kind][1]}>({expr}))"


def thunk_call(m: Member, acc: Accessor) -> list[str]:
    """Body lines that bind the arguments, call the class's method and copy by-reference ones back."""
    lines, args, after = [], [], []
    for i, p in enumerate(m.params):
        arg = f"a[{i}].value"
        if p.by_ref and p.type.kind != "Variant":
            # A typed by-reference argument goes through a local of its C++ type, copied back after.
            lines.append(f"        {cpp_value_type(p.type)} p{i} = {read_arg(p.type, arg)};")
            args.append(f"p{i}")
            after.append(f"        {arg} = {wrap_result(p.type, f'p{i}')};")
        else:
            # A Variant one is handed over as the argument itself.
            args.append(read_arg(p.type, arg))
    if acc.assigns:
        args.append(read_arg(m.type, f"a[{len(m.params)}].value"))
    call = f"self.{acc.cpp_prefix}{m.name}({', '.join(args)})"
    returns = m.result(acc)
    if returns is not None:
        lines.append(f"        automation::Variant result = {wrap_result(returns, call)};")
        lines += after
        lines.append("        return result;")
    else:
        lines.append(f"        {call};")
        lines += after
        lines.append("        return {};")
    return lines


def param_rows(params: list[Param], event: bool) -> list[str]:
    # Event arguments are always given, so an event's parameters have no defaults.
    return [f"    {{{cpp_string(p.name)}, {param_type(p.type)}, {class_info(p.type)}, {bool_cpp(p.by_ref)}, "
            f"{bool_cpp(p.optional and not event)}, {'{}' if event else literal_init(p.default)}}},"
            for p in params]


def emit_header(api: ApiFile) -> str:
    ns = api.namespace
    h = ["#pragma once", f"// Generated by tools/apigen.py from {api.path}. Do not edit.", "",
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
            h += [f"inline constexpr int32_t {ev.name} = {ev.dispid};" for ev in cls.events]
            h.append("}")
    h.append("")
    h.append(f"}}  // namespace celdo::{ns}")
    h.append("")
    for cls in api.classes:
        h.append("template <>")
        h.append(f"const celdo::automation::ClassInfo& celdo::automation::class_info_of<{cpp_class(cls)}>();")
    return "\n".join(h) + "\n"


def emit_source(api: ApiFile) -> str:
    ns = api.namespace
    c = [f"// Generated by tools/apigen.py from {api.path}. Do not edit.", ""]
    # The thunks call the classes' methods, and class_info_of needs every class a member names.
    includes = {cls.header for cls in api.classes}
    for cls in api.classes:
        for m in cls.members:
            for t in [m.type] + [p.type for p in m.params]:
                if t is not None and t.kind == "Class":
                    includes.add(t.cls.header)
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
                c += param_rows(m.params, event=False)
                c.append("};")
            c.append(f"automation::Variant {prefix}{m.name}(automation::Component& object, [[maybe_unused]] uint16_t call,")
            c.append("        [[maybe_unused]] std::span<automation::Argument> a) {")
            c.append(f"    auto& self = static_cast<{cls.name}&>(object);")
            if m.kind == "property":
                # The runtime has already chosen the accessor; the thunk only routes to it.
                for acc in m.accessors:
                    c.append(f"    if (call == {acc.call_flag}) {{")
                    c += thunk_call(m, acc)
                    c.append("    }")
                c.append("    return {};")
            else:
                c += [line[4:] for line in thunk_call(m, m.accessors[0])]
            c.append("}")
            c.append("")
        if cls.members:
            c.append(f"const automation::MemberInfo {prefix}members[] = {{")
            for m in cls.members:
                calls = " | ".join(acc.call_flag for acc in m.accessors)
                params = f"{prefix}{m.name}_params" if m.params else "{}"
                c.append(f"    {{{cpp_string(m.name)}, {m.dispid}, static_cast<uint16_t>({calls}), {params}, "
                         f"{param_type(m.type)}, {class_info(m.type)}, {bool_cpp(m.kind != 'sub')}, &{prefix}{m.name}}},")
            c.append("};")
        for ev in cls.events:
            if ev.params:
                c.append(f"constexpr automation::ParamInfo {prefix}{ev.name}_event_params[] = {{")
                c += param_rows(ev.params, event=True)
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
        c.append(f"const celdo::automation::ClassInfo& celdo::automation::class_info_of<{cpp_class(cls)}>() {{")
        c.append(f"    return celdo::{ns}::{cls.name}_info;")
        c.append("}")
    return "\n".join(c) + "\n"
