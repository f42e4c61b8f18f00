#pragma once
// The entity tables as the dialect defines them, applied row after row with the replace
// primitive: the reference the single-pass coders are checked and measured against.

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "xml/text.hpp"

namespace celdo::xml::reference {

using Row = std::pair<std::u16string_view, std::u16string_view>;

inline const std::vector<Row> kEncodeRows = {
    {u"&", u"&amp;"},     {u"<", u"&lt;"},      {u">", u"&gt;"},      {u"\"", u"&quot;"},   {u"'", u"&apos;"},
    {u"/", u"&frasl;"},   {u".", u"&#46;"},     {u"á", u"&aacute;"},  {u"é", u"&eacute;"},  {u"í", u"&iacute;"},
    {u"ó", u"&oacute;"},  {u"ú", u"&uacute;"},  {u"ñ", u"&ntilde;"},  {u"à", u"&agrave;"},  {u"è", u"&egrave;"},
    {u"ò", u"&ograve;"},  {u"[", u"&#91;"},     {u"]", u"&#93;"},     {u"!", u"&#33;"},
};
inline const std::vector<Row> kDecodeRows = {
    {u"&ensp;", u" "},    {u"&apos;", u"'"},    {u"&quot;", u"\""},   {u"&gt;", u">"},      {u"&lt;", u"<"},
    {u"&amp;", u"&"},     {u"&#46;", u"."},     {u"&aacute;", u"á"},  {u"&eacute;", u"é"},  {u"&iacute;", u"í"},
    {u"&oacute;", u"ó"},  {u"&uacute;", u"ú"},  {u"&ntilde;", u"ñ"},  {u"&agrave;", u"à"},  {u"&egrave;", u"è"},
    {u"&ograve;", u"ò"},  {u"&#91;", u"["},     {u"&#93;", u"]"},     {u"&#33;", u"!"},     {u"&frasl;", u"/"},
};

inline std::u16string row_by_row(std::u16string text, const std::vector<Row>& rows) {
    for (const auto& [find, replacement] : rows) text = replace_all(text, find, replacement);
    return text;
}

inline std::u16string encode(std::u16string text) { return row_by_row(std::move(text), kEncodeRows); }
inline std::u16string decode(std::u16string text) { return row_by_row(std::move(text), kDecodeRows); }

}  // namespace celdo::xml::reference
