#include "scripting/file_system_object.h"

#include "automation/error.h"
#include "automation/member.h"
#include "platform/host.h"

namespace tabrixdb::scripting {

namespace {

constexpr std::int32_t kErrorNoFile = 53;
constexpr std::int32_t kErrorExists = 58;
constexpr std::int32_t kErrorNoFolder = 76;

// The modes of OpenTextFile.
constexpr std::int32_t kForReading = 1;
constexpr std::int32_t kForWriting = 2;
constexpr std::int32_t kForAppending = 8;

platform::FileSystem& files() {
    return platform::Host::current().file_system();
}

} // namespace

const ClassInfo& FileSystemObject::class_info() const {
    static const ClassInfo info(
        "FileSystemObject", "Scripting.FileSystemObject",
        {method<&FileSystemObject::file_exists>("FileExists", {"Path"}),
         method<&FileSystemObject::folder_exists>("FolderExists", {"Path"}),
         method<&FileSystemObject::get_file>("GetFile", {"Path"}),
         method<&FileSystemObject::get_folder>("GetFolder", {"Path"}),
         method<&FileSystemObject::create_folder>("CreateFolder", {"Path"}),
         method<&FileSystemObject::delete_file>("DeleteFile", {"Path", {"Force", false}}),
         method<&FileSystemObject::open_text_file>(
             "OpenTextFile", {"Path", {"Mode", kForReading}, {"Create", false}, {"Format", std::int32_t{0}}}),
         method<&FileSystemObject::create_text_file>("CreateTextFile",
                                                     {"Path", {"Overwrite", true}, {"Unicode", false}}),
         method<&FileSystemObject::get_file_name>("GetFileName", {"Path"}),
         method<&FileSystemObject::get_extension_name>("GetExtensionName", {"Path"}),
         method<&FileSystemObject::get_base_name>("GetBaseName", {"Path"}),
         method<&FileSystemObject::get_parent_folder_name>("GetParentFolderName", {"Path"}),
         method<&FileSystemObject::build_path>("BuildPath", {"Folder", "Name"})});
    return info;
}

bool FileSystemObject::file_exists(const std::string& path) const {
    return files().file_exists(path);
}

bool FileSystemObject::folder_exists(const std::string& path) const {
    return files().folder_exists(path);
}

Ref<File> FileSystemObject::get_file(const std::string& path) const {
    std::optional<platform::FileInfo> info = files().file_info(path);
    if (!info)
        throw Error(kErrorNoFile);
    return make_ref<File>(std::move(*info));
}

Ref<Folder> FileSystemObject::get_folder(const std::string& path) const {
    if (!folder_exists(path))
        throw Error(kErrorNoFolder);
    return make_ref<Folder>(path);
}

Ref<Folder> FileSystemObject::create_folder(const std::string& path) const {
    if (folder_exists(path) || file_exists(path))
        throw Error(kErrorExists);
    files().make_folder(path);
    return make_ref<Folder>(path);
}

// One file, by its name; a mask such as "*.tmp" names none. Write protection is the system's matter.
void FileSystemObject::delete_file(const std::string& path, bool) const {
    files().delete_file(path);
}

// The format (Unicode or not) does not matter: the site's code page and a file's own mark decide.
Ref<TextStream> FileSystemObject::open_text_file(const std::string& path, std::int32_t mode, bool create,
                                                 const Variant&) const {
    if (mode != kForReading && mode != kForWriting && mode != kForAppending)
        throw Error(kErrorCall);
    const bool there = file_exists(path);
    if (!there && !create)
        throw Error(kErrorNoFile);
    if (!there || mode == kForWriting)
        files().write_text(path, {}, false);
    if (mode == kForReading)
        return make_ref<TextStream>(files().read_text(path));
    return make_ref<TextStream>(TextStream::Append{path});
}

Ref<TextStream> FileSystemObject::create_text_file(const std::string& path, bool overwrite, bool) const {
    if (!overwrite && file_exists(path))
        throw Error(kErrorExists);
    files().write_text(path, {}, false);
    return make_ref<TextStream>(TextStream::Append{path});
}

std::string FileSystemObject::get_file_name(const std::string& path) const {
    return path.substr(path.find_last_of("/\\") + 1);
}

std::string FileSystemObject::get_extension_name(const std::string& path) const {
    const std::string name = get_file_name(path);
    const std::size_t dot = name.rfind('.');
    return dot == std::string::npos ? std::string() : name.substr(dot + 1);
}

std::string FileSystemObject::get_base_name(const std::string& path) const {
    const std::string name = get_file_name(path);
    return name.substr(0, name.rfind('.'));
}

std::string FileSystemObject::get_parent_folder_name(const std::string& path) const {
    const std::string whole = path.substr(0, path.find_last_not_of("/\\") + 1);
    const std::size_t end = whole.find_last_of("/\\");
    return end == std::string::npos ? std::string() : whole.substr(0, end);
}

std::string FileSystemObject::build_path(const std::string& folder, const std::string& name) const {
    const bool joined = folder.empty() || folder.ends_with('/') || folder.ends_with('\\');
    return folder + (joined ? "" : "/") + name;
}

} // namespace tabrixdb::scripting
