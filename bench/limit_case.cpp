#include "limit_case.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <numeric>
#include <set>
#include <span>
#include <vector>

#include "files/limits.h"
#include "mechanism/reaction.h"
#include "textio/channel/statement.h"

namespace varpre_bench {
namespace {

using varpre::Input;
using varpre::SpeciesName;
using varpre::StoreFile;
using varpre::Text;
using varpre::write;
using varpre::zip;

constexpr int classes = 10;  // of isomers: a reaction exchanges species of equal composition

// SplitMix64: the same numbers with every library.
class Random {
 public:
  explicit Random(std::uint64_t seed) : state_(seed) {}

  std::uint64_t bits() {
    std::uint64_t z = state_ += 0x9E3779B97F4A7C15;
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EB;
    return z ^ (z >> 31);
  }
  double between(double low, double high) {
    return low + (high - low) * static_cast<double>(bits() >> 11) * 0x1p-53;
  }
  int below(int count) { return static_cast<int>(bits() % static_cast<std::uint64_t>(count)); }
  bool chance(double probability) { return between(0, 1) < probability; }

 private:
  std::uint64_t state_;
};

// Species 0 .. species-1 take part, those after them only fill the databases.
SpeciesName name_of(int species, const CaseSize& size) {
  constexpr std::array<std::string_view, 3> endings{"", "-X", "(A)"};
  const bool filler = species >= size.species;
  return SpeciesName(std::string(filler ? "Z" : "S") + std::to_string(species + 1) +
                     std::string(endings[static_cast<std::size_t>(species) % endings.size()]));
}

int carbon_atoms(int species) {
  return 1 + species % classes;
}

// The database entries in an order of their own.
std::vector<int> shuffled(int count, Random& random) {
  std::vector<int> order(static_cast<std::size_t>(count));
  std::iota(order.begin(), order.end(), 0);
  for (int i = count - 1; i > 0; --i) {
    std::swap(order[static_cast<std::size_t>(i)], order[static_cast<std::size_t>(random.below(i + 1))]);
  }
  return order;
}

// The ranges meet at 1000 K, the heat capacity with its slope.
void write_thermo_entry(const SpeciesName& name, int n, Random& random, StoreFile& out) {
  constexpr double T = 1000;
  const double size = n * random.between(0.9, 1.1);
  const std::array<double, 7> a{random.between(3.5, 4.5), 4.0e-3 * size,
                                -1.5e-6 * size,           2.0e-10 * size,
                                -1.0e-14 * size,          -5000.0 * n + random.between(-500, 500),
                                random.between(4, 5)};
  std::array<double, 7> b{0, 2.68e-3 * size, -6.0e-7 * size, 2.8e-11 * size, -1.2e-15 * size, 0, 0};
  const auto cp = [&](const auto& c) { return c[0] + T * (c[1] + T * (c[2] + T * (c[3] + T * c[4]))); };
  const auto h = [&](const auto& c) {
    return c[5] + T * (c[0] + T * (c[1] / 2 + T * (c[2] / 3 + T * (c[3] / 4 + T * c[4] / 5))));
  };
  const auto s = [&](const auto& c) {
    return c[6] + c[0] * 6.907755278982137 + T * (c[1] + T * (c[2] / 2 + T * (c[3] / 3 + T * c[4] / 4)));
  };
  b[0] = cp(a) - cp(b);
  b[5] = h(a) - h(b);
  b[6] = s(a) - s(b);
  write<
      "(A8,16X,'C ',I3,'H ',I3,9X,' G',1X,2F10.2,F8.2,5X,'1',/,1P,5E15.8,4X,'2',/,5E15.8,4X,'3',/,4E15.8,19X,'4')">(
      out, name, n, 2 * n + 2, 200.0, 3500.0, T, b, a);
}

// Reduced temperatures stay within 0.3 to 30, reduced dipole moments within 2.2.
void write_molecule(const SpeciesName& name, int n, Random& random, StoreFile& out) {
  const bool polar = random.chance(0.3);
  const double EPS = random.between(polar ? 250 : 90, 650);
  const double SIGMA = random.between(3, 7);
  const double DI1 = polar ? random.between(0.5, 2) : 0;
  write<"(A8,I2,6F10.3)">(out, name, n == 1 ? 1 : 2, 14.026 * n + 2.016, EPS, SIGMA, DI1,
                          random.between(1, 15), random.between(1, 4));
}

// Writes reactions of isomers: A = B with or without a collision partner, A + B = C + D.
class MechanismWriter {
 public:
  MechanismWriter(const CaseSize& size, Random& random, StoreFile& out)
      : size_(size),
        random_(random),
        out_(out),
        partners_(std::min(varpre::partner_count, varpre::NEFMAX / size.species)) {}

  void write_all() {
    write<"('MECHANISM')">(out_);
    for (int r = 0; r < size_.reactions / 2; ++r) {
      while (!write_reaction(r)) continue;
    }
    write<"('END',/,'COLLISION EFFICIENCIES',/,'TROE')">(out_);
    for (int c = 1; c < partners_; ++c) write_efficiencies(varpre::MCOLLI[static_cast<std::size_t>(c)]);
    write<"('END')">(out_);
  }

 private:
  int isomer_of(int species) {
    const int first = species % classes;
    const int count = (size_.species - first + classes - 1) / classes;
    return first + classes * random_.below(count);
  }

  // False when the reaction drawn is not a new one. The last partner occurs at least once.
  bool write_reaction(int r) {
    const int A = r % size_.species;
    const int C = isomer_of(A);
    const bool with_partner = r < partners_ || random_.chance(0.2);
    const bool pair = !with_partner && random_.chance(0.8);
    const int B = pair ? random_.below(size_.species) : -1;
    const int D = pair ? isomer_of(B) : -1;
    const int c = with_partner ? (r < partners_ ? r : random_.below(partners_)) : -1;
    std::array<int, 3> left{std::min(A, B), std::max(A, B), c};
    std::array<int, 3> right{std::min(C, D), std::max(C, D), c};
    if (left == right || !taken_.insert(std::minmax(left, right)).second) return false;

    const auto side = [&](int one, int two) {
      std::string text(varpre::trimmed(name_of(one, size_).view()));
      if (pair) text.append("+").append(varpre::trimmed(name_of(two, size_).view()));
      if (with_partner) text.append("+").append(varpre::MCOLLI[static_cast<std::size_t>(c)]);
      return text;
    };
    const double factor = pair ? 1e13 : 1e12;
    write<"(A44,1X,1PE10.3,0PF7.3,F10.3)">(out_, Text<44>(side(A, B) + "=" + side(C, D)),
                                           factor * random_.between(0.1, 10), random_.between(-1, 2),
                                           random_.between(0, 300));
    if (with_partner && random_.chance(0.5)) {
      write<"('#',5X,1PE10.3,2X,0PF6.2,2X,F10.2)">(out_, 1e15 * random_.between(0.1, 10),
                                                   random_.between(-3, 0), random_.between(0, 100));
      write<"('#',5X,1P,4(E10.3,2X),0PF6.2)">(out_, random_.between(0.1, 0.9), random_.between(50, 200),
                                              random_.between(500, 2000), random_.between(3000, 9000), 0.0);
    }
    return true;
  }

  void write_efficiencies(std::string_view partner) {
    std::array<Text<1>, 6> signs;
    std::array<SpeciesName, 6> names;
    std::array<double, 6> values{};
    const int first = random_.below(size_.species);
    for (std::size_t k = 0; k < names.size(); ++k) {
      signs[k] = k == 0 ? "=" : "+";
      names[k] = name_of((first + 7 * static_cast<int>(k)) % size_.species, size_);
      values[k] = random_.between(0.5, 15);
    }
    write<"(A8,6(A1,A8),/,9X,6(F8.3,1X))">(out_, Text<8>(partner), zip(signs, names), values);
  }

  const CaseSize& size_;
  Random& random_;
  StoreFile& out_;
  int partners_;
  std::set<std::pair<std::array<int, 3>, std::array<int, 3>>> taken_;
};

std::string conditions(const CaseSize& size) {
  StoreFile out;
  write<"('OPTIONS',/,'PConst  1 Output  1',/,'END',/,'GAS PHASE SPECIES')">(out);
  std::vector<SpeciesName> names;
  for (int i = 0; i < size.species; ++i) names.push_back(name_of(i, size));
  write<"(6(A8,2X))">(out, std::span<const SpeciesName>(names));
  write<"('END')">(out);
  for (const std::string_view boundary : {"LEFT BOUNDARY", "RIGHT BOUNDARY"}) {
    write<"(/,A,/,'P               1.0 bar',/,'T             900.0 K')">(out, boundary);
    for (int i = 0; i < 5; ++i) write<"(A8,F11.3)">(out, name_of(i, size), 0.2);
    write<"('END')">(out);
  }
  write<
      "(/,'CONDITIONS',/,'GE          2.0',/,'NG         61.0',/,'RI          0.0',/,'RO        0.005',/,"
      "'TE        0.005',/,'NT       1000.0',/,'STEP 1.0000E-09',/,'RS   1.0000E-08',/,'END')">(out);
  return out.text;
}

}  // namespace

Case generate(const CaseSize& size) {
  Random random(size.seed);
  StoreFile thermo;
  for (const int i : shuffled(size.entries, random)) {
    write_thermo_entry(name_of(i, size), carbon_atoms(i), random, thermo);
  }
  StoreFile molecules;
  for (const int i : shuffled(size.entries, random)) {
    write_molecule(name_of(i, size), carbon_atoms(i), random, molecules);
  }
  StoreFile mechanism;
  MechanismWriter(size, random, mechanism).write_all();
  return {conditions(size), mechanism.text, thermo.text, molecules.text};
}

void fill(varpre::Files& files, const Case& data) {
  files.conditions.text = data.INP;
  files.mechanism.text = data.MEC;
  files.thermo.text = data.THERMO;
  files.molecules.text = data.MOLNEW;
}

void write_case(const Case& data, const std::filesystem::path& directory) {
  std::filesystem::create_directories(directory);
  const auto file = [&](const char* name, const std::string& text) {
    std::ofstream(directory / name, std::ios::binary) << text;
  };
  file("INP", data.INP);
  file("MEC", data.MEC);
  file("THERMO", data.THERMO);
  file("MOLNEW", data.MOLNEW);
}

}  // namespace varpre_bench
