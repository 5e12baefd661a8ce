#include "documents/salvadocumento.h"

#include "accounting/primanota.h"
#include "accounting/scadenze.h"
#include "common/italiantext.h"
#include "common/msgbox.h"
#include "core/optionstore.h"
#include "data/cadosqlserver.h"
#include "data/scoped.h"
#include "data/sqlliteral.h"
#include "documents/grigliadocumento.h"
#include "numbering/numeratore.h"
#include "stock/giacenze.h"

#include <QHash>

namespace {

QString tag(const char* procedure) { return QStringLiteral("frmMovimento.") + QLatin1String(procedure); }

cAdoSqlServer& db() { return gAdoSqlServer(); }

bool controparte(int tipo) { return tipo == lato::Cliente || tipo == lato::Fornitore; }

// A message for the user once the transaction is rolled back.
bool fallito(const QString& messaggio)
{
    if (!messaggio.isEmpty() && !messaggio.startsWith(QLatin1Char('#')))
        db().showAfterTransaction(messaggio, vb::Critical);
    return false;
}

QString numero(const QString& testo) { return getSqlNumberOrZero(testo); }

const QString kNumeroPreso =
    QStringLiteral("Impossibile salvare il documento:\nIl numero è gia stato assegnato ad un altro documento!");
const QString kDataFuoriOrdine =
    QStringLiteral("Impossibile salvare il documento:\nLa data è inferiore a quella del documento che lo precede!");

// The columns of the header, in the order the statements write them.
QList<QPair<QString, QString>> colonneTestata(const DocumentoDaSalvare& d)
{
    const TestataDocumento& t = d.testata;
    const DatiSpedizione& s = t.spedizione;
    const auto id = [](int rid) { return getIDOrNullStr(rid); };
    const auto testo = [](const QString& v) { return sqlText(v); };
    const int pagamento = s.pagamento > 0 ? s.pagamento : t.pagamento.rid;
    QString partita = t.codPartita.trimmed();
    if (partita.isEmpty())
        partita = formatMask(t.progressivo, QStringLiteral("0000")) + QLatin1Char('/') + QString::number(t.anno);
    return {
        {QStringLiteral("PROGRESSIVO"), QString::number(t.progressivo)},
        {QStringLiteral("ANNO"), QString::number(t.anno)},
        {QStringLiteral("DATA"), db().getSQLDate(t.data)},
        {QStringLiteral("NUMEROORIGINALE"), testo(t.numeroOriginale)},
        {QStringLiteral("DATAORIGINALE"), db().getSQLDate(t.dataOriginale)},
        {QStringLiteral("FK_TIPODOCUMENTO"), id(t.tipo.rid)},
        {QStringLiteral("FK_ORIGINE"), id(d.info.origine == lato::Magazzino ? t.origine.rid : 0)},
        {QStringLiteral("FK_DESTINAZIONE"), id(d.info.destinazione == lato::Magazzino ? t.destinazione.rid : 0)},
        {QStringLiteral("FK_CONTROPARTITA"), id(controparteDi(d))},
        {QStringLiteral("FK_PAGAMENTO"), id(pagamento)},
        {QStringLiteral("FK_BANCA"), id(t.banca.rid)},
        {QStringLiteral("RIFERIMENTI"), testo(t.riferimenti)},
        {QStringLiteral("CODPARTITA"), testo(partita)},
        {QStringLiteral("VIACONS"), testo(s.via)},
        {QStringLiteral("CIVICOCONS"), testo(s.civico)},
        {QStringLiteral("CITTACONS"), testo(s.citta)},
        {QStringLiteral("PROVINCIACONS"), testo(s.provincia)},
        {QStringLiteral("CAPCONS"), testo(s.cap)},
        {QStringLiteral("TELEFONOCONS"), testo(s.telefono)},
        {QStringLiteral("PROGELENCOSPECIALE"), QString::number(t.progElencoSpeciale)},
        {QStringLiteral("DESTELENCOSPECIALE"), testo(s.destElencoSpeciale)},
        {QStringLiteral("DOCUMELENCOSPECIALE"), testo(s.documElencoSpeciale)},
        {QStringLiteral("AUTELENCOSPECIALE"), testo(s.autElencoSpeciale)},
        {QStringLiteral("FAXCONS"), testo(s.fax)},
        {QStringLiteral("DATACONS"), db().getSQLDate(s.data)},
        {QStringLiteral("ORACONS"), testo(s.ora)},
        {QStringLiteral("PESOCONS"), getSqlNumberOrZero(plainTextIt(s.peso))},
        {QStringLiteral("COLLICONS"), QString::number(s.colli)},
        {QStringLiteral("FK_ASPETTOCONS"), id(s.aspetto)},
        {QStringLiteral("FK_CAUSALETRASPORTO"), id(s.causaleTrasporto)},
        {QStringLiteral("FK_SPEDIZIONE"), id(s.spedizione)},
        {QStringLiteral("TOTIMPONIBILE"), numero(d.totali.imponibile)},
        {QStringLiteral("TOTIMPOSTA"), numero(d.totali.iva)},
        {QStringLiteral("RDA1"), numero(t.rda1)},
        {QStringLiteral("RDA2"), numero(t.rda2)},
        {QStringLiteral("TOTRDA"), numero(d.totali.rda)},
        {QStringLiteral("TOTDOCUMENTO"), numero(d.totali.importo)},
        {QStringLiteral("USAPREZZIIVA"), t.usaPrezziIva ? QStringLiteral("1") : QStringLiteral("0")},
    };
}

// The stored rows still are those the screen loaded: a second workstation
// that changed the document since would have its stock counted twice.
bool righeInvariate(int ridMovimento, const GrigliaDocumento& griglia)
{
    QHash<int, Currency> caricate;
    for (int r = 0; r < griglia.righe(); ++r)
        if (const int rid = griglia.cella(r, colonna::Rid).toInt(); rid > 0)
            caricate.insert(rid, getValoreCurrency(griglia.cella(r, colonna::OldQuantita)));
    const cReader rs(QStringLiteral("SELECT DM.RID, DM.QUANTITA FROM DettagliMovimento DM INNER JOIN Prodotti P ON "
                                    "DM.FK_PRODOTTO = P.RID WHERE DM.FK_MOVIMENTO = ")
                         + QString::number(ridMovimento),
                     tag("saveRecord"));
    if (!rs)
        return false;
    int memorizzate = 0;
    for (; !rs->eof(); rs->moveNext(), ++memorizzate) {
        const auto it = caricate.constFind(int(rs->integer(QStringLiteral("RID"))));
        if (it == caricate.cend()
            || getValoreCurrency(formattaImporto(rs->amount(QStringLiteral("QUANTITA")), 4))
                != getValoreCurrency(formattaImporto(*it, 4)))
            return false;
    }
    return memorizzate == caricate.size();
}

// The header held for the rest of the save, and still as loaded.
bool bloccaTestata(const DocumentoDaSalvare& d, const GrigliaDocumento& griglia)
{
    bool presente = false;
    {
        const cReader rs(QStringLiteral("SELECT RID FROM Movimenti \u2022S\u2022WITH (UPDLOCK, HOLDLOCK) "
                                        "\u2022/S\u2022WHERE RID = ")
                             + QString::number(d.testata.rid)
                             + QStringLiteral(" \u2022M\u2022FOR UPDATE\u2022/M\u2022"),
                         tag("saveRecord"));
        if (!rs)
            return false;
        presente = !rs->eof();
    }
    if (!presente)
        return fallito(QStringLiteral("Il documento è stato eliminato da un'altra postazione."));
    if (!righeInvariate(d.testata.rid, griglia))
        return fallito(QStringLiteral("Il documento è stato modificato da un'altra postazione nel frattempo.\n"
                                      "Aggiornarlo [F11] e ripetere le modifiche."));
    return true;
}

class SalvaRighe
{
public:
    SalvaRighe(const DocumentoDaSalvare& d, GrigliaDocumento& griglia)
        : m_d(d)
        , m_griglia(griglia)
        , m_distinta(gOptions().distintaBase)
        , m_libera(gOptions().rigaLibera)
    {
        m_opzioni.prezzoMedio = gOptions().prezzoMedio;
        m_opzioni.mesiPrezzoMedio = gOptions().mesiPrezzoMedio;
        const TestataDocumento& t = d.testata;
        m_origine = d.info.origine == lato::Magazzino ? t.origine.rid : -1;
        m_destinazione = d.info.destinazione == lato::Magazzino ? t.destinazione.rid : -1;
        m_taglioDaPrezzo = d.info.taglio && !m_opzioni.prezzoMedio;
    }

    // saveDettagli: every row by its state, its stock posted before its own statement.
    bool esegui(int ridMovimento)
    {
        QList<int> prodotti;
        for (int r = 0; r < m_griglia.righe(); ++r)
            if (m_griglia.stato(r) != gestione::Invariata)
                prodotti << m_griglia.cella(r, colonna::IdProdotto).toInt();
        if (m_d.info.operazione && !bloccaProdotti(prodotti))
            return false;
        int pos = 0, padre = 0;
        for (int r = 0; r < m_griglia.righe(); ++r) {
            const int stato = m_griglia.stato(r);
            if (stato != gestione::Eliminata)
                ++pos;
            if (stato == gestione::Invariata)
                continue;
            Currency taglio;
            if (!posta(r, stato, taglio))
                return false;
            if (stato == gestione::Nuova && m_d.info.trasferimento()) {
                // A transfer stores the cost of the goods as its price.
                m_griglia.setCella(r, colonna::PrezzoListino, plainTextIt(taglio));
                m_griglia.setCella(r, colonna::NettoEsteso, plainTextIt(taglio));
                for (int c : {colonna::ScNetto, colonna::Sc1, colonna::Sc2, colonna::Sc3})
                    m_griglia.setCella(r, c, QStringLiteral("0"));
            }
            if (!scrivi(r, stato, ridMovimento, pos, taglio, padre) || !statistiche(r))
                return false;
        }
        return true;
    }

private:
    bool padreKit(int r) const
    {
        return !m_distinta.isEmpty() && m_griglia.cella(r, colonna::Codice).startsWith(m_distinta);
    }

    bool rigaLibera(int r) const
    {
        return !m_libera.isEmpty() && m_griglia.cella(r, colonna::Codice).startsWith(m_libera);
    }

    // The row's stock; `taglio` is the lot the row stores.
    bool posta(int r, int stato, Currency& taglio)
    {
        const Currency memorizzato = getValoreCurrency(m_griglia.cella(r, colonna::Taglio));
        const Currency netto = getValoreCurrency(m_griglia.cella(r, colonna::NettoEsteso));
        Currency precedente = Currency::fromUnits(-1);
        taglio = memorizzato;
        if (m_taglioDaPrezzo) {
            taglio = netto;
            // A new row has no lot stored yet; the editor's lot is only shown.
            if (stato != gestione::Nuova)
                precedente = memorizzato;
        } else if (m_opzioni.prezzoMedio) {
            taglio = netto;
        }
        const int prodotto = m_griglia.cella(r, colonna::IdProdotto).toInt();
        if (padreKit(r)) {
            taglio = Currency();
            return true;
        }
        if (!m_d.info.operazione || !getAggiornamentoGiacenzeByProdotto(prodotto)) {
            if (taglio < Currency())
                taglio = Currency();
            return true;
        }
        const QString codice = m_griglia.cella(r, colonna::Codice);
        int ridRiga = m_griglia.cella(r, colonna::Rid).toInt();
        if (ridRiga <= 0)
            ridRiga = -1;
        const QString esito = aggiornaGiacenze(getValoreSingle(m_griglia.cella(r, colonna::Quantita)),
                                               getValoreSingle(m_griglia.cella(r, colonna::OldQuantita)), taglio,
                                               prodotto, stato, m_origine, m_destinazione,
                                               QStringLiteral("Prodotto [") + codice + QStringLiteral(" - ")
                                                   + m_griglia.cella(r, colonna::Descrizione) + QLatin1Char(']'),
                                               precedente, ridRiga, m_opzioni);
        if (esito != QLatin1String("OK"))
            return fallito(esito.isEmpty() ? QStringLiteral("#err") : esito);
        if (!m_opzioni.prezzoMedio && taglio < Currency() && !rigaLibera(r))
            return fallito(QStringLiteral("Impossibile determinare il taglio su: [") + codice
                           + QStringLiteral("]. Riga: ") + QString::number(r + 1));
        if (taglio < Currency())
            taglio = Currency();
        return true;
    }

    bool scrivi(int r, int stato, int ridMovimento, int pos, Currency taglio, int& padre)
    {
        const auto cella = [&](int c) { return m_griglia.cella(r, c); };
        const QString rid = cella(colonna::Rid);
        if (stato == gestione::Eliminata)
            return rid.toInt() <= 0
                || db().executeSQL(QStringLiteral("DELETE FROM DettagliMovimento WHERE RID = ") + rid,
                                   tag("saveDettagli"));
        const bool kit = padreKit(r);
        const auto importo = [&](int c) { return kit ? QStringLiteral("0") : numero(cella(c)); };
        const QStringList colonne{
            QStringLiteral("FK_Movimento"), QStringLiteral("FK_Prodotto"), QStringLiteral("CodProdotto"),
            QStringLiteral("DescProdotto"), QStringLiteral("Quantita"),    QStringLiteral("Prezzo"),
            QStringLiteral("ScontoNetto"),  QStringLiteral("PrezzoNetto"), QStringLiteral("TotPrezzoNetto"),
            QStringLiteral("Iva"),          QStringLiteral("TotaleIva"),   QStringLiteral("TotaleRiga"),
            QStringLiteral("FK_IVA"),       QStringLiteral("ValoreIva"),   QStringLiteral("Pos"),
            QStringLiteral("Sconto"),       QStringLiteral("Sconto2"),     QStringLiteral("Sconto3"),
            QStringLiteral("Taglio"),       QStringLiteral("FK_UM"),       QStringLiteral("CODIVA")};
        const QStringList valori{QString::number(ridMovimento),
                                 getIDOrNullStr(cella(colonna::IdProdotto)),
                                 sqlText(cella(colonna::Codice)),
                                 sqlText(cella(colonna::Descrizione)),
                                 numero(cella(colonna::Quantita)),
                                 importo(colonna::PrezzoListino),
                                 importo(colonna::ScNetto),
                                 importo(colonna::NettoEsteso),
                                 importo(colonna::Imponibile),
                                 importo(colonna::IvaProd),
                                 importo(colonna::TotIvaProd),
                                 importo(colonna::Importo),
                                 getIDOrNullStr(cella(colonna::IdIva)),
                                 numero(cella(colonna::Iva)),
                                 QString::number(pos),
                                 numero(cella(colonna::Sc1)),
                                 numero(cella(colonna::Sc2)),
                                 numero(cella(colonna::Sc3)),
                                 getSqlNumberOrZero(plainTextIt(taglio)),
                                 getIDOrNullStr(cella(colonna::IdUM)),
                                 sqlText(cella(colonna::CodIva))};
        if (stato == gestione::Modificata) {
            QStringList set;
            for (int i = 0; i < colonne.size(); ++i)
                set << colonne.at(i) + QStringLiteral(" = ") + valori.at(i);
            return db().executeSQL(QStringLiteral("UPDATE DettagliMovimento SET ") + set.join(QStringLiteral(", "))
                                       + QStringLiteral(" WHERE RID = ") + rid,
                                   tag("saveDettagli"));
        }
        const int nuovo =
            db().getIDByInsert(QStringLiteral("INSERT INTO DettagliMovimento (") + colonne.join(QStringLiteral(", "))
                                   + QStringLiteral(", Ora) VALUES (") + valori.join(QStringLiteral(", "))
                                   + QStringLiteral(", Now())"),
                               tag("saveDettagli"), QStringLiteral("RID"), QStringLiteral("DettagliMovimento"));
        if (nuovo < 1)
            return false;
        if (kit)
            padre = nuovo;
        // A new component follows its kit, stored just before it.
        return cella(colonna::IdDistintaBase).isEmpty()
            || db().executeSQL(QStringLiteral("UPDATE DettagliMovimento SET IK_DETTAGLIOMOVIMENTO = %1 WHERE RID = %2")
                                   .arg(padre)
                                   .arg(nuovo),
                               tag("saveDettagli"));
    }

    // The last load and sale prices of the product.
    bool statistiche(int r)
    {
        if (padreKit(r) || rigaLibera(r))
            return true;
        const int prodotto = m_griglia.cella(r, colonna::IdProdotto).toInt();
        const Currency prezzo = getValoreCurrency(m_griglia.cella(r, colonna::PrezzoNetto));
        const InfoDocumento& i = m_d.info;
        if (i.origine == lato::Fornitore && i.destinazione == lato::Magazzino)
            return aggiornaStatisticaCarico(prodotto, prezzo, controparteDi(m_d), m_d.testata.data);
        if (i.origine == lato::Magazzino && i.destinazione == lato::Cliente)
            return aggiornaStatisticaScarico(prodotto, prezzo, m_d.testata.data);
        return true;
    }

    const DocumentoDaSalvare& m_d;
    GrigliaDocumento& m_griglia;
    QString m_distinta, m_libera;
    OpzioniGiacenza m_opzioni;
    int m_origine = -1, m_destinazione = -1;
    bool m_taglioDaPrezzo = false;
};

// The journal entry of the document and its due dates.
bool salvaContabilita(DocumentoDaSalvare& d, int ridMovimento, bool aggiornaPrimaNota)
{
    TestataDocumento& t = d.testata;
    const int controparte = controparteDi(d);
    int chiave = 0;
    const Currency totale = getValoreCurrency(d.totali.importo);
    const Currency iva = getValoreCurrency(d.totali.iva);
    const Currency rda = getValoreCurrency(d.totali.rda);
    const ContiControparti conti{gOptions().contoClienti, gOptions().contoFornitori};
    const int pagamento = t.spedizione.pagamento > 0 ? t.spedizione.pagamento : t.pagamento.rid;
    if (controparte > 0 && d.info.generaPn) {
        if (!aggiornaPrimaNota) {
            chiave = t.primaNota;
        } else {
            DatiPrimaNota p;
            p.rid = t.primaNota;
            p.fkCausale = d.info.causale;
            p.fkAnagrafe = controparte;
            const bool originale = gOptions().descPN && !t.numeroOriginale.trimmed().isEmpty();
            p.descrizione = t.tipo.codice + QStringLiteral(" N.")
                + (originale ? t.numeroOriginale : formatMask(t.progressivo, QStringLiteral("0000")))
                + QStringLiteral(" DEL ") + formatDate(originale ? t.dataOriginale : t.data);
            p.riferimenti = t.riferimenti;
            p.numDocumento = t.numeroOriginale;
            p.codicePartita = t.codPartita;
            p.importo = totale;
            p.importoIva = iva;
            p.importoRda = rda;
            p.data = t.data;
            p.dataValuta = t.dataOriginale.isValid() ? t.dataOriginale : t.data;
            p.fkPagamento = pagamento;
            chiave = salvaPrimaNota(p, conti);
            if (chiave > 0 && t.pnPagamento > 0 && modificaImportoPrimaNota(t.pnPagamento, totale, iva, rda, conti) < 1)
                return false;
        }
        if (chiave < 0)
            return false;
    }
    if (chiave >= 1 && chiave != t.primaNota
        && !db().executeSQL(
            QStringLiteral("UPDATE Movimenti SET FK_PrimaNota = %1 WHERE RID = %2").arg(chiave).arg(ridMovimento),
            tag("saveRecord")))
        return false;
    if (chiave >= 1 && d.info.generaScad) {
        QString messaggio;
        if (!generaScadenzePagamento(chiave, pagamento, totale, t.data, d.info.scadenzeNegative, &messaggio))
            return fallito(messaggio);
    }
    t.primaNota = chiave;
    return true;
}

bool elencoSpeciale(const GrigliaDocumento& g)
{
    for (int r = 0; r < g.righe(); ++r)
        if (g.stato(r) != gestione::Eliminata && g.cella(r, colonna::ElencoSpeciale) == QLatin1String("1"))
            return true;
    return false;
}

} // namespace

int controparteDi(const DocumentoDaSalvare& d)
{
    if (controparte(d.info.origine))
        return d.testata.origine.rid;
    return controparte(d.info.destinazione) ? d.testata.destinazione.rid : 0;
}

QStringList controllaInserimento(const DocumentoDaSalvare& d, const GrigliaDocumento& griglia)
{
    const TestataDocumento& t = d.testata;
    QStringList faults;
    const auto manca = [&](const QString& campo) {
        faults << QStringLiteral(" - Campo [") + campo + QStringLiteral("] Obbligatorio.");
    };
    const auto didascalia = [](int tipo) {
        switch (tipo) {
        case lato::Cliente: return QStringLiteral("Cliente");
        case lato::Fornitore: return QStringLiteral("Fornitore");
        default: return QStringLiteral("Magazzino");
        }
    };
    if (t.tipo.rid < 1)
        manca(QStringLiteral("Tipo Documento"));
    if (d.info.origine != lato::Nessuno && t.origine.rid < 1)
        manca(didascalia(d.info.origine));
    if (d.info.destinazione != lato::Nessuno && t.destinazione.rid < 1)
        manca(didascalia(d.info.destinazione));
    if (!t.data.isValid())
        manca(QStringLiteral("Data"));
    if (t.anno <= 0)
        manca(QStringLiteral("Anno"));
    else if (t.data.isValid() && t.anno != t.data.year())
        faults << QStringLiteral(" - Campo [Anno] e Campo [Data] Incongruenti.");
    if (!t.numeroOriginale.isEmpty() && !t.dataOriginale.isValid())
        manca(QStringLiteral("Data Originale"));
    if (t.pagamento.rid < 1)
        manca(QStringLiteral("Tipo Pagamento"));
    bool righe = false;
    for (int r = 0; r < griglia.righe() && !righe; ++r)
        righe = griglia.stato(r) != gestione::Eliminata;
    if (!righe)
        faults << QStringLiteral(" - Inserire almento un prodotto.");
    return faults;
}

bool chiedeAggiornamentoPrimaNota(const DocumentoDaSalvare& d)
{
    return d.testata.rid > 0 && gOptions().bloccoPN && d.info.generaPn && controparteDi(d) > 0;
}

QString domandaAggiornamentoPrimaNota()
{
    return QStringLiteral("Si desidera aggiornare i movimenti di Prima Nota collegati al presente Documento?");
}

bool salvaDocumento(DocumentoDaSalvare& d, GrigliaDocumento& griglia, bool aggiornaPrimaNota)
{
    TestataDocumento& t = d.testata;
    const TestataDocumento prima = t;
    cTransaction transazione(tag("saveRecord"));
    if (!transazione)
        return false;
    const bool nuovo = t.rid <= 0;
    bool fatto = true;
    if (nuovo) {
        t.progressivo = getNewNumeratoreAnnuale(d.info.numeratore, QString::number(t.anno));
        fatto = t.progressivo > 0;
    } else {
        fatto = bloccaTestata(d, griglia)
            && (checkNumeroDocumento(t.tipo.rid, t.data, t.progressivo, t.rid) || fallito(kNumeroPreso));
    }
    fatto = fatto
        && (getFlexCounter(t.tipo.rid) || checkNumeroData(t.tipo.rid, t.data, t.progressivo, nuovo ? -1 : t.rid)
            || fallito(kDataFuoriOrdine));
    if (fatto && nuovo && d.stampaElencoSpeciale && elencoSpeciale(griglia)) {
        t.progElencoSpeciale = getNewNumeratoreAnnuale(gOptions().numeratoreElencoSpeciale, QString::number(t.anno));
        fatto = t.progElencoSpeciale > 0;
    }
    int rid = t.rid;
    if (fatto) {
        const QList<QPair<QString, QString>> colonne = colonneTestata(d);
        QStringList nomi, valori;
        for (const auto& [nome, valore] : colonne) {
            nomi << nome;
            valori << valore;
        }
        if (nuovo) {
            rid = db().getIDByInsert(sqlInsert(QStringLiteral("Movimenti"), nomi, valori), tag("saveRecord"),
                                     QStringLiteral("RID"), QStringLiteral("Movimenti"));
            fatto = rid >= 1;
        } else {
            fatto = db().executeSQL(sqlUpdate(QStringLiteral("Movimenti"), nomi, valori, rid), tag("saveRecord"));
        }
    }
    fatto = fatto && SalvaRighe(d, griglia).esegui(rid) && salvaContabilita(d, rid, aggiornaPrimaNota)
        && transazione.commit();
    if (!fatto) {
        transazione.rollback();
        // The screen keeps what it had, for another try.
        t = prima;
        return false;
    }
    t.rid = rid;
    if (t.codPartita.trimmed().isEmpty())
        t.codPartita = formatMask(t.progressivo, QStringLiteral("0000")) + QLatin1Char('/') + QString::number(t.anno);
    return true;
}
