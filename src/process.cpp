#include "process.h"

#include "filetable.h"
#include "formlook.h"
#include "ui_process.h"

#include "core/commandline.h"
#include "core/droppedfiles.h"
#include "core/engineswitches.h"
#include "core/outcometext.h"
#include "core/outputname.h"
#include "core/settings.h"

#include <QDesktopServices>
#include <QDir>
#include <QDragEnterEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QGuiApplication>
#include <QMessageBox>
#include <QMimeData>
#include <QProcess>
#include <QScreen>
#include <QSettings>
#include <QTimer>
#include <QUrl>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int batchRole = Qt::UserRole;
constexpr int previewInterval = 300; // ms

constexpr auto tableStyle =
    "background-color:transparent;border:1px solid #6c6c6c;border-radius: 2px;"_L1;
constexpr auto horizontalHeaderStyle =
    "QHeaderView::section {background-color:GhostWhite;color: black;padding-top: 4px;"
    "border: 0px solid #6c6c6c;}"_L1;
constexpr auto verticalHeaderStyle =
    "QHeaderView::section {background-color:GhostWhite;color: black;padding-left: 4px;"
    "border: 0px solid #6c6c6c;}"_L1;

QString applicationFolder()
{
    return QCoreApplication::applicationDirPath();
}

core::Values storedValues()
{
    return core::engineValues(QSettings(core::settingsFilePath(), QSettings::IniFormat));
}

QString rememberedFolder(QLatin1String key)
{
    return core::engineValue(QSettings(core::settingsFilePath(), QSettings::IniFormat), key);
}

void rememberFolder(QLatin1String key, const QString &folder)
{
    QSettings settings(core::settingsFilePath(), QSettings::IniFormat);
    settings.setValue(key, folder);
}

// The files are read where they lie: whoever offers to move them keeps them.
void takeAsCopy(QDropEvent &event)
{
    event.setDropAction(Qt::CopyAction);
    event.accept();
}

} // namespace

Process::Process(QWidget *parent)
    : QWidget(parent)
    , ui(new Ui_process)
    , aboutdialog(nullptr)
    , opdialog(nullptr)
{
    ui->setupUi(this);
    filetable::prepare(*ui->inputfiletableWidget);
    centreOnFirstScreen();

    // Neither of them is ever started or deleted.
    standingprocess = {new QProcess, new QProcess};
    fileindex = 0;
    standingprocess[0]->setProcessChannelMode(QProcess::SeparateChannels);

    connectControls();
    ui->outputfolderEdit->setPalette(QPalette(Qt::white));
    ui->progressBar->setValue(0);
    outputfile = ""_L1;
    setabout();

    previewtimer = new QTimer(this);
    connect(previewtimer, SIGNAL(timeout()), this, SLOT(dopreview()));

    applyStyle();
    setFixedSize(size());
    setAcceptDrops(true);
    // What is dropped on the field is meant for the list, too.
    ui->outputfolderEdit->setAcceptDrops(false);
}

// The engine processes are left alone, on purpose: deleting one would kill its engine, and a file
// in work may finish after the window has gone.
Process::~Process()
{
    delete ui;
}

void Process::centreOnFirstScreen()
{
    setGeometry(0, 0, width(), height());
    const QRect screen = QGuiApplication::screens().constFirst()->geometry();
    move(screen.center() - rect().center());
}

void Process::connectControls()
{
    QTableWidget *table = ui->inputfiletableWidget;
    connect(ui->runButton, SIGNAL(clicked(bool)), this, SLOT(convertbegin()));
    connect(ui->pushButton_option, SIGNAL(clicked(bool)), this, SLOT(enteroption()));
    connect(ui->openfileButton, SIGNAL(clicked()), this, SLOT(setopenfile()));
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    connect(table, SIGNAL(itemDoubleClicked(QTableWidgetItem *)), this, SLOT(setopenselected()));
    connect(ui->removeButton, SIGNAL(clicked()), this, SLOT(setremove()));
    connect(ui->removeallButton, SIGNAL(clicked()), this, SLOT(setremoveall()));
    connect(table, SIGNAL(itemClicked(QTableWidgetItem *)), this, SLOT(setpreview()));
    connectPreviewToSelection();
    connect(ui->outputButton, SIGNAL(clicked()), this, SLOT(setoutputfile()));
    connect(ui->aboutButton, SIGNAL(clicked()), this, SLOT(setabout1()));
}

void Process::applyStyle()
{
    QTableWidget *table = ui->inputfiletableWidget;
    table->setStyleSheet(tableStyle);
    table->horizontalHeader()->setStyleSheet(horizontalHeaderStyle);
    table->verticalHeader()->setStyleSheet(verticalHeaderStyle);

    setAutoFillBackground(true);
    formlook::layOnPicture(*this, u":/iconoption/icons/stock-ved.jpg"_s);
    formlook::fitFonts(*this);
}

void Process::setabout()
{
    setWindowTitle(u"Corvane"_s);
    ui->aboutButton->setIcon(QIcon(u":/iconoption/icons/about12.png"_s));
}

int Process::enteroption()
{
    return opdialog.exec();
}

int Process::setabout1()
{
    return aboutdialog.exec();
}

// Input files

// Connected once more by every Add and Remove; the removal of the last row cuts all at once.
void Process::connectPreviewToSelection()
{
    connect(ui->inputfiletableWidget, SIGNAL(itemSelectionChanged()), this, SLOT(setpreview()));
}

void Process::setopenfile()
{
    connectPreviewToSelection();
    const QStringList files =
        QFileDialog::getOpenFileNames(this, tr("Add File"), rememberedFolder("dir/input"_L1),
                                      tr("PDF File(*.pdf);;ALL files(*.*)"));
    if (files.isEmpty())
        return;
    rememberFolder("dir/input"_L1, QFileInfo(files.constFirst()).absolutePath());
    QTableWidget &table = *ui->inputfiletableWidget;
    filetable::insertFiles(table, table.rowCount(), QFileInfoList(files.begin(), files.end()));
    filetable::selectFirstRow(table);
}

void Process::dragEnterEvent(QDragEnterEvent *event)
{
    if (event->mimeData()->hasFormat(u"text/uri-list"_s))
        event->acceptProposedAction();
}

// Under X11 the owner of the files takes the last answer before the drop for what was done.
void Process::dragMoveEvent(QDragMoveEvent *event)
{
    takeAsCopy(*event);
}

void Process::dropEvent(QDropEvent *event)
{
    const QList<QUrl> urls = event->mimeData()->urls();
    if (urls.isEmpty())
        return;
    core::DroppedFiles dropped = core::droppedFiles(urls);
    // Each file goes in above the ones that came before it in the same drop.
    std::ranges::reverse(dropped.pdfs);
    QTableWidget &table = *ui->inputfiletableWidget;
    filetable::insertFiles(table, table.rowCount(), dropped.pdfs);
    if (!dropped.endedByFolder)
        filetable::selectFirstRow(table);
    takeAsCopy(*event);
}

void Process::setremove()
{
    connectPreviewToSelection();
    for (const int row : filetable::selectedRowsFromLast(*ui->inputfiletableWidget))
        removeRow(row);
    if (ui->inputfiletableWidget->rowCount() == 0)
        setdefaultpreview();
}

void Process::setremoveall()
{
    const int rows = ui->inputfiletableWidget->rowCount();
    if (rows == 0)
        return;
    for (int row = rows - 1; row >= 0; --row)
        removeRow(row);
    setdefaultpreview();
    connectPreviewToSelection();
}

// An emptied table has nothing to preview.
void Process::removeRow(int row)
{
    QTableWidget *table = ui->inputfiletableWidget;
    if (table->rowCount() == 1)
        disconnect(table, SIGNAL(itemSelectionChanged()), this, SLOT(setpreview()));
    table->removeRow(row);
}

void Process::setopenselected()
{
    const QTableWidget &table = *ui->inputfiletableWidget;
    if (table.currentRow() >= 0)
        QDesktopServices::openUrl(QUrl::fromLocalFile(filetable::path(table, table.currentRow())));
}

// A cancelled dialog gives an empty folder, which is shown and remembered: that is how the folder
// is taken back.
void Process::setoutputfile()
{
    const QString folder = QFileDialog::getExistingDirectory(
        this, tr("Save"), rememberedFolder("dir/output"_L1),
        QFileDialog::ShowDirsOnly | QFileDialog::DontResolveSymlinks);
    ui->outputfolderEdit->setText(folder);
    rememberFolder("dir/output"_L1, folder);
}

void Process::setpreview()
{
    previewtimer->start(previewInterval);
}

// The place to draw a preview of the selected file.
void Process::dopreview() {}

// The place to clear it.
void Process::setdefaultpreview() {}

// Engine switches

QString Process::getOption()
{
    const core::Values values = storedValues();
    return core::baseSwitches() + getImageOption() + core::fontSwitches(values) +
           getSecurityOtion() + core::pdfaSwitches(values);
}

QString Process::getImageOption()
{
    return core::imageSwitches(storedValues());
}

QString Process::getSecurityOtion()
{
    return core::securitySwitches(storedValues());
}

QString Process::getAnnooption()
{
    return core::markArgument(core::markFilePath());
}

// Batch run

void Process::convertbegin()
{
    QTableWidget *table = ui->inputfiletableWidget;
    if (table->rowCount() == 0) {
        QMessageBox::warning(this, tr("Empty input"), tr("Please choose files to convert."),
                             QMessageBox::Ok, QMessageBox::NoButton);
        return;
    }
    filecount = table->rowCount();
    if (!hasOutputFolder()) {
        // Never translated.
        QMessageBox::information(this, u"Invalid order"_s, u"Please specify an output folder."_s,
                                 QMessageBox::Ok, QMessageBox::NoButton);
        ui->outputfolderEdit->setText({});
        return;
    }
    const QString options = getOption();
    const QString markArgument = getAnnooption();
    disconnect(standingprocess[0], SIGNAL(finished(int, QProcess::ExitStatus)), this,
               SLOT(convertbegin()));
    if (fileindex != 0)
        judgeStartedFile();
    if (fileindex >= filecount) {
        endBatch();
        return;
    }
    startFile(nextRow(), options, markArgument);
}

// An empty path would name the current directory.
bool Process::hasOutputFolder() const
{
    const QString folder = ui->outputfolderEdit->text();
    return QDir(folder).exists() && !folder.isEmpty();
}

// A file whose row was removed meanwhile gets no verdict; no other file gets it instead.
void Process::judgeStartedFile()
{
    if (!startedrow.isValid())
        return;
    QTableWidget &table = *ui->inputfiletableWidget;
    const int row = startedrow.row();
    const std::optional<qint64> copy = core::sizeOfFile(outputfile);
    filetable::setResult(
        table, row, verdictText(core::judge(copy.value_or(0), copy.has_value())),
        core::outcomeText({.original = core::sizeOfFile(filetable::path(table, row)),
                           .copy = copy,
                           .threshold = core::largestFailure}));
}

QString Process::verdictText(core::Verdict verdict) const
{
    return verdict == core::Verdict::succeed ? tr("Succeed") : tr("Failed");
}

void Process::endBatch()
{
    ui->progressBar->setValue(0);
    fileindex = 0;
    ++batch;
}

// Row `fileindex`. A sort during the run may have put a file there that had its turn already: then
// it is the first one that had none, so that the batch still takes each file once. Removing a file
// that had its turn lets the rows below move up and `fileindex` pass one over: the count of started
// files is what decides where a batch stands, and stays.
int Process::nextRow() const
{
    const auto hadItsTurn = [this](int row) {
        return ui->inputfiletableWidget->item(row, filetable::pathColumn)->data(batchRole) == batch;
    };
    if (!hadItsTurn(fileindex))
        return fileindex;
    int row = 0;
    while (hadItsTurn(row))
        ++row;
    return row;
}

// An engine makes its output some moments after its start, so the file system alone doesn't know
// the names that engines at work have been given. The folder may be spelt otherwise by now.
bool Process::isTaken(const QString &path) const
{
    const auto writesIt = [place = QDir::cleanPath(path)](const EngineAtWork &engine) {
        return QDir::cleanPath(engine.output) == place &&
               engine.process->state() != QProcess::NotRunning;
    };
    return std::ranges::any_of(enginesatwork, writesIt) || core::fileSystemEntryExists(path);
}

void Process::startFile(int row, const QString &options, const QString &markArgument)
{
    QTableWidget *table = ui->inputfiletableWidget;
    const QString input = filetable::path(*table, row);
    outputfile = core::freeOutputPath(ui->outputfolderEdit->text(), input,
                                      [this](const QString &path) { return isTaken(path); });
    ++fileindex;
    table->item(row, filetable::pathColumn)->setData(batchRole, batch);
    startedrow = table->model()->index(row, filetable::pathColumn);

    auto *engine = new QProcess;
    engine->startCommand(core::commandLine({.engine = applicationFolder() + "/corvgs"_L1,
                                            .switches = options,
                                            .output = outputfile,
                                            .input = input,
                                            .markArgument = markArgument}));
    ui->progressBar->setMaximum(filecount);
    ui->progressBar->setValue(fileindex);
    connect(engine, SIGNAL(finished(int, QProcess::ExitStatus)), this, SLOT(convertbegin()));
    std::erase_if(enginesatwork, [](const EngineAtWork &other) {
        return other.process->state() == QProcess::NotRunning;
    });
    enginesatwork.push_back({engine, outputfile});
}
