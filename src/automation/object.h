#pragma once

#include "automation/ref.h"
#include "automation/variant.h"

#include <memory>
#include <span>
#include <string_view>

namespace tabrixdb {

class ClassInfo;
struct Member;

// How a member is asked. A method called in an expression and a property read are the same to the caller:
// both are Get. Let assigns a value, Set assigns a reference; the assigned value is the last argument.
enum class Access : std::uint8_t { Get, Let, Set };

// The arguments of a call: one pointer an argument, to the caller's variable itself (by reference) or to
// a temporary (by value); writing through it is the by-reference write-back. An argument that was left
// out is Variant::missing(). The pointers are valid during the call.
using Arguments = std::span<Variant* const>;

// Yields the items of a For Each, one a call.
class Enumerator {
public:
    virtual ~Enumerator() = default;
    virtual bool next(Variant& item) = 0; // false at the end, `item` unchanged
};

// What a page can hold: counted by reference, asked by name, ignoring case.
//
// A class with a fixed set of members describes them once, in its ClassInfo (see member.h), and overrides
// class_info() only. A class whose members are known only at run time (a script's own class, an object of
// another component) overrides find() and invoke().
class Object : public Counted {
public:
    virtual const ClassInfo& class_info() const = 0;

    // An opaque handle of the member of that name (empty name: the default member), or -1. Handles stay
    // valid for all objects whose dispatch_key() is equal, so that a call site can cache one.
    virtual int find(std::string_view name) const;

    virtual const void* dispatch_key() const { return &class_info(); }

    // Calls a member by its handle. Arguments that the member does not take go to the default member of
    // what it returns (`db.Grid("a")` is `db.Grid.Item("a")`), and a Let on a member that can only be read
    // goes to the default member of what it returns. Raises Error 438 (no such access), 449 (an argument
    // that may not be left out), 450 (too many).
    virtual Variant invoke(int member, Access access, Arguments arguments);

    // For Each; Error 451 when the class has none.
    virtual std::unique_ptr<Enumerator> enumerate();

    // The name that TypeName reports.
    virtual std::string_view type_name() const;
};

// By name, for C++ callers and tests; Error 438 for a name the object does not have.
Variant invoke(Object& object, std::string_view name, Access access, Arguments arguments);
Variant get(Object& object, std::string_view name, std::initializer_list<Variant> arguments = {});
void let(Object& object, std::string_view name, Variant value);

// Reads or assigns the default member; Error 438 without one. `object` null: Error 91.
Variant default_value(Object* object, Arguments arguments = {});
// A value where a value is wanted: objects give their default member (repeatedly), others themselves.
Variant value_of(Variant value);

} // namespace tabrixdb
