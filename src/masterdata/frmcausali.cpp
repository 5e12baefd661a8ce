#include "masterdata/frmcausali.h"

#include "screens/framework/clookupfield.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QRadioButton>
#include <QVBoxLayout>

using namespace fields;

namespace {

const QStringList kTipi{QStringLiteral("Nessuna"), QStringLiteral("Cliente"), QStringLiteral("Fornitore"),
                        QStringLiteral("Magazzino")};
const char* const kConti[] = {"txtDare1", "txtDare2", "txtAvere1", "txtAvere2"};

// The flags go to the table as -1/0, MOSTRAVB as the raw 0/1.
FieldList causaliFields()
{
    return {QStringLiteral("Causali"),
            {field("CODICE", "txtCodice", "Codice", Required),
             field("DESCRIZIONE", "txtDescrizione", "Descrizione", Required),
             field("Operazione", "chkOperazione", "Aggiorna giacenze", FlagMinusOne),
             choice("ORIGINE", "optOrigine", "Origine", kTipi),
             choice("DESTINAZIONE", "optDestinazione", "Destinazione", kTipi),
             key("FK_MagazzinoOrig", "txtMagazzinoOrig", "Magazzino", lookup::magazzini),
             key("FK_MagazzinoDest", "txtMagazzinoDest", "Magazzino", lookup::magazzini),
             field("GENERAPN", "chkGeneraPN", "Genera Prima Nota", FlagMinusOne),
             field("GENERASCAD", "chkGeneraScad", "Genera Scadenze", FlagMinusOne),
             field("SCADENZENEGATIVE", "chkScadenzeNegative", "Scadenze negative", FlagMinusOne),
             field("TAGLIO", "chkTaglio", "Imposta Taglio", FlagMinusOne),
             field("MOSTRAVB", "chkMostraVB", "Mostra in V.B."),
             key("FK_CONTODARE1", kConti[0], "Conto Dare 1", lookup::pianoConti),
             key("FK_CONTODARE2", kConti[1], "Conto Dare 2", lookup::pianoConti),
             key("FK_ContoAvere1", kConti[2], "Conto Avere 1", lookup::pianoConti),
             key("FK_CONTOAVERE2", kConti[3], "Conto Avere 2", lookup::pianoConti)}};
}

} // namespace

frmCausali::frmCausali(QWidget* parent)
    : cRecordScreen(QStringLiteral("frmCausali"), QStringLiteral("Causali Contabili/Magazzino"), parent)
{
    setFields(causaliFields());

    auto* head = new QFormLayout;
    head->addRow(QStringLiteral("Codice:"), fieldRow(QStringLiteral("txtCodice")));
    head->addRow(QStringLiteral("Descrizione:"), fieldRow(QStringLiteral("txtDescrizione")));
    auto* flags = new QHBoxLayout;
    for (const char* name : {"chkOperazione", "chkTaglio", "chkMostraVB"})
        flags->addWidget(control(QString::fromLatin1(name)));
    flags->addStretch(1);
    head->addRow(QString(), flags);

    auto* sides = new QHBoxLayout;
    sides->addWidget(sideBox(QStringLiteral(" Origine "), "Origine"));
    sides->addWidget(sideBox(QStringLiteral(" Destinazione "), "Destinazione"));

    auto* layout = new QVBoxLayout(fraMain());
    layout->addLayout(head);
    layout->addLayout(sides);
    layout->addWidget(accountsBox());
    layout->addStretch(1);

    for (const char* name : {"chkGeneraPN", "chkGeneraScad"})
        connect(static_cast<QCheckBox*>(control(QString::fromLatin1(name))), &QCheckBox::toggled, this,
                &frmCausali::applyDependencies);
    for (QRadioButton* option : findChildren<QRadioButton*>())
        connect(option, &QRadioButton::toggled, this, &frmCausali::applyDependencies);
    applyDependencies();
    resize(720, 520);
}

// One side: the four kinds and the warehouse of the warehouse kind.
QWidget* frmCausali::sideBox(const QString& title, const char* side)
{
    const QString name = QString::fromLatin1(side);
    auto* box = new QGroupBox(title, fraMain());
    box->setObjectName(QStringLiteral("fra") + name);
    auto* layout = new QVBoxLayout(box);
    layout->addWidget(fieldRow(QStringLiteral("opt") + name));
    auto* row = new QHBoxLayout;
    row->addWidget(new QLabel(QStringLiteral("Magazzino:"), box));
    row->addWidget(fieldRow(QStringLiteral("txtMagazzino") + name.left(4)), 1);
    layout->addLayout(row);
    return box;
}

QWidget* frmCausali::accountsBox()
{
    auto* box = new QGroupBox(QStringLiteral(" Contabilità "), fraMain());
    auto* layout = new QGridLayout(box);
    const char* const flags[] = {"chkGeneraPN", "chkGeneraScad", "chkScadenzeNegative"};
    for (int i = 0; i < 3; ++i)
        layout->addWidget(control(QString::fromLatin1(flags[i])), 0, i);
    for (int i = 0; i < 4; ++i) {
        const QString name = QString::fromLatin1(kConti[i]);
        layout->addWidget(new QLabel(fieldList().at(fieldList().indexOf(name)).label(), box), 1 + i, 0);
        layout->addWidget(fieldRow(name), 1 + i, 1, 1, 2);
    }
    layout->setColumnStretch(2, 1);
    return box;
}

bool frmCausali::checked(const QString& name) const
{
    const auto* button = findChild<QAbstractButton*>(name);
    return button && button->isChecked();
}

// A warehouse belongs only to a warehouse side, negative due dates only to
// due dates: what cannot apply is emptied, so it is never written.
void frmCausali::applyDependencies()
{
    const bool journal = checked(QStringLiteral("chkGeneraPN"));
    for (const char* conto : kConti)
        lookupOf(QString::fromLatin1(conto))->setEnabled(journal);
    control(QStringLiteral("chkGeneraScad"))->setEnabled(journal);
    const bool scadenze = journal && checked(QStringLiteral("chkGeneraScad"));
    auto* negative = static_cast<QCheckBox*>(control(QStringLiteral("chkScadenzeNegative")));
    negative->setEnabled(scadenze);
    if (!checked(QStringLiteral("chkGeneraScad")))
        negative->setChecked(false);
    // Each side: its kinds and its warehouse.
    const std::pair<const char*, const char*> sides[] = {{"optOrigine_", "txtMagazzinoOrig"},
                                                         {"optDestinazione_", "txtMagazzinoDest"}};
    for (const auto& [kinds, magazzino] : sides) {
        const bool warehouse = checked(QLatin1String(kinds) + QString::number(Magazzino));
        cLookupField* lookup = lookupOf(QString::fromLatin1(magazzino));
        lookup->setEnabled(warehouse);
        if (!warehouse && lookup->rid() > 0)
            lookup->clear();
    }
}

void frmCausali::clearFields()
{
    cRecordScreen::clearFields();
    applyDependencies();
}

void frmCausali::fillFields(const Recordset& rs)
{
    cRecordScreen::fillFields(rs);
    applyDependencies();
}

QString frmCausali::searchStatement() const
{
    return QStringLiteral("SELECT RID, CODICE, Descrizione FROM Causali ORDER BY DESCRIZIONE");
}
