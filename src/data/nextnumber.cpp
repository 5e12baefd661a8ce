#include "data/nextnumber.h"

#include "common/errorlog.h"
#include "data/cadosqlserver.h"
#include "data/scoped.h"
#include "data/sqldialect.h"

namespace {

constexpr int kNone = 0; // MAX of an empty table

// The highest value, kNone for none, -1 on a failure.
int highest(const QString& table, const QString& column, const QString& hint, const QString& tag)
{
    const QVariant v =
        gAdoSqlServer().getValueBySQL(QStringLiteral("SELECT MAX(") + column + QStringLiteral(") FROM ") + table + hint,
                                      tag);
    if (!v.isValid())
        return -1;
    return v.isNull() ? kNone : v.toInt();
}

} // namespace

int nextNumber(const QString& table, const QString& column, const QString& tag)
{
    cAdoSqlServer& db = gAdoSqlServer();
    if (!db.inTransaction()) {
        Err().raise(9998, QStringLiteral("bOrvantisCommon"),
                    QStringLiteral("Numero progressivo richiesto fuori da una transazione."));
        notifyError(QStringLiteral("bOrvantisCommon"), QStringLiteral("nextNumber"), table + QLatin1Char('.') + column);
        return -1;
    }
    switch (db.TipoServer()) {
    case TipoServer::SqlServer: {
        // The range lock of the read holds until the transaction ends.
        const int top = highest(table, column, QStringLiteral(" WITH (UPDLOCK, HOLDLOCK)"), tag);
        return top < 0 ? -1 : top + 1;
    }
    case TipoServer::MySql: {
        // Whoever draws locks the row of the highest number first. A second
        // workstation waits on that lock, and once it has it reads the
        // highest again: when the first has added a row meanwhile, it moves
        // on to that row. The lock is kept until the transaction ends.
        int top = highest(table, column, QString(), tag);
        if (top == kNone) {
            // An empty table has no row to lock: whoever draws a first number
            // takes turns on the one row of the schema version, then reads again.
            const cReader turno(QStringLiteral("SELECT VERSIONE FROM SchemaVersion FOR UPDATE"), tag);
            if (!turno)
                return -1;
            top = highest(table, column, QString(), tag);
        }
        while (top > kNone) {
            if (!db.executeSQL(QStringLiteral("UPDATE ") + table + QStringLiteral(" SET ") + column
                                   + QStringLiteral(" = ") + column + QStringLiteral(" WHERE ") + column
                                   + QStringLiteral(" = ") + QString::number(top),
                               tag))
                return -1;
            const int again = highest(table, column, QString(), tag);
            if (again == top)
                break;
            top = again;
        }
        return top < 0 ? -1 : top + 1;
    }
    default: {
        // The file database's write transaction already holds the whole file.
        const int top = highest(table, column, QString(), tag);
        return top < 0 ? -1 : top + 1;
    }
    }
}
