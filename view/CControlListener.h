#pragma once

namespace ormund {

class CControl;

// Hears what a control does. Screen thread.
class CControlListener {
public:
    virtual ~CControlListener() = default;
    virtual void valueChanged(CControl* control) = 0;
    // A gesture of the user begins and ends around the changes.
    virtual void controlBeginEdit(CControl* control);
    virtual void controlEndEdit(CControl* control);
};

} // namespace ormund
