// The field object and its metadata.
#include "fields/clsCeldo.hpp"

#include "automation/error.hpp"
#include "automation/textops.hpp"
#include "collections/clsCeldos.hpp"
#include "fields/data_types.hpp"
#include "fields/errors.hpp"

namespace celdo::fields {

using automation::make_ref;

clsCeldo::clsCeldo() = default;

clsCeldo::~clsCeldo() = default;

void clsCeldo::visit_references(automation::ReferenceVisitor& visitor) const {
    visitor.visit(extend_properties_.get());
    visitor.visit(children_.get());
    visitor.visit(attributes_.get());
    visitor.visit(column_header_.get());
    visitor.visit(value_);
    visitor.visit(old_value_);
    visitor.visit(default_value_);
}

void clsCeldo::drop_references() {
    extend_properties_ = nullptr;
    extend_properties_set_ = true;
    children_ = nullptr;
    attributes_ = nullptr;
    column_header_ = nullptr;
    value_ = old_value_ = default_value_ = Variant();
}

// Children, attributes and extended properties are made on first use: most fields never have
// any, and making all three with every field would make a row four times the objects.
clsCeldo::Fields& clsCeldo::made(Ref<Fields>& collection) {
    if (!collection) collection = make_ref<Fields>();
    return *collection;
}

automation::Ref<collections::clsCeldos> clsCeldo::get_Children() const {
    made(children_);
    return children_;
}

automation::Ref<collections::clsCeldos> clsCeldo::get_Attributes() const {
    made(attributes_);
    return attributes_;
}

// Extra properties are fields too, addressed by name: ExtendProperties("Mask").Value. Until a
// host sets another object (or Nothing) they are an empty field collection.
automation::Ref<automation::Object> clsCeldo::get_ExtendProperties() const {
    if (!extend_properties_set_) {
        extend_properties_ = make_ref<Fields>();
        extend_properties_set_ = true;
    }
    return extend_properties_;
}

void clsCeldo::set_ExtendProperties(Ref<automation::Object> value) {
    extend_properties_ = std::move(value);
    extend_properties_set_ = true;
}

bool clsCeldo::get_HasChildren() const { return children_ && children_->get_Count() > 0; }

std::u16string clsCeldo::get_CorrelationalName() const {
    if (source_name_.empty()) return {};
    if (!source_table_name_.empty()) return source_table_name_ + u"." + source_name_;
    return source_name_;
}

std::u16string clsCeldo::get_AliasName() const {
    // The caption without the characters an SQL alias cannot hold: they are dropped.
    std::u16string alias;
    for (char16_t c : get_Caption()) {
        if (std::u16string_view(u" :-+*/#'").find(c) == std::u16string_view::npos) alias.push_back(c);
    }
    const bool expression = facts_of(data_type_).expression;
    if (source_name_.empty()) return expression ? description_ + u" As " + alias : std::u16string();
    const bool same = automation::equal_text(alias, source_name_);
    const std::u16string column = source_table_name_.empty() ? source_name_ : source_table_name_ + u"." + source_name_;
    return same ? column : column + u" As " + alias;
}

std::u16string clsCeldo::get_Caption() const {
    if (!caption_.empty()) return caption_;
    // A name that starts with one of the naming prefixes (strNombre, txtCodigo) is shown
    // without it; any other name is shown as it is.
    const std::u16string_view head = std::u16string_view(name_).substr(0, 3);
    for (std::u16string_view prefix : kControlPrefixes) {
        if (head.size() == 3 && automation::equal_text(head, prefix)) return name_.substr(3);
    }
    return name_;
}

void clsCeldo::let_SourceName(const std::u16string& value) {
    if (value.empty()) {
        source_name_.clear();
        return;
    }
    if (!source_name_.empty() && !facts_of(data_type_).expression) return;  // set once
    source_name_ = std::u16string(automation::trim(value));
}

void clsCeldo::let_SourceTableName(const std::u16string& value) {
    if (value.empty()) {
        source_table_name_.clear();
        return;
    }
    if (source_table_name_.empty()) source_table_name_ = std::u16string(automation::trim(value));
}

void clsCeldo::let_DataType(ExDataType value) {
    data_type_ = value;
    const DataTypeFacts& facts = facts_of(value);
    if (!facts.keeps_size) let_Size(0);
    if (facts.rounding != kKeep) let_Redondeo(facts.rounding);
}

int32_t clsCeldo::get_Size() const { return size_ != 0 ? size_ : facts_of(data_type_).default_size; }

automation::Ref<clsCeldo> clsCeldo::copy(const std::u16string& name, const Variant& value) const {
    auto copy = automation::make_ref<clsCeldo>();
    copy->let_Name(name.empty() ? get_Name() : name);
    copy->let_SourceName(get_SourceName());
    copy->let_SourceTableName(get_SourceTableName());
    copy->let_Caption(get_Caption());
    copy->let_Description(get_Description());
    copy->let_Expresion(get_Expresion());
    copy->let_DataType(get_DataType());
    copy->let_Size(get_Size());
    if (!get_DefaultValue().is_empty()) copy->let_DefaultValue(get_DefaultValue());
    copy->let_Format(get_Format());
    copy->let_Required(get_Required());
    copy->let_RowSource(get_RowSource());
    copy->let_UpperCase(get_UpperCase());
    copy->let_Operator(get_Operator());
    copy->let_Direction(get_Direction());
    copy->let_Conjunction(get_Conjunction());
    copy->let_ValidationRule(get_ValidationRule());
    copy->let_ValidationText(get_ValidationText());
    copy->let_DisplayControl(get_DisplayControl());
    copy->let_ColumnCount(get_ColumnCount());
    copy->let_Visible(get_Visible());
    copy->let_HelpContexID(get_HelpContexID());
    copy->let_Redondeo(get_Redondeo());
    copy->old_value_ = old_value_;
    const Variant carried = value.is_missing() ? get_Value() : value;
    if (!value.is_missing() || !carried.is_empty()) {
        // An object value is copied as the reference it is.
        if (carried.is_object()) copy->set_Value(carried);
        else copy->let_Value(carried);
    }
    return copy;
}

XMLNodeTypes clsCeldo::get_NodeType() const {
    if (node_type_ == xntUnknown) throw automation::AutomationError(kObjectError, u"Celdo.NodeType", u"Required property not initialized");
    return node_type_;
}

}  // namespace celdo::fields
