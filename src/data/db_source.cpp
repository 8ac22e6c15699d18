#include "data/db_source.h"

#include "automation/member.h"
#include "platform/host.h"

namespace tabrixdb {

DbSource::DbSource() : recordset(platform::Host::current().create_recordset()) {}

const ClassInfo& DbSource::class_info() const {
    static const ClassInfo info("DbSource", kProgramId,
                                {
                                    field<&DbSource::recordset>("RecordSet"),
                                    field<&DbSource::fields>("Fields"),
                                    field<&DbSource::dynamic>("Dynamic"),
                                    field<&DbSource::dynamic_source_open>("Dynamic_SourceOpen"),
                                    field<&DbSource::dynamic_sql>("Dynamic_SQL"),
                                    field<&DbSource::dynamic_connection_id>("Dynamic_ConnectionID"),
                                    field<&DbSource::dynamic_cursor_type>("Dynamic_CursorType"),
                                    field<&DbSource::dynamic_lock_type>("Dynamic_LockType"),
                                });
    return info;
}

platform::Recordset& DbSource::records() const {
    if (!recordset)
        throw Error(kErrorNothing);
    return *recordset;
}

DbField& DbSource::field_of(std::string_view column) const {
    if (!fields)
        throw Error(kErrorNothing);
    return *fields->get<DbField>(column);
}

DbField& DbSource::field_at(std::size_t index) const {
    if (!fields)
        throw Error(kErrorNothing);
    return *fields->get<DbField>(static_cast<std::int32_t>(index) + 1);
}

void DbSource::make_fields() {
    for (const platform::Column& column : records().columns()) {
        auto made = make_ref<DbField>();
        made->name = column.name;
        made->can_be_null = (column.attributes & platform::kFieldIsNullable) != 0;
        made->connection = connection;
        made->updatable = (column.attributes & platform::kFieldUpdatable) != 0 && !column.numbered;
        fields->add(made, column.name);
    }
}

} // namespace tabrixdb
