#include "core/appinfo.h"

QString versionText() { return QStringLiteral(ORVANTIS_VERSION); }

QString mainWindowTitle(const QDate& today)
{
    return QStringLiteral("Orvantis v.") + versionText()
        + QStringLiteral(" - Soluzione Gestionale per le Imprese by Tavernalogic\u00A92007-")
        + QString::number(today.year());
}
