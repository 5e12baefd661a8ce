#include "masterdata/frmiva.h"

#include "common/italiantext.h"

#include <QLineEdit>

using namespace fields;

frmIva::frmIva(QWidget* parent)
    : cRecordScreen(QStringLiteral("frmIva"), QStringLiteral("Aliquote Iva"), parent)
{
    setFields({QStringLiteral("Iva"),
               {field("CODICE", "txtCodice", "Codice", Required),
                field("DESCRIZIONE", "txtDescrizione", "Descrizione", Required),
                number("VALORE", "txtValoreIva", "Valore%", 2)}});
    layoutFields();
    resize(460, 180);
}

QStringList frmIva::faults() const
{
    QStringList found = cRecordScreen::faults();
    if (getValoreNumerico(shownValues().at(2)) < 0)
        found << errato(QStringLiteral("Valore%"));
    return found;
}

QString frmIva::searchStatement() const
{
    return QStringLiteral("SELECT RID, CODICE, DESCRIZIONE, VALORE FROM Iva ORDER BY DESCRIZIONE ");
}
