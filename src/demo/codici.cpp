#include "demo/codici.h"

#include "common/codicefiscale.h"
#include "common/ean13.h"

#include <QDate>
#include <QRandomGenerator>

namespace demo {

namespace {

// The letters of a name, upper case, accents and apostrophes dropped.
QString lettere(const QString& testo)
{
    QString risultato;
    for (const QChar c : testo.normalized(QString::NormalizationForm_D).toUpper())
        if (c >= QLatin1Char('A') && c <= QLatin1Char('Z'))
            risultato += c;
    return risultato;
}

bool vocale(QChar c) { return QStringLiteral("AEIOU").contains(c); }

void separa(const QString& testo, QString& consonanti, QString& vocali)
{
    for (const QChar c : lettere(testo))
        (vocale(c) ? vocali : consonanti) += c;
}

QString parteCognome(const QString& cognome)
{
    QString consonanti, vocali;
    separa(cognome, consonanti, vocali);
    return QString(consonanti + vocali + QStringLiteral("XXX")).left(3);
}

// A name with four consonants or more gives the first, third and fourth.
QString parteNome(const QString& nome)
{
    QString consonanti, vocali;
    separa(nome, consonanti, vocali);
    if (consonanti.size() >= 4)
        return QString(consonanti.at(0)) + consonanti.at(2) + consonanti.at(3);
    return QString(consonanti + vocali + QStringLiteral("XXX")).left(3);
}

} // namespace

QString codiceFiscale(const QString& cognome, const QString& nome, const QDate& nascita, bool donna,
                      const QString& catastale)
{
    static const QString kMesi = QStringLiteral("ABCDEHLMPRST");
    const QString base = parteCognome(cognome) + parteNome(nome)
        + QStringLiteral("%1").arg(nascita.year() % 100, 2, 10, QLatin1Char('0')) + kMesi.at(nascita.month() - 1)
        + QStringLiteral("%1").arg(nascita.day() + (donna ? 40 : 0), 2, 10, QLatin1Char('0')) + catastale;
    for (char c = 'A'; c <= 'Z'; ++c)
        if (checkCodiceFiscale(base + QLatin1Char(c)))
            return base + QLatin1Char(c);
    return QString();
}

QString partitaIva(QRandomGenerator& random, const QString& ufficio)
{
    for (;;) {
        const QString base = QStringLiteral("%1").arg(random.bounded(1, 10000000), 7, 10, QLatin1Char('0')) + ufficio;
        for (char d = '1'; d <= '9'; ++d)
            if (checkPartitaIva(base + QLatin1Char(d)))
                return base + QLatin1Char(d);
    }
}

QString ean13(const QString& dodici) { return dodici + QString::number(getEAN13ChekDigit(dodici)); }

} // namespace demo
