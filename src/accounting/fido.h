#pragma once
// The credit limit of a counterparty. Nothing here blocks or shows anything:
// the document screen shows the texts and the user decides.

#include "common/currency.h"

class QDate;
class QString;

// What is left of the counterparty's credit: FIDO less its ledger balance,
// when CTRLFIDO is set (ctrlFido tells); 0 otherwise or for no row.
Currency controllaFuoriFido(int fkAnagrafe, bool& ctrlFido, int contoClienti, bool fidoAllaData, const QDate& oggi);

// The warning of a credit exceeded by `residuo` (below 0).
QString messaggioFuoriFido(Currency residuo);

// The warning when a customer is chosen: messaggioFuoriFido of the residual
// credit when it is below 0, empty otherwise (also for no limit to check).
QString avvisoFuoriFido(int fkAnagrafe, int contoClienti, bool fidoAllaData, const QDate& oggi);

// The question before a document is saved: the residual credit less the
// document's total, when the limit is checked; below 0 the warning and
// "Si desidera continuare?", empty otherwise. The total of a document saved
// before is taken off again, though its entry already counts in the balance.
QString domandaFuoriFido(int fkAnagrafe, Currency totaleDocumento, int contoClienti, bool fidoAllaData,
                         const QDate& oggi);
