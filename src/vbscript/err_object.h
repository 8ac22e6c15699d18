#pragma once

#include "automation/error.h"
#include "automation/object.h"

#include <string>

namespace tabrixdb::vbscript {

// The Err object: the last error that On Error Resume Next held.
class ErrObject final : public Object {
public:
    const ClassInfo& class_info() const override;

    void set(const Error& error);
    void clear();

private:
    std::int32_t number() const { return number_; }

    void set_number(std::int32_t number) { number_ = number; }

    [[noreturn]] void raise(std::int32_t number, const Variant& source, const Variant& description,
                            const Variant& help_file, const Variant& help_context);

    std::int32_t number_ = 0;
    std::string source_;
    std::string description_;
    std::string help_file_;
    std::int32_t help_context_ = 0;
};

} // namespace tabrixdb::vbscript
