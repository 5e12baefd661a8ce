#pragma once
// The totals of a document, worked from its rows as the grid holds them and
// never read from the header: the taxable amount of each row rounded to two
// decimals, its VAT at four, the document's VAT as the difference, and the
// withholding on a share of the taxable amount.

#include "common/currency.h"

#include <QList>
#include <QString>

// What the totals read of a grid row.
struct RigaPerTotali
{
    QString quantita;    // column 9
    QString imponibile;  // column 20
    QString aliquota;    // column 21
    bool contata = true; // false for deleted rows and kit parents
};

struct TotaliDocumento
{
    QString imponibile, iva, importo; // two decimals
    QString righe;
    QString quantita; // DecimaliDopo decimals
    // The withholding strip; empty when the document has none.
    QString rda, daPagare;
    Currency totDocumento; // four decimals
};

// rdaPerc and rdaPercSu: the withholding percentage and the share of the
// taxable amount it applies to, as the strip shows them.
TotaliDocumento calcolaTotali(const QList<RigaPerTotali>& righe, int decimali, const QString& rdaPerc,
                              const QString& rdaPercSu);
