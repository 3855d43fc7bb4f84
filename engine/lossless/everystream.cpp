#include "everystream.h"

#include "pdf/walk.h"
#include "system/progress.h"

#include <qpdf/QPDFExc.hh>

namespace engine {

void forEveryStream(QPDF &document, const std::function<void(QPDFObjectHandle)> &work)
{
    for (QPDFObjectHandle object : reachableObjects(document)) {
        if (!object.isStream())
            continue;
        try {
            work(object);
        } catch (const QPDFExc &) {
        }
        reportProgress();
    }
}

} // namespace engine
