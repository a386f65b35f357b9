// The probe program: the line it leaves for every start, where that line goes, and the exit code
// and wait it takes from probe.ini and the environment.

#include "testmain.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>

namespace {

QString exeName(const QString &base)
{
#ifdef Q_OS_WIN
    return base + QStringLiteral(".exe");
#else
    return base;
#endif
}

} // namespace

class TestProbe : public QObject {
    Q_OBJECT

    QTemporaryDir dir;

    // A copy of the probe of this build under another name, as a medium's program would be.
    QString copyAs(const QString &name)
    {
        const QString built = QCoreApplication::applicationDirPath() + QStringLiteral("/../tools/probe/")
            + exeName(QStringLiteral("kelpie_probe"));
        const QString target = dir.path() + QLatin1Char('/') + exeName(name);
        QFile::remove(target);
        if (!QFile::copy(built, target))
            qFatal("cannot copy %s to %s", qPrintable(built), qPrintable(target));
        return target;
    }

    QByteArray read(const QString &name)
    {
        QFile f(dir.path() + QLatin1Char('/') + name);
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    }

    // Runs the program in the folder with none of the probe's variables but the ones given.
    int run(const QString &program, const QStringList &args, const QMap<QString, QString> &variables = {})
    {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        for (const char *name : {"KELPIE_PROBE_LOG", "KELPIE_PROBE_EXIT", "KELPIE_PROBE_DELAY_MS"})
            env.remove(QLatin1String(name));
        for (auto v = variables.begin(); v != variables.end(); ++v)
            env.insert(v.key(), v.value());
        QProcess p;
        p.setProcessEnvironment(env);
        p.setWorkingDirectory(dir.path());
        p.start(program, args);
        if (!p.waitForFinished(30000))
            qFatal("the probe did not end");
        return p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1;
    }

private slots:
    void init()
    {
        for (const char *name : {"probe.ini", "probe.log", "other.log"})
            QFile::remove(dir.path() + QLatin1Char('/') + QLatin1String(name));
    }

    void logLine()
    {
        const QString program = copyAs(QStringLiteral("NetProbe"));
        QCOMPARE(run(program, {QStringLiteral("-quiet"), QStringLiteral("x")}), 0);
        QCOMPARE(run(program, {QStringLiteral("second")}), 0);

        const QList<QByteArray> lines = read(QStringLiteral("probe.log")).split('\n');
        QCOMPARE(lines.size(), 3);   // two lines, each ending in a line feed
        QVERIFY(lines.at(2).isEmpty());
        const QList<QByteArray> fields = lines.at(0).split('\t');
        QCOMPARE(fields.size(), 3);
        QCOMPARE(QString::fromUtf8(fields.at(0)).compare(QDir::toNativeSeparators(program), Qt::CaseInsensitive), 0);
        QVERIFY2(fields.at(1).contains("NetProbe") && fields.at(1).endsWith(" -quiet x"), fields.at(1));
        QCOMPARE(QString::fromUtf8(fields.at(2)).compare(QDir::toNativeSeparators(dir.path()), Qt::CaseInsensitive), 0);
        QVERIFY2(lines.at(1).split('\t').value(1).endsWith(" second"), lines.at(1));
    }

    void settings_data()
    {
        QTest::addColumn<QByteArray>("ini");
        QTest::addColumn<QString>("exitVariable");
        QTest::addColumn<QString>("delayVariable");
        QTest::addColumn<bool>("logVariable");   // KELPIE_PROBE_LOG names other.log
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<int>("leastMs");

        QTest::newRow("nothing set: exit 0 at once") << QByteArray() << QString() << QString() << false << 0 << 0;
        QTest::newRow("probe.ini gives the exit code") << QByteArray("exit=3\r\n") << QString() << QString() << false << 3 << 0;
        QTest::newRow("the variable wins over probe.ini") << QByteArray("exit=3\n") << "5" << QString() << false << 5 << 0;
        QTest::newRow("a value that is no number is ignored")
            << QByteArray("exit=x\nexit\n exit=4\n") << "7a" << QString() << false << 0 << 0;
        QTest::newRow("probe.ini gives the wait") << QByteArray("delayMs=200\nexit=2\n") << QString() << QString() << false << 2 << 200;
        QTest::newRow("the variable gives the wait") << QByteArray() << QString() << "200" << false << 0 << 200;
        QTest::newRow("the variable names the log") << QByteArray() << QString() << QString() << true << 0 << 0;
    }

    void settings()
    {
        QFETCH(QByteArray, ini);
        QFETCH(QString, exitVariable);
        QFETCH(QString, delayVariable);
        QFETCH(bool, logVariable);
        QFETCH(int, exitCode);
        QFETCH(int, leastMs);

        const QString program = copyAs(QStringLiteral("tool"));
        if (!ini.isEmpty()) {
            QFile f(dir.path() + QStringLiteral("/probe.ini"));
            if (!f.open(QIODevice::WriteOnly) || f.write(ini) != ini.size())
                qFatal("cannot write probe.ini");
        }
        QMap<QString, QString> variables;
        if (!exitVariable.isEmpty())
            variables.insert(QStringLiteral("KELPIE_PROBE_EXIT"), exitVariable);
        if (!delayVariable.isEmpty())
            variables.insert(QStringLiteral("KELPIE_PROBE_DELAY_MS"), delayVariable);
        if (logVariable)
            variables.insert(QStringLiteral("KELPIE_PROBE_LOG"), QDir::toNativeSeparators(dir.path() + QStringLiteral("/other.log")));
        QElapsedTimer clock;
        clock.start();
        QCOMPARE(run(program, {}, variables), exitCode);
        QVERIFY(clock.elapsed() >= leastMs);
        QVERIFY(read(logVariable ? QStringLiteral("other.log") : QStringLiteral("probe.log")).contains("tool"));
        QCOMPARE(QFile::exists(dir.path() + QStringLiteral("/probe.log")), !logVariable);
    }
};

KELPIE_TEST_MAIN(TestProbe)
#include "tst_probe.moc"
