#pragma once
// A record screen that is its fields and nothing more: one labelled row a
// field, in the order of the list (banks, sales agents, the code tables).

#include "screens/framework/crecordscreen.h"

class cTableScreen : public cRecordScreen
{
    Q_OBJECT

public:
    cTableScreen(const QString& typeName, const QString& title, fields::FieldList list, QWidget* parent = nullptr);
};
