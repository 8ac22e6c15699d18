#include "mail/smtp.h"

#include "automation/error.h"
#include "automation/interrupt.h"

#include <algorithm>
#include <memory>

#include <curl/curl.h>

namespace tabrixdb::mail {

namespace {

constexpr auto kErrorTransport =
    static_cast<std::int32_t>(0x80040213); // as the platform's mail objects raise it

// A page waits meanwhile, and with it the browser.
constexpr long kConnectSeconds = 15;
constexpr long kSeconds = 60;

struct Upload {
    std::string_view rest;
};

std::size_t read_upload(char* buffer, std::size_t size, std::size_t count, void* upload) {
    std::string_view& rest = static_cast<Upload*>(upload)->rest;
    const std::size_t taken = std::min(size * count, rest.size());
    std::copy_n(rest.data(), taken, buffer);
    rest.remove_prefix(taken);
    return taken;
}

// Called now and then; other than 0 stops the transfer. A page that has ended may still send the mail about
// its end.
int keep_on(void*, curl_off_t, curl_off_t, curl_off_t, curl_off_t) {
    Interrupt* const run = Interrupt::current();
    if (!run)
        return 0;
    run->check();
    return run->reason() == Interrupt::Reason::TimedOut || run->reason() == Interrupt::Reason::ShutDown;
}

struct Library {
    Library() { curl_global_init(CURL_GLOBAL_DEFAULT); }

    ~Library() { curl_global_cleanup(); }
};

using Easy = std::unique_ptr<CURL, decltype(&curl_easy_cleanup)>;
using List = std::unique_ptr<curl_slist, decltype(&curl_slist_free_all)>;

List list_of(const std::vector<std::string>& items) {
    List list(nullptr, curl_slist_free_all);
    for (const std::string& item : items) {
        curl_slist* const longer = curl_slist_append(list.get(), ('<' + item + '>').c_str());
        if (!longer)
            throw std::bad_alloc();
        (void)list.release();
        list.reset(longer);
    }
    return list;
}

void secure(CURL* curl, const SmtpServer& server) {
    curl_easy_setopt(curl, CURLOPT_PROTOCOLS_STR, "smtp,smtps");
    curl_easy_setopt(curl, CURLOPT_USE_SSL, server.require_tls ? CURLUSESSL_ALL : CURLUSESSL_TRY);
    if (!server.require_tls) { // what can't be trusted is still better than clear text
        curl_easy_setopt(curl, CURLOPT_SSL_VERIFYPEER, 0L);
        curl_easy_setopt(curl, CURLOPT_SSL_VERIFYHOST, 0L);
    }
    if (!server.ca_file.empty())
        curl_easy_setopt(curl, CURLOPT_CAINFO, server.ca_file.c_str());
    if (!server.user.empty()) {
        curl_easy_setopt(curl, CURLOPT_USERNAME, server.user.c_str());
        curl_easy_setopt(curl, CURLOPT_PASSWORD, server.password.c_str());
    }
}

} // namespace

void send_by_smtp(const SmtpServer& server, const std::string& from, const std::vector<std::string>& to,
                  std::string_view message) {
    static const Library library;
    const Easy easy(curl_easy_init(), curl_easy_cleanup);
    if (!easy)
        throw std::bad_alloc();
    CURL* const curl = easy.get();
    const List recipients = list_of(to);
    Upload upload{message};
    char text[CURL_ERROR_SIZE] = "";
    curl_easy_setopt(curl, CURLOPT_ERRORBUFFER, text);
    curl_easy_setopt(curl, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(curl, CURLOPT_URL, server.address.c_str());
    secure(curl, server);
    curl_easy_setopt(curl, CURLOPT_CONNECTTIMEOUT, kConnectSeconds);
    curl_easy_setopt(curl, CURLOPT_TIMEOUT, kSeconds);
    curl_easy_setopt(curl, CURLOPT_NOPROGRESS, 0L);
    curl_easy_setopt(curl, CURLOPT_XFERINFOFUNCTION, keep_on);
    curl_easy_setopt(curl, CURLOPT_MAIL_FROM, ('<' + from + '>').c_str());
    curl_easy_setopt(curl, CURLOPT_MAIL_RCPT, recipients.get());
    curl_easy_setopt(curl, CURLOPT_READFUNCTION, read_upload);
    curl_easy_setopt(curl, CURLOPT_READDATA, &upload);
    curl_easy_setopt(curl, CURLOPT_UPLOAD, 1L);
    if (const CURLcode code = curl_easy_perform(curl); code != CURLE_OK)
        throw Error(kErrorTransport,
                    "The mail server did not take the message: " +
                        std::string(*text ? text : curl_easy_strerror(code)),
                    "CDONTS.NewMail");
}

} // namespace tabrixdb::mail
