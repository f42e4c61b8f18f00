#pragma once
// Dates written with the platform's date and time pictures (the locale's "M/d/yyyy",
// "h:mm:ss tt", ...), which the language uses for CStr and the named date formats.

#include <string>
#include <string_view>

#include "automation/locale.hpp"
#include "automation/variant.hpp"

namespace celdo::automation {

std::u16string format_date_picture(Date value, std::u16string_view picture, const Locale& locale);

}  // namespace celdo::automation
