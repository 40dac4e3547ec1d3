#include "client/mapping/BandWords.h"

#include <gdal_priv.h>

namespace vlclientui::client {

std::string bandName(GDALRasterBand& band, int number) {
  std::string told = band.GetDescription();
  if (!told.empty()) return told;
  const GDALColorInterp color = band.GetColorInterpretation();
  const bool isTold = color != GCI_Undefined && color != GCI_GrayIndex && color != GCI_PaletteIndex;
  return isTold ? GDALGetColorInterpretationName(color) : "Band " + std::to_string(number);
}

}  // namespace vlclientui::client
