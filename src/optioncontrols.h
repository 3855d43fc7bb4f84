#pragma once

#include "ui_opdialog.h"

#include <QVariant>

#include <span>
#include <variant>

/// Which control of the options dialog holds which key of the settings file, what Reset All makes
/// of it, how its value becomes the text stored there and back, and how it tells of a change.
namespace optioncontrols {

using Form = Ui_OpDialog;

/// A page of the dialog, and the row of its item in the list, whose check mark switches it on.
enum class Page { image, fonts, security, description };

/// A field that is shown without blanks, and never empty.
struct Resolution
{
    QLineEdit *Form::*edit;
};

using Control =
    std::variant<Page, QComboBox * Form::*, Resolution, QCheckBox * Form::*, QLineEdit * Form::*>;

struct Option
{
    QLatin1String key;
    Control control;
    QLatin1String resetValue; ///< as it is stored; not the default
};

/// The options that switch a page, in the order in which they are reset: before the others.
std::span<const Option> pageOptions();

/// The options on the pages, in the order in which they are reset.
std::span<const Option> valueOptions();

/// The control of a key that the dialog shows.
const Control &controlOf(QLatin1String key);

QListWidgetItem *itemOf(const Form &ui, Page page);

/// True if the page's item is checked.
bool isOn(const Form &ui, Page page);

/// The control's value as it is stored.
QString toStored(const Form &ui, const Control &control);

/// Puts a stored value into the control. One that the control can't show gives way to the default.
void fromStored(const Form &ui, const Control &control, const QVariant &stored,
                QLatin1String byDefault);

/// A widget and the signal that tells of its control's change.
struct Change
{
    QObject *sender;
    const char *signal;
};
Change changeOf(const Form &ui, const Control &control);

} // namespace optioncontrols
