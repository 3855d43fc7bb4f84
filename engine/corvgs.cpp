// The PDF engine beside the program: runs Ghostscript so that whatever file it is given, only the
// copy can change.

#include "ghostscript/installation.h"
#include "program.h"

int main(int argc, char *argv[])
{
    const engine::Settings settings = {engine::findGhostscript(CORVANE_GHOSTSCRIPT), {}};
    return engine::runCommandLine(argc, argv, settings);
}
