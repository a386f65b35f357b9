#pragma once
// The update server of the tests (tests/updateserver/server.py): a real HTTP server on 127.0.0.1
// answering from tests/updateserver/fixtures. The suite starts it with python3 and it ends with
// the suite. Where a server already runs for the suite (the Windows suites under Wine, which
// cannot start a Linux python3) its port is read from updateserver.port beside the suite.

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QProcess>
#include <QTcpServer>
#include <QtTest>
#include <memory>

class UpdateServer {
public:
    // Starts the server (or finds the one that runs); false with a reason in error.
    bool start(const QString &probe)
    {
        QFile portFile(QCoreApplication::applicationDirPath() + QStringLiteral("/updateserver.port"));
        if (portFile.open(QIODevice::ReadOnly)) {
            port = portFile.readAll().trimmed().toInt();
            return port > 0 || fail("updateserver.port holds no port");
        }
        const QString script = QStringLiteral(KELPIE_SOURCE_DIR "/tests/updateserver/server.py");
        process.start(QStringLiteral("python3"),
                      {script, QStringLiteral("--fixtures"), QStringLiteral(KELPIE_SOURCE_DIR "/tests/updateserver/fixtures"),
                       QStringLiteral("--probe"), probe, QStringLiteral("--stop-on-eof")});
        if (!process.waitForStarted(30000))
            return fail("python3 does not start: " + process.errorString());
        while (!process.canReadLine()) {
            if (!process.waitForReadyRead(30000))
                return fail("the server printed no port: " + process.readAllStandardError());
        }
        const QByteArray line = process.readLine().trimmed();
        port = line.startsWith("port ") ? line.mid(5).toInt() : 0;
        return port > 0 || fail("unexpected first line: " + line);
    }
    ~UpdateServer()
    {
        if (process.state() != QProcess::NotRunning) {
            process.closeWriteChannel();
            if (!process.waitForFinished(10000))
                process.kill();
        }
    }

    QString base() const { return QStringLiteral("http://127.0.0.1:%1").arg(port); }
    // The endpoint of a fixture folder: its requests land in fixtures/<scenario>/. No scenario:
    // an address where nothing listens, a port just given up.
    QString endpoint(const QString &scenario) const
    {
        if (!scenario.isEmpty())
            return base() + QLatin1Char('/') + scenario;
        QTcpServer probe;
        probe.listen(QHostAddress::LocalHost, 0);
        const quint16 free = probe.serverPort();
        probe.close();
        return QStringLiteral("http://127.0.0.1:%1/down").arg(free);
    }
    // Lets a reply held by gate=<key> go on; waits for the server's answer.
    bool release(const QString &key) const
    {
        QNetworkAccessManager manager;
        const std::unique_ptr<QNetworkReply> reply(manager.get(QNetworkRequest(QUrl(base() + "/release/" + key))));
        return QTest::qWaitFor([&]() { return reply->isFinished(); }, 30000);
    }
    int port = 0;
    QString error;

private:
    bool fail(const QString &why)
    {
        error = why;
        return false;
    }
    QProcess process;
};
