#include "scripting/file.h"

#include "automation/conversions.h"
#include "automation/member.h"

namespace tabrixdb::scripting {

const ClassInfo& File::class_info() const {
    static const ClassInfo info("File", "",
                                {property<&File::path>("Path").as_default(), property<&File::name>("Name"),
                                 property<&File::size>("Size"),
                                 property<&File::date_last_modified>("DateLastModified"),
                                 method<&File::delete_file>("Delete", {{"Force", false}})});
    return info;
}

Variant File::size() const {
    return Variant::integer(static_cast<std::int64_t>(info_.size));
}

Variant File::date_last_modified() const {
    return Variant::date(local_date(info_.modified));
}

void File::delete_file(bool) {
    platform::Host::current().file_system().delete_file(info_.path);
}

} // namespace tabrixdb::scripting
