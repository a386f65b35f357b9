// The desktop of shortcuts: its listing and grid, the pool of buttons, removal, starts and icons.

#include "testmain.h"
#include "testmachine.h"

#include "desktop/dektopwidget.h"
#include "desktop/my_toolbutton.h"
#include "look/stylesheets.h"
#include "my_shell1/globals.h"

#include <QMenu>

namespace {

const QString desktopFolder = QStringLiteral("drives/X/Users/Default/Desktop/");
const QString savedFolder = QStringLiteral("drives/E/Desktop.1/Users/Default/Desktop/");

void writeEntries(TestMachine &m, const QStringList &names)
{
    for (const QString &name : names)
        m.write(desktopFolder + name, "x");
}

// "e000", "e001", ... as links.
QStringList numbered(int count)
{
    QStringList names;
    for (int i = 0; i < count; ++i)
        names << QString("e%1.lnk").arg(i, 3, 10, QLatin1Char('0'));
    return names;
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
    std::unique_ptr<TestMachine> m;

private slots:
    // The desktop takes the panel's screen, which the simulated display may make smaller.
    void init()
    {
        resetGlobals();
        screenWidth = 1024;
        screenHeight = 768;
        menuStyle = menuStyleSheet();
        m = std::make_unique<TestMachine>();
    }
    void cleanup() { m.reset(); }

    void listing_data()
    {
        QTest::addColumn<QStringList>("files");
        QTest::addColumn<QStringList>("shown");
        QTest::newRow("desktop.ini in any case, beside a link") << QStringList{"Desktop.INI", "Tool.lnk"} << QStringList{"Tool"};
        QTest::newRow("only the exact name is passed over") << QStringList{"desktop.ini.bak"} << QStringList{"desktop"};
        QTest::newRow("label is the name up to its first point") << QStringList{"Report.final.lnk"} << QStringList{"Report"};
        // Folders stand among the files, not before them; hidden entries show too.
        QTest::newRow("by name ignoring case") << QStringList{"beta.lnk", "Alpha.lnk", "Zeta/inside.txt", "gamma.txt", ".hidden"}
                                               << QStringList{"", "Alpha", "beta", "gamma", "Zeta"};
    }

    // The first placed button takes the first cell, whatever was passed over, with its shell icon.
    void listing()
    {
        QFETCH(QStringList, files);
        QFETCH(QStringList, shown);
        writeEntries(*m, files);
        dektopWidget d;
        d.layoutDesktop("T", "V");
        QCOMPARE(visibleTexts(d), shown);
        const my_ToolButton *first = d.desktopButtons.at(0);
        QCOMPARE(first->geometry(), QRect(20, 20, 110, 60));
        QCOMPARE(first->icon().pixmap(32, 32).toImage(), QPixmap::fromImage(m->sim->shellIcon(first->path)).toImage());
        // White text on the desktop's blue; the button's menu wears the menu colours.
        const QImage menu = first->menu->grab().toImage();
        QCOMPARE(QColor(menu.pixel(menu.width() - 4, menu.height() / 2)), QColor(0x13, 0x4c, 0x78));
        QCOMPARE(first->palette().color(QPalette::ButtonText), QColor(Qt::white));
    }

    // Laid out again on a new screen: the title box, the wait panel and the grid move.
    void gridOnAScreen_data()
    {
        QTest::addColumn<QSize>("screen");
        QTest::addColumn<int>("perColumn");
        QTest::newRow("1366x1080") << QSize(1366, 1080) << 16;
        QTest::newRow("800x760: the next row landing on the limit stays in the column") << QSize(800, 760) << 11;
    }

    void gridOnAScreen()
    {
        QFETCH(QSize, screen);
        QFETCH(int, perColumn);
        writeEntries(*m, numbered(40));
        dektopWidget d;
        d.layoutDesktop("Kelpie", "1.0");
        d.waitPanel->resize(371, 101);
        screenWidth = screen.width();
        screenHeight = screen.height();
        d.layoutDesktop("Kelpie", "2.0");
        QCOMPARE(d.size(), screen);
        QCOMPARE(d.titleLabel()->geometry(), QRect(screen.width() - 430, 50, 390, 200));
        // Halves are rounded down one by one: w / 2 - 185, not (w - 371) / 2.
        QCOMPARE(d.waitPanel->pos(), QPoint(screen.width() / 2 - 185, screen.height() / 2 - 50));
        QCOMPARE(d.desktopCount, 40);
        for (int i = 0; i < 40; ++i)
            QCOMPARE(d.desktopButtons.at(i)->geometry(), QRect(i / perColumn * 120 + 20, i % perColumn * 60 + 20, 110, 60));
    }

    // A smaller desktop later hides what it no longer uses and makes no new buttons; a missing
    // folder gives an empty desktop.
    void poolOfHundredIsNeverExceeded()
    {
        writeEntries(*m, numbered(130));
        screenWidth = 1920;
        screenHeight = 1080;
        dektopWidget d;
        d.layoutDesktop("T", "V");
        QCOMPARE(visibleTexts(d).size(), 100);
        for (const QString &name : numbered(130).mid(3))
            QVERIFY(QFile::remove(m->folder() + "/" + desktopFolder + name));
        d.rebuildDesktop();
        QCOMPARE(visibleTexts(d), (QStringList{"e000", "e001", "e002"}));
        QCOMPARE(d.findChildren<my_ToolButton *>().size(), 100);
        QVERIFY(QDir(m->folder() + "/" + desktopFolder).removeRecursively());
        d.rebuildDesktop();
        QVERIFY(visibleTexts(d).isEmpty());
    }

    void startLinkBox_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("tail");   // empty: no box
        QTest::newRow("file gone") << "Gone.lnk" << "The specified file was not found.";
        QTest::newRow("no program for the file")
            << "data.xyz" << "There is no application associated with the given file name extension. This error "
                             "will also be returned if you attempt to print a file that is not printable.";
        QTest::newRow("started") << "There.lnk" << QString();
    }

    void startLinkBox()
    {
        QFETCH(QString, name);
        QFETCH(QString, tail);
        writeEntries(*m, {"data.xyz", "There.lnk"});
        dektopWidget d;
        const QString s = "X:\\Users\\Default\\Desktop\\" + name;
        QString seen;
        answerBox(&seen);
        d.startLink(s, "-a");
        QCoreApplication::processEvents();
        QCOMPARE(m->journalOf("start"), QStringList("start\topen\t" + s + "\t-a\t1"));
        QCOMPARE(seen, tail.isEmpty() ? QString()
                                      : QString("Error|Windows cannot start \"%1\".\n%2|%3").arg(s, tail).arg(int(QMessageBox::Ok)));
        // Gaps in the table of start failures, success and anything below zero pass without a word.
        for (int code : {1, 4, 33, -2})
            QVERIFY(dektopWidget::startLinkMessage(s, code).isEmpty());
    }

    // A folder opens through the shell, by its whole path with backslashes, without a word.
    void longFolderPathPassesWhole()
    {
        const QString deep = QString(140, QLatin1Char('d')), name = QString(140, QLatin1Char('n'));
        desktopPath = "X:/Users/Default/Desktop/" + deep + "/";
        writeEntries(*m, {deep + "/" + name + "/a.exe"});
        dektopWidget d;
        d.layoutDesktop("T", "V");
        QCOMPARE(visibleTexts(d), QStringList{name});
        QString seen;
        answerBox(&seen);
        d.desktopButtons.at(0)->click();
        QCoreApplication::processEvents();
        QVERIFY(seen.isEmpty());
        QCOMPARE(m->journalOf("start"), QStringList("start\topen\tX:\\Users\\Default\\Desktop\\" + deep + "\\" + name + "\t\t1"));
    }

    // Remove asks nothing and takes the saved copy too (a full folder stays, its copy goes); with no
    // saved volume only the file goes. Create Shortcut ignores its result; Refresh tells the menu.
    // The remove button's timer keeps running after a timeout. The desktop cannot be closed.
    void buttonsAndMenus()
    {
        m->addDrive('E');
        writeEntries(*m, {"a.lnk", "b.lnk", "Stuck/inside.txt"});
        for (const char *name : {"a.lnk", "b.lnk", "Stuck"})
            m->write(savedFolder + QLatin1String(name), "saved");
        savedVolumeLetter = "E";
        dektopWidget d;
        d.layoutDesktop("T", "V");
        QSignalSpy refreshed(&d, &dektopWidget::refreshClicked);
        d.desktopButtons.at(0)->menu->actions().value(0)->trigger();
        QVERIFY(!onDisk(*m, desktopFolder + "a.lnk") && !onDisk(*m, savedFolder + "a.lnk"));
        QVERIFY(onDisk(*m, savedFolder + "b.lnk"));
        QCOMPARE(visibleTexts(d), (QStringList{"b", "Stuck"}));
        d.desktopButtons.at(1)->remove_Slot();
        QVERIFY(onDisk(*m, desktopFolder + "Stuck") && !onDisk(*m, savedFolder + "Stuck"));
        savedVolumeLetter.clear();
        d.desktopButtons.at(0)->remove_Slot();
        QVERIFY(!onDisk(*m, desktopFolder + "b.lnk") && onDisk(*m, savedFolder + "b.lnk"));
        QCOMPARE(visibleTexts(d), QStringList{"Stuck"});
        QCOMPARE(refreshed.count(), 0);

        const QList<QAction *> actions = d.contextMenu->actions();
        QString seen;
        answerBox(&seen);
        actions.at(0)->trigger();
        QCoreApplication::processEvents();
        QVERIFY(seen.isEmpty());
        QCOMPARE(m->journalOf("start"), QStringList("start\topen\tX:\\Program Files\\kelpie\\createShortcut.exe\t\t1"));
        writeEntries(*m, {"New.lnk"});
        actions.at(1)->trigger();
        QCOMPARE(refreshed.count(), 1);
        QCOMPARE(visibleTexts(d), (QStringList{"New", "Stuck"}));

        QSignalSpy stop(&d, &dektopWidget::needStopOperation);
        d.toolButton()->click();
        QCOMPARE(QList<QVariantList>(stop), QList<QVariantList>{{1}});
        QSignalSpy remove(&d, &dektopWidget::userProgram_Remove);
        d.removeButton->show();
        d.removeButton->click();
        QCOMPARE(remove.count(), 1);
        d.removeTimer->start(200);
        QVERIFY(QMetaObject::invokeMethod(d.removeTimer, "timeout"));
        QVERIFY(d.removeButton->isHidden() && d.removeTimer->isActive());
        d.show();
        QVERIFY(!d.close() && d.isVisible());
    }

    // A shortcut wears its target's kind and a mark of its own.
    void shellIcon_data()
    {
        QTest::addColumn<QString>("first");
        QTest::addColumn<QString>("second");
        QTest::addColumn<bool>("same");
        QTest::newRow("a missing file still has its kind, either slash form") << "gone.exe" << "X:\\Users\\Default\\Desktop\\a.exe" << true;
        QTest::newRow("kinds differ") << "a.exe" << "note.txt" << false;
        QTest::newRow("a shortcut is marked") << "cmd.lnk" << "a.exe" << false;
        QTest::newRow("shortcuts to a program and a text") << "cmd.lnk" << "notes.lnk" << false;
        QTest::newRow("an unreadable shortcut is one to a plain file") << "junk.lnk" << "name.lnk" << true;
    }

    void shellIcon()
    {
        QFETCH(QString, first);
        QFETCH(QString, second);
        QFETCH(bool, same);
        writeEntries(*m, {"a.exe", "note.txt", "junk.lnk"});
        m->addShortcut(desktopFolder + "cmd.lnk", "X:\\Windows\\System32\\cmd.exe");
        m->addShortcut(desktopFolder + "notes.lnk", "C:\\notes.txt");
        m->addShortcut(desktopFolder + "name.lnk", "C:\\Tools");
        const QImage a = pixmapForFile(desktopPath + first).toImage();
        QVERIFY(!a.isNull());
        QCOMPARE(a == pixmapForFile(second.contains(':') ? second : desktopPath + second).toImage(), same);
    }
};

KELPIE_TEST_MAIN(TestDesktop)
#include "tst_desktop.moc"
