#pragma once

#include "automation/ref.h"
#include "automation/text.h"

#include <cstdint>
#include <new>
#include <string>
#include <string_view>
#include <utility>

namespace tabrixdb {

class Object;
class Array;

// The automation type codes, as VarType reports them (arrays report kArrayFlag + the element's type).
enum class Type : std::uint16_t {
    Empty = 0,
    Null = 1,
    Integer = 2, // 16 bits
    Long = 3,    // 32 bits
    Single = 4,
    Double = 5,
    Currency = 6, // 64 bits, ten-thousandths
    Date = 7,     // days since 1899-12-30, as a Double
    String = 8,
    Object = 9, // a reference, possibly to Nothing
    Error = 10, // a status code; a missing optional argument is one
    Boolean = 11,
    Variant = 12, // only as an array's element type
    Byte = 17,
    LongLong = 20, // 64 bits; only databases make these
    VariantArray = 0x2000 | 12,
    ByteArray = 0x2000 | 17, // binary data from a database, a posted body or a file
};

// The value that automation passes around. Copying a string, array or object shares it: strings are
// immutable, arrays are copied when one of their holders writes (see Array), objects are references.
class Variant {
public:
    Variant() noexcept : integer_(0) {}

    Variant(bool value) noexcept : type_(Type::Boolean), integer_(0) { boolean_ = value; }

    Variant(std::int16_t value) noexcept : type_(Type::Integer) { integer_ = value; }

    Variant(std::int32_t value) noexcept : type_(Type::Long) { integer_ = value; }

    Variant(double value) noexcept : type_(Type::Double) { real_ = value; }

    Variant(Text value) noexcept : type_(Type::String) { new (&text_) Text(std::move(value)); }

    Variant(const char* value) : Variant(Text(value)) {}

    Variant(std::string_view value) : Variant(Text(value)) {}

    Variant(const std::string& value) : Variant(Text(value)) {}

    Variant(Ref<Object> object) noexcept;
    template <class T>
    requires std::is_base_of_v<Object, T> Variant(const Ref<T>& object)
    noexcept : Variant(Ref<Object>(object)) {}
    Variant(Ref<Array> array) noexcept;

    // Types that C++ has no type of their own for.
    static Variant null() noexcept { return Variant(Type::Null, std::int64_t{0}); }

    static Variant nothing() noexcept;

    static Variant missing() noexcept { return error(kMissing); }

    static Variant error(std::int32_t code) noexcept { return Variant(Type::Error, std::int64_t{code}); }

    static Variant byte(std::uint8_t value) noexcept { return Variant(Type::Byte, std::int64_t{value}); }

    static Variant longlong(std::int64_t value) noexcept { return Variant(Type::LongLong, value); }

    static Variant currency(std::int64_t ten_thousandths) noexcept {
        return Variant(Type::Currency, ten_thousandths);
    }

    static Variant single(float value) noexcept { return Variant(Type::Single, double{value}); }

    static Variant date(double days) noexcept { return Variant(Type::Date, days); }

    static Variant byte_array(std::string_view bytes);
    // The narrowest of Integer, Long and Double that holds a whole number, as arithmetic picks it.
    static Variant integer(std::int64_t value) noexcept;

    Variant(const Variant& other) noexcept { copy(other); }

    Variant(Variant&& other) noexcept { take(other); }

    Variant& operator=(const Variant& other) noexcept {
        if (this != &other) {
            Variant copied(other); // `other` may die with what this holds
            clear();
            take(copied);
        }
        return *this;
    }

    Variant& operator=(Variant&& other) noexcept {
        if (this != &other) {
            Variant moved(std::move(other));
            clear();
            take(moved);
        }
        return *this;
    }

    ~Variant() { clear(); }

    Type type() const noexcept { return type_; }

    bool is_empty() const noexcept { return type_ == Type::Empty; }

    bool is_null() const noexcept { return type_ == Type::Null; }

    bool is_string() const noexcept { return type_ == Type::String; }

    bool is_object() const noexcept { return type_ == Type::Object; }

    bool is_array() const noexcept { return type_ == Type::VariantArray; }

    bool is_byte_array() const noexcept { return type_ == Type::ByteArray; }

    bool is_missing() const noexcept { return type_ == Type::Error && integer_ == kMissing; }

    bool is_whole() const noexcept { // Integer, Long, Byte or LongLong: whole() is its value
        return type_ == Type::Integer || type_ == Type::Long || type_ == Type::Byte ||
               type_ == Type::LongLong;
    }

    bool is_number() const noexcept; // any numeric type, Boolean, Date and numeric text not included

    // The bare contents; each is valid only for the types named. Conversions are in conversions.h.
    bool boolean() const noexcept { return boolean_; }

    std::int64_t whole() const noexcept { return integer_; } // whole types, Currency (raw), Error

    double real() const noexcept { return real_; } // Single, Double, Date

    const Text& text() const noexcept { return text_; } // String, ByteArray

    Text& text() noexcept { return text_; } // String, for appending in place

    Object* object() const noexcept { return object_; } // Object; null is Nothing

    Array* array() const noexcept { return array_; } // VariantArray

    // The array for writing: copied first when it has other holders.
    Array& unique_array();

private:
    static constexpr std::int64_t kMissing = static_cast<std::int32_t>(0x80020004);

    Variant(Type type, std::int64_t value) noexcept : type_(type) { integer_ = value; }

    Variant(Type type, double value) noexcept : type_(type) { real_ = value; }

    bool is_plain() const noexcept {
        return type_ != Type::String && type_ != Type::Object && type_ != Type::VariantArray &&
               type_ != Type::ByteArray;
    }

    void copy(const Variant& other) noexcept {
        if (other.is_plain()) {
            type_ = other.type_;
            integer_ = other.integer_;
        } else {
            copy_shared(other);
        }
    }

    void take(Variant& other) noexcept {
        if (other.is_plain()) {
            type_ = other.type_;
            integer_ = other.integer_;
        } else {
            take_shared(other);
        }
    }

    void clear() noexcept {
        if (!is_plain())
            clear_shared();
        type_ = Type::Empty;
    }

    void copy_shared(const Variant& other) noexcept;
    void take_shared(Variant& other) noexcept;
    void clear_shared() noexcept;

    Type type_ = Type::Empty;

    union {
        bool boolean_;
        std::int64_t integer_;
        double real_;
        Text text_;
        Object* object_;
        Array* array_;
    };
};

static_assert(sizeof(Variant) == 16);

// True when two variants hold the same type and the same value (objects and arrays: the same one). For
// tests and caches; scripts compare with compare() of operators.h.
bool identical(const Variant& a, const Variant& b) noexcept;

} // namespace tabrixdb
