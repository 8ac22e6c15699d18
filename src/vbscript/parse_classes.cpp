#include "vbscript/parsing.h"

namespace tabrixdb::vbscript {

void Parser::class_declaration() {
    if (procedure_ || nesting_ > kUnitLevel)
        fail(1002);
    take();
    const Token name = expect_name();
    check_new_name(name);
    ClassDeclaration declared;
    declared.name = name.text;
    class_ = &declared;
    end_of_statement();
    for (skip_line_breaks(); !at(TokenKind::EndWord); skip_line_breaks()) {
        if (at(TokenKind::End))
            fail(1014);
        class_member();
        end_of_statement();
    }
    expect_end(TokenKind::Class, 1047);
    check_properties();
    class_ = nullptr;
    unit_.class_index.emplace(declared.name, unit_.classes.size());
    unit_.classes.push_back(std::move(declared));
}

void Parser::class_member() {
    const bool is_public = accept(TokenKind::Public);
    const bool is_private = !is_public && accept(TokenKind::Private);
    const bool is_default = at_word("default");
    if (is_default) {
        if (!is_public)
            fail(1057);
        take();
    }
    if (at(TokenKind::Sub) || at(TokenKind::Function) || at_word("property"))
        return class_procedure(is_private, is_default);
    if (is_default)
        fail(1056);
    if (!is_public && !is_private)
        expect(TokenKind::Dim, 1002);
    class_variables(is_private);
}

void Parser::class_variables(bool is_private) {
    do {
        const Token name = expect_name();
        new_member(name.text, name.place, is_private).variable = class_->variables.size();
        Variable variable{name.text, name.place, false, {}};
        if (accept(TokenKind::OpenBracket)) {
            variable.is_array = true;
            variable.bounds = fixed_bounds();
        }
        class_->variables.push_back(std::move(variable));
    } while (accept(TokenKind::Comma));
}

ProcedureKind Parser::class_procedure_kind() {
    if (at(TokenKind::Sub))
        return ProcedureKind::Sub;
    if (at(TokenKind::Function))
        return ProcedureKind::Function;
    take(); // Property
    if (at(TokenKind::Let))
        return ProcedureKind::PropertyLet;
    if (at(TokenKind::Set))
        return ProcedureKind::PropertySet;
    if (!at_word("get"))
        fail(1049);
    return ProcedureKind::PropertyGet;
}

void Parser::class_procedure(bool is_private, bool is_default) {
    const Place place = current_.place;
    const ProcedureKind kind = class_procedure_kind();
    if (is_default && (kind == ProcedureKind::PropertyLet || kind == ProcedureKind::PropertySet))
        fail_at(place, 1058);
    ProcedureDeclaration declared = procedure_declaration(kind);
    declared.owner = unit_.classes.size();
    const std::string_view name = declared.name;
    const bool takes_value = kind == ProcedureKind::PropertyLet || kind == ProcedureKind::PropertySet;
    if (takes_value && declared.parameters.empty())
        fail_at(place, 1054);
    const bool is_event =
        equal_ignore_case(name, "Class_Initialize") || equal_ignore_case(name, "Class_Terminate");
    if (is_event && !declared.parameters.empty())
        fail_at(place, 1053);

    const auto known = class_->member_index.find(name);
    const bool is_new = known == class_->member_index.end();
    ClassMember& member = is_new ? new_member(name, place, is_private) : class_->members[known->second];
    std::size_t& slot = kind == ProcedureKind::PropertyLet   ? member.let
                        : kind == ProcedureKind::PropertySet ? member.set
                                                             : member.get;
    const bool is_other =
        member.variable != ClassMember::kNone || member.is_method || !declared.is_property();
    if (!is_new && (is_other || slot != ClassMember::kNone))
        fail_at(place, 1041);
    member.is_method = !declared.is_property();
    slot = unit_.procedures.size();
    if (is_default) {
        if (class_->default_member != ClassMember::kNone)
            fail_at(place, 1052);
        class_->default_member = class_->member_index.at(name);
    }
    unit_.procedures.push_back(std::move(declared));
}

ClassMember& Parser::new_member(std::string_view name, Place place, bool is_private) {
    if (!class_->member_index.emplace(name, class_->members.size()).second)
        fail_at(place, 1041);
    ClassMember member;
    member.name = name;
    member.place = place;
    member.is_private = is_private;
    return class_->members.emplace_back(member);
}

// What Let and Set take besides the value, Get takes.
void Parser::check_properties() const {
    for (const ClassMember& member : class_->members) {
        std::size_t indexes = ClassMember::kNone;
        for (const std::size_t accessor : {member.get, member.let, member.set}) {
            if (accessor == ClassMember::kNone)
                continue;
            const std::size_t own = unit_.procedures[accessor].parameters.size() - (accessor != member.get);
            if (indexes != ClassMember::kNone && indexes != own)
                fail_at(member.place, 1051);
            indexes = own;
        }
    }
}

} // namespace tabrixdb::vbscript
