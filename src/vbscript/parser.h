#pragma once

#include "vbscript/ast.h"
#include "vbscript/source.h"

#include <memory>

namespace tabrixdb::vbscript {

// Parses all pieces of a unit. Raises compile errors. `is_inner`: see Unit.
std::unique_ptr<Unit> parse(const Source& source, bool is_inner);
// Parses a source that is one expression and nothing else (Eval). The unit's body is one WriteValue
// statement that holds it.
std::unique_ptr<Unit> parse_expression(const Source& source);

} // namespace tabrixdb::vbscript
