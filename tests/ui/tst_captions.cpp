// The forms have fixed rectangles, and the desktop chooses the font. Every caption must fit.

#include "src/aboutdialog.h"
#include "src/opdialog.h"
#include "src/process.h"
#include "support/sandbox.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFontInfo>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLayout>
#include <QListWidget>
#include <QPushButton>
#include <QStackedWidget>
#include <QStyleOptionButton>
#include <QStyleOptionComboBox>
#include <QStyleOptionGroupBox>
#include <QTableWidget>
#include <QTest>
#include <QTextDocument>

#include <memory>

namespace {

// Text that has a place of its own in a window.
struct Caption
{
    QString text;
    QFont font;
    QRect place;
    Qt::Alignment alignment;
};

// The style options of widgets are filled by protected functions.
template <typename Widget, typename Option>
Option styleOption(const Widget *widget)
{
    struct Opened : Widget
    {
        using Widget::initStyleOption;
    };
    Option option;
    (widget->*&Opened::initStyleOption)(&option);
    return option;
}

QString plainText(const QString &text)
{
    if (!Qt::mightBeRichText(text))
        return text;
    QTextDocument document;
    document.setHtml(text);
    return document.toPlainText();
}

Caption captionOf(const QLabel *label)
{
    return {plainText(label->text()), label->font(), label->contentsRect(), label->alignment()};
}

Caption captionOf(const QPushButton *button)
{
    const auto option = styleOption<QPushButton, QStyleOptionButton>(button);
    QRect place = button->style()->subElementRect(QStyle::SE_PushButtonContents, &option, button);
    if (!button->icon().isNull())
        place.setLeft(place.left() + button->iconSize().width() + 4);
    return {button->text(), button->font(), place, Qt::AlignCenter};
}

Caption captionOf(const QCheckBox *box)
{
    const auto option = styleOption<QCheckBox, QStyleOptionButton>(box);
    return {box->text(), box->font(),
            box->style()->subElementRect(QStyle::SE_CheckBoxContents, &option, box),
            Qt::AlignLeft | Qt::AlignVCenter};
}

Caption captionOf(const QGroupBox *box)
{
    const auto option = styleOption<QGroupBox, QStyleOptionGroupBox>(box);
    const QRect place =
        box->style()->subControlRect(QStyle::CC_GroupBox, &option, QStyle::SC_GroupBoxLabel, box);
    return {box->title(), box->font(), place.intersected(box->rect()), Qt::AlignCenter};
}

QList<Caption> captionsOf(const QComboBox *combo)
{
    const auto option = styleOption<QComboBox, QStyleOptionComboBox>(combo);
    const QRect place = combo->style()->subControlRect(QStyle::CC_ComboBox, &option,
                                                       QStyle::SC_ComboBoxEditField, combo);
    QList<Caption> captions;
    for (int item = 0; item < combo->count(); ++item)
        captions.append(
            {combo->itemText(item), combo->font(), place, Qt::AlignLeft | Qt::AlignVCenter});
    return captions;
}

// Behind the check mark.
QList<Caption> captionsOf(const QListWidget *list)
{
    QList<Caption> captions;
    const int mark = list->style()->pixelMetric(QStyle::PM_IndicatorWidth) +
                     2 * (list->style()->pixelMetric(QStyle::PM_FocusFrameHMargin) + 1);
    for (int row = 0; row < list->count(); ++row) {
        const QListWidgetItem *item = list->item(row);
        const QRect place = list->visualItemRect(item) & list->viewport()->rect();
        captions.append({item->text(), list->font(), place.adjusted(mark, 0, 0, 0),
                         Qt::AlignLeft | Qt::AlignVCenter});
    }
    return captions;
}

QList<Caption> captionsOf(const QTableWidget *table)
{
    QList<Caption> captions;
    const QHeaderView *header = table->horizontalHeader();
    for (int column = 0; column < table->columnCount(); ++column) {
        captions.append({table->horizontalHeaderItem(column)->text(), header->font(),
                         QRect(0, 0, header->sectionSize(column), header->height()),
                         Qt::AlignCenter});
    }
    return captions;
}

QList<Caption> captionsOf(const QWidget *widget)
{
    if (const auto *label = qobject_cast<const QLabel *>(widget))
        return {captionOf(label)};
    if (const auto *button = qobject_cast<const QPushButton *>(widget))
        return {captionOf(button)};
    if (const auto *box = qobject_cast<const QCheckBox *>(widget))
        return {captionOf(box)};
    if (const auto *group = qobject_cast<const QGroupBox *>(widget))
        return {captionOf(group)};
    if (const auto *combo = qobject_cast<const QComboBox *>(widget))
        return captionsOf(combo);
    if (const auto *list = qobject_cast<const QListWidget *>(widget))
        return captionsOf(list);
    if (const auto *table = qobject_cast<const QTableWidget *>(widget))
        return captionsOf(table);
    return {};
}

// What one line takes of the place into which it is drawn: across by its letters' advance, down by
// their ink, because fonts reserve room for accents that no caption has.
QRect takenBy(const Caption &caption, const QString &line, const QRect &place)
{
    const QFontMetrics metrics(caption.font);
    const QRect drawn =
        metrics.boundingRect(place, int(caption.alignment) | Qt::TextSingleLine, line);
    const QRect ink = metrics.tightBoundingRect(line);
    return {drawn.left(), drawn.top() + metrics.ascent() + ink.top(),
            metrics.horizontalAdvance(line), ink.height()};
}

// What sticks out of the caption's place; empty if nothing does.
QString overhang(const Caption &caption)
{
    const QStringList lines = caption.text.split('\n');
    const int lineHeight = QFontMetrics(caption.font).lineSpacing();
    const int top = caption.place.center().y() - int(lines.size()) * lineHeight / 2;
    QString report;
    for (int number = 0; number < lines.size(); ++number) {
        QRect place = caption.place;
        if (lines.size() > 1)
            place = QRect(place.left(), top + number * lineHeight, place.width(), lineHeight);
        const QRect taken = takenBy(caption, lines[number], place);
        if (taken.isValid() && !caption.place.contains(taken)) {
            QDebug(&report) << lines[number] << caption.font.toString() << "takes" << taken << "of"
                            << caption.place;
        }
    }
    return report;
}

} // namespace

class TestCaptions : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();
    void fit_data();
    void fit();
    void measureFindsACutCaption();

private:
    QFont m_desktopFont;
    Sandbox m_sandbox;
};

void TestCaptions::initTestCase()
{
    m_desktopFont = QApplication::font();
}

void TestCaptions::cleanup()
{
    QApplication::setFont(m_desktopFont);
}

void TestCaptions::fit_data()
{
    QTest::addColumn<QFont>("font");
    for (const char *family : {"DejaVu Sans", "Noto Sans"}) {
        for (const int points : {9, 10, 11, 14}) {
            const QFont font(family, points);
            QCOMPARE(QFontInfo(font).family(), QString(family));
            QTest::addRow("%s %d", family, points) << font;
        }
    }
}

void TestCaptions::fit()
{
    QFETCH(QFont, font);
    QApplication::setFont(font);
    Process program;
    OpDialog options;
    AboutDialog about;
    int captions = 0;
    QString report;
    for (QWidget *window : {static_cast<QWidget *>(&program), static_cast<QWidget *>(&options),
                            static_cast<QWidget *>(&about)}) {
        window->show();
        for (const QWidget *widget : window->findChildren<QWidget *>()) {
            for (const Caption &caption : captionsOf(widget)) {
                captions += caption.text.isEmpty() ? 0 : 1;
                const QString over = overhang(caption);
                if (!over.isEmpty())
                    report += widget->objectName() + ' ' + over + '\n';
            }
        }
    }
    QVERIFY2(report.isEmpty(), qPrintable(report));
    QVERIFY(captions >= 75);
}

void TestCaptions::measureFindsACutCaption()
{
    QLabel label("Downsample Resolution");
    label.setFixedSize(label.sizeHint());
    label.show();
    QCOMPARE(overhang(captionOf(&label)), QString());
    label.setFixedWidth(label.width() - 8);
    QVERIFY(!overhang(captionOf(&label)).isEmpty());
}

QTEST_MAIN(TestCaptions)
#include "tst_captions.moc"
