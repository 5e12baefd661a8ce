// Due dates of a journal entry, on both back ends: the instalments of a term,
// their regeneration, the values they refuse to store, and a new entry that
// deletes nothing.
#include "accounting/scadenze.h"
#include "common/italiantext.h"
#include "data/cadosqlserver.h"
#include "data/sqldialect.h"
#include "data/sqlliteral.h"
#include "support/testdb.h"

#include <QDate>
#include <QtTest>

using testdb::run;

namespace {

// A payment term in words: "30%" a down payment, "rd" direct remittance,
// "fm" end of month, "n3" the number of instalments when it is not the
// number of rows, then the rows as "days:share".
int addTerm(const QString& code, const QString& term)
{
    double acconto = 0;
    bool rimessa = false, fineMese = false;
    int nRate = -1;
    QList<QPair<int, double>> rate;
    for (const QString& word : term.split(' ', Qt::SkipEmptyParts)) {
        if (word.endsWith('%'))
            acconto = word.chopped(1).toDouble();
        else if (word == "rd" || word == "fm")
            (word == "rd" ? rimessa : fineMese) = true;
        else if (word.startsWith('n'))
            nRate = word.mid(1).toInt();
        else
            rate.append({word.section(':', 0, 0).toInt(), word.section(':', 1).toDouble()});
    }
    run("DELETE FROM DettagliPagamenti WHERE FK_PAGAMENTO IN (SELECT RID FROM Pagamenti WHERE CODICE = ¤" + code
        + "¤)");
    run("DELETE FROM Pagamenti WHERE CODICE = ¤" + code + "¤");
    run(QString("INSERT INTO Pagamenti (CODICE, DESCRIZIONE, ACCONTO, RIMESSADIRETTA, FINEMESE, NRATE) "
                "VALUES (¤%1¤, ¤prova¤, %2, %3, %4, %5)")
            .arg(code, getSqlNumber(acconto))
            .arg(rimessa ? -1 : 0)
            .arg(fineMese ? -1 : 0)
            .arg(nRate < 0 ? rate.size() : nRate));
    const int rid = testdb::rid("Pagamenti", "CODICE = ¤" + code + "¤");
    for (const auto& [giorni, quota] : rate)
        run(QString("INSERT INTO DettagliPagamenti (FK_PAGAMENTO, NGIORNI, PERCENTUALE) VALUES (%1, %2, %3)")
                .arg(rid)
                .arg(giorni)
                .arg(getSqlNumber(quota)));
    return rid;
}

int addEntry()
{
    return gAdoSqlServer().getIDByInsert("INSERT INTO PrimaNota (DATA, DESCRIZIONE) VALUES ("
                                             + gAdoSqlServer().getSQLDate(QDate(2026, 1, 1)) + ", ¤prova¤)",
                                         "test", "RID", "PrimaNota");
}

// The rows of an entry as "DD/MM/YYYY amount".
QStringList rowsOf(int entry)
{
    QStringList out;
    for (const QVariantList& r : testdb::rows(
             "SELECT DATA, IMPORTO FROM Scadenze WHERE FK_PrimaNota = " + QString::number(entry) + " ORDER BY RID"))
        out << formatDate(r.at(0)) + ' ' + formattaImporto(getValoreCurrency(r.at(1)), 2);
    return out;
}

// MariaDB: the DELETE statements run so far on the transaction's connection.
int deletesRun()
{
    const QList<QVariantList> status = testdb::rows("SHOW SESSION STATUS LIKE ¤Com_delete¤");
    return status.isEmpty() ? -1 : status.first().value(1).toInt();
}

} // namespace

class TestScadenze : public testdb::BackendTest
{
    Q_OBJECT

private Q_SLOTS:
    // The rows of a term, or the message of a value that cannot be stored:
    // then nothing is written, nothing deleted, and nothing reported (no
    // dialog inside the transaction).
    void dueDates_data()
    {
        QTest::addColumn<QString>("termine");
        QTest::addColumn<QString>("importo");
        QTest::addColumn<QDate>("data");
        QTest::addColumn<bool>("negative");
        QTest::addColumn<QStringList>("expected");
        QTest::addColumn<QString>("messaggio");
        const QString limiti = " (sono ammessi importi da -922.337.203.685.477,5808 a 922.337.203.685.477,5807).";
        const QString intervallo = " (la data deve essere compresa tra il 01/01/1753 e il 31/12/9999).";
        const QString fineMese = ": con la scadenza a fine mese i giorni devono essere compresi tra -32768 e 32767.";
        const QDate maggio(2026, 5, 2), gennaio(2026, 1, 1);
        const auto row = [](const char* name, const char* term, const char* importo, QDate data, bool negative,
                            const QStringList& expected, const QString& messaggio = QString()) {
            QTest::newRow(name) << QString(term) << QString(importo) << data << negative << expected << messaggio;
        };
        row("30/60 end of month from 15 January", "fm 30:50 60:50", "1000", QDate(2026, 1, 15), false,
            {"28/02/2026 500,00", "31/03/2026 500,00"});
        row("leap year", "fm 30:50 60:50", "1000", QDate(2028, 1, 15), false,
            {"29/02/2028 500,00", "31/03/2028 500,00"});
        row("days first, no months", "fm 30:100", "10", QDate(2026, 1, 31), false, {"31/03/2026 10,00"});
        row("plain days", "30:100", "10", QDate(2026, 1, 31), false, {"02/03/2026 10,00"});
        row("direct remittance at month end", "rd fm 30:50 60:50", "100", QDate(2026, 4, 10), false,
            {"30/04/2026 50,00", "30/04/2026 50,00"});
        row("30% down payment", "30% 60:70", "1000", maggio, false, {"02/05/2026 300,00", "01/07/2026 700,00"});
        row("zero total", "30:50 60:50", "0", maggio, false, {"01/06/2026 0,00", "01/07/2026 0,00"});
        row("negative", "30:50 60:50", "100", maggio, true, {"01/06/2026 -50,00", "01/07/2026 -50,00"});
        row("shares not adjusted", "30:33.33 60:33.33 90:33.34", "100", maggio, false,
            {"01/06/2026 33,33", "01/07/2026 33,33", "31/07/2026 33,34"});
        row("fewer instalments than rows", "n1 30:50 60:50", "100", maggio, false, {"01/06/2026 50,00"});
        // The month-end rule takes its days as a 16-bit number; the plain rule does not.
        row("32767 days at month end", "fm 32767:100", "10", gennaio, false, {"30/09/2115 10,00"});
        row("40000 plain days", "40000:100", "10", gennaio, false, {"09/07/2135 10,00"});
        row("large amounts kept", "10% 30:100", "900000000000000", gennaio, true,
            {"01/01/2026 -90.000.000.000.000,00", "31/01/2026 -900.000.000.000.000,00"});
        row("no date", "30:50 60:50", "100", QDate(), false, {},
            "Data non valida: data delle scadenze (data mancante o inesistente).");
        row("date before 1753", "30:50 60:50", "100", QDate(1700, 5, 1), false, {},
            "Data non valida: data delle scadenze" + intervallo);
        row("due date after 9999", "30:50 3000000:50", "100", gennaio, false, {},
            "Data non valida: scadenza della rata 2 delle scadenze" + intervallo);
        row("32768 days at month end", "fm 32768:100", "100", gennaio, false, {},
            "Il pagamento TST indica 32768 giorni per la rata 1" + fineMese);
        row("direct remittance at month end, 40000 days", "rd fm 0:50 40000:50", "100", gennaio, false, {},
            "Il pagamento TST indica 40000 giorni per la rata 2" + fineMese);
        row("more instalments than rows", "n3 30:50 60:50", "100", gennaio, false, {},
            "Il pagamento TST prevede 3 rate ma ne descrive 2: impossibile generare le scadenze.");
        row("instalment beyond the range", "30:50 60:150", "900000000000000", gennaio, false, {},
            "Importo fuori dai limiti consentiti: rata 2 delle scadenze" + limiti);
        row("down payment beyond the range", "150% 30:100", "900000000000000", gennaio, false, {},
            "Importo fuori dai limiti consentiti: acconto delle scadenze" + limiti);
    }
    void dueDates()
    {
        QFETCH(QString, termine);
        QFETCH(QString, importo);
        QFETCH(QDate, data);
        QFETCH(bool, negative);
        QFETCH(QStringList, expected);
        QFETCH(QString, messaggio);
        const int term = addTerm("TST", termine);
        const int entry = addEntry();
        QVERIFY(entry > 0);
        // A refusal must leave the entry's earlier due dates as they were.
        if (!messaggio.isEmpty()) {
            const int prima = addTerm("TSTB", "10:100");
            QVERIFY(generaScadenzePagamento(entry, prima, Currency::fromUnits(80), QDate(2026, 2, 1), false));
            expected = QStringList{"11/02/2026 80,00"};
        }
        testdb::ErrorRecorder errors;
        QString ricevuto = "not cleared";
        QVERIFY(gAdoSqlServer().beginTrasaction("test"));
        const Currency totale = getValoreCurrency(importo);
        QCOMPARE(generaScadenzePagamento(entry, term, totale, data, negative, &ricevuto), messaggio.isEmpty());
        QCOMPARE(rowsOf(entry), expected);
        QVERIFY(messaggio.isEmpty() ? gAdoSqlServer().commitTrasaction("test")
                                    : gAdoSqlServer().rollbackTrasaction("test"));
        QCOMPARE(ricevuto, messaggio);
        QVERIFY(errors.reports.isEmpty());
        QCOMPARE(rowsOf(entry), expected);
    }

    // A new entry runs no DELETE (on MariaDB one that finds nothing locks
    // the index gap where other workstations' due dates go); saving again
    // with another term replaces every row, also one changed by hand; a term
    // without instalments leaves none.
    void regenerate()
    {
        const bool server = backend() == "mariadb";
        const int entry = addEntry();
        const int due = addTerm("T2", "30:50 60:50"), uno = addTerm("T1", "10:100");
        testdb::ErrorRecorder errors;
        QVERIFY(gAdoSqlServer().beginTrasaction("test"));
        const int deletes = server ? deletesRun() : 0;
        QVERIFY(generaScadenzePagamento(entry, due, Currency::fromUnits(80), QDate(2026, 2, 1), false));
        if (server)
            QCOMPARE(deletesRun(), deletes);
        QVERIFY(gAdoSqlServer().commitTrasaction("test"));
        QCOMPARE(rowsOf(entry), (QStringList{"03/03/2026 40,00", "02/04/2026 40,00"}));

        run("UPDATE Scadenze SET IMPORTO = 12 WHERE FK_PrimaNota = " + QString::number(entry));
        QVERIFY(gAdoSqlServer().beginTrasaction("test"));
        const int again = server ? deletesRun() : 0;
        QVERIFY(generaScadenzePagamento(entry, uno, Currency::fromUnits(80), QDate(2026, 2, 1), false));
        if (server)
            QCOMPARE(deletesRun(), again + 1);
        QVERIFY(gAdoSqlServer().commitTrasaction("test"));
        QCOMPARE(rowsOf(entry), QStringList{"11/02/2026 80,00"});
        QVERIFY(generaScadenzePagamento(entry, 0, Currency::fromUnits(80), QDate(2026, 2, 1), false)); // no term: none
        QVERIFY(rowsOf(entry).isEmpty());
        QVERIFY(errors.reports.isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestScadenze)
#include "tst_scadenze.moc"
