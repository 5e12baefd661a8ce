#include "documents/editordocumento.h"

#include "common/errorlog.h"
#include "common/italiantext.h"
#include "common/msgbox.h"
#include "data/cadosqlserver.h"
#include "data/scoped.h"
#include "documents/righekit.h"
#include "lookups/lookups.h"
#include "stock/giacenze.h"

namespace {

const QString kModulo = QStringLiteral("frmMovimento");

QString zero(int decimali) { return formattaImporto(Currency(), decimali); }

} // namespace

EditorDocumento::EditorDocumento(int decimali, const QString& carattereDistinta)
    : m_decimali(decimali)
    , m_carattereDistinta(carattereDistinta)
{
    prezzi.catPrezziNetti = gOptions().catPrezziNetti;
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
    colorePrezzo = CampiRiga::Colore::Normale;
    m_codiceAccettato.clear();
    m_testoProposto.clear();
    m_giacenza.clear();
}

int EditorDocumento::confermaRiga()
{
    if (dati.prodotto <= 0)
        return -1;
    if (multiselezione)
        aggiungiPrecedente = true;
    ::confermaRiga(riga, m_decimali);
    const bool kit = padreKit(dati.codice);
    const Single digitata = getValoreSingle(riga.quantita);
    Single q = digitata;
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
    if (taglioEffettivo && posizione < 0)
        dati.taglio = formattaImporto(getValoreCurrency(riga.tagPrezzoNetto), m_decimali);
    if (kit && posizione >= 0) {
        // A kit written again: its components follow its quantity and discounts.
        if (!aggiornaQTFigli(m_griglia, posizione, q, m_decimali))
            return -1;
        aggiornaScontiFigli(m_griglia, posizione, getValoreSingle(riga.sconto1), getValoreSingle(riga.sconto2),
                            getValoreSingle(riga.sconto3));
        aggiornaStatisticheFigli(m_griglia, posizione, m_decimali);
    }
    const int scritta = m_griglia.addElement(destinazione, dati, celleRiga(riga, q, m_decimali), aggiungiPrecedente,
                                             posizione < 0 ? corrente : -1, kit);
    if (kit && posizione < 0) {
        // A new kit, or more of one already there: its components come along.
        const int rid = m_griglia.cella(scritta, colonna::Rid).toInt();
        getProdFigli(rid > 0 ? QString::number(rid) : QLatin1Char('*') + QString::number(scritta), digitata, scritta);
    }
    calcolaTotali();
    pulisciRiga();
    corrente = scritta;
    return scritta;
}

void EditorDocumento::getProdFigli(const QString& chiave, Single quantita, int rigaPadre)
{
    Currency listino, netto, ivato;
    for (const ComponenteKit& c : getComponentiKit(dati.codice, lato())) {
        // The component's net price through the kit's discounts.
        EditorRiga r = riga;
        r.prezzoListino = plainTextIt(c.prezzo);
        r.aliquota = plainTextIt(c.valoreIva);
        const Currency n = calcolaPrezzoNetto(r, c.prezzo, c.valoreIva);
        r.tagPrezzoNetto = plainTextIt(n);
        DatiRiga d;
        d.prodotto = c.prodotto;
        d.codice = c.codice;
        d.descrizione = c.descrizione;
        d.iva = c.iva;
        d.codIva = c.codIva;
        d.descIva = c.descIva;
        d.um = c.um;
        d.codUM = c.codUM;
        d.taglio = QStringLiteral("-1");
        d.padre = chiave;
        Single q = mulSingle(c.quantita, quantita);
        int dove = -1;
        if (aggiungiPrecedente) {
            dove = m_griglia.controllaPresenzaElemento(d, celleRiga(r, q, m_decimali));
            if (dove >= 0)
                q = toSingle(static_cast<double>(q)
                             + static_cast<double>(getValoreSingle(m_griglia.cella(dove, colonna::Quantita))));
        }
        m_griglia.addElement(dove, d, celleRiga(r, q, m_decimali), aggiungiPrecedente, rigaPadre);
        const double perKit = static_cast<double>(c.quantita);
        listino += Currency::fromDouble(c.prezzo.toDouble() * perKit);
        netto += Currency::fromDouble(n.toDouble() * perKit);
        ivato += Currency::fromDouble(n.toDouble() * perKit * (1.0 + static_cast<double>(c.valoreIva) / 100.0));
    }
    m_griglia.setCella(rigaPadre, colonna::PrezzoListino, formattaImporto(listino, m_decimali));
    m_griglia.setCella(rigaPadre, colonna::PrezzoNetto, formattaImporto(netto, m_decimali));
    m_griglia.setCella(rigaPadre, colonna::Importo,
                       formattaImporto(getValoreCurrency(m_griglia.cella(rigaPadre, colonna::Importo)) + ivato,
                                       m_decimali));
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
    m_codiceAccettato = dati.codice;
    m_testoProposto = dati.descrizione;
    calcolaTotali();
    return true;
}

void EditorDocumento::eliminaRiga(int r)
{
    if (r < 0 || r >= m_griglia.righe() || m_griglia.stato(r) == gestione::Eliminata)
        return;
    if (m_griglia.padreKit(r, m_carattereDistinta))
        delFigli(m_griglia, r);
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

// --- choosing the product

bool EditorDocumento::rigaLibera(const QString& codice) const
{
    return !carattereRigaLibera.isEmpty() && codice.startsWith(carattereRigaLibera);
}

bool EditorDocumento::padreKit(const QString& codice) const
{
    return !m_carattereDistinta.isEmpty() && codice.startsWith(m_carattereDistinta);
}

DocumentoPrezzi EditorDocumento::lato() const
{
    DocumentoPrezzi d = prezzi;
    d.lblPos = posizione >= 0 ? posizione + 1 : 0;
    d.quantita = getValoreSingle(riga.quantita);
    d.decimaliDopo = m_decimali;
    return d;
}

int EditorDocumento::magazzinoGiacenza() const
{
    // The stock shown is that of the one warehouse side, if there is one.
    const bool origine = prezzi.tipoOrigine == 3, destinazione = prezzi.tipoDestinazione == 3;
    if (origine && !destinazione)
        return prezzi.origine;
    if (destinazione && !origine)
        return prezzi.destinazione;
    return 0;
}

void EditorDocumento::leggiGiacenza()
{
    const int magazzino = magazzinoGiacenza();
    m_giacenza = dati.prodotto <= 0 ? QString()
                                    : formattaImporto(magazzino > 0 ? getGiacenzaProdotto(dati.prodotto, magazzino)
                                                                    : getGiacenzaProdottoTotale(dati.prodotto),
                                                      2);
}

void EditorDocumento::svuotaProdotto()
{
    dati.prodotto = 0;
    dati.marca.clear();
    dati.codice.clear();
    dati.descrizione.clear();
    dati.iva = 0;
    dati.codIva.clear();
    dati.descIva.clear();
    riga.aliquota.clear();
    riga.sconto1 = riga.sconto2 = riga.sconto3 = zero(2);
    riga.prezzoListino = riga.tagPrezzoListino = zero(m_decimali);
    riga.prezzoIvaInclusa = riga.tagPrezzoIvaInclusa = zero(2);
    colorePrezzo = CampiRiga::Colore::Normale;
    m_giacenza.clear();
    m_codiceAccettato.clear();
    m_testoProposto.clear();
}

EsitoProdotto EditorDocumento::prodottoLasciato(const QString& codice, bool like)
{
    EsitoProdotto esito;
    if (codice == m_codiceAccettato)
        return esito;
    if (codice.isEmpty()) {
        svuotaProdotto();
        esito.tipo = EsitoProdotto::Svuotato;
        return esito;
    }
    ProdottoEsteso p;
    p.codice = codice;
    RicercaProdotto ricerca;
    ricerca.like = like;
    ricerca.multiSelect = true;
    ricerca.magazzino = magazzinoGiacenza();
    ricerca.chiediNuovo = true;
    if (!validaProdottoEsteso(p, ricerca)) {
        svuotaProdotto();
        esito.tipo = p.creaNuovo ? EsitoProdotto::NuovoProdotto : EsitoProdotto::Rifiutato;
        if (p.creaNuovo)
            esito.codice = codice;
        return esito;
    }
    if (posizione >= 0 && posizione < m_griglia.righe()
        && p.rid != m_griglia.cella(posizione, colonna::IdProdotto).toInt()) {
        // controllaModifica: a row keeps its product.
        msgBox(QStringLiteral("Attenzione non è possibile continuare con la modifica \n"
                              "di un prodotto diverso da quello selezionato \n"
                              "Per procedere sarà necessario rimuovere il prodotto selezionato."),
               vb::Information);
        pulisciRiga();
        esito.tipo = EsitoProdotto::Rifiutato;
        return esito;
    }
    const QStringList chiavi = p.elencoRid.split(QLatin1Char(','), Qt::SkipEmptyParts);
    if (chiavi.size() > 1) {
        multiselezioneProdotti(chiavi);
        esito.tipo = EsitoProdotto::Multipla;
        return esito;
    }
    return compila(p, true);
}

void EditorDocumento::prodottoCreato(int ridProdotto)
{
    ProdottoEsteso p;
    p.rid = ridProdotto;
    RicercaProdotto ricerca;
    ricerca.magazzino = magazzinoGiacenza();
    if (validaProdottoEsteso(p, ricerca))
        compila(p, true);
}

void EditorDocumento::multiselezioneProdotti(const QStringList& chiavi)
{
    m_nuovoProdotto = false;
    const bool molti = chiavi.size() > 1;
    int esistente = -1;
    for (const QString& chiave : chiavi) {
        const int rid = chiave.trimmed().toInt();
        if (rid < 1) {
            m_nuovoProdotto = true;
            break;
        }
        if (molti)
            pulisciRiga();
        if (!ignoraVerificaCodice) {
            // A product already in the grid is edited there, not added again.
            const int r = m_griglia.controllaProdottoPresente(rid);
            if (r >= 0) {
                esistente = r;
                continue;
            }
        }
        ProdottoEsteso p;
        p.rid = rid;
        RicercaProdotto ricerca;
        ricerca.magazzino = magazzinoGiacenza();
        if (!validaProdottoEsteso(p, ricerca))
            continue;
        compila(p, false);
        if (molti) {
            multiselezione = true;
            confermaRiga();
            multiselezione = false;
        }
    }
    if (esistente >= 0)
        getRowFromGrid(esistente);
}

EsitoProdotto EditorDocumento::compila(const ProdottoEsteso& p, bool controllaDuplicato)
{
    EsitoProdotto esito;
    if (controllaDuplicato && !ignoraVerificaCodice) {
        const int r = m_griglia.controllaProdottoPresente(p.rid);
        if (r >= 0 && r != posizione && getRowFromGrid(r)) {
            esito.tipo = EsitoProdotto::RigaEsistente;
            esito.riga = r;
            return esito;
        }
    }
    const bool libera = rigaLibera(p.codice);
    const bool digitato = !dati.descrizione.isEmpty() && dati.descrizione != m_testoProposto;
    dati.prodotto = p.rid;
    dati.marca = p.codMarca;
    dati.codice = p.codice;
    // A free row keeps the text the user typed.
    if (!(libera && digitato))
        dati.descrizione = m_testoProposto = p.descrizione;
    dati.um = p.fkUnitaMisura;
    dati.codUM = p.codUnitaMisura;
    dati.elencoSpeciale = p.elencoSpeciale != 0;

    // The VAT: a free row's from the options.
    QString codIva = libera ? QString() : p.codIva, descIva;
    int iva = libera ? ivaRigaLibera : 0;
    Single valore = 0;
    const bool conIva = validaIva(codIva, descIva, iva, valore);
    dati.iva = conIva ? iva : 0;
    dati.codIva = conIva ? codIva : QString();
    dati.descIva = conIva ? descIva : QString();
    riga.aliquota = conIva ? plainTextIt(valore) : QString();
    m_giacenza = formattaImporto(p.giacenza, 2);

    prezzoDaLato();
    if (getValoreSingle(riga.quantita) != 0)
        applicaSconti(false);
    if (taglioEffettivo)
        dati.taglio = formattaImporto(getValoreCurrency(riga.prezzoListino), 2);
    if (padreKit(p.codice)) {
        prezzoDistinta();
    } else if (!libera) {
        riga.tagPrezzoNetto = plainTextIt(
            calcolaPrezzoNetto(riga, getValoreCurrency(riga.prezzoListino), getValoreSingle(riga.aliquota)));
        setPrezzi(riga, false, m_decimali);
    }
    m_codiceAccettato = p.codice;
    esito.tipo = EsitoProdotto::Compilato;
    return esito;
}

void EditorDocumento::prezzoDaLato()
{
    // A customer on either side: the sales price; a supplier, or a
    // transfer: the purchase price.
    colorePrezzo = CampiRiga::Colore::Normale;
    quint8 personale = 0;
    bool applicaSconto = false;
    Currency prezzo;
    if (prezzi.tipoOrigine == 1 || prezzi.tipoDestinazione == 1)
        prezzo = getPrezzoVendita(prezzi.tipoOrigine == 1 ? prezzi.origine : prezzi.destinazione, dati.prodotto,
                                  personale, prezziIvaInclusa, applicaSconto);
    else if (prezzi.tipoOrigine == 2 || prezzi.tipoDestinazione == 2
             || (prezzi.tipoOrigine == 3 && prezzi.tipoDestinazione == 3))
        prezzo = getValoreCurrency(getPrezzoAcquisto(dati.prodotto));
    const QString testo = formattaImporto(prezzo, m_decimali);
    riga.prezzoListino = riga.tagPrezzoListino = riga.tagPrezzoNetto = riga.ultimoListino = testo;
    if (personale == 1) {
        // The counterparty's own price is a net price.
        riga.prezzoNetto = testo;
        colorePrezzo = CampiRiga::Colore::Rosso;
    }
}

void EditorDocumento::applicaSconti(bool force)
{
    CampiRiga campi{riga.prezzoListino, riga.sconto1, riga.sconto2, riga.sconto3, colorePrezzo, riga.ultimoListino};
    bool fatto = false;
    setSconti(dati.prodotto, force, fatto, campi, lato());
    riga.prezzoListino = campi.txtPrezzoListino;
    riga.sconto1 = campi.txtSconto1;
    riga.sconto2 = campi.txtSconto2;
    riga.sconto3 = campi.txtSconto3;
    riga.ultimoListino = campi.ultimoPrezzo;
    colorePrezzo = campi.colorePrezzo;
    if (fatto)
        scontoLasciato(riga, m_decimali);
}

void EditorDocumento::prezzoDistinta()
{
    const Currency totale = getPrezzoTotaleDistinta(dati.codice, lato());
    riga.prezzoListino = riga.prezzoNetto = formattaImporto(totale, m_decimali);
    riga.tagPrezzoListino = riga.tagPrezzoNetto = riga.prezzoListino;
    riga.prezzoIvaInclusa = riga.tagPrezzoIvaInclusa =
        formattaImporto(calcolaPrezzoLordo(totale, getValoreSingle(riga.aliquota)), 2);
    riga.totRigaImponibile = formattaImporto(CyMul(totale, getValoreCurrency(riga.quantita)), m_decimali);
}

// --- leaving the price fields

void EditorDocumento::quantitaLasciata()
{
    if (!isNumericIt(riga.quantita))
        riga.quantita = zero(m_decimali);
    if (getValoreSingle(riga.quantita) != 0 && dati.prodotto > 0)
        applicaSconti(false);
    ::quantitaLasciata(riga, m_decimali);
}

bool EditorDocumento::prezzoListinoLasciato(bool modificaPrezzoAcquisto)
{
    if (riga.prezzoListino.trimmed().isEmpty())
        riga.prezzoListino = riga.ultimoListino = QStringLiteral("0");
    if (getValoreCurrency(riga.prezzoListino) <= Currency() || riga.aliquota.isEmpty())
        return ::prezzoListinoLasciato(riga, m_decimali);
    riga.tagPrezzoNetto =
        plainTextIt(calcolaPrezzoNetto(riga, getValoreCurrency(riga.prezzoListino), getValoreSingle(riga.aliquota)));
    if (modificaPrezzoAcquisto && !dati.codice.isEmpty() && !dati.codice.startsWith(QLatin1Char('/')))
        checkPrezzoAcquisto();
    setPrezzi(riga, false, m_decimali);
    return true;
}

void EditorDocumento::checkPrezzoAcquisto()
{
    const QString ultimo = riga.ultimoListino;
    if (formattaImporto(getValoreCurrency(riga.prezzoListino), m_decimali) == ultimo || multiselezione)
        return;
    if (msgBox(QStringLiteral("Il Prezzo di Acquisto è diverso rispetto a quello impostato in Anagrafica Prodotti [")
                   + ultimo
                   + QStringLiteral("].\nSi desidera modificare il Prezzo di Acquisto in Anagrafica Prodotti e "
                                    "ricalcolare il Prezzo di Vendita?"),
               vb::YesNo | vb::Question)
        != vb::Yes)
        return;
    Single ricarico = 0;
    if (!getRicaricoProdotto(dati.prodotto, ricarico, m_decimali))
        return;
    const Currency prezzo = getValoreCurrency(riga.prezzoListino);
    if (ricarico == 0 || prezzo == Currency())
        return;
    // The sales list price keeps the product's mark-up on the new cost.
    const Currency aumento =
        Currency::fromDouble(CyMul(prezzo, Currency::fromDouble(static_cast<double>(ricarico))).toDouble() / 100.0);
    const Currency listino = getValoreCurrency(formattaImporto(prezzo + aumento, m_decimali));
    gAdoSqlServer().executeSQL(QStringLiteral("UPDATE Prodotti SET Listino1 = ") + listino.toPlainString()
                                   + QStringLiteral(", PREZZOACQUISTO = ") + prezzo.toPlainString()
                                   + QStringLiteral(" WHERE RID = ") + QString::number(dati.prodotto),
                               kModulo + QStringLiteral(".checkPrezzoAcquisto"));
}

bool getRicaricoProdotto(int ridProdotto, Single& ricarico, int decimali)
{
    ricarico = 0;
    double listino = 0, acquisto = 0;
    {
        const cReader rs(QStringLiteral("SELECT LISTINO1, PREZZOACQUISTO FROM Prodotti WHERE RID = ")
                             + QString::number(ridProdotto),
                         kModulo + QStringLiteral(".getRicaricoProdotto"));
        if (!rs || rs->eof())
            return false;
        listino = rs->number(QStringLiteral("LISTINO1"));
        acquisto = rs->number(QStringLiteral("PREZZOACQUISTO"));
    }
    if (acquisto == 0) {
        Err().raise(11, kModulo, QStringLiteral("Divisione per zero"));
        notifyError(kModulo, QStringLiteral("getRicaricoProdotto"), QString::number(ridProdotto));
        return false;
    }
    ricarico = getValoreSingle(formattaImporto((100.0 * (listino - acquisto)) / acquisto, decimali));
    return true;
}
