#include "platform/Messages.h"

#include <cstdarg>
#include <cstdio>
#include <mutex>

namespace ormund {

namespace {

struct Store {
    std::mutex lock;
    char text[kMessageBytes] = "";
    bool isKept = false;
    unsigned number = 0;
    int viewers = 0;
};

Store& store()
{
    static Store instance;
    return instance;
}

} // namespace

void showMessage(const char* format, ...)
{
    Store& messages = store();
    const std::lock_guard guard(messages.lock);
    // Without a viewer nobody would ever forget the message, so a later one takes its place.
    if (messages.isKept && messages.viewers > 0)
        return;
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(messages.text, sizeof messages.text, format, arguments);
    va_end(arguments);
    messages.isKept = true;
    ++messages.number;
}

void addMessageViewer()
{
    const std::lock_guard guard(store().lock);
    ++store().viewers;
}

void removeMessageViewer()
{
    const std::lock_guard guard(store().lock);
    if (store().viewers > 0)
        --store().viewers;
}

bool hasMessage()
{
    const std::lock_guard guard(store().lock);
    return store().isKept;
}

std::string currentMessage()
{
    const std::lock_guard guard(store().lock);
    return store().isKept ? store().text : "";
}

unsigned messageNumber()
{
    const std::lock_guard guard(store().lock);
    return store().number;
}

void forgetMessage()
{
    const std::lock_guard guard(store().lock);
    store().isKept = false;
}

} // namespace ormund
