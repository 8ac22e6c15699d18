#include "automation/object.h"

#include "automation/array.h"
#include "automation/error.h"
#include "automation/member.h"

#include <algorithm>
#include <vector>

namespace tabrixdb {

// --- ClassInfo -------------------------------------------------------------------------------------

ClassInfo::ClassInfo(std::string_view name, std::string_view program_id, std::vector<Member> members)
    : name_(name),
      program_id_(program_id),
      members_(std::move(members)) {
    for (std::size_t i = 0; i < members_.size(); ++i) {
        index_.emplace(members_[i].name, static_cast<int>(i));
        if (members_[i].is_default)
            default_ = static_cast<int>(i);
    }
}

int ClassInfo::find(std::string_view name) const noexcept {
    if (name.empty())
        return default_;
    const auto found = index_.find(name);
    return found == index_.end() ? -1 : found->second;
}

// --- Object ----------------------------------------------------------------------------------------

namespace {

// Deepest nesting of arguments passed on to default members; a page's objects use two or three.
constexpr int kMaxPassedOn = 16;

Variant through_default(const Variant& holder, Access access, Arguments arguments, int depth);

bool takes_itself(const Member& member, Thunk thunk, std::size_t given) {
    return thunk && given <= member.parameters.size();
}

// The declared parameters, with defaults where the caller left one out. Holds the temporaries.
class Filled {
public:
    Filled(const Member& member, Arguments given, bool with_value) {
        const std::size_t indexes = given.size() - with_value;
        const std::size_t total = member.parameters.size() + with_value;
        defaults_.reserve(total);
        pointers_.reserve(total);
        for (std::size_t i = 0; i < member.parameters.size(); ++i) {
            const Parameter& parameter = member.parameters[i];
            if (i < indexes && !given[i]->is_missing()) {
                pointers_.push_back(given[i]);
            } else if (parameter.optional) {
                pointers_.push_back(&defaults_.emplace_back(parameter.default_value));
            } else {
                throw Error(kErrorNotOptional);
            }
        }
        if (with_value)
            pointers_.push_back(given.back());
    }

    Arguments arguments() const { return pointers_; }

private:
    std::vector<Variant> defaults_;
    std::vector<Variant*> pointers_;
};

Variant call(Object& object, const Member& member, Thunk thunk, Arguments given, bool with_value) {
    const std::size_t wanted = member.parameters.size() + with_value;
    bool complete = given.size() == wanted;
    for (std::size_t i = 0; complete && i < given.size() - with_value; ++i)
        complete = !given[i]->is_missing();
    if (complete)
        return thunk(object, given);
    const Filled filled(member, given, with_value);
    return thunk(object, filled.arguments());
}

Variant invoke_member(Object& object, const Member& member, Access access, Arguments arguments, int depth) {
    const Thunk thunk = access == Access::Get ? member.get : access == Access::Let ? member.let : member.set;
    const std::size_t given = arguments.size() - (access != Access::Get);
    if (takes_itself(member, thunk, given))
        return call(object, member, thunk, arguments, access != Access::Get);
    // Not for this member: read it with the arguments it takes, then ask the default member of the result.
    if (member.is_method || !member.get || depth == kMaxPassedOn)
        throw Error(thunk ? kErrorArguments : kErrorNoMember);
    const std::size_t own = std::min(given, member.parameters.size());
    if (access != Access::Let && given == own)
        throw Error(kErrorNoMember);
    const Variant holder = call(object, member, member.get, arguments.first(own), false);
    if (access != Access::Get && !holder.is_object())
        throw Error(kErrorNoMember);
    return through_default(holder, access, arguments.subspan(own), depth + 1);
}

Variant through_default(const Variant& holder, Access access, Arguments arguments, int depth) {
    if (!holder.is_object()) {
        if (holder.is_array() && access == Access::Get) {
            std::vector<std::int32_t> subscripts;
            for (const Variant* argument : arguments)
                subscripts.push_back(to_long(*argument));
            return holder.array()->at(subscripts);
        }
        throw Error(kErrorArguments);
    }
    Object* object = holder.object();
    if (!object)
        throw Error(kErrorNothing);
    const int member = object->find({});
    if (member < 0)
        throw Error(kErrorNoMember);
    if (object->dispatch_key() != &object->class_info())
        return object->invoke(member, access, arguments);
    return invoke_member(*object, object->class_info().members()[static_cast<std::size_t>(member)], access,
                         arguments, depth);
}

} // namespace

int Object::find(std::string_view name) const {
    return class_info().find(name);
}

Variant Object::invoke(int member, Access access, Arguments arguments) {
    return invoke_member(*this, class_info().members()[static_cast<std::size_t>(member)], access, arguments,
                         0);
}

std::unique_ptr<Enumerator> Object::enumerate() {
    throw Error(kErrorNoEnumerator);
}

std::string_view Object::type_name() const {
    return class_info().name();
}

Variant invoke(Object& object, std::string_view name, Access access, Arguments arguments) {
    const int member = object.find(name);
    if (member < 0)
        throw Error(kErrorNoMember);
    return object.invoke(member, access, arguments);
}

Variant get(Object& object, std::string_view name, std::initializer_list<Variant> arguments) {
    std::vector<Variant> held(arguments);
    std::vector<Variant*> pointers;
    for (Variant& value : held)
        pointers.push_back(&value);
    return invoke(object, name, Access::Get, pointers);
}

void let(Object& object, std::string_view name, Variant value) {
    Variant* const pointers[] = {&value};
    invoke(object, name, Access::Let, pointers);
}

Variant default_value(Object* object, Arguments arguments) {
    if (!object)
        throw Error(kErrorNothing);
    return invoke(*object, {}, Access::Get, arguments);
}

Variant value_of(Variant value) {
    // A default member may give an object again; a cycle of such objects is refused, not followed.
    for (int depth = 0; value.is_object(); ++depth) {
        if (depth == kMaxPassedOn)
            throw Error(kErrorNoMember);
        value = default_value(value.object());
    }
    return value;
}

} // namespace tabrixdb
