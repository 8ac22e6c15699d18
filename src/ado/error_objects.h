#pragma once

#include "ado/errors.h"
#include "automation/object.h"

#include <vector>

namespace tabrixdb::ado {

// One error of a provider, as a page reads it from Connection.Errors.
class ErrorObject final : public Object {
public:
    explicit ErrorObject(ErrorRecord record) : record_(std::move(record)) {}

    const ClassInfo& class_info() const override;

private:
    std::string description() const { return record_.description; }

    std::int32_t number() const { return record_.number; }

    std::int32_t native_error() const { return record_.native_error; }

    std::string source() const { return record_.source; }

    std::string sql_state() const { return record_.sql_state; }

    ErrorRecord record_;
};

// The errors of the connection's last call that failed, as they were when the page asked for them.
class Errors final : public Object {
public:
    explicit Errors(std::vector<ErrorRecord> records) : records_(std::move(records)) {}

    const ClassInfo& class_info() const override;
    std::unique_ptr<Enumerator> enumerate() override;

    std::int32_t count() const { return static_cast<std::int32_t>(records_.size()); }

    Ref<ErrorObject> item(std::int32_t position); // Error 3265

    void clear() { records_.clear(); }

private:
    std::vector<ErrorRecord> records_;
};

} // namespace tabrixdb::ado
