#include "screens/framework/chiusura.h"

#include <QIcon>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QShortcut>

void chiudiSchermata(QWidget* schermata)
{
    if (auto* finestra = qobject_cast<QMdiSubWindow*>(schermata->parentWidget()))
        finestra->close();
    else
        schermata->close();
}

void escChiudeSchermata(QWidget* schermata)
{
    auto* esc =
        new QShortcut(QKeySequence(Qt::Key_Escape), schermata, nullptr, nullptr, Qt::WidgetWithChildrenShortcut);
    QObject::connect(esc, &QShortcut::activated, schermata, [schermata] { chiudiSchermata(schermata); });
}

QPushButton* pulsanteChiudi(QWidget* schermata, const char* nome)
{
    auto* pulsante =
        new QPushButton(QIcon::fromTheme(QStringLiteral("window-close")), QStringLiteral("&Chiudi"), schermata);
    pulsante->setObjectName(QString::fromLatin1(nome));
    pulsante->setAutoDefault(false);
    QObject::connect(pulsante, &QPushButton::clicked, schermata, [schermata] { chiudiSchermata(schermata); });
    escChiudeSchermata(schermata);
    return pulsante;
}
