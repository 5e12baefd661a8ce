#pragma once
// The credit limit of a counterparty.

#include "currency.h"

class QDate;

// What is left of the counterparty's credit: FIDO less its ledger balance,
// when CTRLFIDO is set (ctrlFido tells); 0 otherwise or for no row.
Currency controllaFuoriFido(int fkAnagrafe, bool& ctrlFido, int contoClienti, bool fidoAllaData, const QDate& oggi);

// The warning of a credit exceeded by `residuo` (below 0).
QString messaggioFuoriFido(Currency residuo);
