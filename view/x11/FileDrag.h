// Drags files out of a window into another program, by the drag-and-drop protocol of the X
// desktops. Nothing here waits: the window hands its events in, and the drag takes its next step.
#pragma once

#include <cstdint>
#include <string>
#include <vector>
#include <xcb/xcb.h>

namespace ormund {

class FileDrag {
public:
    FileDrag(xcb_connection_t* xConnection, xcb_window_t rootWindow, xcb_window_t sourceWindow);

    // Begins at the pointer; `time` is the press's. False when the pointer cannot be taken.
    bool start(const std::vector<std::string>& paths, xcb_timestamp_t time);
    bool isActive() const { return phase != Phase::Idle; }
    // The files are still to be moved by the pointer, so motion and releases belong to the drag.
    bool isDragging() const { return phase == Phase::Dragging; }

    void moved(const xcb_motion_notify_event_t& event);
    void released(xcb_timestamp_t time);
    void cancel();
    // False for an event that is not the drag's.
    bool takeEvent(const xcb_generic_event_t* event);
    // Gives up on a target that does not answer; once per poll.
    void idle();

    // file:///... lines as a target gets them, with every byte outside the plain ones escaped.
    static std::string uriList(const std::vector<std::string>& paths);

private:
    enum class Phase : uint8_t { Idle, Dragging, Dropped };
    enum Atom : uint8_t {
        Aware,
        Selection,
        Enter,
        Leave,
        Position,
        Status,
        Drop,
        Finished,
        ActionCopy,
        UriList,
        Targets,
        AtomCount
    };

    void send(Atom type, uint32_t d1 = 0, uint32_t d2 = 0, uint32_t d3 = 0, uint32_t d4 = 0);
    void sendPosition();
    void leaveTarget();
    void finish();
    // The highest window under the pointer that takes drops, and its protocol version.
    xcb_window_t findTarget(int16_t rootX, int16_t rootY, uint32_t& version) const;
    uint32_t dropVersion(xcb_window_t window) const;
    void answer(const xcb_selection_request_event_t& request);

    xcb_connection_t* connection;
    xcb_window_t root;
    xcb_window_t source;
    xcb_atom_t atoms[AtomCount] = {};
    Phase phase = Phase::Idle;
    std::string data;
    xcb_window_t target = 0;
    uint32_t targetVersion = 0;
    int16_t x = 0;
    int16_t y = 0;
    xcb_timestamp_t time = 0;
    bool waitsForStatus = false;
    bool positionChanged = false;
    bool isAccepted = false;
    bool isReleased = false;
    int64_t deadline = 0; // ms of the steady clock
};

} // namespace ormund
