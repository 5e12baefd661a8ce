#include "screens/framework/cnumberedscreen.h"

#include "data/cadosqlserver.h"
#include "data/nextnumber.h"
#include "screens/framework/cinputs.h"

#include <QLineEdit>

QString cNumberedScreen::formatNumero(const QString& number)
{
    const QString digits = number.trimmed();
    bool ok = false;
    const qlonglong value = digits.toLongLong(&ok);
    return ok ? QStringLiteral("%1").arg(value, 4, 10, QLatin1Char('0')) : digits;
}

QStringList cNumberedScreen::newValues(int numero) const
{
    QStringList values = shownValues();
    values[fieldList().indexOf(codeField()->TextBoxRef()->objectName())] = QString::number(numero);
    return values;
}

int cNumberedScreen::writeRecord(int rid)
{
    if (rid > 0)
        return cRecordScreen::writeRecord(rid);
    const QString column = fieldList().codeField()->column;
    m_drawn = nextNumber(tableName(), column, typeName() + QStringLiteral(".getProgressivo"));
    if (m_drawn <= 0)
        return -1;
    return gAdoSqlServer().getIDByInsert(fieldList().insertStatement(newValues(m_drawn)),
                                         typeName() + QStringLiteral(".saveRecord"), QStringLiteral("RID"),
                                         tableName());
}

bool cNumberedScreen::saveRecord()
{
    m_drawn = 0;
    if (!cRecordScreen::saveRecord())
        return false;
    if (m_drawn > 0) {
        codeField()->TextBoxRef()->setText(formatNumero(QString::number(m_drawn)));
        codeShown();
        setWindowTitle(title() + QStringLiteral(" - ") + codeText());
    }
    return true;
}

void cNumberedScreen::fillFields(const Recordset& rs)
{
    cRecordScreen::fillFields(rs);
    QLineEdit* number = codeField()->TextBoxRef();
    number->setText(formatNumero(number->text()));
}

void cNumberedScreen::codeLeft(const QString& code)
{
    codeField()->TextBoxRef()->setText(formatNumero(code));
    cRecordScreen::codeLeft(code);
}
