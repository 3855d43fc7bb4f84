#include "optioncontrols.h"

#include <algorithm>
#include <iterator>

using namespace Qt::StringLiterals;

namespace optioncontrols {

namespace {

// clang-format off

// Reset All does not go back to the defaults: Security and Description come back off, and the
// permissions denied.
constexpr Option table[] = {
    {"Image/Image"_L1,     Page::image,                           "Ok"_L1},
    {"Fonts/Fonts"_L1,     Page::fonts,                           "Ok"_L1},
    {"Secur/Secur"_L1,     Page::security,                        "No"_L1},
    {"Annot/Annot"_L1,     Page::description,                     "No"_L1},
    {"Image/ColorType"_L1, &Form::comboBox_clr_down_type,         "3"_L1},
    {"Image/ColorRes"_L1,  Resolution{&Form::lineEdit_clr_res},   "150"_L1},
    {"Image/GrayType"_L1,  &Form::comboBox_gry_down_type,         "3"_L1},
    {"Image/GrayRes"_L1,   Resolution{&Form::lineEdit__gry_res},  "150"_L1},
    {"Image/MonoType"_L1,  &Form::comboBox__mno_down_type,        "3"_L1},
    {"Image/MonoRes"_L1,   Resolution{&Form::lineEdit_mno_res},   "300"_L1},
    {"Image/ColorEnc"_L1,  &Form::comboBox_clr_compress,          "1"_L1},
    {"Image/GrayEnc"_L1,   &Form::comboBox_gry_compress,          "1"_L1},
    {"Image/MonoEnc"_L1,   &Form::comboBox_mno_compress,          "4"_L1},
    {"Fonts/Embed"_L1,     &Form::checkBox_embedallfonts,         "Ok"_L1},
    {"Fonts/Sub"_L1,       &Form::checkBox_subset,                "Ok"_L1},
    {"Fonts/Com"_L1,       &Form::checkBox_compressfonts,         "Ok"_L1},
    {"Secur/OwrPwd"_L1,    &Form::lineEdit_ownerpassword,         ""_L1},
    {"Secur/UsrPwd"_L1,    &Form::lineEdit_userpassword,          ""_L1},
    {"Secur/AllowAdd"_L1,  &Form::checkBox_allow_add,             "No"_L1},
    {"Secur/AllowCop"_L1,  &Form::checkBox_allow_copy,            "No"_L1},
    {"Secur/AllowMod"_L1,  &Form::checkBox_allow_modcontents,     "No"_L1},
    {"Secur/AllowPri"_L1,  &Form::checkBox_allow_print,           "No"_L1},
    {"Annot/PDFA"_L1,      &Form::checkBox_pdfa,                  "No"_L1},
    {"Annot/Aut"_L1,       &Form::lineEdit_author,                ""_L1},
    {"Annot/Cre"_L1,       &Form::lineEdit_creator,               ""_L1},
    {"Annot/Key"_L1,       &Form::lineEdit_keywords,              ""_L1},
    {"Annot/Pro"_L1,       &Form::lineEdit_producer,              ""_L1},
    {"Annot/Sub"_L1,       &Form::lineEdit_subject,               ""_L1},
    {"Annot/Tit"_L1,       &Form::lineEdit_title,                 ""_L1},
};

constexpr std::size_t pageCount = 4;

// clang-format on

QString flag(bool on)
{
    return on ? u"Ok"_s : u"No"_s;
}

struct ToStored
{
    const Form &ui;

    QString operator()(Page page) const { return flag(isOn(ui, page)); }
    QString operator()(QComboBox *Form::*combo) const
    {
        return QString::number((ui.*combo)->currentIndex(), 10);
    }
    QString operator()(Resolution field) const { return (ui.*field.edit)->text(); }
    QString operator()(QCheckBox *Form::*box) const { return flag((ui.*box)->isChecked()); }
    QString operator()(QLineEdit *Form::*edit) const { return (ui.*edit)->text(); }
};

struct FromStored
{
    const Form &ui;
    const QVariant &stored;
    QString byDefault;

    void operator()(Page page) const
    {
        itemOf(ui, page)->setCheckState(isFlagOn() ? Qt::Checked : Qt::Unchecked);
    }
    void operator()(QComboBox *Form::*combo) const
    {
        const int index = stored.toInt();
        const bool exists = index >= 0 && index < (ui.*combo)->count();
        (ui.*combo)->setCurrentIndex(exists ? index : byDefault.toInt());
    }
    void operator()(Resolution field) const
    {
        const QString text = stored.toString().remove(u' ');
        (ui.*field.edit)->setText(text.isEmpty() ? byDefault : text);
    }
    void operator()(QCheckBox *Form::*box) const { (ui.*box)->setChecked(isFlagOn()); }
    void operator()(QLineEdit *Form::*edit) const { (ui.*edit)->setText(stored.toString()); }

private:
    // Only the exact opposite of its default changes a flag.
    bool isFlagOn() const
    {
        const bool onByDefault = byDefault == flag(true);
        return (stored.toString() == flag(!onByDefault)) != onByDefault;
    }
};

struct ChangeOf
{
    const Form &ui;

    Change operator()(Page) const
    {
        return {ui.listWidge_option, SIGNAL(itemChanged(QListWidgetItem *))};
    }
    Change operator()(QComboBox *Form::*combo) const
    {
        return {ui.*combo, SIGNAL(currentIndexChanged(int))};
    }
    Change operator()(Resolution field) const { return (*this)(field.edit); }
    Change operator()(QCheckBox *Form::*box) const { return {ui.*box, SIGNAL(toggled(bool))}; }
    Change operator()(QLineEdit *Form::*edit) const
    {
        return {ui.*edit, SIGNAL(textChanged(QString))};
    }
};

} // namespace

std::span<const Option> pageOptions()
{
    return std::span(table).first<pageCount>();
}

std::span<const Option> valueOptions()
{
    return std::span(table).subspan<pageCount>();
}

// The tables of the keys and of the controls belong together.
const Control &controlOf(QLatin1String key)
{
    const auto *const row = std::ranges::find(table, key, &Option::key);
    if (row == std::end(table))
        qFatal("an option has no control: %s", key.latin1());
    return row->control;
}

QListWidgetItem *itemOf(const Form &ui, Page page)
{
    return ui.listWidge_option->item(static_cast<int>(page));
}

bool isOn(const Form &ui, Page page)
{
    return itemOf(ui, page)->checkState() == Qt::Checked;
}

QString toStored(const Form &ui, const Control &control)
{
    return std::visit(ToStored{ui}, control);
}

void fromStored(const Form &ui, const Control &control, const QVariant &stored,
                QLatin1String byDefault)
{
    std::visit(FromStored{ui, stored, byDefault}, control);
}

Change changeOf(const Form &ui, const Control &control)
{
    return std::visit(ChangeOf{ui}, control);
}

} // namespace optioncontrols
