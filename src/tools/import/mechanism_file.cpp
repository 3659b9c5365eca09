#include "tools/import/mechanism_file.h"

#include <stdexcept>

#include "tools/import/chemkin_lines.h"
#include "tools/import/chemkin_reader.h"
#include "tools/import/species_reader.h"
#include "tools/import/yaml_reader.h"

namespace varpre {
namespace {

[[noreturn]] void fail(const std::string& file, const std::string& reason) {
  throw std::runtime_error(file + ": " + reason);
}

}  // namespace

ImportedMechanism read_mechanism(const ImportOptions& options, const std::vector<std::string>& include,
                                 SourceFiles& sources, Findings& findings) {
  const MechanismFormat format = mechanism_format(sources.open(options.file).text);
  if (format == MechanismFormat::cti)
    fail(options.file, "this is a file in CTI format: cti2yaml, which comes with Cantera, makes YAML of it");
  if (format == MechanismFormat::xml)
    fail(options.file, "this is a file in XML: ctml2yaml, which comes with Cantera, makes YAML of it");
  const bool chemkin = format == MechanismFormat::chemkin;
  if (chemkin && !(options.phase.empty() && options.surface.empty()))
    fail(options.file, "--phase and --surface choose from YAML; this is a file in CHEMKIN format");
  if (!chemkin && !(options.thermo.empty() && options.surface_file.empty()))
    fail(options.file, "--thermo and --surface-file belong to a file in CHEMKIN format; this is none");
  YamlFiles files(sources, include, findings);
  const Molecules molecules = options.transport.empty()
                                  ? Molecules()
                                  : read_transport_file(options.transport, sources, files, findings);
  return chemkin ? read_chemkin_mechanism(options, sources, molecules, findings)
                 : read_yaml_mechanism(options, files, molecules, findings);
}

}  // namespace varpre
