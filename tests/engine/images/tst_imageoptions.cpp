// What a line's words ask of images, what Ghostscript is told of that, and what becomes of an
// image.
#include "engine/images/treatment.h"

#include <QStringList>
#include <QTest>

using namespace Qt::StringLiterals;
using engine::ImageFilter;
using engine::ImageKind;
using engine::Sampling;
using engine::Treatment;

namespace {

std::vector<std::string> split(const QString &line)
{
    std::vector<std::string> words;
    for (const QString &word : line.split(' ', Qt::SkipEmptyParts))
        words.push_back(word.toStdString());
    return words;
}

QString joined(const std::vector<std::string> &words)
{
    QStringList line;
    for (const std::string &word : words)
        line << QString::fromStdString(word);
    return line.join(' ');
}

engine::SurveyedImage image(ImageKind kind, double dpi)
{
    engine::SurveyedImage result;
    result.object = 1;
    result.dpi = dpi;
    result.facts.kind = kind;
    result.facts.width = 100;
    result.facts.height = 100;
    result.facts.bits = kind == ImageKind::Bilevel ? 1 : 8;
    result.facts.components = kind == ImageKind::Colour ? 3 : 1;
    result.facts.generic = true;
    result.facts.bytes = 1000;
    return result;
}

const QString colour = u"-dColorImageDownsampleType=/Bicubic -dColorImageResolution=150"_s;
const QString gray = u"-dGrayImageDownsampleType=/Average -dGrayImageResolution=100"_s;
const QString mono = u"-dMonoImageDownsampleType=/Bicubic -dMonoImageResolution=300"_s;

const QString resolution = u" -dMonoImageResolution=300"_s;
const QString flate = u" -dAutoFilterMonoImages=false -dMonoImageFilter=/FlateEncode"_s;
const QString grayToo = u" -dDownsampleGrayImages=true"_s;

void row(const char *name, const QString &line, const QString &words)
{
    QTest::newRow(name) << line << words;
}

} // namespace

class TestImageOptions : public QObject
{
    Q_OBJECT

private slots:
    void options_data();
    void options();
    void albumWords_data();
    void albumWords();
    void rewritingWords_data();
    void rewritingWords();
    void bilevelAlone();
    void treatment_data();
    void treatment();
    void kindsOfSamples();
    void leftAlone();
};

void TestImageOptions::options_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<bool>("any");
    QTest::addColumn<Sampling>("sampling"); // of gray images
    QTest::addColumn<double>("resolution");
    QTest::addColumn<ImageFilter>("filter");
    const auto row = [](const QString &line, bool any, Sampling sampling, double dpi,
                        ImageFilter filter = ImageFilter::Any) {
        QTest::newRow(qPrintable(line)) << line << any << sampling << dpi << filter;
    };
    row({}, false, Sampling::None, 0);
    row(u"-dPDFA -dEmbedAllFonts=true"_s, false, Sampling::None, 0);
    row(colour, true, Sampling::None, 0);
    row(gray, true, Sampling::Average, 100);
    row(gray + u" -dDownsampleGrayImages=false"_s, true, Sampling::None, 100);
    row(u"-dGrayImageDownsampleType=/Subsample -dGrayImageResolution=72.5"_s, true,
        Sampling::Subsample, 72.5);
    row(u"-dGrayImageDownsampleType=/Bicubic -dGrayImageResolution=96"_s, true, Sampling::Bicubic,
        96);
    row(u"-dGrayImageDownsampleType=/Bicubic -dGrayImageResolution=x"_s, true, Sampling::None, 0);
    row(u"-dGrayImageDownsampleType=/Bicubic -dGrayImageResolution=-5"_s, true, Sampling::None, -5);
    const QString filter = gray + u" -dAutoFilterGrayImages=%1 -dGrayImageFilter=/%2"_s;
    row(filter.arg(u"false"_s, u"DCTEncode"_s), true, Sampling::Average, 100, ImageFilter::Jpeg);
    row(filter.arg(u"false"_s, u"FlateEncode"_s), true, Sampling::Average, 100, ImageFilter::Flate);
    row(filter.arg(u"true"_s, u"FlateEncode"_s), true, Sampling::Average, 100, ImageFilter::Any);
}

void TestImageOptions::options()
{
    QFETCH(QString, line);
    const auto options = engine::imageOptionsOf(split(line));
    QTEST(options.any, "any");
    QTEST(options.gray.sampling, "sampling");
    QTEST(options.gray.resolution, "resolution");
    QTEST(options.gray.filter, "filter");
}

void TestImageOptions::albumWords_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("words");
    const QString own = u" -dDownsampleMonoImages=false"_s + flate;
    const QString always = u" -dMaxInlineImageSize=0 -dAutoRotatePages=/None"_s;
    const QString subsample = u" -dMonoImageDownsampleType=/Subsample -dMonoImageResolution=300"_s;
    const QString base = u"-q -dSAFER "_s;
    row("gray", base + gray, base + gray + own + grayToo + always);
    row("gray, closed", base + u"-dDownsampleGrayImages=false"_s,
        base + u"-dDownsampleGrayImages=false"_s + own + always);
    row("bilevel", base + mono + flate, (base + resolution + own + always).simplified());
    row("bilevel, Subsample", base + colour + subsample + flate,
        base + colour + subsample + flate + always);
    for (const QString &filter : {u"/CCITTFaxEncode"_s, u"/RunLengthEncode"_s}) {
        const QString line =
            base + mono + u" -dAutoFilterMonoImages=false -dMonoImageFilter="_s + filter;
        row(qPrintable(filter), line, line + always);
    }
    for (const QString &coding : {u" -dAutoFilterMonoImages=false -dMonoImageFilter=/JBIG2Encode"_s,
                                  u" -dAutoFilterMonoImages=true"_s})
        row(qPrintable(coding), base + colour + subsample + coding,
            base + colour + resolution + own + always);
}

void TestImageOptions::albumWords()
{
    QFETCH(QString, line);
    QFETCH(QString, words);
    QCOMPARE(joined(engine::albumWords(split(line))), words);
}

void TestImageOptions::rewritingWords_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("words");
    const QString once = flate + u" -dDownsampleMonoImages=false"_s;
    const QString base = u"-q -dPDFA "_s;
    row("no images page", base.trimmed(), base.trimmed());
    row("gray", base + gray, base + gray + once + grayToo);
    row("bilevel", base + u"-dDownsampleMonoImages=true "_s + mono + flate,
        (base + resolution + once).simplified());
    row("bilevel, closed", base + u"-dDownsampleMonoImages=false "_s + mono + flate,
        (base + resolution + once).simplified());
    const QString fax = u" -dAutoFilterMonoImages=false -dMonoImageFilter=/CCITTFaxEncode"_s;
    row("fax", base + u"-dDownsampleMonoImages=true "_s + mono + fax,
        base + mono + fax + u" -dDownsampleMonoImages=false"_s);
}

void TestImageOptions::rewritingWords()
{
    QFETCH(QString, line);
    QFETCH(QString, words);
    QCOMPARE(joined(engine::rewritingWords(split(line))), words);
}

// Not even what would be recoded without being downsampled.
void TestImageOptions::bilevelAlone()
{
    const auto options =
        engine::bilevelAlone(engine::imageOptionsOf(split(colour + ' ' + gray + ' ' + mono)));
    for (const double dpi : {72, 1200}) {
        for (const ImageKind kind : {ImageKind::Colour, ImageKind::Gray, ImageKind::SoftMask})
            QCOMPARE(engine::treatmentOf(image(kind, dpi), options), Treatment::None);
        QCOMPARE(engine::treatmentOf(image(ImageKind::Bilevel, dpi), options), Treatment::Here);
    }
}

void TestImageOptions::treatment_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<ImageKind>("kind");
    QTest::addColumn<double>("dpi");
    QTest::addColumn<Treatment>("treatment");
    QTest::addColumn<Treatment>("ofCoded"); // JPEG, or fax
    const auto row = [](const char *name, const QString &line, ImageKind kind, double dpi,
                        Treatment treatment, Treatment ofCoded) {
        QTest::newRow(name) << line << kind << dpi << treatment << ofCoded;
    };
    const auto none = Treatment::None;
    const auto album = Treatment::Ghostscript;
    const QString jpeg = u" -dAutoFilterColorImages=false -dColorImageFilter=/DCTEncode"
                         " -dAutoFilterGrayImages=false -dGrayImageFilter=/DCTEncode"_s;
    QString zip = jpeg;
    zip.replace(u"DCT"_s, u"Flate"_s);
    row("colour", colour + jpeg, ImageKind::Colour, 225, album, album);
    row("colour, few", colour + jpeg, ImageKind::Colour, 224, album, none);
    row("colour, ZIP", colour + zip, ImageKind::Colour, 225, album, album);
    row("colour, few, ZIP", colour + zip, ImageKind::Colour, 224, none, none);
    row("colour, few, Auto", colour, ImageKind::Colour, 224, album, none);
    row("gray", gray + zip, ImageKind::Gray, 150, album, album);
    row("gray, few", gray + zip, ImageKind::Gray, 149, none, none);
    row("gray, as colour says", colour + zip, ImageKind::Gray, 900, none, none);
    row("soft mask", gray, ImageKind::SoftMask, 150, Treatment::Here, none);
    row("soft mask, few", gray, ImageKind::SoftMask, 149, none, none);
    const QString deflated =
        mono + u" -dAutoFilterMonoImages=false -dMonoImageFilter=/FlateEncode"_s;
    row("bilevel", deflated, ImageKind::Bilevel, 450, Treatment::Here, Treatment::Pixels);
    row("bilevel, few", deflated, ImageKind::Bilevel, 449, none, none);
    row("bilevel, Auto", mono, ImageKind::Bilevel, 10, Treatment::Here, Treatment::Pixels);
    QString fax = deflated;
    row("bilevel, fax", fax.replace(u"Flate"_s, u"CCITTFax"_s), ImageKind::Bilevel, 10, album,
        album);
    row("no images page", u"-dPDFA"_s, ImageKind::Bilevel, 900, none, none);
}

void TestImageOptions::treatment()
{
    QFETCH(QString, line);
    QFETCH(ImageKind, kind);
    QFETCH(double, dpi);
    const auto options = engine::imageOptionsOf(split(line));
    auto surveyed = image(kind, dpi);
    QTEST(engine::treatmentOf(surveyed, options), "treatment");
    surveyed.facts.generic = false;
    surveyed.facts.jpeg = kind != ImageKind::Bilevel;
    QTEST(engine::treatmentOf(surveyed, options), "ofCoded");
}

// Samples that are not whole bytes, or stand for others, lose too much for nothing by a recoding.
void TestImageOptions::kindsOfSamples()
{
    const auto options = engine::imageOptionsOf(split(colour + ' ' + gray));
    for (const int bits : {1, 2, 4, 16}) {
        auto surveyed = image(ImageKind::Colour, 100);
        surveyed.facts.bits = bits;
        QCOMPARE(engine::treatmentOf(surveyed, options), Treatment::None);
        surveyed.dpi = 300;
        QCOMPARE(engine::treatmentOf(surveyed, options), Treatment::Ghostscript);
        surveyed.facts.kind = ImageKind::SoftMask;
        QCOMPARE(engine::treatmentOf(surveyed, options), Treatment::None);
    }
    auto indexed = image(ImageKind::Colour, 100);
    indexed.facts.indexed = true;
    QCOMPARE(engine::treatmentOf(indexed, options), Treatment::None);
    indexed.dpi = 300;
    QCOMPARE(engine::treatmentOf(indexed, options), Treatment::Ghostscript);
}

void TestImageOptions::leftAlone()
{
    const auto options = engine::imageOptionsOf(split(colour));
    auto surveyed = image(ImageKind::Colour, 300);
    surveyed.facts.bytes = 199;
    QCOMPARE(engine::treatmentOf(surveyed, options), Treatment::None);
    surveyed.facts.bytes = 200;
    QCOMPARE(engine::treatmentOf(surveyed, options), Treatment::Ghostscript);
    surveyed.facts.reason = engine::LeftAlone::Unclear;
    QCOMPARE(engine::treatmentOf(surveyed, options), Treatment::None);
}

QTEST_GUILESS_MAIN(TestImageOptions)
#include "tst_imageoptions.moc"
