#pragma once
// The test probe: stores what it is given and reports how arguments arrived.

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "automation/component.hpp"
#include "tests/probe/Probe.gen.hpp"

namespace celdo::tests::probe {

class Probe final : public automation::Declared<Probe> {
public:
    automation::Variant get_Value() const { return value_; }
    void let_Value(const automation::Variant& v) { value_ = v; }
    void set_Value(const automation::Variant& v) { value_ = v; }
    std::u16string get_Text() const { return text_; }
    void let_Text(const std::u16string& v) { text_ = v; }
    int32_t get_Number() const { return number_; }
    void let_Number(int32_t v) { number_ = v; }
    int16_t get_Small() const { return small_; }
    void let_Small(int16_t v) { small_ = v; }
    uint8_t get_Tiny() const { return tiny_; }
    void let_Tiny(uint8_t v) { tiny_ = v; }
    bool get_Flag() const { return flag_; }
    void let_Flag(bool v) { flag_ = v; }
    float get_Ratio() const { return ratio_; }
    void let_Ratio(float v) { ratio_ = v; }
    double get_Real() const { return real_; }
    void let_Real(double v) { real_ = v; }
    automation::Currency get_Amount() const { return amount_; }
    void let_Amount(automation::Currency v) { amount_ = v; }
    automation::Date get_When() const { return when_; }
    void let_When(automation::Date v) { when_ = v; }
    ProbeMode get_Mode() const { return mode_; }
    void let_Mode(ProbeMode v) { mode_ = v; }
    automation::Ref<Probe> get_Partner() const { return partner_; }
    void set_Partner(automation::Ref<Probe> v) { partner_ = std::move(v); }
    automation::Variant get_Cell(int32_t column, int32_t row) const;
    void let_Cell(int32_t column, int32_t row, const automation::Variant& v) { cells_[{column, row}] = v; }
    automation::Ref<automation::Object> get_Items() const;
    int32_t get_Count() const { return static_cast<int32_t>(items_.size()); }

    automation::Variant Echo(const automation::Variant& v) const { return v; }
    std::u16string Describe(int32_t size, int16_t position, const std::u16string& label,
                            const automation::Variant& extra, ProbeMode mode, bool flag) const;
    void Tidy(std::u16string& text) const;
    void Swap(automation::Variant& first, automation::Variant& second) const { std::swap(first, second); }
    void Bump(int32_t& number) const { ++number; }
    void Renew(automation::Ref<Probe>& target) const;
    automation::Ref<Probe> Itself() { return automation::Ref<Probe>(this); }
    automation::Variant Grid(int32_t columns, int32_t rows) const;
    void Raise(int32_t number, const std::u16string& source, const std::u16string& description) const;
    void Ring(int32_t times);
    void Enter() { raise_event(events::Probe::EnterCell); }
    void Add(const automation::Variant& item) { items_.push_back(item); }
    // Late-bound calls into a host object, as the services make them.
    automation::Variant Call(automation::Ref<automation::Object> target, const std::u16string& member,
                             automation::Variant& argument) const;
    automation::Variant Read(automation::Ref<automation::Object> target, const std::u16string& member) const;
    std::u16string NameOf(automation::Ref<automation::Object> target) const;
    // A script double of a control made to look like the real one (tests/probe/Disguise.hpp).
    automation::Ref<automation::Object> Disguise(automation::Ref<automation::Object> target,
                                                 const std::u16string& type_name) const;

private:
    automation::Variant value_;
    std::u16string text_;
    int32_t number_ = 0;
    int16_t small_ = 0;
    uint8_t tiny_ = 0;
    bool flag_ = false;
    float ratio_ = 0;
    double real_ = 0;
    automation::Currency amount_{};
    automation::Date when_{};
    ProbeMode mode_ = pmFirst;
    automation::Ref<Probe> partner_;
    std::map<std::pair<int32_t, int32_t>, automation::Variant> cells_;
    std::vector<automation::Variant> items_;
};

}  // namespace celdo::tests::probe
