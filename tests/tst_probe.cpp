// The probe program: the line it leaves for every start, and the exit code and wait it takes from
// probe.ini and the environment (the variables alone are the update suite's installer's).

#include "testmain.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>

class TestProbe : public QObject {
    Q_OBJECT

    QTemporaryDir dir;

    QByteArray read(const char *name)
    {
        QFile f(dir.filePath(QLatin1String(name)));
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    }

private slots:
    void probe_data()
    {
        QTest::addColumn<QByteArray>("ini");
        QTest::addColumn<QStringList>("variables");   // "NAME=value", the others unset
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<int>("leastMs");
        QTest::newRow("nothing set: exit 0 at once") << QByteArray() << QStringList() << 0 << 0;
        QTest::newRow("probe.ini gives the exit code and the wait")
            << QByteArray("delayMs=200\r\nexit=3\r\n") << QStringList() << 3 << 200;
        QTest::newRow("the variable wins over probe.ini")
            << QByteArray("exit=3\n") << QStringList{"KELPIE_PROBE_EXIT=5"} << 5 << 0;
        QTest::newRow("a value that is no number is ignored")
            << QByteArray("exit=x\nexit\n exit=4\n") << QStringList{"KELPIE_PROBE_EXIT=7a"} << 0 << 0;
    }
    void probe()
    {
        QFETCH(QByteArray, ini);
        QFETCH(QStringList, variables);
        QFETCH(int, exitCode);
        QFETCH(int, leastMs);
        for (const char *name : {"probe.ini", "probe.log"})
            QFile::remove(dir.filePath(QLatin1String(name)));
        // A copy of the probe of this build under another name, as a medium's program would be.
        const QString suffix = QCoreApplication::applicationFilePath().endsWith(".exe") ? ".exe" : "";
        const QString program = dir.filePath("NetProbe" + suffix);
        QFile::remove(program);
        QVERIFY(QFile::copy(QCoreApplication::applicationDirPath() + "/../tools/probe/kelpie_probe" + suffix, program));
        QFile file(dir.filePath("probe.ini"));
        QVERIFY(ini.isEmpty() || (file.open(QIODevice::WriteOnly) && file.write(ini) == ini.size()));
        file.close();

        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        for (const char *name : {"KELPIE_PROBE_LOG", "KELPIE_PROBE_EXIT", "KELPIE_PROBE_DELAY_MS"})
            env.remove(QLatin1String(name));
        for (const QString &v : variables)
            env.insert(v.section('=', 0, 0), v.section('=', 1));
        QProcess p;
        p.setProcessEnvironment(env);
        p.setWorkingDirectory(dir.path());
        QElapsedTimer clock;
        clock.start();
        for (const QStringList &args : {QStringList{"-quiet", "x"}, QStringList{"second"}}) {
            p.start(program, args);
            QVERIFY(p.waitForFinished(30000) && p.exitStatus() == QProcess::NormalExit);
            QCOMPARE(p.exitCode(), exitCode);
        }
        QVERIFY(clock.elapsed() >= 2 * leastMs);

        // One line a start: own path, command line, working directory.
        const QList<QByteArray> lines = read("probe.log").split('\n');
        QCOMPARE(lines.size(), 3);
        QVERIFY(lines.at(2).isEmpty());
        const QStringList fields = QString::fromUtf8(lines.at(0)).split('\t');
        QCOMPARE(fields.size(), 3);
        QCOMPARE(fields.at(0).compare(QDir::toNativeSeparators(program), Qt::CaseInsensitive), 0);
        QVERIFY2(fields.at(1).contains("NetProbe") && fields.at(1).endsWith(" -quiet x"), qPrintable(fields.at(1)));
        QCOMPARE(fields.at(2).compare(QDir::toNativeSeparators(dir.path()), Qt::CaseInsensitive), 0);
        QVERIFY2(lines.at(1).split('\t').value(1).endsWith(" second"), lines.at(1));
    }
};

KELPIE_TEST_MAIN(TestProbe)
#include "tst_probe.moc"
