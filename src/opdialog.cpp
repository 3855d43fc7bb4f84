#include "opdialog.h"

#include "formlook.h"
#include "optioncontrols.h"
#include "ui_opdialog.h"

#include "core/markfile.h"
#include "core/settings.h"

#include <QCloseEvent>
#include <QFocusEvent>
#include <QSettings>

#include <iterator>

using namespace Qt::StringLiterals;
using namespace optioncontrols;

namespace {

// clang-format off

// The resolution of an image kind has no meaning, and isn't shown, while its type is "Closed".
constexpr int closedType = 0;
struct ResolutionTrio
{
    QComboBox *Form::*type;
    QLabel *Form::*caption;
    QLabel *Form::*unit;
    QLineEdit *Form::*edit;
};
constexpr ResolutionTrio colourTrio = {
    &Form::comboBox_clr_down_type,  &Form::label_CLR_DSR, &Form::label_PPI1, &Form::lineEdit_clr_res};
constexpr ResolutionTrio grayTrio = {
    &Form::comboBox_gry_down_type,  &Form::label_GRY_DSR, &Form::label_PPI2, &Form::lineEdit__gry_res};
constexpr ResolutionTrio monoTrio = {
    &Form::comboBox__mno_down_type, &Form::label_MNO_DSR, &Form::label_PPI3, &Form::lineEdit_mno_res};

// The fields of the description page from top to bottom.
constexpr QLineEdit *Form::*descriptionFields[] = {
    &Form::lineEdit_title,    &Form::lineEdit_author,  &Form::lineEdit_subject,
    &Form::lineEdit_keywords, &Form::lineEdit_creator, &Form::lineEdit_producer};

// clang-format on

void showResolution(const Form &ui, const ResolutionTrio &trio, bool visible)
{
    (ui.*trio.caption)->setVisible(visible);
    (ui.*trio.unit)->setVisible(visible);
    (ui.*trio.edit)->setVisible(visible);
}

bool isClosed(const Form &ui, const ResolutionTrio &trio)
{
    return (ui.*trio.type)->currentIndex() == closedType;
}

void reset(const Form &ui, std::span<const Option> options)
{
    for (const Option &option : options)
        fromStored(ui, option.control, QString(option.resetValue), option.resetValue);
}

} // namespace

OpDialog::OpDialog(QWidget *parent)
    : QDialog(parent)
    , ui(new Ui_OpDialog)
{
    ui->setupUi(this);
    formlook::fitFonts(*this);
    setFixedSize(size());
    InitialTablewidget();

    connect(ui->pushButton_cancel, SIGNAL(clicked()), this, SLOT(close()));
    // First the dialog closes, then the values are written.
    connect(ui->pushButton_apply, SIGNAL(clicked()), this, SLOT(close()));
    connect(ui->pushButton_apply, SIGNAL(clicked()), this, SLOT(setop()));

    setAutoFillBackground(true);
    formlook::layOnPicture(*this, u":/iconoption/icons/graybackgr.png"_s);

    addPageItems();
    connect(ui->listWidge_option, SIGNAL(currentRowChanged(int)), ui->stackedWidget_option,
            SLOT(setCurrentIndex(int)));
    connect(ui->listWidge_option, SIGNAL(itemChanged(QListWidgetItem *)), this,
            SLOT(setstackenable()));
    connect(ui->stackedWidget_option, SIGNAL(currentChanged(int)), this,
            SLOT(changeStackedDisplay()));
    setFixedSize(size());
    ui->stackedWidget_option->setCurrentIndex(0);
    ui->listWidge_option->setCurrentRow(0);

    connect(ui->pushButton_reset, SIGNAL(clicked()), this, SLOT(setGeneralSetting()));
    allCustomConnection();
    connect(ui->comboBox_clr_down_type, SIGNAL(currentIndexChanged(int)), this,
            SLOT(closeClrDSres()));
    connect(ui->comboBox_gry_down_type, SIGNAL(currentIndexChanged(int)), this,
            SLOT(closeGryDSres()));
    connect(ui->comboBox__mno_down_type, SIGNAL(currentIndexChanged(int)), this,
            SLOT(closeMnoDSres()));

    setallowshow();
    connect(ui->lineEdit_ownerpassword, SIGNAL(editingFinished()), this, SLOT(setwarning()));
    connect(ui->lineEdit_userpassword, SIGNAL(editingFinished()), this, SLOT(setwarning()));
    ui->lineEdit_ownerpassword->installEventFilter(this);
    ui->lineEdit_userpassword->installEventFilter(this);
    prepareKeyboard();
    setFixedSize(size());
}

OpDialog::~OpDialog()
{
    delete ui;
}

void OpDialog::addPageItems()
{
    for (const char *text : {QT_TR_NOOP("Image"), QT_TR_NOOP("Fonts"), QT_TR_NOOP("Security"),
                             QT_TR_NOOP("Description")}) {
        auto *item = new QListWidgetItem(tr(text), ui->listWidge_option);
        item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
        item->setCheckState(Qt::Checked);
    }
}

// At first the keyboard is at the list; Tab goes on through the shown page to the buttons. The
// pages keep the focus order of the form, except the description fields, which lie scattered in it.
// Return applies: without a default button it would press the next one in line, "Reset All".
void OpDialog::prepareKeyboard()
{
    ui->listWidge_option->setFocus();
    ui->pushButton_apply->setDefault(true);
    for (std::size_t i = 1; i < std::size(descriptionFields); ++i)
        setTabOrder(ui->*descriptionFields[i - 1], ui->*descriptionFields[i]);
}

// There is no table, and nothing to hold back a close.
void OpDialog::InitialTablewidget() {}

void OpDialog::closeEvent(QCloseEvent * /*event*/) {}

// Loading, writing, resetting

void OpDialog::setallowshow()
{
    disconnect(ui->listWidge_option, SIGNAL(itemChanged(QListWidgetItem *)), this,
               SLOT(setstackenable()));
    allCustomDisconnection();

    const QSettings settings(core::settingsFilePath(), QSettings::IniFormat);
    for (const core::SettingsKey &key : core::settingsKeys()) {
        if (!key.dialogDefault.isNull())
            fromStored(*ui, controlOf(key.name),
                       settings.value(key.name, QString(key.dialogDefault)), key.dialogDefault);
    }
    // A type that was "Closed" before has sent no signal.
    for (const ResolutionTrio &trio : {colourTrio, grayTrio, monoTrio}) {
        if (isClosed(*ui, trio))
            showResolution(*ui, trio, false);
    }
    setwarning();

    connect(ui->listWidge_option, SIGNAL(itemChanged(QListWidgetItem *)), this,
            SLOT(setstackenable()));
    allCustomConnection();
    // No setstackenable() here: by design, a page that is loaded as off stays enabled until an
    // item's check mark changes.
}

void OpDialog::setop()
{
    {
        QSettings settings(core::settingsFilePath(), QSettings::IniFormat);
        for (const core::SettingsKey &key : core::settingsKeys()) {
            if (!key.dialogDefault.isNull())
                settings.setValue(key.name, toStored(*ui, controlOf(key.name)));
        }
    }
    writeAnnot();
}

void OpDialog::setGeneralSetting()
{
    reset(*ui, pageOptions());
    setstackenable();
    reset(*ui, valueOptions());
    ui->checkBox_pdfa->setEnabled(true);
    ui->groupBox_warningPDFA->setVisible(false);
}

void OpDialog::writeAnnot()
{
    const core::Description description = {.title = ui->lineEdit_title->text(),
                                           .author = ui->lineEdit_author->text(),
                                           .subject = ui->lineEdit_subject->text(),
                                           .keywords = ui->lineEdit_keywords->text(),
                                           .creator = ui->lineEdit_creator->text(),
                                           .producer = ui->lineEdit_producer->text()};
    core::writeMarkFile(core::markFilePath(), isOn(*ui, Page::description)
                                                  ? core::markText(description)
                                                  : core::blankMarkText());
}

// What depends on what

void OpDialog::setstackenable()
{
    ui->stackedWidget_image->setEnabled(isOn(*ui, Page::image));
    ui->stackedWidget_fonts->setEnabled(isOn(*ui, Page::fonts));
    ui->stackedWidget_security->setEnabled(isOn(*ui, Page::security));
    // Passwords that are switched off don't hinder PDF/A. When they are switched on again the
    // warning waits, as designed, until a password field has been left.
    if (!isOn(*ui, Page::security)) {
        ui->groupBox_warningPDFA->setVisible(false);
        ui->checkBox_pdfa->setEnabled(true);
    }
    ui->stackedWidget_annotation->setEnabled(isOn(*ui, Page::description));
}

void OpDialog::setwarning()
{
    const bool hasPassword = !ui->lineEdit_userpassword->text().isEmpty() ||
                             !ui->lineEdit_ownerpassword->text().isEmpty();
    ui->groupBox_warningPDFA->setVisible(hasPassword);
    ui->checkBox_pdfa->setEnabled(!hasPassword);
}

// A field that is left as it was entered sends no signal in Qt 6. The warning is due all the same.
bool OpDialog::eventFilter(QObject *watched, QEvent *event)
{
    // A menu of the field itself does not leave it.
    const bool leaves = event->type() == QEvent::FocusOut &&
                        static_cast<QFocusEvent *>(event)->reason() != Qt::PopupFocusReason;
    if (leaves)
        setwarning();
    return QDialog::eventFilter(watched, event);
}

void OpDialog::closeClrDSres()
{
    showResolution(*ui, colourTrio, !isClosed(*ui, colourTrio));
}

void OpDialog::closeGryDSres()
{
    showResolution(*ui, grayTrio, !isClosed(*ui, grayTrio));
}

void OpDialog::closeMnoDSres()
{
    showResolution(*ui, monoTrio, !isClosed(*ui, monoTrio));
}

// The place to act when another page is shown.
void OpDialog::changeStackedDisplay() {}

// The place to act when the user, not the settings file, changes an option.
void OpDialog::linkCustomSetting() {}

void OpDialog::allCustomConnection()
{
    for (const Option &option : valueOptions()) {
        const auto [sender, signal] = changeOf(*ui, option.control);
        connect(sender, signal, this, SLOT(linkCustomSetting()));
    }
}

void OpDialog::allCustomDisconnection()
{
    for (const Option &option : valueOptions()) {
        const auto [sender, signal] = changeOf(*ui, option.control);
        disconnect(sender, signal, this, SLOT(linkCustomSetting()));
    }
}
