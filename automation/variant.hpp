#pragma once
// The automation Variant: the one value type that crosses every member of the library.

#include <cstdint>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "automation/object.hpp"

namespace celdo::automation {

// Subtype codes; the numbers are those VarType reports, so they cross to hosts unchanged.
enum class VarType : uint16_t {
    Empty = 0,
    Null = 1,
    Integer = 2,
    Long = 3,
    Single = 4,
    Double = 5,
    Currency = 6,
    Date = 7,
    String = 8,
    Object = 9,
    Error = 10,
    Boolean = 11,
    Variant = 12,  // only as the element type of an array
    Byte = 17,
    Array = 0x2000,  // flag added to an array's element type
};

constexpr VarType operator|(VarType a, VarType b) {
    return static_cast<VarType>(static_cast<uint16_t>(a) | static_cast<uint16_t>(b));
}

// A fixed-point amount: the value times 10,000 in 64 bits.
struct Currency {
    static constexpr int64_t kScale = 10000;
    int64_t scaled = 0;
    friend constexpr bool operator==(Currency, Currency) = default;
};

// Days since 1899-12-30; the fraction is the time of day (for negative days it counts
// forward from midnight of that day, as the platform's dates do).
struct Date {
    double serial = 0;
    friend constexpr bool operator==(Date, Date) = default;
};

// The error code that stands for an omitted optional argument.
inline constexpr int32_t kParamNotFound = static_cast<int32_t>(0x80020004u);

class Variant;

// Multi-dimensional array with arbitrary lower bounds; copies share storage until written.
// Elements are stored first dimension fastest, so growing the last dimension keeps content.
class Array {
public:
    struct Bound {
        int32_t lower = 0;
        int32_t count = 0;
    };

    // A dynamic array with no dimensions yet (UBound fails with error 9).
    explicit Array(VarType element = VarType::Variant);
    Array(VarType element, std::vector<Bound> bounds);
    // The data-array shape: columns by rows, both from 0, of Variants.
    static Array matrix(int32_t columns, int32_t rows);
    static Array vector(std::initializer_list<Variant> items);

    Array(const Array& other) noexcept;
    Array(Array&& other) noexcept;
    Array& operator=(Array other) noexcept;
    ~Array();

    VarType element_type() const noexcept;
    int dimensions() const noexcept;
    // Bounds of dimension `dim` counted from 1, as LBound and UBound take them.
    int32_t lbound(int dim = 1) const;
    int32_t ubound(int dim = 1) const;
    size_t size() const noexcept;

    const Variant& at(std::initializer_list<int32_t> index) const;
    Variant& at(std::initializer_list<int32_t> index);
    const Variant& at(int32_t i) const { return at({i}); }
    Variant& at(int32_t i) { return at({i}); }
    const Variant& at(int32_t i, int32_t j) const { return at({i, j}); }
    Variant& at(int32_t i, int32_t j) { return at({i, j}); }

    // ReDim Preserve: changes the upper bound of the last dimension and keeps the content.
    void redim_preserve(int32_t new_upper);

    std::span<const Variant> elements() const noexcept;
    std::span<Variant> elements_mut();
    std::span<const Bound> bounds() const noexcept;

    bool shares_storage_with(const Array& other) const noexcept { return rep_ == other.rep_; }

private:
    struct Rep;
    size_t offset(std::initializer_list<int32_t> index) const;
    void detach();
    Rep* rep_;
};

class Variant {
public:
    Variant() noexcept : type_(VarType::Empty) { u_.raw = 0; }
    Variant(bool value) noexcept : type_(VarType::Boolean) { u_.boolean = value; }
    Variant(uint8_t value) noexcept : type_(VarType::Byte) { u_.byte = value; }
    Variant(int16_t value) noexcept : type_(VarType::Integer) { u_.integer = value; }
    Variant(int32_t value) noexcept : type_(VarType::Long) { u_.long_ = value; }
    Variant(float value) noexcept : type_(VarType::Single) { u_.single = value; }
    Variant(double value) noexcept : type_(VarType::Double) { u_.double_ = value; }
    Variant(Currency value) noexcept : type_(VarType::Currency) { u_.currency = value.scaled; }
    Variant(Date value) noexcept : type_(VarType::Date) { u_.date = value.serial; }
    Variant(std::u16string value);
    Variant(std::u16string_view value) : Variant(std::u16string(value)) {}
    Variant(const char16_t* value) : Variant(std::u16string(value)) {}
    Variant(Ref<Object> value) noexcept;
    template <class T>
    Variant(Ref<T> value) noexcept : Variant(Ref<Object>(std::move(value))) {}
    Variant(Array value);

    // Narrow text and characters have no automation meaning; refuse them at compile time.
    Variant(const char*) = delete;
    Variant(char) = delete;
    Variant(char16_t) = delete;
    Variant(int64_t) = delete;
    Variant(uint32_t) = delete;

    static Variant null() noexcept { return Variant(VarType::Null); }
    static Variant missing() noexcept { return error(kParamNotFound); }
    static Variant error(int32_t code) noexcept {
        Variant v(VarType::Error);
        v.u_.error = code;
        return v;
    }
    static Variant nothing() noexcept { return Variant(Ref<Object>()); }

    Variant(const Variant& other) noexcept;
    Variant(Variant&& other) noexcept;
    Variant& operator=(const Variant& other) noexcept;
    Variant& operator=(Variant&& other) noexcept;
    ~Variant() { clear(); }

    VarType type() const noexcept { return type_; }
    bool is_empty() const noexcept { return type_ == VarType::Empty; }
    bool is_null() const noexcept { return type_ == VarType::Null; }
    bool is_missing() const noexcept {
        return type_ == VarType::Error && u_.error == kParamNotFound;
    }
    bool is_string() const noexcept { return type_ == VarType::String; }
    bool is_object() const noexcept { return type_ == VarType::Object; }
    bool is_array() const noexcept {
        return (static_cast<uint16_t>(type_) & static_cast<uint16_t>(VarType::Array)) != 0;
    }
    // True for the subtypes that hold a number (Boolean counts, as in the language).
    bool is_number() const noexcept;

    // Typed reads. Each checks the subtype and raises "Type mismatch" on another one; the
    // conversions that the language applies live in convert.hpp.
    bool as_bool() const;
    uint8_t as_byte() const;
    int16_t as_integer() const;
    int32_t as_long() const;
    float as_single() const;
    double as_double() const;
    Currency as_currency() const;
    Date as_date() const;
    int32_t as_error() const;
    const std::u16string& as_string() const;
    Object* as_object() const;  // null for Nothing
    Ref<Object> object() const { return Ref<Object>(as_object()); }
    template <class T>
    T* object_as() const {
        return dynamic_cast<T*>(as_object());
    }
    const Array& as_array() const;
    Array& array_mut();

    // Identity of subtype and value: not the language's "=", which compare.hpp gives.
    friend bool operator==(const Variant& a, const Variant& b) noexcept;

private:
    struct StringRep;
    explicit Variant(VarType type) noexcept : type_(type) { u_.raw = 0; }
    void clear() noexcept;
    [[noreturn]] void mismatch() const;

    VarType type_;
    // The array handle is constructed and destroyed by hand while type_ has the Array flag.
    union Storage {
        Storage() noexcept : raw(0) {}
        ~Storage() {}
        uint64_t raw;
        bool boolean;
        uint8_t byte;
        int16_t integer;
        int32_t long_;
        float single;
        double double_;
        int64_t currency;
        double date;
        int32_t error;
        StringRep* string;
        Object* object;
        Array array;
    } u_;
};

// One argument of a late-bound call. A by-reference argument is the caller's variable: the
// callee may assign `value` and the caller copies it back after the call.
struct Argument {
    Variant value;
    bool by_ref = false;
};

// A readable rendering of subtype and value for diagnostics and test failures.
std::string debug_string(const Variant& value);

}  // namespace celdo::automation
