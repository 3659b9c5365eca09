#include "tools/report/store_reader.h"

#include <algorithm>
#include <limits>
#include <string_view>

#include "files/store_records.h"
#include "mechanism/reaction.h"
#include "textio/findings/findings.h"
#include "textio/record/record.h"

namespace varpre {
namespace {

namespace records = store_records;

// Why reading ended.
struct Stop {
  int line;
  std::string reason;
};

// A value that did not fit its field stands there as asterisks. They are read as a number that nothing else
// is, and then told apart again.
constexpr double beyond = -9.9E99;
constexpr double beyond_six_columns = -99.99;

std::string readable(std::string_view line) {
  std::string text(line);
  for (std::size_t at = text.find('*'); at != std::string::npos; at = text.find('*', at)) {
    const std::size_t width = std::min(text.find_first_not_of('*', at), text.size()) - at;
    if (width == 6) {
      text.replace(at, width, "-99.99");
    } else if (width > 7) {
      text.replace(at, width, message("-9.", std::string(width - 7, '9'), "E+99"));
    } else {
      at += width;
    }
  }
  return text;
}

void forget_asterisks(double& value) {
  if (value <= beyond || value == beyond_six_columns) value = std::numeric_limits<double>::quiet_NaN();
}
template <class T>
void forget_asterisks(T& item) {
  if constexpr (requires { item.begin(); }) {
    for (auto& value : item) forget_asterisks(value);
  }
}

// Whether the texts of a format stand in the first record of a statement.
bool has_texts(const FormatView& format, std::string_view record) {
  Walk walk(format);
  for (std::size_t column = 0;;) {
    const Edit& edit = walk.next();
    const auto width = static_cast<std::size_t>(edit.width);
    switch (edit.kind) {
      case Edit::Kind::literal: {
        const std::string_view text = trimmed({format.literals + edit.value, width});
        if (record.substr(std::min(column, record.size()), text.size()) != text) return false;
        column += width;
        break;
      }
      case Edit::Kind::blanks: column += width; break;
      case Edit::Kind::scale: break;
      case Edit::Kind::integer:
      case Edit::Kind::fixed:
      case Edit::Kind::exponent: column += width + static_cast<std::size_t>(edit.gap); break;
      case Edit::Kind::text:
        if (width == 0) return true;
        column += width + static_cast<std::size_t>(edit.gap);
        break;
      default: return true;
    }
  }
}

class StoreReader {
 public:
  StoreReader(const std::string& text, StoreData& data) : data_(data) {
    for (std::string_view rest = text; !rest.empty();) {
      const std::size_t end = std::min(rest.find('\n'), rest.size());
      std::string_view line = rest.substr(0, end);
      if (line.ends_with('\r')) line.remove_suffix(1);
      lines_.push_back(readable(line));
      rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    data_.lines = count_of(lines_);
  }

  void read_all() {
    take<records::heading>();
    take_list<records::options>(data_.options, NUMOPT);
    read_species(data_.gas);
    read_transport();
    read_thermo(data_.gas);
    read_species(data_.surface);
    read_thermo(data_.surface);
    read_surface_conditions();
    read_mechanism(data_.gas_mechanism, false);
    read_efficiencies();
    if (NS() > 0) read_mechanism(data_.surface_mechanism, true);
    read_complex_reactions();
    read_photo_reactions();
    for (int side = 0; side < 2; ++side) read_mixture();
    read_flame_conditions();
    take_list<records::flags>(data_.flags, NG() + NS());
    take<records::end>();
    if (at_ < lines_.size()) read_particles();
    data_.complete = true;
    if (at_ < lines_.size()) stop("there is more behind the end of the file");
  }

 private:
  int NG() const { return count_of(data_.gas.names); }
  int NS() const { return count_of(data_.surface.names); }

  [[noreturn]] void stop(const std::string& reason) const { throw Stop{static_cast<int>(at_) + 1, reason}; }

  template <FormatText Record>
  bool is_next() const {
    return at_ < lines_.size() && has_texts(Format<Record>::view, lines_[at_]);
  }

  // Reads one statement.
  template <FormatText Record, class... Items>
  void take(Items&&... items) {
    if (at_ == lines_.size()) stop("the file ends here");
    if (!is_next<Record>()) stop(message("this is not the record that is due here: ", Record.view()));
    const std::size_t first = at_;
    const auto next = [](void* from, std::string_view& record) {
      auto& reader = *static_cast<StoreReader*>(from);
      if (reader.at_ == reader.lines_.size()) return false;
      record = reader.lines_[reader.at_++];
      return true;
    };
    const ReadResult result =
        record_detail::read_statement<Record>({this, next, static_cast<int>(at_)}, items...);
    if (result.end_of_file()) stop("the file ends here");
    if (result.is_unreadable()) {
      at_ = std::min(static_cast<std::size_t>(result.unreadable.record) - 1, lines_.size() - 1);
      at_ = std::max(at_, first);
      stop(message("cannot read columns ", result.unreadable.column, " to ",
                   result.unreadable.column + result.unreadable.width - 1));
    }
    (forget_asterisks(items), ...);
  }

  // Reads a count, which is no more than there can be.
  template <FormatText Record>
  int take_count(int most) {
    int count = 0;
    take<Record>(count);
    if (count >= 0 && count <= most) return count;
    --at_;
    stop(message("the count ", count, " cannot be: at most ", most, " are possible"));
  }

  template <FormatText Record, class T>
  void take_list(std::vector<T>& list, int count) {
    list.resize(static_cast<std::size_t>(count));
    std::span<T> all(list);
    take<Record>(all);
  }

  void read_species(StoredPhase& phase) {
    const int n = take_count<records::species_count>(NSMAX);
    const int elements = take_count<records::element_count>(NEMAX);
    if (n == 0) return;
    take_list<records::species_names>(phase.names, n);
    take_list<records::molar_masses>(phase.molar_masses, n);
    take_list<records::element_symbols>(phase.elements, elements);
    take_list<records::element_masses>(phase.element_masses, elements);
    take_list<records::mass_fractions>(phase.mass_fractions, n * elements);
  }

  // A fit of each species, or pair of species, whose numbers stand in front.
  template <FormatText Record>
  void take_fits(std::vector<StoredFit>& fits) {
    for (int i = 1; i <= NG(); ++i) {
      int number = 0;
      take<Record>(number, fits.emplace_back());
      if (number != i) wrong_number();
    }
  }
  [[noreturn]] void wrong_number() {
    --at_;
    stop("a record of another number is due here");
  }

  void read_transport() {
    StoredTransport& t = data_.transport;
    take_fits<records::conductivity>(t.conductivity);
    take_fits<records::monoatomic_conductivity>(t.monoatomic_conductivity);
    take_fits<records::viscosity>(t.viscosity);
    for (int i = 1; i <= NG(); ++i) {
      for (int j = 1; j <= i; ++j) {
        std::array<int, 2> pair{};
        take<records::diffusion>(pair, t.diffusion.emplace_back());
        if (pair != std::array{i, j}) wrong_number();
      }
    }
    take_list<records::well_depths>(t.well_depths, NG());
    take_list<records::diameters>(t.diameters, NG());
    take_list<records::dipole_moments>(t.dipole_moments, NG());
    take_list<records::polarizabilities>(t.polarizabilities, NG());
    take_list<records::collision_numbers>(t.collision_numbers, NG());
  }

  void read_thermo(StoredPhase& phase) {
    for (int i = 1; i <= count_of(phase.names); ++i) {
      int number = 0;
      StoredThermo thermo;
      take<records::thermochemistry>(number, thermo.lower, thermo.upper, thermo.limits);
      if (number != i) wrong_number();
      phase.thermo.push_back(thermo);
    }
  }

  void read_surface_conditions() {
    while (is_next<records::surface_property>()) {
      Text<4> name;
      double value = 0;
      take<records::surface_property>(name, value);
      data_.surface_conditions.push_back({std::string(trimmed(name.view())), value});
    }
  }

  void read_mechanism(StoredMechanism& mechanism, bool surface) {
    const int NR = take_count<records::reaction_count>(NRMAX);
    mechanism.partners = take_count<records::partner_count>(varpre::partner_count);
    for (int i = 0; i < NR; ++i) {
      StoredReaction r;
      if (surface) {
        take<records::surface_reaction>(r.species, r.A, r.b, r.E, r.form, r.sticking, r.coverage, r.values);
      } else {
        auto six = std::span(r.species).first<6>();
        take<records::gas_reaction>(six, r.A, r.b, r.E, r.form, r.values);
        take<records::falloff>(r.falloff);
      }
      mechanism.reactions.push_back(r);
    }
    take_list<records::pointers>(mechanism.pointers, take_count<records::pointer_count>(NRIMAX));
    take_list<records::pair_codes>(mechanism.pair_codes, NR);
    mechanism.inert = take_count<records::inert_count>(NSMAX);
  }

  void read_efficiencies() {
    for (int c = 1; c <= data_.gas_mechanism.partners; ++c) {
      Text<4> name;
      std::vector<double> row(static_cast<std::size_t>(NG()));
      std::span<double> all(row);
      take<records::efficiencies>(name, all);
      data_.efficiencies.push_back(row);
    }
  }

  void read_complex_reactions() {
    const int count = take_count<records::complex_count>(MNCRE);
    for (int i = 0; i < count; ++i) {
      StoredComplexReaction r;
      take<records::complex_coefficients>(r.coefficients);
      take<records::complex_species>(r.species);
      take<records::complex_orders>(r.orders);
      take<records::complex_rate>(r.rate);
      data_.complex_reactions.push_back(r);
    }
  }

  void read_photo_reactions() {
    const int count = take_count<records::photo_count>(NPMAX);
    for (int i = 0; i < count; ++i) {
      StoredPhotoReaction r;
      take<records::photo_reaction>(r.species, r.rate);
      data_.photo_reactions.push_back(r);
    }
  }

  void read_mixture() {
    StoredMixture m;
    std::vector<double> fractions(static_cast<std::size_t>(NG() + NS()));
    std::span<double> all(fractions);
    take<records::mixture>(m.temperature, m.enthalpy, m.pressure, all, m.given);
    m.gas_fractions.assign(fractions.begin(), fractions.begin() + NG());
    m.surface_fractions.assign(fractions.begin() + NG(), fractions.end());
    data_.mixtures.push_back(m);
  }

  // A record of values under these keywords; a place without a name is not used.
  template <FormatText Record, std::size_t N>
  void take_values(const std::array<const char*, N>& names, std::vector<StoredValue>& list) {
    std::array<double, N> values{};
    take<Record>(values);
    for (std::size_t i = 0; i < N; ++i) {
      if (*names[i] != '\0') list.push_back({names[i], values[i]});
    }
  }

  void read_flame_conditions() {
    auto& list = data_.flame_conditions;
    int NG_ = 0;
    int NGK = 0;
    int GE = 0;
    take<records::grid>(NG_, NGK);
    take<records::geometry>(GE);
    list = {
        {"NG", static_cast<double>(NG_)}, {"NGK", static_cast<double>(NGK)}, {"GE", static_cast<double>(GE)}};
    take_values<records::radii>(std::array{"RI", "RO", "", "VPLU"}, list);
    take_values<records::times>(std::array{"TSTA", "TE", "NT", "Nmax"}, list);
    take_values<records::energy_source>(std::array{"SE", "SW", "ST", "SOGR"}, list);
    take_values<records::steps>(std::array{"STEP", "ATOL", "RTOL", "RS"}, list);
    take_values<records::profile>(std::array{"AMPL", "SIGM", "RMAX", "ALPH", "OMEG"}, list);
    take_values<records::stops>(std::array{"TSTO", "MSTO", "ART", "RB"}, list);
    take_values<records::weights>(std::array{"WFr", "WFp", "WFu", "WFT"}, list);
    if (!is_next<records::velocities>()) return;
    auto& plane = data_.two_dimensional;
    take_values<records::velocities>(std::array{"UINI", "VINI", "RI2", "DIST"}, plane);
    take_values<records::limits>(std::array{"", "TMAX", "HMAX", "REDF"}, plane);
    take_values<records::sources>(std::array{"XSOU", "YSOU", "", ""}, plane);
    take_values<records::gravity>(std::array{"GACC", "", "", ""}, plane);
  }

  void read_particles() {
    if (!is_next<records::particle_heading>()) return;
    StoredParticles particles;
    take<records::particle_heading>();
    take<records::particle_grid>(particles.grid);
    const int count = take_count<records::particle_count>(NSMAX);
    take<records::particle_list>();
    take_list<records::particle_names>(particles.names, count);
    take<records::particle_data>();
    for (int i = 0; i < count; ++i) {
      Text<8> name;
      take<records::particle_name>(name);
      auto& values = particles.data.emplace_back();
      const auto group = [&](std::size_t g) { return std::span(values).subspan(4 * g, 4); };
      auto groups = std::array{group(0), group(1), group(2), group(3), group(4), group(5)};
      take<records::particle_values_1>(groups[0]);
      take<records::particle_values_2>(groups[1]);
      take<records::particle_values_3>(groups[2]);
      take<records::particle_values_4>(groups[3]);
      take<records::particle_values_5>(groups[4]);
      take<records::particle_values_6>(groups[5]);
    }
    take_list<records::particle_fractions>(particles.fractions, count);
    take<records::particle_end>();
    data_.particles = particles;
  }

  StoreData& data_;
  std::vector<std::string> lines_;
  std::size_t at_ = 0;  // the next line
};

}  // namespace

StoreData read_store(const std::string& text) {
  StoreData data;
  try {
    StoreReader(text, data).read_all();
  } catch (const Stop& stop) {
    data.stopped_at = stop.line;
    data.stopped = stop.reason;
  }
  return data;
}

}  // namespace varpre
