#pragma once
// Identifiers that pass the program's own checks: the personal tax code of
// a person, the VAT number of a firm, the EAN-13 code of a product.

#include <QString>

class QDate;
class QRandomGenerator;

namespace demo {

// The 16 characters of the tax code: three letters of the surname, three
// of the name, year, month letter, day (plus 40 for a woman), the
// cadastral code of the birthplace and the control letter.
QString codiceFiscale(const QString& cognome, const QString& nome, const QDate& nascita, bool donna,
                      const QString& catastale);

// Eleven digits: a random firm number, the province's office number and a
// control digit that the check accepts (numbers whose control digit would
// be 0 are drawn again, since the check refuses them).
QString partitaIva(QRandomGenerator& random, const QString& ufficio);

// The twelve digits and their check digit.
QString ean13(const QString& dodici);

} // namespace demo
