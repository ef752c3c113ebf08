#pragma once

#include "controls/KWFrame.h"
#include "data/tracks/EditButtons.h"
#include "editor/KWUniClientEditor.h"
#include "host/plugin/KWUniClient.h"
#include "panel/ControlCatalogue.h"
#include "view/offscreen/FrameUser.h"
#include "view/offscreen/OffscreenWindow.h"

#include <map>
#include <memory>
#include <set>
#include <vector>

namespace ormund {

// An engine without a host and its editor in memory, played by a user.
class EditorRig {
public:
    EditorRig() { open(); }

    void open()
    {
        auto ownWindow = std::make_unique<OffscreenWindow>(kPanelWidth, kPanelHeight);
        window = ownWindow.get();
        editor.openIn(std::move(ownWindow));
        user = std::make_unique<FrameUser>(*editor.getFrame());
        idle();
    }

    void idle(int times = 2)
    {
        for (int i = 0; i < times; ++i)
            editor.idle();
    }
    static CPoint middle(const ControlRow& row)
    {
        return {(row.place.left + row.place.right) / 2, (row.place.top + row.place.bottom) / 2};
    }
    // Presses and lets go at a place, far enough apart from the last press to be a single click.
    void click(const CPoint& where, int button = kLButton)
    {
        user->wait(2000);
        user->move(where);
        user->click(where, button);
        idle();
    }
    // Turns the page on which a control is live. `modes`: makes its track one that has it, too,
    // which is an edit.
    void show(const ControlRow& row, bool modes = true)
    {
        engine.setParameter(Tag::Page, row.group == kSynthPage ? 1.0f : 0.0f);
        engine.setParameter(Tag::PerformancePage, row.group == kRulesPage ? 1.0f : 0.0f);
        engine.setParameter(Tag::LoopbarMode, 1.0f);
        engine.setParameter(Tag::ModSelect, row.track > 0 ? (float(row.track) - 0.5f) / 8.0f : 0);
        const int group = row.group - kTrackControllers;
        if (modes && group >= 0 && group < 2 * kModTracks)
            engine.setParameter(
                Tag::DrumRow + row.track - 1, row.group >= kTrackDrums ? 1.0f : 0.0f);
        idle();
    }

    KWUniClient engine{nullptr};
    KWUniClientEditor editor{engine};
    OffscreenWindow* window = nullptr;
    std::unique_ptr<FrameUser> user;
};

// Everything that a user can change: parameters by their tag, steps and loops by theirs.
class StateImage {
public:
    explicit StateImage(KWUniClient& engine)
    {
        for (const ParameterEntry& entry : allParameters()) {
            std::vector<float>& cells = values[entry.tag];
            if (entry.hasValue()) {
                cells.push_back(engine.parameters.raw(entry.tag));
            } else if (KWTableXY* table = engine.tracks.tableAt(entry.tag)) {
                if (entry.saved == Saved::None)
                    continue; // follows what is edited
                for (int row = 0; row < table->rowCount(); ++row)
                    for (int step = 0; step < table->size(); ++step)
                        cells.push_back(table->getRowAtIndex(row, step));
            } else if (StepLine* line = engine.tracks.lineAt(entry.tag)) {
                for (int row = 0; row < line->rows(); ++row)
                    for (int step = 0; step < line->steps(); ++step)
                        cells.push_back(line->stepAt(row, step));
            } else if (KWZoneHandlerContainer* zones = engine.tracks.zonesAt(entry.tag)) {
                for (int row = 0; row < zones->handlers(); ++row) {
                    cells.push_back(float(zones->start(row)));
                    cells.push_back(float(zones->end(row)));
                }
            }
        }
    }

    // The tags whose cells differ.
    std::set<int> changedSince(const StateImage& older) const
    {
        std::set<int> tags;
        for (const auto& [tag, cells] : values)
            if (cells != older.values.at(tag))
                tags.insert(tag);
        return tags;
    }
    bool operator==(const StateImage& other) const { return values == other.values; }

private:
    std::map<int, std::vector<float>> values;
};

} // namespace ormund
