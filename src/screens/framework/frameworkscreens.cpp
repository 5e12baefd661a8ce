#include "screens/framework/frameworkscreens.h"

#include "core/screenregistry.h"
#include "data/cadosqlserver.h"
#include "data/recordset.h"
#include "data/scoped.h"
#include "lookups/lookups.h"
#include "screens/framework/frmricerca.h"
#include "screens/framework/frmselectelement.h"

#include <QRegularExpression>

void registerFrameworkScreens()
{
    screens::registerScreen(QStringLiteral("frmRicerca"),
                            {screens::Kind::Dialog,
                             [](QWidget* parent, const QVariant& argument) -> QWidget* {
                                 static const QRegularExpression identifier(QStringLiteral("^[A-Za-z_]+$"));
                                 const QString table =
                                     argument.toString().isEmpty() ? QStringLiteral("Iva") : argument.toString();
                                 if (!identifier.match(table).hasMatch())
                                     return nullptr;
                                 auto* dialog = new frmRicerca(parent);
                                 dialog->startMe(QStringLiteral("SELECT RID, CODICE, DESCRIZIONE FROM ") + table
                                                     + QStringLiteral(" ORDER BY CODICE"),
                                                 0);
                                 return dialog;
                             },
                             true});

    screens::registerScreen(
        QStringLiteral("frmSelectElement"),
        {screens::Kind::Dialog,
         [](QWidget* parent, const QVariant&) -> QWidget* {
             const cReader rs(
                 QStringLiteral(
                     "SELECT P.RID, P.CODICE, P.DESCRIZIONE AS DESCPRODOTTO, M.CODICE AS CODMARCA FROM Prodotti P "
                     "LEFT JOIN Marche M ON P.FK_MARCA = M.RID ORDER BY P.CODICE"),
                 QStringLiteral("frmSelectElement.startMe"));
             if (!rs)
                 return nullptr;
             auto* dialog = new frmSelectElement(parent);
             dialog->startMe(colonneProdotto(), *rs, false, false);
             return dialog;
         },
         true});
}
