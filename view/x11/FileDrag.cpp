#include "view/x11/FileDrag.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <cstring>

namespace ormund {

namespace {

constexpr uint32_t kProtocolVersion = 5;
constexpr int64_t kPatienceMs = 3000;

const char* const kAtomNames[] = {"XdndAware", "XdndSelection", "XdndEnter", "XdndLeave",
    "XdndPosition", "XdndStatus", "XdndDrop", "XdndFinished", "XdndActionCopy", "text/uri-list",
    "TARGETS"};

int64_t nowMs()
{
    return std::chrono::duration_cast<std::chrono::milliseconds>(
        std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

} // namespace

FileDrag::FileDrag(
    xcb_connection_t* xConnection, xcb_window_t rootWindow, xcb_window_t sourceWindow)
    : connection(xConnection), root(rootWindow), source(sourceWindow)
{
    static_assert(std::size(kAtomNames) == AtomCount);
    xcb_intern_atom_cookie_t cookies[AtomCount];
    for (int i = 0; i < AtomCount; ++i)
        cookies[i] = xcb_intern_atom(
            connection, 0, static_cast<uint16_t>(std::strlen(kAtomNames[i])), kAtomNames[i]);
    for (int i = 0; i < AtomCount; ++i) {
        if (auto* reply = xcb_intern_atom_reply(connection, cookies[i], nullptr)) {
            atoms[i] = reply->atom;
            std::free(reply);
        }
    }
}

std::string FileDrag::uriList(const std::vector<std::string>& paths)
{
    constexpr char kHex[] = "0123456789ABCDEF";
    std::string list;
    for (const std::string& path : paths) {
        list += "file://";
        for (const char c : path) {
            const auto byte = static_cast<unsigned char>(c);
            const bool isPlain = (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z')
                || (byte >= '0' && byte <= '9') || std::strchr("/-_.~", c);
            if (isPlain && c != 0) {
                list += c;
            } else {
                list += '%';
                list += kHex[byte >> 4];
                list += kHex[byte & 15];
            }
        }
        list += "\r\n";
    }
    return list;
}

bool FileDrag::start(const std::vector<std::string>& paths, xcb_timestamp_t pressTime)
{
    if (paths.empty() || isActive())
        return false;
    constexpr uint16_t kEvents = XCB_EVENT_MASK_BUTTON_RELEASE | XCB_EVENT_MASK_POINTER_MOTION;
    auto* grab = xcb_grab_pointer_reply(connection,
        xcb_grab_pointer(connection, 0, source, kEvents, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC,
            XCB_NONE, XCB_NONE, XCB_CURRENT_TIME),
        nullptr);
    const bool isGrabbed = grab && grab->status == XCB_GRAB_STATUS_SUCCESS;
    std::free(grab);
    if (!isGrabbed)
        return false;
    data = uriList(paths);
    time = pressTime;
    xcb_set_selection_owner(connection, source, atoms[Selection], time);
    phase = Phase::Dragging;
    target = 0;
    waitsForStatus = positionChanged = isAccepted = isReleased = false;
    xcb_flush(connection);
    return true;
}

uint32_t FileDrag::dropVersion(xcb_window_t window) const
{
    auto* reply = xcb_get_property_reply(connection,
        xcb_get_property(connection, 0, window, atoms[Aware], XCB_ATOM_ATOM, 0, 1), nullptr);
    uint32_t version = 0;
    if (reply && reply->format == 32 && xcb_get_property_value_length(reply) >= 4)
        std::memcpy(&version, xcb_get_property_value(reply), 4);
    std::free(reply);
    return std::min(version, kProtocolVersion);
}

xcb_window_t FileDrag::findTarget(int16_t rootX, int16_t rootY, uint32_t& version) const
{
    xcb_window_t window = root;
    constexpr int kDeepest = 32;
    for (int depth = 0; depth < kDeepest; ++depth) {
        auto* reply = xcb_translate_coordinates_reply(
            connection, xcb_translate_coordinates(connection, root, window, rootX, rootY), nullptr);
        const xcb_window_t child = reply ? reply->child : 0;
        std::free(reply);
        if (!child || child == source)
            return 0;
        version = dropVersion(child);
        if (version > 0)
            return child;
        window = child;
    }
    return 0;
}

void FileDrag::send(Atom type, uint32_t d1, uint32_t d2, uint32_t d3, uint32_t d4)
{
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = target;
    message.type = atoms[type];
    message.data.data32[0] = source;
    message.data.data32[1] = d1;
    message.data.data32[2] = d2;
    message.data.data32[3] = d3;
    message.data.data32[4] = d4;
    xcb_send_event(connection, 0, target, 0, reinterpret_cast<const char*>(&message));
}

void FileDrag::sendPosition()
{
    const auto place = static_cast<uint32_t>(static_cast<uint16_t>(x)) << 16
        | static_cast<uint32_t>(static_cast<uint16_t>(y));
    send(Position, 0, place, time, atoms[ActionCopy]);
    waitsForStatus = true;
    positionChanged = false;
    deadline = nowMs() + kPatienceMs;
}

void FileDrag::leaveTarget()
{
    if (target)
        send(Leave);
    target = 0;
    waitsForStatus = isAccepted = false;
}

void FileDrag::moved(const xcb_motion_notify_event_t& event)
{
    x = event.root_x;
    y = event.root_y;
    time = event.time;
    uint32_t version = 0;
    const xcb_window_t found = findTarget(x, y, version);
    if (found != target) {
        leaveTarget();
        target = found;
        targetVersion = version;
        if (target)
            send(Enter, targetVersion << 24, atoms[UriList]);
    }
    if (target) {
        if (waitsForStatus)
            positionChanged = true;
        else
            sendPosition();
    }
    xcb_flush(connection);
}

void FileDrag::released(xcb_timestamp_t releaseTime)
{
    time = releaseTime;
    xcb_ungrab_pointer(connection, time);
    isReleased = true;
    // A target that has not answered yet decides when it does.
    if (!target || !waitsForStatus)
        finish();
    xcb_flush(connection);
}

void FileDrag::finish()
{
    if (target && isAccepted) {
        send(Drop, 0, time);
        phase = Phase::Dropped;
        deadline = nowMs() + kPatienceMs;
        return;
    }
    leaveTarget();
    phase = Phase::Idle;
}

void FileDrag::cancel()
{
    if (phase == Phase::Dragging) {
        xcb_ungrab_pointer(connection, XCB_CURRENT_TIME);
        leaveTarget();
    }
    phase = Phase::Idle;
    xcb_flush(connection);
}

bool FileDrag::takeEvent(const xcb_generic_event_t* event)
{
    const int type = event->response_type & 0x7F;
    if (type == XCB_SELECTION_REQUEST) {
        answer(*reinterpret_cast<const xcb_selection_request_event_t*>(event));
        return true;
    }
    if (type != XCB_CLIENT_MESSAGE)
        return false;
    const auto& message = *reinterpret_cast<const xcb_client_message_event_t*>(event);
    const bool isStatus = message.type == atoms[Status];
    if (!isStatus && message.type != atoms[Finished])
        return false;
    if (message.data.data32[0] != target || !isActive())
        return true;
    if (!isStatus) {
        if (phase == Phase::Dropped)
            phase = Phase::Idle;
    } else if (phase == Phase::Dragging) {
        isAccepted = (message.data.data32[1] & 1) != 0;
        waitsForStatus = false;
        if (isReleased)
            finish();
        else if (positionChanged)
            sendPosition();
        xcb_flush(connection);
    }
    return true;
}

void FileDrag::idle()
{
    const bool isWaiting = waitsForStatus || phase == Phase::Dropped;
    if (!isActive() || !isWaiting || nowMs() < deadline)
        return;
    waitsForStatus = false;
    if (phase == Phase::Dropped || isReleased) {
        target = 0;
        phase = Phase::Idle;
    }
}

void FileDrag::answer(const xcb_selection_request_event_t& request)
{
    xcb_selection_notify_event_t notify{};
    notify.response_type = XCB_SELECTION_NOTIFY;
    notify.time = request.time;
    notify.requestor = request.requestor;
    notify.selection = request.selection;
    notify.target = request.target;
    const xcb_atom_t property = request.property ? request.property : request.target;
    if (request.selection == atoms[Selection] && request.target == atoms[UriList]) {
        xcb_change_property(connection, XCB_PROP_MODE_REPLACE, request.requestor, property,
            atoms[UriList], 8, static_cast<uint32_t>(data.size()), data.data());
        notify.property = property;
    } else if (request.selection == atoms[Selection] && request.target == atoms[Targets]) {
        const xcb_atom_t offered[] = {atoms[Targets], atoms[UriList]};
        xcb_change_property(connection, XCB_PROP_MODE_REPLACE, request.requestor, property,
            XCB_ATOM_ATOM, 32, 2, offered);
        notify.property = property;
    }
    xcb_send_event(connection, 0, request.requestor, 0, reinterpret_cast<const char*>(&notify));
    xcb_flush(connection);
}

} // namespace ormund
