// The probe program: the line it leaves for every start, where that line goes, and the exit code
// and wait it takes from probe.ini and the environment.

#include "testmain.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>

namespace {

// The probe of this build, beside the suites' folder.
QString builtProbe()
{
    QString path = QCoreApplication::applicationDirPath() + QStringLiteral("/../tools/probe/kelpie_probe");
#ifdef Q_OS_WIN
    path += QStringLiteral(".exe");
#endif
    return path;
}

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

    // A copy of the probe under another name, as a medium's program would be.
    QString copyAs(const QString &name)
    {
        const QString target = dir.path() + QLatin1Char('/') + exeName(name);
        QFile::remove(target);
        if (!QFile::copy(builtProbe(), target))
            qFatal("cannot copy %s to %s", qPrintable(builtProbe()), qPrintable(target));
        return target;
    }

    void write(const QString &name, const QByteArray &content)
    {
        QFile f(dir.path() + QLatin1Char('/') + name);
        if (!f.open(QIODevice::WriteOnly | QIODevice::Truncate) || f.write(content) != content.size())
            qFatal("cannot write %s", qPrintable(f.fileName()));
    }

    QByteArray read(const QString &name)
    {
        QFile f(dir.path() + QLatin1Char('/') + name);
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    }

    int run(const QString &program, const QStringList &args, const QProcessEnvironment &env)
    {
        QProcess p;
        p.setProcessEnvironment(env);
        p.setWorkingDirectory(dir.path());
        p.start(program, args);
        if (!p.waitForFinished(30000))
            qFatal("the probe did not end");
        return p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1;
    }

    static QProcessEnvironment cleanEnvironment()
    {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.remove(QStringLiteral("KELPIE_PROBE_LOG"));
        env.remove(QStringLiteral("KELPIE_PROBE_EXIT"));
        env.remove(QStringLiteral("KELPIE_PROBE_DELAY_MS"));
        return env;
    }

private slots:
    void init()
    {
        QFile::remove(dir.path() + QStringLiteral("/probe.ini"));
        QFile::remove(dir.path() + QStringLiteral("/probe.log"));
    }

    void logLine()
    {
        const QString program = copyAs(QStringLiteral("NetProbe"));
        QCOMPARE(run(program, {QStringLiteral("-quiet"), QStringLiteral("x")}, cleanEnvironment()), 0);
        QCOMPARE(run(program, {QStringLiteral("second")}, cleanEnvironment()), 0);

        const QList<QByteArray> lines = read(QStringLiteral("probe.log")).split('\n');
        QCOMPARE(lines.size(), 3);   // two lines, each ending in a line feed
        QVERIFY(lines.at(2).isEmpty());
        const QList<QByteArray> fields = lines.at(0).split('\t');
        QCOMPARE(fields.size(), 3);
        QCOMPARE(QString::fromUtf8(fields.at(0)).compare(QDir::toNativeSeparators(program), Qt::CaseInsensitive), 0);
        QVERIFY2(fields.at(1).endsWith(" -quiet x"), fields.at(1));
        QVERIFY2(fields.at(1).contains("NetProbe"), fields.at(1));
        QCOMPARE(QString::fromUtf8(fields.at(2)).compare(QDir::toNativeSeparators(dir.path()), Qt::CaseInsensitive), 0);
        QVERIFY2(lines.at(1).split('\t').value(1).endsWith(" second"), lines.at(1));
    }

    void logFromVariable()
    {
        const QString program = copyAs(QStringLiteral("wpeutil"));
        QProcessEnvironment env = cleanEnvironment();
        env.insert(QStringLiteral("KELPIE_PROBE_LOG"), QDir::toNativeSeparators(dir.path() + QStringLiteral("/other.log")));
        QCOMPARE(run(program, {QStringLiteral("Shutdown")}, env), 0);
        QVERIFY(read(QStringLiteral("other.log")).contains("Shutdown"));
        QVERIFY(!QFile::exists(dir.path() + QStringLiteral("/probe.log")));
    }

    void settings_data()
    {
        QTest::addColumn<QByteArray>("ini");
        QTest::addColumn<QString>("exitVariable");
        QTest::addColumn<QString>("delayVariable");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<int>("leastMs");

        QTest::newRow("nothing set: exit 0 at once") << QByteArray() << QString() << QString() << 0 << 0;
        QTest::newRow("probe.ini gives the exit code") << QByteArray("exit=3\r\n") << QString() << QString() << 3 << 0;
        QTest::newRow("the variable wins over probe.ini") << QByteArray("exit=3\n") << QStringLiteral("5") << QString() << 5 << 0;
        QTest::newRow("a value that is no number is ignored") << QByteArray("exit=x\nexit\n exit=4\n") << QStringLiteral("7a") << QString() << 0 << 0;
        QTest::newRow("probe.ini gives the wait") << QByteArray("delayMs=200\nexit=2\n") << QString() << QString() << 2 << 200;
        QTest::newRow("the variable gives the wait") << QByteArray() << QString() << QStringLiteral("200") << 0 << 200;
    }

    void settings()
    {
        QFETCH(QByteArray, ini);
        QFETCH(QString, exitVariable);
        QFETCH(QString, delayVariable);
        QFETCH(int, exitCode);
        QFETCH(int, leastMs);

        const QString program = copyAs(QStringLiteral("tool"));
        if (!ini.isEmpty())
            write(QStringLiteral("probe.ini"), ini);
        QProcessEnvironment env = cleanEnvironment();
        if (!exitVariable.isEmpty())
            env.insert(QStringLiteral("KELPIE_PROBE_EXIT"), exitVariable);
        if (!delayVariable.isEmpty())
            env.insert(QStringLiteral("KELPIE_PROBE_DELAY_MS"), delayVariable);
        QElapsedTimer clock;
        clock.start();
        QCOMPARE(run(program, {}, env), exitCode);
        QVERIFY(clock.elapsed() >= leastMs);
        QVERIFY(read(QStringLiteral("probe.log")).contains("tool"));
    }
};

KELPIE_TEST_MAIN(TestProbe)
#include "tst_probe.moc"
