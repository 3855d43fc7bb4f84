// The main job under Wayland: a compositor that draws into a window of the desktop takes the
// desktop's pointer and keys. A Wayland client doesn't learn where it lies, so what is on the
// screen says it.

#include "childprocess.h"
#include "desktop.h"
#include "form.h"
#include "support/bound.h"
#include "support/files.h"
#include "support/pdftools.h"
#include "support/sandbox.h"
#include "support/tools.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTest>

#include <algorithm>
#include <memory>
#include <utility>

namespace {

constexpr int attempt = 5000; // ms

// Qt draws the frame itself.
constexpr QMargins frame(3, 30, 3, 3);
constexpr QPoint closeButton(-17, 15); // from the frame's right upper corner

// Nothing but the program is to be seen, and nothing moves by itself.
constexpr auto compositorSettings = "[core]\nidle-time=0\n"
                                    "[shell]\nlocking=false\npanel-position=none\n"
                                    "background-color=0xff000000\nanimation=none\n"
                                    "startup-animation=none\nclose-animation=none\n"
                                    "focus-animation=none\n";

/// First and last place with more than some lit pixels.
std::pair<int, int> extent(const QList<int> &lit)
{
    const auto enough = [](int count) { return count > 60; };
    const auto first = std::find_if(lit.begin(), lit.end(), enough);
    const auto last = std::find_if(lit.rbegin(), lit.rend(), enough);
    return {int(first - lit.begin()), int(lit.rend() - last) - 1};
}

} // namespace

class TestWayland : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void mainJob();

private:
    void startCompositor();
    QRect output() const;
    QRect seen() const;
    bool seesMainWindow() const;
    QPoint place(const QString &widget) const;
    void add(const QString &path) const;

    Form m_form{FORMS "/process.ui"};
    QTemporaryDir m_runtime;
    std::unique_ptr<Desktop> m_desktop;
    QProcess m_compositor;
};

void TestWayland::initTestCase()
{
    m_desktop = std::make_unique<Desktop>();
    startCompositor();
}

void TestWayland::cleanupTestCase()
{
    m_compositor.terminate();
    QTRY_COMPARE_WITH_TIMEOUT(m_compositor.state(), QProcess::NotRunning, bound);
    m_desktop.reset();
}

void TestWayland::startCompositor()
{
    const QString settings = m_runtime.filePath("weston.ini");
    write(settings, compositorSettings);
    QProcessEnvironment environment = m_desktop->environment();
    environment.insert("XDG_RUNTIME_DIR", m_runtime.path());
    m_compositor.setProcessEnvironment(environment);
    endsWithTheTest(m_compositor);
    m_compositor.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_compositor.start("weston", {"--backend=x11-backend.so", "--use-pixman", "--width=1000",
                                  "--height=800", "--socket=corvane",
                                  "--log=" + m_runtime.filePath("log"), "--config=" + settings});
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(m_runtime.filePath("corvane")), bound);
    QTRY_COMPARE_WITH_TIMEOUT(m_desktop->windows().size(), 1, bound);
    QTRY_VERIFY_WITH_TIMEOUT(m_desktop->windows().value(0).active, bound);
}

QRect TestWayland::output() const
{
    return m_desktop->windows().value(0).rect;
}

/// The place of all that isn't background; what is as small as the pointer doesn't count.
QRect TestWayland::seen() const
{
    const QRect whole = output().adjusted(4, 4, -4, -4);
    const QImage picture = m_desktop->picture(whole);
    QList<int> rows(picture.height());
    QList<int> columns(picture.width());
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const int lit = qGray(picture.pixel(x, y)) > 0;
            rows[y] += lit;
            columns[x] += lit;
        }
    }
    const auto [left, right] = extent(columns);
    const auto [top, bottom] = extent(rows);
    return QRect(QPoint(left, top), QPoint(right, bottom)).translated(whole.topLeft());
}

bool TestWayland::seesMainWindow() const
{
    return seen().size() == m_form.rect("process").marginsAdded(frame).size();
}

QPoint TestWayland::place(const QString &widget) const
{
    return seen().marginsRemoved(frame).topLeft() + m_form.rect(widget).center();
}

// A click or key that comes before a new surface listens is lost: so each is repeated as long as it
// has had no effect.
void TestWayland::add(const QString &path) const
{
    const QPoint button = place("openfileButton");
    const auto opened = [&] {
        m_desktop->moveTo({0, 0}); // the compositor learns where the pointer is when it comes in
        m_desktop->click(button);
        return QTest::qWaitFor([this] { return !seesMainWindow(); }, attempt);
    };
    QVERIFY(QTest::qWaitFor(opened, bound));
    const auto accepted = [&] {
        m_desktop->key('a', {XKey::control});
        m_desktop->type(path);
        m_desktop->key(XKey::enter);
        return QTest::qWaitFor([this] { return seesMainWindow(); }, attempt);
    };
    QVERIFY(QTest::qWaitFor(accepted, bound));
}

void TestWayland::mainJob()
{
    const QTemporaryDir home;
    const Sandbox sandbox;
    const QString input = sandbox.inputFolder() + "/a.pdf";
    QVERIFY(QFile::copy(SAMPLES_FOLDER "/text.pdf", input));
    QProcessEnvironment environment = m_desktop->environment();
    environment.remove("DISPLAY");
    environment.insert("HOME", home.path());
    environment.insert("QT_LOGGING_RULES", "qt.core.qobject.connect=false");
    environment.insert("QT_QPA_PLATFORM", "wayland");
    environment.insert("WAYLAND_DISPLAY", "corvane");
    environment.insert("XDG_RUNTIME_DIR", m_runtime.path());
    QProcess program;
    program.setProcessChannelMode(QProcess::ForwardedChannels);
    program.setProcessEnvironment(environment);
    endsWithTheTest(program);
    program.start(PROGRAM, QStringList());
    QTRY_VERIFY_WITH_TIMEOUT(seesMainWindow(), bound);

    add(input);
    QTRY_COMPARE_WITH_TIMEOUT(sandbox.stored("dir/input"), sandbox.inputFolder(), bound);
    const QPoint folder = place("outputfolderEdit");
    const QPoint run = place("runButton");
    const QPoint close = seen().topRight() + closeButton;
    m_desktop->click(folder);
    m_desktop->type(sandbox.outputFolder());
    m_desktop->click(run);
    QTRY_COMPARE_WITH_TIMEOUT(tools::pages(sandbox.outputPath("a.pdf")), 3, bound);
    QVERIFY(program.state() == QProcess::Running);
    m_desktop->click(close);
    QTRY_COMPARE_WITH_TIMEOUT(program.state(), QProcess::NotRunning, bound);
    QCOMPARE(program.exitStatus(), QProcess::NormalExit);
    QCOMPARE(program.exitCode(), 0);
    QCOMPARE(sandbox.outputs(), QStringList({"a.pdf"}));
    QCOMPARE(contentOf(input), contentOf(SAMPLES_FOLDER "/text.pdf"));
}

QTEST_GUILESS_MAIN(TestWayland)
#include "tst_wayland.moc"
