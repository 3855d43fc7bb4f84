#include "support/modal.h"
#include "windowtest.h"

#include <QFileDialog>
#include <QLineEdit>
#include <QTest>

class TestOutputFolder : public WindowTest
{
    Q_OBJECT

private slots:
    void rememberedOutputFolderIsOnlyWhereToChoose();
    void chooseOutputFolder();
    void cancelledOutputFolderClearsIt();
};

void TestOutputFolder::rememberedOutputFolderIsOnlyWhereToChoose()
{
    m_sandbox->store("dir/output", m_sandbox->outputFolder());
    const Process window;
    QCOMPARE(window.findChild<QLineEdit *>("outputfolderEdit")->text(), QString());
}

void TestOutputFolder::chooseOutputFolder()
{
    m_sandbox->store("dir/output", m_sandbox->inputFolder());
    QStringList seen;
    NextModal dialog([this, &seen](QWidget &window) {
        auto &folder = dynamic_cast<QFileDialog &>(window);
        seen = {folder.windowTitle(), folder.directory().absolutePath(),
                QString::number(folder.fileMode()),
                QString::number(folder.options() & QFileDialog::ShowDirsOnly ? 1 : 0),
                QString::number(folder.options() & QFileDialog::DontResolveSymlinks ? 1 : 0)};
        folder.findChild<QLineEdit *>("fileNameEdit")->setText(m_sandbox->outputFolder());
        QMetaObject::invokeMethod(&folder, "accept");
    });
    m_user->press("outputButton");
    QCOMPARE(seen, QStringList({"Save", m_sandbox->inputFolder(),
                                QString::number(QFileDialog::Directory), "1", "1"}));
    QCOMPARE(m_user->folderEdit()->text(), m_sandbox->outputFolder());
    QCOMPARE(m_sandbox->stored("dir/output"), m_sandbox->outputFolder());
}

void TestOutputFolder::cancelledOutputFolderClearsIt()
{
    m_sandbox->store("dir/output", m_sandbox->outputFolder());
    m_user->folderEdit()->setText(m_sandbox->outputFolder());
    NextModal dialog([](QWidget &window) { window.close(); });
    m_user->press("outputButton");
    QVERIFY(dialog.wasShown());
    QCOMPARE(m_user->folderEdit()->text(), QString());
    QCOMPARE(m_sandbox->stored("dir/output"), QString());
}

QTEST_MAIN(TestOutputFolder)
#include "tst_outputfolder.moc"
