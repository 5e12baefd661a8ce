#pragma once
// The data steps of the numerators screen: the list of one year's counters,
// adding and deleting a numerator, setting a counter by hand. Every
// statement carries the tag of the screen's operation; failures are reported
// by the data layer and come back as an empty result.

#include <QList>
#include <QString>
#include <QStringList>

struct NumeratoreAnno
{
    int rid = 0;
    QString descrizione;
    int numero = 0; // the last number of the year; 0 when unused or missing
};

// Every numerator with its counter of `anno`, by description (bindList).
// False when the statement failed.
bool numeratoriAnno(const QString& anno, QList<NumeratoreAnno>& righe);

// A new numerator, keyed highest + 1, with its counter of `anno` at 0, in
// one transaction. The new key, or -1 (rolled back).
int aggiungiNumeratore(const QString& descrizione, const QString& anno);

// The descriptions of the document types that number with the numerator.
QStringList tipiDocumentoDelNumeratore(int rid);

// The numerator and all its counters, in one transaction.
bool eliminaNumeratore(int rid);

// Writes `numero` as the counter of `anno`, creating the row when missing.
bool impostaContatore(int rid, const QString& anno, int numero);

// The whole number at the start of a text ("12", " 7x"); 0 for anything else.
int valIntero(const QString& text);
