#pragma once
// The screens of the demo data, registered with the main window.

void registerDemoScreens();
