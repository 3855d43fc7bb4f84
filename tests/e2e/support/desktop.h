#pragma once

#include <QImage>
#include <QList>
#include <QProcess>
#include <QProcessEnvironment>
#include <QRect>
#include <QString>

#include <memory>
#include <optional>
#include <xcb/xcb.h>

/// A window as the window manager lists it.
struct DesktopWindow
{
    xcb_window_t id = XCB_NONE;
    QString title;
    qint64 process = 0;
    QRect rect; ///< its content on the screen, without the frame
    bool active = false;
};

/// An X display of its own with a window manager, and somebody who sits at it: pointer and keys are
/// the server's own events, and what is seen is what the screen shows.
class Desktop
{
public:
    Desktop();
    ~Desktop();
    Q_DISABLE_COPY_MOVE(Desktop)

    /// What a program that is to be shown here must be given.
    QProcessEnvironment environment() const;

    QList<DesktopWindow> windows() const;
    /// What is shown inside `rect`.
    QImage picture(const QRect &rect) const;

    void moveTo(const QPoint &place) const;
    void press() const;
    void release() const;
    void click(const QPoint &place) const;
    /// Turns the wheel by so many notches; away from the user is negative.
    void wheel(const QPoint &place, int notches) const;

    /// Presses and releases a key by its X name number, such as XKey::tab, with modifiers held.
    void key(xcb_keysym_t key, const QList<xcb_keysym_t> &modifiers = {}) const;
    /// Types text of ASCII characters.
    void type(const QString &text) const;

    /// What Ctrl+C takes out of the control that has the focus; nothing if it takes nothing within
    /// `patience` milliseconds.
    std::optional<QString> copied(int patience) const;

private:
    xcb_atom_t atom(const char *name) const;
    QByteArray property(xcb_window_t window, const char *name) const;
    QList<xcb_window_t> windowList(xcb_window_t window, const char *name) const;
    QRect rectOf(xcb_window_t window) const;
    void fake(uint8_t type, uint8_t detail, const QPoint &place = {}) const;
    void settle() const;
    void startServer();
    void startWindowManager();
    void awaitWindowManager() const;
    void readKeyboard();
    xcb_window_t clipboardOwner() const;
    QString clipboardText() const;

    struct Key
    {
        uint8_t code = 0;
        bool shifted = false;
    };
    Key findKey(xcb_keysym_t key) const;

    QProcess m_server;
    QProcess m_manager;
    QString m_display;
    xcb_connection_t *m_connection = nullptr;
    xcb_screen_t *m_screen = nullptr;
    xcb_window_t m_reader = XCB_NONE;  ///< receives the clipboard
    QList<QList<xcb_keysym_t>> m_keys; ///< by key code
};

/// X names of the keys that have no character.
namespace XKey {
constexpr xcb_keysym_t tab = 0xff09;
constexpr xcb_keysym_t enter = 0xff0d;
constexpr xcb_keysym_t escape = 0xff1b;
constexpr xcb_keysym_t home = 0xff50;
constexpr xcb_keysym_t right = 0xff53;
constexpr xcb_keysym_t down = 0xff54;
constexpr xcb_keysym_t f4 = 0xffc1;
constexpr xcb_keysym_t shift = 0xffe1;
constexpr xcb_keysym_t control = 0xffe3;
constexpr xcb_keysym_t alt = 0xffe9;
} // namespace XKey
