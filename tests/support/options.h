#pragma once

#include <QString>
#include <QStringList>

#include <span>

/// What the options dialog lets its user set.
struct Option
{
    enum Kind {
        page,        ///< an item of the list with its check mark
        type,        ///< of downsampling; "Closed", its first item, hides the resolution
        compression, ///< of images
        resolution,  ///< a text without blanks, never empty
        box,         ///< a check box
        text,
    };

    const char *key;     ///< in the settings file
    const char *control; ///< its object name; a page goes by its text
    Kind kind;
    const char *byDefault; ///< what is shown without a settings file, as it is stored
    const char *reset;     ///< what Reset All makes of it
    int lastItem = -1;     ///< of a combo box

    [[nodiscard]] bool isFlag() const { return kind == page || kind == box; }
    /// A value that Reset All changes.
    [[nodiscard]] QString other() const;
    /// The signal that tells of its change, as SIGNAL() writes it.
    [[nodiscard]] const char *signal() const;
};

/// All of them, in the order in which they are written.
std::span<const Option> allOptions();

/// The key of a control.
QString keyOf(const QString &control);

/// The three widgets that a type's "Closed" hides.
QStringList trioOf(const QString &typeControl);
/// Those of all types.
QStringList allTrios();
