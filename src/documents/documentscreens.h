#pragma once
// The document screen and its dialogs, registered by name for the menu,
// the toolbar and --open.

void registerDocumentScreens();
