#pragma once
// The document types offered by the "Documenti" menu and the drop-down of the
// toolbar: every type not marked HIDEMENU, in description order.

#include <QList>
#include <QString>

struct DocumentMenuEntry
{
    int rid = 0;
    QString descrizione;
};

QList<DocumentMenuEntry> documentMenuEntries();

// The key of a drop-down entry: "D_" + RID ("D_0" is the document selection).
QString documentMenuKey(int rid);
// The RID of a drop-down key, -1 when the key is not a document key.
int documentMenuRid(const QString& key);
