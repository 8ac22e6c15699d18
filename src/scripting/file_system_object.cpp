#include "scripting/file_system_object.h"

#include "automation/error.h"
#include "automation/member.h"
#include "platform/host.h"

namespace tabrixdb::scripting {

namespace {

constexpr std::int32_t kErrorNoFile = 53;
constexpr std::int32_t kErrorExists = 58;

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
         method<&FileSystemObject::open_text_file>(
             "OpenTextFile", {"Path", {"Mode", kForReading}, {"Create", false}, {"Format", std::int32_t{0}}}),
         method<&FileSystemObject::create_text_file>("CreateTextFile",
                                                     {"Path", {"Overwrite", true}, {"Unicode", false}}),
         method<&FileSystemObject::get_file_name>("GetFileName", {"Path"}),
         method<&FileSystemObject::get_extension_name>("GetExtensionName", {"Path"}),
         method<&FileSystemObject::build_path>("BuildPath", {"Folder", "Name"})});
    return info;
}

bool FileSystemObject::file_exists(const std::string& path) const {
    return files().file_exists(path);
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

std::string FileSystemObject::build_path(const std::string& folder, const std::string& name) const {
    const bool joined = folder.empty() || folder.ends_with('/') || folder.ends_with('\\');
    return folder + (joined ? "" : "/") + name;
}

} // namespace tabrixdb::scripting
