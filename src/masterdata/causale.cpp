#include "causale.h"

#include "italiantext.h"
#include "sqlliteral.h"

#include <QStringList>

namespace causale {

namespace {

const QStringList kColumns{
    QStringLiteral("CODICE"),           QStringLiteral("DESCRIZIONE"),      QStringLiteral("Operazione"),
    QStringLiteral("ORIGINE"),          QStringLiteral("DESTINAZIONE"),     QStringLiteral("FK_MagazzinoOrig"),
    QStringLiteral("FK_MagazzinoDest"), QStringLiteral("GENERAPN"),         QStringLiteral("GENERASCAD"),
    QStringLiteral("SCADENZENEGATIVE"), QStringLiteral("TAGLIO"),           QStringLiteral("MOSTRAVB"),
    QStringLiteral("FK_CONTODARE1"),    QStringLiteral("FK_CONTODARE2"),    QStringLiteral("FK_ContoAvere1"),
    QStringLiteral("FK_CONTOAVERE2")};

QString flag(bool value)
{
    return value ? QStringLiteral("-1") : QStringLiteral("0");
}

QStringList values(const Causale& c)
{
    return {sqlText(c.codice),
            sqlText(c.descrizione),
            flag(c.operazione),
            QString::number(c.origine),
            QString::number(c.destinazione),
            getIDOrNullStr(c.origine == Magazzino ? c.magazzinoOrig : 0),
            getIDOrNullStr(c.destinazione == Magazzino ? c.magazzinoDest : 0),
            flag(c.generaPN),
            flag(c.generaScad),
            flag(c.generaScad && c.scadenzeNegative),
            flag(c.taglio),
            c.mostraVB ? QStringLiteral("1") : QStringLiteral("0"),
            getIDOrNullStr(c.contoDare1),
            getIDOrNullStr(c.contoDare2),
            getIDOrNullStr(c.contoAvere1),
            getIDOrNullStr(c.contoAvere2)};
}

} // namespace

QString insertStatement(const Causale& c)
{
    return sqlInsert(QStringLiteral("Causali"), kColumns, values(c));
}

QString updateStatement(const Causale& c, int rid)
{
    return sqlUpdate(QStringLiteral("Causali"), kColumns, values(c), rid);
}

} // namespace causale
