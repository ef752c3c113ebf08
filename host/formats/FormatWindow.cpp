#include "host/formats/FormatWindow.h"

namespace ormund {

FormatWindow::~FormatWindow() { close(); }

bool FormatWindow::openIn(unsigned long parent)
{
    close();
    open = wrapper.openEditor(*this, reinterpret_cast<void*>(parent));
    return open;
}

bool FormatWindow::openOwn(const std::string& title)
{
    close();
    const ERect rect = size();
    own = std::make_unique<HostWindow>(title, rect.right, rect.bottom);
    open = own->isOpen() && wrapper.openEditor(*this, own->handle());
    if (!open)
        own.reset();
    return open;
}

void FormatWindow::setTitle(const std::string& title)
{
    if (own)
        own->setTitle(title);
}

void FormatWindow::close()
{
    if (open)
        wrapper.closeEditor();
    open = false;
    own.reset();
}

bool FormatWindow::idle()
{
    if (own && !own->wait(0)) {
        close();
        return false;
    }
    if (open)
        wrapper.idleEditor();
    return true;
}

void FormatWindow::reportMoved()
{
    for (int tag = 0; tag < kHostParameters; ++tag)
        if (const float now = wrapper.parameter(tag);
            !KWFormatWrapper::isSameValue(now, wrapper.hostValue(tag)))
            move(tag, now);
}

void FormatWindow::move(int tag, float value)
{
    wrapper.hostKnows(tag, value);
    host.edited({HostEdit::Value, static_cast<uint8_t>(kFirstNumber + tag), value});
}

void FormatWindow::parameterMoved(int tag, float) { move(tag, wrapper.parameter(tag)); }

void FormatWindow::editBegins(int tag)
{
    host.edited({HostEdit::Begin, static_cast<uint8_t>(kFirstNumber + tag), 0});
}

void FormatWindow::editEnds(int tag)
{
    host.edited({HostEdit::End, static_cast<uint8_t>(kFirstNumber + tag), 0});
}

bool FormatWindow::sizeWanted(int width, int height)
{
    if (!own)
        return host.sizeWanted(width, height);
    own->setSize(width, height);
    return true;
}

} // namespace ormund
