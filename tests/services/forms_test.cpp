// Whole forms: binding, each control family written and read back, the repaint table, and the
// transfers between list views and data grids.
#include "automation/language.hpp"
#include "tests/services/doubles.hpp"

namespace celdo::services {
namespace {

using namespace testing;
using ServiceForms = Service;

const Variant kAlta = automation::Date{45360};  // 9 March 2024

// A customer row: Pais is a number chosen from a value list of two columns.
Fields customer() {
    Fields row = header({{u"Nombre", exText, u"", u"Ana"}, {u"Edad", exLong, u"", 30}, {u"Activo", exBoolean, u"", true},
                         {u"Alta", exDate, u"", kAlta}, {u"Baja", exDate}, {u"Pais", exLong, u"", 2}, {u"Nota", exText},
                         {u"Foto", exText}});
    item(*row, u"Nombre")->let_Size(40);
    item(*row, u"Nombre")->let_Caption(u"Nombre del cliente");
    item(*row, u"Pais")->let_RowSource(u"1;Uno;2;Dos");
    item(*row, u"Pais")->let_ColumnCount(2);
    item(*row, u"Foto")->let_RowSource(u"c:\\foto.bmp");
    return row;
}

// The rendered values of these fields of a row, one after another.
std::string values(const Fields& row, std::initializer_list<const char16_t*> names) {
    std::string out;
    for (const char16_t* name : names) out += render(item(*row, name)->get_Value());
    return out;
}

// An option set whose buttons carry these option values.
Ref<Fake> option_set(const std::string& name, const Log& log, std::vector<Variant> values) {
    auto set = control(u"SSDBOptSet", name, log);
    Fake& buttons = holder(*set, "Buttons", "buttons", 0);
    for (size_t i = 0; i < values.size(); ++i) add(buttons, "b" + std::to_string(i), {{"OptionValue", values[i]}});
    return set;
}

TEST_F(ServiceForms, FillFormWritesEachFamilyAndFillsListsFromTheRowSourceThenSelects) {
    const std::tuple<const char16_t*, const char*, const char16_t*, std::string> cases[] = {
        // type, name, data field: what the control receives
        {u"Label", "lblNombre", u"", R"(Caption = "Nombre del cliente")"}, {u"RichTextBox", "rtfNota", u"", R"(TextRTF = "")"},
        {u"TextBox", "txtNombre", u"", R"(ForeColor = 8735488; MaxLength = 40; Text = "Ana")"},
        {u"MaskEdBox", "mskEdad", u"", R"(ForeColor = 8735488; MaxLength = 0; Text = "30")"},
        {u"txtFnd", "txtFndPais", u"Pais", R"(ForeColor = 8735488; MaxLength = 0; Text = "2"; Title = "Dos")"},
        {u"CheckBox", "chkActivo", u"", "ForeColor = 8735488; Value = 1"},
        {u"CheckBox", "chkX", u"Baja", "ForeColor = 8735488; Value = 0"},
        {u"DTPicker", "dtpAlta", u"", R"(CalendarForeColor = 8735488; Value = "3/9/2024")"},
        {u"dtp", "dtpBaja", u"", ""},  // no value: the picker keeps its own
        {u"Image", "imgFoto", u"", R"(Set Picture = "picture of c:\foto.bmp")"},
        {u"CommandButton", "cmdNombre", u"", ""},  // not a bound control
    };
    s.use_pictures([](const std::u16string& file) { return Variant(u"picture of " + file); });
    const Log log = std::make_shared<std::vector<std::string>>();
    std::vector<Ref<Fake>> controls;
    for (const auto& [type, name, field, expected] : cases) controls.push_back(control(type, name, log, field));
    controls.push_back(option_set("optPais", log, {1, 2, 2}));
    // Lists and image combos are filled from the row source when empty, then their item chosen.
    auto list = keeps_items(control(u"ComboBox", "cboPais", log)), plain = keeps_items(control(u"ListBox", "lstNombre", log));
    for (const char16_t* text : {u"Luis", u"ana"}) automation::call(*plain, u"AddItem", {text});
    auto combo = control(u"icbo", "icbPais", log);
    holder(*combo, "ComboItems", "items");
    controls.insert(controls.end(), {list, plain, combo});
    Control frm = form(controls, log);
    Fields row = customer();
    s.FillForm(frm, row, u"", false);
    for (const auto& [type, name, field, expected] : cases) EXPECT_EQ(writes(fake(frm), name), expected) << name;
    EXPECT_EQ(writes(fake(frm), "b"), "Value = False; Value = True; Value = True");
    // Items with identifiers are chosen by ItemData, plain ones by their text.
    EXPECT_EQ(props(*list, "ListCount,ListIndex,Text") + " " + props(*plain, "Text"), R"(2|1|"Dos" "ana")");
    EXPECT_EQ(shown(combo, "ComboItems"), "K1: Uno; K2: Dos; K: {Ninguno}");
    EXPECT_EQ(writes(*combo, "icbPais"), R"(ForeColor = 8735488; Caption = "Pais"; Refresh())");
    EXPECT_EQ(fake(frm).lines("Selected"), "item1: Let Selected = True; item2: Let Selected = True");
    // A value that no item stands for leaves nothing selected; a required field offers no "{Ninguno}".
    item(*row, u"Pais")->let_Value(7);
    item(*row, u"Pais")->let_Required(true);
    combo->kid("ComboItems").items->clear();
    s.FillForm(frm, row, u"", false);
    EXPECT_EQ(shown(combo, "ComboItems"), "K1: Uno; K2: Dos");
    EXPECT_EQ(render(combo->props["SelectedItem"]), "Nothing");
}

TEST_F(ServiceForms, BindingByDataFieldNameGroupAndRefresh) {
    const std::tuple<const char16_t*, const char*, const char16_t*, const char16_t*, int> cases[] = {
        // type, name, data field, data member: Text written by a fill of the group "Cliente" and
        // a refresh after Edad changed (a refresh rewrites only the fields changed since saved)
        {u"TextBox", "txtNombre", u"", u"Cliente", 1},      {u"TextBox", "xyzNombre", u"", u"Cliente", 1},
        {u"TextBox", "txtFoo", u"Edad", u"Cliente", 2},     {u"TextBox", "txtNombre", u"", u"cliente", 0},
        {u"TextBox", "txt", u"", u"Cliente", 0},            {u"TextBox", "txtXyz", u"", u"Cliente", 0},
        {u"txtFnd", "txtFndNombre", u"", u"Cliente", 0},    {u"Frame", "fraNombre", u"", u"Cliente", 0},
        {u"TextBox", "txtParentless", u"Nombre", u"Cliente", 0},  // no Parent: not on a form
    };
    const auto own = [] { return std::make_shared<std::vector<std::string>>(); };
    std::vector<Ref<Fake>> controls;
    for (const auto& [type, name, field, member, written] : cases) controls.push_back(control(type, name, own(), field, member));
    controls.back()->absent.insert("Parent");
    const Log log = own();
    Control frm = form(controls, log);
    Fields row = customer();
    s.FillForm(frm, row, u"Cliente", false);
    row->Updated();
    item(*row, u"Edad")->let_Value(31);
    s.FillForm(frm, row, u"Cliente", true);
    for (size_t i = 0; i < controls.size(); ++i) EXPECT_EQ(controls[i]->count("Let Text"), std::get<4>(cases[i])) << i;
    EXPECT_EQ(controls[2]->lines("Let Text"), R"(txtFoo: Let Text = "30"; txtFoo: Let Text = "31")");
    // An empty row writes nothing and does not even look at the form; a row of one field does.
    log->clear();
    Fields none = header({});
    s.FillForm(frm, none, u"Cliente", false);
    EXPECT_TRUE(log->empty());
    Fields one = header({{u"Edad", exLong, u"", 5}});
    s.FillForm(frm, one, u"Cliente", false);
    EXPECT_EQ(controls[2]->count("Let Text = \"5\""), 1);
}

TEST_F(ServiceForms, FillCeldosFormReadsEachFamilyAndRaisesTheFieldsRefusalLast) {
    const Log log = std::make_shared<std::vector<std::string>>();
    auto text = control(u"TextBox", "txtNombre", log), masked = control(u"MaskEdBox", "mskEdad", log),
         check = control(u"CheckBox", "chkActivo", log), picker = control(u"DTPicker", "dtpAlta", log),
         list = keeps_items(control(u"ListBox", "lstPais", log)), label = control(u"Label", "lblNota", log),
         plain = keeps_items(control(u"ListBox", "lstNota", log));
    text->props["Text"] = u"Luis";
    std::tie(masked->props["Text"], masked->props["ClipText"]) = std::tuple(Variant(u"4-5"), Variant(u"45"));
    check->props["Value"] = 0;
    picker->props["Value"] = kAlta;
    automation::call(*list, u"AddItem", {u"Uno"});
    automation::let(*list, u"ItemData", {0, 1});
    automation::let(*list, u"ListIndex", {0});
    automation::call(*plain, u"AddItem", {u"x"});  // no identifiers, nothing chosen: Nota is left as it is
    Control frm = form({text, masked, check, picker, list, label, plain}, log);
    Fields row = customer();
    s.FillCeldosForm(frm, row, u"");
    EXPECT_EQ(values(row, {u"Nombre", u"Edad", u"Activo", u"Pais", u"Nota"}),
              "\"Luis\"45False1Empty");  // nor is a label
    EXPECT_EQ(values(row, {u"Alta"}), "\"3/9/2024\"");

    // A value the field refuses reaches the caller as the field's own error, after the rest.
    masked->props["ClipText"] = u"abc";
    text->props["Text"] = u"Eva";
    automation::let(*list, u"ListIndex", {-1});  // nothing chosen among identifiers: the field keeps its value
    const auto expected = error_of([&] { field_of(exLong, u"Edad")->let_Value(u"abc"); });
    const auto raised = error_of([&] { s.FillCeldosForm(frm, row, u""); });
    EXPECT_EQ(std::tuple(raised.number(), raised.description()), std::tuple(expected.number(), expected.description()));
    EXPECT_EQ(values(row, {u"Nombre", u"Edad", u"Pais"}), "\"Eva\"451");
}

TEST_F(ServiceForms, ImageCombosAndOptionSetsReadBackByKeyAndOptionValue) {
    const Log log = std::make_shared<std::vector<std::string>>();
    auto combo = control(u"ImageCombo", "icbPais", log);
    auto options = option_set("optEdad", log, {18, 30, 65});
    Control frm = form({combo, options}, log);
    const std::tuple<const char16_t*, const char16_t*, int, std::string> cases[] = {
        // selected key and text, chosen option: Pais, its Description and whether it changed, Edad
        {u"K1", u"Uno", 2, R"("1"|"Uno"|True 65)"},
        {u"K", u"{Ninguno}", 0, R"("5"|""|True 18)"},  // no value: the field's default
        {u"K", u"Nada", -1, R"(""|""|True 30)"},       // the empty key is no value too: Null, a change kept
        {u"Z9", u"Zeta", -1, R"("Z9"|"Zeta"|True 30)"},  // a key of the host's own is the value
        {nullptr, nullptr, -1, R"(2|""|False 30)"},      // nothing chosen: the fields keep their values
    };
    for (const auto& [key, text, chosen, expected] : cases) {
        auto selected = make_ref<Fake>(u"Object", "item", log);
        selected->props = {{"Key", key ? key : u""}, {"Text", text ? text : u""}};
        combo->props["SelectedItem"] = key ? Variant(selected) : Variant::nothing();
        for (int i = 0; i < 3; ++i) fake(options->kid("Buttons").items->at(i).object()).props["Value"] = i == chosen;
        Fields row = customer();
        const auto pais = item(*row, u"Pais");
        pais->let_DataType(exText);
        if (!text || std::u16string_view(text) != u"Nada") pais->let_DefaultValue(5);
        s.FillCeldosForm(frm, row, u"");
        EXPECT_EQ(props(*pais, "Value,Description,Updated") + " " + values(row, {u"Edad"}), expected);
    }
}

TEST_F(ServiceForms, PaintFormKeepsDesignersColours) {
    constexpr int32_t face = static_cast<int32_t>(0x8000000F), text = static_cast<int32_t>(0x80000012);
    const std::tuple<const char16_t*, int32_t, int32_t, int, std::string> cases[] = {
        // type, BackColor, ForeColor, BackStyle: what is set
        {u"TextBox", face, 0, 1, "BackColor = 16767692; ForeColor = 8735488"}, {u"MaskEdBox", 255, 0, 1, ""},
        {u"Label", face, text, 0, "BackStyle = 0; ForeColor = 8735488"},
        {u"Label", face, 0, 1, "BackStyle = 0; ForeColor = 8735488"},
        {u"Label", face, 0, 0, ""}, {u"Label", 255, text, 1, ""},
        {u"CommandButton", face, 0, 1, "BackColor = 16767692; MaskColor = 16767692"},
        {u"Frame", face, 0, 1, "Appearance = 0; BackColor = 255; ForeColor = 8735488"}, {u"Frame", 0, 0, 1, ""},
        {u"SSTab", face, 0, 1, "BackColor = 255"}, {u"SSTab", 0, 0, 1, ""},
        {u"OptionButton", 0, 0, 1, "Appearance = 0; BackColor = 255; ForeColor = 8735488"},
        {u"CheckBox", 0, 0, 1, "Appearance = 0; BackColor = 255; ForeColor = 8735488"},
        {u"MSFlexGrid", 0, 0, 1, "BackColorBkg = 16777215"}, {u"MSHFlexGrid", 0, 0, 1, "BackColorBkg = 16777215"},
        {u"ImageCombo", face, 0, 1, ""}, {u"SSDBOptSet", face, 0, 1, ""},
    };
    s.let_BackColor(255);
    const Log log = std::make_shared<std::vector<std::string>>();
    std::vector<Ref<Fake>> controls;
    for (size_t i = 0; i < std::size(cases); ++i) {
        const auto& [type, back, fore, style, expected] = cases[i];
        controls.push_back(control(type, "c" + std::to_string(10 + i), log));  // no label begins another
        controls[i]->props.insert({{"BackColor", back}, {"ForeColor", fore}, {"BackStyle", style}});
    }
    Control frm = form(controls, log);
    s.PaintForm(frm);
    EXPECT_EQ(writes(fake(frm), "frm"), "BackColor = 255; ForeColor = 8735488");
    for (size_t i = 0; i < std::size(cases); ++i)
        EXPECT_EQ(writes(*controls[i], "c" + std::to_string(10 + i)), std::get<4>(cases[i])) << i;
    // The first control that lacks a member ends the painting, quietly.
    log->clear();
    controls[0]->on["BackColor"] = refuse;
    s.PaintForm(frm);
    EXPECT_EQ(fake(frm).count("Let"), 2);
}

TEST_F(ServiceForms, EntriesMoveBetweenListViewsAndDataGrids) {
    Control source = list_view(3), target = list_view(3);
    Fake &from = fake(source).kid("ListItems"), &to = fake(target).kid("ListItems");
    // The first item of a list view, as the host hands it: its Index counts from 1.
    const auto first = [](const Fake& items) {
        Control item = items.items->front().object();
        fake(item).props["Index"] = 1;
        return item;
    };
    s.AddListItem(source, u"7", 1, 1, u"a!b!c", u"!", u"t");
    Control moved = first(from);
    // A target that refuses the item (a key it holds already) leaves it in the source.
    to.on["Add"] = refuse;
    s.SawpListView(moved, source, target, u"#");
    EXPECT_EQ(from.items->size(), 1u);
    to.on.erase("Add");
    s.SawpListView(moved, source, target, u"#");
    EXPECT_EQ(shown(target, "ListItems") + " " + render(fake(first(to)).props["Tag"]), "K7: a|b|c \"t\"");
    EXPECT_TRUE(from.items->empty());

    auto grid = make_ref<Fake>(u"SSDBGrid", "grid");
    moved = first(to);
    s.SawpListViewGrid(moved, target, grid, u";");
    EXPECT_EQ(grid->lines("grid"), R"(grid: Let FieldSeparator = ";"; grid: Call AddItem("a;b;c"))");

    Fake& columns = holder(*grid, "Columns", "cols", 0);
    for (const char16_t* cell : {u"x", u"y", u"z"}) add(columns, "cell", {{"Value", cell}});
    int16_t row = 4;
    grid->log->clear();
    s.SawpGridListView(row, grid, target, u"!");
    EXPECT_EQ(shown(target, "ListItems"), "x|y|z");
    EXPECT_EQ(grid->lines("grid: "), "grid: Let Row = 4; grid: Get Columns; grid: Call RemoveItem(4)");
}

TEST_F(ServiceForms, ExecFillGridLaysColumnsOutFromTheHeader) {
    const std::tuple<Fields, int32_t, std::string> cases[] = {
        {header({{u"Id", exLong}, {u"Name", exText}}), 0,
         R"(grid: Let Cols = 2; grid: Get Columns; cols: Get Item(0); c0: Let Caption = "Id"; c0: Let Width = 1680; )"
         R"(cols: Get Item(1); c1: Let Caption = "Name"; c1: Let Width = 0; grid: Call RemoveAll(); )"
         R"(grid: Let FieldSeparator = "!"; grid: Call AddItem("1!a"); grid: Call AddItem("2!"))"},
        // FillGrid: one separator-joined line per row, Null as the empty text.
        {{}, 0, R"(grid: Call RemoveAll(); grid: Let FieldSeparator = "!"; grid: Call AddItem("1!a"); grid: Call AddItem("2!"))"},
        {header({{u"Id", exLong}}), -1, ""},
    };
    for (const auto& [fields, status, expected] : cases) {
        auto grid = make_ref<Fake>(u"SSDBGrid", "grid");
        Fake& columns = holder(*grid, "Columns", "cols", 0);
        for (const char* label : {"c0", "c1"}) add(columns, label);
        data_access(true, matrix({{1, u"a"}, {2, Variant::null()}}), fields, status);
        Fields parameters;
        s.ExecFillGrid(grid, u"Select", 0, 0, u"!", parameters);
        EXPECT_EQ(grid->lines(), expected);
    }
}

}  // namespace
}  // namespace celdo::services
