#include "asp/own_files.h"

#include "asp/random_id.h"

namespace tabrixdb::asp {

namespace {

constexpr std::string_view kFolder = "/.own";
constexpr std::string_view kEnding = ".download";

// A user may ask for a file as long as its page is open.
constexpr std::chrono::hours kKept{24};
constexpr std::chrono::hours kCleaningEvery{1};

class OwnFileWriter final : public platform::FileWriter {
public:
    OwnFileWriter(std::unique_ptr<platform::FileWriter> file, std::string path,
                  std::shared_ptr<SessionState> session, std::string_view address)
        : file_(std::move(file)),
          path_(std::move(path)),
          session_(std::move(session)),
          address_(address) {}

    void write(std::string_view bytes) override { file_->write(bytes); }

    void write_text(std::string_view text) override { file_->write_text(text); }

    void finish() override {
        file_->finish();
        auto finished = std::make_shared<const OwnFile>(path_);
        const std::optional<FileStamp> stamp = stamp_of(path_);
        session_->exports.set_file(session_.get(), address_, std::move(finished), stamp ? stamp->size : 0);
    }

    bool finish_new() override { // its name is always new
        finish();
        return true;
    }

private:
    std::unique_ptr<platform::FileWriter> file_;
    std::string path_;
    std::shared_ptr<SessionState> session_;
    std::string address_;
};

} // namespace

std::unique_ptr<platform::FileWriter> OwnFiles::create(std::shared_ptr<SessionState> session,
                                                       std::string_view address) {
    const std::string temporary = paths_.map(kTemporaryFolder, "/");
    const std::string folder = temporary + std::string(kFolder);
    files_.make_folder(temporary);
    files_.make_folder(folder);
    clean(folder);
    const std::string path = folder + '/' + random_id() + std::string(kEnding);
    return std::make_unique<OwnFileWriter>(files_.create(path), path, std::move(session), address);
}

void OwnFiles::clean(const std::string& folder) {
    const Clock::time_point now = Clock::now();
    Clock::time_point due = next_cleaning_;
    if (due <= now && next_cleaning_.compare_exchange_strong(due, now + kCleaningEvery))
        files_.delete_old(folder, kEnding, kKept);
}

} // namespace tabrixdb::asp
