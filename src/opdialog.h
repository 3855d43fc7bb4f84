#pragma once

#include <QDialog>

class Ui_OpDialog;

/// The options dialog. It shows the settings file as it was at construction, and writes it on
/// Apply; between showings it keeps whatever its controls hold.
class OpDialog : public QDialog
{
    Q_OBJECT

public:
    explicit OpDialog(QWidget *parent = nullptr);
    ~OpDialog() override;

    // The order of the slots is the order of the meta-object's table.
public slots:
    /// Writes all options into the settings file, then the document information mark file.
    void setop();
    void InitialTablewidget();
    /// Fills the controls from the settings file.
    void setallowshow();
    /// Enables the pages whose items are checked.
    void setstackenable();
    void changeStackedDisplay();
    /// Puts all controls, and no file, to their reset values.
    void setGeneralSetting();
    void linkCustomSetting();
    void allCustomConnection();
    void allCustomDisconnection();
    void closeClrDSres();
    void closeGryDSres();
    void closeMnoDSres();
    /// Writes the document information mark file.
    void writeAnnot();
    /// Warns that a password rules PDF/A out.
    void setwarning();

protected:
    void closeEvent(QCloseEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void addPageItems();
    void prepareKeyboard();

    Ui_OpDialog *ui;
};
