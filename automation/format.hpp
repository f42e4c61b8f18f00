#pragma once
// The language's Format function.

#include <string_view>

#include "automation/locale.hpp"
#include "automation/variant.hpp"

namespace celdo::automation {

enum class FirstDayOfWeek { Sunday = 1, Monday, Tuesday, Wednesday, Thursday, Friday, Saturday };
enum class FirstWeekOfYear { January1 = 1, FirstFourDays, FirstFullWeek };

// Format(value, format):
//  * no format: the value as text (CStr), Null stays Null, Empty gives "";
//  * named formats: General Number, Currency, Fixed, Standard, Percent, Scientific, Yes/No,
//    True/False, On/Off, General Date, Long Date, Medium Date, Short Date, Long Time,
//    Medium Time, Short Time;
//  * number formats of up to four sections (positive; negative; zero; Null) with 0 # . , %
//    E+ E- e+ e-, scaling commas, literals, "quoted text" and \ escapes;
//  * date formats with d dd ddd dddd ddddd dddddd w ww m mm mmm mmmm q y yy yyyy h hh n nn s ss
//    ttttt c AM/PM am/pm A/P a/p AMPM / :, in any letter case, m after an hour read as minutes;
//  * text formats with @ & < > ! and a second section for Null and empty text.
// Numeric text is formatted as a number and date text as a date when the format asks for one.
Variant format(const Variant& value, std::u16string_view format = {},
               FirstDayOfWeek first_day = FirstDayOfWeek::Sunday,
               FirstWeekOfYear first_week = FirstWeekOfYear::January1,
               const Locale& locale = Locale::current());

}  // namespace celdo::automation
