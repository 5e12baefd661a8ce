#include "documents/editordocumento.h"

#include "common/italiantext.h"

EditorDocumento::EditorDocumento(int decimali, const QString& carattereDistinta)
    : m_decimali(decimali)
    , m_carattereDistinta(carattereDistinta)
{
    pulisciRiga();
    calcolaTotali();
}

void EditorDocumento::pulisciRiga()
{
    riga = EditorRiga();
    riga.quantita = formattaImporto(Currency::fromUnits(1), m_decimali);
    riga.sconto1 = riga.sconto2 = riga.sconto3 = formattaImporto(Currency(), 2);
    riga.prezzoListino = riga.prezzoNetto = formattaImporto(Currency(), m_decimali);
    riga.prezzoIvaInclusa = formattaImporto(Currency(), 2);
    dati = DatiRiga();
    dati.taglio = QStringLiteral("-1");
    posizione = -1;
    aggiungiPrecedente = false;
}

int EditorDocumento::confermaRiga()
{
    if (dati.prodotto <= 0)
        return -1;
    ::confermaRiga(riga, m_decimali);
    Single q = getValoreSingle(riga.quantita);
    int destinazione = posizione;
    if (destinazione < 0 && aggiungiPrecedente) {
        // An equal row takes the quantity instead of a second row.
        const CelleRiga prova = celleRiga(riga, q, m_decimali);
        destinazione = m_griglia.controllaPresenzaElemento(dati, prova);
        if (destinazione >= 0)
            q = toSingle(static_cast<double>(q)
                         + static_cast<double>(getValoreSingle(m_griglia.cella(destinazione, colonna::Quantita))));
    }
    if (destinazione >= 0 && destinazione != posizione) {
        // The amounts of the merged row follow its whole quantity.
        riga.quantita = formattaImporto(q, m_decimali);
        ::confermaRiga(riga, m_decimali);
    }
    const int scritta = m_griglia.addElement(destinazione, dati, celleRiga(riga, q, m_decimali), aggiungiPrecedente,
                                             posizione < 0 ? corrente : -1);
    calcolaTotali();
    pulisciRiga();
    corrente = scritta;
    return scritta;
}

bool EditorDocumento::getRowFromGrid(int r)
{
    if (r < 0 || r >= m_griglia.righe() || !m_griglia.visibile(r))
        return false;
    // A child of a stored kit is kept by its parent.
    bool numerico = false;
    m_griglia.cella(r, colonna::IdDistintaBase).toInt(&numerico);
    if (numerico)
        return false;
    pulisciRiga();
    const QStringList& c = m_griglia.riga(r);
    dati.prodotto = c.at(colonna::IdProdotto).toInt();
    dati.marca = c.at(colonna::Marca);
    dati.codice = c.at(colonna::Codice);
    dati.descrizione = c.at(colonna::Descrizione);
    dati.iva = c.at(colonna::IdIva).toInt();
    dati.codIva = c.at(colonna::CodIva);
    dati.descIva = c.at(colonna::DescIva);
    dati.um = c.at(colonna::IdUM).toInt();
    dati.codUM = c.at(colonna::UM);
    dati.taglio = c.at(colonna::Taglio);
    dati.elencoSpeciale = c.at(colonna::ElencoSpeciale) == QLatin1String("1");
    dati.padre = c.at(colonna::IdDistintaBase);
    riga.aliquota = plainTextIt(getValoreSingle(c.at(colonna::Iva)));
    riga.quantita = c.at(colonna::Quantita);
    riga.prezzoListino = c.at(colonna::PrezzoListino);
    riga.ultimoListino = riga.prezzoListino;
    riga.tagPrezzoNetto = c.at(colonna::NettoEsteso);
    riga.prezzoNetto = formattaImporto(getValoreCurrency(riga.tagPrezzoNetto), m_decimali);
    riga.tagPrezzoListino = riga.prezzoNetto;
    riga.prezzoIvaInclusa =
        formattaImporto(calcolaPrezzoLordo(getValoreCurrency(riga.prezzoNetto), getValoreSingle(riga.aliquota)), 2);
    riga.tagPrezzoIvaInclusa = riga.prezzoIvaInclusa;
    riga.totRigaImponibile =
        formattaImporto(CyMul(getValoreCurrency(riga.prezzoNetto), getValoreCurrency(riga.quantita)), m_decimali);
    riga.sconto1 = c.at(colonna::Sc1);
    riga.sconto2 = c.at(colonna::Sc2);
    riga.sconto3 = c.at(colonna::Sc3);
    posizione = r;
    corrente = r;
    calcolaTotali();
    return true;
}

void EditorDocumento::eliminaRiga(int r)
{
    if (r < 0 || r >= m_griglia.righe() || m_griglia.stato(r) == gestione::Eliminata)
        return;
    m_griglia.eliminaRiga(r);
    calcolaTotali();
    pulisciRiga();
    corrente = -1;
}

bool EditorDocumento::incollaRiga(const QString& copiato)
{
    QStringList celle = GrigliaDocumento::celleCopiate(copiato);
    if (celle.size() < colonna::Numero)
        return false;
    celle[colonna::Icona].clear();
    celle[colonna::IdDistintaBase].clear();
    const int r = m_griglia.aggiungiCaricata(celle);
    m_griglia.setCella(r, colonna::Gestione, QString::number(gestione::Nuova));
    m_griglia.setCella(r, colonna::Taglio, QStringLiteral("-1"));
    calcolaTotali();
    pulisciRiga();
    corrente = r;
    return true;
}

void EditorDocumento::calcolaTotali()
{
    m_totali = ::calcolaTotali(m_griglia.perTotali(m_carattereDistinta), m_decimali, rdaPerc, rdaPercSu);
}
