// A view with a value in a range, a tag that says what the value is, and a listener to notify.
#pragma once

#include "view/CControlListener.h"
#include "view/CView.h"

namespace ormund {

class CControl : public CView {
public:
    explicit CControl(const CRect& viewSize, CControlListener* controlListener = nullptr,
        long controlTag = 0, CBitmap* backgroundBitmap = nullptr);

    // Not limited to the range; bounceValue does that.
    virtual void setValue(float newValue) { value = newValue; }
    virtual float getValue() const { return value; }
    virtual void setMin(float minimum) { min = minimum; }
    virtual float getMin() const { return min; }
    virtual void setMax(float maximum) { max = maximum; }
    virtual float getMax() const { return max; }
    virtual void setDefaultValue(float newDefault) { defaultValue = newDefault; }
    virtual float getDefaultValue() const { return defaultValue; }
    // To the maximum first, then to the minimum.
    virtual void bounceValue();
    // Whether a press with these buttons resets the control; it then does, and notifies the
    // listener.
    virtual bool checkDefaultValue(int buttons);

    virtual void setTag(long newTag) { tag = newTag; }
    virtual long getTag() const { return tag; }
    virtual void setListener(CControlListener* newListener) { listener = newListener; }
    CControlListener* getListener() const { return listener; }

    // Brackets around a gesture. They nest; the listener hears the outermost pair.
    virtual void beginEdit();
    virtual void endEdit();
    bool isEditing() const { return editDepth > 0; }
    // Closes what is open.
    void removed(CView* parent) override;
    void tellListener();

    bool isTypeOf(const char* className) const override;

protected:
    CControlListener* listener;
    long tag;
    float value = 0;
    float min = 0;
    float max = 1;
    float defaultValue = 0.5f;

private:
    int editDepth = 0;
};

} // namespace ormund
