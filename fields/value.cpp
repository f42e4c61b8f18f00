// The field's value: validated, coerced to the data type, stored with its old value, and
// announced by the change event.
#include <cmath>

#include "automation/clock.hpp"
#include "automation/convert.hpp"
#include "automation/error.hpp"
#include "automation/language.hpp"
#include "automation/operators.hpp"
#include "automation/recognize.hpp"
#include "automation/textops.hpp"
#include "collections/clsCeldos.hpp"
#include "fields/clsCeldo.hpp"
#include "fields/data_types.hpp"
#include "fields/errors.hpp"
#include "fields/value_rules.hpp"
#include "xml/text.hpp"

namespace celdo::fields {

using automation::Currency;
using automation::Variant;
using automation::VarType;
namespace lang = automation::lang;

// ------------------------------------------------------------------------------- coercion

namespace {

// The words that stand for True and False when a field reads Booleans and Bytes from text,
// tested in this order (so "false" answers at its first pair).
std::optional<bool> truth_word(const Variant& w) {
    if (!w.is_string()) return std::nullopt;
    const std::u16string& t = w.as_string();
    using automation::equal_text;
    if (equal_text(t, u"yes") || equal_text(t, u"si")) return true;
    if (equal_text(t, u"No") || equal_text(t, u"false")) return false;
    if (equal_text(t, u"verdadero") || equal_text(t, u"sí")) return true;
    if (equal_text(t, u"false") || equal_text(t, u"falso")) return false;
    return std::nullopt;
}

std::u16string text_of(const Variant& w) { return w.is_null() ? std::u16string() : automation::to_string(w); }

}  // namespace

std::u16string remove_chars(std::u16string_view text, std::u16string_view characters) {
    std::u16string out(text);
    for (char16_t c : characters) {
        const char16_t upper = automation::upper_char(c);
        std::erase_if(out, [&](char16_t x) { return automation::upper_char(x) == upper; });
    }
    return out;
}

bool comma_decimals(std::u16string_view format) {
    size_t points = 0, commas = 0;
    for (char16_t c : format) {
        points += c == u'.';
        commas += c == u',';
    }
    return points <= commas;
}

Variant numeric_text(const Variant& w, const clsCeldo& field, bool currency_sign) {
    const std::u16string text = text_of(w);
    const size_t point = text.find(u'.');
    // The first point at the very end (or no text at all) reads as 0: "5." is 0, deliberately.
    if ((point == std::u16string::npos ? 0 : point + 1) == text.size()) return Variant(int16_t{0});
    if (text.find(u'%') != std::u16string::npos) {
        const std::u16string number = xml::remove_all(xml::replace_all(text, u",", u".", true), u"%");
        return Variant(automation::to_double(Variant(number)) / 100);
    }
    if (currency_sign && text.find(u'$') != std::u16string::npos) {
        // The field's format says which of "." and "," groups thousands: the one it has more of.
        const std::u16string cleaned =
            xml::replace_all(text, comma_decimals(field.get_Format()) ? u"$," : u"$.", u"", true);
        return field.Redondear(Variant(cleaned), field.get_Redondeo());
    }
    return field.Redondear(w, field.get_Redondeo());
}

// A value too large for the type fails in its conversion with that conversion's own error
// (Overflow, 6), and nothing is stored.
Variant clsCeldo::coerce(Variant w) const {
    const DataTypeFacts& facts = facts_of(data_type_);
    switch (facts.coercion) {
    case Coercion::Byte:
        if (lang::IsNumeric(w)) return Variant(automation::to_byte(w));
        if (auto word = truth_word(w)) return Variant(static_cast<uint8_t>(*word ? 255 : 0));
        return w;
    case Coercion::Boolean:
        if (lang::IsNumeric(w)) return Variant(automation::to_bool(w));
        if (auto word = truth_word(w)) return Variant(*word);
        return w;
    case Coercion::Integer: return Variant(automation::to_integer(Redondear(w, rounding_)));
    case Coercion::Long: return Variant(automation::to_long(Redondear(w, rounding_)));
    case Coercion::Currency: return Variant(automation::to_currency(numeric_text(w, *this, true)));
    case Coercion::Single: return Variant(automation::to_single(numeric_text(w, *this, false)));
    case Coercion::Double: return Variant(automation::to_double(numeric_text(w, *this, true)));
    case Coercion::Decimal: {
        const Variant cleaned(remove_chars(text_of(w), u"$,+()"));
        return Variant(lang::Val(numeric_text(cleaned, *this, true)));
    }
    case Coercion::Text: {
        Variant t = lang::Trim(w);
        if (!lang::Trim(Variant(get_Format())).as_string().empty()) t = lang::Trim(Variant(remove_chars(text_of(t), u"$,+()")));
        return upper_case_ ? lang::UCase(t) : t;
    }
    case Coercion::Char: {
        Variant t = w;
        if (!lang::Trim(Variant(get_Format())).as_string().empty()) t = lang::LTrim(Variant(remove_chars(text_of(t), u"$,+()")));
        return upper_case_ ? lang::UCase(t) : t;
    }
    case Coercion::Date: return date_text(w);
    case Coercion::Keep: return w;
    }
    return w;
}

Variant date_text(const Variant& w) {
    // A date and time joined by "T" (ISO 8601) is read with a blank instead, unless the text
    // holds the month abbreviation OCT, whose T belongs to it.
    if (w.is_null()) return w;
    const std::u16string text = automation::to_string(w);
    if (automation::upper_case(text).find(u"OCT") != std::u16string::npos) return w;
    return Variant(xml::replace_all(text, u"T", u" "));
}

// ----------------------------------------------------------------------------------- value

void clsCeldo::refuse_value() const {
    std::u16string description = u"Tipo de dato no valido para : " + get_Caption();
    if (!source_name_.empty()) description += u" (" + source_name_ + u")";
    throw automation::AutomationError(kObjectError, u"Celdo_" + name_, description);
}

void clsCeldo::let_Value(const Variant& given) {
    Variant v = automation::value_of(given);
    if (v.is_empty()) {
        value_ = Variant();
        old_value_ = Variant();
        return;
    }
    if (!validate(v)) refuse_value();
    if (v.is_null() && !required_) v = get_DefaultValue();
    store(coerce(std::move(v)));
}

void clsCeldo::store(Variant w) {
    if (value_.is_empty()) {
        value_ = w;
        old_value_ = std::move(w);
        changed();
        return;
    }
    if (value_.is_null()) {
        value_ = std::move(w);
        changed();
        return;
    }
    bool differs = true;
    switch (facts_of(data_type_).change) {
    case Change::Text:
        // A change of letter case alone is no change.
        differs = !automation::equal_text(text_of(value_), text_of(w));
        break;
    case Change::Always: break;
    case Change::Variant:
        // Values that cannot be compared (arrays) count as changed.
        differs = automation::resume_with(true, [&] { return automation::compare(value_, w) != automation::Ordering::Equal; });
        break;
    }
    if (!differs) return;
    value_ = std::move(w);
    changed();
}

void clsCeldo::set_Value(const Variant& value) {
    // Stored as the reference it is; on a field that held nothing it is also what was loaded.
    if (value_.is_empty()) old_value_ = value;
    value_ = value;
    changed();
}

Variant clsCeldo::get_Value() const {
    if (!value_.is_null()) return value_;
    switch (facts_of(data_type_).null_value) {
    case NullValue::Empty: return Variant();
    case NullValue::False: return Variant(false);
    case NullValue::Zero: return Variant(int16_t{0});
    case NullValue::EmptyText: return Variant(u"");
    case NullValue::Now: return lang::Now();
    case NullValue::One: return Variant(int16_t{1});
    case NullValue::ThisYear: return Variant(static_cast<int16_t>(lang::Year(lang::Now())));
    case NullValue::NewFields: return Variant(automation::make_ref<collections::clsCeldos>());
    case NullValue::NewField: return Variant(automation::make_ref<clsCeldo>());
    }
    return Variant();
}

namespace {

bool is_date_word(const Variant& v) {
    if (!v.is_string()) return false;
    const std::u16string& t = v.as_string();
    return automation::equal_text(t, u"Date()") || automation::equal_text(t, u"Now()") ||
           automation::equal_text(t, u"Time()");
}

}  // namespace

Variant resolve_date_word(const Variant& v) {
    const std::u16string& t = v.as_string();
    if (automation::equal_text(t, u"Date()")) return lang::Today();
    if (automation::equal_text(t, u"Now()")) return lang::Now();
    return lang::Time();
}

void clsCeldo::let_DefaultValue(const Variant& given) {
    const Variant value = automation::value_of(given);
    if (facts_of(data_type_).accepts_date_words && is_date_word(value)) {
        default_value_ = value;
        return;
    }
    Variant candidate = value;
    if (validate(candidate)) default_value_ = value;
}

Variant clsCeldo::get_DefaultValue() const {
    if (facts_of(data_type_).resolves_date_words && is_date_word(default_value_)) return resolve_date_word(default_value_);
    return default_value_;
}

void clsCeldo::Initialize(const Variant& vValue) {
    if (vValue.is_missing()) {
        value_ = Variant();
        old_value_ = Variant();
        return;
    }
    let_Value(vValue);
    old_value_ = value_;
}

void clsCeldo::EstablerceDefault(const Variant& vValue) {
    if (!automation::equal_text(text_of(automation::value_of(vValue)), text_of(get_Value()))) let_Value(vValue);
    default_value_ = value_;
    old_value_ = value_;
}

void clsCeldo::SetNew() {
    value_ = Variant();
    value_ = get_DefaultValue();
    old_value_ = value_;
}

void clsCeldo::Clear() {
    // Without a default the value state simply empties; a default is assigned as a value would
    // be, and on a field holding a value only when it is acceptable.
    const Variant fallback = get_DefaultValue();
    if (fallback.is_empty()) {
        value_ = Variant();
        old_value_ = Variant();
        return;
    }
    if (value_.is_empty()) {
        let_Value(fallback);
        return;
    }
    Variant candidate = fallback;
    if (validate(candidate)) let_Value(fallback);
}

void clsCeldo::Undo() {
    value_ = old_value_;
    changed();
}

void clsCeldo::cancel_update() { value_ = old_value_; }

void clsCeldo::let_Updated(bool flag) { old_value_ = flag ? value_ : Variant(); }

bool clsCeldo::get_Updated() const {
    switch (facts_of(data_type_).updated) {
    case Compare::Never: return false;
    case Compare::Text: return !automation::equal_text(text_of(value_), text_of(old_value_));
    case Compare::Image:
        // An image kept by path (a row source names where) is compared by that path's text.
        if (!row_source_.empty()) return !automation::equal_text(text_of(value_), text_of(old_value_));
        [[fallthrough]];
    case Compare::Variant:
        if (value_.is_null() || old_value_.is_null()) return value_.is_null() != old_value_.is_null();
        if (value_.is_object() || old_value_.is_object()) return !(value_ == old_value_);
        return automation::resume_with(
            true, [&] { return automation::compare(value_, old_value_) != automation::Ordering::Equal; });
    }
    return false;
}

}  // namespace celdo::fields
