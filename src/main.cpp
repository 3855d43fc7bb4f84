#include "process.h"

#include <QApplication>
#include <QDir>

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);

    // From here on the only plug-ins are those beside the program, as in an application bundle.
    QDir plugins(QCoreApplication::applicationDirPath());
    plugins.cdUp();
    static_cast<void>(plugins.cd(QStringLiteral("Plugins"))); // without it there are none
    QCoreApplication::setLibraryPaths({plugins.absolutePath()});

    // Remembered folders may be relative: they start at the program.
    QDir::setCurrent(QCoreApplication::applicationDirPath());

    // Qt 6 reads C strings and translations as UTF-8, whatever the locale: no codec is set.

    Process window;
    window.show();
    return QApplication::exec();
}
