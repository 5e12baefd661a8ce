#include "documents/documento.h"

#include "common/italiantext.h"
#include "common/msgbox.h"
#include "core/optionstore.h"
#include "data/cadosqlserver.h"
#include "data/scoped.h"
#include "documents/grigliadocumento.h"
#include "documents/righekit.h"
#include "stock/giacenze.h"

namespace {

QString tag(const char* procedure) { return QStringLiteral("frmMovimento.") + QLatin1String(procedure); }

Codificato codificato(const Recordset& rs, const char* rid, const char* codice, const char* descrizione)
{
    return {int(rs.integer(QLatin1String(rid))), rs.text(QLatin1String(codice)), rs.text(QLatin1String(descrizione))};
}

QString numero(int n) { return QString::number(n); }

} // namespace

bool getInfoDocumento(int tipoDocumento, InfoDocumento& info)
{
    info = InfoDocumento();
    const cReader rs(QStringLiteral("SELECT TD.RID, TD.FK_CAUSALE, TD.ACCOMPAGNATORIO, TD.NCONTATORE, TD.REPORT, "
                                    "C.OPERAZIONE, C.ORIGINE, C.DESTINAZIONE, C.GENERASCAD, C.SCADENZENEGATIVE, "
                                    "C.GENERAPN, C.TAGLIO, C.FK_MagazzinoOrig, C.FK_MagazzinoDest "
                                    "FROM TipoDocumenti TD LEFT JOIN Causali C ON TD.FK_CAUSALE = C.RID "
                                    "WHERE TD.RID = ")
                         + numero(tipoDocumento),
                     tag("getInfoDocumento"));
    if (!rs || rs->eof())
        return false;
    info.tipo = int(rs->integer(QStringLiteral("RID")));
    info.causale = int(rs->integer(QStringLiteral("FK_CAUSALE")));
    info.accompagnatorio = rs->flag(QStringLiteral("ACCOMPAGNATORIO"));
    info.numeratore = int(rs->integer(QStringLiteral("NCONTATORE")));
    info.report = rs->text(QStringLiteral("REPORT"));
    info.operazione = rs->flag(QStringLiteral("OPERAZIONE"));
    info.origine = int(rs->integer(QStringLiteral("ORIGINE")));
    info.destinazione = int(rs->integer(QStringLiteral("DESTINAZIONE")));
    info.generaScad = rs->flag(QStringLiteral("GENERASCAD"));
    info.scadenzeNegative = rs->flag(QStringLiteral("SCADENZENEGATIVE"));
    info.generaPn = rs->flag(QStringLiteral("GENERAPN"));
    info.taglio = rs->flag(QStringLiteral("TAGLIO"));
    info.magazzinoOrig = int(rs->integer(QStringLiteral("FK_MagazzinoOrig")));
    info.magazzinoDest = int(rs->integer(QStringLiteral("FK_MagazzinoDest")));
    return true;
}

bool getInfoContropartita(int ridAnagrafica, InfoContropartita& info)
{
    info = InfoContropartita();
    const cReader rs(QStringLiteral(
                         "SELECT A.RID, A.FK_PAGAMENTO, A.SCONTO, P.CODICE AS CODPAGAMENTO, P.DESCRIZIONE AS "
                         "DESCPAGAMENTO, A.FK_BANCA, B.CODICE AS CODBANCA, B.DESCRIZIONE AS DESCBANCA "
                         "FROM (Anagrafiche A LEFT JOIN Pagamenti P ON A.FK_PAGAMENTO = P.RID) "
                         "LEFT JOIN Banche B ON A.FK_BANCA = B.RID WHERE A.RID = ")
                         + numero(ridAnagrafica),
                     tag("getInfoContropartita"));
    if (!rs || rs->eof())
        return false;
    info.pagamento = codificato(*rs, "FK_PAGAMENTO", "CODPAGAMENTO", "DESCPAGAMENTO");
    info.banca = codificato(*rs, "FK_BANCA", "CODBANCA", "DESCBANCA");
    info.sconto = rs->amount(QStringLiteral("SCONTO"));
    return true;
}

bool leggiTestata(int rid, int progressivo, int anno, int tipo, TestataDocumento& t)
{
    QString where;
    if (rid >= 1)
        where = QStringLiteral("M.RID = ") + numero(rid);
    else if (progressivo > 0)
        where = QStringLiteral("M.PROGRESSIVO = %1 AND M.ANNO = %2 AND M.FK_TIPODOCUMENTO = %3")
                    .arg(progressivo)
                    .arg(anno)
                    .arg(tipo);
    else
        return false;
    const cReader rs(
        QStringLiteral(
            "SELECT M.RID, M.PROGRESSIVO, M.ANNO, M.DATA, M.NUMEROORIGINALE, M.DATAORIGINALE, M.FK_TIPODOCUMENTO, "
            "TD.CODICE AS CODTIPO, TD.DESCRIZIONE AS DESCTIPO, C.ORIGINE, C.DESTINAZIONE, M.FK_ORIGINE, "
            "MO.CODICE AS CODMAGORIGINE, MO.DESCRIZIONE AS DESCMAGORIGINE, M.FK_DESTINAZIONE, "
            "MD.CODICE AS CODMAGDESTINAZIONE, MD.DESCRIZIONE AS DESCMAGDESTINAZIONE, M.FK_CONTROPARTITA, "
            "A.NUMERO AS NUMEROCONTROPARTITA, A.DENOMINAZIONE, M.FK_PAGAMENTO, P.CODICE AS CODPAGAMENTO, "
            "P.DESCRIZIONE AS DESCPAGAMENTO, M.FK_BANCA, B.CODICE AS CODBANCA, B.DESCRIZIONE AS DESCBANCA, "
            "M.RIFERIMENTI, M.CODPARTITA, M.DATASTAMPA, M.FK_PrimaNota, M.FK_PNPagamento, M.PROGELENCOSPECIALE, "
            "M.VIACONS, M.CIVICOCONS, M.CITTACONS, M.PROVINCIACONS, M.CAPCONS, M.TELEFONOCONS, M.FAXCONS, "
            "M.DATACONS, M.ORACONS, M.PESOCONS, M.COLLICONS, M.FK_ASPETTOCONS, M.FK_CAUSALETRASPORTO, "
            "M.FK_SPEDIZIONE, M.DESTELENCOSPECIALE, M.DOCUMELENCOSPECIALE, M.AUTELENCOSPECIALE, M.RDA1, M.RDA2, "
            "M.USAPREZZIIVA "
            "FROM (((((((Movimenti M INNER JOIN TipoDocumenti TD ON M.FK_TIPODOCUMENTO = TD.RID) "
            "LEFT JOIN Causali C ON TD.FK_CAUSALE = C.RID) "
            "LEFT JOIN Magazzini MO ON M.FK_ORIGINE = MO.RID) "
            "LEFT JOIN Magazzini MD ON M.FK_DESTINAZIONE = MD.RID) "
            "LEFT JOIN Anagrafiche A ON M.FK_CONTROPARTITA = A.RID) "
            "LEFT JOIN Pagamenti P ON M.FK_PAGAMENTO = P.RID) "
            "LEFT JOIN Banche B ON M.FK_BANCA = B.RID) "
            "LEFT JOIN Spedizioni S ON M.FK_SPEDIZIONE = S.RID WHERE ")
            + where,
        tag("showData"));
    if (!rs || rs->eof())
        return false;
    t = TestataDocumento();
    t.rid = int(rs->integer(QStringLiteral("RID")));
    t.progressivo = int(rs->integer(QStringLiteral("PROGRESSIVO")));
    t.anno = int(rs->integer(QStringLiteral("ANNO")));
    t.data = toDate(rs->value(QStringLiteral("DATA")));
    t.numeroOriginale = rs->text(QStringLiteral("NUMEROORIGINALE"));
    t.dataOriginale = toDate(rs->value(QStringLiteral("DATAORIGINALE")));
    t.tipo = codificato(*rs, "FK_TIPODOCUMENTO", "CODTIPO", "DESCTIPO");
    t.tipoOrigine = rs->isNull(QStringLiteral("ORIGINE")) ? -1 : int(rs->integer(QStringLiteral("ORIGINE")));
    t.tipoDestinazione =
        rs->isNull(QStringLiteral("DESTINAZIONE")) ? -1 : int(rs->integer(QStringLiteral("DESTINAZIONE")));
    const Codificato controparte = codificato(*rs, "FK_CONTROPARTITA", "NUMEROCONTROPARTITA", "DENOMINAZIONE");
    auto lato = [&](int tipoLato, const char* rid, const char* cod, const char* desc) {
        if (tipoLato == lato::Magazzino)
            return codificato(*rs, rid, cod, desc);
        if (tipoLato == lato::Cliente || tipoLato == lato::Fornitore)
            return controparte;
        return Codificato();
    };
    t.origine = lato(t.tipoOrigine, "FK_ORIGINE", "CODMAGORIGINE", "DESCMAGORIGINE");
    t.destinazione = lato(t.tipoDestinazione, "FK_DESTINAZIONE", "CODMAGDESTINAZIONE", "DESCMAGDESTINAZIONE");
    t.denominazione = controparte.descrizione;
    t.pagamento = codificato(*rs, "FK_PAGAMENTO", "CODPAGAMENTO", "DESCPAGAMENTO");
    t.banca = codificato(*rs, "FK_BANCA", "CODBANCA", "DESCBANCA");
    t.riferimenti = rs->text(QStringLiteral("RIFERIMENTI"));
    t.codPartita = rs->text(QStringLiteral("CODPARTITA"));
    t.dataStampa = toDate(rs->value(QStringLiteral("DATASTAMPA")));
    t.primaNota = int(rs->integer(QStringLiteral("FK_PrimaNota")));
    t.pnPagamento = int(rs->integer(QStringLiteral("FK_PNPagamento")));
    t.progElencoSpeciale = int(rs->integer(QStringLiteral("PROGELENCOSPECIALE")));
    DatiSpedizione& s = t.spedizione;
    s.via = rs->text(QStringLiteral("VIACONS"));
    s.civico = rs->text(QStringLiteral("CIVICOCONS"));
    s.citta = rs->text(QStringLiteral("CITTACONS"));
    s.provincia = rs->text(QStringLiteral("PROVINCIACONS"));
    s.cap = rs->text(QStringLiteral("CAPCONS"));
    s.telefono = rs->text(QStringLiteral("TELEFONOCONS"));
    s.fax = rs->text(QStringLiteral("FAXCONS"));
    s.data = toDate(rs->value(QStringLiteral("DATACONS")));
    const QDateTime ora = toDateTime(rs->value(QStringLiteral("ORACONS")));
    s.ora = ora.isValid() ? formatTimeHM(ora.time()) : rs->text(QStringLiteral("ORACONS"));
    s.peso = toSingle(rs->number(QStringLiteral("PESOCONS")));
    s.colli = qint16(rs->integer(QStringLiteral("COLLICONS")));
    s.aspetto = int(rs->integer(QStringLiteral("FK_ASPETTOCONS")));
    s.causaleTrasporto = int(rs->integer(QStringLiteral("FK_CAUSALETRASPORTO")));
    s.spedizione = int(rs->integer(QStringLiteral("FK_SPEDIZIONE")));
    s.destElencoSpeciale = rs->text(QStringLiteral("DESTELENCOSPECIALE"));
    s.documElencoSpeciale = rs->text(QStringLiteral("DOCUMELENCOSPECIALE"));
    s.autElencoSpeciale = rs->text(QStringLiteral("AUTELENCOSPECIALE"));
    t.rda1 = formattaImporto(rs->value(QStringLiteral("RDA1")), 2);
    t.rda2 = formattaImporto(rs->value(QStringLiteral("RDA2")), 2);
    t.usaPrezziIva = rs->flag(QStringLiteral("USAPREZZIIVA"));
    return true;
}

bool leggiRighe(int ridMovimento, GrigliaDocumento& griglia, int dec, const QString& carattereDistinta)
{
    griglia.clear();
    const cReader rs(QStringLiteral(
                         "SELECT DM.RID, DM.FK_PRODOTTO, DM.CODPRODOTTO, DM.DESCPRODOTTO, DM.FK_Iva, I.CODICE AS "
                         "CODIVA, I.DESCRIZIONE AS DESCIVA, DM.VALOREIVA AS VALIVA, DM.QUANTITA, DM.FK_UM, "
                         "UM.CODICE AS CODUM, MA.CODICE AS CODMARCA, DM.PREZZO, DM.PREZZONETTO, DM.TOTALERIGA, "
                         "DM.TotPrezzoNetto, DM.SCONTONETTO, DM.IVA, DM.TOTALEIVA, DM.SCONTO, DM.SCONTO2, DM.SCONTO3, "
                         "DM.TAGLIO, DM.IK_DETTAGLIOMOVIMENTO, P.ELENCOSPECIALE "
                         "FROM (((DettagliMovimento DM LEFT JOIN Iva I ON DM.FK_Iva = I.RID) "
                         "INNER JOIN Prodotti P ON DM.FK_PRODOTTO = P.RID) "
                         "LEFT JOIN Marche MA ON P.FK_MARCA = MA.RID) "
                         "LEFT JOIN UnitaMisura UM ON DM.FK_UM = UM.RID "
                         "WHERE DM.FK_MOVIMENTO = ")
                         + numero(ridMovimento) + QStringLiteral(" ORDER BY DM.EXTRAPROG, DM.POS"),
                     tag("showDettagli"));
    if (!rs)
        return false;
    const auto importo = [&](const char* name) { return formattaImporto(rs->value(QLatin1String(name)), dec); };
    for (; !rs->eof(); rs->moveNext()) {
        QStringList c(colonna::Numero, QString());
        const QString rid = rs->text(QStringLiteral("RID"));
        const QString codice = rs->text(QStringLiteral("CODPRODOTTO"));
        const bool padre = !carattereDistinta.isEmpty() && codice.startsWith(carattereDistinta);
        const bool figlio = rs->integer(QStringLiteral("IK_DETTAGLIOMOVIMENTO")) > 0;
        const Currency quantita = rs->amount(QStringLiteral("QUANTITA"));
        c[colonna::Key] = QStringLiteral("DM_") + rid;
        c[colonna::Marca] = rs->text(QStringLiteral("CODMARCA"));
        c[colonna::Codice] = codice;
        c[colonna::IdProdotto] = rs->text(QStringLiteral("FK_PRODOTTO"));
        c[colonna::Descrizione] = rs->text(QStringLiteral("DESCPRODOTTO"));
        c[colonna::IdIva] = rs->text(QStringLiteral("FK_Iva"));
        c[colonna::CodIva] = rs->text(QStringLiteral("CODIVA"));
        c[colonna::DescIva] = rs->text(QStringLiteral("DESCIVA"));
        c[colonna::Iva] = formattaImporto(rs->value(QStringLiteral("VALIVA")), 2);
        c[colonna::Quantita] = c[colonna::OldQuantita] = importo("QUANTITA");
        c[colonna::IdUM] = rs->text(QStringLiteral("FK_UM"));
        c[colonna::UM] = rs->text(QStringLiteral("CODUM"));
        if (padre) {
            // The stored components hold the whole quantity of the kit: the
            // kit row shows them per kit, and their sums as its amounts.
            const TotaliFigli figli = getTotaliFigli(rid.toInt());
            const auto perKit = [&](Currency totale) {
                return quantita > Currency() ? Currency::fromDouble(totale.toDouble() / quantita.toDouble()) : totale;
            };
            c[colonna::PrezzoListino] = formattaImporto(perKit(figli.prezzo), dec);
            c[colonna::PrezzoNetto] = formattaImporto(perKit(figli.netto), dec);
            c[colonna::NettoEsteso] = plainTextIt(perKit(figli.netto));
            c[colonna::Importo] = formattaImporto(figli.ivato, dec);
            c[colonna::Imponibile] = formattaImporto(figli.netto, dec);
        } else {
            c[colonna::PrezzoListino] = importo("PREZZO");
            c[colonna::PrezzoNetto] = importo("PREZZONETTO");
            c[colonna::NettoEsteso] = plainTextIt(rs->amount(QStringLiteral("PREZZONETTO")));
            Currency totale = rs->amount(QStringLiteral("TOTALERIGA"));
            // Rows of older data stored no total: shown from price and VAT.
            if (totale == Currency() && quantita != Currency())
                totale = getValoreCurrency(
                    formattaImporto((rs->number(QStringLiteral("PREZZONETTO")) + rs->number(QStringLiteral("IVA")))
                                        * rs->number(QStringLiteral("QUANTITA")),
                                    2));
            c[colonna::Importo] = formattaImporto(totale, dec);
            c[colonna::Imponibile] = importo("TotPrezzoNetto");
        }
        c[colonna::ScNetto] = importo("SCONTONETTO");
        c[colonna::IvaProd] = importo("IVA");
        c[colonna::TotIvaProd] = importo("TOTALEIVA");
        const QString s1 = plainTextIt(rs->number(QStringLiteral("SCONTO")));
        const QString s2 = plainTextIt(rs->number(QStringLiteral("SCONTO2")));
        const QString s3 = plainTextIt(rs->number(QStringLiteral("SCONTO3")));
        c[colonna::Sconti] = s1 + QLatin1Char('+') + s2 + QLatin1Char('+') + s3;
        c[colonna::Sc1] = s1;
        c[colonna::Sc2] = s2;
        c[colonna::Sc3] = s3;
        c[colonna::Rid] = rid;
        c[colonna::Taglio] = plainTextIt(rs->amount(QStringLiteral("TAGLIO")));
        c[colonna::IdDistintaBase] = figlio ? rs->text(QStringLiteral("IK_DETTAGLIOMOVIMENTO")) : QString();
        c[colonna::ElencoSpeciale] =
            rs->flag(QStringLiteral("ELENCOSPECIALE")) ? QStringLiteral("1") : QStringLiteral("0");
        griglia.aggiungiCaricata(c, !figlio);
    }
    return true;
}

QString domandaEliminazione(const QString& tipo, int progressivo)
{
    return QStringLiteral("Eliminare il documento [") + tipo + QStringLiteral("] con progressivo ")
        + formatMask(progressivo, QStringLiteral("00000"))
        + QStringLiteral("?\n\nSaranno eliminati tutti i movimenti di Prima Nota direttamente collegati.");
}

namespace {

// The rows' stock given back, as a delete does: each row that moved goods
// takes its quantity back out of the warehouses it went through.
bool deleteAllDettagli(const TestataDocumento& t, const GrigliaDocumento& griglia, const InfoDocumento& info)
{
    const QString carattereDistinta = gOptions().distintaBase;
    const int origine = t.tipoOrigine == lato::Magazzino ? t.origine.rid : -1;
    const int destinazione = t.tipoDestinazione == lato::Magazzino ? t.destinazione.rid : -1;
    OpzioniGiacenza opzioni;
    opzioni.prezzoMedio = gOptions().prezzoMedio;
    opzioni.mesiPrezzoMedio = gOptions().mesiPrezzoMedio;
    QList<int> prodotti;
    for (int r = 0; r < griglia.righe(); ++r)
        prodotti << griglia.cella(r, colonna::IdProdotto).toInt();
    if (info.operazione && !bloccaProdotti(prodotti))
        return false;
    for (int r = 0; r < griglia.righe(); ++r) {
        const QString codice = griglia.cella(r, colonna::Codice);
        if (!carattereDistinta.isEmpty() && codice.startsWith(carattereDistinta))
            continue;
        const QString rid = griglia.cella(r, colonna::Rid);
        if (rid.toInt() > 0
            && !gAdoSqlServer().executeSQL(QStringLiteral("DELETE FROM DettagliMovimento WHERE RID = ") + rid,
                                           tag("deleteAllDettagli")))
            return false;
        const int prodotto = griglia.cella(r, colonna::IdProdotto).toInt();
        if (!info.operazione || !getAggiornamentoGiacenzeByProdotto(prodotto))
            continue;
        Currency taglio = getValoreCurrency(griglia.cella(r, colonna::Taglio));
        Currency taglioPrecedente = Currency::fromUnits(-1);
        int ridRiga = -1;
        const QString esito = aggiornaGiacenze(getValoreSingle(griglia.cella(r, colonna::Quantita)),
                                               getValoreSingle(griglia.cella(r, colonna::OldQuantita)), taglio,
                                               prodotto, giacenze::Cancellazione, origine, destinazione,
                                               QStringLiteral("Prodotto [") + codice + QStringLiteral(" - ")
                                                   + griglia.cella(r, colonna::Descrizione) + QLatin1Char(']'),
                                               taglioPrecedente, ridRiga, opzioni);
        if (esito != QLatin1String("OK")) {
            if (!esito.startsWith(QLatin1Char('#')))
                gAdoSqlServer().showAfterTransaction(esito, vb::Critical);
            return false;
        }
    }
    return true;
}

} // namespace

bool eliminaDocumento(const TestataDocumento& testata, const InfoDocumento& info)
{
    if (testata.rid <= 0)
        return false;
    cTransaction transazione(tag("deleteRecord"));
    if (!transazione)
        return false;
    cAdoSqlServer& db = gAdoSqlServer();
    const QString rid = numero(testata.rid);
    // The header is held until the end: a second workstation deleting the
    // same document waits, then finds it gone and gives no stock back twice.
    TestataDocumento t = testata;
    bool presente = false;
    {
        const cReader rs(QStringLiteral("SELECT FK_PrimaNota, FK_PNPagamento FROM Movimenti \u2022S\u2022WITH "
                                        "(UPDLOCK, HOLDLOCK) \u2022/S\u2022WHERE RID = ")
                             + rid + QStringLiteral(" \u2022M\u2022FOR UPDATE\u2022/M\u2022"),
                         tag("deleteRecord"));
        if (!rs)
            return false;
        presente = !rs->eof();
        t.primaNota = int(rs->integer(QStringLiteral("FK_PrimaNota")));
        t.pnPagamento = int(rs->integer(QStringLiteral("FK_PNPagamento")));
    }
    if (!presente) {
        transazione.rollback();
        db.showAfterTransaction(QStringLiteral("Il documento è già stato eliminato da un'altra postazione."),
                                vb::Information);
        return false;
    }
    // The stock goes back as the rows stand stored now.
    GrigliaDocumento memorizzata;
    if (!leggiRighe(t.rid, memorizzata, gOptions().decimaliDopo, gOptions().distintaBase))
        return false;
    // The journal entries of the document, read once: deleting by their keys
    // locks those rows only, not the journal that other saves are writing.
    QStringList primeNote;
    {
        const cReader rs(QStringLiteral("SELECT RID FROM PrimaNota WHERE RID = %1 OR RID = %2 OR RifMovimento = %3")
                             .arg(t.primaNota)
                             .arg(t.pnPagamento)
                             .arg(t.rid),
                         tag("deleteRecord"));
        if (!rs)
            return false;
        for (; !rs->eof(); rs->moveNext())
            primeNote << rs->text(QStringLiteral("RID"));
    }
    if (primeNote.isEmpty())
        primeNote << QStringLiteral("0");
    const QString inPrimeNote = QStringLiteral(" IN (") + primeNote.join(QStringLiteral(", ")) + QLatin1Char(')');
    const auto esegui = [&](const QString& sql) { return db.executeSQL(sql, tag("deleteRecord")); };
    const bool fatto = esegui(QStringLiteral("DELETE FROM DocGenerati WHERE FK_MOVDESTINAZIONE = ") + rid)
        && esegui(QStringLiteral("DELETE FROM Scadenze WHERE FK_PrimaNota = ") + numero(t.primaNota))
        && esegui(QStringLiteral("DELETE FROM DettagliMovimento WHERE FK_MOVIMENTO = ") + rid)
        && deleteAllDettagli(t, memorizzata, info) && esegui(QStringLiteral("DELETE FROM Movimenti WHERE RID = ") + rid)
        && esegui(QStringLiteral("DELETE FROM PrimaNotaDettagli WHERE FK_PrimaNota") + inPrimeNote)
        && esegui(QStringLiteral("DELETE FROM Scadenze WHERE FK_PrimaNota") + inPrimeNote)
        && esegui(QStringLiteral("DELETE FROM PrimaNota WHERE RID") + inPrimeNote);
    if (!fatto) {
        transazione.rollback();
        return false;
    }
    return transazione.commit();
}

QString domandaDataStampa(const QDate& dataStampa)
{
    if (!dataStampa.isValid())
        return QString();
    return QStringLiteral("Attenzione! Il documento selezionato risulta gia stampato in data ") + formatDate(dataStampa)
        + QStringLiteral(".\nSicuri di voler continuare con le modifiche?");
}

QDate leggiDataStampa(int ridMovimento)
{
    return toDate(gAdoSqlServer().getValueBySQL(QStringLiteral("SELECT DATASTAMPA FROM Movimenti WHERE RID = ")
                                                    + numero(ridMovimento),
                                                tag("leggiDataStampa")));
}

bool updateDataStampa(int ridMovimento, const QDate& oggi)
{
    cAdoSqlServer& db = gAdoSqlServer();
    return db.executeSQL(QStringLiteral("UPDATE Movimenti SET DATASTAMPA = ") + db.getSQLDate(oggi)
                             + QStringLiteral(" WHERE RID = ") + numero(ridMovimento),
                         tag("updateDataStampa"));
}
