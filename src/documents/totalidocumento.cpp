#include "documents/totalidocumento.h"

#include "common/italiantext.h"
#include "common/single.h"

TotaliDocumento calcolaTotali(const QList<RigaPerTotali>& righe, int decimali, const QString& rdaPerc,
                              const QString& rdaPercSu)
{
    Currency totImponibile, totDocumento;
    qint16 contate = 0;
    Single quantita = 0;
    for (const RigaPerTotali& riga : righe) {
        if (!riga.contata)
            continue;
        // The row's taxable amount as two decimals show it; its VAT unrounded.
        const Currency imp = getValoreCurrency(formattaImporto(getValoreCurrency(riga.imponibile), 2));
        const Single a = getValoreSingle(riga.aliquota);
        const Currency iva = Currency::fromDouble(imp.toDouble() * static_cast<double>(a) / 100.0);
        totImponibile += imp;
        totDocumento += imp + iva;
        ++contate;
        quantita = toSingle(static_cast<double>(quantita) + static_cast<double>(getValoreSingle(riga.quantita)));
    }
    TotaliDocumento t;
    t.totDocumento = totDocumento;
    t.imponibile = formattaImporto(totImponibile, 2);
    t.iva = formattaImporto(totDocumento - totImponibile, 2);
    // The total is the sum of the two as shown, so the printed addition holds.
    t.importo = formattaImporto(getValoreCurrency(t.imponibile) + getValoreCurrency(t.iva), 2);
    t.righe = QString::number(contate);
    t.quantita = formattaImporto(quantita, decimali);
    if (getValoreCurrency(rdaPerc) > Currency()) {
        const double p = static_cast<double>(getValoreSingle(rdaPerc));
        const double su = static_cast<double>(getValoreSingle(rdaPercSu));
        const Currency base = Currency::fromDouble(getValoreCurrency(t.imponibile).toDouble() * su / 100.0);
        const Currency rda = Currency::fromDouble(base.toDouble() * p / 100.0);
        t.rda = formattaImporto(rda, 2);
        t.daPagare = formattaImporto(totDocumento - rda, 2);
    }
    return t;
}
