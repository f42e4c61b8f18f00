#pragma once
// What the filling operations share: reading a data array's shape, a header's fields, text
// pieces, and the formatting of one cell.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "automation/late_binding.hpp"
#include "automation/variant.hpp"
#include "collections/clsCeldos.hpp"
#include "fields/clsCeldo.hpp"

namespace celdo::services {

using Fields = automation::Ref<collections::clsCeldos>;
using Field = automation::Ref<fields::clsCeldo>;

// BuildFormat: the value formatted by `format` (Sunday first, the week of 1 January first),
// or as plain text when there is no format; Null without a format is the empty text.
std::u16string build_format(const automation::Variant& value, const std::u16string& format);

// InStr(start, text, find) with binary comparison: the position from 1, or 0.
size_t instr(size_t start, const std::u16string& text, const std::u16string& find);

// A list's last index, ListCount - 1, as the 16-bit counter the helpers walk with: a list
// of more items than that counter holds is an overflow (error 6).
int16_t list_last_index(automation::LateBound& list);

// What the host left in a by-reference field collection: a clsCeldos or Nothing; anything
// else is a type mismatch, as assigning it to a clsCeldos variable is.
Fields fields_in(const automation::Variant& value);

// The fields of a header in collection order (none for Nothing).
std::vector<Field> fields_of(const Fields& header);

// A header field shows a Null cell as the empty text: data that is missing is shown as
// missing, not as the field's default value (which belongs to new rows, and may be a clock
// expression such as Date() that would show today's date).
automation::Variant shown_for_null(const fields::clsCeldo& field);

// The text of a value for concatenation, as `&` reads it: Null is the empty text.
std::u16string text_of(const automation::Variant& value);

// The key of a list item, image-combo item, toolbar button or menu entry: controls reject
// numeric keys, so "K" goes before one; the empty text is no key (Missing).
automation::Variant element_key(const std::u16string& key);

// The key a host gave, from an element's key: the "K" that element_key put before a number is
// taken off ("K12" is "12", the bare "K" the empty key); any other key is as it stands.
std::u16string key_given(const std::u16string& key);

// Whether a list item's icon index is 0 or more, as a comparison reads it: Empty counts as 0
// and sets the icon; an index below 0 leaves it unset.
bool at_least_zero(const automation::Variant& index);

// A data array of two dimensions, or null.
const automation::Array* matrix_of(const automation::Variant& value);

}  // namespace celdo::services
