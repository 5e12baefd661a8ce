#pragma once
// The demo firm's own data on its documents: a letterhead as the logo of the
// report folder and the firm's details in the document footer.

#include <QImage>
#include <QString>

// The firm's name and details, as the footer prints them.
QString datiDittaDimostrativa();

// The letterhead drawn at print resolution, 9 x 4 cm.
QImage cartaIntestataDimostrativa();

// Writes the letterhead as "Logo.bmp" into the report folder when the folder
// has no logo yet, and puts the firm's details before the footer option.
// False when the logo could not be written.
bool impostaDittaDimostrativa(const QString& cartellaReport);
