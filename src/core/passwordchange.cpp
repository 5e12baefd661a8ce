#include "passwordchange.h"

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
        check.message = QStringLiteral("Attenzione la nuova password deve essere:\n- Non meno di 8 caratteri\n- Senza spazi");
    } else {
        check.newPassword = newPw.trimmed();
    }
    return check;
}
