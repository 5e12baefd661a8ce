#include "demo/dittademo.h"

#include "core/optionstore.h"

#include <QDir>
#include <QFile>
#include <QFont>
#include <QFontMetricsF>
#include <QPainter>

namespace {

const char* const kNome = "Ferramenta Colli & Figli S.r.l.";
const char* const kIndirizzo = "Via dell'Industria 14 - 40127 Bologna (BO)";
const char* const kContatti = "Tel. 051 6340021 - info@ferramentacolli.it";
const char* const kFiscale = "P.IVA e C.F. 03456780372 - REA BO-512334";

} // namespace

QString datiDittaDimostrativa()
{
    return QString::fromUtf8(kNome) + QStringLiteral(" - ") + QString::fromUtf8(kIndirizzo) + QStringLiteral(" - ")
        + QString::fromUtf8(kFiscale);
}

QImage cartaIntestataDimostrativa()
{
    // 9 x 4 cm at 300 dpi, the box of the logo on the documents.
    constexpr int dpi = 300;
    QImage image(1063, 472, QImage::Format_RGB32);
    image.setDotsPerMeterX(qRound(dpi / 0.0254));
    image.setDotsPerMeterY(qRound(dpi / 0.0254));
    image.fill(Qt::white);
    QPainter p(&image);
    p.setRenderHint(QPainter::Antialiasing);
    // The mark: a square with the initials.
    const QColor blu(0x1f, 0x3a, 0x5f);
    p.setPen(Qt::NoPen);
    p.setBrush(blu);
    p.drawRoundedRect(QRectF(10, 40, 200, 200), 24, 24);
    QFont sigla(QStringLiteral("Liberation Sans"));
    sigla.setPointSizeF(34);
    sigla.setBold(true);
    p.setFont(sigla);
    p.setPen(Qt::white);
    p.drawText(QRectF(10, 40, 200, 200), Qt::AlignCenter, QStringLiteral("CF"));
    // The name as large as its line allows.
    QFont nome(QStringLiteral("Liberation Sans"));
    nome.setBold(true);
    for (double size = 15; size > 8; size -= 0.5) {
        nome.setPointSizeF(size);
        if (QFontMetricsF(nome, &image).horizontalAdvance(QString::fromUtf8(kNome)) <= 800)
            break;
    }
    p.setFont(nome);
    p.setPen(blu);
    p.drawText(QRectF(240, 40, 820, 90), Qt::AlignLeft | Qt::AlignVCenter, QString::fromUtf8(kNome));
    QFont testo(QStringLiteral("Liberation Sans"));
    testo.setPointSizeF(8.5);
    p.setFont(testo);
    p.setPen(QColor(0x33, 0x33, 0x33));
    p.drawText(QRectF(240, 135, 820, 50), Qt::AlignLeft | Qt::AlignVCenter, QString::fromUtf8(kIndirizzo));
    p.drawText(QRectF(240, 180, 820, 50), Qt::AlignLeft | Qt::AlignVCenter, QString::fromUtf8(kContatti));
    p.drawText(QRectF(240, 225, 820, 50), Qt::AlignLeft | Qt::AlignVCenter, QString::fromUtf8(kFiscale));
    p.setPen(QPen(blu, 4));
    p.drawLine(QPointF(240, 300), QPointF(1050, 300));
    return image;
}

bool impostaDittaDimostrativa(const QString& cartellaReport)
{
    const QString piede = getOpzione(QStringLiteral("PiePagina"));
    if (!piede.startsWith(QString::fromUtf8(kNome))) {
        const QString nuovo = datiDittaDimostrativa() + QStringLiteral(". ") + piede;
        setOpzione(QStringLiteral("PiePagina"), nuovo);
        gOptions().piePagina = nuovo;
    }
    if (cartellaReport.isEmpty())
        return true;
    const QString logo = QDir(cartellaReport).filePath(QStringLiteral("Logo.bmp"));
    if (QFile::exists(logo))
        return true;
    QDir().mkpath(cartellaReport);
    return cartaIntestataDimostrativa().save(logo, "BMP");
}
