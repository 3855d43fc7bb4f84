#include "darkdesktop.h"

QPalette darkDesktop()
{
    QPalette palette(QColor(45, 45, 45));
    for (const QPalette::ColorRole role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::BrightText})
        palette.setColor(role, Qt::white);
    palette.setColor(QPalette::Window, QColor(30, 30, 30));
    palette.setColor(QPalette::Base, QColor(20, 20, 20));
    palette.setColor(QPalette::PlaceholderText, QColor(160, 160, 160));
    palette.setColor(QPalette::Link, QColor(130, 190, 255));
    return palette;
}
