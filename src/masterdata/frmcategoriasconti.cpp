#include "masterdata/frmcategoriasconti.h"

#include "common/msgbox.h"
#include "core/screenregistry.h"
#include "screens/framework/frmricerca.h"

#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QPushButton>

using namespace fields;

namespace {

struct Config
{
    const char* caption;
    const char* screen;
    const char* title;
    const char* search;
};
const Config kConfig[] = {
    {"Sconti", "frmRangeSconti", "Selezionare una Marca",
     "SELECT RID, CODICE, DESCRIZIONE FROM Marche ORDER BY DESCRIZIONE "},
    {"Prezzi Netti", "frmRangePrezzi", "Selezionare un Prodotto",
     "SELECT p.RID, p.CODICE, p.DESCRIZIONE, m.DESCRIZIONE AS Marca FROM Prodotti p LEFT JOIN MARCHE m ON "
     "p.FK_MARCA = m.RID ORDER BY p.DESCRIZIONE "},
};

} // namespace

frmCategoriaSconti::frmCategoriaSconti(QWidget* parent)
    : cRecordScreen(QStringLiteral("frmCategoriaSconti"), QStringLiteral("Categorie Sconti"), parent)
{
    setFields({QStringLiteral("CategorieSconti"),
               {field("CODICE", "txtCodice", "Codice", Required | Trimmed),
                field("DESCRIZIONE", "txtDescrizione", "Descrizione", Required)}});
    QFormLayout* form = layoutFields();
    auto* configura = new QGroupBox(QStringLiteral("Configura"), fraMain());
    auto* buttons = new QHBoxLayout(configura);
    for (int i = 0; i < int(std::size(kConfig)); ++i) {
        auto* button = new QPushButton(QString::fromUtf8(kConfig[i].caption), configura);
        button->setObjectName(QStringLiteral("cmdConfig_") + QString::number(i));
        button->setAutoDefault(false);
        connect(button, &QPushButton::clicked, this, [this, i] { openConfigForm(i); });
        buttons->addWidget(button);
    }
    buttons->addStretch(1);
    form->addRow(configura);
    resize(460, 200);
}

bool frmCategoriaSconti::removeRecord(int rid)
{
    if (cRecordScreen::removeRecord(rid))
        return true;
    msgBox(QStringLiteral("Impossibile eliminare questo record"), vb::Critical);
    return false;
}

void frmCategoriaSconti::openConfigForm(int which)
{
    const Config& config = kConfig[which];
    const QString screen = QString::fromLatin1(config.screen);
    // A screen this release does not have yet is told before any choice.
    if (!screens::findScreen(screen)) {
        screens::openOrTell(screen, QVariant(), QStringLiteral("Configura ") + QString::fromUtf8(config.caption));
        return;
    }
    const int categoria = currentRid();
    if (categoria <= 0)
        return;
    const int scelta = frmRicerca::cerca(QString::fromUtf8(config.search), QString::fromUtf8(config.title));
    if (scelta > 0)
        screens::openScreen(screen, QVariantList{QVariant(categoria), QVariant(scelta)});
}
