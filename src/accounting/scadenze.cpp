#include "scadenze.h"

#include "cadosqlserver.h"
#include "errorlog.h"
#include "italiantext.h"
#include "recordset.h"
#include "sqlliteral.h"

#include <QDate>
#include <optional>

namespace {

const QString kModule = QStringLiteral("bOrvantisCommon");
const QString kTag = kModule + QStringLiteral(".generaScadenzePagamento");

QDate fineMese(const QDate& d)
{
    return QDate(d.year(), d.month(), 1).addMonths(1).addDays(-1);
}

// The term: its header and the days and shares of its instalments.
struct Termine
{
    Currency acconto;
    bool rimessaDiretta = false;
    bool fineMese = false;
    int nRate = 0;
    QList<int> giorni;
    QList<double> percentuali;
};

std::optional<Termine> leggiTermine(int fkPagamento)
{
    RecordsetPtr rs = gAdoSqlServer().getNewRecordset(
        QStringLiteral("SELECT P.RID, P.ACCONTO, P.RIMESSADIRETTA, P.FINEMESE, P.NRATE, DP.NGIORNI, DP.PERCENTUALE "
                       "FROM Pagamenti P INNER JOIN DettagliPagamenti DP ON DP.FK_PAGAMENTO = P.RID WHERE P.RID = ")
            + QString::number(fkPagamento) + QStringLiteral(" ORDER BY DP.RID"),
        kTag, 2, 1, 3);
    if (!rs) {
        gAdoSqlServer().disconnect();
        return std::nullopt;
    }
    Termine t;
    for (; !rs->eof(); rs->moveNext()) {
        t.acconto = rs->amount(QStringLiteral("ACCONTO"));
        t.rimessaDiretta = getChekByBool(rs->value(QStringLiteral("RIMESSADIRETTA"))) > 0;
        t.fineMese = getChekByBool(rs->value(QStringLiteral("FINEMESE"))) > 0;
        t.nRate = qint16(rs->integer(QStringLiteral("NRATE")));
        t.giorni << int(rs->integer(QStringLiteral("NGIORNI")));
        t.percentuali << rs->number(QStringLiteral("PERCENTUALE"));
    }
    rs->close();
    gAdoSqlServer().disconnect();
    return t;
}

bool inserisci(int fkPrimaNota, const QDate& data, const QString& importo)
{
    return gAdoSqlServer().executeSQL(QStringLiteral("INSERT INTO Scadenze (FK_PrimaNota, DATA, IMPORTO) VALUES(")
                                          + QString::number(fkPrimaNota) + QStringLiteral(", ")
                                          + gAdoSqlServer().getSQLDate(data) + QStringLiteral(", ") + importo
                                          + QLatin1Char(')'),
                                      kTag);
}

} // namespace

QDate dataRata(const QDate& data, int giorni, bool rimessaDiretta, bool fineMeseRata)
{
    if (!fineMeseRata)
        return data.addDays(giorni);
    return rimessaDiretta ? fineMese(data) : fineMese(data.addDays(giorni));
}

bool generaScadenzePagamento(int fkPrimaNota, int fkPagamento, Currency importo, const QDate& data, bool scadenzeNegative)
{
    const std::optional<Termine> termine = leggiTermine(fkPagamento);
    if (!termine)
        return false;
    if (!gAdoSqlServer().executeSQL(QStringLiteral("DELETE FROM Scadenze WHERE FK_PRIMANOTA= ") + QString::number(fkPrimaNota), kTag))
        return false;

    // The down payment: a share of the amount in double precision, not rounded.
    if (termine->acconto > Currency()) {
        double anticipo = importo.toDouble() * (termine->acconto.toDouble() / 100.0);
        if (scadenzeNegative)
            anticipo = -anticipo;
        if (!inserisci(fkPrimaNota, data, getSqlNumber(anticipo)))
            return false;
    }
    for (int i = 0; i < termine->nRate; ++i) {
        if (i >= termine->giorni.size()) {
            notifyError(kModule, QStringLiteral("generaScadenzePagamento"),
                        QStringLiteral("Tipo non corrispondente: il pagamento prevede ") + QString::number(termine->nRate)
                            + QStringLiteral(" rate e ne descrive ") + QString::number(termine->giorni.size()) + QLatin1Char('.'));
            return false;
        }
        Currency rata = Currency::fromDouble(importo.toDouble() * (termine->percentuali.at(i) / 100.0));
        if (scadenzeNegative)
            rata = Currency() - rata;
        const QDate giorno = dataRata(data, termine->giorni.at(i), termine->rimessaDiretta, termine->fineMese);
        if (!inserisci(fkPrimaNota, giorno, getSqlNumber(rata.toPlainString())))
            return false;
    }
    return true;
}

Currency getSaldoCliente(int fkAnagrafe, int contoClienti, bool fidoAllaData, const QDate& oggi)
{
    QString sql = QStringLiteral("SELECT (Sum(dpn.DARE) - Sum(dpn.AVERE)) AS SALDO FROM (PrimaNota pn INNER JOIN PrimaNotaDettagli dpn "
                                 "ON pn.RID = dpn.FK_PrimaNota) INNER JOIN PianoConti pc on pc.RID = dpn.FK_Conto "
                                 "WHERE pn.FK_Anagrafe = ")
        + QString::number(fkAnagrafe) + QStringLiteral(" AND pc.RID = ") + QString::number(contoClienti);
    if (fidoAllaData)
        sql += QStringLiteral(" AND pn.DataValuta <= ") + gAdoSqlServer().getSQLDate(oggi);
    const QVariant saldo = gAdoSqlServer().getValueBySQL(sql, kModule + QStringLiteral(".getSaldoCliente"));
    return getValoreCurrency(saldo);
}
