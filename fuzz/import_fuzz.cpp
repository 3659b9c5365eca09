#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "driver/run.h"
#include "tools/import/input_writer.h"
#include "tools/import/mixtures.h"
#include "tools/import/verification.h"
#include "tools/import/yaml_reader.h"

// The import on arbitrary YAML. The first byte of an input chooses options. What is taken without an error is
// written, read by the program in memory and compared with what was meant: of the same kind it must be.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace varpre;
  if (size == 0) return -1;
  const auto has = [&](unsigned bit) { return (data[0] >> bit & 1U) != 0; };
  Findings findings;
  SourceFiles sources;
  sources.put("m.yaml", std::string(reinterpret_cast<const char*>(data + 1), size - 1));
  ImportOptions options;
  options.file = "m.yaml";
  options.skip_unsupported = has(0);
  options.refit_thermo = has(1);
  if (has(2)) options.pressure = 1;
  if (has(3)) options.surface = "platinum";
  YamlFiles files(sources, {}, findings);
  const ImportedMechanism mechanism = read_yaml_mechanism(options, files, {}, findings);
  findings.render();
  if (findings.errors() > 0) return 0;
  const InputTexts texts =
      write_inputs(mechanism, mixtures_of(mechanism, {}, false), {}, sources.open(options.file), findings);
  Files in_memory = Files::in_memory();
  in_memory.mechanism.text = texts.MEC;
  in_memory.thermo.text = texts.THERMO;
  in_memory.molecules.text = texts.MOLNEW;
  in_memory.conditions.text = texts.INP;
  const auto run_data = std::make_unique<RunData>();
  const RunResult result = run(in_memory, *run_data);
  const Verification verification = verify(mechanism, 1, *run_data);
  summary_lines(mechanism, &verification);
  if (result.end == RunEnd::normal && !verification.faults.empty()) {
    std::fprintf(stderr, "%s\n%s", verification.faults.front().c_str(), result.diagnostics.c_str());
    std::abort();
  }
  return 0;
}
