#include "stock/giacenze.h"

#include "common/italiantext.h"
#include "common/msgbox.h"
#include "common/valuecheck.h"
#include "data/cadosqlserver.h"
#include "data/recordset.h"
#include "data/scoped.h"
#include "data/sqlliteral.h"

#include <QDate>

#include <algorithm>
#include <optional>

namespace {

QString tag(const char* procedure) { return QStringLiteral("bOrvantisCommon.") + QLatin1String(procedure); }

// A Single as SQL reads it: its seven significant digits, a dot for decimals.
QString singleSql(Single value) { return plainTextSingleIt(value).replace(QLatin1Char(','), QLatin1Char('.')); }

QString amountSql(Currency value) { return getSqlNumber(value.toPlainString()); }

QString rowWhere(int fkProdotto, int fkMagazzino)
{
    return QStringLiteral(" WHERE FK_PRODOTTO = ") + QString::number(fkProdotto)
        + QStringLiteral(" AND FK_MAGAZZINO = ") + QString::number(fkMagazzino);
}

QString lotWhere(int fkProdotto, int fkMagazzino, Currency taglio)
{
    return rowWhere(fkProdotto, fkMagazzino) + QStringLiteral(" AND TAGLIO = ") + amountSql(taglio);
}

// The first value of a statement, nothing for no row or a failed read.
std::optional<QVariant> firstValue(const QString& sql, const QString& procedureTag)
{
    const QVariant v = gAdoSqlServer().getValueBySQL(sql, procedureTag);
    return v.isValid() ? std::optional<QVariant>(v) : std::nullopt;
}

// The quantity of a stock row; the row is made with 0 when missing. Nothing
// when the insert failed.
std::optional<Single> readOrCreate(int fkProdotto, int fkMagazzino, const QString& where, Currency taglio,
                                   const char* procedure)
{
    if (const auto q = firstValue(QStringLiteral("SELECT QUANTITA FROM DettagliProdotto") + where, tag(procedure)))
        return toSingle(getValoreNumerico(*q));
    const bool made = gAdoSqlServer().executeSQL(
        QStringLiteral("INSERT INTO DettagliProdotto (FK_PRODOTTO, FK_MAGAZZINO, TAGLIO, QUANTITA) VALUES (")
            + QString::number(fkProdotto) + QStringLiteral(", ") + QString::number(fkMagazzino) + QStringLiteral(", ")
            + amountSql(taglio) + QStringLiteral(", 0)"),
        tag(procedure));
    return made ? std::optional<Single>(0) : std::nullopt;
}

// A quantity that is no number is refused before anything is read or
// written: stored, it would make the stock of the product no number at all.
QString controllaQuantita(Single quantita, Single vecchiaQuantita, const QString& informazioni)
{
    for (const QString& errore : {erroreQuantita(quantita, QStringLiteral("Quantità")),
                                  erroreQuantita(vecchiaQuantita, QStringLiteral("Quantità precedente"))})
        if (!errore.isEmpty())
            return errore + QStringLiteral("\r\rInformazioni:\r - ") + informazioni;
    return QString();
}

std::optional<double> amountMoved(Single quantita, Single vecchiaQuantita, int azione)
{
    switch (azione) {
    case giacenze::Inserimento: return double(quantita);
    case giacenze::Modifica: return double(quantita) - double(vecchiaQuantita);
    case giacenze::Cancellazione: return -double(vecchiaQuantita);
    default: return std::nullopt;
    }
}

QString azioneNonImpostata(const QString& informazioni)
{
    return QStringLiteral("Azione (Inserimento/Modifica/Cancellazione) non impostata!\r\rInformazioni:\r - ")
        + informazioni;
}

// A stock figure that a posting would push beyond what a quantity holds:
// told after the transaction, and the posting fails as a failed statement.
std::optional<Single> storableQuantity(double value)
{
    const std::optional<Single> q = toSingleChecked(value);
    if (!q)
        gAdoSqlServer().showAfterTransaction(
            QStringLiteral("Quantità fuori dai limiti consentiti: la giacenza risultante non può essere registrata."),
            vb::Exclamation);
    return q;
}

bool setQuantity(const QString& where, double value, const char* procedure, const QString& alsoSet = QString())
{
    const std::optional<Single> q = storableQuantity(value);
    return q
        && gAdoSqlServer().executeSQL(QStringLiteral("UPDATE DettagliProdotto SET QUANTITA = ") + singleSql(*q)
                                          + alsoSet + where,
                                      tag(procedure));
}

// GIACENZA by the sign rules: out of an origin, into a destination; a
// transfer or a row with no warehouse leaves it alone.
bool updateGiacenza(int fkProdotto, Single giacenza, double amount, int fkMagazzinoOrig, int fkMagazzinoDest,
                    const char* procedure)
{
    const bool origin = fkMagazzinoOrig > 0, destination = fkMagazzinoDest > 0;
    if (origin == destination)
        return true;
    const std::optional<Single> value =
        storableQuantity(origin ? double(giacenza) - amount : double(giacenza) + amount);
    return value
        && gAdoSqlServer().executeSQL(QStringLiteral("UPDATE Prodotti SET GIACENZA = ") + singleSql(*value)
                                          + QStringLiteral(" WHERE RID = ") + QString::number(fkProdotto),
                                      tag(procedure));
}

// GIACENZA of the product, read under the lock of the product's row: every
// posting takes it before it reads or writes any of the product's stock, so
// a second workstation posting the same product waits here and then reads
// what this one wrote. The lock lasts until the caller's transaction ends.
QString lockingRead(const QString& column, int fkProdotto)
{
    return QStringLiteral("SELECT ") + column
        + QStringLiteral(" FROM Prodotti \u2022S\u2022WITH (UPDLOCK, HOLDLOCK) \u2022/S\u2022WHERE RID = ")
        + QString::number(fkProdotto) + QStringLiteral(" \u2022M\u2022FOR UPDATE\u2022/M\u2022");
}

Single lockAndReadGiacenza(int fkProdotto, const char* procedure)
{
    const auto g = firstValue(lockingRead(QStringLiteral("GIACENZA"), fkProdotto), tag(procedure));
    return g ? toSingle(getValoreNumerico(*g)) : Single(0);
}

} // namespace

Currency getTaglioProdotto(int fkProdotto, int fkMagazzino)
{
    const QString head =
        QStringLiteral("SELECT TOP 1 TAGLIO FROM DettagliProdotto") + rowWhere(fkProdotto, fkMagazzino);
    for (const QString& condition : {QStringLiteral(" AND QUANTITA > 0"), QString()}) {
        const auto taglio = firstValue(head + condition + QStringLiteral(" ORDER BY RID"), tag("getTaglioProdotto"));
        if (taglio)
            return getValoreCurrency(*taglio);
    }
    return Currency::fromUnits(-1);
}

bool getAggiornamentoGiacenzeByProdotto(int fkProdotto)
{
    const auto set =
        firstValue(QStringLiteral("SELECT SETGIACENZA FROM Prodotti WHERE RID = ") + QString::number(fkProdotto),
                   tag("getAggiornamentoGiacenzeByProdotto"));
    return set && getChekByBool(*set) != 0;
}

double getGiacenzaProdottoTotale(int fkProdotto)
{
    const auto g =
        firstValue(QStringLiteral("SELECT GIACENZA FROM Prodotti WHERE RID = ") + QString::number(fkProdotto),
                   tag("getGiacenzaProdotto"));
    return g ? double(toSingle(getValoreNumerico(*g))) : 0.0;
}

bool bloccaProdotti(QList<int> prodotti)
{
    std::sort(prodotti.begin(), prodotti.end());
    prodotti.erase(std::unique(prodotti.begin(), prodotti.end()), prodotti.end());
    for (const int prodotto : std::as_const(prodotti)) {
        if (prodotto < 1)
            continue;
        if (!cReader(lockingRead(QStringLiteral("RID"), prodotto), tag("bloccaProdotti")))
            return false;
    }
    return true;
}

QString aggiornaGiacenze(Single quantita, Single vecchiaQuantita, Currency& taglio, int fkProdotto, int azione,
                         int fkMagazzinoOrig, int fkMagazzinoDest, const QString& informazioni,
                         Currency& taglioPrecedente, int& ridRiga, const OpzioniGiacenza& opzioni)
{
    if (opzioni.prezzoMedio)
        return aggiornaGiacenzeSimple(quantita, vecchiaQuantita, taglio, fkProdotto, azione, fkMagazzinoOrig,
                                      fkMagazzinoDest, informazioni, ridRiga, opzioni);
    if (const QString errore = controllaQuantita(quantita, vecchiaQuantita, informazioni); !errore.isEmpty())
        return errore;
    const char* procedure = "aggiornaGiacenze";
    const Currency none;
    const bool transfer = fkMagazzinoOrig > 0 && fkMagazzinoDest > 0;
    // The lock comes before the choice of the oldest lot, so that the choice
    // sees the other workstations' postings of the product.
    const Single giacenza = lockAndReadGiacenza(fkProdotto, procedure);
    if (taglio < none && fkMagazzinoOrig > 0)
        taglio = getTaglioProdotto(fkProdotto, fkMagazzinoOrig);
    if (taglio < none)
        return QStringLiteral(
                   "Impossibile determinare il taglio.\rManca il riferimento al prezzo di costo del prodotto.\r\r"
                   "Informazioni: \r - ")
            + informazioni;

    std::optional<Single> origine, precedente, destinazione;
    if (fkMagazzinoOrig > 0
        && !(origine = readOrCreate(fkProdotto, fkMagazzinoOrig, lotWhere(fkProdotto, fkMagazzinoOrig, taglio), taglio,
                                    procedure)))
        return QStringLiteral("#err");
    const bool lotChanged = taglioPrecedente > none && taglioPrecedente != taglio;
    if (fkMagazzinoDest > 0) {
        if (lotChanged
            && !(precedente =
                     readOrCreate(fkProdotto, fkMagazzinoDest, lotWhere(fkProdotto, fkMagazzinoDest, taglioPrecedente),
                                  taglioPrecedente, procedure)))
            return QStringLiteral("#err");
        if (!(destinazione = readOrCreate(fkProdotto, fkMagazzinoDest, lotWhere(fkProdotto, fkMagazzinoDest, taglio),
                                          taglio, procedure)))
            return QStringLiteral("#err");
    }
    std::optional<double> amount = amountMoved(quantita, vecchiaQuantita, azione);
    if (!amount)
        return azioneNonImpostata(informazioni);

    if (origine && !setQuantity(lotWhere(fkProdotto, fkMagazzinoOrig, taglio), double(*origine) - *amount, procedure))
        return QStringLiteral("#err");
    if (destinazione) {
        if (precedente) {
            // A changed lot: the old quantity leaves the old lot, the whole new one enters the new.
            if (!setQuantity(lotWhere(fkProdotto, fkMagazzinoDest, taglioPrecedente),
                             double(*precedente) - double(vecchiaQuantita), procedure))
                return QStringLiteral("#err");
            amount = double(quantita);
        }
        if (!setQuantity(lotWhere(fkProdotto, fkMagazzinoDest, taglio), double(*destinazione) + *amount, procedure))
            return QStringLiteral("#err");
    }
    if (!updateGiacenza(fkProdotto, giacenza, *amount, fkMagazzinoOrig, fkMagazzinoDest, procedure))
        return QStringLiteral("#err");
    return QStringLiteral("OK");
}

QString aggiornaGiacenzeSimple(Single quantita, Single vecchiaQuantita, Currency& taglio, int fkProdotto, int azione,
                               int fkMagazzinoOrig, int fkMagazzinoDest, const QString& informazioni, int& ridRiga,
                               const OpzioniGiacenza& opzioni)
{
    if (const QString errore = controllaQuantita(quantita, vecchiaQuantita, informazioni); !errore.isEmpty())
        return errore;
    const char* procedure = "aggiornaGiacenzeSimple";
    const bool transfer = fkMagazzinoOrig > 0 && fkMagazzinoDest > 0;
    const Single giacenza = lockAndReadGiacenza(fkProdotto, procedure);
    std::optional<Single> origine, destinazione;
    if (fkMagazzinoOrig > 0
        && !(origine = readOrCreate(fkProdotto, fkMagazzinoOrig, rowWhere(fkProdotto, fkMagazzinoOrig), Currency(),
                                    procedure)))
        return QStringLiteral("#err");
    if (fkMagazzinoDest > 0
        && !(destinazione = readOrCreate(fkProdotto, fkMagazzinoDest, rowWhere(fkProdotto, fkMagazzinoDest), Currency(),
                                         procedure)))
        return QStringLiteral("#err");
    const std::optional<double> amount = amountMoved(quantita, vecchiaQuantita, azione);
    if (!amount)
        return azioneNonImpostata(informazioni);

    const Currency none = Currency::fromUnits(-1);
    Currency costo = taglio;
    if (origine) {
        int nessunaRiga = -1;
        costo = transfer
            ? taglio
            : getPrezzoMedioProdotto(fkProdotto, fkMagazzinoOrig, -1, none, nessunaRiga, opzioni.mesiPrezzoMedio);
        if (costo == none)
            costo = Currency();
        if (!setQuantity(rowWhere(fkProdotto, fkMagazzinoOrig), double(*origine) - *amount, procedure,
                         QStringLiteral(", TAGLIO = ") + amountSql(costo)))
            return QStringLiteral("#err");
    }
    if (destinazione) {
        costo = transfer
            ? taglio
            : getPrezzoMedioProdotto(fkProdotto, fkMagazzinoDest, quantita, taglio, ridRiga, opzioni.mesiPrezzoMedio);
        if (costo == none)
            costo = taglio;
        if (!setQuantity(rowWhere(fkProdotto, fkMagazzinoDest), double(*destinazione) + *amount, procedure,
                         QStringLiteral(", TAGLIO = ") + amountSql(costo)))
            return QStringLiteral("#err");
    }
    if (!updateGiacenza(fkProdotto, giacenza, *amount, fkMagazzinoOrig, fkMagazzinoDest, procedure))
        return QStringLiteral("#err");
    taglio = costo;
    return QStringLiteral("OK");
}

Currency getPrezzoMedioProdotto(int fkProdotto, int fkMagazzino, Single quantita, Currency prezzo, int& ridRiga,
                                int mesi)
{
    const QString joins = QStringLiteral(
        " FROM (((DettagliMovimento dm INNER JOIN Movimenti m ON dm.FK_MOVIMENTO = m.RID) INNER JOIN TipoDocumenti td "
        "ON m.FK_TIPODOCUMENTO = td.RID) INNER JOIN Causali c ON td.FK_CAUSALE = c.RID) INNER JOIN Prodotti p "
        "ON dm.FK_PRODOTTO = p.RID WHERE ");
    const QString loads = QStringLiteral("dm.FK_PRODOTTO = ") + QString::number(fkProdotto)
        + QStringLiteral(" AND m.FK_DESTINAZIONE = ") + QString::number(fkMagazzino)
        + QStringLiteral(" AND c.DESTINAZIONE = 3 AND (c.ORIGINE = 3 OR c.ORIGINE = 2)")
        + (ridRiga > 0 ? QStringLiteral(" AND dm.RID <> ") + QString::number(ridRiga) : QString());
    const QString months = QString::number(-mesi);
    const QString period = QStringLiteral("\u2022A\u2022m.DATA >= DateAdd('m', ") + months
        + QStringLiteral(", Date()) AND \u2022/A\u2022")
        + QStringLiteral("\u2022M\u2022m.DATA >= DATE_ADD(CURRENT_DATE(), INTERVAL ") + months
        + QStringLiteral(" MONTH) AND \u2022/M\u2022") + QStringLiteral("\u2022S\u2022m.DATA >= DATEADD(month, ")
        + months + QStringLiteral(", CAST(GETDATE() AS date)) AND \u2022/S\u2022");

    const Currency none = Currency::fromUnits(-1);
    Currency result = none;
    bool sums = false;
    if (const cReader rs(
            QStringLiteral(
                "SELECT Sum(Abs(dm.QUANTITA)) AS TotQuantita, Sum(Abs(dm.QUANTITA) * Abs(dm.PREZZONETTO)) AS TotValore")
                + joins + period + loads,
            tag("getPrezzoMedioProdotto"));
        rs && !rs->eof() && !rs->isNull(QStringLiteral("TotQuantita")) && !rs->isNull(QStringLiteral("TotValore"))) {
        sums = true;
        double quantitaTotale = rs->number(QStringLiteral("TotQuantita"));
        double valoreTotale = rs->number(QStringLiteral("TotValore"));
        if (quantita > -1 && prezzo > none) {
            quantitaTotale += double(quantita);
            valoreTotale += double(quantita) * prezzo.toDouble();
        }
        result = quantitaTotale != 0 ? Currency::fromDouble(valoreTotale / quantitaTotale) : Currency();
    }

    if (!sums || result <= Currency()) {
        if (ridRiga < 0) {
            if (const auto last = firstValue(QStringLiteral("SELECT TOP 1 dm.PREZZONETTO AS TotPrezzoNetto") + joins
                                                 + loads + QStringLiteral(" ORDER BY dm.RID DESC"),
                                             tag("getPrezzoMedioProdotto")))
                result = getValoreCurrency(*last);
        } else if (prezzo > Currency()) {
            result = prezzo;
        }
    }
    if (result <= Currency()) {
        if (const auto acquisto = firstValue(QStringLiteral("SELECT PrezzoAcquisto FROM Prodotti WHERE RID = ")
                                                 + QString::number(fkProdotto),
                                             tag("getPrezzoMedioProdotto")))
            result = getValoreCurrency(*acquisto);
    }
    return result;
}

namespace {

// Date and price of the latest load or sale (and what else setPrefix sets).
bool aggiornaStatistica(int fkProdotto, Currency prezzo, const QDate& data, const char* dataColumn,
                        const char* priceColumn, const QString& setPrefix, const char* procedure)
{
    if (const QString errore = erroreData(data, QStringLiteral("Data del documento")); !errore.isEmpty()) {
        gAdoSqlServer().showAfterTransaction(errore, vb::Exclamation);
        return false;
    }
    const auto last = firstValue(QStringLiteral("SELECT ") + QLatin1String(dataColumn)
                                     + QStringLiteral(" FROM Prodotti WHERE RID = ") + QString::number(fkProdotto),
                                 tag(procedure));
    if (!last)
        return true;
    if (!last->isNull() && toDate(*last) > data)
        return true; // an older document leaves the statistics alone
    return gAdoSqlServer().executeSQL(QStringLiteral("UPDATE Prodotti SET ") + setPrefix + QLatin1String(dataColumn)
                                          + QStringLiteral(" = ") + gAdoSqlServer().getSQLDate(data)
                                          + QStringLiteral(", ") + QLatin1String(priceColumn) + QStringLiteral(" = ")
                                          + amountSql(prezzo) + QStringLiteral(" WHERE RID = ")
                                          + QString::number(fkProdotto),
                                      tag(procedure));
}

} // namespace

bool aggiornaStatisticaCarico(int fkProdotto, Currency prezzo, int fkFornitore, const QDate& dataDocumento)
{
    const auto fornitori =
        firstValue(QStringLiteral("SELECT COUNT(RID) FROM Anagrafiche WHERE TIPO = \u00A4F\u00A4 AND RID = ")
                       + QString::number(fkFornitore),
                   tag("aggiornaStatisticaCarico"));
    if (!fornitori || fornitori->toInt() == 0)
        return true;
    return aggiornaStatistica(fkProdotto, prezzo, dataDocumento, "DATAULTIMOCARICO", "PREZZOULTIMOCARICO",
                              QStringLiteral("FK_ULTIMOFORNITORE = ") + QString::number(fkFornitore)
                                  + QStringLiteral(", "),
                              "aggiornaStatisticaCarico");
}

bool aggiornaStatisticaScarico(int fkProdotto, Currency prezzo, const QDate& dataDocumento)
{
    return aggiornaStatistica(fkProdotto, prezzo, dataDocumento, "DATAULTIMOSCARICO", "PREZZOULTIMOSCARICO", QString(),
                              "aggiornaStatisticaScarico");
}
