#include "blob/download.h"

#include "automation/interrupt.h"
#include "automation/text.h"
#include "blob/csv.h"
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

// Where a download goes: to the visitor of the page, or, where visitors can't be told apart, into the site.
std::unique_ptr<platform::FileWriter> create_file(const std::string& address) {
    platform::Host& host = platform::Host::current();
    if (auto own = host.create_own_file(address))
        return own;
    platform::FileSystem& files = host.file_system();
    const std::string folder = server().map_path(kFolder);
    files.make_folder(folder);
    files.delete_old(folder, kEnding, kKept);
    return files.create(server().map_path(address));
}

void append_plain_heading(std::string& lines, platform::Recordset& records) {
    const std::size_t start = lines.size();
    for (const platform::Column& column : records.columns())
        lines += (lines.size() == start ? "\"" : ",\"") + column.name + "\"";
    lines += "\r\n";
}

bool stopped() {
    Interrupt* const run = Interrupt::current();
    return run && run->check();
}

// Appends the current record, every value between quotes, and goes to the next one. Line breaks stand between
// records only.
void append_plain_record(std::string& lines, platform::Recordset& records) {
    lines += '"';
    lines += records.get_string(1, "\",\"", "\"", "NULL");
    if (!records.eof())
        lines += "\r\n";
}

void append_record(std::string& lines, platform::Recordset& records, bool csv) {
    if (!csv)
        return append_plain_record(lines, records);
    append_csv_record(lines, records);
    records.move_next();
}

void write_records(platform::Recordset& records, platform::FileWriter& file, bool csv) {
    std::string lines;
    while (!records.eof() && !stopped()) {
        append_record(lines, records, csv);
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

void process_download(platform::Recordset& records, std::initializer_list<std::string*> texts,
                      std::string_view format) {
    guard("Process Download", [&] {
        const bool csv = equal_ignore_case(format, "csv");
        if (!csv && !format.empty())
            throw Error(kErrorCall, "DownloadFormat is \"\" or \"csv\", not '" + std::string(format) + "'");
        const std::string address =
            std::string(kFolder) + file_name(table_name(records.source())) + std::string(kEnding);
        for (std::string* text : texts)
            fill_tag(*text, "#~btn_download~#", address);
        const auto file = create_file(address);
        std::string heading;
        (csv ? append_csv_heading : append_plain_heading)(heading, records);
        file->write_text(heading);
        from_first(records, [&] { write_records(records, *file, csv); });
        if (!stopped())
            file->finish();
    });
}

} // namespace tabrixdb
