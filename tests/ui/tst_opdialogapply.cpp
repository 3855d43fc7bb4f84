// What Apply writes, and that nothing else does.

#include "opdialogtest.h"
#include "support/options.h"

#include <QDir>
#include <QListWidget>
#include <QSettings>
#include <QStackedWidget>
#include <QTest>

namespace {

// Looks whether there is a file when a window is hidden.
class HideWatch : public QObject
{
public:
    enum class File { notYetHidden, absent, present };

    explicit HideWatch(const QString &path)
        : m_path(path)
    {
    }

    File fileOnHiding = File::notYetHidden;

    bool eventFilter(QObject * /*watched*/, QEvent *event) override
    {
        if (event->type() == QEvent::Hide)
            fileOnHiding = QFile::exists(m_path) ? File::present : File::absent;
        return false;
    }

private:
    QString m_path;
};

} // namespace

class TestOpDialogApply : public OpDialogTest
{
    Q_OBJECT

private slots:
    void applyWritesEveryKey();
    void applyClosesFirst();
    void applyKeepsTheFolders();
    void applyWritesDisabledPages();
    void applyWritesTheTextAsTyped();
    void halfCheckedPagesAreOff();
    void cancelWritesNothingAndRevertsNothing();
    void closingWritesNothing();
    void editingCancelledShowsAgainAndIsSavedLater();
    void markFile_data();
    void markFile();
    void markFileOfAPageThatIsOff();
    void markFileThatCannotBeWritten();
};

void TestOpDialogApply::applyWritesEveryKey()
{
    const ShownOptions shown;
    shown.window.press("pushButton_apply");
    const QSettings settings(m_sandbox->settingsFile(), QSettings::IniFormat);
    QCOMPARE(settings.allKeys().size(), qsizetype(allOptions().size()));
    for (const Option &option : allOptions())
        QCOMPARE(settings.value(option.key, "(absent)").toString(),
                 shown.window.value(option.control));
}

void TestOpDialogApply::applyClosesFirst()
{
    ShownOptions shown;
    HideWatch watch(m_sandbox->settingsFile());
    shown.dialog.installEventFilter(&watch);
    shown.window.press("pushButton_apply");
    QCOMPARE(watch.fileOnHiding, HideWatch::File::absent);
    QVERIFY(QFile::exists(m_sandbox->settingsFile()));
}

void TestOpDialogApply::applyKeepsTheFolders()
{
    m_sandbox->store("dir/input", "/in");
    m_sandbox->store("dir/output", "/out");
    const ShownOptions shown;
    shown.window.press("pushButton_apply");
    QCOMPARE(m_sandbox->stored("dir/input"), QString("/in"));
    QCOMPARE(m_sandbox->stored("dir/output"), QString("/out"));
}

void TestOpDialogApply::applyWritesDisabledPages()
{
    const ShownOptions shown;
    shown.window.choose("comboBox_gry_compress", 2);
    shown.window.check("checkBox_subset", false);
    shown.window.type("lineEdit_userpassword", "secret");
    shown.window.type("lineEdit_title", "A title");
    for (int page = 0; page < pageCount; ++page)
        shown.window.switchPage(page, false);
    shown.window.press("pushButton_apply");
    for (const char *key : {"Image/Image", "Fonts/Fonts", "Secur/Secur", "Annot/Annot"})
        QCOMPARE(m_sandbox->stored(key), QString("No"));
    QCOMPARE(m_sandbox->stored("Image/GrayEnc"), QString("2"));
    QCOMPARE(m_sandbox->stored("Fonts/Sub"), QString("No"));
    QCOMPARE(m_sandbox->stored("Secur/UsrPwd"), QString("secret"));
    QCOMPARE(m_sandbox->stored("Annot/Tit"), QString("A title"));
}

void TestOpDialogApply::applyWritesTheTextAsTyped()
{
    {
        const ShownOptions shown;
        shown.window.type("lineEdit_clr_res", "  ");
        shown.window.type("lineEdit__gry_res", "abc");
        shown.window.type("lineEdit_mno_res", "");
        shown.window.press("pushButton_apply");
    }
    QCOMPARE(m_sandbox->stored("Image/ColorRes"), QString("  "));
    QCOMPARE(m_sandbox->stored("Image/GrayRes"), QString("abc"));
    QCOMPARE(m_sandbox->stored("Image/MonoRes"), QString());

    const ShownOptions shown;
    QCOMPARE(shown.window.value("lineEdit_clr_res"), QString("150"));
    QCOMPARE(shown.window.value("lineEdit__gry_res"), QString("abc"));
    QCOMPARE(shown.window.value("lineEdit_mno_res"), QString("300"));
}

void TestOpDialogApply::halfCheckedPagesAreOff()
{
    const ShownOptions shown;
    auto *items = shown.window.find<QListWidget>("listWidge_option");
    for (int page = 0; page < pageCount; ++page)
        items->item(page)->setCheckState(Qt::PartiallyChecked);
    const auto *pages = shown.window.find<QStackedWidget>("stackedWidget_option");
    for (int page = 0; page < pageCount; ++page)
        QVERIFY(!pages->widget(page)->isEnabled());
    shown.window.press("pushButton_apply");
    for (const char *key : {"Image/Image", "Fonts/Fonts", "Secur/Secur", "Annot/Annot"})
        QCOMPARE(m_sandbox->stored(key), QString("No"));
    QVERIFY(contentOf(m_sandbox->markFile()).startsWith(" [ /Creator ( )"));
}

void TestOpDialogApply::cancelWritesNothingAndRevertsNothing()
{
    const ShownOptions shown;
    shown.window.check("checkBox_allow_copy", false);
    shown.window.press("pushButton_cancel");
    QVERIFY(!shown.dialog.isVisible());
    QVERIFY(!QFile::exists(m_sandbox->settingsFile()));
    QVERIFY(!QFile::exists(m_sandbox->markFile()));
    QCOMPARE(shown.window.value("checkBox_allow_copy"), QString("No"));
}

void TestOpDialogApply::closingWritesNothing()
{
    ShownOptions shown;
    shown.window.type("lineEdit_title", "x");
    QVERIFY(shown.dialog.close());
    QVERIFY(!shown.dialog.isVisible());
    QVERIFY(!QFile::exists(m_sandbox->settingsFile()));
}

void TestOpDialogApply::editingCancelledShowsAgainAndIsSavedLater()
{
    ShownOptions shown;
    shown.window.type("lineEdit_author", "Zoë");
    shown.window.press("pushButton_cancel");
    shown.dialog.show();
    QCOMPARE(shown.window.value("lineEdit_author"), QString("Zoë"));
    shown.window.press("pushButton_apply");
    QCOMPARE(m_sandbox->stored("Annot/Aut"), QString("Zoë"));
}

void TestOpDialogApply::markFile_data()
{
    QTest::addColumn<QString>("field");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("expected");

    const auto row = [](const char *field, const char *text, const QByteArray &expected) {
        QTest::addRow("%s (%s)", field, text) << field << text << expected;
    };
    row("lineEdit_title", "",
        "[ /Title ()\n /Author () \n /Subject () \n /Keywords () \n /Creator () \n /Producer () "
        "\n /DOCINFO pdfmark");
    row("lineEdit_title", "T",
        "[ /Title (T)\n /Author () \n /Subject () \n /Keywords () \n /Creator () \n /Producer () "
        "\n /DOCINFO pdfmark");
    row("lineEdit_author", "A",
        "[ /Title ()\n /Author (A) \n /Subject () \n /Keywords () \n /Creator () \n /Producer () "
        "\n /DOCINFO pdfmark");
    row("lineEdit_subject", "S",
        "[ /Title ()\n /Author () \n /Subject (S) \n /Keywords () \n /Creator () \n /Producer () "
        "\n /DOCINFO pdfmark");
    row("lineEdit_keywords", "K",
        "[ /Title ()\n /Author () \n /Subject () \n /Keywords (K) \n /Creator () \n /Producer () "
        "\n /DOCINFO pdfmark");
    row("lineEdit_creator", "C",
        "[ /Title ()\n /Author () \n /Subject () \n /Keywords () \n /Creator (C) \n /Producer () "
        "\n /DOCINFO pdfmark");
    row("lineEdit_producer", "P",
        "[ /Title ()\n /Author () \n /Subject () \n /Keywords () \n /Creator () \n /Producer (P) "
        "\n /DOCINFO pdfmark");
    row("lineEdit_author", "unbalanced (",
        "[ /Title ()\n /Author (unbalanced () \n /Subject () \n /Keywords () \n /Creator () "
        "\n /Producer () \n /DOCINFO pdfmark");
    row("lineEdit_subject", "Zoë",
        "[ /Title ()\n /Author () \n /Subject (Zo\xc3\xab) \n /Keywords () \n /Creator () "
        "\n /Producer () \n /DOCINFO pdfmark");
}

void TestOpDialogApply::markFile()
{
    QFETCH(QString, field);
    QFETCH(QString, text);
    const ShownOptions shown;
    shown.window.type(field, text);
    shown.window.press("pushButton_apply");
    QTEST(contentOf(m_sandbox->markFile()), "expected");
}

void TestOpDialogApply::markFileOfAPageThatIsOff()
{
    const ShownOptions shown;
    shown.window.type("lineEdit_title", "T");
    shown.window.switchPage(descriptionPage, false);
    shown.window.press("pushButton_apply");
    QCOMPARE(contentOf(m_sandbox->markFile()),
             QByteArray(" [ /Creator ( ) \n /Producer ( ) \n /DOCINFO pdfmark"));
}

void TestOpDialogApply::markFileThatCannotBeWritten()
{
    QVERIFY(QDir().mkdir(m_sandbox->markFile()));
    const ShownOptions shown;
    shown.window.press("pushButton_apply");
    QVERIFY(!shown.dialog.isVisible());
    QCOMPARE(m_sandbox->stored("Annot/PDFA"), QString("No"));
    QVERIFY(QFileInfo(m_sandbox->markFile()).isDir());
}

QTEST_MAIN(TestOpDialogApply)
#include "tst_opdialogapply.moc"
