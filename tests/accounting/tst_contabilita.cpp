// The journal engine, the due dates of an entry and the customer's credit limit, on both back ends.
#include "accounting/fido.h"
#include "accounting/primanota.h"
#include "accounting/scadenze.h"
#include "common/italiantext.h"
#include "common/msgbox.h"
#include "data/cadosqlserver.h"
#include "support/testdb.h"

#include <QDate>
#include <QRegularExpression>
#include <QtTest>

using testdb::rid;
using testdb::run;

namespace {

constexpr int kClienti = 3, kFornitori = 12, kRicavi = 20, kIvaDebito = 14;
constexpr int kAcquisti = 17, kIvaCredito = 5, kRitenute = 6;
const ContiControparti kControparti{kClienti, kFornitori};
Currency eur(const QString& text) { return getValoreCurrency(text); }
QString n(int v) { return QString::number(v); }
cAdoSqlServer& db() { return gAdoSqlServer(); }
// The customers' and suppliers' control accounts of the seed.
ContiControparti conti()
{
    return {rid("PianoConti", testdb::code("01001001")), rid("PianoConti", testdb::code("02001001"))};
}

// "conto:amount" a line, in the order Dare 1, Dare 2, Avere 1, Avere 2; "-" for no line.
QString describe(const RighePrimaNota& r)
{
    const auto one = [](int conto, Currency v) {
        return conto > 0 ? n(conto) + ':' + v.toPlainString() : QString("-");
    };
    return QStringList{one(r.conti.dare1, r.dare1), one(r.conti.dare2, r.dare2), one(r.conti.avere1, r.avere1),
                       one(r.conti.avere2, r.avere2)}
        .join(' ');
}

// The lines written for an entry, "conto D|A amount"; the customers' account is "C".
QString linesOf(int entry, int clienti)
{
    QStringList lines;
    for (const QVariantList& r :
         testdb::rows("SELECT FK_Conto, DARE, AVERE FROM PrimaNotaDettagli WHERE FK_PrimaNota = " + n(entry)
                      + " ORDER BY RID")) {
        const bool dare = !r.at(1).isNull();
        lines << (r.at(0).toInt() == clienti ? "C" : r.at(0).toString()) + (dare ? " D " : " A ")
                + getValoreCurrency(r.at(dare ? 1 : 2)).toPlainString();
    }
    return lines.join(", ");
}

// A payment term in words: "30%" down payment, "rd" direct remittance, "fm" end of month, "n3" instalments when not the
// rows' number, rows "days:share".
int addTerm(const QString& code, const QString& term)
{
    const QStringList words = term.split(' '), rate = words.filter(":");
    const QString acconto = words.filter("%").join("").remove('%');
    const QString nRate = words.filter(QRegularExpression("^n")).join("").mid(1);
    run("DELETE FROM DettagliPagamenti WHERE FK_PAGAMENTO IN (SELECT RID FROM Pagamenti WHERE " + testdb::code(code)
        + ")");
    run("DELETE FROM Pagamenti WHERE " + testdb::code(code));
    run(QString("INSERT INTO Pagamenti (CODICE, DESCRIZIONE, ACCONTO, RIMESSADIRETTA, FINEMESE, NRATE) "
                "VALUES (¤%1¤, ¤prova¤, %2, %3, %4, %5)")
            .arg(code, acconto.isEmpty() ? "0" : acconto, words.contains("rd") ? "-1" : "0",
                 words.contains("fm") ? "-1" : "0", nRate.isEmpty() ? n(rate.size()) : nRate));
    const int pagamento = rid("Pagamenti", testdb::code(code));
    for (const QString& r : rate)
        run(QString("INSERT INTO DettagliPagamenti (FK_PAGAMENTO, NGIORNI, PERCENTUALE) VALUES (%1, %2, %3)")
                .arg(n(pagamento), r.section(':', 0, 0), r.section(':', 1)));
    return pagamento;
}

int addEntry(const QDate& data = QDate(2026, 1, 1), const QString& anagrafe = "Null")
{
    return db().getIDByInsert(
        QString("INSERT INTO PrimaNota (DATA, DataValuta, FK_Anagrafe, DESCRIZIONE) VALUES (%1, %1, %2, ¤prova¤)")
            .arg(db().getSQLDate(data), anagrafe),
        "test", "RID", "PrimaNota");
}

// The due dates of an entry as "DD/MM/YYYY amount; ...".
QString dueDatesOf(int entry)
{
    QStringList out;
    for (const QVariantList& r :
         testdb::rows("SELECT DATA, IMPORTO FROM Scadenze WHERE FK_PrimaNota = " + n(entry) + " ORDER BY RID"))
        out << formatDate(r.at(0)) + ' ' + formattaImporto(getValoreCurrency(r.at(1)), 2);
    return out.join("; ");
}

// MariaDB: the DELETE statements run so far on the transaction's connection.
int deletesRun() { return testdb::rows("SHOW SESSION STATUS LIKE ¤Com_delete¤").value(0).value(1).toInt(); }
struct Righe
{
    ContiCausale causale;
    QString importo, iva, rda, expected;
};
struct Rifiuto
{
    int causale;
    QDate data, valuta;
    QString iva, message;
};
struct Termine
{
    QString termine, importo; // "-100": 100 with the negative flag
    QDate data;
    QString expected, messaggio = {};
};
struct Fido
{
    bool ctrl, allaData;
    QStringList movimenti;
    QString saldo, residuo, avviso, domanda;
};

} // namespace

class TestContabilita : public testdb::BackendTest
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        BackendTest::init();
        testdb::empty({"Scadenze", "PrimaNotaDettagli", "PrimaNota"});
    }

    void lines_data()
    {
        QTest::addColumn<Righe>("r");
        const auto row = [](const char* name, const Righe& r) { QTest::newRow(name) << r; };
        const ContiCausale vendita{kClienti, 0, kRicavi, kIvaDebito};
        row("sales invoice", {vendita, "122", "22", "0", "3:122 - 20:100 14:22"});
        row("purchase", {{kAcquisti, kIvaCredito, kFornitori, 0}, "122", "22", "0", "17:100 5:22 12:122 -"});
        row("VAT 0", {vendita, "100", "0", "0", "3:100 - 20:100 14:0"});
        row("negative VAT keeps the whole total", {vendita, "-122", "-22", "0", "3:-122 - 20:-122 14:-22"});
        row("Dare 2 wins over Avere 2",
            {{kAcquisti, kIvaCredito, kFornitori, kIvaDebito}, "122", "22", "0", "17:100 5:22 12:122 -"});
        row("withholding, customers on Dare 1",
            {{kClienti, kRitenute, kRicavi, kIvaDebito}, "122", "22", "20", "3:102 6:20 20:100 14:22"});
        // Avere 1 on the suppliers' account: minus the withholding, not the total less it.
        row("withholding, suppliers on Avere 1",
            {{kAcquisti, kIvaCredito, kFornitori, kRitenute}, "122", "22", "20", "17:100 5:22 12:-20 6:20"});
        row("withholding, no counterparty account", {vendita, "122", "22", "20", "3:0 - 20:0 -"});
        row("no accounts", {{}, "122", "22", "0", "- - - -"});
    }

    void lines()
    {
        QFETCH(Righe, r);
        QCOMPARE(describe(calcolaRighe(r.causale, eur(r.importo), eur(r.iva), eur(r.rda), kControparti)), r.expected);
    }

    // Entries numbered per year, lines rewritten on a new save, the number kept in another year.
    void entries()
    {
        const ContiControparti c = conti();
        DatiPrimaNota d;
        d.fkCausale = 1; // FV: Dare customers, Avere revenue and VAT
        d.descrizione = "Fattura N.0001 DEL 10/03/2026 - l'ultima";
        d.importo = eur("1220");
        d.importoIva = eur("220");
        d.data = d.dataValuta = QDate(2026, 3, 10);
        d.codicePartita = "PARTITA-0123456789-ABCDEF";
        QVERIFY(db().beginTrasaction("test"));
        const int first = salvaPrimaNota(d, c), second = salvaPrimaNota(d, c);
        d.data = QDate(2027, 1, 2);
        const int nextYear = salvaPrimaNota(d, c);
        QVERIFY(db().commitTrasaction("test"));
        QCOMPARE(QList<int>(
                     {getProgPrimaNotaByID(first), getProgPrimaNotaByID(second), getProgPrimaNotaByID(nextYear)}),
                 QList<int>({1, 2, 1}));
        QCOMPARE(linesOf(first, c.clienti), "C D 1220, 20 A 1000, 14 A 220");
        QCOMPARE(testdb::value("SELECT CodicePartita FROM PrimaNota WHERE RID = " + n(first)).toString(),
                 "PARTITA-0123456789-A");
        // Saved again on 2027 with new amounts: number kept, lines replaced.
        d.rid = second;
        d.importo = eur("610");
        d.importoIva = eur("110");
        QCOMPARE(salvaPrimaNota(d, c), second);
        QCOMPARE(getProgPrimaNotaByID(second), 2);
        QCOMPARE(linesOf(second, c.clienti), "C D 610, 20 A 500, 14 A 110");
        QCOMPARE(modificaImportoPrimaNota(second, eur("122"), eur("22"), Currency(), c), second);
        QCOMPARE(linesOf(second, c.clienti), "C D 122, 20 A 100, 14 A 22");
        QCOMPARE(modificaImportoPrimaNota(0, eur("1"), Currency(), Currency(), c), 0);
        // The moved entry keeps its 2026 place; a number freed at the end is given again.
        d.rid = 0;
        d.data = QDate(2026, 12, 31);
        QVERIFY(db().beginTrasaction("test"));
        const int third = salvaPrimaNota(d, c);
        QVERIFY(db().commitTrasaction("test"));
        QCOMPARE(getProgPrimaNotaByID(third), 3);
        run("DELETE FROM PrimaNotaDettagli WHERE FK_PrimaNota = " + n(third));
        run("DELETE FROM PrimaNota WHERE RID = " + n(third));
        QVERIFY(db().beginTrasaction("test"));
        QCOMPARE(getNewProgressivoPrimaNota(d.data), 3);
        QVERIFY(db().rollbackTrasaction("test"));
        // Outside a transaction no number is given: another workstation could take it too.
        testdb::ErrorRecorder errors;
        QCOMPARE(getNewProgressivoPrimaNota(d.data), -1);
        QCOMPARE(errors.reports.size(), 1);
        QCOMPARE(salvaPrimaNota(d, c), -1);
        QCOMPARE(testdb::count("PrimaNota"), 3);
    }

    // Values stored wrong and a causal without accounts leave nothing; the message follows the rollback.
    void refusedValues_data()
    {
        QTest::addColumn<Rifiuto>("r");
        const auto row = [](const char* name, const Rifiuto& r) { QTest::newRow(name) << r; };
        const QDate ok(2026, 6, 1);
        row("no date", {1, QDate(), ok, "0", "Data non valida: Data della registrazione"});
        row("no value date", {1, ok, QDate(), "0", "Data non valida: Data valuta"});
        row("date before 1753", {1, QDate(1700, 1, 1), ok, "0", "Data non valida"});
        row("net amount out of range", {1, ok, ok, "-1", "Importo fuori dai limiti consentiti"});
        row("no causal", {0, ok, ok, "0", "Impossibile assegnare i conti DARE/AVERE!"});
    }

    void refusedValues()
    {
        QFETCH(Rifiuto, r);
        testdb::ScriptedMsgBox boxes;
        QVERIFY(db().beginTrasaction("test"));
        DatiPrimaNota d;
        d.fkCausale = r.causale;
        d.data = r.data;
        d.dataValuta = r.valuta;
        d.importo = eur("922337203685477");
        d.importoIva = eur(r.iva);
        QCOMPARE(salvaPrimaNota(d, kControparti), -1);
        QCOMPARE(boxes.shown.size(), 0);
        boxes.expect(r.message, vb::OK);
        QVERIFY(db().rollbackTrasaction("test"));
        QVERIFY(boxes.allAnswered());
        QCOMPARE(testdb::count("PrimaNota"), 0);
    }

    // The instalments of a term, or the message of a value that cannot be stored: then the earlier due dates stay, and
    // nothing is reported.
    void dueDates_data()
    {
        QTest::addColumn<Termine>("t");
        const QString limiti = " (sono ammessi importi da -922.337.203.685.477,5808 a 922.337.203.685.477,5807).";
        const QString intervallo = " (la data deve essere compresa tra il 01/01/1753 e il 31/12/9999).";
        const QString fineMese = ": con la scadenza a fine mese i giorni devono essere compresi tra -32768 e 32767.";
        const QString scadenze = "Data non valida: data delle scadenze";
        const QDate maggio(2026, 5, 2), gennaio(2026, 1, 1);
        const auto row = [](const char* name, const Termine& t) { QTest::newRow(name) << t; };
        const auto refused = [](const char* name, const char* term, const char* importo, QDate data, const QString& m) {
            QTest::newRow(name) << Termine{term, importo, data, "", m};
        };
        row("30/60 end of month from 15 January",
            {"fm 30:50 60:50", "1000", QDate(2026, 1, 15), "28/02/2026 500,00; 31/03/2026 500,00"});
        row("leap year", {"fm 30:50 60:50", "1000", QDate(2028, 1, 15), "29/02/2028 500,00; 31/03/2028 500,00"});
        row("days first, no months", {"fm 30:100", "10", QDate(2026, 1, 31), "31/03/2026 10,00"});
        row("direct remittance at month end",
            {"rd fm 30:50 60:50", "100", QDate(2026, 4, 10), "30/04/2026 50,00; 30/04/2026 50,00"});
        row("30% down payment", {"30% 60:70", "1000", maggio, "02/05/2026 300,00; 01/07/2026 700,00"});
        row("zero total", {"30:50 60:50", "0", maggio, "01/06/2026 0,00; 01/07/2026 0,00"});
        row("negative", {"30:50 60:50", "-100", maggio, "01/06/2026 -50,00; 01/07/2026 -50,00"});
        row("shares not adjusted",
            {"30:33.33 60:33.33 90:33.34", "100", maggio, "01/06/2026 33,33; 01/07/2026 33,33; 31/07/2026 33,34"});
        row("fewer instalments than rows", {"n1 30:50 60:50", "100", maggio, "01/06/2026 50,00"});
        // The month-end rule takes its days as a 16-bit number; the plain rule does not.
        row("32767 days at month end", {"fm 32767:100", "10", gennaio, "30/09/2115 10,00"});
        row("40000 plain days", {"40000:100", "10", gennaio, "09/07/2135 10,00"});
        row("large amounts kept",
            {"10% 30:100", "-900000000000000", gennaio,
             "01/01/2026 -90.000.000.000.000,00; 31/01/2026 -900.000.000.000.000,00"});
        refused("no date", "30:50 60:50", "100", QDate(), scadenze + " (data mancante o inesistente).");
        refused("date before 1753", "30:50 60:50", "100", QDate(1700, 5, 1), scadenze + intervallo);
        refused("due date after 9999", "30:50 3000000:50", "100", gennaio,
                "Data non valida: scadenza della rata 2 delle scadenze" + intervallo);
        refused("32768 days at month end", "fm 32768:100", "100", gennaio,
                "Il pagamento TST indica 32768 giorni per la rata 1" + fineMese);
        refused("direct remittance at month end, 40000 days", "rd fm 0:50 40000:50", "100", gennaio,
                "Il pagamento TST indica 40000 giorni per la rata 2" + fineMese);
        refused("more instalments than rows", "n3 30:50 60:50", "100", gennaio,
                "Il pagamento TST prevede 3 rate ma ne descrive 2: impossibile generare le scadenze.");
        refused("instalment beyond the range", "30:50 60:150", "900000000000000", gennaio,
                "Importo fuori dai limiti consentiti: rata 2 delle scadenze" + limiti);
        refused("down payment beyond the range", "150% 30:100", "900000000000000", gennaio,
                "Importo fuori dai limiti consentiti: acconto delle scadenze" + limiti);
    }

    void dueDates()
    {
        QFETCH(Termine, t);
        const int term = addTerm("TST", t.termine), entry = addEntry();
        const bool refused = !t.messaggio.isEmpty();
        if (refused) {
            QVERIFY(generaScadenzePagamento(entry, addTerm("TSTB", "10:100"), eur("80"), QDate(2026, 2, 1), false));
            t.expected = "11/02/2026 80,00";
        }
        testdb::ErrorRecorder errors;
        QString ricevuto = "not cleared";
        QVERIFY(db().beginTrasaction("test"));
        const bool negative = t.importo.startsWith('-');
        QCOMPARE(generaScadenzePagamento(entry, term, eur(t.importo.remove('-')), t.data, negative, &ricevuto),
                 !refused);
        QCOMPARE(dueDatesOf(entry), t.expected);
        QVERIFY(refused ? db().rollbackTrasaction("test") : db().commitTrasaction("test"));
        QCOMPARE(ricevuto, t.messaggio);
        QVERIFY(errors.reports.isEmpty());
        QCOMPARE(dueDatesOf(entry), t.expected);
    }

    // A new entry runs no DELETE (on MariaDB it would lock an index gap); another term replaces every row, also one
    // changed by hand; no term leaves none.
    void regenerate()
    {
        const bool server = backend() == "mariadb";
        const int entry = addEntry(), due = addTerm("T2", "30:50 60:50"), uno = addTerm("T1", "10:100");
        testdb::ErrorRecorder errors;
        QVERIFY(db().beginTrasaction("test"));
        const int deletes = server ? deletesRun() : 0;
        QVERIFY(generaScadenzePagamento(entry, due, eur("80"), QDate(2026, 2, 1), false));
        QCOMPARE(server ? deletesRun() : 0, deletes);
        QVERIFY(db().commitTrasaction("test"));
        QCOMPARE(dueDatesOf(entry), "03/03/2026 40,00; 02/04/2026 40,00");
        run("UPDATE Scadenze SET IMPORTO = 12 WHERE FK_PrimaNota = " + n(entry));
        QVERIFY(db().beginTrasaction("test"));
        const int again = server ? deletesRun() : 0;
        QVERIFY(generaScadenzePagamento(entry, uno, eur("80"), QDate(2026, 2, 1), false));
        QCOMPARE(server ? deletesRun() : 1, again + 1);
        QVERIFY(db().commitTrasaction("test"));
        QCOMPARE(dueDatesOf(entry), "11/02/2026 80,00");
        QVERIFY(generaScadenzePagamento(entry, 0, eur("80"), QDate(2026, 2, 1), false)); // no term: none
        QVERIFY(dueDatesOf(entry).isEmpty());
        QVERIFY(errors.reports.isEmpty());
    }

    // Customer 801 (limit 500, checked or not) with documents "causal total VAT days-from-today"; 802's unpaid invoice
    // must not count. The warning and the question on saving a document of 100 name the amount over.
    void creditLimit_data()
    {
        QTest::addColumn<Fido>("f");
        const QString fv = "FV 1220 220 -10";
        const auto row = [](const char* name, const Fido& f) { QTest::newRow(name) << f; };
        row("unpaid invoice beyond the limit", {true, false, {fv}, "1220", "-720", "-720,00", "-820,00"});
        row("invoice partly paid", {true, false, {fv, "INC 1000 0 -5"}, "220", "280", "", ""});
        row("no entries", {true, false, {}, "0", "500", "", ""});
        row("exactly at the limit", {true, false, {"FV 500 0 -1"}, "500", "0", "", "-100,00"});
        row("credit note", {true, false, {fv, "NC 610 110 -2"}, "610", "-110", "-110,00", "-210,00"});
        row("future value date counts", {true, false, {"FV 1220 220 5"}, "1220", "-720", "-720,00", "-820,00"});
        row("future value date left out by date", {true, true, {"FV 1220 220 5", "FV 122 22 0"}, "122", "378", "", ""});
        row("limit not checked", {false, false, {fv}, "1220", "0", "", ""});
    }

    void creditLimit()
    {
        QFETCH(Fido, f);
        const QDate oggi(2026, 6, 15);
        const ContiControparti c = conti();
        run("DELETE FROM Anagrafiche WHERE NUMERO IN (801, 802)");
        run(QString("INSERT INTO Anagrafiche (NUMERO, DENOMINAZIONE, TIPO, CTRLFIDO, FIDO) "
                    "VALUES (801, ¤Rossi¤, ¤C¤, %1, 500), (802, ¤Bianchi¤, ¤C¤, -1, 0)")
                .arg(f.ctrl ? -1 : 0));
        const int rossi = rid("Anagrafiche", "NUMERO = 801");
        // The journal engine leaves a line's other side Null: the balance must survive it.
        const auto registra = [&](int anagrafe, const QString& movimento) {
            const QStringList p = movimento.split(' ');
            QCOMPARE(saveDettagliPrimaNota(addEntry(oggi.addDays(p.at(3).toInt()), n(anagrafe)),
                                           rid("Causali", testdb::code(p.at(0))), eur(p.at(1)), eur(p.at(2)),
                                           Currency(), c),
                     "#");
        };
        for (const QString& movimento : f.movimenti)
            registra(rossi, movimento);
        registra(rid("Anagrafiche", "NUMERO = 802"), "FV 999 0 -1");
        QVERIFY(testdb::count("PrimaNotaDettagli", "AVERE IS NULL") > 0);
        testdb::ErrorRecorder errors;
        QCOMPARE(getSaldoCliente(rossi, c.clienti, f.allaData, oggi), eur(f.saldo));
        bool ctrlFido = !f.ctrl;
        QCOMPARE(controllaFuoriFido(rossi, ctrlFido, c.clienti, f.allaData, oggi), eur(f.residuo));
        QCOMPARE(ctrlFido, f.ctrl);
        const QString fuori = "Attenzione! E' stato riscontrato un FUORI FIDO per l'anagrafica selezionata di Euro: ";
        QCOMPARE(avvisoFuoriFido(rossi, c.clienti, f.allaData, oggi),
                 f.avviso.isEmpty() ? QString() : fuori + f.avviso);
        QCOMPARE(domandaFuoriFido(rossi, Currency::fromUnits(100), c.clienti, f.allaData, oggi),
                 f.domanda.isEmpty() ? QString() : fuori + f.domanda + "\n\nSi desidera continuare?");
        QVERIFY(errors.reports.isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestContabilita)
#include "tst_contabilita.moc"
