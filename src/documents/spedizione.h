#pragma once
// What a document that accompanies goods says about the shipment: the
// delivery address, date and time, weight and parcels, the coded fields and
// the texts of the special list. The document holds it until it is saved.

#include "common/single.h"

#include <QDate>
#include <QString>

struct DatiSpedizione
{
    QString via, civico, citta, provincia, cap, telefono, fax;
    QDate data;
    QString ora; // "hh:mm", empty for none
    Single peso = 0;
    qint16 colli = 0;
    // Keys of the coded fields: goods' appearance, transport reason, carrier,
    // payment term (a payment chosen here replaces the document's on save).
    int aspetto = 0, causaleTrasporto = 0, spedizione = 0, pagamento = 0;
    QString destElencoSpeciale, documElencoSpeciale, autElencoSpeciale;
};
