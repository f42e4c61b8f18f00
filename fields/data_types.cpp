#include "fields/data_types.hpp"

#include <array>

namespace celdo::fields {

namespace {

using V = Validation;
using C = Coercion;
using N = NullValue;
using Ch = Change;
using U = Compare;
constexpr bool Y = true, n = false;

// clang-format off
constexpr std::array kFacts = {
//  type               name                   round  size display     keep numf numdf validation          coercion      null          change      updated     datew  resolv expr
DataTypeFacts{exBoolean,         u"Booleano",           kKeep, 0,  6,          n, n, n, V::Boolean,         C::Boolean,  N::False,     Ch::Variant, U::Variant, n, n, n},
DataTypeFacts{exByte,            u"Byte",               0,     5,  6,          n, Y, n, V::Byte,            C::Byte,     N::Zero,      Ch::Variant, U::Variant, n, n, n},
DataTypeFacts{exInteger,         u"Entero",             0,     15, 14,         n, Y, n, V::Number,          C::Integer,  N::Zero,      Ch::Variant, U::Variant, n, n, n},
DataTypeFacts{exLong,            u"Entero Largo",       0,     15, 14,         n, Y, n, V::Number,          C::Long,     N::Zero,      Ch::Variant, U::Variant, n, n, n},
DataTypeFacts{exCurrency,        u"Moneda",             4,     30, 14,         n, Y, Y, V::Number,          C::Currency, N::Zero,      Ch::Variant, U::Variant, n, n, n},
DataTypeFacts{exSingle,          u"Simple",             8,     0,  14,         n, Y, n, V::Number,          C::Single,   N::Zero,      Ch::Variant, U::Variant, n, n, n},
DataTypeFacts{exDouble,          u"Doble",              8,     0,  14,         n, Y, n, V::Number,          C::Double,   N::Zero,      Ch::Variant, U::Variant, n, n, n},
DataTypeFacts{exFloat,           u"Flotante",           8,     0,  14,         n, Y, n, V::Number,          C::Decimal,  N::Zero,      Ch::Variant, U::Variant, n, n, n},
DataTypeFacts{exDecimal,         u"Decimal",            8,     0,  14,         n, Y, n, V::Number,          C::Decimal,  N::Empty,     Ch::Variant, U::Variant, n, n, n},
DataTypeFacts{exTimeStamp,       u"TimeStamp",          kKeep, 0,  10,         n, n, n, V::DateText,        C::Date,     N::Empty,     Ch::Variant, U::Variant, n, n, n},
DataTypeFacts{exDate,            u"Fecha",              kKeep, 5,  10,         n, n, n, V::DateText,        C::Date,     N::Empty,     Ch::Variant, U::Variant, Y, Y, n},
DataTypeFacts{exChar,            u"Caracter",           kKeep, 0,  kFieldSize, Y, n, n, V::Always,          C::Char,     N::EmptyText, Ch::Text,    U::Text,    n, n, n},
DataTypeFacts{exTime,            nullptr,               kKeep, 0,  10,         n, n, n, V::Time,            C::Keep,     N::Empty,     Ch::Variant, U::Variant, Y, Y, n},
DataTypeFacts{exText,            u"Texto",              kKeep, 0,  kFieldSize, Y, n, n, V::Always,          C::Text,     N::EmptyText, Ch::Text,    U::Text,    n, n, n},
DataTypeFacts{exMemo,            u"Bloque de Texto",    kKeep, 0,  14,         n, n, n, V::Always,          C::Keep,     N::Empty,     Ch::Text,    U::Variant, n, n, n},
DataTypeFacts{exDateNumber,      nullptr,               kKeep, 0,  10,         n, n, n, V::DateOrNumber,    C::Keep,     N::Empty,     Ch::Variant, U::Variant, n, n, n},
DataTypeFacts{exTimeNumber,      nullptr,               kKeep, 0,  10,         n, n, n, V::DateOrNumber,    C::Keep,     N::Empty,     Ch::Variant, U::Variant, n, n, n},
DataTypeFacts{exAutoNumeric,     nullptr,               0,     0,  14,         n, n, n, V::Number,          C::Keep,     N::Empty,     Ch::Variant, U::Variant, n, n, n},
DataTypeFacts{exDateTime,        nullptr,               kKeep, 5,  14,         n, n, n, V::DateText,        C::Date,     N::Now,       Ch::Variant, U::Variant, Y, Y, n},
DataTypeFacts{exBigInt,          nullptr,               0,     0,  14,         n, n, n, V::Unknown,         C::Keep,     N::Empty,     Ch::Variant, U::Variant, n, n, n},
DataTypeFacts{exSmallCurrency,   nullptr,               4,     0,  14,         n, n, Y, V::Unknown,         C::Keep,     N::Empty,     Ch::Variant, U::Variant, n, n, n},
DataTypeFacts{exExpresion,       u"Expresion",          kKeep, 0,  kFieldSize, Y, n, n, V::Always,          C::Keep,     N::EmptyText, Ch::Text,    U::Text,    n, n, Y},
DataTypeFacts{exPositeveInteger, u"PositeveInteger",    0,     0,  14,         n, Y, n, V::PositiveInteger, C::Integer,  N::One,       Ch::Variant, U::Variant, n, n, n},
DataTypeFacts{exgYear,           u"gYear",              kKeep, 0,  6,          n, Y, n, V::Year,            C::Integer,  N::ThisYear,  Ch::Variant, U::Variant, n, n, n},
DataTypeFacts{exdtmExpresion,    u"Date Expresion",     kKeep, 5,  10,         Y, n, n, V::Always,          C::Keep,     N::Empty,     Ch::Text,    U::Text,    n, Y, Y},
DataTypeFacts{exnumExpresion,    u"Numeric Expresion",  kKeep, 15, 14,         Y, n, Y, V::Always,          C::Keep,     N::Zero,      Ch::Text,    U::Text,    n, n, Y},
DataTypeFacts{exImagen,          nullptr,               kKeep, 0,  14,         n, n, n, V::Always,          C::Keep,     N::Empty,     Ch::Always,  U::Image,   n, n, n},
DataTypeFacts{exObject,          nullptr,               kKeep, 0,  14,         n, n, n, V::Always,          C::Keep,     N::Empty,     Ch::Always,  U::Never,   n, n, n},
DataTypeFacts{exClass,           nullptr,               kKeep, 0,  14,         n, n, n, V::Always,          C::Keep,     N::Empty,     Ch::Always,  U::Never,   n, n, n},
DataTypeFacts{exFields,          nullptr,               kKeep, 0,  14,         n, n, n, V::Always,          C::Keep,     N::NewFields, Ch::Variant, U::Variant, n, n, n},
DataTypeFacts{exField,           nullptr,               kKeep, 0,  14,         n, n, n, V::Always,          C::Keep,     N::NewField,  Ch::Variant, U::Variant, n, n, n},
DataTypeFacts{exAttribute,       nullptr,               kKeep, 0,  14,         n, n, n, V::Always,          C::Keep,     N::EmptyText, Ch::Variant, U::Variant, n, n, n},
};
// clang-format on

constexpr DataTypeFacts kUnknown{0, nullptr, kKeep, 0, 14, n, n, n, V::Unknown, C::Keep, N::Empty,
                                 Ch::Variant, U::Variant, n, n, n};

}  // namespace

const DataTypeFacts& facts_of(int32_t type) noexcept {
    for (const DataTypeFacts& f : kFacts) {
        if (f.type == type) return f;
    }
    return kUnknown;
}

}  // namespace celdo::fields
