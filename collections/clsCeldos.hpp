#pragma once
// clsCeldos: fields in order and by case-insensitive key, standing for a row, a parameter
// list, a search filter or a grid header. The same field object may sit in several collections;
// only Duplicate, AppendAs and AppendsAs copy.

#include <string>

#include "automation/component.hpp"
#include "automation/variant.hpp"
#include "collections/clsCeldos.gen.hpp"
#include "collections/keyed_list.hpp"
#include "fields/Constants.gen.hpp"
#include "fields/clsCeldo.hpp"

namespace celdo::collections {

class clsCeldos final : public automation::Declared<clsCeldos> {
public:
    using Variant = automation::Variant;
    using Field = fields::clsCeldo;
    template <class T>
    using Ref = automation::Ref<T>;

    // =========================================================================================
    // Published: the members of collections/clsCeldos.api, which hosts call by name.
    // =========================================================================================

    Ref<Field> Add(const std::u16string& Name, const std::u16string& SourceName, int16_t DataType, int32_t Size,
                   int16_t Position, bool Required, const std::u16string& Description,
                   const std::u16string& ValidationText, const Variant& Value, const Variant& OldValue,
                   const Variant& Before, const Variant& After);
    void AddParameter(const std::u16string& Name, int16_t DataType, const Variant& Value,
                      const std::u16string& Operador, int32_t Size, const std::u16string& SourceName,
                      fields::exDirection Direction, const Variant& Before, const Variant& After);
    // A key is trimmed and written back into the caller's variable; a number is a position
    // from 1. A missing key or position is error 5.
    Ref<Field> get_Item(Variant& vntIndexKey) const;
    int32_t get_Count() const { return static_cast<int32_t>(items_.size()); }
    void Remove(Variant& Index);
    Ref<automation::Object> get_NewEnum() const;
    // Never raises: a duplicate key inserts the field unkeyed, any other failure leaves it out.
    void Append(Ref<Field> Celdo, const Variant& Before, const Variant& After, const std::u16string& Key);
    void Appends(Ref<clsCeldos> Celdos, const Variant& Before, const Variant& After, const std::u16string& Key);
    void AppendsAs(Ref<clsCeldos> Celdos, const Variant& Before, const Variant& After);
    void AppendAs(Ref<Field>& rOriginal, const std::u16string& oNewName, Variant& oNewValue, const Variant& Before,
                  const Variant& After);
    Ref<Field> Duplicate(Ref<Field>& rOriginal, std::u16string& oNewName, Variant& oNewValue) const;
    bool Exist(const std::u16string& Name) const;

    // ---- text forms
    std::u16string Clip() const { return clips(0); }
    // An empty (or left out) Propertie becomes "Name", written back to the caller.
    std::u16string ClipNames(std::u16string& Propertie, std::u16string& Delimiter) const;
    std::u16string get_ClipAttribute() const;
    std::u16string get_ClipHeader() const;
    std::u16string XML(const std::u16string& Encode) const { return elements(Encode, 0); }
    std::u16string get_XMLAttribute(const std::u16string& Encode) const;
    bool Parse(const std::u16string& Encode, std::u16string& rstrXML);

    // ---- state operations
    void Initialize();
    void Clear();
    void SetNew();
    // By position; the audit fields are never overwritten.
    void Assing(Ref<clsCeldos>& Values);
    // By name, each value read from the other field's property named Property.
    void Update(Ref<clsCeldos>& Values, const std::u16string& Property);
    void CancelUpdate();
    void Updated();
    void let_Direction(fields::exDirection value);
    void ChangeOperator(fields::TypeOperator vOperator);
    bool ValidateRequired(std::u16string& Msg, fields::exEdit oEditMode);

    // ---- ranges
    Ref<clsCeldos> Range(const std::u16string& vCeldos) const;
    Ref<clsCeldos> RangeAs(const std::u16string& vCeldos) const;
    Ref<clsCeldos> RangeEx(const std::u16string& vCeldos) const;
    Ref<clsCeldos> RangeExAs(const std::u16string& vCeldos) const;

    // =========================================================================================
    // For the library only: what the fields' writers, the other classes and the collector use.
    // =========================================================================================

    // The fields' forms at a nesting level, joined in order; a field's writer calls these for
    // its children.
    std::u16string elements(std::u16string_view encoding, int level) const;
    std::u16string clips(int level) const;

    // The fields it holds, for the cycle collector.
    void visit_references(automation::ReferenceVisitor& visitor) const override {
        items_.for_each_copy([&](const Ref<Field>& f) { visitor.visit(f.get()); });
    }
    void drop_references() override { items_.clear(); }

    // For the library's own walks: 0-based positions, lookup without side effects.
    size_t size() const noexcept { return items_.size(); }
    Field& at(size_t index) const { return *items_.at(index); }
    Field* find(std::u16string_view key) const;
    void clear() { items_.clear(); }

private:
    // Where Before or After puts an insertion; nullopt when it names no item.
    std::optional<size_t> anchor(const Variant& Before, const Variant& After) const;
    std::optional<size_t> position_of(const Variant& index) const;
    // Sets the field found under its own name to the last position (Appends and AppendsAs).
    void renumber_last(const Field& field);
    // The ranges: the fields a list names, or the others, shared or copied into a new collection.
    Ref<clsCeldos> named(const std::u16string& list, bool copy) const;
    Ref<clsCeldos> others(const std::u16string& list, bool copy) const;
    static void add_to(clsCeldos& result, Ref<Field> field, bool copy);
    // Duplicate's deep copy of the children, refusing runaway depth and cycles.
    static void copy_children(const Field& original, Field& copy);

    KeyedList<Ref<Field>> items_;
};

}  // namespace celdo::collections
