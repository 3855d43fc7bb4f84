#pragma once

#include <QMap>
#include <QStringList>

class QWidget;

/// Compresses files through the main window: adds them, sets the folder, presses the run button and
/// waits. Gives the verdicts in the order of the files.
QStringList compress(QWidget &mainWindow, const QStringList &inputs, const QString &outputFolder);
