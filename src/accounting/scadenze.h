#pragma once
// Due dates: a payment term spread over an amount and a date, as rows of
// Scadenze hanging on one journal entry; and the customer's ledger balance.

#include "common/currency.h"

class QDate;
class QString;

// Writes the due dates of a journal entry anew: a down payment on the date
// itself, then one row an instalment of the term, dated by its days (and
// moved to the end of the month when the term says so). The rows are not
// adjusted to add up to the amount. Negative with scadenzeNegative.
// Runs inside the caller's transaction and shows nothing. Every row is
// worked out and checked before anything is written; false when a value
// cannot be stored (no date, a due date outside the dates the database
// keeps, an amount outside the range of Currency, a term that promises more
// instalments than it describes or more than 32767 days with the month-end
// rule), with the Italian message in `messaggio`, and nothing written; false
// with an empty `messaggio` when a statement failed (already reported by the
// data layer). The caller rolls back and shows the message afterwards.
bool generaScadenzePagamento(int fkPrimaNota, int fkPagamento, Currency importo, const QDate& data,
                             bool scadenzeNegative, QString* messaggio = nullptr);

// The due date of one instalment: data plus the days, or the end of that
// month (fineMese); a direct remittance at the end of the month falls at the
// end of data's own month, whatever the days. The month-end rule takes its
// days as a 16-bit number: outside -32768..32767 it gives an invalid date.
QDate dataRata(const QDate& data, int giorni, bool rimessaDiretta, bool fineMese);

// Dare less Avere of the customers' account over the journal entries of the
// counterparty; with fidoAllaData only the entries due by `oggi` count. A line
// fills one side and leaves the other Null: a Null side, like a sum over no
// lines, counts as 0.
Currency getSaldoCliente(int fkAnagrafe, int contoClienti, bool fidoAllaData, const QDate& oggi);
