#pragma once
// Script doubles of host controls made to look like the controls they stand for (tests only).
// A VBScript class under Wine has no type information and no optional parameters, and a
// property of it that is given arguments does not hand them to the default member of its
// value; real ActiveX controls have all three, and the services rely on them.

#include <string>

#include "automation/object.hpp"

namespace celdo::tests::probe {

// Set by the probe's COM server (DisguiseCom.cpp): a COM object with type information named
// `type_name` that pads short calls with omitted arguments and indexes what a property returns,
// as a control does. Null in the native build, where no test disguises a double.
using DisguiseMaker = automation::Ref<automation::Object> (*)(automation::Object& target,
                                                              const std::u16string& type_name);
extern DisguiseMaker platform_disguise;

}  // namespace celdo::tests::probe
