// The report path: Err.log's layout, debug.txt, the in-error flag and the
// way out when the user leaves the program.
#include "common/apphome.h"
#include "common/errorlog.h"

#include <QtTest>

class TestErrorLog : public QObject
{
    Q_OBJECT

    QTemporaryDir m_home;

    QString read(const QString& name)
    {
        QFile f(programFile(name));
        return f.open(QIODevice::ReadOnly) ? QString::fromUtf8(f.readAll()) : QString();
    }

private Q_SLOTS:
    void initTestCase() { setProgramFolder(m_home.path()); }

    void logLayout()
    {
        const ErrorReport r{-2147217865,
                            "Tabella 'X' inesistente",
                            "MariaDB",
                            "cAdoSqlServer",
                            "getNewRecordset -> frmIva.showData",
                            "SQL=SELECT * FROM X"};
        QCOMPARE(cError::logEntry(r, QDateTime(QDate(2025, 1, 5), QTime(7, 8, 9))),
                 QString(80, '*')
                     + "\nData   05/01/2025 07:08:09\nErr.N. -2147217865\nDescr. Tabella 'X' inesistente\n"
                       "Source MariaDB\nModulo cAdoSqlServer.getNewRecordset -> frmIva.showData\n"
                       "Avanz. SQL=SELECT * FROM X\n");
    }

    // A report appends to Err.log, takes the run-time error of the moment,
    // clears it, and holds the in-error flag while the handler shows it.
    void reportFlow()
    {
        QFile::remove(programFile("Err.log"));
        bool flagDuringReport = false, left = false;
        ErrorReport seen;
        gError().setLeaveHook([&] { left = true; });
        gError().setHandler([&](const ErrorReport& r) {
            flagDuringReport = gError().inError();
            seen = r;
            return 1;
        });
        Err().raise(9999, "TLSOFT::cAdoSqlServer", "Testo mancante");
        notifyError("bOrvantis", "getOpzione", QString());
        QVERIFY(flagDuringReport);
        QVERIFY(!gError().inError());
        QVERIFY(!left);
        QCOMPARE(seen.number, qint64(9999));
        QCOMPARE(seen.source, QStringLiteral("TLSOFT::cAdoSqlServer"));
        QCOMPARE(Err().number, qint64(0));
        QVERIFY(read("Err.log").contains("\nModulo bOrvantis.getOpzione\nAvanz. \n"));

        // "Esci da Orvantis": the handler answers 0 and the program leaves.
        gError().setHandler([](const ErrorReport&) { return 0; });
        notifyError("bOrvantis", "x", QString());
        QVERIFY(left);
        QCOMPARE(read("Err.log").count(QString(80, '*')), 2);
        gError().setHandler({});
        gError().setLeaveHook({});
    }

    void debugLine()
    {
        QFile::remove(programFile("debug.txt"));
        writeDebugLine("frmAnagrafica: caricamento");
        writeDebugLine("fine");
        const QStringList lines = read("debug.txt").split('\n', Qt::SkipEmptyParts);
        QCOMPARE(lines.size(), 2);
        QVERIFY(QRegularExpression("^\\d{8}-\\d{6} frmAnagrafica: caricamento$").match(lines.at(0)).hasMatch());
    }
};

QTEST_GUILESS_MAIN(TestErrorLog)
#include "tst_errorlog.moc"
