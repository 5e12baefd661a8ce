#include "masterdata/logoazienda.h"

#include <QDir>
#include <QPainter>

#include <cmath>

namespace logoazienda {

namespace {
int pixel(double cm, int dpi) { return int(std::lround(cm / 2.54 * dpi)); }
} // namespace

QSize dimensione(int dpi) { return {pixel(kLarghezzaCm, dpi), pixel(kAltezzaCm, dpi)}; }

QImage scala(const QImage& immagine, int dpi)
{
    if (immagine.isNull())
        return {};
    const QSize box = dimensione(dpi);
    const QImage adattata = immagine.scaled(box, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    QImage logo(box, QImage::Format_RGB32);
    logo.fill(Qt::white);
    const int dotsPerMeter = int(std::lround(dpi / 0.0254));
    logo.setDotsPerMeterX(dotsPerMeter);
    logo.setDotsPerMeterY(dotsPerMeter);
    QPainter painter(&logo);
    painter.drawImage((box.width() - adattata.width()) / 2, (box.height() - adattata.height()) / 2, adattata);
    return logo;
}

QString percorso(const QString& cartellaReport) { return QDir(cartellaReport).filePath(QStringLiteral("Logo.bmp")); }

bool salva(const QImage& logo, const QString& cartellaReport)
{
    QDir().mkpath(cartellaReport);
    return logo.save(percorso(cartellaReport), "BMP");
}

} // namespace logoazienda
