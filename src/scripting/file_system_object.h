#pragma once

#include "automation/object.h"
#include "scripting/file.h"
#include "scripting/folder.h"
#include "scripting/text_stream.h"

#include <string>

namespace tabrixdb::scripting {

// Scripting.FileSystemObject, as far as pages use text files and folders of files. Paths are physical and may
// be written with backslashes and in any case; see platform::FileSystem.
class FileSystemObject final : public Object {
public:
    const ClassInfo& class_info() const override;

private:
    bool file_exists(const std::string& path) const;
    bool folder_exists(const std::string& path) const;
    Ref<File> get_file(const std::string& path) const;
    Ref<Folder> get_folder(const std::string& path) const;
    Ref<Folder> create_folder(const std::string& path) const;
    void delete_file(const std::string& path, bool force) const;
    Ref<TextStream> open_text_file(const std::string& path, std::int32_t mode, bool create,
                                   const Variant& format) const;
    Ref<TextStream> create_text_file(const std::string& path, bool overwrite, bool unicode) const;
    std::string get_file_name(const std::string& path) const;
    std::string get_extension_name(const std::string& path) const;
    std::string get_base_name(const std::string& path) const;
    std::string get_parent_folder_name(const std::string& path) const;
    std::string build_path(const std::string& folder, const std::string& name) const;
};

} // namespace tabrixdb::scripting
