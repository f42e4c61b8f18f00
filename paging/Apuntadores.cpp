#include "paging/Apuntadores.hpp"

#include "automation/convert.hpp"
#include "automation/enumerator.hpp"
#include "automation/error.hpp"
#include "automation/textops.hpp"

namespace celdo::paging {

using automation::AutomationError;
using automation::StdError;
using automation::Variant;

namespace {

constexpr int32_t kInvalidPropertyValue = 380;

std::vector<std::u16string> names_of(const std::u16string& list) {
    std::vector<std::u16string> names;
    size_t start = 0;
    while (start <= list.size()) {
        size_t end = list.find(u',', start);
        if (end == std::u16string::npos) end = list.size();
        std::u16string name(automation::trim(std::u16string_view(list).substr(start, end - start)));
        if (!name.empty()) names.push_back(std::move(name));
        start = end + 1;
    }
    return names;
}

}  // namespace

void Apuntadores::let_PrimaryKey(const std::u16string& value) {
    primary_key_ = value;
    Clear();
}

void Apuntadores::let_MaxRows(int32_t value) {
    if (value < 1) throw AutomationError(kInvalidPropertyValue, automation::kComponentName, u"Invalid property value");
    max_rows_ = value;
}

// A new filter is a new result: the pages kept belong to the old one.
void Apuntadores::let_Filter(const std::u16string& value) {
    if (value == filter_ && !pages_.empty()) return;
    filter_ = value;
    Clear();
    requery(key_of(nullptr, u">"), Asked::Nothing);
}

// Listening starts before the old control is let go, so that a control whose events cannot be
// listened to leaves everything as it was.
void Apuntadores::set_Control(automation::Ref<automation::Object> value) {
    std::unique_ptr<automation::Subscription> listening = value ? value->listen(*this) : nullptr;
    listening_ = std::move(listening);
    control_ = std::move(value);
}

// A flex grid tells that the user entered a cell with EnterCell, a list view with ItemClick.
void Apuntadores::on_event(std::u16string_view name) {
    if (!automation::equal_text(name, u"EnterCell") && !automation::equal_text(name, u"ItemClick")) return;
    raise_event(events::Apuntadores::EnterCell);
}

Apuntadores::Fields Apuntadores::key_of(const Fields& row, const std::u16string& op) const {
    auto pk = automation::make_ref<collections::clsCeldos>();
    if (!row) return pk;
    std::vector<std::u16string> names = names_of(primary_key_);
    // Without a primary key every field of the row is its key.
    if (names.empty()) {
        for (size_t i = 0; i < row->size(); ++i) names.push_back(row->at(i).get_Name());
    }
    for (const std::u16string& name : names) {
        // A key field the row lacks would send the host a key it cannot use.
        if (!row->Exist(name)) throw AutomationError(StdError::InvalidCall);
        Variant key(name);
        const auto field = row->get_Item(key);
        auto copy = field->copy(u"", field->get_Value());
        copy->let_Operator(op);
        pk->Append(copy, Variant::missing(), Variant::missing(), u"");
    }
    return pk;
}

// The page goes where the last request said: after the current page (which it then becomes),
// or in place of the previous one, the pages after it dropped.
Apuntadores::Page Apuntadores::Add(Fields First, Fields Last, int32_t Rows, const std::u16string& Key) {
    // No rows came back: the end is reached, and there is no page to keep.
    if (!First != !Last) throw AutomationError(StdError::ObjectVariableNotSet);
    if (!First && !Last) {
        at_end_ = asked_ == Asked::Next;
        asked_ = Asked::Nothing;
        return nullptr;
    }
    at_end_ = false;
    auto page = automation::make_ref<Apuntador>();
    page->set_First(key_of(First, u">="));
    page->set_Last(key_of(Last, u">"));
    page->let_Rows(Rows);
    page->let_Key(Key);
    size_t keep = pages_.size();
    if (asked_ == Asked::Next) keep = current_;
    else if (asked_ == Asked::Previous) keep = current_ >= 2 ? current_ - 2 : 0;
    for (size_t i = keep; i < pages_.size(); ++i) pages_[i]->place(0);
    pages_.resize(keep);
    pages_.push_back(page);
    current_ = pages_.size();
    asked_ = Asked::Nothing;
    renumber();
    return page;
}

// Column c of the array is described by the header's field c + 1; the key fields of the first
// and last rows are read from it. No array, or one without rows, is a request that found none.
Apuntadores::Page Apuntadores::AddRows(const Variant& vData, Fields oHeader, const std::u16string& Key) {
    if (!oHeader) throw AutomationError(StdError::ObjectVariableNotSet);
    const automation::Array* cells =
        vData.is_array() && vData.as_array().dimensions() == 2 ? &vData.as_array() : nullptr;
    if (!cells && !vData.is_empty() && !vData.is_null() && !(vData.is_object() && !vData.as_object()))
        throw AutomationError(StdError::TypeMismatch);
    const int32_t rows = cells ? cells->ubound(2) - cells->lbound(2) + 1 : 0;
    if (rows <= 0) return Add(nullptr, nullptr, 0, Key);
    std::vector<std::u16string> names = names_of(primary_key_);
    const auto row_at = [&](int32_t r) {
        auto row = automation::make_ref<collections::clsCeldos>();
        for (int32_t c = 0; c <= cells->ubound(1) && c < oHeader->get_Count(); ++c) {
            Variant position(c + 1);
            const auto field = oHeader->get_Item(position);
            // Only the key's columns: the others are no business of paging, and a value one of
            // their fields refuses must not stop the page from being recorded.
            bool key = names.empty();
            for (const std::u16string& n : names) key = key || automation::equal_text(n, field->get_Name());
            if (key) row->Append(field->copy(u"", cells->at(c, r)), Variant::missing(), Variant::missing(), u"");
        }
        return row;
    };
    return Add(row_at(cells->lbound(2)), row_at(cells->ubound(2)), rows, Key);
}

bool Apuntadores::Avanzar() {
    if (at_end_) return false;
    if (current_ == 0) {
        requery(key_of(nullptr, u">"), Asked::Next);
        return true;
    }
    const Page& page = pages_[current_ - 1];
    // A page that was not full was the last one (a page recorded without its count is taken
    // as full).
    if (page->get_Rows() > 0 && page->get_Rows() < max_rows_) return false;
    requery(key_of(page->get_Last(), u">"), Asked::Next);
    return true;
}

bool Apuntadores::Retroceder() {
    if (current_ < 2) return false;
    at_end_ = false;
    requery(key_of(pages_[current_ - 2]->get_First(), u">="), Asked::Previous);
    return true;
}

void Apuntadores::requery(Fields pk, Asked asked) {
    asked_ = asked;
    automation::Argument args[] = {{Variant(automation::Ref<automation::Object>(pk)), false}};
    raise_event(events::Apuntadores::Requery, args);
}

size_t Apuntadores::position_of(const Variant& given) const {
    const Variant index = automation::value_of(given);
    if (index.is_string()) {
        for (size_t i = 0; i < pages_.size(); ++i) {
            if (automation::equal_text(pages_[i]->get_Key(), index.as_string()) && !index.as_string().empty()) return i;
        }
        throw AutomationError(StdError::InvalidCall);
    }
    if (!index.is_number()) throw AutomationError(StdError::InvalidCall);
    const int64_t position = automation::to_long(index);
    if (position < 1 || position > static_cast<int64_t>(pages_.size())) throw AutomationError(StdError::InvalidCall);
    return static_cast<size_t>(position - 1);
}

void Apuntadores::Remove(Variant& Index) {
    const size_t at = position_of(Index);
    pages_[at]->place(0);
    pages_.erase(pages_.begin() + static_cast<ptrdiff_t>(at));
    if (current_ > at + 1 || current_ > pages_.size()) --current_;
    renumber();
}

void Apuntadores::Clear() {
    for (const Page& p : pages_) p->place(0);
    pages_.clear();
    current_ = 0;
    asked_ = Asked::Nothing;
    at_end_ = false;
}

void Apuntadores::renumber() {
    for (size_t i = 0; i < pages_.size(); ++i) pages_[i]->place(static_cast<int32_t>(i + 1));
}

automation::Ref<automation::Object> Apuntadores::get_NewEnum() const {
    std::vector<Variant> items(pages_.begin(), pages_.end());
    return automation::make_ref<automation::SnapshotEnumerator>(std::move(items));
}

}  // namespace celdo::paging
