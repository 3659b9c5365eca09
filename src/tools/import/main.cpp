#include <cstdio>
#include <deque>
#include <filesystem>
#include <memory>

#include "driver/run.h"
#include "textio/channel/file.h"
#include "textio/findings/odd_characters.h"
#include "tools/arguments.h"
#include "tools/import/input_writer.h"
#include "tools/import/mechanism_file.h"
#include "tools/import/mixtures.h"
#include "tools/import/units.h"
#include "tools/import/verification.h"

namespace {

using varpre::message;

struct Arguments {
  varpre::ImportOptions import;
  std::string directory = ".";
  std::vector<std::string> include;
  std::string pressure;
  varpre::GivenMixtures mixtures;
  std::string start;  // a template
  bool fit_reverses = false;
  bool verify = true;
  bool no_verify = false;
  bool force = false;
};

constexpr int not_held = 1;  // the exit status

void tell(const std::string& findings) {
  std::fputs(findings.c_str(), stderr);
}

std::string path_in(const Arguments& arguments, const std::string& name) {
  return (std::filesystem::path(arguments.directory) / name).lexically_normal().string();
}

bool exists(const std::string& path) {
  return std::filesystem::symlink_status(path).type() != std::filesystem::file_type::not_found;
}

// The files that are written whatever is there; the INP joins them where there is none.
std::vector<std::pair<std::string, const std::string*>> set_of(const Arguments& arguments,
                                                               const varpre::InputTexts& texts) {
  std::vector<std::pair<std::string, const std::string*>> set{{"MEC", &texts.MEC}, {"THERMO", &texts.THERMO}};
  if (!arguments.import.without_transport) set.emplace_back("MOLNEW", &texts.MOLNEW);
  return set;
}

// Throws when a file that is to be written is there already, or is one that is read.
void refuse_to_overwrite(const Arguments& arguments, const varpre::SourceFiles& sources) {
  for (const auto& [name, text] : set_of(arguments, {})) {
    const std::string path = path_in(arguments, name);
    if (!arguments.force && exists(path))
      throw std::runtime_error(path + " is there already; --force writes over it");
    if (sources.include(path)) throw std::runtime_error(path + " is read, and cannot be written over");
  }
}

// All files or none: each is complete on the disk before the first takes its place.
void write_files(const Arguments& arguments, const varpre::SourceFiles& sources,
                 const varpre::InputTexts& texts) {
  std::filesystem::create_directories(arguments.directory);
  auto set = set_of(arguments, texts);
  const std::string conditions = path_in(arguments, "INP");
  const bool keep_conditions = exists(conditions);
  if (!keep_conditions) set.emplace_back("INP", &texts.INP);
  std::deque<varpre::FreshFile> files;
  for (const auto& [name, text] : set) {
    varpre::FreshFile& file = files.emplace_back(path_in(arguments, name));
    file.write(*text);
    file.sync();
  }
  refuse_to_overwrite(arguments, sources);
  for (varpre::FreshFile& file : files) file.take_place();
  for (const auto& [name, text] : set)
    std::printf("wrote %s\n", varpre::for_terminal(path_in(arguments, name)).c_str());
  if (keep_conditions)
    std::printf("%s is there already and stays as it is\n", varpre::for_terminal(conditions).c_str());
}

// Data for a run without MOLNEW, in which they do not matter.
std::string any_molecules(const varpre::ImportedMechanism& mechanism) {
  std::string text;
  for (const varpre::ImportedSpecies& species : mechanism.gas) {
    text += std::string(species.short_name.view()) +
            " 2    20.000     100.0       3.0       0.0       0.0       1.0\n";
  }
  return text;
}

varpre::Verification compared(const Arguments& arguments, const varpre::ImportedMechanism& mechanism,
                              const varpre::RunData& data) {
  return varpre::verify(mechanism, arguments.import.pressure.value_or(1), data);
}

// Runs the texts in memory and compares what the program reads from them with the mechanism.
varpre::Verification verify(const Arguments& arguments, const varpre::ImportedMechanism& mechanism,
                            const varpre::InputTexts& texts) {
  varpre::Files files = varpre::Files::in_memory();
  files.mechanism.text = texts.MEC;
  files.thermo.text = texts.THERMO;
  files.conditions.text = texts.INP;
  files.molecules.text = arguments.import.without_transport ? any_molecules(mechanism) : texts.MOLNEW;
  const auto data = std::make_unique<varpre::RunData>();
  const varpre::RunResult run = varpre::run(files, *data);
  if (run.errors > 0) tell(run.diagnostics);
  return compared(arguments, mechanism, *data);
}

void list_molecules_needed(const varpre::ImportedMechanism& mechanism) {
  std::string text = "no run was made: MOLNEW, the transport data, is yours to supply, for";
  std::size_t length = 0;
  for (const varpre::ImportedSpecies& species : mechanism.gas) {
    const std::string name(varpre::trimmed(species.short_name.view()));
    text += (length % 70 < name.size() + 1 ? "\n  " : " ") + name;
    length += name.size() + 1;
  }
  std::puts(text.c_str());
}

// Runs what was imported, without writing anything, and compares what the program reads from the files with
// what it read from the texts. The exit status.
int try_run(const Arguments& arguments, const varpre::ImportedMechanism& mechanism,
            const varpre::Verification* verification, bool own_conditions) {
  if (arguments.import.without_transport && !exists(path_in(arguments, "MOLNEW"))) {
    list_molecules_needed(mechanism);
    return 0;
  }
  varpre::Files files = varpre::Files::in_directory(arguments.directory);
  const auto data = std::make_unique<varpre::RunData>();
  const varpre::RunResult run = varpre::run(files, *data);
  tell(run.diagnostics);
  const bool complete = run.errors == 0 && run.store_state == "complete";
  std::printf("varpre: %s; store file %s\n", varpre::summary(run.errors, run.warnings).c_str(),
              run.store_state.c_str());
  if (own_conditions && verification != nullptr && !(compared(arguments, mechanism, *data) == *verification))
    throw std::runtime_error("the files that were written are not read as what they were made of");
  if (!complete && !own_conditions)
    std::puts("the INP that was there does not fit the new files: see the errors above");
  return complete ? 0 : not_held;
}

int give_up(const std::string& why) {
  tell(message("varpre-import: ", why, "; nothing was written\n"));
  return not_held;
}

varpre::ConditionsOptions conditions_options(const Arguments& arguments) {
  varpre::ConditionsOptions options;
  options.fit_reverses = arguments.fit_reverses;
  if (arguments.start.empty()) return options;
  const auto start = varpre::template_named(arguments.start);
  if (!start) throw std::runtime_error("--template: burner, counterflow or ignition is due");
  options.start = *start;
  return options;
}

// Whether this would take the reactions from a mechanism that is there and give none.
bool would_empty(const Arguments& arguments, const varpre::ImportedMechanism& mechanism) {
  return mechanism.gas_reactions.empty() && mechanism.surface_reactions.empty() &&
         mechanism.global_reactions.empty() && exists(path_in(arguments, "MEC"));
}

// What came out of reading, and the files made of it. The exit status.
int write_mechanism(const Arguments& arguments, const varpre::SourceFiles& sources,
                    const varpre::ImportedMechanism& mechanism, varpre::Findings& findings,
                    const varpre::Input& file) {
  const varpre::ConditionsOptions conditions = conditions_options(arguments);
  const auto& given = arguments.mixtures;
  const bool apart = conditions.start == varpre::Template::counterflow;
  varpre::InputTexts texts = varpre::write_inputs(mechanism, varpre::mixtures_of(mechanism, given, apart),
                                                  conditions, file, findings);
  std::unique_ptr<varpre::Verification> verification;
  if (arguments.verify && !arguments.no_verify)
    verification = std::make_unique<varpre::Verification>(verify(arguments, mechanism, texts));
  tell(findings.render());
  if (findings.errors() > 0) return give_up(varpre::summary(findings.errors(), findings.warnings()));
  if (verification && !verification->faults.empty())
    return give_up("what was made is not what was read: " +
                   varpre::for_terminal(verification->faults.front()));
  if (would_empty(arguments, mechanism))
    return give_up("there are no reactions to take the place of those in MEC");
  std::vector<std::string> lines = varpre::summary_lines(mechanism, verification.get());
  if (given.left.empty() && given.right.empty() && given.fuel.empty())
    lines.emplace_back(
        "both sides of INP have the state that the file gives: --left, --right, --fuel set others");
  varpre::add_comments(lines, texts);
  const bool own_conditions = !exists(path_in(arguments, "INP"));
  write_files(arguments, sources, texts);
  for (const std::string& line : lines) std::puts(varpre::for_terminal(line).c_str());
  return try_run(arguments, mechanism, verification.get(), own_conditions);
}

int import(Arguments& arguments) {
  varpre::ImportOptions& options = arguments.import;
  if (!arguments.pressure.empty()) options.pressure = varpre::read_pressure("--pressure", arguments.pressure);
  conditions_options(arguments);
  varpre::SourceFiles sources;
  refuse_to_overwrite(arguments, sources);
  varpre::Findings findings;
  findings.most_shown = 200;  // of a kind: each looks for its line
  const varpre::ImportedMechanism mechanism =
      varpre::read_mechanism(options, arguments.include, sources, findings);
  refuse_to_overwrite(arguments, sources);
  if (findings.errors() == 0)
    return write_mechanism(arguments, sources, mechanism, findings, sources.open(options.file));
  tell(findings.render());
  return give_up(varpre::summary(findings.errors(), findings.warnings()));
}

constexpr varpre::Program program{
    "varpre-import",
    "Brings a mechanism in Cantera's YAML, or in CHEMKIN format, into the files MEC, THERMO and MOLNEW, with an INP to start from.",
    "0 done, 1 something cannot be held or the run ends with an error, 2 wrong usage, or a file that cannot be read or "
    "written."};

}  // namespace

int main(int argc, char** argv) {
  Arguments arguments;
  varpre::ImportOptions& options = arguments.import;
  return varpre::run_program(
      program,
      {{"FILE", &options.file, "the mechanism, YAML or CHEMKIN", "", true},
       {"--phase", &options.phase, "the gas phase (that beside the surface, or the first ideal gas)", "NAME"},
       {"--surface", &options.surface, "the surface (none)", "NAME"},
       {"--species", &options.species, "gas species to be taken (all), with the reactions among them",
        "A,B,...", false, ','},
       {"--output", &arguments.directory, "where the files are written (.)", "DIRECTORY"},
       {"--transport", &options.transport,
        "transport data for species that have none (YAML, tran.dat, MOLNEW)", "FILE"},
       {"--thermo", &options.thermo, "thermochemistry of a mechanism in CHEMKIN format", "FILE"},
       {"--surface-file", &options.surface_file, "the surface of a mechanism in CHEMKIN format", "FILE"},
       {"--include", &arguments.include, "where files are looked for that the file names, beside its own",
        "DIRECTORY"},
       {"--pressure", &arguments.pressure, "of rates that depend on it (\"1 bar\")", "P"},
       {"--refit-thermo", &options.refit_thermo,
        "fit ranges of seven coefficients to thermochemistry of other forms"},
       {"--left", &arguments.mixtures.left,
        "the mixture on the left (\"CH4:1, O2:2, N2:7.52; 300 K; 1 atm\")", "MIXTURE"},
       {"--right", &arguments.mixtures.right, "the mixture on the right", "MIXTURE"},
       {"--fuel", &arguments.mixtures.fuel, "the fuel of both mixtures, with --oxidizer", "AMOUNTS"},
       {"--oxidizer", &arguments.mixtures.oxidizer, "the oxidizer (\"O2:1, N2:3.76\")", "AMOUNTS"},
       {"--phi", &arguments.mixtures.phi, "the equivalence ratio (1)", "NUMBER"},
       {"--template", &arguments.start, "options and conditions that fit: burner, counterflow, ignition",
        "NAME"},
       {"--fit-reverses", &arguments.fit_reverses,
        "varpre fits the reverse rates of the gas; the solver works them out otherwise"},
       {"--verify", &arguments.verify, "compare what was written with the file (that is done anyway)"},
       {"--no-verify", &arguments.no_verify, "do not"},
       {"--force", &arguments.force, "write over MEC, THERMO and MOLNEW; an INP always stays"},
       {"--skip-unsupported", &options.skip_unsupported,
        "leave out what cannot be held, with a warning each"},
       {"--without-transport", &options.without_transport, "take no transport data, write no MOLNEW"},
       {"--no-falloff", &options.no_falloff, "falloff reactions count as what cannot be held"}},
      argc, argv, [&] { return import(arguments); });
}
