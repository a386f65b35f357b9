// The launcher: data_shell.cfg's rules, the menus and buttons made of it, and what each start hands on.

#include "testmachine.h"
#include "testmain.h"
#include "menucloser.h"
#include "testshell.h"

#include "launcher/appstart.h"
#include "launcher/mainbutton.h"
#include "launcher/menubuilder.h"
#include "launcher/my_action.h"
#include "launcher/my_pushbutton.h"
#include "launcher/mybutton.h"
#include "look/stylesheets.h"
#include "launcher/mymenu.h"
#include "launcher/shellconfig.h"
#include "my_shell1/linefile.h"

#include <QMouseEvent>
#include <QScreen>

namespace {

QString startLine(const QString &file, const QString &params)
{
    return QStringLiteral("start\topen\t%1\t%2\t1").arg(file, params);
}

QStringList menuTexts(QMenu *menu)
{
    QStringList out;
    for (QAction *a : menu->actions())
        out.append(a->isSeparator() ? QStringLiteral("--") : a->text());
    return out;
}

// A left button press or release at pos, or an event without data (Enter, Leave).
void send(QWidget *w, QEvent::Type type, QPoint pos = QPoint(10, 10))
{
    QMouseEvent mouse(type, pos, w->mapToGlobal(pos), Qt::LeftButton,
                      type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton, Qt::NoModifier);
    QEvent plain(type);
    QApplication::sendEvent(w, type == QEvent::Enter || type == QEvent::Leave ? &plain : &mouse);
}

} // namespace

class TestLauncher : public QObject {
    Q_OBJECT

    std::unique_ptr<TestMachine> m;

    std::unique_ptr<my_shell1> shell(const QByteArray &cfg)
    {
        if (!cfg.isNull())
            m->config(cfg);
        return makeShell(screenWidth, screenHeight);
    }

private slots:
    void init()
    {
        resetGlobals();
        const QRect screen = QGuiApplication::primaryScreen()->geometry();
        screenWidth = screen.width();
        screenHeight = screen.height();
        m = std::make_unique<TestMachine>();
    }
    void cleanup() { m.reset(); }

    void readingRules_data()
    {
        QTest::addColumn<QByteArray>("cfg");
        QTest::addColumn<QStringList>("read");
        auto row = [](const char *rule, const QByteArray &cfg, const QStringList &read) { QTest::newRow(rule) << cfg << read; };
        row("toRun stands anywhere in a line, even commented, the key cut out; it needs two fields",
            "; xtoRun=a|b|c\ntoRun=lonely", {"run ; xa|b"});
        row("other commented keys and unknown lines are passed over", "; version=1\n;title=t\nSyst\xc3\xa8me=x", {});
        row("text keys chain, the last line wins, nothing trimmed",
            "version=title=abc\nweb_default= www \nweb_default=second",
            {"version=title=abc", "title=abc", "web=second"});
        row("every occurrence of the key goes; CR LF leaves nothing", "x version=1.0 version=\r\ntitle=Shell\r\n", {"version=x 1.0 ", "title=Shell"});
        row("UTF-8 whatever the first bytes look like", "title=Ch\xc3\xa8vre", {QString::fromUtf8("title=Ch\xc3\xa8vre")});
        row("a sub-menu needs three fields", "mainMenu=1|Tools|t.png\nmainMenu=2|Short", {"menu 1 Tools|t.png"});
        row("an entry takes seven fields, empty ones kept, more ignored; six are dropped",
            "menuItem=1|101| Net|i24.png|a.exe||hint|extra\nmenuItem=1|102|Six|i.png|a.exe|",
            {"item 1/101  Net|i24.png|a.exe||hint"});
        row("numbers: base 10, signed, anything else 0", "menuItem=abc|-3|Zero|||||\nmenuItem=12x|7|N|||||",
            {"item 0/-3 Zero||||", "item 0/7 N||||"});
        row("the separator word inside a text makes a separator ahead of the entry",
            "menuItem=0|7|my mainSeparator text|i.png|b.exe|-p|",
            {"separator", "item 0/7 my mainSeparator text|i.png|b.exe|-p|"});
        row("launcher buttons: six fields, numbered from 1000 whatever the menu ids",
            "morvaneItem=a|b|c|d|e\n;morvaneItem=a|b|c|d|e|f\nmorvaneItem=n|r|c|Tip|p.exe|-q\nmenuItem=0|1000|X|i|m.exe||\n"
            "morvaneItem=n2|r2|c2|Tip2|q.exe||more", {"item 0/1000 X|i|m.exe||", "button 1000 n|r|c|Tip|p.exe|-q", "button 1001 n2|r2|c2|Tip2|q.exe|"});
        row("fixed buttons: the last good line wins; short and commented ones are passed over",
            "fixedB3=a.png|Tip|first.exe\nfixedB3=b.png|Tip|second.exe\nfixedB4=short|x\n;fixedB5=c|d|e", {"fixed3 b.png|Tip|second.exe"});
        row("one line fills two fixed keys, the first match shortening it for the next",
            "fixedB1=i|t|cmdfixedB2=j|u|v", {"fixed1 i|t|cmdfixedB2=j", "fixed2 i|t|cmdj"});
        row("a NUL ends the text of its line; a return anywhere is taken out",
            QByteArray("title=ab\0cd\nversion=1\r2\r\n", 24), {"version=12", "title=ab"});
        row("a return inside a key still leaves the key, as the text has it; a key after a NUL is not read",
            QByteArray("morvane\rItem=n|r|c|Tip|p.exe|-q\nfixed\rB1=i|t|c\nx\0fixedB2=j|u|v", 62),
            {"button 1000 n|r|c|Tip|p.exe|-q", "fixed1 i|t|c"});
        row("a line is whole where the file's reading crosses 64 KiB",
            QByteArray(65530, ';') + "\ntitle=" + QByteArray(100, 't'), {"title=" + QString(100, 't')});
        row("an overlong line keeps its first bytes, its rest is passed over, the next line counts",
            "title=" + QByteArray(int(linefile::maxLineBytes), 'x') + "\nversion=2",
            {"version=2", "title=" + QString(int(linefile::maxLineBytes) - 7, 'x')});
    }

    // What the three passes read, one record a line.
    void readingRules()
    {
        QFETCH(QByteArray, cfg);
        QFETCH(QStringList, read);
        m->config(cfg + "\n");
        QStringList got;
        const MainMenuPass p = shellconfig::readMainMenu();
        for (auto [has, key, value] : {std::make_tuple(p.hasVersion, "version=", p.version),
                                       std::make_tuple(p.hasTitle, "title=", p.title),
                                       std::make_tuple(p.hasWebDefault, "web=", p.webDefault)})
            if (has)
                got << key + value;
        for (const RunEntry &r : p.toRun)
            got << "run " + r.program + "|" + r.arguments;
        for (const MenuLine &l : p.menu)
            got << (l.kind == MenuLine::Separator ? QString("separator")
                    : l.kind == MenuLine::SubMenu ? QString("menu %1 %2|%3").arg(QString::number(l.id), l.text, l.icon)
                                                  : QString("item %1/%2 ").arg(l.parentId).arg(l.id)
                                                        + QStringList{l.text, l.icon, l.path, l.params, l.hint}.join('|'));
        for (const LauncherLine &b : shellconfig::readLauncherButtons().buttons)
            got << QString("button %1 ").arg(b.id)
                    + QStringList{b.normalImage, b.nearImage, b.activeImage, b.tip, b.path, b.params}.join('|');
        const FixedPass f = shellconfig::readFixedButtons();
        for (int i = 0; i < 5; ++i)
            if (f.buttons[i].set)
                got << QString("fixed%1 ").arg(i + 1) + QStringList{f.buttons[i].icon, f.buttons[i].tip, f.buttons[i].command}.join('|');
        QCOMPARE(got, read);
    }

    void mediumStartEntry_data()
    {
        QTest::addColumn<QString>("program");
        QTest::addColumn<bool>("removable");
        QTest::addColumn<int>("disk");
        QTest::addColumn<QString>("expected");   // after " -a"
        QTest::newRow("disk 0, in any case and folder") << "tools\\ZEMBRA" << true << 0 << "-xd=0 -a";
        QTest::newRow("no disk known") << "Zembra.exe" << true << -1 << " -a";
        QTest::newRow("not removable") << "Zembra.exe" << false << 1 << " -a";
        QTest::newRow("other tool") << "other.exe" << true << 1 << " -a";
    }
    void mediumStartEntry()
    {
        QFETCH(QString, program);
        QFETCH(bool, removable);
        QFETCH(int, disk);
        QFETCH(QString, expected);
        RunEntry e;
        QVERIFY(appstart::mediumStartEntry(program, " -a", removable, disk, &e));
        QCOMPARE(e.program + e.arguments, program + expected);
        QVERIFY(!appstart::mediumStartEntry(QString(), " -a", removable, disk, &e));
    }

    // (Queue paths: startQueueAndRecords; the menu above the panel: menuFromFile.) Without the file
    // nothing is read; the checker's notes quote values as written, whatever "%n" they hold.
    void pathRulesAndNotes()
    {
        QCOMPARE(appstart::menuIconPath(QStringLiteral("icons/24/net24.png")), QStringLiteral("icons/32/net32.png"));
        QCOMPARE(mainMenuTop(768, 202, 500), 268);   // exactly room for it below
        QVERIFY(!shellconfig::readMainMenu().opened && !shellconfig::readLauncherButtons().opened
                && !shellconfig::readFixedButtons().opened);
        m->config("menuItem=0|7|50%3 off|i.png|a%1.exe|-p %2|\nfixedB2=i|t|%1.exe\n");
        QList<ConfigNote> notes;
        shellconfig::readMainMenu(QString::fromLatin1(shellconfig::fileName()), &notes);
        shellconfig::readFixedButtons(QString::fromLatin1(shellconfig::fileName()), &notes);
        QStringList texts;
        for (const ConfigNote &n : notes)
            texts << n.text;
        QCOMPARE(texts, QStringList({"menu entry 7 \"50%3 off\" under 0 starts \"a%1.exe\" \"-p %2\"", "fixed button 2 runs \"%1.exe\""}));
    }

    void menuFromFile()
    {
        appRun = QStringLiteral("Zembra.exe");
        appArg = QStringLiteral(" -a");
        menuStyle = menuStyleSheet();
        removableBoot = true;
        mediumDiskNumber = 1;
        auto s = shell("menuItem=1|100|Early|i.png|early.exe||\ntoRun=net|-x\nmainMenu=1|Tools|t.png\nmainMenu=0|Orphans|o.png\n"
                       "menuItem=1|101|Ping|p24.png|ping.exe|-t|Sends pings\nmainSeparator\nmenuItem=0|5|Direct|d.png|tools/d.exe|a/b|\n"
                       "menuItem=9|6|Lost|d.png|lost.exe||\nmenuItem=-1|8|Unplaced|d.png|u.exe||\n"
                       "menuItem=0|1000|Menu|i.png|menu.exe||\nmorvaneItem=n.png|r.png|a.png|Tip|button.exe|-b\n"
                       "fixedB3=t.png|Tasks|tm.exe\nfixedB5=s.png|Shot|shot.exe\n");
        const QStringList texts = menuTexts(s->mainMenu);
        const int about = texts.indexOf(QStringLiteral("About Kelpie"));
        QCOMPARE(texts.mid(about, 6), QStringList({"About Kelpie", "--", "Tools", "Orphans", "--", "Direct"}));
        QCOMPARE(s->menuActions.size() + s->subMenus.size(), 4);
        QCOMPARE(menuTexts(s->subMenus[0]), QStringList({"Ping"}));
        QVERIFY(s->subMenus[1]->actions().isEmpty());

        auto *ping = qobject_cast<my_Action *>(s->subMenus[0]->actions().at(0));
        QVERIFY(ping && ping->hint == QStringLiteral("Sends pings"));
        auto *direct = qobject_cast<my_Action *>(s->mainMenu->actions().at(about + 5));
        // Forward reference, unknown and negative parents: no record.
        QCOMPARE(s->appList.size(), 4);
        QCOMPARE(s->appList[0].id + s->appList[1].id + s->appList[2].id + s->appList[3].id, 101 + 5 + 1000 + 1000);
        // The medium's start entry follows the file's.
        QCOMPARE(toRunList.size(), 2);
        QCOMPARE(toRunList[0].program + toRunList[1].program + toRunList[1].arguments,
                 QStringLiteral("netZembra.exe-xd=1 -a"));

        QVERIFY(s->taskManagerButton->isVisibleTo(s.get()) && s->shotButton->isVisibleTo(s.get()));
        QVERIFY(s->timeButton->isHidden() && s->keyboardButton->isHidden());
        QCOMPARE(s->taskManagerButton->toolTip(), QStringLiteral("Tasks"));

        // An entry's click reaches startApp: slashes turn, parameters stay. A launcher button numbered
        // like a menu entry starts the entry. The clock's editor starts with nothing set.
        direct->trigger();
        ping->trigger();
        emit s->findChildren<MyButton *>().at(0)->mButtonClicked(1000);
        s->taskManagerButton->click();
        s->shotButton->click();
        s->startTimeEditor();
        s->noAdapterButton->click();
        QCOMPARE(m->journalOf("start"), QStringList({startLine("tools\\d.exe", "a/b"), startLine("ping.exe", "-t"),
                                                     startLine("menu.exe", ""), startLine("tm.exe", ""), startLine("shot.exe", ""),
                                                     startLine("", ""), startLine("IPcfg.exe", "")}));

        // The main menu and its sub-menus wear the menu colours.
        for (QMenu *menu : {static_cast<QMenu *>(s->mainMenu), static_cast<QMenu *>(s->subMenus[0])}) {
            const QImage look = menu->grab().toImage();
            QCOMPARE(QColor(look.pixel(look.width() - 4, look.height() / 2)), QColor(0x13, 0x4c, 0x78));
        }

        // With the panel at the foot the menu opens above it, 2 pixels clear; its modal run ends.
        s->show();
        s->move(0, screenHeight - 64);
        QRect seen;
        closeMenuWhenShown(s->mainMenu, [&] { seen = s->mainMenu->geometry(); });
        s->startButton->menuRunning = true;
        s->openMenu();
        QCOMPARE(seen.height(), s->mainMenu->sizeHint().height());
        QCOMPARE(seen.bottom() + 1 + 2, s->y());
        QVERIFY(!s->startButton->menuRunning);
    }

    // The start queue's paths and log lines, each program once, none in a second instance; then
    // startApp by id: "#mapdrive" rewritten for good, no path no start, the first of two ids.
    void startQueueAndRecords()
    {
        auto s = shell("toRun=Net%1.EXE|-x\ntoRun=my.exe.bak|\n");
        s->runTaskList();
        QCOMPARE(m->journalOf("start"), QStringList({startLine("x:\\program files\\kelpie\\Net%1.EXE.exe", "-x"),
                                                     startLine("x:\\program files\\kelpie\\my.exe.bak", "")}));
        QVERIFY(toRunList.isEmpty());
        // A log line a start with the last error (neither is on the medium); "%1" stays as written.
        QCOMPARE(m->read("drives/X/init.log"), QByteArray("run x:\\program files\\kelpie\\Net%1.EXE.exe=2\r\n"
                                                      "run x:\\program files\\kelpie\\my.exe.bak=2\r\n"));
        s->runTaskList();
        QCOMPARE(m->journalOf("start").size(), 2);

        toRunList = {{QStringLiteral("a"), QString()}};
        secondInstance = true;
        s->runTaskList();
        QCOMPARE(m->journalOf("start").size(), 2);
        // An init.log that cannot be written costs its line, not the start.
        QVERIFY(QFile::remove(m->folder() + "/drives/X/init.log") && QDir(m->folder()).mkpath("drives/X/init.log"));
        secondInstance = false;
        s->runTaskList();
        QCOMPARE(m->journalOf("start").size(), 3);

        const QString longPath = QStringLiteral("C:/") + QString(297, QLatin1Char('p'));
        const QString longParams = QString(300, QLatin1Char('q'));
        s->appList = {{1, QStringLiteral("#mapdrive"), QStringLiteral("/x")},
                      {2, QString(), QStringLiteral("-a")},
                      {3, longPath, longParams},
                      {3, QStringLiteral("second.exe"), QString()}};
        for (int id : {1, 1, 2, 42, 3})
            s->startApp(id);
        QCOMPARE(s->appList[0].path, QStringLiteral("mapDrive.exe"));
        QCOMPARE(m->journalOf("start").mid(3), QStringList({startLine("mapDrive.exe", "/x"), startLine("mapDrive.exe", "/x"),
                                                            startLine(QString(longPath).replace('/', '\\'), longParams)}));
    }

    // The button under the pointer grows most, its neighbours a little, the rest not at all; a
    // press grows it once more, and a release anywhere starts its program.
    void hoverChainAndPress()
    {
        displayHeight = 600;
        auto s = shell("morvaneItem=a|b|c|t0|p0|\nmorvaneItem=a|b|c|t1|p1|\nmorvaneItem=a|b|c|t2|p2|-z\nmorvaneItem=a|b|c|t3|p3|\n");
        QList<MyButton *> b = s->findChildren<MyButton *>();
        std::sort(b.begin(), b.end(), [](MyButton *x, MyButton *y) { return x->id < y->id; });
        QCOMPARE(b.size(), 4);
        auto look = [&](int i, const char *size) {
            const QPoint rest(110 + 38 * i, 35);
            return *size == 'n' ? QRect(rest + QPoint(-6, -10), QSize(32, 32))
                 : *size == 'h' ? QRect(rest + QPoint(-14, -30), QSize(48, 54)) : QRect(rest, QSize(24, 24));
        };
        auto expect = [&](const char *sizes) {
            for (int i = 0; i < 4; ++i)
                QCOMPARE(b[i]->geometry(), look(i, sizes + i));
        };
        send(b[1], QEvent::Enter);
        expect("nhnr");
        QVERIFY(b[1]->hovered);
        send(b[1], QEvent::Leave);
        expect("rrrr");
        send(b[2], QEvent::Enter);
        expect("rnhn");
        send(b[2], QEvent::MouseButtonPress, QPoint(5, 6));
        QCOMPARE(b[2]->geometry(), QRect(look(2, "r").topLeft() + QPoint(-15, -31), QSize(50, 56)));
        QCOMPARE(dragOffset, QPoint(b[2]->x() + 5, 600 - 90 + 6));
        send(b[2], QEvent::MouseButtonRelease, QPoint(500, 400));
        QCOMPARE(b[2]->geometry(), look(2, "h"));
        QCOMPARE(m->journalOf("start"), QStringList({startLine("p2", "-z")}));
    }

    // Open at first; a press closes it (hover), the pointer leaving rests it, entering hovers it,
    // a press opens it, and open it stays pressed when the pointer leaves.
    void startButtonStatesAndPulse()
    {
        mainButton b;
        QSignalSpy open(&b, &mainButton::needOpenMenu);
        QSignalSpy close(&b, &mainButton::needCloseMenu);
        auto look = [&b] { return QString::number(b.state) + (b.opened ? "o" : ""); };
        QString states = look();
        for (QEvent::Type t : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease, QEvent::Leave, QEvent::Enter,
                               QEvent::MouseButtonPress, QEvent::MouseButtonRelease, QEvent::Leave}) {
            send(&b, t);
            states += look();
        }
        QCOMPARE(states, QString("2o11012o2o2o"));
        QVERIFY(b.menuRunning);
        QCOMPARE(close.count() + 10 * open.count(), 11);

        // The pulse: up and down once, a short pause, then after the next round a long one.
        QList<int> pulse;
        for (int i = 0; i < 22; ++i)
            pulse.append((b.rainbowStep(), b.state));
        QCOMPARE(pulse.mid(0, 11), QList<int>({0, 5, 6, 7, 8, 9, 8, 7, 6, 5, 0}));
        QCOMPARE(b.rainbowTimer->interval(), 10000);
    }
};

KELPIE_TEST_MAIN(TestLauncher)
#include "tst_launcher.moc"
