#include "vbscript/err_object.h"

#include "automation/member.h"
#include "vbscript/source.h"

namespace tabrixdb::vbscript {

const ClassInfo& ErrObject::class_info() const {
    static const ClassInfo info(
        "Object", "",
        {
            property<&ErrObject::number, &ErrObject::set_number>("Number").as_default(),
            field<&ErrObject::source_>("Source"),
            field<&ErrObject::description_>("Description"),
            field<&ErrObject::help_file_>("HelpFile"),
            field<&ErrObject::help_context_>("HelpContext"),
            method<&ErrObject::clear>("Clear"),
            method<&ErrObject::raise>("Raise", {"Number",
                                                {"Source", Variant::missing()},
                                                {"Description", Variant::missing()},
                                                {"HelpFile", Variant::missing()},
                                                {"HelpContext", Variant::missing()}}),
        });
    return info;
}

void ErrObject::set(const Error& error) {
    clear();
    number_ = error.number();
    description_ = error.description();
    source_ = error.source().empty() ? std::string(kRuntimeErrorSource) : error.source();
}

void ErrObject::clear() {
    number_ = 0;
    help_context_ = 0;
    source_.clear();
    description_.clear();
    help_file_.clear();
}

void ErrObject::raise(std::int32_t number, const Variant& source, const Variant& description,
                      const Variant& help_file, const Variant& help_context) {
    if (number == 0)
        throw Error(kErrorCall);
    if (!help_file.is_missing())
        help_file_ = to_text(help_file).str();
    if (!help_context.is_missing())
        help_context_ = to_long(help_context);
    std::string text =
        description.is_missing() ? std::string(error_text(number)) : to_text(description).str();
    throw Error(number, std::move(text), source.is_missing() ? std::string() : to_text(source).str());
}

} // namespace tabrixdb::vbscript
