#pragma once

#include <array>

#include "files/keywords.h"
#include "textio/channel/input.h"
#include "textio/channel/store_file.h"
#include "textio/findings/listing.h"
#include "thermo/elements.h"
#include "thermo/species.h"

namespace varpre {

// One boundary mixture.
struct MixtureState {
  MixtureConditions values;  // temperature, K, and specific enthalpy, J/kg: one of them computed; pressure,
                             // Pa; density, kg/m^3, computed; the rest is passed on as read
  Place pressure;            // where P is given
  Place temperature;         // where T or H(T0) is
  std::array<double, NSMAX> amounts{};  // of the species as given, before they become fractions
  std::array<double, NSMAX>
      X{};  // mole fractions of the gas species, and of the surface species among themselves
  std::array<double, NSMAX> W{};  // specific mole numbers of the gas species, mol/kg
  std::array<double, NEMAX> B{};  // element mole fractions of the gas mixture
  std::array<double, NEMAX> Z{};  // its element specific mole numbers, mol/kg
};

// Reads a mixture, the section `section` of NFICON, checks it, and completes it: normalised composition,
// specific mole numbers, element composition, the missing one of temperature and enthalpy, and the density by
// the ideal gas law. `species` are the gas species and the NSURF surface species behind them, `elements`
// those of the gas phase.
//
// A block that is not there is a warning and leaves `mixture` as it was. Any error in the block stops the run
// (RunStop), after its message and, but for a temperature that is not found, "ERROR - Wrong operation of
// CHICON".
void CHICON(const Section& section, const SpeciesView& species, int NSURF, const Elements& elements,
            Input& NFICON, Listing& MSGFIL, MixtureState& mixture);

// Warns of mixtures that contradict each other or the run: different pressures, surface species without a
// fraction in either.
void compare_mixtures(const MixtureState& left, const MixtureState& right, int NGAS,
                      const SpeciesView& surface, Findings& findings);

// Writes the condition set of a mixture to the store file, with the fractions of all NTOT species, those of
// the surface behind those of the gas phase.
void write_condition_set(const MixtureState& mixture, int NTOT, StoreFile& NFISTO);

// Lists a mixture under its mixture fraction ZMIX.
void PRICOM(const SpeciesView& species, int NSURF, const Elements& elements, double ZMIX,
            const MixtureState& mixture, Listing& MSGFIL);

}  // namespace varpre
