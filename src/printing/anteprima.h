#pragma once
// The entry of the print preview, as every screen prints: the template by
// its bare file name (read from the report folder, or from the program
// folder when a connection is given and a copy lies there), the selection
// formula, the window's title, the formula list joined by "¤", the
// selection also on the subreports, a text left empty by every caller, the
// connection (empty: the live database) and the printer ("Predefinita" or
// empty: the application's printer).
//
// The preview window opens at once with "Creazione anteprima in corso..."
// and shows the pages when they are laid out; the screen keeps drawing.

#include <QString>

class QPushButton;
class QWidget;

QWidget* mostraAnteprima(const QString& report, const QString& selezione, const QString& titolo,
                         const QString& formule = QString(), bool selezioneInSubreport = false,
                         const QString& testo = QString(), const QString& connessione = QString(),
                         const QString& stampante = QString());

// Registers the preview window ("frmPreview", one window a print).
// mostraAnteprima() registers it itself when nobody did.
void registerPreviewScreens();

// A "Stampa" button that opens the preview of a whole list (the template
// without selection) under `titolo`.
QPushButton* pulsanteStampaElenco(QWidget* parent, const QString& report, const QString& titolo,
                                  const char* nome = "cmdCommand_4");
