#pragma once

#include <QDialog>

class Ui_SecDialog;

/// An empty dialog; nothing shows it yet.
class SecDialog : public QDialog
{
    Q_OBJECT

public:
    explicit SecDialog(QWidget *parent = nullptr);
    ~SecDialog() override;

private:
    Ui_SecDialog *ui;
};
