#include "vbscript/compiler.h"
#include "vbscript/library.h"
#include "vbscript/place.h"

namespace tabrixdb::vbscript {

// --- Names -----------------------------------------------------------------------------------------

// The nearest declaration counts: the procedure's, its class's, the unit's, the library's. What none of them
// has (an object of the host, a name of another unit, a name that was never declared) is found at run time.
Compiler::Meaning Compiler::meaning(std::string_view name) {
    if (const auto found = body_->names.find(name); found != body_->names.end())
        return {Meaning::Kind::Variable, found->second};
    if (const ProcedureDeclaration* procedure = body_->declaration) {
        if (is_own_function(name))
            return {Meaning::Kind::Variable, body_->result};
        const auto constant = procedure->scope.constants.find(name);
        if (constant != procedure->scope.constants.end())
            return {Meaning::Kind::Constant, builder_.constant(*constant->second)};
    }
    if (const ClassDeclaration* own = own_class()) {
        if (const auto found = own->member_index.find(name); found != own->member_index.end()) {
            const std::size_t variable = own->members[found->second].variable;
            if (variable != ClassMember::kNone)
                return {Meaning::Kind::Variable, Operand(Operand::Kind::Field, variable)};
            return {Meaning::Kind::Method, Operand::number(found->second)};
        }
    }
    if (const auto constant = unit_.scope.constants.find(name); constant != unit_.scope.constants.end())
        return {Meaning::Kind::Constant, builder_.constant(*constant->second)};
    if (unit_.scope.variable_index.contains(name) || implicit_globals_.contains(name))
        return {Meaning::Kind::Variable, builder_.link(name)};
    if (unit_.procedure_index.contains(name))
        return {Meaning::Kind::Procedure, builder_.link(name)};
    if (const Variant* constant = find_library_constant(name))
        return {Meaning::Kind::Constant, builder_.constant(*constant)};
    if (find_library_function(name))
        return {Meaning::Kind::Library, builder_.link(name)};
    Meaning dynamic{Meaning::Kind::Dynamic, builder_.link(name)};
    if (body_->declaration && !unit_.option_explicit) {
        const auto [entry, is_new] = body_->undeclared.try_emplace(name);
        if (is_new)
            entry->second = body_->frame.local();
        dynamic.local = entry->second;
    }
    return dynamic;
}

bool Compiler::is_own_function(std::string_view name) const noexcept {
    const ProcedureDeclaration* procedure = body_->declaration;
    return procedure && procedure->has_result() && equal_ignore_case(procedure->name, name);
}

const ClassDeclaration* Compiler::own_class() const noexcept {
    const ProcedureDeclaration* procedure = body_->declaration;
    const bool is_method = procedure && procedure->owner != ProcedureDeclaration::kNoClass;
    return is_method ? &unit_.classes[procedure->owner] : nullptr;
}

Operand Compiler::variable(const Meaning& meaning, std::string_view name) {
    switch (meaning.kind) {
    case Meaning::Kind::Variable:
        return meaning.at;
    case Meaning::Kind::Dynamic: {
        const Operand reference = body_->frame.reference();
        builder_.emit({.code = OpCode::BindName, .a = reference, .b = meaning.at, .c = meaning.local});
        return reference;
    }
    default:
        raise(501, name);
        return body_->frame.temporary();
    }
}

Operand Compiler::variable_or_value(const Meaning& meaning, const Expression& name) {
    if (meaning.kind == Meaning::Kind::Variable)
        return meaning.at;
    if (meaning.kind != Meaning::Kind::Dynamic)
        return evaluate_name(name);
    return bind_argument(meaning, 0);
}

Operand Compiler::bind_argument(const Meaning& meaning, std::uint8_t flags) {
    const Operand value = body_->frame.temporary();
    const Operand reference = body_->frame.reference();
    builder_.emit({.code = OpCode::BindArgument,
                   .flags = flags,
                   .count = static_cast<std::uint16_t>(value.index()),
                   .a = reference,
                   .b = meaning.at,
                   .c = meaning.local});
    return reference;
}

// What stands before the dot.
Operand Compiler::held_object(const Expression& member) {
    if (!member.left)
        return with_object();
    return member.left->kind == Expression::Kind::Me && body_->me.exists() ? body_->me
                                                                           : evaluate(*member.left);
}

Operand Compiler::with_object() {
    if (!body_->withs.empty())
        return body_->withs.back();
    raise(505, {});
    return builder_.constant(Variant());
}

// --- Calls -----------------------------------------------------------------------------------------

std::uint16_t Compiler::list_size(std::size_t size) const {
    if (size > kMaxList)
        raise_compile_error(program_.source, place_, 1001);
    return static_cast<std::uint16_t>(size);
}

std::vector<Operand> Compiler::values(std::span<const Expression* const> expressions) {
    std::vector<Operand> operands;
    for (const Expression* expression : expressions)
        operands.push_back(evaluate(*expression));
    return operands;
}

Operand Compiler::call(const Expression& call, Operand into) {
    const Expression& callee = *call.left;
    if (callee.kind == Expression::Kind::Member)
        return call_member(callee, call.arguments, into);
    const Temporaries temporaries(body_->frame);
    Operand target;
    if (callee.kind == Expression::Kind::Name) {
        Meaning name = meaning(callee.name);
        // With brackets, a function's name inside the function is a call and not its result.
        if (is_own_function(callee.name)) {
            if (const ClassDeclaration* own = own_class())
                return call_method(own->member_index.at(callee.name), call.arguments, into);
            name = {Meaning::Kind::Procedure, builder_.link(callee.name)};
        }
        const Instruction by_name{.code = OpCode::CallName, .a = into, .b = name.at};
        switch (name.kind) {
        case Meaning::Kind::Procedure:
        case Meaning::Kind::Dynamic: {
            Prepared prepared = prepare(call.arguments);
            copy_constants(prepared.operands);
            finish_call(by_name, std::move(prepared), {name.local});
            return into;
        }
        case Meaning::Kind::Method:
            return call_method(name.at.number(), call.arguments, into);
        case Meaning::Kind::Library:
            finish_call(by_name, {values(call.arguments), {}}, {name.local});
            return into;
        default:
            target = name.at;
        }
    } else {
        target = evaluate(callee);
    }
    const std::vector<Operand> subscripts = values(call.arguments);
    builder_.emit({.code = OpCode::Index,
                   .count = list_size(subscripts.size()),
                   .a = into,
                   .b = target,
                   .c = builder_.list(subscripts)});
    return into;
}

// A parameter may be assigned to.
void Compiler::copy_constants(std::vector<Operand>& arguments) {
    for (Operand& operand : arguments)
        if (operand.kind() == Operand::Kind::Constant) {
            const Operand copy = body_->frame.temporary();
            builder_.emit({.code = OpCode::Move, .a = copy, .b = operand});
            operand = copy;
        }
}

Operand Compiler::call_method(std::size_t member, std::span<const Expression* const> arguments,
                              Operand into) {
    const Temporaries temporaries(body_->frame);
    const ClassMember& called = own_class()->members[member];
    if (called.get == ClassMember::kNone) {
        raise(kErrorNoMember, called.name);
        return builder_.constant(Variant());
    }
    Prepared prepared = prepare(arguments);
    copy_constants(prepared.operands);
    finish_call({.code = OpCode::CallMethod, .a = into, .b = Operand::number(called.get)},
                std::move(prepared), {});
    return into;
}

Operand Compiler::call_member(const Expression& member, std::span<const Expression* const> arguments,
                              Operand into) {
    const Temporaries temporaries(body_->frame);
    const Operand object = held_object(member);
    finish_call({.code = OpCode::GetMember, .a = into, .b = object}, prepare(arguments),
                {builder_.member(member.name), builder_.cache()});
    return into;
}

void Compiler::call_statement(const Expression& expression) {
    call(expression, Operand());
}

Compiler::Prepared Compiler::prepare(std::span<const Expression* const> arguments) {
    Prepared prepared;
    for (const Expression* argument : arguments)
        prepared.operands.push_back(prepare_argument(*argument, prepared));
    return prepared;
}

// Variables and array elements are passed by reference, everything else as a copy.
Operand Compiler::prepare_argument(const Expression& argument, Prepared& prepared) {
    if (argument.kind == Expression::Kind::Name)
        return variable_or_value(meaning(argument.name), argument);
    if (argument.kind == Expression::Kind::Group)
        return held_now(evaluate(argument));
    const bool is_named_call =
        argument.kind == Expression::Kind::Call && argument.left->kind == Expression::Kind::Name;
    if (!is_named_call || is_own_function(argument.left->name))
        return evaluate(argument);
    const Meaning array = meaning(argument.left->name);
    // Without declarations any name in a procedure may turn out to be an array.
    const bool may_be_array = array.kind == Meaning::Kind::Variable || array.local.exists();
    return may_be_array ? prepare_element(argument, array, prepared) : evaluate(argument);
}

// An element is passed as a copy that is stored back after the call, because the array may be
// redimensioned meanwhile.
Operand Compiler::prepare_element(const Expression& element, const Meaning& array, Prepared& prepared) {
    const Operand value = body_->frame.temporary();
    std::vector<Operand> subscripts;
    for (const Expression* subscript : element.arguments) {
        const Operand at = evaluate(*subscript);
        subscripts.push_back(at.is_temporary() ? at : body_->frame.temporary());
        if (at != subscripts.back())
            builder_.emit({.code = OpCode::Move, .a = subscripts.back(), .b = at});
    }
    if (array.kind == Meaning::Kind::Variable)
        builder_.emit({.code = OpCode::Index,
                       .flags = Instruction::kKeepArguments,
                       .count = list_size(subscripts.size()),
                       .a = value,
                       .b = array.at,
                       .c = builder_.list(subscripts)});
    else
        finish_call(
            {.code = OpCode::CallName, .flags = Instruction::kKeepArguments, .a = value, .b = array.at},
            {subscripts, {}}, {array.local});
    prepared.elements.push_back({value, array, std::move(subscripts)});
    return value;
}

void Compiler::finish_call(Instruction instruction, Prepared prepared, std::vector<Operand> before) {
    instruction.count = list_size(prepared.operands.size());
    before.insert(before.end(), prepared.operands.begin(), prepared.operands.end());
    instruction.c = builder_.list(before);
    if (!prepared.elements.empty())
        instruction.flags |= Instruction::kKeepArguments;
    builder_.emit(instruction);
    for (const PassedElement& element : prepared.elements) {
        const bool is_variable = element.array.kind == Meaning::Kind::Variable;
        const Operand array =
            is_variable ? element.array.at : bind_argument(element.array, Instruction::kOnlyVariables);
        builder_.emit({.code = OpCode::WriteBack,
                       .count = list_size(element.subscripts.size()),
                       .a = element.value,
                       .b = array,
                       .c = builder_.list(element.subscripts)});
    }
}

// --- Targets ---------------------------------------------------------------------------------------

// The property of the own class that an assignment to this target calls, or nullptr.
const ClassMember* Compiler::own_accessor(const Expression& target) {
    const Expression& name = target.kind == Expression::Kind::Call ? *target.left : target;
    if (name.kind != Expression::Kind::Name)
        return nullptr;
    const Meaning found = meaning(name.name);
    return found.kind == Meaning::Kind::Method ? &own_class()->members[found.at.number()] : nullptr;
}

void Compiler::store_property(const ClassMember& property, std::span<const Expression* const> arguments,
                              Operand value, bool by_reference) {
    const std::size_t accessor = by_reference ? property.set : property.let;
    if (accessor == ClassMember::kNone)
        return raise(501, property.name);
    const Operand held = body_->frame.temporary();
    builder_.emit({.code = by_reference ? OpCode::Set : OpCode::Let, .a = held, .b = value});
    Prepared prepared = prepare(arguments);
    copy_constants(prepared.operands);
    prepared.operands.push_back(held);
    finish_call({.code = OpCode::CallMethod, .b = Operand::number(accessor)}, std::move(prepared), {});
}

void Compiler::store(const Expression& target, Operand value, bool by_reference) {
    if (const ClassMember* property = own_accessor(target))
        return store_property(*property, target.arguments, value, by_reference);
    if (target.kind == Expression::Kind::Name) {
        const Operand at = variable(meaning(target.name), target.name);
        builder_.emit({.code = by_reference ? OpCode::Set : OpCode::Let, .a = at, .b = value});
    } else if (target.kind == Expression::Kind::Member) {
        store_member(target, {}, value, by_reference);
    } else if (target.kind == Expression::Kind::Call && target.left->kind == Expression::Kind::Member) {
        store_member(*target.left, target.arguments, value, by_reference);
    } else {
        store_element(target, value, by_reference);
    }
}

void Compiler::store_member(const Expression& member, std::span<const Expression* const> arguments,
                            Operand value, bool by_reference) {
    const Operand object = held_object(member);
    std::vector<Operand> list = {builder_.member(member.name), builder_.cache()};
    const std::vector<Operand> given = values(arguments);
    list.insert(list.end(), given.begin(), given.end());
    builder_.emit({.code = OpCode::StoreMember,
                   .flags = by_reference ? Instruction::kByReference : std::uint8_t{0},
                   .count = list_size(given.size()),
                   .a = value,
                   .b = object,
                   .c = builder_.list(list)});
}

// a(i) = x, a(i)(j) = x, f(x)(i) = y: down to what the subscripts begin at, then one instruction that
// walks them, so that no element is held while anything else runs.
void Compiler::store_element(const Expression& target, Operand value, bool by_reference) {
    std::vector<std::vector<Operand>> groups;
    const Expression* root = &target;
    const auto is_element = [](const Expression& at) {
        return at.kind == Expression::Kind::Call && at.left->kind != Expression::Kind::Member;
    };
    for (; is_element(*root); root = root->left)
        groups.push_back(values(root->arguments));
    const Operand first = root->kind == Expression::Kind::Name ? variable_or_value(meaning(root->name), *root)
                                                               : evaluate(*root);
    std::vector<Operand> list;
    for (auto group = groups.rbegin(); group != groups.rend(); ++group) {
        list.push_back(Operand::number(group->size()));
        list.insert(list.end(), group->begin(), group->end());
    }
    builder_.emit({.code = OpCode::StoreElement,
                   .flags = by_reference ? Instruction::kByReference : std::uint8_t{0},
                   .count = list_size(groups.size()),
                   .a = value,
                   .b = first,
                   .c = builder_.list(list)});
}

} // namespace tabrixdb::vbscript
