#include "engine/outputintent.h"
#include "engine/plan.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QString base = u"-q -dBATCH -dMaxBitmap=300000000 -dNOPAUSE -dSAFER -sDEVICE=pdfwrite "
                     "-dCompatibilityLevel=1.4"_s;
const QString images =
    u" -dDownsampleColorImages=true -dColorImageDownsampleType=/Bicubic "
    "-dColorImageResolution=150 -dAutoFilterColorImages=false -dColorImageFilter=/DCTEncode "
    "-dGrayImageDownsampleType=/Bicubic -dGrayImageResolution=150 -dAutoFilterGrayImages=false "
    "-dGrayImageFilter=/DCTEncode -dDownsampleMonoImages=true "
    "-dMonoImageDownsampleType=/Bicubic -dMonoImageResolution=300 -dAutoFilterMonoImages=false "
    "-dMonoImageFilter=/FlateEncode"_s;
const QString files = u" -sOutputFile=/out/a.pdf -f /in/a.pdf"_s;
const QString plannedFiles =
    u" -dAutoRotatePages=/None --permit-file-write=/dev/fd/7 -sOutputFile=/dev/fd/3 -f "
    "/dev/fd/4"_s;
const QStringList pageReport = {
    u"-c"_s, u"(/dev/fd/7) (w) file dup currentpagedevice /PageCount get 20 string cvs "
             "writestring closefile"_s};
const QString encryption = u" @/dev/fd/6 -dKeyLength=128 -dEncryptionR=3"_s;

std::vector<std::string> wordsOf(const QStringList &words)
{
    std::vector<std::string> result;
    for (const QString &word : words)
        result.push_back(word.toStdString());
    return result;
}

QStringList textOf(const std::vector<std::string> &words)
{
    QStringList result;
    for (const std::string &word : words)
        result << QString::fromStdString(word);
    return result;
}

engine::Plan planFor(const QString &line)
{
    return engine::planFor(wordsOf(line.split(u' ')));
}

} // namespace

class TestPlan : public QObject
{
    Q_OBJECT

private slots:
    void arguments_data();
    void arguments();
    void pdfa();
    void wishes_data();
    void wishes();
    void names();
    void passwords_data();
    void passwords();
    void permissions_data();
    void permissions();
    void everySwitchIsKept_data();
    void everySwitchIsKept();
    void passesThrough_data();
    void passesThrough();
    void refuses_data();
    void refuses();
    void refusesEmptyNames();
    void refusalsKeepSecrets();
};

void TestPlan::arguments_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("planned");
    const auto row = [](const char *name, const QString &switches, const QString &planned,
                        const QString &mark = {}, const QString &plannedMark = {}) {
        QTest::newRow(name) << switches + files + mark << planned + plannedFiles + plannedMark;
    };
    row("base only", base, base);
    row("default", base + images + " -dPermissions=-4"_L1, base + images + " -dPermissions=-4"_L1);
    row("mark", base, base, u" /tmp/pdfinfo.txt"_s, u" /dev/fd/5"_s);
    row("both passwords", base + " -sUserPassword=u -sOwnerPassword=o -dPermissions=-4"_L1,
        base + encryption + " -dPermissions=-4"_L1);
    row("JBIG2", base + " -dAutoFilterMonoImages=false -dMonoImageFilter=/JBIG2Encode"_L1,
        base + " -dAutoFilterMonoImages=false -dMonoImageFilter=/CCITTFaxEncode"_L1);
    row("user password", base + " -sUserPassword=u"_L1, base + encryption);
    row("owner password, printing denied", base + " -sOwnerPassword=o -dPermissions=-8"_L1,
        base + encryption + " -dPermissions=-2056"_L1);
    row("permissions without a password", base + " -dPermissions=-64"_L1,
        base + " -dPermissions=-64"_L1);
    row("any resolution", base + " -dColorImageResolution=abc -dMonoImageResolution="_L1,
        base + " -dColorImageResolution=abc -dMonoImageResolution="_L1);
}

void TestPlan::arguments()
{
    QFETCH(QString, line);
    QFETCH(QString, planned);
    const auto plan = planFor(line);
    QVERIFY(std::holds_alternative<engine::Job>(plan));
    QCOMPARE(textOf(std::get<engine::Job>(plan).arguments), planned.split(u' ') + pageReport);
}

void TestPlan::pdfa()
{
    const auto plan = planFor(base + " -dPDFA"_L1 + files);
    const QStringList words = textOf(std::get<engine::Job>(plan).arguments);
    const QString outputIntent = QString::fromUtf8(engine::outputIntentProgram);
    const QString switches = base + " -dPDFA -dAutoRotatePages=/None -sColorConversionStrategy=RGB "
                                    "-dPDFACompatibilityPolicy=1 --permit-file-write=/dev/fd/7 "
                                    "-sOutputFile=/dev/fd/3 -c"_L1;
    const QStringList rest = {outputIntent, u"-f"_s, u"/dev/fd/4"_s};
    QCOMPARE(words, switches.split(u' ') + rest + pageReport);
    QVERIFY(outputIntent.contains("/GTS_PDFA1"_L1));
    QVERIFY(outputIntent.contains("(srgb.icc)"_L1));
}

void TestPlan::wishes_data()
{
    QTest::addColumn<QString>("switches");
    QTest::addColumn<bool>("pdfa");
    QTest::addColumn<bool>("smallestBilevel");
    QTest::addColumn<bool>("smoothBilevel");
    QTest::addColumn<bool>("compressedFonts");
    QTest::addColumn<bool>("changes");
    const auto row = [](const char *switches, bool pdfa, bool smallest, bool smooth, bool fonts,
                        bool changes) {
        QTest::newRow(switches) << QString::fromLatin1(switches) << pdfa << smallest << smooth
                                << fonts << changes;
    };
    row("", false, false, false, true, false);
    row(" -dPDFA", true, false, false, true, false);
    row(" -dAutoFilterMonoImages=false -dMonoImageFilter=/JBIG2Encode", false, true, false, true,
        false);
    row(" -dAutoFilterMonoImages=true", false, true, false, true, false);
    row(" -dAutoFilterMonoImages=false -dMonoImageFilter=/FlateEncode", false, false, false, true,
        false);
    row(" -dMonoImageDownsampleType=/Subsample", false, false, false, true, false);
    row(" -dMonoImageDownsampleType=/Average", false, false, true, true, false);
    row(" -dMonoImageDownsampleType=/Bicubic", false, false, true, true, false);
    row(" -dCompressFonts=true", false, false, false, true, false);
    row(" -dCompressFonts=false", false, false, false, false, false);
    row(" -dPermissions=-64", false, false, false, true, false);
    row(" -sUserPassword=u", false, false, false, true, true);
    row(" -sOwnerPassword=u", false, false, false, true, true);
}

void TestPlan::wishes()
{
    QFETCH(QString, switches);
    const auto plan = planFor(base + switches + files);
    const engine::Wishes wishes = std::get<engine::Job>(plan).wishes;
    QTEST(wishes.pdfa, "pdfa");
    QTEST(wishes.smallestBilevel, "smallestBilevel");
    QTEST(wishes.smoothBilevel, "smoothBilevel");
    QTEST(wishes.compressedFonts, "compressedFonts");
    QTEST(wishes.changes, "changes");
    const auto withMark = planFor(base + switches + files + " /tmp/pdfinfo.txt"_L1);
    QVERIFY(std::get<engine::Job>(withMark).wishes.changes);
}

void TestPlan::names()
{
    const QStringList line = base.split(u' ') << u"-sOutputFile=|rm 50% \"off\"\n.pdf"_s << u"-f"_s
                                              << u"-@%stdin"_s << u"/t m\np/pdfinfo.txt"_s;
    const auto plan = engine::planFor(wordsOf(line));
    const auto &job = std::get<engine::Job>(plan);
    QCOMPARE(job.output, std::string("|rm 50% \"off\"\n.pdf"));
    QCOMPARE(job.input, std::string("-@%stdin"));
    QCOMPARE(job.mark, std::string("/t m\np/pdfinfo.txt"));
    QCOMPARE(textOf(job.arguments),
             (base + plannedFiles).split(u' ') + QStringList{u"/dev/fd/5"_s} + pageReport);
}

void TestPlan::passwords_data()
{
    QTest::addColumn<QStringList>("switches");
    QTest::addColumn<QString>("argumentFile");
    QTest::addColumn<QString>("password");
    const auto row = [](const char *name, const QStringList &switches, const QString &file,
                        const QString &password) {
        QTest::newRow(name) << switches << file << password;
    };
    row("none", {}, {}, {});
    row("both", {u"-sUserPassword=u"_s, u"-sOwnerPassword=o"_s},
        u"\"-sUserPassword=u\"\n\"-sOwnerPassword=o\"\n"_s, u"u"_s);
    row("user alone", {u"-sUserPassword=u"_s}, u"\"-sUserPassword=u\"\n\"-sOwnerPassword=u\"\n"_s,
        u"u"_s);
    row("owner alone", {u"-sOwnerPassword=o"_s}, u"\"-sOwnerPassword=o\"\n"_s, u"o"_s);
    row("blanks and quotes", {u"-sOwnerPassword=a \"b\" #c"_s},
        u"\"-sOwnerPassword=a \\\"b\\\" #c\"\n"_s, u"a \"b\" #c"_s);
    const QString longest = QString(31, u'x') + u'\\';
    row("32 bytes and more, both",
        {"-sUserPassword="_L1 + longest, "-sOwnerPassword="_L1 + longest + u'y'},
        u"\"-sUserPassword=%1\"\n\"-sOwnerPassword=%1\"\n"_s.arg(longest + QChar(u'\0')), longest);
    const QString whole = QString(31, u'x') + u'\u20ac'; // three bytes
    row("a letter across the end", {"-sOwnerPassword="_L1 + whole + u"\u20ac"_s},
        u"\"-sOwnerPassword=%1\"\n"_s.arg(whole), whole);
    row("thousands of letters, user alone", {"-sUserPassword="_L1 + QString(9000, u'x')},
        u"\"-sUserPassword=%1\"\n\"-sOwnerPassword=%1\"\n"_s.arg(QString(32, u'x')),
        QString(32, u'x'));
    row("thousands of letters, owner alone", {"-sOwnerPassword="_L1 + QString(9000, u'x')},
        u"\"-sOwnerPassword=%1\"\n"_s.arg(QString(32, u'x')), QString(32, u'x'));
    row("backslash at the end", {u"-sOwnerPassword=a\\b\\\\"_s},
        u"\"-sOwnerPassword=a\\b\\\\"_s + QChar(u'\0') + u"\"\n"_s, u"a\\b\\\\"_s);
}

void TestPlan::passwords()
{
    QFETCH(QStringList, switches);
    QFETCH(QString, argumentFile);
    QFETCH(QString, password);
    const auto plan =
        engine::planFor(wordsOf(base.split(u' ') + switches + files.mid(1).split(u' ')));
    const auto &job = std::get<engine::Job>(plan);
    QCOMPARE(QString::fromStdString(job.argumentFile), argumentFile);
    QCOMPARE(QString::fromStdString(job.password), password);
    for (const std::string &word : job.arguments)
        QVERIFY(word.find("Password") == std::string::npos);
}

// Each box that is off denies both halves: 4 and 2048 printing, 8 and 1024 changing, 16 copying, 32
// and 256 commenting.
void TestPlan::permissions_data()
{
    QTest::addColumn<int>("sent");
    QTest::addColumn<int>("planned");
    constexpr int extra[] = {2048, 1024, 0, 256};
    for (int boxes = 0; boxes < 16; ++boxes) {
        int sent = -4;
        int planned = -4;
        for (int box = 0; box < 4; ++box) {
            if (boxes & (1 << box)) {
                sent -= 4 << box;
                planned -= (4 << box) + extra[box];
            }
        }
        QTest::addRow("%d", sent) << sent << planned;
    }
}

void TestPlan::permissions()
{
    QFETCH(int, sent);
    QFETCH(int, planned);
    const auto plan =
        planFor(base + " -sUserPassword=u -dPermissions="_L1 + QString::number(sent) + files);
    QCOMPARE(textOf(std::get<engine::Job>(plan).arguments),
             (base + encryption + " -dPermissions="_L1 + QString::number(planned) + plannedFiles)
                     .split(u' ') +
                 pageReport);
}

void TestPlan::everySwitchIsKept_data()
{
    QTest::addColumn<QString>("sent");
    const QString all =
        u"-dDownsampleColorImages=false -dDownsampleColorImages=true "
        "-dColorImageDownsampleType=/Subsample -dColorImageDownsampleType=/Average "
        "-dDownsampleGrayImages=false -dGrayImageDownsampleType=/Subsample "
        "-dGrayImageDownsampleType=/Average -dGrayImageDownsampleType=/Bicubic "
        "-dDownsampleMonoImages=false -dDownsampleMonoImages=true "
        "-dMonoImageDownsampleType=/Subsample -dMonoImageDownsampleType=/Average "
        "-dColorImageResolution=72 -dGrayImageResolution=-1 -dMonoImageResolution=1.5 "
        "-dAutoFilterColorImages=true -dAutoFilterGrayImages=true -dAutoFilterMonoImages=true "
        "-dAutoFilterMonoImages=false -dColorImageFilter=/FlateEncode "
        "-dGrayImageFilter=/FlateEncode -dMonoImageFilter=/FlateEncode "
        "-dMonoImageFilter=/RunLengthEncode "
        "-dMonoImageFilter=/CCITTFaxEncode -dEmbedAllFonts=true -dEmbedAllFonts=false "
        "-dCompressFonts=true -dCompressFonts=false -dSubsetFonts=true -dSubsetFonts=false"_s;
    for (const QString &one : all.split(u' '))
        QTest::newRow(qPrintable(one)) << one;
}

void TestPlan::everySwitchIsKept()
{
    QFETCH(QString, sent);
    const auto plan = planFor(base + u' ' + sent + files);
    QVERIFY(std::holds_alternative<engine::Job>(plan));
    QCOMPARE(textOf(std::get<engine::Job>(plan).arguments),
             (base + u' ' + sent + plannedFiles).split(u' ') + pageReport);
}

void TestPlan::passesThrough_data()
{
    QTest::addColumn<QString>("line");
    QTest::newRow("version") << u"--version"_s;
    QTest::newRow("nothing") << QString();
    QTest::newRow("another device")
        << u"-q -dBATCH -sDEVICE=png16m -sOutputFile=/out/%d.png /in/a.pdf"_s;
    QTest::newRow("no output file") << u"-sDEVICE=pdfwrite -o /out/a.pdf /in/a.pdf"_s;
}

void TestPlan::passesThrough()
{
    QFETCH(QString, line);
    QVERIFY(std::holds_alternative<engine::PassThrough>(planFor(line)));
}

void TestPlan::refuses_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("reason");
    const auto row = [](const char *name, const QString &line, const QString &reason) {
        QTest::newRow(name) << line << reason;
    };
    const QString eighth = u"argument 8 is not one that the window sends"_s;
    for (const char *word : {"-dNOSAFER",
                             "-dDELAYSAFER",
                             "-c",
                             "-",
                             "@/tmp/x",
                             "-I/tmp",
                             "-o/tmp/x",
                             "/etc/passwd",
                             "--permit-file-all=/",
                             "-sDEVICE=png16m",
                             "-sOutputFile",
                             "-dPermissions=-5",
                             "-dPermissions=-68",
                             "-dPermissions=-4x",
                             "-dPDFA=2",
                             "-dEmbedAllFonts=maybe",
                             "-dColorImageFilter=/JPXEncode",
                             "-dDownsampleGrayImages=true",
                             "-sUserPasswordx=1",
                             "-dCompatibilityLevel=1.4"}) {
        row(word, base + u' ' + QString::fromLatin1(word) + files, eighth);
    }
    row("PDF/A with a password", base + " -dPDFA -sUserPassword=u"_L1 + files,
        u"PDF/A allows no passwords"_s);
    const QString noFiles = u"no output, or no -f and one input behind it"_s;
    row("two outputs", base + " -sOutputFile=/home/x"_L1 + files, noFiles);
    row("switch behind the output", base + " -sOutputFile=/out/a.pdf -dNOSAFER -f /in/a.pdf"_L1,
        noFiles);
    row("no input", base + " -sOutputFile=/out/a.pdf -f"_L1, noFiles);
    row("no files", base, noFiles);
    row("bent to the end", u"-q -dBATCH -dMaxBitmap=300000000 -sUserPassword=x"_s, noFiles);
    row("second input", base + files + " b.pdf"_L1,
        u"argument 11 is not one that the window sends"_s);
    row("relative mark", base + files + " pdfinfo.txt"_L1,
        u"argument 11 is not one that the window sends"_s);
    row("behind the mark", base + files + " /tmp/pdfinfo.txt -c"_L1,
        u"argument 11 is not one that the window sends"_s);
    row("a blank in a password", base + " -sUserPassword=a b"_L1 + files,
        u"argument 9 is not one that the window sends"_s);
}

void TestPlan::refuses()
{
    QFETCH(QString, line);
    QFETCH(QString, reason);
    const auto plan = planFor(line);
    QVERIFY(std::holds_alternative<engine::Refusal>(plan));
    QCOMPARE(QString::fromStdString(std::get<engine::Refusal>(plan).reason), reason);
}

void TestPlan::refusesEmptyNames()
{
    const QStringList words = base.split(u' ');
    for (const QStringList &names : {QStringList{u"-sOutputFile="_s, u"-f"_s, u"a"_s},
                                     QStringList{u"-sOutputFile=a"_s, u"-f"_s, QString()}}) {
        const auto plan = engine::planFor(wordsOf(words + names));
        QVERIFY(std::holds_alternative<engine::Refusal>(plan));
    }
}

void TestPlan::refusalsKeepSecrets()
{
    const auto plan = planFor(base + " -sUserPassword=open sesame"_L1 + files);
    const std::string reason = std::get<engine::Refusal>(plan).reason;
    QVERIFY(reason.find("sesame") == std::string::npos);
    QVERIFY(reason.find("open") == std::string::npos);
}

QTEST_GUILESS_MAIN(TestPlan)
#include "tst_engine_plan.moc"
