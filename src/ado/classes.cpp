#include "ado/classes.h"

#include "automation/text.h"

namespace tabrixdb::ado {

Ref<Object> create_object(std::string_view program_id) {
    if (equal_ignore_case(program_id, "ADODB.Connection"))
        return make_ref<Connection>();
    if (equal_ignore_case(program_id, "ADODB.Recordset"))
        return make_ref<Recordset>();
    return {};
}

} // namespace tabrixdb::ado
