#include "vbscript/compiler.h"

#include "vbscript/library.h"
#include "vbscript/machine.h"
#include "vbscript/parser.h"
#include "vbscript/place.h"

namespace tabrixdb::vbscript {

namespace {

// Calls `visit` for every statement of a block and of the blocks inside it.
template <class Visitor>
void walk(Block block, const Visitor& visit) {
    for (const Statement* statement : block) {
        visit(*statement);
        switch (statement->kind) {
        case Statement::Kind::If: {
            const auto& branch = static_cast<const IfStatement&>(*statement);
            for (const IfClause& clause : branch.clauses)
                walk(clause.body, visit);
            walk(branch.otherwise, visit);
            break;
        }
        case Statement::Kind::Select: {
            const auto& select = static_cast<const SelectStatement&>(*statement);
            for (const CaseClause& clause : select.cases)
                walk(clause.body, visit);
            walk(select.otherwise, visit);
            break;
        }
        case Statement::Kind::For:
            walk(static_cast<const ForStatement&>(*statement).body, visit);
            break;
        case Statement::Kind::ForEach:
            walk(static_cast<const ForEachStatement&>(*statement).body, visit);
            break;
        case Statement::Kind::Loop:
            walk(static_cast<const LoopStatement&>(*statement).body, visit);
            break;
        case Statement::Kind::With:
            walk(static_cast<const WithStatement&>(*statement).body, visit);
            break;
        default:
            break;
        }
    }
}

} // namespace

// --- Units and procedures --------------------------------------------------------------------------

void Compiler::compile_unit() {
    program_.option_explicit = unit_.option_explicit;
    find_implicit_names(unit_.body, true);
    declare_globals();
    program_.procedures.resize(unit_.procedures.size());
    program_.classes.resize(unit_.classes.size());
    for (std::size_t i = 0; i < unit_.classes.size(); ++i)
        compile_class(unit_.classes[i], program_.classes[i]);

    Body global;
    body_ = &global;
    builder_.mark(Place(), true);
    dimension(unit_.scope);
    block(unit_.body);
    finish_procedure(program_.main, unit_.end);

    for (const ProcedureDeclaration& declaration : unit_.procedures)
        compile_procedure(declaration);
}

void Compiler::compile_expression(const Expression& expression) {
    Body global;
    body_ = &global;
    global.result = global.frame.local();
    builder_.mark(expression.place, true);
    const Operand value = evaluate(expression);
    builder_.emit({.code = OpCode::Move, .a = global.result, .b = value});
    finish_procedure(program_.main, unit_.end);
}

// Names that the global statements assign to without declaring them. ReDim declares, also where
// declarations are required.
void Compiler::find_implicit_names(Block block, bool is_global) {
    const auto add = [&](std::string_view name, bool declares) {
        if (unit_.option_explicit && !declares)
            return;
        if (is_global) {
            if (!unit_.scope.variable_index.contains(name) && !unit_.scope.constants.contains(name) &&
                !unit_.procedure_index.contains(name) && !unit_.class_index.contains(name) &&
                !find_library_function(name) && !find_library_constant(name))
                implicit_globals_.try_emplace(name, implicit_globals_.size());
        } else if (declares && meaning(name).kind == Meaning::Kind::Dynamic) {
            body_->names.emplace(name, body_->frame.local());
        }
    };
    walk(block, [&](const Statement& statement) {
        if (statement.kind == Statement::Kind::ReDim) {
            for (const ReDimItem& item : static_cast<const ReDimStatement&>(statement).items)
                add(item.name, true);
        } else if (statement.kind == Statement::Kind::Assign) {
            const Expression& target = *static_cast<const AssignStatement&>(statement).target;
            if (target.kind == Expression::Kind::Name)
                add(target.name, false);
        } else if (statement.kind == Statement::Kind::For) {
            add(static_cast<const ForStatement&>(statement).variable->name, false);
        } else if (statement.kind == Statement::Kind::ForEach) {
            add(static_cast<const ForEachStatement&>(statement).variable->name, false);
        }
    });
}

void Compiler::declare_globals() {
    const auto declare = [&](std::string_view name, Program::Declared what, std::size_t index) {
        Program::Link& link = program_.links[builder_.link(name).index()];
        link.declared = what;
        link.index = static_cast<std::uint32_t>(index);
    };
    for (const Variable& variable : unit_.scope.variables)
        declare(variable.name, Program::Declared::Variable, 0);
    for (const auto& [name, value] : unit_.scope.constants)
        declare(name, Program::Declared::Constant, builder_.constant(*value).index());
    for (const auto& [name, index] : implicit_globals_)
        declare(name, Program::Declared::Implicit, 0);
    for (const auto& [name, index] : unit_.procedure_index)
        declare(name, Program::Declared::Procedure, index);
    for (const auto& [name, index] : unit_.class_index)
        declare(name, Program::Declared::Class, index);
}

// Arrays have their dimensions from the beginning of their scope on.
void Compiler::dimension(const Scope& scope) {
    for (const Variable& variable : scope.variables) {
        if (!variable.is_array)
            continue;
        builder_.mark(variable.place, true);
        std::vector<Operand> bounds;
        for (const std::int32_t bound : variable.bounds)
            bounds.push_back(Operand::number(static_cast<std::size_t>(bound)));
        place_ = variable.place;
        builder_.emit({.code = OpCode::DimArray,
                       .count = list_size(bounds.size()),
                       .a = meaning(variable.name).at,
                       .c = builder_.list(bounds)});
    }
}

void Compiler::compile_class(const ClassDeclaration& declaration, Class& made) const {
    const auto index = [](std::size_t given) {
        return given == ClassMember::kNone ? -1 : static_cast<std::int32_t>(given);
    };
    made.name = declaration.name;
    made.default_member = index(declaration.default_member);
    for (const Variable& variable : declaration.variables)
        made.fields.push_back({variable.is_array, variable.bounds});
    for (const ClassMember& member : declaration.members) {
        made.index.emplace(member.name, static_cast<std::int32_t>(made.members.size()));
        made.members.push_back({std::string(member.name), member.is_private, index(member.variable),
                                index(member.get), index(member.let), index(member.set)});
    }
    const auto event = [&](std::string_view name) {
        const std::int32_t member = made.find(name);
        return member < 0 ? -1 : made.members[static_cast<std::size_t>(member)].get;
    };
    made.initialize = event("Class_Initialize");
    made.terminate = event("Class_Terminate");
}

void Compiler::compile_procedure(const ProcedureDeclaration& declaration) {
    const std::size_t index = static_cast<std::size_t>(&declaration - unit_.procedures.data());
    Procedure& procedure = program_.procedures[index];
    Body body;
    body_ = &body;
    body.declaration = &declaration;
    procedure.name = declaration.name;
    procedure.first = builder_.here();
    if (declaration.owner != ProcedureDeclaration::kNoClass) {
        procedure.owner = &program_.classes[declaration.owner];
        body.me = body.frame.local(); // the first slot
    }
    for (const ParameterDeclaration& parameter : declaration.parameters) {
        const Operand at = parameter.by_value ? body.frame.local() : body.frame.parameter_reference();
        procedure.parameters.push_back({parameter.by_value, at});
        body.names.emplace(parameter.name, at);
    }
    if (declaration.has_result())
        body.result = body.frame.local();
    for (const Variable& variable : declaration.scope.variables)
        body.names.emplace(variable.name, body.frame.local());
    find_implicit_names(declaration.body, false);

    builder_.mark(declaration.place, true);
    dimension(declaration.scope);
    block(declaration.body);
    finish_procedure(procedure, declaration.end);
}

void Compiler::finish_procedure(Procedure& procedure, Place end) {
    builder_.mark(end, true);
    builder_.emit({.code = OpCode::Return});
    procedure.result = body_->result;
    procedure.slots = body_->frame.slots();
    procedure.references = body_->frame.references();
    if (procedure.slots > kMaxSlots || procedure.references > kMaxSlots)
        raise_compile_error(program_.source, end, 1001);
    name_slots(procedure);
}

void Compiler::name_slots(Procedure& procedure) const {
    for (const auto& [name, at] : body_->names)
        procedure.names.push_back({std::string(name), at, true});
    for (const auto& [name, at] : body_->undeclared)
        procedure.names.push_back({std::string(name), at, false});
    if (body_->result.exists())
        procedure.names.push_back({procedure.name, body_->result, true});
}

// --- Statements ------------------------------------------------------------------------------------

void Compiler::block(Block statements) {
    for (const Statement* each : statements)
        statement(*each);
}

void Compiler::statement(const Statement& statement) {
    const Temporaries temporaries(body_->frame);
    place_ = statement.place;
    builder_.mark(statement.place, true);
    switch (statement.kind) {
    case Statement::Kind::Assign:
        return assign(static_cast<const AssignStatement&>(statement));
    case Statement::Kind::Call:
        return call_statement(*static_cast<const CallStatement&>(statement).call);
    case Statement::Kind::If:
        return if_statement(static_cast<const IfStatement&>(statement));
    case Statement::Kind::Select:
        return select(static_cast<const SelectStatement&>(statement));
    case Statement::Kind::For:
        return for_loop(static_cast<const ForStatement&>(statement));
    case Statement::Kind::ForEach:
        return for_each(static_cast<const ForEachStatement&>(statement));
    case Statement::Kind::Loop:
        return loop(static_cast<const LoopStatement&>(statement));
    case Statement::Kind::Exit:
        return exit(static_cast<const ExitStatement&>(statement));
    case Statement::Kind::With:
        return with(static_cast<const WithStatement&>(statement));
    case Statement::Kind::ReDim:
        return redim(static_cast<const ReDimStatement&>(statement));
    case Statement::Kind::Erase:
        return erase(static_cast<const EraseStatement&>(statement));
    case Statement::Kind::OnError: {
        const bool resume = static_cast<const OnErrorStatement&>(statement).resume_next;
        builder_.emit(
            {.code = OpCode::OnError, .flags = resume ? Instruction::kResumeNext : std::uint8_t{0}});
        return;
    }
    case Statement::Kind::WriteLiteral:
        builder_.emit({.code = OpCode::WriteLiteral, .a = Operand::number(statement.place.piece)});
        return;
    case Statement::Kind::WriteValue: {
        const Operand value = evaluate(*static_cast<const WriteValueStatement&>(statement).value);
        builder_.emit({.code = OpCode::WriteValue, .flags = Instruction::kLetsGo, .a = value});
        return;
    }
    }
}

void Compiler::raise(std::int32_t number, std::string_view name) {
    builder_.emit({.code = OpCode::Raise,
                   .a = Operand::number(static_cast<std::size_t>(number)),
                   .b = builder_.member(name)});
}

// Each block ends with a mark of its own before the jump that leaves it, so that an error in its last
// statement goes on there and not in the block behind.
void Compiler::if_statement(const IfStatement& statement) {
    std::vector<std::uint32_t> ends;
    for (const IfClause& clause : statement.clauses) {
        builder_.mark(clause.place, false);
        std::uint32_t to_next = 0;
        {
            const Temporaries temporaries(body_->frame);
            to_next = jump_on(*clause.condition, false);
        }
        builder_.mark(clause.place, true);
        block(clause.body);
        const bool is_last = &clause == &statement.clauses.back() && statement.otherwise.empty();
        if (!is_last) {
            builder_.mark(clause.place, true);
            ends.push_back(builder_.emit({.code = OpCode::Jump}));
        }
        builder_.land(to_next);
    }
    block(statement.otherwise);
    for (const std::uint32_t end : ends)
        builder_.land(end);
}

void Compiler::select(const SelectStatement& statement) {
    const Expression& subject = *statement.subject;
    const bool is_literal = subject.kind == Expression::Kind::Literal;
    Operand value;
    if (is_literal) {
        value = evaluate(subject);
    } else {
        value = body_->frame.held();
        builder_.emit({.code = OpCode::Clear, .a = value});
        const Temporaries temporaries(body_->frame);
        builder_.emit({.code = OpCode::Let, .a = value, .b = evaluate(subject)});
    }
    std::vector<std::uint32_t> ends;
    for (const CaseClause& clause : statement.cases) {
        builder_.mark(clause.place, false);
        std::vector<std::uint32_t> hits;
        for (const Expression* test : clause.tests) {
            const Temporaries temporaries(body_->frame);
            const Operand with = evaluate(*test);
            std::uint8_t flags = Instruction::kLetsGo;
            if (is_literal)
                flags |= Instruction::kLeftLiteral;
            if (test->kind == Expression::Kind::Literal)
                flags |= Instruction::kRightLiteral;
            hits.push_back(builder_.emit({.code = OpCode::JumpEqual, .flags = flags, .a = value, .b = with}));
        }
        const std::uint32_t to_next = builder_.emit({.code = OpCode::Jump});
        for (const std::uint32_t hit : hits)
            builder_.land(hit);
        builder_.mark(clause.place, true);
        block(clause.body);
        builder_.mark(clause.place, true);
        ends.push_back(builder_.emit({.code = OpCode::Jump}));
        builder_.land(to_next);
    }
    block(statement.otherwise);
    for (const std::uint32_t end : ends)
        builder_.land(end);
}

void Compiler::loop_body(Block body, Place start, Enclosing::Kind kind, Operand held) {
    body_->enclosing.push_back({kind, held, {}});
    builder_.mark(start, true);
    block(body);
}

// Lands the exits behind the loop.
void Compiler::end_enclosing() {
    for (const std::uint32_t exit : body_->enclosing.back().exits)
        builder_.land(exit);
    body_->enclosing.pop_back();
}

void Compiler::for_loop(const ForStatement& statement) {
    const Operand limit = body_->frame.held();
    const Operand step = body_->frame.held();
    // An empty step tells ForNext that the bounds failed: deliberate, the body then runs once.
    builder_.emit({.code = OpCode::Clear, .a = step});
    const Meaning name = meaning(statement.variable->name);
    std::uint32_t start = 0;
    {
        const Temporaries temporaries(body_->frame);
        const Operand from = held_now(evaluate(*statement.from));
        const Operand to = held_now(evaluate(*statement.to));
        const Operand by =
            statement.step ? evaluate(*statement.step) : builder_.constant(Variant(std::int16_t{1}));
        const Operand at = variable(name, statement.variable->name);
        start = builder_.emit({.code = OpCode::ForStart,
                               .a = limit,
                               .b = at,
                               .c = builder_.list({from, to, by, Operand::number(0), step})});
    }
    const std::uint32_t first = builder_.here();
    loop_body(statement.body, statement.place, Enclosing::Kind::For, {});
    builder_.mark(statement.end, true);
    {
        const Temporaries temporaries(body_->frame);
        const Operand at = variable(name, statement.variable->name);
        const std::uint32_t next = builder_.emit({.code = OpCode::ForNext,
                                                  .count = static_cast<std::uint16_t>(step.index()),
                                                  .a = limit,
                                                  .b = at});
        builder_.land(next, first);
    }
    builder_.land(start);
    end_enclosing();
}

void Compiler::for_each(const ForEachStatement& statement) {
    const Operand enumerator = body_->frame.held();
    builder_.emit({.code = OpCode::Clear, .a = enumerator});
    const Meaning name = meaning(statement.variable->name);
    std::uint32_t start = 0;
    {
        const Temporaries temporaries(body_->frame);
        const Operand collection = evaluate(*statement.collection);
        const Operand at = variable(name, statement.variable->name);
        start = builder_.emit({.code = OpCode::ForEachStart,
                               .a = enumerator,
                               .b = collection,
                               .c = builder_.list({at, Operand::number(0)})});
    }
    const std::uint32_t first = builder_.here();
    loop_body(statement.body, statement.place, Enclosing::Kind::For, enumerator);
    builder_.mark(statement.end, true);
    {
        const Temporaries temporaries(body_->frame);
        const Operand at = variable(name, statement.variable->name);
        const std::uint32_t next = builder_.emit({.code = OpCode::ForEachNext, .a = enumerator, .b = at});
        builder_.land(next, first);
    }
    builder_.land(start);
    end_enclosing();
    builder_.mark(statement.end, true);
    builder_.emit({.code = OpCode::Clear, .a = enumerator});
}

void Compiler::loop(const LoopStatement& statement) {
    const Enclosing::Kind kind = statement.is_do ? Enclosing::Kind::Do : Enclosing::Kind::Other;
    const std::uint32_t first = builder_.here();
    std::optional<std::uint32_t> leave;
    const auto test = [&] {
        const Temporaries temporaries(body_->frame);
        leave = jump_on(*statement.condition, statement.until);
    };
    if (statement.condition && !statement.tested_at_end)
        test();
    loop_body(statement.body, statement.place, kind, {});
    builder_.mark(statement.end, true);
    if (statement.condition && statement.tested_at_end)
        test();
    builder_.land(builder_.emit({.code = OpCode::LoopBack}), first);
    if (leave)
        builder_.land(*leave);
    end_enclosing();
}

void Compiler::exit(const ExitStatement& statement) {
    if (statement.what == ExitKind::Procedure) {
        builder_.emit({.code = OpCode::ClearError});
        builder_.emit({.code = OpCode::Return});
        return;
    }
    const Enclosing::Kind wanted =
        statement.what == ExitKind::Do ? Enclosing::Kind::Do : Enclosing::Kind::For;
    for (auto inner = body_->enclosing.rbegin(); inner != body_->enclosing.rend(); ++inner) {
        if (inner->kind == wanted) {
            inner->exits.push_back(builder_.emit({.code = OpCode::Jump}));
            return;
        }
        if (inner->held.exists())
            builder_.emit({.code = OpCode::Clear, .a = inner->held});
    }
}

void Compiler::with(const WithStatement& statement) {
    const Operand object = body_->frame.held();
    builder_.emit({.code = OpCode::Clear, .a = object});
    {
        const Temporaries temporaries(body_->frame);
        builder_.emit({.code = OpCode::WithStart, .a = object, .b = evaluate(*statement.object)});
    }
    body_->withs.push_back(object);
    loop_body(statement.body, statement.place, Enclosing::Kind::Other, object);
    end_enclosing();
    body_->withs.pop_back();
    builder_.mark(statement.place, true);
    builder_.emit({.code = OpCode::Clear, .a = object});
}

void Compiler::redim(const ReDimStatement& statement) {
    for (const ReDimItem& item : statement.items) {
        const Temporaries temporaries(body_->frame);
        const std::vector<Operand> bounds = values(item.bounds);
        const Operand array = variable(meaning(item.name), item.name);
        builder_.emit({.code = OpCode::ReDim,
                       .flags = statement.preserve ? Instruction::kPreserve : std::uint8_t{0},
                       .count = list_size(bounds.size()),
                       .a = array,
                       .c = builder_.list(bounds)});
    }
}

void Compiler::erase(const EraseStatement& statement) {
    for (const Expression* array : statement.arrays) {
        const Temporaries temporaries(body_->frame);
        if (array->kind == Expression::Kind::Name) {
            const Operand at = variable(meaning(array->name), array->name);
            builder_.emit({.code = OpCode::Erase, .a = at});
        } else { // an array inside another
            const Operand inner = evaluate(*array);
            builder_.emit({.code = OpCode::Erase, .a = inner});
            store(*array, inner, false);
        }
    }
}

// --- Entrances -------------------------------------------------------------------------------------

namespace {

std::shared_ptr<const Program> compile_statements(Source source, bool is_inner) {
    const auto program = std::make_shared<Program>();
    program->source = std::move(source);
    const std::unique_ptr<Unit> unit = parse(program->source, is_inner);
    Compiler(*program, *unit).compile_unit();
    return program;
}

} // namespace

std::shared_ptr<const Program> compile(Source source) {
    return compile_statements(std::move(source), false);
}

std::shared_ptr<const Program> compile_inner(Source source) {
    return compile_statements(std::move(source), true);
}

std::shared_ptr<const Program> compile_expression(Source source) {
    const auto program = std::make_shared<Program>();
    program->source = std::move(source);
    const std::unique_ptr<Unit> unit = parse_expression(program->source);
    const auto* statement = static_cast<const WriteValueStatement*>(unit->body.front());
    Compiler(*program, *unit).compile_expression(*statement->value);
    return program;
}

} // namespace tabrixdb::vbscript
