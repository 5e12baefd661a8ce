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

class GrigliaDocumento;

// The weight of one unit of a product, from its card: 0 when the card has
// none or is gone.
Single getPesoProd(int rid);
// The parcels of one unit of a product, from its card: 0 when the card has
// none or is gone. A card whose value does not fit 16 bits is reported and
// gives 0.
qint16 getColliProd(int rid);

// Weight and parcels of the document's rows: each row that is not deleted
// and not a kit child (a kit counts by its parent) adds its product's
// weight and parcels times its quantity, in Single. The parcels are made
// whole at every row (ties to even). A total that does not fit 16 bits
// stops with a box and gives false: neither value is then set.
bool getNewPesoColli(const GrigliaDocumento& griglia, qint16& colli, Single& peso);

// Offers the delivery data of a customer (or supplier) card to a document:
// the delivery address with the office telephone and the fax, when the
// document has no address of its own yet (an address typed for this
// document is never overwritten by opening the dialog again); the
// authorisation and the identity document of the special list, each when
// still blank; the recipient of the special list last used on this
// machine (setting "sDestElencoSpeciale"), when still blank. False when
// the card is not found: then only the recipient is offered.
bool getInfoConsegnaCliente(int ridAnagrafica, DatiSpedizione& dati);

// The recipient of the special list remembered on this machine.
QString destElencoSpecialeSalvata();
void salvaDestElencoSpeciale(const QString& destinazione);

// How the dialog shows weight and parcels: the weight with two decimals
// when above 0, the parcels when at least 1; blank otherwise.
QString testoPeso(Single peso);
QString testoColli(qint16 colli);

// The button that brings weight and parcels up to date: compares the new
// values with the fields as shown. Equal, it says so; otherwise it asks,
// and on Yes gives the texts to put in the two fields.
struct AggiornamentoPesoColli
{
    bool aggiorna = false;
    QString peso, colli;
};
AggiornamentoPesoColli aggiornaPesoColli(const QString& pesoMostrato, const QString& colliMostrati, Single nuovoPeso,
                                         qint16 nuoviColli);
