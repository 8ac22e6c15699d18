#include "blob/download.h"

#include "automation/interrupt.h"
#include "automation/text.h"
#include "data/sources.h"
#include "engine/fill_tag.h"
#include "engine/page.h"
#include "engine/report.h"

#include <chrono>

namespace tabrixdb {

namespace {

constexpr std::string_view kFolder = "/tabrixdb/temp/";
constexpr std::string_view kEnding = ".csv";

// A browser asks for the file right after the page; a user may do so as long as the page is open.
constexpr std::chrono::hours kKept{24};

// Bytes that are written at once; besides them one record is held.
constexpr std::size_t kBuffer = 65536;

// Characters of a table's name in that of a file, which has at most 255 bytes: a query without a FROM gives
// its whole text.
constexpr std::size_t kMaxName = 60;

// The table's name with "_" for what may not stand in the name of a file or in an address.
std::string file_name(std::string_view table) {
    std::string name(table.substr(0, byte_of_unit(table, kMaxName)));
    for (char& c : name)
        if (static_cast<unsigned char>(c) <= ' ' ||
            std::string_view("\"'\\/:*?<>|#%&").find(c) != std::string_view::npos)
            c = '_';
    return name;
}

std::string heading(const std::vector<platform::Column>& columns) {
    std::string line;
    for (const platform::Column& column : columns)
        line += (line.empty() ? "\"" : ",\"") + column.name + "\"";
    return line + "\r\n";
}

bool stopped() {
    Interrupt* const run = Interrupt::current();
    return run && run->check();
}

// Every value between quotes, a line for each record, without a line break behind the last one.
void write_records(platform::Recordset& records, platform::FileWriter& file) {
    constexpr std::string_view kBetweenRows = "\"\r\n\"";
    std::string lines = "\"";
    while (!records.eof() && !stopped()) {
        lines += records.get_string(1, "\",\"", kBetweenRows, "NULL");
        if (records.eof())
            lines.resize(lines.size() - kBetweenRows.size() + 1); // the closing quote stays
        if (lines.size() >= kBuffer) {
            file.write_text(lines);
            lines.clear();
        }
    }
    file.write_text(lines);
}

// Goes through a recordset from its first record, and back to where it was.
template <class Body>
void from_first(platform::Recordset& records, Body body) {
    if (records.is_empty())
        return;
    const bool stands = !records.eof() && !records.bof();
    const Variant place = stands ? records.bookmark() : Variant();
    records.move_first();
    body();
    if (stands)
        records.set_bookmark(place);
}

} // namespace

void process_download(platform::Recordset& records, std::initializer_list<std::string*> texts) {
    guard("Process Download", [&] {
        const std::string address =
            std::string(kFolder) + file_name(table_name(records.source())) + std::string(kEnding);
        for (std::string* text : texts)
            fill_tag(*text, "#~btn_download~#", address);
        platform::FileSystem& files = platform::Host::current().file_system();
        const std::string folder = server().map_path(kFolder);
        files.make_folder(folder);
        files.delete_old(folder, kEnding, kKept);
        const auto file = files.create(server().map_path(address));
        file->write_text(heading(records.columns()));
        from_first(records, [&] { write_records(records, *file); });
        if (!stopped())
            file->finish();
    });
}

} // namespace tabrixdb
