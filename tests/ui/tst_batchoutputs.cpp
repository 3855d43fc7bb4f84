// Which name a copy gets, and that nothing is ever replaced.

#include "support/bound.h"
#include "windowtest.h"

#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QTest>

class TestBatchOutputs : public WindowTest
{
    Q_OBJECT

private slots:
    void outputBesideTheInput();
    void sameBaseNames();
    void sameBaseNamesSideBySide();
    void sameOutputByAnotherSpelling();
    void nameIsFreeAgainIfNothingCame();
    void existingFilesStay();
    void danglingLinkIsNotWrittenThrough();
    void outputFolderIsTheCurrentOne();
};

void TestBatchOutputs::outputBesideTheInput()
{
    m_user->folderEdit()->setText(m_sandbox->inputFolder());
    list({"a.pdf"});
    const QByteArray before = contentOf(m_sandbox->inputFolder() + "/a.pdf");
    m_user->runToTheEnd();
    QVERIFY(QFile::exists(m_sandbox->inputFolder() + "/a0.pdf"));
    m_user->runToTheEnd();
    QVERIFY(QFile::exists(m_sandbox->inputFolder() + "/a00.pdf"));
    QCOMPARE(contentOf(m_sandbox->inputFolder() + "/a.pdf"), before);
}

void TestBatchOutputs::sameBaseNames()
{
    list({"x.pdf", "sub/x.pdf", "x.old.pdf"});
    m_user->runToTheEnd();
    QCOMPARE(m_user->verdicts(), QStringList({succeed, succeed, succeed}));
    QCOMPARE(m_sandbox->outputs(), QStringList({"x.pdf", "x0.pdf", "x00.pdf"}));
}

// The second engine starts before the first has made its output.
void TestBatchOutputs::sameBaseNamesSideBySide()
{
    m_engine->behave({.bytes = -1, .gate = true});
    list({"x.pdf", "sub/x.pdf"});
    startFirst();
    m_user->run();
    awaitStarts(2);
    const QList<QStringList> starts = m_engine->starts();
    QVERIFY(starts[0].contains("-sOutputFile=" + m_sandbox->outputPath("x.pdf")));
    QVERIFY(starts[1].contains("-sOutputFile=" + m_sandbox->outputPath("x0.pdf")));
    m_window.reset();
    m_engine->open();
    m_engine->open();
    QTRY_COMPARE_WITH_TIMEOUT(m_engine->endCount(), 2, bound);
}

// The folder's text may change between two files; the place it names is what counts.
void TestBatchOutputs::sameOutputByAnotherSpelling()
{
    m_engine->behave({.bytes = -1, .gate = true});
    list({"x.pdf", "sub/x.pdf"});
    startFirst();
    m_user->folderEdit()->setText(m_sandbox->outputFolder() + '/');
    m_user->run();
    awaitStarts(2);
    QVERIFY(
        m_engine->starts()[1].contains("-sOutputFile=" + m_sandbox->outputFolder() + "//x0.pdf"));
    m_window.reset();
    m_engine->open();
    m_engine->open();
    QTRY_COMPARE_WITH_TIMEOUT(m_engine->endCount(), 2, bound);
}

void TestBatchOutputs::nameIsFreeAgainIfNothingCame()
{
    m_engine->behave({.bytes = -1});
    list({"x.pdf", "sub/x.pdf"});
    m_user->runToTheEnd();
    QCOMPARE(m_user->verdicts(), QStringList({failed, failed}));
    QVERIFY(m_engine->starts()[1].contains("-sOutputFile=" + m_sandbox->outputPath("x.pdf")));
}

void TestBatchOutputs::existingFilesStay()
{
    writeZeros(m_sandbox->outputPath("a.pdf"), 123);
    QVERIFY(QDir(m_sandbox->outputFolder()).mkdir("a0.pdf"));
    list({"a.pdf"});
    m_user->runToTheEnd();
    QCOMPARE(QFileInfo(m_sandbox->outputPath("a.pdf")).size(), 123);
    QVERIFY(QFileInfo(m_sandbox->outputPath("a0.pdf")).isDir());
    QVERIFY(QFile::exists(m_sandbox->outputPath("a00.pdf")));
    QCOMPARE(m_user->verdict(0), QString(succeed));
}

void TestBatchOutputs::danglingLinkIsNotWrittenThrough()
{
    const QString elsewhere = m_sandbox->inputFolder() + "/elsewhere";
    QVERIFY(QFile::link(elsewhere, m_sandbox->outputPath("a.pdf")));
    list({"a.pdf"});
    m_user->runToTheEnd();
    QVERIFY(!QFile::exists(elsewhere));
    QVERIFY(QFile::exists(m_sandbox->outputPath("a0.pdf")));
}

void TestBatchOutputs::outputFolderIsTheCurrentOne()
{
    m_engine->behave({.gate = true});
    list({"a.pdf", "b.pdf"});
    startFirst();
    m_user->folderEdit()->setText(m_sandbox->inputFolder());
    letThrough(2);
    letLastThrough();
    QCOMPARE(m_user->verdicts(), QStringList({succeed, succeed}));
    QCOMPARE(m_sandbox->outputs(), QStringList({"a.pdf"}));
    QVERIFY(QFile::exists(m_sandbox->inputFolder() + "/b0.pdf"));
}

QTEST_MAIN(TestBatchOutputs)
#include "tst_batchoutputs.moc"
