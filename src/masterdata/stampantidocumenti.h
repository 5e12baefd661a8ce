#pragma once
// The printer of each document type on this workstation: section
// "StampantiDocumenti" of the per-user settings, the type's code as key and
// the printer's device name as value. Empty or missing means the system's
// default printer. Since the key is the code, renaming a type loses it.

#include <QString>

QString getStampanteDocumento(const QString& codice);
// An empty name stores the empty text: the default printer.
void setStampanteDocumento(const QString& codice, const QString& stampante);
