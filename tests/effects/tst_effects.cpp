#include "originals.h"
#include "src/process.h"
#include "support/optionswindow.h"
#include "support/pdftools.h"
#include "support/sandbox.h"
#include "support/windowuser.h"

#include <QProgressBar>
#include <QTest>

#include <memory>

using originals::colourImage;
using originals::grayImage;
using originals::imageDpi;
using originals::monoImage;

namespace {

using Options = QMap<QString, QString>;

// The spread of the gray values of an image.
double variance(const QImage &image)
{
    double sum = 0;
    double squares = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const int value = qGreen(image.pixel(x, y));
            sum += value;
            squares += value * value;
        }
    }
    const double count = image.width() * image.height();
    return squares / count - (sum / count) * (sum / count);
}

} // namespace

class TestEffects : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void resolution_data();
    void resolution();
    void downsampleType_data();
    void downsampleType();
    void downsampleTypesDiffer();
    void compression_data();
    void compression();
    void refusedOptionFailsAndTheBatchGoesOn_data();
    void refusedOptionFailsAndTheBatchGoesOn();

    void fonts_data();
    void fonts();
    void uncompressedFontsAreLarger();

    void noPasswordNoEncryption();
    void userPassword();
    void ownerPassword();
    void bothPasswords();
    void permissions_data();
    void permissions();

    void description();
    void descriptionPageOff();
    void unbalancedParenthesis();
    void pdfa();

private:
    // Sets the options in the dialog and compresses one original; the copy's path is m_copy.
    QString copyWith(const Options &options, const QString &original);
    QString images() const { return m_originals.filePath("images.pdf"); }
    QString shades() const { return m_originals.filePath("shades.pdf"); }
    QString text() const { return m_originals.filePath("text.pdf"); }

    QTemporaryDir m_originals;
    std::unique_ptr<Sandbox> m_sandbox;
    QString m_copy;
};

void TestEffects::initTestCase()
{
    originals::writeImages(images(), originals::Motif::noise);
    originals::writeImages(shades(), originals::Motif::shades);
    QVERIFY(originals::writeText(text()));
    // What the copies are compared with.
    QCOMPARE(tools::images(images()).size(), qsizetype(3));
    for (const tools::Image &image : tools::images(images()))
        QCOMPARE(image.dpi, imageDpi);
    QCOMPARE(tools::fonts(text()).size(), qsizetype(2));
    for (const tools::Font &font : tools::fonts(text()))
        QVERIFY(font.embedded && !font.subset);
}

void TestEffects::init()
{
    m_sandbox.reset();
    m_sandbox = std::make_unique<Sandbox>();
}

void TestEffects::cleanup()
{
    m_sandbox.reset();
}

QString TestEffects::copyWith(const Options &options, const QString &original)
{
    Process program;
    applyOptions(program, options);
    m_copy = m_sandbox->outputPath(QFileInfo(original).fileName());
    return WindowUser(program).compress({original}, m_sandbox->outputFolder()).constFirst();
}

// Images

void TestEffects::resolution_data()
{
    QTest::addColumn<QString>("field");
    QTest::addColumn<int>("place");
    QTest::addColumn<int>("dpi");

    QTest::newRow("colour") << "lineEdit_clr_res" << int(colourImage) << 72;
    // The switches never turn the downsampling of gray images on; the engine's own default does.
    QTest::newRow("gray") << "lineEdit__gry_res" << int(grayImage) << 72;
    QTest::newRow("mono") << "lineEdit_mno_res" << int(monoImage) << 72;
}

void TestEffects::resolution()
{
    QFETCH(QString, field);
    QFETCH(int, place);
    QCOMPARE(copyWith({{"lineEdit_clr_res", "288"},
                       {"lineEdit__gry_res", "288"},
                       {"lineEdit_mno_res", "288"},
                       {field, "72"}},
                      shades()),
             QString(succeed));
    const QList<tools::Image> copied = tools::images(m_copy);
    QCOMPARE(copied.size(), qsizetype(3));
    for (int other = 0; other < copied.size(); ++other) {
        if (other != place)
            QCOMPARE(copied[other].dpi, imageDpi);
    }
    QTEST(copied[place].dpi, "dpi");
}

void TestEffects::downsampleType_data()
{
    QTest::addColumn<QString>("typeBox");
    QTest::addColumn<QString>("key");
    QTest::addColumn<int>("place");
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("dpi");

    for (int type = 0; type < 4; ++type) {
        const int dpi = type == 0 ? imageDpi : 72;
        QTest::addRow("colour %d", type) << "comboBox_clr_down_type"
                                         << "Image/ColorRes" << int(colourImage) << type << dpi;
        QTest::addRow("gray %d", type) << "comboBox_gry_down_type"
                                       << "Image/GrayRes" << int(grayImage) << type << dpi;
        QTest::addRow("mono %d", type) << "comboBox__mno_down_type"
                                       << "Image/MonoRes" << int(monoImage) << type << dpi;
    }
}

void TestEffects::downsampleType()
{
    QFETCH(QString, typeBox);
    QFETCH(QString, key);
    QFETCH(int, place);
    QFETCH(int, type);
    m_sandbox->store(key, "72"); // not typed: "Closed" hides the field
    QCOMPARE(copyWith({{typeBox, QString::number(type)}}, shades()), QString(succeed));
    const QList<tools::Image> copied = tools::images(m_copy);
    QCOMPARE(copied.size(), qsizetype(3));
    QTEST(copied[place].dpi, "dpi");
}

// Of sixteen pixels of noise, subsampling keeps one, averaging the mean of all, and the bicubic
// filter a weighted mean.
void TestEffects::downsampleTypesDiffer()
{
    QMap<QString, double> spread;
    for (const QString &type : {QString("1"), QString("2"), QString("3")}) {
        init();
        QCOMPARE(copyWith({{"comboBox_clr_down_type", type},
                           {"lineEdit_clr_res", "72"},
                           {"comboBox_clr_compress", "2"}},
                          images()),
                 QString(succeed));
        spread[type] = variance(tools::pixels(m_copy, colourImage));
    }
    const double original = variance(tools::pixels(images(), colourImage));
    QVERIFY(qAbs(spread["1"] / original - 1) < 0.1);
    QVERIFY(qAbs(spread["2"] / original * 16 - 1) < 0.1);
    QVERIFY(spread["3"] / spread["2"] < 0.8);
}

void TestEffects::compression_data()
{
    QTest::addColumn<QString>("box");
    QTest::addColumn<int>("mode");
    QTest::addColumn<int>("place");
    QTest::addColumn<QString>("ofNoise");
    QTest::addColumn<QString>("ofShades");

    const auto row = [](const char *kind, const char *box, int mode, int place, const char *ofNoise,
                        const char *ofShades) {
        QTest::addRow("%s %d", kind, mode) << box << mode << place << ofNoise << ofShades;
    };
    for (const auto &[kind, box, place] :
         {std::tuple("colour", "comboBox_clr_compress", colourImage),
          {"gray", "comboBox_gry_compress", grayImage}}) {
        row(kind, box, 0, place, "FlateDecode", "DCTDecode");
        row(kind, box, 1, place, "DCTDecode", "DCTDecode");
        row(kind, box, 2, place, "FlateDecode", "FlateDecode");
    }
    const char *mono = "comboBox_mno_compress";
    row("mono", mono, 0, monoImage, "FlateDecode", "JBIG2Decode");
    row("mono", mono, 1, monoImage, "FlateDecode", "FlateDecode");
    // Ghostscript samples; its run lengths are then deflated, which is shorter.
    row("mono", mono, 2, monoImage, "FlateDecode", "FlateDecode");
    row("mono", mono, 3, monoImage, "FlateDecode", "JBIG2Decode");
    row("mono", mono, 4, monoImage, "CCITTFaxDecode", "CCITTFaxDecode");
}

void TestEffects::compression()
{
    QFETCH(QString, box);
    QFETCH(int, mode);
    QFETCH(int, place);
    QCOMPARE(copyWith({{box, QString::number(mode)}}, images()), QString(succeed));
    QTEST(tools::images(m_copy).value(place).filter, "ofNoise");
    QCOMPARE(copyWith({}, shades()), QString(succeed));
    QTEST(tools::images(m_copy).value(place).filter, "ofShades");
}

// Ghostscript calculates with no words.
void TestEffects::refusedOptionFailsAndTheBatchGoesOn_data()
{
    QTest::addColumn<Options>("refused");
    QTest::addColumn<Options>("accepted");

    QTest::newRow("resolution") << Options{{"lineEdit_clr_res", "abc"}}
                                << Options{{"lineEdit_clr_res", "72"}};
}

void TestEffects::refusedOptionFailsAndTheBatchGoesOn()
{
    QFETCH(Options, refused);
    QFETCH(Options, accepted);
    Process program;
    applyOptions(program, refused);
    const QStringList inputs = {images(), text(), images()};
    QCOMPARE(WindowUser(program).compress(inputs, m_sandbox->outputFolder()),
             QStringList({failed, failed, failed}));
    QCOMPARE(program.findChild<QProgressBar *>("progressBar")->value(), 0);

    applyOptions(program, accepted);
    QCOMPARE(WindowUser(program).compress(inputs, m_sandbox->outputFolder()),
             QStringList({succeed, succeed, succeed}));
}

// Fonts

void TestEffects::fonts_data()
{
    QTest::addColumn<Options>("options");
    QTest::addColumn<bool>("embedded");
    QTest::addColumn<bool>("subset");

    QTest::newRow("as they come") << Options{} << true << true;
    QTest::newRow("not subset") << Options{{"checkBox_subset", "No"}} << true << false;
    // Only standard fonts are left out, and these are others.
    QTest::newRow("not embedded") << Options{{"checkBox_embedallfonts", "No"}} << true << true;
}

void TestEffects::fonts()
{
    QFETCH(Options, options);
    QCOMPARE(copyWith(options, text()), QString(succeed));
    const QList<tools::Font> copied = tools::fonts(m_copy);
    QCOMPARE(copied.size(), qsizetype(2));
    for (const tools::Font &font : copied) {
        QTEST(font.embedded, "embedded");
        QTEST(font.subset, "subset");
    }
}

void TestEffects::uncompressedFontsAreLarger()
{
    QCOMPARE(copyWith({{"checkBox_subset", "No"}}, text()), QString(succeed));
    const qint64 compressed = QFileInfo(m_copy).size();
    init();
    QCOMPARE(copyWith({{"checkBox_subset", "No"}, {"checkBox_compressfonts", "No"}}, text()),
             QString(succeed));
    QVERIFY(QFileInfo(m_copy).size() > compressed * 5 / 4);
}

// Security

void TestEffects::noPasswordNoEncryption()
{
    QCOMPARE(copyWith({{"checkBox_allow_print", "No"}}, images()), QString(succeed));
    QCOMPARE(tools::information(m_copy).value("Encrypted"), QString("no"));
}

// Ghostscript itself takes a user password only together with an owner password.
void TestEffects::userPassword()
{
    QCOMPARE(copyWith({{"lineEdit_userpassword", "user"}}, images()), QString(succeed));
    QVERIFY(tools::asksForPassword(m_copy));
    QVERIFY(tools::opensWith(m_copy, "user"));
    QVERIFY(!tools::opensWith(m_copy, "other"));
}

void TestEffects::ownerPassword()
{
    QCOMPARE(copyWith({{"lineEdit_ownerpassword", "owner"}}, images()), QString(succeed));
    QVERIFY(!tools::asksForPassword(m_copy));
    QVERIFY(tools::information(m_copy).value("Encrypted").startsWith("yes"));
    QVERIFY(tools::opensWith(m_copy, "owner"));
}

void TestEffects::bothPasswords()
{
    QCOMPARE(copyWith({{"lineEdit_userpassword", "user"}, {"lineEdit_ownerpassword", "owner"}},
                      images()),
             QString(succeed));
    QVERIFY(tools::asksForPassword(m_copy));
    QVERIFY(tools::opensWith(m_copy, "user"));
    QVERIFY(tools::opensWith(m_copy, "owner"));
    QVERIFY(!tools::opensWith(m_copy, "other"));
}

void TestEffects::permissions_data()
{
    QTest::addColumn<bool>("print");
    QTest::addColumn<bool>("change");
    QTest::addColumn<bool>("copy");
    QTest::addColumn<bool>("comment");

    for (unsigned allowed = 0; allowed < 16; ++allowed) {
        const auto bit = [allowed](unsigned place) { return (allowed & (1U << place)) != 0; };
        QTest::addRow("%d%d%d%d", bit(0), bit(1), bit(2), bit(3))
            << bit(0) << bit(1) << bit(2) << bit(3);
    }
}

void TestEffects::permissions()
{
    QFETCH(bool, print);
    QFETCH(bool, change);
    QFETCH(bool, copy);
    QFETCH(bool, comment);
    const auto flag = [](bool on) { return QString(on ? "Ok" : "No"); };
    QCOMPARE(copyWith({{"lineEdit_userpassword", "user"},
                       {"lineEdit_ownerpassword", "owner"},
                       {"checkBox_allow_print", flag(print)},
                       {"checkBox_allow_modcontents", flag(change)},
                       {"checkBox_allow_copy", flag(copy)},
                       {"checkBox_allow_add", flag(comment)}},
                      images()),
             QString(succeed));
    const tools::Permissions granted = tools::permissions(m_copy, "user");
    QCOMPARE(granted.print, print);
    QCOMPARE(granted.change, change);
    QCOMPARE(granted.copy, copy);
    QCOMPARE(granted.comment, comment);
}

// Description

void TestEffects::description()
{
    QCOMPARE(copyWith({{"lineEdit_title", "A title"},
                       {"lineEdit_author", "An author"},
                       {"lineEdit_subject", "A subject"},
                       {"lineEdit_keywords", "some, keywords"},
                       {"lineEdit_creator", "A creator"},
                       {"lineEdit_producer", "A producer"}},
                      images()),
             QString(succeed));
    const QMap<QString, QString> information = tools::information(m_copy);
    QCOMPARE(information.value("Title"), QString("A title"));
    QCOMPARE(information.value("Author"), QString("An author"));
    QCOMPARE(information.value("Subject"), QString("A subject"));
    QCOMPARE(information.value("Keywords"), QString("some, keywords"));
    QCOMPARE(information.value("Creator"), QString("A creator"));
    QCOMPARE(information.value("Producer"), QString("A producer"));
}

// The fields are kept for another time; the copy gets a creator and a producer of one blank.
void TestEffects::descriptionPageOff()
{
    m_sandbox->store("Annot/Cre", "A creator");
    m_sandbox->store("Annot/Tit", "A title");
    QCOMPARE(copyWith({{"Description", "No"}}, images()), QString(succeed));
    const QMap<QString, QString> information = tools::information(m_copy);
    for (const char *blanked : {"Creator", "Producer"})
        QCOMPARE(information.value(blanked).trimmed(), QString());
    QVERIFY(!information.contains("Title"));
}

// The engine fails on the mark and leaves nothing; the batch goes on.
void TestEffects::unbalancedParenthesis()
{
    Process program;
    applyOptions(program, {{"lineEdit_title", "open ("}, {"lineEdit_author", "An author"}});
    const QStringList verdicts =
        WindowUser(program).compress({images(), text()}, m_sandbox->outputFolder());
    QCOMPARE(verdicts, QStringList({failed, failed}));
    QVERIFY(m_sandbox->outputs().isEmpty());

    applyOptions(program, {{"lineEdit_title", "closed ()"}});
    QCOMPARE(WindowUser(program).compress({text()}, m_sandbox->outputFolder()),
             QStringList(succeed));
    QCOMPARE(
        tools::information(m_sandbox->outputPath(m_sandbox->outputs().constLast())).value("Title"),
        QString("closed ()"));
}

void TestEffects::pdfa()
{
    QCOMPARE(copyWith({{"checkBox_pdfa", "Ok"}}, text()), QString(succeed));
    QVERIFY(contentOf(m_copy).contains("pdfaid:part"));
    init();
    QCOMPARE(copyWith({}, text()), QString(succeed));
    QVERIFY(!contentOf(m_copy).contains("pdfaid:part"));
}

QTEST_MAIN(TestEffects)
#include "tst_effects.moc"
