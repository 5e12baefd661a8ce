#include "accounting/scadenze.h"

#include "common/italiantext.h"
#include "common/valuecheck.h"
#include "data/cadosqlserver.h"
#include "data/recordset.h"
#include "data/scoped.h"
#include "data/sqlliteral.h"

#include <QDate>

#include <limits>
#include <optional>

namespace {

const QString kModule = QStringLiteral("bOrvantisCommon");
const QString kTag = kModule + QStringLiteral(".generaScadenzePagamento");

QDate fineMese(const QDate& d) { return QDate(d.year(), d.month(), 1).addMonths(1).addDays(-1); }

bool giorniFineMeseAmmessi(int giorni)
{
    return giorni >= std::numeric_limits<qint16>::min() && giorni <= std::numeric_limits<qint16>::max();
}

// The term: its header and the days and shares of its instalments.
struct Termine
{
    QString codice;
    Currency acconto;
    bool rimessaDiretta = false;
    bool fineMese = false;
    int nRate = 0;
    QList<int> giorni;
    QList<double> percentuali;
};

std::optional<Termine> leggiTermine(int fkPagamento)
{
    const cReader rs(
        QStringLiteral(
            "SELECT P.RID, P.CODICE, P.ACCONTO, P.RIMESSADIRETTA, P.FINEMESE, P.NRATE, DP.NGIORNI, DP.PERCENTUALE "
            "FROM Pagamenti P INNER JOIN DettagliPagamenti DP ON DP.FK_PAGAMENTO = P.RID WHERE P.RID = ")
            + QString::number(fkPagamento) + QStringLiteral(" ORDER BY DP.RID"),
        kTag);
    if (!rs)
        return std::nullopt;
    Termine t;
    for (; !rs->eof(); rs->moveNext()) {
        t.codice = rs->value(QStringLiteral("CODICE")).toString();
        t.acconto = rs->amount(QStringLiteral("ACCONTO"));
        t.rimessaDiretta = getChekByBool(rs->value(QStringLiteral("RIMESSADIRETTA"))) > 0;
        t.fineMese = getChekByBool(rs->value(QStringLiteral("FINEMESE"))) > 0;
        t.nRate = qint16(rs->integer(QStringLiteral("NRATE")));
        t.giorni << int(rs->integer(QStringLiteral("NGIORNI")));
        t.percentuali << rs->number(QStringLiteral("PERCENTUALE"));
    }
    return t;
}

// One row to write: its date and its amount as a SQL literal.
struct Riga
{
    QDate data;
    QString importo;
};

// The rows of the term over the amount and the date, or the message that
// tells why they cannot be stored.
QString calcolaRighe(const Termine& t, Currency importo, const QDate& data, bool scadenzeNegative, QList<Riga>& righe)
{
    // The down payment: a share of the amount in double precision, not rounded.
    if (t.acconto > Currency()) {
        double anticipo = importo.toDouble() * (t.acconto.toDouble() / 100.0);
        if (scadenzeNegative)
            anticipo = -anticipo;
        const QString errore = erroreImporto(anticipo, QStringLiteral("acconto delle scadenze"));
        if (!errore.isEmpty())
            return errore;
        righe << Riga{data, getSqlNumber(anticipo)};
    }
    for (int i = 0; i < t.nRate; ++i) {
        const QString nome = QStringLiteral("rata ") + QString::number(i + 1) + QStringLiteral(" delle scadenze");
        if (i >= t.giorni.size())
            return QStringLiteral("Il pagamento ") + t.codice + QStringLiteral(" prevede ") + QString::number(t.nRate)
                + QStringLiteral(" rate ma ne descrive ") + QString::number(t.giorni.size())
                + QStringLiteral(": impossibile generare le scadenze.");
        const int giorni = t.giorni.at(i);
        if (t.fineMese && !giorniFineMeseAmmessi(giorni))
            return QStringLiteral("Il pagamento ") + t.codice + QStringLiteral(" indica ") + QString::number(giorni)
                + QStringLiteral(" giorni per la rata ") + QString::number(i + 1)
                + QStringLiteral(": con la scadenza a fine mese i giorni devono essere compresi tra -32768 e 32767.");

        std::optional<Currency> rata = Currency::fromDoubleChecked(importo.toDouble() * (t.percentuali.at(i) / 100.0));
        if (rata && scadenzeNegative)
            rata = checkedNeg(*rata);
        if (!rata)
            return messaggioImportoFuoriLimiti(nome);

        const QDate giorno = dataRata(data, giorni, t.rimessaDiretta, t.fineMese);
        const QString errore = erroreData(giorno, QStringLiteral("scadenza della ") + nome);
        if (!errore.isEmpty())
            return errore;
        righe << Riga{giorno, getSqlNumber(rata->toPlainString())};
    }
    return QString();
}

// Removes the entry's rows. A new entry has none: the delete is skipped, as
// on MariaDB a delete that finds nothing still locks the gap of the index
// where the rows would be, and other workstations' due dates of newer
// entries would wait on it (or deadlock) until this transaction ends.
bool cancellaRighe(int fkPrimaNota)
{
    const QVariant presenti = gAdoSqlServer().getValueBySQL(
        QStringLiteral("SELECT COUNT(*) FROM Scadenze WHERE FK_PRIMANOTA = ") + QString::number(fkPrimaNota), kTag);
    if (!presenti.isValid())
        return false;
    if (presenti.toLongLong() == 0)
        return true;
    return gAdoSqlServer().executeSQL(QStringLiteral("DELETE FROM Scadenze WHERE FK_PRIMANOTA= ")
                                          + QString::number(fkPrimaNota),
                                      kTag);
}

bool inserisci(int fkPrimaNota, const Riga& riga)
{
    return gAdoSqlServer().executeSQL(QStringLiteral("INSERT INTO Scadenze (FK_PrimaNota, DATA, IMPORTO) VALUES(")
                                          + QString::number(fkPrimaNota) + QStringLiteral(", ")
                                          + gAdoSqlServer().getSQLDate(riga.data) + QStringLiteral(", ") + riga.importo
                                          + QLatin1Char(')'),
                                      kTag);
}

} // namespace

QDate dataRata(const QDate& data, int giorni, bool rimessaDiretta, bool fineMeseRata)
{
    if (!fineMeseRata)
        return data.addDays(giorni);
    if (!giorniFineMeseAmmessi(giorni))
        return QDate();
    return rimessaDiretta ? fineMese(data) : fineMese(data.addDays(giorni));
}

bool generaScadenzePagamento(int fkPrimaNota, int fkPagamento, Currency importo, const QDate& data,
                             bool scadenzeNegative, QString* messaggio)
{
    QString scarto;
    QString& errore = messaggio ? *messaggio : scarto;
    errore.clear();

    errore = erroreData(data, QStringLiteral("data delle scadenze"));
    if (!errore.isEmpty())
        return false;
    const std::optional<Termine> termine = leggiTermine(fkPagamento);
    if (!termine)
        return false;
    QList<Riga> righe;
    errore = calcolaRighe(*termine, importo, data, scadenzeNegative, righe);
    if (!errore.isEmpty())
        return false;

    if (!cancellaRighe(fkPrimaNota))
        return false;
    for (const Riga& riga : righe)
        if (!inserisci(fkPrimaNota, riga))
            return false;
    return true;
}

Currency getSaldoCliente(int fkAnagrafe, int contoClienti, bool fidoAllaData, const QDate& oggi)
{
    // The two sides apart: Sum(DARE) - Sum(AVERE) is Null as soon as one side
    // has only Null lines (an unpaid invoice has no Avere at all).
    QString sql =
        QStringLiteral("SELECT Sum(dpn.DARE) AS TOTDARE, Sum(dpn.AVERE) AS TOTAVERE FROM (PrimaNota pn INNER JOIN "
                       "PrimaNotaDettagli dpn ON pn.RID = dpn.FK_PrimaNota) INNER JOIN PianoConti pc on pc.RID = "
                       "dpn.FK_Conto WHERE pn.FK_Anagrafe = ")
        + QString::number(fkAnagrafe) + QStringLiteral(" AND pc.RID = ") + QString::number(contoClienti);
    if (fidoAllaData)
        sql += QStringLiteral(" AND pn.DataValuta <= ") + gAdoSqlServer().getSQLDate(oggi);
    const QString tag = kModule + QStringLiteral(".getSaldoCliente");
    const cReader rs(sql, tag);
    Currency saldo;
    if (rs && !rs->eof())
        saldo = rs->amount(QStringLiteral("TOTDARE")) - rs->amount(QStringLiteral("TOTAVERE"));
    return saldo;
}
