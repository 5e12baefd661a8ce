#include "tipodocumento.h"

#include "italiantext.h"
#include "recordset.h"
#include "sqlliteral.h"

namespace {

QString flag(bool value)
{
    return value ? QStringLiteral("1") : QStringLiteral("0");
}

bool flagOf(const Recordset& rs, const char* column)
{
    return getChekByBool(rs.value(QString::fromLatin1(column))) > 0;
}

QString rate(const Recordset& rs, const char* column)
{
    return formattaImporto(rs.value(QString::fromLatin1(column)), 2);
}

// The values in the column order of the insert and of the update.
QStringList values(const TipoDocumento& td)
{
    return {sqlText(td.codice),
            sqlText(td.descrizione),
            getIDOrNullStr(td.fkCausale),
            getIDOrNullStr(td.nContatore),
            flag(td.accompagnatorio),
            flag(td.mostraVB),
            flag(td.nonStampareVB),
            flag(td.stampaElencoSpeciale),
            flag(td.modificaPrezzoAcquisto),
            flag(td.usaPrezziIva),
            flag(td.flexCounter),
            flag(td.hideMenu),
            flag(td.hideRicerca),
            flag(td.usaRda),
            getSqlNumberOrZero(td.rda1),
            getSqlNumberOrZero(td.rda2),
            sqlText(td.descStampa),
            sqlText(td.report)};
}

const QStringList kColumns{"CODICE",        "DESCRIZIONE",          "FK_CAUSALE",   "NCONTATORE",
                           "ACCOMPAGNATORIO", "MOSTRAVB",           "NONSTAMPAREVB", "STAMPAELENCOSPECIALE",
                           "MODIFICAPREZZOACQUISTO", "USAPREZZIIVA", "FLEXCOUNTER",  "HIDEMENU",
                           "HIDERICERCA",   "USARDA",               "RDA1",         "RDA2",
                           "DESCSTAMPA",    "REPORT"};

} // namespace

QStringList tipoDocumentoFaults(const TipoDocumento& td)
{
    QStringList found;
    auto obbligatorio = [&found](bool missing, const char* campo) {
        if (missing)
            found << QStringLiteral(" - Campo [") + QString::fromUtf8(campo) + QStringLiteral("] Obbligatorio.");
    };
    obbligatorio(td.codice.trimmed().isEmpty(), "Codice");
    obbligatorio(td.descrizione.trimmed().isEmpty(), "Descrizione");
    obbligatorio(td.descStampa.trimmed().isEmpty(), "Descrizione Stampa");
    obbligatorio(td.fkCausale <= 0, "Causale");
    obbligatorio(td.nContatore <= 0, "Contatore");
    obbligatorio(td.report.isEmpty(), "Report");
    obbligatorio(td.usaRda && getValoreSingle(td.rda1) == 0, "R.D.A. % (1)");
    obbligatorio(td.usaRda && getValoreSingle(td.rda2) == 0, "R.D.A. % (2)");
    return found;
}

QString tipoDocumentoSelect()
{
    return QStringLiteral(
        "SELECT * FROM (SELECT TD.RID, TD.CODICE, TD.DESCRIZIONE, TD.DESCSTAMPA, TD.FK_CAUSALE, TD.NCONTATORE, "
        "TD.REPORT, TD.ACCOMPAGNATORIO, TD.MOSTRAVB, TD.NONSTAMPAREVB, TD.STAMPAELENCOSPECIALE, "
        "TD.MODIFICAPREZZOACQUISTO, TD.USAPREZZIIVA, TD.FLEXCOUNTER, TD.HIDEMENU, TD.HIDERICERCA, TD.USARDA, "
        "TD.RDA1, TD.RDA2, C.CODICE AS CODCAUSALE, C.DESCRIZIONE AS DESCCAUSALE "
        "FROM (TipoDocumenti TD INNER JOIN Numeratori N ON TD.NCONTATORE = N.RID) "
        "LEFT JOIN Causali C ON TD.FK_CAUSALE = C.RID) TD");
}

TipoDocumento tipoDocumentoFromRecord(const Recordset& rs)
{
    TipoDocumento td;
    td.codice = rs.text(QStringLiteral("CODICE"));
    td.descrizione = rs.text(QStringLiteral("DESCRIZIONE"));
    td.descStampa = rs.text(QStringLiteral("DESCSTAMPA"));
    td.fkCausale = int(rs.integer(QStringLiteral("FK_CAUSALE")));
    td.nContatore = int(rs.integer(QStringLiteral("NCONTATORE")));
    td.report = rs.text(QStringLiteral("REPORT"));
    td.accompagnatorio = flagOf(rs, "ACCOMPAGNATORIO");
    td.mostraVB = flagOf(rs, "MOSTRAVB");
    td.nonStampareVB = flagOf(rs, "NONSTAMPAREVB");
    td.stampaElencoSpeciale = flagOf(rs, "STAMPAELENCOSPECIALE");
    td.modificaPrezzoAcquisto = flagOf(rs, "MODIFICAPREZZOACQUISTO");
    td.usaPrezziIva = flagOf(rs, "USAPREZZIIVA");
    td.flexCounter = flagOf(rs, "FLEXCOUNTER");
    td.hideMenu = flagOf(rs, "HIDEMENU");
    td.hideRicerca = flagOf(rs, "HIDERICERCA");
    td.usaRda = flagOf(rs, "USARDA");
    td.rda1 = rate(rs, "RDA1");
    td.rda2 = rate(rs, "RDA2");
    return td;
}

QString tipoDocumentoInsert(const TipoDocumento& td)
{
    return sqlInsert(QStringLiteral("TipoDocumenti"), kColumns, values(td));
}

QString tipoDocumentoUpdate(const TipoDocumento& td, int rid)
{
    return sqlUpdate(QStringLiteral("TipoDocumenti"), kColumns, values(td), rid);
}

QString tipoDocumentoSearch()
{
    return QStringLiteral("SELECT RID, Codice, Descrizione FROM TipoDocumenti ORDER BY DESCRIZIONE");
}

QString causaleSearch()
{
    return QStringLiteral("SELECT RID, CODICE, Descrizione FROM Causali ORDER BY DESCRIZIONE");
}

QString numeratoriCombo()
{
    return QStringLiteral("SELECT RID, DESCRIZIONE FROM Numeratori ORDER BY DESCRIZIONE");
}

QString reportFunzionalita(int funzionalita)
{
    return QStringLiteral("SELECT RID, REPORT FROM FunzionalitaReport WHERE Funzionalita = ") + QString::number(funzionalita)
        + QStringLiteral(" ORDER BY RID");
}
