// Whole forms: a row of fields written into the controls bound to it, read back from them, and
// the form painted in the service's colours. Controls are told apart by their type name.

#include <optional>

#include "automation/convert.hpp"
#include "automation/error.hpp"
#include "automation/language.hpp"
#include "automation/operators.hpp"
#include "services/ISService.hpp"
#include "services/service_support.hpp"

namespace celdo::services {

using automation::AutomationError;
using automation::LateBound;
using automation::Ordering;
using automation::resume_next;
using automation::resume_with;
using automation::Variant;
namespace lang = automation::lang;

namespace {

// The system colours a control shows until its designer picks one: the button face behind,
// the button text in front.
constexpr int32_t kButtonFace = static_cast<int32_t>(0x8000000F);
constexpr int32_t kButtonText = static_cast<int32_t>(0x80000012);
constexpr int32_t kWhite = 0xFFFFFF;

// The image-combo item that offers no value; its key is the "K" of an empty value.
constexpr std::u16string_view kNone = u"{Ninguno}";

enum class Family { Other, Label, TextBox, MaskedBox, RichText, List, CheckBox, DatePicker, Picture, ImageCombo, OptionSet };

Family family_of(std::u16string_view type) {
    static constexpr std::pair<std::u16string_view, Family> kFamilies[] = {
        {u"Label", Family::Label},          {u"TextBox", Family::TextBox},      {u"txt", Family::TextBox},
        {u"txtFnd", Family::TextBox},       {u"MaskEdBox", Family::MaskedBox},  {u"msk", Family::MaskedBox},
        {u"RichTextBox", Family::RichText}, {u"rtf", Family::RichText},         {u"ComboBox", Family::List},
        {u"ListBox", Family::List},         {u"CheckBox", Family::CheckBox},    {u"DTPicker", Family::DatePicker},
        {u"dtp", Family::DatePicker},       {u"Image", Family::Picture},        {u"PictureBox", Family::Picture},
        {u"ImageCombo", Family::ImageCombo}, {u"icbo", Family::ImageCombo},     {u"SSDBOptSet", Family::OptionSet},
    };
    for (const auto& [name, family] : kFamilies) {
        if (name == type) return family;
    }
    return Family::Other;
}

bool same(const Variant& a, const Variant& b) {
    return resume_with(false, [&] { return automation::compare_to_typed(a, b) == Ordering::Equal; });
}

// A text property that a control may lack or leave Null: the empty text then.
std::u16string text_property(LateBound& control, std::u16string_view member) {
    return resume_with(std::u16string(), [&] { return text_of(control.get(member)); });
}

// The length a text box allows: the size of a field whose size counts characters; no limit (0)
// for the others, whose text the field itself checks when the form is read back.
int32_t max_length(const fields::clsCeldo& field) {
    switch (field.get_DataType()) {
        case fields::exText: case fields::exChar: case fields::exExpresion: return field.get_Size();
        default: return 0;
    }
}

// Whether a list's items carry their identifier in ItemData: a plain list leaves every
// ItemData 0.
bool carries_item_data(LateBound& list) {
    const int16_t last = list_last_index(list);
    for (int16_t i = 0; i <= last; ++i) {
        if (!same(list.get(u"ItemData", {i}), Variant(0))) return true;
    }
    return false;
}

// An image combo's key for a value, by the "K" rule (key_given reads it back); the bare "K" is
// the empty value.
std::u16string combo_key(const Variant& value) {
    const std::u16string text = text_of(value);
    return lang::IsNumeric(Variant(text)) || text.empty() ? u"K" + text : text;
}

}  // namespace

// ---- Binding ------------------------------------------------------------------------------------

struct ISService::Bound {
    LateBound control;
    Family family;
    std::u16string type;
    Field field;
};

std::optional<ISService::Bound> ISService::bind(Variant& control, const Fields& row, const std::u16string& group) const {
    if (!IsControl(control)) return std::nullopt;
    LateBound bound(control);
    // Controls without data binding members bind by name, in the group without a name.
    std::u16string name = text_property(bound, u"DataField");
    if (name.empty()) name = automation::to_string(lang::Mid(Variant(text_property(bound, u"Name")), 4));
    if (text_property(bound, u"DataMember") != group || name.empty() || !row->Exist(name)) return std::nullopt;
    Variant key(name);
    const std::u16string type = control.as_object()->type_name();
    return Bound{std::move(bound), family_of(type), type, row->get_Item(key)};
}

std::vector<Variant> ISService::controls_of(Object& form) const {
    LateBound walked(form);
    return automation::items_of(walked.get(u"Controls"));
}

// ---- Filling --------------------------------------------------------------------------------------

// Every assignment is a step of its own: a control that lacks a member or refuses a value still
// gets the others, and the form goes on with the next control. Nothing reaches the caller: a
// form that cannot show a value is no reason to stop showing the rest.
void ISService::FillForm(Object& rfrm, Fields& objCeldos, const std::u16string& ClassName, bool Refresh) {
    if (!objCeldos || objCeldos->get_Count() < 1) return;
    std::vector<Variant> controls;
    if (!resume_next([&] { controls = controls_of(rfrm); })) return;
    for (Variant& control : controls) {
        std::optional<Bound> bound;
        resume_next([&] { bound = bind(control, objCeldos, ClassName); });
        if (!bound || (Refresh && !bound->field->get_Updated())) continue;
        fill_control(*bound, objCeldos);
    }
}

void ISService::fill_control(Bound& bound, const Fields& row) {
    LateBound& c = bound.control;
    fields::clsCeldo& field = *bound.field;
    const Variant value = field.get_Value();
    const auto step = [](auto&& f) { resume_next(f); };
    switch (bound.family) {
        case Family::Label:
            step([&] { c.let(u"Caption", {field.get_Caption()}); });
            break;
        case Family::TextBox:
        case Family::MaskedBox:
            step([&] { c.let(u"ForeColor", {fore_color_}); });
            step([&] { c.let(u"MaxLength", {max_length(field)}); });
            step([&] { c.let(u"Text", {text_of(value)}); });
            if (bound.type == u"txtFnd") {
                step([&] { c.let(u"Title", {text_of(find_row_source(field, field.get_GetRowSource(), row))}); });
            }
            break;
        case Family::RichText:
            step([&] { c.let(u"TextRTF", {text_of(value)}); });
            break;
        case Family::List: {
            step([&] { c.let(u"ForeColor", {fore_color_}); });
            Object list = c.ref();
            step([&] {
                if (automation::to_long(c.get(u"ListCount")) == 0) FillListDB(list, row_source_rows(field, row));
            });
            step([&] {
                if (!carries_item_data(c)) FindListIndex(text_of(value), list);
                else if (lang::IsNumeric(value) && !value.is_empty()) FindItemData(automation::to_long(value), list);
                else c.let(u"ListIndex", {int16_t{-1}});
            });
            break;
        }
        case Family::CheckBox:
            step([&] { c.let(u"ForeColor", {fore_color_}); });
            step([&] { c.let(u"Value", {same(nvl(value, Variant(0)), Variant(0)) ? int16_t{0} : int16_t{1}}); });
            break;
        case Family::DatePicker:
            if (bound.type == u"DTPicker") step([&] { c.let(u"CalendarForeColor", {fore_color_}); });
            if (!value.is_empty() && !value.is_null()) step([&] { c.let(u"Value", {value}); });
            break;
        case Family::Picture:
            step([&] { c.set(u"Picture", {pictures_(field.get_RowSource())}); });
            break;
        case Family::ImageCombo:
            fill_image_combo(bound, row, value);
            break;
        case Family::OptionSet:
            step([&] {
                LateBound buttons(c.get(u"Buttons"));
                const int32_t count = automation::to_long(buttons.get(u"Count"));
                for (int32_t i = 0; i < count; ++i) {
                    LateBound button(buttons.get(u"Item", {i}));
                    step([&] { button.let(u"Value", {same(button.get(u"OptionValue"), value)}); });
                }
            });
            break;
        case Family::Other:
            break;
    }
}

// The items come from the field's row source, keyed by its first column. A field that may be
// left without a value (not Required) is offered "{Ninguno}" first, keyed as the empty value.
// When no item stands for the value, none is shown selected, so that reading the form back
// leaves the field as it is rather than giving it the first item's value.
void ISService::fill_image_combo(Bound& bound, const Fields& row, const Variant& value) {
    LateBound& c = bound.control;
    fields::clsCeldo& field = *bound.field;
    const auto step = [](auto&& f) { return resume_next(f); };
    step([&] { c.let(u"ForeColor", {fore_color_}); });
    if (bound.type == u"icbo") step([&] { c.let(u"Caption", {field.get_Caption()}); });
    LateBound items;
    if (!step([&] { items = LateBound(c.get(u"ComboItems")); })) return;
    step([&] {
        if (automation::to_long(items.get(u"Count")) == 0) FillImageCombo(c.ref(), row_source_rows(field, row), true);
    });
    if (!field.get_Required()) step([&] { items.call(u"Add", {1, u"K", std::u16string(kNone)}); });
    const bool found = step([&] { LateBound(items.get(u"Item", {combo_key(value)})).let(u"Selected", {true}); });
    if (!found) step([&] { c.set(u"SelectedItem", {Variant::nothing()}); });
    step([&] { c.call(u"Refresh"); });
}

// ---- Reading back ---------------------------------------------------------------------------------

// Controls are read as the form is filled, each read a step of its own. A value the field
// refuses is not skipped quietly: the walk goes on so that every other value lands, and the
// field's own error (the first one) then reaches the caller, which must not save a row that
// lacks what the user typed.
void ISService::FillCeldosForm(Object& rfrm, Fields& objCeldos, const std::u16string& ClassName) {
    if (!objCeldos) return;
    std::vector<Variant> controls;
    if (!resume_next([&] { controls = controls_of(rfrm); })) return;
    std::optional<AutomationError> refused;
    for (Variant& control : controls) {
        std::optional<Bound> bound;
        resume_next([&] { bound = bind(control, objCeldos, ClassName); });
        if (!bound) continue;
        std::optional<Variant> read;
        std::optional<std::u16string> description;
        resume_next([&] { read = read_control(*bound, description); });
        if (!read) continue;
        try {
            bound->field->let_Value(*read);
            if (description) bound->field->let_Description(*description);
        } catch (const AutomationError& error) {
            if (!refused) refused = error;
        }
    }
    if (refused) throw *refused;
}

// Nothing read (nullopt) leaves the field as it is: a control on which nothing is chosen says
// nothing about the value, and may stand for a value its items do not offer.
std::optional<Variant> ISService::read_control(Bound& bound, std::optional<std::u16string>& description) {
    LateBound& c = bound.control;
    const fields::clsCeldo& field = *bound.field;
    // What choosing "no value" gives: the field's default, or Null. Empty would reset the field
    // as new, losing that the user cleared it.
    const auto no_value = [&] {
        const Variant fallback = field.get_DefaultValue();
        return fallback.is_empty() ? Variant::null() : fallback;
    };
    switch (bound.family) {
        case Family::TextBox: return c.get(u"Text");
        case Family::MaskedBox: return c.get(u"ClipText");
        case Family::RichText: return c.get(u"TextRTF");
        case Family::List: {
            // Without identifiers the text is read: the chosen item's, or what was typed into an
            // editable combo; neither is nothing chosen.
            if (!carries_item_data(c)) {
                const Variant text = c.get(u"Text");
                if (text_of(text).empty() && automation::to_long(c.get(u"ListIndex")) < 0) return std::nullopt;
                return text;
            }
            const Variant index = c.get(u"ListIndex");
            if (automation::to_long(index) < 0) return std::nullopt;
            return c.get(u"ItemData", {index});
        }
        case Family::CheckBox:
        case Family::DatePicker:
            return c.get(u"Value");
        case Family::ImageCombo: {
            const Variant selected = c.get(u"SelectedItem");
            if (!selected.is_object() || !selected.as_object()) return std::nullopt;
            LateBound item(selected);
            const std::u16string text = text_of(item.get(u"Text"));
            const std::u16string value = key_given(text_of(item.get(u"Key")));
            const bool none = text == kNone || value.empty();
            description = none ? std::u16string() : text;
            return none ? no_value() : Variant(value);
        }
        case Family::OptionSet: {
            LateBound buttons(c.get(u"Buttons"));
            const int32_t count = automation::to_long(buttons.get(u"Count"));
            for (int32_t i = 0; i < count; ++i) {
                LateBound button(buttons.get(u"Item", {i}));
                if (automation::to_bool(button.get(u"Value"))) return button.get(u"OptionValue");
            }
            return std::nullopt;
        }
        case Family::Label:
        case Family::Picture:
        case Family::Other:
            return std::nullopt;  // they show a field; nothing is typed into them
    }
    return std::nullopt;
}

// ---- Painting -------------------------------------------------------------------------------------

// Only controls that still show the system's button face are repainted, so that colours the
// form's designer chose by hand survive; option buttons, check boxes and grids always are.
// The first control that lacks a member ends the painting quietly.
void ISService::PaintForm(Object& rfrm) {
    resume_next([&] {
        LateBound form(rfrm);
        form.let(u"BackColor", {back_color_});
        form.let(u"ForeColor", {fore_color_});
        for (Variant& control : controls_of(rfrm)) {
            if (!control.is_object() || !control.as_object()) continue;
            const std::u16string type = control.as_object()->type_name();
            LateBound c(control);
            const auto face = [&] { return same(c.get(u"BackColor"), Variant(kButtonFace)); };
            if (type == u"TextBox" || type == u"MaskEdBox") {
                if (!face()) continue;
                c.let(u"BackColor", {cell_back_color_});
                c.let(u"ForeColor", {fore_color_});
            } else if (type == u"Label") {
                if (!face()) continue;
                if (!same(c.get(u"ForeColor"), Variant(kButtonText)) && !same(c.get(u"BackStyle"), Variant(1))) continue;
                c.let(u"BackStyle", {0});
                c.let(u"ForeColor", {fore_color_});
            } else if (type == u"CommandButton") {
                if (!face()) continue;
                c.let(u"BackColor", {cell_back_color_});
                c.let(u"MaskColor", {cell_back_color_});
            } else if (type == u"Frame") {
                if (!face()) continue;
                c.let(u"Appearance", {0});
                c.let(u"BackColor", {back_color_});
                c.let(u"ForeColor", {fore_color_});
            } else if (type == u"SSTab") {
                if (face()) c.let(u"BackColor", {back_color_});
            } else if (type == u"OptionButton" || type == u"CheckBox") {
                c.let(u"Appearance", {0});
                c.let(u"BackColor", {back_color_});
                c.let(u"ForeColor", {fore_color_});
            } else if (type == u"MSHFlexGrid" || type == u"MSFlexGrid") {
                // White whatever the service's BackColor: a grid's empty area is never tinted.
                c.let(u"BackColorBkg", {kWhite});
            }
        }
    });
}

}  // namespace celdo::services
