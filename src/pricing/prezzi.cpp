#include "pricing/prezzi.h"

#include "common/italiantext.h"
#include "data/cadosqlserver.h"
#include "data/recordset.h"
#include "data/scoped.h"
#include "data/sqlliteral.h"

#include <optional>

namespace {

QString tag(const char* procedure) { return QStringLiteral("bOrvantisCommon.") + QLatin1String(procedure); }

QString id(int value) { return QString::number(value); }

std::optional<QVariant> firstValue(const QString& sql, const char* procedure)
{
    const QVariant v = gAdoSqlServer().getValueBySQL(sql, tag(procedure));
    return v.isValid() ? std::optional<QVariant>(v) : std::nullopt;
}

// The columns of the first row; empty when there is none.
QVariantList firstRow(const QString& sql, const char* procedure)
{
    const cReader rs(sql, tag(procedure));
    QVariantList row;
    if (rs && !rs->eof())
        for (int i = 0; i < rs->fieldCount(); ++i)
            row << rs->value(i);
    return row;
}

QString inRange(Single quantita)
{
    const QString q = plainTextSingleIt(quantita).replace(QLatin1Char(','), QLatin1Char('.'));
    return QStringLiteral(" AND RangeMin <= ") + q + QStringLiteral(" AND RangeMax >= ") + q;
}

QString percent(const QVariant& v) { return formattaImporto(getValoreNumerico(v), 2); }

void writeDiscounts(CampiRiga& riga, const QVariant& s1, const QVariant& s2, const QVariant& s3)
{
    riga.txtSconto1 = percent(s1);
    riga.txtSconto2 = percent(s2);
    riga.txtSconto3 = percent(s3);
}

void writeNetPrice(CampiRiga& riga, const QVariant& prezzo, const DocumentoPrezzi& documento)
{
    writeDiscounts(riga, 0, 0, 0);
    riga.txtPrezzoListino = formattaImporto(getValoreCurrency(prezzo), documento.decimaliDopo);
    riga.ultimoPrezzo = riga.txtPrezzoListino;
    riga.colorePrezzo = CampiRiga::Colore::Blu;
}

// The discounts of the range row (R, under head H in `joins`) that holds
// the quantity: the heads of the brand first, then those for every brand;
// 0, 0, 0 when none does.
void writeRangeDiscounts(CampiRiga& riga, const QString& joins, int fkMarca, const QString& conditions,
                         const char* procedure)
{
    const QString select = QStringLiteral("SELECT R.Sconto1, R.SCONTO2, R.SCONTO3 FROM ");
    QVariantList row;
    if (fkMarca > 0)
        row = firstRow(select + QLatin1Char('(') + joins
                           + QStringLiteral(") INNER JOIN Marche M ON H.FK_MARCA = M.RID WHERE H.FK_MARCA = ")
                           + id(fkMarca) + conditions,
                       procedure);
    if (row.isEmpty())
        row = firstRow(select + joins + QStringLiteral(" WHERE H.FK_MARCA Is Null") + conditions, procedure);
    if (row.isEmpty())
        writeDiscounts(riga, 0, 0, 0);
    else
        writeDiscounts(riga, row.at(0), row.at(1), row.at(2));
}

// The head's key (band or supplier): the given one when a head exists for
// it, else that of the oldest head of the category and brand (or product).
int headKey(const QString& table, const QString& keyColumn, const QString& scope, int given, bool testGiven,
            const char* procedure)
{
    if (testGiven) {
        const auto count =
            firstValue(QStringLiteral("SELECT COUNT(*) FROM ") + table + QStringLiteral(" WHERE ") + scope
                           + QStringLiteral(" AND ") + keyColumn + QStringLiteral(" = ") + id(given),
                       procedure);
        if (count && count->toInt() > 0)
            return given;
    }
    const auto oldest = firstValue(QStringLiteral("SELECT TOP 1 ") + keyColumn + QStringLiteral(" FROM ") + table
                                       + QStringLiteral(" WHERE ") + scope + QStringLiteral(" ORDER BY RID"),
                                   procedure);
    return oldest ? int(getValoreNumerico(*oldest)) : 0;
}

} // namespace

Currency getPrezzoVendita(int fkAnagrafe, int fkProdotto, quint8& prezzoPersonale, bool, bool& applicaSconto)
{
    const QVariantList anagrafe =
        firstRow(QStringLiteral("SELECT LISTINO, SCONTO FROM Anagrafiche WHERE RID = ") + id(fkAnagrafe),
                 "getPrezzoVendita");
    int listino = anagrafe.isEmpty() ? 0 : int(getValoreNumerico(anagrafe.at(0)));
    const double sconto = applicaSconto && !anagrafe.isEmpty() ? getValoreNumerico(anagrafe.at(1)) : 0.0;
    if (listino < 1)
        listino = 1;
    const auto price = [fkProdotto](int n) {
        const auto v = firstValue(QStringLiteral("SELECT LISTINO") + id(n)
                                      + QStringLiteral(" FROM Prodotti WHERE RID = ") + id(fkProdotto),
                                  "getPrezzoVendita");
        return v ? getValoreCurrency(*v) : Currency();
    };
    Currency prezzoListino = price(listino);
    if (prezzoListino <= Currency() && listino != 1)
        prezzoListino = price(1);

    Currency candidato;
    if (const auto personale = firstValue(QStringLiteral("SELECT PREZZO FROM Listini WHERE FK_ANAGRAFE = ")
                                              + id(fkAnagrafe) + QStringLiteral(" AND FK_PRODOTTO = ") + id(fkProdotto),
                                          "getPrezzoVendita")) {
        candidato = getValoreCurrency(*personale);
        prezzoPersonale = 1;
    }
    if (candidato == Currency())
        return Currency::fromDouble(prezzoListino.toDouble() * (1.0 - sconto / 100.0));
    return candidato;
}

QString getPrezzoAcquisto(int fkProdotto)
{
    const auto prezzo = firstValue(QStringLiteral("SELECT PREZZOACQUISTO FROM Prodotti WHERE RID = ") + id(fkProdotto),
                                   "getPrezzoAcquisto");
    return prezzo ? plainTextIt(getValoreCurrency(*prezzo)) : QString();
}

QString getPrezzo(int fkProdotto, const DocumentoPrezzi& d)
{
    QVariant prezzo;
    quint8 personale = 0;
    bool senzaSconto = false;
    if (d.tipoOrigine == 1)
        prezzo = QVariant::fromValue(getPrezzoVendita(d.origine, fkProdotto, personale, false, senzaSconto).toDouble());
    else if (d.tipoDestinazione == 1)
        prezzo =
            QVariant::fromValue(getPrezzoVendita(d.destinazione, fkProdotto, personale, false, senzaSconto).toDouble());
    else if (d.tipoOrigine == 2 || d.tipoDestinazione == 2 || (d.tipoOrigine == 3 && d.tipoDestinazione == 3))
        prezzo = getPrezzoAcquisto(fkProdotto);
    return prezzo.isValid() ? formattaImporto(prezzo, d.decimaliDopo, true) : QString();
}

int getFasciaCliente(int fkAnagrafe)
{
    const auto fascia =
        firstValue(QStringLiteral("SELECT FK_FASCIACLIENTE FROM Anagrafiche WHERE RID = ") + id(fkAnagrafe),
                   "getFasciaCliente");
    return fascia ? int(getValoreNumerico(*fascia)) : 0;
}

void setSconti(int fkProdotto, bool force, bool& done, CampiRiga& riga, const DocumentoPrezzi& d)
{
    done = false;
    if (d.lblPos > 0 && !force)
        return;
    writeDiscounts(riga, 0, 0, 0);
    done = true;
    if (d.tipoOrigine == 1 || d.tipoDestinazione == 1) {
        const auto own =
            firstValue(QStringLiteral("SELECT SCONTO FROM Prodotti WHERE RID = ") + id(fkProdotto), "setSconti");
        if (own && getValoreNumerico(*own) > 0) {
            riga.txtSconto1 = percent(*own);
            return;
        }
    }
    const QVariantList prodotto =
        firstRow(QStringLiteral("SELECT FK_MARCA, FK_CatScoAcq, FK_CatScoVen FROM Prodotti WHERE RID = ")
                     + id(fkProdotto),
                 "setSconti");
    const auto field = [&prodotto](int i) { return prodotto.isEmpty() ? 0 : int(getValoreNumerico(prodotto.at(i))); };
    const int marca = field(0), catAcquisto = field(1), catVendita = field(2);
    bool inner = false;
    if (d.tipoOrigine == 1)
        setScontiVendita(catVendita, marca, d.origine, d.quantita, fkProdotto, inner, riga, d);
    else if (d.tipoDestinazione == 1)
        setScontiVendita(catVendita, marca, d.destinazione, d.quantita, fkProdotto, inner, riga, d);
    else if (d.tipoOrigine == 2)
        setScontiAcquisto(catAcquisto, marca, d.origine, d.quantita, fkProdotto, inner, riga, d);
    else if (d.tipoDestinazione == 2)
        setScontiAcquisto(catAcquisto, marca, d.destinazione, d.quantita, fkProdotto, inner, riga, d);
    // The counterparty's discount when the tables left the first field at 0,
    // a net price included.
    if (getValoreNumerico(riga.txtSconto1) != 0 || d.scontoControparte <= Currency())
        return;
    riga.txtSconto1 = formattaImporto(d.scontoControparte, 2);
}

void setScontiVendita(int fkCategoria, int fkMarca, int fkCliente, Single quantita, int fkProdotto, bool& done,
                      CampiRiga& riga, const DocumentoPrezzi& d)
{
    const char* procedure = "setScontiVendita";
    const int richiesta = getFasciaCliente(fkCliente);
    const bool netti = fkCategoria == d.catPrezziNetti;
    const QString scope = QStringLiteral("FK_CATEGORIA = ") + id(fkCategoria)
        + (netti ? QStringLiteral(" AND FK_PRODOTTO = ") + id(fkProdotto)
                 : QStringLiteral(" AND FK_MARCA = ") + id(fkMarca));
    const int fascia = headKey(netti ? QStringLiteral("CatScProdVendita") : QStringLiteral("CatScVendita"),
                               QStringLiteral("FK_FASCIA"), scope, richiesta, richiesta > 0, procedure);
    if (!netti && (fascia < 1 || fkCategoria < 1))
        return;
    done = true;
    const QString conditions = QStringLiteral(" AND H.FK_FASCIA = ") + id(fascia)
        + QStringLiteral(" AND H.FK_CATEGORIA = ") + id(fkCategoria) + inRange(quantita);
    if (netti) {
        if (fkProdotto <= 0)
            return;
        const QVariantList row =
            firstRow(QStringLiteral("SELECT R.PREZZO FROM (((CatScVenditaProd R INNER JOIN CatScProdVendita H ON "
                                    "R.FK_CatScVenditeProd = H.RID) "
                                    "INNER JOIN CategorieSconti CS ON H.FK_CATEGORIA = CS.RID) INNER JOIN FasceClienti "
                                    "FC ON H.FK_FASCIA = FC.RID) "
                                    "INNER JOIN Prodotti P ON H.FK_PRODOTTO = P.RID WHERE H.FK_PRODOTTO = ")
                         + id(fkProdotto) + conditions,
                     procedure);
        if (!row.isEmpty())
            writeNetPrice(riga, row.at(0), d);
        return;
    }
    writeRangeDiscounts(riga,
                        QStringLiteral(
                            "((CatScVenditeSconti R INNER JOIN CatScVendita H ON R.FK_CatScVendite = H.RID) "
                            "INNER JOIN CategorieSconti CS ON H.FK_CATEGORIA = CS.RID) INNER JOIN FasceClienti FC "
                            "ON H.FK_FASCIA = FC.RID"),
                        fkMarca, conditions, procedure);
}

void setScontiAcquisto(int fkCategoria, int fkMarca, int fkFornitore, Single quantita, int fkProdotto, bool& done,
                       CampiRiga& riga, const DocumentoPrezzi& d)
{
    const char* procedure = "setScontiAcquisto";
    // The head is looked for on the discount heads, net prices included.
    const int fornitore =
        headKey(QStringLiteral("CatScAcquisto"), QStringLiteral("FK_FORNITORE"),
                QStringLiteral("FK_CATEGORIA = ") + id(fkCategoria) + QStringLiteral(" AND FK_MARCA = ") + id(fkMarca),
                fkFornitore, true, procedure);
    if (fkCategoria < 1 || fornitore < 1)
        return;
    done = true;
    const QString conditions = QStringLiteral(" AND H.FK_FORNITORE = ") + id(fornitore)
        + QStringLiteral(" AND H.FK_CATEGORIA = ") + id(fkCategoria) + inRange(quantita);
    if (fkCategoria == d.catPrezziNetti) {
        if (fkProdotto <= 0)
            return;
        const QVariantList row =
            firstRow(QStringLiteral("SELECT R.PREZZO FROM (((CatScAcquistoProd R INNER JOIN CatScProdAcquisto H ON "
                                    "R.FK_CatScProdAcquisto = H.RID) "
                                    "INNER JOIN CategorieSconti CS ON H.FK_CATEGORIA = CS.RID) INNER JOIN Anagrafiche "
                                    "A ON H.FK_FORNITORE = A.RID) "
                                    "INNER JOIN Prodotti P ON H.FK_PRODOTTO = P.RID WHERE H.FK_PRODOTTO = ")
                         + id(fkProdotto) + conditions,
                     procedure);
        if (!row.isEmpty())
            writeNetPrice(riga, row.at(0), d);
        return;
    }
    writeRangeDiscounts(riga,
                        QStringLiteral(
                            "((CatScAcquistoSconti R INNER JOIN CatScAcquisto H ON R.FK_CatScAcquisto = H.RID) "
                            "INNER JOIN CategorieSconti CS ON H.FK_CATEGORIA = CS.RID) INNER JOIN Anagrafiche A "
                            "ON H.FK_FORNITORE = A.RID"),
                        fkMarca, conditions, procedure);
}
