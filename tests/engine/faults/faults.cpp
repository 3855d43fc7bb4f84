#include "faults.h"

#include "support/machine.h"
#include "support/pdftools.h"
#include "support/tools.h"

#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

int embeddedFonts(const QString &pdf)
{
    const QList<tools::Font> fonts = tools::fonts(pdf);
    return int(std::count_if(fonts.begin(), fonts.end(),
                             [](const tools::Font &font) { return font.embedded; }));
}

} // namespace

void verifyNothingLeft(const Bench &bench)
{
    QTRY_COMPARE_WITH_TIMEOUT(bench.engineCount(), 0, bound);
    QCOMPARE(namesIn(bench.out()), QStringList());
    QCOMPARE(namesIn(bench.temporary()), QStringList());
}

void verifyFailure(const Run &run, const QByteArray &reason, int status)
{
    const QByteArray ours = run.errors.mid(run.errors.indexOf("corvgs: "));
    QVERIFY2(ours.contains(reason), run.errors);
    QCOMPARE(ours.count('\n'), 1);
    QCOMPARE(run.status, status);
}

void verifyWhole(const QString &copy, const QString &original)
{
    const tools::Result check = tools::run(u"qpdf"_s, {u"--check"_s, copy});
    QVERIFY2(check.status == 0, check.output + check.errors);
    QCOMPARE(tools::pages(copy), tools::pages(original));
    QCOMPARE(embeddedFonts(copy), embeddedFonts(original));
}

Run runOnTinyDisk(const Bench &bench, const QString &options, const QString &tiny,
                  const QString &program)
{
    const QStringList listing{
        u"sh"_s, u"-c"_s,
        u"disk=$1; shift; \"$0\" \"$@\"; status=$?; ls -A \"$disk\"; exit $status"_s, program,
        tiny};
    return bench.run(machine::onTinyDisk(tiny, options, listing + lineOf(bench)), u"unshare"_s);
}
