#pragma once

#include <QDialog>

class Ui_AboutDialog;

/// The About box: product line, copyright, home page and support address.
class AboutDialog : public QDialog
{
    Q_OBJECT

public:
    explicit AboutDialog(QWidget *parent = nullptr);
    ~AboutDialog() override;

public slots:
    void openMainpage(QString url);
    void openMailpage(QString mail);

private:
    Ui_AboutDialog *ui;
};
