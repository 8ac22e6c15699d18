#pragma once

#include "automation/argument.h"
#include "automation/object.h"

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <span>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <unordered_map>
#include <utility>
#include <vector>

namespace tabrixdb {

// One parameter of a member, as its class declares it: `{"ROW", std::int16_t{10}}` may be left out and is
// then 10; `{"GridID"}` may not. The type and whether it is by reference come from the C++ signature.
struct Parameter {
    Parameter(const char* parameter_name) : name(parameter_name) {}

    template <class T>
    Parameter(const char* parameter_name, T&& default_argument)
        : name(parameter_name),
          optional(true),
          default_value(std::forward<T>(default_argument)) {}

    std::string_view name;
    bool optional = false;
    Variant default_value;
    // Filled by the table from the C++ parameter.
    Type type = Type::Variant;
    bool by_reference = false;
};

using Thunk = Variant (*)(Object&, Arguments);

// One member: which accesses it has and the C++ behind each.
struct Member {
    std::string_view name;
    std::vector<Parameter> parameters = {}; // of Get (or the call); Let and Set take one more, the value
    Thunk get = nullptr;
    Thunk let = nullptr;
    Thunk set = nullptr;
    bool is_method = false;
    bool is_default = false;
    Type type = Type::Variant; // of the property or the result; Empty for a method without one

    Member&& as_default() && {
        is_default = true;
        return std::move(*this);
    }
};

// A class's members, described once. Read by the script machine, by the COM bridge and by the member
// reference in the docs. Lives for ever (a function-local static of the class).
class ClassInfo {
public:
    // `name`: what TypeName reports; `program_id`: what CreateObject takes, empty for a class that pages
    // cannot create.
    ClassInfo(std::string_view name, std::string_view program_id, std::vector<Member> members);

    std::string_view name() const noexcept { return name_; }

    std::string_view program_id() const noexcept { return program_id_; }

    std::span<const Member> members() const noexcept { return members_; }

    // Index of the member of that name, ignoring case (empty: the default member), or -1.
    int find(std::string_view name) const noexcept;

private:
    std::string_view name_;
    std::string_view program_id_;
    std::vector<Member> members_;
    std::unordered_map<std::string_view, int, IgnoreCaseHash, IgnoreCaseEqual> index_;
    int default_ = -1;
};

// --- Making members from C++ -----------------------------------------------------------------------

namespace detail {

template <class F>
struct Signature;

template <class C, class R, class... A>
struct Signature<R (C::*)(A...)> {
    using Class = C;
    using Result = R;
    static constexpr std::size_t arity = sizeof...(A);

    static void describe(std::vector<Parameter>& parameters) {
        std::size_t i = 0;
        ((parameters.at(i).type = ArgumentType<std::remove_cvref_t<A>>::type,
          parameters.at(i).by_reference =
              std::is_lvalue_reference_v<A> && !std::is_const_v<std::remove_reference_t<A>>,
          ++i),
         ...);
    }

    template <auto Function>
    static Variant call(Object& object, Arguments arguments) {
        return call<Function>(static_cast<C&>(object), arguments, std::index_sequence_for<A...>());
    }

    template <auto Function, std::size_t... I>
    static Variant call(C& self, [[maybe_unused]] Arguments arguments, std::index_sequence<I...>) {
        // Conversions happen in order; what a by-reference parameter holds afterwards is written back.
        std::tuple<Argument<A>...> held{Argument<A>(*arguments[I])...};
        if constexpr (std::is_void_v<R>) {
            (self.*Function)(std::get<I>(held).get()...);
            (std::get<I>(held).write_back(), ...);
            return Variant();
        } else {
            Variant result = to_variant((self.*Function)(std::get<I>(held).get()...));
            (std::get<I>(held).write_back(), ...);
            return result;
        }
    }
};

template <class C, class R, class... A>
struct Signature<R (C::*)(A...) const> : Signature<R (C::*)(A...)> {};

template <class C, class R, class... A>
struct Signature<R (C::*)(A...) noexcept> : Signature<R (C::*)(A...)> {};

template <class C, class R, class... A>
struct Signature<R (C::*)(A...) const noexcept> : Signature<R (C::*)(A...)> {};

template <auto Field, class C, class T>
Variant get_field(Object& object, Arguments) {
    return to_variant(static_cast<C&>(object).*Field);
}

template <auto Field, class C, class T>
Variant let_field(Object& object, Arguments arguments) {
    static_cast<C&>(object).*Field = Argument<T>(*arguments.back()).get();
    return Variant();
}

template <auto Field, class C, class T>
Member field_member(std::string_view name, T C::*) {
    Member member{.name = name, .get = get_field<Field, C, T>, .type = ArgumentType<T>::type};
    if constexpr (ArgumentType<T>::type == Type::Object) {
        member.set = let_field<Field, C, T>;
    } else {
        member.let = let_field<Field, C, T>;
        // A Variant property takes a reference as well as a value.
        if constexpr (std::is_same_v<T, Variant>)
            member.set = let_field<Field, C, T>;
    }
    return member;
}

} // namespace detail

// A method: method<&Pro::create_grid>("CreateGrid", {"GridID", "SourceID", {"Template", ""}}).
template <auto Function>
Member method(std::string_view name, std::vector<Parameter> parameters = {}) {
    using S = detail::Signature<decltype(Function)>;
    Member member{.name = name,
                  .parameters = std::move(parameters),
                  .get = &S::template call<Function>,
                  .is_method = true};
    S::describe(member.parameters);
    if constexpr (std::is_void_v<typename S::Result>)
        member.type = Type::Empty;
    else
        member.type = ArgumentType<std::remove_cvref_t<typename S::Result>>::type;
    return member;
}

// A property that only reads: property<&Recordset::eof>("EOF"); with parameters, an indexed one.
template <auto Get>
Member property(std::string_view name, std::vector<Parameter> parameters = {}) {
    Member member = method<Get>(name, std::move(parameters));
    member.is_method = false;
    return member;
}

// A property with a getter and a setter; the setter takes the parameters, then the value. A setter whose
// value is an object answers Set, one that takes a Variant answers Let and Set, all others Let.
template <auto Get, auto Put>
Member property(std::string_view name, std::vector<Parameter> parameters = {}) {
    Member member = property<Get>(name, std::move(parameters));
    using S = detail::Signature<decltype(Put)>;
    member.let = &S::template call<Put>;
    if (member.type == Type::Object) {
        member.set = member.let;
        member.let = nullptr;
    } else if (member.type == Type::Variant) {
        member.set = member.let;
    }
    return member;
}

// A plain data member: field<&DbField::caption>("Caption"). Holds what to_variant and Argument know.
template <auto Field>
Member field(std::string_view name) {
    return detail::field_member<Field>(name, Field);
}

} // namespace tabrixdb
