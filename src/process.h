#pragma once

#include "aboutdialog.h"
#include "opdialog.h"

#include "core/verdict.h"

#include <QPersistentModelIndex>
#include <QWidget>

#include <array>
#include <vector>

class QDragEnterEvent;
class QDragMoveEvent;
class QDropEvent;
class QProcess;
class QTimer;
class Ui_process;

/// The main window: a table of PDF files, an output folder, and the batch run that gives each file
/// to the engine and writes its verdict into the table.
class Process : public QWidget
{
    Q_OBJECT

public:
    explicit Process(QWidget *parent = nullptr);
    ~Process() override;

    // The order of the slots is the order of the meta-object's table.
public slots:
    /// One step of the batch run: judges the file started last, then starts the next one or ends
    /// the batch. Called by the run button and by every engine that finishes.
    void convertbegin();
    /// Shows the options dialog until it is closed; gives its result.
    int enteroption();
    void setopenfile();
    void setremove();
    void setopenselected();
    void setremoveall();
    void setoutputfile();
    void setabout();
    /// Shows the About box until it is closed; gives its result.
    int setabout1();
    /// The engine switches for the present settings, beginning with a blank.
    QString getOption();
    /// The document-information end of the command line; empty or beginning with a blank.
    QString getAnnooption();
    /// The image switches, beginning with a blank; empty if the page is off.
    QString getImageOption();
    /// The password and permission switches, beginning with a blank; empty if the page is off.
    QString getSecurityOtion();
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void dopreview();
    void setpreview();

protected:
    void dragMoveEvent(QDragMoveEvent *event) override;

private:
    void setdefaultpreview();
    void connectControls();
    void applyStyle();
    void connectPreviewToSelection();
    void removeRow(int row);
    void centreOnFirstScreen();

    bool hasOutputFolder() const;
    void judgeStartedFile();
    void endBatch();
    int nextRow() const;
    bool isTaken(const QString &path) const;
    void startFile(int row, const QString &options, const QString &markArgument);
    QString verdictText(core::Verdict verdict) const;

    int fileindex = 0;
    int filecount = 0;
    QString outputfile;
    std::array<QProcess *, 2> standingprocess = {};
    Ui_process *ui;
    AboutDialog aboutdialog;
    OpDialog opdialog;
    QTimer *previewtimer = nullptr;

    // The row number of a file changes when the user sorts or removes rows during a run. What was
    // started is therefore known by its row, wherever that goes, and marked with its batch.
    QPersistentModelIndex startedrow;
    int batch = 1;

    struct EngineAtWork
    {
        const QProcess *process;
        QString output;
    };
    std::vector<EngineAtWork> enginesatwork;
};
