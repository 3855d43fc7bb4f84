// Pictures of every window: corvane_screenshots FOLDER FONT POINTS light|dark RATIO

#include "src/aboutdialog.h"
#include "src/opdialog.h"
#include "src/process.h"
#include "support/darkdesktop.h"
#include "support/dragdrop.h"
#include "support/sandbox.h"

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QFontInfo>
#include <QLineEdit>
#include <QListWidget>
#include <QProgressBar>
#include <QTableWidget>

namespace {

class Camera
{
public:
    explicit Camera(const QDir &folder)
        : m_folder(folder)
    {
    }

    void take(QWidget &window, const QString &name) const
    {
        window.show();
        QCoreApplication::processEvents();
        if (!window.grab().save(m_folder.filePath(name + ".png")))
            qFatal("cannot write %s.png", qPrintable(name));
    }

private:
    QDir m_folder;
};

void useFont(const QString &family, int points)
{
    const QFont font(family, points);
    if (QFontInfo(font).family() != family)
        qFatal("no font %s", qPrintable(family));
    QApplication::setFont(font);
}

void takeOptions(const Camera &camera)
{
    OpDialog options;
    auto *pages = options.findChild<QListWidget *>("listWidge_option");
    camera.take(options, "options-image");
    for (const char *type :
         {"comboBox_clr_down_type", "comboBox_gry_down_type", "comboBox__mno_down_type"})
        options.findChild<QComboBox *>(type)->setCurrentIndex(0);
    camera.take(options, "options-image-closed");
    pages->setCurrentRow(1);
    camera.take(options, "options-fonts");
    pages->setCurrentRow(2);
    camera.take(options, "options-security");
    pages->setCurrentRow(3);
    camera.take(options, "options-description");
    options.findChild<QLineEdit *>("lineEdit_userpassword")->setText("secret");
    QMetaObject::invokeMethod(&options, "setwarning");
    camera.take(options, "options-description-warning");
}

void takeMainWindow(const Camera &camera, const Sandbox &sandbox)
{
    Process window;
    camera.take(window, "main-empty");
    auto *table = window.findChild<QTableWidget *>("inputfiletableWidget");
    for (const char *name : {"Minutes 2024.pdf", "Letter to the archive.pdf", "Map.pdf"})
        dropUrls(window, {QUrl::fromLocalFile(sandbox.addInput(name, 1234567))});
    table->setItem(0, 2, new QTableWidgetItem("Succeed"));
    table->setItem(1, 2, new QTableWidgetItem("Failed"));
    window.findChild<QLineEdit *>("outputfolderEdit")->setText("/home/someone/compressed");
    auto *progress = window.findChild<QProgressBar *>("progressBar");
    progress->setMaximum(3);
    progress->setValue(2);
    camera.take(window, "main");
}

void takeAbout(const Camera &camera)
{
    AboutDialog about;
    camera.take(about, "about");
}

} // namespace

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 6)
        qFatal("usage: corvane_screenshots FOLDER FONT POINTS light|dark RATIO");
    if (!qFuzzyCompare(application.devicePixelRatio(), arguments.at(5).toDouble()))
        qFatal("the screen has another ratio: %f", application.devicePixelRatio());
    if (arguments.at(4) == "dark")
        QApplication::setPalette(darkDesktop());
    useFont(arguments.at(2), arguments.at(3).toInt());

    const Sandbox sandbox; // the options of the user stay out of the pictures
    const Camera camera{QDir(arguments.at(1))};
    takeMainWindow(camera, sandbox);
    takeOptions(camera);
    takeAbout(camera);
    return EXIT_SUCCESS;
}
