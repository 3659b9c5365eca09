#pragma once

#include <array>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include "files/partners.h"
#include "textio/findings/findings.h"
#include "textio/record/numbered.h"
#include "thermo/species.h"

namespace varpre {

// Educts in slots 1..MAXE, products in slots MAXE+1..2*MAXE, as species numbers; 0 for an empty slot.
using SpeciesVector = std::array<int, 12>;

// Rate forms (IARRH).
enum RateForm : int {
  arrhenius = 0,           // k = A T^b exp(-E/RT)
  coverage_dependent = 1,  // activation energy depends on the coverage of species ICOV
  falloff = 2,
  reversible_arrhenius = 3,  // its reverse is left to the solver
  non_arrhenius = 4          // never reversible; from here on, laws of the solver's own
};

// The form of a generated reverse whose rate the solver computes: the negative of its forward form.
constexpr RateForm reverse_of(RateForm form) {
  return static_cast<RateForm>(-form);
}
constexpr bool is_reverse(RateForm form) {
  return form < 0;
}

struct Reaction {
  double AFAC = 0;  // pre-exponential factor; cm, mol, s until the mechanism is complete, then SI
  double TEXP = 0;  // temperature exponent
  double EXA = 0;   // activation energy, J/mol
  double VT4 = 0;   // further rate values of coverage-dependent and non-Arrhenius forms
  double VT5 = 0;
  double VT6 = 0;
  RateForm IARRH = arrhenius;
  int ISTICK = 0;                // number of the sticking gas species
  int ICOV = 0;                  // number of the species whose coverage counts
  std::array<double, 8> FALL{};  // falloff parameters FALL1..FALL8
  bool MARK = false;             // marked in the fixed form
  SpeciesVector MAT{};           // each group in decreasing order
  Place line;                    // its equation; of a generated reverse, that of the forward reaction
};

inline SpeciesName partner_name(int c) {
  return SpeciesName(at(MCOLLI, c));
}

// The species of a phase followed by the collision partners: what the names of a reaction are looked up in.
// Species numbers 1..NS, partners NS+1..NS+27.
class ReactionNames {
 public:
  explicit ReactionNames(std::span<const SpeciesName> SYMB);

  int NS() const { return NS_; }
  // Number of a name (any letter case, first match); 0 when it is not there.
  int find(const SpeciesName& name) const { return index_.find(name); }
  // Name of a number from 1 on.
  const SpeciesName& operator[](int number) const { return at(names_, number); }
  std::span<const SpeciesName> species() const { return first(names_, NS_); }
  std::span<const SpeciesName> species_and_partners() const { return names_; }

  // For findings: a database that has further species, and the species of the list that have no entry there,
  // with their places in the list.
  const Input* database = nullptr;
  std::vector<std::pair<SpeciesName, Place>> without_entry;

 private:
  int NS_;
  std::vector<SpeciesName> names_;
  NameIndex index_;
};

// Number of the last species of a name (any letter case); 0 when there is none.
int last_of_name(std::span<const SpeciesName> species, const SpeciesName& name);

// Reports a name in a record that is none of those which a reaction may name; `where` ends the sentence.
void report_unknown_name(const Place& record, const SpeciesName& name, std::span<const SpeciesName> known,
                         std::string_view where, Findings& findings);

// A complete mechanism of one phase.
struct Mechanism {
  bool complete = false;                   // no reaction was rejected
  Place behind_end;                        // a reaction directly behind its END, which has been told of
  std::vector<Reaction> reactions;         // generated reverses included
  int NCOLL = 2;                           // third bodies kept
  std::array<bool, partner_count> used{};  // partners that occur in some reaction
  std::vector<int> IREVER;  // 1 no pair, 2 forward and 3 reverse of a pair; negative when marked
  std::vector<bool> INERT;  // per species: occurs in no reaction
  std::vector<std::array<int, 3>> NRVEC;  // species, reaction, net coefficient, by species and then reaction

  int NR() const { return count_of(reactions); }
};

}  // namespace varpre
