#include "testmain.h"
#include "testmachine.h"

#include "desktop/dektopwidget.h"
#include "desktop/my_toolbutton.h"
#include "my_shell1/globals.h"

#include <QAction>
#include <QLabel>
#include <QMenu>
#include <QMessageBox>
#include <QSignalSpy>
#include <QTimer>

namespace {

// A desktop on a screen of the test's choosing.
class ScreenDesktop : public dektopWidget {
public:
    QSize screen{1024, 768};

protected:
    QSize primaryScreenSize() const override { return screen; }
};

const QString desktopFolder = QStringLiteral("drives/X/Users/Default/Desktop/");

// What a message box said while a start ran: the box is closed as soon as it shows.
struct SeenBox {
    bool shown = false;
    QString title;
    QString text;
    QMessageBox::StandardButtons buttons;
    bool hadParent = false;
};

void watchForBox(SeenBox *seen)
{
    QTimer::singleShot(0, [seen]() {
        QMessageBox *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        if (!box)
            return;
        seen->shown = true;
        seen->title = box->windowTitle();
        seen->text = box->text();
        seen->buttons = box->standardButtons();
        seen->hadParent = box->parentWidget() != nullptr;
        box->done(QMessageBox::Ok);
    });
}

QStringList visibleTexts(const dektopWidget &d)
{
    QStringList texts;
    for (const my_ToolButton *b : d.desktopButtons)
        if (!b->isHidden())
            texts << b->text();
    return texts;
}

} // namespace

class TestDesktop : public QObject {
    Q_OBJECT

private:
    // Journal lines of the simulated machine that started the given file.
    static QStringList startsOf(const TestMachine &m, const QString &fileTail)
    {
        QStringList hits;
        for (const QString &line : m.sim->journal()) {
            const QStringList f = line.split(QLatin1Char('\t'));
            if (f.size() >= 5 && f.at(0) == QLatin1String("start")
                && f.at(1) == QLatin1String("open") && f.at(4) == QLatin1String("1")
                && f.at(2).endsWith(fileTail, Qt::CaseInsensitive))
                hits << line;
        }
        return hits;
    }

private slots:
    void init() { resetGlobals(); }

    void desktopIniAloneShowsNothing_data();
    void desktopIniAloneShowsNothing();
    void entriesAreListedByNameIgnoringCase();
    void labelIsNameUpToFirstPoint();
    void subFolderOpensThroughTheShell();
    void gridPlacement_data();
    void gridPlacement();
    void newScreenSizeMovesTitleBoxAndGrid();
    void poolOfHundredIsNeverExceeded();
    void missingFolderGivesEmptyDesktop();
    void removeDeletesFileAndSavedCopy();
    void removeStillDeletesSavedCopyWhenFileStays();
    void startLinkMessages_data();
    void startLinkMessages();
    void startLinkShowsBoxForMissingFile_data();
    void startLinkShowsBoxForMissingFile();
    void startLinkShowsBoxForUnassociatedFile();
    void startLinkIsSilentOnSuccess();
    void longPathsPassWhole();
    void refreshRenewsAndTellsTheMenu();
    void panelAndRemoveButtonSignals();
    void contextMenuEntries();
    void iconByNameInEitherSlashForm();
};

void TestDesktop::desktopIniAloneShowsNothing_data()
{
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<QStringList>("shown");
    QTest::newRow("lower case") << QStringList{"desktop.ini"} << QStringList();
    QTest::newRow("upper case") << QStringList{"DESKTOP.INI"} << QStringList();
    QTest::newRow("mixed case beside a link")
        << QStringList{"Desktop.Ini", "Tool.lnk"} << QStringList{"Tool"};
    QTest::newRow("only the exact name is passed over")
        << QStringList{"desktop.ini.bak"} << QStringList{"desktop"};
}

void TestDesktop::desktopIniAloneShowsNothing()
{
    QFETCH(QStringList, files);
    QFETCH(QStringList, shown);
    TestMachine m;
    for (const QString &f : files)
        m.write(desktopFolder + f, "x");
    ScreenDesktop d;
    d.layoutDesktop("T", "V");
    QCOMPARE(d.desktopCount, shown.size());
    QCOMPARE(visibleTexts(d), shown);
    // The first placed button takes the first cell, whatever was passed over.
    if (!shown.isEmpty())
        QCOMPARE(d.desktopButtons.at(0)->geometry(), QRect(20, 20, 110, 60));
}

void TestDesktop::entriesAreListedByNameIgnoringCase()
{
    TestMachine m;
    m.write(desktopFolder + "beta.lnk", "x");
    m.write(desktopFolder + "Alpha.lnk", "x");
    m.write(desktopFolder + "Zeta/inside.txt", "x");
    m.write(desktopFolder + "gamma.txt", "x");
    m.write(desktopFolder + ".hidden", "x");
    ScreenDesktop d;
    d.layoutDesktop("T", "V");
    // Folders stand among the files, not before them; hidden entries show too.
    QCOMPARE(visibleTexts(d), (QStringList{"", "Alpha", "beta", "gamma", "Zeta"}));
}

void TestDesktop::labelIsNameUpToFirstPoint()
{
    TestMachine m;
    m.write(desktopFolder + "Report.final.lnk", "x");
    ScreenDesktop d;
    d.layoutDesktop("T", "V");
    QCOMPARE(d.desktopCount, 1);
    const my_ToolButton *b = d.desktopButtons.at(0);
    QCOMPARE(b->text(), QString("Report"));
    QVERIFY2(b->path.compare("X:/Users/Default/Desktop/Report.final.lnk", Qt::CaseInsensitive) == 0,
             qPrintable(b->path));
}

void TestDesktop::subFolderOpensThroughTheShell()
{
    TestMachine m;
    m.write(desktopFolder + "Tools/a.exe", "x");
    ScreenDesktop d;
    d.layoutDesktop("T", "V");
    QCOMPARE(d.desktopCount, 1);
    QCOMPARE(d.desktopButtons.at(0)->text(), QString("Tools"));

    SeenBox seen;
    watchForBox(&seen);
    d.desktopButtons.at(0)->click();
    QCoreApplication::processEvents();
    QVERIFY(!seen.shown);
    const QStringList starts = startsOf(m, "Desktop\\Tools");
    QCOMPARE(starts.size(), 1);
    QVERIFY2(!starts.first().contains('/'), qPrintable(starts.first()));
}

void TestDesktop::gridPlacement_data()
{
    QTest::addColumn<int>("height");
    QTest::addColumn<int>("perColumn");
    QTest::newRow("600") << 600 << 8;
    QTest::newRow("768") << 768 << 11;
    QTest::newRow("1080") << 1080 << 16;
    // The next row landing exactly on the limit is still placed in the same column.
    QTest::newRow("760 on the limit") << 760 << 11;
}

void TestDesktop::gridPlacement()
{
    QFETCH(int, height);
    QFETCH(int, perColumn);
    TestMachine m;
    const int entries = 40;
    for (int i = 0; i < entries; ++i)
        m.write(desktopFolder + QString("e%1.lnk").arg(i, 2, 10, QLatin1Char('0')), "x");
    ScreenDesktop d;
    d.screen = QSize(800, height);
    d.layoutDesktop("T", "V");
    QCOMPARE(d.desktopCount, entries);
    for (int i = 0; i < entries; ++i) {
        const int column = i / perColumn;
        const int row = i % perColumn;
        QCOMPARE(d.desktopButtons.at(i)->geometry(),
                 QRect(column * 120 + 20, row * 60 + 20, 110, 60));
    }
}

void TestDesktop::newScreenSizeMovesTitleBoxAndGrid()
{
    TestMachine m;
    for (int i = 0; i < 12; ++i)
        m.write(desktopFolder + QString("e%1.lnk").arg(i, 2, 10, QLatin1Char('0')), "x");
    ScreenDesktop d;
    d.screen = QSize(1024, 768);
    d.layoutDesktop("Kelpie", "1.0");
    QCOMPARE(d.size(), QSize(1024, 768));
    QCOMPARE(d.titleLabel()->geometry(), QRect(594, 50, 390, 200));
    QCOMPARE(d.waitPanel->pos(), QPoint(512 - 185, 384 - 50));
    QCOMPARE(d.desktopButtons.at(11)->pos(), QPoint(140, 20));
    QCOMPARE(d.titleLabel()->text(),
             QString("<span style=\"font-size:18px;\"><font color=\"#FFFFFF\"><B>Kelpie</B><br>"
                     "<span style=\"font-size:14px;\"><font color=\"#FFFFFF\">1.0<br></p>"));

    // Halves are rounded down one by one: 683 - 185, not (1366 - 371) / 2.
    d.waitPanel->resize(371, 101);
    d.screen = QSize(1366, 1080);
    d.layoutDesktop("Kelpie", "2.0");
    QCOMPARE(d.desktopWidth, 1366);
    QCOMPARE(d.desktopHeight, 1080);
    QCOMPARE(d.size(), QSize(1366, 1080));
    QCOMPARE(d.titleLabel()->geometry(), QRect(936, 50, 390, 200));
    QCOMPARE(d.waitPanel->pos(), QPoint(683 - 185, 540 - 50));
    QCOMPARE(d.desktopButtons.at(11)->pos(), QPoint(20, 11 * 60 + 20));
    QVERIFY(d.titleLabel()->text().contains("2.0<br></p>"));
}

void TestDesktop::poolOfHundredIsNeverExceeded()
{
    TestMachine m;
    for (int i = 0; i < 130; ++i)
        m.write(desktopFolder + QString("e%1.lnk").arg(i, 3, 10, QLatin1Char('0')), "x");
    ScreenDesktop d;
    d.screen = QSize(1920, 1080);
    d.layoutDesktop("T", "V");
    QCOMPARE(d.desktopCount, 100);
    QCOMPARE(d.desktopButtons.size(), 100);
    QCOMPARE(visibleTexts(d).size(), 100);
    QCOMPARE(d.desktopButtons.at(99)->text(), QString("e099"));
    QCOMPARE(d.findChildren<my_ToolButton *>().size(), 100);

    // A smaller desktop later hides what it no longer uses and makes no new buttons.
    for (int i = 3; i < 130; ++i)
        QVERIFY(QFile::remove(m.folder() + "/" + desktopFolder
                              + QString("e%1.lnk").arg(i, 3, 10, QLatin1Char('0'))));
    d.rebuildDesktop();
    QCOMPARE(d.desktopCount, 3);
    QCOMPARE(visibleTexts(d), (QStringList{"e000", "e001", "e002"}));
    QCOMPARE(d.findChildren<my_ToolButton *>().size(), 100);
}

void TestDesktop::missingFolderGivesEmptyDesktop()
{
    TestMachine m;
    m.write(desktopFolder + "a.lnk", "x");
    ScreenDesktop d;
    d.layoutDesktop("T", "V");
    QCOMPARE(d.desktopCount, 1);
    QVERIFY(QDir(m.folder() + "/" + desktopFolder).removeRecursively());
    d.rebuildDesktop();
    QCOMPARE(d.desktopCount, 0);
    QVERIFY(visibleTexts(d).isEmpty());
}

void TestDesktop::removeDeletesFileAndSavedCopy()
{
    TestMachine m;
    m.addDrive('E');
    m.write(desktopFolder + "a.lnk", "x");
    m.write(desktopFolder + "b.lnk", "x");
    m.write("drives/E/Desktop.1/Users/Default/Desktop/a.lnk", "saved");
    m.write("drives/E/Desktop.1/Users/Default/Desktop/b.lnk", "saved");
    savedVolumeLetter = "E";
    ScreenDesktop d;
    d.layoutDesktop("T", "V");
    QSignalSpy refreshed(&d, &dektopWidget::refreshClicked);
    QCOMPARE(d.desktopButtons.at(0)->menu->actions().size(), 1);
    QAction *remove = d.desktopButtons.at(0)->menu->actions().at(0);
    QCOMPARE(remove->text(), QString("Remove"));
    remove->trigger();   // asks nothing

    const QString root = m.folder() + "/";
    QVERIFY(!QFile::exists(root + desktopFolder + "a.lnk"));
    QVERIFY(!QFile::exists(root + "drives/E/Desktop.1/Users/Default/Desktop/a.lnk"));
    QVERIFY(QFile::exists(root + desktopFolder + "b.lnk"));
    QVERIFY(QFile::exists(root + "drives/E/Desktop.1/Users/Default/Desktop/b.lnk"));
    QCOMPARE(visibleTexts(d), QStringList{"b"});
    QCOMPARE(refreshed.count(), 0);

    // Without a saved volume only the file itself goes.
    savedVolumeLetter.clear();
    d.desktopButtons.at(0)->remove_Slot();
    QVERIFY(!QFile::exists(root + desktopFolder + "b.lnk"));
    QVERIFY(QFile::exists(root + "drives/E/Desktop.1/Users/Default/Desktop/b.lnk"));
    QCOMPARE(d.desktopCount, 0);
}

void TestDesktop::removeStillDeletesSavedCopyWhenFileStays()
{
    TestMachine m;
    m.addDrive('E');
    // A folder with something in it cannot be deleted as a file.
    m.write(desktopFolder + "Stuck/inside.txt", "x");
    m.write("drives/E/Desktop.1/Users/Default/Desktop/Stuck", "saved");
    savedVolumeLetter = "E";
    ScreenDesktop d;
    d.layoutDesktop("T", "V");
    QCOMPARE(d.desktopCount, 1);
    d.desktopButtons.at(0)->remove_Slot();

    const QString root = m.folder() + "/";
    QVERIFY(QFileInfo(root + desktopFolder + "Stuck").isDir());
    QVERIFY(!QFile::exists(root + "drives/E/Desktop.1/Users/Default/Desktop/Stuck"));
    QCOMPARE(d.desktopCount, 1);
}

void TestDesktop::startLinkMessages_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("tail");
    QTest::newRow("0") << 0 << "The operating system is out of memory or resources.";
    QTest::newRow("2") << 2 << "The specified file was not found.";
    QTest::newRow("31") << 31
                        << "There is no application associated with the given file name "
                           "extension. This error will also be returned if you attempt to print "
                           "a file that is not printable.";
    QTest::newRow("32") << 32 << "The specified dynamic-link library (DLL) was not found.";
    // Gaps in the table, success and anything below zero pass without a word.
    QTest::newRow("1") << 1 << QString();
    QTest::newRow("4") << 4 << QString();
    QTest::newRow("33") << 33 << QString();
    QTest::newRow("-2") << -2 << QString();
}

void TestDesktop::startLinkMessages()
{
    QFETCH(int, code);
    QFETCH(QString, tail);
    const QString s = "X:\\Users\\Default\\Desktop\\Gone.lnk";
    const QString text = dektopWidget::startLinkMessage(s, code);
    if (tail.isEmpty())
        QVERIFY2(text.isEmpty(), qPrintable(text));
    else
        QCOMPARE(text, "Windows cannot start \"" + s + "\".\n" + tail);
}

void TestDesktop::startLinkShowsBoxForMissingFile_data()
{
    QTest::addColumn<bool>("folderThere");
    QTest::addColumn<QString>("tail");
    QTest::newRow("file gone") << true << "The specified file was not found.";
    QTest::newRow("folder gone") << false << "The specified path was not found.";
}

void TestDesktop::startLinkShowsBoxForMissingFile()
{
    QFETCH(bool, folderThere);
    QFETCH(QString, tail);
    TestMachine m;
    if (folderThere)
        m.write(desktopFolder + "other.lnk", "x");
    ScreenDesktop d;
    const QString s = "X:\\Users\\Default\\Desktop\\Gone.lnk";
    SeenBox seen;
    watchForBox(&seen);
    d.startLink(s, QString());
    QVERIFY(seen.shown);
    QCOMPARE(seen.title, QString("Error"));
    QCOMPARE(seen.text, "Windows cannot start \"" + s + "\".\n" + tail);
    QCOMPARE(seen.buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
    QVERIFY(!seen.hadParent);
    QCOMPARE(startsOf(m, "Gone.lnk").size(), 1);
}

void TestDesktop::startLinkShowsBoxForUnassociatedFile()
{
    TestMachine m;
    m.write(desktopFolder + "data.xyz", "x");
    ScreenDesktop d;
    d.layoutDesktop("T", "V");
    SeenBox seen;
    watchForBox(&seen);
    d.desktopButtons.at(0)->click();
    QVERIFY(seen.shown);
    QVERIFY2(seen.text.startsWith("Windows cannot start \"X:\\Users\\Default\\Desktop\\data.xyz\".\n"
                                  "There is no application associated"),
             qPrintable(seen.text));
}

void TestDesktop::startLinkIsSilentOnSuccess()
{
    TestMachine m;
    m.write(desktopFolder + "There.lnk", "x");
    ScreenDesktop d;
    SeenBox seen;
    watchForBox(&seen);
    d.startLink("X:\\Users\\Default\\Desktop\\There.lnk", "-a");
    QCoreApplication::processEvents();
    QVERIFY(!seen.shown);
    const QStringList starts = startsOf(m, "There.lnk");
    QCOMPARE(starts.size(), 1);
    QVERIFY(starts.first().contains("-a"));
}

void TestDesktop::longPathsPassWhole()
{
    TestMachine m;
    const QString deep = QString(140, QLatin1Char('d'));
    const QString name = QString(140, QLatin1Char('n')) + ".lnk";
    desktopPath = "X:/Users/Default/Desktop/" + deep + "/";
    m.write(desktopFolder + deep + "/" + name, "x");
    ScreenDesktop d;
    d.layoutDesktop("T", "V");
    QCOMPARE(d.desktopCount, 1);
    const my_ToolButton *b = d.desktopButtons.at(0);
    QVERIFY(b->path.size() > 300);
    QVERIFY(b->path.endsWith(name));

    // The full path reaches the shell, and the message names it whole.
    SeenBox seen;
    watchForBox(&seen);
    d.desktopButtons.at(0)->click();
    QCoreApplication::processEvents();
    QVERIFY(!seen.shown);
    QCOMPARE(startsOf(m, deep + "\\" + name).size(), 1);
    QString backslashed = b->path;
    backslashed.replace('/', '\\');
    QVERIFY(dektopWidget::startLinkMessage(backslashed, 2).contains("\"" + backslashed + "\""));
}

void TestDesktop::refreshRenewsAndTellsTheMenu()
{
    TestMachine m;
    ScreenDesktop d;
    d.layoutDesktop("T", "V");
    QCOMPARE(d.desktopCount, 0);
    m.write(desktopFolder + "New.lnk", "x");
    QSignalSpy refreshed(&d, &dektopWidget::refreshClicked);
    d.refresh_Slot();
    QCOMPARE(refreshed.count(), 1);
    QCOMPARE(visibleTexts(d), QStringList{"New"});
}

void TestDesktop::panelAndRemoveButtonSignals()
{
    TestMachine m;
    ScreenDesktop d;
    QCOMPARE(d.waitPanel, d.findChild<QWidget *>("widget"));

    QSignalSpy stop(&d, &dektopWidget::needStopOperation);
    d.toolButton()->click();
    QCOMPARE(stop.count(), 1);
    QCOMPARE(stop.at(0).at(0).toInt(), 1);

    QSignalSpy remove(&d, &dektopWidget::userProgram_Remove);
    QCOMPARE(d.removeButton->toolTip(), QString("Refresh"));
    QVERIFY(d.removeButton->isHidden());
    d.removeButton->show();
    d.removeButton->click();
    QCOMPARE(remove.count(), 1);

    // The timer keeps running; each timeout hides the button again.
    d.removeTimer->start(200);
    QVERIFY(QMetaObject::invokeMethod(d.removeTimer, "timeout"));
    QVERIFY(d.removeButton->isHidden());
    QVERIFY(!d.removeTimer->isSingleShot());

    // The window system cannot close the desktop.
    d.show();
    QVERIFY(!d.close());
    QVERIFY(d.isVisible());
}

void TestDesktop::contextMenuEntries()
{
    TestMachine m;
    ScreenDesktop d;
    const QList<QAction *> actions = d.contextMenu->actions();
    QCOMPARE(actions.size(), 2);
    QCOMPARE(actions.at(0)->text(), QString("Create Shortcut"));
    QCOMPARE(actions.at(1)->text(), QString("Refresh"));

    SeenBox seen;
    watchForBox(&seen);
    actions.at(0)->trigger();
    QCoreApplication::processEvents();
    QVERIFY(!seen.shown);   // the result is not looked at
    QCOMPARE(startsOf(m, "X:\\Program Files\\kelpie\\createShortcut.exe").size(), 1);

    QSignalSpy refreshed(&d, &dektopWidget::refreshClicked);
    actions.at(1)->trigger();
    QCOMPARE(refreshed.count(), 1);
}

void TestDesktop::iconByNameInEitherSlashForm()
{
    TestMachine m;
    m.write(desktopFolder + "Tools/a.exe", "x");
    m.write(desktopFolder + "note.txt", "x");
    const QImage forward = pixmapForFile("X:/Users/Default/Desktop/Tools").toImage();
    const QImage backward = pixmapForFile("X:\\Users\\Default\\Desktop\\Tools").toImage();
    const QImage file = pixmapForFile("X:/Users/Default/Desktop/note.txt").toImage();
    QVERIFY(!forward.isNull());
    QCOMPARE(forward, backward);
    // The folder is found as a folder through the drive mapping, so it does not look like a file.
    QVERIFY(forward != file);
    // A name that is not there still gets an answer, and nothing breaks.
    pixmapForFile("X:/Users/Default/Desktop/missing.lnk");
}

KELPIE_TEST_MAIN(TestDesktop)
#include "tst_desktop.moc"
