#include "collections/clsRegistro.hpp"

#include "automation/convert.hpp"
#include "automation/enumerator.hpp"
#include "automation/error.hpp"

namespace celdo::collections {

using automation::AutomationError;
using automation::StdError;

void clsRegistro::Add(Row Celdos, const std::u16string& oKey) {
    std::optional<std::u16string_view> key;
    if (!oKey.empty()) key = oKey;
    if (rows_.insert(rows_.size(), std::move(Celdos), key) == KeyedList<Row>::Result::DuplicateKey)
        throw AutomationError(StdError::DuplicateKey);
}

void clsRegistro::AppendAs(Row Celdos, const std::u16string& oKey) {
    if (!Celdos) throw AutomationError(StdError::ObjectVariableNotSet);
    // Checked first, so that a refused key leaves no half-made copy behind.
    if (!oKey.empty() && rows_.find(oKey)) throw AutomationError(StdError::DuplicateKey);
    auto copy = automation::make_ref<clsCeldos>();
    const Variant none = Variant::missing();
    for (size_t i = 0; i < Celdos->size(); ++i) {
        automation::Ref<fields::clsCeldo> field(&Celdos->at(i));
        Variant no_value = none;
        copy->AppendAs(field, u"", no_value, none, none);
    }
    Add(std::move(copy), oKey);
}

size_t clsRegistro::position_of(const Variant& given) const {
    const Variant index = automation::value_of(given);
    if (index.is_string()) {
        if (auto at = rows_.position_of_key(index.as_string())) return *at;
        throw AutomationError(StdError::InvalidCall);
    }
    if (!index.is_number() && index.type() != automation::VarType::Boolean && index.type() != automation::VarType::Date)
        throw AutomationError(StdError::InvalidCall);
    const int64_t position = automation::to_long(index);
    if (position < 1 || position > static_cast<int64_t>(rows_.size())) throw AutomationError(StdError::InvalidCall);
    return static_cast<size_t>(position - 1);
}

clsRegistro::Row clsRegistro::get_Item(Variant& vntIndexKey) const { return rows_.at(position_of(vntIndexKey)); }

void clsRegistro::Remove(Variant& vntIndexKey) { rows_.erase(position_of(vntIndexKey)); }

automation::Ref<automation::Object> clsRegistro::get_NewEnum() const {
    std::vector<Variant> items;
    for (const Row& row : rows_.snapshot()) items.emplace_back(row);
    return automation::make_ref<automation::SnapshotEnumerator>(std::move(items));
}

}  // namespace celdo::collections
