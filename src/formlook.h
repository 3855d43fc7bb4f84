#pragma once

class QFont;
class QLabel;
class QString;
class QWidget;

/// What the three windows share in looks. Their forms have fixed rectangles, drawn where a point
/// is a pixel, and lie on light pictures of our own.
namespace formlook {

/// Lets every font that the form itself chose keep its point size and be drawn at as many pixels,
/// whatever the screen's dpi. The default font stays as the desktop has it, up to the size that the
/// form's rectangles hold.
void fitFonts(QWidget &form);

/// The same font, drawn `font.pointSize()` pixels high.
QFont pointsAsPixels(const QFont &font);

/// Lays the form on a picture, scaled to its present size, and gives it colours that are readable
/// on a light picture under any desktop palette. The picture is the palette's Window brush.
void layOnPicture(QWidget &form, const QString &picturePath);

/// Gives the links in a label that lies on a picture the colour of the label's palette. Call it
/// once the label has its text.
void colourLinks(QLabel &label);

} // namespace formlook
