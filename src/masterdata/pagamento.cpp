#include "masterdata/pagamento.h"

#include "common/currency.h"
#include "common/italiantext.h"
#include "data/cadosqlserver.h"
#include "data/scoped.h"
#include "data/sqlliteral.h"

namespace {

QString tag(const char* procedure) { return QStringLiteral("frmPagamenti.") + QLatin1String(procedure); }

} // namespace

QList<RataPagamento> rateVuote(int numero)
{
    QList<RataPagamento> rate;
    for (int i = 0; i < numero; ++i)
        rate.append({QStringLiteral("0"), formattaImporto(Currency(), 2)});
    return rate;
}

bool percentualeEsatta(const QList<RataPagamento>& rate, const QString& acconto)
{
    Currency totale = getValoreCurrency(acconto);
    for (const RataPagamento& rata : rate)
        totale += getValoreCurrency(rata.percentuale);
    return totale == Currency::fromUnits(100);
}

QString messaggioPercentuale()
{
    return QStringLiteral("Impossbile salvare questo tipo di pagamento.\r La percentuale dell'importo attribbuito alle "
                          "rate + l'acconto non è esatto.");
}

QList<RataPagamento> leggiRate(int fkPagamento)
{
    QList<RataPagamento> rate;
    const cReader rs(QStringLiteral("SELECT RID, NGIORNI, PERCENTUALE FROM DettagliPagamenti WHERE FK_PAGAMENTO = ")
                         + QString::number(fkPagamento) + QStringLiteral(" ORDER BY RID"),
                     tag("showDettagli"));
    if (!rs)
        return rate;
    for (; !rs->eof(); rs->moveNext())
        rate.append({formattaIntero(rs->value(QStringLiteral("NGIORNI"))),
                     formattaImporto(rs->value(QStringLiteral("PERCENTUALE")), 2)});
    return rate;
}

bool saveDettagliPagamento(int fkPagamento, const QList<RataPagamento>& rate)
{
    cAdoSqlServer& db = gAdoSqlServer();
    const QString key = QString::number(fkPagamento);
    if (!db.executeSQL(QStringLiteral("DELETE FROM DettagliPagamenti WHERE FK_PAGAMENTO = ") + key,
                       tag("saveDettagliPagamento")))
        return false;
    for (const RataPagamento& rata : rate)
        if (!db.executeSQL(QStringLiteral("INSERT INTO DettagliPagamenti (FK_PAGAMENTO, NGIORNI, PERCENTUALE) VALUES (")
                               + key + QStringLiteral(", ") + QString::number(qRound64(getValoreNumerico(rata.giorni)))
                               + QStringLiteral(", ") + getSqlNumberOrZero(rata.percentuale) + QLatin1Char(')'),
                           tag("saveDettagliPagamento")))
            return false;
    return true;
}

bool eliminaPagamento(int rid)
{
    cAdoSqlServer& db = gAdoSqlServer();
    const QString key = QString::number(rid);
    cTransaction transaction(tag("deleteRecord"));
    return transaction
        && db.executeSQL(QStringLiteral("DELETE FROM DettagliPagamenti WHERE FK_PAGAMENTO = ") + key,
                         tag("deleteRecord"))
        && db.executeSQL(QStringLiteral("DELETE FROM Pagamenti WHERE RID = ") + key, tag("deleteRecord"))
        && transaction.commit();
}
