#pragma once

#include "automation/conversions.h"
#include "automation/error.h"
#include "automation/object.h"

#include <string>
#include <type_traits>

namespace tabrixdb {

// How a C++ parameter or property type looks from automation. The types that members may use: bool,
// std::int16_t, std::int32_t, double, std::string, Text, Variant, Ref<T> of an Object class, Arguments-free.
template <class T>
struct ArgumentType;

template <>
struct ArgumentType<bool> {
    static constexpr Type type = Type::Boolean;

    static bool from(const Variant& value) { return to_boolean(value); }
};

template <>
struct ArgumentType<std::int16_t> {
    static constexpr Type type = Type::Integer;

    static std::int16_t from(const Variant& value) { return to_integer(value); }
};

template <>
struct ArgumentType<std::int32_t> {
    static constexpr Type type = Type::Long;

    static std::int32_t from(const Variant& value) { return to_long(value); }
};

template <>
struct ArgumentType<double> {
    static constexpr Type type = Type::Double;

    static double from(const Variant& value) { return to_double(value); }
};

template <>
struct ArgumentType<Text> {
    static constexpr Type type = Type::String;

    static Text from(const Variant& value) { return to_text(value); }
};

template <>
struct ArgumentType<std::string> {
    static constexpr Type type = Type::String;

    static std::string from(const Variant& value) { return to_text(value).str(); }
};

template <>
struct ArgumentType<std::string_view> { // results only
    static constexpr Type type = Type::String;
};

template <>
struct ArgumentType<Variant> {
    static constexpr Type type = Type::Variant;

    static const Variant& from(const Variant& value) { return value; }
};

template <class T>
struct ArgumentType<Ref<T>> {
    static constexpr Type type = Type::Object;

    // Nothing gives an empty reference; an object of another class is a type mismatch.
    static Ref<T> from(const Variant& value) {
        if (!value.is_object())
            throw Error(value.is_missing() ? kErrorNotOptional : kErrorObjectRequired);
        if (!value.object())
            return {};
        T* object = dynamic_cast<T*>(value.object());
        if (!object)
            throw Error(kErrorMismatch);
        return Ref<T>(object);
    }
};

inline Variant to_variant(const Variant& value) {
    return value;
}

inline Variant to_variant(Variant&& value) {
    return std::move(value);
}

template <class T>
Variant to_variant(const T& value) {
    return Variant(value);
}

// One argument of a call, converted to the C++ parameter type A for the time of the call.
template <class A>
class Argument {
    using T = std::remove_cvref_t<A>;
    static constexpr bool kByReference =
        std::is_lvalue_reference_v<A> && !std::is_const_v<std::remove_reference_t<A>>;

public:
    explicit Argument(Variant& variable) : variable_(variable), held_(ArgumentType<T>::from(variable)) {}

    T& get() requires kByReference { return held_; }

    const T& get() const requires(!kByReference) { return held_; }

    void write_back() {
        if constexpr (kByReference) {
            if (!(held_ == ArgumentType<T>::from(variable_)))
                variable_ = Variant(held_);
        }
    }

private:
    Variant& variable_;
    T held_;
};

// A Variant by reference is the caller's variable itself; one by value is a value already.
template <>
class Argument<Variant&> {
public:
    explicit Argument(Variant& variable) : variable_(variable) {}

    Variant& get() { return variable_; }

    void write_back() {}

private:
    Variant& variable_;
};

template <>
class Argument<const Variant&> {
public:
    explicit Argument(const Variant& variable) : variable_(variable) {}

    const Variant& get() { return variable_; }

    void write_back() {}

private:
    const Variant& variable_;
};

} // namespace tabrixdb
