#include "masterdata/prodotto.h"

#include "common/currency.h"
#include "common/ean13.h"
#include "common/italiantext.h"
#include "data/cadosqlserver.h"
#include "data/scoped.h"
#include "data/sqlliteral.h"

#include <QDateTime>

namespace {

// The statistics frame: what the stock postings keep.
const char* const kStatistiche =
    ", GIACENZA, DATAULTIMAMODIFICA, DATAULTIMOCARICO, PREZZOULTIMOCARICO, DATAULTIMOSCARICO, PREZZOULTIMOSCARICO, "
    "(SELECT A.DENOMINAZIONE FROM Anagrafiche A WHERE A.RID = Prodotti.FK_ULTIMOFORNITORE) AS ULTIMOFORNITORE";

QString tag(const char* procedure) { return QStringLiteral("frmProdotto.") + QLatin1String(procedure); }

// Net plus its VAT, the VAT rounded to four decimals.
QString lordo(const QString& netto, const PrezziProdotto& p)
{
    const Currency n = getValoreCurrency(netto);
    const Currency iva = Currency::fromLongDouble(n.toLongDouble() * p.iva / 100.0L);
    return formattaImporto(n + iva, p.decimali);
}

QString netto(const QString& lordo, const PrezziProdotto& p)
{
    return formattaImporto(getValoreNumerico(lordo) / (1.0 + p.iva / 100.0), p.decimali);
}

QString withCheckDigit(const QString& digits) { return digits + QString::number(getEAN13ChekDigit(digits)); }

} // namespace

fields::FieldList prodottoFields(int decimali)
{
    using namespace fields;
    const unsigned z = ZeroWhenEmpty;
    return {QStringLiteral("Prodotti"),
            {field("CODICE", "txtCodice1", "Codice", Trimmed),
             field("BARCODE", "txtCodice2", "Barcode", Trimmed),
             field("EXTRACODICE", "txtCodice3", "Extra codice", Trimmed),
             field("DESCRIZIONE", "txtDescrizione", "Descrizione"),
             key("FK_CATEGORIA", "txtCategoria", "Categoria", lookup::categorie),
             key("FK_MARCA", "txtMarca", "Marca", lookup::marche),
             key("FK_COLLEZIONE", "txtCollezione", "Collezione", lookup::collezioni),
             key("FK_GRUPPO", "txtGruppo", "Gruppo", lookup::gruppi),
             key("FK_UNITAMISURA", "txtUnitaMisura", "Unità di misura", lookup::unitaMisura),
             key("FK_SOSTITUITO", "txtProdSost", "Sostituisce", lookup::prodotti),
             key("FK_Iva", "txtIva", "Iva", lookup::iva),
             key("FK_CATSCOACQ", "txtCatScontoAcq", "Cat. Sconto Acq.", lookup::categorieSconti),
             key("FK_CATSCOVEN", "txtCatScontoVen", "Cat. Sconto Ven.", lookup::categorieSconti),
             number("PREZZOACQUISTO", "txtPrezzoAcquisto", "Prezzo Acquisto", decimali, z),
             number("LISTINO1", "txtListino1", "Listino 1", decimali, z),
             number("LISTINO2", "txtListino2", "Listino 2", decimali, z),
             number("LISTINO3", "txtListino3", "Listino 3", decimali, z),
             number("LISTINO4", "txtListino4", "Listino 4", decimali, z),
             number("PLISTINO", "txtPListino", "Prezzo Listino Rif.", 2, z),
             field("DATALISTINO", "txtDataListino", "Data Listino Rif."),
             number("SCONTO", "txtSconto", "Sconto diretto", 2, z),
             number("SCORTAMINIMA", "txtScortaMinima", "Scorta minima", 2, z),
             number("PESO", "txtPeso", "Peso", 2, z),
             number("COLLI", "txtColli", "Colli", 2, z),
             field("UBICAZIONE", "txtUbicazione", "Ubicazione", Trimmed),
             field("NUMREGISTRAZIONE", "txtNumRegistrazione", "Nr. Reg.", Trimmed),
             field("DISABILITATO", "chkDisabilitato", "Prodotto Disabilitato"),
             field("SETGIACENZA", "chkGiacenza", "Abilita controllo giacenze"),
             field("ELENCOSPECIALE", "ChkElencoSpeciale", "Elenco Speciale"),
             field("BLOCCAPREZZO", "chkBloccaPrezzo", "Blocca Prezzo in V.B.")}};
}

QString ricercaProdotti()
{
    return QStringLiteral("SELECT P.RID, P.CODICE, P.DESCRIZIONE, M.DESCRIZIONE AS MARCA, P.BARCODE, P.EXTRACODICE "
                          "FROM Prodotti P LEFT JOIN Marche M ON P.FK_MARCA = M.RID ORDER BY P.CODICE");
}

QString letturaProdotto(int decimali, int rid)
{
    QString sql = prodottoFields(decimali).selectStatement();
    sql.insert(sql.indexOf(QStringLiteral(" FROM ")), QLatin1String(kStatistiche));
    return sql + QStringLiteral(" WHERE RID = ") + QString::number(rid);
}

void ricalcolaPrezzi(PrezziProdotto& p, PrezzoCambiato cambiato)
{
    switch (cambiato) {
    case PrezzoCambiato::Acquisto: p.acquistoLordo = lordo(p.acquisto, p); break;
    case PrezzoCambiato::AcquistoLordo: p.acquisto = netto(p.acquistoLordo, p); break;
    case PrezzoCambiato::Listino1: p.listino1Lordo = lordo(p.listino1, p); break;
    case PrezzoCambiato::Listino1Lordo: p.listino1 = netto(p.listino1Lordo, p); break;
    case PrezzoCambiato::Iva:
        p.acquistoLordo = lordo(p.acquisto, p);
        p.listino1Lordo = lordo(p.listino1, p);
        break;
    }
    if (getValoreCurrency(p.pListino) == Currency() && getValoreCurrency(p.listino1Lordo) > Currency())
        p.pListino = formattaImporto(getValoreCurrency(p.listino1Lordo), 2);
    calcolaRicarico(p, false);
}

void calcolaRicarico(PrezziProdotto& p, bool daRicarico)
{
    const Currency acquisto = getValoreCurrency(p.acquisto);
    if (daRicarico) {
        p.listino1 = formattaImporto(getValoreCurrency(p.listino1), 2);
        const Currency ricarico = getValoreCurrency(p.ricarico);
        if (ricarico == Currency() || acquisto == Currency())
            return;
        const Currency aggiunta = Currency::fromLongDouble(acquisto.toLongDouble() * ricarico.toLongDouble() / 100.0L);
        p.listino1 = formattaImporto(acquisto + aggiunta, p.decimali);
        ricalcolaPrezzi(p, PrezzoCambiato::Listino1);
        return;
    }
    p.ricarico = formattaImporto(getValoreCurrency(p.ricarico), 2);
    const Currency listino = getValoreCurrency(p.listino1);
    if (acquisto == Currency() || listino <= Currency())
        return;
    p.ricarico =
        formattaImporto(double(100.0L * (listino - acquisto).toLongDouble() / acquisto.toLongDouble()), p.decimali);
}

QString nuovoBarcode(const QDateTime& adesso)
{
    return withCheckDigit(adesso.toString(QStringLiteral("yyMMddHHmmss")));
}

QString barcodeVariante(const QDateTime& adesso, int variante)
{
    return withCheckDigit(adesso.toString(QStringLiteral("yyMMddHHmm")) + QString::number(variante + 60));
}

QString erroreCheckCode(const QString& barcode)
{
    if (barcode.size() != 13)
        return QString();
    for (const QChar c : barcode)
        if (!c.isDigit())
            return QString();
    const int giusto = getEAN13ChekDigit(barcode);
    if (barcode.at(12).digitValue() == giusto)
        return QString();
    return QStringLiteral("Il Check Code corretto è: ") + QString::number(giusto) + QLatin1Char('\r');
}

bool esisteMarcaCodice(const QString& codice, int fkMarca)
{
    const QString marca = fkMarca > 0 ? QStringLiteral(" = ") + QString::number(fkMarca) : QStringLiteral(" IS NULL ");
    return gAdoSqlServer()
               .getValueBySQL(QStringLiteral("SELECT COUNT(RID) FROM Prodotti WHERE Codice = ") + sqlText(codice)
                                  + QStringLiteral(" AND FK_MARCA") + marca,
                              tag("controllaInserimento"))
               .toInt()
        > 0;
}

bool getGiacenzaProdotto(int rid)
{
    const QVariant totale =
        gAdoSqlServer().getValueBySQL(QStringLiteral(
                                          "SELECT SUM(QUANTITA) AS TOTQ FROM DettagliProdotto WHERE FK_PRODOTTO = ")
                                          + QString::number(rid),
                                      tag("getGiacenzaProdotto"));
    return totale.isValid() && !totale.isNull() && totale.toDouble() > 0;
}

bool eliminaProdotto(int rid)
{
    cAdoSqlServer& db = gAdoSqlServer();
    const QString key = QString::number(rid);
    cTransaction transaction(tag("deleteRecord"));
    return transaction
        && db.executeSQL(QStringLiteral("DELETE FROM DettagliProdotto WHERE FK_PRODOTTO = ") + key, tag("deleteRecord"))
        && db.executeSQL(QStringLiteral("DELETE FROM Listini WHERE FK_PRODOTTO = ") + key, tag("deleteRecord"))
        && db.executeSQL(QStringLiteral("DELETE FROM Prodotti WHERE RID = ") + key, tag("deleteRecord"))
        && transaction.commit();
}

QList<Alternativo> leggiAlternativi(int rid)
{
    QList<Alternativo> list;
    const QString key = QString::number(rid);
    const std::pair<const char*, const char*> lati[] = {{"FK_PRODOTTO2", "FK_PRODOTTO1"},
                                                        {"FK_PRODOTTO1", "FK_PRODOTTO2"}};
    for (const auto& [altro, questo] : lati) {
        const cReader rs(QStringLiteral("SELECT A.") + QLatin1String(altro)
                             + QStringLiteral(
                                 " AS RIDALT, P.CODICE FROM ProdottiAlternativi A INNER JOIN Prodotti P ON "
                                 "A.")
                             + QLatin1String(altro) + QStringLiteral(" = P.RID WHERE A.") + QLatin1String(questo)
                             + QStringLiteral(" = ") + key,
                         tag("showAlternativi"));
        for (; rs && !rs->eof(); rs->moveNext())
            list.append({int(rs->integer(QStringLiteral("RIDALT"))), rs->value(QStringLiteral("CODICE")).toString()});
    }
    return list;
}

bool saveAlternativi(int rid, const QList<Alternativo>& alternativi)
{
    cAdoSqlServer& db = gAdoSqlServer();
    const QString key = QString::number(rid);
    if (!db.executeSQL(QStringLiteral("DELETE FROM ProdottiAlternativi WHERE FK_PRODOTTO1 = ") + key,
                       tag("saveAlternativi")))
        return false;
    for (const Alternativo& a : alternativi)
        if (!db.executeSQL(QStringLiteral("INSERT INTO ProdottiAlternativi (FK_PRODOTTO1, FK_PRODOTTO2) VALUES (") + key
                               + QStringLiteral(", ") + QString::number(a.rid) + QLatin1Char(')'),
                           tag("saveAlternativi")))
            return false;
    return true;
}
