#include "aboutdialog.h"

#include "formlook.h"
#include "ui_aboutdialog.h"

#include <QDesktopServices>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace {

QString anchor(const QString &url)
{
    return "<a href="_L1 + url + "> "_L1 + url + "</a>"_L1;
}

} // namespace

AboutDialog::AboutDialog(QWidget *parent)
    : QDialog(parent)
    , ui(new Ui_AboutDialog)
{
    ui->setupUi(this);
    formlook::fitFonts(*this);
    setFixedSize(size());

    ui->label_homepage->setText(anchor(ui->label_homepage->text()));
    connect(ui->label_homepage, SIGNAL(linkActivated(QString)), this, SLOT(openMainpage(QString)));

    formlook::layOnPicture(*this, u":/iconoption/icons/graybackgr.png"_s);

    ui->label_mail->setText(anchor(ui->label_mail->text()));
    formlook::colourLinks(*ui->label_homepage);
    formlook::colourLinks(*ui->label_mail);
    // There is no slot of this name, and there must be none: the refused connection, with its
    // warning, is what keeps a click on the address from starting a mail program.
    connect(ui->label_mail, SIGNAL(linkActivated(QString)), this, SLOT(openmailpage(QString)));
}

AboutDialog::~AboutDialog()
{
    delete ui;
}

void AboutDialog::openMainpage(QString url)
{
    QDesktopServices::openUrl(QUrl(url));
}

void AboutDialog::openMailpage(QString mail)
{
    QDesktopServices::openUrl(QUrl(mail));
}
