#pragma once
// clsCeldo: one field with its metadata, its value and old value, validation, formatting,
// criteria and row source. The member functions are the automation members of fields/clsCeldo.api
// (get_X, let_X and set_X for properties); their rules live in the .cpp file of their concern:
// clsCeldo.cpp (object and metadata), value.cpp, validation.cpp, formatting.cpp, criteria.cpp,
// row_source.cpp.

#include <array>
#include <string>

#include "automation/component.hpp"
#include "automation/variant.hpp"
#include "fields/Constants.gen.hpp"
#include "fields/clsCeldo.gen.hpp"

namespace celdo::collections {
class clsCeldos;
}

namespace celdo::fields {

class clsCeldo final : public automation::Declared<clsCeldo> {
public:
    using Variant = automation::Variant;
    template <class T>
    using Ref = automation::Ref<T>;
    using Fields = collections::clsCeldos;

    clsCeldo();
    ~clsCeldo() override;

    // =========================================================================================
    // Published: the members of fields/clsCeldo.api, which hosts call by name.
    // =========================================================================================

    // ---- object and metadata
    Ref<automation::Object> get_ExtendProperties() const;
    void set_ExtendProperties(Ref<automation::Object> value);
    Ref<Fields> get_Children() const;
    Ref<Fields> get_Attributes() const;
    bool get_HasChildren() const;
    std::u16string get_CorrelationalName() const;
    std::u16string get_AliasName() const;
    std::u16string get_Name() const { return name_; }
    void let_Name(const std::u16string& value) { name_ = value; }
    std::u16string get_Caption() const;
    void let_Caption(const std::u16string& value) { caption_ = value; }
    std::u16string get_SourceName() const { return source_name_; }
    void let_SourceName(const std::u16string& value);
    std::u16string get_SourceTableName() const { return source_table_name_; }
    void let_SourceTableName(const std::u16string& value);
    ExDataType get_DataType() const { return data_type_; }
    void let_DataType(ExDataType value);
    int32_t get_Size() const;
    void let_Size(int32_t value) { size_ = value; }
    Variant get_DataTypeName() const;
    int32_t get_DefaultDisplaySize() const;
    bool get_UpperCase() const { return upper_case_; }
    void let_UpperCase(bool value) { upper_case_ = value; }
    bool get_Required() const { return required_; }
    void let_Required(bool value) { required_ = value; }
    int16_t get_Position() const { return position_; }
    void let_Position(int16_t value) { position_ = value; }
    Variant get_DefaultValue() const;
    void let_DefaultValue(const Variant& value);
    std::u16string get_ValidationRule() const { return validation_rule_; }
    void let_ValidationRule(const std::u16string& value) { validation_rule_ = value; }
    std::u16string get_ValidationText() const { return validation_text_; }
    void let_ValidationText(const std::u16string& value) { validation_text_ = value; }
    std::u16string get_Description() const { return description_; }
    void let_Description(const std::u16string& value) { description_ = value; }
    exDirection get_Direction() const { return direction_; }
    void let_Direction(exDirection value) { direction_ = value; }
    int32_t get_HelpContexID() const { return help_context_id_; }
    void let_HelpContexID(int32_t value) { help_context_id_ = value; }
    bool get_Visible() const { return visible_; }
    void let_Visible(bool value) { visible_ = value; }
    std::u16string get_Expresion() const { return expression_; }
    void let_Expresion(const std::u16string& value) { expression_ = value; }
    XMLNodeTypes get_NodeType() const;
    void let_NodeType(XMLNodeTypes value) { node_type_ = value; }

    // ---- value
    Variant get_Value() const;
    void let_Value(const Variant& value);
    void set_Value(const Variant& value);
    Variant get_OriginalValue() const { return value_; }
    Variant get_OldValue() const { return old_value_; }
    void Initialize(const Variant& vValue);
    void EstablerceDefault(const Variant& vValue);
    void SetNew();
    void Clear();
    void Undo();
    bool get_Updated() const;
    void let_Updated(bool flag);

    // ---- validation
    bool Validate(const Variant& oValue) const;
    Variant ValidateRequired(std::u16string& Msg, exEdit oEditMode);

    // ---- formatting and rounding
    std::u16string get_Format() const;
    void let_Format(const std::u16string& value);
    int16_t get_Redondeo() const { return rounding_; }
    void let_Redondeo(int16_t value) { rounding_ = value; }
    Variant Redondear(const Variant& Valor, int16_t Length) const;

    // ---- criteria
    std::u16string get_Operator() const { return operator_; }
    void let_Operator(const std::u16string& value);
    std::u16string get_Conjunction() const { return conjunction_; }
    void let_Conjunction(const std::u16string& value);

    // ---- row source and display control
    std::u16string get_RowSource() const { return row_source_; }
    void let_RowSource(const std::u16string& value) { row_source_ = value; }
    exRowSourceType get_RowSourceType() const;
    void let_RowSourceType(exRowSourceType value) { row_source_type_ = value; }
    ExDisplayControl get_DisplayControl() const { return display_control_; }
    void let_DisplayControl(ExDisplayControl value) { display_control_ = value; }
    Variant get_DisplayControlType() const;
    uint8_t get_ColumnCount() const { return column_count_; }
    void let_ColumnCount(uint8_t value) { column_count_ = value; }
    bool get_ColumnHeads() const { return column_heads_; }
    void let_ColumnHeads(bool value) { column_heads_ = value; }
    int16_t get_ColumnWidth() const;
    void let_ColumnWidth(int16_t value) { column_width_ = value; }
    void set_ColumnHeader(Ref<Fields> value);
    Ref<Fields> GetColumnHeader() const;
    Variant get_GetRowSource();

    // ---- text forms
    std::u16string XML(const std::u16string& Encode) const { return element(Encode, 0); }
    Variant get_XMLValue() const;
    std::u16string XMLAttribute(std::u16string& Encode, std::u16string& FieldAttributes) const;
    std::u16string Clip() const { return clip(0); }
    std::u16string Decondign(const std::u16string& Encode, std::u16string& rstrUtf) const;
    int32_t LoadElement(const std::u16string& Encode, int32_t& rlPos, std::u16string& rstrXML);
    bool Parse(std::u16string& Encode, std::u16string& rstrXML);
    Variant Item(const std::u16string& Index) const;
    void SetItem(std::u16string& Index, Variant& Value);

    // =========================================================================================
    // For the library only: what the collections, the loaders and the collector use.
    // =========================================================================================

    // A copy as the collections' Duplicate makes it: the metadata read and written through
    // the properties, as a host copying them would, then the old value and `value` (this
    // field's own when Missing). Children are left to the caller, which checks their depth. A
    // property added to the field is carried here.
    Ref<clsCeldo> copy(const std::u16string& name, const Variant& value) const;
    // The collections' CancelUpdate: back to the value loaded last.
    void cancel_update();

    // How deep the text forms nest: deeper trees (or a field among its own children) are
    // refused rather than overflowing the stack.
    static constexpr int kMaxNesting = 256;
    // The writers at a nesting level, which the collections' writers call for every field.
    std::u16string element(std::u16string_view encoding, int level) const;
    std::u16string clip(int level) const;
    // The value as element text for an encoding: escaped, and in the UTF-8 byte form under an
    // ISO-8859 name.
    std::u16string value_text(std::u16string_view encoding) const;
    // The exact inverse of value_text: the UTF-8 byte form (under an ISO-8859 name), then the entities.
    static std::u16string decode_text(std::u16string_view encoding, std::u16string_view text);
    // Takes over what a loader built: name, node kind, value, attributes and children, keeping
    // this field's own collections (hosts may hold them).
    void adopt_element(clsCeldo& loaded);
    // Stores a value as loaded (value and old value), without validation or coercion: what a
    // reader found is kept as written.
    void load_value(const Variant& value) {
        value_ = value;
        old_value_ = value;
    }

    // What it holds: its collections, its extended properties and any object among its values.
    void visit_references(automation::ReferenceVisitor& visitor) const override;
    void drop_references() override;

private:
    // Judges a candidate value; may rewrite it where the rules say so (Date() and the like).
    bool validate(Variant& w) const;
    Variant coerce(Variant w) const;
    void store(Variant w);
    void changed() { raise_event(events::clsCeldo::Chance); }
    [[noreturn]] void refuse_value() const;

    static Fields& made(Ref<Fields>& collection);

    mutable Ref<automation::Object> extend_properties_;
    mutable bool extend_properties_set_ = false;
    std::u16string name_;
    std::u16string caption_;
    std::u16string source_name_;
    std::u16string source_table_name_;
    ExDataType data_type_ = exText;
    int32_t size_ = 0;
    bool required_ = false;
    bool upper_case_ = false;
    int16_t position_ = -1;
    Variant default_value_;
    std::u16string validation_rule_;
    std::u16string validation_text_;
    std::u16string description_;
    Variant value_;
    Variant old_value_;
    std::u16string operator_ = u"=";
    std::u16string conjunction_ = u"And";
    std::u16string expression_;
    exDirection direction_ = exParamUndefined;
    std::u16string row_source_;
    int32_t help_context_id_ = 0;
    bool visible_ = true;
    exRowSourceType row_source_type_ = exValueList;
    bool column_heads_ = false;
    ExDisplayControl display_control_ = exNoDisplayControl;
    uint8_t column_count_ = 0;
    int16_t rounding_ = 0;
    XMLNodeTypes node_type_ = xntNode;
    int16_t column_width_ = -1;
    std::u16string format_;
    Ref<Fields> column_header_;
    mutable Ref<Fields> children_;
    mutable Ref<Fields> attributes_;
};

// The naming prefixes a field's name may carry, in their table order.
inline constexpr std::array<std::u16string_view, 16> kControlPrefixes{
    u"str", u"lng", u"int", u"byt", u"bol", u"dtm", u"dbl", u"flt",
    u"mem", u"img", u"dec", u"dtp", u"txt", u"msk", u"icbo", u"cbo"};

}  // namespace celdo::fields
