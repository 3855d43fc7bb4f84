#include "engine/ghostscript/arguments.h"
#include "engine/ghostscript/outputintent.h"
#include "engine/request/permissions.h"
#include "engine/request/request.h"
#include "support/defaultline.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QString base = QString(defaultline::base).mid(1);
const QString images = defaultline::images;
const QString files = u" -sOutputFile=/out/a.pdf -f /in/a.pdf"_s;
const QString plannedFiles =
    u" -dAutoRotatePages=/None --permit-file-write=/dev/fd/7 -sOutputFile=/dev/fd/3 -c PROGRESS -f "
    "/dev/fd/4"_s;
const QStringList pageReport = {
    u"-c"_s, u"(/dev/fd/7) (w) file dup currentpagedevice /PageCount get 20 string cvs "
             "writestring closefile"_s};

// Stands as PROGRESS in the lists below: it has blanks.
const QString pageMark =
    u"<< /EndPage [ (/dev/fd/7) (w) file { 3 -1 roll pop exch 2 ne { dup (\\006) writestring "
    "flushfile true } { pop false } ifelse } /exec load ] cvx >> setpagedevice"_s;

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

QStringList ghostscriptsArguments(const engine::Plan &plan)
{
    QStringList words = textOf(engine::rewritingArguments(std::get<engine::Request>(plan)));
    return words.replaceInStrings(pageMark, u"PROGRESS"_s);
}

} // namespace

class TestRequest : public QObject
{
    Q_OBJECT

private slots:
    void arguments_data();
    void arguments();
    void pdfa();
    void options_data();
    void options();
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

void TestRequest::arguments_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("planned");
    const auto row = [](const char *name, const QString &switches, const QString &planned,
                        const QString &mark = {}, const QString &plannedMark = {}) {
        QTest::newRow(name) << switches + files + mark << planned + plannedFiles + plannedMark;
    };
    row("base only", base, base);
    row("default", base + images + " -dPermissions=-4"_L1, base + images);
    row("mark", base, base, u" /tmp/pdfinfo.txt"_s, u" /dev/fd/5"_s);
    row("passwords and permissions",
        base + " -sUserPassword=u -sOwnerPassword=o -dPermissions=-8"_L1, base);
    row("JBIG2", base + " -dAutoFilterMonoImages=false -dMonoImageFilter=/JBIG2Encode"_L1,
        base + " -dAutoFilterMonoImages=false -dMonoImageFilter=/FlateEncode"_L1);
    row("any resolution", base + " -dColorImageResolution=abc -dMonoImageResolution="_L1,
        base + " -dColorImageResolution=abc -dMonoImageResolution="_L1);
}

void TestRequest::arguments()
{
    QFETCH(QString, line);
    QFETCH(QString, planned);
    const auto plan = planFor(line);
    QVERIFY(std::holds_alternative<engine::Request>(plan));
    QCOMPARE(ghostscriptsArguments(plan), planned.split(u' ') + pageReport);
}

void TestRequest::pdfa()
{
    const auto plan = planFor(base + " -dPDFA"_L1 + files);
    const QStringList words = ghostscriptsArguments(plan);
    const QString outputIntent = QString::fromUtf8(engine::outputIntentProgram);
    const QString switches = base + " -dPDFA -dAutoRotatePages=/None -sColorConversionStrategy=RGB "
                                    "-dPDFACompatibilityPolicy=1 --permit-file-write=/dev/fd/7 "
                                    "-sOutputFile=/dev/fd/3 -c PROGRESS -c"_L1;
    const QStringList rest = {outputIntent, u"-f"_s, u"/dev/fd/4"_s};
    QCOMPARE(words, switches.split(u' ') + rest + pageReport);
    QVERIFY(outputIntent.contains("/GTS_PDFA1"_L1));
    QVERIFY(outputIntent.contains("(srgb.icc)"_L1));
}

void TestRequest::options_data()
{
    QTest::addColumn<QString>("switches");
    QTest::addColumn<bool>("pdfa");
    QTest::addColumn<bool>("smallestBilevel");
    QTest::addColumn<bool>("compressedFonts");
    QTest::addColumn<bool>("subsetFonts");
    QTest::addColumn<bool>("leaveOutStandard14");
    struct Wanted
    {
        bool pdfa = false;
        bool smallestBilevel = false;
        bool compressedFonts = true;
        bool subsetFonts = false;
        bool leaveOutStandard14 = false;
    };
    const auto row = [](const char *switches, const Wanted &wanted) {
        QTest::newRow(switches) << QString::fromLatin1(switches) << wanted.pdfa
                                << wanted.smallestBilevel << wanted.compressedFonts
                                << wanted.subsetFonts << wanted.leaveOutStandard14;
    };
    row("", {});
    row(" -dPDFA", {.pdfa = true});
    row(" -dAutoFilterMonoImages=false -dMonoImageFilter=/JBIG2Encode", {.smallestBilevel = true});
    row(" -dAutoFilterMonoImages=true", {.smallestBilevel = true});
    row(" -dAutoFilterMonoImages=false -dMonoImageFilter=/FlateEncode", {});
    row(" -dCompressFonts=true", {});
    row(" -dCompressFonts=false", {.compressedFonts = false});
    row(" -dSubsetFonts=true", {.subsetFonts = true});
    row(" -dSubsetFonts=false", {});
    row(" -dEmbedAllFonts=true", {});
    row(" -dEmbedAllFonts=false", {.leaveOutStandard14 = true});
}

void TestRequest::options()
{
    QFETCH(QString, switches);
    const auto plan = planFor(base + switches + files);
    const engine::CopyOptions options = std::get<engine::Request>(plan).options;
    QTEST(options.pdfa, "pdfa");
    QTEST(options.smallestBilevel, "smallestBilevel");
    QTEST(options.compressedFonts, "compressedFonts");
    QTEST(options.subsetFonts, "subsetFonts");
    QTEST(options.leaveOutStandard14, "leaveOutStandard14");
}

void TestRequest::names()
{
    const QStringList line = base.split(u' ') << u"-sOutputFile=|rm 50% \"off\"\n.pdf"_s << u"-f"_s
                                              << u"-@%stdin"_s << u"/t m\np/pdfinfo.txt"_s;
    const auto plan = engine::planFor(wordsOf(line));
    const auto &request = std::get<engine::Request>(plan);
    QCOMPARE(request.output, std::string("|rm 50% \"off\"\n.pdf"));
    QCOMPARE(request.input, std::string("-@%stdin"));
    QCOMPARE(request.mark, std::string("/t m\np/pdfinfo.txt"));
    QCOMPARE(ghostscriptsArguments(plan),
             (base + plannedFiles).split(u' ') + QStringList{u"/dev/fd/5"_s} + pageReport);
}

void TestRequest::passwords_data()
{
    QTest::addColumn<QStringList>("switches");
    QTest::addColumn<QString>("user");
    QTest::addColumn<QString>("owner");
    const auto row = [](const char *name, const QStringList &switches, const QString &user,
                        const QString &owner) { QTest::newRow(name) << switches << user << owner; };
    row("none", {}, {}, {});
    row("both", {u"-sUserPassword=u"_s, u"-sOwnerPassword=o"_s}, u"u"_s, u"o"_s);
    row("user alone", {u"-sUserPassword=u"_s}, u"u"_s, u"u"_s);
    row("owner alone", {u"-sOwnerPassword=o"_s}, {}, u"o"_s);
    row("blanks, quotes and backslashes", {u"-sOwnerPassword=a \"b\" #c\\"_s}, {},
        u"a \"b\" #c\\"_s);
    row("thousands of letters", {"-sUserPassword="_L1 + QString(9000, u'x')}, QString(9000, u'x'),
        QString(9000, u'x'));
}

void TestRequest::passwords()
{
    QFETCH(QStringList, switches);
    const auto plan =
        engine::planFor(wordsOf(base.split(u' ') + switches + files.mid(1).split(u' ')));
    const engine::Passwords passwords = std::get<engine::Request>(plan).passwords;
    QTEST(QString::fromStdString(passwords.user), "user");
    QTEST(QString::fromStdString(passwords.owner), "owner");
    QCOMPARE(passwords.areSet(), !switches.isEmpty());
    QVERIFY(ghostscriptsArguments(plan).filter(u"Password"_s).isEmpty());
}

// Each box that is off denies both halves: 4 and 2048 printing, 8 and 1024 changing, 16 copying, 32
// and 256 commenting.
void TestRequest::permissions_data()
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

void TestRequest::permissions()
{
    QFETCH(int, sent);
    const auto plan =
        planFor(base + " -sUserPassword=u -dPermissions="_L1 + QString::number(sent) + files);
    const engine::Request request = std::get<engine::Request>(plan);
    QCOMPARE(request.permissions, sent);
    QTEST(engine::revision3Permissions(request.permissions), "planned");
}

void TestRequest::everySwitchIsKept_data()
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

void TestRequest::everySwitchIsKept()
{
    QFETCH(QString, sent);
    const auto plan = planFor(base + u' ' + sent + files);
    QVERIFY(std::holds_alternative<engine::Request>(plan));
    QCOMPARE(ghostscriptsArguments(plan),
             (base + u' ' + sent + plannedFiles).split(u' ') + pageReport);
}

void TestRequest::passesThrough_data()
{
    QTest::addColumn<QString>("line");
    QTest::newRow("version") << u"--version"_s;
    QTest::newRow("nothing") << QString();
    QTest::newRow("another device")
        << u"-q -dBATCH -sDEVICE=png16m -sOutputFile=/out/%d.png /in/a.pdf"_s;
    QTest::newRow("no output file") << u"-sDEVICE=pdfwrite -o /out/a.pdf /in/a.pdf"_s;
}

void TestRequest::passesThrough()
{
    QFETCH(QString, line);
    QVERIFY(std::holds_alternative<engine::PassThrough>(planFor(line)));
}

void TestRequest::refuses_data()
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

void TestRequest::refuses()
{
    QFETCH(QString, line);
    QFETCH(QString, reason);
    const auto plan = planFor(line);
    QVERIFY(std::holds_alternative<engine::Refusal>(plan));
    QCOMPARE(QString::fromStdString(std::get<engine::Refusal>(plan).reason), reason);
}

void TestRequest::refusesEmptyNames()
{
    const QStringList words = base.split(u' ');
    for (const QStringList &names : {QStringList{u"-sOutputFile="_s, u"-f"_s, u"a"_s},
                                     QStringList{u"-sOutputFile=a"_s, u"-f"_s, QString()}}) {
        const auto plan = engine::planFor(wordsOf(words + names));
        QVERIFY(std::holds_alternative<engine::Refusal>(plan));
    }
}

void TestRequest::refusalsKeepSecrets()
{
    const auto plan = planFor(base + " -sUserPassword=open sesame"_L1 + files);
    const std::string reason = std::get<engine::Refusal>(plan).reason;
    QVERIFY(reason.find("sesame") == std::string::npos);
    QVERIFY(reason.find("open") == std::string::npos);
}

QTEST_GUILESS_MAIN(TestRequest)
#include "tst_request.moc"
