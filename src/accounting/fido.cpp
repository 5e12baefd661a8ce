#include "accounting/fido.h"

#include "accounting/scadenze.h"
#include "common/italiantext.h"
#include "data/cadosqlserver.h"
#include "data/recordset.h"
#include "data/scoped.h"

#include <QDate>

Currency controllaFuoriFido(int fkAnagrafe, bool& ctrlFido, int contoClienti, bool fidoAllaData, const QDate& oggi)
{
    ctrlFido = false;
    Currency fido;
    {
        const cReader rs(QStringLiteral("SELECT CTRLFIDO, FIDO FROM Anagrafiche WHERE RID = ")
                             + QString::number(fkAnagrafe),
                         QStringLiteral("bOrvantis.Err_controllaFuoriFido"));
        if (rs && !rs->eof()) {
            ctrlFido = rs->flag(QStringLiteral("CTRLFIDO"));
            fido = rs->amount(QStringLiteral("FIDO"));
        }
    }
    if (!ctrlFido)
        return Currency();
    // Saturating: at the limits the sign of the residual still tells.
    return fido - getSaldoCliente(fkAnagrafe, contoClienti, fidoAllaData, oggi);
}

QString messaggioFuoriFido(Currency residuo)
{
    return QStringLiteral("Attenzione! E' stato riscontrato un FUORI FIDO per l'anagrafica selezionata di Euro: ")
        + formattaImporto(residuo, 2);
}

QString avvisoFuoriFido(int fkAnagrafe, int contoClienti, bool fidoAllaData, const QDate& oggi)
{
    bool ctrlFido = false;
    const Currency residuo = controllaFuoriFido(fkAnagrafe, ctrlFido, contoClienti, fidoAllaData, oggi);
    return residuo < Currency() ? messaggioFuoriFido(residuo) : QString();
}

QString domandaFuoriFido(int fkAnagrafe, Currency totaleDocumento, int contoClienti, bool fidoAllaData,
                         const QDate& oggi)
{
    bool ctrlFido = false;
    Currency residuo = controllaFuoriFido(fkAnagrafe, ctrlFido, contoClienti, fidoAllaData, oggi);
    if (!ctrlFido)
        return QString();
    residuo -= totaleDocumento;
    if (residuo >= Currency())
        return QString();
    return messaggioFuoriFido(residuo) + QStringLiteral("\n\nSi desidera continuare?");
}
