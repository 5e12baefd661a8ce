#include "masterdata/distintabase.h"

#include "common/ean13.h"
#include "common/italiantext.h"
#include "common/msgbox.h"
#include "common/valuecheck.h"
#include "core/optionstore.h"
#include "data/cadosqlserver.h"
#include "data/scoped.h"
#include "data/sqlliteral.h"
#include "documents/spedizione.h"
#include "pricing/prezzi.h"

#include <algorithm>
#include <cmath>

using namespace statoDistinta;

namespace {

QString tag(const char* procedure) { return QStringLiteral("frmDistintaBase.") + QLatin1String(procedure); }

QString testo(const QString& value) { return value.isEmpty() ? QStringLiteral("Null") : sqlText(value); }

QString chiave(int rid) { return getIDOrNullStr(rid); }

QString numero(const QString& value) { return getSqlNumberOrZero(value); }

// "A, B, C" as the list of its names.
QStringList nomi(const char* colonne) { return QString::fromLatin1(colonne).split(QStringLiteral(", ")); }

bool viva(const RigaDistinta& riga) { return riga.gestione != Eliminata; }

// The kits take turns on the row of their option: a save or delete of a kit
// reads it under an update lock that lasts until the transaction ends, so a
// second workstation waits here and then sees what the first one committed
// (the servers read committed data). The file database's write transaction
// holds the whole file already.
bool bloccaDistinte(const char* procedure)
{
    const cReader rs(QStringLiteral(
                         "SELECT NOME FROM Opzioni \u2022S\u2022WITH (UPDLOCK, HOLDLOCK) \u2022/S\u2022WHERE "
                         "NOME = ")
                         + sqlText(QStringLiteral("DistintaBase"))
                         + QStringLiteral(" \u2022M\u2022FOR UPDATE\u2022/M\u2022"),
                     tag(procedure));
    return bool(rs);
}

int contaProdotti(const QString& codice, const char* procedure)
{
    const QVariant n = gAdoSqlServer().getValueBySQL(
        QStringLiteral("SELECT COUNT(RID) AS ESISTE FROM Prodotti WHERE CODICE = ") + sqlText(codice), tag(procedure));
    return n.isValid() ? n.toInt() : -1;
}

// The kits other than `rid` with the code; -1 on a failure.
int altreDistinte(const QString& codice, int rid, const char* procedure)
{
    const QVariant n =
        gAdoSqlServer().getValueBySQL(QStringLiteral("SELECT COUNT(RID) FROM DistintaBase WHERE CODICE = ")
                                          + sqlText(codice) + QStringLiteral(" AND RID <> ")
                                          + QString::number(qMax(rid, 0)),
                                      tag(procedure));
    return n.isValid() ? n.toInt() : -1;
}

} // namespace

// --- the list --------------------------------------------------------------------

void ElencoDistinta::carica(const QList<RigaDistinta>& righe)
{
    m_righe = righe;
    for (RigaDistinta& r : m_righe)
        r.gestione = Invariata;
}

bool ElencoDistinta::modificato() const
{
    return std::any_of(m_righe.cbegin(), m_righe.cend(), [](const RigaDistinta& r) { return r.gestione != Invariata; });
}

QStringList ElencoDistinta::controllaElemento(const RigaDistinta& riga)
{
    QStringList faults;
    if (riga.prodotto <= 0)
        faults << QStringLiteral(" - Campo [Prodotto] Obbligatorio.");
    if (riga.iva <= 0)
        faults << QStringLiteral(" - Campo [Iva] Obbligatorio.");
    // A number too large for its column is refused, not stored wrong.
    const QString quantita = erroreQuantita(getValoreSingle(riga.quantita), QStringLiteral("Quantità"));
    if (!quantita.isEmpty())
        faults << QStringLiteral(" - ") + quantita;
    const QString prezzo = erroreImporto(getValoreNumerico(riga.prezzo), QStringLiteral("Prezzo"));
    if (!prezzo.isEmpty())
        faults << QStringLiteral(" - ") + prezzo;
    return faults;
}

int ElencoDistinta::controllaPresenzaElemento(const RigaDistinta& riga) const
{
    for (int i = 0; i < size(); ++i) {
        const RigaDistinta& r = m_righe.at(i);
        if (viva(r) && r.prodotto == riga.prodotto && r.iva == riga.iva
            && getValoreCurrency(r.prezzo) == getValoreCurrency(riga.prezzo))
            return i;
    }
    return -1;
}

int ElencoDistinta::conferma(RigaDistinta riga, int caricata, bool prima, int selezionata)
{
    int dove = caricata;
    if (dove < 0) {
        dove = controllaPresenzaElemento(riga);
        if (dove >= 0)
            riga.quantita =
                formattaImporto(getValoreSingle(m_righe.at(dove).quantita) + getValoreSingle(riga.quantita), 2);
    }
    if (dove >= 0) {
        RigaDistinta& r = m_righe[dove];
        riga.rid = r.rid;
        riga.gestione = r.gestione == Nuova ? Nuova : Modificata;
        r = riga;
        return dove;
    }
    riga.rid = 0;
    riga.gestione = Nuova;
    if (prima && selezionata >= 0 && selezionata < size()) {
        m_righe.insert(selezionata, riga);
        updateNextRow(selezionata);
        return selezionata;
    }
    m_righe.append(riga);
    return size() - 1;
}

void ElencoDistinta::elimina(int posizione)
{
    if (posizione < 0 || posizione >= size())
        return;
    if (m_righe.at(posizione).gestione == Nuova) {
        m_righe.removeAt(posizione);
        return;
    }
    m_righe[posizione].gestione = Eliminata;
    updateNextRow(posizione);
}

void ElencoDistinta::ripristina(int posizione)
{
    if (posizione < 0 || posizione >= size() || m_righe.at(posizione).gestione != Eliminata)
        return;
    m_righe[posizione].gestione = Modificata;
    updateNextRow(posizione);
}

void ElencoDistinta::updateNextRow(int posizione)
{
    for (int i = posizione + 1; i < size(); ++i)
        if (m_righe.at(i).gestione == Invariata)
            m_righe[i].gestione = Modificata;
}

int ElencoDistinta::pos(int posizione) const
{
    if (!viva(m_righe.at(posizione)))
        return 0;
    int n = 0;
    for (int i = 0; i <= posizione; ++i)
        n += viva(m_righe.at(i)) ? 1 : 0;
    return n;
}

// --- amounts -------------------------------------------------------------------

Currency importoRiga(const RigaDistinta& riga)
{
    const double importo =
        getValoreCurrency(riga.prezzo).toDouble() * static_cast<double>(getValoreSingle(riga.quantita));
    return getValoreCurrency(formattaImporto(importo, 2));
}

Currency ivaRiga(const RigaDistinta& riga)
{
    const double iva = getValoreCurrency(riga.prezzo).toDouble() * static_cast<double>(getValoreSingle(riga.quantita))
        * getValoreNumerico(riga.valoreIva) / 100.0;
    return getValoreCurrency(formattaImporto(iva, 2));
}

TotaliDistinta calcolaTotali(const QList<RigaDistinta>& righe)
{
    TotaliDistinta t;
    for (const RigaDistinta& r : righe) {
        if (!viva(r))
            continue;
        t.imponibile += importoRiga(r);
        t.iva += ivaRiga(r);
    }
    t.totale = t.imponibile + t.iva;
    return t;
}

int getIDIvaDistinta(const QList<RigaDistinta>& righe)
{
    int iva = -1;
    double massima = 0;
    for (const RigaDistinta& r : righe) {
        if (!viva(r))
            continue;
        const double valore = getValoreNumerico(r.valoreIva);
        if (iva == -1 || valore > massima) {
            iva = r.iva;
            massima = valore;
        }
    }
    return iva;
}

PesoColli getTotPesoColliDistinta(const QList<RigaDistinta>& righe)
{
    PesoColli t;
    for (const RigaDistinta& r : righe) {
        if (!viva(r))
            continue;
        const double quantita = static_cast<double>(getValoreSingle(r.quantita));
        t.peso = toSingle(static_cast<double>(t.peso) + quantita * static_cast<double>(getPesoProd(r.prodotto)));
        // A whole number after each row, halves to even.
        const double colli = std::nearbyint(t.colli + quantita * getColliProd(r.prodotto));
        t.colli = qint16(qBound(-32768.0, colli, 32767.0));
    }
    return t;
}

// --- codes ---------------------------------------------------------------------

QString codiceSenzaPrecodice(const QString& codice, const QString& precodice)
{
    return !precodice.isEmpty() && codice.startsWith(precodice) ? codice.mid(precodice.size()) : codice;
}

QString erroreDistintaDuplicata(const QString& codice)
{
    return QStringLiteral(" - Il codice [") + codice + QStringLiteral("] appartiene già a un'altra distinta.");
}

bool esisteDistinta(const QString& codice, int rid) { return altreDistinte(codice, rid, "controllaInserimento") > 0; }

int ridDistinta(const QString& codice)
{
    return gAdoSqlServer()
        .getValueBySQL(QStringLiteral("SELECT RID FROM DistintaBase WHERE CODICE = ") + sqlText(codice),
                       tag("showData"))
        .toInt();
}

// --- reading -------------------------------------------------------------------

bool leggiProdottoDistinta(int fkProdotto, int decimali, RigaDistinta& riga)
{
    {
        const cReader rs(QStringLiteral("SELECT P.CODICE, P.DESCRIZIONE, P.FK_Iva, I.CODICE AS CODIVA, I.DESCRIZIONE "
                                        "AS DESCIVA, I.VALORE, P.FK_UNITAMISURA, UM.CODICE AS CODUM FROM (Prodotti P "
                                        "LEFT JOIN Iva I ON P.FK_Iva = I.RID) LEFT JOIN UnitaMisura UM ON "
                                        "P.FK_UNITAMISURA = UM.RID WHERE P.RID = ")
                             + QString::number(fkProdotto),
                         tag("txtProdotto_Validate"));
        if (!rs || rs->eof())
            return false;
        riga.prodotto = fkProdotto;
        riga.codice = rs->text(QStringLiteral("CODICE"));
        riga.descrizione = rs->text(QStringLiteral("DESCRIZIONE"));
        riga.iva = int(rs->integer(QStringLiteral("FK_Iva")));
        riga.codIva = rs->text(QStringLiteral("CODIVA"));
        riga.descIva = rs->text(QStringLiteral("DESCIVA"));
        riga.valoreIva = riga.iva > 0 ? formattaImporto(rs->value(QStringLiteral("VALORE")), 2) : QString();
        riga.um = int(rs->integer(QStringLiteral("FK_UNITAMISURA")));
        riga.codUM = rs->text(QStringLiteral("CODUM"));
    }
    // The price of the default customer's list, his discount left out.
    quint8 personale = 0;
    bool sconto = false;
    riga.prezzo = formattaImporto(getPrezzoVendita(gOptions().clientePredefinito, fkProdotto, personale, false, sconto),
                                  decimali);
    return true;
}

QString ricercaComponenti()
{
    return QStringLiteral("SELECT P.RID, P.CODICE, P.DESCRIZIONE, M.DESCRIZIONE AS MARCA, P.BARCODE, P.EXTRACODICE "
                          "FROM Prodotti P LEFT JOIN Marche M ON P.FK_MARCA = M.RID WHERE (P.DISTINTABASE = 0 OR "
                          "P.DISTINTABASE IS NULL) ORDER BY P.CODICE");
}

QList<RigaDistinta> leggiRigheDistinta(int fkDistinta, int decimali)
{
    QList<RigaDistinta> righe;
    const cReader rs(QStringLiteral("SELECT DBD.RID, DBD.FK_PRODOTTO, DBD.CODPRODOTTO, DBD.DESCPRODOTTO, "
                                    "DBD.QUANTITA, DBD.PREZZO, DBD.FK_Iva, DBD.VALOREIVA, I.CODICE AS CODIVA, "
                                    "I.DESCRIZIONE AS DESCIVA, DBD.FK_UM, UM.CODICE AS CODUM FROM "
                                    "(DistintaBaseDettagli DBD LEFT JOIN Iva I ON DBD.FK_Iva = I.RID) LEFT JOIN "
                                    "UnitaMisura UM ON DBD.FK_UM = UM.RID WHERE DBD.FK_DISTINTABASE = ")
                         + QString::number(fkDistinta) + QStringLiteral(" ORDER BY DBD.POS, DBD.RID"),
                     tag("showDettagli"));
    for (; rs && !rs->eof(); rs->moveNext()) {
        RigaDistinta r;
        r.rid = int(rs->integer(QStringLiteral("RID")));
        r.prodotto = int(rs->integer(QStringLiteral("FK_PRODOTTO")));
        r.codice = rs->text(QStringLiteral("CODPRODOTTO"));
        r.descrizione = rs->text(QStringLiteral("DESCPRODOTTO"));
        r.quantita = formattaImporto(rs->value(QStringLiteral("QUANTITA")), 2);
        r.prezzo = formattaImporto(rs->value(QStringLiteral("PREZZO")), decimali);
        r.iva = int(rs->integer(QStringLiteral("FK_Iva")));
        r.valoreIva = formattaImporto(rs->value(QStringLiteral("VALOREIVA")), 2);
        r.codIva = rs->text(QStringLiteral("CODIVA"));
        r.descIva = rs->text(QStringLiteral("DESCIVA"));
        r.um = int(rs->integer(QStringLiteral("FK_UM")));
        r.codUM = rs->text(QStringLiteral("CODUM"));
        r.gestione = Invariata;
        righe << r;
    }
    return righe;
}

// --- saving --------------------------------------------------------------------

int scriviTestaDistinta(int rid, const TestaDistinta& testa, QString& precedente)
{
    cAdoSqlServer& db = gAdoSqlServer();
    precedente.clear();
    if (!bloccaDistinte("saveRecord"))
        return -1;
    // Checked again under the lock: another workstation may have taken the
    // code since the screen's check.
    const int altre = altreDistinte(testa.codice, rid, "saveRecord");
    if (altre < 0)
        return -1;
    if (altre > 0) {
        db.showAfterTransaction(QStringLiteral("Attenzione:\n") + erroreDistintaDuplicata(testa.codice),
                                vb::Exclamation);
        return -1;
    }
    const QStringList colonne = nomi("CODICE, BARCODE, EXTRACOD, DESCRIZIONE, FK_CATEGORIA, FK_GRUPPO, FK_UM");
    const QStringList valori{testo(testa.codice),      testo(testa.barcode),    testo(testa.extraCod),
                             testo(testa.descrizione), chiave(testa.categoria), chiave(testa.gruppo),
                             chiave(testa.um)};
    if (rid <= 0)
        return db.getIDByInsert(sqlInsert(QStringLiteral("DistintaBase"), colonne, valori), tag("saveRecord"),
                                QStringLiteral("RID"), QStringLiteral("DistintaBase"));
    {
        // A kit deleted meanwhile by another workstation is not written again.
        const cReader rs(QStringLiteral("SELECT CODICE FROM DistintaBase WHERE RID = ") + QString::number(rid),
                         tag("saveRecord"));
        if (!rs)
            return -1;
        if (rs->eof()) {
            db.showAfterTransaction(QStringLiteral("La distinta è stata eliminata da un'altra postazione."),
                                    vb::Exclamation);
            return -1;
        }
        precedente = rs->text(QStringLiteral("CODICE"));
    }
    return db.executeSQL(sqlUpdate(QStringLiteral("DistintaBase"), colonne, valori, rid), tag("saveRecord")) ? rid : -1;
}

bool saveDettagli(int fkDistinta, const QList<RigaDistinta>& righe)
{
    cAdoSqlServer& db = gAdoSqlServer();
    const QStringList colonne =
        nomi("FK_DISTINTABASE, FK_PRODOTTO, CODPRODOTTO, DESCPRODOTTO, QUANTITA, PREZZO, FK_Iva, "
             "VALOREIVA, POS, FK_UM");
    int pos = 0;
    for (const RigaDistinta& r : righe) {
        if (r.gestione == Eliminata) {
            if (r.rid > 0
                && !db.executeSQL(QStringLiteral("DELETE FROM DistintaBaseDettagli WHERE RID = ")
                                      + QString::number(r.rid),
                                  tag("saveDettagli")))
                return false;
            continue;
        }
        ++pos;
        if (r.gestione == Invariata)
            continue;
        const QStringList valori{QString::number(fkDistinta), chiave(r.prodotto), testo(r.codice), testo(r.descrizione),
                                 numero(r.quantita),          numero(r.prezzo),   chiave(r.iva),   numero(r.valoreIva),
                                 QString::number(pos),        chiave(r.um)};
        const QString sql = r.gestione == Nuova || r.rid <= 0
            ? sqlInsert(QStringLiteral("DistintaBaseDettagli"), colonne, valori)
            : sqlUpdate(QStringLiteral("DistintaBaseDettagli"), colonne, valori, r.rid);
        if (!db.executeSQL(sql, tag("saveDettagli")))
            return false;
    }
    return true;
}

bool salvaDistintaInProdotti(QString& codice, QString& barcode, QString& extraCod, QString& descrizione, int categoria,
                             int gruppo, int um, int iva, Single peso, qint16 colli)
{
    const int esiste = contaProdotti(codice, "salvaDistintaInProdotti");
    if (esiste < 0)
        return false;
    const QStringList colonne =
        nomi("BARCODE, EXTRACODICE, DESCRIZIONE, FK_CATEGORIA, FK_GRUPPO, FK_UNITAMISURA, FK_Iva, "
             "DISTINTABASE, EAN13CODE, COLLI, PESO");
    const QStringList valori{testo(barcode),
                             testo(extraCod),
                             testo(descrizione),
                             chiave(categoria),
                             chiave(gruppo),
                             chiave(um),
                             chiave(iva),
                             QStringLiteral("1"),
                             testo(barcode.isEmpty() ? QString() : EncodeEAN13(barcode)),
                             QString::number(colli),
                             getSqlNumberOrZero(QVariant::fromValue(peso))};
    QString sql;
    if (esiste > 0) {
        QStringList sets;
        for (int i = 0; i < colonne.size(); ++i)
            sets << colonne.at(i) + QStringLiteral(" = ") + valori.at(i);
        sql = QStringLiteral("UPDATE Prodotti SET ") + sets.join(QStringLiteral(", "))
            + QStringLiteral(" WHERE CODICE = ") + sqlText(codice);
    } else {
        sql = sqlInsert(QStringLiteral("Prodotti"), QStringList{QStringLiteral("CODICE")} + colonne,
                        QStringList{sqlText(codice)} + valori);
    }
    return gAdoSqlServer().executeSQL(sql, tag("salvaDistintaInProdotti"));
}

bool salvaDettagliDistinta(int fkDistinta, const TestaDistinta& testa, const QString& precedente,
                           const QList<RigaDistinta>& righe)
{
    if (!saveDettagli(fkDistinta, righe))
        return false;
    const int iva = getIDIvaDistinta(righe);
    const PesoColli pesoColli = iva > 0 ? getTotPesoColliDistinta(righe) : PesoColli();
    // A kit whose code changed takes its mirror along, when no product has
    // the new code yet; the mirror keeps its key, and the documents with it.
    if (!precedente.isEmpty() && precedente != testa.codice) {
        const int occupato = contaProdotti(testa.codice, "saveRecord");
        if (occupato < 0)
            return false;
        if (occupato == 0
            && !gAdoSqlServer().executeSQL(QStringLiteral("UPDATE Prodotti SET CODICE = ") + sqlText(testa.codice)
                                               + QStringLiteral(" WHERE CODICE = ") + sqlText(precedente)
                                               + QStringLiteral(" AND DISTINTABASE = 1"),
                                           tag("saveRecord")))
            return false;
    }
    QString codice = testa.codice, barcode = testa.barcode, extraCod = testa.extraCod, descrizione = testa.descrizione;
    return salvaDistintaInProdotti(codice, barcode, extraCod, descrizione, testa.categoria, testa.gruppo, testa.um, iva,
                                   pesoColli.peso, pesoColli.colli);
}

bool eliminaDistinta(int rid)
{
    cAdoSqlServer& db = gAdoSqlServer();
    const QString key = QString::number(rid);
    cTransaction transaction(tag("deleteRecord"));
    if (!transaction || !bloccaDistinte("deleteRecord"))
        return false;
    QString codice;
    {
        const cReader rs(QStringLiteral("SELECT CODICE FROM DistintaBase WHERE RID = ") + key, tag("deleteRecord"));
        if (!rs)
            return false;
        codice = rs->eof() ? QString() : rs->text(QStringLiteral("CODICE"));
    }
    if (!db.executeSQL(QStringLiteral("DELETE FROM DistintaBaseDettagli WHERE FK_DISTINTABASE = ") + key,
                       tag("deleteRecord"))
        || !db.executeSQL(QStringLiteral("DELETE FROM DistintaBase WHERE RID = ") + key, tag("deleteRecord")))
        return false;
    // The mirror goes with its kit; kits move no stock, so there is none to check.
    if (!codice.isEmpty()
        && !db.executeSQL(QStringLiteral("DELETE FROM Prodotti WHERE CODICE = ") + sqlText(codice)
                              + QStringLiteral(" AND DISTINTABASE = 1"),
                          tag("deleteRecord")))
        return false;
    return transaction.commit();
}
