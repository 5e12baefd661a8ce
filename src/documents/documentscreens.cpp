#include "documents/documentscreens.h"

#include "core/screenregistry.h"

void registerDocumentScreens()
{
}
