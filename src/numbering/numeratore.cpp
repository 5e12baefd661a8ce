#include "numbering/numeratore.h"

#include "common/errorlog.h"
#include "data/cadosqlserver.h"
#include "data/recordset.h"
#include "data/scoped.h"
#include "data/sqldialect.h"
#include "data/sqlliteral.h"

#include <QDate>

#include <optional>

namespace {

const QString kModule = QStringLiteral("bOrvantis");

QString tag(const char* procedure) { return kModule + QLatin1Char('.') + QLatin1String(procedure); }

// The highest number dated before, or the lowest dated after, the date.
// No row gives the sentinel; a failed statement gives nothing.
std::optional<int> neighbour(int fkTipoDocumento, const QDate& data, int rid, bool before, int sentinel)
{
    QString sql = QStringLiteral("SELECT TOP 1 Progressivo, Data FROM Movimenti WHERE ANNO = ")
        + QString::number(data.year()) + QStringLiteral(" AND FK_TipoDocumento = ") + QString::number(fkTipoDocumento)
        + (before ? QStringLiteral(" AND Data < ") : QStringLiteral(" AND Data > ")) + gAdoSqlServer().getSQLDate(data);
    if (rid > 0)
        sql += QStringLiteral(" AND RID <> ") + QString::number(rid);
    sql += before ? QStringLiteral(" ORDER BY Progressivo DESC") : QStringLiteral(" ORDER BY Progressivo ");
    const cReader rs(sql, tag("checkNumeroData"));
    if (!rs)
        return std::nullopt;
    return rs->eof() ? sentinel : int(rs->integer(QStringLiteral("Progressivo")));
}

} // namespace

int getNewNumeratoreAnnuale(int fkNumeratore, const QString& anno)
{
    if (!gAdoSqlServer().inTransaction()) {
        // Outside a transaction the counter's lock would end with the
        // statement: two workstations could take the same number.
        Err().raise(9998, kModule, QStringLiteral("Numero di documento richiesto fuori da una transazione."));
        notifyError(kModule, QStringLiteral("getNewNumeratoreAnnuale"),
                    QStringLiteral("FK_NUMERATORE=") + QString::number(fkNumeratore));
        return 0;
    }
    const QString id = QString::number(fkNumeratore);
    const QString where =
        QStringLiteral(" WHERE FK_NUMERATORE = ") + id + QStringLiteral(" AND ANNO = ") + sqlText(anno);
    const QString insertFirst = QStringLiteral("INSERT INTO Contatori (FK_NUMERATORE, ANNO, NUMERO, `NOTE`) VALUES (")
        + id + QStringLiteral(", ") + sqlText(anno) + QStringLiteral(", 1, ") + sqlText(QStringLiteral("n/d"))
        + QLatin1Char(')');

    if (gAdoSqlServer().TipoServer() == TipoServer::MySql) {
        // One statement creates the counter at 1 or moves it on, and keeps the
        // row locked until the caller's transaction ends: a second workstation
        // waits there and then moves on from the number already taken, also
        // for the first number of a year.
        if (!gAdoSqlServer().executeSQL(insertFirst + QStringLiteral(" ON DUPLICATE KEY UPDATE NUMERO = NUMERO + 1"),
                                        tag("getNewNumeratoreAnnuale")))
            return 0;
        const QVariant numero = gAdoSqlServer().getValueBySQL(QStringLiteral("SELECT NUMERO FROM Contatori") + where,
                                                              tag("getNewNumeratoreAnnuale"));
        return numero.isValid() ? numero.toInt() : 0;
    }

    // Elsewhere the read locks the row (SQL Server's hint) or the whole
    // database (the file database's write transaction) until the caller's
    // transaction ends.
    bool exists = false;
    int numero = 1;
    {
        const cReader rs(QStringLiteral("SELECT NUMERO FROM Contatori \u2022S\u2022WITH (UPDLOCK, HOLDLOCK) "
                                        "\u2022/S\u2022WHERE FK_NUMERATORE = ")
                             + id + QStringLiteral(" AND ANNO =  ") + sqlText(anno),
                         tag("getNewNumeratoreAnnuale"));
        if (!rs)
            return 0;
        exists = !rs->eof();
        numero = (exists ? int(rs->integer(QStringLiteral("NUMERO"))) : 0) + 1;
    }
    const QString write =
        exists ? QStringLiteral("UPDATE Contatori SET NUMERO = ") + QString::number(numero) + where : insertFirst;
    return gAdoSqlServer().executeSQL(write, tag("getNewNumeratoreAnnuale")) ? numero : 0;
}

bool checkNumeroDocumento(int fkTipoDocumento, const QDate& data, int progressivo, int rid)
{
    const QVariant count =
        gAdoSqlServer().getValueBySQL(QStringLiteral("SELECT count(rid) FROM Movimenti WHERE ANNO = ")
                                          + QString::number(data.year()) + QStringLiteral(" AND FK_TipoDocumento = ")
                                          + QString::number(fkTipoDocumento) + QStringLiteral(" AND PROGRESSIVO = ")
                                          + QString::number(progressivo) + QStringLiteral(" AND RID <> ")
                                          + QString::number(rid),
                                      tag("checkNumeroDocumento"));
    return count.isValid() && count.toInt() <= 0;
}

bool getFlexCounter(int fkTipoDocumento)
{
    const QVariant flex =
        gAdoSqlServer().getValueBySQL(QStringLiteral("SELECT FLEXCOUNTER FROM TipoDocumenti WHERE RID = ")
                                          + QString::number(fkTipoDocumento),
                                      tag("getFlexCounter"));
    return flex.isValid() && !flex.isNull() && flex.toInt() != 0;
}

bool checkNumeroData(int fkTipoDocumento, const QDate& data, int progressivo, int rid)
{
    const std::optional<int> before = neighbour(fkTipoDocumento, data, rid, true, 0);
    if (!before || *before >= progressivo)
        return false;
    const std::optional<int> after = neighbour(fkTipoDocumento, data, rid, false, 65535);
    return after && *after > progressivo;
}
