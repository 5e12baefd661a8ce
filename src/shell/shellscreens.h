#pragma once
// Registers the dialogs of the application shell with the screen registry.
void registerShellScreens();
