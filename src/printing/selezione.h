#pragma once
// The record selection formulas the screens write, translated into SQL for
// the back end, and the formula lists they pass.
//
// The selection subset: {Table.Field} compared (= <> < > <= >=) with a
// number, a 'text', True, False, Date(y,m,d) or another field;
// {Table.Field} IN Date(y,m,d) TO Date(y,m,d); And, Or, Not and brackets.
// Text goes between the data layer's delimiters and dates in the back end's
// form, so the condition is then rewritten like every statement.

#include <QList>
#include <QString>

#include <utility>

struct SelezioneSql
{
    QString sql; // empty for an empty formula
    bool ok = true;
    QString errore;
};

SelezioneSql selezioneInSql(const QString& formula, int tipoServer);

// The items of a formula list joined by "¤": each "NAME = 'value'" as name
// and the expression after "=". Empty items are skipped.
QList<std::pair<QString, QString>> splitFormule(const QString& formule);
