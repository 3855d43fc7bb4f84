#include "src/process.h"
#include "src/secdialog.h"
#include "support/connections.h"
#include "support/modal.h"
#include "support/sandbox.h"
#include "ui_process.h"

#include <QGroupBox>
#include <QHeaderView>
#include <QImageReader>
#include <QLabel>
#include <QLineEdit>
#include <QMetaMethod>
#include <QProcess>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QTableWidget>
#include <QTest>
#include <QTimer>

#include <memory>

namespace {

bool sameImage(const QIcon &icon, const QString &path)
{
    return icon.pixmap(48).toImage() == QIcon(path).pixmap(48).toImage();
}

} // namespace

class TestMainForm : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void widgets_data();
    void widgets();
    void childrenInOrder_data();
    void childrenInOrder();
    void formBeforeTheWindowFillsIt();
    void buttons_data();
    void buttons();
    void labels();
    void table();
    void tableStaysInOrderOfAddingUntilAHeaderIsClicked();
    void progressBar();
    void noOverlap();
    void windowItself();
    void fixedSize();
    void centredOnTheFirstScreen();
    void styleSheets();
    void background();
    void slotsInOrder();
    void connections_data();
    void connections();
    void aboutCanBeSetAgain();
    void dialogsGiveTheirResult_data();
    void dialogsGiveTheirResult();
    void standingProcessesAreNoChildren();
    void previewTimerRestsUntilAsked();
    void pictures_data();
    void pictures();
    void secDialogIsBlank();

private:
    template <typename Widget>
    Widget *find(const char *name) const
    {
        return m_window->findChild<Widget *>(name);
    }

    std::unique_ptr<Sandbox> m_sandbox;
    std::unique_ptr<Process> m_window;
};

void TestMainForm::init()
{
    m_sandbox = std::make_unique<Sandbox>();
    m_window = std::make_unique<Process>();
}

void TestMainForm::cleanup()
{
    m_window.reset();
    m_sandbox.reset();
}

void TestMainForm::widgets_data()
{
    QTest::addColumn<QString>("parent");
    QTest::addColumn<QString>("className");
    QTest::addColumn<QRect>("geometry");

    const auto row = [](const char *name, const char *parent, const char *className, QRect rect) {
        QTest::newRow(name) << parent << className << rect;
    };
    row("progressBar", "process", "QProgressBar", {9, 321, 491, 16});
    row("aboutButton", "process", "QPushButton", {440, 260, 54, 54});
    row("runButton", "process", "QPushButton", {380, 260, 54, 54});
    row("groupBox", "process", "QGroupBox", {8, 10, 491, 241});
    row("inputfiletableWidget", "groupBox", "QTableWidget", {10, 20, 471, 181});
    row("label", "groupBox", "QLabel", {10, 0, 91, 21});
    row("openfileButton", "groupBox", "QPushButton", {10, 201, 104, 31});
    row("removeButton", "groupBox", "QPushButton", {190, 201, 104, 31});
    row("removeallButton", "groupBox", "QPushButton", {370, 201, 104, 31});
    row("outputfolderlabel", "process", "QLabel", {12, 260, 101, 20});
    row("outputfolderEdit", "process", "QLineEdit", {11, 289, 241, 20});
    row("outputButton", "process", "QPushButton", {260, 282, 41, 31});
    row("pushButton_option", "process", "QPushButton", {320, 260, 54, 54});
}

void TestMainForm::widgets()
{
    const auto *widget = find<QWidget>(QTest::currentDataTag());
    QVERIFY(widget);
    QTEST(widget->parentWidget()->objectName(), "parent");
    QTEST(QString(widget->metaObject()->className()), "className");
    QTEST(widget->geometry(), "geometry");
    QVERIFY(widget->isEnabled());
}

void TestMainForm::childrenInOrder_data()
{
    QTest::addColumn<QString>("names");
    QTest::newRow("process") << "progressBar aboutButton runButton groupBox outputfolderlabel"
                                " outputfolderEdit outputButton pushButton_option";
    QTest::newRow("groupBox")
        << "inputfiletableWidget label openfileButton removeButton removeallButton";
}

void TestMainForm::childrenInOrder()
{
    const QString parent = QTest::currentDataTag();
    const auto *widget = parent == "process" ? m_window.get() : find<QWidget>(parent.toLatin1());
    QStringList names;
    for (const QWidget *child :
         widget->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly))
        names.append(child->objectName());
    QTEST(names.join(' '), "names");
}

void TestMainForm::formBeforeTheWindowFillsIt()
{
    QWidget window;
    Ui_process form;
    form.setupUi(&window);
    QCOMPARE(form.progressBar->value(), 45);
    QCOMPARE(window.windowTitle(), QString());
}

void TestMainForm::buttons_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("picture");
    QTest::addColumn<int>("iconSize");

    QTest::newRow("aboutButton") << ""
                                 << "about12.png" << 64;
    QTest::newRow("runButton") << ""
                               << "about13.png" << 64;
    QTest::newRow("pushButton_option") << ""
                                       << "about14.png" << 64;
    QTest::newRow("openfileButton") << "Add"
                                    << "add1.ico" << 24;
    QTest::newRow("removeButton") << "Romove"
                                  << "remov1e.ico" << 24;
    QTest::newRow("removeallButton") << "Remove All"
                                     << "trash_green_empty.ico" << 24;
    QTest::newRow("outputButton") << ""
                                  << "folder_green_open.ico" << 28;
}

void TestMainForm::buttons()
{
    const auto *button = find<QPushButton>(QTest::currentDataTag());
    QVERIFY(button->isFlat());
    QVERIFY(!button->isDefault());
    QTEST(button->text(), "text");
    QFETCH(QString, picture);
    QVERIFY(sameImage(button->icon(), ":/iconoption/icons/" + picture));
    QFETCH(int, iconSize);
    QCOMPARE(button->iconSize(), QSize(iconSize, iconSize));
}

void TestMainForm::labels()
{
    QCOMPARE(find<QGroupBox>("groupBox")->title(), QString());
    QCOMPARE(find<QLabel>("label")->text(), QString("File List"));
    QCOMPARE(find<QLabel>("label")->font().pointSize(), 13);
    const auto *output = find<QLabel>("outputfolderlabel");
    QCOMPARE(output->text(), QString("Output Folder"));
    QCOMPARE(output->alignment(), Qt::AlignLeading | Qt::AlignLeft | Qt::AlignVCenter);
    const auto *edit = find<QLineEdit>("outputfolderEdit");
    QCOMPARE(edit->text(), QString());
    QVERIFY(!edit->isReadOnly());
    QCOMPARE(edit->palette().color(QPalette::Base), QColor(Qt::white));
    QCOMPARE(edit->palette().color(QPalette::Button), QColor(Qt::white));
}

void TestMainForm::table()
{
    const auto *table = find<QTableWidget>("inputfiletableWidget");
    QStringList headers;
    for (int column = 0; column < table->columnCount(); ++column)
        headers.append(table->horizontalHeaderItem(column)->text());
    QCOMPARE(headers, QStringList({"PDF File", "File Size", "Result"}));
    QCOMPARE(table->rowCount(), 0);
    QVERIFY(table->isSortingEnabled());
    QVERIFY(table->autoFillBackground());
    QCOMPARE(table->selectionBehavior(), QAbstractItemView::SelectRows);
    QCOMPARE(table->editTriggers(), QAbstractItemView::NoEditTriggers);
    const QHeaderView *across = table->horizontalHeader();
    QCOMPARE(across->defaultSectionSize(), 120);
    QCOMPARE(across->minimumSectionSize(), 70);
    QVERIFY(across->stretchLastSection());
    const QHeaderView *down = table->verticalHeader();
    QCOMPARE(down->defaultSectionSize(), 18);
    QVERIFY(!down->stretchLastSection());
    // A narrow column shows the end of a path, which is the file's name.
    QCOMPARE(table->textElideMode(), Qt::ElideLeft);
    QVERIFY(!table->wordWrap());
}

void TestMainForm::tableStaysInOrderOfAddingUntilAHeaderIsClicked()
{
    QCOMPARE(find<QTableWidget>("inputfiletableWidget")->horizontalHeader()->sortIndicatorSection(),
             -1);
}

void TestMainForm::progressBar()
{
    const auto *bar = find<QProgressBar>("progressBar");
    QCOMPARE(bar->value(), 0);
    QCOMPARE(bar->text(), QString());
    QVERIFY(!bar->invertedAppearance());
    QVERIFY(!bar->autoFillBackground());
    QVERIFY(!bar->font().strikeOut());
    QCOMPARE(bar->styleSheet(),
             QString("QProgressBar::chunk {\n     background-color: #01F778;\n     width: 10px;\n"
                     "     margin: 0.5px;\n}"));
}

// The list's caption and its table share one line of pixels, which neither paints.
void TestMainForm::noOverlap()
{
    const auto overlap = [](const QWidget *one, const QWidget *other) {
        const QRect common = one->geometry().intersected(other->geometry());
        return std::min(common.width(), common.height()) > 1;
    };
    for (QWidget *parent : {static_cast<QWidget *>(m_window.get()), find<QWidget>("groupBox")}) {
        const auto children =
            parent->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly);
        for (const QWidget *one : children) {
            QVERIFY2(parent->rect().contains(one->geometry()), qPrintable(one->objectName()));
            for (const QWidget *other : children) {
                QVERIFY2(one == other || !overlap(one, other),
                         qPrintable(one->objectName() + " and " + other->objectName()));
            }
        }
    }
}

void TestMainForm::windowItself()
{
    QCOMPARE(m_window->objectName(), QString("process"));
    QCOMPARE(m_window->windowTitle(), QString("Corvane"));
    QVERIFY(m_window->isEnabled());
    QVERIFY(m_window->acceptDrops());
    QVERIFY(sameImage(m_window->windowIcon(), ":/iconoption/icons/corvane32.png"));
    const QSizePolicy policy = m_window->sizePolicy();
    QCOMPARE(policy.horizontalPolicy(), QSizePolicy::Preferred);
    QCOMPARE(policy.verticalPolicy(), QSizePolicy::Preferred);
    QCOMPARE(policy.horizontalStretch(), 0);
    QCOMPARE(policy.verticalStretch(), 0);
}

void TestMainForm::fixedSize()
{
    const QSize design(507, 347);
    m_window->show();
    QCOMPARE(m_window->size(), design);
    QCOMPARE(m_window->minimumSize(), design);
    QCOMPARE(m_window->maximumSize(), design);
    m_window->resize(800, 600);
    QCOMPARE(m_window->size(), design);
}

void TestMainForm::centredOnTheFirstScreen()
{
    QCOMPARE(QGuiApplication::screens().size(), qsizetype(2));
    const QRect first = QGuiApplication::screens().constFirst()->geometry();
    QCOMPARE(first, QRect(800, 100, 1280, 1024));
    QCursor::setPos(QGuiApplication::screens().constLast()->geometry().center());
    const Process window;
    QCOMPARE(window.pos(), first.center() - QRect(0, 0, 507, 347).center());
}

void TestMainForm::styleSheets()
{
    const auto *table = find<QTableWidget>("inputfiletableWidget");
    QCOMPARE(table->styleSheet(), QString("background-color:transparent;border:1px solid #6c6c6c;"
                                          "border-radius: 2px;"));
    QCOMPARE(table->horizontalHeader()->styleSheet(),
             QString("QHeaderView::section {background-color:GhostWhite;color: black;"
                     "padding-top: 4px;border: 0px solid #6c6c6c;}"));
    QCOMPARE(table->verticalHeader()->styleSheet(),
             QString("QHeaderView::section {background-color:GhostWhite;color: black;"
                     "padding-left: 4px;border: 0px solid #6c6c6c;}"));
    QCOMPARE(find<QPushButton>("runButton")->styleSheet(), QString());
}

void TestMainForm::background()
{
    QVERIFY(m_window->autoFillBackground());
    const QImage expected = QPixmap(":/iconoption/icons/stock-ved.jpg")
                                .scaled(507, 347, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                                .toImage();
    QCOMPARE(m_window->palette().brush(QPalette::Window).texture().toImage(), expected);
}

void TestMainForm::slotsInOrder()
{
    const QMetaObject &meta = Process::staticMetaObject;
    QStringList slotList;
    for (int index = meta.methodOffset(); index < meta.methodCount(); ++index) {
        const QMetaMethod method = meta.method(index);
        QCOMPARE(method.methodType(), QMetaMethod::Slot);
        slotList.append((QByteArray(method.typeName()) + ' ' + method.methodSignature()).data());
    }
    const QStringList expected = {"void convertbegin()",
                                  "int enteroption()",
                                  "void setopenfile()",
                                  "void setremove()",
                                  "void setopenselected()",
                                  "void setremoveall()",
                                  "void setoutputfile()",
                                  "void setabout()",
                                  "int setabout1()",
                                  "QString getOption()",
                                  "QString getAnnooption()",
                                  "QString getImageOption()",
                                  "QString getSecurityOtion()",
                                  "void dragEnterEvent(QDragEnterEvent*)",
                                  "void dropEvent(QDropEvent*)",
                                  "void dopreview()",
                                  "void setpreview()"};
    QCOMPARE(slotList, expected);
}

void TestMainForm::connections_data()
{
    QTest::addColumn<QString>("sender");
    QTest::addColumn<QByteArray>("signal");
    QTest::addColumn<QByteArray>("slot");

    const auto row = [](const char *sender, const char *signal, const char *slot) {
        QTest::addRow("%s %s", sender, signal) << sender << QByteArray(signal) << QByteArray(slot);
    };
    row("runButton", SIGNAL(clicked(bool)), SLOT(convertbegin()));
    row("pushButton_option", SIGNAL(clicked(bool)), SLOT(enteroption()));
    row("openfileButton", SIGNAL(clicked()), SLOT(setopenfile()));
    row("inputfiletableWidget", SIGNAL(itemDoubleClicked(QTableWidgetItem *)),
        SLOT(setopenselected()));
    row("removeButton", SIGNAL(clicked()), SLOT(setremove()));
    row("removeallButton", SIGNAL(clicked()), SLOT(setremoveall()));
    row("inputfiletableWidget", SIGNAL(itemClicked(QTableWidgetItem *)), SLOT(setpreview()));
    row("inputfiletableWidget", SIGNAL(itemSelectionChanged()), SLOT(setpreview()));
    row("outputButton", SIGNAL(clicked()), SLOT(setoutputfile()));
    row("aboutButton", SIGNAL(clicked()), SLOT(setabout1()));
}

// A disconnect succeeds only if exactly this connection was there.
void TestMainForm::connections()
{
    QFETCH(QString, sender);
    QFETCH(QByteArray, signal);
    QFETCH(QByteArray, slot);
    QObject *object = m_window->findChild<QObject *>(sender);
    QCOMPARE(connectionCount(object, signal), 1);
    QVERIFY(QObject::disconnect(object, signal, m_window.get(), slot));
    QCOMPARE(connectionCount(object, signal), 0);
}

void TestMainForm::aboutCanBeSetAgain()
{
    m_window->setWindowTitle("other");
    find<QPushButton>("aboutButton")->setIcon(QIcon());
    QVERIFY(QMetaObject::invokeMethod(m_window.get(), "setabout"));
    QCOMPARE(m_window->windowTitle(), QString("Corvane"));
    QVERIFY(sameImage(find<QPushButton>("aboutButton")->icon(), ":/iconoption/icons/about12.png"));
}

// The window has no process among its children: it deletes none.
void TestMainForm::dialogsGiveTheirResult_data()
{
    QTest::addColumn<bool>("accepted");
    for (const char *slot : {"enteroption", "setabout1"}) {
        QTest::addRow("%s accepted", slot) << true;
        QTest::addRow("%s rejected", slot) << false;
    }
}

void TestMainForm::dialogsGiveTheirResult()
{
    QFETCH(bool, accepted);
    const NextModal dialog([accepted](QWidget &shown) {
        QMetaObject::invokeMethod(&shown, accepted ? "accept" : "reject");
    });
    const QByteArray slot = QByteArray(QTest::currentDataTag()).split(' ').constFirst();
    int result = -1;
    QVERIFY(QMetaObject::invokeMethod(m_window.get(), slot, Q_RETURN_ARG(int, result)));
    QVERIFY(dialog.wasShown());
    QCOMPARE(result, accepted ? 1 : 0);
}

void TestMainForm::standingProcessesAreNoChildren()
{
    QVERIFY(m_window->findChildren<QProcess *>().isEmpty());
}

void TestMainForm::previewTimerRestsUntilAsked()
{
    auto *timer = m_window->findChild<QTimer *>({}, Qt::FindDirectChildrenOnly);
    QVERIFY(timer);
    QVERIFY(!timer->isActive());
    QVERIFY(!timer->isSingleShot());
    QVERIFY(QMetaObject::invokeMethod(m_window.get(), "setpreview"));
    QVERIFY(timer->isActive());
    QCOMPARE(timer->interval(), 300);
    QVERIFY(QObject::disconnect(timer, SIGNAL(timeout()), m_window.get(), SLOT(dopreview())));
}

void TestMainForm::pictures_data()
{
    QTest::addColumn<QByteArray>("kind");
    QTest::addColumn<QSize>("size");

    QTest::newRow("corvane32.png") << QByteArray("png") << QSize(32, 32);
    QTest::newRow("graybackgr.png") << QByteArray("png") << QSize(500, 500);
    QTest::newRow("stock-ved.jpg") << QByteArray("jpeg") << QSize(145, 96);
    QTest::newRow("alert.ico") << QByteArray("ico") << QSize(32, 32);
    QTest::newRow("about12.png") << QByteArray("png") << QSize(48, 48);
    QTest::newRow("about13.png") << QByteArray("png") << QSize(48, 48);
    QTest::newRow("about14.png") << QByteArray("png") << QSize(48, 48);
    QTest::newRow("add1.ico") << QByteArray("ico") << QSize(32, 32);
    QTest::newRow("remov1e.ico") << QByteArray("ico") << QSize(32, 32);
    QTest::newRow("trash_green_empty.ico") << QByteArray("ico") << QSize(32, 32);
    QTest::newRow("folder_green_open.ico") << QByteArray("ico") << QSize(32, 32);
}

void TestMainForm::pictures()
{
    const QString name = QTest::currentDataTag();
    const QByteArray picture = contentOf(":/iconoption/icons/" + name);
    QVERIFY(!picture.isEmpty());
    QVERIFY(picture == contentOf(PICTURES + name));
    QImageReader reader(":/iconoption/icons/" + name);
    QTEST(reader.format(), "kind");
    QVERIFY(reader.imageCount() <= 1);
    const QImage image = reader.read();
    QTEST(image.size(), "size");
}

void TestMainForm::secDialogIsBlank()
{
    const SecDialog dialog(nullptr);
    QCOMPARE(dialog.objectName(), QString("SecDialog"));
    QCOMPARE(dialog.windowTitle(), QString("Dialog"));
    QCOMPARE(dialog.size(), QSize(400, 300));
    QVERIFY(dialog.findChildren<QWidget *>().isEmpty());
}

QTEST_MAIN(TestMainForm)
#include "tst_mainform.moc"
