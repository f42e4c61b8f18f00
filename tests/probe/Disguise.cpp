#include "tests/probe/Disguise.hpp"

#include <optional>
#include <span>
#include <utility>

#include "automation/error.hpp"
#include "automation/variant.hpp"

namespace celdo::tests::probe {

DisguiseMaker platform_disguise = nullptr;

namespace {

class ForwardingDisguise final : public automation::Object {
public:
    ForwardingDisguise(automation::Ref<automation::Object> target, std::u16string name)
        : target_(std::move(target)), name_(std::move(name)) {}

    std::u16string type_name() const override { return name_; }
    std::optional<int32_t> member_id(std::u16string_view name) override {
        if (!target_) return std::nullopt;
        return target_->member_id(name);
    }
    automation::Variant invoke(int32_t member, uint16_t call, std::span<automation::Argument> args) override {
        if (!target_) throw automation::AutomationError(automation::StdError::ObjectVariableNotSet);
        return target_->invoke(member, call, args);
    }
    void visit_references(automation::ReferenceVisitor& visitor) const override { visitor.visit(target_.get()); }
    void drop_references() override { target_ = nullptr; }

private:
    automation::Ref<automation::Object> target_;
    std::u16string name_;
};

}  // namespace

automation::Ref<automation::Object> forwarding_disguise(automation::Ref<automation::Object> target,
                                                        const std::u16string& type_name) {
    std::u16string name = type_name;
    if (!name.empty() && name[0] == u'_') name.erase(0, 1);
    if (name.empty()) name = u"Object";
    return automation::make_ref<ForwardingDisguise>(std::move(target), std::move(name));
}

}  // namespace celdo::tests::probe
