#include "printing/stampadb.h"

#include "common/apphome.h"
#include "common/currency.h"
#include "common/errorlog.h"
#include "common/italiantext.h"
#include "common/msgbox.h"
#include "core/optionstore.h"
#include "data/recordset.h"
#include "data/scoped.h"
#include "data/session.h"
#include "data/sqlliteral.h"

#include <QCursor>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>

#include <initializer_list>

namespace {

const QString kModulo = QStringLiteral("bOrvantisCommon");

QString tag(const char* procedura) { return kModulo + QLatin1Char('.') + QLatin1String(procedura); }

const QString kErroreCreazione =
    QStringLiteral("Si è verificato un errore durante la creazione del Documento di Stampa. [Rif: Creazione TEMP_DB].")
    + QLatin1Char('\r') + QStringLiteral("Impossibile continuare");

// --- the tables of the print database --------------------------------------

// What a column holds in the print database. Dates are ISO text
// ('YYYY-MM-DD', date-times 'YYYY-MM-DD HH:MM:SS'), amounts and quantities
// REAL, texts never Null (a missing look-up prints as an empty text).
enum class Tipo {
    Intero,
    Numero,
    Testo,
    Data,
    DataOra,
    Immagine
};

// One column: its name in the print database and where its value comes from
// in the live database (an expression of the statement that reads it; none
// for the values worked out here).
struct Colonna
{
    const char* nome;
    Tipo tipo;
    const char* origine;
};

struct Tabella
{
    const char* nome;
    const char* procedura; // that writes it, as a failure names it
    std::initializer_list<Colonna> colonne;
};

// One row a document: the header with every text it looks up.
const Tabella kMovimenti{
    "Movimenti",
    "preparaIntestazioneStampa",
    {
        {"RID", Tipo::Intero, "M.RID"},
        {"PROGRESSIVO", Tipo::Intero, "M.PROGRESSIVO"},
        {"ANNO", Tipo::Testo, "M.ANNO"},
        {"DATA", Tipo::Data, "M.DATA"},
        {"RIFERIMENTI", Tipo::Testo, "M.RIFERIMENTI"},
        {"CODPARTITA", Tipo::Testo, "M.CODPARTITA"},
        {"CODTIPODOCUMENTO", Tipo::Testo, "TD.CODICE"},
        {"DESCTIPODOCUMENTO", Tipo::Testo, "TD.DESCSTAMPA"}, // the printed title, not the type's name
        {"CODORIGINE", Tipo::Testo, "MO.CODICE"},
        {"DESCORIGINE", Tipo::Testo, "MO.DESCRIZIONE"},
        {"CODDESTINAZIONE", Tipo::Testo, "MD.CODICE"},
        {"DESCDESTINAZIONE", Tipo::Testo, "MD.DESCRIZIONE"},
        {"CODCONTROPARTITA", Tipo::Testo, "A.NUMERO"},
        {"DESCCONTROPARTITA", Tipo::Testo, "A.DENOMINAZIONE"},
        {"INDIRIZZO", Tipo::Testo, "A.INDIRIZZO"},
        {"CIVICO", Tipo::Testo, "A.CIVICO"},
        {"CAP", Tipo::Testo, "A.CAP"},
        {"CITTA", Tipo::Testo, "A.CITTA"},
        {"PROVINCIA", Tipo::Testo, "A.PROVINCIA"},
        {"CFISCALE", Tipo::Testo, "A.CFISCALE"},
        {"PIVA", Tipo::Testo, "A.PIVA"},
        {"TELUFFICIO", Tipo::Testo, "A.TELUFFICIO"},
        {"FAX", Tipo::Testo, "A.FAX"},
        {"CELL", Tipo::Testo, "A.CELL"},
        {"CODPAGAMENTO", Tipo::Testo, "P.CODICE"},
        {"DESCPAGAMENTO", Tipo::Testo, "P.DESCRIZIONE"},
        {"CODBANCA", Tipo::Testo, "B.CODICE"},
        {"DESCBANCA", Tipo::Testo, nullptr},
        {"CODSPEDIZIONE", Tipo::Testo, "S.CODICE"},
        {"DESCSPEDIZIONE", Tipo::Testo, "S.DESCRIZIONE"},
        {"VIACONS", Tipo::Testo, "M.VIACONS"},
        {"CIVICOCONS", Tipo::Testo, "M.CIVICOCONS"},
        {"CITTACONS", Tipo::Testo, "M.CITTACONS"},
        {"PROVINCIACONS", Tipo::Testo, "M.PROVINCIACONS"},
        {"CAPCONS", Tipo::Testo, "M.CAPCONS"},
        {"TELEFONOCONS", Tipo::Testo, "M.TELEFONOCONS"},
        {"FAXCONS", Tipo::Testo, "M.FAXCONS"},
        {"DATACONS", Tipo::Data, "M.DATACONS"},
        {"ORACONS", Tipo::Testo, "M.ORACONS"},
        {"PESOCONS", Tipo::Numero, "M.PESOCONS"},
        {"COLLICONS", Tipo::Testo, "M.COLLICONS"},
        {"CODASPETTO", Tipo::Testo, "AE.CODICE"},
        {"DESCASPETTO", Tipo::Testo, "AE.DESCRIZIONE"},
        {"CODTRASPORTO", Tipo::Testo, "CT.CODICE"},
        {"DESCTRASPORTO", Tipo::Testo, "CT.DESCRIZIONE"},
        {"RDA1", Tipo::Numero, "M.RDA1"},
        {"RDA2", Tipo::Numero, "M.RDA2"},
        {"TOTRDA", Tipo::Numero, "M.TOTRDA"},
        {"USAPREZZIIVA", Tipo::Intero, "M.USAPREZZIIVA"}, // 0 for Null
        {"IDPNPagamento", Tipo::Intero, "PNP.RID"},       // 0 unless the payment entry exists
        {"PiePagina", Tipo::Testo, nullptr},
        {"ProgElencoSpeciale", Tipo::Intero, "M.PROGELENCOSPECIALE"}, // Null unless above 0
        {"DestElencoSpeciale", Tipo::Testo, "M.DESTELENCOSPECIALE"},
        {"DocumElencoSpeciale", Tipo::Testo, "M.DOCUMELENCOSPECIALE"},
        {"AutElencoSpeciale", Tipo::Testo, "M.AUTELENCOSPECIALE"},
        {"FK_LOGO", Tipo::Intero, nullptr}, // the Logo row, always 1
    },
};

// One row a printed row.
const Tabella kDettagli{
    "DettagliMovimento",
    "preparaCorpoStampa",
    {
        {"RID", Tipo::Intero, "DM.RID"},
        {"FK_MOVIMENTO", Tipo::Intero, "DM.FK_MOVIMENTO"},
        {"CodProdotto", Tipo::Testo, "DM.CODPRODOTTO"},
        {"DescProdotto", Tipo::Testo, "DM.DESCPRODOTTO"},
        {"QUANTITA", Tipo::Numero, "DM.QUANTITA"},
        {"POS", Tipo::Intero, "DM.POS"},
        {"SCONTO", Tipo::Numero, "DM.SCONTO"},
        {"SCONTO2", Tipo::Numero, "DM.SCONTO2"},
        {"SCONTO3", Tipo::Numero, "DM.SCONTO3"},
        {"CODUM", Tipo::Testo, "UM.CODICE"},
        {"DESCUM", Tipo::Testo, "UM.DESCRIZIONE"},
        {"Prezzo", Tipo::Numero, "DM.PREZZO"},
        {"ScontoNetto", Tipo::Numero, "DM.SCONTONETTO"},
        {"PrezzoNetto", Tipo::Numero, "DM.PREZZONETTO"},
        {"IVA", Tipo::Numero, "DM.IVA"},
        {"TotPrezzoNetto", Tipo::Numero, "DM.TotPrezzoNetto"},
        {"TotaleIVA", Tipo::Numero, "DM.TOTALEIVA"},
        {"TotaleRiga", Tipo::Numero, "DM.TOTALERIGA"},
        {"CodIva", Tipo::Testo, "I.CODICE"},
        {"DESCIVA", Tipo::Testo, "I.DESCRIZIONE"},
        {"VALOREIVA", Tipo::Numero, "I.VALORE"},
        {"EXTRAPROG", Tipo::Intero, "DM.EXTRAPROG"},
        {"CODMARCA", Tipo::Testo, "MA.CODICE"},
        {"DATAORA", Tipo::DataOra, "DM.ORA"},
        {"CODVENDITORE", Tipo::Testo, "V.CODICE"},
        {"DESCVENDITORE", Tipo::Testo, "V.DESCRIZIONE"},
        {"ElencoSpeciale", Tipo::Intero, "P.ELENCOSPECIALE"},
        {"NumRegistrazione", Tipo::Testo, "P.NUMREGISTRAZIONE"},
    },
};

// One row a due date of the document's journal entry.
const Tabella kScadenze{
    "Scadenze",
    "preparaScadenze",
    {
        {"RID", Tipo::Intero, "S.RID"},
        {"FK_MOVIMENTO", Tipo::Intero, "M.RID"},
        {"DATA", Tipo::Data, "S.DATA"},
        {"IMPORTO", Tipo::Numero, "S.IMPORTO"},
    },
};

// The firm's logo: one row, key 1.
const Tabella kLogo{"Logo", "preparaLogo", {{"RID", Tipo::Intero, nullptr}, {"LOGO", Tipo::Immagine, nullptr}}};

// The labels of the barcode print, written by position: running number,
// font string, two texts, list price.
const Tabella kBarcode{"BARCODE",
                       "creaStampaDBVuoto",
                       {{"PROG", Tipo::Intero, nullptr},
                        {"EAN13CODE", Tipo::Testo, nullptr},
                        {"TESTO1", Tipo::Testo, nullptr},
                        {"TESTO2", Tipo::Testo, nullptr},
                        {"PREZZO", Tipo::Numero, nullptr}}};

const char* tipoSql(Tipo tipo)
{
    switch (tipo) {
    case Tipo::Intero: return "INTEGER";
    case Tipo::Numero: return "REAL";
    case Tipo::Testo: return "TEXT";
    case Tipo::Data: return "DATE";
    case Tipo::DataOra: return "DATETIME";
    case Tipo::Immagine: return "BLOB";
    }
    return "TEXT";
}

QString creaTabella(const Tabella& t)
{
    QStringList colonne;
    for (const Colonna& c : t.colonne)
        colonne << QLatin1String(c.nome) + QLatin1Char(' ') + QLatin1String(tipoSql(c.tipo));
    return QStringLiteral("CREATE TABLE ") + QLatin1String(t.nome) + QStringLiteral(" (")
        + colonne.join(QStringLiteral(", ")) + QLatin1Char(')');
}

QString inserisci(const Tabella& t)
{
    QStringList colonne, segnaposti;
    for (const Colonna& c : t.colonne) {
        colonne << QLatin1String(c.nome);
        segnaposti << QStringLiteral("?");
    }
    return QStringLiteral("INSERT INTO ") + QLatin1String(t.nome) + QStringLiteral(" (")
        + colonne.join(QStringLiteral(", ")) + QStringLiteral(") VALUES (") + segnaposti.join(QStringLiteral(", "))
        + QLatin1Char(')');
}

// The columns that the statement reading `t` selects, each under its name
// in the print database.
QString selezione(const Tabella& t)
{
    QStringList campi;
    for (const Colonna& c : t.colonne)
        if (c.origine)
            campi << QLatin1String(c.origine) + QStringLiteral(" AS ") + QLatin1String(c.nome);
    return campi.join(QStringLiteral(", "));
}

int posizione(const Tabella& t, const char* nome)
{
    int i = 0;
    for (const Colonna& c : t.colonne) {
        if (qstrcmp(c.nome, nome) == 0)
            return i;
        ++i;
    }
    Q_ASSERT_X(false, "posizione", nome);
    return -1;
}

// --- values as the print database keeps them --------------------------------

QVariant nullo(Tipo tipo)
{
    switch (tipo) {
    case Tipo::Intero: return QVariant(QMetaType::fromType<qlonglong>());
    case Tipo::Numero: return QVariant(QMetaType::fromType<double>());
    case Tipo::Immagine: return QVariant(QMetaType::fromType<QByteArray>());
    default: return QVariant(QMetaType::fromType<QString>());
    }
}

// A text is never Null: an empty text binds as one, not as Null.
QVariant testo(const QString& valore) { return valore.isNull() ? QVariant(QStringLiteral("")) : QVariant(valore); }

// The value read from the live database, as the column keeps it. Numbers
// that come as numbers go through unchanged (an amount stays the double it
// was stored as); numbers that come as text (a server's DECIMAL) are read
// as the data layer reads them.
QVariant valore(const QVariant& v, Tipo tipo)
{
    switch (tipo) {
    case Tipo::Testo: return testo(v.isNull() ? QString() : v.toString());
    case Tipo::Immagine: return v.isNull() ? nullo(tipo) : QVariant(v.toByteArray());
    case Tipo::Data: {
        const QDate d = toDate(v);
        return d.isValid() ? QVariant(d.toString(Qt::ISODate)) : nullo(tipo);
    }
    case Tipo::DataOra: {
        const QDateTime dt = toDateTime(v);
        return dt.isValid() ? QVariant(dt.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"))) : nullo(tipo);
    }
    case Tipo::Intero:
    case Tipo::Numero: break;
    }
    if (v.isNull())
        return nullo(tipo);
    switch (v.typeId()) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Char:
    case QMetaType::SChar:
    case QMetaType::UChar:
    case QMetaType::Bool: return tipo == Tipo::Intero ? QVariant(v.toLongLong()) : QVariant(v.toDouble());
    case QMetaType::Double:
    case QMetaType::Float: return tipo == Tipo::Intero ? QVariant(qRound64(v.toDouble())) : QVariant(v.toDouble());
    default: break;
    }
    bool ok = false;
    const double numero = getSqlNumber(v).toDouble(&ok);
    if (!ok)
        return nullo(tipo);
    return tipo == Tipo::Intero ? QVariant(qRound64(numero)) : QVariant(numero);
}

// A row of `t` from the current row of the statement; the columns without
// origin stay Null for the caller to fill.
QVariantList rigaDa(const Tabella& t, const Recordset& rs)
{
    QVariantList riga;
    riga.reserve(qsizetype(t.colonne.size()));
    for (const Colonna& c : t.colonne)
        riga << (c.origine ? valore(rs.value(QLatin1String(c.nome)), c.tipo) : nullo(c.tipo));
    return riga;
}

QString condizione(const QString& filtro)
{
    return filtro.trimmed().isEmpty() ? QString() : QStringLiteral(" WHERE (") + filtro + QLatin1Char(')');
}

// --- reading the documents ---------------------------------------------------

// The bank as a document prints it: its name, and with a branch the branch
// and its bank codes.
QString descrizioneBanca(const Recordset& rs)
{
    const QString agenzia = rs.text(QStringLiteral("AGENZIABANCA"));
    const QString banca = rs.text(QStringLiteral("DESCRIZIONEBANCA"));
    if (agenzia.trimmed().isEmpty())
        return banca;
    return banca + QStringLiteral(" Ag. ") + agenzia + QStringLiteral(" ABI:") + rs.text(QStringLiteral("ABIBANCA"))
        + QStringLiteral(" CAB:") + rs.text(QStringLiteral("CABBANCA"));
}

bool preparaIntestazioneStampa(const QString& filtro, QList<QVariantList>& righe)
{
    const QString sql = QStringLiteral("SELECT ") + selezione(kMovimenti)
        + QStringLiteral(", B.DESCRIZIONE AS DESCRIZIONEBANCA, B.AGENZIA AS AGENZIABANCA, B.ABI AS ABIBANCA, "
                         "B.CAB AS CABBANCA "
                         "FROM (((((((((((Movimenti M INNER JOIN TipoDocumenti TD ON M.FK_TIPODOCUMENTO = TD.RID) "
                         "LEFT JOIN Causali C ON TD.FK_CAUSALE = C.RID) "
                         "LEFT JOIN Magazzini MO ON M.FK_ORIGINE = MO.RID) "
                         "LEFT JOIN Magazzini MD ON M.FK_DESTINAZIONE = MD.RID) "
                         "LEFT JOIN Anagrafiche A ON M.FK_CONTROPARTITA = A.RID) "
                         "LEFT JOIN Pagamenti P ON M.FK_PAGAMENTO = P.RID) "
                         "LEFT JOIN Banche B ON M.FK_BANCA = B.RID) "
                         "LEFT JOIN Spedizioni S ON M.FK_SPEDIZIONE = S.RID) "
                         "LEFT JOIN AspettoEsteriore AE ON M.FK_ASPETTOCONS = AE.RID) "
                         "LEFT JOIN CausaliTrasporto CT ON M.FK_CAUSALETRASPORTO = CT.RID) "
                         "LEFT JOIN PrimaNota PNP ON M.FK_PNPagamento = PNP.RID)")
        + condizione(filtro) + QStringLiteral(" ORDER BY M.RID");
    const cReader rs(sql, tag("preparaIntestazioneStampa"));
    if (!rs)
        return false;
    const int banca = posizione(kMovimenti, "DESCBANCA"), piede = posizione(kMovimenti, "PiePagina"),
              logo = posizione(kMovimenti, "FK_LOGO"), usaPrezziIva = posizione(kMovimenti, "USAPREZZIIVA"),
              pagamento = posizione(kMovimenti, "IDPNPagamento"), elenco = posizione(kMovimenti, "ProgElencoSpeciale");
    for (; !rs->eof(); rs->moveNext()) {
        QVariantList riga = rigaDa(kMovimenti, *rs);
        riga[banca] = testo(descrizioneBanca(*rs));
        riga[piede] = testo(gOptions().piePagina);
        riga[logo] = QVariant(qlonglong(1));
        for (int i : {usaPrezziIva, pagamento})
            if (riga.at(i).isNull())
                riga[i] = QVariant(qlonglong(0));
        if (!riga.at(elenco).isNull() && riga.at(elenco).toLongLong() <= 0)
            riga[elenco] = nullo(Tipo::Intero);
        righe << riga;
    }
    return true;
}

// The rows as they print. With the option TipoStampaDistinta at 0 every row
// prints, a kit with no VAT of its own; otherwise a kit prints as one line
// carrying the sums of its components, which don't print.
class CorpoStampa
{
public:
    explicit CorpoStampa(QList<QVariantList>& righe)
        : m_righe(righe)
    { }

    void aggiungi(QVariantList riga, bool padre, bool componente, qint64 movimento)
    {
        if (gOptions().tipoStampaDistinta == 0) {
            if (padre) {
                riga[m_codIva] = riga[m_descIva] = testo(QString());
                riga[m_valoreIva] = QVariant(0.0);
            }
            m_righe << riga;
            return;
        }
        // A component of another document can't be of this kit.
        if (m_aperto && componente && movimento == m_movimento) {
            for (int k = 0; k < kImporti; ++k)
                m_somme[k] += Currency::fromDouble(riga.at(m_importi[k]).toDouble());
            for (int i : {m_codIva, m_descIva, m_valoreIva})
                m_padre[i] = riga.at(i);
            return;
        }
        chiudi();
        if (padre) {
            m_aperto = true;
            m_padre = riga;
            m_movimento = movimento;
            m_somme.fill(Currency(), kImporti);
            return;
        }
        m_righe << riga;
    }

    // The kit still open is written with its sums (the end of the data, or
    // a row that is not one of its components).
    void chiudi()
    {
        if (!m_aperto)
            return;
        for (int k = 0; k < kImporti; ++k)
            m_padre[m_importi[k]] = QVariant(m_somme.at(k).toDouble());
        m_righe << m_padre;
        m_aperto = false;
    }

private:
    static constexpr int kImporti = 6;
    QList<QVariantList>& m_righe;
    const int m_importi[kImporti]{posizione(kDettagli, "Prezzo"),     posizione(kDettagli, "PrezzoNetto"),
                                  posizione(kDettagli, "IVA"),        posizione(kDettagli, "TotaleIVA"),
                                  posizione(kDettagli, "TotaleRiga"), posizione(kDettagli, "TotPrezzoNetto")};
    const int m_codIva = posizione(kDettagli, "CodIva");
    const int m_descIva = posizione(kDettagli, "DESCIVA");
    const int m_valoreIva = posizione(kDettagli, "VALOREIVA");
    bool m_aperto = false;
    QVariantList m_padre;
    qint64 m_movimento = 0;
    QList<Currency> m_somme;
};

bool preparaCorpoStampa(const QString& filtro, QList<QVariantList>& righe)
{
    const QString sql = QStringLiteral("SELECT ") + selezione(kDettagli)
        + QStringLiteral(", DM.IK_DETTAGLIOMOVIMENTO "
                         "FROM ((((((Movimenti M INNER JOIN DettagliMovimento DM ON DM.FK_MOVIMENTO = M.RID) "
                         "INNER JOIN Prodotti P ON DM.FK_PRODOTTO = P.RID) "
                         "LEFT JOIN Iva I ON DM.FK_Iva = I.RID) "
                         "LEFT JOIN UnitaMisura UM ON DM.FK_UM = UM.RID) "
                         "LEFT JOIN Venditori V ON DM.FK_VENDITORE = V.RID) "
                         "LEFT JOIN Marche MA ON P.FK_MARCA = MA.RID)")
        + condizione(filtro) + QStringLiteral(" ORDER BY M.RID, DM.POS, DM.RID");
    const cReader rs(sql, tag("preparaCorpoStampa"));
    if (!rs)
        return false;
    const QString distinta = gOptions().distintaBase;
    const int codice = posizione(kDettagli, "CodProdotto"), movimento = posizione(kDettagli, "FK_MOVIMENTO");
    CorpoStampa corpo(righe);
    for (; !rs->eof(); rs->moveNext()) {
        QVariantList riga = rigaDa(kDettagli, *rs);
        const bool padre = !distinta.isEmpty() && riga.at(codice).toString().startsWith(distinta);
        corpo.aggiungi(riga, padre, rs->integer(QStringLiteral("IK_DETTAGLIOMOVIMENTO")) > 0,
                       riga.at(movimento).toLongLong());
    }
    corpo.chiudi();
    return true;
}

bool preparaScadenze(const QString& filtro, QList<QVariantList>& righe)
{
    const QString sql = QStringLiteral("SELECT ") + selezione(kScadenze)
        + QStringLiteral(" FROM (Movimenti M INNER JOIN PrimaNota PN ON M.FK_PrimaNota = PN.RID) "
                         "INNER JOIN Scadenze S ON S.FK_PrimaNota = PN.RID")
        + condizione(filtro) + QStringLiteral(" ORDER BY M.RID, S.DATA, S.RID");
    const cReader rs(sql, tag("preparaScadenze"));
    if (!rs)
        return false;
    for (; !rs->eof(); rs->moveNext())
        righe << rigaDa(kScadenze, *rs);
    return true;
}

// The logo row: the bytes of "Logo.bmp" of the report folder, Null without one.
QVariantList preparaLogo()
{
    QVariant immagine = nullo(Tipo::Immagine);
    QFile file(QDir(gSession().strReportPath).filePath(QStringLiteral("Logo.bmp")));
    if (!gSession().strReportPath.isEmpty() && file.open(QIODevice::ReadOnly))
        immagine = QVariant(file.readAll());
    return {QVariant(qlonglong(1)), immagine};
}

// --- the print file ----------------------------------------------------------

// The rows to write, table by table.
using Contenuto = QList<QPair<const Tabella*, QList<QVariantList>>>;

// What made a write fail, reported once the transaction is undone.
struct Fallimento
{
    QString procedura;
    QString informazione;
};

// The print database on a connection of its own, given back when it goes.
class FileStampa
{
public:
    FileStampa()
        : m_nome(QStringLiteral("orvantis-printdb-") + QString::number(++s_contatore))
    { }
    ~FileStampa()
    {
        {
            QSqlDatabase db = QSqlDatabase::database(m_nome, false);
            if (db.isOpen())
                db.close();
        }
        if (m_aggiunta)
            QSqlDatabase::removeDatabase(m_nome);
    }
    FileStampa(const FileStampa&) = delete;
    FileStampa& operator=(const FileStampa&) = delete;

    // The old file goes and a new one, with its tables and no rows, takes
    // its place. False when the file can't be made.
    bool crea(const QString& percorso)
    {
        // A journal left beside the old file would be played into the new one.
        const QStringList vecchi{percorso, percorso + QStringLiteral("-journal"), percorso + QStringLiteral("-wal"),
                                 percorso + QStringLiteral("-shm")};
        for (const QString& f : vecchi) {
            if (!QFileInfo::exists(f))
                continue;
            QFile::setPermissions(f, QFile::permissions(f) | QFileDevice::WriteOwner | QFileDevice::ReadOwner);
            if (!QFile::remove(f))
                return false;
        }
        if (!QDir().mkpath(QFileInfo(percorso).absolutePath()))
            return false;
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_nome);
        m_aggiunta = true;
        db.setDatabaseName(percorso);
        if (!db.open())
            return false;
        for (const Tabella* t : {&kMovimenti, &kDettagli, &kScadenze, &kLogo, &kBarcode}) {
            QSqlQuery q(db);
            if (!q.exec(creaTabella(*t)))
                return false;
        }
        return true;
    }

    // Writes the rows of each table in one transaction; on a failure
    // nothing is written and `fallimento` says where.
    bool scrivi(const Contenuto& tabelle, Fallimento& fallimento)
    {
        QSqlDatabase db = QSqlDatabase::database(m_nome, false);
        if (!db.transaction()) {
            fallimento = {QStringLiteral("creaStampaDB"), QStringLiteral("BeginTrans")};
            Err().raise(-1, QStringLiteral("SQLite"), db.lastError().text());
            return false;
        }
        for (const auto& [tabella, righe] : tabelle)
            if (!scriviRighe(db, *tabella, righe, fallimento)) {
                db.rollback();
                return false;
            }
        if (!db.commit()) {
            fallimento = {QStringLiteral("creaStampaDB"), QStringLiteral("CommitTrans")};
            Err().raise(-1, QStringLiteral("SQLite"), db.lastError().text());
            db.rollback();
            return false;
        }
        return true;
    }

private:
    static bool scriviRighe(QSqlDatabase& db, const Tabella& t, const QList<QVariantList>& righe,
                            Fallimento& fallimento)
    {
        if (righe.isEmpty())
            return true;
        const QString sql = inserisci(t);
        QSqlQuery q(db);
        bool ok = q.prepare(sql);
        for (qsizetype r = 0; ok && r < righe.size(); ++r) {
            const QVariantList& riga = righe.at(r);
            for (qsizetype i = 0; i < riga.size(); ++i)
                q.bindValue(int(i), riga.at(i));
            ok = q.exec();
        }
        if (ok)
            return true;
        const QSqlError errore = q.lastError();
        bool numerico = false;
        const qint64 numero = errore.nativeErrorCode().toLongLong(&numerico);
        Err().raise(numerico ? numero : -1, QStringLiteral("SQLite"), errore.text());
        // The header's statement is logged as "SSQL = ", the others' as "SQL=".
        fallimento = {QLatin1String(t.procedura),
                      (&t == &kMovimenti ? QStringLiteral("SSQL = ") : QStringLiteral("SQL=")) + sql};
        return false;
    }

    static inline int s_contatore = 0;
    QString m_nome;
    bool m_aggiunta = false;
};

// The hourglass while the print database is written, where there is a screen.
class Clessidra
{
public:
    Clessidra()
        : m_attiva(qobject_cast<QGuiApplication*>(QCoreApplication::instance()) != nullptr)
    {
        if (m_attiva)
            QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    }
    ~Clessidra()
    {
        if (m_attiva)
            QGuiApplication::restoreOverrideCursor();
    }
    Clessidra(const Clessidra&) = delete;
    Clessidra& operator=(const Clessidra&) = delete;

private:
    bool m_attiva;
};

// A new print file with what `leggi` gathers from the live database. The
// file is made first, so that whatever fails afterwards leaves it empty;
// everything is read before the print file's transaction begins, which then
// only writes, and the failure is told once it is undone.
template <typename Lettura> bool generaStampaDB(bool sopra, Lettura leggi)
{
    Fallimento fallimento;
    bool creato = false;
    {
        Clessidra clessidra;
        FileStampa file;
        creato = file.crea(percorsoStampaDB(sopra));
        if (creato) {
            Contenuto contenuto;
            if (!leggi(contenuto))
                return false; // told by the data layer
            if (file.scrivi(contenuto, fallimento))
                return true;
        }
    }
    if (!creato) {
        msgBox(kErroreCreazione, vb::Critical);
        return false;
    }
    notifyError(kModulo, fallimento.procedura, fallimento.informazione);
    return false;
}

} // namespace

QString percorsoStampaDB(bool sopra)
{
    const QString nome = QStringLiteral("printdb.db");
    if (!sopra)
        return programFile(nome);
    return QDir::cleanPath(programFolder() + QStringLiteral("/../") + nome);
}

QString connessioneStampaDB(bool sopra) { return QStringLiteral("DSN=") + percorsoStampaDB(sopra); }

bool creaStampaDB(const QString& filtro, bool& sopra, long& extraProg)
{
    QString filtroRighe = filtro;
    if (extraProg > 0) {
        const QString extra = QStringLiteral("DM.EXTRAPROG = ") + QString::number(extraProg);
        filtroRighe = filtro.trimmed().isEmpty() ? extra : QLatin1Char('(') + filtro + QStringLiteral(") AND ") + extra;
    }
    return generaStampaDB(sopra, [&](Contenuto& contenuto) {
        QList<QVariantList> movimenti, righe, scadenze;
        if (!preparaIntestazioneStampa(filtro, movimenti) || !preparaCorpoStampa(filtroRighe, righe)
            || !preparaScadenze(filtro, scadenze))
            return false;
        contenuto = {{&kMovimenti, movimenti}, {&kDettagli, righe}, {&kScadenze, scadenze}, {&kLogo, {preparaLogo()}}};
        return true;
    });
}

bool creaStampaDBVuoto(bool sopra)
{
    return generaStampaDB(sopra, [](Contenuto& contenuto) {
        contenuto = {{&kLogo, {preparaLogo()}}};
        return true;
    });
}
