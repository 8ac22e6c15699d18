#include "engine/page.h"

#include "automation/error.h"

namespace tabrixdb {

namespace {

// The host keeps the object for the whole page, so a reference into it may be handed out.
template <class T>
T& bound(const Ref<T>& object) {
    if (!object)
        throw Error(kErrorNothing);
    return *object;
}

} // namespace

ThreadTexts& thread_texts() noexcept {
    thread_local ThreadTexts texts;
    return texts;
}

platform::Response& response() {
    return bound(platform::Host::current().page().response);
}

platform::Request& request() {
    return bound(platform::Host::current().page().request);
}

platform::Session& session() {
    return bound(platform::Host::current().page().session);
}

platform::Server& server() {
    return bound(platform::Host::current().page().server);
}

platform::Application& application() {
    return bound(platform::Host::current().page().application);
}

} // namespace tabrixdb
