#include "stock/ricalcologiacenze.h"

#include "common/italiantext.h"
#include "common/msgbox.h"
#include "data/cadosqlserver.h"
#include "data/scoped.h"
#include "data/sqlliteral.h"

#include <QDate>
#include <QHash>
#include <QList>
#include <QStringList>

#include <algorithm>
#include <optional>

namespace {

QString tag(const char* procedure) { return QStringLiteral("frmRicalcoloGiacenze.") + QLatin1String(procedure); }
QString num(qint64 value) { return QString::number(value); }
QString singleSql(Single value) { return plainTextSingleIt(value).replace(QLatin1Char(','), QLatin1Char('.')); }
QString amountSql(Currency value) { return getSqlNumber(value.toPlainString()); }
// A quantity is stored as the postings store it: a Single, seven digits.
QString quantitaSql(Currency value) { return singleSql(toSingle(value.toDouble())); }

// Products a recalculation rebuilds: no kits, stock kept.
const QString kFiltroProdotti = QStringLiteral("COALESCE(DISTINTABASE, 0) = 0 AND SETGIACENZA <> 0");

// Products locked and rebuilt together: each step stays short, so the
// screen moves on, and one read serves many products.
constexpr int kProdottiPerBlocco = 250;
// Rows of the forced way read at a time.
constexpr int kRighePerLettura = 2000;
// Document rows summed by one read of the standard way over every product.
constexpr qint64 kRighePerPassata = 50000;

// A document row as a save posts it: the causal moves stock and a side of
// kind warehouse names one. A kit row (by its code) moves nothing.
QString righeCheMuovono(const QString& m, const QString& c, const QString& dm, const QString& distintaBase)
{
    QString sql = c + QStringLiteral(".Operazione <> 0 AND ((") + c + QStringLiteral(".ORIGINE = 3 AND ") + m
        + QStringLiteral(".FK_ORIGINE > 0) OR (") + c + QStringLiteral(".DESTINAZIONE = 3 AND ") + m
        + QStringLiteral(".FK_DESTINAZIONE > 0))");
    if (!distintaBase.isEmpty())
        sql += QStringLiteral(" AND (") + dm + QStringLiteral(".CODPRODOTTO IS NULL OR ") + dm
            + QStringLiteral(".CODPRODOTTO NOT LIKE ") + sqlLikePattern(distintaBase.left(1), LikeMatch::StartsWith)
            + QLatin1Char(')');
    return sql;
}

// The warehouse of a side, -1 when the side is no warehouse.
int magazzino(qint64 tipo, qint64 rid) { return tipo == 3 && rid > 0 ? int(rid) : -1; }

// The keys of the products to rebuild, in order.
std::optional<QList<int>> prodottiDaRicalcolare(int ridProdotto)
{
    const cReader rs(QStringLiteral("SELECT RID FROM Prodotti WHERE ") + kFiltroProdotti
                         + (ridProdotto > 0 ? QStringLiteral(" AND RID = ") + num(ridProdotto) : QString())
                         + QStringLiteral(" ORDER BY RID"),
                     tag("ricalcoloStandard"));
    if (!rs)
        return std::nullopt;
    QList<int> chiavi;
    chiavi.reserve(rs->recordCount());
    for (; !rs->eof(); rs->moveNext())
        chiavi.append(int(rs->value(0).toLongLong()));
    return chiavi;
}

// Locks the products of a key range that a recalculation rebuilds, in key
// order, until the transaction ends; their GIACENZA by key. Nothing when
// the lock could not be had.
std::optional<QHash<int, Currency>> bloccaBlocco(int primo, int ultimo)
{
    const cReader rs(QStringLiteral("SELECT RID, GIACENZA FROM Prodotti \u2022S\u2022WITH (UPDLOCK, HOLDLOCK) "
                                    "\u2022/S\u2022WHERE RID >= ")
                         + num(primo) + QStringLiteral(" AND RID <= ") + num(ultimo) + QStringLiteral(" AND ")
                         + kFiltroProdotti + QStringLiteral(" ORDER BY RID \u2022M\u2022FOR UPDATE\u2022/M\u2022"),
                     tag("bloccaProdotti"));
    if (!rs)
        return std::nullopt;
    QHash<int, Currency> giacenze;
    giacenze.reserve(rs->recordCount());
    for (; !rs->eof(); rs->moveNext())
        giacenze.insert(int(rs->value(0).toLongLong()), Currency::fromDouble(rs->value(1).toDouble()));
    return giacenze;
}

// --- the standard way ----------------------------------------------------------

// A stock row as it should stand: the sum moved into and out of it, and
// the first document row that named it (new rows come in that order).
//
// Quantities are summed as fixed-point numbers of four decimals, the
// precision the servers store them with: a sum of decimals in double
// carries tails (0.1 + 0.2 - 0.3 is not 0) that a posting, which stores
// each step as a Single of seven digits, never writes.
struct Obiettivo
{
    int magazzino;
    Currency taglio;
    Currency quantita; // a quantity, to four decimals
    qint64 prima = 0;
};

struct RigaStock
{
    int rid;
    int magazzino;
    Currency taglio;
    Currency quantita;
};

struct Prodotto
{
    QList<Obiettivo> obiettivi;
    QList<RigaStock> righe;
    Currency giacenza; // a quantity, to four decimals
};

// The row of a product's stock that a warehouse and lot go to: with the
// moving average one row a warehouse, whatever its cost.
Obiettivo& obiettivo(Prodotto& p, int magazzino, Currency taglio, bool prezzoMedio)
{
    for (Obiettivo& o : p.obiettivi)
        if (o.magazzino == magazzino && (prezzoMedio || o.taglio == taglio))
            return o;
    p.obiettivi.append({magazzino, prezzoMedio ? Currency() : taglio, Currency(), 0});
    return p.obiettivi.last();
}

// The document rows that meet `condizione`, summed into `prodotti` by
// product, warehouse and lot: destination adds, origin takes away, and the
// product's total moves only when one side alone is a warehouse. The rows
// come one by one and are summed here: grouping them in the database
// costs it a sort of every row, more than the reading.
bool sommaRighe(const QString& condizione, const OpzioniRicalcolo& opzioni, QHash<int, Prodotto>& prodotti)
{
    const bool medio = opzioni.giacenza.prezzoMedio;
    // The rows first, straight through their table or index: the server's
    // planner, left alone, may start from the causals and read every
    // document for each slice.
    const cReader rs(QStringLiteral("SELECT \u2022M\u2022STRAIGHT_JOIN \u2022/M\u2022dm.FK_PRODOTTO, c.ORIGINE, "
                                    "c.DESTINAZIONE, m.FK_ORIGINE, m.FK_DESTINAZIONE, dm.TAGLIO, dm.QUANTITA, dm.RID "
                                    "FROM ((DettagliMovimento dm INNER JOIN Movimenti m ON dm.FK_MOVIMENTO = m.RID) "
                                    "INNER JOIN TipoDocumenti td ON m.FK_TIPODOCUMENTO = td.RID) INNER JOIN Causali c "
                                    "ON td.FK_CAUSALE = c.RID WHERE ")
                         + condizione + QStringLiteral(" AND ")
                         + righeCheMuovono(QStringLiteral("m"), QStringLiteral("c"), QStringLiteral("dm"),
                                           opzioni.distintaBase),
                     tag("ricalcolaProdotto"));
    if (!rs)
        return false;
    for (; !rs->eof(); rs->moveNext()) {
        const auto it = prodotti.find(int(rs->value(0).toLongLong()));
        if (it == prodotti.end())
            continue; // a kit or a product without stock
        const int origine = magazzino(rs->value(1).toLongLong(), rs->value(3).toLongLong());
        const int destinazione = magazzino(rs->value(2).toLongLong(), rs->value(4).toLongLong());
        const Currency taglio = medio ? Currency() : getValoreCurrency(rs->value(5));
        const Currency quantita = Currency::fromDouble(rs->value(6).toDouble());
        const qint64 riga = rs->value(7).toLongLong();
        for (const auto& [mag, segno] : {std::pair{destinazione, 1}, std::pair{origine, -1}}) {
            if (mag <= 0)
                continue;
            Obiettivo& o = obiettivo(*it, mag, taglio, medio);
            o.quantita += segno > 0 ? quantita : -quantita;
            o.prima = o.prima == 0 ? riga : std::min(o.prima, riga);
        }
        if ((origine > 0) != (destinazione > 0))
            it->giacenza += origine > 0 ? -quantita : quantita;
    }
    return true;
}

bool leggiRigheStock(int primo, int ultimo, QHash<int, Prodotto>& prodotti)
{
    const cReader rs(QStringLiteral("SELECT RID, FK_PRODOTTO, FK_MAGAZZINO, TAGLIO, QUANTITA FROM DettagliProdotto "
                                    "WHERE FK_PRODOTTO >= ")
                         + num(primo) + QStringLiteral(" AND FK_PRODOTTO <= ") + num(ultimo)
                         + QStringLiteral(" ORDER BY RID"),
                     tag("ricalcolaProdotto"));
    if (!rs)
        return false;
    for (; !rs->eof(); rs->moveNext()) {
        const auto it = prodotti.find(int(rs->value(1).toLongLong()));
        if (it != prodotti.end())
            it->righe.append({int(rs->value(0).toLongLong()), int(rs->value(2).toLongLong()),
                              getValoreCurrency(rs->value(3)), Currency::fromDouble(rs->value(4).toDouble())});
    }
    return true;
}

bool esegui(const QString& sql, const char* procedure) { return gAdoSqlServer().executeSQL(sql, tag(procedure)); }

// What a block of products needs written, gathered so that a few
// statements write it: stock rows that go, changed quantities and costs by
// key, new rows, changed totals.
class Scritture
{
public:
    void elimina(int rid) { m_eliminate << num(rid); }
    void quantita(int rid, Currency q) { m_quantita << std::pair(num(rid), quantitaSql(q)); }
    void costo(int rid, Currency c) { m_costi << std::pair(num(rid), amountSql(c)); }
    void nuova(int prodotto, Currency q, Currency taglio, int magazzino)
    {
        m_nuove << QLatin1Char('(') + num(prodotto) + QStringLiteral(", ") + quantitaSql(q) + QStringLiteral(", ")
                + amountSql(taglio) + QStringLiteral(", ") + num(magazzino) + QLatin1Char(')');
    }
    void giacenza(int prodotto, Currency q) { m_giacenze << std::pair(num(prodotto), quantitaSql(q)); }

    // A second row of a warehouse goes before its cost is written on the
    // first, as the two may not share a cost.
    bool scrivi()
    {
        const bool fatto = perParti(m_eliminate,
                                    [](const QStringList& chiavi) {
                                        return esegui(QStringLiteral("DELETE FROM DettagliProdotto WHERE RID IN (")
                                                          + chiavi.join(QStringLiteral(", ")) + QLatin1Char(')'),
                                                      "setDettagliProdotto");
                                    })
            && perChiave(QStringLiteral("DettagliProdotto"), QStringLiteral("QUANTITA"), m_quantita)
            && perChiave(QStringLiteral("DettagliProdotto"), QStringLiteral("TAGLIO"), m_costi)
            && perParti(m_nuove,
                        [](const QStringList& righe) {
                            return esegui(QStringLiteral("INSERT INTO DettagliProdotto (FK_PRODOTTO, QUANTITA, TAGLIO, "
                                                         "FK_MAGAZZINO) VALUES ")
                                              + righe.join(QStringLiteral(", ")),
                                          "setDettagliProdotto");
                        })
            && perChiave(QStringLiteral("Prodotti"), QStringLiteral("GIACENZA"), m_giacenze);
        *this = Scritture();
        return fatto;
    }

private:
    static constexpr qsizetype kPerStatement = 500;

    template <typename F> static bool perParti(const QStringList& tutte, F scrivi)
    {
        for (qsizetype i = 0; i < tutte.size(); i += kPerStatement)
            if (!scrivi(tutte.mid(i, kPerStatement)))
                return false;
        return true;
    }

    // "UPDATE t SET c = CASE RID WHEN k THEN v ... END WHERE RID IN (k, ...)".
    static bool perChiave(const QString& tabella, const QString& colonna,
                          const QList<std::pair<QString, QString>>& valori)
    {
        for (qsizetype i = 0; i < valori.size(); i += kPerStatement) {
            QString casi;
            QStringList chiavi;
            for (const auto& [chiave, valore] : valori.mid(i, kPerStatement)) {
                casi += QStringLiteral(" WHEN ") + chiave + QStringLiteral(" THEN ") + valore;
                chiavi << chiave;
            }
            if (!esegui(QStringLiteral("UPDATE ") + tabella + QStringLiteral(" SET ") + colonna
                            + QStringLiteral(" = CASE RID") + casi + QStringLiteral(" END WHERE RID IN (")
                            + chiavi.join(QStringLiteral(", ")) + QLatin1Char(')'),
                        "setDettagliProdotto"))
                return false;
        }
        return true;
    }

    QStringList m_eliminate;
    QList<std::pair<QString, QString>> m_quantita, m_costi;
    QStringList m_nuove;
    QList<std::pair<QString, QString>> m_giacenze;
};

// What differs between a product's stock and what its rows say, into
// `scritture`.
void confrontaProdotto(int ridProdotto, const Prodotto& p, Currency giacenzaMemorizzata, bool medio,
                       Scritture& scritture)
{
    QList<bool> presi(p.obiettivi.size(), false);
    QList<int> magazziniVisti;
    for (const RigaStock& r : p.righe) {
        qsizetype i = 0;
        while (i < p.obiettivi.size()
               && (presi.at(i) || p.obiettivi.at(i).magazzino != r.magazzino
                   || (!medio && p.obiettivi.at(i).taglio != r.taglio)))
            ++i;
        const bool preso = i < p.obiettivi.size();
        // With the moving average one row a warehouse: a second one goes.
        if (medio && magazziniVisti.contains(r.magazzino)) {
            scritture.elimina(r.rid);
            continue;
        }
        magazziniVisti << r.magazzino;
        if (preso)
            presi[i] = true;
        // A lot no row moves any more stays, at 0, as a posting leaves it.
        // A stored figure right to the fourth decimal stays as it is: the
        // postings' Single arithmetic leaves it a unit off in the seventh
        // digit now and then (0.0999999), and rewriting it would change a
        // database that is right.
        const Currency atteso = preso ? p.obiettivi.at(i).quantita : Currency();
        if (atteso != r.quantita)
            scritture.quantita(r.rid, atteso);
        if (medio && preso && p.obiettivi.at(i).taglio != r.taglio)
            scritture.costo(r.rid, p.obiettivi.at(i).taglio);
    }
    // New rows in the order the documents first named them: the oldest lot
    // is the one a sale takes first.
    QList<qsizetype> nuovi;
    for (qsizetype i = 0; i < p.obiettivi.size(); ++i)
        if (!presi.at(i))
            nuovi.append(i);
    std::sort(nuovi.begin(), nuovi.end(),
              [&p](qsizetype a, qsizetype b) { return p.obiettivi.at(a).prima < p.obiettivi.at(b).prima; });
    for (const qsizetype i : std::as_const(nuovi)) {
        const Obiettivo& o = p.obiettivi.at(i);
        scritture.nuova(ridProdotto, o.quantita, o.taglio, o.magazzino);
    }
    if (p.giacenza != giacenzaMemorizzata)
        scritture.giacenza(ridProdotto, p.giacenza);
}

// With the moving average each warehouse's row stands at the average cost of
// its loads, as a posting leaves it.
void costiMedi(int ridProdotto, Prodotto& p, const OpzioniRicalcolo& opzioni)
{
    const Currency nessuno = Currency::fromUnits(-1);
    for (Obiettivo& o : p.obiettivi) {
        int nessunaRiga = -1;
        const Currency costo = getPrezzoMedioProdotto(ridProdotto, o.magazzino, -1, nessuno, nessunaRiga,
                                                      opzioni.giacenza.mesiPrezzoMedio);
        o.taglio = costo == nessuno ? Currency() : costo;
    }
}

// --- the forced way --------------------------------------------------------------

// Stock rows deleted and GIACENZA 0 for the products rebuilt (all those up
// to `ultimo`, or the one product).
bool resetDettagliProdotti(int ridProdotto, int ultimo)
{
    QString dove = kFiltroProdotti + QStringLiteral(" AND RID <= ") + num(ultimo);
    if (ridProdotto > 0)
        dove = QStringLiteral("RID = ") + num(ridProdotto);
    return esegui(QStringLiteral("DELETE FROM DettagliProdotto WHERE FK_PRODOTTO IN (SELECT RID FROM Prodotti WHERE ")
                      + dove + QLatin1Char(')'),
                  "resetDettagliProdotto")
        && esegui(QStringLiteral("UPDATE Prodotti SET GIACENZA = 0 WHERE ") + dove, "resetDettagliProdotto");
}

// The document and product of a row, one a line, for a refusal's message
// (which puts " - " before the first line itself).
QString informazioni(const Recordset& rs)
{
    return QStringLiteral("Documento : [") + rs.text(QStringLiteral("DESC_TIPODOCUMENTO"))
        + QStringLiteral("]\r - Nr: [") + rs.text(QStringLiteral("PROGRESSIVO")) + QStringLiteral("]\r - Data : [")
        + formatDate(rs.value(QStringLiteral("DATA"))) + QStringLiteral("]\r - Prodotto: [")
        + rs.text(QStringLiteral("COD_PRODOTTO")) + QStringLiteral(" - ") + rs.text(QStringLiteral("DESC_PRODOTTO"))
        + QLatin1Char(']');
}

} // namespace

bool ricalcoloStandard(int ridProdotto, const OpzioniRicalcolo& opzioni, const AvanzamentoRicalcolo& avanzamento)
{
    const std::optional<QList<int>> chiavi = prodottiDaRicalcolare(ridProdotto);
    if (!chiavi)
        return false;
    const int totale = int(chiavi->size());
    if (avanzamento)
        avanzamento(0, totale);
    const auto blocco = [&chiavi](qsizetype inizio) {
        return std::pair{chiavi->at(inizio), chiavi->at(std::min(chiavi->size(), inizio + kProdottiPerBlocco) - 1)};
    };
    // Every product locked, in key order, before any of its rows is read.
    QHash<int, Currency> giacenze;
    giacenze.reserve(totale);
    for (qsizetype inizio = 0; inizio < totale; inizio += kProdottiPerBlocco) {
        const auto [primo, ultimo] = blocco(inizio);
        const std::optional<QHash<int, Currency>> bloccati = bloccaBlocco(primo, ultimo);
        if (!bloccati)
            return false;
        giacenze.insert(*bloccati);
    }
    QHash<int, Prodotto> prodotti;
    prodotti.reserve(giacenze.size());
    for (auto it = giacenze.cbegin(); it != giacenze.cend(); ++it)
        prodotti.insert(it.key(), Prodotto());

    // One product's rows by its index; everyone's in the order they are
    // stored, a slice at a time, which reads the tables straight through.
    if (ridProdotto > 0) {
        if (!sommaRighe(QStringLiteral("dm.FK_PRODOTTO = ") + num(ridProdotto), opzioni, prodotti))
            return false;
    } else if (totale > 0) {
        qint64 primaRiga = 0, ultimaRiga = 0;
        {
            const cReader rs(QStringLiteral("SELECT MIN(RID), MAX(RID) FROM DettagliMovimento"),
                             tag("ricalcolaProdotto"));
            if (!rs)
                return false;
            if (!rs->eof())
                std::tie(primaRiga, ultimaRiga) = std::pair(rs->value(0).toLongLong(), rs->value(1).toLongLong());
        }
        for (qint64 dopo = primaRiga - 1; dopo < ultimaRiga; dopo += kRighePerPassata) {
            if (!sommaRighe(QStringLiteral("dm.RID > ") + num(dopo) + QStringLiteral(" AND dm.RID <= ")
                                + num(dopo + kRighePerPassata),
                            opzioni, prodotti))
                return false;
            if (avanzamento)
                avanzamento(0, totale);
        }
    }

    int fatti = 0;
    for (qsizetype inizio = 0; inizio < totale; inizio += kProdottiPerBlocco) {
        const auto [primo, ultimo] = blocco(inizio);
        if (!leggiRigheStock(primo, ultimo, prodotti))
            return false;
        Scritture scritture;
        for (qsizetype i = inizio; i < std::min(chiavi->size(), inizio + kProdottiPerBlocco); ++i) {
            const int rid = chiavi->at(i);
            const auto it = prodotti.find(rid);
            if (it != prodotti.end()) { // still a product to rebuild once locked
                if (opzioni.giacenza.prezzoMedio)
                    costiMedi(rid, *it, opzioni);
                confrontaProdotto(rid, *it, giacenze.value(rid), opzioni.giacenza.prezzoMedio, scritture);
                prodotti.erase(it);
            }
            if (avanzamento)
                avanzamento(++fatti, totale);
        }
        if (!scritture.scrivi())
            return false;
    }
    return true;
}

bool resetCausaliToMovimenti()
{
    for (const auto& [lato, magazzino] :
         {std::pair{"ORIGINE", "FK_MagazzinoOrig"}, {"DESTINAZIONE", "FK_MagazzinoDest"}})
        if (!esegui(QStringLiteral("UPDATE Movimenti SET FK_") + QLatin1String(lato) + QStringLiteral(" = (SELECT c.")
                        + QLatin1String(magazzino)
                        + QStringLiteral(" FROM TipoDocumenti td INNER JOIN Causali c ON td.FK_CAUSALE = c.RID WHERE "
                                         "td.RID = Movimenti.FK_TIPODOCUMENTO) WHERE FK_TIPODOCUMENTO IN (SELECT "
                                         "td.RID FROM TipoDocumenti td INNER JOIN Causali c ON td.FK_CAUSALE = c.RID "
                                         "WHERE c.")
                        + QLatin1String(lato) + QStringLiteral(" = 3)"),
                    "resetCausaliToMovimenti"))
            return false;
    return true;
}

bool ricalcoloForzato(int ridProdotto, const OpzioniRicalcolo& opzioni, const AvanzamentoRicalcolo& avanzamento)
{
    // The documents first, the stock after: the order in which a save takes
    // its locks.
    if (ridProdotto < 1 && opzioni.modificaOrigDest && !resetCausaliToMovimenti())
        return false;
    const std::optional<QList<int>> chiavi = prodottiDaRicalcolare(ridProdotto);
    if (!chiavi)
        return false;
    if (chiavi->isEmpty())
        return true;
    // The rows come in document order, the products in any order: every
    // product is locked before the first posting.
    for (qsizetype inizio = 0; inizio < chiavi->size(); inizio += kProdottiPerBlocco)
        if (!bloccaBlocco(chiavi->at(inizio), chiavi->at(std::min(chiavi->size(), inizio + kProdottiPerBlocco) - 1)))
            return false;
    const int ultimo = chiavi->last();
    if (!resetDettagliProdotti(ridProdotto, ultimo))
        return false;

    const QString da =
        QStringLiteral(
            " FROM (((DettagliMovimento DM INNER JOIN Movimenti M ON DM.FK_MOVIMENTO = M.RID) INNER JOIN TipoDocumenti "
            "TD "
            "ON M.FK_TIPODOCUMENTO = TD.RID) INNER JOIN Causali C ON TD.FK_CAUSALE = C.RID) INNER JOIN Prodotti P ON "
            "DM.FK_PRODOTTO = P.RID WHERE COALESCE(P.DISTINTABASE, 0) = 0 AND P.SETGIACENZA <> 0 AND ")
        + righeCheMuovono(QStringLiteral("M"), QStringLiteral("C"), QStringLiteral("DM"), opzioni.distintaBase)
        + (ridProdotto > 0 ? QStringLiteral(" AND DM.FK_PRODOTTO = ") + num(ridProdotto)
                           : QStringLiteral(" AND DM.FK_PRODOTTO <= ") + num(ultimo));
    int totale = 0;
    {
        const cReader rs(QStringLiteral("SELECT \u2022M\u2022STRAIGHT_JOIN \u2022/M\u2022COUNT(DM.RID) AS TOTROWS")
                             + da,
                         tag("ricalcoloForzato"));
        if (!rs)
            return false;
        totale = int(rs.firstValue().toLongLong());
    }
    if (avanzamento)
        avanzamento(0, totale);
    int fatti = 0;
    qint64 dopo = 0;
    while (fatti < totale) {
        const cReader rs(QStringLiteral("SELECT TOP ") + num(kRighePerLettura)
                             + QStringLiteral(" \u2022M\u2022STRAIGHT_JOIN \u2022/M\u2022M.PROGRESSIVO, TD.DESCRIZIONE "
                                              "AS DESC_TIPODOCUMENTO, M.DATA, "
                                              "M.FK_ORIGINE, M.FK_DESTINAZIONE, C.ORIGINE, C.DESTINAZIONE, DM.RID AS "
                                              "RID_DETTAGLIO, DM.FK_PRODOTTO, P.CODICE AS COD_PRODOTTO, P.DESCRIZIONE "
                                              "AS DESC_PRODOTTO, DM.CODPRODOTTO, DM.QUANTITA, DM.PREZZONETTO, "
                                              "DM.TAGLIO")
                             + da + QStringLiteral(" AND DM.RID > ") + num(dopo) + QStringLiteral(" ORDER BY DM.RID"),
                         tag("ricalcoloForzato"));
        if (!rs)
            return false;
        if (rs->eof())
            break; // rows deleted since they were counted
        for (; !rs->eof(); rs->moveNext()) {
            int riga = int(rs->integer(QStringLiteral("RID_DETTAGLIO")));
            dopo = riga;
            const QString codice = rs->text(QStringLiteral("CODPRODOTTO"));
            if (opzioni.distintaBase.isEmpty() || !codice.startsWith(opzioni.distintaBase.left(1))) {
                Currency taglio = opzioni.giacenza.prezzoMedio ? rs->amount(QStringLiteral("PREZZONETTO"))
                                                               : rs->amount(QStringLiteral("TAGLIO"));
                Currency taglioPrecedente = Currency::fromUnits(-1);
                const QString esito =
                    aggiornaGiacenze(toSingle(rs->number(QStringLiteral("QUANTITA"))), 0, taglio,
                                     int(rs->integer(QStringLiteral("FK_PRODOTTO"))), giacenze::Inserimento,
                                     magazzino(rs->integer(QStringLiteral("ORIGINE")),
                                               rs->integer(QStringLiteral("FK_ORIGINE"))),
                                     magazzino(rs->integer(QStringLiteral("DESTINAZIONE")),
                                               rs->integer(QStringLiteral("FK_DESTINAZIONE"))),
                                     informazioni(*rs), taglioPrecedente, riga, opzioni.giacenza);
                if (esito != QLatin1String("OK")) {
                    if (!esito.startsWith(QLatin1Char('#')))
                        gAdoSqlServer().showAfterTransaction(esito, vb::Critical);
                    return false;
                }
            }
            if (avanzamento)
                avanzamento(++fatti, totale);
        }
    }
    return true;
}

bool eseguiRicalcolo(int ridProdotto, const OpzioniRicalcolo& opzioni, const AvanzamentoRicalcolo& avanzamento)
{
    bool fatto = false;
    {
        cTransaction transazione(tag("eseguiRicalcolo"));
        fatto = transazione
            && (opzioni.forzato ? ricalcoloForzato(ridProdotto, opzioni, avanzamento)
                                : ricalcoloStandard(ridProdotto, opzioni, avanzamento))
            && transazione.commit();
    } // rolled back here unless committed
    if (!fatto) {
        msgBox(QStringLiteral("Impossibile eseguire il ricalcolo delle giacenze!"), vb::Critical);
        return false;
    }
    msgBox(QStringLiteral("Ricalcolo della giacenze terminato."), vb::Information);
    return true;
}

QString tempoRimanente(qint64 trascorsiMs, int fatti, int totale)
{
    if (fatti <= 0 || trascorsiMs < 0)
        return QString();
    const qint64 secondi = qRound64(double(trascorsiMs) / fatti * std::max(0, totale - fatti) / 1000.0);
    const qint64 giorni = secondi / 86400;
    const QString ore = QStringLiteral("%1:%2:%3")
                            .arg(secondi % 86400 / 3600, 2, 10, QLatin1Char('0'))
                            .arg(secondi % 3600 / 60, 2, 10, QLatin1Char('0'))
                            .arg(secondi % 60, 2, 10, QLatin1Char('0'));
    return giorni > 0 ? QString::number(giorni) + QStringLiteral(" day(s), ") + ore : ore;
}
