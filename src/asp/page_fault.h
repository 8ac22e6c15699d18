#pragma once

#include "asp/asp_error.h"
#include "automation/object.h"
#include "vbscript/source.h"

#include <cstdint>
#include <string>

namespace tabrixdb::asp {

// Why a page failed, as the error page and Server.GetLastError tell it.
struct PageFault {
    int asp_code = 0;        // 0: not one of the page objects' errors
    std::int32_t number = 0; // as a full code: &H800A000D
    std::string category;    // "TabrixDb VBScript runtime", "Active Server Pages", "ADODB.Recordset", ...
    std::string description;
    std::string asp_description;
    std::string file; // virtual path; empty when there is no place
    std::int32_t line = 0;
    std::int32_t column = 0; // 0: unknown
    std::string source_line; // of a compile error

    // In one line, for the log.
    std::string summary() const;
    // As HTML: what authors know, in their order.
    std::string html() const;
    // The number as messages show it: "800a000d".
    std::string number_text() const;
};

PageFault fault_of(const vbscript::ScriptError& error);
PageFault fault_of(const PageError& error);
PageFault fault_of(int asp_code, const std::string& file);

// A whole HTML document that says why there is no page.
std::string message_page(int status, std::string_view html);

// What Server.GetLastError gives.
class AspErrorObject final : public Object {
public:
    explicit AspErrorObject(PageFault fault) : fault_(std::move(fault)) {}

    const ClassInfo& class_info() const override;

private:
    std::string asp_code() const;

    std::int32_t number() const { return fault_.number; }

    std::string source() const { return fault_.source_line; }

    std::string category() const { return fault_.category; }

    std::string file() const { return fault_.file; }

    std::int32_t line() const { return fault_.line; }

    std::int32_t column() const { return fault_.column > 0 ? fault_.column : -1; }

    std::string description() const { return fault_.description; }

    std::string asp_description() const { return fault_.asp_description; }

    PageFault fault_;
};

} // namespace tabrixdb::asp
