// The editor in the window that a host gives, or in one of its own, whatever the format.
#pragma once

#include "host/formats/EditQueue.h"
#include "host/formats/FormatParameters.h"
#include "host/formats/KWFormatWrapper.h"
#include "view/x11/HostWindow.h"

#include <memory>

namespace ormund {

// Screen thread. Passes the editor's moves on, and after a load the values that the host does not
// know yet.
class FormatWindow final : private KWFormatWrapper::Window {
public:
    // What the format does with it. Numbers are those of the list of parameters.
    class Host {
    public:
        virtual void edited(const HostEdit& edit) = 0;
        virtual bool sizeWanted(int width, int height) = 0;

    protected:
        ~Host() = default;
    };

    FormatWindow(KWFormatWrapper& ownWrapper, Host& itsHost)
        : wrapper(ownWrapper), host(itsHost) { }
    ~FormatWindow();

    ERect size() const { return wrapper.editorRect(); }
    // As AEffEditor::fitInto.
    bool fitInto(int& width, int& height, bool takes)
    {
        return wrapper.fitEditor(width, height, takes);
    }
    bool isOpen() const { return open; }
    // `parent` is an X11 window number.
    bool openIn(unsigned long parent);
    bool openOwn(const std::string& title);
    void setTitle(const std::string& title);
    void close();
    unsigned long handle() const { return wrapper.editorHandle(); }
    // False once the user has closed a window of our own; it is closed then.
    bool idle();

    // After a load.
    void reportMoved();

private:
    void move(int tag, float value);
    void parameterMoved(int tag, float value) override;
    void editBegins(int tag) override;
    void editEnds(int tag) override;
    bool sizeWanted(int width, int height) override;

    KWFormatWrapper& wrapper;
    Host& host;
    std::unique_ptr<HostWindow> own;
    bool open = false;
};

} // namespace ormund
