#include "masterdata/numeratori.h"

#include "data/cadosqlserver.h"
#include "data/recordset.h"
#include "data/scoped.h"
#include "data/sqlliteral.h"

#include <algorithm>
#include <limits>

namespace {

QString tag(const char* procedure) { return QStringLiteral("frmNumeratori.") + QLatin1String(procedure); }

QString insertContatore(int rid, const QString& anno, int numero)
{
    return QStringLiteral("INSERT INTO Contatori (FK_NUMERATORE, ANNO, NUMERO, `NOTE`) VALUES (") + QString::number(rid)
        + QStringLiteral(", ") + sqlText(anno) + QStringLiteral(", ") + QString::number(numero) + QStringLiteral(", ")
        + sqlText(QStringLiteral("n/d")) + QLatin1Char(')');
}

} // namespace

int valIntero(const QString& text)
{
    const QString t = text.trimmed();
    qsizetype end = (t.startsWith(QLatin1Char('-')) || t.startsWith(QLatin1Char('+'))) ? 1 : 0;
    while (end < t.size() && t.at(end).isDigit())
        ++end;
    bool ok = false;
    const qlonglong value = t.left(end).toLongLong(&ok);
    if (!ok)
        return 0;
    return int(std::clamp<qlonglong>(value, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
}

bool numeratoriAnno(const QString& anno, QList<NumeratoreAnno>& righe)
{
    righe.clear();
    const QString sql =
        QStringLiteral("SELECT Numeratori.RID, Numeratori.DESCRIZIONE, (Select Contatori.Numero From Contatori "
                       "Where Anno = ")
        + sqlText(anno)
        + QStringLiteral(" AND Contatori.FK_NUMERATORE = Numeratori.RID) as  Numero From Numeratori ORDER BY "
                         "Numeratori.DESCRIZIONE ");
    const cReader rs(sql, tag("bindList"));
    if (!rs)
        return false;
    for (; !rs->eof(); rs->moveNext())
        righe.append({int(rs->integer(QStringLiteral("RID"))), rs->text(QStringLiteral("DESCRIZIONE")),
                      valIntero(rs->text(QStringLiteral("Numero")))});
    return true;
}

int aggiungiNumeratore(const QString& descrizione, const QString& anno)
{
    cAdoSqlServer& db = gAdoSqlServer();
    const QString t = tag("addNewNumeratore");
    cTransaction transaction(t);
    if (!transaction)
        return -1;
    const QVariant highest = db.getValueBySQL(QStringLiteral("SELECT MAX(RID) FROM Numeratori"), t);
    // No value at all is a failed statement; a Null is an empty table.
    const int massimo = !highest.isValid() ? -1 : (highest.isNull() ? 0 : highest.toInt());
    const int rid = massimo + 1;
    const bool ok = massimo >= 0
        && db.getIDByInsert(QStringLiteral("INSERT INTO Numeratori (RID, DESCRIZIONE) VALUES (") + QString::number(rid)
                                + QStringLiteral(", ") + sqlText(descrizione) + QLatin1Char(')'),
                            t, QStringLiteral("RID"), QStringLiteral("Numeratori"))
            >= 0
        && db.executeSQL(insertContatore(rid, anno, 0), t);
    return ok && transaction.commit() ? rid : -1;
}

QStringList tipiDocumentoDelNumeratore(int rid)
{
    QStringList tipi;
    const cReader rs(QStringLiteral("SELECT DESCRIZIONE FROM TipoDocumenti WHERE NCONTATORE = ") + QString::number(rid),
                     tag("delNumeratore"));
    for (; rs && !rs->eof(); rs->moveNext())
        tipi << rs->text(QStringLiteral("DESCRIZIONE"));
    return tipi;
}

bool eliminaNumeratore(int rid)
{
    cAdoSqlServer& db = gAdoSqlServer();
    const QString t = tag("delNumeratore");
    cTransaction transaction(t);
    const QString key = QString::number(rid);
    return transaction && db.executeSQL(QStringLiteral("DELETE FROM Contatori WHERE FK_NUMERATORE = ") + key, t)
        && db.executeSQL(QStringLiteral("DELETE FROM Numeratori WHERE RID = ") + key, t) && transaction.commit();
}

bool impostaContatore(int rid, const QString& anno, int numero)
{
    cAdoSqlServer& db = gAdoSqlServer();
    const QString t = tag("getNewNumeroByNumeratore");
    const QString key = QString::number(rid);
    bool exists = false;
    {
        const cReader rs(QStringLiteral("SELECT RID FROM Contatori WHERE ANNO = ") + sqlText(anno)
                             + QStringLiteral(" AND FK_NUMERATORE = ") + key,
                         t);
        if (!rs)
            return false;
        exists = !rs->eof();
    }
    if (!exists)
        return db.executeSQL(insertContatore(rid, anno, numero), t);
    return db.executeSQL(QStringLiteral("UPDATE Contatori SET NUMERO = ") + QString::number(numero)
                             + QStringLiteral(" WHERE FK_NUMERATORE = ") + key + QStringLiteral(" AND  ANNO = ")
                             + sqlText(anno),
                         t);
}
