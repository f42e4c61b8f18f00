#include "automation/variant.hpp"

#include <cmath>
#include <memory>
#include <new>
#include <sstream>

#include "automation/error.hpp"
#include "automation/text.hpp"

namespace celdo::automation {

// ---------------------------------------------------------------------------------- strings

struct Variant::StringRep {
    explicit StringRep(std::u16string t) : text(std::move(t)) {}
    uint32_t refs = 1;
    std::u16string text;
};

Variant::Variant(std::u16string value) : type_(VarType::String) {
    u_.string = new StringRep(std::move(value));
}

Variant::Variant(Ref<Object> value) noexcept : type_(VarType::Object) {
    u_.object = value.detach();
}

Variant::Variant(Array value) : type_(VarType::Array | value.element_type()) {
    new (&u_.array) Array(std::move(value));
}

Variant::Variant(const Variant& other) noexcept : type_(other.type_) {
    if (is_array()) {
        new (&u_.array) Array(other.u_.array);
        return;
    }
    u_.raw = other.u_.raw;
    if (type_ == VarType::String) ++u_.string->refs;
    else if (type_ == VarType::Object && u_.object) u_.object->add_ref();
}

Variant::Variant(Variant&& other) noexcept : type_(other.type_) {
    if (is_array()) {
        new (&u_.array) Array(std::move(other.u_.array));
        other.clear();
        return;
    }
    u_.raw = other.u_.raw;
    other.type_ = VarType::Empty;
    other.u_.raw = 0;
}

Variant& Variant::operator=(const Variant& other) noexcept {
    if (this != &other) {
        Variant copy(other);
        *this = std::move(copy);
    }
    return *this;
}

Variant& Variant::operator=(Variant&& other) noexcept {
    if (this != &other) {
        clear();
        new (this) Variant(std::move(other));
    }
    return *this;
}

void Variant::clear() noexcept {
    if (is_array()) {
        u_.array.~Array();
    } else if (type_ == VarType::String) {
        if (--u_.string->refs == 0) delete u_.string;
    } else if (type_ == VarType::Object && u_.object) {
        u_.object->release();
    }
    type_ = VarType::Empty;
    u_.raw = 0;
}

bool Variant::is_number() const noexcept {
    switch (type_) {
    case VarType::Boolean:
    case VarType::Byte:
    case VarType::Integer:
    case VarType::Long:
    case VarType::Single:
    case VarType::Double:
    case VarType::Currency:
    case VarType::Date:
        return true;
    default:
        return false;
    }
}

void Variant::mismatch() const { throw AutomationError(StdError::TypeMismatch); }

#define CELDO_TYPED_READ(fn, Type, vt, field) \
    Type Variant::fn() const {                \
        if (type_ != VarType::vt) mismatch(); \
        return field;                         \
    }
CELDO_TYPED_READ(as_bool, bool, Boolean, u_.boolean)
CELDO_TYPED_READ(as_byte, uint8_t, Byte, u_.byte)
CELDO_TYPED_READ(as_integer, int16_t, Integer, u_.integer)
CELDO_TYPED_READ(as_long, int32_t, Long, u_.long_)
CELDO_TYPED_READ(as_single, float, Single, u_.single)
CELDO_TYPED_READ(as_double, double, Double, u_.double_)
CELDO_TYPED_READ(as_currency, Currency, Currency, Currency{u_.currency})
CELDO_TYPED_READ(as_date, Date, Date, Date{u_.date})
CELDO_TYPED_READ(as_error, int32_t, Error, u_.error)
CELDO_TYPED_READ(as_string, const std::u16string&, String, u_.string->text)
CELDO_TYPED_READ(as_object, Object*, Object, u_.object)
#undef CELDO_TYPED_READ

const Array& Variant::as_array() const {
    if (!is_array()) mismatch();
    return u_.array;
}

Array& Variant::array_mut() {
    if (!is_array()) mismatch();
    return u_.array;
}

bool operator==(const Variant& a, const Variant& b) noexcept {
    if (a.type_ != b.type_) return false;
    if (a.is_array()) {
        const Array& x = a.u_.array;
        const Array& y = b.u_.array;
        if (x.dimensions() != y.dimensions()) return false;
        for (int d = 0; d < x.dimensions(); ++d) {
            if (x.bounds()[d].lower != y.bounds()[d].lower ||
                x.bounds()[d].count != y.bounds()[d].count)
                return false;
        }
        auto xe = x.elements();
        auto ye = y.elements();
        for (size_t i = 0; i < xe.size(); ++i) {
            if (!(xe[i] == ye[i])) return false;
        }
        return true;
    }
    switch (a.type_) {
    case VarType::Empty:
    case VarType::Null: return true;
    case VarType::Boolean: return a.u_.boolean == b.u_.boolean;
    case VarType::Byte: return a.u_.byte == b.u_.byte;
    case VarType::Integer: return a.u_.integer == b.u_.integer;
    case VarType::Long: return a.u_.long_ == b.u_.long_;
    case VarType::Single: return a.u_.single == b.u_.single;
    case VarType::Double: return a.u_.double_ == b.u_.double_;
    case VarType::Currency: return a.u_.currency == b.u_.currency;
    case VarType::Date: return a.u_.date == b.u_.date;
    case VarType::Error: return a.u_.error == b.u_.error;
    case VarType::String: return a.u_.string->text == b.u_.string->text;
    case VarType::Object: return a.u_.object == b.u_.object;
    default: return false;
    }
}

std::string debug_string(const Variant& v) {
    std::ostringstream out;
    if (v.is_array()) {
        const Array& a = v.as_array();
        out << "Array(";
        for (int d = 1; d <= a.dimensions(); ++d) {
            out << (d > 1 ? ", " : "") << a.lbound(d) << " To " << a.ubound(d);
        }
        out << ") {";
        bool first = true;
        for (const Variant& e : a.elements()) {
            out << (first ? "" : ", ") << debug_string(e);
            first = false;
        }
        out << "}";
        return out.str();
    }
    out.precision(17);
    switch (v.type()) {
    case VarType::Empty: out << "Empty"; break;
    case VarType::Null: out << "Null"; break;
    case VarType::Boolean: out << "Boolean(" << (v.as_bool() ? "True" : "False") << ")"; break;
    case VarType::Byte: out << "Byte(" << int(v.as_byte()) << ")"; break;
    case VarType::Integer: out << "Integer(" << v.as_integer() << ")"; break;
    case VarType::Long: out << "Long(" << v.as_long() << ")"; break;
    case VarType::Single: out << "Single(" << v.as_single() << ")"; break;
    case VarType::Double: out << "Double(" << v.as_double() << ")"; break;
    case VarType::Currency:
        out << "Currency(" << static_cast<double>(v.as_currency().scaled) / Currency::kScale << ")";
        break;
    case VarType::Date: out << "Date(" << v.as_date().serial << ")"; break;
    case VarType::Error:
        if (v.is_missing()) out << "Missing";
        else out << "Error(" << v.as_error() << ")";
        break;
    case VarType::String: out << "String(\"" << utf16_to_utf8(v.as_string()) << "\")"; break;
    case VarType::Object:
        if (!v.as_object()) out << "Nothing";
        else out << "Object(" << utf16_to_utf8(v.as_object()->type_name()) << ")";
        break;
    default: out << "VarType(" << static_cast<int>(v.type()) << ")"; break;
    }
    return out.str();
}

// ----------------------------------------------------------------------------------- arrays

struct Array::Rep {
    uint32_t refs = 1;
    VarType element = VarType::Variant;
    std::vector<Bound> bounds;
    std::vector<Variant> data;
};

namespace {

// The value an element of a typed array holds before anything is stored in it.
Variant element_default(VarType element) {
    switch (element) {
    case VarType::Boolean: return Variant(false);
    case VarType::Byte: return Variant(uint8_t{0});
    case VarType::Integer: return Variant(int16_t{0});
    case VarType::Long: return Variant(int32_t{0});
    case VarType::Single: return Variant(0.0f);
    case VarType::Double: return Variant(0.0);
    case VarType::Currency: return Variant(Currency{});
    case VarType::Date: return Variant(Date{});
    case VarType::String: return Variant(std::u16string());
    case VarType::Object: return Variant::nothing();
    default: return Variant();
    }
}

size_t element_count(const std::vector<Array::Bound>& bounds) {
    if (bounds.empty()) return 0;
    size_t n = 1;
    for (const auto& b : bounds) n *= static_cast<size_t>(b.count);
    return n;
}

}  // namespace

Array::Array(VarType element) : rep_(new Rep) { rep_->element = element; }

Array::Array(VarType element, std::vector<Bound> bounds) {
    for (const auto& b : bounds) {
        if (b.count < 0) throw AutomationError(StdError::SubscriptOutOfRange);
    }
    // Owned until it is whole: filling the elements may run out of memory.
    auto rep = std::make_unique<Rep>();
    rep->element = element;
    rep->bounds = std::move(bounds);
    rep->data.assign(element_count(rep->bounds), element_default(element));
    rep_ = rep.release();
}

Array Array::matrix(int32_t columns, int32_t rows) {
    return Array(VarType::Variant, {{0, columns}, {0, rows}});
}

Array Array::vector(std::initializer_list<Variant> items) {
    Array a(VarType::Variant, {{0, static_cast<int32_t>(items.size())}});
    size_t i = 0;
    for (const auto& item : items) a.rep_->data[i++] = item;
    return a;
}

Array::Array(const Array& other) noexcept : rep_(other.rep_) { ++rep_->refs; }

Array::Array(Array&& other) noexcept : rep_(other.rep_) { ++rep_->refs; }

Array& Array::operator=(Array other) noexcept {
    std::swap(rep_, other.rep_);
    return *this;
}

Array::~Array() {
    if (--rep_->refs == 0) delete rep_;
}

VarType Array::element_type() const noexcept { return rep_->element; }
int Array::dimensions() const noexcept { return static_cast<int>(rep_->bounds.size()); }
size_t Array::size() const noexcept { return rep_->data.size(); }
std::span<const Variant> Array::elements() const noexcept { return rep_->data; }
std::span<const Array::Bound> Array::bounds() const noexcept { return rep_->bounds; }

std::span<Variant> Array::elements_mut() {
    detach();
    return rep_->data;
}

int32_t Array::lbound(int dim) const {
    if (dim < 1 || dim > dimensions()) throw AutomationError(StdError::SubscriptOutOfRange);
    return rep_->bounds[dim - 1].lower;
}

int32_t Array::ubound(int dim) const {
    if (dim < 1 || dim > dimensions()) throw AutomationError(StdError::SubscriptOutOfRange);
    const Bound& b = rep_->bounds[dim - 1];
    return b.lower + b.count - 1;
}

size_t Array::offset(std::initializer_list<int32_t> index) const {
    if (index.size() != rep_->bounds.size()) throw AutomationError(StdError::SubscriptOutOfRange);
    size_t at = 0;
    size_t stride = 1;
    size_t d = 0;
    for (int32_t i : index) {
        const Bound& b = rep_->bounds[d++];
        int64_t rel = int64_t{i} - b.lower;
        if (rel < 0 || rel >= b.count) throw AutomationError(StdError::SubscriptOutOfRange);
        at += static_cast<size_t>(rel) * stride;
        stride *= static_cast<size_t>(b.count);
    }
    return at;
}

const Variant& Array::at(std::initializer_list<int32_t> index) const {
    return rep_->data[offset(index)];
}

Variant& Array::at(std::initializer_list<int32_t> index) {
    size_t at = offset(index);
    detach();
    return rep_->data[at];
}

void Array::redim_preserve(int32_t new_upper) {
    if (rep_->bounds.empty()) throw AutomationError(StdError::SubscriptOutOfRange);
    Bound& last = rep_->bounds.back();
    int64_t count = int64_t{new_upper} - last.lower + 1;
    if (count < 0) throw AutomationError(StdError::SubscriptOutOfRange);
    detach();
    Bound& b = rep_->bounds.back();
    b.count = static_cast<int32_t>(count);
    rep_->data.resize(element_count(rep_->bounds), element_default(rep_->element));
}

void Array::detach() {
    if (rep_->refs == 1) return;
    Rep* copy = new Rep(*rep_);
    copy->refs = 1;
    --rep_->refs;
    rep_ = copy;
}

}  // namespace celdo::automation
