#pragma once
// The cells of the test tables (platform_record.tsv and the rule tables): values written as text,
// read into Variants, and Variants written back the same way, so that a table states a subtype
// with its value.

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include "automation/clock.hpp"
#include "automation/recognize.hpp"
#include "automation/text.hpp"
#include "automation/variant.hpp"

namespace celdo::testing {

using automation::Currency;
using automation::Date;
using automation::Variant;

// The year a date written *-mm-dd falls in; tables that use it pin the clock in it.
inline constexpr int kThisYear = 2026;

template <class T = double>
inline T number(std::string_view text) {
    T value{};
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

// "text" in UTF-8 with C escapes, \" and \uXXXX; each "." becomes `point` in the rows that ask for it.
inline std::u16string text_of(std::string_view quoted, std::u16string_view point) {
    std::u16string out;
    std::string plain;  // bytes since the last escape, decoded together
    const auto flush = [&] { out += automation::utf8_to_utf16(plain), plain.clear(); };
    for (size_t i = 1; i + 1 < quoted.size(); ++i) {
        const char c = quoted[i];
        if (c != '.' && c != '\\') {
            plain.push_back(c);
            continue;
        }
        flush();
        if (c == '.') out += point;
        else if (quoted[++i] == 'u') out.push_back(static_cast<char16_t>(std::stoi(std::string(quoted.substr(i + 1, 4)), nullptr, 16))), i += 4;
        else if (quoted[i] == '"' || quoted[i] == '\\') out.push_back(static_cast<char16_t>(quoted[i]));
        else out.push_back(u"\f\n\r\t\v"[std::string_view("fnrtv").find(quoted[i])]);
    }
    flush();
    return out;
}

// The cells of a line, split at `separator` outside quoted text.
inline std::vector<std::string_view> split_cells(std::string_view line, std::string_view separator) {
    std::vector<std::string_view> cells;
    bool quoted = false;
    size_t start = 0;
    for (size_t i = 0; i < line.size(); ++i) {
        if (line[i] == '"' && (i == 0 || line[i - 1] != '\\')) quoted = !quoted;
        else if (!quoted && line.substr(i, separator.size()) == separator)
            cells.push_back(line.substr(start, i - start)), start = i + separator.size(), i = start - 1;
    }
    cells.push_back(line.substr(start));
    return cells;
}

// A data array from rows of cells: matrix({{a, b}, {c, d}}) has two columns and two rows.
inline Variant matrix(std::vector<std::vector<Variant>> rows) {
    auto cells = automation::Array::matrix(static_cast<int32_t>(rows.at(0).size()), static_cast<int32_t>(rows.size()));
    for (size_t r = 0; r < rows.size(); ++r)
        for (size_t c = 0; c < rows[r].size(); ++c) cells.at(static_cast<int32_t>(c), static_cast<int32_t>(r)) = rows[r][c];
    return cells;
}

// A quoted text, Empty, Null, "Type value", or a data array written as typed() writes it; dates
// as yyyy-mm-dd, *-mm-dd (this year), hh:mm:ss (day zero), a date and a time, or a serial.
inline Variant cell(std::string_view text, std::u16string_view point) {
    if (text.starts_with("Array(")) {
        std::vector<std::vector<Variant>> rows;
        for (std::string_view line : split_cells(text.substr(6, text.size() - 7), "; ")) {
            rows.emplace_back();
            for (std::string_view one : split_cells(line, ", ")) rows.back().push_back(cell(one, point));
        }
        return matrix(std::move(rows));
    }
    if (text.front() == '"') return Variant(text_of(text, point));
    if (text == "Empty" || text == "Null") return text == "Null" ? Variant::null() : Variant();
    const std::string_view type = text.substr(0, text.find(' ')), value = text.substr(type.size() + 1);
    if (type == "Boolean") return Variant(value == "True");
    if (type == "Byte") return Variant(static_cast<uint8_t>(number(value)));
    if (type == "Integer") return Variant(static_cast<int16_t>(number(value)));
    if (type == "Long") return Variant(static_cast<int32_t>(number(value)));
    if (type == "Double") return Variant(number(value));
    if (type == "Single") return Variant(number<float>(value));
    if (type == "Currency") {  // exactly: the whole part and four decimals as the scaled integer
        const size_t dot = std::min(value.find('.'), value.size());
        const std::string decimals = std::string(value.substr(std::min(dot + 1, value.size()))) + "0000";
        return Variant(Currency{std::stoll(std::string(value.substr(0, dot)) + decimals.substr(0, 4))});
    }
    if (value[0] != '*' && value.find(':') == std::string_view::npos && (value.size() < 5 || value[4] != '-'))
        return Variant(Date{number(value)});
    std::string when(value[0] == '*' ? std::to_string(kThisYear) + std::string(value.substr(1)) : value);
    int y = 1899, m = 12, d = 30, h = 0, n = 0, s = 0;
    if (when[2] == ':') std::sscanf(when.c_str(), "%d:%d:%d", &h, &n, &s);
    else std::sscanf(when.c_str(), "%d-%d-%d %d:%d:%d", &y, &m, &d, &h, &n, &s);
    return Variant(*automation::make_date(y, m, d, h, n, s));
}

// Calls `visit(line_number, cells)` for each row of a tab-separated table, past blank lines,
// "#" comments and the header line, which starts with `header`.
template <class F>
void for_each_row(std::string_view table, std::string_view header, F visit) {
    int line_number = 0;
    for (std::string_view rest = table; !rest.empty();) {
        const std::string_view line = rest.substr(0, rest.find('\n'));
        rest.remove_prefix(std::min(rest.size(), line.size() + 1));
        ++line_number;
        if (!line.empty() && line[0] != '#' && !line.starts_with(header)) visit(line_number, split_cells(line, "\t"));
    }
}

// A value as a cell writes it: "Type value", a text quoted, Empty, Null, an object by its class,
// or a data array (column, row) as Array(row; row) with ", " between a row's cells.
inline std::string typed(const Variant& v) {
    using automation::VarType;
    if (v.is_array() && v.as_array().dimensions() == 2) {
        const automation::Array& a = v.as_array();
        std::string out = "Array(";
        for (int32_t r = a.lbound(2); r <= a.ubound(2); ++r)
            for (int32_t c = a.lbound(1); c <= a.ubound(1); ++c)
                out += (c > a.lbound(1) ? ", " : r > a.lbound(2) ? "; " : "") + typed(a.at(c, r));
        return out + ")";
    }
    char digits[32];
    const auto shortest = [&](auto x) { return std::string(digits, std::to_chars(digits, digits + 32, x).ptr); };
    switch (v.type()) {
        case VarType::Empty: return "Empty";
        case VarType::Null: return "Null";
        case VarType::Boolean: return v.as_bool() ? "Boolean True" : "Boolean False";
        case VarType::Byte: return "Byte " + std::to_string(v.as_byte());
        case VarType::Integer: return "Integer " + std::to_string(v.as_integer());
        case VarType::Long: return "Long " + std::to_string(v.as_long());
        case VarType::Single: return "Single " + shortest(v.as_single());
        case VarType::Double: return "Double " + shortest(v.as_double());
        case VarType::Currency: return "Currency " + shortest(static_cast<double>(v.as_currency().scaled) / 10000.0);
        case VarType::Date: return "Date " + shortest(v.as_date().serial);
        case VarType::String: return "\"" + automation::utf16_to_utf8(v.as_string()) + "\"";
        case VarType::Object:
            return v.as_object() ? "Object " + automation::utf16_to_utf8(v.as_object()->type_name()) : "Nothing";
        default: return v.is_missing() ? "Missing" : automation::debug_string(v);
    }
}

}  // namespace celdo::testing
