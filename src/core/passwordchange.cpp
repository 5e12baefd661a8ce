#include "core/passwordchange.h"

#include "core/optionstore.h"
#include "data/cadosqlserver.h"
#include "data/sqlliteral.h"

namespace {
const QString kPasswordOption = QStringLiteral("Amministratore");

// True when the option has a row with a value (an empty text counts).
bool hasPasswordOption()
{
    const QVariant count =
        gAdoSqlServer().getValueBySQL(QStringLiteral("SELECT COUNT(*) FROM Opzioni WHERE NOME = ")
                                          + sqlText(kPasswordOption) + QStringLiteral(" AND VALORE IS NOT NULL"),
                                      QStringLiteral("bOrvantis.passwordAccepted"));
    return count.isValid() && count.toInt() > 0;
}
} // namespace

bool passwordAccepted(const QString& typed)
{
    const QString stored = getOpzione(kPasswordOption); // reports a missing or Null option
    if (stored.isEmpty() && !hasPasswordOption())
        return false;
    return typed.trimmed() == stored;
}

PasswordCheck checkPasswordChange(const QString& stored, const QString& typedOld, const QString& newPw,
                                  const QString& newPw2)
{
    PasswordCheck check;
    if (typedOld.trimmed() != stored) {
        check.fault = PasswordCheck::WrongOld;
        check.message = QStringLiteral("Attenzione la password di accesso inserita non è corretta!\n"
                                       "Accertarsi di averla digitata correttamente e riprovare!");
    } else if (newPw.trimmed() != newPw2.trimmed()) {
        check.fault = PasswordCheck::Different;
        check.message = QStringLiteral("Attenzione le password inserite non coincidono.\n"
                                       "Digitare la stessa password in entrambe le caselle di testo");
    } else if (newPw.trimmed().length() < 8) {
        // Only the length is checked: the words also forbid blanks, the rule never did.
        check.fault = PasswordCheck::TooShort;
        check.message =
            QStringLiteral("Attenzione la nuova password deve essere:\n- Non meno di 8 caratteri\n- Senza spazi");
    } else {
        check.newPassword = newPw.trimmed();
    }
    return check;
}
