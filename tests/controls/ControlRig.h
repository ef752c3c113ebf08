// A frame in memory with a user, an editor that hears every control, and strips whose frames can be
// told apart by their pixels.
#pragma once

#include "controls/KWControl.h"
#include "controls/KWFrame.h"
#include "view/CBitmap.h"
#include "view/offscreen/FrameUser.h"
#include "view/offscreen/OffscreenWindow.h"

#include <cairo.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace ormund {

// Writes down what it hears: "[" and "]" around a gesture, "tag=value" for a change.
class Ear : public CControlListener {
public:
    void valueChanged(CControl* control) override
    {
        values.push_back(control->getValue());
        log += std::to_string(control->getTag()) + "=" + number(control->getValue()) + " ";
    }
    void controlBeginEdit(CControl*) override { log += "[ "; }
    void controlEndEdit(CControl*) override { log += "] "; }
    std::string take()
    {
        std::string heard;
        heard.swap(log);
        return heard;
    }
    std::vector<float> values;

private:
    static std::string number(float value)
    {
        char text[32];
        std::snprintf(text, sizeof text, "%g", static_cast<double>(value));
        return text;
    }
    std::string log;
};

// `frames` frames, the k-th of the grey level 10 * (k + 1).
inline CShared<CBitmap> makeStrip(int width, int height, int frames)
{
    cairo_surface_t* image =
        cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height * frames);
    cairo_t* pen = cairo_create(image);
    for (int k = 0; k < frames; ++k) {
        const double grey = 10.0 * (k + 1) / 255.0;
        cairo_set_source_rgb(pen, grey, grey, grey);
        cairo_rectangle(pen, 0, k * height, width, height);
        cairo_fill(pen);
    }
    cairo_destroy(pen);
    CBitmap* const bitmap = CBitmap::fromSurface(image, 1);
    cairo_surface_destroy(image);
    const CShared<CBitmap> shared(bitmap);
    bitmap->forget();
    return shared;
}

class ControlRig : public testing::Test {
protected:
    static constexpr int kWidth = 400;
    static constexpr int kHeight = 300;

    ControlRig()
        : window(new OffscreenWindow(kWidth, kHeight))
        , frame(new KWFrame(
              {0, 0, kWidth, kHeight}, std::unique_ptr<FrameWindow>(window), nullptr, nullptr))
        , user(*frame)
    {
        frame->setBackgroundColor(kBlackCColor);
    }
    ~ControlRig() override { frame->forget(); }

    template <typename Control, typename... Arguments>
    Control* add(const CRect& rect, long tag, Arguments&&... arguments)
    {
        auto* control = new Control(rect, &ear, tag, frame, std::forward<Arguments>(arguments)...);
        frame->addView(control);
        return control;
    }
    void idle(int times = 1)
    {
        for (int i = 0; i < times; ++i)
            frame->idle();
    }
    // Which frame of a strip shows at a pixel; -1 for the black ground.
    int shownFrame(int x, int y)
    {
        frame->idle();
        return static_cast<int>(window->pixel(x, y) & 255) / 10 - 1;
    }

    Ear ear;
    OffscreenWindow* window;
    KWFrame* frame;
    FrameUser user;
};

} // namespace ormund
