#include "editor/KWEditorBase.h"

#include "controls/KWFrame.h"
#include "editor/BitmapTable.h"

#include <cmath>

namespace ormund {

KWEditorBase::KWEditorBase(AudioEffect* owner, int panelWidth, int panelHeight)
    : AEffGUIEditor(owner), width(panelWidth), height(panelHeight)
{
    updateRect();
}

KWEditorBase::~KWEditorBase() { freeFrame(); }

CBitmap* KWEditorBase::getBitmap(int id) const { return BitmapTable::get(id); }

unsigned long KWEditorBase::systemHandle() const { return frame ? frame->systemHandle() : 0; }

void KWEditorBase::updateRect()
{
    rect.left = 0;
    rect.top = 0;
    rect.right = VstInt16(std::lround(width * scale));
    rect.bottom = VstInt16(std::lround(height * scale));
}

void KWEditorBase::setScale(double wanted)
{
    scale = CFrame::nearestScale(wanted);
    updateRect();
    if (frame)
        frame->setScale(scale);
}

void KWEditorBase::makeFrame(void* parent, std::unique_ptr<FrameWindow> ownWindow)
{
    const CRect panel{0, 0, width, height};
    frame = ownWindow ? new KWFrame(panel, std::move(ownWindow), this, this)
                      : new KWFrame(panel, parent, this, this);
    frame->setScale(scale);
}

void KWEditorBase::freeFrame()
{
    if (!frame)
        return;
    KWFrame* old = frame;
    frame = nullptr;
    old->forget();
}

} // namespace ormund
