#include "thermo/thermo_database.h"

#include <vector>

#include "textio/record.h"

namespace varpre {
namespace {

// One entry of four records: name and element fields, temperature limits, coefficients of the upper range,
// then those of the lower range.
struct Entry {
  Text<16> name;
  ElementFields elements;
  std::array<double, 3> limits{};  // TLOW, THIGH, TCOMMON, K
  std::array<double, 7> upper{};
  std::array<double, 7> lower{};
};

ReadResult read_entry(Unit& NFITHE, Entry& entry) {
  return read<"(A16,8X,4(A2,I3),2X,2E10.0,E8.0/,5E15.8,/,5E15.8,/,4E15.8)">(
      NFITHE, entry.name, zip(entry.elements.ELSYM, entry.elements.ELCNT), entry.limits, entry.upper,
      entry.lower);
}

std::array<double, 7> scaled(const std::array<double, 7>& coefficients) {
  std::array<double, 7> result{};
  for (std::size_t k = 0; k < result.size(); ++k) result[k] = gas_constant * coefficients[k];
  return result;
}

ThermoFit fit_of(const Entry& entry) {
  const auto [TLOW, THIGH, TCOMMON] = entry.limits;
  return {scaled(entry.lower), scaled(entry.upper), {TLOW - 20.0, TCOMMON == 0.0 ? 1000.0 : TCOMMON, THIGH}};
}

// Sign character and value of the six coefficients of an enthalpy polynomial. The values keep their own sign.
auto signed_terms(const std::array<double, 7>& coefficients) {
  std::array<Text<1>, 6> signs;
  std::array<double, 6> values{};
  for (std::size_t k = 0; k < values.size(); ++k) {
    values[k] = coefficients[k];
    signs[k] = k == 0 ? " " : values[k] < 0 ? "-" : "+";
  }
  return std::pair(signs, values);
}

void print_fit(const SpeciesName& name, const ThermoFit& fit, Listing& MSGFIL) {
  const auto [low_signs, low] = signed_terms(fit.HCPL);
  const auto [high_signs, high] = signed_terms(fit.HCPH);
  write<
      "(' ','Thermodynamic fits for species ',A8,/, ' ',5X,'H   =',A1,1PE9.2,'*T',4X,A1,1PE9.2,'*T**2', "
      "1X,A1,1PE9.2,'*T**3',/,1H ,10X,A1,1PE9.2, '*T**4',1X,A1,1PE9.2,'*T**5', 1X,A1,1PE9.2,"
      "'          K   FOR T<1000 K', /,' ',5X,'H   =',A1,1PE9.2,'*T',4X,A1,1PE9.2,'*T**2', "
      "1X,A1,1PE9.2,'*T**3',/,1H ,10X,A1,1PE9.2,'*T**4', 1X,A1,1PE9.2,'*T**5',1X,A1,1PE9.2,8X,"
      "'  K   FOR T>1000 K')">(MSGFIL, name, zip(low_signs, low), zip(high_signs, high));
}

}  // namespace

bool GENTHE(Unit& NFITHE, Listing& MSGFIL, const SpeciesView& species, bool print) {
  const NameIndex index(species.SYMB);
  std::vector<bool> IFOUND(species.SYMB.size(), false);

  NFITHE.rewind();
  for (Entry entry;;) {
    const ReadResult result = read_entry(NFITHE, entry);
    if (result.end_of_file()) break;
    const SpeciesName name(entry.name.view());
    if (!result) {
      write<"(10X,'I/O ERROR. CHECK FORMAT OF THE \"',A8,'\" BLOCK IN      THERMOCHEMICAL DATABASE!')">(
          MSGFIL, name);
      break;
    }
    const int number = index.find(name);
    if (number == 0) continue;
    const auto i = static_cast<std::size_t>(number - 1);
    species.fit[i] = fit_of(entry);
    species.elements[i] = entry.elements;
    IFOUND[i] = true;
  }

  bool LOK = true;
  for (std::size_t i = 0; i < IFOUND.size(); ++i) {
    if (IFOUND[i]) continue;
    write<"(1H1,5X,'ERROR - Species ',A8,' not found in ', 'thermochemical database')">(MSGFIL,
                                                                                        species.SYMB[i]);
    LOK = false;
  }
  if (print) {
    for (std::size_t i = 0; i < IFOUND.size(); ++i) print_fit(species.SYMB[i], species.fit[i], MSGFIL);
  }
  return LOK;
}

void PRTHD(const SpeciesView& species, Unit& NFISTO) {
  for (int i = 0; i < species.size(); ++i) {
    const ThermoFit& fit = species.fit[static_cast<std::size_t>(i)];
    const double XMOL = species.XMOL[static_cast<std::size_t>(i)];
    const auto per_mass = [&](std::array<double, 7> coefficients) {
      for (double& a : coefficients) a = XMOL == 0 ? 0.0 : a / XMOL;
      return coefficients;
    };
    write<"(' HL,HH(',I4,')',5(1PE11.4,1X),/, 5(1PE11.4,1X),/, 4(1PE11.4,1X),1PE10.3,1X,1PE10.3,1X,1PE10.3)">(
        NFISTO, i + 1, per_mass(fit.HCPL), per_mass(fit.HCPH), fit.TLIM);
  }
}

}  // namespace varpre
