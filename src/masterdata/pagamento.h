#pragma once
// Payment terms: the instalments of a term and the rule they obey. The rows
// are kept as the screen shows them (days and percent as text), so that the
// grid and the tests speak the same values.

#include <QList>
#include <QString>

struct RataPagamento
{
    QString giorni;      // "30"
    QString percentuale; // "33,33"
};

// The rows of a grid of n instalments, all at "0" days and "0,00" percent;
// none below 1.
QList<RataPagamento> rateVuote(int numero);

// The percent of all instalments plus the down payment is exactly 100, in
// currency arithmetic.
bool percentualeEsatta(const QList<RataPagamento>& rate, const QString& acconto);
QString messaggioPercentuale();

// The instalments of a term in their order.
QList<RataPagamento> leggiRate(int fkPagamento);

// Inside the caller's transaction: the term's instalments replaced by these,
// in this order. False on a failure already reported.
bool saveDettagliPagamento(int fkPagamento, const QList<RataPagamento>& rate);

// The term and its instalments, in one transaction. False on a failure
// already reported (rolled back).
bool eliminaPagamento(int rid);
