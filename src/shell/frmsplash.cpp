#include "shell/frmsplash.h"

#include "core/appinfo.h"

#include <QApplication>
#include <QFrame>
#include <QLabel>
#include <QScreen>
#include <QTimer>
#include <QVBoxLayout>

frmSplash::frmSplash(QWidget* parent)
    : QWidget(parent, Qt::SplashScreen | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint)
{
    setObjectName(QStringLiteral("frmSplash"));
    setAttribute(Qt::WA_DeleteOnClose, false);

    auto* frame = new QFrame(this);
    frame->setFrameShape(QFrame::Box);
    frame->setStyleSheet(QStringLiteral("QFrame { background: #1f4e79; color: white; border: 1px solid #0d2840; }"
                                        "QLabel { border: none; background: transparent; }"));
    auto* title = new QLabel(QStringLiteral("Orvantis"), frame);
    QFont big = title->font();
    big.setPointSize(big.pointSize() * 3);
    big.setBold(true);
    title->setFont(big);
    auto* subtitle = new QLabel(QStringLiteral("Soluzione Gestionale per le Imprese"), frame);
    m_lblInfo = new QLabel(frame);
    m_lblInfo->setObjectName(QStringLiteral("lblInfo"));
    m_lblInfo->setWordWrap(true);
    m_lblVersione = new QLabel(frame);
    m_lblVersione->setObjectName(QStringLiteral("lblVersione"));
    m_lblVersione->setAlignment(Qt::AlignRight);

    auto* inner = new QVBoxLayout(frame);
    inner->setContentsMargins(24, 20, 24, 14);
    inner->addWidget(title);
    inner->addWidget(subtitle);
    inner->addStretch(1);
    inner->addWidget(m_lblInfo);
    inner->addWidget(m_lblVersione);
    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    outer->addWidget(frame);
    setFixedSize(460, 240);
    if (const QScreen* screen = QApplication::primaryScreen())
        move(screen->availableGeometry().center() - rect().center());

    m_tmrUnload = new QTimer(this);
    m_tmrUnload->setObjectName(QStringLiteral("tmrUnload"));
    m_tmrUnload->setSingleShot(true);
    m_tmrUnload->setInterval(1000);
    connect(m_tmrUnload, &QTimer::timeout, this, &QWidget::close);
}

void frmSplash::addInfo(const QString& text)
{
    m_lblInfo->setText(text);
    m_lblVersione->setText(QStringLiteral("v.") + versionText());
    if (isVisible())
        QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

QString frmSplash::info() const { return m_lblInfo->text(); }

void frmSplash::closeIt() { m_tmrUnload->start(); }
