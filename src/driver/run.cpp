#include "driver/run.h"

#include <array>
#include <memory>
#include <optional>
#include <utility>

#include "conditions/flame_conditions.h"
#include "conditions/mixtures.h"
#include "conditions/options.h"
#include "conditions/particle_data.h"
#include "conditions/surface_conditions.h"
#include "conditions/two_dimensional_options.h"
#include "driver/file_faults.h"
#include "driver/prefilter.h"
#include "driver/run_data.h"
#include "driver/unread_text.h"
#include "files/section_findings.h"
#include "files/store_records.h"
#include "mechanism/collision_efficiencies.h"
#include "mechanism/complex_reactions.h"
#include "mechanism/mechanism_reader.h"
#include "mechanism/photo_reactions.h"
#include "textio/channel/process.h"
#include "textio/channel/run_stop.h"
#include "textio/channel/statement.h"
#include "thermo/elements.h"
#include "thermo/species_list.h"
#include "thermo/thermo_database.h"
#include "transport/molecular_database.h"
#include "transport/transport_data.h"

namespace varpre {
namespace {

constexpr const char* store_name = "fort.3";

void write_banner(Listing& MSGFIL) {
  write<
      "(/,1X,79('*'),/,1X,'****    PROGRAM VARNOK - VARPRE',/,1X,'****    BUILD VERSION: 1.0.4-new_version_test-0',/,"
      "1X,'****    BUILD DATE: 2017-06-09',/,1X,'****    LIBRARY VERSION: 1.0.9-new_version_test-2',/,"
      "1X,'****    LIBRARY DATE: 2017-06-09',/,1X,79('*'))">(MSGFIL);
}

void write_normal_end(Listing& MSGFIL) {
  write<"(1X,79('*'))">(MSGFIL);
  write<"(1X,10('*'),19X,A20,20X,10('*'))">(MSGFIL, Text<20>(" VARPRE: NORMAL END "));
  write<"(1X,79('*'))">(MSGFIL);
}

void write_abnormal_end(Listing& MSGFIL) {
  write<"(3(6X,31('*'),'ABNORMAL END',31('*'),/))">(MSGFIL);
}

// The run sequence, with the data that the stages hand on; each step reads like the order of the blocks in
// the store file.
class Sequence {
 public:
  Sequence(Files& files, RunData& data)
      : data_(data),
        NFIMOL(files.molecules),
        NFISTO(files.store),
        NFICON(files.conditions_copy),
        NFIMEC(files.mechanism_copy),
        NFITHE(files.thermo_copy),
        NFIPAR(files.particles),
        MSGFIL(files.listing) {}

  // What the run is about, or was when it ended.
  std::string_view stage() const { return stop_ ? stopped_in_ : stage_; }
  // The first stage with an error although the run went on: what it owes the store file is missing there.
  std::string_view incomplete() const { return incomplete_; }

  // Records about whose text beyond column 80 all has been said.
  std::span<const Place> cut_text_told() const { return data_.efficiencies.cut_text; }

  RunCounts counts() const {
    return {.gas_species = data_.NGAS,
            .surface_species = data_.NSURF,
            .particle_species = data_.NPART,
            .elements = data_.gas_elements.NE,
            .gas_reactions = data_.gas_mechanism.NR(),
            .surface_reactions = data_.surface_mechanism.NR()};
  }

  // How the run ended where a check failed.
  const std::optional<RunStop>& stop() const { return stop_; }

  // Takes the steps in their order. Behind a check that fails the others read what they can without it, for
  // what may be wrong there; nothing of that reaches the listing or the store file.
  void all_stages() {
    for (const Step& step : steps) {
      if (!stop_ || step.behind_a_stop(*this)) take(step.run);
    }
    dropped_listing_.reset();
    dropped_store_.reset();
  }

 private:
  // A step of the run, and whether what it needs is there when an earlier one has failed.
  struct Step {
    void (Sequence::*run)();
    bool (*behind_a_stop)(const Sequence&);
  };
  static bool always(const Sequence&) { return true; }
  static bool never(const Sequence&) { return false; }
  static bool with_species(const Sequence& s) { return s.data_.NGAS > 0; }
  static const std::array<Step, 17> steps;

  void take(void (Sequence::*step)()) {
    try {
      (this->*step)();
    } catch (const RunStop& stop) {
      if (stop_) return;
      if (stop.ending == RunStop::Ending::number_not_finite) {
        write<"(' ',5X,'ERROR - A number for the store file is not finite')">(MSGFIL);
        report_not_finite();
      }
      stopped_in_ = stage_;
      stop_ = stop;
      dropped_listing_.emplace(MSGFIL.file);
      dropped_store_.emplace(NFISTO);
    }
  }
  void report_not_finite() {
    if (MSGFIL.findings.errors() > 0) return;  // the stage knew the place
    MSGFIL.findings.error(whole(NFICON),
                          message("the input leads to a number that is not finite in ", stage()),
                          "a value of the input is far too large, or 0 where it must not be");
  }

  void begin_store_file() {
    write<store_records::heading>(NFISTO);
    separator();
  }

  void begin(std::string_view stage) {
    note_errors();
    stage_ = stage;
  }
  // An error that does not end the run leaves the store file incomplete.
  void note_errors() {
    if (NFISTO.has_asterisks && MSGFIL.findings.errors() == 0) {  // the stage did not know of it
      MSGFIL.findings.error(whole(NFICON), message("a number of ", stage_,
                                                   " does not fit the store file, which has asterisks"));
    }
    if (incomplete_.empty() && MSGFIL.findings.errors() > 0) incomplete_ = stage_;
  }

  bool has_surface() const { return data_.NSURF > 0; }
  SpeciesView gas() const { return data_.gas(); }
  SpeciesView surface() const { return data_.surface(); }
  SpeciesView all() const { return data_.all(); }

  void separator() { write<"(2X)">(MSGFIL); }
  void check(bool LOK) {
    if (!LOK) throw RunStop{RunStop::Ending::failed_check};
  }

  void read_options() {
    begin("the options");
    const bool LOK = GENOPT(NFICON, MSGFIL, NFISTO, IOPT, data_.titles);
    separator();
    check(LOK);
    LPRT = IOPT(OUTPUT) == 4;
    if (IOPT(PLN2D) != 1) NFISTO.begin_to_pass_on();  // else it is edited in the end
  }

  void read_gas_species() {
    begin("the gas-phase species");
    const SpeciesList list =
        GENSYM(sections::named("the gas-phase species list"), NFICON, MSGFIL, data_.places_after(0));
    separator();
    if (!list.heading) report_missing(sections::named("the gas-phase species list"), NFICON, MSGFIL.findings);
    check(!list.absent);
    data_.NGAS = list.NS;
    // Between here and the next check other stages run: a failure is kept until then.
    LOK_species = GENTHE(NFITHE, MSGFIL, data_.places_of_gas(), LPRT);
    LOK_species = ELECOM(data_.places_of_gas(), data_.gas_elements, MSGFIL) && LOK_species;
    warn_of_low_entropies(gas(), MSGFIL.findings);
  }

  void read_surface_species() {
    begin("the surface species");
    const SpeciesList list =
        GENSYM(sections::named("the surface species list"), NFICON, MSGFIL, data_.places_after(data_.NGAS));
    if (list.absent) {
      write_free(MSGFIL, std::string_view(" no surface species"));
      if (!list.heading && IOPT(SOLID) != 1) {
        warn_of_use_without(sections::named("the surface species list"),
                            sections::named("the surface conditions"), NFICON, NFICON, MSGFIL.findings);
      }
      if (!list.heading) {
        warn_of_use_without(sections::named("the surface species list"),
                            sections::named("the surface mechanism"), NFICON, NFIMEC, MSGFIL.findings);
      }
    } else {
      data_.NSURF = list.NS;
      warn_of_species_in_both(gas(), surface(), MSGFIL.findings);
    }
    if (has_surface()) LOK_species = GENTHE(NFITHE, MSGFIL, data_.places_of_surface(), LPRT) && LOK_species;
    if (!LOK_species) begin("the thermochemical data");
    check(LOK_species);
    LOK_species = ELECOM(data_.places_of_surface(), data_.surface_elements, MSGFIL);
  }

  void fit_transport() {
    begin("the transport data");
    if (stop_) {
      check(GENSPE(gas(), NFIMOL, MSGFIL, data_.molecules, LPRT));
      return;
    }
    INIMOI(gas(), data_.gas_elements, NFISTO);
    TransportData transport = GENSPD(gas(), {.TU = 0, .TB = 2500}, NFIMOL, LPRT, MSGFIL, NFISTO);
    data_.molecules = std::move(transport.molecules);
    std::ranges::copy(transport.XMOL, data_.species.XMOL.begin());
    check(LOK_species);
    INIMOI(surface(), data_.surface_elements, NFISTO);
  }

  void read_surface_conditions() {
    begin("the surface conditions");
    if (has_surface()) PRTHD(surface(), NFISTO);
    if (!has_surface() && IOPT(SOLID) != 1) return;
    const bool LOK = GENCOW(IOPT(IMPULSE) == -2, NFICON, MSGFIL, NFISTO, data_.wall);
    separator();
    check(LOK);
  }

  // Names to look up in the reactions; for findings, which of them have no entry in the database.
  ReactionNames reaction_names(const SpeciesView& species) {
    ReactionNames names(species.SYMB);
    names.database = &NFITHE;
    for (int i = 1; i <= species.size(); ++i) {
      if (at(species.fit, i).entry.unit != nullptr) continue;
      names.without_entry.emplace_back(at(species.SYMB, i), at(species.listed, i));
    }
    return names;
  }

  void read_gas_mechanism() {
    begin("the gas-phase mechanism");
    const ReactionNames names = reaction_names(gas());
    const MechanismOptions options{.solver_reverses = IOPT(REVSIM) != 0};
    Mechanism& mechanism = data_.gas_mechanism;
    bool LOK = GENMEC(Phase::gas, gas(), 0, names, options, NFIMEC, MSGFIL, NFISTO, mechanism);
    if (LOK) {
      begin("the collision efficiencies");
      data_.efficiencies = GENCEF(names, mechanism, NFIMEC, NFICON, MSGFIL, NFISTO);
      LOK = data_.efficiencies.LOK;
    }
    separator();
    check(LOK);
  }

  // Behind a gas-phase mechanism that failed.
  void read_efficiencies_alone() {
    if (!stop_ || data_.efficiencies.last_record > 0) return;
    data_.efficiencies = GENCEF(reaction_names(gas()), data_.gas_mechanism, NFIMEC, NFICON, MSGFIL, NFISTO);
  }

  void read_surface_mechanism() {
    begin("the surface mechanism");
    if (!has_surface()) return;
    const ReactionNames names = reaction_names(all());
    const MechanismOptions options{.behind_record = data_.efficiencies.last_record};
    const bool LOK = GENMEC(Phase::surface, all(), data_.NSURF, names, options, NFIMEC, MSGFIL, NFISTO,
                            data_.surface_mechanism);
    separator();
    check(LOK);
  }

  void read_particle_species() {
    begin("the particle species list");
    const SpeciesList list = GENSYM(sections::named("the particle species list"), NFICON, MSGFIL,
                                    data_.places_after(data_.NGAS + data_.NSURF));
    if (list.absent) {
      write_free(MSGFIL, std::string_view(" NO PARTICLE SPECIES "));
    } else {
      data_.NPART = list.NS;
    }
  }

  void read_further_reactions() {
    begin("the complex reactions");
    bool LOK = GENCRE(all(), data_.gas_mechanism.NR(), IOPT(SOLID) >= 1, NFIMEC, MSGFIL, NFISTO,
                      data_.complex_reactions);
    separator();
    check(LOK);
    begin("the photo reactions");
    LOK = INIPHO(all(), NFIMEC, MSGFIL, NFISTO, data_.photo_reactions);
    separator();
    check(LOK);
  }

  void read_mixture(double ZMIX, const Section& section, MixtureState& mixture) {
    begin("the boundary mixtures");
    CHICON(section, all(), data_.NSURF, data_.gas_elements, NFICON, MSGFIL, mixture);
    write_condition_set(mixture, data_.NGAS + data_.NSURF, NFISTO);
    PRICOM(all(), data_.NSURF, data_.gas_elements, ZMIX, mixture, MSGFIL);
  }

  void read_left_mixture() { read_mixture(0, sections::named("the mixture on the left"), data_.mixtures[0]); }
  void read_right_mixture() {
    read_mixture(1, sections::named("the mixture on the right"), data_.mixtures[1]);
    if (stop_) return;
    compare_mixtures(data_.mixtures[0], data_.mixtures[1], data_.NGAS, surface(), MSGFIL.findings);
  }

  void read_flame_conditions() {
    begin("the flame conditions");
    const bool LOK = INICON(IOPT, NFICON, MSGFIL, NFISTO);
    separator();
    check(LOK);
  }

  void end_store_file() {
    write<store_records::flags>(NFISTO, all().IFLAG);
    write<store_records::end>(NFISTO);
  }

  void look_at_unread_text() {
    note_errors();
    for (const auto& [copy, file] : {std::pair{&NFICON, Section::INP}, std::pair{&NFIMEC, Section::MEC}}) {
      warn_of_unread_text(*copy, file, all().SYMB, stop_.has_value(), has_surface(), MSGFIL.findings);
    }
  }

  // The late stages, which append to the finished store file and edit it.
  void edit_store_file() {
    begin("the particle data");
    if (IOPT(IMPULSE) == -5) GENPART(data_.NPART, NFICON, NFIPAR, MSGFIL, NFISTO);
    begin("the two-dimensional options");
    if (IOPT(PLN2D) == 1) G2OPT(NFICON, MSGFIL, NFISTO);
  }

  RunData& data_;
  Input& NFIMOL;
  StoreFile& NFISTO;
  Input& NFICON;
  Input& NFIMEC;
  Input& NFITHE;
  Input& NFIPAR;
  Listing& MSGFIL;

  std::optional<RunStop> stop_;  // the first one
  std::string_view stopped_in_;  // its stage
  std::optional<Dropped<ListingFile>> dropped_listing_;
  std::optional<Dropped<StoreFile>> dropped_store_;
  std::string_view stage_ = "the input files";
  std::string_view incomplete_;
  OptionVector IOPT;
  bool LPRT = false;  // extended printing
  bool LOK_species = true;
};

const std::array<Sequence::Step, 17> Sequence::steps{{{&Sequence::begin_store_file, always},
                                                      {&Sequence::read_options, always},
                                                      {&Sequence::read_gas_species, always},
                                                      {&Sequence::read_surface_species, with_species},
                                                      {&Sequence::fit_transport, with_species},
                                                      {&Sequence::read_surface_conditions, with_species},
                                                      {&Sequence::read_gas_mechanism, with_species},
                                                      {&Sequence::read_efficiencies_alone, with_species},
                                                      {&Sequence::read_surface_mechanism, with_species},
                                                      {&Sequence::read_particle_species, with_species},
                                                      {&Sequence::read_further_reactions, with_species},
                                                      {&Sequence::read_left_mixture, with_species},
                                                      {&Sequence::read_right_mixture, with_species},
                                                      {&Sequence::read_flame_conditions, always},
                                                      {&Sequence::end_store_file, never},
                                                      {&Sequence::edit_store_file, never},
                                                      {&Sequence::look_at_unread_text, always}}};

// All inputs are opened before any is read, so that a run sees one state of the directory.
void open_files(Files& files) {
  const std::array inputs{&files.molecules, &files.mechanism, &files.conditions, &files.thermo};
  for (Input* const input : inputs) input->open();
  if (files.storage == Storage::disk) {
    const std::array<std::string, 4> outputs{store_name, files.conditions_copy.name,
                                             files.mechanism_copy.name, files.thermo_copy.name};
    for (const Input* const input : inputs) {
      for (const std::string& output : outputs) refuse_input_as_output(input->name, output);
    }
    remove_left_behind(outputs);
  }
  files.store.open();
  for (Input* const input : inputs) {
    input->load();
    if (!input->was_absent()) continue;
    files.listing.findings.warning(
        whole(*input), message("there was no file ", input->name, ": it ",
                               files.storage == Storage::disk ? "was created" : "counts as", " empty"));
  }
  if (files.molecules.read_error() != 0) {
    throw_system_error(files.molecules.read_error(), files.molecules.name);
  }
}

void filter(Input& input, Input& copy, Listing& MSGFIL) {
  REMCOM(input, copy, MSGFIL);
  copy.save();
}

// Warns of what was cut off the lines of an input, where nothing more exact was said (`told`). What stands
// behind a "!" was hardly meant to be read.
void warn_of_cut_lines(const Input& copy, std::span<const Place> told, Findings& findings) {
  for (const int record : copy.cut_records) {
    const std::string_view text = copy.origin(record).text;
    if (text.find('!') < text.find_first_not_of(' ', copied_width) + 1) continue;
    if (findings.is_told({&copy, record}) || std::any_of(told.begin(), told.end(), [&](const Place& p) {
          return p.unit == &copy && p.record == record;
        }))
      continue;
    findings.warning({&copy, record, copied_width + 1, 1}, "text beyond column 80 is not read");
  }
}

RunEnd run_stages(Sequence& sequence, Listing& MSGFIL) {
  sequence.all_stages();
  if (!sequence.stop()) return RunEnd::normal;
  if (sequence.stop()->ending != RunStop::Ending::silent) write_abnormal_end(MSGFIL);
  return RunEnd::abnormal;
}

std::string store_state(const Sequence& sequence, RunEnd end) {
  if (end == RunEnd::abnormal) return message("incomplete (ended in ", sequence.stage(), ")");
  if (!sequence.incomplete().empty()) return message("incomplete (", sequence.incomplete(), ")");
  return "complete";
}

}  // namespace

Files::Files(Storage where, const std::string& directory, int listing_descriptor)
    : molecules(1, directory + "MOLNEW", where),
      conditions(2, directory + "INP", where),
      store(store_name, where),
      mechanism(4, directory + "MEC", where),
      thermo(9, directory + "THERMO", where),
      conditions_copy(10, "fort.10", where),
      mechanism_copy(11, "fort.11", where),
      thermo_copy(12, "fort.12", where),
      particles(55, directory + "THERMLIQ", where),
      listing(listing_descriptor),
      storage(where) {}

Files Files::on_disk() {
  return {Storage::disk, {}, standard_output};
}

Files Files::in_memory() {
  return {Storage::memory, {}, ListingFile::no_file};
}

Files Files::in_directory(const std::string& directory) {
  const std::string_view separator = directory.ends_with('/') ? "" : "/";
  return {Storage::read_only, directory == "." ? std::string() : message(directory, separator),
          ListingFile::nowhere};
}

RunResult run(Files& files) {
  return run(files, *std::make_unique<RunData>());
}

RunResult run(Files& files, RunData& data) {
  files.listing.findings.judge_file = fault_of_file;
  open_files(files);
  write_banner(files.listing);
  filter(files.conditions, files.conditions_copy, files.listing);
  filter(files.mechanism, files.mechanism_copy, files.listing);
  filter(files.thermo, files.thermo_copy, files.listing);

  const auto sequence = std::make_unique<Sequence>(files, data);
  const RunEnd end = run_stages(*sequence, files.listing);
  if (end == RunEnd::normal) write_normal_end(files.listing);
  for (const Input* copy : {&files.conditions_copy, &files.mechanism_copy}) {
    warn_of_cut_lines(*copy, sequence->cut_text_told(), files.listing.findings);
  }
  const std::string state = store_state(*sequence, end);
  const Findings& findings = files.listing.findings;
  return {end, state, sequence->counts(), findings.errors(), findings.warnings(), findings.render(state)};
}

}  // namespace varpre
