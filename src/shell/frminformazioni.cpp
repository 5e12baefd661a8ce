#include "shell/frminformazioni.h"

#include "common/apphome.h"
#include "core/appinfo.h"
#include "data/session.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

frmInformazioni::frmInformazioni(QWidget* parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("frmInformazioni"));
    setWindowTitle(QStringLiteral("Informazioni su Orvantis"));
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);

    auto* title = new QLabel(QStringLiteral("Orvantis"), this);
    QFont big = title->font();
    big.setPointSize(big.pointSize() * 2);
    big.setBold(true);
    title->setFont(big);
    auto* text = new QLabel(this);
    text->setObjectName(QStringLiteral("lblInfo"));
    text->setTextInteractionFlags(Qt::TextSelectableByMouse);
    text->setText(QStringLiteral("Soluzione Gestionale per le Imprese\n") + QStringLiteral("Versione ") + versionText()
                  + QStringLiteral("\n\n") + QStringLiteral("DataBase: ") + gSession().strDescrizioneDB
                  + QLatin1Char('\n') + QStringLiteral("Cartella del programma: ") + programFolder() + QLatin1Char('\n')
                  + QStringLiteral("Qt ") + QString::fromLatin1(qVersion()));
    auto* cmdOK = new QPushButton(QStringLiteral("OK"), this);
    cmdOK->setObjectName(QStringLiteral("cmdOK"));
    cmdOK->setDefault(true);
    connect(cmdOK, &QPushButton::clicked, this, &QDialog::accept);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(title);
    layout->addWidget(text);
    layout->addWidget(cmdOK, 0, Qt::AlignRight);
}
