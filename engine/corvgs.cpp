// The PDF engine beside the program: makes the parts of a document smaller and proves the copy. All
// that reads the document runs confined, so that whatever it contains, only the copy can change.

#include "ghostscript/installation.h"
#include "program.h"
#include "system/programs.h"

int main(int argc, char *argv[])
{
    const engine::Settings settings = {
        .ghostscript = engine::findGhostscript(CORVANE_GHOSTSCRIPT),
        .readers = {.texts = engine::findProgram(CORVANE_PDFTOTEXT, "pdftotext"),
                    .pictures = engine::findProgram(CORVANE_PDFTOPPM, "pdftoppm")},
    };
    return engine::runCommandLine(argc, argv, settings);
}
