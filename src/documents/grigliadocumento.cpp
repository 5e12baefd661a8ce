#include "documents/grigliadocumento.h"

#include "common/italiantext.h"

namespace {

// Cells never hold it, so it can join them.
const QChar kSeparatore(0x1F);

bool isEliminata(const QStringList& riga) { return riga.at(colonna::Gestione).toInt() == gestione::Eliminata; }

// A discount cell with a "0" appended, so that an empty cell reads as 0.
Single sconto(const QString& cella) { return getValoreSingle(QString(cella + QLatin1Char('0'))); }

} // namespace

void GrigliaDocumento::clear()
{
    m_righe.clear();
    m_visibili.clear();
}

void GrigliaDocumento::inserisci(int posizione, const QStringList& celle, bool visibile)
{
    QStringList riga = celle;
    while (riga.size() < colonna::Numero)
        riga << QString();
    m_righe.insert(posizione, riga);
    m_visibili.insert(posizione, visibile);
    // The components of a kit not yet stored name it by its row: the rows
    // that moved down take their kit along.
    for (int i = posizione + 1; i < righe(); ++i) {
        QString& chiave = m_righe[i][colonna::IdDistintaBase];
        if (!chiave.startsWith(QLatin1Char('*')))
            continue;
        bool ok = false;
        const int padre = QStringView(chiave).mid(1).toInt(&ok);
        if (ok && padre >= posizione)
            chiave = QLatin1Char('*') + QString::number(padre + 1);
    }
}

int GrigliaDocumento::aggiungiCaricata(const QStringList& celle, bool visibile)
{
    inserisci(righe(), celle, visibile);
    setCella(righe() - 1, colonna::Gestione, QString::number(gestione::Invariata));
    return righe() - 1;
}

int GrigliaDocumento::controllaPresenzaElemento(const DatiRiga& dati, const CelleRiga& celle) const
{
    const Single s1 = sconto(celle.sc1), s2 = sconto(celle.sc2), s3 = sconto(celle.sc3);
    for (int i = 0; i < righe(); ++i) {
        const QStringList& r = m_righe.at(i);
        if (isEliminata(r) || r.at(colonna::Codice).startsWith(QLatin1Char('/')))
            continue;
        if (r.at(colonna::IdProdotto).toInt() == dati.prodotto && r.at(colonna::IdIva).toInt() == dati.iva
            && sconto(r.at(colonna::Sc1)) == s1 && sconto(r.at(colonna::Sc2)) == s2 && sconto(r.at(colonna::Sc3)) == s3
            && getValoreCurrency(r.at(colonna::PrezzoListino)) == getValoreCurrency(celle.listino)
            && r.at(colonna::Descrizione) == dati.descrizione && r.at(colonna::IdDistintaBase) == dati.padre)
            return i;
    }
    return -1;
}

int GrigliaDocumento::controllaProdottoPresente(int prodotto) const
{
    for (int i = 0; i < righe(); ++i) {
        const QStringList& r = m_righe.at(i);
        if (!isEliminata(r) && r.at(colonna::IdDistintaBase).isEmpty() && r.at(colonna::IdProdotto).toInt() == prodotto
            && !r.at(colonna::Codice).startsWith(QLatin1Char('/')))
            return i;
    }
    return -1;
}

int GrigliaDocumento::addElement(int riga, const DatiRiga& dati, const CelleRiga& celle, bool aggiungiPrecedente,
                                 int corrente, bool padreKit)
{
    const CelleRiga& c = celle;
    if (riga < 0) {
        const bool dopoCorrente = corrente >= 0 && corrente < righe();
        const bool componente = !dati.padre.isEmpty();
        riga = righe();
        // A component after its kit's components; any other row after the
        // current one and its components, unless it is added to a previous
        // row.
        if (dopoCorrente && (componente || !aggiungiPrecedente))
            riga = fineFigli(corrente);
        inserisci(riga, {}, !componente);
        if (riga < righe() - 1)
            updateNextRow(riga + 1);
        setCella(riga, colonna::OldQuantita, QStringLiteral("0"));
        setCella(riga, colonna::Gestione, QString::number(gestione::Nuova));
    }
    QStringList& r = m_righe[riga];
    r[colonna::Marca] = dati.marca;
    r[colonna::Codice] = dati.codice;
    r[colonna::IdProdotto] = QString::number(dati.prodotto);
    r[colonna::Descrizione] = dati.descrizione;
    r[colonna::IdIva] = QString::number(dati.iva);
    r[colonna::CodIva] = dati.codIva;
    r[colonna::DescIva] = dati.descIva;
    r[colonna::Iva] = c.iva;
    r[colonna::Quantita] = c.quantita;
    r[colonna::IdUM] = QString::number(dati.um);
    r[colonna::UM] = dati.codUM;
    r[colonna::Sconti] = c.sconti;
    r[colonna::Sc1] = c.sc1;
    r[colonna::Sc2] = c.sc2;
    r[colonna::Sc3] = c.sc3;
    if (!padreKit) {
        r[colonna::PrezzoListino] = c.listino;
        r[colonna::PrezzoNetto] = c.netto;
        r[colonna::NettoEsteso] = c.nettoEsteso;
        r[colonna::Importo] = c.importo;
    }
    r[colonna::Gestione] = QString::number(r.at(colonna::Rid).toInt() > 0 ? gestione::Modificata : gestione::Nuova);
    r[colonna::Taglio] = dati.taglio;
    r[colonna::IdDistintaBase] = dati.padre;
    r[colonna::ScNetto] = c.scNetto;
    r[colonna::Imponibile] = c.imponibile;
    r[colonna::IvaProd] = c.ivaProd;
    r[colonna::TotIvaProd] = c.totIvaProd;
    r[colonna::ElencoSpeciale] = dati.elencoSpeciale ? QStringLiteral("1") : QStringLiteral("0");
    return riga;
}

void GrigliaDocumento::eliminaRiga(int riga)
{
    setCella(riga, colonna::Gestione, QString::number(gestione::Eliminata));
    setCella(riga, colonna::Icona, QString());
    m_visibili[riga] = false;
    updateNextRow(riga);
}

void GrigliaDocumento::updateNextRow(int riga)
{
    for (int i = righe() - 1; i >= riga; --i)
        if (stato(i) == gestione::Invariata)
            setCella(i, colonna::Gestione, QString::number(gestione::Modificata));
}

bool GrigliaDocumento::padreKit(int riga, const QString& carattereDistinta) const
{
    return !carattereDistinta.isEmpty() && cella(riga, colonna::Codice).startsWith(carattereDistinta);
}

int GrigliaDocumento::fineFigli(int riga) const
{
    int fine = riga + 1;
    while (fine < righe() && figlio(fine))
        ++fine;
    return fine;
}

bool GrigliaDocumento::figliAperti(int rigaPadre) const
{
    for (int i = rigaPadre + 1; i < righe() && figlio(i); ++i)
        if (!isEliminata(m_righe.at(i)))
            return m_visibili.at(i);
    return false;
}

bool GrigliaDocumento::apriChiudiFigli(int rigaPadre)
{
    const bool aperti = !figliAperti(rigaPadre);
    for (int i = rigaPadre + 1; i < righe() && figlio(i); ++i)
        m_visibili[i] = aperti && !isEliminata(m_righe.at(i));
    return aperti;
}

IconaRiga GrigliaDocumento::icona(int riga, const QString& carattereDistinta) const
{
    if (isEliminata(m_righe.at(riga)))
        return IconaRiga::Nessuna;
    if (padreKit(riga, carattereDistinta))
        return figliAperti(riga) ? IconaRiga::PadreAperto : IconaRiga::PadreChiuso;
    return figlio(riga) && m_visibili.at(riga) ? IconaRiga::Figlio : IconaRiga::Nessuna;
}

QList<RigaPerTotali> GrigliaDocumento::perTotali(const QString& carattereDistinta) const
{
    QList<RigaPerTotali> list;
    for (const QStringList& r : m_righe)
        list.append({r.at(colonna::Quantita), r.at(colonna::Imponibile), r.at(colonna::Iva),
                     !isEliminata(r)
                         && !(!carattereDistinta.isEmpty() && r.at(colonna::Codice).startsWith(carattereDistinta))});
    return list;
}

QString GrigliaDocumento::copiaRiga(int riga) const
{
    QStringList r = m_righe.at(riga);
    if (!r.at(colonna::IdDistintaBase).isEmpty())
        return QString();
    r[colonna::Icona] = QStringLiteral("ICONA");
    r[colonna::Gestione] = QString::number(gestione::Nuova);
    r[colonna::IdDistintaBase] = QStringLiteral("FIGLIO");
    r[colonna::OldQuantita] = QStringLiteral("0");
    r[colonna::Key] = r[colonna::Rid] = r[colonna::Taglio] = QString();
    return r.join(kSeparatore);
}

QStringList GrigliaDocumento::celleCopiate(const QString& testo)
{
    return testo.isEmpty() ? QStringList() : testo.split(kSeparatore);
}
