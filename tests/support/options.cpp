#include "options.h"

#include <QMap>
#include <QObject>

#include <algorithm>

namespace {

// clang-format off

constexpr Option table[] = {
    {"Image/Image",     "Image",                      Option::page,        "Ok",  "Ok"},
    {"Image/ColorType", "comboBox_clr_down_type",     Option::type,        "3",   "3",   3},
    {"Image/ColorRes",  "lineEdit_clr_res",           Option::resolution,  "150", "150"},
    {"Image/ColorEnc",  "comboBox_clr_compress",      Option::compression, "1",   "1",   2},
    {"Image/GrayType",  "comboBox_gry_down_type",     Option::type,        "3",   "3",   3},
    {"Image/GrayRes",   "lineEdit__gry_res",          Option::resolution,  "150", "150"},
    {"Image/GrayEnc",   "comboBox_gry_compress",      Option::compression, "1",   "1",   2},
    {"Image/MonoType",  "comboBox__mno_down_type",    Option::type,        "3",   "3",   3},
    {"Image/MonoRes",   "lineEdit_mno_res",           Option::resolution,  "300", "300"},
    {"Image/MonoEnc",   "comboBox_mno_compress",      Option::compression, "4",   "4",   4},
    {"Fonts/Fonts",     "Fonts",                      Option::page,        "Ok",  "Ok"},
    {"Fonts/Embed",     "checkBox_embedallfonts",     Option::box,         "Ok",  "Ok"},
    {"Fonts/Com",       "checkBox_compressfonts",     Option::box,         "Ok",  "Ok"},
    {"Fonts/Sub",       "checkBox_subset",            Option::box,         "Ok",  "Ok"},
    {"Secur/Secur",     "Security",                   Option::page,        "Ok",  "No"},
    {"Secur/UsrPwd",    "lineEdit_userpassword",      Option::text,        "",    ""},
    {"Secur/OwrPwd",    "lineEdit_ownerpassword",     Option::text,        "",    ""},
    {"Secur/AllowPri",  "checkBox_allow_print",       Option::box,         "Ok",  "No"},
    {"Secur/AllowMod",  "checkBox_allow_modcontents", Option::box,         "Ok",  "No"},
    {"Secur/AllowCop",  "checkBox_allow_copy",        Option::box,         "Ok",  "No"},
    {"Secur/AllowAdd",  "checkBox_allow_add",         Option::box,         "Ok",  "No"},
    {"Annot/Annot",     "Description",                Option::page,        "Ok",  "No"},
    {"Annot/PDFA",      "checkBox_pdfa",              Option::box,         "No",  "No"},
    {"Annot/Aut",       "lineEdit_author",            Option::text,        "",    ""},
    {"Annot/Tit",       "lineEdit_title",             Option::text,        "",    ""},
    {"Annot/Sub",       "lineEdit_subject",           Option::text,        "",    ""},
    {"Annot/Key",       "lineEdit_keywords",          Option::text,        "",    ""},
    {"Annot/Cre",       "lineEdit_creator",           Option::text,        "",    ""},
    {"Annot/Pro",       "lineEdit_producer",          Option::text,        "",    ""},
};

// clang-format on

const QMap<QString, QStringList> trios = {
    {"comboBox_clr_down_type", {"label_CLR_DSR", "label_PPI1", "lineEdit_clr_res"}},
    {"comboBox_gry_down_type", {"label_GRY_DSR", "label_PPI2", "lineEdit__gry_res"}},
    {"comboBox__mno_down_type", {"label_MNO_DSR", "label_PPI3", "lineEdit_mno_res"}},
};

} // namespace

const char *Option::signal() const
{
    switch (kind) {
    case page:
        return SIGNAL(itemChanged(QListWidgetItem *));
    case type:
    case compression:
        return SIGNAL(currentIndexChanged(int));
    case box:
        return SIGNAL(toggled(bool));
    default:
        return SIGNAL(textChanged(QString));
    }
}

QString Option::other() const
{
    if (isFlag())
        return QString(reset) == "Ok" ? "No" : "Ok";
    return "2";
}

std::span<const Option> allOptions()
{
    return table;
}

QString keyOf(const QString &control)
{
    const auto *const option =
        std::ranges::find(table, control, [](const Option &row) { return QString(row.control); });
    if (option == std::end(table))
        qFatal("no option %s", qPrintable(control));
    return option->key;
}

QStringList trioOf(const QString &typeControl)
{
    return trios.value(typeControl);
}

QStringList allTrios()
{
    QStringList all;
    for (const QStringList &trio : trios)
        all += trio;
    return all;
}
