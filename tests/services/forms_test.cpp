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
    Fields row = header(R"(Nombre exText "" "Ana"; Edad exLong "" Long 30; Activo exBoolean "" Boolean True; )"
                        R"(Alta exDate "" Date 2024-03-09; Baja exDate; Pais exLong "" Long 2; Nota exText; Foto exText)");
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
    s.use_pictures([](const std::u16string& file) { return Variant(u"picture of " + file); });
    const Log log = std::make_shared<std::vector<std::string>>();
    std::vector<Ref<Fake>> controls;
    for_each_case("FillForm", [&](const std::string&, const auto& row) {
        controls.push_back(control(automation::utf8_to_utf16(row[0]).c_str(), std::string(row[1]), log,
                                   automation::utf8_to_utf16(row[2]).c_str()));
    });
    controls.push_back(option_set("optPais", log, {1, 2, 2}));
    // Lists and image combos are filled from the row source when empty, then their item chosen.
    auto list = keeps_items(control(u"ComboBox", "cboPais", log)), plain = keeps_items(control(u"ListBox", "lstNombre", log));
    for (const char16_t* text : {u"Luis", u"ana"}) automation::call(*plain, u"AddItem", {text});
    auto combo = control(u"icbo", "icbPais", log);
    holder(*combo, "ComboItems", "items");
    controls.insert(controls.end(), {list, plain, combo});
    Control frm = form(controls, log);
    Fields customer_row = customer();
    s.FillForm(frm, customer_row, u"", false);
    for_each_case("FillForm", [&](const std::string& where, const auto& row) {
        EXPECT_EQ(writes(fake(frm), std::string(row[1])), row[3]) << where;
    });
    EXPECT_EQ(writes(fake(frm), "b"), "Value = False; Value = True; Value = True");
    // Items with identifiers are chosen by ItemData, plain ones by their text.
    EXPECT_EQ(props(*list, "ListCount,ListIndex,Text") + " " + props(*plain, "Text"), R"(2|1|"Dos" "ana")");
    EXPECT_EQ(shown(combo, "ComboItems"), "K1: Uno; K2: Dos; K: {Ninguno}");
    EXPECT_EQ(writes(*combo, "icbPais"), R"(ForeColor = 8735488; Caption = "Pais"; Refresh())");
    EXPECT_EQ(fake(frm).lines("Selected"), "item1: Let Selected = True; item2: Let Selected = True");
    // A value that no item stands for leaves nothing selected; a required field offers no "{Ninguno}".
    item(*customer_row, u"Pais")->let_Value(7);
    item(*customer_row, u"Pais")->let_Required(true);
    combo->kid("ComboItems").items->clear();
    s.FillForm(frm, customer_row, u"", false);
    EXPECT_EQ(shown(combo, "ComboItems"), "K1: Uno; K2: Dos");
    EXPECT_EQ(render(combo->props["SelectedItem"]), "Nothing");
}

TEST_F(ServiceForms, BindingByDataFieldNameGroupAndRefresh) {
    const auto own = [] { return std::make_shared<std::vector<std::string>>(); };
    const auto text = [](std::string_view cell) { return automation::utf8_to_utf16(cell); };
    std::vector<Ref<Fake>> controls;
    std::vector<int> written;
    Ref<Fake> foo;
    for_each_case("Binding", [&](const std::string&, const auto& row) {
        controls.push_back(control(text(row[0]).c_str(), std::string(row[1]), own(), text(row[2]).c_str(), text(row[3]).c_str()));
        written.push_back(number<int>(row[4]));
        if (row[1] == "txtParentless") controls.back()->absent.insert("Parent");
        if (row[1] == "txtFoo") foo = controls.back();
    });
    const Log log = own();
    Control frm = form(controls, log);
    Fields row = customer();
    s.FillForm(frm, row, u"Cliente", false);
    row->Updated();
    item(*row, u"Edad")->let_Value(31);
    s.FillForm(frm, row, u"Cliente", true);
    for (size_t i = 0; i < controls.size(); ++i)
        EXPECT_EQ(controls[i]->count("Let Text"), written[i]) << render(controls[i]->props["Name"]);
    EXPECT_EQ(foo->lines("Let Text"), R"(txtFoo: Let Text = "30"; txtFoo: Let Text = "31")");
    // An empty row writes nothing and does not even look at the form; a row of one field does.
    log->clear();
    Fields none = header("");
    s.FillForm(frm, none, u"Cliente", false);
    EXPECT_TRUE(log->empty());
    Fields one = header(R"(Edad exLong "" Long 5)");
    s.FillForm(frm, one, u"Cliente", false);
    EXPECT_EQ(foo->count("Let Text = \"5\""), 1);
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
    // A label is not read either: Nota stays Empty.
    EXPECT_EQ(values(row, {u"Nombre", u"Edad", u"Activo", u"Pais", u"Nota"}), "\"Luis\"45False1Empty");
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
    for_each_case("ReadBack", [&](const std::string& where, const auto& row) {
        auto selected = make_ref<Fake>(u"Object", "item", log);
        const bool none = row[0] == "Null";
        selected->props = {{"Key", none ? u"" : data(row[0])}, {"Text", none ? u"" : data(row[1])}};
        combo->props["SelectedItem"] = none ? Variant::nothing() : Variant(selected);
        for (int i = 0; i < 3; ++i) fake(options->kid("Buttons").items->at(i).object()).props["Value"] = i == number<int>(row[2]);
        Fields row_read = customer();
        const auto pais = item(*row_read, u"Pais");
        pais->let_DataType(exText);
        if (row[3] != "Empty") pais->let_DefaultValue(data(row[3]));
        s.FillCeldosForm(frm, row_read, u"");
        EXPECT_EQ(props(*pais, "Value,Description,Updated") + " " + values(row_read, {u"Edad"}), row[4]) << where;
    });
}

TEST_F(ServiceForms, PaintFormKeepsDesignersColours) {
    s.let_BackColor(255);
    const Log log = std::make_shared<std::vector<std::string>>();
    std::vector<Ref<Fake>> controls;
    std::vector<std::string> expected;
    for_each_case("PaintForm", [&](const std::string&, const auto& row) {
        // Labels of their own: no label begins another.
        controls.push_back(control(automation::utf8_to_utf16(row[0]).c_str(), "c" + std::to_string(10 + controls.size()), log));
        controls.back()->props.insert({{"BackColor", number<int32_t>(row[1])}, {"ForeColor", number<int32_t>(row[2])},
                                       {"BackStyle", number<int32_t>(row[3])}});
        expected.emplace_back(row[4]);
    });
    Control frm = form(controls, log);
    s.PaintForm(frm);
    EXPECT_EQ(writes(fake(frm), "frm"), "BackColor = 255; ForeColor = 8735488");
    for (size_t i = 0; i < controls.size(); ++i) {
        const std::string label = "c" + std::to_string(10 + i);
        EXPECT_EQ(writes(*controls[i], label), expected[i]) << label << " " << render(controls[i]->props["Name"]);
    }
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
    for_each_case("ExecFillGrid", [&](const std::string& where, const auto& row) {
        auto grid = make_ref<Fake>(u"SSDBGrid", "grid");
        Fake& columns = holder(*grid, "Columns", "cols", 0);
        for (const char* label : {"c0", "c1"}) add(columns, label);
        data_access(true, matrix({{1, u"a"}, {2, Variant::null()}}), fields_in(row[0]), number<int32_t>(row[1]));
        Fields parameters;
        s.ExecFillGrid(grid, u"Select", 0, 0, u"!", parameters);
        EXPECT_EQ(grid->lines(), row[2]) << where;
    });
}

}  // namespace
}  // namespace celdo::services
