#pragma once

#include "textio/channel/input.h"
#include "textio/channel/store_file.h"
#include "textio/findings/listing.h"
#include "thermo/species.h"
#include "transport/molecular_database.h"

namespace varpre {

// Temperature interval [K] that the fits must cover, turned into a grid of whole hundreds.
struct TemperatureInterval {
  double TU;  // lower end
  double TB;  // upper end
};

// What the database says of each gas species, and its molar mass [kg/mol] as the fits had it: the way to
// g/mol and back changes its last bits.
struct TransportData {
  std::vector<Molecule> molecules;
  std::vector<double> XMOL;
};

// The transport stage: looks up the gas species in the molecular database NFIMOL, fits their transport
// coefficients on the interval and writes the transport block to the store file. Any failure ends the run
// (RunStop) with the stage's own banner behind its message.
TransportData GENSPD(const SpeciesView& gas, const TemperatureInterval& interval, Input& NFIMOL, bool print,
                     Listing& MSGFIL, StoreFile& NFISTO);

}  // namespace varpre
