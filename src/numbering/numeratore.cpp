#include "numeratore.h"

#include "cadosqlserver.h"
#include "recordset.h"
#include "sqlliteral.h"

#include <QDate>
#include <optional>

namespace {

const QString kModule = QStringLiteral("bOrvantis");

QString tag(const char* procedure)
{
    return kModule + QLatin1Char('.') + QLatin1String(procedure);
}

// The highest number dated before, or the lowest dated after, the date.
// No row gives the sentinel; a failed statement gives nothing.
std::optional<int> neighbour(int fkTipoDocumento, const QDate& data, int rid, bool before, int sentinel)
{
    QString sql = QStringLiteral("SELECT TOP 1 Progressivo, Data FROM Movimenti WHERE ANNO = ") + QString::number(data.year())
        + QStringLiteral(" AND FK_TipoDocumento = ") + QString::number(fkTipoDocumento)
        + (before ? QStringLiteral(" AND Data < ") : QStringLiteral(" AND Data > ")) + gAdoSqlServer().getSQLDate(data);
    if (rid > 0)
        sql += QStringLiteral(" AND RID <> ") + QString::number(rid);
    sql += before ? QStringLiteral(" ORDER BY Progressivo DESC") : QStringLiteral(" ORDER BY Progressivo ");
    RecordsetPtr rs = gAdoSqlServer().getNewRecordset(sql, tag("checkNumeroData"), 2, 1, 3);
    std::optional<int> found;
    if (rs) {
        found = rs->eof() ? sentinel : int(rs->integer(QStringLiteral("Progressivo")));
        rs->close();
    }
    gAdoSqlServer().disconnect();
    return found;
}

} // namespace

int getNewNumeratoreAnnuale(int fkNumeratore, const QString& anno)
{
    const QString id = QString::number(fkNumeratore);
    // The read locks the counter's row (or, when it is missing, the place it
    // would take) until the caller's transaction ends: a second workstation
    // waits here and then reads the number already taken. The file database
    // gets the same from its write transaction.
    QString sql = QStringLiteral("SELECT NUMERO FROM Contatori \u2022S\u2022WITH (UPDLOCK, HOLDLOCK) \u2022/S\u2022WHERE FK_NUMERATORE = ")
        + id + QStringLiteral(" AND ANNO =  ") + sqlText(anno) + QStringLiteral("\u2022M\u2022 FOR UPDATE\u2022/M\u2022");
    RecordsetPtr rs = gAdoSqlServer().getNewRecordset(sql, tag("getNewNumeratoreAnnuale"), 2, 1, 3);
    if (!rs) {
        gAdoSqlServer().disconnect();
        return 0;
    }
    const bool exists = !rs->eof();
    const int letto = exists ? int(rs->integer(QStringLiteral("NUMERO"))) : 0;
    rs->close();
    gAdoSqlServer().disconnect();

    const int numero = letto + 1;
    const QString write = exists
        ? QString(QStringLiteral("UPDATE Contatori SET NUMERO = ") + QString::number(numero)
                  + QStringLiteral(" WHERE FK_NUMERATORE = ") + id + QStringLiteral(" AND ANNO = ") + sqlText(anno))
        : QString(QStringLiteral("INSERT INTO Contatori (FK_NUMERATORE, ANNO, NUMERO, `NOTE`) VALUES (") + id
                  + QStringLiteral(", ") + sqlText(anno) + QStringLiteral(", 1, ") + sqlText(QStringLiteral("n/d"))
                  + QLatin1Char(')'));
    return gAdoSqlServer().executeSQL(write, tag("getNewNumeratoreAnnuale")) ? numero : 0;
}

bool checkNumeroDocumento(int fkTipoDocumento, const QDate& data, int progressivo, int rid)
{
    const QVariant count = gAdoSqlServer().getValueBySQL(
        QStringLiteral("SELECT count(rid) FROM Movimenti WHERE ANNO = ") + QString::number(data.year())
            + QStringLiteral(" AND FK_TipoDocumento = ") + QString::number(fkTipoDocumento) + QStringLiteral(" AND PROGRESSIVO = ")
            + QString::number(progressivo) + QStringLiteral(" AND RID <> ") + QString::number(rid),
        tag("checkNumeroDocumento"));
    return count.isValid() && count.toInt() <= 0;
}

bool getFlexCounter(int fkTipoDocumento)
{
    const QVariant flex = gAdoSqlServer().getValueBySQL(
        QStringLiteral("SELECT FLEXCOUNTER FROM TipoDocumenti WHERE RID = ") + QString::number(fkTipoDocumento),
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
