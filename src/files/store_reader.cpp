#include "files/store_reader.h"

#include <algorithm>
#include <limits>
#include <span>

#include "files/partners.h"
#include "files/store_records.h"
#include "files/store_values.h"
#include "textio/findings/findings.h"
#include "textio/record/numbered.h"
#include "textio/record/record.h"

namespace varpre {
namespace {

namespace records = store_records;

// Why reading ended.
struct Stop {
  int line;
  std::string reason;
};

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

bool holds_integers(const FormatView& format) {
  return std::any_of(format.edits.begin(), format.edits.end(),
                     [](const Edit& edit) { return edit.kind == Edit::Kind::integer; });
}

class StoreReader {
 public:
  StoreReader(std::string_view text, StoreData& data) : rest_(text), end_(rest_.find('\n')), data_(data) {
    data_.lines = static_cast<int>(std::count(text.begin(), text.end(), '\n'));
    if (!text.empty() && text.back() != '\n') ++data_.lines;
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
    take_values(store_values::FlameCounts::records, data_.flame_conditions);
    take_values(store_values::FlameValues::records, data_.flame_conditions);
    if (is_next<records::velocities>())
      take_values(store_values::TwoDimensionalValues::records, data_.two_dimensional);
    take_list<records::flags>(data_.flags, NG() + NS());
    take<records::end>();
    if (is_next<records::particle_heading>()) read_particles();
    data_.complete = true;
    if (!rest_.empty()) stop("there is more behind the end of the file");
  }

 private:
  int NG() const { return count_of(data_.gas.names); }
  int NS() const { return count_of(data_.surface.names); }

  [[noreturn]] void stop(const std::string& reason) const { throw Stop{lines_read_ + 1, reason}; }
  [[noreturn]] void stop_at_last(const std::string& reason) const { throw Stop{lines_read_, reason}; }

  // The next line, without its end.
  std::string_view line() const {
    const std::string_view text = rest_.substr(0, end_);
    return text.substr(0, text.size() - (text.ends_with('\r') ? 1 : 0));
  }
  void step() {
    rest_.remove_prefix(std::min(end_, rest_.size() - 1) + 1);
    end_ = rest_.find('\n');
    ++lines_read_;
  }

  template <FormatText Record>
  bool is_next() const {
    return !rest_.empty() && has_texts(Format<Record>::view, line());
  }

  // Reads one statement.
  template <FormatText Record, class... Items>
  void take(Items&&... items) {
    static_assert(record_detail::items_fit<std::remove_reference_t<Items>...>(Format<Record>::view));
    take_items(Format<Record>::view, record_detail::describe<void*>(items...));
  }
  void take_items(const FormatView& format, std::span<const InputItem> items) {
    if (rest_.empty()) stop("the file ends here");
    if (!has_texts(format, line())) stop("this is not the record that is due here");
    const auto next = [](void* from, std::string_view& record) {
      auto& reader = *static_cast<StoreReader*>(from);
      if (reader.rest_.empty()) return false;
      record = reader.line();
      reader.step();
      return true;
    };
    const ReadResult result = record_detail::read_records({this, next, lines_read_, true}, format, items);
    if (result.end_of_file()) stop("the file ends here");
    if (result.is_unreadable()) {
      const FieldPlace& field = result.unreadable;
      throw Stop{field.record,
                 message("cannot read columns ", field.column, " to ", field.column + field.width - 1)};
    }
  }

  // Reads a count, which is no more than there can be.
  template <FormatText Record>
  int take_count(int most) {
    int count = 0;
    take<Record>(count);
    if (count >= 0 && count <= most) return count;
    stop_at_last(message("the count ", count, " cannot be: at most ", most, " are possible"));
  }

  template <FormatText Record, class T>
  void take_list(std::vector<T>& list, int count) {
    list.resize(static_cast<std::size_t>(count));
    std::span<T> all(list);
    take<Record>(all);
  }

  // Records of values under keywords.
  void take_values(std::span<const ValueRecord> value_records, std::vector<StoredValue>& list) {
    for (const auto& [format, items] : value_records) {
      std::array<double, 5> values{};
      if (holds_integers(format)) {
        std::array<int, 5> counts{};
        take_items(format, std::array{record_detail::values<void*>(counts.data(), items.size())});
        std::transform(counts.begin(), counts.end(), values.begin(), [](int count) {
          return count == absent_integer ? std::numeric_limits<double>::quiet_NaN() : count;
        });
      } else {
        take_items(format, std::array{record_detail::values<void*>(values.data(), items.size())});
      }
      for (std::size_t i = 0; i < items.size(); ++i) add_value(items[i], values.begin()[i], list);
    }
  }
  // A place that is not used is told where it holds something.
  static void add_value(const StoreItem& item, double value, std::vector<StoredValue>& list) {
    if (item.word.empty() && value == 0) return;
    list.push_back({std::string(item.word), value, item.unit, item.word.empty() ? "not used" : item.meaning});
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
  [[noreturn]] void wrong_number() const { stop_at_last("a record of another number is due here"); }

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
      StoredThermo& thermo = phase.thermo.emplace_back();
      take<records::thermochemistry>(number, thermo.lower, thermo.upper, thermo.limits);
      if (number != i) wrong_number();
    }
  }

  void read_surface_conditions() {
    while (is_next<records::surface_property>()) {
      Text<4> word;
      double value = 0;
      take<records::surface_property>(word, value);
      const StoreItem item = store_values::surface_item(trimmed(word.view()));
      data_.surface_conditions.push_back({std::string(item.word), value, item.unit, item.meaning});
    }
  }

  void read_mechanism(StoredMechanism& mechanism, bool surface) {
    const int NR = take_count<records::reaction_count>(NRMAX);
    mechanism.partners = take_count<records::partner_count>(varpre::partner_count);
    for (int i = 0; i < NR; ++i) {
      StoredReaction& r = mechanism.reactions.emplace_back();
      if (surface) {
        take<records::surface_reaction>(r.species, r.A, r.b, r.E, r.form, r.sticking, r.coverage, r.values);
      } else {
        auto six = std::span(r.species).first<6>();
        take<records::gas_reaction>(six, r.A, r.b, r.E, r.form, r.values);
        take<records::falloff>(r.falloff);
      }
    }
    take_list<records::pointers>(mechanism.pointers, take_count<records::pointer_count>(NRIMAX));
    take_list<records::pair_codes>(mechanism.pair_codes, NR);
    mechanism.inert = take_count<records::inert_count>(NSMAX);
  }

  void read_efficiencies() {
    for (int c = 1; c <= data_.gas_mechanism.partners; ++c) {
      Text<4> label;
      auto& row = data_.efficiencies.emplace_back(static_cast<std::size_t>(NG()));
      std::span<double> all(row);
      take<records::efficiencies>(label, all);
      if (label != Text<4>(at(MCOLLI, c)))
        stop("the efficiencies above are those of another collision partner");
    }
  }

  void read_complex_reactions() {
    const int count = take_count<records::complex_count>(MNCRE);
    for (int i = 0; i < count; ++i) {
      StoredComplexReaction& r = data_.complex_reactions.emplace_back();
      take<records::complex_coefficients>(r.coefficients);
      take<records::complex_species>(r.species);
      take<records::complex_orders>(r.orders);
      take<records::complex_rate>(r.A, r.b, r.E);
    }
  }

  void read_photo_reactions() {
    const int count = take_count<records::photo_count>(NPMAX);
    for (int i = 0; i < count; ++i) {
      StoredPhotoReaction& r = data_.photo_reactions.emplace_back();
      take<records::photo_reaction>(r.species, r.rate);
    }
  }

  void read_mixture() {
    StoredMixture m;
    m.gas.resize(data_.gas.names.size());
    m.surface.resize(data_.surface.names.size());
    std::span<double> gas(m.gas);
    std::span<double> surface(m.surface);
    take<records::mixture>(m.T, m.H, m.P, gas, surface, m.PHI, m.G, m.v, m.FREQ, m.FAC, m.OMEG);
    data_.mixtures.push_back(m);
  }

  void read_particles() {
    StoredParticles& particles = data_.particles.emplace();
    take<records::particle_heading>();
    take<records::particle_grid>(particles.grid);
    const int count = take_count<records::particle_count>(NSMAX);
    take<records::particle_list>();
    take_list<records::particle_names>(particles.names, count);
    take<records::particle_data>();
    for (const SpeciesName& name : particles.names) {
      SpeciesName stored;
      take<records::particle_name>(stored);
      if (stored != name) stop_at_last("another particle species is due here");
      take_values(store_values::particles, particles.data.emplace_back());
    }
    take_list<records::particle_fractions>(particles.fractions, count);
    take<records::particle_end>();
  }

  std::string_view rest_;  // of the text
  std::size_t end_;        // of its first line
  int lines_read_ = 0;
  StoreData& data_;
};

}  // namespace

StoreData read_store(std::string_view text) {
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
