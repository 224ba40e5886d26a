#include "X11.h"

#include <xcb/xcb.h>

#include <QGuiApplication>
#include <QWindow>
#include <array>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace ventaro {

namespace {

struct Freed {
    void operator()(void* reply) const { std::free(reply); } // NOLINT: xcb's replies are malloc's
};
template<typename Reply>
using ReplyPointer = std::unique_ptr<Reply, Freed>;

/// Null where there is no X11.
xcb_connection_t* x11Connection() {
    auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 != nullptr ? x11->connection() : nullptr;
}

xcb_atom_t atom(xcb_connection_t* connection, const QByteArray& name) {
    const auto cookie =
        xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.constData());
    const ReplyPointer<xcb_intern_atom_reply_t> reply(
        xcb_intern_atom_reply(connection, cookie, nullptr));
    return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

constexpr std::uint8_t propertyBits = 32;

template<std::size_t count>
void setAtoms(xcb_connection_t* connection, xcb_window_t window, const char* property,
              const std::array<const char*, count>& names) {
    std::array<xcb_atom_t, count> atoms{};
    for (std::size_t index = 0; index < count; ++index) {
        atoms[index] = atom(connection, names[index]);
    }
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, atom(connection, property),
                        XCB_ATOM_ATOM, propertyBits, count, atoms.data());
}

} // namespace

void markAsUtilityWindow(QWindow& window) {
    xcb_connection_t* connection = x11Connection();
    if (connection == nullptr) {
        return;
    }
    const auto id = static_cast<xcb_window_t>(window.winId());
    setAtoms<1>(connection, id, "_NET_WM_WINDOW_TYPE", {"_NET_WM_WINDOW_TYPE_UTILITY"});
    // Qt merges its own states with these, but only while the window is not on screen.
    setAtoms<2>(connection, id, "_NET_WM_STATE",
                {"_NET_WM_STATE_SKIP_TASKBAR", "_NET_WM_STATE_SKIP_PAGER"});
    constexpr std::uint32_t everyDesktop = 0xFFFFFFFF; // by the Extended Window Manager Hints
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, id, atom(connection, "_NET_WM_DESKTOP"),
                        XCB_ATOM_CARDINAL, propertyBits, 1, &everyDesktop);
}

bool isTransparencyShown() {
    xcb_connection_t* connection = x11Connection();
    if (connection == nullptr) {
        return true;
    }
    char* host = nullptr;
    int display = 0;
    int screen = 0;
    xcb_parse_display(nullptr, &host, &display, &screen); // which leaves the first one if it fails
    const std::unique_ptr<char, Freed> freed(host);
    const ReplyPointer<xcb_get_selection_owner_reply_t> reply(xcb_get_selection_owner_reply(
        connection,
        xcb_get_selection_owner(connection,
                                atom(connection, "_NET_WM_CM_S" + QByteArray::number(screen))),
        nullptr));
    return reply && reply->owner != XCB_NONE;
}

X11SystemTray::X11SystemTray() : connection_(x11Connection()) {
    if (connection_ != nullptr) {
        // Qt listens to the first screen's root window, where a new tray announces itself.
        selection_ = atom(connection_, "_NET_SYSTEM_TRAY_S0");
        manager_ = atom(connection_, "MANAGER");
        QCoreApplication::instance()->installNativeEventFilter(this);
        look();
    }
}

X11SystemTray::~X11SystemTray() = default;

bool X11SystemTray::nativeEventFilter(const QByteArray& eventType, void* message,
                                      qintptr* /*result*/) {
    if (eventType != "xcb_generic_event_t") {
        return false;
    }
    constexpr std::uint8_t sentFlag = 0x80;
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    switch (event->response_type & ~sentFlag) {
    case XCB_CLIENT_MESSAGE: {
        const auto* announcement = reinterpret_cast<const xcb_client_message_event_t*>(event);
        if (announcement->type == manager_ && announcement->data.data32[1] == selection_) {
            look();
        }
        break;
    }
    case XCB_DESTROY_NOTIFY:
        if (reinterpret_cast<const xcb_destroy_notify_event_t*>(event)->window == owner_) {
            look();
        }
        break;
    default:
        break;
    }
    return false;
}

void X11SystemTray::look() {
    const std::uint32_t before = owner_;
    const ReplyPointer<xcb_get_selection_owner_reply_t> reply(xcb_get_selection_owner_reply(
        connection_, xcb_get_selection_owner(connection_, selection_), nullptr));
    owner_ = reply ? reply->owner : 0;
    if (owner_ != 0) {
        constexpr std::uint32_t mask = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
        xcb_change_window_attributes(connection_, owner_, XCB_CW_EVENT_MASK, &mask);
        xcb_flush(connection_);
    }
    if ((before != 0) != (owner_ != 0)) {
        Q_EMIT presenceChanged();
    }
}

} // namespace ventaro
