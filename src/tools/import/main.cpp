#include <cstdio>
#include <filesystem>

#include "textio/channel/file.h"
#include "textio/findings/odd_characters.h"
#include "tools/arguments.h"
#include "tools/check/directory_run.h"
#include "tools/import/input_writer.h"
#include "tools/import/species_reader.h"
#include "tools/import/yaml_reader.h"

namespace {

using varpre::message;

struct Arguments {
  varpre::ImportOptions import;
  std::string directory = ".";
  std::vector<std::string> include;
  std::string pressure;
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

// Throws when a file that is to be written is there already.
void refuse_to_overwrite(const Arguments& arguments) {
  if (arguments.force) return;
  for (const char* const name : {"MEC", "THERMO", "MOLNEW"}) {
    const bool written = !arguments.import.without_transport || name != std::string_view("MOLNEW");
    if (written && exists(path_in(arguments, name))) {
      throw std::runtime_error(path_in(arguments, name) + " is there already; --force writes over it");
    }
  }
}

void write_file(const std::string& path, const std::string& text) {
  varpre::FreshFile file(path);
  file.write(text);
  file.sync();
  file.take_place();
  std::printf("wrote %s\n", varpre::for_terminal(path).c_str());
}

void write_files(const Arguments& arguments, const varpre::InputTexts& texts) {
  std::filesystem::create_directories(arguments.directory);
  write_file(path_in(arguments, "MEC"), texts.MEC);
  write_file(path_in(arguments, "THERMO"), texts.THERMO);
  if (!arguments.import.without_transport) write_file(path_in(arguments, "MOLNEW"), texts.MOLNEW);
  if (const std::string conditions = path_in(arguments, "INP"); exists(conditions)) {
    std::printf("%s is there already and stays as it is\n", varpre::for_terminal(conditions).c_str());
  } else {
    write_file(conditions, texts.INP);
  }
}

void list_mechanism(const varpre::ImportedMechanism& mechanism) {
  const auto count = [](const auto& list) { return static_cast<int>(list.size()); };
  std::string text =
      message("gas phase ", varpre::for_terminal(mechanism.gas_phase), ": ", count(mechanism.gas),
              " species, ", varpre::counted(count(mechanism.gas_reactions), "reaction"), "\n");
  if (!mechanism.surface_phase.empty()) {
    text += message("surface ", varpre::for_terminal(mechanism.surface_phase), ": ", count(mechanism.surface),
                    " species, ", varpre::counted(count(mechanism.surface_reactions), "reaction"), "\n");
  }
  for (const auto* all : {&mechanism.gas, &mechanism.surface}) {
    for (const varpre::ImportedSpecies& species : *all) {
      if (species.name != varpre::trimmed(species.short_name.view())) {
        text += message(species.short_name, " stands for ", varpre::for_terminal(species.name), "\n");
      }
    }
  }
  std::fputs(text.c_str(), stdout);
}

// In bar, from a value with its unit.
double read_pressure(const std::string& text) {
  const auto bar = *varpre::parse_unit("bar");
  const std::size_t end = std::min(text.find_first_not_of("0123456789.+-eE"), text.size());
  const auto value = varpre::parse_number(std::string_view(text).substr(0, end));
  const auto unit = varpre::parse_unit(std::string_view(text).substr(end));
  if (!value || *value <= 0 || !unit || unit->dimensions != bar.dimensions)
    throw std::runtime_error("--pressure: a pressure with its unit is due, like \"1 bar\"");
  return varpre::converted(*value, *unit, bar);
}

// Runs what was imported, without writing anything. The exit status.
int try_run(const Arguments& arguments) {
  if (arguments.import.without_transport && !exists(path_in(arguments, "MOLNEW"))) {
    std::puts("no run was made: MOLNEW, the transport data, is yours to supply");
    return 0;
  }
  const varpre::DirectoryRun run = varpre::run_in_directory(arguments.directory, varpre::Wanted::none);
  if (!run.fault.empty()) throw std::runtime_error(run.fault);
  tell(run.result.diagnostics);
  const bool complete = run.result.errors == 0 && run.result.store_state == "complete";
  std::printf("varpre: %s; store file %s\n", varpre::summary(run.result.errors, run.result.warnings).c_str(),
              run.result.store_state.c_str());
  return complete ? 0 : not_held;
}

int import(Arguments& arguments) {
  if (!arguments.pressure.empty()) arguments.import.pressure = read_pressure(arguments.pressure);
  refuse_to_overwrite(arguments);
  varpre::Findings findings;
  findings.most_shown = 200;  // of a kind: each looks for its line
  const varpre::ImportOptions& options = arguments.import;
  varpre::SourceFiles sources;
  varpre::YamlFiles files(sources, arguments.include, findings);
  const varpre::Molecules molecules =
      options.transport.empty() ? varpre::Molecules()
                                : varpre::read_transport_file(options.transport, sources, files, findings);
  const varpre::ImportedMechanism mechanism =
      varpre::read_yaml_mechanism(options, files, molecules, findings);
  varpre::InputTexts texts;
  if (findings.errors() == 0) texts = varpre::write_inputs(mechanism, sources.open(options.file), findings);
  tell(findings.render());
  if (findings.errors() > 0) {
    tell(message("varpre-import: ", varpre::summary(findings.errors(), findings.warnings()),
                 "; nothing was written\n"));
    return not_held;
  }
  list_mechanism(mechanism);
  write_files(arguments, texts);
  return try_run(arguments);
}

constexpr varpre::Program program{
    "varpre-import",
    "Brings a mechanism in Cantera's YAML into the files MEC, THERMO and MOLNEW, with an INP to start from.",
    "0 done, 1 something cannot be held or the run ends with an error, 2 wrong usage, or a file that cannot be read or "
    "written."};

}  // namespace

int main(int argc, char** argv) {
  Arguments arguments;
  varpre::ImportOptions& options = arguments.import;
  return varpre::run_program(
      program,
      {{"FILE", &options.file, "the mechanism, a YAML file", "", true},
       {"--phase", &options.phase, "the gas phase (that beside the surface, or the first ideal gas)", "NAME"},
       {"--surface", &options.surface, "the surface (none)", "NAME"},
       {"--species", &options.species, "gas species to be taken (all), with the reactions among them",
        "A,B,...", false, ','},
       {"--output", &arguments.directory, "where the files are written (.)", "DIRECTORY"},
       {"--transport", &options.transport,
        "transport data for species that have none (YAML, tran.dat, MOLNEW)", "FILE"},
       {"--include", &arguments.include, "where files are looked for that the file names, beside its own",
        "DIRECTORY"},
       {"--pressure", &arguments.pressure, "of rates that depend on it (\"1 bar\")", "P"},
       {"--refit-thermo", &options.refit_thermo,
        "fit ranges of seven coefficients to thermochemistry of other forms"},
       {"--force", &arguments.force, "write over MEC, THERMO and MOLNEW; an INP always stays"},
       {"--skip-unsupported", &options.skip_unsupported,
        "leave out what cannot be held, with a warning each"},
       {"--without-transport", &options.without_transport, "take no transport data, write no MOLNEW"},
       {"--no-falloff", &options.no_falloff, "falloff reactions count as what cannot be held"}},
      argc, argv, [&] { return import(arguments); });
}
