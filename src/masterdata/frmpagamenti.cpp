#include "masterdata/frmpagamenti.h"

#include "common/italiantext.h"
#include "common/msgbox.h"
#include "screens/framework/cgrid.h"
#include "screens/services/typedinput.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QHeaderView>
#include <QLineEdit>

using namespace fields;

namespace {

enum Colonna {
    kRata,
    kGiorni,
    kPercentuale
};
const char* const kImporti[] = {"txtSpeseIncasso", "txtScontoPag", "txtAcconto"};

} // namespace

frmPagamenti::frmPagamenti(QWidget* parent)
    : cRecordScreen(QStringLiteral("frmPagamenti"), QStringLiteral("Pagamenti"), parent)
{
    setFields(
        {QStringLiteral("Pagamenti"),
         {field("CODICE", "txtCodice", "Codice", Required | Trimmed),
          field("DESCRIZIONE", "txtDescrizione", "Descrizione", Required),
          number("SPESEINCASSO", "txtSpeseIncasso", "Spese Incasso", 2, ZeroWhenEmpty),
          number("SCONTOPAG", "txtScontoPag", "Sconto Pag.", 2, ZeroWhenEmpty),
          number("ACCONTO", "txtAcconto", "Acconto", 2, ZeroWhenEmpty),
          field("RIMESSADIRETTA", "chkRimessaDiretta", "Rimessa Diretta"),
          field("BANCAAPPOGGIO", "chkBancaAppoggio", "Richiesta banca di appoggio"),
          field("FINEMESE", "chkFineMese", "Fine Mese"),
          number("NRATE", "txtNrRate", "Nr. Rate", 0, WholeNumber | ZeroWhenEmpty), field("NOTE", "txtNote", "Note")}});
    QFormLayout* form = layoutFields();

    m_flxRate = new cGrid(QStringLiteral("flxRate"),
                          {QStringLiteral("Rata"), QStringLiteral("Giorni"), QStringLiteral("%")}, fraMain());
    m_flxRate->setEditable(kGiorni, typedinput::Intero);
    m_flxRate->setEditable(kPercentuale, typedinput::Decimale, 2);
    m_flxRate->setMinimumHeight(120);
    form->addRow(QStringLiteral("Rate:"), m_flxRate);

    connect(static_cast<QCheckBox*>(control(QStringLiteral("chkRimessaDiretta"))), &QCheckBox::clicked, this,
            &frmPagamenti::chkRimessaDiretta_Click);
    resize(520, 520);
}

void frmPagamenti::clearFields()
{
    cRecordScreen::clearFields();
    for (const char* name : kImporti)
        lineEdit(QString::fromLatin1(name))->setText(formattaImporto(Currency(), 2));
    auto* nrRate = lineEdit(QStringLiteral("txtNrRate"));
    nrRate->setText(QStringLiteral("0"));
    nrRate->setReadOnly(false);
    m_flxRate->clearRows();
}

void frmPagamenti::showData(int rid, const QString& codice)
{
    cRecordScreen::showData(rid, codice);
    const int shown = currentRid();
    if (shown <= 0)
        return;
    lineEdit(QStringLiteral("txtNrRate"))->setReadOnly(isChecked(QStringLiteral("chkRimessaDiretta")));
    showRate(leggiRate(shown));
}

QList<RataPagamento> frmPagamenti::rate() const
{
    QList<RataPagamento> rate;
    for (int row = 0; row < m_flxRate->rowCount(); ++row)
        rate.append({m_flxRate->text(row, kGiorni), m_flxRate->text(row, kPercentuale)});
    return rate;
}

void frmPagamenti::showRate(const QList<RataPagamento>& rate)
{
    m_flxRate->clearRows();
    for (const RataPagamento& rata : rate)
        m_flxRate->addRow({QString::number(m_flxRate->rowCount() + 1), rata.giorni, rata.percentuale});
}

QStringList frmPagamenti::faults() const
{
    QStringList found = cRecordScreen::faults();
    if (getValoreNumerico(text(QStringLiteral("txtNrRate"))) <= 0)
        found << obbligatorio(QStringLiteral("Nr. Rate"));
    return found;
}

bool frmPagamenti::saveRecord()
{
    if (controllaInserimento())
        return false;
    if (!percentualeEsatta(rate(), text(QStringLiteral("txtAcconto")))) {
        msgBox(messaggioPercentuale(), vb::Exclamation);
        return false;
    }
    return cRecordScreen::saveRecord();
}

bool frmPagamenti::saveDetails(int rid) { return saveDettagliPagamento(rid, rate()); }

QString frmPagamenti::deleteQuestion() const
{
    return QStringLiteral("Eliminare il pagamento con codice ") + codeText() + QStringLiteral("?");
}

bool frmPagamenti::removeRecord(int rid)
{
    if (!eliminaPagamento(rid))
        return false;
    newRecord();
    return true;
}

bool frmPagamenti::fieldLeft(const QString& controlName)
{
    if (controlName == QLatin1String("txtNrRate"))
        txtNrRate_LostFocus();
    return true;
}

void frmPagamenti::txtNrRate_LostFocus()
{
    const int numero = int(getValoreNumerico(text(QStringLiteral("txtNrRate"))));
    showRate(rateVuote(numero));
}

void frmPagamenti::chkRimessaDiretta_Click()
{
    const bool on = isChecked(QStringLiteral("chkRimessaDiretta"));
    auto* nrRate = lineEdit(QStringLiteral("txtNrRate"));
    nrRate->setText(on ? QStringLiteral("1") : QStringLiteral("0"));
    nrRate->setReadOnly(on);
    txtNrRate_LostFocus();
}
