#pragma once
// Kit rows. A product whose code starts with the kit character (option
// DistintaBase) stands for its bill of material, which has the same code.
// On a document it becomes a kit row followed by one row per component: the
// components carry the stock and the amounts, the kit row shows their sums
// and is stored with amounts of 0. The components stay hidden until the kit
// is opened, and hold the kit's key in column IdDistintaBase.

#include "common/currency.h"
#include "common/single.h"

#include <QList>
#include <QString>

struct DocumentoPrezzi;
class GrigliaDocumento;

// A component of a kit as a document row takes it.
struct ComponenteKit
{
    int prodotto = 0;
    QString codice, descrizione;
    Single quantita = 0; // for one kit
    // Its price in the bill of material, or, when that is 0, the price the
    // document's side gives the product.
    Currency prezzo;
    int iva = 0;
    Single valoreIva = 0;
    QString codIva, descIva;
    int um = 0;
    QString codUM;
};

// The components of the kit with this code, in their order; empty for a
// kit without components (or when the read failed, already told).
QList<ComponenteKit> getComponentiKit(const QString& codice, const DocumentoPrezzi& prezzi,
                                      const QString& tag = QStringLiteral("frmMovimento.getProdFigli"));

// The price of one kit: each component's price times its quantity.
Currency getPrezzoTotaleDistinta(const QString& codice, const DocumentoPrezzi& prezzi);

// The sums of the stored components of a stored kit row, for one kit: list
// price, net price and net price with VAT.
struct TotaliFigli
{
    Currency prezzo, netto, ivato;
};
TotaliFigli getTotaliFigli(int ridPadre);

// --- the components of the kit at rigaPadre, when the kit row is written
// again. Each walk stops at the first row that isn't a component.

// The kit's quantity becomes `quantita`: each component keeps its share of
// the kit's old quantity (two decimals), its amount follows, and it is
// marked changed; the kit row shows the new sums. False, with nothing
// changed, when the kit's old quantity is 0.
bool aggiornaQTFigli(GrigliaDocumento& griglia, int rigaPadre, Single quantita, int decimali);
// The kit's discounts go to its components.
void aggiornaScontiFigli(GrigliaDocumento& griglia, int rigaPadre, Single s1, Single s2, Single s3);
// Each component's taxable amount and VAT follow its own quantity.
void aggiornaStatisticheFigli(GrigliaDocumento& griglia, int rigaPadre, int decimali);
// The kit row is deleted: so are its components (hidden until the save).
void delFigli(GrigliaDocumento& griglia, int rigaPadre);
