#include "src/aboutdialog.h"

#include <QDesktopServices>
#include <QLabel>
#include <QMetaMethod>
#include <QSignalSpy>
#include <QTest>
#include <QUrl>

#include <memory>

namespace {

// Takes the place of the browser and the mail program.
class OpenedUrls : public QObject
{
    Q_OBJECT

public:
    OpenedUrls()
    {
        for (const char *scheme : {"https", "http", "mailto"})
            QDesktopServices::setUrlHandler(scheme, this, "open");
    }
    ~OpenedUrls() override
    {
        for (const char *scheme : {"https", "http", "mailto"})
            QDesktopServices::unsetUrlHandler(scheme);
    }
    QList<QUrl> urls;

public slots:
    void open(const QUrl &url) { urls.append(url); }
};

// The text of a label is set as one left-aligned line: a click near its start hits the link.
void clickLink(QLabel *label)
{
    QTest::mouseMove(label, {20, label->height() / 2});
    QTest::mouseClick(label, Qt::LeftButton, Qt::NoModifier, {20, label->height() / 2});
}

} // namespace

class TestAboutDialog : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void labels_data();
    void labels();
    void texts();
    void linkLabels();
    void fixedSize();
    void background();
    void slotsInOrder();
    void homePageOpensOnce();
    void mailOpensNothing();
    void slotsOpenTheirUrl();
    void warnsOncePerConstruction();
    void showsTheSameAgain();

private:
    template <typename Widget>
    Widget *find(const char *name) const
    {
        return m_dialog->findChild<Widget *>(name);
    }
    std::unique_ptr<AboutDialog> m_dialog;
};

void TestAboutDialog::init()
{
    m_dialog = std::make_unique<AboutDialog>(nullptr);
}

void TestAboutDialog::cleanup()
{
    m_dialog.reset();
}

void TestAboutDialog::labels_data()
{
    QTest::addColumn<QRect>("geometry");
    QTest::addColumn<int>("points");
    QTest::newRow("label_3") << QRect(10, 76, 271, 16) << 10;
    QTest::newRow("label_homepage") << QRect(10, 91, 271, 20) << 10;
    QTest::newRow("label_mail") << QRect(10, 108, 271, 20) << 10;
    QTest::newRow("label_4") << QRect(10, 10, 301, 41) << 14;
}

void TestAboutDialog::labels()
{
    const auto *label = find<QLabel>(QTest::currentDataTag());
    QVERIFY(label);
    QTEST(label->geometry(), "geometry");
    QTEST(label->font().pointSize(), "points");
    QCOMPARE(label->alignment(), Qt::AlignLeading | Qt::AlignLeft | Qt::AlignVCenter);
    QStringList names;
    for (const QWidget *child :
         m_dialog->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly))
        names.append(child->objectName());
    QCOMPARE(names, QStringList({"label_3", "label_homepage", "label_mail", "label_4"}));
}

void TestAboutDialog::texts()
{
    QCOMPARE(m_dialog->objectName(), QString("AboutDialog"));
    QCOMPARE(m_dialog->windowTitle(), QString("About"));
    QCOMPARE(find<QLabel>("label_4")->text(), QString("Corvane 2.0"));
    QCOMPARE(find<QLabel>("label_3")->text(), QString(COPYRIGHT));
    QCOMPARE(m_dialog->windowIcon().pixmap(32).toImage(),
             QIcon(":/iconoption/icons/corvane32.png").pixmap(32).toImage());
    QCOMPARE(find<QLabel>("label_homepage")->text(),
             QString("<a href=" HOME_PAGE "> " HOME_PAGE "</a>"));
    QCOMPARE(find<QLabel>("label_mail")->text(),
             QString("<a href=mailto:" SUPPORT_MAIL "> mailto:" SUPPORT_MAIL "</a>"));
}

void TestAboutDialog::linkLabels()
{
    const auto *home = find<QLabel>("label_homepage");
    QVERIFY(home->openExternalLinks());
    QVERIFY(home->wordWrap());
    QCOMPARE(home->inputMethodHints(), Qt::ImhNone);
    QCOMPARE(home->textInteractionFlags(),
             Qt::LinksAccessibleByMouse | Qt::TextEditable | Qt::TextSelectableByMouse);
    const auto *mail = find<QLabel>("label_mail");
    QVERIFY(!mail->openExternalLinks());
    QCOMPARE(mail->textInteractionFlags(), Qt::LinksAccessibleByMouse);
}

void TestAboutDialog::fixedSize()
{
    const QSize design(320, 137);
    m_dialog->show();
    QCOMPARE(m_dialog->size(), design);
    m_dialog->resize(640, 480);
    QCOMPARE(m_dialog->size(), design);
    QCOMPARE(m_dialog->minimumSize(), design);
    QCOMPARE(m_dialog->maximumSize(), design);
}

void TestAboutDialog::background()
{
    QVERIFY(!m_dialog->autoFillBackground());
    const QImage expected = QPixmap(":/iconoption/icons/graybackgr.png")
                                .scaled(320, 137, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                                .toImage();
    QCOMPARE(m_dialog->palette().brush(QPalette::Window).texture().toImage(), expected);
}

void TestAboutDialog::slotsInOrder()
{
    const QMetaObject &meta = AboutDialog::staticMetaObject;
    QStringList methods;
    for (int index = meta.methodOffset(); index < meta.methodCount(); ++index)
        methods.append(meta.method(index).methodSignature());
    QCOMPARE(methods, QStringList({"openMainpage(QString)", "openMailpage(QString)"}));
}

void TestAboutDialog::homePageOpensOnce()
{
    OpenedUrls opened;
    m_dialog->show();
    clickLink(find<QLabel>("label_homepage"));
    QCOMPARE(opened.urls, QList<QUrl>({QUrl(HOME_PAGE)}));
}

void TestAboutDialog::mailOpensNothing()
{
    OpenedUrls opened;
    m_dialog->show();
    auto *mail = find<QLabel>("label_mail");
    const QSignalSpy activated(mail, &QLabel::linkActivated);
    clickLink(mail);
    QCOMPARE(activated.count(), 1); // the click did hit the link
    QCOMPARE(opened.urls, QList<QUrl>());
}

void TestAboutDialog::slotsOpenTheirUrl()
{
    OpenedUrls opened;
    m_dialog->openMainpage("https://corvane.example/a");
    m_dialog->openMailpage("mailto:a@corvane.example");
    QCOMPARE(opened.urls,
             QList<QUrl>({QUrl("https://corvane.example/a"), QUrl("mailto:a@corvane.example")}));
    // It is connected though the label opens its link itself.
    emit find<QLabel>("label_homepage")->linkActivated("https://corvane.example/b");
    QCOMPARE(opened.urls.last(), QUrl("https://corvane.example/b"));
}

void TestAboutDialog::warnsOncePerConstruction()
{
    static int warnings;
    warnings = 0;
    const auto former =
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &message) {
            if (message.contains("No such slot AboutDialog::openmailpage(QString)"))
                ++warnings;
        });
    const AboutDialog one(nullptr);
    const AboutDialog other(nullptr);
    qInstallMessageHandler(former);
    QCOMPARE(warnings, 2);
}

void TestAboutDialog::showsTheSameAgain()
{
    m_dialog->show();
    const QImage first = m_dialog->grab().toImage();
    const auto children = m_dialog->findChildren<QWidget *>();
    QTest::keyClick(m_dialog.get(), Qt::Key_Escape);
    QVERIFY(m_dialog->isHidden());
    m_dialog->show();
    QCOMPARE(m_dialog->grab().toImage(), first);
    QCOMPARE(m_dialog->findChildren<QWidget *>(), children);
}

QTEST_MAIN(TestAboutDialog)
#include "tst_aboutdialog.moc"
