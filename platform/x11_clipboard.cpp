// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/x11_clipboard.h"

#include <QByteArray>
#include <QDeadlineTimer>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>
#include <poll.h>
#include <string_view>
#include <xcb/xcb.h>

namespace veltro {
namespace {

struct EndWithFree {
    void operator()(void *allocated) const { std::free(allocated); }
    void operator()(xcb_connection_t *connection) const { xcb_disconnect(connection); }
};
template <typename Held>
using XcbPtr = std::unique_ptr<Held, EndWithFree>;

using Event = XcbPtr<xcb_generic_event_t>;

template <typename Wanted>
const Wanted *asEvent(const Event &event, std::uint8_t type)
{
    constexpr std::uint8_t sentBySomebody = 0x80;
    return event && (event->response_type & ~sentBySomebody) == type
               ? reinterpret_cast<const Wanted *>(event.get()) // NOLINT(*-reinterpret-cast)
               : nullptr;
}

/// One conversation with the owner of the clipboard.
class SelectionReader {
public:
    SelectionReader(X11Selection selection, qsizetype mostBytes, std::chrono::milliseconds within)
        : m_isMarked(selection == X11Selection::marked)
        , m_mostBytes(mostBytes)
        , m_deadline(within)
        , m_connection(xcb_connect(nullptr, nullptr))
    {}

    std::optional<QString> read()
    {
        if (!begin()) {
            return std::nullopt;
        }
        const xcb_atom_t unicode = atom("UTF8_STRING");
        if (const auto text = ask(unicode)) {
            return QString::fromUtf8(*text);
        }
        if (m_isTooLong) {
            return std::nullopt;
        }
        const auto text = ask(XCB_ATOM_STRING); // programs that know nothing newer
        return text ? std::optional(QString::fromLatin1(*text)) : std::nullopt;
    }

private:
    bool begin()
    {
        if (xcb_connection_has_error(m_connection.get()) != 0) {
            return false;
        }
        const xcb_screen_t *screen =
            xcb_setup_roots_iterator(xcb_get_setup(m_connection.get())).data;
        m_window = xcb_generate_id(m_connection.get());
        const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_create_window(m_connection.get(), XCB_COPY_FROM_PARENT, m_window, screen->root, 0, 0, 1,
                          1, 0, XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT,
                          XCB_CW_EVENT_MASK, &events);
        m_selection = m_isMarked ? xcb_atom_t{XCB_ATOM_PRIMARY} : atom("CLIPBOARD");
        m_inPieces = atom("INCR");
        m_property = atom("VELTRO_TEXT");
        return true;
    }

    xcb_atom_t atom(std::string_view name)
    {
        const xcb_intern_atom_cookie_t asked = xcb_intern_atom(
            m_connection.get(), 0, static_cast<std::uint16_t>(name.size()), name.data());
        const XcbPtr<xcb_intern_atom_reply_t> answer(
            xcb_intern_atom_reply(m_connection.get(), asked, nullptr));
        return answer ? answer->atom : xcb_atom_t{XCB_ATOM_NONE};
    }

    /// The next event; null when the time is up.
    Event nextEvent()
    {
        xcb_flush(m_connection.get());
        while (xcb_connection_has_error(m_connection.get()) == 0) {
            if (Event event{xcb_poll_for_event(m_connection.get())}) {
                return event;
            }
            pollfd watched{xcb_get_file_descriptor(m_connection.get()), POLLIN, 0};
            const auto left = static_cast<int>(m_deadline.remainingTime());
            if (left <= 0 || ::poll(&watched, 1, left) <= 0) {
                break;
            }
        }
        return nullptr;
    }

    std::optional<QByteArray> ask(xcb_atom_t kind)
    {
        xcb_convert_selection(m_connection.get(), m_window, m_selection, kind, m_property,
                              XCB_CURRENT_TIME);
        while (const Event event = nextEvent()) {
            const auto *answer = asEvent<xcb_selection_notify_event_t>(event, XCB_SELECTION_NOTIFY);
            if (answer && answer->target == kind) {
                return answer->property == XCB_ATOM_NONE ? std::nullopt : take();
            }
        }
        return std::nullopt;
    }

    std::optional<QByteArray> take()
    {
        QByteArray text;
        const auto type = append(text);
        if (type && *type == m_inPieces) {
            return takePieces();
        }
        return type && !m_isTooLong ? std::optional(text) : std::nullopt;
    }

    // The owner puts a piece there each time that the last one was taken away; an empty one ends.
    // One that is left in the middle may never answer anybody again, so what is too long is taken
    // to its end all the same, and dropped.
    std::optional<QByteArray> takePieces()
    {
        QByteArray text;
        while (const Event event = nextEvent()) {
            const auto *change = asEvent<xcb_property_notify_event_t>(event, XCB_PROPERTY_NOTIFY);
            if (!change || change->atom != m_property || change->state != XCB_PROPERTY_NEW_VALUE) {
                continue;
            }
            m_pieceBytes = 0;
            if (!append(text)) {
                return std::nullopt;
            }
            if (m_pieceBytes == 0) {
                return m_isTooLong ? std::nullopt : std::optional(text);
            }
        }
        return std::nullopt;
    }

    /// Takes what the property holds, as far as there is room for it, and the property away.
    /// @returns its type.
    std::optional<xcb_atom_t> append(QByteArray &text)
    {
        const qsizetype room = m_isTooLong ? 0 : m_mostBytes - text.size();
        const auto words = static_cast<std::uint32_t>(room / 4 + 1);
        const auto asked =
            xcb_get_property(m_connection.get(), 0, m_window, m_property, XCB_ATOM_ANY, 0, words);
        const XcbPtr<xcb_get_property_reply_t> answer(
            xcb_get_property_reply(m_connection.get(), asked, nullptr));
        if (!answer) {
            return std::nullopt;
        }
        xcb_delete_property(m_connection.get(), m_window, m_property);
        m_pieceBytes = xcb_get_property_value_length(answer.get());
        if (answer->type != m_inPieces) {
            if (answer->bytes_after > 0 || m_pieceBytes > room) {
                m_isTooLong = true;
                text.clear();
            } else {
                text.append(static_cast<const char *>(xcb_get_property_value(answer.get())),
                            m_pieceBytes);
            }
        }
        return answer->type;
    }

    const bool m_isMarked;
    const qsizetype m_mostBytes;
    const QDeadlineTimer m_deadline;
    const XcbPtr<xcb_connection_t> m_connection;
    xcb_window_t m_window = XCB_WINDOW_NONE;
    xcb_atom_t m_selection = XCB_ATOM_NONE;
    xcb_atom_t m_inPieces = XCB_ATOM_NONE;
    xcb_atom_t m_property = XCB_ATOM_NONE;
    int m_pieceBytes = 0;
    bool m_isTooLong = false;
};

}

std::optional<QString> readX11Clipboard(X11Selection selection, qsizetype mostBytes,
                                        std::chrono::milliseconds within)
{
    return SelectionReader(selection, mostBytes, within).read();
}

}
