#pragma once
// The firm's logo that the documents print: a picture chosen by the user,
// fitted into the 4 cm x 9 cm box of the templates and kept as "Logo.bmp"
// in the report folder. No widgets here.

#include <QImage>
#include <QSize>
#include <QString>

namespace logoazienda {

constexpr double kAltezzaCm = 4.0;
constexpr double kLarghezzaCm = 9.0;
// Print resolution of the stored picture.
constexpr int kDpi = 300;

// The box in pixels at the given resolution (1063 x 472 at 300 dpi).
QSize dimensione(int dpi = kDpi);

// The picture fitted into the box, proportions kept, centred on white; the
// resolution is written in the picture, so the box prints at 4 x 9 cm.
// A null picture gives a null picture.
QImage scala(const QImage& immagine, int dpi = kDpi);

// "Logo.bmp" in the report folder.
QString percorso(const QString& cartellaReport);

// Writes the picture as the logo; false when the file could not be written.
bool salva(const QImage& logo, const QString& cartellaReport);

} // namespace logoazienda
