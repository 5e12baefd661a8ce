// The option store on both back ends: reading, writing and the globals.
#include "core/optionstore.h"
#include "core/serversettings.h"
#include "data/cadosqlserver.h"
#include "support/testdb.h"

#include <QSettings>
#include <QtTest>

class TestOptionStore : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { testdb::isolateProgramFolder(); }
    void cleanupTestCase() { testdb::dropShared(); }
    void cleanup() { QCOMPARE(gAdoSqlServer().getConnectionCount(), 0); }

    void readWriteAndGlobals_data()
    {
        testdb::addBackendColumn();
        testdb::addBackendRows();
    }
    void readWriteAndGlobals()
    {
        QFETCH(QString, backend);
        QVERIFY(testdb::shared(backend).isValid());
        testdb::ErrorRecorder errors;

        // A new name is inserted, a second call updates it.
        setOpzione(QStringLiteral("ProvaNuova"), QStringLiteral("1"));
        setOpzione(QStringLiteral("ProvaNuova"), QStringLiteral("2"));
        QCOMPARE(getOpzione(QStringLiteral("ProvaNuova")), QStringLiteral("2"));
        QCOMPARE(testdb::number(QStringLiteral("SELECT COUNT(*) FROM Opzioni WHERE NOME = ¤ProvaNuova¤")), 1);
        // The footer keeps apostrophes and line breaks as typed.
        const QString footer =
            QStringLiteral("Contributo CONAI assolto ove dovuto.\r\nL'IVA è esposta a norma dell'art. 21 ¤ 5%");
        setOpzione(QStringLiteral("PiePagina"), footer);
        QCOMPARE(getOpzione(QStringLiteral("PiePagina")), footer);
        QVERIFY(errors.reports.isEmpty());
        // A missing option is reported and reads as empty.
        QCOMPARE(getOpzione(QStringLiteral("NonEsiste")), QString());
        QCOMPARE(errors.reports.size(), 1);
        QCOMPARE(errors.reports.first().module, QStringLiteral("bOrvantis"));
        QCOMPARE(errors.reports.first().procedure, QStringLiteral("getOpzione"));
        // The globals, from the options and from the machine's settings.
        setOpzione(QStringLiteral("VenditoreChar"), QString());
        setOpzione(QStringLiteral("DecimaliDopo"), QStringLiteral("3"));
        setOpzione(QStringLiteral("MesiPrezzoMedio"), QStringLiteral("non numerico"));
        machineSettings().setValue(QStringLiteral("Options/UsaGrassetto"), QStringLiteral("1"));
        machineSettings().setValue(QStringLiteral("Opzioni/LaserChar"), QStringLiteral("#"));
        loadOptionGlobals();
        QCOMPARE(errors.reports.size(), 1);
        const OptionGlobals& o = gOptions();
        QCOMPARE(o.venditoreChar, QStringLiteral("%")); // empty reads as "%"
        QCOMPARE(o.decimaliDopo, 3);
        QCOMPARE(o.mesiPrezzoMedio, 0); // not a number reads as 0
        QVERIFY(o.contoClienti > 0);
        QVERIFY(o.usaGrassetto);
        QCOMPARE(o.laserChar, QStringLiteral("#"));
        QVERIFY(!o.rigaLibera.isEmpty() && !o.distintaBase.isEmpty() && o.rigaLibera != o.distintaBase);
    }
};

QTEST_GUILESS_MAIN(TestOptionStore)
#include "tst_optionstore.moc"
