#include "modalwatch.h"
#include "testmachine.h"
#include "testmain.h"
#include "updateserver.h"

#include "my_shell1/globals.h"
#include "update/downloadinfo.h"
#include "update/finishpage.h"
#include "update/morvaneupdatemanager.h"
#include "update/qmorvanesettings.h"
#include "update/rollbackpage.h"
#include "update/updatefacts.h"
#include "update/updatepage.h"
#include "update/updateversion.h"
#include "update/updatewizard.h"
#include "update/welcomepage.h"

#include <QDirIterator>
#include <memory>

namespace {

// What the one-shot callback was handed, "newer <build>" or "older <build>" a call.
QStringList answers;
void rememberAnswer(bool newer, int latest)
{
    answers << QStringLiteral("%1 %2").arg(newer ? "newer" : "older").arg(latest);
}

// A manager ends its exchange by deleting itself.
bool ended(const QPointer<QObject> &alive)
{
    return QTest::qWaitFor([&]() { return alive.isNull(); }, 30000);
}

QStringList filesBelow(const QString &folder)
{
    QStringList files;
    QDirIterator it(folder, QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext())
        files << QDir(folder).relativeFilePath(it.next());
    files.sort();
    return files;
}

} // namespace

class UpdateTest : public QObject {
    Q_OBJECT

    UpdateServer server;
    std::unique_ptr<TestMachine> machine;
    QString program;   // the folder that receives the version folders
    QString folder10;   // its folder of version 14.0.10
    QString probeName = QFileInfo(QStringLiteral(KELPIE_PROBE_PATH)).fileName();

    // {base}: the server, {home}: the program's folder, {folder}: the folder of 14.0.10.
    QString fill(QString text) const
    {
        return text.replace(QLatin1String("{base}"), server.base())
            .replace(QLatin1String("{home}"), program)
            .replace(QLatin1String("{folder}"), folder10);
    }

    std::unique_ptr<UpdateWizard> openWizard(const QString &scenario)
    {
        setUpdateEndpoint(server.endpoint(scenario));
        auto wizard = std::make_unique<UpdateWizard>(0, productName);
        wizard->show();
        return wizard;
    }

    // A wizard whose check found 14.0.10, at the update page asking the scenario where it lies.
    std::unique_ptr<UpdateWizard> updateWizardAsking(const QString &scenario)
    {
        auto wizard = openWizard(QStringLiteral("newer"));
        if (!QTest::qWaitFor([&]() { return !wizard->welcomePage->updateCheckBox->isHidden(); }, 30000))
            return nullptr;
        setUpdateEndpoint(server.endpoint(scenario));
        wizard->next();
        if (wizard->updatePage->infoLabel->text() != QLatin1String("Checking download info..."))
            return nullptr;
        return wizard;
    }

    // Selects the history row of the version as a click would.
    static void pick(UpdateWizard &wizard, const QString &version)
    {
        QTreeView *tree = wizard.welcomePage->tree;
        tree->setCurrentIndex(tree->model()->match(tree->model()->index(0, 0), Qt::DisplayRole, version).value(0));
        QMetaObject::invokeMethod(wizard.welcomePage, "enableRollbacks");
    }

private slots:
    void initTestCase()
    {
        QVERIFY2(server.start(QStringLiteral(KELPIE_PROBE_PATH)), qPrintable(server.error));
    }

    void init()
    {
        machine.reset();   // the old machine leaves the platform before the new one takes it
        machine = std::make_unique<TestMachine>();
        program = machine->folder() + QStringLiteral("/program");
        folder10 = program + QStringLiteral("/14.0.10");
        machine->write(QStringLiteral("program/escaped.exe"), "installed before");
        setProgramFolder(program);
        settingsFileName = machine->folder() + QStringLiteral("/settings.ini");
        resetGlobals();
        storeProductFacts();
        qputenv("KELPIE_PROBE_LOG", QFile::encodeName(machine->folder() + QStringLiteral("/probe.log")));
        qunsetenv("KELPIE_PROBE_EXIT");
        qunsetenv("KELPIE_PROBE_DELAY_MS");
        answers.clear();
    }

    void versions_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("build");
        QTest::addColumn<QString>("back");
        QTest::newRow("three parts") << "14.0.10" << 14010 << "14.0.10";
        QTest::newRow("revision 99") << "14.0.99" << 14099 << "14.0.99";
        QTest::newRow("revision 100 carries into the minor") << "14.0.100" << 14100 << "14.1";
        QTest::newRow("trailing zero parts left out") << "14" << 14000 << "14";
        QTest::newRow("major above 99 loses its digits") << "114.0.1" << 114001 << "14.0.1";
        QTest::newRow("fourth part ignored") << "14.0.1.9" << 14001 << "14.0.1";
        QTest::newRow("part no number counts 0") << "14.x.1" << 14001 << "14.0.1";
        QTest::newRow("empty text") << "" << 0 << "0";
    }
    void versions()
    {
        QFETCH(QString, text);
        QFETCH(int, build);
        QFETCH(QString, back);
        QCOMPARE(versionToBuild(text), build);
        QCOMPARE(buildToVersion(build), back);
    }

    // The entry a version is written to, what is written there, and the welcome page's tree.
    void history_data()
    {
        QTest::addColumn<QByteArray>("ini");
        QTest::addColumn<QString>("version");
        QTest::addColumn<int>("entry");
        QTest::addColumn<QStringList>("rows");   // the welcome page's tree, newest first
        const QByteArray two = "[Updates]\nUpdate0_Version=14.0.5\nUpdate0_Title=First\nUpdate0_Notes=n\n"
                               "Update1_Version=14.0.10\nUpdate1_Title=Second\n";
        QTest::newRow("empty history") << QByteArray() << "14.0.10" << 0 << QStringList();
        const QStringList tree{"14.0.10|Second||", "14.0.5|First|n|n"};
        QTest::newRow("new version at the first free entry") << two << "14.1" << 2 << tree;
        QTest::newRow("same version overwritten in place") << two << "14.0.5" << 0 << tree;
        QTest::newRow("a gap ends the dense list") << two + "Update3_Version=14.2\n" << "14.2" << 2 << tree;
    }
    void history()
    {
        QFETCH(QByteArray, ini);
        QFETCH(QString, version);
        QFETCH(int, entry);
        QFETCH(QStringList, rows);
        if (!ini.isEmpty())
            machine->write(QStringLiteral("settings.ini"), ini);
        auto wizard = openWizard(QString());
        QAbstractItemModel *model = wizard->welcomePage->tree->model();
        QStringList seen;   // version, title, the notes as the tooltip of the version and of the date
        for (int r = 0; r < model->rowCount(); ++r)
            seen << model->index(r, 0).data().toString() + '|' + model->index(r, 2).data().toString() + '|'
                        + model->index(r, 0).data(Qt::ToolTipRole).toString() + '|'
                        + model->index(r, 1).data(Qt::ToolTipRole).toString();
        QCOMPARE(seen, rows);
        // The icon's resource path has no slash behind the colon.
        QVERIFY(!wizard->windowIcon().isNull());

        QCOMPARE(updateEntryFor(version), entry);
        setUpdateField(entry, VersionField, version);
        setUpdateField(entry, 5, QStringLiteral("beyond"));   // there is no sixth field
        const QByteArray written = machine->read(QStringLiteral("settings.ini"));
        QVERIFY(written.startsWith("[Updates]") && !written.contains("beyond"));
        QVERIFY(written.contains(QStringLiteral("Update%1_Version=%2").arg(entry).arg(version).toUtf8()));
        QCOMPARE(updateEntryFor(version), entry);
    }

    void setupFileNames_data()
    {
        QTest::addColumn<QString>("url");
        QTest::addColumn<QString>("name");
        QTest::newRow("last part of the URL") << "http://h/a/b/setup.exe" << "setup.exe";
        QTest::newRow("backslashes") << "http://h/x/..\\..\\evil.exe" << "evil.exe";
        QTest::newRow("drive letter") << "http://h/x/c:\\windows\\evil.exe" << "evil.exe";
        QTest::newRow("drive letter without separator") << "http://h/x/c:evil.exe" << "evil.exe";
        QTest::newRow("parent folder") << "http://h/x/.." << "";
        QTest::newRow("folder itself") << "http://h/x/." << "";
        QTest::newRow("no slash at all") << "setup.exe" << "setup.exe";
    }
    void setupFileNames()
    {
        QFETCH(QString, url);
        QFETCH(QString, name);
        QCOMPARE(setupFileName(url), name);
    }

    // The two questions to the server, each by a manager that deletes itself at the end. The
    // latest version: each chunk emitted, the callback once. The download info: one answer, the
    // last chunk kept, a 404 page taken as the body. Every exchange ends with one download info.
    void exchanges_data()
    {
        QTest::addColumn<QString>("scenario");
        QTest::addColumn<bool>("info");            // the download-info question
        QTest::addColumn<QStringList>("emitted");  // the answer's signals
        QTest::addColumn<QStringList>("called");   // what the callback was handed
        const QString notFound = "<html><head><title>404 Not Found</title></head><body><h1>Not Found</h1>"
                                 "<p>The requested URL was not found on this server.</p></body></html>";
        QTest::newRow("query holds pid, build and os")
            << "echo" << false << QStringList{"/echo/act/update.aspx?pid=14&ver=14001&os=0"} << QStringList{"older 0"};
        QTest::newRow("empty reply emits nothing") << "empty" << false << QStringList() << QStringList();
        QTest::newRow("each chunk emitted, callback once")
            << "split" << false << QStringList{"14.0", ".10"} << QStringList{"older 14000"};
        QTest::newRow("info in one chunk") << "chunks" << true
            << QStringList{"3072|{base}/setup/size=3072,chunks=3,gate=chunks/setup.exe|Title|Notes"} << QStringList();
        QTest::newRow("info in two chunks keeps the last")
            << "split" << true << QStringList{"4096|{base}/setup/size=4096/second.exe|Three|Four"} << QStringList();
        QTest::newRow("info refused") << "" << true << QStringList{""} << QStringList();
        QTest::newRow("HTML error page taken as the body") << "gone" << true << QStringList{notFound} << QStringList();
    }
    void exchanges()
    {
        QFETCH(QString, scenario);
        QFETCH(bool, info);
        QFETCH(QStringList, emitted);
        QFETCH(QStringList, called);
        setUpdateEndpoint(server.endpoint(scenario));
        auto *manager = new MorvaneUpdateManager;
        const QPointer<QObject> alive(manager);
        manager->ownBuild = currentBuild();
        manager->callback = rememberAnswer;
        connect(manager, &MorvaneUpdateManager::LatestVersion, manager, &MorvaneUpdateManager::GotLatestVersion);
        QSignalSpy versions(manager, &MorvaneUpdateManager::LatestVersion);
        QSignalSpy infos(manager, &MorvaneUpdateManager::DownloadInfo);
        QVERIFY(info ? manager->requestDownloadInfo(downloadInfoUrl()) : manager->requestLatestVersion(latestVersionUrl()));
        if (scenario == QLatin1String("split")) {   // the second chunk waits until the first is in
            QVERIFY(QTest::qWaitFor([&]() { return versions.count() || !manager->info.isEmpty(); }, 30000));
            QVERIFY(server.release(info ? QStringLiteral("split-info") : QStringLiteral("split-latest")));
        }
        QVERIFY(ended(alive));
        QStringList seen[2];
        for (const QList<QVariant> &args : versions)
            seen[0] << args.at(0).toString();
        for (const QList<QVariant> &args : infos)
            seen[1] << args.at(0).toString();
        QCOMPARE(seen[int(info)], emitted.replaceInStrings(QLatin1String("{base}"), server.base()));
        // Of the other signal only the empty info that ends a latest-version exchange.
        QCOMPARE(seen[int(!info)], info ? QStringList() : QStringList{QString()});
        QCOMPARE(answers, called);
    }

    void checkLatestVersionCallsBack()
    {
        setUpdateEndpoint(server.endpoint(QStringLiteral("newer")));
        QVERIFY(checkLatestVersion(rememberAnswer));
        QTRY_COMPARE_WITH_TIMEOUT(answers, QStringList{"newer 14010"}, 30000);
    }

    void welcomePage_data()
    {
        QTest::addColumn<QString>("scenario");
        QTest::addColumn<QString>("status");
        QTest::addColumn<bool>("offered");
        QTest::addColumn<bool>("closes");
        const QString latest = QStringLiteral("<b><font color=red>Your version is the latest!</font></b> Software "
                                              "update is not available");
        const QString down = QStringLiteral("<b><font color=red>Network isn't operational!</font></b> Software "
                                            "update is not available");
        QTest::newRow("newer version offered")
            << "newer" << "<b><font color=red>Update is available!</font></b> Ready to download version <b>14.0.10</b>"
            << true << false;
        QTest::newRow("same version: latest, Close") << "same" << latest << false << true;
        QTest::newRow("HTML error page reads as no newer version") << "gone" << latest << false << true;
        QTest::newRow("empty reply: no network") << "empty" << down << false << false;
        QTest::newRow("refused: no network") << "" << down << false << false;
    }
    void welcomePage()
    {
        QFETCH(QString, scenario);
        QFETCH(QString, status);
        QFETCH(bool, offered);
        QFETCH(bool, closes);
        auto wizard = openWizard(scenario);
        WelcomePage *page = wizard->welcomePage;
        if (offered || closes) {
            QTRY_COMPARE_WITH_TIMEOUT(page->statusLabel->text(), status, 30000);
        } else {   // an exchange of our own sent after the page's has ended: the page's answer is in
            auto *mine = new MorvaneUpdateManager;
            mine->requestLatestVersion(latestVersionUrl());
            QVERIFY(ended(mine));
        }
        QCOMPARE(page->statusLabel->text(), status);
        QCOMPARE(!page->updateCheckBox->isHidden(), offered);
        QCOMPARE(wizard->updatePage->updateTo, offered ? 14010 : 0);
        QCOMPARE(wizard->button(QWizard::NextButton)->text() == QLatin1String("Close"), closes);
        wizard->next();
        QCOMPARE(wizard->isVisible(), !closes);
        QCOMPARE(wizard->currentId(), offered || closes ? 1 : 0);
    }

    // The update page on each answer, most held by the server: Back disabled and Next refused while
    // the bytes come into a setup allocated at its full size; the phase it ends in; on disk the
    // bytes that came (zeros after a reset), nothing outside the version folder, the earlier file kept.
    void updatePage_data()
    {
        QTest::addColumn<QString>("scenario");   // "plain": a file stands where the version folder goes
        QTest::addColumn<int>("releases");   // of the server's gate, each after a part arrived
        QTest::addColumn<int>("size");       // of the setup; -1: none is made
        QTest::addColumn<int>("received");   // bytes of the server's pattern; -1: the reply never ended
        QTest::addColumn<QString>("status");
        QTest::addColumn<QString>("info");   // the phase it ends in
        const QString installing = QStringLiteral("Installing...");
        const QString done = QStringLiteral("Downloaded to {folder}/setup.exe");
        const QString asking = QStringLiteral("Checking download info...");
        const QString error = QStringLiteral("<font color=red><b>Error:</b></font> ");
        const QString noInfo = error + "Information about update has not been retrieved, communication error occured";
        QTest::newRow("several chunks") << "chunks" << 2 << 3072 << 3072 << installing << done;
        QTest::newRow("reset in the middle") << "reset" << 1 << 4096 << 2048 << installing << done;
        QTest::newRow("reply that never ends, ended by the test") << "forever" << 1 << 1048576 << -1 << installing << done;
        QTest::newRow("a name that tries to leave the folder stays in it")
            << "dotdot" << 0 << 100 << 100 << installing << "Downloaded to {folder}/escaped.exe";
        QTest::newRow("0-byte setup") << "zero" << 0 << 0 << 0 << installing << done;
        QTest::newRow("empty reply") << "empty" << 0 << -1 << 0 << noInfo << asking;
        QTest::newRow("HTML error page") << "gone" << 0 << -1 << 0 << noInfo << asking;
        QTest::newRow("fewer than four fields, no crash") << "short" << 0 << -1 << 0 << noInfo << asking;
        QTest::newRow("size larger than the disk") << "toolarge" << 0 << -1 << 0
            << error + "Unable to allocate space for file <b>setup.exe</b> in <br><b>{folder}</b>"
            << "Allocating space for {folder}/setup.exe...";
        QTest::newRow("name of the parent folder") << "dots" << 0 << -1 << 0
            << error + "Unable to create file <b></b> in <br><b>{folder}</b>" << "Allocating space for {folder}/...";
        QTest::newRow("a file of the version folder's name") << "plain" << 0 << -1 << 0
            << error + "Unable to create subfolder <b>14.0.10</b> in application's home directory:<br> <b>{home}</b>"
            << asking;
    }
    void updatePage()
    {
        QFETCH(QString, scenario);
        QFETCH(int, releases);
        QFETCH(int, size);
        QFETCH(int, received);
        QFETCH(QString, status);
        QFETCH(QString, info);
        QStringList files{QStringLiteral("escaped.exe")};
        if (scenario == QLatin1String("plain")) {
            machine->write(QStringLiteral("program/14.0.10"), "not a folder");
            files << QStringLiteral("14.0.10");
        }
        auto wizard = updateWizardAsking(scenario);
        QVERIFY(wizard);
        UpdatePage *page = wizard->updatePage;
        const QString path = fill(info).remove(QStringLiteral("Downloaded to "));
        int seen = 1;   // the bar starts at 1
        for (int i = 0; i < releases; ++i) {
            QTRY_VERIFY_WITH_TIMEOUT(page->infoLabel->text().startsWith(fill("Downloading {base}/setup/"))
                                         && page->progress->value() > seen, 30000);
            seen = page->progress->value();
            QVERIFY(!wizard->button(QWizard::BackButton)->isEnabled() && !page->progress->isHidden());
            QCOMPARE(page->progress->maximum(), size);
            QCOMPARE(QFileInfo(path).size(), qint64(size));   // allocated before the first byte
            if (received < 0)   // the reply that never ends keeps coming
                QTRY_VERIFY_WITH_TIMEOUT(page->progress->value() > seen, 30000);
            QVERIFY(!page->validatePage());
            QVERIFY(server.release(scenario));
        }
        QTRY_COMPARE_WITH_TIMEOUT(page->statusLabel->text() + '|' + page->infoLabel->text(), fill(status + '|' + info),
                                  30000);
        QCOMPARE(wizard->currentId(), 1);
        QCOMPARE(page->progress->isHidden(), size < 0);
        QCOMPARE(page->validatePage(), size < 0);   // after a download the installer's bar is short
        if (size >= 0) {
            QCOMPARE(page->progress->value(), 1);
            const QString today = QDate::currentDate().toString(QStringLiteral("dd-MMM-yyyy"));
            QCOMPARE(QStringList({getUpdateField(0, VersionField), getUpdateField(0, TitleField), getUpdateField(0, DateField),
                                  getUpdateField(0, NotesField), getUpdateField(0, SetupField)}),
                     (QStringList{"14.0.10", "Title", today, "Notes", path}));
            QByteArray bytes(size, '\0');
            for (int i = 0; i < received; ++i)
                bytes[i] = char((i * 7 + 3) % 256);
            QCOMPARE(machine->read(QDir(machine->folder()).relativeFilePath(path)), bytes);
            files << QDir(program).relativeFilePath(path);
        }
        files.sort();
        QCOMPARE(filesBelow(program), files);
        QCOMPARE(machine->read(QStringLiteral("program/escaped.exe")), QByteArray("installed before"));
    }

    // A setup of the version already on disk: No downloads it again, Cancel closes (Yes: the install).
    void updatePageQuestion_data()
    {
        QTest::addColumn<int>("answer");
        QTest::newRow("No downloads it again") << int(QMessageBox::No);
        QTest::newRow("Cancel closes the wizard") << int(QMessageBox::Cancel);
    }
    void updatePageQuestion()
    {
        QFETCH(int, answer);
        machine->write(QStringLiteral("program/14.0.10/") + probeName, "kept from before");
        QString box;
        whenModal<QMessageBox>([&](QMessageBox *b) {
            box = b->windowTitle() + '|' + b->text();
            b->button(QMessageBox::StandardButton(answer))->click();
        });
        auto wizard = updateWizardAsking(QStringLiteral("plain"));
        QVERIFY(wizard);
        QTRY_VERIFY_WITH_TIMEOUT(!box.isEmpty(), 30000);
        QCOMPARE(box, fill("Detected local setup|Installation file being downloaded previously detected locally:<br><br>"
                           "<b>{folder}/%1</b><br><br>Do you want to execute it <b>[Yes]</b> or download it again "
                           "<b>[No]</b>?")
                          .arg(probeName));
        const bool open = answer != QMessageBox::Cancel;
        if (open)
            QTRY_VERIFY_WITH_TIMEOUT(wizard->updatePage->infoLabel->text().startsWith("Downloaded to "), 30000);
        QCOMPARE(wizard->isVisible(), open);
        QCOMPARE(QFileInfo(folder10 + QLatin1Char('/') + probeName).size(),
                 answer == QMessageBox::No ? QFileInfo(QStringLiteral(KELPIE_PROBE_PATH)).size() : qint64(16));
    }

    // The installer's run on both working pages: polled once a second, then its exit code. The
    // history holds 13.0.7 (its setup deleted), 13.5 and 14.0.1, the version installed.
    void install_data()
    {
        QTest::addColumn<QString>("version");   // picked for the rollback; empty: the update
        QTest::addColumn<QString>("button");    // the rollback page's offer
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("text");   // {setup} stands for the setup's path
        QTest::addColumn<QString>("title");   // of the history's first free entry afterwards
        const QString update = "<br><br><b>Tessel Kelpie</b> ver. <b>14.0.10</b> has been successfully downloaded:<br> "
                               "<i>{setup}</i><br><br>You can still try executing software update manually.";
        const QString manually = "<br><br>You can still try to rollback software manually.";
        const QString rollback = "I want to rollback currently installed version 14.0.1 to version 13.5";
        QTest::newRow("update, exit 0") << "" << "" << 0
            << "<b><i>Tessel Kelpie&trade;</i></b> has been successfully updated!<br><br>Installed the latest version <b>14.0.10</b>"
            << "Tessel Kelpie 14.0.10";
        QTest::newRow("update, exit 5 cancelled") << "" << "" << 5
            << "<font color=red><b>Installation has been cancelled.</b></font>" + update << "Update Cancelled";
        QTest::newRow("update, exit 3") << "" << "" << 3
            << "<font color=red><b>Installation was interrupted with exit code 3.</b></font>" + update << "Install Error #3";
        QTest::newRow("rollback, exit 0") << "13.5" << rollback << 0
            << "<b><i>Tessel Kelpie&trade;</i></b> has been successfully rolled back to the version <b>13.5</b>" << "";
        QTest::newRow("rollback, exit 5 cancelled")
            << "13.5" << rollback << 5 << "<font color=red><b>Rollback has been cancelled.</b></font>" + manually << "";
        QTest::newRow("repair of the installed version, exit 3")
            << "14.0.1" << "I want to repair currently installed version 14.0.1" << 3
            << "<font color=red><b>Rollback was interrupted with exit code 3.</b></font>" + manually << "";
    }
    void install()
    {
        QFETCH(QString, version);
        QFETCH(QString, button);
        QFETCH(int, code);
        QFETCH(QString, text);
        QFETCH(QString, title);
        const bool rollback = !version.isEmpty();
        qputenv("KELPIE_PROBE_EXIT", QByteArray::number(code));
        // Long enough for one poll to find it running; the test waits for the process, not a clock.
        qputenv("KELPIE_PROBE_DELAY_MS", "1500");
        const QStringList versions{"13.0.7", "13.5", "14.0.1", "14.0.10"};
        for (int n = 0; n < versions.size(); ++n) {
            const QString setup = program + QLatin1Char('/') + versions[n] + QLatin1Char('/') + probeName;
            if (n > 0)
                QVERIFY(QDir().mkpath(QFileInfo(setup).path()) && QFile::copy(QStringLiteral(KELPIE_PROBE_PATH), setup));
            if (n < 3) {
                setUpdateField(n, VersionField, versions[n]);
                setUpdateField(n, SetupField, setup);
            }
        }
        const QString setup = (rollback ? program + QLatin1Char('/') + version : folder10) + QLatin1Char('/') + probeName;

        std::unique_ptr<UpdateWizard> wizard;
        if (rollback) {
            wizard = openWizard(QString());
            RollbackPage *page = wizard->rollbackPage;
            // The deleted setup first, then the row's version: the offer comes back.
            pick(*wizard, QStringLiteral("13.0.7"));
            QVERIFY(page->button->isHidden());
            QCOMPARE(page->statusLabel->text(),
                     fill("<font color=red><b>Error:</b></font> <font color=red><b>Rollback cancelled!</b></font><br><br>"
                          "Previously downloaded installation hasn't been detected, probably deleted:<br><br>"
                          "<b>{home}/13.0.7/%1</b>").arg(probeName));
            pick(*wizard, version);
            QCOMPARE(page->rollbackTo, versionToBuild(version));
            QVERIFY(page->statusLabel->isHidden() && !page->button->isHidden());
            QCOMPARE(page->button->text(), button);
            // A pick alone does not leave the page; the tick does.
            QVERIFY(!wizard->welcomePage->validatePage());
            wizard->welcomePage->rollbackCheckBox->setChecked(true);
            QVERIFY(wizard->welcomePage->validatePage());
            wizard->next();
            page->button->click();
            QCOMPARE(page->infoLabel->text(), QStringLiteral("Source: ") + setup);
        } else {
            QString asked;   // Yes runs the setup found on disk
            whenModal<QMessageBox>([&](QMessageBox *box) {
                asked = box->windowTitle();
                box->button(QMessageBox::Yes)->click();
            });
            wizard = updateWizardAsking(QStringLiteral("plain"));
            QVERIFY(wizard);
            QTRY_VERIFY_WITH_TIMEOUT(wizard->updatePage->infoLabel->text().startsWith("Downloaded to "), 30000);
            QCOMPARE(asked, QStringLiteral("Detected local setup"));
        }
        QCOMPARE(wizard->currentId(), rollback ? 2 : 1);
        QWizardPage *page = wizard->currentPage();
        QProgressBar *progress = page->findChild<QProgressBar *>();
        QProcess *process = rollback ? &wizard->rollbackPage->process : &wizard->updatePage->process;
        QCOMPARE(progress->value(), 1);
        QVERIFY(process->waitForStarted(30000));
        QMetaObject::invokeMethod(page, "InstallProgress");
        QCOMPARE(progress->value(), 4);
        // A setup found on disk skips the download, and with it the showing of the bar.
        QCOMPARE(progress->isHidden(), !rollback);
        QVERIFY(process->waitForFinished(30000));
        QMetaObject::invokeMethod(page, "InstallProgress");
        QCOMPARE(progress->value(), 100);
        QCOMPARE(wizard->currentId(), 3);
        QCOMPARE(wizard->finishPage->label->text(), text.replace(QLatin1String("{setup}"), setup));
        QCOMPARE(getUpdateField(3, TitleField), title);
        const QString commandLine = QString::fromUtf8(machine->read(QStringLiteral("probe.log"))).section('\t', 1, 1);
        QVERIFY2(commandLine.contains(probeName)
                     && commandLine.endsWith("/SP- /SILENT /NOCANCEL /CLOSEAPPLICATIONS /RESTARTAPPLICATIONS"),
                 qPrintable(commandLine));
    }
};

KELPIE_TEST_MAIN(UpdateTest)
#include "tst_update.moc"
