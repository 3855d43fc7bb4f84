// What the engine is given: its switches, its names, the mark file.

#include "core/engineswitches.h"
#include "support/defaultline.h"
#include "windowtest.h"

#include <QFile>
#include <QProcess>
#include <QSettings>
#include <QTest>

class TestBatchCommand : public WindowTest
{
    Q_OBJECT

private slots:
    void engineSwitches_data();
    void engineSwitches();
    void commandLine();
    void markFileComesLast();
    void settingsAreReadForEveryFile();
    void doubleQuoteInTheName();
    void doubleQuotesThatLeaveAnotherPath();
    void hardNames_data();
    void hardNames();
};

void TestBatchCommand::engineSwitches_data()
{
    QTest::addColumn<QMap<QString, QString>>("stored");
    QTest::addColumn<QString>("image");
    QTest::addColumn<QString>("fonts");
    QTest::addColumn<QString>("security");
    QTest::addColumn<QString>("pdfa");

    using Stored = QMap<QString, QString>;
    const QString image =
        " -dDownsampleColorImages=true -dColorImageDownsampleType=/Bicubic"
        " -dColorImageResolution=150 -dAutoFilterColorImages=false -dColorImageFilter=/DCTEncode"
        " -dGrayImageDownsampleType=/Bicubic -dGrayImageResolution=150"
        " -dAutoFilterGrayImages=false -dGrayImageFilter=/DCTEncode -dDownsampleMonoImages=true"
        " -dMonoImageDownsampleType=/Bicubic -dMonoImageResolution=300"
        " -dAutoFilterMonoImages=false -dMonoImageFilter=/FlateEncode";
    const QString fonts = " -dEmbedAllFonts=true -dCompressFonts=true -dSubsetFonts=true";
    QTest::newRow("nothing stored") << Stored() << image << fonts << " -dPermissions=-4"
                                    << "";
    QTest::newRow("everything off") << Stored{{"Image/Image", "No"},
                                              {"Fonts/Fonts", "No"},
                                              {"Secur/Secur", "No"},
                                              {"Annot/Annot", "No"},
                                              {"Annot/PDFA", "Ok"}}
                                    << ""
                                    << ""
                                    << ""
                                    << "";
    QTest::newRow("passwords and PDF/A")
        << Stored{{"Secur/UsrPwd", "u v"},
                  {"Secur/OwrPwd", "o"},
                  {"Secur/AllowCop", "No"},
                  {"Secur/AllowAdd", "No"},
                  {"Annot/PDFA", "Ok"}}
        << image << fonts << " -sUserPassword=u v -sOwnerPassword=o -dPermissions=-52"
        << " -dPDFA";
}

void TestBatchCommand::engineSwitches()
{
    using Stored = QMap<QString, QString>;
    QFETCH(Stored, stored);
    QFETCH(QString, image);
    QFETCH(QString, fonts);
    QFETCH(QString, security);
    QFETCH(QString, pdfa);
    for (const auto &[key, value] : stored.asKeyValueRange())
        m_sandbox->store(key, value);
    QCOMPARE(m_window->getOption(), defaultline::base + image + fonts + security + pdfa);
    QCOMPARE(m_window->getOption(), core::engineSwitches(core::engineValues(QSettings(
                                        m_sandbox->settingsFile(), QSettings::IniFormat))));
    QCOMPARE(m_window->getImageOption(), image);
    QCOMPARE(m_window->getSecurityOtion(), security);
}

void TestBatchCommand::commandLine()
{
    list({"report.final.old.pdf"});
    m_user->runToTheEnd();
    const QStringList switches = QProcess::splitCommand(m_window->getOption());
    const QStringList expected =
        switches + QStringList({"-sOutputFile=" + m_sandbox->outputPath("report.pdf"), "-f",
                                m_sandbox->inputFolder() + "/report.final.old.pdf"});
    QCOMPARE(switches.size(), qsizetype(7 + 18));
    QCOMPARE(m_engine->starts(), QList<QStringList>({expected}));
}

void TestBatchCommand::markFileComesLast()
{
    QCOMPARE(m_window->getAnnooption(), QString());
    writeZeros(m_sandbox->markFile(), 1);
    QCOMPARE(m_window->getAnnooption(), " \"" + m_sandbox->markFile() + '"');
    list({"a.pdf"});
    m_user->runToTheEnd();
    QCOMPARE(m_engine->starts().constFirst().last(), m_sandbox->markFile());
}

void TestBatchCommand::settingsAreReadForEveryFile()
{
    m_engine->behave({.gate = true});
    list({"a.pdf", "b.pdf"});
    startFirst();
    m_sandbox->store("Image/ColorRes", "72");
    m_sandbox->store("Secur/Secur", "No");
    letThrough(2);
    letLastThrough();
    const QList<QStringList> starts = m_engine->starts();
    QVERIFY(starts[0].contains("-dColorImageResolution=150"));
    QVERIFY(starts[0].contains("-dPermissions=-4"));
    QVERIFY(starts[1].contains("-dColorImageResolution=72"));
    QVERIFY(!starts[1].contains("-dPermissions=-4"));
}

// The line is bent: the engine looks for another file and names another output.
void TestBatchCommand::doubleQuoteInTheName()
{
    list({"a \"b\" c.pdf", "d.pdf"});
    m_user->runToTheEnd();
    QCOMPARE(m_user->verdicts(), QStringList({failed, succeed}));
    const QStringList first = m_engine->starts().constFirst();
    QVERIFY(!first.contains(m_sandbox->inputFolder() + "/a \"b\" c.pdf"));
    QVERIFY(QFile::exists(m_sandbox->inputFolder() + "/a \"b\" c.pdf"));
}

// The quotes are lost on the way, and what is left is a path of its own.
void TestBatchCommand::doubleQuotesThatLeaveAnotherPath()
{
    const QString other = m_sandbox->addInput("a.xy.pdf");
    list({"a.x\"\"y.pdf"});
    m_user->runToTheEnd();
    QCOMPARE(m_engine->starts().constFirst().last(), other);
    QCOMPARE(m_sandbox->outputs(), QStringList({"a.pdf"}));
    QVERIFY(QFile::exists(other));
}

void TestBatchCommand::hardNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("output");

    const auto row = [](const char *what, const QString &base) {
        QTest::newRow(what) << base + ".pdf" << base + ".pdf";
    };
    row("blanks", " two  blanks ");
    row("shell", "$HOME;&|<>()`id`*?~#!");
    row("single quotes", "it's");
    row("leading dash", "-dNOSAFER");
    row("per cent", "50% off %d %%");
    row("non-ASCII", "Zoë – 報告書 №7 🔒");
    row("brackets", "[x] {y} \\z");
    row("line break", "a\nb");
    row("longest", QString(246, 'x'));
    QTest::newRow("several dots") << "a.b.c.pdf"
                                  << "a.pdf";
    QTest::newRow("hidden") << ".hidden.pdf"
                            << ".pdf";
    QTest::newRow("upper case") << "A.PDF"
                                << "A.pdf";
}

void TestBatchCommand::hardNames()
{
    QFETCH(QString, name);
    QFETCH(QString, output);
    list({name});
    m_user->runToTheEnd();
    QCOMPARE(m_user->verdict(0), QString(succeed));
    const QStringList arguments = m_engine->starts().constFirst();
    QCOMPARE(arguments.last(), m_sandbox->inputFolder() + '/' + name);
    QCOMPARE(arguments[arguments.size() - 3], "-sOutputFile=" + m_sandbox->outputPath(output));
    QCOMPARE(m_sandbox->outputs(), QStringList({output}));
}

QTEST_MAIN(TestBatchCommand)
#include "tst_batchcommand.moc"
