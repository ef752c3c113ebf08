// The second page of the performance lines: when and how a step plays. Value 0 draws nothing.
#include "data/tracks/StepRules.h"
#include "skin/draw/Parts.h"

#include <algorithm>
#include <string>

namespace ormund {

using namespace palette;

namespace {
constexpr Ink kBright = mix(kPerformance, kWhite, 0.12);
constexpr double kTileWidth = 15, kTileHeight = 13;
constexpr TextStyle kTileText{9, -0.2, Weight::SemiBold};

void tile(Paint& paint, double cx, double cy, const Ink& fill, const Ink& frame)
{
    const double left = paint.snap(cx - 7.5), top = paint.snap(cy - 7);
    paint.rounded(left, top, kTileWidth, kTileHeight, 2, fill);
    paint.frame(left, top, kTileWidth, kTileHeight, 2, frame);
}

void tileText(Paint& paint, const std::string& text, double cx, double cy, const Ink& ink_)
{
    TextStyle style = kTileText;
    // Closer before smaller: it stays as high as the others.
    if (const double width = paint.textWidth(text.c_str(), style); width > kTileWidth - 1.4)
        style.tracking -= (width - (kTileWidth - 1.4)) / double(text.size());
    paint.text(text, cx - 0.5, cy - 0.5, style, ink_, Align::Centre);
}
} // namespace

void chanceGlyph(Paint& paint, int index, double cx, double cy)
{
    const int percent = chancePercent(index + 1);
    const double left = paint.snap(cx - 7.5), top = paint.snap(cy - 7);
    paint.rounded(left, top, kTileWidth, kTileHeight, 2, kWell);
    const double height = kTileHeight * percent / 100.0;
    if (height >= 1)
        paint.rounded(left, top + kTileHeight - height, kTileWidth, height,
            std::min(2.0, height / 2), mix(kWell, kPerformance, 0.5));
    paint.frame(left, top, kTileWidth, kTileHeight, 2, mix(kWell, kPerformance, 0.62));
    tileText(paint, std::to_string(percent), cx, cy, kWhite);
}

void conditionGlyph(Paint& paint, int index, double cx, double cy)
{
    const StepCondition condition = stepCondition(index + 1);
    std::string text;
    const auto outlined = [&](const std::string& word) {
        tile(paint, cx, cy, mix(kWell, kPerformance, 0.18), kPerformance);
        tileText(paint, word, cx, cy, kText);
    };
    const auto solid = [&](const char* word) {
        tile(paint, cx, cy, kPerformance, kPerformance);
        tileText(paint, word, cx, cy, kDarkInk);
    };
    // The other way round: a bar over the word.
    const auto negated = [&](const char* word) {
        outlined(word);
        paint.rect(paint.snap(cx - 5), paint.snap(cy - 5.5), 10, 1, kPerformance);
    };
    switch (condition.kind) {
    case ConditionKind::Turn:
        text = std::to_string(condition.turn);
        text += ':';
        text += std::to_string(condition.of);
        return outlined(text);
    case ConditionKind::First:
        return outlined("1st");
    case ConditionKind::NotFirst:
        return negated("1st");
    case ConditionKind::Fill:
        return solid("FILL");
    case ConditionKind::NotFill:
        return negated("FILL");
    case ConditionKind::Sounded:
        return solid("PRE");
    case ConditionKind::NotSounded:
        return negated("PRE");
    case ConditionKind::None:
        return;
    }
}

void ratchetGlyph(Paint& paint, int index, double cx, double cy)
{
    const StepRatchet ratchet = stepRatchet(index + 1);
    constexpr double kWidth = 14, kHeight = 12, kLowest = 0.4;
    const double pitch = kWidth / ratchet.strikes;
    const double width = std::min(2.5, pitch * 0.62);
    for (int strike = 0; strike < ratchet.strikes; ++strike) {
        const double way = double(strike) / (ratchet.strikes - 1);
        const double part = ratchet.ramp == RatchetRamp::Flat
            ? 1.0
            : kLowest + (1 - kLowest) * (ratchet.ramp == RatchetRamp::Up ? way : 1 - way);
        const double height = kHeight * part;
        paint.rounded(cx - kWidth / 2 + pitch * (strike + 0.5) - width / 2 - 0.5,
            cy + kHeight / 2 - height - 0.5, width, height, width / 2, kBright);
    }
}

void lateGlyph(Paint& paint, int index, double cx, double cy)
{
    constexpr double kWay = 12;
    const double left = cx - 6.5, at = left + kWay * double(lateOfStep(index + 1));
    paint.rect(left, cy - 4.5, 1, 8, kPerformance.faded(0.5));
    paint.rect(left + 1, cy - 1, at - left - 1, 1, kPerformance.faded(0.5));
    // As on a ruler: the sixteenths between the eighths are shorter.
    const double half = (index + 1) % 2 == 0 ? 5.5 : 3.5;
    paint.rounded(at, cy - 0.5 - half, 2, 2 * half, 1, kBright);
}

// The notes of a chord from the lowest up, each as far right as it comes late.
void strumGlyph(Paint& paint, int index, double cx, double cy)
{
    constexpr int kNotes = 4;
    constexpr double kWidest = 3.4; // from note to note
    const StepStrum strum = stepStrum(index + 1);
    const double gap = std::max(0.8, kWidest * double(strum.gap) * 4);
    const auto notes = [&](bool down, const Ink& hue) {
        for (int note = 0; note < kNotes; ++note) {
            const int order = down ? kNotes - 1 - note : note;
            paint.rounded(cx - 1.5 * gap + order * gap - 1.5, cy + 4 - note * 3.2, 3, 2, 0.8, hue);
        }
    };
    if (strum.way == StrumWay::Alternating)
        notes(true, mix(kWell, kPerformance, 0.55));
    notes(strum.way == StrumWay::Down, kBright);
}

// Two buttons in one: the number of the page is lit.
void drawPerformancePage(Paint& paint, int frame)
{
    const auto [shown, look] = buttonFrame(frame);
    for (int page = 0; page < 2; ++page) {
        const double left = 17 * page;
        const bool on = page == shown;
        if (on)
            lit(paint, left, 0, 16, 14, kPerformance, look);
        else
            raised(paint, left, 0, 16, 14, look);
        const Ink word = on ? kDarkInk : contentInk(look);
        paint.text(page == 0 ? "1" : "2", left + 8, 6.5 + pressShift(look), type::kButton, word,
            Align::Centre);
        if (on)
            paint.rect(left + 5, 11 + pressShift(look), 6, 1, kDarkInk);
    }
}

void drawFill(Paint& paint, int frame)
{
    const Look look = Look(frame);
    if (look == Look::Pressed)
        lit(paint, 0, 0, paint.width(), paint.height(), kPerformance, look);
    else
        raised(paint, 0, 0, paint.width(), paint.height(), look);
    paint.text("FILL", paint.width() / 2, paint.height() / 2 + pressShift(look), type::kButton,
        look == Look::Pressed ? kDarkInk : contentInk(look), Align::Centre);
}

void drawRuleNames(Paint& paint, int)
{
    paint.rect(23, 0, paint.width() - 23, paint.height(), kPanel);
    constexpr const char* kNames[] = {"CHANCE", "COND.", "RATCHET", "LATE", "STRUM"};
    for (int line = 0; line < 5; ++line)
        paint.text(kNames[line], 70, 8 + 16 * line, type::kLabel, kLabel, Align::Right);
}

} // namespace ormund
