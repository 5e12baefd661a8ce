#include "common/valuecheck.h"

#include "common/italiantext.h"

#include <QDate>

namespace {

const QDate kPrimaData(1753, 1, 1);
const QDate kUltimaData(9999, 12, 31);

// "<title>: <campo><detail>." or "<title><detail>." without a field.
QString messaggio(const QString& titolo, const QString& campo, const QString& dettaglio)
{
    QString text = titolo;
    if (!campo.isEmpty())
        text += QStringLiteral(": ") + campo;
    return text + dettaglio + QLatin1Char('.');
}

} // namespace

bool isDataValida(const QDate& data) { return data.isValid() && data >= kPrimaData && data <= kUltimaData; }

QString erroreData(const QDate& data, const QString& campo)
{
    if (!data.isValid())
        return messaggio(QStringLiteral("Data non valida"), campo, QStringLiteral(" (data mancante o inesistente)"));
    if (!isDataValida(data))
        return messaggio(QStringLiteral("Data non valida"), campo,
                         QStringLiteral(" (la data deve essere compresa tra il ") + formatDate(kPrimaData)
                             + QStringLiteral(" e il ") + formatDate(kUltimaData) + QLatin1Char(')'));
    return QString();
}

QString erroreQuantita(Single quantita, const QString& campo)
{
    if (isSingleValida(quantita))
        return QString();
    return messaggio(QStringLiteral("Quantità non valida"), campo, QStringLiteral(" (il valore non è un numero)"));
}

QString erroreImporto(double importo, const QString& campo)
{
    if (std::isnan(importo))
        return messaggio(QStringLiteral("Importo non valido"), campo, QStringLiteral(" (il valore non è un numero)"));
    if (!Currency::fromDoubleChecked(importo))
        return messaggioImportoFuoriLimiti(campo);
    return QString();
}

QString messaggioImportoFuoriLimiti(const QString& campo)
{
    return messaggio(QStringLiteral("Importo fuori dai limiti consentiti"), campo,
                     QStringLiteral(" (sono ammessi importi da ") + formattaImporto(Currency::min(), 4)
                         + QStringLiteral(" a ") + formattaImporto(Currency::max(), 4) + QLatin1Char(')'));
}
