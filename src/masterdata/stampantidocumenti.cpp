#include "masterdata/stampantidocumenti.h"

#include "core/serversettings.h"

#include <QSettings>

namespace {
QString key(const QString& codice) { return QStringLiteral("StampantiDocumenti/") + codice; }
} // namespace

QString getStampanteDocumento(const QString& codice)
{
    if (codice.isEmpty())
        return QString();
    return machineSettings().value(key(codice)).toString();
}

void setStampanteDocumento(const QString& codice, const QString& stampante)
{
    if (codice.isEmpty())
        return;
    machineSettings().setValue(key(codice), stampante);
    machineSettings().sync();
}
