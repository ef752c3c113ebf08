// The base of a window that is drawn by the view framework: it keeps the host's parent window and
// the size. What is inside the window belongs to the class that derives.
#pragma once

#include "host/effect/AEffEditor.h"

namespace ormund {

class AEffGUIEditor : public AEffEditor {
public:
    using AEffEditor::AEffEditor;

    bool getRect(ERect** answer) override;
    bool open(void* parent) override; // keeps `parent`; true
    void close() override;
    bool isOpen() override { return opened; }

    void* getSystemWindow() const { return systemWindow; }
    int getKnobMode() const { return knobMode; }
    bool setKnobMode(VstInt32 mode) override; // 0 circular, 1 relative circular, 2 linear

protected:
    ERect rect{};

private:
    void* systemWindow = nullptr;
    bool opened = false;
    int knobMode = 2;
};

} // namespace ormund
