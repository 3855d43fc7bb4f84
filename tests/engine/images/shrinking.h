#pragma once

#include "engine/images/takeimages.h"

#include <QByteArray>
#include <QStringList>

/// Images made smaller by the album, from the survey to their places, with the real Ghostscript.
namespace shrinking {

/// The window's switches about images as they are by default; later ones take the place of those of
/// the same name.
std::vector<std::string> words(const QStringList &changes = {});

struct Result
{
    QByteArray document;
    engine::TakenImages taken;
    int albumPages = 0;
    QByteArray album;
    QByteArray written; ///< what Ghostscript made of it
};
Result shrunk(const QByteArray &document, const QStringList &changes = {},
              const std::set<int> &excluded = {});

} // namespace shrinking
