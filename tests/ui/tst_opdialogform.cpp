#include "src/opdialog.h"
#include "ui_opdialog.h"

#include <QListWidget>
#include <QMap>
#include <QTest>
#include <QTranslator>

#include <array>
#include <cstring>

namespace {

constexpr auto rightAligned = Qt::AlignRight | Qt::AlignTrailing | Qt::AlignVCenter;
constexpr auto noAlignment = Qt::Alignment();
constexpr int defaultFont = 0;

const QStringList types = {"Closed", "Subsample", "Average", "Bicubic"};
const QStringList filters = {"Auto", "JPEG", "ZIP"};
const QStringList monoFilters = {"Auto", "ZIP", "RLE", "JBIG2", "CCITT Group 4"};

// Marks what passed through it in the form's context, without disambiguation.
class Brackets : public QTranslator
{
public:
    bool isEmpty() const override { return false; }
    QString translate(const char *context, const char *source, const char *disambiguation,
                      int /*n*/) const override
    {
        const bool own = qstrcmp(context, "OpDialog") == 0 && !disambiguation;
        return own ? '[' + QString::fromUtf8(source) + ']' : QString();
    }
};

QString caption(const QWidget *widget)
{
    for (const char *property : {"text", "title"}) {
        const QVariant value = widget->property(property);
        if (value.isValid())
            return value.toString();
    }
    return {};
}

QStringList items(const QComboBox *combo)
{
    QStringList texts;
    for (int index = 0; index < combo->count(); ++index)
        texts.append(combo->itemText(index));
    return texts;
}

} // namespace

class TestOpDialogForm : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void members();
    void widgets_data();
    void widgets();
    void childrenInOrder_data();
    void childrenInOrder();
    void pagesInOrder();
    void onlyTheButtonsOverlap();
    void comboItems_data();
    void comboItems();
    void frames();
    void warningPicture();
    void passwordFieldsAreOrdinary();
    void dialogItself();
    void keepsAGivenName();
    void initialState();
    void buttonsInTabOrder();
    void retranslationRefillsTheCombos();
    void everyCaptionIsTranslated();

private:
    template <typename Widget>
    Widget *find(const char *name) const
    {
        return m_dialog->findChild<Widget *>(name);
    }

    std::unique_ptr<QDialog> m_dialog;
    Ui_OpDialog m_form;
};

void TestOpDialogForm::init()
{
    m_dialog = std::make_unique<QDialog>();
    m_form.setupUi(m_dialog.get());
}

// The form is nothing but pointers to widgets, each of the name of its member.
void TestOpDialogForm::members()
{
    std::array<const QWidget *, sizeof(Ui_OpDialog) / sizeof(QWidget *)> members = {};
    std::memcpy(members.data(), &m_form, sizeof m_form);
    QStringList names;
    for (const QWidget *member : members)
        names.append(member->objectName());
    QCOMPARE(names.join(' '),
             QString("pushButton_cancel pushButton_apply listWidge_option stackedWidget_option"
                     " stackedWidget_image groupBox lineEdit_clr_res comboBox_clr_down_type"
                     " label_10 comboBox_clr_compress label_CLR_DSR label_7 label_PPI1"
                     " groupBox__gry_compress comboBox_gry_compress label_PPI2 label_20"
                     " comboBox_gry_down_type label_GRY_DSR label_14 lineEdit__gry_res groupBox_3"
                     " label_PPI3 label_15 label_18 comboBox__mno_down_type label_MNO_DSR"
                     " lineEdit_mno_res comboBox_mno_compress stackedWidget_fonts"
                     " checkBox_embedallfonts checkBox_subset checkBox_compressfonts"
                     " stackedWidget_security lineEdit_userpassword lineEdit_ownerpassword"
                     " checkBox_allow_print checkBox_allow_modcontents checkBox_allow_copy"
                     " checkBox_allow_add label label_2 stackedWidget_annotation checkBox_pdfa"
                     " groupBox_2 lineEdit_producer lineEdit_title lineEdit_keywords label_12"
                     " label_21 lineEdit_author label_11 label_3 label_5 label_6 lineEdit_subject"
                     " lineEdit_creator groupBox_warningPDFA label_8 label_9 pushButton_reset"));
    QCOMPARE(QString(m_form.listWidge_option->metaObject()->className()), QString("QListWidget"));
}

void TestOpDialogForm::widgets_data()
{
    QTest::addColumn<QString>("className");
    QTest::addColumn<QString>("parent");
    QTest::addColumn<QRect>("geometry");
    QTest::addColumn<QString>("caption");
    QTest::addColumn<int>("points");
    QTest::addColumn<Qt::Alignment>("alignment");

    const auto row = [](const char *name, const char *className, const char *parent, QRect rect,
                        const char *text = "", int points = defaultFont,
                        Qt::Alignment alignment = noAlignment) {
        QTest::newRow(name) << className << parent << rect << text << points << alignment;
    };

    row("pushButton_cancel", "QPushButton", "OpDialog", {485, 363, 81, 26}, "Cancel");
    row("pushButton_apply", "QPushButton", "OpDialog", {330, 363, 81, 26}, "Apply");
    row("listWidge_option", "QListWidget", "OpDialog", {7, 37, 121, 321}, "", 13);
    row("stackedWidget_option", "QStackedWidget", "OpDialog", {130, 37, 451, 321});
    row("pushButton_reset", "QPushButton", "OpDialog", {410, 363, 81, 26}, "Reset All");

    row("groupBox", "QGroupBox", "stackedWidget_image", {10, 10, 431, 91}, "Color Image", 13);
    row("groupBox__gry_compress", "QGroupBox", "stackedWidget_image", {10, 110, 431, 91},
        "Gray Image", 13);
    row("groupBox_3", "QGroupBox", "stackedWidget_image", {10, 210, 431, 91}, "Mono Image", 13);

    struct ImageKind
    {
        const char *group, *typeLabel, *type, *resLabel, *res, *unit, *filterLabel, *filter;
    };
    for (const ImageKind &kind : std::initializer_list<ImageKind>{
             {"groupBox", "label_7", "comboBox_clr_down_type", "label_CLR_DSR", "lineEdit_clr_res",
              "label_PPI1", "label_10", "comboBox_clr_compress"},
             {"groupBox__gry_compress", "label_20", "comboBox_gry_down_type", "label_GRY_DSR",
              "lineEdit__gry_res", "label_PPI2", "label_14", "comboBox_gry_compress"},
             {"groupBox_3", "label_15", "comboBox__mno_down_type", "label_MNO_DSR",
              "lineEdit_mno_res", "label_PPI3", "label_18", "comboBox_mno_compress"}}) {
        row(kind.typeLabel, "QLabel", kind.group, {2, 30, 101, 16}, "Downsample Type", 10,
            rightAligned);
        row(kind.type, "QComboBox", kind.group, {106, 28, 101, 22});
        row(kind.resLabel, "QLabel", kind.group, {210, 30, 131, 20}, "Downsample Resolution", 10,
            rightAligned);
        row(kind.res, "QLineEdit", kind.group, {346, 28, 51, 20});
        row(kind.unit, "QLabel", kind.group, {400, 30, 31, 16}, "dpi", 10);
        row(kind.filterLabel, "QLabel", kind.group, {10, 64, 91, 16}, "Compress Mode", 10,
            rightAligned);
        row(kind.filter, "QComboBox", kind.group, {106, 60, 131, 22});
    }

    const char *fonts = "stackedWidget_fonts";
    row("checkBox_embedallfonts", "QCheckBox", fonts, {30, 30, 131, 17}, "Embed All Fonts", 13);
    row("checkBox_subset", "QCheckBox", fonts, {30, 110, 121, 17}, "Subset Fonts", 13);
    row("checkBox_compressfonts", "QCheckBox", fonts, {30, 70, 171, 17}, "Compress Fonts", 13);

    const char *security = "stackedWidget_security";
    row("lineEdit_userpassword", "QLineEdit", security, {150, 30, 113, 20});
    row("lineEdit_ownerpassword", "QLineEdit", security, {150, 70, 113, 20});
    row("checkBox_allow_print", "QCheckBox", security, {90, 120, 281, 17}, "Allow Printing");
    row("checkBox_allow_modcontents", "QCheckBox", security, {90, 160, 311, 17},
        "Allow Document Assembly");
    row("checkBox_allow_copy", "QCheckBox", security, {90, 200, 351, 17}, "Allow Content Copying");
    row("checkBox_allow_add", "QCheckBox", security, {90, 240, 311, 17}, "Allow Commenting");
    row("label", "QLabel", security, {20, 30, 121, 20}, "User Password", defaultFont, rightAligned);
    row("label_2", "QLabel", security, {10, 70, 131, 20}, "Owner Password", defaultFont,
        rightAligned);

    const char *page = "stackedWidget_annotation";
    row("checkBox_pdfa", "QCheckBox", page, {20, 11, 321, 17}, "Generate a PDF/A File");
    row("groupBox_2", "QGroupBox", page, {20, 80, 411, 231}, "Mark");
    row("groupBox_warningPDFA", "QGroupBox", page, {20, 30, 411, 41});
    const char *mark = "groupBox_2";
    row("lineEdit_producer", "QLineEdit", mark, {110, 180, 221, 20});
    row("lineEdit_title", "QLineEdit", mark, {110, 40, 221, 20});
    row("lineEdit_keywords", "QLineEdit", mark, {110, 124, 221, 20});
    row("label_12", "QLabel", mark, {20, 152, 81, 20}, "Creator", 12, rightAligned);
    row("label_21", "QLabel", mark, {20, 180, 81, 20}, "Producer", 12, rightAligned);
    row("lineEdit_author", "QLineEdit", mark, {110, 68, 221, 20});
    row("label_11", "QLabel", mark, {20, 124, 81, 20}, "Keywords", 12, rightAligned);
    row("label_3", "QLabel", mark, {20, 40, 81, 20}, "Title", 12, rightAligned);
    row("label_5", "QLabel", mark, {20, 68, 81, 20}, "Author", 12, rightAligned);
    row("label_6", "QLabel", mark, {20, 96, 81, 20}, "Subject", 12, rightAligned);
    row("lineEdit_subject", "QLineEdit", mark, {110, 96, 221, 20});
    row("lineEdit_creator", "QLineEdit", mark, {110, 152, 221, 20});
    const char *warning = "groupBox_warningPDFA";
    row("label_8", "QLabel", warning, {12, 3, 32, 32});
    row("label_9", "QLabel", warning, {50, 6, 361, 31},
        "User Password or Owner Password has been set, \n and PDF/A function will fail.", 12);
}

void TestOpDialogForm::widgets()
{
    const auto *widget = find<QWidget>(QTest::currentDataTag());
    QVERIFY(widget);
    QTEST(QString(widget->metaObject()->className()), "className");
    QTEST(widget->parentWidget()->objectName(), "parent");
    QTEST(widget->geometry(), "geometry");
    QTEST(caption(widget), "caption");

    QFETCH(int, points);
    QCOMPARE(widget->testAttribute(Qt::WA_SetFont), points != defaultFont);
    if (points != defaultFont) {
        QFont expected = QApplication::font(widget);
        expected.setPointSize(points);
        QCOMPARE(widget->font(), expected);
    }
    if (const auto *label = qobject_cast<const QLabel *>(widget)) {
        QFETCH(Qt::Alignment, alignment);
        const auto byDefault = QLabel().alignment();
        QCOMPARE(label->alignment(), alignment == noAlignment ? byDefault : alignment);
    }
}

void TestOpDialogForm::childrenInOrder_data()
{
    QTest::addColumn<QString>("names");

    QTest::newRow("OpDialog") << "pushButton_cancel pushButton_apply listWidge_option"
                                 " stackedWidget_option pushButton_reset";
    QTest::newRow("stackedWidget_image") << "groupBox groupBox__gry_compress groupBox_3";
    QTest::newRow("groupBox") << "lineEdit_clr_res comboBox_clr_down_type label_10"
                                 " comboBox_clr_compress label_CLR_DSR label_7 label_PPI1";
    QTest::newRow("groupBox__gry_compress")
        << "comboBox_gry_compress label_PPI2 label_20 comboBox_gry_down_type label_GRY_DSR"
           " label_14 lineEdit__gry_res";
    QTest::newRow("groupBox_3") << "label_PPI3 label_15 label_18 comboBox__mno_down_type"
                                   " label_MNO_DSR lineEdit_mno_res comboBox_mno_compress";
    QTest::newRow("stackedWidget_fonts")
        << "checkBox_embedallfonts checkBox_subset checkBox_compressfonts";
    QTest::newRow("stackedWidget_security")
        << "lineEdit_userpassword lineEdit_ownerpassword checkBox_allow_print"
           " checkBox_allow_modcontents checkBox_allow_copy checkBox_allow_add label label_2";
    QTest::newRow("stackedWidget_annotation") << "checkBox_pdfa groupBox_2 groupBox_warningPDFA";
    QTest::newRow("groupBox_2")
        << "lineEdit_producer lineEdit_title lineEdit_keywords label_12 label_21 lineEdit_author"
           " label_11 label_3 label_5 label_6 lineEdit_subject lineEdit_creator";
    QTest::newRow("groupBox_warningPDFA") << "label_8 label_9";
}

// Children are kept in the order of their creation.
void TestOpDialogForm::childrenInOrder()
{
    const QString name = QTest::currentDataTag();
    const QWidget *parent = name == "OpDialog" ? m_dialog.get() : find<QWidget>(qPrintable(name));
    QStringList names;
    for (const QWidget *child :
         parent->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly))
        names.append(child->objectName());
    QTEST(names.join(' '), "names");
    QVERIFY(!parent->layout());
}

void TestOpDialogForm::pagesInOrder()
{
    QStringList names;
    for (int page = 0; page < m_form.stackedWidget_option->count(); ++page)
        names.append(m_form.stackedWidget_option->widget(page)->objectName());
    QCOMPARE(names.join(' '), QString("stackedWidget_image stackedWidget_fonts"
                                      " stackedWidget_security stackedWidget_annotation"));
}

// "Reset All" reaches a few pixels into its neighbours, which leaves their captions free. The pages
// share the place of the stack.
void TestOpDialogForm::onlyTheButtonsOverlap()
{
    QStringList overlaps;
    const QList<const QWidget *> placeTheirOwn = {m_form.listWidge_option,
                                                  m_form.stackedWidget_option};
    for (const QWidget *one : m_dialog->findChildren<QWidget *>()) {
        if (placeTheirOwn.contains(one->parentWidget()))
            continue;
        for (const QWidget *other :
             one->parentWidget()->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly)) {
            if (one->objectName() < other->objectName() &&
                one->geometry().intersects(other->geometry()))
                overlaps.append(one->objectName() + ' ' + other->objectName());
        }
    }
    overlaps.sort();
    QCOMPARE(overlaps, QStringList({"pushButton_apply pushButton_reset",
                                    "pushButton_cancel pushButton_reset"}));
}

void TestOpDialogForm::comboItems_data()
{
    QTest::addColumn<QStringList>("expected");

    for (const char *type :
         {"comboBox_clr_down_type", "comboBox_gry_down_type", "comboBox__mno_down_type"})
        QTest::newRow(type) << types;
    QTest::newRow("comboBox_clr_compress") << filters;
    QTest::newRow("comboBox_gry_compress") << filters;
    QTest::newRow("comboBox_mno_compress") << monoFilters;
}

void TestOpDialogForm::comboItems()
{
    const auto *combo = find<QComboBox>(QTest::currentDataTag());
    QTEST(items(combo), "expected");
    QCOMPARE(combo->currentIndex(), 0);
    QVERIFY(!combo->isEditable());
}

void TestOpDialogForm::frames()
{
    QCOMPARE(find<QListWidget>("listWidge_option")->frameShape(), QFrame::Box);
    QCOMPARE(find<QStackedWidget>("stackedWidget_option")->frameShape(), QFrame::Box);
}

void TestOpDialogForm::warningPicture()
{
    QCOMPARE(find<QLabel>("label_8")->pixmap(Qt::ReturnByValue).toImage(),
             QPixmap(":/iconoption/icons/alert.ico").toImage());
}

void TestOpDialogForm::passwordFieldsAreOrdinary()
{
    for (const char *name : {"lineEdit_userpassword", "lineEdit_ownerpassword"}) {
        const auto *edit = find<QLineEdit>(name);
        QCOMPARE(edit->echoMode(), QLineEdit::Normal);
        QCOMPARE(edit->maxLength(), QLineEdit().maxLength());
        QCOMPARE(edit->inputMask(), QString());
        QVERIFY(!edit->validator());
    }
}

void TestOpDialogForm::dialogItself()
{
    QCOMPARE(m_dialog->objectName(), QString("OpDialog"));
    QCOMPARE(m_dialog->size(), QSize(588, 393));
    QCOMPARE(m_dialog->windowTitle(), QString("Option"));
    QCOMPARE(m_dialog->windowIcon().pixmap(32, QIcon::Normal, QIcon::Off).toImage(),
             QPixmap(":/iconoption/icons/corvane32.png").toImage());
}

void TestOpDialogForm::keepsAGivenName()
{
    QDialog dialog;
    dialog.setObjectName("given");
    Ui_OpDialog().setupUi(&dialog);
    QCOMPARE(dialog.objectName(), QString("given"));
}

void TestOpDialogForm::initialState()
{
    for (const QCheckBox *box : m_dialog->findChildren<QCheckBox *>())
        QVERIFY2(!box->isChecked(), qPrintable(box->objectName()));
    for (const QLineEdit *edit : m_dialog->findChildren<QLineEdit *>())
        QCOMPARE(edit->text(), QString());
    QCOMPARE(m_form.listWidge_option->count(), 0);
    QCOMPARE(m_form.stackedWidget_option->currentIndex(), 2);
    QCOMPARE(m_form.stackedWidget_option->currentWidget(), m_form.stackedWidget_security);

    m_dialog->show();
    for (int page = 0; page < m_form.stackedWidget_option->count(); ++page) {
        m_form.stackedWidget_option->setCurrentIndex(page);
        const QWidget *shown = m_form.stackedWidget_option->currentWidget();
        for (const QWidget *widget : shown->findChildren<QWidget *>())
            QVERIFY2(widget->isVisible() && widget->isEnabled(), qPrintable(widget->objectName()));
    }
}

void TestOpDialogForm::buttonsInTabOrder()
{
    QCOMPARE(m_dialog->nextInFocusChain(), m_form.pushButton_apply);
    QCOMPARE(m_form.pushButton_apply->nextInFocusChain(), m_form.pushButton_cancel);
}

void TestOpDialogForm::retranslationRefillsTheCombos()
{
    const auto combos = m_dialog->findChildren<QComboBox *>();
    QCOMPARE(combos.size(), qsizetype(6));
    QMap<const QComboBox *, QStringList> before;
    for (QComboBox *combo : combos) {
        before.insert(combo, items(combo));
        combo->setCurrentIndex(2);
    }
    m_form.retranslateUi(m_dialog.get());
    for (const QComboBox *combo : combos) {
        QCOMPARE(items(combo), before.value(combo));
        QCOMPARE(combo->currentIndex(), 0);
    }
}

void TestOpDialogForm::everyCaptionIsTranslated()
{
    QMap<const QWidget *, QString> plain;
    for (const QWidget *widget : m_dialog->findChildren<QWidget *>()) {
        if (!caption(widget).isEmpty())
            plain.insert(widget, caption(widget));
    }
    QCOMPARE(plain.size(), qsizetype(36));
    Brackets brackets;
    QVERIFY(QCoreApplication::installTranslator(&brackets));
    m_form.retranslateUi(m_dialog.get());
    for (auto entry = plain.cbegin(); entry != plain.cend(); ++entry)
        QCOMPARE(caption(entry.key()), '[' + entry.value() + ']');
    for (const QComboBox *combo : m_dialog->findChildren<QComboBox *>()) {
        for (int item = 0; item < combo->count(); ++item)
            QVERIFY(combo->itemText(item).startsWith('['));
    }
    for (const QWidget *widget : m_dialog->findChildren<QWidget *>()) {
        const QString spoken = widget->accessibleName();
        QVERIFY2(spoken.isEmpty() || spoken.startsWith('['), qPrintable(widget->objectName()));
    }
    // The page items are the dialog's own texts.
    const OpDialog dialog(nullptr);
    const auto *pages = dialog.findChild<QListWidget *>("listWidge_option");
    QCOMPARE(pages->item(0)->text(), QString("[Image]"));
    QCOMPARE(pages->item(3)->text(), QString("[Description]"));
    QCOMPARE(m_dialog->windowTitle(), QString("[Option]"));
    QCoreApplication::removeTranslator(&brackets);
}

QTEST_MAIN(TestOpDialogForm)
#include "tst_opdialogform.moc"
