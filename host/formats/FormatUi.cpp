// The editor in the window that a host gives, or in one of its own where the host gives none.
// Compiled once for each format. Screen thread alone.
#include "host/formats/FormatPlugin.h"
#include "view/x11/HostWindow.h"

#include <DistrhoUI.hpp>

#include <array>
#include <cmath>
#include <memory>

START_NAMESPACE_DISTRHO

class FormatUi final : public UI, private KWFormatWrapper::Window {
public:
    FormatUi() : wrapper(plugin().wrapper())
    {
        const ERect rect = wrapper.editorRect();
        setSize(static_cast<uint>(rect.right), static_cast<uint>(rect.bottom));
        if (isEmbed())
            wrapper.openEditor(*this, reinterpret_cast<void*>(getParentWindowHandle()));
        for (int i = 0; i < kHostParameters; ++i)
            told[static_cast<size_t>(i)] = wrapper.parameter(i);
    }
    ~FormatUi() override { closeWindow(); }

protected:
    uintptr_t getNativeWindowHandle() const noexcept override { return wrapper.editorHandle(); }

    // The editor reads the engine itself; what counts is what the host knows.
    void parameterChanged(uint32_t index, float value) override
    {
        if (index >= FormatPlugin::kFirst && index - FormatPlugin::kFirst < kHostParameters)
            told[index - FormatPlugin::kFirst] = value;
    }
    void stateChanged(const char*, const char*) override { }

    void uiIdle() override
    {
        if (ownWindow && !ownWindow->wait(0)) {
            hide();
            return;
        }
        wrapper.idleEditor();
        if (wrapper.takeReload())
            tellMovedParameters();
    }

    // A window of our own, for a host that has none to give.
    void visibilityChanged(bool visible) override
    {
        if (isEmbed())
            return;
        closeWindow();
        if (!visible)
            return;
        ownWindow = std::make_unique<HostWindow>(
            getTitle(), static_cast<int>(getWidth()), static_cast<int>(getHeight()));
        if (ownWindow->isOpen())
            wrapper.openEditor(*this, ownWindow->handle());
        else
            closeWindow();
    }

    // A size that the host sets is its own affair and not told back to it.
    void sizeChanged(uint width, uint height) override
    {
        if (asking)
            UI::sizeChanged(width, height);
    }

private:
    FormatPlugin& plugin() const
    {
        return *static_cast<FormatPlugin*>(static_cast<Plugin*>(getPluginInstancePointer()));
    }

    void closeWindow()
    {
        if (isEmbed() || ownWindow)
            wrapper.closeEditor();
        ownWindow.reset();
    }

    void tell(int index, float value)
    {
        told[static_cast<size_t>(index)] = value;
        setParameterValue(FormatPlugin::kFirst + static_cast<uint32_t>(index), value);
    }

    // After a load: hosts keep values of their own, for their display and in their session.
    void tellMovedParameters()
    {
        for (int i = 0; i < kHostParameters; ++i)
            if (const float now = wrapper.parameter(i);
                !KWFormatWrapper::isSameValue(now, told[static_cast<size_t>(i)]))
                tell(i, now);
    }

    void parameterMoved(int index, float) override { tell(index, wrapper.parameter(index)); }
    void editBegins(int index) override
    {
        editParameter(FormatPlugin::kFirst + static_cast<uint32_t>(index), true);
    }
    void editEnds(int index) override
    {
        editParameter(FormatPlugin::kFirst + static_cast<uint32_t>(index), false);
    }
    bool sizeWanted(int width, int height) override
    {
        if (ownWindow)
            ownWindow->setSize(width, height);
        asking = true;
        setSize(static_cast<uint>(width), static_cast<uint>(height));
        asking = false;
        return true;
    }

    KWFormatWrapper& wrapper;
    std::unique_ptr<HostWindow> ownWindow;
    std::array<float, kHostParameters> told{}; // what the host knows
    bool asking = false;                       // the size that changes is the editor's wish

    DISTRHO_DECLARE_NON_COPYABLE(FormatUi)
};

UI* createUI() { return new FormatUi; }

END_NAMESPACE_DISTRHO
