#include "accounting/primanota.h"

#include "common/errorlog.h"
#include "common/italiantext.h"
#include "common/msgbox.h"
#include "common/valuecheck.h"
#include "data/cadosqlserver.h"
#include "data/recordset.h"
#include "data/scoped.h"
#include "data/sqldialect.h"
#include "data/sqlliteral.h"

namespace {

QString tag(const char* procedure) { return QStringLiteral("bOrvantisCommon.") + QLatin1String(procedure); }

bool isControparte(int conto, const ContiControparti& c)
{
    return conto > 0 && (conto == c.clienti || conto == c.fornitori);
}

QString amount(Currency value) { return getSqlNumber(value.toPlainString()); }

bool insertLine(int entry, int conto, const char* column, Currency value)
{
    if (conto <= 0)
        return true;
    return gAdoSqlServer().executeSQL(QStringLiteral("INSERT INTO PrimaNotaDettagli (FK_PrimaNota, FK_Conto, ")
                                          + QLatin1String(column) + QStringLiteral(") VALUES (")
                                          + QString::number(entry) + QStringLiteral(", ") + QString::number(conto)
                                          + QStringLiteral(", ") + amount(value) + QLatin1Char(')'),
                                      tag("saveDettagliPrimaNota"));
}

// The amounts of the lines are differences of the document's amounts: each
// must stay within the range of an amount, or the entry would be stored with
// a figure cut to the limit.
QString controllaImporti(Currency importo, Currency importoIva, Currency importoRda)
{
    const std::optional<Currency> netto = checkedSub(importo, importoIva);
    const bool ok =
        netto && checkedSub(importo, importoRda) && checkedSub(*netto, importoRda) && checkedNeg(importoRda);
    return ok ? QString() : messaggioImportoFuoriLimiti(QStringLiteral("Importo del movimento di Prima Nota"));
}

} // namespace

RighePrimaNota calcolaRighe(const ContiCausale& causale, Currency importo, Currency importoIva, Currency importoRda,
                            const ContiControparti& controparti)
{
    const Currency netto = importo - importoIva;
    RighePrimaNota r;
    r.conti.dare1 = causale.dare1;
    r.conti.avere1 = causale.avere1;
    const Currency zero;

    if (importoRda == zero) {
        if (causale.dare2 > 0) {
            r.conti.dare2 = causale.dare2;
            r.dare2 = importoIva;
        } else if (causale.avere2 > 0) {
            r.conti.avere2 = causale.avere2;
            r.avere2 = importoIva;
        }
        r.dare1 = importo;
        r.avere1 = importo;
        // Only a positive VAT takes its share off the first line.
        if (r.dare2 > zero)
            r.dare1 = netto;
        else if (r.avere2 > zero)
            r.avere1 = netto;
        return r;
    }

    // A withholding: taken off the line on the counterparty's account.
    if (causale.dare2 > 0 && isControparte(r.conti.dare1, controparti)) {
        r.conti.dare2 = causale.dare2;
        r.dare1 = importo - importoRda;
        r.dare2 = importoRda;
        r.avere1 = netto;
        if (causale.avere2 > 0) {
            r.conti.avere2 = causale.avere2;
            r.avere2 = importoIva;
        }
    }
    // Independently of the step above, and from avere1 as it left it.
    if (causale.avere2 > 0 && isControparte(r.conti.avere1, controparti)) {
        r.conti.avere2 = causale.avere2;
        r.avere1 = r.avere1 - importoRda;
        r.avere2 = importoRda;
        r.dare1 = netto;
        if (causale.dare2 > 0) {
            r.conti.dare2 = causale.dare2;
            r.dare2 = importoIva;
        }
    }
    return r;
}

namespace {

// The lines of an entry from its causal. A new entry has none to delete: a
// delete that finds nothing would only lock the index against the other
// workstations' entries.
QString scriviRighe(int ridPrimaNota, int fkCausale, Currency importo, Currency importoIva, Currency importoRda,
                    const ContiControparti& controparti, bool nuova)
{
    ContiCausale causale;
    bool found = false;
    {
        const cReader rs(
            QStringLiteral(
                "SELECT FK_CONTODARE1, FK_CONTODARE2, FK_CONTOAVERE1, FK_CONTOAVERE2 FROM Causali WHERE RID = ")
                + QString::number(fkCausale),
            tag("saveDettagliPrimaNota"));
        if (!rs)
            return QString();
        found = !rs->eof();
        if (found) {
            causale.dare1 = int(rs->integer(QStringLiteral("FK_CONTODARE1")));
            causale.dare2 = int(rs->integer(QStringLiteral("FK_CONTODARE2")));
            causale.avere1 = int(rs->integer(QStringLiteral("FK_CONTOAVERE1")));
            causale.avere2 = int(rs->integer(QStringLiteral("FK_CONTOAVERE2")));
        }
    }
    if (!found)
        return QStringLiteral("Impossibile assegnare i conti DARE/AVERE!");

    const RighePrimaNota r = calcolaRighe(causale, importo, importoIva, importoRda, controparti);
    if (!nuova
        && !gAdoSqlServer().executeSQL(QStringLiteral("DELETE FROM PrimaNotaDettagli WHERE FK_PrimaNota = ")
                                           + QString::number(ridPrimaNota),
                                       tag("saveDettagliPrimaNota")))
        return QString();
    const bool written = insertLine(ridPrimaNota, r.conti.dare1, "Dare", r.dare1)
        && insertLine(ridPrimaNota, r.conti.dare2, "Dare", r.dare2)
        && insertLine(ridPrimaNota, r.conti.avere1, "Avere", r.avere1)
        && insertLine(ridPrimaNota, r.conti.avere2, "Avere", r.avere2);
    return written ? QStringLiteral("#") : QString();
}

} // namespace

QString saveDettagliPrimaNota(int ridPrimaNota, int fkCausale, Currency importo, Currency importoIva,
                              Currency importoRda, const ContiControparti& controparti)
{
    return scriviRighe(ridPrimaNota, fkCausale, importo, importoIva, importoRda, controparti, false);
}

int getNewProgressivoPrimaNota(const QDate& data)
{
    cAdoSqlServer& db = gAdoSqlServer();
    const char* procedure = "getNewProgressivoPrimaNota";
    if (!db.inTransaction()) {
        // Outside a transaction nothing keeps another workstation from
        // taking the same number before this one is written.
        Err().raise(9998, QStringLiteral("bOrvantisCommon"),
                    QStringLiteral("Numero di Prima Nota richiesto fuori da una transazione."));
        notifyError(QStringLiteral("bOrvantisCommon"), QLatin1String(procedure), QString());
        return -1;
    }
    const QString anno = QString::number(data.year());
    const QString where = QStringLiteral(" WHERE ANNO = ") + anno;

    // On a server the year's row is locked first and held until the
    // transaction ends: a second workstation waits here, and then reads the
    // number this one has written. On the file database the write
    // transaction already holds the whole database.
    if (db.TipoServer() == TipoServer::MySql) {
        if (!db.executeSQL(QStringLiteral("INSERT INTO AnniPrimaNota (ANNO) VALUES (") + anno
                               + QStringLiteral(") ON DUPLICATE KEY UPDATE ANNO = ANNO"),
                           tag(procedure)))
            return -1;
    } else if (db.TipoServer() == TipoServer::SqlServer
               && !db.getValueBySQL(QStringLiteral("SELECT ANNO FROM AnniPrimaNota WITH (UPDLOCK, HOLDLOCK)") + where,
                                    tag(procedure))
                       .isValid()
               && !db.executeSQL(QStringLiteral("INSERT INTO AnniPrimaNota (ANNO) VALUES (") + anno + QLatin1Char(')'),
                                 tag(procedure))) {
        return -1;
    }

    // The highest number of the year and one more: a number freed by a
    // deletion at the end of the run is given again.
    const cReader rs(QStringLiteral("SELECT MAX(PROGRESSIVO) AS ULTIMO FROM PrimaNota") + where, tag(procedure));
    if (!rs)
        return -1;
    const QVariant ultimo = rs.firstValue();
    return ultimo.isNull() || !ultimo.isValid() ? 1 : ultimo.toInt() + 1;
}

int getProgPrimaNotaByID(int rid)
{
    return gAdoSqlServer()
        .getValueBySQL(QStringLiteral("SELECT PROGRESSIVO FROM PrimaNota WHERE RID = ") + QString::number(rid),
                       tag("getProgPrimaNotaByID"))
        .toInt();
}

int salvaPrimaNota(const DatiPrimaNota& d, const ContiControparti& controparti)
{
    cAdoSqlServer& db = gAdoSqlServer();
    // Nothing is written for values that would be stored wrong: an entry
    // without a date would be numbered in no year.
    for (const QString& errore :
         {erroreData(d.data, QStringLiteral("Data della registrazione di Prima Nota")),
          erroreData(d.dataValuta, QStringLiteral("Data valuta della registrazione di Prima Nota")),
          controllaImporti(d.importo, d.importoIva, d.importoRda)})
        if (!errore.isEmpty()) {
            db.showAfterTransaction(errore, vb::Exclamation);
            return -1;
        }
    const QString values[] = {db.getSQLDate(d.data),
                              db.getSQLDate(d.dataValuta),
                              getIDOrNullStr(d.fkCausale),
                              getIDOrNullStr(d.fkAnagrafe),
                              sqlText(leftChars(d.descrizione, 255)),
                              sqlText(leftChars(d.riferimenti, 255)),
                              sqlText(d.numDocumento),
                              amount(d.importo),
                              sqlText(leftChars(d.codicePartita, 20)),
                              getIDOrNullStr(d.fkPagamento)};
    const QStringList columns{QStringLiteral("Data"),          QStringLiteral("DataValuta"),
                              QStringLiteral("FK_Causale"),    QStringLiteral("FK_Anagrafe"),
                              QStringLiteral("Descrizione"),   QStringLiteral("Riferimenti"),
                              QStringLiteral("NumDocumento"),  QStringLiteral("Importo"),
                              QStringLiteral("CodicePartita"), QStringLiteral("FK_Pagamento")};
    int key = d.rid;
    if (d.rid < 1) {
        const int progressivo = getNewProgressivoPrimaNota(d.data);
        if (progressivo == -1)
            return -1;
        key = db.getIDByInsert(sqlInsert(QStringLiteral("PrimaNota"),
                                         QStringList{QStringLiteral("Progressivo"), QStringLiteral("ANNO")} + columns,
                                         QStringList{QString::number(progressivo), QString::number(d.data.year())}
                                             + QStringList(std::begin(values), std::end(values))),
                               tag("salvaPrimaNota"), QStringLiteral("RID"), QStringLiteral("PrimaNota"));
        if (key < 1)
            return -1;
    } else if (!db.executeSQL(sqlUpdate(QStringLiteral("PrimaNota"), columns,
                                        QStringList(std::begin(values), std::end(values)), d.rid),
                              tag("salvaPrimaNota"))) {
        // The data layer has told the failure; the lines stay as they are.
        return d.rid;
    }
    const QString esito = scriviRighe(key, d.fkCausale, d.importo, d.importoIva, d.importoRda, controparti, d.rid < 1);
    if (esito == QLatin1String("#"))
        return key;
    if (!esito.isEmpty())
        gAdoSqlServer().showAfterTransaction(esito, vb::Critical);
    return -1;
}

int modificaImportoPrimaNota(int rid, Currency importo, Currency importoIva, Currency importoRda,
                             const ContiControparti& controparti)
{
    if (rid < 1)
        return 0;
    if (const QString errore = controllaImporti(importo, importoIva, importoRda); !errore.isEmpty()) {
        gAdoSqlServer().showAfterTransaction(errore, vb::Exclamation);
        return -1;
    }
    if (!gAdoSqlServer().executeSQL(QStringLiteral("UPDATE PrimaNota SET Importo = ") + amount(importo)
                                        + QStringLiteral(" WHERE RID = ") + QString::number(rid),
                                    tag("modificaImportoPrimaNota")))
        return 0;
    const QVariant causale =
        gAdoSqlServer().getValueBySQL(QStringLiteral("SELECT FK_CAUSALE FROM PrimaNota WHERE RID = ")
                                          + QString::number(rid),
                                      tag("modificaImportoPrimaNota"));
    if (!causale.isValid())
        return -1;
    if (causale.toInt() < 1)
        return rid;
    const QString esito = saveDettagliPrimaNota(rid, causale.toInt(), importo, importoIva, importoRda, controparti);
    if (esito == QLatin1String("#"))
        return rid;
    if (!esito.isEmpty())
        gAdoSqlServer().showAfterTransaction(esito, vb::Critical);
    return -1;
}
