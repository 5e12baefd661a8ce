#include "masterdata/anagrafica.h"

#include "data/cadosqlserver.h"
#include "data/nextnumber.h"
#include "data/scoped.h"
#include "data/sqlliteral.h"

#include <QDate>

namespace {

QString tag(const char* procedure) { return QStringLiteral("frmAnagrafica.") + QLatin1String(procedure); }

} // namespace

int getProgressivo()
{
    return nextNumber(QStringLiteral("Anagrafiche"), QStringLiteral("NUMERO"), tag("getProgressivo"));
}

QString anagraficheConCodici(const QString& codiceFiscale, const QString& partitaIva, const QString& tipo)
{
    if (codiceFiscale.isEmpty() && partitaIva.isEmpty())
        return QString();
    QStringList condizioni;
    if (!codiceFiscale.isEmpty())
        condizioni << QStringLiteral("CFISCALE = ") + sqlText(codiceFiscale);
    if (!partitaIva.isEmpty())
        condizioni << QStringLiteral("PIVA = ") + sqlText(partitaIva);
    const cReader rs(QStringLiteral("SELECT RID, NUMERO, DENOMINAZIONE, CFISCALE, PIVA FROM Anagrafiche WHERE TIPO = ")
                         + sqlText(tipo) + QStringLiteral(" AND (") + condizioni.join(QStringLiteral(" OR "))
                         + QLatin1Char(')'),
                     tag("checkCodFiscPIVA"));
    QString elenco;
    if (!rs)
        return elenco;
    for (; !rs->eof(); rs->moveNext())
        elenco += QStringLiteral("%1").arg(rs->integer(QStringLiteral("NUMERO")), 4, 10, QLatin1Char('0'))
            + QStringLiteral(" - ") + rs->value(QStringLiteral("DENOMINAZIONE")).toString() + QLatin1Char('\r');
    return elenco;
}

QString preparaRichText(const QString& testo, const DatiInformativa& dati, const QDate& oggi)
{
    QString out = testo;
    const std::pair<const char*, QString> segnaposti[] = {
        {"@NOMINATIVO", dati.nominativo}, {"@INDIRIZZO", dati.indirizzo},
        {"@CIVICO", dati.civico},         {"@CAP", dati.cap},
        {"@CITTA", dati.citta},           {"@PROV", dati.provincia},
        {"@PI", dati.partitaIva},         {"@DATA", oggi.toString(QStringLiteral("dd/MM/yyyy"))}};
    for (const auto& [segnaposto, valore] : segnaposti)
        out.replace(QLatin1String(segnaposto), valore);
    const std::pair<const char*, const char*> accentate[] = {
        {"\\'e0", "a'"}, {"\\'e8", "e'"}, {"\\'ec", "i'"}, {"\\'f2", "o'"}, {"\\'f9", "u'"}};
    for (const auto& [escape, vocale] : accentate)
        out.replace(QLatin1String(escape), QLatin1String(vocale));
    return out;
}

QString testoInformativa()
{
    const cReader rs(QStringLiteral("SELECT INFORMATIVA FROM Informativa"), tag("preparaRichText"));
    return rs ? rs.firstValue().toString() : QString();
}

bool salvaInformativa(int rid, const QString& testo)
{
    return gAdoSqlServer().executeSQL(QStringLiteral("UPDATE Anagrafiche SET INFORMATIVA = ") + sqlText(testo)
                                          + QStringLiteral(" WHERE RID = ") + QString::number(rid),
                                      tag("printInformativa"));
}
