// The windows lie on light pictures of their own, so their texts must be dark whatever the
// desktop's palette is.

#include "src/aboutdialog.h"
#include "src/opdialog.h"
#include "src/process.h"
#include "support/contrast.h"
#include "support/darkdesktop.h"
#include "support/dragdrop.h"
#include "support/sandbox.h"

#include <QApplication>
#include <QHeaderView>
#include <QLabel>
#include <QTableWidget>
#include <QTest>

#include <memory>

class TestPalette : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void captionsAreReadable();
    void tableIsReadable();
    void linksAreReadable();
    void textsAreDarkOnThePicture_data();
    void textsAreDarkOnThePicture();

private:
    std::unique_ptr<Sandbox> m_sandbox;
    std::unique_ptr<Process> m_window;
    QPalette m_former;
};

void TestPalette::init()
{
    m_former = QApplication::palette();
    QApplication::setPalette(darkDesktop());
    m_sandbox = std::make_unique<Sandbox>();
    m_window = std::make_unique<Process>();
    m_window->show();
}

void TestPalette::cleanup()
{
    m_window.reset();
    m_sandbox.reset();
    QApplication::setPalette(m_former);
}

void TestPalette::captionsAreReadable()
{
    const QImage picture = m_window->grab().toImage();
    for (const char *name : {"label", "outputfolderlabel"}) {
        const auto *label = m_window->findChild<QLabel *>(name);
        const QRect place(label->mapTo(m_window.get(), QPoint()), label->size());
        QVERIFY2(paintedContrast(picture, place) >= 4.5, name);
    }
}

void TestPalette::tableIsReadable()
{
    auto *table = m_window->findChild<QTableWidget *>("inputfiletableWidget");
    dropUrls(*m_window, {QUrl::fromLocalFile("/x/second.pdf"), QUrl::fromLocalFile("/first.pdf")});
    table->setItem(1, 2, new QTableWidgetItem("Succeed"));
    table->clearSelection();
    const QImage picture = m_window->grab().toImage();
    const auto place = [this](const QWidget *viewport, const QRect &rect) {
        return QRect(viewport->mapTo(m_window.get(), rect.topLeft()), rect.size());
    };
    for (const auto &[row, column] : {std::pair{0, 0}, {1, 0}, {1, 2}}) {
        const QRect cell = table->visualItemRect(table->item(row, column)).adjusted(2, 2, -2, -2);
        QVERIFY(paintedContrast(picture, place(table->viewport(), cell)) >= 4.5);
    }
    table->selectRow(1);
    const QRect selected = table->visualItemRect(table->item(1, 2)).adjusted(2, 2, -2, -2);
    QVERIFY(paintedContrast(m_window->grab().toImage(), place(table->viewport(), selected)) >= 4.5);
    for (int column = 0; column < 3; ++column) {
        const QHeaderView *header = table->horizontalHeader();
        const QRect section(header->sectionViewportPosition(column), 0, 100, header->height());
        QVERIFY(paintedContrast(picture, place(header->viewport(), section)) >= 4.5);
    }
}

void TestPalette::linksAreReadable()
{
    AboutDialog about(nullptr);
    about.show();
    const QImage picture = about.grab().toImage();
    for (const char *name : {"label_homepage", "label_mail", "label_3", "label_4"})
        QVERIFY2(paintedContrast(picture, about.findChild<QLabel *>(name)->geometry()) >= 4.5,
                 name);
}

void TestPalette::textsAreDarkOnThePicture_data()
{
    QTest::addColumn<QString>("window");
    for (const char *window : {"process", "OpDialog", "AboutDialog"})
        QTest::newRow(window) << window;
}

// Text of any kind of the form's widgets, links included, on any pixel of the picture. The parts of
// the table have their style sheet's own colours, which tableIsReadable() measures.
void TestPalette::textsAreDarkOnThePicture()
{
    QFETCH(QString, window);
    const OpDialog options(nullptr);
    const AboutDialog about(nullptr);
    const QWidget &form = window == "process"    ? static_cast<const QWidget &>(*m_window)
                          : window == "OpDialog" ? static_cast<const QWidget &>(options)
                                                 : static_cast<const QWidget &>(about);
    const QImage picture = form.palette().brush(QPalette::Window).texture().toImage();
    QCOMPARE(picture.size(), form.size());
    double darkest = 1;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            darkest = std::min(darkest, luminance(picture.pixel(x, y)));
    }
    double least = 21;
    for (const QWidget *widget : form.findChildren<QWidget *>()) {
        if (widget->objectName().isEmpty() || widget->objectName().startsWith("qt_"))
            continue;
        for (const QPalette::ColorRole role :
             {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::Link}) {
            const QColor text = widget->palette().color(QPalette::Active, role);
            const double here = contrast(luminance(text.rgb()), darkest);
            QVERIFY2(here >= 4.5, qPrintable(widget->objectName()));
            least = std::min(least, here);
        }
    }
    qInfo("least contrast %.1f", least);
}

QTEST_MAIN(TestPalette)
#include "tst_palette.moc"
