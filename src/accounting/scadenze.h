#pragma once
// Due dates: a payment term spread over an amount and a date, as rows of
// Scadenze hanging on one journal entry; and the customer's ledger balance.

#include "currency.h"

class QDate;

// Writes the due dates of a journal entry anew: a down payment on the date
// itself, then one row an instalment of the term, dated by its days (and
// moved to the end of the month when the term says so). The rows are not
// adjusted to add up to the amount. Negative with scadenzeNegative. False
// when a statement failed or the term promises more instalments than it has.
// Runs inside the caller's transaction.
bool generaScadenzePagamento(int fkPrimaNota, int fkPagamento, Currency importo, const QDate& data, bool scadenzeNegative);

// The due date of one instalment: data plus the days, or the end of that
// month (fineMese); a direct remittance at the end of the month falls at the
// end of data's own month, whatever the days.
QDate dataRata(const QDate& data, int giorni, bool rimessaDiretta, bool fineMese);

// Dare less Avere of the customers' account over the journal entries of the
// counterparty; with fidoAllaData only the entries due by `oggi` count.
Currency getSaldoCliente(int fkAnagrafe, int contoClienti, bool fidoAllaData, const QDate& oggi);
