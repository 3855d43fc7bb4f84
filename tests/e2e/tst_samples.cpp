// The main job with the real engine: what comes out is looked at with other people's tools.

#include "src/process.h"
#include "support/files.h"
#include "support/pdftools.h"
#include "support/sandbox.h"
#include "support/tools.h"
#include "support/windowuser.h"

#include <QFileInfo>
#include <QTest>

#include <memory>

namespace {

QString text(const QString &pdf)
{
    return QString::fromUtf8(tools::outputOf("pdftotext", {"-layout", pdf, "-"})).simplified();
}

// "3 DCTDecode 300" for each image, in the order of the pages: components, compression, dpi.
QStringList images(const QString &pdf)
{
    QStringList all;
    for (const tools::Image &image : tools::images(pdf))
        all.append(QString("%1 %2 %3").arg(image.components).arg(image.filter).arg(image.dpi));
    return all;
}

} // namespace

class TestSamples : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void samples();
    void hardNames_data();
    void hardNames();
    void doubleQuoteHarmsNobody();
    void notAPdf_data();
    void notAPdf();

private:
    QStringList compress(const QStringList &paths) const
    {
        return WindowUser(*m_window).compress(paths, m_sandbox->outputFolder());
    }
    QString copySample(const QString &sample, const QString &name) const;

    std::unique_ptr<Sandbox> m_sandbox;
    std::unique_ptr<Process> m_window;
};

void TestSamples::init()
{
    m_sandbox = std::make_unique<Sandbox>();
    m_window = std::make_unique<Process>();
    m_window->show();
}

void TestSamples::cleanup()
{
    m_window.reset();
    m_sandbox.reset();
}

QString TestSamples::copySample(const QString &sample, const QString &name) const
{
    const QString path = m_sandbox->inputFolder() + '/' + name;
    if (!QFile::copy(QString(SAMPLES_FOLDER "/") + sample, path))
        qFatal("cannot copy to %s", qPrintable(path));
    return path;
}

void TestSamples::samples()
{
    const QMap<QString, QStringList> expectedImages = {
        {"bilevel-scan", {"1 FlateDecode 300"}},
        {"colour-scan", {"3 DCTDecode 150"}},
        // Gray keeps its resolution unless the engine says other.
        {"gray-scan", {"1 DCTDecode 200"}},
        {"mixed", {"3 DCTDecode 150", "1 DCTDecode 200"}},
        {"text", {}},
    };
    QStringList inputs;
    QMap<QString, QByteArray> before;
    const QStringList names = expectedImages.keys();
    for (const QString &name : names) {
        inputs.append(copySample(name + ".pdf", name + ".pdf"));
        before.insert(inputs.last(), contentOf(inputs.last()));
    }
    QCOMPARE(compress(inputs), QStringList(inputs.size(), succeed));

    for (const QString &input : inputs) {
        const QString name = QFileInfo(input).baseName();
        const QString output = m_sandbox->outputPath(name + ".pdf");
        QCOMPARE(contentOf(input), before.value(input));
        QVERIFY2(QFileInfo(output).size() < QFileInfo(input).size(), qPrintable(name));
        QCOMPARE(tools::pages(output), tools::pages(input));
        QCOMPARE(images(output), expectedImages.value(name));
        QCOMPARE(text(output), text(input));
    }
    QCOMPARE(m_sandbox->outputs().size(), expectedImages.size());
}

void TestSamples::hardNames_data()
{
    QTest::addColumn<QString>("name");

    QTest::newRow("blanks") << " two  blanks .pdf";
    QTest::newRow("several dots") << "a.b.c.pdf";
    QTest::newRow("non-ASCII") << "Zoë – 報告書 №7 🔒.pdf";
    QTest::newRow("shell") << "$HOME;&|<>()`id`*?~#!.pdf";
    QTest::newRow("single quote") << "it's.pdf";
    QTest::newRow("leading dash") << "-dNOSAFER.pdf";
    QTest::newRow("leading at sign") << "@args.pdf";
    QTest::newRow("leading bar") << "|cat.pdf";
    QTest::newRow("line break") << "a\nb.pdf";
    QTest::newRow("per cent") << "50% off.pdf";
    QTest::newRow("page template") << "page %d %03d %%.pdf";
    QTest::newRow("device name") << "%stdout.pdf";
    QTest::newRow("backslash, brackets") << "\\[x] (y) {z}.pdf";
    QTest::newRow("longest") << QString(246, 'x') + ".pdf";
}

void TestSamples::hardNames()
{
    QFETCH(QString, name);
    const QString input = copySample("text.pdf", name);
    QCOMPARE(compress({input}), QStringList(succeed));
    const QString output = QFileInfo(name).baseName() + ".pdf";
    QCOMPARE(m_sandbox->outputs(), QStringList({output}));
    QCOMPARE(text(m_sandbox->outputPath(output)), text(input));
}

// The line that such a name bends names an output that nobody checked.
void TestSamples::doubleQuoteHarmsNobody()
{
    const QString bent = m_sandbox->outputPath("a b c.pdf");
    writeZeros(bent, 6001);
    const QByteArray before = contentOf(bent);
    const QString input = copySample("text.pdf", "a \"b\" c.pdf");
    QCOMPARE(compress({input}), QStringList(failed));
    QCOMPARE(contentOf(bent), before);
    QCOMPARE(m_sandbox->outputs(), QStringList({"a b c.pdf"}));
    QCOMPARE(contentOf(input), contentOf(SAMPLES_FOLDER "/text.pdf"));
}

void TestSamples::notAPdf_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("text") << QByteArray("Dear Sir or Madam,\n").repeated(500);
    QTest::newRow("truncated") << contentOf(SAMPLES_FOLDER "/colour-scan.pdf").left(3000);
}

void TestSamples::notAPdf()
{
    QFETCH(QByteArray, content);
    const QString bad = m_sandbox->inputFolder() + "/bad.pdf";
    write(bad, content);
    QCOMPARE(compress({bad, copySample("text.pdf", "good.pdf")}), QStringList({failed, succeed}));
    QCOMPARE(contentOf(bad), content);
}

QTEST_MAIN(TestSamples)
#include "tst_samples.moc"
