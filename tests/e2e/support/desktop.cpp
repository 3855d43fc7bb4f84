#include "desktop.h"

#include "childprocess.h"

#include "support/bound.h"

#include <QTest>

#include <cstdlib>
#include <xcb/xtest.h>

namespace {

constexpr uint32_t longest = 1 << 20; // of a property, in units of 4 bytes

struct Free
{
    void operator()(void *reply) const { std::free(reply); }
};

template <typename Reply>
std::unique_ptr<Reply, Free> owned(Reply *reply)
{
    return std::unique_ptr<Reply, Free>(reply);
}

} // namespace

Desktop::Desktop()
{
    startServer();
    m_connection = xcb_connect(qPrintable(m_display), nullptr);
    if (xcb_connection_has_error(m_connection))
        qFatal("no connection to display %s", qPrintable(m_display));
    m_screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data;
    m_reader = xcb_generate_id(m_connection);
    xcb_create_window(m_connection, 0, m_reader, m_screen->root, 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    readKeyboard();
    startWindowManager();
}

Desktop::~Desktop()
{
    xcb_disconnect(m_connection);
    for (QProcess *process : {&m_manager, &m_server}) {
        process->terminate();
        process->waitForFinished(bound);
    }
}

// The server chooses a free number and tells it once it listens.
void Desktop::startServer()
{
    endsWithTheTest(m_server);
    m_server.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_server.start("Xvfb", {"-displayfd", "1", "-screen", "0", "1280x1024x24", "-dpi", "96",
                            "-nolisten", "tcp", "-noreset"});
    while (!m_server.canReadLine()) {
        if (!m_server.waitForReadyRead(bound))
            qFatal("no X server");
    }
    m_display = ':' + QString::fromLatin1(m_server.readLine()).trimmed();
}

void Desktop::startWindowManager()
{
    endsWithTheTest(m_manager);
    m_manager.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_manager.setProcessEnvironment(environment());
    m_manager.start("openbox", {"--sm-disable"});
    awaitWindowManager();
}

// A window manager that starts overlooks a window that is shown at the wrong moment, so one of ours
// is shown until it is taken.
void Desktop::awaitWindowManager() const
{
    constexpr int attempt = 500; // ms
    const xcb_window_t probe = xcb_generate_id(m_connection);
    xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, probe, m_screen->root, 0, 0, 9, 9, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    const auto isTaken = [&] {
        return windowList(m_screen->root, "_NET_CLIENT_LIST").contains(probe);
    };
    const auto takes = [&] {
        xcb_unmap_window(m_connection, probe);
        xcb_map_window(m_connection, probe);
        return QTest::qWaitFor(isTaken, attempt);
    };
    if (!QTest::qWaitFor(takes, bound))
        qFatal("no window manager");
    xcb_destroy_window(m_connection, probe);
    if (!QTest::qWaitFor([&] { return !isTaken(); }, bound))
        qFatal("the window manager keeps what is gone");
}

// Nothing of the desktop that the tests themselves run on.
QProcessEnvironment Desktop::environment() const
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const QString &name : environment.keys()) {
        if (name.startsWith("QT_") || name.startsWith("XDG_") || name.startsWith("DBUS_") ||
            name.startsWith("WAYLAND_"))
            environment.remove(name);
    }
    environment.insert("DISPLAY", m_display);
    environment.insert("LC_ALL", "C.UTF-8");
    return environment;
}

xcb_atom_t Desktop::atom(const char *name) const
{
    const auto cookie =
        xcb_intern_atom(m_connection, 0, static_cast<uint16_t>(qstrlen(name)), name);
    return owned(xcb_intern_atom_reply(m_connection, cookie, nullptr))->atom;
}

QByteArray Desktop::property(xcb_window_t window, const char *name) const
{
    const auto cookie = xcb_get_property(m_connection, 0, window, atom(name),
                                         XCB_GET_PROPERTY_TYPE_ANY, 0, longest);
    const auto reply = owned(xcb_get_property_reply(m_connection, cookie, nullptr));
    if (!reply) // the window has gone
        return {};
    return {static_cast<const char *>(xcb_get_property_value(reply.get())),
            xcb_get_property_value_length(reply.get())};
}

QList<xcb_window_t> Desktop::windowList(xcb_window_t window, const char *name) const
{
    const QByteArray value = property(window, name);
    QList<xcb_window_t> list(value.size() / qsizetype(sizeof(xcb_window_t)));
    if (!list.isEmpty())
        std::memcpy(list.data(), value.constData(),
                    static_cast<std::size_t>(list.size()) * sizeof(xcb_window_t));
    return list;
}

QRect Desktop::rectOf(xcb_window_t window) const
{
    const auto sizeCookie = xcb_get_geometry(m_connection, window);
    const auto placeCookie = xcb_translate_coordinates(m_connection, window, m_screen->root, 0, 0);
    const auto size = owned(xcb_get_geometry_reply(m_connection, sizeCookie, nullptr));
    const auto place = owned(xcb_translate_coordinates_reply(m_connection, placeCookie, nullptr));
    return size && place ? QRect(place->dst_x, place->dst_y, size->width, size->height) : QRect();
}

QList<DesktopWindow> Desktop::windows() const
{
    const QList<xcb_window_t> active = windowList(m_screen->root, "_NET_ACTIVE_WINDOW");
    QList<DesktopWindow> all;
    for (const xcb_window_t id : windowList(m_screen->root, "_NET_CLIENT_LIST")) {
        all.append({.id = id,
                    .title = QString::fromUtf8(property(id, "_NET_WM_NAME")),
                    .process = windowList(id, "_NET_WM_PID").value(0),
                    .rect = rectOf(id),
                    .active = active.contains(id)});
    }
    return all;
}

QImage Desktop::picture(const QRect &rect) const
{
    const auto cookie = xcb_get_image(
        m_connection, XCB_IMAGE_FORMAT_Z_PIXMAP, m_screen->root, static_cast<int16_t>(rect.x()),
        static_cast<int16_t>(rect.y()), static_cast<uint16_t>(rect.width()),
        static_cast<uint16_t>(rect.height()), ~0U);
    const auto reply = owned(xcb_get_image_reply(m_connection, cookie, nullptr));
    if (!reply || reply->depth != 24)
        qFatal("no picture of the screen");
    return QImage(xcb_get_image_data(reply.get()), rect.width(), rect.height(),
                  QImage::Format_RGB32)
        .copy();
}

void Desktop::fake(uint8_t type, uint8_t detail, const QPoint &place) const
{
    xcb_test_fake_input(m_connection, type, detail, XCB_CURRENT_TIME, m_screen->root,
                        static_cast<int16_t>(place.x()), static_cast<int16_t>(place.y()), 0);
    xcb_flush(m_connection);
}

void Desktop::moveTo(const QPoint &place) const
{
    fake(XCB_MOTION_NOTIFY, 0, place);
}

void Desktop::press() const
{
    fake(XCB_BUTTON_PRESS, XCB_BUTTON_INDEX_1);
}

void Desktop::release() const
{
    fake(XCB_BUTTON_RELEASE, XCB_BUTTON_INDEX_1);
}

void Desktop::click(const QPoint &place) const
{
    moveTo(place);
    press();
    release();
    settle();
}

// The window manager looks at every click first, and the server holds back what the pointer does
// next, but not the keys: without this, keys overtake a click.
void Desktop::settle() const
{
    const auto released = [this] {
        const auto cookie = xcb_query_pointer(m_connection, m_screen->root);
        const auto reply = owned(xcb_query_pointer_reply(m_connection, cookie, nullptr));
        constexpr int buttons = XCB_BUTTON_MASK_1 | XCB_BUTTON_MASK_4 | XCB_BUTTON_MASK_5;
        return !(reply->mask & buttons);
    };
    if (!QTest::qWaitFor(released, bound))
        qFatal("a click gets nowhere");
}

void Desktop::wheel(const QPoint &place, int notches) const
{
    moveTo(place);
    const uint8_t button = notches < 0 ? XCB_BUTTON_INDEX_4 : XCB_BUTTON_INDEX_5;
    for (int notch = 0; notch < std::abs(notches); ++notch) {
        fake(XCB_BUTTON_PRESS, button);
        fake(XCB_BUTTON_RELEASE, button);
    }
    settle();
}

void Desktop::readKeyboard()
{
    const xcb_setup_t *setup = xcb_get_setup(m_connection);
    const auto count = static_cast<uint8_t>(setup->max_keycode - setup->min_keycode + 1);
    const auto cookie = xcb_get_keyboard_mapping(m_connection, setup->min_keycode, count);
    const auto reply = owned(xcb_get_keyboard_mapping_reply(m_connection, cookie, nullptr));
    const xcb_keysym_t *symbols = xcb_get_keyboard_mapping_keysyms(reply.get());
    m_keys.resize(setup->max_keycode + 1);
    for (int code = setup->min_keycode; code <= setup->max_keycode; ++code) {
        m_keys[code] = {symbols, symbols + std::min<int>(2, reply->keysyms_per_keycode)};
        symbols += reply->keysyms_per_keycode;
    }
}

Desktop::Key Desktop::findKey(xcb_keysym_t key) const
{
    for (qsizetype code = 0; code < m_keys.size(); ++code) {
        const qsizetype level = m_keys[code].indexOf(key);
        if (level >= 0)
            return {static_cast<uint8_t>(code), level > 0};
    }
    qFatal("no key 0x%x on this keyboard", key);
}

void Desktop::key(xcb_keysym_t key, const QList<xcb_keysym_t> &modifiers) const
{
    for (const xcb_keysym_t modifier : modifiers)
        fake(XCB_KEY_PRESS, findKey(modifier).code);
    const Key found = findKey(key);
    fake(XCB_KEY_PRESS, found.code);
    fake(XCB_KEY_RELEASE, found.code);
    for (const xcb_keysym_t modifier : modifiers)
        fake(XCB_KEY_RELEASE, findKey(modifier).code);
}

void Desktop::type(const QString &text) const
{
    for (const QChar character : text) {
        const xcb_keysym_t symbol = character.unicode(); // the same for Latin 1
        key(symbol, findKey(symbol).shifted ? QList{XKey::shift} : QList<xcb_keysym_t>());
    }
}

xcb_window_t Desktop::clipboardOwner() const
{
    const auto cookie = xcb_get_selection_owner(m_connection, atom("CLIPBOARD"));
    return owned(xcb_get_selection_owner_reply(m_connection, cookie, nullptr))->owner;
}

// Until the program answers, the clipboard is ours.
std::optional<QString> Desktop::copied(int patience) const
{
    xcb_set_selection_owner(m_connection, m_reader, atom("CLIPBOARD"), XCB_CURRENT_TIME);
    key('c', {XKey::control});
    if (!QTest::qWaitFor([this] { return clipboardOwner() != m_reader; }, patience))
        return std::nullopt;
    return clipboardText();
}

QString Desktop::clipboardText() const
{
    constexpr auto place = "CORVANE_TEST_CLIPBOARD";
    while (auto stale = owned(xcb_poll_for_event(m_connection))) {
    }
    xcb_convert_selection(m_connection, m_reader, atom("CLIPBOARD"), atom("UTF8_STRING"),
                          atom(place), XCB_CURRENT_TIME);
    xcb_flush(m_connection);
    const auto told = [this] {
        const auto event = owned(xcb_poll_for_event(m_connection));
        return event && (event->response_type & 0x7f) == XCB_SELECTION_NOTIFY;
    };
    if (!QTest::qWaitFor(told, bound))
        qFatal("no answer from the clipboard");
    return QString::fromUtf8(property(m_reader, place));
}
