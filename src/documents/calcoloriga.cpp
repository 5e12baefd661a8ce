#include "documents/calcoloriga.h"

#include "common/italiantext.h"

namespace {

struct Sconti
{
    Single s1, s2, s3;
};

Sconti sconti(const EditorRiga& r)
{
    return {getValoreSingle(r.sconto1), getValoreSingle(r.sconto2), getValoreSingle(r.sconto3)};
}

QString zero(int decimali) { return formattaImporto(Currency(), decimali); }

// The taxable amount of the row under edit.
void imponibileRiga(EditorRiga& r, int decimali)
{
    r.totRigaImponibile =
        formattaImporto(CyMul(getValoreCurrency(r.prezzoNetto), getValoreCurrency(r.quantita)), decimali);
}

// The VAT-included price of the net price shown, and its tag.
void prezzoIvaInclusa(EditorRiga& r)
{
    r.prezzoIvaInclusa =
        formattaImporto(calcolaPrezzoLordo(getValoreCurrency(r.prezzoNetto), getValoreSingle(r.aliquota)), 2);
    r.tagPrezzoIvaInclusa = r.prezzoIvaInclusa;
}

bool prezziCalcolabili(const EditorRiga& r)
{
    return getValoreCurrency(r.prezzoListino) > Currency() && !r.aliquota.isEmpty();
}

void nettoDalListino(EditorRiga& r)
{
    r.tagPrezzoNetto =
        plainTextIt(calcolaPrezzoNetto(r, getValoreCurrency(r.prezzoListino), getValoreSingle(r.aliquota)));
}

} // namespace

Currency calcolaPrezzoNetto(EditorRiga& r, Currency prezzo, Single aliquota)
{
    const Sconti s = sconti(r);
    // The price through the three factors, left to right, at the extended
    // width until it becomes an amount.
    long double p = prezzo.toLongDouble();
    p = p * (1.0L - static_cast<long double>(s.s1) / 100.0L);
    p = p * (1.0L - static_cast<long double>(s.s2) / 100.0L);
    p = p * (1.0L - static_cast<long double>(s.s3) / 100.0L);
    const Currency scontoNetto = prezzo - Currency::fromLongDouble(p);
    r.scNetto = formattaImporto(scontoNetto, 6);
    const Currency netto = prezzo - Currency::fromDouble(static_cast<double>(getValoreSingle(r.scNetto)));
    r.totPrezzoNetto = formattaImporto(netto.toDouble() * static_cast<double>(getValoreSingle(r.quantita)), 6);
    r.ivaProdotto = formattaImporto(netto.toDouble() * (static_cast<double>(aliquota) / 100.0), 6);
    r.totIva = formattaImporto(mulSingle(getValoreSingle(r.quantita), getValoreSingle(r.ivaProdotto)), 6);
    r.totRiga = formattaImporto(getValoreCurrency(r.totPrezzoNetto) + getValoreCurrency(r.totIva), 6);
    return netto;
}

Currency calcolaPrezzoLordo(Currency prezzo, Single aliquota)
{
    return prezzo + Currency::fromDouble(prezzo.toDouble() * (static_cast<double>(aliquota) / 100.0));
}

bool setPrezzi(EditorRiga& r, bool prezziIvaInclusa, int decimali)
{
    if (!prezziIvaInclusa) {
        r.prezzoNetto = formattaImporto(getValoreCurrency(r.tagPrezzoNetto), decimali);
        r.tagPrezzoListino = formattaImporto(getValoreCurrency(r.tagPrezzoNetto), decimali);
        prezzoIvaInclusa(r);
        imponibileRiga(r, decimali);
        r.ultimoListino = r.prezzoListino;
        return true;
    }
    const Sconti s = sconti(r);
    for (const Single sconto : {s.s1, s.s2, s.s3})
        if (100.0 - static_cast<double>(sconto) == 0.0)
            return false; // the list price cannot be worked back
    const double l = getValoreCurrency(r.prezzoIvaInclusa).toDouble();
    const double a = getValoreCurrency(r.aliquota).toDouble();
    r.tagPrezzoNetto = formattaImporto(l / (1.0 + a / 100.0), decimali);
    r.prezzoNetto = formattaImporto(getValoreCurrency(r.tagPrezzoNetto), decimali);
    // Back through the discounts, innermost first, an amount at each step.
    Currency p = Currency::fromDouble(getValoreCurrency(r.prezzoNetto).toDouble()
                                      / ((100.0 - static_cast<double>(s.s3)) / 100.0));
    p = Currency::fromDouble(p.toDouble() / ((100.0 - static_cast<double>(s.s2)) / 100.0));
    p = Currency::fromDouble(p.toDouble() / ((100.0 - static_cast<double>(s.s1)) / 100.0));
    r.prezzoListino = formattaImporto(p, decimali);
    r.tagPrezzoListino = r.prezzoListino;
    r.ultimoListino = r.prezzoListino;
    return true;
}

bool prezzoListinoLasciato(EditorRiga& r, int decimali)
{
    if (r.prezzoListino.trimmed().isEmpty()) {
        r.prezzoListino = QStringLiteral("0");
        r.ultimoListino = r.prezzoListino;
    }
    if (!prezziCalcolabili(r)) {
        r.prezzoListino = zero(decimali);
        r.sconto1 = r.sconto2 = r.sconto3 = zero(2);
        r.prezzoIvaInclusa = r.tagPrezzoIvaInclusa = zero(2);
        return false;
    }
    nettoDalListino(r);
    setPrezzi(r, false, decimali);
    return true;
}

void scontoLasciato(EditorRiga& r, int decimali)
{
    if (!prezziCalcolabili(r))
        return;
    for (QString* sconto : {&r.sconto1, &r.sconto2, &r.sconto3})
        if (sconto->trimmed().isEmpty())
            *sconto = zero(2);
    nettoDalListino(r);
    setPrezzi(r, false, decimali);
}

void prezzoNettoLasciato(EditorRiga& r, int decimali)
{
    if (r.prezzoNetto.trimmed().isEmpty())
        r.prezzoNetto = QStringLiteral("0");
    // A net price typed over the one computed: the discounts go, and it
    // becomes the list price.
    if (getValoreCurrency(r.prezzoNetto) != getValoreCurrency(r.tagPrezzoListino)) {
        r.sconto1 = r.sconto2 = r.sconto3 = zero(2);
        r.prezzoListino = formattaImporto(getValoreCurrency(r.prezzoNetto), decimali);
        r.tagPrezzoListino = r.prezzoListino;
    }
    prezzoIvaInclusa(r);
    imponibileRiga(r, decimali);
}

void prezzoIvaInclusaLasciato(EditorRiga& r, int decimali)
{
    if (r.prezzoIvaInclusa == r.tagPrezzoIvaInclusa)
        return;
    const double l = getValoreCurrency(r.prezzoIvaInclusa).toDouble();
    const double a = static_cast<double>(getValoreSingle(r.aliquota));
    r.prezzoNetto = formattaImporto(l / (1.0 + a / 100.0), decimali);
    prezzoNettoLasciato(r, decimali);
    imponibileRiga(r, decimali);
}

void quantitaLasciata(EditorRiga& r, int decimali)
{
    if (!isNumericIt(r.quantita))
        r.quantita = zero(decimali);
    imponibileRiga(r, decimali);
}

bool aliquotaCambiata(EditorRiga& r, bool prezziIvaInclusa, int decimali)
{
    nettoDalListino(r);
    return setPrezzi(r, prezziIvaInclusa, decimali);
}

void ricalcolaSconti(EditorRiga& r, int decimali)
{
    const Currency listino = getValoreCurrency(r.prezzoListino);
    if (listino > Currency()) {
        const double netto100 = CyMul(getValoreCurrency(r.prezzoNetto), Currency::fromUnits(100)).toDouble();
        r.sconto1 = formattaImporto(toSingle(100.0 - netto100 / listino.toDouble()), 2);
    } else {
        r.sconto1 = zero(2);
    }
    r.sconto2 = r.sconto3 = zero(decimali);
}

void confermaRiga(EditorRiga& r, int decimali)
{
    nettoDalListino(r);
    setPrezzi(r, false, decimali);
}

CelleRiga celleRiga(const EditorRiga& r, Single q, int decimali)
{
    const Sconti s = sconti(r);
    const Currency netto = getValoreCurrency(r.tagPrezzoNetto);
    const Currency listino = getValoreCurrency(r.prezzoListino);
    const Single aliquota = getValoreSingle(r.aliquota);
    const Single ivaProd = getValoreSingle(r.ivaProdotto);
    CelleRiga c;
    c.quantita = formattaImporto(q, decimali);
    c.listino = formattaImporto(listino, decimali);
    c.sc1 = plainTextIt(s.s1);
    c.sc2 = plainTextIt(s.s2);
    c.sc3 = plainTextIt(s.s3);
    c.sconti = c.sc1 + QLatin1Char('+') + c.sc2 + QLatin1Char('+') + c.sc3;
    c.netto = formattaImporto(netto, decimali);
    c.nettoEsteso = plainTextIt(netto);
    c.imponibile = formattaImporto(netto.toDouble() * static_cast<double>(q), decimali);
    c.iva = formattaImporto(aliquota, 2);
    // Worked from the list price, not from the rounded net price.
    c.importo =
        formattaImporto(listino.toDouble() * (1.0 + static_cast<double>(aliquota) / 100.0)
                            * (1.0 - static_cast<double>(s.s1) / 100.0) * (1.0 - static_cast<double>(s.s2) / 100.0)
                            * (1.0 - static_cast<double>(s.s3) / 100.0) * static_cast<double>(q),
                        decimali);
    c.scNetto = plainTextIt(getValoreSingle(r.scNetto));
    c.ivaProd = plainTextIt(ivaProd);
    c.totIvaProd = plainTextIt(mulSingle(q, ivaProd));
    return c;
}
