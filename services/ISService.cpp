#include "services/ISService.hpp"

#include <array>

#include "automation/convert.hpp"
#include "automation/error.hpp"
#include "automation/format.hpp"
#include "automation/language.hpp"
#include "automation/operators.hpp"
#include "services/clipboard.hpp"
#include "services/service_support.hpp"

namespace celdo::services {

using automation::AutomationError;
using automation::LateBound;
using automation::Ordering;
using automation::StdError;
using automation::Variant;
namespace lang = automation::lang;

namespace {

// The pieces of a tag end with this character, which GetTag looks for; LetTag deliberately
// looks for the number's digits instead (see LetTag).
constexpr char16_t kTagSeparator = u'\u00BB';
constexpr std::u16string_view kLetTagSeparator = u"187";

// Type names of the controls that the form operations bind, as TypeName reports them: the
// platform's input controls, the host's own composite input controls, and the display-only
// ones that show a field's caption or picture.
constexpr std::array<std::u16string_view, 17> kControlTypes = {
    u"TextBox", u"RichTextBox", u"ListBox", u"ComboBox", u"CheckBox", u"MaskEdBox", u"ImageCombo", u"SSDBOptSet",
    u"DTPicker", u"txt", u"msk", u"txtFnd", u"icbo", u"dtp", u"Label", u"Image", u"PictureBox",
};

}  // namespace

namespace {

Variant no_picture_format(const std::u16string& file) {
    if (file.empty()) return Variant::nothing();
    throw AutomationError(481, automation::kComponentName, u"Invalid picture");
}

PictureLoader installed_pictures = &no_picture_format;

}  // namespace

void install_picture_loader(PictureLoader loader) noexcept { installed_pictures = loader ? loader : &no_picture_format; }

void ISService::use_pictures(PictureLoader loader) noexcept { pictures_ = loader ? loader : &no_picture_format; }

ISService::ISService()
    : cell_back_color_(0xFFDACC), clipboard_(&system_clipboard()), pictures_(installed_pictures) {
    let_ForeColor(0x854B00);
    let_BackColor(0xFFFFFF);
}

std::u16string ISService::get_CustomFormat() const {
    LateBound ex(ex_);
    LateBound evaluator(ex.get(u"Evaluador"));
    // A date picker's custom format reads "M" as month and "m" as minute.
    return automation::to_string(evaluator.call(u"ReplaceString", {ex.get(u"FormatShowDate"), u"m", u"M"}));
}

Variant ISService::nvl(const Variant& varValue, const Variant& varDefault) const {
    return varValue.is_null() ? varDefault : varValue;
}

std::u16string ISService::BuildFormat(const Variant& vData, const std::u16string& vFormat) const {
    return build_format(vData, vFormat);
}

Variant ISService::MoveSpin(const Variant& Valor, const Variant& LimInf, const Variant& LimSub,
                            const Variant& Incremento) const {
    for (const Variant* v : {&Valor, &LimInf, &LimSub, &Incremento}) {
        if (!lang::IsNumeric(*v)) return Valor;
    }
    // LimInf is the ceiling that positive steps reach and LimSub the floor of negative ones:
    // the names read the other way round, and hosts pass them so.
    Variant moved = automation::add(Valor, Incremento);
    if (automation::compare(Variant(0), Incremento) == Ordering::Greater) {
        return automation::compare(LimSub, moved) == Ordering::Greater ? LimSub : moved;
    }
    return automation::compare(LimInf, moved) == Ordering::Less ? LimInf : moved;
}

void ISService::FindItemData(int32_t vlngID, Object& rctrCombo) const {
    LateBound list(rctrCombo);
    const int16_t last = list_last_index(list);
    for (int16_t i = 0; i <= last; ++i) {
        if (automation::compare_to_typed(list.get(u"ItemData", {i}), Variant(vlngID)) == Ordering::Equal) {
            list.let(u"ListIndex", {i});
            return;
        }
    }
    list.let(u"ListIndex", {int16_t{-1}});
}

void ISService::FindListIndex(const std::u16string& vstrID, Object& rctrCombo) const {
    LateBound list(rctrCombo);
    const int16_t last = list_last_index(list);
    for (int16_t i = 0; i <= last; ++i) {
        // Selecting each item before comparing is deliberate: hosts react to the selection
        // events of every item passed.
        list.let(u"ListIndex", {i});
        const Variant shown = list.value();
        if (automation::compare_to_typed(shown, Variant(vstrID), automation::CompareMode::Text) == Ordering::Equal)
            return;
    }
    list.let(u"ListIndex", {int16_t{-1}});
}

std::u16string ISService::GetTag(const std::u16string& vstrTag, uint8_t vbytIndice) const {
    const std::u16string separator(1, kTagSeparator);
    int count = 0;
    size_t position = 1, start = 0;
    for (;;) {
        const size_t found = instr(position, vstrTag, separator);
        if (found == 0) break;
        start = position;
        position = found + 1;
        if (++count == vbytIndice) break;
    }
    if (count != vbytIndice || vstrTag.empty()) return {};
    return vstrTag.substr(start - 1, position - start - 1);
}

std::u16string ISService::LetTag(const std::u16string& vstrTag, uint8_t vbytIndice,
                                 const std::u16string& vstrNewValue) const {
    // Kept as hosts rely on it: the pieces are found by the text "187", not by the character
    // 187 that GetTag reads, and the search moves on by one character after each hit.
    int count = 0;
    int32_t position = 1, start = 0;
    size_t found = 0;
    do {
        found = instr(static_cast<size_t>(position), vstrTag, std::u16string(kLetTagSeparator));
        if (found > 0) {
            start = position;
            position = static_cast<int32_t>(found) + 1;
            ++count;
        }
    } while (count < vbytIndice && found > 0);
    if (count != vbytIndice) return vstrTag;
    // With nothing found for index 0 these are the language's own invalid calls (error 5).
    const Variant tag(vstrTag);
    return automation::to_string(lang::Left(tag, start - 1)) + vstrNewValue +
           automation::to_string(lang::Mid(tag, position - 1));
}

// A form control is told from other objects by two things: its type name is one the form
// operations know, and it answers to both Name and Parent, the members every control placed on
// a host form has from its container (a field, a row or a list item has no Parent). Members
// are only looked up, never called, so asking has no effect on the object.
bool ISService::IsControl(Variant& ctrControl) const {
    if (!ctrControl.is_object() || !ctrControl.as_object()) return false;
    const std::u16string type = ctrControl.as_object()->type_name();
    bool known = false;
    for (std::u16string_view name : kControlTypes) known = known || name == type;
    if (!known) return false;
    LateBound control(ctrControl);
    return control.has(u"Name") && control.has(u"Parent");
}

// ---- The data-access object ---------------------------------------------------------------------

bool ISService::connected() const {
    LateBound ex(ex_);
    return automation::to_bool(ex.get(u"HayConexion"));
}

Variant ISService::fetch(const std::u16string& query, fields::exTypeRs mode, int32_t& status, Fields& header,
                         int16_t options, Fields& parameters, int32_t& max_rows) const {
    LateBound ex(ex_);
    // Every argument goes by reference, as the data-access object declares them.
    Variant query_arg(query), mode_arg(static_cast<int32_t>(mode)), status_arg(status), header_arg = Variant::nothing(),
        options_arg(options), max_rows_arg(max_rows);
    Variant parameters_arg{automation::Ref<automation::Object>(parameters)};
    Variant data = ex.call(u"ExecFillArray", {automation::ByRef{query_arg}, automation::ByRef{mode_arg},
                                              automation::ByRef{status_arg}, automation::ByRef{header_arg},
                                              automation::ByRef{options_arg}, automation::ByRef{parameters_arg},
                                              automation::ByRef{max_rows_arg}});
    status = automation::to_long(status_arg);
    header = fields_in(header_arg);
    parameters = fields_in(parameters_arg);
    max_rows = automation::to_long(max_rows_arg);
    return data;
}

}  // namespace celdo::services
