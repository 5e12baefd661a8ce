#pragma once
// The search dialogs as screens of their own, for pictures and scripted
// runs: "frmRicerca:Table" searches a table by code and description,
// "frmSelectElement" lists the products under the look-up's columns.
void registerFrameworkScreens();
