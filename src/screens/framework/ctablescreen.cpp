#include "screens/framework/ctablescreen.h"

cTableScreen::cTableScreen(const QString& typeName, const QString& title, fields::FieldList list, QWidget* parent)
    : cRecordScreen(typeName, title, parent)
{
    setFields(std::move(list));
    layoutFields();
}
