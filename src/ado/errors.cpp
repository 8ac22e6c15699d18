#include "ado/errors.h"

namespace tabrixdb::ado {

namespace {

std::string_view text_of(Code code) {
    switch (code) {
    case Code::InvalidArgument:
        return "Arguments are of the wrong type, are out of acceptable range, or are in conflict with one "
               "another.";
    case Code::FileNotOpened:
        return "File could not be opened.";
    case Code::FileNotWritten:
        return "Write to file failed.";
    case Code::NoCurrentRecord:
        return "Either BOF or EOF is True, or the current record has been deleted. Requested operation "
               "requires a current record.";
    case Code::IllegalOperation:
        return "Operation is not allowed in this context.";
    case Code::FeatureNotAvailable:
        return "Object or provider is not capable of performing requested operation.";
    case Code::ItemNotFound:
        return "Item cannot be found in the collection corresponding to the requested name or ordinal.";
    case Code::DataConversion:
        return "Application uses a value of the wrong type for the current operation.";
    case Code::ObjectClosed:
        return "Operation is not allowed when the object is closed.";
    case Code::ObjectOpen:
        return "Operation is not allowed when the object is open.";
    case Code::ProviderNotFound:
        return "Provider cannot be found. It may not be properly installed.";
    case Code::InvalidConnection:
        return "The connection cannot be used to perform this operation. It is either closed or invalid in "
               "this context.";
    }
    return {};
}

} // namespace

Error error(Code code, std::string_view source, std::string_view detail) {
    std::string text(text_of(code));
    if (!detail.empty())
        text.append(" ").append(detail);
    return Error(error_number(code), std::move(text), std::string(source));
}

} // namespace tabrixdb::ado
