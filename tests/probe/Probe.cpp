#include "tests/probe/Probe.hpp"

#include "automation/convert.hpp"
#include "automation/enumerator.hpp"
#include "automation/error.hpp"
#include "automation/late_binding.hpp"
#include "automation/textops.hpp"
#include "tests/probe/Disguise.hpp"

namespace celdo::tests::probe {

using automation::Variant;

DisguiseMaker platform_disguise = nullptr;

Variant Probe::get_Cell(int32_t column, int32_t row) const {
    auto it = cells_.find({column, row});
    return it == cells_.end() ? Variant() : it->second;
}

automation::Ref<automation::Object> Probe::get_Items() const {
    return automation::make_ref<automation::SnapshotEnumerator>(items_);
}

std::u16string Probe::Describe(int32_t size, int16_t position, const std::u16string& label,
                               const Variant& extra, ProbeMode mode, bool flag) const {
    std::u16string extra_text = extra.is_missing() ? u"Missing" : automation::to_string(extra);
    return u"Size=" + automation::to_string(Variant(size)) + u";Position=" +
           automation::to_string(Variant(position)) + u";Label=" + label + u";Extra=" + extra_text +
           u";Mode=" + automation::to_string(Variant(static_cast<int32_t>(mode))) +
           u";Flag=" + (flag ? u"True" : u"False");
}

void Probe::Tidy(std::u16string& text) const { text = std::u16string(automation::trim(text)); }

void Probe::Renew(automation::Ref<Probe>& target) const {
    auto fresh = automation::make_ref<Probe>();
    fresh->text_ = target ? u"renewed " + target->text_ : u"renewed nothing";
    target = fresh;
}

Variant Probe::Grid(int32_t columns, int32_t rows) const {
    automation::Array grid = automation::Array::matrix(columns, rows);
    for (int32_t c = 0; c < columns; ++c)
        for (int32_t r = 0; r < rows; ++r) grid.at(c, r) = Variant(c * 10 + r);
    return Variant(std::move(grid));
}

void Probe::Raise(int32_t number, const std::u16string& source, const std::u16string& description) const {
    throw automation::AutomationError(number, source, description);
}

namespace {
automation::Object& present(const automation::Ref<automation::Object>& target) {
    if (!target) throw automation::AutomationError(automation::StdError::ObjectVariableNotSet);
    return *target;
}
}  // namespace

Variant Probe::Call(automation::Ref<automation::Object> target, const std::u16string& member, Variant& argument) const {
    return automation::call(present(target), member, {automation::ByRef{argument}});
}

Variant Probe::Read(automation::Ref<automation::Object> target, const std::u16string& member) const {
    return automation::get(present(target), member);
}

std::u16string Probe::NameOf(automation::Ref<automation::Object> target) const { return present(target).type_name(); }

automation::Ref<automation::Object> Probe::Disguise(automation::Ref<automation::Object> target,
                                                    const std::u16string& type_name) const {
    if (!platform_disguise) throw automation::AutomationError(automation::StdError::InvalidCall);
    return platform_disguise(present(target), type_name);
}

void Probe::Ring(int32_t times) {
    for (int32_t i = 1; i <= times; ++i) {
        automation::Argument count{Variant(i)};
        raise_event(events::Probe::Rang, {&count, 1});
    }
}

}  // namespace celdo::tests::probe
