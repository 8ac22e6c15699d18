#pragma once

#include "ado/result.h"
#include "automation/object.h"

#include <string>
#include <vector>

namespace tabrixdb::ado {

// One column of a recordset, with its value in the current record: what `rs("name")` is. Stays usable while
// the recordset is open, whatever record is current.
class Field final : public Object {
public:
    Field(Ref<Result> result, std::size_t column) : result_(std::move(result)), column_(column) {}

    const ClassInfo& class_info() const override;

private:
    Variant value() { return result_->value(column_); }

    void set_value(const Variant& value);

    std::string name() { return info().column.name; }

    std::int32_t type() { return info().column.type; }

    std::int32_t attributes() { return result_->columns()[column_].attributes; }

    std::int32_t defined_size();

    std::int32_t actual_size() { return result_->actual_size(column_); }

    std::int32_t precision();
    std::int32_t numeric_scale();

    Variant original_value() { return result_->original_value(column_); }

    // The next `size` characters or bytes of a long value; Null behind its end. Another field's value or
    // another record starts anew.
    Variant get_chunk(std::int32_t size);
    // The first one of an edit replaces the value, further ones go behind.
    void append_chunk(const Variant& chunk);

    const ColumnInfo& info() { return result_->infos()[column_]; }

    Ref<Result> result_;
    std::size_t column_;
};

// The columns of an open recordset, by name (ignoring case) or 0-based position.
class Fields final : public Object {
public:
    explicit Fields(Ref<Result> result);

    const ClassInfo& class_info() const override;
    std::unique_ptr<Enumerator> enumerate() override;

    std::int32_t count() { return static_cast<std::int32_t>(fields_.size()); }

    // Error 3265 when there is none.
    Ref<Field> item(const Variant& name_or_position);

private:
    Ref<Result> result_;
    std::vector<Ref<Field>> fields_;
};

} // namespace tabrixdb::ado
