#include "core/commandline.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class TestCommandLine : public QObject
{
    Q_OBJECT

private slots:
    void joins();
    void survivesTheSplitter();
    void markArgumentFollowsTheFile();
};

void TestCommandLine::joins()
{
    QCOMPARE(core::commandLine({.engine = u"/opt/my app/corvgs"_s,
                                .switches = u" -q -dSAFER"_s,
                                .output = u"/out/a b.pdf"_s,
                                .input = u"/in/a b.pdf"_s,
                                .markArgument = u" \"/tmp/pdfinfo.txt\""_s}),
             u"\"/opt/my app/corvgs\" -q -dSAFER -sOutputFile=\"/out/a b.pdf\" -f \"/in/a b.pdf\""
             " \"/tmp/pdfinfo.txt\""_s);
}

void TestCommandLine::survivesTheSplitter()
{
    const QString line = core::commandLine({.engine = u"/opt/my app/corvgs"_s,
                                            .switches = u" -q"_s,
                                            .output = u"/out/-50% $HOME;&'.pdf"_s,
                                            .input = u"/in/-50% $HOME;&'.x.pdf"_s,
                                            .markArgument = {}});
    const QStringList expected = {u"/opt/my app/corvgs"_s, u"-q"_s,
                                  u"-sOutputFile=/out/-50% $HOME;&'.pdf"_s, u"-f"_s,
                                  u"/in/-50% $HOME;&'.x.pdf"_s};
    QCOMPARE(QProcess::splitCommand(line), expected);
}

void TestCommandLine::markArgumentFollowsTheFile()
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(u"pdfinfo.txt"_s));
    QCOMPARE(core::markArgument(file.fileName()), QString());
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(core::markArgument(file.fileName()), u" \""_s + file.fileName() + u'"');
}

QTEST_GUILESS_MAIN(TestCommandLine)
#include "tst_commandline.moc"
