#pragma once

#include "automation/object.h"

#include <string>
#include <vector>

namespace tabrixdb::scripting {

// The files of a folder at one moment: For Each gives File objects.
class Files final : public Object {
public:
    explicit Files(std::vector<Variant> files) : files_(std::move(files)) {}

    const ClassInfo& class_info() const override;
    std::unique_ptr<Enumerator> enumerate() override;

private:
    std::int32_t count() const { return static_cast<std::int32_t>(files_.size()); }

    std::vector<Variant> files_;
};

// One folder, as FileSystemObject.GetFolder gives it.
class Folder final : public Object {
public:
    explicit Folder(std::string path) : path_(std::move(path)) {}

    const ClassInfo& class_info() const override;

private:
    std::string path() const { return path_; }

    Ref<Files> files() const; // Error 76 when the folder has gone

    std::string path_;
};

} // namespace tabrixdb::scripting
