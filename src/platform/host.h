#pragma once

#include "platform/data.h"
#include "platform/page.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tabrixdb::platform {

// A file that is read piece by piece from its beginning. Closed with the object.
class FileReader {
public:
    virtual ~FileReader() = default;
    // At most so many bytes, less only at the end of the file; "" behind it. Error 57 when it can't be read.
    virtual std::string read(std::size_t most) = 0;
};

// A file that is written piece by piece. It has a name of its own until finish() puts it in the place of what
// had its name before; without finish() nothing of it is left. Error 61 when it can't be written.
class FileWriter {
public:
    virtual ~FileWriter() = default;
    virtual void write(std::string_view bytes) = 0;
    // The same in the site's code page.
    virtual void write_text(std::string_view text) = 0;
    virtual void finish() = 0;
    // The same, but false, and nothing of it is left, when there is a file of its name.
    virtual bool finish_new() = 0;
};

// What is told of a file.
struct FileInfo {
    std::string path; // in its real spelling
    std::uint64_t size = 0;
    std::int64_t modified = 0; // seconds since 1970, UTC
};

// The site's disk, by physical path. Paths are found as the site's own tools find them: where the host
// ignores case, without regard to case.
class FileSystem {
public:
    virtual ~FileSystem() = default;
    virtual bool file_exists(std::string_view path) = 0;
    // The whole file as UTF-8 text, converted from the site's code page. Error 53 when it is not there,
    // 70 when it can't be read.
    virtual std::string read_text(std::string_view path) = 0;
    // The whole file as it is; errors as above.
    virtual std::string read_bytes(std::string_view path) = 0;
    // Writes text in the site's code page, at the end of the file or in its place; makes the file when it is
    // not there. Error 76 without its folder, 70 when it can't be written.
    virtual void write_text(std::string_view path, std::string_view text, bool append);
    // Error 53 when there is no such file, 70 when it can't be read.
    virtual std::unique_ptr<FileReader> open(std::string_view path);
    // Error 76 without the file's folder, 70 when it can't be written.
    virtual std::unique_ptr<FileWriter> create(std::string_view path);
    // Makes a folder, unless there is one. Error 76 without the folder that it lies in, 70 when it can't be
    // made.
    virtual void make_folder(std::string_view path);
    virtual bool folder_exists(std::string_view path);
    // nullopt when there is no such file.
    virtual std::optional<FileInfo> file_info(std::string_view path);
    // The files that lie in a folder, without those of its folders. Error 76 when there is no such folder.
    virtual std::vector<FileInfo> files_in(std::string_view folder);
    // Error 53 when there is no such file, 70 when it can't be deleted.
    virtual void delete_file(std::string_view path);
    // Deletes the files of a folder that end in `ending`, and those that were never finished, when they were
    // not changed for so long. What can't be deleted stays.
    virtual void delete_old(std::string_view folder, std::string_view ending, std::chrono::seconds age);
};

// Evaluates expressions, without files and without objects to create.
class ScriptControl : public Object {
public:
    virtual void set_language(std::string_view language) = 0;
    virtual void set_allow_ui(bool allow) = 0;
    virtual Variant eval(std::string_view expression) = 0;
    // The same with variables that the expression names: `values[i]` is kValueName followed by i.
    virtual Variant eval_with(std::string_view expression, const std::vector<Variant>& values) = 0;

    // The text of the code that the page has added, as far as the host knows it.
    virtual std::string code() const { return {}; }

    static constexpr std::string_view kValueName = "TabrixDb_Value_";
};

// A message as the engine sends it.
struct Mail {
    std::string from, to, subject, body;
    bool html = false;
};

// The intrinsic objects of the page that runs on this thread.
struct PageObjects {
    Ref<Response> response;
    Ref<Request> request;
    Ref<Session> session;
    Ref<Server> server;
    Ref<Application> application;
};

// Everything that a host supplies to the engine.
class Host {
public:
    virtual ~Host() = default;
    // Kept by the host for the whole page. Error when no page runs on this thread.
    virtual const PageObjects& page() = 0;
    virtual Ref<Connection> create_connection() = 0;
    virtual Ref<Recordset> create_recordset() = 0;
    virtual Ref<ScriptControl> create_script_control() = 0;
    virtual FileSystem& file_system() = 0;
    // A file that only the visitor of this page is sent at an address of the site ("/tabrixdb/temp/X.csv"),
    // from finish() on, in the place of the one that was there. nullptr in a host that can't tell visitors
    // apart. Errors as FileSystem::create.
    virtual std::unique_ptr<FileWriter> create_own_file(std::string_view address);

    // Sends a message through the host's mail object (CDONTS.NewMail). Error 429 when it has none; its own
    // errors.
    virtual void send_mail(const Mail& mail);

    // Whether one more mail about an error may be sent now, so that a broken page can't flood the
    // administrator. `error`: in a line, for the log, when it may not.
    virtual bool may_mail_error(std::string_view error);

    // Writes a line for the site's administrator.
    virtual void log(std::string_view line);

    // The same for a failure, with the page and the line of its script that is at work. Returns the reference
    // under which it stands there, a few letters and digits; "" when nothing is written. `reference`: of the
    // failure that this one is a consequence of, "" for a new one.
    virtual std::string log_failure(std::string_view failure, std::string_view reference);

    // Whether visitors are told what has failed; otherwise they get its reference only.
    virtual bool tells_visitors();
    // A text or HTML as visitors may read it: paths of the disk become addresses of the site, others are cut
    // to the name of their file.
    virtual std::string without_disk_paths(std::string_view text);

    // Who makes a change now, and where, for the log; nullopt when changes of records are not logged.
    virtual std::optional<std::string> logged_visitor();

    // Whether the site lets every grid take every command that changes records, offered or not.
    virtual bool permits_any_command();

    // Text as bytes of the system's code page, one byte a character ("?" for one that it does not have), and
    // bytes as text. Every byte survives both ways.
    virtual std::string bytes_of_text(std::string_view text);
    virtual std::string text_of_bytes(std::string_view bytes);

    // The host of this thread; Error 91 when there is none.
    static Host& current();
};

// Makes a host the thread's current one until the end of the scope.
class HostScope {
public:
    explicit HostScope(Host& host) noexcept;
    ~HostScope();
    HostScope(const HostScope&) = delete;
    HostScope& operator=(const HostScope&) = delete;

private:
    Host* previous_;
};

} // namespace tabrixdb::platform
