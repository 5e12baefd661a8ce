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
#include "masterdata/pagamento.h"
#include "masterdata/rangeeditor.h"
#include "numbering/numeratore.h"
#include "stock/giacenze.h"

#include <QDate>
#include <QMap>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QSet>

#include <cmath>
#include <functional>

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

// A document: its rows are posted, its entry and due dates written, all in
// one transaction. False, rolled back, when a step failed.
bool saveDocument(const Fixture& f, bool carico, const QList<Riga>& righe)
{
    const QString anno = QString::number(kAnno);
    const int numero = getNewNumeratoreAnnuale(carico ? f.numCarichi : f.numFatture, anno);
    if (numero <= 0)
        return false;
    const int controparte = carico ? f.fornitore : f.cliente;
    const int documento = db().getIDByInsert(
        sqlInsert(QStringLiteral("Movimenti"),
                  {QStringLiteral("FK_TIPODOCUMENTO"), QStringLiteral("ANNO"), QStringLiteral("PROGRESSIVO"),
                   QStringLiteral("DATA"), QStringLiteral("FK_CONTROPARTITA"), QStringLiteral("FK_ORIGINE"),
                   QStringLiteral("FK_DESTINAZIONE"), QStringLiteral("FK_PAGAMENTO")},
                  {QString::number(carico ? f.tdCarico : f.tdFattura), anno, QString::number(numero),
                   db().getSQLDate(kData), QString::number(controparte), QString::number(carico ? controparte : f.sede),
                   QString::number(carico ? f.sede : controparte), QString::number(f.pagamento)}),
        kTag, QStringLiteral("RID"), QStringLiteral("Movimenti"));
    if (documento < 1)
        return false;

    QList<int> prodotti;
    for (const Riga& r : righe)
        prodotti << r.prodotto;
    if (!bloccaProdotti(prodotti))
        return false;

    Currency imponibile;
    const OpzioniGiacenza lotti;
    for (const Riga& r : righe) {
        // A load enters at its price as cost lot; a sale leaves from the
        // oldest lot in stock.
        Currency taglio = carico ? r.prezzo : Currency::fromUnits(-1);
        Currency precedente = Currency::fromUnits(-1);
        int rigaRid = -1;
        const QString esito =
            aggiornaGiacenze(Single(r.quantita), 0, taglio, r.prodotto, giacenze::Inserimento, carico ? -1 : f.sede,
                             carico ? f.sede : -1, QStringLiteral("Prodotto [stress]"), precedente, rigaRid, lotti);
        if (esito != QLatin1String("OK"))
            return false;
        if (!db().executeSQL(
                sqlInsert(QStringLiteral("DettagliMovimento"),
                          {QStringLiteral("FK_MOVIMENTO"), QStringLiteral("FK_PRODOTTO"), QStringLiteral("QUANTITA"),
                           QStringLiteral("PREZZONETTO"), QStringLiteral("TAGLIO")},
                          {QString::number(documento), QString::number(r.prodotto), QString::number(r.quantita),
                           getSqlNumber(r.prezzo.toPlainString()), getSqlNumber(taglio.toPlainString())}),
                kTag))
            return false;
        imponibile += CyMul(Currency::fromUnits(r.quantita), r.prezzo);
    }

    DatiPrimaNota d;
    d.fkCausale = carico ? f.cauCarico : f.cauFattura;
    d.fkAnagrafe = controparte;
    d.importoIva = CyMul(imponibile, Currency::fromRaw(2200));
    d.importo = imponibile + d.importoIva;
    d.data = kData;
    d.dataValuta = kData;
    d.descrizione = (carico ? QStringLiteral("Carico N.") : QStringLiteral("Fattura N.")) + QString::number(numero);
    d.fkPagamento = f.pagamento;
    const int entry = salvaPrimaNota(d, f.conti);
    if (entry < 1 || !generaScadenzePagamento(entry, f.pagamento, d.importo, kData, false))
        return false;
    return db().executeSQL(QStringLiteral("UPDATE Movimenti SET FK_PrimaNota = ") + QString::number(entry)
                               + QStringLiteral(", TOTDOCUMENTO = ") + getSqlNumber(d.importo.toPlainString())
                               + QStringLiteral(" WHERE RID = ") + QString::number(documento),
                           kTag);
}

// A stored invoice deleted, any but the last of its year (the counter stays
// at the last one): its stock goes back, its entry and due dates go. One that
// another workstation deleted first is no failure.
bool deleteDocument(const Fixture& f, QRandomGenerator& random)
{
    const QString fatture = QStringLiteral(" FROM Movimenti WHERE FK_TIPODOCUMENTO = ") + QString::number(f.tdFattura);
    QList<int> candidati;
    {
        const cReader rs(QStringLiteral("SELECT RID") + fatture
                             + QStringLiteral(" AND PROGRESSIVO < (SELECT MAX(PROGRESSIVO)") + fatture
                             + QStringLiteral(") ORDER BY RID"),
                         kTag);
        for (; rs && !rs->eof(); rs->moveNext())
            candidati << int(rs->integer(QStringLiteral("RID")));
    }
    if (candidati.isEmpty())
        return true;
    TestataDocumento testata;
    InfoDocumento info;
    const int rid = candidati.at(random.bounded(int(candidati.size())));
    if (!leggiTestata(rid, 0, 0, 0, testata) || !getInfoDocumento(testata.tipo.rid, info))
        return true;
    return eliminaDocumento(testata, info)
        || value(QStringLiteral("SELECT COUNT(*) FROM Movimenti WHERE RID = ") + QString::number(rid)).toInt() == 0;
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
    return saveInTransaction([&] { return saveDocument(f, true, righe); }, nullptr)
        || fail(QStringLiteral("primo carico"));
}

bool readFixture(Fixture& f)
{
    f.sede = ridByCode(QStringLiteral("Magazzini"), QStringLiteral("SEDE"));
    f.cliente = value(QStringLiteral("SELECT RID FROM Anagrafiche WHERE NUMERO = 90001")).toInt();
    f.fornitore = value(QStringLiteral("SELECT RID FROM Anagrafiche WHERE NUMERO = 90002")).toInt();
    f.tdFattura = ridByCode(QStringLiteral("TipoDocumenti"), QStringLiteral("FV"));
    f.tdCarico = ridByCode(QStringLiteral("TipoDocumenti"), QStringLiteral("CF"));
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
    return f.sede > 0 && f.cliente > 0 && f.fornitore > 0 && f.cauFattura > 0 && f.numFatture > 0 && f.cauCarico > 0
        && f.numCarichi > 0 && f.pagamento > 0 && f.termine > 0 && f.categoria > 0 && f.prodotti.size() == 5;
}

void save(const Fixture& f, QRandomGenerator& random, Figures& figures)
{
    switch (random.bounded(9)) {
    case 0:
    case 1: saveInTransaction(saveCard, &figures); return;
    case 2: saveInTransaction([&] { return saveTermine(f.termine, 1 + random.bounded(4)); }, &figures); return;
    case 3: count(saveRange(f.categoria, random.bounded(50)), &figures); return;
    case 4: count(deleteDocument(f, random), &figures); return;
    default: break;
    }
    const bool carico = random.bounded(2) == 0;
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
    saveInTransaction([&] { return saveDocument(f, carico, righe); }, &figures);
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
    for (const char* type : {"FV", "CF"})
        c.lines << sequence(QStringLiteral("documents %1").arg(QLatin1String(type)),
                            QStringLiteral("FROM Movimenti WHERE FK_TIPODOCUMENTO = ")
                                + QString::number(
                                    ridByCode(QStringLiteral("TipoDocumenti"), QString::fromLatin1(type))),
                            problems, QStringLiteral("PROGRESSIVO"), QLatin1String(type) == QLatin1String("FV"));
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
    const int documents = number(QStringLiteral("SELECT COUNT(*) FROM Movimenti"));
    const int entries = number(QStringLiteral("SELECT COUNT(*) FROM PrimaNota"));
    fact(QStringLiteral("documents %1, journal entries %2").arg(documents).arg(entries), documents == entries);
    const int senzaPrimaNota = number(QStringLiteral("SELECT COUNT(*) FROM Movimenti m WHERE NOT EXISTS "
                                                     "(SELECT 1 FROM PrimaNota p WHERE p.RID = m.FK_PrimaNota)"));
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
    const int carico = ridByCode(QStringLiteral("TipoDocumenti"), QStringLiteral("CF"));
    QMap<QPair<int, qint64>, double> atteso;
    for (const QVariantList& r :
         rows(QStringLiteral("SELECT d.FK_PRODOTTO, d.TAGLIO, d.QUANTITA, m.FK_TIPODOCUMENTO FROM DettagliMovimento d "
                             "INNER JOIN Movimenti m ON d.FK_MOVIMENTO = m.RID")))
        atteso[{r.at(0).toInt(), Currency::fromDouble(r.at(1).toDouble()).raw()}] +=
            (r.at(3).toInt() == carico ? 1.0 : -1.0) * r.at(2).toDouble();
    QMap<QPair<int, qint64>, double> lotti;
    QMap<int, double> sommaLotti;
    int lottiDoppi = 0;
    for (const QVariantList& r : rows(QStringLiteral("SELECT FK_PRODOTTO, TAGLIO, QUANTITA FROM DettagliProdotto"))) {
        const QPair<int, qint64> key{r.at(0).toInt(), Currency::fromDouble(r.at(1).toDouble()).raw()};
        if (lotti.contains(key))
            ++lottiDoppi;
        lotti[key] += r.at(2).toDouble();
        sommaLotti[key.first] += r.at(2).toDouble();
    }
    fact(QStringLiteral("stock lots %1, lots stored twice %2").arg(lotti.size()).arg(lottiDoppi), lottiDoppi == 0);
    int lottiErrati = 0;
    QSet<QPair<int, qint64>> keys(atteso.keyBegin(), atteso.keyEnd());
    for (auto it = lotti.cbegin(); it != lotti.cend(); ++it)
        keys.insert(it.key());
    for (const auto& key : std::as_const(keys))
        if (std::abs(lotti.value(key) - atteso.value(key)) > 1e-6)
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
