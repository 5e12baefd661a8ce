#include "printing/codiciabarre.h"

#include "common/ean13.h"
#include "common/errorlog.h"
#include "common/italiantext.h"
#include "common/msgbox.h"
#include "data/cadosqlserver.h"
#include "data/scoped.h"
#include "data/sqlliteral.h"
#include "printing/stampadb.h"

#include <QAtomicInt>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QStringList>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

const QString kModulo = QStringLiteral("frmStampaBarCode");
const QString kPrefissoChiave = QStringLiteral("P_");
// The texts of a label row are cut to the width of their columns.
constexpr int kLunghezzaTesto = 50;
// Products read by one statement of getLista.
constexpr int kChiaviPerLettura = 500;

QString tagGenera(const char* procedura)
{
    return QStringLiteral("frmGeneraBarCodeIntoProdotti.") + QLatin1String(procedura);
}
QString tag(const char* procedura) { return kModulo + QLatin1Char('.') + QLatin1String(procedura); }

// Every product in key order: each update locks its row in the same order as
// any other run would.
bool scriviCodici(const AvanzamentoBarCode& avanzamento)
{
    const QVariant conteggio =
        gAdoSqlServer().getValueBySQL(QStringLiteral("SELECT COUNT(RID) FROM Prodotti"), tagGenera("generaBarCode"));
    if (!conteggio.isValid())
        return false;
    const cReader rs(QStringLiteral("SELECT RID, BARCODE, DESCRIZIONE FROM Prodotti ORDER BY RID"),
                     tagGenera("generaBarCode"));
    if (!rs)
        return false;
    const int totale = std::max(int(conteggio.toLongLong()), rs->recordCount());
    int n = 0;
    for (; !rs->eof(); rs->moveNext()) {
        ++n;
        if (avanzamento)
            avanzamento(n, totale, rs->text(QStringLiteral("DESCRIZIONE")));
        if (!updateBarCode(int(rs->integer(QStringLiteral("RID"))), rs->text(QStringLiteral("BARCODE"))))
            return false;
    }
    return true;
}

QString selezioneProdotti()
{
    return QStringLiteral("SELECT P.RID, P.CODICE, P.DESCRIZIONE, M.DESCRIZIONE AS DESCMARCA ");
}

ProdottoEtichetta prodottoDa(const Recordset& rs)
{
    ProdottoEtichetta p;
    p.rid = int(rs.integer(QStringLiteral("RID")));
    p.codice = rs.text(QStringLiteral("CODICE"));
    p.descrizione = rs.text(QStringLiteral("DESCRIZIONE"));
    p.marca = rs.text(QStringLiteral("DESCMARCA"));
    return p;
}

// The number of labels of a line: a quantity of the screens, a fraction
// rounded up; none for anything else.
int etichetteDa(const QString& testo)
{
    if (testo.trimmed().isEmpty())
        return 1;
    const std::optional<double> quantita = parseNumberIt(testo);
    if (!quantita || !std::isfinite(*quantita) || *quantita <= 0)
        return 0;
    const double intere = std::ceil(*quantita - 1e-9);
    return intere >= double(std::numeric_limits<int>::max()) ? std::numeric_limits<int>::max() : int(intere);
}

// A connection of its own on the print database, closed and removed at the end.
class ConnessioneStampa
{
public:
    explicit ConnessioneStampa(const QString& file)
        : m_nome(QStringLiteral("orv_barcode_") + QString::number(s_prossima.fetchAndAddRelaxed(1)))
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_nome);
        db.setDatabaseName(file);
        m_aperta = db.open();
    }
    ~ConnessioneStampa()
    {
        {
            QSqlDatabase db = QSqlDatabase::database(m_nome, false);
            if (db.isOpen())
                db.close();
        }
        QSqlDatabase::removeDatabase(m_nome);
    }
    ConnessioneStampa(const ConnessioneStampa&) = delete;
    ConnessioneStampa& operator=(const ConnessioneStampa&) = delete;

    bool aperta() const { return m_aperta; }
    QSqlDatabase db() const { return QSqlDatabase::database(m_nome, false); }

private:
    static inline QAtomicInt s_prossima = 0;
    QString m_nome;
    bool m_aperta = false;
};

// What went wrong on the print database, reported after its rollback.
struct Guasto
{
    QString informazione;
    bool segnalato = false; // the data layer has told already
};

bool scriviEtichette(QSqlDatabase& db, const ElencoEtichette& elenco, const AvanzamentoStampa& avanzamento,
                     Guasto& guasto)
{
    QSqlQuery q(db);
    const QString svuota = QStringLiteral("DELETE FROM BARCODE");
    if (!q.exec(svuota)) {
        guasto.informazione = QStringLiteral("SQL=") + svuota + QLatin1Char('\n') + q.lastError().text();
        return false;
    }
    const QString inserisci = QStringLiteral("INSERT INTO BARCODE VALUES (?, ?, ?, ?, ?)");
    if (!q.prepare(inserisci)) {
        guasto.informazione = QStringLiteral("SQL=") + inserisci + QLatin1Char('\n') + q.lastError().text();
        return false;
    }
    const int totale = elenco.numeroProdotti();
    qint64 progressivo = 0;
    int n = 0;
    for (const ProdottoEtichetta& p : elenco.prodotti()) {
        const cReader rs(QStringLiteral("SELECT EAN13CODE, PLISTINO FROM Prodotti WHERE RID = ")
                             + QString::number(p.rid),
                         tag("fillBorcodesToPrint"));
        if (!rs) {
            guasto.segnalato = true;
            return false;
        }
        if (rs->eof()) {
            guasto.informazione = QStringLiteral("Prodotto non trovato: RID = ") + QString::number(p.rid)
                + QStringLiteral(" (") + p.codice + QLatin1Char(')');
            return false;
        }
        const QVariant ean =
            rs->isNull(QStringLiteral("EAN13CODE")) ? QVariant() : QVariant(rs->text(QStringLiteral("EAN13CODE")));
        const QVariant prezzo = rs->isNull(QStringLiteral("PLISTINO"))
            ? QVariant()
            : QVariant(rs->amount(QStringLiteral("PLISTINO")).toDouble());
        const QString testo1 = leftChars(p.codice + QLatin1Char('-') + p.descrizione, kLunghezzaTesto);
        const QString testo2 = leftChars(p.marca, kLunghezzaTesto);
        for (int i = 0; i < p.quantita; ++i) {
            q.bindValue(0, ++progressivo);
            q.bindValue(1, ean);
            q.bindValue(2, testo1);
            q.bindValue(3, testo2);
            q.bindValue(4, prezzo);
            if (!q.exec()) {
                guasto.informazione = QStringLiteral("SQL=") + inserisci + QStringLiteral(" (PROG = ")
                    + QString::number(progressivo) + QStringLiteral(")\n") + q.lastError().text();
                return false;
            }
        }
        if (avanzamento)
            avanzamento(++n, totale);
    }
    return true;
}

} // namespace

// --- bulk generation -------------------------------------------------------------

QString testoAvanzamentoBarCode(int n, int totale, const QString& descrizione)
{
    return QStringLiteral("Generazione Codice a Barre ") + QString::number(n) + QStringLiteral(" di ")
        + QString::number(totale) + QLatin1Char('\n') + QStringLiteral("Prodotto: ") + descrizione;
}

bool generaBarCode(const AvanzamentoBarCode& avanzamento)
{
    bool fatto = false;
    {
        cTransaction transazione(tagGenera("generaBarCode"));
        fatto = transazione && scriviCodici(avanzamento) && transazione.commit();
    } // rolled back here unless committed
    if (!fatto) {
        msgBox(QStringLiteral("Attenzione si è verificato un errore durante la generazione dei Codici a Barre!\n"
                              "L'operazione sarà annullata"),
               vb::Critical);
        return false;
    }
    msgBox(QStringLiteral("Generazione dei Codici a Barre avvenuta correttamente."), vb::Information);
    return true;
}

bool updateBarCode(int rid, const QString& codice)
{
    return gAdoSqlServer().executeSQL(QStringLiteral("UPDATE Prodotti SET EAN13Code = ") + sqlText(EncodeEAN13(codice))
                                          + QStringLiteral(" WHERE RID = ") + QString::number(rid),
                                      tagGenera("updateBarCode"));
}

// --- the products of the label screen ----------------------------------------------

QString ProdottoEtichetta::chiave() const { return kPrefissoChiave + QString::number(rid); }

int ridDaChiave(const QString& chiave)
{
    QString testo = chiave.trimmed();
    if (testo.startsWith(kPrefissoChiave, Qt::CaseInsensitive))
        testo = testo.mid(kPrefissoChiave.size());
    bool ok = false;
    const int rid = testo.toInt(&ok);
    return ok && rid > 0 ? rid : 0;
}

QString ricercaEtichetteSql(const FiltriEtichette& filtri)
{
    QStringList condizioni;
    if (filtri.parteCodice && !filtri.codice.isEmpty())
        condizioni << QStringLiteral("P.CODICE LIKE ") + sqlLikePattern(filtri.codice, LikeMatch::StartsWith);
    else if (filtri.prodotto > 0)
        condizioni << QStringLiteral("P.RID = ") + QString::number(filtri.prodotto);
    const std::pair<const char*, int> perChiave[] = {{"P.FK_MARCA = ", filtri.marca},
                                                     {"P.FK_CATEGORIA = ", filtri.categoria},
                                                     {"P.FK_GRUPPO = ", filtri.gruppo},
                                                     {"P.FK_COLLEZIONE = ", filtri.collezione}};
    for (const auto& [colonna, rid] : perChiave)
        if (rid > 0)
            condizioni << QLatin1String(colonna) + QString::number(rid);
    QString sql = selezioneProdotti()
        + QStringLiteral("FROM ((Prodotti P LEFT JOIN Marche M ON P.FK_MARCA = M.RID) "
                         "LEFT JOIN CategorieMerceologiche C ON P.FK_CATEGORIA = C.RID) "
                         "LEFT JOIN Gruppi G ON P.FK_GRUPPO = G.RID");
    if (!condizioni.isEmpty())
        sql += QStringLiteral(" WHERE ") + condizioni.join(QStringLiteral(" AND "));
    return sql + QStringLiteral(" ORDER BY P.DESCRIZIONE");
}

std::optional<QList<ProdottoEtichetta>> cercaProdottiEtichette(const FiltriEtichette& filtri)
{
    const cReader rs(ricercaEtichetteSql(filtri), tag("eseguiRicerca"));
    if (!rs)
        return std::nullopt;
    QList<ProdottoEtichetta> trovati;
    trovati.reserve(rs->recordCount());
    for (; !rs->eof(); rs->moveNext())
        trovati.append(prodottoDa(*rs));
    return trovati;
}

QString testoProdottiTrovati(int trovati) { return QString::number(trovati) + QStringLiteral(" Prodotti trovati."); }

int ElencoEtichette::aggiungi(const ProdottoEtichetta& prodotto, int quantita)
{
    if (const int i = indice(prodotto.rid); i >= 0) {
        m_prodotti[i].quantita += quantita;
        return i;
    }
    ProdottoEtichetta nuovo = prodotto;
    nuovo.quantita = quantita;
    m_prodotti.append(nuovo);
    m_indice.insert(prodotto.rid, int(m_prodotti.size()) - 1);
    return int(m_prodotti.size()) - 1;
}

void ElencoEtichette::aggiungiTutti(const QList<ProdottoEtichetta>& prodotti)
{
    for (const ProdottoEtichetta& p : prodotti)
        aggiungi(p, 1);
}

bool ElencoEtichette::rimuovi(int rid)
{
    const int i = indice(rid);
    if (i < 0)
        return false;
    m_prodotti.removeAt(i);
    m_indice.remove(rid);
    for (int j = i; j < m_prodotti.size(); ++j)
        m_indice[m_prodotti.at(j).rid] = j;
    return true;
}

void ElencoEtichette::svuota()
{
    m_prodotti.clear();
    m_indice.clear();
}

int ElencoEtichette::numeroEtichette() const
{
    qint64 totale = 0;
    for (const ProdottoEtichetta& p : m_prodotti)
        totale += p.quantita;
    return int(std::min<qint64>(totale, std::numeric_limits<int>::max()));
}

QString ElencoEtichette::testoEtichette() const
{
    return QString::number(numeroEtichette()) + QStringLiteral(" Etichette per ") + QString::number(numeroProdotti())
        + QStringLiteral(" Prodotti selezionati");
}

QList<RigaLista> leggiLista(const QString& lista)
{
    QList<RigaLista> righe;
    const QStringList linee = lista.split(QRegularExpression(QStringLiteral("[\r\n]")), Qt::SkipEmptyParts);
    for (const QString& linea : linee) {
        const QStringList campi = linea.split(QLatin1Char('\t'));
        const int rid = ridDaChiave(campi.value(0));
        const int etichette = etichetteDa(campi.value(1));
        if (rid > 0 && etichette > 0)
            righe.append({rid, etichette});
    }
    return righe;
}

bool getLista(const QString& lista, ElencoEtichette& elenco)
{
    const QList<RigaLista> righe = leggiLista(lista);
    QList<int> chiavi;
    for (const RigaLista& r : righe)
        if (!chiavi.contains(r.rid))
            chiavi.append(r.rid);
    QHash<int, ProdottoEtichetta> letti;
    for (qsizetype inizio = 0; inizio < chiavi.size(); inizio += kChiaviPerLettura) {
        QStringList gruppo;
        for (const int rid : chiavi.mid(inizio, kChiaviPerLettura))
            gruppo << QString::number(rid);
        const cReader rs(selezioneProdotti()
                             + QStringLiteral("FROM (Prodotti P LEFT JOIN Marche M ON P.FK_MARCA = M.RID) "
                                              "LEFT JOIN Collezioni C ON P.FK_COLLEZIONE = C.RID WHERE P.RID IN (")
                             + gruppo.join(QStringLiteral(", ")) + QLatin1Char(')'),
                         tag("getLista"));
        if (!rs)
            return false;
        for (; !rs->eof(); rs->moveNext()) {
            const ProdottoEtichetta p = prodottoDa(*rs);
            letti.insert(p.rid, p);
        }
    }
    for (const RigaLista& r : righe)
        if (const auto it = letti.constFind(r.rid); it != letti.constEnd())
            elenco.aggiungi(*it, r.etichette);
    return true;
}

// --- the print database ----------------------------------------------------------

QString erroreStampaDB()
{
    return QStringLiteral("Si è verificato un errore durante la preparazione del DataBase di stampa. "
                          "[Rif: Creazione TEMP_DB].\nImpossibile continuare");
}

bool fillBorcodesToPrint(const ElencoEtichette& elenco, const AvanzamentoStampa& avanzamento, const QString& percorso)
{
    const QString file = percorso.isEmpty() ? percorsoStampaDB() : percorso;
    // Opening a missing file would make an empty one, without the table.
    if (!QFileInfo(file).isFile()) {
        msgBox(erroreStampaDB(), vb::Critical);
        return false;
    }
    bool fatto = false;
    Guasto guasto;
    {
        ConnessioneStampa connessione(file);
        if (!connessione.aperta()) {
            msgBox(erroreStampaDB(), vb::Critical);
            return false;
        }
        QSqlDatabase db = connessione.db();
        if (!db.transaction()) {
            guasto.informazione = db.lastError().text();
        } else if (scriviEtichette(db, elenco, avanzamento, guasto) && db.commit()) {
            fatto = true;
        } else {
            if (guasto.informazione.isEmpty() && !guasto.segnalato)
                guasto.informazione = db.lastError().text();
            db.rollback();
        }
    }
    if (!fatto && !guasto.segnalato)
        notifyError(kModulo, QStringLiteral("fillBorcodesToPrint"),
                    QStringLiteral("DataBase di stampa: ") + file + QLatin1Char('\n') + guasto.informazione);
    return fatto;
}
