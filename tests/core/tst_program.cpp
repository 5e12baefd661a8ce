// The program itself, started as people and scripts start it.
#include <QDir>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

namespace {
const QString kProgram = QStringLiteral(ORVANTIS_PROGRAM);

QProcessEnvironment environment(const QTemporaryDir& config)
{
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("XDG_CONFIG_HOME"), config.path());
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    env.remove(QStringLiteral("ORVANTIS_HOME"));
    return env;
}

int run(const QStringList& arguments, const QTemporaryDir& config, QString* output = nullptr)
{
    QProcess process;
    process.setProcessEnvironment(environment(config));
    process.start(kProgram, arguments);
    if (!process.waitForFinished(60000))
        return -1;
    if (output)
        *output = QString::fromUtf8(process.readAllStandardOutput() + process.readAllStandardError());
    return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -2;
}
} // namespace

class TestProgram : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void screenshotOfAFreshStart_data()
    {
        QTest::addColumn<QString>("open");
        QTest::newRow("main window") << QString();
        QTest::newRow("server settings") << QStringLiteral("frmOptionServer");
        QTest::newRow("password change") << QStringLiteral("frmCambiaPW");
    }
    void screenshotOfAFreshStart()
    {
        QFETCH(QString, open);
        QTemporaryDir home;
        QTemporaryDir config;
        const QString picture = home.filePath(QStringLiteral("main.png"));
        QStringList arguments{QStringLiteral("--home"), home.path(), QStringLiteral("--password"), QStringLiteral(" orvantis "),
                              QStringLiteral("--screenshot"), picture};
        if (!open.isEmpty())
            arguments << QStringLiteral("--open") << open;
        QString output;
        QCOMPARE(run(arguments, config, &output), 0);
        const QImage image(picture);
        QVERIFY2(!image.isNull(), qPrintable(output));
        QVERIFY(image.width() > 200 && image.height() > 100);
        QVERIFY(QFileInfo::exists(home.filePath(QStringLiteral("Orvantis.db"))));
    }

    void wrongPasswordOrUnknownScreenFail()
    {
        QTemporaryDir home;
        QTemporaryDir config;
        const QString picture = home.filePath(QStringLiteral("x.png"));
        QString output;
        QCOMPARE(run({QStringLiteral("--home"), home.path(), QStringLiteral("--password"), QStringLiteral("no"),
                      QStringLiteral("--screenshot"), picture},
                     config, &output),
                 1);
        QVERIFY(output.contains(QStringLiteral("Password non corretta.")));
        QCOMPARE(run({QStringLiteral("--home"), home.path(), QStringLiteral("--password"), QStringLiteral("orvantis"),
                      QStringLiteral("--screenshot"), picture, QStringLiteral("--open"), QStringLiteral("frmNessuno")},
                     config, &output),
                 2);
        QVERIFY(!QFileInfo::exists(picture));
    }

    // A second start on the same program folder brings the first copy
    // forward and ends at once, without asking for the password.
    void secondCopyEnds()
    {
        QTemporaryDir home;
        QTemporaryDir config;
        QProcess first;
        first.setProcessEnvironment(environment(config));
        first.start(kProgram, {QStringLiteral("--home"), home.path(), QStringLiteral("--password"), QStringLiteral("orvantis")});
        QVERIFY(first.waitForStarted());
        // The first copy is up once its database exists and a moment has passed for the login.
        QTRY_VERIFY_WITH_TIMEOUT(QFileInfo::exists(home.filePath(QStringLiteral("Orvantis.db"))), 20000);
        QTest::qWait(2500);
        QVERIFY(first.state() == QProcess::Running);

        QCOMPARE(run({QStringLiteral("--home"), home.path()}, config), 0);
        QVERIFY(first.state() == QProcess::Running);

        first.terminate();
        if (!first.waitForFinished(5000))
            first.kill();
    }
};

QTEST_GUILESS_MAIN(TestProgram)
#include "tst_program.moc"
