#include "thermo/thermo_database.h"

#include <gtest/gtest.h>
#include <numeric>

#include "support/stages.h"
#include "textio/findings/record_findings.h"
#include "thermo/elements.h"

namespace varpre {
namespace {

ElementFields fields(std::initializer_list<std::pair<const char*, int>> list) {
  ElementFields filled;
  for (std::size_t i = 0; const auto& [symbol, count] : list) {
    filled.ELSYM[i] = std::string_view(symbol);
    filled.ELCNT[i++] = count;
  }
  return filled;
}

// Appends a block with the coefficients first, first + 1, ..., first + 13.
void add_block(Input& NFITHE, std::string_view name, double first, const std::array<double, 3>& limits) {
  const ElementFields water = fields({{"H", 2}, {"O", 1}});
  std::array<double, 14> a{};
  std::iota(a.begin(), a.end(), first);
  NFITHE.text += name;
  NFITHE.text.append(24 - name.size(), ' ');
  StoreFile block;
  write<"(4(A2,I3),2X,2F10.1,F8.0,/,5E15.8,/,5E15.8,/,4E15.8)">(block, zip(water.ELSYM, water.ELCNT), limits,
                                                                a);
  NFITHE.text += block.text;
}

TEST(ThermoDatabase, FirstSpeciesOfANameTakesItsLastBlock) {
  Input NFITHE = input_of("");
  add_block(NFITHE, "H2O", 1, {200, 3000, 1000});
  add_block(NFITHE, "CO2", 20, {200, 3000, 1000});
  add_block(NFITHE, "C2H5OH-AB", 40, {0, 3000, 0});
  add_block(NFITHE, "h2o", 60, {300, 5000, 1500});

  Species species;
  const SpeciesPlaces gas = species.places(0, 3);
  gas.SYMB[0] = "H2O", gas.SYMB[1] = "C2H5OH-A", gas.SYMB[2] = "h2O";
  Listing listing;
  EXPECT_FALSE(GENTHE(NFITHE, listing, gas, false));
  EXPECT_EQ(listing.file.text, "1     ERROR - Species h2O      not found in thermochemical database\n");

  EXPECT_EQ(gas.fit[0].HCPH.front(), 60 * 8.3143);
  EXPECT_EQ(gas.fit[0].HCPH.back(), 66 * 8.3143);
  EXPECT_EQ(gas.fit[0].HCPL.front(), 67 * 8.3143);
  EXPECT_EQ(gas.fit[0].HCPL.back(), 73 * 8.3143);
  EXPECT_EQ(gas.fit[0].TLIM, (std::array{280., 1500., 5000.}));
  EXPECT_EQ(gas.elements[0].ELCNT, (std::array{2, 1, 0, 0}));
  EXPECT_EQ(gas.fit[1].TLIM, (std::array{-20., 1000., 3000.}));
  EXPECT_EQ(gas.fit[2].HCPL.front(), 0);
}

// Elements and molar masses of species with these fields.
struct Composition {
  explicit Composition(const std::vector<ElementFields>& list) {
    std::copy(list.begin(), list.end(), species.elements.begin());
    LOK = ELECOM(species.places(0, static_cast<int>(list.size())), elements, listing);
  }
  std::string symbols() const {
    std::string all;
    for (int e = 0; e < elements.NE; ++e) all += elements.SYME[static_cast<std::size_t>(e)].view();
    return all;
  }
  Species species;
  Elements elements;
  Listing listing;
  bool LOK = false;
};

TEST(Elements, StandInTheOrderOfTheTable) {
  const Composition c({fields({{"O", 1}, {"H", 2}}), fields({{"o", 2}, {"c", 1}})});
  EXPECT_TRUE(c.LOK);
  EXPECT_EQ(c.symbols(), "H C O ");
  EXPECT_DOUBLE_EQ(c.species.XMOL[0], 0.0180152);
  EXPECT_DOUBLE_EQ(c.species.XMOL[1], 0.0440098);
  EXPECT_DOUBLE_EQ(c.elements.XE[0][0], 0.0020158 / 0.0180152);
  EXPECT_EQ(c.elements.XE[0][1], 0);
  EXPECT_EQ(c.elements.NCOMP[1], (std::array{0, 1, 2, 0, 0, 0, 0, 0, 0, 0}));
}

TEST(Elements, EmptyFieldsAreIgnoredAndTheLastCountHolds) {
  const Composition c({fields({{"PT", 1}, {"0 ", 5}, {"00", 7}, {"  ", 9}}), fields({{"H", 1}, {"H", 4}})});
  EXPECT_TRUE(c.LOK);
  EXPECT_EQ(c.symbols(), "H Pt");
  EXPECT_DOUBLE_EQ(c.species.XMOL[0], 0.19509);
  EXPECT_DOUBLE_EQ(c.species.XMOL[1], 0.0040316);
}

TEST(Elements, TenAreAPhaseAndElevenAreTooMany) {
  std::vector<ElementFields> list{fields({{"H", 1}, {"C", 1}, {"O", 1}, {"N", 1}}),
                                  fields({{"HE", 1}, {"NE", 1}, {"AR", 1}, {"KR", 1}}),
                                  fields({{"XE", 1}, {"YY", 1}})};
  const Composition ten(list);
  EXPECT_TRUE(ten.LOK);
  EXPECT_EQ(ten.symbols(), "H C O N HENEARKRXEYY");
  list[2] = fields({{"XE", 1}, {"YY", 1}, {"F", 0}});
  const Composition eleven(list);
  EXPECT_FALSE(eleven.LOK);
  EXPECT_EQ(eleven.listing.file.text, "0ERROR: number of elements (11) > NEMAX (10)\n");
}

}  // namespace
}  // namespace varpre
