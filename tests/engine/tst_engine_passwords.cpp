// Passwords and permissions, as independent readers see them.
#include "bench.h"
#include "samples.h"

#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

QByteArray saidBy(const QString &program, const QStringList &arguments)
{
    const tools::Result result = tools::run(program, arguments);
    return result.output + result.errors;
}

QByteArray encryptionOf(const QString &file, const QString &password)
{
    return saidBy(u"qpdf"_s, {"--password="_L1 + password, u"--show-encryption"_s, file});
}

} // namespace

class TestPasswords : public QObject
{
    Q_OBJECT

private slots:
    void encryption_data();
    void encryption();
    void hardPasswords_data();
    void hardPasswords();
    void lettersBeyondAscii_data();
    void lettersBeyondAscii();
    void longPasswords_data();
    void longPasswords();
    void permissions_data();
    void permissions();
    void permissionsWithoutAPassword();
    void withoutReader();
    void processListOfTheEngine();
    void processListOfCorvgs();
};

void TestPasswords::encryption_data()
{
    QTest::addColumn<QStringList>("switches");
    QTest::addColumn<QString>("opens");
    QTest::addColumn<QString>("owns");
    const QString user = u"-sUserPassword=user"_s;
    const QString owner = u"-sOwnerPassword=owner"_s;
    QTest::newRow("user alone") << QStringList{user} << u"user"_s << u"user"_s;
    QTest::newRow("owner alone") << QStringList{owner} << QString() << u"owner"_s;
    QTest::newRow("both") << QStringList{user, owner} << u"user"_s << u"owner"_s;
}

void TestPasswords::encryption()
{
    QFETCH(QStringList, switches);
    QFETCH(QString, opens);
    QFETCH(QString, owns);
    Bench bench(samplePdf(2));
    const Run run = bench.run(lineOf(bench, switches));
    QCOMPARE(run.errors, QByteArray());
    QCOMPARE(run.status, 0);
    QCOMPARE(tools::pages(bench.out(u"a.pdf"_s), opens), 2);
    QCOMPARE(tools::pages(bench.out(u"a.pdf"_s)), opens.isEmpty() ? 2 : -1);
    QCOMPARE(tools::pages(bench.out(u"a.pdf"_s), u"wrong"_s), -1);
    const QByteArray found = encryptionOf(bench.out(u"a.pdf"_s), owns);
    QVERIFY2(found.contains("R = 3"), found);
    QVERIFY2(found.contains("Supplied password is owner password"), found);
    QVERIFY(contentOf(bench.out(u"a.pdf"_s)).contains("/Length 128"));
}

void TestPasswords::hardPasswords_data()
{
    QTest::addColumn<QString>("password");
    for (const QString &password :
         {u"a b  c"_s, u"\"quoted\""_s, u"back\\slash"_s, u"end\\"_s, u"end\\\\"_s, u"\\\""_s,
          u"a\\\"b\\"_s, u"a b\\"_s, u"a\\ b \\\" \\"_s, u"#c"_s, u"%d"_s, u"@x"_s, u"-dNOSAFER"_s,
          u"$HOME'`"_s, u"(a) <b> /c"_s, u"x -c quit"_s, u"\" -dNOSAFER \""_s, QString(32, u'x')})
        QTest::newRow(qPrintable(password)) << password;
}

void TestPasswords::hardPasswords()
{
    QFETCH(QString, password);
    Bench bench(samplePdf());
    const Run run = bench.run(
        lineOf(bench, {"-sUserPassword="_L1 + password, "-sOwnerPassword="_L1 + password + u'o'}));
    QCOMPARE(run.errors, QByteArray());
    QCOMPARE(run.status, 0);
    QCOMPARE(tools::pages(bench.out(u"a.pdf"_s)), -1);
    QCOMPARE(tools::pages(bench.out(u"a.pdf"_s), password), 1);
    const QByteArray poppler = saidBy(u"pdfinfo"_s, {u"-upw"_s, password, bench.out(u"a.pdf"_s)});
    QVERIFY2(poppler.contains("Encrypted:"), poppler);
}

void TestPasswords::lettersBeyondAscii_data()
{
    QTest::addColumn<QString>("password");
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("umlauts") << u"pässwörd"_s << QByteArray("p\xe4ssw\xf6rd");
    QTest::newRow("euro and dash") << u"5€–7"_s << QByteArray::fromHex("35a08537");
    QTest::newRow("32 letters") << QString(30, u'ä') + u"xy"_s << QByteArray(30, '\xe4') + "xy";
    QTest::newRow("33 letters") << QString(31, u'x') + u"éy"_s << QByteArray(31, 'x') + '\xe9';
    QTest::newRow("letters that it has not") << u"報告書"_s << u"報告書"_s.toUtf8();
}

// Readers turn what is typed into the encoding that the standard names.
void TestPasswords::lettersBeyondAscii()
{
    QFETCH(QString, password);
    QFETCH(QByteArray, bytes);
    Bench bench(samplePdf());
    const Run run =
        bench.run(lineOf(bench, {"-sUserPassword="_L1 + password, u"-sOwnerPassword=o"_s}));
    QCOMPARE(run.errors, QByteArray());
    const QString hexadecimal = QString::fromLatin1(bytes.toHex());
    const QByteArray found = saidBy(
        u"qpdf"_s, {u"--suppress-password-recovery"_s, u"--password-mode=hex-bytes"_s,
                    "--password="_L1 + hexadecimal, u"--show-encryption"_s, bench.out(u"a.pdf"_s)});
    QVERIFY2(found.contains("Supplied password is user password"), found);
}

void TestPasswords::longPasswords_data()
{
    QTest::addColumn<QString>("password");
    QTest::newRow("33 letters") << QString(32, u'x') + u'y';
    QTest::newRow("backslash in the last place") << QString(31, u'x') + u"\\y"_s;
    QTest::newRow("thousands of letters") << u"sesame"_s.repeated(2000);
}

// Who types the whole password in another reader gets in; nothing of it is said.
void TestPasswords::longPasswords()
{
    QFETCH(QString, password);
    Bench bench(samplePdf());
    const QString copy = bench.out(u"a.pdf"_s);
    for (const QString &owner : {password, u"another"_s}) {
        const Run run = bench.run(
            Bench::line(bench.in(u"a.pdf"_s), copy,
                        {"-sUserPassword="_L1 + password, "-sOwnerPassword="_L1 + owner}));
        QCOMPARE(run.errors, QByteArray());
        QVERIFY(!run.output.contains(password.toUtf8()));
        QCOMPARE(run.status, 0);
        QCOMPARE(tools::pages(copy), -1);
        QCOMPARE(tools::pages(copy, password), 1);
        for (const QString &option : {u"-upw"_s, u"-opw"_s}) {
            const QByteArray poppler =
                saidBy(u"pdfinfo"_s, {option, option == u"-upw"_s ? password : owner, copy});
            QVERIFY2(poppler.contains("Encrypted:"), poppler);
        }
        QVERIFY(QFile::remove(copy));
    }
}

void TestPasswords::permissions_data()
{
    QTest::addColumn<int>("sent");
    QTest::addColumn<QStringList>("denied");
    const QStringList printing = {u"print low resolution"_s, u"print high resolution"_s};
    const QStringList changing = {u"modify other"_s, u"modify document assembly"_s};
    const QStringList copying = {u"extract for any purpose"_s};
    const QStringList commenting = {u"modify annotations"_s, u"modify forms"_s};
    QTest::newRow("all allowed") << -4 << QStringList();
    QTest::newRow("printing") << -8 << printing;
    QTest::newRow("changing") << -12 << changing;
    QTest::newRow("copying") << -20 << copying;
    QTest::newRow("commenting") << -36 << commenting;
    QTest::newRow("copying and commenting") << -52 << copying + commenting;
    QTest::newRow("all") << -64 << printing + changing + copying + commenting;
}

void TestPasswords::permissions()
{
    QFETCH(int, sent);
    QFETCH(QStringList, denied);
    Bench bench(samplePdf());
    const Run run = bench.run(
        lineOf(bench, {u"-sOwnerPassword=o"_s, "-dPermissions="_L1 + QString::number(sent)}));
    QCOMPARE(run.status, 0);
    QStringList found;
    const QByteArray text = encryptionOf(bench.out(u"a.pdf"_s), {});
    for (const QByteArray &line : text.split('\n')) {
        if (line.endsWith(": not allowed"))
            found << QString::fromLatin1(line.left(line.indexOf(':')));
    }
    found.removeAll(u"modify anything"_s); // says no more than that one of the others is denied
    found.sort();
    denied.sort();
    QCOMPARE(found, denied);
}

void TestPasswords::permissionsWithoutAPassword()
{
    Bench bench(samplePdf());
    const Run run = bench.run(lineOf(bench, {u"-dPermissions=-64"_s}));
    QCOMPARE(run.status, 0);
    QVERIFY(encryptionOf(bench.out(u"a.pdf"_s), {}).contains("File is not encrypted"));
}

// The driver has none: nothing is touched that nobody can prove.
void TestPasswords::withoutReader()
{
    const QByteArray original =
        pdfOf({"<< /Type /Catalog /Pages 2 0 R >>", "<< /Type /Pages /Count 1 /Kids [3 0 R] >>",
               "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 99 99] /Contents 4 0 R >>",
               pdfStream({}, QByteArray("0 0 m 9 9 l S ").repeated(900))});
    const Bench bench(original);
    const QString copy = bench.out(u"a.pdf"_s);
    const QString driver = Bench::driver(Bench::Confined);
    const Run bare = bench.run(Bench::line(bench.in(u"a.pdf"_s), copy), driver);
    QCOMPARE(bare.output.simplified(),
             QByteArray("corvgs: the copy is the original: the reader that has to prove a copy "
                        "can't read it"));
    QCOMPARE(contentOf(copy), original);
    QVERIFY(QFile::remove(copy));
    const Run run =
        bench.run(Bench::line(bench.in(u"a.pdf"_s), copy, {u"-sUserPassword=user"_s}), driver);
    QCOMPARE(run.output.simplified(),
             QByteArray("corvgs: nothing was made smaller: the reader that has to prove it can't "
                        "read the document"));
    QVERIFY2(encryptionOf(copy, u"user"_s).contains("Supplied password is user password"),
             encryptionOf(copy, u"user"_s));
}

void TestPasswords::processListOfTheEngine()
{
    Bench bench(samplePdf());
    bench.setStandin(u"arguments"_s);
    const Run run =
        bench.run(lineOf(bench, {u"-sUserPassword=sesame"_s, u"-sOwnerPassword=sesame2"_s}),
                  Bench::driver(Bench::Confined));
    QVERIFY(run.output.contains("-sDEVICE=pdfwrite\n"));
    QVERIFY(!run.output.contains("sesame"));
    QVERIFY(!run.errors.contains("sesame"));
}

void TestPasswords::processListOfCorvgs()
{
    Bench bench(samplePdf());
    bench.setStandin(u"wait"_s);
    const auto process =
        bench.start(lineOf(bench, {u"-sUserPassword=sesame"_s, u"-sOwnerPassword=sesame2"_s}),
                    Bench::driver(Bench::Confined));
    QVERIFY(process->waitForReadyRead());
    const QByteArray line =
        contentOf("/proc/"_L1 + QString::number(process->processId()) + "/cmdline"_L1);
    QVERIFY(line.contains("-sUserPassword="));
    QVERIFY(!line.contains("sesame"));
    process->terminate();
    QVERIFY(process->waitForFinished());
}

QTEST_GUILESS_MAIN(TestPasswords)
#include "tst_engine_passwords.moc"
