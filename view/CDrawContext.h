// What views draw with: a clip, colours, a font, and operations in panel pixels on a Cairo image.
// Whole coordinates are pixel edges for rectangles; a line of width 1 covers the pixel whose left
// top corner it is given.
#pragma once

#include "view/CFontDesc.h"
#include "view/Geometry.h"

#include <string_view>
#include <vector>

typedef struct _cairo cairo_t;
typedef struct _cairo_surface cairo_surface_t;

namespace ormund {

class CBitmap;

enum CDrawStyle : int { kDrawStroked = 0, kDrawFilled = 1, kDrawFilledAndStroked = 2 };
enum CLineStyle : int { kLineSolid = 0, kLineOnOffDash = 1 };

// A point between pixels.
struct CDrawPoint {
    double x = 0;
    double y = 0;
};

class CDrawContext {
public:
    // Draws on `image`, whose pixels are `scale` to a panel pixel. The image must outlive it.
    CDrawContext(cairo_surface_t* image, double scale);
    ~CDrawContext();
    CDrawContext(const CDrawContext&) = delete;
    CDrawContext& operator=(const CDrawContext&) = delete;

    void moveTo(const CPoint& point) { pen = point; }
    // From the pen to `point`, whose pixel is drawn too, in the frame colour. Moves the pen.
    void lineTo(const CPoint& point);
    void drawRect(const CRect& rect, CDrawStyle style = kDrawStroked);
    void fillRect(const CRect& rect) { drawRect(rect, kDrawFilled); }
    void drawRoundRect(const CRect& rect, double radius, CDrawStyle style = kDrawStroked);
    void drawEllipse(const CRect& rect, CDrawStyle style = kDrawStroked);
    void fillDisc(CDrawPoint centre, double radius);
    // Open lines are stroked, a filled style closes them.
    void drawPolygon(const std::vector<CDrawPoint>& points, CDrawStyle style = kDrawStroked);
    // Clockwise from `startDegrees` to `endDegrees`, 0 at three o'clock.
    void drawArc(CDrawPoint centre, double radius, double startDegrees, double endDegrees);

    void setFrameColor(const CColor& color) { frameColor = color; }
    void setFillColor(const CColor& color) { fillColor = color; }
    void setFontColor(const CColor& color) { fontColor = color; }
    CColor getFrameColor() const { return frameColor; }
    CColor getFillColor() const { return fillColor; }
    CColor getFontColor() const { return fontColor; }
    void setLineWidth(double pixels) { lineWidth = pixels; }
    void setLineStyle(CLineStyle style) { lineStyle = style; }

    // A size above 0 and a style of at least 0 overrule the font's own. Null gives 11 px Medium.
    void setFont(const CFontDesc* font, double size = 0, int style = -1);
    double getFontSize() const { return fontSize; }
    // Panel pixels after each character, until the next font is set.
    void setTracking(double pixels) { tracking = pixels; }
    // In panel pixels, with the font set now. UTF-8.
    double getStringWidth(std::string_view text) const;
    // One line, centred in height by the capitals and limited to `rect`. An opaque text fills the
    // rectangle with the fill colour first.
    void drawString(std::string_view text, const CRect& rect, bool opaque = false,
        CHoriTxtAlign align = kCenterText);
    // The pen point is the left end of the baseline; no limit.
    void drawStringAt(std::string_view text, double x, double baseline);

    // Limits drawing to `rect` within the present limit; resetClipRect takes the last one back.
    void setClipRect(const CRect& rect);
    void resetClipRect();
    CRect getClipRect() const { return clips.empty() ? surfaceRect : clips.back(); }

    double getScale() const { return scale; }
    // For shapes that have no operation here; in panel pixels. Leave its state as it was.
    cairo_t* cairo() const { return context; }

private:
    void setColor(const CColor& color);
    void strokePath();
    void paintPath(CDrawStyle style);

    cairo_t* context;
    double scale;
    CRect surfaceRect;
    std::vector<CRect> clips;
    CPoint pen;
    CColor frameColor = kBlackCColor;
    CColor fillColor = kWhiteCColor;
    CColor fontColor = kBlackCColor;
    double lineWidth = 1;
    CLineStyle lineStyle = kLineSolid;
    double fontSize = 11;
    int fontStyle = kNormalFace;
    double tracking = 0;
};

} // namespace ormund
