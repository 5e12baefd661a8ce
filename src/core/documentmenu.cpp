#include "core/documentmenu.h"

#include "data/cadosqlserver.h"
#include "data/recordset.h"
#include "data/scoped.h"

QList<DocumentMenuEntry> documentMenuEntries()
{
    QList<DocumentMenuEntry> entries;
    const cReader rs(
        QStringLiteral(
            "SELECT RID, DESCRIZIONE FROM TipoDocumenti WHERE (HIDEMENU IS NULL OR HIDEMENU = 0) ORDER BY DESCRIZIONE"),
        QStringLiteral("fillMenuDocumenti"));
    for (; rs && !rs->eof(); rs->moveNext())
        entries.append({int(rs->integer(QStringLiteral("RID"))), rs->text(QStringLiteral("DESCRIZIONE"))});
    return entries;
}

QString documentMenuKey(int rid) { return QStringLiteral("D_") + QString::number(rid); }

int documentMenuRid(const QString& key)
{
    if (!key.startsWith(QLatin1Char('D')))
        return -1;
    bool ok = false;
    const int rid = QString(key).remove(QStringLiteral("D_")).toInt(&ok);
    return ok ? rid : -1;
}
