#include "stressdb.h"

#include "accounting/scadenze.h"
#include "data/cadosqlserver.h"
#include "data/connectionstring.h"
#include "data/driver.h"
#include "data/modeldatabase.h"
#include "data/nextnumber.h"
#include "data/recordset.h"
#include "data/scoped.h"
#include "data/sqldialect.h"
#include "data/sqlliteral.h"
#include "documents/documento.h"
#include "documents/editordocumento.h"
#include "documents/salvadocumento.h"
#include "masterdata/pagamento.h"
#include "masterdata/rangeeditor.h"
#include "numbering/numeratore.h"
#include "printing/codiciabarre.h"
#include "stock/giacenze.h"

#include <QDate>
#include <QMap>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QSet>

#include <cmath>
#include <functional>
#include <map>
#include <set>
#include <tuple>

namespace stress {

namespace {

const QString kTag = QStringLiteral("stress");
const QDate kData(kAnno, 3, 16);

cAdoSqlServer& db() { return gAdoSqlServer(); }

QVariant value(const QString& sql) { return db().getValueBySQL(sql, kTag); }

int ridByCode(const QString& table, const QString& code)
{
    return value(QStringLiteral("SELECT RID FROM ") + table + QStringLiteral(" WHERE CODICE = ") + sqlText(code))
        .toInt();
}

struct Riga
{
    int prodotto = 0;
    int quantita = 0;
    Currency prezzo;
};

enum class Tipo {
    Fattura,
    Ddt,
    Carico,
    Trasferimento
};

// The documents this workstation saved: the ones it edits and deletes, so
// that two workstations never work on the same document.
QList<int>& propri()
{
    static QList<int> documenti;
    return documenti;
}

// A document saved as the document screen saves it: rows confirmed in the
// editor, the header of its type, the save's one transaction.
bool saveDocument(const Fixture& f, Tipo tipo, const QList<Riga>& righe)
{
    DocumentoDaSalvare d;
    const int tipi[] = {f.tdFattura, f.tdDdt, f.tdCarico, f.tdTrasferimento};
    d.testata.tipo.rid = tipi[int(tipo)];
    if (!getInfoDocumento(d.testata.tipo.rid, d.info))
        return false;
    d.testata.tipo.codice = QStringLiteral("STRESS");
    d.testata.anno = kAnno;
    d.testata.data = kData;
    d.testata.pagamento.rid = f.pagamento;
    const bool carico = tipo == Tipo::Carico;
    d.testata.origine.rid = carico ? f.fornitore : f.sede;
    d.testata.destinazione.rid = carico ? f.sede : tipo == Tipo::Trasferimento ? f.negozio : f.cliente;
    EditorDocumento editor(2, QStringLiteral("*"));
    for (const Riga& r : righe) {
        editor.pulisciRiga();
        std::tie(editor.dati.prodotto, editor.dati.codice, editor.dati.descrizione, editor.dati.iva,
                 editor.dati.codIva) = std::tuple(r.prodotto, QStringLiteral("STRESS"),
                                                  QStringLiteral("Articolo di prova"), f.iva, QStringLiteral("22"));
        std::tie(editor.riga.prezzoListino, editor.riga.quantita, editor.riga.aliquota) =
            std::tuple(r.prezzo.toPlainString().replace(QLatin1Char('.'), QLatin1Char(',')),
                       QString::number(r.quantita), QStringLiteral("22"));
        editor.confermaRiga();
    }
    editor.calcolaTotali();
    d.totali = editor.totali();
    if (!salvaDocumento(d, editor.griglia(), true))
        return false;
    if (tipo == Tipo::Fattura || tipo == Tipo::Ddt)
        propri() << d.testata.rid;
    return true;
}

// A stored sale of this workstation changed: the quantity of its first row,
// and a row more now and then.
bool editDocument(const Fixture& f, QRandomGenerator& random)
{
    if (propri().isEmpty())
        return true;
    DocumentoDaSalvare d;
    EditorDocumento editor(2, QStringLiteral("*"));
    const int rid = propri().at(random.bounded(int(propri().size())));
    if (!leggiTestata(rid, 0, 0, 0, d.testata) || !getInfoDocumento(d.testata.tipo.rid, d.info)
        || !leggiRighe(rid, editor.griglia(), 2, QStringLiteral("*")) || !editor.getRowFromGrid(0))
        return false;
    editor.riga.quantita = QString::number(1 + random.bounded(4));
    editor.confermaRiga();
    if (random.bounded(2) == 0) {
        editor.pulisciRiga();
        std::tie(editor.dati.prodotto, editor.dati.codice, editor.dati.iva) =
            std::tuple(f.prodotti.at(random.bounded(int(f.prodotti.size()))), QStringLiteral("STRESS"), f.iva);
        std::tie(editor.riga.prezzoListino, editor.riga.quantita, editor.riga.aliquota) =
            std::tuple(QStringLiteral("12"), QStringLiteral("1"), QStringLiteral("22"));
        editor.confermaRiga();
    }
    editor.calcolaTotali();
    d.totali = editor.totali();
    return salvaDocumento(d, editor.griglia(), true);
}

// A stored sale of this workstation deleted: its stock goes back, its entry
// and due dates go. The last invoice stays, so the counter stands at a
// document that exists.
bool deleteDocument(const Fixture& f, QRandomGenerator& random)
{
    if (propri().size() < 2)
        return true;
    const qsizetype i = random.bounded(int(propri().size()));
    const int rid = propri().at(i);
    const int ultima = value(QStringLiteral("SELECT MAX(PROGRESSIVO) FROM Movimenti WHERE FK_TIPODOCUMENTO = ")
                             + QString::number(f.tdFattura))
                           .toInt();
    TestataDocumento testata;
    InfoDocumento info;
    if (!leggiTestata(rid, 0, 0, 0, testata) || !getInfoDocumento(testata.tipo.rid, info))
        return false;
    if (testata.tipo.rid != f.tdFattura || testata.progressivo == ultima)
        return true;
    if (!eliminaDocumento(testata, info))
        return false;
    propri().removeAt(i);
    return true;
}

// The first print of one of this workstation's documents.
bool markPrinted(QRandomGenerator& random)
{
    if (propri().isEmpty())
        return true;
    return updateDataStampa(propri().at(random.bounded(int(propri().size()))), kData);
}

// A card of the address book, numbered as the highest number plus one.
bool saveCard()
{
    const int numero = nextNumber(QStringLiteral("Rubrica"), QStringLiteral("NUMERO"), kTag);
    return numero > 0
        && db().executeSQL(QStringLiteral("INSERT INTO Rubrica (NUMERO, DENOMINAZIONE) VALUES (")
                               + QString::number(numero) + QStringLiteral(", ")
                               + sqlText(QStringLiteral("Scheda %1").arg(numero)) + QLatin1Char(')'),
                           kTag);
}

// A payment term saved as its screen saves it: the head, then its
// instalments replaced, 1 to 4 of them, making 100 together.
bool saveTermine(int termine, int rate)
{
    // 100 split in hundredths, the first instalment taking the remainder.
    const int quota = 10000 / rate;
    QList<RataPagamento> righe;
    for (int i = 0; i < rate; ++i) {
        const int centesimi = i == 0 ? 10000 - quota * (rate - 1) : quota;
        righe.append(
            RataPagamento{QString::number(30 * (i + 1)),
                          QStringLiteral("%1,%2").arg(centesimi / 100).arg(centesimi % 100, 2, 10, QLatin1Char('0'))});
    }
    return db().executeSQL(QStringLiteral("UPDATE Pagamenti SET NRATE = ") + QString::number(rate)
                               + QStringLiteral(" WHERE RID = ") + QString::number(termine),
                           kTag)
        && saveDettagliPagamento(termine, righe);
}

// The ranges of the category as its screen saves them: read, a discount
// changed, everything written in the editor's own transaction.
bool saveRange(int categoria, int sconto)
{
    RangeEditor editor(TipoRange::Sconti);
    if (!editor.carica(categoria, 0) || editor.gruppi(Acquisti).isEmpty())
        return false;
    for (RangeRiga& riga : editor.gruppi(Acquisti)[0].righe)
        riga.valori[0] = QString::number(sconto);
    return editor.salva(categoria, 0);
}

bool count(bool saved, Figures* figures)
{
    const cAdoSqlServer::Failure failure = db().lastFailure();
    if (!figures)
        return saved;
    if (saved)
        ++figures->saves;
    else if (failure == cAdoSqlServer::Failure::Busy)
        ++figures->busy;
    else if (failure == cAdoSqlServer::Failure::ConnectionLost)
        ++figures->lost;
    else
        ++figures->other;
    return saved;
}

bool saveInTransaction(const std::function<bool()>& write, Figures* figures)
{
    bool saved = false;
    {
        cTransaction transaction(kTag);
        saved = transaction && write() && transaction.commit();
    }
    return count(saved, figures);
}

} // namespace

// --- figures ------------------------------------------------------------------

void Figures::add(const Figures& f)
{
    saves += f.saves;
    busy += f.busy;
    lost += f.lost;
    other += f.other;
}

QString Figures::line() const
{
    return QStringLiteral("saves=%1 busy=%2 lost=%3 other=%4").arg(saves).arg(busy).arg(lost).arg(other);
}

Figures Figures::fromLine(const QString& line)
{
    static const QRegularExpression re(QStringLiteral("^saves=(\\d+) busy=(\\d+) lost=(\\d+) other=(\\d+)$"));
    const QRegularExpressionMatch m = re.match(line.trimmed());
    Figures f;
    if (m.hasMatch()) {
        f.saves = m.captured(1).toInt();
        f.busy = m.captured(2).toInt();
        f.lost = m.captured(3).toInt();
        f.other = m.captured(4).toInt();
    }
    return f;
}

// --- database -----------------------------------------------------------------

void dropServerDatabase(const QString& server)
{
    driver::closeIdle();
    DbError error;
    if (PhysicalConnectionPtr c = driver::acquire(TipoServer::MySql, server, 10, error)) {
        c->execute(QStringLiteral("DROP DATABASE IF EXISTS orvantis_stress"), nullptr, error);
        c->close();
    }
}

bool createDatabase(int tipoServer, const QString& server, const QString& connectionString, QString* message)
{
    if (tipoServer == TipoServer::FileDb)
        return model::buildModelFile(fileDbPath(connectionString), message);
    dropServerDatabase(server);
    return model::initServerDatabase(tipoServer, connectionString, message);
}

bool prepareFixture(QString* message)
{
    const auto fail = [message](const QString& what) {
        if (message)
            *message = what;
        return false;
    };
    for (const auto& [numero, nome, tipo] :
         {std::tuple{90001, "Cliente Stress S.r.l.", "C"}, std::tuple{90002, "Fornitore Stress S.p.A.", "F"}})
        if (!db().executeSQL(QStringLiteral("INSERT INTO Anagrafiche (NUMERO, DENOMINAZIONE, TIPO) VALUES (")
                                 + QString::number(numero) + QStringLiteral(", ") + sqlText(QString::fromUtf8(nome))
                                 + QStringLiteral(", ") + sqlText(QString::fromLatin1(tipo)) + QLatin1Char(')'),
                             kTag))
            return fail(QStringLiteral("anagrafiche"));
    for (int i = 1; i <= 5; ++i)
        if (!db().executeSQL(QStringLiteral(
                                 "INSERT INTO Prodotti (CODICE, DESCRIZIONE, GIACENZA, SETGIACENZA) VALUES (")
                                 + sqlText(QStringLiteral("STRESS%1").arg(i)) + QStringLiteral(", ")
                                 + sqlText(QStringLiteral("Articolo di prova %1").arg(i)) + QStringLiteral(", 0, -1)"),
                             kTag))
            return fail(QStringLiteral("prodotti"));
    if (!db().executeSQL(QStringLiteral("INSERT INTO Magazzini (CODICE, DESCRIZIONE) VALUES (")
                             + sqlText(QStringLiteral("STRNEG")) + QStringLiteral(", ")
                             + sqlText(QStringLiteral("Negozio di prova")) + QLatin1Char(')'),
                         kTag))
        return fail(QStringLiteral("magazzino"));
    if (!db().executeSQL(QStringLiteral("INSERT INTO Pagamenti (CODICE, DESCRIZIONE, NRATE) VALUES (")
                             + sqlText(QStringLiteral("STRESS")) + QStringLiteral(", ")
                             + sqlText(QStringLiteral("Rate di prova")) + QStringLiteral(", 0)"),
                         kTag)
        || !db().executeSQL(QStringLiteral("INSERT INTO CategorieSconti (CODICE, DESCRIZIONE) VALUES (")
                                + sqlText(QStringLiteral("STRESS")) + QStringLiteral(", ")
                                + sqlText(QStringLiteral("Sconti di prova")) + QLatin1Char(')'),
                            kTag))
        return fail(QStringLiteral("pagamento e categoria"));
    Fixture f;
    if (!readFixture(f))
        return fail(QStringLiteral("dati di partenza incompleti"));
    RangeEditor ranges(TipoRange::Sconti);
    if (!ranges.carica(f.categoria, 0)
        || !ranges.aggiungiGruppo(Acquisti, f.fornitore, QStringLiteral("90002"), QStringLiteral("Fornitore")).isEmpty()
        || !ranges.salva(f.categoria, 0) || !saveInTransaction([&] { return saveTermine(f.termine, 2); }, nullptr))
        return fail(QStringLiteral("range e rate"));
    // A first load of every product, so that sales always find a lot.
    QList<Riga> righe;
    for (const int p : std::as_const(f.prodotti))
        righe << Riga{p, 100, Currency::fromUnits(5)};
    return saveDocument(f, Tipo::Carico, righe) || fail(QStringLiteral("primo carico"));
}

bool readFixture(Fixture& f)
{
    f.sede = ridByCode(QStringLiteral("Magazzini"), QStringLiteral("SEDE"));
    f.cliente = value(QStringLiteral("SELECT RID FROM Anagrafiche WHERE NUMERO = 90001")).toInt();
    f.fornitore = value(QStringLiteral("SELECT RID FROM Anagrafiche WHERE NUMERO = 90002")).toInt();
    f.tdFattura = ridByCode(QStringLiteral("TipoDocumenti"), QStringLiteral("FV"));
    f.tdCarico = ridByCode(QStringLiteral("TipoDocumenti"), QStringLiteral("CF"));
    f.tdDdt = ridByCode(QStringLiteral("TipoDocumenti"), QStringLiteral("DDT"));
    f.tdTrasferimento = ridByCode(QStringLiteral("TipoDocumenti"), QStringLiteral("TM"));
    f.negozio = ridByCode(QStringLiteral("Magazzini"), QStringLiteral("STRNEG"));
    f.iva = ridByCode(QStringLiteral("Iva"), QStringLiteral("22"));
    const QString ofType = QStringLiteral(" FROM TipoDocumenti WHERE RID = ");
    f.cauFattura = value(QStringLiteral("SELECT FK_CAUSALE") + ofType + QString::number(f.tdFattura)).toInt();
    f.numFatture = value(QStringLiteral("SELECT NCONTATORE") + ofType + QString::number(f.tdFattura)).toInt();
    f.cauCarico = value(QStringLiteral("SELECT FK_CAUSALE") + ofType + QString::number(f.tdCarico)).toInt();
    f.numCarichi = value(QStringLiteral("SELECT NCONTATORE") + ofType + QString::number(f.tdCarico)).toInt();
    f.pagamento = ridByCode(QStringLiteral("Pagamenti"), QStringLiteral("3060FM"));
    f.termine = ridByCode(QStringLiteral("Pagamenti"), QStringLiteral("STRESS"));
    f.categoria = ridByCode(QStringLiteral("CategorieSconti"), QStringLiteral("STRESS"));
    f.conti.clienti = ridByCode(QStringLiteral("PianoConti"), QStringLiteral("01001001"));
    f.conti.fornitori = ridByCode(QStringLiteral("PianoConti"), QStringLiteral("02001001"));
    const cReader rs(QStringLiteral("SELECT RID FROM Prodotti WHERE CODICE LIKE ") + sqlText(QStringLiteral("STRESS%"))
                         + QStringLiteral(" ORDER BY RID"),
                     kTag);
    for (; rs && !rs->eof(); rs->moveNext())
        f.prodotti << int(rs->integer(QStringLiteral("RID")));
    return f.sede > 0 && f.negozio > 0 && f.tdDdt > 0 && f.tdTrasferimento > 0 && f.iva > 0 && f.cliente > 0
        && f.fornitore > 0 && f.cauFattura > 0 && f.numFatture > 0 && f.cauCarico > 0 && f.numCarichi > 0
        && f.pagamento > 0 && f.termine > 0 && f.categoria > 0 && f.prodotti.size() == 5;
}

void save(const Fixture& f, QRandomGenerator& random, Figures& figures)
{
    switch (random.bounded(10)) {
    case 0:
    case 1: saveInTransaction(saveCard, &figures); return;
    case 2: saveInTransaction([&] { return saveTermine(f.termine, 1 + random.bounded(4)); }, &figures); return;
    case 3: count(saveRange(f.categoria, random.bounded(50)), &figures); return;
    case 4: count(deleteDocument(f, random), &figures); return;
    case 5:
        // A print marks a document printed; now and then the barcodes of all
        // products are written again in one transaction, over the saves'
        // product locks.
        count(random.bounded(20) == 0 ? generaBarCode() : markPrinted(random), &figures);
        return;
    default: break;
    }
    if (random.bounded(4) == 0) {
        count(editDocument(f, random), &figures);
        return;
    }
    const Tipo tipo = Tipo(random.bounded(4));
    const bool carico = tipo == Tipo::Carico;
    // One to three products in random order: the engine must lock them in
    // an order of its own.
    QList<int> scelti = f.prodotti;
    for (qsizetype i = scelti.size() - 1; i > 0; --i)
        scelti.swapItemsAt(i, random.bounded(int(i + 1)));
    QList<Riga> righe;
    const int count = 1 + random.bounded(3);
    for (int i = 0; i < count; ++i)
        righe << Riga{scelti.at(i), 1 + random.bounded(carico ? 10 : 4),
                      carico ? Currency::fromUnits(5 + random.bounded(3)) : Currency::fromUnits(12)};
    ::stress::count(saveDocument(f, tipo, righe), &figures);
}

// --- check --------------------------------------------------------------------

namespace {

QList<QVariantList> rows(const QString& sql)
{
    QList<QVariantList> list;
    const cReader rs(sql, kTag);
    for (; rs && !rs->eof(); rs->moveNext()) {
        QVariantList row;
        for (int i = 0; i < rs->fieldCount(); ++i)
            row << rs->value(i);
        list << row;
    }
    return list;
}

int number(const QString& sql) { return value(sql).toInt(); }

// Numbers 1..count, each once; with gaps (numbers of deleted rows), each
// number once.
QString sequence(const QString& what, const QString& fromWhere, int& problems,
                 const QString& column = QStringLiteral("PROGRESSIVO"), bool gaps = false)
{
    const int count = number(QStringLiteral("SELECT COUNT(*) ") + fromWhere);
    const int distinct = number(QStringLiteral("SELECT COUNT(DISTINCT ") + column + QStringLiteral(") ") + fromWhere);
    const int highest = number(QStringLiteral("SELECT MAX(") + column + QStringLiteral(") ") + fromWhere);
    const int lowest = number(QStringLiteral("SELECT MIN(") + column + QStringLiteral(") ") + fromWhere);
    const bool ok = count == distinct && (gaps || count == 0 || (lowest == 1 && highest == count));
    if (!ok)
        ++problems;
    return QStringLiteral("%1: %2, distinct numbers %3, from %4 to %5%6")
        .arg(what)
        .arg(count)
        .arg(distinct)
        .arg(lowest)
        .arg(highest)
        .arg(ok ? QString() : QStringLiteral("  <-- numbers given twice or missing"));
}

} // namespace

Check checkDatabase(int tipoServer)
{
    Check c;
    int problems = 0;
    const auto fact = [&c, &problems](const QString& text, bool ok) {
        c.lines << text + (ok ? QString() : QStringLiteral("  <-- WRONG"));
        if (!ok)
            ++problems;
    };

    if (tipoServer == TipoServer::FileDb) {
        const QString integrity = value(QStringLiteral("PRAGMA integrity_check")).toString();
        fact(QStringLiteral("integrity check: ") + integrity, integrity == QLatin1String("ok"));
    } else {
        int bad = 0;
        for (const QVariantList& r :
             rows(QStringLiteral("CHECK TABLE Movimenti, DettagliMovimento, PrimaNota, PrimaNotaDettagli, Scadenze, "
                                 "Prodotti, DettagliProdotto, Contatori, AnniPrimaNota, Rubrica, DettagliPagamenti, "
                                 "CatScAcquisto, CatScAcquistoSconti")))
            if (r.value(2).toString() == QLatin1String("status") && r.value(3).toString() != QLatin1String("OK"))
                ++bad;
        fact(QStringLiteral("CHECK TABLE: %1 tables not OK").arg(bad), bad == 0);
    }

    // Documents and journal.
    // Invoices are deleted too, with their entries: numbers are not given back.
    c.lines << sequence(QStringLiteral("journal entries of %1").arg(kAnno),
                        QStringLiteral("FROM PrimaNota WHERE ANNO = ") + QString::number(kAnno), problems,
                        QStringLiteral("PROGRESSIVO"), true);
    const QString tipo = QStringLiteral("FROM Movimenti WHERE FK_TIPODOCUMENTO IN (%1)");
    const auto tipi = [](std::initializer_list<const char*> codici) {
        QStringList rid;
        for (const char* codice : codici)
            rid << QString::number(ridByCode(QStringLiteral("TipoDocumenti"), QString::fromLatin1(codice)));
        return rid.join(QStringLiteral(", "));
    };
    c.lines << sequence(QStringLiteral("documents FV"), tipo.arg(tipi({"FV"})), problems, QStringLiteral("PROGRESSIVO"),
                        true);
    c.lines << sequence(QStringLiteral("documents CF"), tipo.arg(tipi({"CF"})), problems);
    // Delivery notes and transfers share one numerator.
    c.lines << sequence(QStringLiteral("documents DDT and TM"), tipo.arg(tipi({"DDT", "TM"})), problems);
    c.lines << sequence(QStringLiteral("address book cards"), QStringLiteral("FROM Rubrica"), problems,
                        QStringLiteral("NUMERO"));
    {
        const int termine = ridByCode(QStringLiteral("Pagamenti"), QStringLiteral("STRESS"));
        const QString of = QStringLiteral(" FROM DettagliPagamenti WHERE FK_PAGAMENTO = ") + QString::number(termine);
        const int rate = number(QStringLiteral("SELECT NRATE FROM Pagamenti WHERE RID = ") + QString::number(termine));
        const int righe = number(QStringLiteral("SELECT COUNT(*)") + of);
        const double totale = value(QStringLiteral("SELECT SUM(PERCENTUALE)") + of).toDouble();
        fact(QStringLiteral("payment term: %1 instalments for %2, %3 %").arg(righe).arg(rate).arg(totale),
             righe == rate && std::abs(totale - 100.0) < 1e-6);
        const QString categoria =
            QString::number(ridByCode(QStringLiteral("CategorieSconti"), QStringLiteral("STRESS")));
        const int teste =
            number(QStringLiteral("SELECT COUNT(*) FROM CatScAcquisto WHERE FK_Categoria = ") + categoria);
        const int range = number(QStringLiteral("SELECT COUNT(*) FROM CatScAcquistoSconti R INNER JOIN CatScAcquisto H "
                                                "ON R.FK_CatScAcquisto = H.RID WHERE H.FK_Categoria = ")
                                 + categoria);
        const int sconti = number(QStringLiteral("SELECT COUNT(DISTINCT R.Sconto1) FROM CatScAcquistoSconti R INNER "
                                                 "JOIN CatScAcquisto H ON R.FK_CatScAcquisto = H.RID WHERE "
                                                 "H.FK_Categoria = ")
                                  + categoria);
        fact(
            QStringLiteral("discount ranges: %1 head, %2 ranges, %3 discount values").arg(teste).arg(range).arg(sconti),
            teste == 1 && range == 3 && sconti == 1);
    }
    // Invoices and loads enter the journal; delivery notes and transfers don't.
    const QString contabili = tipo.arg(tipi({"FV", "CF"}));
    const int documents = number(QStringLiteral("SELECT COUNT(*) ") + contabili);
    const int entries = number(QStringLiteral("SELECT COUNT(*) FROM PrimaNota"));
    fact(QStringLiteral("invoices and loads %1, journal entries %2").arg(documents).arg(entries), documents == entries);
    const int senzaPrimaNota = number(QStringLiteral("SELECT COUNT(*) ") + contabili
                                      + QStringLiteral(" AND NOT EXISTS (SELECT 1 FROM PrimaNota p WHERE p.RID = "
                                                       "Movimenti.FK_PrimaNota)"));
    fact(QStringLiteral("documents without their entry: %1").arg(senzaPrimaNota), senzaPrimaNota == 0);
    const int senzaRighe = number(QStringLiteral("SELECT COUNT(*) FROM Movimenti m WHERE NOT EXISTS "
                                                 "(SELECT 1 FROM DettagliMovimento d WHERE d.FK_MOVIMENTO = m.RID)"));
    fact(QStringLiteral("documents without rows: %1").arg(senzaRighe), senzaRighe == 0);
    const int lineeErrate =
        number(QStringLiteral("SELECT COUNT(*) FROM PrimaNota p WHERE "
                              "(SELECT COUNT(*) FROM PrimaNotaDettagli d WHERE d.FK_PrimaNota = p.RID) <> 3"));
    fact(QStringLiteral("entries without their three lines: %1").arg(lineeErrate), lineeErrate == 0);
    const int scadenzeErrate =
        number(QStringLiteral("SELECT COUNT(*) FROM PrimaNota p WHERE "
                              "(SELECT COUNT(*) FROM Scadenze s WHERE s.FK_PrimaNota = p.RID) <> 2"));
    fact(QStringLiteral("entries without their two due dates: %1").arg(scadenzeErrate), scadenzeErrate == 0);
    const int contatori = number(
        QStringLiteral("SELECT COUNT(*) FROM Contatori c WHERE c.ANNO = ") + QString::number(kAnno)
        + QStringLiteral(
            " AND c.NUMERO <> COALESCE((SELECT MAX(m.PROGRESSIVO) FROM Movimenti m INNER JOIN TipoDocumenti t ON "
            "m.FK_TIPODOCUMENTO = t.RID WHERE t.NCONTATORE = c.FK_NUMERATORE AND m.ANNO = c.ANNO), 0)"));
    fact(QStringLiteral("counters not at their last document: %1").arg(contatori), contatori == 0);

    // Stock: every lot against the rows of the documents, every product
    // against its lots.
    // Every row takes its quantity out of the document's origin warehouse and
    // into its destination, at the row's lot.
    using Lotto = std::tuple<int, int, qint64>; // product, warehouse, lot
    std::map<Lotto, double> atteso, lotti;
    for (const QVariantList& r :
         rows(QStringLiteral("SELECT d.FK_PRODOTTO, d.TAGLIO, d.QUANTITA, m.FK_ORIGINE, m.FK_DESTINAZIONE FROM "
                             "DettagliMovimento d INNER JOIN Movimenti m ON d.FK_MOVIMENTO = m.RID"))) {
        const qint64 taglio = Currency::fromDouble(r.at(1).toDouble()).raw();
        if (!r.at(3).isNull())
            atteso[{r.at(0).toInt(), r.at(3).toInt(), taglio}] -= r.at(2).toDouble();
        if (!r.at(4).isNull())
            atteso[{r.at(0).toInt(), r.at(4).toInt(), taglio}] += r.at(2).toDouble();
    }
    QMap<int, double> sommaLotti;
    int lottiDoppi = 0;
    for (const QVariantList& r :
         rows(QStringLiteral("SELECT FK_PRODOTTO, FK_MAGAZZINO, TAGLIO, QUANTITA FROM DettagliProdotto"))) {
        const Lotto key{r.at(0).toInt(), r.at(1).toInt(), Currency::fromDouble(r.at(2).toDouble()).raw()};
        if (lotti.count(key))
            ++lottiDoppi;
        lotti[key] += r.at(3).toDouble();
        sommaLotti[r.at(0).toInt()] += r.at(3).toDouble();
    }
    fact(QStringLiteral("stock lots %1, lots stored twice %2").arg(lotti.size()).arg(lottiDoppi), lottiDoppi == 0);
    int lottiErrati = 0;
    std::set<Lotto> keys;
    for (const auto& [key, quantita] : atteso)
        keys.insert(key);
    for (const auto& [key, quantita] : lotti)
        keys.insert(key);
    for (const Lotto& key : keys)
        if (std::abs((lotti.count(key) ? lotti.at(key) : 0.0) - (atteso.count(key) ? atteso.at(key) : 0.0)) > 1e-6)
            ++lottiErrati;
    fact(QStringLiteral("lots differing from a recalculation of the documents: %1").arg(lottiErrati), lottiErrati == 0);
    int prodottiErrati = 0;
    QStringList giacenze;
    for (const QVariantList& r : rows(QStringLiteral("SELECT RID, GIACENZA, CODICE FROM Prodotti WHERE CODICE LIKE ")
                                      + sqlText(QStringLiteral("STRESS%")) + QStringLiteral(" ORDER BY RID"))) {
        const double giacenza = r.at(1).toDouble();
        if (std::abs(giacenza - sommaLotti.value(r.at(0).toInt())) > 1e-6)
            ++prodottiErrati;
        giacenze << QStringLiteral("%1 %2 (lots %3)")
                        .arg(r.at(2).toString())
                        .arg(giacenza)
                        .arg(sommaLotti.value(r.at(0).toInt()));
    }
    fact(QStringLiteral("products whose stock differs from the sum of its lots: %1").arg(prodottiErrati),
         prodottiErrati == 0);
    c.lines << QStringLiteral("stock: ") + giacenze.join(QStringLiteral(", "));
    c.ok = problems == 0;
    return c;
}

} // namespace stress
