// Validation: which values a field's type accepts, and the required and value-list checks
// with their Spanish messages.
#include "automation/convert.hpp"
#include "automation/error.hpp"
#include "automation/language.hpp"
#include "automation/operators.hpp"
#include "automation/textops.hpp"
#include "fields/clsCeldo.hpp"
#include "fields/data_types.hpp"
#include "fields/errors.hpp"
#include "fields/value_rules.hpp"
#include "xml/text.hpp"

namespace celdo::fields {

using automation::Ordering;
using automation::Variant;
namespace lang = automation::lang;

namespace {

bool contains(const Variant& w, char16_t c) {
    return w.is_string() && w.as_string().find(c) != std::u16string::npos;
}

bool below_zero(const Variant& w) { return automation::compare_to_typed(w, Variant(0)) == Ordering::Less; }

bool is_boolean_word(const Variant& w) {
    if (!w.is_string()) return false;
    const std::u16string& t = w.as_string();
    using automation::equal_text;
    return equal_text(t, u"verdadero") || equal_text(t, u"True") || equal_text(t, u"False") || equal_text(t, u"Falso");
}

bool is_empty_text(const Variant& w) { return w.is_string() && w.as_string().empty(); }

// Numbers equal to one of `values`, as the language compares a Variant with a typed number.
bool numeric_in(const Variant& w, std::initializer_list<int> values) {
    if (!lang::IsNumeric(w)) return false;
    for (int v : values) {
        if (automation::compare_to_typed(w, Variant(v)) == Ordering::Equal) return true;
    }
    return false;
}

}  // namespace

bool clsCeldo::validate(Variant& w) const {
    if (w.is_null() && !required_) return true;
    const DataTypeFacts& facts = facts_of(data_type_);
    if (facts.validation == Validation::Unknown) {
        throw automation::AutomationError(kObjectError, u"Celdo_" + get_Caption(), u"Tipo de dato no válido");
    }
    // A run-time failure while judging (a text that cannot be compared) means "not acceptable".
    return automation::resume_with(false, [&]() -> bool {
        switch (facts.validation) {
        case Validation::Boolean:
            if (w.type() == automation::VarType::Boolean) return w.as_bool();  // False is refused, deliberately
            return is_boolean_word(w) || is_empty_text(w) || numeric_in(w, {0, 1, -1});
        case Validation::Byte: {
            if (is_boolean_word(w) || is_empty_text(w)) return true;
            const Variant number = w.type() == automation::VarType::Boolean ? Variant(automation::to_byte(w)) : w;
            if (!lang::IsNumeric(number)) return false;
            // The conversion decides, rounding first: "-0.5" is 0 and "255.5" overflows.
            (void)automation::to_byte(number);
            return true;
        }
        case Validation::Number:
        case Validation::PositiveInteger:
        case Validation::Year: {
            const bool positive = facts.validation != Validation::Number;
            if (lang::IsNumeric(w)) return !(positive && below_zero(w));
            if (contains(w, u'%')) return true;
            if (contains(w, u'$')) {
                const std::u16string rest =
                    xml::replace_all(w.as_string(), comma_decimals(get_Format()) ? u"$," : u"$.", u"", true);
                return lang::IsNumeric(Variant(rest));
            }
            if (w.is_string() && !w.as_string().empty() && w.as_string()[0] == u'.')
                return !(facts.validation == Validation::PositiveInteger && below_zero(w));
            return false;
        }
        case Validation::DateText: {
            if (w.is_null()) return true;
            const Variant text = date_text(w);
            if (lang::IsDate(text) || is_empty_text(w)) return true;
            if (w.is_string()) {
                const std::u16string& t = w.as_string();
                using automation::equal_text;
                if (equal_text(t, u"Date()") || equal_text(t, u"Now()") || equal_text(t, u"Time()")) {
                    w = resolve_date_word(w);
                    return true;
                }
            }
            return false;
        }
        case Validation::Time: return lang::IsDate(w);
        case Validation::DateOrNumber: return lang::IsDate(w) || lang::IsNumeric(w);
        case Validation::Always: return true;
        case Validation::Unknown: break;
        }
        return false;
    });
}

bool clsCeldo::Validate(const Variant& oValue) const {
    Variant w = oValue.is_missing() ? value_ : automation::value_of(oValue);
    return validate(w);
}

namespace {

// Cuts a value-list text at its first ";", or where there is none at its first ",": the
// trimmed item before, and the trimmed rest after (empty when neither occurs).
std::pair<std::u16string, std::u16string> cut_item(std::u16string_view text) {
    size_t at = text.find(u';');
    if (at == std::u16string_view::npos) at = text.find(u',');
    if (at == std::u16string_view::npos) return {std::u16string(automation::trim(text)), std::u16string()};
    return {std::u16string(automation::trim(text.substr(0, at))), std::u16string(automation::trim(text.substr(at + 1)))};
}

}  // namespace

std::vector<std::u16string> cut_list(std::u16string_view text) {
    std::vector<std::u16string> items;
    std::u16string rest(automation::trim(text));
    for (;;) {
        const bool last = rest.find(u';') == std::u16string::npos && rest.find(u',') == std::u16string::npos;
        auto [item, after] = cut_item(rest);
        items.push_back(std::move(item));
        if (last) break;
        rest = std::move(after);
    }
    return items;
}

Variant clsCeldo::ValidateRequired(std::u16string& Msg, exEdit) {
    // Any failure while checking ends the checks; the answer comes from the messages so far.
    automation::resume_next([&] {
        if (required_ && get_RowSourceType() == exValueList && !row_source_.empty()) {
            const Variant rows = get_GetRowSource();
            const Variant value = get_Value();
            const std::u16string text = value.is_null() ? std::u16string() : automation::to_string(value);
            // Every item is looked up afresh and reported on its own.
            for (const std::u16string& item : cut_list(text)) {
                bool found = false;
                if (rows.is_array()) {
                    const automation::Array& a = rows.as_array();
                    for (int32_t r = a.lbound(2); r <= a.ubound(2) && !found; ++r) {
                        const Variant& cell = a.at(a.lbound(1), r);
                        found = !cell.is_null() && automation::equal_text(automation::to_string(cell), item);
                    }
                }
                if (!found) {
                    Msg += u"[ " + item + u" ] no hace parte de la lista de valores del campo " + get_Caption() +
                           u". Escriba un valor valido en este campo.\r\n";
                }
            }
        } else {
            const DataTypeFacts& facts = facts_of(data_type_);
            const bool missing = facts.coercion == Coercion::Text || facts.coercion == Coercion::Char
                                     ? lang::Len(get_Value()) == Variant(0)
                                     : value_.is_null();
            if (required_ && missing) {
                Msg += u"El campo " + get_Caption() +
                       u" no puede contener un valor nulo. Escriba un valor en este campo.\r\n";
            }
        }
    });
    return Variant(Msg.empty());
}

}  // namespace celdo::fields
