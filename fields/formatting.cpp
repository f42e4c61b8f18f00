// Formatting and rounding: the display format, the Spanish type name, the display width, and
// Redondear.
#include <cmath>

#include "automation/convert.hpp"
#include "automation/error.hpp"
#include "automation/language.hpp"
#include "fields/clsCeldo.hpp"
#include "fields/data_types.hpp"
#include "fields/errors.hpp"

namespace celdo::fields {

using automation::Variant;
using automation::VarType;

namespace {
// Positive; negative in parentheses; zero as 0.
constexpr char16_t kNumberFormat[] = u"###,###,###,###,##0;(###,###,###,###,##0);0";
}  // namespace

std::u16string clsCeldo::get_Format() const {
    if (!format_.empty()) return format_;
    return facts_of(data_type_).number_format_default ? kNumberFormat : u"";
}

void clsCeldo::let_Format(const std::u16string& value) {
    if (facts_of(data_type_).numeric_format && value.find(u'-') != std::u16string::npos)
        throw automation::AutomationError(kFormatError, automation::kComponentName, u"Formato no valido");
    format_ = value;
}

Variant clsCeldo::get_DataTypeName() const {
    const char16_t* name = facts_of(data_type_).name;
    return name ? Variant(name) : Variant();
}

int32_t clsCeldo::get_DefaultDisplaySize() const {
    const int32_t size = facts_of(data_type_).display_size;
    return size == kFieldSize ? get_Size() : size;
}

Variant clsCeldo::Redondear(const Variant& Valor, int16_t Length) const {
    if (Length >= 0) return automation::lang::Round(Valor, Length);
    // To a multiple of 10^|Length|, ties to even as Round does, keeping the numeric subtype
    // (text becomes Double).
    const Variant value = automation::value_of(Valor);
    if (value.is_null()) return value;
    const double scale = std::pow(10.0, -Length);
    double rounded = automation::to_double(automation::lang::Round(Variant(automation::to_double(value) / scale))) * scale;
    if (!std::isfinite(rounded)) rounded = automation::to_double(value);  // a finite value stays finite
    const VarType keep = value.is_string() || value.is_empty() ? VarType::Double : value.type();
    return automation::change_type(Variant(rounded), keep);
}

}  // namespace celdo::fields
