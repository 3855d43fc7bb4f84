#pragma once

#include "process/child.h"
#include "proof/drawingplan.h"
#include "settings.h"

namespace engine {

/// Whether both programs can be started.
bool areThere(const ReaderPrograms &programs);

/// The reader at work on the text of an open document, which needs no password. It writes to the
/// open file, in UTF-8, with a form feed behind each page, and says nothing. It can reach nothing
/// else than what is installed. Throws a Failure if the program can't be opened.
ChildTask textTask(const ReaderPrograms &programs, int document, int output,
                   const ReaderLimits &limits);

/// The same with pictures of its pages, as PictureFile reads them.
ChildTask drawingTask(const ReaderPrograms &programs, const Drawing &drawing, int document,
                      int output, const ReaderLimits &limits);

} // namespace engine
