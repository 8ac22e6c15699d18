#include "blob/copy.h"

#include "platform/host.h"

namespace tabrixdb {

namespace {

// What is held of a file at once.
constexpr std::size_t kChunkBytes = 65536;

platform::FileSystem& files() {
    return platform::Host::current().file_system();
}

} // namespace

void copy_field_to_file(platform::Recordset& records, std::string_view field, std::string_view path) {
    const std::size_t column = records.column(field);
    if (records.actual_size(column) < 1)
        return;
    const auto file = files().create(path);
    for (Variant chunk; !(chunk = records.get_chunk(column, kChunkBytes)).is_null();) {
        if (chunk.is_byte_array())
            file->write(chunk.text());
        else
            file->write_text(chunk.text());
    }
    file->finish();
}

void copy_file_to_field(platform::Recordset& records, std::string_view field, std::string_view path) {
    if (path.empty())
        return;
    const std::size_t column = records.column(field);
    const auto file = files().open(path);
    std::string chunk = file->read(kChunkBytes);
    do { // an empty file has one chunk, so that the field is empty afterwards
        records.append_chunk(column, Variant::byte_array(chunk));
        chunk = file->read(kChunkBytes);
    } while (!chunk.empty());
}

} // namespace tabrixdb
