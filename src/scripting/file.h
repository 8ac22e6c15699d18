#pragma once

#include "automation/object.h"
#include "platform/host.h"

#include <string>

namespace tabrixdb::scripting {

// One file, as FileSystemObject.GetFile and Folder.Files give it; what it tells was true at that time.
class File final : public Object {
public:
    explicit File(platform::FileInfo info) : info_(std::move(info)) {}

    const ClassInfo& class_info() const override;

private:
    std::string path() const { return info_.path; }

    std::string name() const { return info_.path.substr(info_.path.find_last_of('/') + 1); }

    Variant size() const;
    Variant date_last_modified() const;
    void delete_file(bool force);

    platform::FileInfo info_;
};

} // namespace tabrixdb::scripting
