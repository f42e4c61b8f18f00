#pragma once
// The one include of the field and collection tests: the model and the shared checks, with the
// names they use in scope, a field of a given type, and a recorder of its change events.

#include <gtest/gtest.h>

#include <span>

#include "automation/clock.hpp"
#include "automation/component.hpp"
#include "automation/convert.hpp"
#include "automation/recognize.hpp"
#include "automation/text.hpp"
#include "collections/clsCeldos.hpp"
#include "fields/clsCeldo.hpp"
#include "tests/collections/collection_support.hpp"
#include "tests/support/test_support.hpp"

namespace celdo::testing {

using namespace fields;
using automation::Currency;
using automation::make_ref;
using automation::Ref;
using automation::Variant;
using namespace collections;

inline Ref<clsCeldo> field_of(ExDataType type, std::u16string name = u"Campo") {
    auto f = make_ref<clsCeldo>();
    f->let_Name(name);
    f->let_DataType(type);
    return f;
}

// Counts the change events a field raises while attached.
class ChangeCounter final : public automation::Peer {
public:
    explicit ChangeCounter(automation::Component& field) : field_(field) { field_.attach_peer(this); }
    ~ChangeCounter() { field_.detach_peer(this); }
    void raise_event(int32_t, std::span<automation::Argument>) override { ++count; }
    int count = 0;

private:
    automation::Component& field_;
};

}  // namespace celdo::testing
