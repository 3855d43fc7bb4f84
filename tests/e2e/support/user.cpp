#include "user.h"

#include "childprocess.h"

#include "support/bound.h"
#include "support/files.h"
#include "support/processes.h"

#include <QTest>

#include <algorithm>
#include <csignal>

namespace {

// Until a control that has nothing to copy is believed; one that has answers much earlier.
constexpr int silence = 1000; // ms

constexpr auto mainTitle = "Corvane";
constexpr auto optionsTitle = "Option";

bool isGreen(QRgb pixel)
{
    return qGreen(pixel) > 200 && qRed(pixel) < 80 && qBlue(pixel) < 160;
}

} // namespace

User::User(const Desktop &desktop)
    : m_desktop(desktop)
    , m_mainForm(FORMS "/process.ui")
    , m_optionsForm(FORMS "/opdialog.ui")
{
    program.setProcessChannelMode(QProcess::ForwardedChannels);
    program.setWorkingDirectory(home());
    endsWithTheTest(program);
}

QString User::home(const QString &name) const
{
    return name.isEmpty() ? m_home.path() : m_home.filePath(name);
}

QProcessEnvironment User::environment() const
{
    QProcessEnvironment environment = m_desktop.environment();
    environment.insert("HOME", home());
    for (const char *name : {"CONFIG", "CACHE", "DATA", "STATE"})
        environment.insert(QString("XDG_%1_HOME").arg(name), home(QString(".") + name));
    environment.insert("XDG_RUNTIME_DIR", home());
    environment.insert("QT_LOGGING_RULES", "qt.core.qobject.connect=false");
    return environment;
}

void User::start(const QString &path, const QStringList &arguments)
{
    program.setProcessEnvironment(environment());
    program.start(path, arguments);
    if (!program.waitForStarted(bound))
        qFatal("%s does not start", qPrintable(path));
    awaitWindow(mainTitle);
}

DesktopWindow User::window(const QString &title) const
{
    for (const DesktopWindow &shown : m_desktop.windows()) {
        if (shown.title == title && shown.process == program.processId())
            return shown;
    }
    return {};
}

DesktopWindow User::awaitWindow(const QString &title) const
{
    if (!QTest::qWaitFor([&] { return sees(title); }, bound))
        qFatal("no window \"%s\"", qPrintable(title));
    return window(title);
}

void User::awaitEndOf(const QString &title) const
{
    if (!QTest::qWaitFor([&] { return window(title).id == XCB_NONE; }, bound))
        qFatal("\"%s\" stays", qPrintable(title));
}

void User::clickMain(const QString &widget) const
{
    const QPoint origin = awaitWindow(mainTitle).rect.topLeft();
    m_desktop.click(origin + m_mainForm.rect(widget).center());
}

void User::clickOption(const QString &widget) const
{
    const QPoint origin = awaitWindow(optionsTitle).rect.topLeft();
    m_desktop.click(origin + m_optionsForm.rect(widget).center());
}

void User::wheelOption(const QString &widget, int notches) const
{
    const QPoint origin = awaitWindow(optionsTitle).rect.topLeft();
    m_desktop.wheel(origin + m_optionsForm.rect(widget).center(), notches);
}

void User::typeOption(const QString &lineEdit, const QString &text) const
{
    clickOption(lineEdit);
    m_desktop.key('a', {XKey::control});
    m_desktop.type(text);
}

// The first item, then one step for every page.
void User::turnToOptionPage(int page) const
{
    const QPoint origin = awaitWindow(optionsTitle).rect.topLeft();
    m_desktop.click(origin + m_optionsForm.rect("listWidge_option").topLeft() + QPoint(70, 12));
    for (int step = 0; step < page; ++step)
        m_desktop.key(XKey::down);
}

void User::pressKey(xcb_keysym_t key, int times) const
{
    for (int time = 0; time < times; ++time)
        m_desktop.key(key);
}

QString User::copied() const
{
    return m_desktop.copied(silence).value_or(QString());
}

QPoint User::titleBar() const
{
    return window(mainTitle).rect.topLeft() + QPoint(200, -8);
}

void User::activate() const
{
    m_desktop.click(titleBar());
    awaitWindow(mainTitle);
}

void User::moveWindow(const QPoint &distance) const
{
    const QPoint grip = titleBar();
    m_desktop.moveTo(grip);
    m_desktop.press();
    const auto moved = [&] {
        m_desktop.moveTo(grip + distance / 2);
        m_desktop.moveTo(grip + distance);
        return titleBar() == grip + distance;
    };
    if (!QTest::qWaitFor(moved, bound))
        qFatal("the window can't be moved");
    m_desktop.release();
}

// Shaken until the window under the pointer has answered: it may have been busy.
QString User::drop(const QStringList &files) const
{
    const QPoint target =
        awaitWindow(mainTitle).rect.topLeft() + m_mainForm.rect("inputfiletableWidget").center();
    User owner(m_desktop);
    owner.program.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    owner.program.setProcessEnvironment(owner.environment());
    owner.program.start(DRAG_SOURCE, files);
    const QPoint grip = owner.awaitWindow("Drag source").rect.center();
    QByteArray told;
    const auto tells = [&](const char *word) {
        told += owner.program.readAll();
        return told.contains(word);
    };
    m_desktop.moveTo(grip);
    m_desktop.press();
    int shake = 0;
    const auto shaken = [&](const char *word, const QPoint &place) {
        return QTest::qWaitFor(
            [&] {
                m_desktop.moveTo(place + QPoint(++shake % 8, 0));
                return tells(word);
            },
            bound);
    };
    if (!shaken("dragging", grip) || !shaken("welcome", target))
        qFatal("the drag gets nowhere: %s", told.constData());
    m_desktop.release();
    if (!owner.program.waitForFinished(bound))
        qFatal("the drop has no end");
    told += owner.program.readAll();
    return QString::fromLatin1(told).trimmed().section('\n', -1);
}

void User::choose(const QString &title, const QString &path) const
{
    awaitWindow(title);
    m_desktop.type(path);
    m_desktop.key(XKey::enter);
    awaitEndOf(title);
}

void User::addFile(const QString &path, int row) const
{
    clickMain("openfileButton");
    choose("Add File", path);
    if (!QTest::qWaitFor([&] { return cell(row, 0) == path; }, bound))
        qFatal("the file is not listed");
}

void User::chooseFolder(const QString &path) const
{
    clickMain("outputButton");
    choose("Save", path);
    // The dialog goes a little before the program has its result.
    if (!QTest::qWaitFor([&] { return folder() == path; }, bound))
        qFatal("the folder is not taken");
}

// Never twice at one place: a double click would open the file there.
void User::enterTable() const
{
    static int calls = 0;
    const QRect table = m_mainForm.rect("inputfiletableWidget");
    const QPoint place = table.center() + QPoint(++calls % 2 ? 40 : -40, 0);
    m_desktop.click(awaitWindow(mainTitle).rect.topLeft() + place);
}

// By the keyboard: from the first cell on, one step for every row and column.
QString User::cell(int row, int column) const
{
    enterTable();
    m_desktop.key(XKey::home, {XKey::control});
    for (int step = 0; step < row; ++step)
        m_desktop.key(XKey::down);
    for (int step = 0; step < column; ++step)
        m_desktop.key(XKey::right);
    return copied();
}

QStringList User::verdicts(int rows) const
{
    QStringList all;
    for (int row = 0; row < rows; ++row)
        all.append(cell(row, 2));
    return all;
}

QString User::folder() const
{
    clickMain("outputfolderEdit");
    m_desktop.key('a', {XKey::control});
    return copied();
}

int User::progressSeen() const
{
    const QImage bar = mainPicture().copy(m_mainForm.rect("progressBar"));
    int green = 0;
    for (int x = 0; x < bar.width(); ++x)
        green += isGreen(bar.pixel(x, bar.height() / 2));
    return green;
}

// Rows are 18 pixels high, below a header of one colour.
QRect User::cellRect(int row, int column) const
{
    constexpr int columns[] = {18, 138, 258, 370};
    const QRect table = m_mainForm.rect("inputfiletableWidget");
    const QImage picture = mainPicture();
    const QRgb headerColour = qRgb(248, 248, 255);
    int top = table.top() + 2;
    while (picture.pixel(table.right() - 12, top) == headerColour)
        ++top;
    return {QPoint(table.left() + columns[column], top + 18 * row + 2),
            QPoint(table.left() + columns[column + 1] - 4, top + 18 * row + 16)};
}

bool User::resultSeen(int row) const
{
    return showsText(cellRect(row, 2));
}

// Text stands out against what is right of it, however it is coloured.
bool User::showsText(const QRect &place) const
{
    const QImage picture = mainPicture().copy(place);
    int ink = 0;
    for (int y = 0; y < picture.height(); ++y) {
        const int ground = qGray(picture.pixel(picture.width() - 1, y));
        for (int x = 0; x < picture.width(); ++x)
            ink += std::abs(qGray(picture.pixel(x, y)) - ground) > 100;
    }
    return ink > 20;
}

void User::awaitEndOfBatch(int rows) const
{
    const auto ended = [&] {
        return progressSeen() == 0 && resultSeen(rows - 1) && !cell(rows - 1, 2).isEmpty();
    };
    if (!QTest::qWaitFor(ended, 2 * bound))
        qFatal("the batch has no end");
}

QImage User::mainPicture() const
{
    return m_desktop.picture(window(mainTitle).rect);
}

void User::closeWindow() const
{
    m_desktop.key(XKey::f4, {XKey::alt});
}

int User::quit()
{
    awaitWindow(mainTitle);
    closeWindow();
    if (!program.waitForFinished(bound))
        qFatal("the program has no end");
    return program.exitStatus() == QProcess::NormalExit ? program.exitCode() : -1;
}

qint64 User::awaitHeldEngine() const
{
    qint64 held = 0;
    const auto stands = [&] {
        const QList<qint64> engines = childrenOf(program.processId());
        const auto found = std::ranges::find(engines, 'T', stateOf);
        held = found == engines.end() ? 0 : *found;
        return held != 0;
    };
    if (!QTest::qWaitFor(stands, bound))
        qFatal("no engine stands still");
    return held;
}

void User::resumeEngine() const
{
    if (!sendSignal(awaitHeldEngine(), SIGCONT))
        qFatal("the engine has gone");
}

QList<qint64> childrenOf(qint64 process)
{
    const QByteArray list = contentOf(QString("/proc/%1/task/%1/children").arg(process));
    QList<qint64> all;
    for (const QByteArray &number : list.simplified().split(' ')) {
        if (!number.isEmpty())
            all.append(number.toLongLong());
    }
    return all;
}

char stateOf(qint64 process)
{
    const QByteArray stat = contentOf(QString("/proc/%1/stat").arg(process));
    return stat.isEmpty() ? '\0' : stat[stat.lastIndexOf(')') + 2];
}
