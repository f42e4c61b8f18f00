#pragma once
// The one include of the field and collection tests: the model and the shared checks, with the
// names they use in scope, and a field of a given type.

#include <gtest/gtest.h>

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

}  // namespace celdo::testing
