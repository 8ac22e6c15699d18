#include "scripting/folder.h"

#include "automation/member.h"
#include "scripting/file.h"

namespace tabrixdb::scripting {

namespace {

class FileEnumerator final : public Enumerator {
public:
    explicit FileEnumerator(std::vector<Variant> files) : files_(std::move(files)) {}

    bool next(Variant& item) override {
        if (at_ == files_.size())
            return false;
        item = files_[at_++];
        return true;
    }

private:
    std::vector<Variant> files_;
    std::size_t at_ = 0;
};

} // namespace

const ClassInfo& Files::class_info() const {
    static const ClassInfo info("Files", "", {property<&Files::count>("Count")});
    return info;
}

std::unique_ptr<Enumerator> Files::enumerate() {
    return std::make_unique<FileEnumerator>(files_);
}

const ClassInfo& Folder::class_info() const {
    static const ClassInfo info(
        "Folder", "", {property<&Folder::path>("Path").as_default(), property<&Folder::files>("Files")});
    return info;
}

Ref<Files> Folder::files() const {
    std::vector<Variant> files;
    for (platform::FileInfo& info : platform::Host::current().file_system().files_in(path_))
        files.emplace_back(make_ref<File>(std::move(info)));
    return make_ref<Files>(std::move(files));
}

} // namespace tabrixdb::scripting
