#include "bench.h"

#include "support/defaultline.h"

#include <QDir>
#include <QProcess>

using namespace Qt::StringLiterals;

Bench::Bench()
    : environment(QProcessEnvironment::systemEnvironment())
{
    for (const QString &name : {u"in"_s, u"out"_s, u"home"_s, u"tmp"_s})
        QDir(m_folder.path()).mkdir(name);
    environment.insert(u"HOME"_s, home());
    environment.insert(u"TMPDIR"_s, temporary());
    environment.insert(u"DRIVER_GHOSTSCRIPT"_s, ghostscript());
    environment.insert(u"STANDIN_GHOSTSCRIPT"_s, ghostscript());
}

Bench::Bench(const QByteArray &original)
    : Bench()
{
    write(in(u"a.pdf"_s), original);
}

QString Bench::in(const QString &name) const
{
    return m_folder.filePath("in/"_L1 + name);
}

QString Bench::out(const QString &name) const
{
    return m_folder.filePath("out/"_L1 + name);
}

QString Bench::home(const QString &name) const
{
    return m_folder.filePath("home/"_L1 + name);
}

QString Bench::temporary() const
{
    return m_folder.filePath(u"tmp"_s);
}

QString Bench::mark() const
{
    return m_folder.filePath(u"pdfinfo.txt"_s);
}

QString Bench::corvgs()
{
    return QStringLiteral(CORVANE_CORVGS);
}

QString Bench::driver(Confinement confinement)
{
    return confinement == Confined ? QStringLiteral(CORVANE_DRIVER)
                                   : QStringLiteral(CORVANE_UNCONFINED_DRIVER);
}

QString Bench::ghostscript()
{
    return QStringLiteral(CORVANE_GHOSTSCRIPT);
}

QString Bench::standin()
{
    return QStringLiteral(CORVANE_STANDIN);
}

QStringList Bench::line(const QString &input, const QString &output,
                        const QStringList &moreSwitches, const QString &mark)
{
    const auto unchanged =
        QString::fromLatin1(defaultline::base) + defaultline::images + defaultline::fonts;
    QStringList words = unchanged.split(u' ', Qt::SkipEmptyParts) + moreSwitches;
    if (moreSwitches.filter(u"-dPermissions="_s).isEmpty())
        words << u"-dPermissions=-4"_s;
    words << "-sOutputFile="_L1 + output << u"-f"_s << input;
    if (!mark.isEmpty())
        words << mark;
    return words;
}

Run Bench::run(const QStringList &arguments, const QString &program,
               const QString &workingFolder) const
{
    return tools::run(program, arguments, environment, workingFolder);
}

void Bench::setStandin(const QString &wish)
{
    environment.insert(u"DRIVER_GHOSTSCRIPT"_s, standin());
    environment.insert(u"STANDIN"_s, wish);
}

Run Bench::runStandin(const QString &wish, Confinement confinement)
{
    setStandin(wish);
    return run(line(in(u"a.pdf"_s), out(u"a.pdf"_s)), driver(confinement));
}

Run Bench::runWithout(const char *what, const QStringList &arguments) const
{
    return run(QStringList{QString::fromLatin1(what), driver(Confined)} + arguments,
               QStringLiteral(CORVANE_WITHOUT));
}

std::unique_ptr<QProcess> Bench::start(const QStringList &arguments, const QString &program) const
{
    auto process = std::make_unique<QProcess>();
    process->setProcessEnvironment(environment);
    process->start(program, arguments);
    process->waitForStarted(bound);
    return process;
}

QStringList Bench::engines() const
{
    // Only an engine's folder for temporary files lies in ours.
    const QByteArray own = "TMPDIR=" + temporary().toUtf8() + "/corvgs-";
    QStringList processes = QDir(u"/proc"_s).entryList(QDir::Dirs);
    processes.removeIf([&own](const QString &process) {
        return !contentOf("/proc/"_L1 + process + "/environ"_L1).contains(own);
    });
    return processes;
}

QStringList lineOf(const Bench &bench, const QStringList &moreSwitches, const QString &mark)
{
    return Bench::line(bench.in(u"a.pdf"_s), bench.out(u"a.pdf"_s), moreSwitches, mark);
}
