#pragma once
// The one password of the firm: the login's comparison, and the checks of a
// password change in the order the dialog makes them: the old password, the
// two new fields alike, the length. Blanks around every field are ignored; a
// blank inside the new password is accepted.

#include <QString>

struct PasswordCheck
{
    enum Fault {
        None,
        WrongOld,
        Different,
        TooShort
    };
    Fault fault = None;
    QString message;     // the box to show when fault != None
    QString newPassword; // the trimmed new password when fault == None
};

PasswordCheck checkPasswordChange(const QString& stored, const QString& typedOld, const QString& newPw,
                                  const QString& newPw2);

// The login: the typed password, without the blanks around it, against the
// option "Amministratore". A missing or Null option is reported (as any
// failed read of an option) and refuses every password, the empty one too:
// an empty text is a password only when the option holds it.
bool passwordAccepted(const QString& typed);
