#include "tools/import/conditions_writer.h"

#include <algorithm>

#include "textio/channel/statement.h"
#include "textio/findings/odd_characters.h"

namespace varpre {
namespace {

constexpr std::array<std::pair<std::string_view, Template>, 3> templates{
    {{"burner", Template::burner}, {"counterflow", Template::counterflow}, {"ignition", Template::ignition}}};

constexpr std::string_view options_of(Template start) {
  switch (start) {
    case Template::burner: return "PConst  1 Energy  1 Mech.A  1 ReGrid  1 Output  1 ";
    case Template::counterflow: return "PConst  1 Impuls -1 Energy  1 InnerB  1 ReGrid  1 ";
    case Template::ignition: return "PConst  1 Energy  1 Mech.A  1 Source  1 ReGrid  1 ";
    default: return "PConst  1 Energy  1 ";
  }
}

struct Condition {
  std::string_view keyword;
  std::string_view value;
  std::string_view remark;
};

constexpr std::array<Condition, 9> planar{{{"GE  ", "0.0", "! geometry: 0 slab, 1 cylinder, 2 sphere"},
                                           {"NG  ", "101.0", "! grid points"},
                                           {"RI  ", "0.0", "m  ! where the grid begins"},
                                           {"RO  ", "0.01", "m  ! where it ends"},
                                           {"TE  ", "0.05", "s  ! end of time"},
                                           {"NT  ", "2000.0", "! time steps at most"},
                                           {"STEP", "1.0000E-07", "s  ! first time step"},
                                           {"ATOL", "1.0000E-08", "! absolute tolerance"},
                                           {"RTOL", "0.001", "! relative tolerance"}}};

constexpr std::array<Condition, 5> hot_layer{{{"AMPL", "1500.0", "K  ! height of the initial profile"},
                                              {"SIGM", "0.001", "m  ! its width"},
                                              {"RMAX", "0.005", "m  ! its place"},
                                              {"ALPH", "100.0", "! its shape"},
                                              {"OMEG", "0.0", "m"}}};

constexpr std::array<Condition, 4> spark{{{"SE  ", "0.002", "J  ! energy of the source"},
                                          {"SW  ", "5.0000E-04", "m  ! its width"},
                                          {"ST  ", "5.0000E-05", "s  ! how long it lasts"},
                                          {"SOGR", "4.0", "! its gradient"}}};

class ConditionsWriter {
 public:
  ConditionsWriter(const ImportedMechanism& mechanism, const ConditionsOptions& options, LostDigits& lost)
      : mechanism_(mechanism), options_(options), lost_(lost) {}

  std::string write_all(const std::array<ImportedState, 2>& mixtures) {
    write<"('COMMENT ',A)">(
        INP_, std::string_view(for_terminal(message("Imported from ", mechanism_.file)).substr(0, 64)));
    remark(options_.fit_reverses ? "without RevSim, varpre fits the reverse rates of the gas"
                                 : "RevSim: the solver works out reverse rates of the gas from equilibrium");
    write<"('OPTIONS')">(INP_);
    write<"(A,A)">(INP_, options_of(options_.start),
                   std::string_view(options_.fit_reverses ? "" : "RevSim  1"));
    write<"('END')">(INP_);
    remark("species: delete none that reacts");
    write_species("GAS PHASE SPECIES", mechanism_.gas);
    if (!mechanism_.surface_phase.empty()) write_species("SURFACE SPECIES", mechanism_.surface);
    write_mixture("LEFT BOUNDARY", mixtures[0]);
    write_mixture("RIGHT BOUNDARY", mixtures[1]);
    write_flame_conditions();
    if (!mechanism_.surface_phase.empty()) write_surface_conditions();
    return INP_;
  }

 private:
  void remark(std::string_view text) { write<"('---- ',A)">(INP_, text); }

  void write_species(std::string_view heading, const std::vector<ImportedSpecies>& all) {
    write<"(A)">(INP_, heading);
    std::vector<SpeciesName> names;
    names.reserve(all.size());
    for (const ImportedSpecies& species : all) names.push_back(species.short_name);
    if (!names.empty()) write<"(7(A8,2X))">(INP_, std::span<const SpeciesName>(names));
    write<"('END')">(INP_);
  }

  SpeciesName short_name(const std::string& name) const {
    for (const auto* all : {&mechanism_.gas, &mechanism_.surface}) {
      for (const ImportedSpecies& species : *all) {
        if (species.name == name) return species.short_name;
      }
    }
    return {};
  }

  void write_mixture(std::string_view heading, const ImportedState& state) {
    write<"(A)">(INP_, heading);
    const auto value = [&](std::string_view name, double amount, std::string_view behind) {
      write<"(A8,1X,A10,1X,A)">(INP_, Text<8>(name), Text<10>(number_text(amount, 10, lost_)), behind);
    };
    value("P", state.pressure, "bar  ! pressure");
    if (state.enthalpy) {
      value("H(T0)", *state.enthalpy, "J/kg  ! specific enthalpy, for which T may stand");
    } else {
      value("T", state.temperature, "K  ! temperature");
    }
    for (const auto& [name, amount] : state.amounts) {
      const bool of_gas =
          std::any_of(mechanism_.gas.begin(), mechanism_.gas.end(),
                      [&n = name](const ImportedSpecies& species) { return species.name == n; });
      value(short_name(name).view(), amount, of_gas ? "! mole" : "! of the sites");
    }
    write<"('END')">(INP_);
  }

  void write_list(std::span<const Condition> conditions) {
    for (const auto& [keyword, value, remark] : conditions) {
      const std::string right(10 - value.size(), ' ');
      write<"(A4,1X,A,A,3X,A)">(INP_, Text<4>(keyword), std::string_view(right), value, remark);
    }
  }

  void write_flame_conditions() {
    write<"('CONDITIONS')">(INP_);
    if (options_.start == Template::ignition) {
      std::array<Condition, planar.size()> sphere = planar;
      sphere[0].value = "2.0";
      sphere[3].value = "0.005";
      sphere[4].value = "0.001";
      sphere[6].value = "1.0000E-09";
      write_list(sphere);
      write_list(spark);
    } else {
      write_list(planar);
    }
    if (options_.start == Template::burner || options_.start == Template::counterflow) write_list(hot_layer);
    write<"('END')">(INP_);
  }

  void write_surface_conditions() {
    const auto value = [&](double number) { return Text<11>(number_text(number, 11, lost_)); };
    write<"('SURFACE CONDITIONS')">(INP_);
    write<"('TW',7X,A11,' K  ! temperature of the wall',/,'SITE',5X,A11,' mol/m**2  ! density of sites')">(
        INP_, value(mechanism_.wall_temperature), value(mechanism_.site_density));
    write<
        "('EPSW             0.0 ! emissivity of the wall',/,'EPSA             0.0 ! its emission "
        "coefficients',/,'EPSB             0.0',/,'TRAD           300.0 ! K of what it radiates to',/,'POW              0.0 ! "
        "heating power',/,'RHOZ             0.0 ! specific resistance',/,'RHOA             0.0',/,'RHOB             0.0',/,"
        "'CWIR      1.0000E+30 ! specific heat',/,'STFL             1.0 ! Stefan flux',/,'END')">(INP_);
  }

  const ImportedMechanism& mechanism_;
  const ConditionsOptions& options_;
  LostDigits& lost_;
  std::string INP_;
};

}  // namespace

std::optional<Template> template_named(std::string_view name) {
  const auto* const found =
      std::find_if(templates.begin(), templates.end(), [&](const auto& one) { return one.first == name; });
  return found == templates.end() ? std::nullopt : std::optional(found->second);
}

std::string write_conditions(const ImportedMechanism& mechanism, const std::array<ImportedState, 2>& mixtures,
                             const ConditionsOptions& options, LostDigits& lost) {
  return ConditionsWriter(mechanism, options, lost).write_all(mixtures);
}

}  // namespace varpre
