// The User Programs menu: the tree it mirrors from the start menu folder, its entries' starts and
// icons, and the remove button's road.

#include "testmachine.h"
#include "testmain.h"
#include "testshell.h"

#include "desktop/dektopwidget.h"
#include "launcher/my_useraction.h"
#include "launcher/mymenu.h"

#include <QToolButton>

namespace {

const QString programs = "drives/X/Users/Default/AppData/Roaming/Microsoft/Windows/Start Menu/Programs/";
const QString savedPrograms = "drives/E/Start Menu.1/" + programs.mid(9);

// Entries ending in "/" are empty folders, those ending in "@" links to the top folder.
void writeTree(TestMachine &m, const QStringList &entries)
{
    for (const QString &e : entries) {
        if (e.endsWith('@'))
            QVERIFY(QFile::link(m.folder() + '/' + programs, m.folder() + '/' + programs + e.chopped(1)));
        else if (e.endsWith('/'))
            QVERIFY(QDir().mkpath(m.folder() + '/' + programs + e));
        else
            m.write(programs + e, "x");
    }
}

// "a, Folder[b, Empty[]]": each entry's text, a sub-menu's entries in brackets.
QString treeOf(const QMenu *menu)
{
    QStringList parts;
    for (const QAction *a : menu->actions())
        parts << (a->menu() ? a->text() + QLatin1Char('[') + treeOf(a->menu()) + QLatin1Char(']') : a->text());
    return parts.join(QStringLiteral(", "));
}

} // namespace

class UserMenuTest : public QObject {
    Q_OBJECT

private slots:
    void init() { resetGlobals(); }

    void tree_data()
    {
        QTest::addColumn<QStringList>("entries");
        QTest::addColumn<QString>("tree");

        QTest::newRow("desktop.ini passed over at every level")
            << QStringList{"desktop.ini", "Tools/DESKTOP.INI", "Tools/a.lnk", "OnlyIni/desktop.ini"} << "Tools[a]";
        QTest::newRow("power at the top only, files and folders")
            << QStringList{"Power Options.lnk", "PowerTools/x.lnk", "b.lnk", "Tools/Power Options.lnk"}
            << "b, Tools[Power Options]";
        QTest::newRow("the .lnk cut is case-sensitive and at the first one")
            << QStringList{"App.LNK", "App.lnk.bak", "x.lnk.lnk"} << "App.LNK, App, x";
        QTest::newRow("files and folders mixed by name ignoring case")
            << QStringList{"beta.lnk", "Alpha/a.lnk", ".x.lnk"} << ".x, Alpha[a], beta";
        QTest::newRow("a top folder of empty folders shows nothing")
            << QStringList{"Hollow/Deeper/", "z.lnk"} << "z";
        QTest::newRow("below the top an empty folder is an empty menu, a deep file counts")
            << QStringList{"Mixed/a.lnk", "Mixed/Empty/", "Mixed/Full/Inner/b.lnk"}
            << "Mixed[a, Empty[], Full[Inner[b]]]";
        QString deep, nested = "bottom";
        for (int i = 99; i >= 0; --i) {
            deep.prepend(QString("d%1/").arg(i));
            nested = QString("d%1[").arg(i) + nested + (i ? "]" : ", loop]");
        }
        QTest::newRow("a hundred deep, a link to the top is an entry, names the code page lacks")
            << QStringList{deep + "bottom.lnk", "d0/loop@", "Редактор \u2713.lnk"}
            << nested + ", Редактор \u2713";
    }

    void tree()
    {
        QFETCH(QStringList, entries);
        QFETCH(QString, tree);
        TestMachine m;
        writeTree(m, entries);
        auto shell = makeShell();
        QCOMPARE(treeOf(shell->userMenu), tree);
        // A refresh empties and fills the same menu again, in its place between the configured
        // entries and "Run...".
        shell->refreshClicked();
        QCOMPARE(treeOf(shell->mainMenu),
                 "About Kelpie, , User Programs[" + tree + "], , Run..., Load Driver, Turn Off Computer");
    }

    void entryPlaceInMainMenu()
    {
        // desktop.ini alone gives no entry; once a file comes, the entry comes below "Turn Off Computer".
        TestMachine m;
        writeTree(m, {"desktop.ini"});
        auto shell = makeShell();
        const QString fixed = "About Kelpie, , , Run..., Load Driver, Turn Off Computer";
        writeTree(m, {"Late.lnk"});
        shell->refreshClicked();
        QCOMPARE(treeOf(shell->mainMenu), fixed + ", User Programs[Late]");

        // The file goes: the menu empties but stays in place; the folder goes: it stands as it was.
        QVERIFY(QFile::remove(m.folder() + "/" + programs + "Late.lnk"));
        shell->refreshClicked();
        QCOMPARE(treeOf(shell->mainMenu), fixed + ", User Programs[]");
        writeTree(m, {"Back.lnk"});
        shell->refreshClicked();
        QVERIFY(QDir(m.folder() + "/" + programs).removeRecursively());
        shell->refreshClicked();
        QCOMPARE(treeOf(shell->mainMenu), fixed + ", User Programs[Back]");
    }

    void entriesStartAndBearShellIcons()
    {
        TestMachine m;
        writeTree(m, {"Tool.lnk", "Tools/Viewer.exe"});
        auto shell = makeShell();
        QAction *tool = shell->userMenu->actions().at(0);
        // The shell's icon for the name, not the toolkit's.
        QCOMPARE(tool->icon().pixmap(32, 32).toImage(),
                 QPixmap::fromImage(m.sim->shellIcon(startMenuPath + "Tool.lnk")).toImage());
        QAction *viewer = shell->userMenu->actions().at(1)->menu()->actions().at(0);

        tool->trigger();
        QCOMPARE(m.journal().last(),
                 QString("start\topen\tX:\\Users\\Default\\AppData\\Roaming\\Microsoft\\Windows\\Start "
                         "Menu\\Programs\\Tool.lnk\t\t1"));

        // A file gone between the listing and the click: startLink tells the user.
        QVERIFY(QFile::remove(m.folder() + "/" + programs + "Tools/Viewer.exe"));
        QString box;
        answerBox(&box);
        viewer->trigger();
        QVERIFY(box.contains("The specified file was not found."));

        // An icon that cannot be had leaves the entry without one.
        m.facts("shell", "icons=0");
        shell->refreshClicked();
        QVERIFY(shell->userMenu->actions().at(0)->icon().isNull());
    }

    void remove_data()
    {
        QTest::addColumn<QString>("letter");
        QTest::addColumn<int>("answer");
        QTest::addColumn<QString>("before");   // what happens between the hover and the click
        QTest::addColumn<bool>("fileGone");
        QTest::addColumn<bool>("twinGone");
        QTest::addColumn<QString>("tree");
        const int yes = QMessageBox::Yes;
        QTest::newRow("yes deletes the file and its saved twin") << "E" << yes << "" << true << true << "Keep";
        QTest::newRow("no leaves both files")
            << "E" << int(QMessageBox::No) << "" << false << false << "Keep, Tools[App]";
        QTest::newRow("without a saved volume only the file goes") << "" << yes << "" << true << false << "Keep";
        QTest::newRow("a click after a refresh does nothing")
            << "E" << yes << "refresh" << false << false << "Keep, Tools[App]";
        QTest::newRow("a file gone before the click: its twin still goes, no refresh")
            << "E" << yes << "file gone" << true << true << "Keep, Tools[App]";
    }

    void remove()
    {
        QFETCH(QString, letter);
        QFETCH(int, answer);
        QFETCH(QString, before);
        QFETCH(bool, fileGone);
        QFETCH(bool, twinGone);
        QFETCH(QString, tree);
        TestMachine m;
        writeTree(m, {"Tools/App.lnk", "Keep.lnk"});
        m.write(savedPrograms + "Tools/App.lnk", "saved");
        savedVolumeLetter = letter;
        auto shell = makeShell();
        QToolButton *button = shell->desktop->removeButton;
        QTimer *timer = shell->desktop->removeTimer;
        QMenu *tools = shell->userMenu->actions().at(1)->menu();
        tools->popup(QPoint(200, 100));
        QVERIFY(QTest::qWaitForWindowExposed(tools));
        QAction *app = tools->actions().at(0);
        timer->start(200);
        // The remove button stands at the hovered entry's right end; closing the menu starts the
        // timer whose timeout hides it.
        app->hover();
        const QRect r = tools->actionGeometry(app);
        QCOMPARE(button->pos(), tools->pos() + QPoint(r.x() + r.width(), r.y()));
        QVERIFY(button->isVisible() && !timer->isActive() && selectedUserAction == app);
        tools->close();
        QVERIFY(timer->isActive());
        QVERIFY(QMetaObject::invokeMethod(timer, "timeout"));
        QVERIFY(button->isHidden());
        if (before == "refresh")
            shell->refreshClicked();
        else if (before == "file gone")
            QVERIFY(QFile::remove(m.folder() + "/" + programs + "Tools/App.lnk"));

        QString box;
        answerBox(&box, QMessageBox::StandardButton(answer));
        emit shell->desktop->userProgram_Remove();
        QCOMPARE(box, before == "refresh" ? QString()
                                          : QString("Confirmation|Do you want to remove user menu item:\nApp?|%1")
                                                .arg(int(QMessageBox::Yes | QMessageBox::No)));
        QCOMPARE(!onDisk(m, programs + "Tools/App.lnk"), fileGone);
        QCOMPARE(!onDisk(m, savedPrograms + "Tools/App.lnk"), twinGone);
        // A removal refreshes the menu: the emptied folder is gone from it.
        QCOMPARE(treeOf(shell->userMenu), tree);
    }
};

KELPIE_TEST_MAIN(UserMenuTest)
#include "tst_usermenu.moc"
