#include "printing/cartellareport.h"

#include <QDir>
#include <QFile>

namespace {
const QString kRisorse = QStringLiteral(":/reports");
}

QStringList modelliReportForniti()
{
    return QDir(kRisorse).entryList({QStringLiteral("*.rpt")}, QDir::Files, QDir::Name);
}

int installaModelliReport(const QString& cartella)
{
    if (cartella.isEmpty() || !QDir().mkpath(cartella))
        return -1;
    const QDir target(cartella);
    int copiati = 0;
    for (const QString& nome : modelliReportForniti()) {
        const QString destinazione = target.filePath(nome);
        if (QFile::exists(destinazione))
            continue;
        if (!QFile::copy(kRisorse + QLatin1Char('/') + nome, destinazione))
            return -1;
        // Files from the resources are read-only: the copy is the user's to change.
        QFile::setPermissions(destinazione, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup | QFile::ReadOther);
        ++copiati;
    }
    return copiati;
}
