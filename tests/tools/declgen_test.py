"""Tests of the declaration generator (tools/declgen): a small declaration goes in; the model,
a few exact lines of each output, and the errors of bad declarations are checked."""
import os
import sys
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "tools"))
from declgen import emit_com, emit_hostile, emit_idl, emit_manifest, emit_reference, emit_tables  # noqa: E402
from declgen.model import Model  # noqa: E402
from declgen.parser import DeclError, Library, Literal, parse_text  # noqa: E402

LIBRARY = Library("Demo", "11111111-1111-1111-1111-111111111111", "1.2", "Demo library")

# Size is declared Let first and Get later: one member, Get first in the vtable, one dispid.
API = """\
enum Shade "Shades"
    shLight = 1
    shDark = 2
end enum

class Widget "A widget"
    clsid {22222222-2222-2222-2222-222222222222}
    interface _Widget {33333333-3333-3333-3333-333333333333}
    events __Widget {44444444-4444-4444-4444-444444444444}
    property let Size as Long   # a comment
    function Find(Key as String, Optional Start as Long, Optional Tone as Shade = shDark, Optional Exact as Boolean, Optional Label as String, Optional Extra as Variant, Optional Near as Widget, Optional Ratio as Double = 0.5) as Widget
    property get Item(ByRef Index as Variant) as Widget, default
    property get Items as Unknown, enumerator
    sub Rename(ByRef Name as String, Optional ByRef Suffix as String = "x")
        raises 5 "Invalid procedure call or argument" when the name is taken
        example w.Rename "Otro"
    property get Size as Long
    property get/let/set Tag as Variant, hidden "Anything # at all"
    event Changed(Field as String)
    event Closed() "Raised last"
end class
"""


def model_of(api: str = API) -> Model:
    return Model(LIBRARY, [parse_text(api, "parts/Widget.api")])


def widget(api: str = API) -> str:
    """A class with `api` as its body."""
    return ("class Widget\n    clsid {22222222-2222-2222-2222-222222222222}\n"
            "    interface _Widget {33333333-3333-3333-3333-333333333333}\n" + api + "end class\n")


class ModelTest(unittest.TestCase):
    def setUp(self):
        self.cls = model_of().classes[0]
        self.members = {m.name: m for m in self.cls.members}

    def test_dispatch_ids(self):
        # The default member and the enumerator take the hosts' ids; the rest count from 1.
        self.assertEqual([(m.name, m.dispid) for m in self.cls.members],
                         [("Size", 1), ("Find", 2), ("Item", 0), ("Items", -4), ("Rename", 3), ("Tag", 4)])
        self.assertEqual([(e.name, e.dispid) for e in self.cls.events], [("Changed", 1), ("Closed", 2)])

    def test_accessors_merge_in_vtable_order(self):
        self.assertEqual([a.name for a in self.members["Size"].accessors], ["get", "let"])
        self.assertEqual([a.name for a in self.members["Find"].accessors], ["method"])

    def test_effective_defaults(self):
        defaults = {p.name: p.default for p in self.members["Find"].params}
        self.assertEqual(defaults, {
            "Key": None,                          # required
            "Start": Literal("Integer", 0),      # typed optionals take their type's zero
            "Tone": Literal("Integer", 2),       # an enumeration member becomes its value
            "Exact": Literal("Boolean", False),
            "Label": Literal("Text", ""),
            "Extra": None,                        # a Variant arrives as Missing
            "Near": Literal("Nothing"),
            "Ratio": Literal("Real", 0.5),
        })


class EmitTest(unittest.TestCase):
    def setUp(self):
        self.model = model_of()

    def assertLines(self, text: str, *lines: str):
        got = [line.strip() for line in text.split("\n")]
        for line in lines:
            self.assertIn(line, got)

    def test_idl(self):
        idl = emit_idl.emit(self.model)
        self.assertLines(
            idl,
            "[id(1), propget] HRESULT Size([out, retval] long* Size);",
            "[id(1), propput] HRESULT Size([in] long RHS);",
            "[id(2)] HRESULT Find([in] BSTR Key, [in, optional, defaultvalue(0)] long Start, "
            "[in, optional, defaultvalue(2)] Shade Tone, [in, optional, defaultvalue(0)] VARIANT_BOOL Exact, "
            '[in, optional, defaultvalue("")] BSTR Label, [in, optional] VARIANT Extra, '
            "[in, optional] _Widget* Near, [in, optional, defaultvalue(0.5)] double Ratio, "
            "[out, retval] _Widget** Find);",
            "[id(0), propget] HRESULT Item([in, out] VARIANT* Index, [out, retval] _Widget** Item);",
            "[id(-4), hidden, restricted, propget] HRESULT Items([out, retval] IUnknown** Items);",
            # widl refuses a text default on a by-reference parameter.
            "[id(3)] HRESULT Rename([in, out] BSTR* Name, [in, out, optional] BSTR* Suffix);",
            '[id(4), hidden, helpstring("Anything # at all"), propputref] HRESULT Tag([in] VARIANT RHS);',
            "[id(1)] void Changed([in] BSTR Field);",
            '[id(2), helpstring("Raised last")] void Closed();',
            # The class's help names its coclass and its interface.
            '[uuid(22222222-2222-2222-2222-222222222222), version(1.2), helpstring("A widget")]',
            '[uuid(33333333-3333-3333-3333-333333333333), version(1.2), helpstring("A widget"), dual, oleautomation, '
            'nonextensible, hidden]',
        )
        self.assertLess(idl.index("propget] HRESULT Size"), idl.index("propput] HRESULT Size"))

    def test_member_tables(self):
        api = self.model.files[0]
        self.assertLines(emit_tables.emit_header(api), "inline constexpr int32_t Closed = 2;", "namespace celdo::parts {")
        source = emit_tables.emit_source(api)
        self.assertLines(
            source,
            '#include "parts/Widget.hpp"',
            '{u"Start", automation::ParamType::Long, nullptr, false, true, {automation::Literal::Kind::Integer, 0, 0, nullptr}},',
            '{u"Tone", automation::ParamType::Long, nullptr, false, true, {automation::Literal::Kind::Integer, 2, 0, nullptr}},',
            '{u"Label", automation::ParamType::String, nullptr, false, true, {automation::Literal::Kind::Text, 0, 0, u""}},',
            '{u"Near", automation::ParamType::Class, &automation::class_info_of<celdo::parts::Widget>, false, true, {automation::Literal::Kind::Nothing, 0, 0, nullptr}},',
            '{u"Suffix", automation::ParamType::String, nullptr, true, true, {automation::Literal::Kind::Text, 0, 0, u"x"}},',
            '{u"Size", 1, static_cast<uint16_t>(automation::kGet | automation::kLet), {}, automation::ParamType::Long, '
            "nullptr, true, &Widget_Size},",
            '{u"Rename", 3, static_cast<uint16_t>(automation::kMethod), Widget_Rename_params, automation::ParamType::Variant, '
            "nullptr, false, &Widget_Rename},",
            # A by-reference String goes through a local and is copied back after the call.
            "std::u16string p0 = a[0].value.as_string();",
            "self.Rename(p0, p1);",
            "a[0].value = automation::Variant(static_cast<std::u16string>(p0));",
            "if (call == automation::kSet) {",
            "self.set_Tag(a[0].value);",
            "automation::Variant result = automation::Variant(self.get_Tag());",
        )

    def test_com_shims(self):
        com = emit_com.emit(self.model, "Demo_h.h")
        self.assertLines(
            com,
            "HRESULT STDMETHODCALLTYPE put_Size(long rhs) override {",
            "automation::Variant value = invoke_on(core, 1, automation::kLet, args);",
            "HRESULT STDMETHODCALLTYPE get_Item(VARIANT* p0, _Widget** out) override {",
            "if (!p0 || !out) return E_POINTER;",
            "replace_value(VT_VARIANT, p0, args[0].value);",
            "store_interface(out, IID__Widget, value);",
            "HRESULT STDMETHODCALLTYPE putref_Tag(VARIANT rhs) override {",
            "automation::Argument args[] = {automation::Argument{read_value(VT_VARIANT, &rhs), false}};",
            "replace_value(VT_BSTR, p1, args[1].value);",
        )

    def test_manifest(self):
        manifest = emit_manifest.emit(self.model, "Demo.dll", "2.1", "x86")
        self.assertLines(
            manifest,
            '<assemblyIdentity type="win32" name="Demo" version="2.1.0.0" processorArchitecture="x86"/>',
            '<file name="Demo.dll">',
            '<typelib tlbid="{11111111-1111-1111-1111-111111111111}" version="1.2" helpdir=""/>',
            '<comClass clsid="{22222222-2222-2222-2222-222222222222}" progid="Demo.Widget" threadingModel="Apartment" '
            'tlbid="{11111111-1111-1111-1111-111111111111}" description="A widget"/>',
            '<comInterfaceExternalProxyStub name="__Widget" iid="{44444444-4444-4444-4444-444444444444}" '
            'proxyStubClsid32="{00020424-0000-0000-C000-000000000046}" tlbid="{11111111-1111-1111-1111-111111111111}"/>',
        )
        self.assertIn('processorArchitecture="amd64"', emit_manifest.emit(self.model, "Demo.dll", "2.1", "x64"))
        self.assertNotIn("comClass", emit_manifest.emit(model_of(API.replace("class Widget", "class Widget noncreatable")),
                                                        "Demo.dll", "2.1", "x64"))
        with self.assertRaises(ValueError):
            emit_manifest.assembly_version("1.x")

    def test_reference(self):
        pages = emit_reference.emit(self.model)
        self.assertEqual(sorted(pages), ["README.md", "Widget.md"])
        self.assertLines(
            pages["Widget.md"],
            "Function Find(Key As String, [Start As Long = 0], [Tone As Shade = shDark], [Exact As Boolean = False], "
            '[Label As String = ""], [Extra As Variant], [Near As Widget = Nothing], [Ratio As Double = 0.5]) As Widget',
            "Property Get Size() As Long",
            "Property Let Size(Value As Long)",
            "Sub Rename(ByRef Name As String, [ByRef Suffix As String = \"x\"])",
            "| `Extra` | Missing (`IsMissing` is True) |",
            "| 5 | Invalid procedure call or argument | the name is taken |",
            'w.Rename "Otro"',
            "Event Changed(Field As String)",
            "| ProgID | `Demo.Widget` |",
        )
        self.assertLines(pages["README.md"], "| `shDark` | 2 |", "| [Widget](Widget.md) | A widget |")

    def test_hostile_walk(self):
        walk = emit_hostile.emit(self.model, "' helpers\n")
        self.assertLines(walk, "Set target.Tag = b", "HostileObject b, i", "Call target.Find(b, b, b, b, b, b, b, b)",
                         'Judge "Widget.Rename (first argument)", i, before, target, number')


class ErrorTest(unittest.TestCase):
    CASES = [
        # (declaration, where, what the message says)
        (widget("    junk here\n"), "parts/Widget.api:4:", "cannot read 'junk here'"),
        (widget("    sub A(x as Long = 1)\n"), "parts/Widget.api:4:", "has a default but is not Optional"),
        (widget("    sub A(Optional x as Long, y as Long)\n"), "parts/Widget.api:4:", "must be Optional too"),
        (widget("    sub A()\n    function A() as Long\n"), "parts/Widget.api:5:", "member A is declared twice"),
        (widget("    property get A as Long\n    property let A as String\n"), "parts/Widget.api:5:", "different shapes"),
        ("class Widget\n", "parts/Widget.api:1:", "has no 'end class'"),
        (widget("    sub A(x as Nope)\n"), "parts/Widget.api:4:", "Widget.A: unknown type Nope"),
        (widget("    property get A as Long, default\n    property get B as Long, default\n"), "parts/Widget.api:1:",
         "more than one default member"),
        (widget('    sub A(Optional x as Object = "no")\n'), "parts/Widget.api:4:", "can only default to Nothing"),
        (widget("    sub A(Optional x as Long = Nothing)\n"), "parts/Widget.api:4:", "only object parameters default to Nothing"),
        (widget("    sub A(Optional x as String = shNone)\n"), "parts/Widget.api:4:", "x cannot default to shNone"),
        (widget("    sub A(Optional x as Long = shNone)\n"), "parts/Widget.api:4:", "unknown enumeration member shNone"),
        (widget("    property get/let A as Unknown, enumerator\n"), "parts/Widget.api:4:", "the enumerator is a"),
        (widget("    event E()\n"), "parts/Widget.api:1:", "declares no events interface"),
        (widget('    raises 5 "x"\n'), "parts/Widget.api:4:", "'raises' belongs after the member"),
        ("class Widget\nend class\n", "parts/Widget.api:1:", "needs a clsid and an interface"),
        (widget("") + widget(""), "parts/Widget.api:5:", "type Widget is declared twice"),
    ]

    def test_errors(self):
        for api, where, what in self.CASES:
            with self.subTest(what=what):
                with self.assertRaises(DeclError) as caught:
                    model_of(api)
                self.assertTrue(str(caught.exception).startswith(where), str(caught.exception))
                self.assertIn(what, str(caught.exception))


if __name__ == "__main__":
    unittest.main()
