// The same work as the window's, without one: every processor, any number of files, many machines.

#include "batch.h"
#include "output.h"

#include <QCoreApplication>

#include <clocale>
#include <cstring>
#include <langinfo.h>

namespace {

// Qt 6 takes file names for UTF-8 and warns, on standard error, where the locale says otherwise,
// such as in the bare "C" of many batch systems.
void useUtf8()
{
    std::setlocale(LC_CTYPE, "");
    if (std::strcmp(nl_langinfo(CODESET), "UTF-8") != 0)
        qputenv("LC_ALL", "C.UTF-8");
}

} // namespace

int main(int argc, char *argv[])
{
    useUtf8();
    const QCoreApplication application(argc, argv);
    try {
        return static_cast<int>(batch::run(QCoreApplication::arguments().mid(1)));
    } catch (const batch::Refusal &refusal) {
        batch::complain(refusal.text());
        return static_cast<int>(refusal.code());
    }
}
