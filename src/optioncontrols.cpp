#include "optioncontrols.h"

using namespace Qt::StringLiterals;

namespace optioncontrols {

namespace {

// clang-format off

constexpr Option table[] = {
    {"Image/Image"_L1,     Page::image},
    {"Fonts/Fonts"_L1,     Page::fonts},
    {"Secur/Secur"_L1,     Page::security},
    {"Annot/Annot"_L1,     Page::description},
    {"Image/ColorType"_L1, &Form::comboBox_clr_down_type},
    {"Image/GrayType"_L1,  &Form::comboBox_gry_down_type},
    {"Image/MonoType"_L1,  &Form::comboBox__mno_down_type},
    {"Image/ColorEnc"_L1,  &Form::comboBox_clr_compress},
    {"Image/GrayEnc"_L1,   &Form::comboBox_gry_compress},
    {"Image/MonoEnc"_L1,   &Form::comboBox_mno_compress},
    {"Image/ColorRes"_L1,  Resolution{&Form::lineEdit_clr_res}},
    {"Image/GrayRes"_L1,   Resolution{&Form::lineEdit__gry_res}},
    {"Image/MonoRes"_L1,   Resolution{&Form::lineEdit_mno_res}},
    {"Fonts/Embed"_L1,     &Form::checkBox_embedallfonts},
    {"Fonts/Com"_L1,       &Form::checkBox_compressfonts},
    {"Fonts/Sub"_L1,       &Form::checkBox_subset},
    {"Secur/UsrPwd"_L1,    &Form::lineEdit_userpassword},
    {"Secur/OwrPwd"_L1,    &Form::lineEdit_ownerpassword},
    {"Secur/AllowPri"_L1,  &Form::checkBox_allow_print},
    {"Secur/AllowMod"_L1,  &Form::checkBox_allow_modcontents},
    {"Secur/AllowCop"_L1,  &Form::checkBox_allow_copy},
    {"Secur/AllowAdd"_L1,  &Form::checkBox_allow_add},
    {"Annot/PDFA"_L1,      &Form::checkBox_pdfa},
    {"Annot/Aut"_L1,       &Form::lineEdit_author},
    {"Annot/Tit"_L1,       &Form::lineEdit_title},
    {"Annot/Sub"_L1,       &Form::lineEdit_subject},
    {"Annot/Key"_L1,       &Form::lineEdit_keywords},
    {"Annot/Cre"_L1,       &Form::lineEdit_creator},
    {"Annot/Pro"_L1,       &Form::lineEdit_producer},
};

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

} // namespace

std::span<const Option> options()
{
    return table;
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

} // namespace optioncontrols
