#pragma once
// Registers the screens of the master data with the screen registry.
void registerMasterdataScreens();
