#pragma once
// The barcode screens: frmGeneraBarCodeIntoProdotti and frmStampaBarCode
// (whose argument is the list of products to print, as text).

void registerBarcodeScreens();
