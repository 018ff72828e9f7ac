// The real ombrel binary on an X server: it opens the folder of the
// stylesheet on its command line, and a second launch hands its stylesheet
// to the first process and exits. The processes get a home and runtime
// folders of their own, so nothing of the user's is read or written.

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocalSocket>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

namespace {

bool writeFile(const QString &path, const QByteArray &bytes)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

} // namespace

class TestEndToEnd : public QObject
{
    Q_OBJECT

    QTemporaryDir m_root;
    QProcessEnvironment m_environment;

    QString path(const QString &relative) const { return m_root.filePath(relative); }

    // The windows the running instance shows, as it answers on its socket.
    QJsonArray windows() const
    {
        QLocalSocket socket;
        socket.connectToServer(path(QStringLiteral("runtime/ombrel.socket")));
        if (!socket.waitForConnected(1000))
            return {};
        socket.write("{\"query\":\"windows\"}\n");
        while (!socket.canReadLine()) {
            if (!socket.waitForReadyRead(1000))
                return {};
        }
        return QJsonDocument::fromJson(socket.readLine())
            .object()
            .value(QStringLiteral("windows"))
            .toArray();
    }

    bool showsFolder(const QString &folder, const QString &file) const
    {
        for (const QJsonValue &window : windows()) {
            const QJsonObject object = window.toObject();
            if (object.value(QStringLiteral("folder")).toString() == folder &&
                object.value(QStringLiteral("selectedFile")).toString() == file &&
                object.value(QStringLiteral("title")).toString() == QFileInfo(file).fileName())
                return true;
        }
        return false;
    }

    std::unique_ptr<QProcess> launch(const QString &stylesheet)
    {
        auto process = std::make_unique<QProcess>();
        process->setProcessEnvironment(m_environment);
        process->setProcessChannelMode(QProcess::ForwardedChannels);
        process->start(QStringLiteral(OMBREL_BINARY), {stylesheet});
        return process;
    }

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_root.isValid());
        QVERIFY2(qEnvironmentVariableIsSet("DISPLAY"), "runs on an X server (xvfb-run)");
        for (const char *folder : {"home", "runtime", "config", "data", "cache"})
            QVERIFY(QDir().mkpath(path(QString::fromLatin1(folder))));
        QFile::setPermissions(path(QStringLiteral("runtime")), QFileDevice::ReadOwner |
                                                                   QFileDevice::WriteOwner |
                                                                   QFileDevice::ExeOwner);
        QVERIFY(writeFile(path(QStringLiteral("first/theme.css")),
                          ":root {\n    --brand: #5b6cff;\n}\n"));
        QVERIFY(writeFile(path(QStringLiteral("first/extra.css")), "a {\n    color: red;\n}\n"));
        QVERIFY(
            writeFile(path(QStringLiteral("second/cards.css")), ".card {\n    color: blue;\n}\n"));

        m_environment = QProcessEnvironment::systemEnvironment();
        m_environment.insert(QStringLiteral("HOME"), path(QStringLiteral("home")));
        m_environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), path(QStringLiteral("runtime")));
        m_environment.insert(QStringLiteral("XDG_CONFIG_HOME"), path(QStringLiteral("config")));
        m_environment.insert(QStringLiteral("XDG_DATA_HOME"), path(QStringLiteral("data")));
        m_environment.insert(QStringLiteral("XDG_CACHE_HOME"), path(QStringLiteral("cache")));
        m_environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
        m_environment.remove(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"));
        // Under AddressSanitizer, what the X and font libraries keep until
        // the process ends would count as leaks of the launched program.
        if (m_environment.contains(QStringLiteral("ASAN_OPTIONS")))
            m_environment.insert(QStringLiteral("ASAN_OPTIONS"),
                                 m_environment.value(QStringLiteral("ASAN_OPTIONS")) +
                                     QStringLiteral(":detect_leaks=0"));
    }

    void secondLaunchHandsItsFileToTheFirst()
    {
        const std::unique_ptr<QProcess> first = launch(path(QStringLiteral("first/extra.css")));
        QVERIFY(first->waitForStarted());
        QTRY_VERIFY_WITH_TIMEOUT(
            showsFolder(path(QStringLiteral("first")), path(QStringLiteral("first/extra.css"))),
            30000);
        QCOMPARE(windows().size(), 1);

        const std::unique_ptr<QProcess> second = launch(path(QStringLiteral("second/cards.css")));
        QVERIFY(second->waitForFinished(30000));
        QCOMPARE(second->exitStatus(), QProcess::NormalExit);
        QCOMPARE(second->exitCode(), 0);
        QTRY_VERIFY_WITH_TIMEOUT(
            showsFolder(path(QStringLiteral("second")), path(QStringLiteral("second/cards.css"))),
            30000);
        QCOMPARE(windows().size(), 2);
        QCOMPARE(first->state(), QProcess::Running);

        first->kill();
        QVERIFY(first->waitForFinished(10000));
    }
};

QTEST_GUILESS_MAIN(TestEndToEnd)
#include "tst_endtoend.moc"
