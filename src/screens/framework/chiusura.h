#pragma once
// Closing a child screen: its window in the main area when it has one, the
// screen itself otherwise; Esc from any of its fields does the same.

class QPushButton;
class QWidget;

void chiudiSchermata(QWidget* schermata);

// Esc closes the screen.
void escChiudeSchermata(QWidget* schermata);

// The "&Chiudi" button (window-close icon, objectName `nome`) that closes
// the screen, with Esc doing the same.
QPushButton* pulsanteChiudi(QWidget* schermata, const char* nome = "cmdCancel");
