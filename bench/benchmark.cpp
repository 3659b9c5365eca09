// One table of what a run costs: whole processes, the stages and kernels of a run in memory, and beside the
// whole the floor, what no program of the same rules can avoid, measured in the same run. Times are
// processor time, so that a busy machine disturbs them least; whole processes have their wall time besides.
//
//   varpre_bench PROGRAM EMPTY_PROGRAM                            the table
//   varpre_bench --write DIRECTORY SPECIES REACTIONS ENTRIES SEED  a generated case, to look at

#include <algorithm>
#include <array>
#include <benchmark/benchmark.h>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <memory>
#include <spawn.h>
#include <stdexcept>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>
#include <vector>

#include "driver/prefilter.h"
#include "limit_case.h"
#include "mechanism/duplicates.h"
#include "mechanism/mechanism_reader.h"
#include "mechanism/reaction_pointers.h"
#include "textio/channel/statement.h"
#include "textio/findings/listing.h"
#include "thermo/elements.h"
#include "thermo/species_list.h"
#include "thermo/thermo_database.h"
#include "transport/collision_integrals.h"
#include "transport/conductivity_fits.h"
#include "transport/diffusion_fits.h"
#include "transport/log_fit.h"
#include "transport/molecular_database.h"

namespace varpre_bench {
namespace {

using varpre::Input;
using varpre::Listing;
using varpre::StoreFile;

constexpr CaseSize limit_size;
constexpr std::array species_steps{50, 100, 200, 300};
constexpr std::array reaction_steps{500, 1000, 2000, 4000};
constexpr int measurements = 15;  // of a process, and of the floor

double median(std::vector<double> values) {
  std::nth_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2),
                   values.end());
  return values[values.size() / 2];
}

double milliseconds(clockid_t clock) {
  timespec now{};
  clock_gettime(clock, &now);
  return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) * 1e-6;
}
template <class Action>
double milliseconds(clockid_t clock, Action action) {
  const double start = milliseconds(clock);
  action();
  return milliseconds(clock) - start;
}

// Slope of log(time) over log(size).
double exponent(const std::vector<double>& sizes, const std::vector<double>& times) {
  double x = 0, y = 0, xx = 0, xy = 0;
  const auto n = static_cast<double>(sizes.size());
  for (std::size_t i = 0; i < sizes.size(); ++i) {
    const double u = std::log(sizes[i]);
    const double v = std::log(times[i]);
    x += u, y += v, xx += u * u, xy += u * v;
  }
  return (n * xy - x * y) / (n * xx - x * x);
}

// --- Whole processes ---------------------------------------------------------------------------------

struct ProcessCost {
  double wall = 0;    // ms
  double cpu = 0;     // ms of user and system time
  double least = 0;   // the same, smallest of several runs
  double memory = 0;  // MB, peak
};

ProcessCost run_process(const std::string& program, const std::filesystem::path& directory) {
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addchdir_np(&actions, directory.c_str());
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "listing", O_WRONLY | O_CREAT | O_TRUNC, 0666);
  posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
  std::string name = program;
  std::array<char*, 2> arguments{name.data(), nullptr};
  rusage usage{};
  int status = 0;
  const double wall = milliseconds(CLOCK_MONOTONIC, [&] {
    pid_t child = 0;
    if (posix_spawn(&child, program.c_str(), &actions, nullptr, arguments.data(), environ) != 0 ||
        wait4(child, &status, 0, &usage) != child || status != 0) {
      throw std::runtime_error("cannot run " + program);
    }
  });
  posix_spawn_file_actions_destroy(&actions);
  const auto ms = [](const timeval& t) {
    return static_cast<double>(t.tv_sec) * 1e3 + static_cast<double>(t.tv_usec) * 1e-3;
  };
  const double cpu = ms(usage.ru_utime) + ms(usage.ru_stime);
  return {wall, cpu, cpu, static_cast<double>(usage.ru_maxrss) / 1024};
}

// Medians of several runs.
ProcessCost measure_process(const std::string& program, const std::filesystem::path& directory) {
  std::vector<double> wall, cpu;
  double memory = 0;
  for (int i = 0; i < measurements; ++i) {
    const ProcessCost run = run_process(program, directory);
    wall.push_back(run.wall);
    cpu.push_back(run.cpu);
    memory = std::max(memory, run.memory);
  }
  return {median(wall), median(cpu), *std::min_element(cpu.begin(), cpu.end()), memory};
}

// --- The floor ---------------------------------------------------------------------------------------

// What a run of this store file cannot do without, in ms.
struct Floor {
  double logarithms = 0;
  double digits = 0;
  double bytes = 0;
  double start = 0;
  double sum() const { return logarithms + digits + bytes + start; }
};

std::size_t size_of_copy(const Input& copy) {
  std::size_t size = 0;
  copy.for_each_record([&](int, std::string_view) { size += varpre::copied_width + 1; });
  return size;
}

class FloorMeter {
 public:
  FloorMeter(const Case& data, const varpre::Files& files, double empty_process)
      : reals_(std::count(files.store.text.begin(), files.store.text.end(), '.')),
        from_(data.bytes() + files.store.text.size() + files.listing.file.text.size() +
                  size_of_copy(files.conditions_copy) + size_of_copy(files.mechanism_copy) +
                  size_of_copy(files.thermo_copy),
              'x'),
        empty_process_(empty_process) {
    for (std::size_t i = 0; i < values_.size(); ++i) values_[i] = 0.1 + 1.7 * static_cast<double>(i);
  }

  Floor measure() const {
    constexpr int points = 25;
    constexpr int pairs = limit_size.species * (limit_size.species + 1) / 2;
    const auto value = [&](int i) { return values_[static_cast<std::size_t>(i) % values_.size()]; };
    Floor floor;
    floor.logarithms = milliseconds(CLOCK_PROCESS_CPUTIME_ID, [&] {
      for (int i = 0; i < pairs * points; ++i) benchmark::DoNotOptimize(std::log(std::sqrt(value(i))));
    });
    floor.digits = milliseconds(CLOCK_PROCESS_CPUTIME_ID, [&] {
      std::array<char, 32> field;
      for (int i = 0; i < reals_; ++i) {
        std::to_chars(field.data(), field.data() + field.size(), value(i), std::chars_format::scientific, 4);
        benchmark::DoNotOptimize(field);
      }
    });
    floor.bytes = milliseconds(CLOCK_PROCESS_CPUTIME_ID, [&] {
      std::string to(from_);
      benchmark::DoNotOptimize(to.data());
    });
    floor.start = empty_process_;
    return floor;
  }

 private:
  std::array<double, 4096> values_;
  std::ptrdiff_t reals_;  // in the store file
  std::string from_;      // as long as all files together
  double empty_process_;
};

// The floor, and how many times as long a run takes: medians of pairs of measurements, one directly after the
// other, so that both see the machine in the same state.
struct OverFloor {
  Floor floor;
  double ratio = 0;
};

template <class Run>
OverFloor compare_with_floor(const FloorMeter& meter, Run cpu_of_run) {
  std::vector<double> logarithms, digits, bytes, ratios;
  Floor floor;
  for (int i = 0; i < measurements; ++i) {
    floor = meter.measure();
    ratios.push_back(cpu_of_run() / floor.sum());
    logarithms.push_back(floor.logarithms);
    digits.push_back(floor.digits);
    bytes.push_back(floor.bytes);
  }
  return {{median(logarithms), median(digits), median(bytes), floor.start}, median(ratios)};
}

// --- Stages and kernels in memory --------------------------------------------------------------------

// A case with what the stages read, as far as the run has come when each of them starts.
struct Prepared {
  explicit Prepared(const CaseSize& wanted) : size(wanted), data(generate(wanted)) {
    fill(files, data);
    varpre::run(files);  // leaves the filtered copies
    const varpre::SpeciesList list =
        varpre::GENSYM(varpre::sections::named("the gas-phase species list"), files.conditions_copy, listing,
                       species->places(0, varpre::NSMAX));
    gas = species->places(0, list.NS);
    const bool found = varpre::GENTHE(files.thermo_copy, listing, gas, false) &&
                       varpre::ELECOM(gas, elements, listing) &&
                       varpre::GENSPE(gas, files.molecules, listing, molecules, false);
    if (!found || list.NS != size.species) throw std::runtime_error("the generated case is not in order");
    for (const double XMOL : gas.XMOL) grams.push_back(1000 * XMOL);
    if (!read_mechanism()) throw std::runtime_error("the generated mechanism is not in order");
  }

  bool read_mechanism() {
    StoreFile store;
    return varpre::GENMEC(varpre::Phase::gas, gas, 0, varpre::ReactionNames(gas.SYMB), {},
                          files.mechanism_copy, listing, store, mechanism);
  }

  CaseSize size;
  Case data;
  varpre::Files files = varpre::Files::in_memory();
  Listing listing;
  std::unique_ptr<varpre::Species> species = std::make_unique<varpre::Species>();
  varpre::SpeciesPlaces gas;
  varpre::Elements elements;
  varpre::Mechanism mechanism;
  std::vector<varpre::Molecule> molecules;
  std::vector<double> grams;  // molar masses, g/mol
  varpre::FitGrid grid{[] {
    std::vector<double> T;
    for (int k = 2; k <= 26; ++k) T.push_back(100.0 * k);
    return T;
  }()};
};

struct Stage {
  const char* name;
  const char* item;
  std::function<double(const Prepared&)> items;
  std::function<void(Prepared&)> act;
  enum class Grows { with_species, with_reactions, not_at_all } grows;
};

double pairs(const Prepared& p) {
  return 0.5 * p.size.species * (p.size.species + 1);
}
double reactions(const Prepared& p) {
  return p.size.reactions;
}
double entries(const Prepared& p) {
  return p.size.entries;
}

std::vector<Stage> stages() {
  using enum Stage::Grows;
  constexpr int repeats = 1000;
  const auto thousand = [](const Prepared&) { return double{repeats}; };
  return {
      {"whole run in memory", "record",
       [](const Prepared& p) {
         return static_cast<double>(std::count(p.files.store.text.begin(), p.files.store.text.end(), '\n'));
       },
       [](Prepared& p) {
         varpre::Files files = varpre::Files::in_memory();
         fill(files, p.data);
         varpre::run(files);
       },
       with_species},
      {"GENTHE, thermo database", "entry", entries,
       [](Prepared& p) { (void)varpre::GENTHE(p.files.thermo_copy, p.listing, p.gas, false); }, with_species},
      {"GENSPE, molecular database", "entry", entries,
       [](Prepared& p) { (void)varpre::GENSPE(p.gas, p.files.molecules, p.listing, p.molecules, false); },
       with_species},
      {"GENLAM, fits of species", "species", [](const Prepared& p) { return double(p.size.species); },
       [](Prepared& p) {
         std::vector<varpre::ConductivityFits> fits;
         (void)varpre::GENLAM(p.gas.SYMB, p.gas.fit, p.grams, p.molecules, p.grid, false, p.listing, fits);
       },
       with_species},
      {"GENDIF, fits of pairs", "pair", pairs,
       [](Prepared& p) {
         std::vector<varpre::FitCoefficients> DBIN;
         (void)varpre::GENDIF(p.gas.SYMB, p.grams, p.molecules, p.grid, false, p.listing, DBIN);
       },
       with_species},
      {"records of pairs", "pair", pairs,
       [](Prepared& p) {
         StoreFile store;
         const varpre::FitCoefficients c{-12.345678, 1.23456789, 0.0123456789, -1.234e-3};
         for (int i = 1; i <= p.size.species; ++i) {
           for (int j = 1; j <= i; ++j) varpre::write<"(' D(',2I4,')',5(1PE11.4,1X))">(store, i, j, c);
         }
         benchmark::DoNotOptimize(store.text.data());
       },
       with_species},
      {"GENMEC, mechanism", "reaction", reactions, [](Prepared& p) { (void)p.read_mechanism(); },
       with_reactions},
      {"of it: duplicate search", "reaction", reactions,
       [](Prepared& p) {
         varpre::Duplicates duplicates(p.size.reactions);
         const std::span<const varpre::Reaction> all(p.mechanism.reactions);
         int found = 0;
         for (std::size_t n = 1; n <= all.size(); ++n) duplicates.add(all.first(n), [&](int) { ++found; });
         benchmark::DoNotOptimize(found);
       },
       with_reactions},
      {"of it: pointers", "reaction", reactions,
       [](Prepared& p) {
         StoreFile store;
         (void)varpre::set_pointers(varpre::Phase::gas, p.size.species, varpre::NRIMAX, p.mechanism,
                                    p.listing);
         varpre::write_pointers(p.mechanism, store);
         benchmark::DoNotOptimize(store.text.data());
       },
       with_reactions},
      {"kernel: a real written", "real", thousand,
       [](Prepared&) {
         StoreFile store;
         std::vector<double> values(repeats);
         for (std::size_t i = 0; i < values.size(); ++i) values[i] = 1.2345678e-3 * double(i + 1);
         varpre::write<"(5(1PE11.4,1X))">(store, std::span<const double>(values));
       },
       not_at_all},
      {"kernel: a real read", "real", thousand,
       [](Prepared&) {
         Input input;
         std::vector<double> values(repeats, 1.2345678e-3);
         for (int i = 0; i < repeats / 5; ++i)
           input.text += "-9.46834459E+03 1.84373180E+01 5.14987613E+00-1.36709788E-02 4.91800599E-05    3\n";
         (void)varpre::read<"(5E15.8)">(input, std::span<double>(values));
         benchmark::DoNotOptimize(values.data());
       },
       not_at_all},
      {"kernel: MXIOME", "call", thousand,
       [](Prepared& p) {
         bool LOK = true;
         for (int i = 0; i < repeats; ++i) {
           benchmark::DoNotOptimize(varpre::MXIOME(varpre::CollisionIntegral::diffusion, 0.3 + 0.03 * i,
                                                   i % 4 == 0 ? 0.3 : 0.0, p.listing, LOK));
         }
       },
       not_at_all},
      {"kernel: LOGFIT", "fit", thousand,
       [](Prepared& p) {
         std::vector<double> V;
         for (const double T : p.grid.T) V.push_back(1e-5 * std::pow(T, 1.7));
         for (int i = 0; i < repeats; ++i)
           benchmark::DoNotOptimize(varpre::LOGFIT(p.grid, V, false, p.listing, 0.02));
       },
       not_at_all},
  };
}

// Collects the times instead of printing them: ms by name.
class Collector : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context&) override { return true; }
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      if (run.aggregate_name == "median") times[run.run_name.function_name] = run.GetAdjustedCPUTime();
    }
  }
  std::map<std::string, double> times;
};

using Sizes = std::vector<std::unique_ptr<Prepared>>;

std::string label(const Stage& stage, const Prepared& p) {
  return std::string(stage.name) + " " + std::to_string(p.size.species) + " " +
         std::to_string(p.size.reactions);
}

std::map<std::string, double> measure_stages(const std::vector<Stage>& all, const Sizes& sizes) {
  for (const Stage& stage : all) {
    for (const auto& p : sizes) {
      if (stage.grows == Stage::Grows::not_at_all && p != sizes.front()) continue;
      benchmark::RegisterBenchmark(label(stage, *p).c_str(),
                                   [&stage, &p](benchmark::State& state) {
                                     for (auto _ : state) {
                                       stage.act(*p);
                                       p->listing.file.text.clear();
                                     }
                                   })
          ->Unit(benchmark::kMillisecond)
          ->MinTime(0.02)
          ->Repetitions(9)
          ->ReportAggregatesOnly(true);
    }
  }
  Collector collector;
  benchmark::RunSpecifiedBenchmarks(&collector);
  return collector.times;
}

// --- The table ---------------------------------------------------------------------------------------

void print_table(const std::string& program, const std::string& empty) {
  const auto directory =
      std::filesystem::temp_directory_path() / ("varpre-bench-" + std::to_string(getpid()));
  const auto process = [&](const CaseSize& size) {
    write_case(generate(size), directory);
    return measure_process(program, directory);
  };
  std::vector<CaseSize> by_species, by_reactions;
  for (const int n : species_steps) by_species.push_back({n, 500, n});
  for (const int n : reaction_steps) by_reactions.push_back({100, n, 100});

  // Processes first: the peak memory of a child counts from that of its parent.
  std::vector<double> species_times, reaction_times;
  for (const auto& size : by_species) species_times.push_back(process(size).cpu);
  for (const auto& size : by_reactions) reaction_times.push_back(process(size).cpu);
  const ProcessCost small = process({53, 650, 53});
  const ProcessCost middle = process({100, 1100, 100});
  const ProcessCost limit = process(limit_size);
  const ProcessCost nothing = measure_process(empty, directory);

  Sizes sizes;
  sizes.push_back(std::make_unique<Prepared>(limit_size));
  const FloorMeter meter(sizes.front()->data, sizes.front()->files, nothing.cpu);
  const auto [floor, ratio] = compare_with_floor(meter, [&] { return run_process(program, directory).cpu; });
  std::filesystem::remove_all(directory);
  for (const auto& size : by_species) sizes.push_back(std::make_unique<Prepared>(size));
  for (const auto& size : by_reactions) sizes.push_back(std::make_unique<Prepared>(size));
  const std::vector<Stage> all = stages();
  const auto times = measure_stages(all, sizes);

  const auto growth = [&](const Stage& stage) -> std::string {
    if (stage.grows == Stage::Grows::not_at_all) return "";
    const bool with_species = stage.grows == Stage::Grows::with_species;
    std::vector<double> n, t;
    for (std::size_t i = 0; i < 4; ++i) {
      const Prepared& p = *sizes[1 + i + (with_species ? 0 : 4)];
      n.push_back(with_species ? p.size.species : p.size.reactions);
      t.push_back(times.at(label(stage, p)));
    }
    std::array<char, 40> text{};
    std::snprintf(text.data(), text.size(), "%s^%.2f", with_species ? "species" : "reactions",
                  exponent(n, t));
    return text.data();
  };
  const auto numbers = [](const auto& values) { return std::vector<double>(values.begin(), values.end()); };

  std::printf("%-44s %9s %9s %9s %7s\n", "whole process", "wall ms", "cpu ms", "least", "MB");
  const auto line = [](const char* name, const ProcessCost& c) {
    std::printf("%-44s %9.2f %9.2f %9.2f %7.1f\n", name, c.wall, c.cpu, c.least, c.memory);
  };
  line("300 species, 4000 reactions, 1500 entries", limit);
  line("100 species, 550 reversible reactions", middle);
  line("53 species, 325 reversible reactions", small);
  line("empty process", nothing);
  std::printf("growth of the whole process (cpu): species^%.2f, reactions^%.2f\n",
              exponent(numbers(species_steps), species_times),
              exponent(numbers(reaction_steps), reaction_times));
  std::printf("floor %.2f ms = roots and logarithms %.2f + digits %.2f + bytes %.2f + start %.2f\n",
              floor.sum(), floor.logarithms, floor.digits, floor.bytes, floor.start);
  std::printf("limit size over floor: %.2f (cpu, measured in turns)\n\n", ratio);

  const double whole = times.at(label(all.front(), *sizes.front()));
  std::printf("%-32s %9s %7s %15s   %s\n", "stage or kernel, limit size", "ms", "share", "ns per item",
              "growth");
  for (const Stage& stage : all) {
    const Prepared& p = *sizes.front();
    const double ms = times.at(label(stage, p));
    std::array<char, 16> share{};
    if (stage.grows != Stage::Grows::not_at_all) {
      std::snprintf(share.data(), share.size(), "%.0f %%", 100 * ms / whole);
    }
    std::printf("%-32s %9.3f %7s %8.1f %-8s %s\n", stage.name, ms, share.data(), 1e6 * ms / stage.items(p),
                stage.item, growth(stage).c_str());
  }
}

}  // namespace
}  // namespace varpre_bench

int main(int argc, char** argv) {
  using namespace varpre_bench;
  const std::vector<std::string> arguments(argv + 1, argv + argc);
  try {
    if (arguments.size() != 2) {
      std::fputs("usage: varpre_bench PROGRAM EMPTY_PROGRAM\n", stderr);
      return 1;
    }
    print_table(std::filesystem::absolute(arguments[0]), std::filesystem::absolute(arguments[1]));
  } catch (const std::exception& error) {
    std::fprintf(stderr, "varpre_bench: %s\n", error.what());
    return 1;
  }
}
