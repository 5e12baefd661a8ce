#pragma once
// The stock screens, registered by name for the menu, the toolbar and --open.

void registerStockScreens();
